#include "devicenode.h"
#include "eventtext.h"
#include "gpiolines.h"
#include "ioctlrecord.h"
#include "lcdrecords.h"
#include "testregistry.h"

#include <QTemporaryDir>
#include <QTest>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <linux/spi/spidev.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{
int64_t nowUs()
{
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::microseconds(1);
}
} // namespace

/// The interposer, linked into this program, and the GPIO lines that eat its records.
class TestInterposer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QByteArray fifo = m_folder.filePath("device").toLocal8Bit();
        QCOMPARE(mkfifo(fifo.constData(), 0600), 0);
        m_fifo.reset(open(fifo.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    }

    void gpioRequestsReachTheLines()
    {
        for (const auto &[level, line] : {std::pair(0ul, 4), {1, 31}, {1, 4}, {1, 4}, {0, 4}, {1, 4}}) {
            QCOMPARE(ioctl(m_fifo.get(), level, line), 0);
        }
        QByteArray records = takeRecords();
        for (const IoctlRecord &bad :
             {IoctlRecord{24, 1, 32, 0}, {24, 1, 1ull << 63, 0}, {24, 2, 4, 0}, {23, 1, 4, 0}}) {
            records += bytesOf(bad);
        }
        records += bytesOf(IoctlRecord{24, 0, 4, 0});
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

    void spiRequestsAreCopied()
    {
        const QByteArray sent("\x10\x00\x7F", 3);
        spi_ioc_transfer transfers[2] = {};
        transfers[0].len = 5; // reads only
        transfers[1].tx_buf = reinterpret_cast<uintptr_t>(sent.constData());
        transfers[1].len = 3;
        const int64_t earliestUs = nowUs();
        QCOMPARE(ioctl(m_fifo.get(), SPI_IOC_MESSAGE(2), transfers), 8);
        const QByteArray record = takeRecords();
        IoctlRecord head = {24 + sizeof transfers + 3, SPI_IOC_MESSAGE(2),
                            reinterpret_cast<uintptr_t>(transfers), 0};
        memcpy(&head.timeUs, record.constData() + offsetof(IoctlRecord, timeUs), sizeof head.timeUs);
        QCOMPARE(record, bytesOf(head) + bytesOf(transfers) + sent);
        QVERIFY(head.timeUs >= earliestUs && head.timeUs <= nowUs());
    }

private:
    QByteArray takeRecords() const
    {
        char bytes[4096];
        return QByteArray(bytes, static_cast<int>(read(m_fifo.get(), bytes, sizeof bytes)));
    }

    QTemporaryDir m_folder;
    sim::Descriptor m_fifo;
};

static const RegisteredTest<TestInterposer> registered;

#include "testinterposer.moc"
