#include "keypad.h"

#include "paneldevice.h"
#include "uart.h"

#include <fcntl.h>
#include <initializer_list>
#include <termios.h>
#include <unistd.h>

int fd_keypad_dev = -1;
int fd_iruart_dev = -1;

namespace
{
constexpr char KeypadDevice[] = "/dev/ttymxc1";
constexpr char InfraredDevice[] = "/dev/ttymxc0";
constexpr int PanelBaud = 115200;

constexpr unsigned char KeyMark = 0x80; ///< bytes without it are no key presses
} // namespace

bool keypad_open()
{
    constexpr int Flags = O_NOCTTY | O_NONBLOCK;
    if (!reopenDevice(fd_keypad_dev, KeypadDevice, Flags) ||
        !reopenDevice(fd_iruart_dev, InfraredDevice, Flags)) {
        return false;
    }
    for (const int fd : {fd_keypad_dev, fd_iruart_dev}) {
        configureUart(fd, IGNPAR, PanelBaud);
    }
    return true;
}

int readKey()
{
    unsigned char byte = 0;
    const bool isKey = ::read(fd_keypad_dev, &byte, 1) == 1 && (byte & KeyMark) != 0;
    return isKey ? byte & ~KeyMark : 0;
}

char readInfrared()
{
    char character = '\0';
    return ::read(fd_iruart_dev, &character, 1) == 1 ? character : '\0';
}

void sendLeds(const std::uint8_t *bytes, int n)
{
    [[maybe_unused]] const ssize_t taken = ::write(fd_keypad_dev, bytes, static_cast<size_t>(n));
}
