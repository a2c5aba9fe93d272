// One result in all of its forms: into arrays of every capacity that end at an unmapped page, into a heap
// buffer, and through a writable reference.

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

inline bool IsText(const _ORV_UTF16CHAR_STR &text, const wchar_t *expected)
{
    uint32_t i = 0;
    while (expected[i] && i < text.length && text.characters[i] == expected[i])
        i++;
    return !expected[i] && i == text.length && (!text.capacity || text.characters[i] == 0);
}

/// `counted(out, required)`, `heap(out)` and `reference(out)` call the operation's three forms. `capacity0`
/// is the result of success when there is no room at all.
template <typename Counted, typename Heap, typename Reference>
void CheckForms(const wchar_t *expected, OrvResult result, Counted counted, Heap heap, Reference reference,
                bool needsNoRoomWhenEmpty = false)
{
    uint32_t length = 0;
    while (expected[length])
        length++;
    for (uint32_t capacity = 0; capacity <= length + 1; capacity++) {
        wchar_t *const array = capacity ? GuardedArray<wchar_t>(capacity) : nullptr;
        for (uint32_t i = 0; i < capacity; i++)
            array[i] = L'#';
        _ORV_UTF16CHAR_STR out = {77, capacity, array};
        unsigned int required = 99;
        if (capacity > length || (length == 0 && needsNoRoomWhenEmpty)) {
            CHECK_EQUAL(counted(out, &required), result);
            CHECK(IsText(out, expected));
            continue;
        }
        CHECK_EQUAL(counted(out, &required), ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(required, length + 1);
        CHECK_EQUAL(out.length, 77u);
        CHECK(!capacity || (array[0] == L'#' && array[capacity - 1] == L'#'));
        CHECK_EQUAL(counted(out, nullptr), ORV_E_BUFFER_TOO_SMALL);
    }
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(heap(buffer), result);
    CHECK_TEXT(buffer.GetValue(), expected);
    buffer.Assign(L"what stood here before, which is longer than many a result is");
    CHECK_EQUAL(reference(OrvMakeMutableStringRef(buffer)), result);
    CHECK_TEXT(buffer.GetValue(), expected);
}

/// The same for an operation on a path, which is given with and without a terminator.
inline void CheckPath(const wchar_t *path, const wchar_t *expected, OrvResult result,
                      const Operation &operation, bool needsNoRoomWhenEmpty = false)
{
    uint32_t length = 0;
    while (path[length])
        length++;
    const wchar_t *const unterminated = GuardedCopy(path, length);
    CheckForms(
        expected, result,
        [&](_ORV_UTF16CHAR_STR &out, unsigned int *required) {
            return operation.counted(out, unterminated, length, required);
        },
        [&](OrvUtf16CharHeapBuffer &out) { return operation.heap(out, path, OrvTerminated); },
        [&](const Reference &out) {
            return operation.reference(out, {unterminated, length});
        },
        needsNoRoomWhenEmpty);
}

} // namespace test
