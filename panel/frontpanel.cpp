#include "frontpanel.h"

#include "framememory.h"
#include "heartbeat.h"
#include "keypad.h"
#include "lcd.h"
#include "menu.h"
#include "mxshm.h"
#include "pages.h"
#include "panelports.h"
#include "panelrun.h"
#include "passgrid.h"
#include "startbitmap.h"

#include <cstdio>
#include <pthread.h>

namespace
{
struct Thread {
    pthread_t handle;
    bool isRunning;

    bool start(void *(*entry)(void *))
    {
        isRunning = pthread_create(&handle, nullptr, entry, nullptr) == 0;
        return isRunning;
    }
    void join()
    {
        if (isRunning) {
            pthread_join(handle, nullptr);
        }
        isRunning = false;
    }
};
Thread tid_lcd{};
Thread tid_keypad{};

void *thread_lcd(void *)
{
    Heartbeat heart;
    lcd_setUp();
    lcd_on();
    while (run) {
        heart.beat();
        // Lowered before the memory is read: what changes meanwhile raises it again.
        if (nLcdBufferChanged.exchange(0, std::memory_order_acquire) && !lcd_refresh()) {
            nLcdBufferChanged = 1; // once more, when something is drawn or after a second
        }
        lcd_await();
    }
    return nullptr;
}

void *thread_keypad(void *)
{
    Heartbeat heart;
    loadStartBitmap();
    GUI_Task();
    if (!fitsPanel(portCount(*g_mxConfig))) {
        return nullptr;
    }
    Menu menu(sendLeds);
    while (run) {
        heart.beat();
        WM_Exec();
        lcd_drawn();
        PassGrid::wait();
        const int key = readKey();
        menu.step(key, readInfrared());
    }
    return nullptr;
}

bool startThread(Thread &thread, void *(*entry)(void *), const char *name)
{
    if (thread.start(entry)) {
        pthread_setname_np(thread.handle, name);
    } else {
        std::printf("can't open create %s", name);
        std::fflush(stdout);
    }
    return thread.isRunning;
}

void endThreads()
{
    stopRunning();
    tid_lcd.join();
    tid_keypad.join();
}
} // namespace

int LCD_GUI_Init()
{
    endThreads();
    run = 1;
    if (!lcd_open() || !keypad_open()) {
        return -1;
    }
    lcd_configure();
    const bool isUp = startThread(tid_lcd, thread_lcd, "thread_lcd") &&
                      startThread(tid_keypad, thread_keypad, "thread_keypad");
    return isUp ? 0 : -1;
}

void LCD_GUI_DeInit()
{
    endThreads();
    lcd_close();
}
