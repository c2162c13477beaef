#include "eventtext.h"
#include "ioctlrecord.h"
#include "keypanel.h"
#include "lcdmodule.h"
#include "product.h"
#include "testregistry.h"
#include "testunit.h"

#include <QTest>
#include <fcntl.h>
#include <linux/fb.h>
#include <linux/spi/spidev.h>
#include <sys/ioctl.h>

using sim::Wire;

namespace
{
constexpr int deadlineMs = 10000;
constexpr int frameBufferSize = 1024 * 600 * 2;

template <class T>
QByteArray bytesOf(const T &what)
{
    return QByteArray(reinterpret_cast<const char *>(&what), sizeof what);
}

QByteArray record(unsigned long request, const QByteArray &payload, int64_t timeUs = 0)
{
    return bytesOf(
               IoctlRecord{uint32_t(sizeof(IoctlRecord)) + payload.size(), uint32_t(request), 1, timeUs}) +
           payload;
}

spi_ioc_transfer goodTransfer()
{
    spi_ioc_transfer transfer = {};
    transfer.tx_buf = 1;
    transfer.delay_usecs = 72;
    return transfer;
}

QByteArray message(const QByteArray &bytes, spi_ioc_transfer transfer = goodTransfer(), int64_t timeUs = 0)
{
    transfer.len = uint32_t(bytes.size());
    return record(SPI_IOC_MESSAGE(1), bytesOf(transfer) + bytes, timeUs);
}

/// A transfer on the wire: the synchronisation byte, then each byte in halves. All in hexadecimal.
QByteArray halves(const char *sync, const QByteArray &bytes)
{
    QByteArray wire = QByteArray::fromHex(sync);
    for (const char byte : QByteArray::fromHex(bytes)) {
        wire += char(byte & 0xF0);
        wire += char(uint8_t(byte) << 4);
    }
    return wire;
}

const QByteArray settings = record(SPI_IOC_WR_MODE, QByteArray("\x07")) +
                            record(SPI_IOC_RD_MODE, QByteArray()) +
                            record(SPI_IOC_WR_BITS_PER_WORD, QByteArray("\x08")) +
                            record(SPI_IOC_WR_MAX_SPEED_HZ, bytesOf(uint32_t(2500000)));
const QByteArray functionSet = halves("F8", "36");
const QByteArray firstLine = halves("F8", "8080");

/// What a picture for the tests has dark.
bool isDark(int x, int y)
{
    return (x * x + 3 * y + x * y) % 7 < 3;
}

/// That picture's display line as hexadecimal bytes: row `line`, then row `line` + 32.
QByteArray lineData(int line)
{
    QByteArray bytes(32, 0);
    for (int dot = 0; dot < 256; ++dot) {
        if (isDark(dot % 128, line + dot / 128 * 32)) {
            bytes[dot / 8] = char(bytes[dot / 8] | 0x80 >> dot % 8);
        }
    }
    return bytes.toHex();
}

QByteArray lineAt(int line)
{
    return message(halves("F8", QByteArray::number(0x80 + line, 16) + "80")) +
           message(halves("FA", lineData(line)));
}

QByteArray picture()
{
    QByteArray records;
    for (int line = 0; line < 32; ++line) {
        records += lineAt(line);
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
    QStringList heard;
    sim::LcdModule lcd{
        [this](const sim::WireEvent &event) { heard += QString::fromStdString(words.line(event)); }};
};

/// A device of the unit, opened as the program does it.
struct Device : sim::Descriptor {
    explicit Device(const std::string &path)
        : Descriptor(open(path.c_str(), O_RDWR | O_CLOEXEC))
    {
    }
};
} // namespace

/// The hardware of the front panel, and the frame buffer.
class TestPanelHardware : public QObject
{
    Q_OBJECT

private slots:
    void pictureInPiecesOfAnySize()
    {
        const QByteArray all = settings + message(functionSet) + picture();
        for (const int piece : {1, 7, 64, 100000}) {
            Bench bench;
            for (int at = 0; at < all.size(); at += piece) {
                QCOMPARE(bench.lcd.frameCount(), uint64_t(0));
                bench.feed(all.mid(at, piece));
            }
            QCOMPARE(bench.heard, QStringList());
            for (int dot = -1; dot <= 128 * 64; ++dot) {
                const int x = dot % 128;
                const int y = dot / 128;
                QCOMPARE(bench.lcd.isLit(x, y), dot >= 0 && y < 64 && isDark(x, y));
            }
            QCOMPARE(bench.lcd.frameCount(), uint64_t(1));
            QCOMPARE(bench.lcd.transfers().size(), size_t(65));
            QVERIFY(bench.lcd.transfers().front().bytes ==
                    std::vector<uint8_t>(functionSet.begin(), functionSet.end()));
        }
    }

