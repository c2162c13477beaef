#pragma once

/// The front panel's LCD: 128 x 64 dots behind "/dev/spidev2.0", with a controller that GPIO resets, and a
/// light. After `lcd_open` and until `lcd_close` for `thread_lcd` only; the control object must be there.

/// Opens the device, in place of one that is open. \return false when it cannot be opened, which is printed
bool lcd_open();
/// Sets the mode and the speed of the open device.
void lcd_configure();
void lcd_close();

/// Resets the controller and sets it up for graphics, in 20 ms.
void lcd_setUp();

/// Sends the frame memory to the controller. \return whether all of it went
bool lcd_refresh();

/// The light, both of its lines. Any thread.
void lcd_on();
void lcd_off();
