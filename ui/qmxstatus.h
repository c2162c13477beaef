#pragma once

#include <QWidget>
#include <memory>

class QButtonGroup;
class QMxHelp;
class QMxKeyboard;
class Ui_QMxStatus;

/// The page of the settings, with a line on how the unit does. It starts locked: what stores anything, here
/// and on the pages of scenes and captions, wants the password first. GUI thread only.
class QMxStatus : public QWidget
{
    Q_OBJECT

public:
    explicit QMxStatus(QWidget *parent = nullptr);
    ~QMxStatus() override;

public slots:
    /// Shows what the record holds, and applies it. A value that no button stands for leaves none checked.
    void OnLoadConfig();
    /// 0 to 2: address, netmask and gateway of the first interface, 3 to 5: of the second.
    void OnEthPressed(int id);
    void OnBlPressed(int id);
    void OnSleepPressed(int id);
    void OnBeepPressed(int id);
    /// 0: unlock, 1: lock, 2: default, 3: load, 4: save, 5: help.
    void OnActPressed(int id);
    void onEnter(const QString &text);
    void onCancel();

signals:
    /// Whether the user may store anything.
    void saveEnabled(bool enabled);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void makeGroups();
    void setSaveEnabled(bool enabled);
    void lock();
    void showDefaults();
    void load();
    void save();

    std::unique_ptr<Ui_QMxStatus> m_form;
    QButtonGroup *m_ethernet;
    QButtonGroup *m_brightness;
    QButtonGroup *m_sleep;
    QButtonGroup *m_buzzer;
    QButtonGroup *m_actions;
    QMxHelp *m_help;
    QMxKeyboard *m_keyboard;
};
