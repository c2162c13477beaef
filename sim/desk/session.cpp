#include "session.h"

#include "networkports.h"
#include "panelwindow.h"
#include "parts.h"
#include "programenvironment.h"
#include "touchscreenwindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTime>
#include <cstdio>
#include <string>
#include <utility>
#include <variant>

namespace sim
{
namespace
{
constexpr int LcdTurnMs = 20;
} // namespace

Session::Session(const Options &options)
    : m_options(options)
{
    connect(&m_program, &ControlProgram::up, this, &Session::onUp);
    connect(&m_program, &ControlProgram::failed, this, &Session::onProgramFailed);
    connect(&m_screen, &Screen::closed, this, [this] { emit ended("the screen was closed", 1); });
    connect(
        this, &Session::happened, this, [this](const QString &line) { tell(line.toLocal8Bit()); },
        Qt::QueuedConnection);
    connect(&m_lcdTimer, &QTimer::timeout, this, &Session::lookAtLcd);
}

Result Session::start()
{
    return m_lock.acquire(m_options.folder)
        .then([this] { return checkNetworkPorts(m_options.tcpPort, m_options.firstUdpPort); })
        .then([this] { return chooseUnit(m_options, &m_choice); })
        .then([this] { return makeUnit(); })
        .then([this] { return makeWindow(); })
        .then([this] { return launchProgram(); });
}

Result Session::makeUnit()
{
    m_unit = std::make_unique<VirtualUnit>(QFile::encodeName(m_options.folder).toStdString(), m_choice.ports,
                                           [this](const WireEvent &event) { observe(event); });
    if (m_options.printLcd) {
        m_clock.start();
        m_lcdTimer.start(LcdTurnMs);
    }
    return m_unit->made()
        .then([this] { return m_unit->files().writeSettings(m_choice.settings); })
        .then([this] { return m_unit->plugCables(); });
}

/// Makes none without a desk, which is no failure.
Result Session::makeWindow()
{
    if (m_options.screen != ScreenKind::Window) {
        return {};
    }
    if (m_choice.isFrontPanel) {
        showWindow(std::make_unique<PanelWindow>(m_unit.get(), m_choice.ports));
        return {};
    }
    auto window = std::make_unique<TouchscreenWindow>(m_choice.ports);
    const TouchscreenWindow &touchscreen = *window;
    showWindow(std::move(window));
    return m_screen.start(m_options.folder, touchscreen.touchscreenId());
}

void Session::showWindow(std::unique_ptr<UnitWindow> window)
{
    m_window = std::move(window);
    m_window->setWindowTitle("mxsim: " + QDir(m_options.folder).dirName());
    connect(m_window.get(), &UnitWindow::closed, this, [this] { emit ended("the window was closed", 0); });
    connect(this, &Session::routed, m_window.get(), &UnitWindow::showRouting, Qt::QueuedConnection);
    m_window->show();
}

Result Session::launchProgram()
{
    QProcessEnvironment environment;
    m_program.setWorkingDirectory(picturesFolder(m_options.program));
    return makeProgramEnvironment(m_options, m_choice, m_screen, &environment)
        .then([this] { return m_program.openLog(m_options.folder + "/mxcontrol.log"); })
        .then([&] {
            m_program.setProcessEnvironment(environment);
            return m_program.launch(m_options.program, {});
        });
}

void Session::lookAtLcd()
{
    const std::string picture = m_lcd.look(m_unit->lcd(), m_clock.elapsed());
    if (!picture.empty()) {
        tell(QByteArray::fromStdString(picture));
    }
}

void Session::observe(const WireEvent &event)
{
    const QString line = QString::fromStdString(m_text.line(event));
    if (!line.isEmpty()) {
        emit happened(QTime::currentTime().toString("hh:mm:ss.zzz ") + line);
    }
    if (const auto *frame = std::get_if<SwitchFrame>(&event)) {
        emit routed(frame->inputs);
    }
}

void Session::onProgramFailed(const QString &reason)
{
    // A program that loses its screen ends as well, and may be noticed first.
    m_screen.awaitEnd();
    emit ended(reason, 1);
}

void Session::onUp()
{
    m_isUp = true;
    print(startMessage().toLocal8Bit());
    for (const QByteArray &line : m_early) {
        print(line);
    }
    m_early.clear();
}

void Session::tell(const QByteArray &line)
{
    if (m_isUp) {
        print(line);
    } else {
        m_early.append(line);
    }
}

void Session::print(const QByteArray &text)
{
    if (std::puts(text.constData()) < 0 || std::fflush(stdout) != 0) {
        emit ended(systemFailure("cannot write the output").failure, 1);
    }
}

QString Session::startMessage() const
{
    const QString size = QString::number(m_choice.ports);
    const QString tcp = QString::number(m_options.tcpPort);
    const QString head = "The unit is up: a matrix of %1 inputs and %1 outputs.\n"
                         "\n"
                         "  %2      %3\n";
    const QString network = "  TCP         port %1\n"
                            "  UDP         ports %2 to %3\n";
    const QString files = "  folder      %1\n"
                          "  settings    %2\n"
                          "  log         %3\n";
    return head.arg(size, m_choice.isFrontPanel ? "panel " : "screen", whereabouts()) +
           network.arg(tcp, QString::number(m_options.firstUdpPort),
                       QString::number(m_options.firstUdpPort + UdpPortCount - 1)) +
           serialPorts() +
           files.arg(shownPath(""), shownPath("home/app/config/setup.ini"), shownPath("mxcontrol.log")) +
           QString("\nTo switch, type %1 over any of them, for instance after: nc 127.0.0.1 %2\n"
                   "Ctrl-C ends the unit. What happens on its switching board:\n")
               .arg(m_choice.ports < 4 ? "2x1." : "3x1&4.", tcp);
}

/// A line for each that a person can open.
QString Session::serialPorts() const
{
    QString lines;
    int number = 1;
    for (const std::string &name : VirtualUnit::cableNames()) {
        lines += QString("  serial %1    %2\n").arg(number++).arg(shownPath(QString::fromStdString(name)));
    }
    return lines;
}

/// Where a person gets to see the unit; a second line is indented as in the start message.
QString Session::whereabouts() const
{
    if (m_options.screen == ScreenKind::None) {
        return "none";
    }
    if (m_options.vncDesk == 0) {
        return "a window of this desk";
    }
    return QString("vnc://127.0.0.1:%1, for any VNC viewer; from another machine\n"
                   "              after: ssh -L %1:127.0.0.1:%1 this-machine")
        .arg(m_options.vncDesk);
}

/// A file of the unit, as seen from the current folder when it is below that.
QString Session::shownPath(const QString &file) const
{
    const QString path = QDir::cleanPath(m_options.folder + "/" + file);
    const QString relative = QDir::current().relativeFilePath(path);
    return relative.startsWith("..") ? path : relative;
}
} // namespace sim
