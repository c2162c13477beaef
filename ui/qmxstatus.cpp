#include "qmxstatus.h"

#include "busyscope.h"
#include "ethernet.h"
#include "gpio.h"
#include "qmxcomm.h"
#include "qmxhelp.h"
#include "qmxkeyboard.h"
#include "temperature.h"
#include "touchbutton.h"
#include "ui_qmxstatus.h"

#include <QThread>

namespace
{
constexpr int StatusMs = 1000;
constexpr int LockMs = 200;
constexpr int MaxAddressLength = 15;
constexpr int MaxPasswordLength = 8;
constexpr char UnlockPassword[] = "40617295";

enum Buzzer { BuzzerOff, BuzzerOn };
enum Action { Unlock, Lock, Default, Load, Save, Help };

constexpr int AddressesPerInterface = 3;
constexpr int AddressCount = 2 * AddressesPerInterface;
constexpr int DefaultBrightness = 2; ///< "60%"
constexpr int DefaultSleep = 2;      ///< "15Min"

/// The address of an Ethernet button, 0 to 5, and what a new unit has there.
SharedText<32> &address(int id)
{
    return g_mxConfig->*EthernetInterfaces[id / AddressesPerInterface].fields[id % AddressesPerInterface];
}

QLatin1String defaultAddress(int id)
{
    return QLatin1String(EthernetInterfaces[id / AddressesPerInterface].defaults[id % AddressesPerInterface]);
}

void addButtons(QButtonGroup *group, std::initializer_list<QPushButton *> buttons)
{
    int id = 0;
    for (QPushButton *button : buttons) {
        group->addButton(button, id++);
    }
}

void beep()
{
    g_mxComm->MxGpioWrite(GpioLine::Buzzer, 1);
    QThread::msleep(10);
    g_mxComm->MxGpioWrite(GpioLine::Buzzer, 0);
}
} // namespace

QMxStatus::QMxStatus(QWidget *parent)
    : QWidget(parent)
    , m_form(new Ui_QMxStatus)
{
    hide();
    m_form->setupUi(this);
    m_help = new QMxHelp(this);
    m_keyboard = new QMxKeyboard(this);
    connect(m_keyboard, &QMxKeyboard::onEnter, this, &QMxStatus::onEnter);
    connect(m_keyboard, &QMxKeyboard::onCancel, this, &QMxStatus::onCancel);
    makeGroups();
    OnLoadConfig();
    connect(g_mxComm, &QMxComm::OnLoadConfig, this, &QMxStatus::OnLoadConfig);
    setSaveEnabled(false);
    startTimer(StatusMs);
}

QMxStatus::~QMxStatus() = default;

void QMxStatus::makeGroups()
{
    const Ui_QMxStatus &form = *m_form;
    const auto make = [this](void (QMxStatus::*slot)(int), std::initializer_list<QPushButton *> buttons) {
        auto *group = new QButtonGroup(this);
        addButtons(group, buttons);
        connectClicks(group, this, slot);
        return group;
    };
    m_ethernet = make(&QMxStatus::OnEthPressed, {form.buttonIp1, form.buttonSubnet1, form.buttonGateway1,
                                                 form.buttonIp2, form.buttonSubnet2, form.buttonGateway2});
    m_brightness =
        make(&QMxStatus::OnBlPressed, {form.buttonBrightness0, form.buttonBrightness1, form.buttonBrightness2,
                                       form.buttonBrightness3, form.buttonBrightness4});
    m_sleep = make(&QMxStatus::OnSleepPressed, {form.buttonSleep0, form.buttonSleep1, form.buttonSleep2,
                                                form.buttonSleep3, form.buttonSleep4});
    m_buzzer = make(&QMxStatus::OnBeepPressed, {form.buttonBuzzer0, form.buttonBuzzer1});
    m_actions = make(&QMxStatus::OnActPressed, {form.buttonUnlock, form.buttonLock, form.buttonDefault,
                                                form.buttonLoad, form.buttonSave, form.buttonHelp});
}

void QMxStatus::OnLoadConfig()
{
    checkButton(m_buzzer, g_mxConfig->beep != 0 ? BuzzerOn : BuzzerOff);
    checkButton(m_brightness, g_mxConfig->backlight);
    checkButton(m_sleep, g_mxConfig->sleep);
    g_mxComm->backlight().showLevel();
    for (int id = 0; id < AddressCount; ++id) {
        m_ethernet->button(id)->setText(QString::fromLatin1(address(id).get()));
    }
}

void QMxStatus::OnEthPressed(int id)
{
    if (auto *button = qobject_cast<QPushButton *>(m_ethernet->button(id))) {
        m_keyboard->showModal(button, MaxAddressLength, QMxKeyboard::Ipv4Address);
    }
}

void QMxStatus::OnBlPressed(int id)
{
    if (m_brightness->button(id) != nullptr) {
        g_mxConfig->backlight = id;
        g_mxComm->backlight().showLevel();
    }
}

void QMxStatus::OnSleepPressed(int id)
{
    if (m_sleep->button(id) != nullptr) {
        g_mxConfig->sleep = id;
    }
}

void QMxStatus::OnBeepPressed(int id)
{
    if (m_buzzer->button(id) != nullptr) {
        g_mxConfig->beep = id;
    }
}

void QMxStatus::OnActPressed(int id)
{
    switch (id) {
    case Unlock:
        return m_keyboard->showModal(nullptr, MaxPasswordLength, QMxKeyboard::Password);
    case Lock:
        return lock();
    case Default:
        return showDefaults();
    case Load:
        return load();
    case Save:
        return save();
    case Help:
        return m_help->show();
    }
}

void QMxStatus::lock()
{
    const BusyScope busy(m_form->buttonLock);
    setSaveEnabled(false);
    QThread::msleep(LockMs);
}

void QMxStatus::showDefaults()
{
    for (int id = 0; id < AddressCount; ++id) {
        m_ethernet->button(id)->setText(defaultAddress(id));
    }
    clickButton(m_brightness, DefaultBrightness);
    clickButton(m_sleep, DefaultSleep);
    clickButton(m_buzzer, BuzzerOn);
}

void QMxStatus::load()
{
    const BusyScope busy(m_form->buttonLoad);
    g_mxComm->LoadConfig();
}

void QMxStatus::save()
{
    const BusyScope busy(m_form->buttonSave);
    for (int id = 0; id < AddressCount; ++id) {
        address(id).set(m_ethernet->button(id)->text().toLatin1());
    }
    g_mxComm->SaveConfig();
    beep();
    QThread::msleep(100);
    beep();
}

void QMxStatus::onEnter(const QString &text)
{
    if (m_keyboard->mode() == QMxKeyboard::Password && text == QLatin1String(UnlockPassword)) {
        setSaveEnabled(true);
    }
}

void QMxStatus::onCancel() {}

void QMxStatus::setSaveEnabled(bool enabled)
{
    m_form->buttonSave->setEnabled(enabled);
    emit saveEnabled(enabled);
}

void QMxStatus::timerEvent(QTimerEvent *)
{
    if (!isVisible()) {
        return;
    }
    const int uptime = g_mxConfig->uptime;
    m_form->labelStatus->setText(QString::asprintf("%04d %02d:%02d:%02d / ", uptime / 86400,
                                                   uptime / 3600 % 24, uptime / 60 % 60, uptime % 60) +
                                 QLatin1String(readTemperature().text) +
                                 QStringLiteral("C / %1").arg(int(g_mxConfig->baudrate)));
}
