#include "fuzz.h"
#include "options.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

namespace
{
bool isIn(int number, int lowest, int highest)
{
    return number >= lowest && number <= highest;
}
} // namespace

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
    require(options.ports == 0 || isIn(options.ports, 2, 160));
    require(options.scenes == 0 || isIn(options.scenes, 10, 40));
    require(!read.isDone() || (options.tcpPort > 0 && isIn(options.firstUdpPort, 1, 65528)));
    require(!read.isDone() ||
            (QFileInfo(options.folder).isAbsolute() && QFileInfo(options.program).isFile()));
    return 0;
}
