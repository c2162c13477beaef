#pragma once

#include <cstdint>

/// The front panel's serial links: the key board with its LEDs on "/dev/ttymxc1", the infrared receiver on
/// "/dev/ttymxc0". After `keypad_open` for the keypad thread only. Nothing here waits.

/// -1 while not open.
extern int fd_keypad_dev;
extern int fd_iruart_dev;

/// Opens and configures both links, in place of those that are open. \return false when one cannot be
/// opened, which is printed; a link that was opened before it stays
bool keypad_open();

/// \return the code (1 to 127) of a key that was pressed, 0 when there is none
int readKey();
/// \return a character of the remote, NUL when there is none
char readInfrared();
/// Sends LED bytes to the key board; those that the link does not take at once are lost.
void sendLeds(const std::uint8_t *bytes, int n);
