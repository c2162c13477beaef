#pragma once

#include "boardrouting.h"
#include "controlprogram.h"
#include "eventtext.h"
#include "folderlock.h"
#include "lcdtext.h"
#include "run.h"
#include "screen.h"
#include "unitchoice.h"
#include "unitwindow.h"
#include "virtualunit.h"

#include <QElapsedTimer>
#include <QList>
#include <QTimer>
#include <memory>

namespace sim
{
/// The unit, its window, the control program on it, and what a person gets to read on standard output.
class Session : public Run
{
    Q_OBJECT

public:
    explicit Session(const Options &options);

    /// Up to the start of the program, which may then fail to come up.
    Result start() override;

signals:
    /// Something happened on the unit; sent on the unit's thread.
    void happened(const QString &line);

    /// The board has switched; sent on the unit's thread.
    void routed(const BoardRouting &routing);

private:
    Result makeUnit();
    Result makeWindow();
    void showWindow(std::unique_ptr<UnitWindow> window);
    Result launchProgram();
    void lookAtLcd();
    void observe(const WireEvent &event);
    void onProgramFailed(const QString &reason);
    void onUp();
    void tell(const QByteArray &line);
    void print(const QByteArray &text);
    QString startMessage() const;
    QString serialPorts() const;
    QString whereabouts() const;
    QString shownPath(const QString &file) const;

    const Options m_options;
    UnitChoice m_choice;
    FolderLock m_lock;
    EventText m_text; ///< for the unit's thread alone
    std::unique_ptr<VirtualUnit> m_unit;
    std::unique_ptr<UnitWindow> m_window; ///< none without a desk
    Screen m_screen;
    ControlProgram m_program; ///< ends before its screen and the unit
    bool m_isUp = false;
    QList<QByteArray> m_early; ///< what happened before the program was up
    LcdText m_lcd;
    QTimer m_lcdTimer;
    QElapsedTimer m_clock;
};
} // namespace sim
