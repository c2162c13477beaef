#pragma once

/// The front panel: LCD, keys with LEDs and infrared receiver, run by two threads of their own. `thread_lcd`
/// sends what is drawn to the LCD. `thread_keypad` shows the start picture for 2 s and then serves keys and
/// remote; it ends after the picture when the matrix does not fit the panel.

/// Opens and configures the devices and starts both threads; the control object must be there. May be called
/// again: threads that run are ended first, devices that are open are opened anew. For one thread. \return 0,
/// or -1 when a device cannot be opened or a thread cannot be started, which is printed; what was opened or
/// started before that stays
int LCD_GUI_Init();

/// Ends both threads, waits for them, and closes the LCD's device; the serial links stay open. Does nothing
/// when nothing runs.
void LCD_GUI_DeInit();
