#include "bench.h"
#include "gpiolines.h"
#include "lcdrecords.h"
#include "lcdtext.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <chrono>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

using sim::Wire;
using namespace std::chrono_literals;

namespace
{
const QByteArray functionSet = lcdWire("F8", "36");

/// Sends lines, dark: in each a row of the upper half, then one of the lower.
QByteArray lines(int first, int last)
{
    QByteArray records;
    for (int line = first; line <= last; ++line) {
        records += lcdMessage(lcdWire("F8", QByteArray::number(0x80 + line, 16) + "80")) +
                   lcdMessage(lcdWire("FA", QByteArray(64, 'F')));
    }
    return records;
}

int darkDots(const sim::LcdModule &lcd)
{
    int count = 0;
    for (int dot = 0; dot < 128 * 64; ++dot) {
        count += lcd.isLit(dot % 128, dot / 128);
    }
    return count;
}

struct LcdOutOfReset : Bench<sim::LcdModule> {
    LcdOutOfReset() { end.setResetLine(1, 0); }
};
} // namespace

/// The hardware of the front panel.
class TestPanelHardware : public QObject
{
    Q_OBJECT

private slots:
    void aFrameIsAllLinesInOrder()
    {
        LcdOutOfReset lcd;
        lcd.feed(lcdOn() + lines(0, 31));
        lcd.feed((lines(0, 8) + lines(10, 10) + lines(10, 31)).repeated(3));
        QCOMPARE(lcd.end.frameCount(), quint64(1));
        lcd.feed(lines(0, 0) + lines(0, 31) + lines(0, 31));
        QCOMPARE(lcd.end.frameCount(), quint64(3));
        // Data wraps within its line.
        lcd.feed(lcdMessage(lcdWire("F8", "838F")) + lcdMessage(lcdWire("FA", "0000FF00")));
        QCOMPARE(darkDots(lcd.end), 128 * 64 - 16 - 8);
        QVERIFY(lcd.end.isLit(7, 3) && !lcd.end.isLit(8, 3) && !lcd.end.isLit(112, 35));
        QCOMPARE(lcd.heard, QStringList());
    }

    /// Each row is followed by what turns the display on and darkens dots at the top left.
    void badRequests_data()
    {
        columns<QByteArray>("records");
        const auto row = [](const QByteArray &records, const char *fault) { ::row(fault, records); };
        const QByteArray on = lcdMessage(functionSet);
        const auto sent = [&on](const QByteArray &transfers) {
            QByteArray records = on;
            for (const QByteArray &transfer : transfers.split(' ')) {
                records += lcdMessage(QByteArray::fromHex(transfer));
            }
            return records;
        };
        const auto with = [](auto field, auto value) {
            spi_ioc_transfer transfer = lcdTransfer();
            transfer.*field = value;
            return lcdMessage(functionSet, 0, transfer);
        };
        row(sent("F8"), "an empty LCD transfer");
        row(sent("F93060"), "an LCD transfer begins with F9");
        row(sent("F830"), "an LCD transfer ends within a byte");
        row(sent("F83061"), "an LCD transfer with the halves 30 61");
        row(sent("F830208000"), "LCD instruction 80, but not the extended set");
        row(sent("F880008000 F83020 FA00000000"), "LCD data, but not the extended set");
        row(sent("F80010"), "an unknown LCD instruction 01");
        row(sent("F8400040104000"), "the LCD is scrolled by 1");
        row(sent("F8A0008000"), "an LCD address in line 32");
        row(sent("F890F09000"), "an LCD address in column 16");
        row(sent("F880004000"), "LCD instruction 40 in place of the address's column");
        row(sent("FA00000000"), "LCD data without an address");
        row(sent("F880008000 FA0000"), "LCD data of 1 bytes");
        row(lcdRecord(SPI_IOC_WR_MODE, "\x03") + on, "an SPI transfer in mode 3");
        row(lcdRecord(SPI_IOC_WR_MODE32, bytesOf(uint32_t(0x107))) + on, "an SPI transfer in mode 263");
        row(lcdRecord(SPI_IOC_WR_BITS_PER_WORD, "\x10") + on, "an SPI transfer in words of 16 bits");
        row(lcdRecord(SPI_IOC_WR_MAX_SPEED_HZ, bytesOf(0)) + on, "an SPI transfer at 0 Hz");
        row(with(&spi_ioc_transfer::speed_hz, 2500001), "an SPI transfer at 2500001 Hz");
        row(with(&spi_ioc_transfer::delay_usecs, 71), "an SPI transfer that leaves 71 us");
        row(with(&spi_ioc_transfer::rx_buf, 1), "an SPI transfer that reads");
        row(with(&spi_ioc_transfer::tx_buf, 0), "an SPI transfer that sends nothing");
        row(lcdRecord(SPI_IOC_MESSAGE(2), QByteArray(64, '\0')), "an SPI message of 2 transfers");
        row(lcdRecord(SPI_IOC_WR_LSB_FIRST, "\x01"), "an unknown SPI request 1073834754");
        row(QByteArray(24, '\xFF') + on, "an SPI request of 4294967295 bytes");
    }
    void badRequests()
    {
        QFETCH(QByteArray, records);
        LcdOutOfReset lcd;
        lcd.feed(lcdBus() + lcdRecord(SPI_IOC_RD_MODE, "") + records);
        QCOMPARE(lcd.heard, QStringList(QString("fault    ") + QTest::currentDataTag()));
        QCOMPARE(lcd.end.isOn(), records.startsWith(lcdMessage(functionSet)));
        lcd.feed(lcdRecord(SPI_IOC_WR_BITS_PER_WORD, "\x08") + lcdOn() + lcdCorner(0xF0));
        QVERIFY(lcd.end.isLit(0, 0) && lcd.end.isLit(3, 0) && !lcd.end.isLit(4, 0));
        QCOMPARE(lcd.heard.size(), 1);
    }

