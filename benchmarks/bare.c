// What the idle product does, as system calls and nothing else: the peer of its idle figures. Ends on
// SIGTERM. Argument: "touchscreen", or "panel" for the two threads of the front panel instead of the pages'
// timer.
//
// The loops sleep 10 ms from pass to pass, as such loops are usually written; that of the LCD looks in each
// pass for something to send, where the product's sleeps on until something is drawn. The serial ports are
// ends of pseudo terminals, as those of the virtual unit are.

#define _GNU_SOURCE
#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

enum { Control0, Control1, Matrix, Keys, Infrared, PortCount };
enum { UdpSockets = 8, Sockets = UdpSockets + 1 };
enum { PageMs = 200, SecondMs = 1000 };

static int ports[PortCount];
static int queue;

static void leave(int signal)
{
    msgctl(queue, IPC_RMID, NULL);
    _exit(signal == SIGTERM ? 0 : 1);
}

static void sleepPass(void)
{
    const struct timespec pass = {0, 10 * 1000 * 1000};
    nanosleep(&pass, NULL);
}

/// The far end: a process that reads what is written, as long as this one lives.
static void takeAll(int master)
{
    if (fork() == 0) {
        char bytes[4096];
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (read(master, bytes, sizeof bytes) > 0) {
        }
        _exit(0);
    }
}

static int openPort(void)
{
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
        exit(1);
    }
    const int port = open(ptsname(master), O_RDWR | O_NOCTTY | O_NONBLOCK);
    struct termios attributes;
    if (tcgetattr(port, &attributes) != 0) {
        exit(1);
    }
    cfmakeraw(&attributes);
    attributes.c_cc[VTIME] = 0;
    attributes.c_cc[VMIN] = 0;
    tcsetattr(port, TCSANOW, &attributes);
    takeAll(master);
    return port;
}

static int openSocket(int type)
{
    struct sockaddr_in any;
    memset(&any, 0, sizeof any);
    any.sin_family = AF_INET;
    const int descriptor = socket(AF_INET, type | SOCK_NONBLOCK, 0);
    if (bind(descriptor, (struct sockaddr *)&any, sizeof any) != 0) {
        exit(1);
    }
    if (type == SOCK_STREAM) {
        listen(descriptor, 50);
    }
    return descriptor;
}

static void drain(int port, size_t size)
{
    char bytes[4096];
    while (read(port, bytes, size) > 0) {
    }
}

static void *control(void *unused)
{
    struct {
        long type;
        char text[516];
    } message;
    for (;;) {
        sleepPass();
        drain(ports[Control0], 4096);
        drain(ports[Control1], 4096);
        while (msgrcv(queue, &message, sizeof message.text, 0, IPC_NOWAIT | MSG_NOERROR) >= 0) {
        }
        drain(ports[Matrix], 512);
    }
    return unused;
}

static void *lcd(void *unused)
{
    for (;;) {
        sleepPass();
    }
    return unused;
}

static void *keypad(void *unused)
{
    static const char leds[2 * 16];
    for (int pass = 1;; ++pass) {
        sleepPass();
        drain(ports[Keys], 1);
        drain(ports[Infrared], 1);
        if (pass % 5 == 0 && write(ports[Keys], leds, sizeof leds) < 0) {
            exit(1);
        }
    }
    return unused;
}

static long milliseconds(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000 + now.tv_nsec / 1000000;
}

/// The event loop: sockets, and timers of this many milliseconds.
static void serve(const long *periods, int count)
{
    struct pollfd sockets[Sockets];
    for (int i = 0; i < Sockets; ++i) {
        sockets[i].fd = openSocket(i < UdpSockets ? SOCK_DGRAM : SOCK_STREAM);
        sockets[i].events = POLLIN;
    }
    long due[2];
    for (int i = 0; i < count; ++i) {
        due[i] = milliseconds() + periods[i];
    }
    for (;;) {
        long first = due[0];
        for (int i = 1; i < count; ++i) {
            first = due[i] < first ? due[i] : first;
        }
        const long left = first - milliseconds();
        poll(sockets, Sockets, left > 0 ? (int)left : 0);
        for (int i = 0; i < count; ++i) {
            due[i] += due[i] <= milliseconds() ? periods[i] : 0;
        }
    }
}

int main(int argc, char **argv)
{
    static const long touchscreen[] = {SecondMs, PageMs};
    const int hasPanel = argc > 1 && strcmp(argv[1], "panel") == 0;
    for (int i = 0; i < PortCount; ++i) {
        ports[i] = openPort();
    }
    queue = msgget(IPC_PRIVATE, 0600);
    signal(SIGTERM, leave);
    pthread_t thread;
    pthread_create(&thread, NULL, control, NULL);
    if (hasPanel) {
        pthread_create(&thread, NULL, lcd, NULL);
        pthread_create(&thread, NULL, keypad, NULL);
    }
    serve(touchscreen, hasPanel ? 1 : 2);
    return 0;
}
