#include "commandline.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{
constexpr char Help[] =
    "usage: mxcontrol [-platform PLUGIN] [--help | --version]\n"
    "\n"
    "Runs the unit: the control application of a matrix switcher. It works on the devices, files and\n"
    "shared objects of the unit, once on each, until SIGTERM. Start it in the folder of its pictures.\n"
    "\n"
    "  -platform PLUGIN  Qt's platform plugin, as linuxfb or offscreen (or in QT_QPA_PLATFORM)\n"
    "  --help            this\n"
    "  --version         the version\n"
    "\n"
    "  MX_ROOT           a folder in front of all paths, for a unit on a desk\n"
    "  MX_TCP_PORT       TCP port (5000)\n"
    "  MX_UDP_PORT       first of eight UDP ports (4000)\n";

bool given(const char *option, int argc, char **argv)
{
    return std::any_of(argv + std::min(argc, 1), argv + argc,
                       [option](const char *argument) { return std::strcmp(argument, option) == 0; });
}
} // namespace

bool CommandLine::answered(int argc, char **argv)
{
    if (given("--help", argc, argv)) {
        std::fputs(Help, stdout);
        return true;
    }
    if (given("--version", argc, argv)) {
        std::puts("mxcontrol " MX_VERSION);
        return true;
    }
    return false;
}

bool CommandLine::isWrong(const QStringList &arguments)
{
    if (arguments.size() < 2) {
        return false;
    }
    std::fprintf(stderr, "mxcontrol: no such option: %s (try --help)\n", qPrintable(arguments.at(1)));
    return true;
}
