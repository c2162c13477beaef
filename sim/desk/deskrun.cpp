#include "deskrun.h"

#include "panelwindow.h"
#include "touchscreenwindow.h"
#include "unitchoice.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

namespace
{
/// It ends two processes in order, each of which it grants 5 s.
constexpr int innerStopMs = 15000;
} // namespace

DeskRun::DeskRun(const Options &options, const QStringList &arguments)
    : m_options(options)
    , m_arguments(arguments)
    , m_desk(options.vncPort)
    , m_inner(nullptr, innerStopMs)
{
    connect(&m_desk, &VncDesk::viewersLost, this, &DeskRun::onViewersLost);
    connect(&m_inner, &ChildProcess::ended, this, &DeskRun::onInnerEnded);
}

QString DeskRun::start()
{
    UnitChoice choice;
    QString error = m_lock.acquire(m_options.folder, "desk.lock");
    if (error.isEmpty()) {
        error = chooseUnit(m_options, &choice);
    }
    if (error.isEmpty()) {
        error = m_desk.start(m_options.folder,
                             choice.isFrontPanel ? PanelWindow::extent : TouchscreenWindow::extent);
    }
    if (error.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        m_desk.addTo(&environment);
        environment.insert(vncDeskVariable, QString::number(m_desk.port()));
        m_inner.setProcessEnvironment(environment);
        m_inner.setProcessChannelMode(QProcess::ForwardedChannels);
        error = m_inner.launch(QCoreApplication::applicationFilePath(),
                               m_arguments.mid(1) + QStringList{"--screen", "window"});
    }
    return error;
}

void DeskRun::onViewersLost()
{
    // Without its display the server for viewers ends as well; of that the inner one knows, and says so.
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
