#pragma once

#include "backlight.h"
#include "devicefiles.h"
#include "gpio.h"
#include "matrixlink.h"
#include "routing.h"
#include "scenestore.h"
#include "sharedobjects.h"

#include <QSerialPort>
#include <QThread>
#include <atomic>
#include <memory>

class ControlPort;
struct ControlParts;

/// The control object of the switcher. It owns the shared record, loads what is stored, opens the serial
/// links, and runs the control thread, which serves the two control ports and brings the routing to the
/// switching board. There is one, reached through `g_mxComm`. Unless said otherwise an operation may be
/// called on any thread.
class QMxComm : public QThread
{
    Q_OBJECT

public:
    /// `create` makes and clears the shared objects, loads everything and opens the links; otherwise the
    /// objects of a running program are attached and nothing else happens. Without a segment "shm error" is
    /// logged and `g_mxConfig` is null; then nothing can be kept, so nothing is loaded or opened and `run`
    /// ends at once.
    /// `pause` is how a recall waits, on the thread that recalls.
    explicit QMxComm(bool create, SceneStore::Pause pause = QThread::msleep);
    /// Ends the control thread, detaches the segment and removes the shared objects if this object made them.
    /// `g_mxConfig` is null after that.
    ~QMxComm() override;

    /// Ends the control thread and waits for it. The shared objects stay.
    void stop();

    /// The shared objects; the results are those of the platform's calls.
    void *MxShmCreate() { return m_shared.create(); }
    void *MxShmOpen() { return m_shared.open(); }
    int MxShmClose() { return m_shared.close(); }
    int MxShmRemove() { return m_shared.remove(); }

    /// The stores. Loads of settings and captions, and the save of settings, announce themselves
    /// by a signal.
    void LoadConfig();
    void SaveConfig();
    void LoadCaption();
    void SaveCaption();
    void LoadScene() { SceneStore::load(*g_mxConfig); }
    void SaveScene(int n) { SceneStore::save(*g_mxConfig, n); }
    /// Recalls scene `n`, for which it blocks the caller for a second; see `SceneStore::recall`.
    void LoadScene(int n) { SceneStore::recall(*g_mxConfig, n, m_pause); }
    void SaveSplice(int n) { SceneStore::saveSplice(*g_mxConfig, n); }
    void LoadSplice(int n) { SceneStore::loadSplice(*g_mxConfig, n); }

    /// Routing. Inputs and outputs are 0-based; see `Routing`.
    void MxCmdOneToOne(unsigned short in, unsigned short out) { Routing::oneToOne(*g_mxConfig, in, out); }
    void MxCmdOneToSome(unsigned short in, const unsigned short *outs, int n)
    {
        Routing::oneToSome(*g_mxConfig, in, outs, n);
    }
    void MxCmdMap(const unsigned short *m) { Routing::setMap(*g_mxConfig, m); }
    void MxCmdOneToAll(unsigned short in) { Routing::oneToAll(*g_mxConfig, in); }
    void MxCmdAllToAll() { Routing::allToAll(*g_mxConfig); }
    void MxCmdAllToNone() { Routing::allToNone(*g_mxConfig); }
    void MxCmdOneToNone(unsigned short in) { Routing::oneToNone(*g_mxConfig, in); }

    /// Carries out one line of the command language, NUL-terminated at `len`. \return 0, -1 for an error, -2
    /// when the temperature is asked for, or 1..`port`: the input that a query names
    int MxOnUartCommand(char *line, unsigned short len);

    /// Sends what is due to the switching board. Control thread only.
    void MxDoSwitch();
    /// Writes to the switching board and flushes. \return bytes written, or a value below 1 when the link is
    /// not open
    int MxWriteMatrix(const unsigned char *buf, int len) { return m_matrix.writeFlushed(buf, len); }

    /// Opens and configures a serial device; see `openUart`.
    int MxUartOpen(const char *path, int baud);
    /// Feed one byte to the text side or to the frame side of control port 0 or 1. Control thread only.
    void MxUartProc0(char byte);
    void MxUartProc1(char byte);
    void MxUartProc0_EB90(unsigned char byte);
    void MxUartProc1_EB90(unsigned char byte);

    /// Small files and device nodes; see `DeviceFiles`. \return the bytes read or written, or the negative
    /// result of the call that failed. `MxPrintf` formats at most 4095 characters and writes nothing for
    /// none; \return the formatted length, or the negative result of the call that failed.
    int MxRead(const char *path, unsigned char *buf, int len)
    {
        return DeviceFiles::read(path, buf, len).count;
    }
    int MxWrite(const char *path, const char *text);
    int MxWrite(const char *path, unsigned char *buf, int len)
    {
        return DeviceFiles::write(path, buf, len).count;
    }
    int MxPrintf(const char *path, const char *format, ...) __attribute__((format(printf, 3, 4)));
    int MxGpioWrite(int line, int level) { return m_gpio.write(line, level); }
    int MxGpioWrite(GpioLine line, int level) { return MxGpioWrite(static_cast<int>(line), level); }

    /// The light of the touchscreen; see `Backlight::light` for the level.
    Backlight &backlight() { return m_backlight; }
    void MxSetBacklight(int level) { m_backlight.light(level); }

signals:
    void OnLoadCaption();
    void OnLoadConfig();

protected:
    /// The control loop: one pass every 10 ms.
    void run() override;

private:
    void loadState();
    void openLinks();
    void pollControlPorts();
    void runLines(ControlPort &port);

    bool m_mapLoaded = false; ///< or there was none
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_ended{false}; ///< set by the control loop as the last thing it does
    MatrixLink m_matrix;
    Gpio m_gpio;
    Backlight m_backlight{m_gpio};
    /// Part of the object for its lifetime; the serial traffic itself goes through plain descriptors.
    QSerialPort m_serialPorts[2];
    const bool m_create;
    const SceneStore::Pause m_pause;
    SharedObjects m_shared;
    std::unique_ptr<ControlParts> m_parts; ///< null for an object that only attaches
};

/// The one control object.
extern QMxComm *g_mxComm;
