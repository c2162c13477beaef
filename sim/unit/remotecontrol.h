#pragma once

#include "farend.h"

namespace sim
{
/// The infrared remote control and its receiver, which has no use for what the program writes.
class RemoteControl : public FarEnd
{
public:
    void feed(const quint8 *, std::size_t, qint64) override {}

    /// Someone presses the key that stands for this character.
    void press(char key) { send({key}); }
};
} // namespace sim
