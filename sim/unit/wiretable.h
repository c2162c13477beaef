#pragma once

#include "farends.h"

#include <array>
#include <cstddef>

namespace sim
{
/// The device files through which the program meets its hardware.
enum class Wire { Infrared, Keys, Matrix, Control0, Control1, Gpio, Spi };

/// What kind of device file it is.
enum class WireKind {
    Serial,  ///< a serial port, which carries bytes both ways
    Requests ///< a device that carries the program's ioctl requests, as records of the interposer
};

/// What one wire is.
struct WireRow {
    Wire wire;
    const char *device; ///< absolute, as on the unit
    WireKind kind;
    FarEnd *(*farEnd)(FarEnds &); ///< null for a port that is open for a person's cable
};

template <auto End>
FarEnd *farEnd(FarEnds &ends)
{
    return &(ends.*End);
}

inline FarEnd *noFarEnd(FarEnds &)
{
    return nullptr;
}

/// All wires, in the order of `Wire`. The far ends are fed in this order, so the GPIO lines are before the
/// SPI bus, whose transfers depend on them.
constexpr std::array Wires = {
    WireRow{Wire::Infrared, "/dev/ttymxc0", WireKind::Serial, farEnd<&FarEnds::remote>},
    WireRow{Wire::Keys, "/dev/ttymxc1", WireKind::Serial, farEnd<&FarEnds::keys>},
    WireRow{Wire::Matrix, "/dev/ttymxc2", WireKind::Serial, farEnd<&FarEnds::board>},
    WireRow{Wire::Control0, "/dev/ttymxc3", WireKind::Serial, noFarEnd},
    WireRow{Wire::Control1, "/dev/ttymxc4", WireKind::Serial, noFarEnd},
    WireRow{Wire::Gpio, "/dev/gpiodev", WireKind::Requests, farEnd<&FarEnds::gpio>},
    WireRow{Wire::Spi, "/dev/spidev2.0", WireKind::Requests, farEnd<&FarEnds::lcd>},
};

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < Wires.size(); ++i) {
        if (Wires[i].wire != static_cast<Wire>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder(), "a wire's row is found by its number");
} // namespace sim
