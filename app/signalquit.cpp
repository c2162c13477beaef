#include "signalquit.h"

#include <QSocketNotifier>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

namespace
{
int blockQuitSignals()
{
    sigset_t quitSignals;
    sigemptyset(&quitSignals);
    sigaddset(&quitSignals, SIGINT);
    sigaddset(&quitSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &quitSignals, nullptr);
    return signalfd(-1, &quitSignals, SFD_NONBLOCK | SFD_CLOEXEC);
}
} // namespace

SignalQuit::SignalQuit()
    : m_descriptor(blockQuitSignals())
{
}

SignalQuit::~SignalQuit()
{
    ::close(m_descriptor);
}

void SignalQuit::watch(QObject &receiver, std::function<void()> quit) const
{
    auto *notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, &receiver);
    QObject::connect(notifier, &QSocketNotifier::activated, &receiver, std::move(quit));
}
