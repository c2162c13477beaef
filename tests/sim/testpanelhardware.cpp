#include "eventtext.h"
#include "gpiolines.h"
#include "lcdrecords.h"
#include "lcdtext.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <chrono>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

using sim::Wire;
using namespace std::chrono_literals;

namespace
{
constexpr int deadlineMs = 10000;
const QByteArray functionSet = lcdWire("F8", "36");

/// What a picture for the tests has dark.
bool isDark(int x, int y)
{
    return (x * x + 3 * y + x * y) % 7 < 3;
}

/// Sends lines of that picture: in each a row of the upper half, then one of the lower.
QByteArray lines(int first, int last)
{
    QByteArray records;
    for (int line = first; line <= last; ++line) {
        QByteArray bytes(32, 0);
        for (int dot = 0; dot < 256; ++dot) {
            const bool dark = isDark(dot % 128, line + dot / 128 * 32);
            bytes[dot / 8] = char(uint8_t(bytes.at(dot / 8)) << 1 | dark);
        }
        records += lcdMessage(lcdWire("F8", QByteArray::number(0x80 + line, 16) + "80")) +
                   lcdMessage(lcdWire("FA", bytes.toHex()));
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

/// An LCD, out of reset, and what its observer hears, in words.
struct Bench {
    Bench() { lcd.setResetLine(1, 0); }

    void feed(const QByteArray &bytes)
    {
        lcd.feed(reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()), 0);
    }

    sim::EventText words;
    QString heard;
    sim::LcdModule lcd{
        [this](const sim::WireEvent &event) { heard += QString::fromStdString(words.line(event)); }};
};
} // namespace

/// The hardware of the front panel.
class TestPanelHardware : public QObject
{
    Q_OBJECT

private slots:
    void picturesInPieces()
    {
        const QByteArray all = lcdOn() + lines(0, 31);
        Bench bench;
        for (int at = 0; at < all.size(); at += 7) {
            bench.feed(all.mid(at, 7));
        }
        bench.feed((lines(0, 8) + lines(10, 10) + lines(10, 31)).repeated(3));
        QCOMPARE(bench.lcd.frameCount(), quint64(1));
        bench.feed(lines(0, 0) + lines(0, 31) + lines(0, 31));
        QCOMPARE(bench.lcd.frameCount(), quint64(3));
        QCOMPARE(bench.lcd.transfers().size(), size_t(130));
        // Data wraps within its line.
        bench.feed(lcdMessage(lcdWire("F8", "838F")) + lcdMessage(lcdWire("FA", "FFFF00FF")));
        for (int dot = -1; dot <= 128 * 64; ++dot) {
            const int x = dot % 128;
            const int y = dot / 128;
            const bool isSet = (y == 3 && x >= 8 && x < 16) || (y == 35 && x >= 112);
            const bool isCleared = dot < 0 || y > 63 || (y == 3 && x < 8);
            QCOMPARE(bench.lcd.isLit(x, y), isSet || (!isCleared && isDark(x, y)));
        }
        QCOMPARE(bench.heard, QString());
    }

