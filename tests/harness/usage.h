// What the process holds at the moment. A test compares this before and after: a difference is a leak.

#pragma once

#include <stdint.h>

namespace test
{

struct Usage {
    uint32_t handles;
    uint32_t blocks; ///< of the process heap that the library and the program hold; only differences mean
                     ///< something
};

Usage CountUsage();

} // namespace test

/// The process holds as much as it did when `before` was counted.
#define CHECK_USAGE(before)                                                                                  \
    do {                                                                                                     \
        const test::Usage now = test::CountUsage();                                                          \
        CHECK_EQUAL(now.handles, (before).handles);                                                          \
        CHECK_EQUAL(now.blocks, (before).blocks);                                                            \
    } while (false)
