#include "filedescriptor.h"
#include "framememory.h"
#include "frontpanel.h"
#include "guihooks.h"
#include "hooks.h"
#include "keypad.h"
#include "lcd.h"
#include "lcdhooks.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <fcntl.h>

namespace
{
constexpr int DeadlineMs = 10000;

/// A unit whose panel has ended before the control object goes, however the test ends.
struct RunningPanel : RunningUnit {
    using RunningUnit::RunningUnit;
    ~RunningPanel() { LCD_GUI_DeInit(); }
};

/// As a terminal driver sets up a serial port.
void cook(const QString &device)
{
    const FileDescriptor port(::open(device.toLocal8Bit().constData(), O_RDWR | O_NOCTTY));
    termios attributes{};
    tcgetattr(port.get(), &attributes);
    attributes.c_iflag |= ICRNL;
    attributes.c_oflag |= OPOST;
    attributes.c_lflag |= ICANON | ECHO | ISIG;
    tcsetattr(port.get(), TCSANOW, &attributes);
}
} // namespace

/// The way from the frame memory to the LCD, the panel's devices and its threads.
class TestPanelDevices : public QObject
{
    Q_OBJECT

private slots:
    void frameMemoryIsEndless()
    {
        BSP_LCD_SetCursor(-1, 62);
        BSP_LCD_WriteData(1);
        BSP_LCD_WriteData(0x1FF);
        QVERIFY(BSP_LCD_GetPixel(127, 62) == 1 && LCD_L0_GetPixelIndex(0, 63) == 0xFF);
        BSP_LCD_SetPixel(3 - 128, 2 + 64, 7);
        QCOMPARE(int(BSP_LCD_GetPixel(3, 2)), 7);
    }

    void startedAndStoppedAgainAndAgain()
    {
        RunningPanel unit(8);
        LCD_GUI_DeInit();
        sim::VirtualUnit &hardware = unit.hardware();
        for (const char *device : {"/dev/ttymxc0", "/dev/ttymxc1"}) {
            cook(unit.path(device));
        }
        const int descriptors = openDescriptors() + 2; // the serial links stay open
        for (const bool stops : {true, false, false, true}) {
            const uint64_t before = hardware.lcd().frameCount();
            QCOMPARE(LCD_GUI_Init(), 0);
            QVERIFY(hardware.waitFor([&] { return hardware.lcd().frameCount() > before; }, DeadlineMs));
            if (stops) {
                LCD_GUI_DeInit();
            }
        }
        QTRY_COMPARE(openDescriptors(), descriptors);
        QVERIFY((fcntl(fd_keypad_dev, F_GETFL) & fcntl(fd_iruart_dev, F_GETFL) & O_NONBLOCK) != 0);
        QVERIFY(hardware.panelLight());
        lcd_off();
        QVERIFY(hardware.waitFor([&] { return !hardware.panelLight(); }, DeadlineMs));
        const termios keys = hardware.attributes(sim::Wire::Keys);
        QVERIFY(keys.c_iflag == IGNPAR && keys.c_oflag == 0 && cfgetispeed(&keys) == B115200);
        QVERIFY((keys.c_lflag & (ICANON | ECHO | ISIG)) == 0);
        QCOMPARE(hardware.attributes(sim::Wire::Infrared).c_iflag, keys.c_iflag);
        QCOMPARE(unit.faults(), QByteArray());
    }

    /// The controller's reset and set-up. After an instruction it rests.
    void setUpOfTheController()
    {
        RunningPanel unit(41); // too many for its keys
        sim::VirtualUnit &hardware = unit.hardware();
        QCOMPARE(LCD_GUI_Init(), 0);
        QVERIFY(hardware.waitFor([&] { return hardware.lcd().frameCount() >= 2; }, DeadlineMs));
        const std::vector<sim::LcdTransfer> transfers = hardware.lcd().transfers();
        QCOMPARE(transfers[0].bytes, (std::vector<uint8_t>{0xF8, 0x30, 0x60}));
        QCOMPARE(transfers[1].bytes, (std::vector<uint8_t>{0xF8, 0x40, 0x00}));
        for (size_t i = 0; i + 1 < transfers.size(); ++i) {
            const int64_t restUs = transfers[i + 1].timeUs - transfers[i].timeUs;
            QVERIFY(transfers[i].bytes[0] == 0xFA || restUs >= 100);
        }
        int64_t resetUs[2] = {};
        for (const sim::LineWrite &write : hardware.gpio().history()) {
            resetUs[write.level] = write.line == 1 ? write.timeUs : resetUs[write.level];
        }
        QVERIFY(resetUs[1] - resetUs[0] >= 10000 && transfers[0].timeUs - resetUs[1] >= 10000);
        hardware.pressKey(115);
        LCD_GUI_DeInit();
        QVERIFY(hardware.takeReceived(sim::Wire::Keys).empty());
        QCOMPARE(unit.faults(), QByteArray());
    }

    void missingDevices()
    {
        // Without GPIO the panel runs, although the LCD then stays in its reset.
        for (const auto &[wire, result] : {std::pair(sim::Wire::Spi, -1), {sim::Wire::Gpio, 0}}) {
            TestUnit unit;
            unit.hardware().unplug(wire);
            unit.start(false);
            const int opened = LCD_GUI_Init();
            LCD_GUI_DeInit();
            QCOMPARE(opened, result);
        }
    }
};

static const RegisteredTest<TestPanelDevices> registered;

#include "testdevices.moc"