    /// Each row is followed by what turns the display on and darkens dots at the top left.
    void badRequests_data()
    {
        QTest::addColumn<QByteArray>("records");
        const auto row = [](const QByteArray &records, const char *fault) {
            QTest::newRow(fault) << records;
        };
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
        row(sent(""), "an empty LCD transfer");
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
        row(sent("F8800080008000 FA00000000"), "LCD data without an address");
        row(sent("F880008000 FA0000"), "LCD data of 1 bytes");
        row(lcdRecord(SPI_IOC_WR_MODE, "\x03") + on, "an SPI transfer in mode 3");
        row(lcdRecord(SPI_IOC_WR_MODE32, bytesOf(uint32_t(0x107))) + on, "an SPI transfer in mode 263");
        row(lcdRecord(SPI_IOC_WR_MODE, "") + on, "an SPI transfer in mode 0");
        row(lcdRecord(SPI_IOC_WR_BITS_PER_WORD, "\x10") + on, "an SPI transfer in words of 16 bits");
        row(with(&spi_ioc_transfer::bits_per_word, 16), "an SPI transfer in words of 16 bits");
        row(lcdRecord(SPI_IOC_WR_MAX_SPEED_HZ, bytesOf(0)) + on, "an SPI transfer at 0 Hz");
        row(with(&spi_ioc_transfer::speed_hz, 2500001), "an SPI transfer at 2500001 Hz");
        row(with(&spi_ioc_transfer::delay_usecs, 71), "an SPI transfer that leaves 71 us");
        row(with(&spi_ioc_transfer::rx_buf, 1), "an SPI transfer that reads");
        row(with(&spi_ioc_transfer::tx_buf, 0), "an SPI transfer that sends nothing");
        row(lcdRecord(SPI_IOC_MESSAGE(1), ""), "an SPI transfer that sends nothing");
        row(lcdRecord(SPI_IOC_MESSAGE(2), QByteArray(64, '\0')), "an SPI message of 2 transfers");
        row(lcdRecord(SPI_IOC_WR_LSB_FIRST, "\x01"), "an unknown SPI request 1073834754");
        row(QByteArray(24, '\xFF') + on, "an SPI request of 4294967295 bytes");
        row(QByteArray(24, '\0') + on, "an SPI request of 0 bytes");
    }
    void badRequests()
    {
        QFETCH(QByteArray, records);
        Bench bench;
        bench.feed(lcdBus() + lcdRecord(SPI_IOC_RD_MODE, ""));
        bench.feed(records);
        QCOMPARE(bench.heard, QString("fault    ") + QTest::currentDataTag());
        QCOMPARE(bench.lcd.isOn(), records.startsWith(lcdMessage(functionSet)));
        bench.feed(lcdRecord(SPI_IOC_WR_BITS_PER_WORD, "\x08") + lcdOn() + lcdCorner(0xF0));
        QVERIFY(bench.lcd.isLit(0, 0) && bench.lcd.isLit(3, 0) && !bench.lcd.isLit(4, 0));
        QCOMPARE(bench.lcd.faults().size(), size_t(1));
    }

    void resetTurnsItOffAndKeepsTheDots()
    {
        Bench bench;
        bench.feed(lcdOn());
        const int noise = darkDots(bench.lcd);
        QVERIFY(noise > 2000 && noise < 6000);
        const auto on = [](int64_t timeUs) { return lcdMessage(functionSet, timeUs); };
        // The reader learns of a reset before it gets to read what was sent before.
        bench.lcd.setResetLine(0, 100);
        bench.lcd.setResetLine(1, 200);
        QCOMPARE(darkDots(bench.lcd), 0);
        bench.feed(lcdMessage(lcdWire("F8", "80"), 99) + on(200));
        QCOMPARE(darkDots(bench.lcd), noise);
        bench.feed(lcdMessage(lcdWire("F8", "8080"), 300));
        bench.lcd.setResetLine(0, 1000);
        bench.feed(on(1001));
        bench.lcd.setResetLine(1, 1002);
        bench.feed(lcdMessage(lcdWire("F8", "80"), 1003));
        QCOMPARE(darkDots(bench.lcd), 0);
        bench.feed(on(1004) + lcdMessage(lcdWire("FA", "FFFF"), 1005));
        QCOMPARE(bench.heard, QString("fault    an LCD transfer during reset"
                                      "fault    LCD instruction 80, but not the extended set"
                                      "fault    LCD data without an address"));
        QCOMPARE(darkDots(bench.lcd), noise);
        bench.feed(lcdMessage(lcdWire("F8", "34"), 1005));
        QVERIFY(!bench.lcd.isOn() && !sim::LcdModule().isOn());
    }

