#include "touchpanel.h"

#include <QThread>
#include <QtGlobal>
#include <cstring>
#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

TouchPanel::TouchPanel()
    : m_device(::open("/dev/uinput", O_WRONLY | O_CLOEXEC))
{
    uinput_setup setup{};
    setup.id.bustype = BUS_I2C;
    std::strcpy(setup.name, "touchscreen");
    ::ioctl(m_device.get(), UI_SET_EVBIT, EV_KEY);
    ::ioctl(m_device.get(), UI_SET_KEYBIT, BTN_TOUCH);
    ::ioctl(m_device.get(), UI_SET_EVBIT, EV_ABS);
    ::ioctl(m_device.get(), UI_SET_PROPBIT, INPUT_PROP_DIRECT);
    // A finger, and what is the same for programs that know of one only.
    for (const auto &[code, size] : {std::pair(ABS_MT_SLOT, 2),
                                     {ABS_MT_TRACKING_ID, 65536},
                                     {ABS_MT_POSITION_X, 1024},
                                     {ABS_MT_POSITION_Y, 600},
                                     {ABS_X, 1024},
                                     {ABS_Y, 600}}) {
        uinput_abs_setup axis{};
        axis.code = static_cast<quint16>(code);
        axis.absinfo.maximum = size - 1;
        ::ioctl(m_device.get(), UI_ABS_SETUP, &axis);
    }
    if (::ioctl(m_device.get(), UI_DEV_SETUP, &setup) != 0 || ::ioctl(m_device.get(), UI_DEV_CREATE) != 0) {
        qFatal("cannot make a touchscreen");
    }
}

void TouchPanel::touch(int x, int y)
{
    for (const bool down : {true, false}) {
        tell(EV_ABS, ABS_MT_TRACKING_ID, down ? ++m_finger : -1);
        if (down) {
            tell(EV_ABS, ABS_MT_POSITION_X, x);
            tell(EV_ABS, ABS_MT_POSITION_Y, y);
            tell(EV_ABS, ABS_X, x);
            tell(EV_ABS, ABS_Y, y);
        }
        tell(EV_KEY, BTN_TOUCH, down);
        tell(EV_SYN, SYN_REPORT, 0);
        QThread::msleep(100); // as long as a finger stays there
    }
}

void TouchPanel::tell(int type, int code, int value)
{
    input_event event{};
    event.type = static_cast<quint16>(type);
    event.code = static_cast<quint16>(code);
    event.value = value;
    if (::write(m_device.get(), &event, sizeof event) != sizeof event) {
        qWarning("cannot touch");
    }
}
