#include "qmxcomm.h"

#include "captionstore.h"
#include "commandinterpreter.h"
#include "controlparts.h"
#include "devicefiles.h"
#include "passgrid.h"
#include "reply.h"
#include "routing.h"
#include "scenestore.h"
#include "settingsstore.h"
#include "tickcount.h"
#include "uart.h"
#include "uptimeclock.h"

#include <QtDebug>
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

MxShm *g_mxConfig = nullptr;
QMxComm *g_mxComm = nullptr;

namespace
{
constexpr char BrightnessFile[] = "/sys/class/backlight/backlight.8/brightness";
} // namespace

QMxComm::QMxComm(bool create)
    : m_create(create)
{
    m_gpio.open();
    g_mxConfig = static_cast<MxShm *>(create ? MxShmCreate() : MxShmOpen());
    if (g_mxConfig == nullptr) {
        qDebug("shm error");
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
    MxSetBacklight(backlightLevel(*g_mxConfig));
    LoadCaption();
    LoadScene();
}

void QMxComm::openLinks()
{
    const auto interpreter = [this](char *line, quint16 length) { return MxOnUartCommand(line, length); };
    MxShm &shm = *g_mxConfig;
    m_parts.reset(new ControlParts{{shm, m_matrix, m_gpio},
                                   {shm, m_matrix, interpreter},
                                   {shm, m_matrix, interpreter},
                                   {m_matrix, m_shared.requestQueue(), m_shared.replyQueue()}});
    m_matrix.adopt(MxUartOpen("/dev/ttymxc2", 115200));
    if (shm.baudrate != -1) {
        m_parts->port0.open("/dev/ttymxc3", shm.baudrate);
        m_parts->port1.open("/dev/ttymxc4", shm.baudrate);
    }
}

void QMxComm::run()
{
    UptimeClock uptime;
    while (m_parts && !m_stop) {
        PassGrid::wait();
        uptime.step(g_mxConfig->uptime);
        pollControlPorts();
        MxDoSwitch();
        m_parts->relay.step();
    }
    m_ended.store(true, std::memory_order_release);
}

void QMxComm::pollControlPorts()
{
    if (g_mxConfig->baudrate != -1) {
        m_parts->port0.poll();
        m_parts->port1.poll();
    }
}

void *QMxComm::MxShmCreate()
{
    return m_shared.create();
}

void *QMxComm::MxShmOpen()
{
    return m_shared.open();
}

int QMxComm::MxShmClose()
{
    return m_shared.close();
}

int QMxComm::MxShmRemove()
{
    return m_shared.remove();
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

void QMxComm::LoadScene()
{
    SceneStore::load(*g_mxConfig);
}

void QMxComm::SaveScene(int n)
{
    SceneStore::save(*g_mxConfig, n);
}

void QMxComm::LoadScene(int n)
{
    if (SceneStore::recallMap(*g_mxConfig, n)) {
        // Time for the routing to leave before the layout that belongs to it does.
        sleep(1);
        LoadSplice(n);
    }
}

void QMxComm::SaveSplice(int n)
{
    SceneStore::saveSplice(*g_mxConfig, n);
}

void QMxComm::LoadSplice(int n)
{
    SceneStore::loadSplice(*g_mxConfig, n);
}

void QMxComm::MxCmdOneToOne(unsigned short in, unsigned short out)
{
    Routing::oneToOne(*g_mxConfig, in, out);
}

void QMxComm::MxCmdOneToSome(unsigned short in, const unsigned short *outs, int n)
{
    Routing::oneToSome(*g_mxConfig, in, outs, n);
}

void QMxComm::MxCmdMap(const unsigned short *m)
{
    Routing::setMap(*g_mxConfig, m);
}

void QMxComm::MxCmdOneToAll(unsigned short in)
{
    Routing::oneToAll(*g_mxConfig, in);
}

void QMxComm::MxCmdAllToAll()
{
    Routing::allToAll(*g_mxConfig);
}

void QMxComm::MxCmdAllToNone()
{
    Routing::allToNone(*g_mxConfig);
}

void QMxComm::MxCmdOneToNone(unsigned short in)
{
    Routing::oneToNone(*g_mxConfig, in);
}

int QMxComm::MxOnUartCommand(char *line, unsigned short len)
{
    const CommandInterpreter command(line, len);
    switch (command.command()) {
    case CommandInterpreter::SyntaxError:
        return MxError;
    case CommandInterpreter::RouteToSome:
        MxCmdOneToSome(command.input(), command.outputs(), command.outputCount());
        return MxOk;
    case CommandInterpreter::RouteToAll:
        MxCmdOneToAll(command.input());
        return MxOk;
    case CommandInterpreter::RouteOneToOne:
        MxCmdAllToAll();
        return MxOk;
    case CommandInterpreter::SaveScene:
    case CommandInterpreter::RecallScene:
        return runSceneCommand(command.number(), command.command() == CommandInterpreter::SaveScene);
    case CommandInterpreter::Query:
        return command.number() <= portCount(*g_mxConfig) ? int(command.number()) : MxError;
    case CommandInterpreter::Temperature:
        return MxTemperature;
    case CommandInterpreter::BeepOn:
    case CommandInterpreter::BeepOff:
        g_mxConfig->beep = command.command() == CommandInterpreter::BeepOn ? 1 : 0;
        SaveConfig();
        return MxOk;
    }
    return MxError;
}

int QMxComm::runSceneCommand(int n, bool save)
{
    if (!SceneStore::offered(*g_mxConfig, n)) {
        return MxError;
    }
    if (save) {
        SaveScene(n);
    } else {
        LoadScene(n);
    }
    return MxOk;
}

void QMxComm::MxDoSwitch()
{
    m_parts->sender.step(GetTickCount());
}

int QMxComm::MxWriteMatrix(unsigned char *buf, int len)
{
    return m_matrix.writeFlushed(buf, len);
}

int QMxComm::MxUartOpen(const char *path, int baud)
{
    return openUart(path, baud);
}

void QMxComm::MxUartProc0(char byte)
{
    m_parts->port0.feedText(byte);
}

void QMxComm::MxUartProc1(char byte)
{
    m_parts->port1.feedText(byte);
}

void QMxComm::MxUartProc0_EB90(unsigned char byte)
{
    m_parts->port0.feedFrame(byte);
}

void QMxComm::MxUartProc1_EB90(unsigned char byte)
{
    m_parts->port1.feedFrame(byte);
}

int QMxComm::MxRead(const char *path, unsigned char *buf, int len)
{
    return DeviceFiles::read(path, buf, len);
}

int QMxComm::MxWrite(const char *path, const char *text)
{
    return DeviceFiles::write(path, reinterpret_cast<const unsigned char *>(text),
                              static_cast<int>(std::strlen(text)));
}

int QMxComm::MxWrite(const char *path, unsigned char *buf, int len)
{
    return DeviceFiles::write(path, buf, len);
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

int QMxComm::MxGpioWrite(int line, int level)
{
    return m_gpio.write(line, level);
}

void QMxComm::MxSetBacklight(int level)
{
    const int brightness = level >= 0 && level <= 7 ? level : 7;
    MxPrintf(BrightnessFile, "%d", brightness);
    m_gpio.write(GpioLine::BacklightPower, brightness > 0 ? 1 : 0);
}