    void ledBytes()
    {
        sim::KeyPanel keys;
        QByteArray lit;
        for (int key = 0; key < 128; ++key) {
            const auto on = uint8_t(0x80 | key);
            keys.feed(&on, 1, 0);
            lit += keys.isLit(key) ? QByteArray::number(key) + " " : "";
        }
        QVERIFY(lit.startsWith("1 2 ") && lit.contains(" 39 40 51 52 ") &&
                lit.endsWith(" 90 111 112 113 114 115 116 ") && lit.count(' ') == 40 + 40 + 6);
        QCOMPARE(keys.faults().size(), size_t(128 - 86));
        const uint8_t off[] = {7, 0};
        keys.feed(off, 1, 0);
        QVERIFY(!keys.isLit(7) && keys.isLit(9));
        keys.feed(off + 1, 1, 0);
        QVERIFY(!keys.isLit(9) && !keys.isLit(-1) && !keys.isLit(128) && keys.byteCount() == 128 + 2);
    }

    void gpioRequests()
    {
        const auto request = [](uint32_t level, uint64_t line, uint32_t size = sizeof(IoctlRecord)) {
            return bytesOf(IoctlRecord{size, level, line, 0});
        };
        const QByteArray records = request(0, 4) + request(1, 31) + request(1, 4) + request(1, 4) +
                                   request(0, 4) + request(1, 4) + request(1, 32) + request(1, 1ull << 63) +
                                   request(2, 4) + request(1, 4, 23) + request(0, 4);
        sim::EventText words;
        QString heard;
        sim::GpioLines lines(
            [&](const sim::WireEvent &event) { heard += words.line(event).c_str() + QString("."); });
        for (const QByteArray &piece : {records.left(20), records.mid(20)}) {
            lines.feed(reinterpret_cast<const uint8_t *>(piece.constData()), size_t(piece.size()), 0);
        }
        QCOMPARE(lines.level(31), 1);
        QCOMPARE(lines.level(4), 0);
        QCOMPARE(lines.history().size(), size_t(7));
        QCOMPARE(lines.faults().size(), size_t(4));
        // The buzzer's line tells when it rises, no other line does.
        QVERIFY2(heard.startsWith("..buzzer...buzzer.fault"), qPrintable(heard));
    }

    void theTerminalShowsWhatIsSteadyAndNew()
    {
        Bench bench;
        sim::LcdText text;
        const auto sees = [&](int64_t nowMs) { return !text.look(bench.lcd, nowMs).empty(); };
        QVERIFY(!sees(0) && !sees(1000)); // dark, as before
        bench.feed(lcdOn() + lcdCorner(1));
        QVERIFY(!sees(2000) && !sees(2099));
        bench.feed(lcdCorner(2));
        QVERIFY(!sees(2100) && !sees(2199));
        QVERIFY(sees(2200));
        bench.feed(lcdCorner(3));
        QVERIFY(!sees(3000));
        bench.feed(lcdCorner(2));
        QVERIFY(!sees(3050) && !sees(4000)); // back to what was told
        bench.lcd.setResetLine(0, 0);
        QVERIFY(!sees(5000) && sees(5100));
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
        const QByteArray frame = lines(0, 31);
        put(lcdBus());
        for (int i = 0; i < 300; ++i) { // fills the SPI's at times
            QVERIFY(ioctl(gpio.get(), 0ul, 1) == 0 && ioctl(gpio.get(), 1ul, 1) == 0);
            const auto now = std::chrono::steady_clock::now().time_since_epoch() / 1us;
            put(lcdMessage(functionSet, now) + frame);
        }
        QVERIFY(hardware.waitFor([&] { return hardware.lcd().frameCount() == 300; }, deadlineMs));
        QCOMPARE(hardware.takeReceived(Wire::Spi).size(), size_t(1 << 20));
        QCOMPARE(ioctl(gpio.get(), 0ul, 1), 0);
        put(QByteArray(24, 'x'));
        QVERIFY(hardware.waitFor([&] { return !hardware.lcd().faults().empty(); }, deadlineMs));
        QVERIFY(!hardware.lcd().isOn());
        QCOMPARE(unit.faults(), QByteArray("lcd: an SPI request of 2021161080 bytes\n"));
    }
};

static const RegisteredTest<TestPanelHardware> registered;

#include "testpanelhardware.moc"
