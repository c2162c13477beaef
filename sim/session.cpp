#include "session.h"

#include "networkports.h"
#include "unitsettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QTime>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace
{
constexpr int defaultPorts = 16;
constexpr int defaultScenes = 10;
} // namespace

Session::Session(const Options &options)
    : m_options(options)
    , m_screen(options.screen, options.vncPort)
{
    connect(&m_program, &ControlProgram::up, this, &Session::onUp);
    connect(&m_program, &ControlProgram::failed, this, &Session::onProgramFailed);
    connect(&m_screen, &Screen::closed, this,
            [this](bool byUser) { emit ended("the screen was closed", byUser ? 0 : 1); });
    connect(this, &Session::happened, this, &Session::onHappened, Qt::QueuedConnection);
}

QString Session::start()
{
    QString error = m_lock.acquire(m_options.folder);
    if (error.isEmpty()) {
        error = checkNetworkPorts(m_options.tcpPort, m_options.firstUdpPort);
    }
    if (error.isEmpty()) {
        error = m_screen.start(m_options.folder);
    }
    if (error.isEmpty()) {
        error = makeUnit();
    }
    if (error.isEmpty()) {
        error = launchProgram();
    }
    return error;
}

QString Session::makeUnit()
{
    const std::string root = QFile::encodeName(m_options.folder).toStdString();
    const bool isNew = !QFile::exists(QString::fromStdString(sim::settingsPath(root)));
    const int scenes = m_options.scenes ? m_options.scenes : isNew ? defaultScenes : 0;
    m_ports = m_options.ports ? m_options.ports : isNew ? defaultPorts : 0;
    std::map<std::string, std::string> settings;
    if (m_ports) {
        settings["system/port"] = std::to_string(m_ports);
    } else {
        m_ports = std::max(2, std::min(sim::readSetting(root, "system/port", 0), 160));
    }
    if (scenes) {
        settings["system/scene"] = std::to_string(scenes);
    }

    m_unit = std::make_unique<sim::VirtualUnit>(root, m_ports,
                                                [this](const sim::WireEvent &event) { observe(event); });
    if (m_unit->error().empty() && !m_unit->writeSettings(settings)) {
        return QString("cannot write %1").arg(QString::fromStdString(sim::settingsPath(root)));
    }
    m_unit->plugCables();
    return QString::fromStdString(m_unit->error());
}

QString Session::launchProgram()
{
    const QDir libraries(QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../lib"));
    const QString interposer = libraries.filePath("libmxioctl.so");
    if (!QFile::exists(interposer)) {
        return QString("there is no %1").arg(interposer);
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString preloaded = environment.value("LD_PRELOAD");
    environment.insert("LD_PRELOAD", preloaded.isEmpty() ? interposer : interposer + ":" + preloaded);
    environment.insert("MX_ROOT", m_options.folder);
    environment.insert("MX_TCP_PORT", QString::number(m_options.tcpPort));
    environment.insert("MX_UDP_PORT", QString::number(m_options.firstUdpPort));
    if (!environment.contains("FONTCONFIG_FILE")) {
        environment.insert("FONTCONFIG_FILE", libraries.filePath("fonts.conf"));
    }
    m_screen.addTo(&environment);
    m_program.setProcessEnvironment(environment);
    // Pictures and help are beside the folder of the program, which looks for them from where it is started.
    m_program.setWorkingDirectory(QDir::cleanPath(QFileInfo(m_options.program).path() + "/.."));
    const QString error = m_program.openLog(m_options.folder + "/mxcontrol.log");
    return error.isEmpty() ? m_program.launch(m_options.program, {}) : error;
}

void Session::observe(const sim::WireEvent &event)
{
    const QString line = QString::fromStdString(m_text.line(event));
    if (!line.isEmpty()) {
        emit happened(QTime::currentTime().toString("hh:mm:ss.zzz ") + line);
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
    print(startMessage());
    for (const QString &line : m_early) {
        print(line);
    }
    m_early.clear();
}

void Session::onHappened(const QString &line)
{
    if (m_isUp) {
        print(line);
    } else {
        m_early.append(line);
    }
}

void Session::print(const QString &text)
{
    if (puts(text.toLocal8Bit().constData()) < 0 || fflush(stdout) != 0) {
        emit ended(QString("cannot write the output: %1").arg(strerror(errno)), 1);
    }
}

QString Session::startMessage() const
{
    const QString size = QString::number(m_ports);
    const QString tcp = QString::number(m_options.tcpPort);
    const QString head = "The unit is up: a matrix of %1 inputs and %1 outputs.\n"
                         "\n"
                         "  screen      %2\n";
    const QString lines = "  TCP         port %1\n"
                          "  UDP         ports %2 to %3\n"
                          "  serial 1    %4\n"
                          "  serial 2    %5\n"
                          "  folder      %6\n"
                          "  settings    %7\n"
                          "  log         %8\n";
    return head.arg(size, m_screen.whereabouts()) +
           lines.arg(tcp, QString::number(m_options.firstUdpPort),
                     QString::number(m_options.firstUdpPort + udpPortCount - 1), shownPath("serial1"),
                     shownPath("serial2"), shownPath(""), shownPath("home/app/config/setup.ini"),
                     shownPath("mxcontrol.log")) +
           QString("\nTo switch, type %1 over any of them, for instance after: nc 127.0.0.1 %2\n"
                   "Ctrl-C ends the unit. What happens on its switching board:\n")
               .arg(m_ports < 4 ? "2x1." : "3x1&4.", tcp);
}

/// A file of the unit, as seen from the current folder when it is below that.
QString Session::shownPath(const QString &file) const
{
    const QString path = QDir::cleanPath(m_options.folder + "/" + file);
    const QString relative = QDir::current().relativeFilePath(path);
    return relative.startsWith("..") ? path : relative;
}
