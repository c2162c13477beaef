// A control program of a few lines: it comes up, uses its devices once, and stays until it is ended. What it
// is told and who it is stands in the file "fakecontrol" of its root.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
volatile sig_atomic_t askedToEnd = 0;

int openDevice(const std::string &name)
{
    return open((std::string(getenv("MX_ROOT")) + "/dev/" + name).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
}
} // namespace

int main()
{
    signal(SIGTERM, [](int) { askedToEnd = 1; });
    FILE *told = fopen((std::string(getenv("MX_ROOT")) + "/fakecontrol").c_str(), "w");
    fprintf(told, "%d", getpid());
    for (const char *name : {"MX_TCP_PORT", "MX_UDP_PORT", "QT_QPA_PLATFORM", "LD_PRELOAD"}) {
        fprintf(told, " %s", getenv(name));
    }
    fclose(told);

    ioctl(openDevice("gpiodev"), 1, 4);
    const int matrix = openDevice("ttymxc2");
    const bool isWritten = dprintf(matrix, "F00C00000002FFFFFFFF0002\r\nF00C00000002FFFFFFFF0002\r\n") == 52;
    printf("starting\rt0 2026-01-01 00:00:00\n");
    fflush(stdout);
    while (isWritten && !askedToEnd) {
        usleep(10'000);
    }
    puts(isWritten ? "asked to end" : "no board");
}
