#pragma once

#include "mxshm.h"
#include "qmxcomm.h"
#include "virtualunit.h"

#include <QTemporaryDir>
#include <climits>
#include <functional>
#include <map>
#include <memory>

/// A virtual unit in a folder, with keys and with network ports of its own, and the program's control object
/// on it. One at a time in a process.
class TestUnit
{
public:
    using Settings = std::map<std::string, std::string>;

    /// Makes the hardware and its settings file; the program's side begins with `start`.
    explicit TestUnit(int ports = 8, const Settings &settings = {});
    ~TestUnit();
    TestUnit(const TestUnit &) = delete;
    TestUnit &operator=(const TestUnit &) = delete;

    /// Makes the control object, whose recalls wait by `pause`; `run` also starts its thread.
    void start(bool run = true, const SceneStore::Pause &pause = QThread::msleep);
    /// Deletes the control object, which removes the shared objects.
    void stop();

    sim::VirtualUnit &hardware() { return *m_hardware; }
    QMxComm &comm() { return *g_mxComm; }
    MxShm &shm() { return *g_mxConfig; }

    /// Sends text to a control port and waits for as many replies (ended by "."). \return what has come
    QByteArray talk(sim::Wire wire, const QByteArray &text, int replies = 1);
    /// Waits until the program has written `count` bytes to the wire. \return what has come
    QByteArray receive(sim::Wire wire, int count);
    /// Runs one line through the interpreter. \return its result
    int run(QByteArray line);

    /// Waits until the board shows this routing (1-based inputs, 0 for none), or until it times out; with
    /// `sinceUs` until it has got it in a frame after that time.
    bool boardShows(const std::vector<int> &inputs, qint64 sinceUs = 0);
    /// The faults that the far ends of the wires have recorded, one a line; empty when there are none.
    /// Whether a frame was too early is seen by when the program began it: a busy machine reads the one
    /// before late.
    QByteArray faults() const;
    /// The shortest time between the beginnings of two of the last `frames`, and the one before, by the line
    /// that the program raises for each. \return microseconds, INT64_MAX when there are no two
    qint64 smallestGapUs(int frames = INT_MAX) const;

    /// What the board has received.
    QByteArray boardBytes() const;
    /// How often a GPIO line has risen.
    int rises(int line) const;
    /// The live map: the input of each output, 1-based, 0 for none, with commas between them.
    QByteArray map() const;

    /// Files, by their path on the device.
    QString path(const char *devicePath) const;
    QByteArray fileContent(const char *devicePath) const;
    void writeFile(const char *devicePath, const QByteArray &content) const;
    void makeFolder(const char *devicePath) const;

    QString root() const { return m_folder.path(); }

protected:
    /// On hardware that lies elsewhere.
    explicit TestUnit(sim::VirtualUnit *hardware);

private:
    QByteArray receiveUntil(sim::Wire wire, const std::function<bool(const QByteArray &)> &complete);

    QTemporaryDir m_folder;
    std::unique_ptr<sim::VirtualUnit> m_hardware;
};

/// A pause for recalls that take no time.
inline void atOnce(unsigned long) {}

/// A unit whose control object and thread run from the beginning.
struct RunningUnit : TestUnit {
    explicit RunningUnit(int ports)
        : TestUnit(ports)
    {
        start();
    }
};

/// Runs the event loop until the condition holds, at most 10 s. \return whether it holds
bool runUntil(const std::function<bool()> &condition);

/// Lays a message before the program as another process does. \return whether it was taken
bool sendRequest(const QByteArray &text);

/// Descriptors that this process has open.
int openDescriptors();

/// Where a free TCP port, and eight free UDP ports in a row, are at the moment.
quint16 freeTcpPort();
quint16 freeUdpPorts();
