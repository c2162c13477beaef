#pragma once

#include "folderlock.h"
#include "options.h"
#include "run.h"
#include "vncdesk.h"

namespace sim
{
/// A run of mxsim on a desk of its own: brings the desk up, and mxsim once more as a process there, whose
/// output and exit code it passes on.
class DeskRun : public Run
{
    Q_OBJECT

public:
    /// `arguments` as mxsim was given them, its own name first.
    DeskRun(const Options &options, const QStringList &arguments);

    Result start() override;

private:
    Result launchInner();
    void onViewersLost();
    void onInnerEnded();

    const Options m_options;
    const QStringList m_arguments;
    FolderLock m_lock;
    VncDesk m_desk;
    ChildProcess m_inner; ///< ends before its desk
};
} // namespace sim
