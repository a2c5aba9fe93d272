// The code pages of byte strings.

#pragma once

#include "orv/base.h"

enum OrvCodePage : uint32_t {
    OrvCodePageDefault = 0, ///< the platform's ANSI page
    OrvCodePageAnsi = 1,    ///< the platform's ANSI page towards UTF-16, Latin-1 in every other direction
    OrvCodePageOem = 2,     ///< the platform's OEM page
    OrvCodePageUtf7 = 3,
    OrvCodePageUtf8 = 4,
    OrvCodePageUtf16 = 5, ///< little-endian
};
