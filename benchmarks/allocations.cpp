#include "allocations.h"

#include <cstddef>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
}

static thread_local unsigned long count = 0;

extern "C" void *malloc(std::size_t size)
{
    ++count;
    return __libc_malloc(size);
}

extern "C" void *calloc(std::size_t members, std::size_t size)
{
    ++count;
    return __libc_calloc(members, size);
}

extern "C" void *realloc(void *block, std::size_t size)
{
    ++count;
    return __libc_realloc(block, size);
}

unsigned long allocationCount()
{
    return count;
}
