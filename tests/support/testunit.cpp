#include "testunit.h"

#include "mxsite.h"
#include "sharedobjects.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QUdpSocket>
#include <QtDebug>
#include <algorithm>
#include <limits>
#include <random>
#include <sys/msg.h>

constexpr int DeadlineMs = 10000;
constexpr qint64 ShortestGapUs = 540000; ///< a frame that was late itself may be followed a little sooner

TestUnit::TestUnit(int ports, const Settings &settings)
{
    qputenv("MX_ROOT", m_folder.path().toUtf8());
    qputenv("MX_TCP_PORT", QByteArray::number(freeTcpPort()));
    qputenv("MX_UDP_PORT", QByteArray::number(freeUdpPorts()));
    m_hardware.reset(new sim::VirtualUnit(m_folder.path().toStdString(), ports));
    Settings all = {{"system/port", std::to_string(ports)}, {"system/scene", "10"}};
    for (const auto &setting : settings) {
        all[setting.first] = setting.second;
    }
    const sim::Result made = m_hardware->made().then([&] { return m_hardware->files().writeSettings(all); });
    if (!made.isDone()) {
        qFatal("no virtual unit: %s", qPrintable(made.failure));
    }
}

TestUnit::TestUnit(sim::VirtualUnit *hardware)
    : m_hardware(hardware)
{
}

TestUnit::~TestUnit()
{
    stop();
    // Left by programs that ran as processes of their own: their control object is never deleted.
    SharedObjects leftovers;
    leftovers.open();
    leftovers.close();
    leftovers.remove();
}

void TestUnit::start(bool run, const SceneStore::Pause &pause)
{
    g_mxComm = new QMxComm(true, pause);
    if (g_mxConfig == nullptr) {
        qFatal("no shared memory");
    }
    if (run) {
        g_mxComm->start();
    }
}

void TestUnit::stop()
{
    delete g_mxComm;
    g_mxComm = nullptr;
}

QByteArray TestUnit::talk(sim::Wire wire, const QByteArray &text, int replies)
{
    m_hardware->send(wire, text.toStdString());
    return receiveUntil(wire, [&](const QByteArray &received) { return received.count('.') >= replies; });
}

QByteArray TestUnit::receive(sim::Wire wire, int count)
{
    return receiveUntil(wire, [&](const QByteArray &received) { return received.size() >= count; });
}

QByteArray TestUnit::receiveUntil(sim::Wire wire, const std::function<bool(const QByteArray &)> &complete)
{
    QByteArray received;
    m_hardware->waitFor(
        [&] {
            received += QByteArray::fromStdString(m_hardware->takeReceived(wire));
            return complete(received);
        },
        DeadlineMs);
    return received;
}

int TestUnit::run(QByteArray line)
{
    return comm().MxOnUartCommand(line.data(), static_cast<quint16>(line.size()));
}

bool TestUnit::boardShows(const std::vector<int> &inputs, qint64 sinceUs)
{
    std::vector<uint16_t> expected;
    for (const int input : inputs) {
        expected.push_back(static_cast<uint16_t>(input - 1));
    }
    return m_hardware->waitFor(
        [&] {
            const sim::SwitchingBoard board = m_hardware->board();
            return board.routing() == expected &&
                   (sinceUs == 0 || board.switchFrames().back().timeUs > sinceUs);
        },
        DeadlineMs);
}

QByteArray TestUnit::faults() const
{
    const bool isEarly = smallestGapUs() < ShortestGapUs;
    QByteArray text;
    for (const auto &[wire, faults] : {std::pair("board", m_hardware->board().faults()),
                                       {"gpio", m_hardware->gpio().faults()},
                                       {"lcd", m_hardware->lcd().faults()},
                                       {"keys", m_hardware->keys().faults()}}) {
        for (const sim::WireFault &fault : faults) {
            if (!isEarly && fault.text.find("switch frame too early") != std::string::npos) {
                continue;
            }
            text += wire + QByteArray(": ") + QByteArray::fromStdString(fault.text) + "\n";
        }
    }
    return text;
}

qint64 TestUnit::smallestGapUs(int frames) const
{
    std::vector<qint64> begun;
    for (const sim::LineWrite &write : m_hardware->gpio().history()) {
        if (write.line == 8 && write.level == 1) {
            begun.push_back(write.timeUs);
        }
    }
    qint64 smallest = std::numeric_limits<qint64>::max();
    const int all = int(begun.size());
    for (int i = qMax(1, all - qMin(all, frames)); i < all; ++i) {
        smallest = qMin(smallest, begun[size_t(i)] - begun[size_t(i) - 1]);
    }
    return smallest;
}

QByteArray TestUnit::boardBytes() const
{
    const std::vector<uint8_t> all = m_hardware->board().bytes();
    return QByteArray(reinterpret_cast<const char *>(all.data()), int(all.size()));
}

int TestUnit::rises(int line) const
{
    const std::vector<sim::LineWrite> all = m_hardware->gpio().history();
    return int(std::count_if(all.begin(), all.end(), [line](const sim::LineWrite &write) {
        return write.line == line && write.level == 1;
    }));
}

QByteArray TestUnit::map() const
{
    QByteArrayList inputs;
    for (int output = 0; output < g_mxConfig->port; ++output) {
        inputs.append(QByteArray::number(static_cast<quint16>(g_mxConfig->map[output] + 1)));
    }
    return inputs.join(',');
}

QString TestUnit::path(const char *devicePath) const
{
    return m_folder.path() + QLatin1String(devicePath);
}

QByteArray TestUnit::fileContent(const char *devicePath) const
{
    QFile file(path(devicePath));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestUnit::writeFile(const char *devicePath, const QByteArray &content) const
{
    QFile file(path(devicePath));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", devicePath);
    }
}

void TestUnit::makeFolder(const char *devicePath) const
{
    QDir().mkpath(path(devicePath));
}

bool runUntil(const std::function<bool()> &condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.hasExpired(DeadlineMs)) {
            return false;
        }
        QCoreApplication::processEvents();
        QThread::usleep(200);
    }
    return true;
}

bool sendRequest(const QByteArray &text)
{
    // In front is the message's type, which is above 0.
    const QByteArray message = QByteArray("\1\0\0\0\0\0\0\0", sizeof(long)) + text;
    const int queue = msgget(MxSite::requestQueueKey(), 0);
    return msgsnd(queue, message.constData(), size_t(text.size()), 0) == 0;
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

namespace
{
/// Below the ports that the system gives to clients: one of those might be taken before it is used.
quint16 anyPort()
{
    static std::mt19937 generator{std::random_device{}()};
    return static_cast<quint16>(std::uniform_int_distribution<>(10000, 32000)(generator));
}
} // namespace

quint16 freeTcpPort()
{
    QTcpServer server;
    while (!server.listen(QHostAddress(QHostAddress::AnyIPv4), anyPort())) {
    }
    return server.serverPort();
}

quint16 freeUdpPorts()
{
    for (;;) {
        const quint16 first = anyPort();
        QUdpSocket sockets[8];
        int bound = 0;
        while (bound < 8 && sockets[bound].bind(QHostAddress(QHostAddress::AnyIPv4),
                                                static_cast<quint16>(first + bound))) {
            ++bound;
        }
        if (bound == 8) {
            return first;
        }
    }
}