    void onlyWholeFramesInOrderCount()
    {
        for (const auto &[first, count] :
             {std::pair(QByteArray(), 1), {lineAt(0), 1}, {lineAt(5), 1}, {picture(), 2}}) {
            Bench bench;
            bench.feed(settings + message(functionSet) + first + picture() + lineAt(31));
            QCOMPARE(int(bench.lcd.frameCount()), count);
        }
        Bench bench;
        bench.feed(settings + message(functionSet) + picture().replace(lineAt(9), lineAt(10)).repeated(3));
        QCOMPARE(int(bench.lcd.frameCount()), 0);
        QCOMPARE(bench.lcd.transfers().size(), size_t(130));
    }

    void dataWrapsWithinItsLine()
    {
        Bench bench;
        bench.feed(settings + message(functionSet) + picture() + message(halves("F8", "838F")) +
                   message(halves("FA", "FFFF00FF")));
        for (int x = 0; x < 128; ++x) {
            QCOMPARE(bench.lcd.isLit(x, 3), x < 16 ? x >= 8 : isDark(x, 3));
            QCOMPARE(bench.lcd.isLit(x, 35), x >= 112 || isDark(x, 35));
            QCOMPARE(bench.lcd.isLit(x, 4), isDark(x, 4));
        }
    }

    /// Each row of transfers, then one that darkens the dots at the top left.
    void badTransfers()
    {
        using Transfers = std::vector<QByteArray>;
        for (const auto &[transfers, faults] :
             {std::pair(Transfers{""}, QStringList{"an empty LCD transfer"}),
              {{"\xF8"}, {"an empty LCD transfer"}},
              {{halves("F9", "36")}, {"an LCD transfer begins with F9"}},
              {{halves("F8", "36").left(2)}, {"an LCD transfer ends within a byte"}},
              {{QByteArray::fromHex("F83160")}, {"an LCD transfer with the halves 31 60"}},
              {{QByteArray::fromHex("F83061")}, {"an LCD transfer with the halves 30 61"}},
              {{halves("F8", "3080")}, {"LCD instruction 80, but not the extended set"}},
              {{halves("F8", "8080"), halves("F8", "30"), halves("FA", "0000")},
               {"LCD data, but not the extended set"}},
              {{halves("F8", "01")}, {"an unknown LCD instruction 01"}},
              {{halves("F8", "40414036")}, {"the LCD is scrolled by 1"}},
              {{halves("F8", "A080")}, {"an LCD address in line 32"}},
              {{halves("F8", "9F90")}, {"an LCD address in column 16"}},
              {{halves("F8", "8040")}, {"LCD instruction 40 in place of the address's column"}},
              {{halves("FA", "0000")}, {"LCD data without an address"}},
              {{halves("F8", "808080"), halves("FA", "0000")}, {"LCD data without an address"}},
              {{firstLine, halves("FA", "00")}, {"LCD data of 1 bytes"}}}) {
            Bench bench;
            bench.feed(settings + message(functionSet));
            for (const QByteArray &transfer : transfers) {
                bench.feed(message(transfer));
            }
            bench.feed(message(functionSet) + message(firstLine) + message(halves("FA", "FF80")));
            QCOMPARE(bench.heard, QStringList("fault    " + faults.join("")));
            QCOMPARE(bench.lcd.faults().size(), size_t(1));
            QVERIFY(bench.lcd.isLit(0, 0) && bench.lcd.isLit(8, 0) && !bench.lcd.isLit(9, 0));
        }
    }

