#include "fuzz.h"
#include "options.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

/// The command line of mxsim, a NUL between two arguments. Those that print something and exit are left out.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *names[] = {name, nullptr};
    static const QCoreApplication application(count, names);
    static const QRegularExpression exits("^(-[hv?].*|--(help.*|version.*|h|v|\\?)(=.*)?)$",
                                          QRegularExpression::DotMatchesEverythingOption);
    QStringList arguments =
        QString::fromUtf8(reinterpret_cast<const char *>(data), int(size)).split(QChar(0));
    for (QString &argument : arguments) {
        argument.replace(exits, "-");
    }
    sim::Options options;
    const sim::Result read = sim::parseOptions(QStringList("mxsim") + arguments, &options);
    require(options.ports == 0 || (options.ports >= 2 && options.ports <= 160));
    require(options.scenes == 0 || (options.scenes >= 10 && options.scenes <= 40));
    if (read.isDone()) {
        require(options.tcpPort > 0 && options.firstUdpPort > 0 && options.firstUdpPort <= 65528);
        require(QFileInfo(options.folder).isAbsolute() && QFileInfo(options.program).isFile());
    }
    return 0;
}
