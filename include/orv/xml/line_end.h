// How a text stream ends a line.

#pragma once

#include "orv/base.h"

/// The characters that end a line.
enum LineEndSequence : uint32_t {
    LineEndLf = 0,   ///< line feed
    LineEndCr = 1,   ///< carriage return
    LineEndCrLf = 2, ///< carriage return and line feed, the default of a writer
};
