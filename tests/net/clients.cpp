#include "clients.h"

#include <malloc.h>

/// Of the sanitizers' allocators; missing without one.
extern "C" size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

qint64 heapBytes()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
    }
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<qint64>(heap.uordblks) + static_cast<qint64>(heap.hblkhd);
}
