#pragma once

#include <atomic>
#include <cstdint>

/// The front panel: an LCD of 128 x 64 dots on "/dev/spidev2.0", keys with LEDs on "/dev/ttymxc1" and an
/// infrared receiver on "/dev/ttymxc0", run by two threads of their own.

/// Opens and configures the devices and starts `thread_lcd` and `thread_keypad`; the control object must be
/// there. May be called again: threads that run are ended first, devices that are open are opened anew. For
/// one thread. \return 0, or -1 when a device cannot be opened or a thread not be started, which is printed;
/// what was opened or started before that stays
int LCD_GUI_Init();

/// Ends both threads, waits for them, and closes the LCD's device; the serial links stay open. Nothing if
/// nothing runs.
void LCD_GUI_DeInit();

/// Serial links to the key board and to the infrared receiver, -1 while not open. For the keypad thread.
extern int fd_keypad_dev;
extern int fd_iruart_dev;

/// 1 while the threads of the panel are to go on.
extern std::atomic<int> run;

/// The panel's light, both of its lines.
void lcd_on();
void lcd_off();

/// Sends the frame memory to the controller, all of it. `thread_lcd` only, once the device is open.
void lcd_refresh();

/// Wakes `thread_lcd` if the frame memory has changed; until then it sleeps. To be called after drawing, on
/// the thread that draws.
void lcd_drawn();

/// Sleeps.
void msleep(std::uint32_t ms);
