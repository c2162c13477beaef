#pragma once

/// Opens the serial device `path` (absolute, as on the device) raw and non-blocking, at `baud` bits a second;
/// a speed that the terminal driver does not know gives 115200. Character size, parity and stop bits stay as
/// the driver had them. \return the descriptor, or the result of the failed open; a descriptor of 0 counts as
/// failed and is returned unconfigured
int openUart(const char *path, int baud);

/// Makes an open serial device raw at `baud`, as `openUart` does; `inputFlags` are its input modes.
void configureUart(int fd, unsigned inputFlags, int baud);

/// Writes to an open serial device. Does not wait for one that takes nothing; but what is begun is finished,
/// as long as some of it goes every 100 ms. \return bytes written, or the result of the failed write
int writeUart(int fd, const void *bytes, int size);
