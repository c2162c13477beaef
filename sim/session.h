#pragma once

#include "controlprogram.h"
#include "eventtext.h"
#include "folderlock.h"
#include "options.h"
#include "screen.h"
#include "virtualunit.h"

#include <QStringList>

#include <memory>

/// One run of mxsim: the unit, the control program on it, and what a person gets to read on standard output.
class Session : public QObject
{
    Q_OBJECT

public:
    explicit Session(const Options &options);

    /// Brings everything up to the start of the program. Returns an empty text, or one line that says why
    /// not.
    QString start();

signals:
    /// It is over before it was ended, with one line that says why and mxsim's exit code. More may follow
    /// from what it has brought down.
    void ended(const QString &reason, int code);

    /// Something happened on the unit; sent on the unit's thread.
    void happened(const QString &line);

private:
    QString makeUnit();
    QString launchProgram();
    void observe(const sim::WireEvent &event);
    void onProgramFailed(const QString &reason);
    void onUp();
    void onHappened(const QString &line);
    void print(const QString &text);
    QString startMessage() const;
    QString shownPath(const QString &file) const;

    const Options m_options;
    int m_ports = 0;
    FolderLock m_lock;
    sim::EventText m_text; ///< for the unit's thread alone
    std::unique_ptr<sim::VirtualUnit> m_unit;
    Screen m_screen;
    ControlProgram m_program; ///< ends before its screen and the unit
    bool m_isUp = false;
    QStringList m_early; ///< what happened before the program was up
};
