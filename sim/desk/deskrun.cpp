#include "deskrun.h"

#include "panelwindow.h"
#include "touchscreenwindow.h"
#include "unitchoice.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

namespace sim
{
namespace
{
/// It ends two processes in order, each of which it grants 5 s.
constexpr int InnerStopMs = 15000;
} // namespace

DeskRun::DeskRun(const Options &options, const QStringList &arguments)
    : m_options(options)
    , m_arguments(arguments)
    , m_desk(options.vncPort)
    , m_inner(nullptr, InnerStopMs)
{
    connect(&m_desk, &VncDesk::viewersLost, this, &DeskRun::onViewersLost);
    connect(&m_inner, &ChildProcess::ended, this, &DeskRun::onInnerEnded);
}

Result DeskRun::start()
{
    UnitChoice choice;
    return m_lock.acquire(m_options.folder, "desk.lock")
        .then([&] { return chooseUnit(m_options, &choice); })
        .then([&] {
            return m_desk.start(m_options.folder,
                                choice.isFrontPanel ? PanelWindow::Extent : TouchscreenWindow::Extent);
        })
        .then([this] { return launchInner(); });
}

Result DeskRun::launchInner()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    m_desk.addTo(&environment);
    environment.insert(VncDeskVariable, QString::number(m_desk.port()));
    m_inner.setProcessEnvironment(environment);
    m_inner.setProcessChannelMode(QProcess::ForwardedChannels);
    return m_inner.launch(QCoreApplication::applicationFilePath(),
                          m_arguments.mid(1) + QStringList{"--screen", "window"});
}

void DeskRun::onViewersLost()
{
    // The server for viewers ends with its display, too; then the mxsim on the desk notices and says so.
    if (m_desk.isUp()) {
        emit ended("the server for VNC viewers has ended", 1);
    }
}

void DeskRun::onInnerEnded()
{
    if (m_inner.exitStatus() == QProcess::NormalExit) {
        emit ended({}, m_inner.exitCode());
    } else {
        emit ended("the process with the window has crashed", 1);
    }
}
} // namespace sim