    /// Each row turns the display on, wrongly; then it is turned on well.
    void badUseOfTheBus()
    {
        const auto with = [](auto field, auto value) {
            spi_ioc_transfer transfer = goodTransfer();
            transfer.*field = value;
            return message(functionSet, transfer);
        };
        const QByteArray good = message(functionSet);
        const spi_ioc_transfer two[2] = {};
        for (const auto &[records, fault] :
             {std::pair(record(SPI_IOC_WR_MODE, "\x03") + good, "an SPI transfer in mode 3"),
              {record(SPI_IOC_WR_MODE32, bytesOf(uint32_t(0x107))) + good, "an SPI transfer in mode 263"},
              {record(SPI_IOC_WR_MODE, "") + good, "an SPI transfer in mode 0"},
              {record(SPI_IOC_WR_BITS_PER_WORD, "\x10") + good, "an SPI transfer in words of 16 bits"},
              {with(&spi_ioc_transfer::bits_per_word, 16), "an SPI transfer in words of 16 bits"},
              {record(SPI_IOC_WR_MAX_SPEED_HZ, bytesOf(2500001)) + good, "an SPI transfer at 2500001 Hz"},
              {record(SPI_IOC_WR_MAX_SPEED_HZ, bytesOf(0)) + good, "an SPI transfer at 0 Hz"},
              {with(&spi_ioc_transfer::speed_hz, 2500001), "an SPI transfer at 2500001 Hz"},
              {with(&spi_ioc_transfer::delay_usecs, 71), "an SPI transfer that leaves 71 us"},
              {with(&spi_ioc_transfer::rx_buf, 1), "an SPI transfer that reads"},
              {with(&spi_ioc_transfer::tx_buf, 0), "an SPI transfer that sends nothing"},
              {record(SPI_IOC_MESSAGE(1), ""), "an SPI transfer that sends nothing"},
              {record(SPI_IOC_MESSAGE(2), bytesOf(two)), "an SPI message of 2 transfers"},
              {record(SPI_IOC_WR_LSB_FIRST, "\x01"), "an unknown SPI request 1073834754"},
              {QByteArray(24, '\xFF') + good, "an SPI request of 4294967295 bytes"},
              {QByteArray(24, '\0') + good, "an SPI request of 0 bytes"}}) {
            Bench bench;
            bench.feed(settings);
            bench.feed(records);
            QCOMPARE(bench.heard, QStringList(QString("fault    ") + fault));
            QVERIFY(!bench.lcd.isOn());
            bench.feed(settings + good);
            QVERIFY(bench.lcd.isOn());
        }
    }

    void resetTurnsItOffAndKeepsTheDots()
    {
        sim::LcdModule fresh;
        Bench bench;
        bench.lcd = fresh; // still in reset
        const auto faults = [&] { return bench.lcd.faults().size(); };
        bench.feed(settings + message(functionSet));
        QCOMPARE(faults(), size_t(1));
        bench.lcd.setResetLine(1, 0);
        QVERIFY(!bench.lcd.isOn());
        bench.feed(message(functionSet));
        QVERIFY(bench.lcd.isOn());
        const int noise = darkDots(bench.lcd);
        QVERIFY2(noise > 2000 && noise < 6000, qPrintable(QString::number(noise)));
        bench.feed(picture() + message(firstLine));
        const int dark = darkDots(bench.lcd);
        QCOMPARE(faults(), size_t(1));

        bench.lcd.setResetLine(0, 0);
        QCOMPARE(darkDots(bench.lcd), 0);
        bench.lcd.setResetLine(1, 0);
        bench.feed(message(halves("F8", "80")));
        QCOMPARE(faults(), size_t(2));
        bench.feed(message(functionSet) + message(halves("FA", "FFFF")));
        QCOMPARE(faults(), size_t(3));
        QCOMPARE(darkDots(bench.lcd), dark);
        bench.feed(message(halves("F8", "34")));
        QVERIFY(!bench.lcd.isOn());
    }

