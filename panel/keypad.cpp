#include "keypad.h"

#include "displayport.h"
#include "gui.h"
#include "menu.h"
#include "mxshm.h"
#include "pages.h"
#include "passgrid.h"
#include "startbitmap.h"

#include <unistd.h>

namespace
{
constexpr unsigned char KeyMark = 0x80; ///< bytes without it are no key presses

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

/// What the link does not take now is not worth waiting for.
void sendLeds(const std::uint8_t *bytes, int n)
{
    [[maybe_unused]] const ssize_t taken = ::write(fd_keypad_dev, bytes, static_cast<size_t>(n));
}
} // namespace

void *thread_keypad(void *)
{
    loadStartBitmap();
    GUI_Task();
    if (portCount(*g_mxConfig) > PanelMaxPort) {
        return nullptr;
    }
    Menu menu(sendLeds);
    while (run) {
        WM_Exec();
        lcd_drawn();
        PassGrid::wait();
        const int key = readKey();
        menu.step(key, readInfrared());
    }
    return nullptr;
}
