#pragma once

#include <functional>

class QObject;

/// Lets SIGINT and SIGTERM end the event loop, so that the program leaves the way it does otherwise.
/// Construct it first of all: the signals are then blocked in every thread and read from one descriptor.
class SignalQuit
{
public:
    SignalQuit();
    SignalQuit(const SignalQuit &) = delete;
    SignalQuit &operator=(const SignalQuit &) = delete;
    ~SignalQuit();

    /// Has the event loop call `quit` on a signal, also on one that has come meanwhile, as long as `receiver`
    /// lives.
    void watch(QObject &receiver, std::function<void()> quit) const;

private:
    const int m_descriptor;
};
