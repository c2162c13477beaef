#include "guest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QTcpSocket>
#include <QThread>
#include <chrono>
#include <unistd.h>

GuestUnit *g_unit = nullptr;

namespace
{
/// As on a unit, the folder of the backlight is a link from its class to its device.
constexpr char MakeKernelFiles[] = R"(set -e
    mount -t tmpfs -o mode=755 tmpfs /sys/devices/virtual/thermal
    mount -t tmpfs -o mode=755 tmpfs /sys/class/backlight
    mkdir /sys/devices/virtual/thermal/backlight.8
    ln -s ../../devices/virtual/thermal/backlight.8 /sys/class/backlight
    echo made)";
} // namespace

GuestUnit::GuestUnit(int ports)
    : TestUnit(new sim::VirtualUnit("/run/unit", ports))
{
    if (shell(MakeKernelFiles) != "made") {
        qFatal("cannot make the kernel's files");
    }
    const sim::Result made = hardware().made().then([] { return unitFiles().make(); });
    if (!made.isDone()) {
        qFatal("no virtual unit: %s", qPrintable(made.failure));
    }
    for (const sim::WireRow &row : sim::Wires) {
        if (::symlink(hardware().path(row.wire).c_str(), row.device) != 0) {
            qFatal("cannot link %s", row.device);
        }
    }
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
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), 5000);
    client.write(command);
    client.waitForReadyRead(30000);
    return client.readAll();
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
    shell("printf " + name + " >/host/asked && mv /host/asked /host/request");
    return holdsWithin(10000, [] { return !QFile::exists(QStringLiteral("/host/request")); });
}

qint64 nowUs()
{
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::microseconds(1);
}
