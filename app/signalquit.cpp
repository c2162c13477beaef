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
    const int descriptor = signalfd(-1, &quitSignals, SFD_NONBLOCK | SFD_CLOEXEC);
    // Without a descriptor they end the program at once, which is better than not at all.
    if (descriptor >= 0) {
        pthread_sigmask(SIG_BLOCK, &quitSignals, nullptr);
    }
    return descriptor;
}
} // namespace

SignalQuit::SignalQuit()
    : m_descriptor(blockQuitSignals())
{
}

SignalQuit::~SignalQuit()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

void SignalQuit::watch(QObject &receiver, std::function<void()> quit) const
{
    if (m_descriptor < 0) {
        return;
    }
    auto *notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, &receiver);
    QObject::connect(notifier, &QSocketNotifier::activated, &receiver, std::move(quit));
}
