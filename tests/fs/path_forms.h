// One result in all of its forms: into arrays of every capacity that end at an unmapped page, into a heap
// buffer, and through a writable reference. The forms of what is computed from the text alone are the fuzz
// target's.

#pragma once

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/fs/path.h"
#include "orv/runtime/result.h"

namespace test
{

typedef OrvMutableStringRefBase2<wchar_t> Reference;

/// The forms of an operation that takes a path and gives a text.
struct Operation {
    OrvResult (*counted)(_ORV_UTF16CHAR_STR &, const wchar_t *, uint32_t, unsigned int *);
    OrvResult (*heap)(OrvUtf16CharHeapBuffer &, const wchar_t *, uint32_t);
    OrvResult (*reference)(const Reference &, const OrvStringRefBase<wchar_t> &);
};

inline uint32_t LengthOf(const wchar_t *text)
{
    uint32_t length = 0;
    while (text[length])
        length++;
    return length;
}

/// The path is given with and without a terminator.
inline void CheckPath(const wchar_t *path, const wchar_t *expected, const Operation &operation)
{
    const uint32_t pathLength = LengthOf(path), length = LengthOf(expected);
    const wchar_t *const unterminated = GuardedCopy(path, pathLength);
    for (uint32_t capacity = 0; capacity <= length + 1; capacity++) {
        const wchar_t *const array = GuardedArray<wchar_t>(capacity); // of zeros
        _ORV_UTF16CHAR_STR out = {77, capacity, const_cast<wchar_t *>(array)};
        unsigned int required = 99;
        const OrvResult result = operation.counted(out, unterminated, pathLength, &required);
        if (capacity > length) {
            CHECK_EQUAL(result, ORV_S_OK);
            CHECK_EQUAL(out.length, length);
            CHECK_TEXT(array, expected);
            continue;
        }
        CHECK_EQUAL(result, ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(required, length + 1);
        CHECK_EQUAL(out.length, 77u);
        CHECK(!capacity || (array[0] == 0 && array[capacity - 1] == 0));
        CHECK_EQUAL(operation.counted(out, unterminated, pathLength, nullptr), ORV_E_BUFFER_TOO_SMALL);
    }
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(operation.heap(buffer, path, OrvTerminated), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), expected);
    buffer.Assign(L"what stood here before, which is longer than many a result is");
    CHECK_EQUAL(operation.reference(OrvMakeMutableStringRef(buffer), {unterminated, pathLength}), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), expected);
}

} // namespace test
