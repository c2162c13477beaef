// Measures the front panel: packing and sending frames, repaints, the menu's cycle, a key's way to the LCD.

#include "allocations.h"
#include "framememory.h"
#include "keys.h"
#include "lcdframe.h"
#include "menu.h"
#include "pages.h"
#include "panelports.h"
#include "panelrun.h"
#include "product.h"
#include "samples.h"
#include "testunit.h"
#include "wires.h"

#include <QCoreApplication>
#include <QThread>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace
{
/// Median of many rounds, in nanoseconds a call.
template <typename Work>
double nanoseconds(Work work, int calls)
{
    Samples rounds;
    for (int round = 0; round < 100; ++round) {
        const double start = nowMicroseconds();
        for (int i = 0; i < calls; ++i) {
            work();
        }
        rounds.add((nowMicroseconds() - start) * 1000 / calls);
    }
    return rounds.median();
}

/// Of a plain copy of so many bytes.
template <size_t Size>
double copying()
{
    static std::uint8_t source[Size];
    static std::uint8_t target[Size];
    return nanoseconds(
        [] {
            std::memcpy(target, source, Size);
            asm volatile("" : : "r"(target) : "memory");
        },
        1000);
}

void measurePacking()
{
    constexpr size_t FrameBytes =
        LcdFrame::Lines * (sizeof(LcdFrame::AddressTransfer) + sizeof(LcdFrame::DataTransfer));
    static LcdFrame::Rows rows;
    const double packing = nanoseconds(
        [] {
            LcdFrame::pack(pLcdBuffer, rows);
            asm volatile("" : : "r"(rows) : "memory");
        },
        1000);
    std::printf("%-46s %10.0f ns (at most 160), memcpy of the %zu bytes it reads %.0f ns, of the %zu that "
                "are sent %.0f ns\n",
                "packing a frame", packing, sizeof pLcdBuffer, copying<sizeof pLcdBuffer>(), FrameBytes,
                copying<FrameBytes>());
}

/// Brings a page to the front from behind another one and times its painting, in microseconds.
double repaint(Page page)
{
    bringToFront(page);
    const double start = nowMicroseconds();
    WM_Exec();
    return nowMicroseconds() - start;
}

void measureRepaint()
{
    Samples view;
    Samples switches;
    for (int i = 0; i < 2000; ++i) {
        view.add(repaint(ViewPage));
        switches.add(repaint(SwitchPage));
    }
    std::printf("%-46s %10.1f us\n", "repaint of the SWITCH page, 40 buttons", switches.median());
    std::printf("%-46s %10.1f us\n", "repaint of the VIEW page, 20 texts", view.median());
}

void measureIdleCycle(Menu &menu, const char *page)
{
    constexpr int Count = 100000;
    menu.step(0, '\0');
    WM_Exec();
    nLcdBufferChanged = 0;
    const unsigned long before = allocationCount();
    const double start = nowMicroseconds();
    for (int i = 0; i < Count; ++i) {
        menu.step(0, '\0');
        WM_Exec();
    }
    const double each = (nowMicroseconds() - start) / Count;
    std::printf("idle menu cycle, %-29s %10.2f us, %lu allocations in %d, %s\n", page, each,
                allocationCount() - before, Count, nLcdBufferChanged == 0 ? "nothing drawn" : "drawn");
}

void measureMenu()
{
    TestUnit unit(20, {{"system/keypad", "1"}});
    unit.start(false);
    run = 0; // no waiting for the start picture
    GUI_Task();
    Menu menu([](const std::uint8_t *, int) {});
    std::printf("\nfront panel\n"); // on a line of its own, behind what the program says of missing files
    for (const char *page : {"SWITCH", "SCENE", "SETUP", "VIEW"}) {
        measureIdleCycle(menu, page);
        menu.step(KeyMenu, '\0');
    }
    unit.shm().port = PanelMaxPort;
    labelButtons(SwitchPage, PanelMaxPort);
    measureRepaint();
}

void measureKeyToLcd(sim::VirtualUnit &hardware)
{
    constexpr int Count = 300;
    Samples samples;
    for (int i = 0; i < Count; ++i) {
        QThread::msleep(100);
        // Multiples of the golden ratio spread evenly over the 10 ms of a loop.
        QThread::usleep(static_cast<unsigned long>(10000 * std::fmod(i * 0.6180339887, 1.0)));
        const uint64_t frames = hardware.lcd().frameCount();
        const double pressed = nowMicroseconds();
        hardware.pressKey(i % 2 == 0 ? 2 : 1);
        hardware.waitFor([&] { return hardware.lcd().frameCount() > frames; }, 5000);
        for (const sim::LcdTransfer &transfer : hardware.lcd().transfers()) {
            if (static_cast<double>(transfer.timeUs) >= pressed) {
                samples.add(static_cast<double>(transfer.timeUs) - pressed);
                break;
            }
        }
    }
    std::printf(
        "key to the first byte for the LCD, %zu times: median %.1f ms, 1 %% %.1f, 99 %% %.1f, at most %.1f\n",
        samples.size(), samples.median() / 1000, samples.percentile(1) / 1000, samples.percentile(99) / 1000,
        samples.percentile(100) / 1000);
}

void measureFrames(sim::VirtualUnit &hardware)
{
    const uint64_t before = hardware.lcd().frameCount();
    QThread::sleep(10);
    std::printf("%-46s %10llu\n", "frames in 10 s with nothing changed",
                static_cast<unsigned long long>(hardware.lcd().frameCount() - before));
    hardware.pressKey(5);
    hardware.waitFor([&] { return hardware.lcd().frameCount() > before; }, 5000);
    const std::vector<sim::LcdTransfer> transfers = hardware.lcd().transfers();
    size_t bytes = 0;
    for (size_t i = transfers.size() - 64; i < transfers.size(); ++i) {
        bytes += transfers[i].bytes.size();
    }
    std::printf(
        "%-46s %10zu, %.1f ms from the first transfer to the last\n", "bytes for the LCD in a frame", bytes,
        static_cast<double>(transfers.back().timeUs - transfers[transfers.size() - 64].timeUs) / 1000);
}

void measureProduct()
{
    TestUnit unit(16, {{"system/keypad", "1"}});
    Product product;
    QThread::sleep(5);
    measureFrames(unit.hardware());
    measureKeyToLcd(unit.hardware());
    measureIdle(product.processId(), Operation::FrontPanel);
    product.end(SIGTERM);
    std::printf("%s", unit.faults().isEmpty() ? "no wire recorded a fault\n" : unit.faults().constData());
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    measureMenu();
    measurePacking();
    measureProduct();
    return 0;
}
