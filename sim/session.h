#pragma once

#include "controlprogram.h"
#include "eventtext.h"
#include "folderlock.h"
#include "options.h"
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
    /// It is over before it was ended: one line that says why.
    void failed(const QString &reason);

    /// Something happened on the unit; sent on the unit's thread.
    void happened(const QString &line);

private:
    QString makeUnit();
    QString launchProgram();
    void observe(const sim::WireEvent &event);
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
    ControlProgram m_program; ///< ends before the unit
    bool m_isUp = false;
    QStringList m_early; ///< what happened before the program was up
};
