#pragma once

/// Thread entry: the panel's user interface. Shows the start picture for 2 s, then serves keys and remote
/// until `run` is cleared. Ends at once after the start picture when the matrix has more than 40 ports. The
/// argument is not used. \return null
void *thread_keypad(void *);