    /// The reader learns of a reset before it gets to read what was sent before.
    void transfersKeepTheirPlaceAroundAReset()
    {
        const auto sent = [](const QByteArray &transfer, int64_t timeUs) {
            return message(transfer, goodTransfer(), timeUs);
        };
        Bench bench;
        bench.feed(settings + sent(functionSet, 10));
        for (int64_t us = 100; us < 1000; us += 100) {
            bench.lcd.setResetLine(0, us);
            bench.lcd.setResetLine(1, us + 20);
            QVERIFY(!bench.lcd.isOn());
            bench.feed(sent(firstLine, us - 1) + sent(functionSet, us + 20));
            QVERIFY(bench.lcd.isOn());
        }
        QCOMPARE(bench.heard, QStringList());
        bench.lcd.setResetLine(0, 1000);
        bench.feed(sent(functionSet, 1001));
        QCOMPARE(bench.heard, QStringList("fault    an LCD transfer during reset"));
    }

    void ledBytes()
    {
        sim::KeyPanel keys;
        for (int key = 0; key < 128; ++key) {
            const auto on = uint8_t(0x80 | key);
            keys.feed(&on, 1, 0);
        }
        QByteArray lit;
        for (int key = -1; key <= 128; ++key) {
            lit += keys.isLit(key) ? QByteArray::number(key) + " " : "";
        }
        QVERIFY(lit.startsWith("1 2 ") && lit.contains(" 39 40 51 52 ") &&
                lit.endsWith(" 90 111 112 113 114 115 116 "));
        QCOMPARE(lit.count(' '), 40 + 40 + 6);
        QCOMPARE(keys.faults().size(), size_t(127 - 86));
        QCOMPARE(keys.faults().at(0).text, std::string("an LED byte for key 41, which has none"));
        for (const auto &[byte, stays] :
             {std::pair(uint8_t(7), true), {uint8_t(8), true}, {uint8_t(0), false}}) {
            keys.feed(&byte, 1, 0);
            QVERIFY(!keys.isLit(byte));
            QCOMPARE(keys.isLit(9), stays);
        }
        QCOMPARE(keys.byteCount(), uint64_t(128 + 3));
    }

    void theUnitHasAFrontPanel()
    {
        TestUnit unit(8);
        sim::VirtualUnit &hardware = unit.hardware();
        const Device keys(hardware.path(Wire::Keys));
        const Device remote(hardware.path(Wire::Infrared));
        for (const int key : {0, 1, 127, 128, -1}) {
            hardware.pressKey(key);
            hardware.releaseKey(key);
        }
        hardware.pressRemote('u');
        char bytes[5];
        QCOMPARE(int(read(keys.get(), bytes, 5)), 4);
        QCOMPARE(QByteArray(bytes, 4), QByteArray("\x81\x01\xFF\x7F"));
        QCOMPARE(int(read(remote.get(), bytes, 5)), 1);
        QCOMPARE(bytes[0], 'u');

        QCOMPARE(int(write(keys.get(), "\x85\xA9", 2)), 2);
        QVERIFY(hardware.waitFor([&] { return hardware.keys().isLit(5); }, deadlineMs));
        const Device gpio(hardware.path(Wire::Gpio));
        for (const int line : {2, 3}) {
            QVERIFY(!hardware.panelLight());
            QCOMPARE(ioctl(gpio.get(), 1ul, line), 0);
        }
        QVERIFY(hardware.waitFor([&] { return hardware.panelLight(); }, deadlineMs));

        QCOMPARE(int(write(Device(hardware.path(Wire::Spi)).get(), QByteArray(24, 'x').constData(), 24)), 24);
        QVERIFY(hardware.waitFor([&] { return !hardware.lcd().faults().empty(); }, deadlineMs));
        QCOMPARE(unit.faults(), QByteArray("lcd: an SPI request of 2021161080 bytes\n"
                                           "keys: an LED byte for key 41, which has none\n"));
    }

