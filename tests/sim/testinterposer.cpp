#include "gpiolines.h"
#include "ioctlrecord.h"
#include "testregistry.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/spi/spidev.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

/// The interposer, linked into this program, and the GPIO lines that eat its records.
class TestInterposer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void gpioRequestsReachTheLines();
    void gpioFaults_data();
    void gpioFaults();
    void spiSettingIsCopied();
    void spiMessageIsCopied();
    void nullIsNotFollowed();
    void fullFifoIsAnError();
    void otherRequestsReachTheKernel();
    void otherFilesReachTheKernel();

private:
    QByteArray takeRecords() const;

    QTemporaryDir m_folder;
    int m_fd = -1;
};

namespace
{
QByteArray recordHead(uint32_t size, uint32_t request, uint64_t argument)
{
    const IoctlRecord head = {size, request, argument};
    return QByteArray(reinterpret_cast<const char *>(&head), sizeof head);
}

QByteArray bytesOf(const spi_ioc_transfer &transfer)
{
    return QByteArray(reinterpret_cast<const char *>(&transfer), sizeof transfer);
}

uint64_t address(const void *of)
{
    return reinterpret_cast<uintptr_t>(of);
}

void feed(sim::GpioLines &lines, const QByteArray &bytes, int64_t nowUs = 0)
{
    lines.feed(reinterpret_cast<const uint8_t *>(bytes.constData()), static_cast<size_t>(bytes.size()),
               nowUs);
}
} // namespace

void TestInterposer::init()
{
    const QByteArray fifo = QFile::encodeName(m_folder.filePath("device"));
    mkfifo(fifo.constData(), 0600);
    m_fd = open(fifo.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(m_fd >= 0);
}

void TestInterposer::cleanup()
{
    close(m_fd);
}

QByteArray TestInterposer::takeRecords() const
{
    QByteArray bytes(1 << 17, '\0');
    bytes.resize(
        static_cast<int>(std::max<ssize_t>(0, read(m_fd, bytes.data(), static_cast<size_t>(bytes.size())))));
    return bytes;
}

void TestInterposer::gpioRequestsReachTheLines()
{
    QCOMPARE(ioctl(m_fd, 1, 8), 0);
    QCOMPARE(ioctl(m_fd, 1, 31), 0);
    QCOMPARE(ioctl(m_fd, 0, 31), 0);
    const QByteArray records = takeRecords();

    sim::GpioLines lines;
    QCOMPARE(lines.level(8), 0);
    feed(lines, records.left(20), 5); // the second record comes in two pieces
    feed(lines, records.mid(20), 6);
    QCOMPARE(lines.level(8), 1);
    QCOMPARE(lines.level(31), 0);
    QCOMPARE(lines.level(32), -1);
    QCOMPARE(lines.level(-1), -1);
    QVERIFY(lines.faults().empty());

    const std::vector<sim::LineWrite> history = lines.history();
    QCOMPARE(history.size(), size_t(3));
    QCOMPARE(history[0].line, 8);
    QCOMPARE(history[0].timeUs, int64_t(5));
    QCOMPARE(history[1].level, 1);
    QCOMPARE(history[1].timeUs, int64_t(6));
}

void TestInterposer::gpioFaults_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("line 32") << recordHead(16, 1, 32);
    QTest::newRow("line far out") << recordHead(16, 1, uint64_t(1) << 63);
    QTest::newRow("level 2") << recordHead(16, 2, 4);
    QTest::newRow("another size") << recordHead(15, 1, 4);
}

void TestInterposer::gpioFaults()
{
    QFETCH(QByteArray, record);
    sim::GpioLines lines;
    feed(lines, record);
    QCOMPARE(lines.faults().size(), size_t(1));
    QVERIFY(lines.history().empty());
    feed(lines, recordHead(16, 1, 4));
    QCOMPARE(lines.level(4), 1);
    QCOMPARE(lines.faults().size(), size_t(1));
}

void TestInterposer::spiSettingIsCopied()
{
    const uint32_t speed = 0x01234567;
    QCOMPARE(ioctl(m_fd, SPI_IOC_WR_MAX_SPEED_HZ, &speed), 0);
    QCOMPARE(takeRecords(),
             recordHead(20, SPI_IOC_WR_MAX_SPEED_HZ, address(&speed)) + QByteArray::fromHex("67452301"));

    uint8_t mode = 3;
    QCOMPARE(ioctl(m_fd, SPI_IOC_RD_MODE, &mode), 0);
    QCOMPARE(takeRecords(), recordHead(16, SPI_IOC_RD_MODE, address(&mode)));
    QCOMPARE(mode, uint8_t(3));
}

void TestInterposer::spiMessageIsCopied()
{
    const QByteArray sent("\x10\x00\x7F", 3);
    spi_ioc_transfer transfers[3] = {};
    transfers[0].tx_buf = address(sent.constData());
    transfers[0].len = 3;
    transfers[1].len = 5; // reads only
    transfers[2].tx_buf = address(sent.constData() + 1);
    transfers[2].len = 1;

    QCOMPARE(ioctl(m_fd, SPI_IOC_MESSAGE(3), transfers), 9);
    const QByteArray payload =
        bytesOf(transfers[0]) + sent + bytesOf(transfers[1]) + bytesOf(transfers[2]) + sent.mid(1, 1);
    QCOMPARE(takeRecords(),
             recordHead(static_cast<uint32_t>(16 + payload.size()), SPI_IOC_MESSAGE(3), address(transfers)) +
                 payload);
}

void TestInterposer::nullIsNotFollowed()
{
    for (const unsigned long request : {SPI_IOC_WR_MODE, SPI_IOC_WR_MAX_SPEED_HZ, SPI_IOC_MESSAGE(1)}) {
        QCOMPARE(ioctl(m_fd, request, nullptr), 0);
        QCOMPARE(takeRecords(), recordHead(16, static_cast<uint32_t>(request), 0));
    }
}

void TestInterposer::fullFifoIsAnError()
{
    int accepted = 0;
    while (ioctl(m_fd, 1, 4) == 0 && accepted < 1 << 20) {
        ++accepted;
    }
    QCOMPARE(errno, EAGAIN);
    QCOMPARE(takeRecords().size(), 16 * accepted);
}

void TestInterposer::otherRequestsReachTheKernel()
{
    QCOMPARE(write(m_fd, "abc", 3), ssize_t(3));
    int waiting = 0;
    QCOMPARE(ioctl(m_fd, FIONREAD, &waiting), 0);
    QCOMPARE(waiting, 3);
    QCOMPARE(ioctl(m_fd, 2, 4), -1); // no level, no request of a FIFO either
    QCOMPARE(takeRecords(), QByteArray("abc"));
}

void TestInterposer::otherFilesReachTheKernel()
{
    QFile file("/dev/null");
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(ioctl(file.handle(), 1, 4), -1);
    QCOMPARE(errno, ENOTTY);
    QCOMPARE(ioctl(-1, 1, 4), -1);
    QCOMPARE(errno, EBADF);
}

static const RegisteredTest<TestInterposer> registered;

#include "testinterposer.moc"
