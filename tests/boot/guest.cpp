#include "guest.h"

#include "descriptor.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <arpa/inet.h>
#include <ctime>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

constexpr int DeadlineMs = 10000;
constexpr char Wires[] = "/run/unit";

GuestUnit *g_unit = nullptr;

namespace
{
/// As on a unit, the folder of the backlight is a link from its class to its device.
void makeKernelFiles()
{
    constexpr char Thermal[] = "/sys/devices/virtual/thermal";
    constexpr char Class[] = "/sys/class/backlight";
    if (::mount("tmpfs", Thermal, "tmpfs", 0, "mode=755") != 0 ||
        ::mount("tmpfs", Class, "tmpfs", 0, "mode=755") != 0 ||
        ::mkdir("/sys/devices/virtual/thermal/backlight.8", 0755) != 0 ||
        ::symlink("../../devices/virtual/thermal/backlight.8", "/sys/class/backlight/backlight.8") != 0) {
        qFatal("cannot make the kernel's files");
    }
}
} // namespace

GuestUnit::GuestUnit(int ports)
    : m_hardware(Wires, ports)
{
    makeKernelFiles();
    const sim::Result made = m_hardware.made().then([] { return unitFiles().make(); });
    if (!made.isDone()) {
        qFatal("no virtual unit: %s", qPrintable(made.failure));
    }
    for (const sim::WireRow &row : sim::Wires) {
        if (::symlink(m_hardware.path(row.wire).c_str(), row.device) != 0) {
            qFatal("cannot link %s", row.device);
        }
    }
}

bool GuestUnit::boardShows(const std::vector<int> &inputs, qint64 sinceUs)
{
    std::vector<uint16_t> expected;
    for (const int input : inputs) {
        expected.push_back(static_cast<uint16_t>(input - 1));
    }
    return m_hardware.waitFor(
        [&] {
            const std::vector<sim::SwitchFrame> frames = m_hardware.board().switchFrames();
            return !frames.empty() && frames.back().timeUs > sinceUs && frames.back().inputs == expected;
        },
        DeadlineMs);
}

QByteArray GuestUnit::talk(sim::Wire wire, const QByteArray &text)
{
    QByteArray received;
    m_hardware.send(wire, text.toStdString());
    m_hardware.waitFor(
        [&] {
            received += QByteArray::fromStdString(m_hardware.takeReceived(wire));
            return received.contains('.');
        },
        DeadlineMs);
    return received;
}

QByteArray GuestUnit::faults() const
{
    QByteArray text;
    for (const auto &faults : {m_hardware.board().faults(), m_hardware.gpio().faults(),
                               m_hardware.lcd().faults(), m_hardware.keys().faults()}) {
        for (const sim::WireFault &fault : faults) {
            text += QByteArray::fromStdString(fault.text) + '\n';
        }
    }
    return text;
}

QByteArray shell(const QByteArray &command)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromUtf8(command)});
    process.waitForFinished(60000);
    return process.readAll().trimmed();
}

QByteArray serviceProperty(const char *name)
{
    return shell(QByteArray("systemctl show --value mxcontrol -p ") + name);
}

qint64 serviceTimeUs(const char *name)
{
    return serviceProperty(name).toLongLong();
}

qint64 saidAtUs(const char *word)
{
    // The line may follow others that end with a carriage return.
    const QByteArray line =
        shell("journalctl -b -a -o short-monotonic --no-pager _PID=" + serviceProperty("MainPID") +
              " | grep '" + QByteArray(word) + " 2' | tail -n 1");
    return qint64(line.mid(1, line.indexOf(']') - 1).trimmed().toDouble() * 1e6);
}

int programId()
{
    return serviceProperty("MainPID").toInt();
}

sim::UnitFiles unitFiles()
{
    return sim::UnitFiles("");
}

QByteArray answer(const QByteArray &command)
{
    const sim::Descriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in unit{};
    unit.sin_family = AF_INET;
    unit.sin_port = htons(5000);
    unit.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const timeval timeout{30, 0};
    ::setsockopt(client.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    char reply[1024];
    if (::connect(client.get(), reinterpret_cast<const sockaddr *>(&unit), sizeof unit) != 0 ||
        ::send(client.get(), command.constData(), size_t(command.size()), MSG_NOSIGNAL) != command.size()) {
        return {};
    }
    const auto size = ::recv(client.get(), reply, sizeof reply, 0);
    return size > 0 ? QByteArray(reply, int(size)) : QByteArray();
}

bool holdsWithin(int timeoutMs, const std::function<bool()> &condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.hasExpired(timeoutMs)) {
            return false;
        }
        QThread::msleep(5);
    }
    return true;
}

bool askPicture(const QByteArray &name)
{
    QFile file(QStringLiteral("/host/asked"));
    if (!file.open(QIODevice::WriteOnly) || file.write(name) != name.size()) {
        return false;
    }
    file.close();
    return file.rename(QStringLiteral("/host/request")) &&
           holdsWithin(DeadlineMs, [] { return !QFile::exists(QStringLiteral("/host/request")); });
}

qint64 nowUs()
{
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * Q_INT64_C(1000000) + now.tv_nsec / 1000;
}