    /// GPIO and SPI arrive over two FIFOs, the SPI's full at times.
    void resetsAndFramesInAHurry()
    {
        TestUnit unit(8);
        sim::VirtualUnit &hardware = unit.hardware();
        const Device gpio(hardware.path(Wire::Gpio));
        const Device spi(hardware.path(Wire::Spi));
        uint8_t mode = 7;
        uint32_t speed = 1000000;
        QCOMPARE(ioctl(spi.get(), SPI_IOC_WR_MODE, &mode), 0);
        QCOMPARE(ioctl(spi.get(), SPI_IOC_WR_MAX_SPEED_HZ, &speed), 0);
        const auto send = [&](const QByteArray &bytes) {
            spi_ioc_transfer transfer = goodTransfer();
            transfer.tx_buf = reinterpret_cast<uintptr_t>(bytes.constData());
            transfer.len = uint32_t(bytes.size());
            return ioctl(spi.get(), SPI_IOC_MESSAGE(1), &transfer) == bytes.size();
        };
        for (int frame = 0; frame < 300; ++frame) {
            for (const auto &[level, lineNumber] : {std::pair(1ul, 2), {0, 1}, {1, 1}}) {
                QCOMPARE(ioctl(gpio.get(), level, lineNumber), 0);
            }
            QVERIFY(send(functionSet));
            for (int line = 0; line < 32; ++line) {
                QVERIFY(send(halves("F8", QByteArray::number(0x80 + line, 16) + "80")));
                QVERIFY(send(halves("FA", lineData(0))));
            }
        }
        QVERIFY(hardware.waitFor([&] { return hardware.lcd().frameCount() == 300; }, deadlineMs));
        QCOMPARE(unit.faults(), QByteArray());
        QCOMPARE(hardware.takeReceived(Wire::Spi).size(), size_t(1 << 20));
    }

    void aFileIsTheFrameBuffer()
    {
        TestUnit unit(8, {{"system/keypad", "1"}});
        QCOMPARE(unit.fileContent("/dev/fb0"), QByteArray(frameBufferSize, '\0'));
        const Product product(
            true,
            QStringLiteral("linuxfb:fb=%1:tty=/dev/null:nographicsmodeswitch").arg(unit.path("/dev/fb0")));
        QByteArray dots;
        const auto row = [&](int y) { return dots.mid(y * 2048, 2 * 128); };
        QVERIFY(runUntil([&] {
            dots = unit.fileContent("/dev/fb0");
            return row(63) == QByteArray(2 * 128, '\xFF');
        }));
        // The start picture is black on white, and nothing else is white.
        QCOMPARE(dots.size(), frameBufferSize);
        QVERIFY(row(52).contains(QByteArray(2 * 90, '\0')));
        QVERIFY(dots.at(2 * 128) != '\xFF' && dots.at(64 * 2048) != '\xFF');

        unit.hardware().removeFrameBuffer();
        QVERIFY(!QFile::exists(unit.path("/dev/fb0")));
        QVERIFY(ioctl(Device("/dev/null").get(), FBIOGET_VSCREENINFO, dots.data()) < 0);
    }
};

static const RegisteredTest<TestPanelHardware> registered;

#include "testpanelhardware.moc"
