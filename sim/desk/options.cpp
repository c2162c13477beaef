#include "options.h"

#include "parts.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMap>

namespace sim
{
namespace
{
struct NumberOption {
    QCommandLineOption option;
    int lowest;
    int highest;
};

/// Reads a number that has to be in the option's range. An option that is not given and has no default leaves
/// `number` alone.
template <class Number>
Result readNumber(const QCommandLineParser &parser, const NumberOption &of, Number *number)
{
    const QString text = parser.value(of.option);
    if (text.isEmpty() && !parser.isSet(of.option)) {
        return {};
    }
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < of.lowest || value > of.highest) {
        return {QString("--%1 takes a number from %2 to %3, not \"%4\"")
                    .arg(of.option.names().first())
                    .arg(of.lowest)
                    .arg(of.highest)
                    .arg(text)};
    }
    *number = static_cast<Number>(value);
    return {};
}

/// A platform that the environment has settled is left alone.
QString defaultScreen()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        return "none";
    }
    return qEnvironmentVariableIsEmpty("DISPLAY") ? "vnc" : "window";
}

Result readScreen(const QString &text, ScreenKind *screen)
{
    const QMap<QString, ScreenKind> kinds{
        {"window", ScreenKind::Window}, {"vnc", ScreenKind::Vnc}, {"none", ScreenKind::None}};
    if (!kinds.contains(text)) {
        return {QString("--screen takes window, vnc or none, not \"%1\"").arg(text)};
    }
    *screen = kinds.value(text);
    return {};
}

Result readFace(bool isTouchscreen, bool isFrontPanel, Face *face)
{
    if (isTouchscreen && isFrontPanel) {
        return {"--touchscreen and --front-panel are not for one unit"};
    }
    *face = isTouchscreen ? Face::Touchscreen : isFrontPanel ? Face::FrontPanel : Face::AsLastTime;
    return {};
}

Result findProgram(const QString &path, Options *options)
{
    const QFileInfo file(path);
    options->program = file.absoluteFilePath();
    if (!file.isFile() || !file.isExecutable()) {
        return {QString("there is no program %1").arg(path)};
    }
    return {};
}
} // namespace

Result parseOptions(const QStringList &arguments, Options *options)
{
    const QCommandLineOption folder("folder", "Where the unit keeps its files (./unit).", "dir", "./unit");
    const QCommandLineOption program("program", "The control program (the mxcontrol that came with mxsim).",
                                     "path", partsOf(QCoreApplication::applicationDirPath()).program);
    const NumberOption ports{
        {"ports", "Inputs and outputs of the matrix, 2 to 160 (as last time, or 16).", "n"}, 2, 160};
    const NumberOption scenes{
        {"scenes", "Scenes of the matrix, 10 to 40 (as last time, or 10).", "n"}, 10, 40};
    const NumberOption tcp{{"tcp-port", "TCP port for commands (5000).", "port", "5000"}, 1, 65535};
    const NumberOption udp{
        {"udp-port", "First of the eight UDP ports for commands (4000).", "port", "4000"}, 1, 65528};
    const QCommandLineOption screen(
        "screen",
        "Where the unit is to be seen: window, on this desk; vnc, for VNC viewers; "
        "none (window on a desk, vnc elsewhere, none if QT_QPA_PLATFORM is set).",
        "kind", defaultScreen());
    const NumberOption vnc{
        {"vnc-port", "TCP port for VNC viewers (first free one from 5900 on).", "port"}, 1, 65535};
    const QCommandLineOption touchscreen("touchscreen",
                                         "Operated from the touchscreen (as last time, or this).");
    const QCommandLineOption frontPanel(
        "front-panel", "Operated from the front panel: LCD, keys and remote; up to 40 ports.");
    const QCommandLineOption lcd("lcd", "Prints what the front panel's LCD shows, whenever it has changed.");

    QCommandLineParser parser;
    parser.setApplicationDescription("A matrix switcher without the hardware: runs its control program and\n"
                                     "shows what reaches the switching board.");
    parser.addOptions({folder, ports.option, scenes.option, touchscreen, frontPanel, lcd, tcp.option,
                       udp.option, screen, vnc.option, program});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    if (!parser.parse(arguments)) {
        return {parser.errorText()};
    }
    if (parser.isSet(help)) {
        parser.showHelp();
    }
    if (parser.isSet(version)) {
        parser.showVersion();
    }
    if (!parser.positionalArguments().isEmpty()) {
        return {QString("\"%1\" is no option; see --help").arg(parser.positionalArguments().first())};
    }
    if (parser.value(folder).isEmpty()) {
        return {"--folder takes the name of a folder"};
    }

    options->printLcd = parser.isSet(lcd);
    options->vncDesk = static_cast<quint16>(qEnvironmentVariableIntValue(VncDeskVariable));
    qunsetenv(VncDeskVariable);
    options->folder = QDir::cleanPath(QDir::current().absoluteFilePath(parser.value(folder)));
    return readScreen(parser.value(screen), &options->screen)
        .then([&] { return readNumber(parser, ports, &options->ports); })
        .then([&] { return readNumber(parser, scenes, &options->scenes); })
        .then([&] { return readNumber(parser, tcp, &options->tcpPort); })
        .then([&] { return readNumber(parser, udp, &options->firstUdpPort); })
        .then([&] { return readNumber(parser, vnc, &options->vncPort); })
        .then([&] { return readFace(parser.isSet(touchscreen), parser.isSet(frontPanel), &options->face); })
        .then([&] { return findProgram(parser.value(program), options); });
}
} // namespace sim
