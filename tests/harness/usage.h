// What the process holds at the moment, to be compared before and after: what differs has leaked.

#pragma once

#include "harness/test.h"

#include <stdint.h>

namespace test
{

struct Usage {
    uint32_t handles;
    uint32_t blocks; ///< of the process heap
};

Usage CountUsage();

} // namespace test

/// The process holds as much as it did when `before` was counted. The platform's heap begins to put blocks of a size
/// into groups, which count as blocks, once that size is often asked for; when that is depends on the length of the
/// program's path, too. So a case whose blocks differ runs again until they settle: what leaks does so each time.
#define CHECK_USAGE(before)                                                                                  \
    do {                                                                                                     \
        const test::Usage now = test::CountUsage();                                                          \
        CHECK_EQUAL(now.handles, (before).handles);                                                          \
        if (now.blocks == (before).blocks || !test::RunOnceMore())                                           \
            CHECK_EQUAL(now.blocks, (before).blocks);                                                        \
    } while (false)
