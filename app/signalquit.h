#pragma once

class QCoreApplication;

/// Ends the event loop on SIGINT or SIGTERM, so that the program leaves the way it does otherwise. Construct
/// it first of all: the signals are then blocked in every thread and read from one descriptor.
class SignalQuit
{
public:
    SignalQuit();
    SignalQuit(const SignalQuit &) = delete;
    SignalQuit &operator=(const SignalQuit &) = delete;
    ~SignalQuit();

    /// Lets a signal quit `application`, also one that has come meanwhile.
    void watch(QCoreApplication &application) const;

private:
    const int m_descriptor;
};