    void resetTurnsItOffAndKeepsTheDots()
    {
        LcdOutOfReset lcd;
        lcd.feed(lcdOn());
        const int noise = darkDots(lcd.end);
        QVERIFY(noise > 2000 && noise < 6000);
        // The reader learns of a reset before it gets to read what was sent before.
        lcd.end.setResetLine(0, 100);
        lcd.end.setResetLine(1, 200);
        QCOMPARE(darkDots(lcd.end), 0);
        lcd.feed(lcdMessage(lcdWire("F8", "80"), 99) + lcdMessage(functionSet, 200));
        QCOMPARE(darkDots(lcd.end), noise);
        lcd.feed(lcdMessage(lcdWire("F8", "8080"), 300));
        lcd.end.setResetLine(0, 1000);
        lcd.feed(lcdMessage(functionSet, 1001));
        lcd.end.setResetLine(1, 1002);
        lcd.feed(lcdMessage(lcdWire("F8", "80"), 1003) + lcdMessage(functionSet, 1004));
        lcd.feed(lcdMessage(lcdWire("FA", "FFFF"), 1005));
        QCOMPARE(darkDots(lcd.end), noise);
        QCOMPARE(lcd.heard, QStringList({"fault    an LCD transfer during reset",
                                         "fault    LCD instruction 80, but not the extended set",
                                         "fault    LCD data without an address"}));
    }

    void ledBytes()
    {
        Bench<sim::KeyPanel> keys;
        QByteArray lit;
        for (int key = 0; key < 128; ++key) {
            keys.feed(QByteArray(1, char(0x80 | key)));
            lit += keys.end.isLit(key) ? QByteArray::number(key) + " " : "";
        }
        QVERIFY(lit.startsWith("1 2 ") && lit.contains(" 39 40 51 52 ") &&
                lit.endsWith(" 90 111 112 113 114 115 116 ") && lit.count(' ') == 40 + 40 + 6);
        QCOMPARE(keys.heard.size(), 128 - 86);
        keys.feed("\7");
        QVERIFY(!keys.end.isLit(7) && keys.end.isLit(9));
        keys.feed(QByteArray(1, '\0'));
        QVERIFY(!keys.end.isLit(9));
    }

    void gpioRequests()
    {
        const auto request = [](uint32_t level, uint64_t line, uint32_t size = sizeof(IoctlRecord)) {
            return bytesOf(IoctlRecord{size, level, line, 0});
        };
        Bench<sim::GpioLines> gpio;
        gpio.feed(request(0, 4) + request(1, 31) + request(1, 4) + request(1, 4) + request(0, 4));
        // The buzzer's line tells when it rises, no other line does.
        QCOMPARE(gpio.heard, QStringList({"", "", "buzzer", "", ""}));
        QVERIFY(gpio.end.level(31) == 1 && gpio.end.level(4) == 0);
        gpio.feed(request(1, 32) + request(1, 1ull << 63) + request(2, 4) + request(1, 4, 23));
        QCOMPARE(gpio.heard.filter("fault").size(), 4);
    }

    void theTerminalShowsWhatIsSteadyAndNew()
    {
        LcdOutOfReset lcd;
        sim::LcdText text;
        const auto sees = [&](int64_t nowMs) { return !text.look(lcd.end, nowMs).empty(); };
        QVERIFY(!sees(0) && !sees(1000)); // dark, as before
        lcd.feed(lcdOn() + lcdCorner(1));
        QVERIFY(!sees(2000) && !sees(2099));
        lcd.feed(lcdCorner(2));
        QVERIFY(!sees(2100) && !sees(2199) && sees(2200));
        lcd.feed(lcdCorner(3));
        QVERIFY(!sees(3000));
        lcd.feed(lcdCorner(2));
        QVERIFY(!sees(3050) && !sees(4000)); // back to what was told
    }

    void requestsComeOverTwoFifos()
    {
        TestUnit unit(8);
        sim::VirtualUnit &hardware = unit.hardware();
        const sim::Descriptor gpio(open(hardware.path(Wire::Gpio).c_str(), O_RDWR | O_CLOEXEC));
        const sim::Descriptor spi(open(hardware.path(Wire::Spi).c_str(), O_RDWR | O_CLOEXEC));
        const auto put = [&spi](const QByteArray &bytes) {
            QCOMPARE(int(write(spi.get(), bytes.constData(), size_t(bytes.size()))), bytes.size());
        };
        put(lcdBus());
        for (int i = 0; i < 300; ++i) { // fills the SPI's at times
            QVERIFY(ioctl(gpio.get(), 0ul, 1) == 0 && ioctl(gpio.get(), 1ul, 1) == 0);
            const auto now = std::chrono::steady_clock::now().time_since_epoch() / 1us;
            put(lcdMessage(functionSet, now) + lines(0, 31));
        }
        QVERIFY(hardware.waitFor([&] { return hardware.lcd().frameCount() == 300; }, 10000));
        QCOMPARE(unit.faults(), QByteArray());
    }
};

static const RegisteredTest<TestPanelHardware> registered;

#include "testpanelhardware.moc"
