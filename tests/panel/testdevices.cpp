#include "filedescriptor.h"
#include "framememory.h"
#include "frontpanel.h"
#include "guihooks.h"
#include "hooks.h"
#include "keypad.h"
#include "lcd.h"
#include "lcdframe.h"
#include "lcdhooks.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <array>
#include <fcntl.h>
#include <random>

namespace
{
constexpr int DeadlineMs = 10000;

/// A unit whose panel has ended before the control object goes, however the test ends.
struct RunningPanel : TestUnit {
    explicit RunningPanel(int ports = 8)
        : TestUnit(ports)
    {
        start(false);
    }
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

bool isLitInMemory(int x, int y)
{
    return pLcdBuffer[x + LCD_XSIZE * y] == 0;
}
} // namespace

/// The way from the frame memory to the LCD, the panel's devices and its threads.
class TestPanelDevices : public QObject
{
    Q_OBJECT

private slots:
    void frameBytes()
    {
        std::mt19937 random;
        for (std::uint16_t &dot : pLcdBuffer) {
            dot = std::array{0, 0, 1, 2, 0x100, 0x8000, 0xFFFF}[random() % 7];
        }
        LcdFrame::Rows rows;
        LcdFrame::pack(pLcdBuffer, rows);
        for (int line = 0; line < 32; ++line) {
            const LcdFrame::DataTransfer data = LcdFrame::data(rows, line);
            for (int dot = 0; dot < 256; ++dot) {
                const quint8 *halves = &data[1] + dot / 8 * 2;
                const int byte = halves[0] | halves[1] >> 4;
                QCOMPARE((byte >> (7 - dot % 8) & 1) != 0,
                         isLitInMemory(dot % 128, dot < 128 ? line : line + 32));
            }
        }
    }

    void frameMemoryCursorAndFlag()
    {
        LCD_L0_Init();
        nLcdBufferChanged = 0;
        BSP_LCD_SetPixel(3 - 128, 2 + 64, 7); // modulo the size, as all places
        QVERIFY(BSP_LCD_GetPixel(3, 2) == 7 && nLcdBufferChanged == 0);
        BSP_LCD_SetCursor(127, 62);
        BSP_LCD_WriteData(1);
        BSP_LCD_WriteData(2);
        QVERIFY(nLcdBufferChanged == 1);
        QVERIFY(BSP_LCD_GetPixel(127, 62) == 1 && BSP_LCD_GetPixel(0, 63) == 2);
        BSP_LCD_SetCursor(-1, -1);
        BSP_LCD_WriteData(0x1FF);
        QCOMPARE(int(BSP_LCD_ReadData()), 0); // at (0, 0)
        QCOMPARE(LCD_L0_GetPixelIndex(127, 63), 0xFF);
    }

    void startedAndStoppedAgainAndAgain()
    {
        RunningPanel unit;
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
        QCOMPARE(openDescriptors(), descriptors);
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

    /// The controller's reset and set-up.
    void setUpOfTheController()
    {
        RunningPanel unit;
        sim::VirtualUnit &hardware = unit.hardware();
        QCOMPARE(LCD_GUI_Init(), 0);
        QVERIFY(hardware.waitFor([&] { return hardware.lcd().transfers().size() > 20; }, DeadlineMs));
        const std::vector<sim::LcdTransfer> transfers = hardware.lcd().transfers();
        QCOMPARE(transfers[0].bytes, (std::vector<uint8_t>{0xF8, 0x30, 0x60}));
        QCOMPARE(transfers[1].bytes, (std::vector<uint8_t>{0xF8, 0x40, 0x00}));
        for (size_t i = 0; i + 1 < transfers.size(); ++i) {
            const int64_t restUs = transfers[i + 1].timeUs - transfers[i].timeUs;
            QVERIFY(transfers[i].bytes[0] == 0xFA || restUs >= 100); // after an instruction
        }
        QByteArray levels;
        std::vector<int64_t> timesUs;
        for (const sim::LineWrite &write : hardware.gpio().history()) {
            if (write.line >= 1 && write.line <= 3) {
                levels += QByteArray::number(write.line) + '=' + QByteArray::number(write.level) + ' ';
                timesUs.push_back(write.timeUs);
            }
        }
        QCOMPARE(levels, QByteArray("1=0 1=1 2=1 3=1 "));
        QVERIFY(timesUs[1] - timesUs[0] >= 10000);
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

    void tooManyPorts()
    {
        RunningPanel unit(41);
        QCOMPARE(LCD_GUI_Init(), 0);
        QVERIFY(unit.hardware().waitFor([&] { return unit.hardware().lcd().frameCount() >= 2; }, DeadlineMs));
        unit.hardware().pressKey(115);
        LCD_GUI_DeInit();
        QVERIFY(unit.hardware().takeReceived(sim::Wire::Keys).empty());
        QCOMPARE(unit.faults(), QByteArray());
    }
};

static const RegisteredTest<TestPanelDevices> registered;

#include "testdevices.moc"
