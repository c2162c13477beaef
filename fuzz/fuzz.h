#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What every target defines: runs the product's code on one input, which may be anything, and ends the
/// program by `require`, or by a sanitizer, when something is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

inline void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}
