#pragma once

#include <atomic>
#include <cstdint>

/// How the two threads of the front panel, `thread_lcd` and `thread_keypad`, go on, wait and end.

/// 1 while they are to go on.
extern std::atomic<int> run;

/// Clears `run` and wakes `thread_lcd`. Any thread.
void stopRunning();

/// Wakes `thread_lcd` if the frame memory has changed. To be called after drawing, on the thread that draws.
void lcd_drawn();
/// Sleeps until `lcd_drawn` or `stopRunning` wakes it, for a second at most; does not sleep when one of them
/// has done so since the last call. `thread_lcd` only.
void lcd_await();

/// Sleeps.
void msleep(std::uint32_t ms);
