#include "devicenode.h"
#include "eventtext.h"
#include "gpiolines.h"
#include "ioctlrecord.h"
#include "lcdrecords.h"
#include "testregistry.h"

#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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
