#include "qmxcomm.h"

#include "captionstore.h"
#include "controlparts.h"
#include "heartbeat.h"
#include "passgrid.h"
#include "settingsstore.h"
#include "tickcount.h"
#include "uart.h"
#include "uptimeclock.h"

#include <QtDebug>
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <utility>

MxShm *g_mxConfig = nullptr;
QMxComm *g_mxComm = nullptr;

namespace
{
/// How long the lines of one control port hold up the other port, the sender and the queues: so long, or for
/// the one line that takes longer.
constexpr quint32 TurnMs = 50;

/// A flash may fail to read once and not again.
constexpr int LoadTries = 3;
} // namespace

QMxComm::QMxComm(bool create, SceneStore::Pause pause)
    : m_create(create)
    , m_pause(std::move(pause))
{
    setObjectName(QStringLiteral("control")); // as the thread is called
    m_gpio.open();
    g_mxConfig = static_cast<MxShm *>(create ? MxShmCreate() : MxShmOpen());
    if (g_mxConfig == nullptr) {
        qDebug("shm error");
        // The thread's own exit, harmless before it runs: who made the object looks at `g_mxConfig`.
        exit(-1);
        return;
    }
    if (create) {
        loadState();
        openLinks();
    }
}

QMxComm::~QMxComm()
{
    m_stop = true;
    msleep(50);
    // A pass may be in the middle of a recall, and must not lose the record under its feet.
    stop();
    g_mxConfig = nullptr;
    MxShmClose();
    if (m_create) {
        MxShmRemove();
    }
}

void QMxComm::stop()
{
    m_stop = true;
    wait();
    // What the loop wrote is visible behind this load. (It is behind `wait` as well, but by means inside Qt
    // that the thread sanitizer cannot see.)
    m_ended.load(std::memory_order_acquire);
}

void QMxComm::loadState()
{
    LoadConfig();
    m_backlight.showLevel();
    LoadCaption();
    for (int left = LoadTries; left > 0 && !m_mapLoaded; --left) {
        m_mapLoaded = SceneStore::load(*g_mxConfig);
    }
}

void QMxComm::openLinks()
{
    const auto interpreter = [this](char *line, quint16 length) { return MxOnUartCommand(line, length); };
    MxShm &shm = *g_mxConfig;
    m_parts.reset(new ControlParts{
        {shm, m_matrix, m_gpio}, {m_matrix, m_shared.requestQueue(), m_shared.replyQueue()}, {}});
    if (!m_mapLoaded) {
        m_parts->sender.keepBoard();
    }
    m_matrix.adopt(MxUartOpen("/dev/ttymxc2", 115200));
    for (const char *device : ControlDevices) {
        ControlPort &port = m_parts->ports.emplace_back(shm, m_matrix, interpreter);
        if (shm.baudrate != -1) {
            port.open(device, shm.baudrate);
        }
    }
}

void QMxComm::run()
{
    UptimeClock uptime(systemMs());
    Heartbeat heart;
    while (m_parts && !m_stop) {
        PassGrid::wait();
        heart.beat();
        uptime.step(systemMs(), g_mxConfig->uptime);
        pollControlPorts();
        MxDoSwitch();
        m_parts->relay.step();
    }
    m_ended.store(true, std::memory_order_release);
}

void QMxComm::pollControlPorts()
{
    if (g_mxConfig->baudrate == -1) {
        return;
    }
    for (ControlPort &port : m_parts->ports) {
        port.receive();
        runLines(port);
    }
}

/// At least one line, and as many as take no longer than a turn.
void QMxComm::runLines(ControlPort &port)
{
    const quint32 begun = GetTickCount();
    while (!m_stop && port.runLine() && ticksBetween(begun, GetTickCount()) < TurnMs) {
    }
}

void QMxComm::LoadConfig()
{
    SettingsStore::load(*g_mxConfig);
    emit OnLoadConfig();
}

void QMxComm::SaveConfig()
{
    SettingsStore::save(*g_mxConfig);
    emit OnLoadConfig();
}

void QMxComm::LoadCaption()
{
    CaptionStore::load(*g_mxConfig);
    emit OnLoadCaption();
}

void QMxComm::SaveCaption()
{
    CaptionStore::save(*g_mxConfig);
}

void QMxComm::MxDoSwitch()
{
    m_parts->sender.step(GetTickCount());
}

int QMxComm::MxUartOpen(const char *path, int baud)
{
    return openUart(path, baud);
}

void QMxComm::MxUartProc0(char byte)
{
    m_parts->ports[0].feedText(byte);
}

void QMxComm::MxUartProc1(char byte)
{
    m_parts->ports[1].feedText(byte);
}

void QMxComm::MxUartProc0_EB90(unsigned char byte)
{
    m_parts->ports[0].feedFrame(byte);
}

void QMxComm::MxUartProc1_EB90(unsigned char byte)
{
    m_parts->ports[1].feedFrame(byte);
}

int QMxComm::MxWrite(const char *path, const char *text)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(text);
    return DeviceFiles::write(path, bytes, static_cast<int>(std::strlen(text))).count;
}

int QMxComm::MxPrintf(const char *path, const char *format, ...)
{
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::min<int>(std::vsnprintf(text, sizeof text, format, arguments), sizeof text - 1);
    va_end(arguments);
    if (length <= 0) {
        return length;
    }
    const int written = MxWrite(path, text);
    return written < 0 ? written : length;
}
