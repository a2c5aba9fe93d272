// How text is passed to and from operations: counted descriptors of a caller's array, read-only references,
// and writable references that can make the owner of the characters grow. All have plain layouts, and their
// field order is part of the interface. Counts are in characters of the type's own width, never in bytes.

#pragma once

#include "orv/base.h"

/// A UTF-16 array of the caller.
struct _ORV_UTF16CHAR_STR {
    uint32_t length;     ///< characters in use, terminator not counted; as input it may be OrvTerminated
    uint32_t capacity;   ///< characters that the array can hold, terminator included
    wchar_t *characters; ///< may be null when capacity is 0
};

/// A byte array of the caller.
struct _ORV_MBCHAR_STR {
    uint32_t length;   ///< as above, in bytes
    uint32_t capacity; ///< as above, in bytes
    char *characters;  ///< as above
};

static_assert(offsetof(_ORV_UTF16CHAR_STR, capacity) == 4 && sizeof(_ORV_UTF16CHAR_STR) == 12,
              "fixed layout");
static_assert(offsetof(_ORV_MBCHAR_STR, capacity) == 4 && sizeof(_ORV_MBCHAR_STR) == 12, "fixed layout");

/// The descriptor type for a character type, for code written once for both widths.
template <typename T>
struct OrvDescriptorOf;

/// The descriptor of UTF-16 text.
template <>
struct OrvDescriptorOf<wchar_t> {
    typedef _ORV_UTF16CHAR_STR Type; ///< for UTF-16
};

/// The descriptor of a byte string.
template <>
struct OrvDescriptorOf<char> {
    typedef _ORV_MBCHAR_STR Type; ///< for bytes
};

/// Text to read: not owned, not necessarily terminated.
template <typename T, int = 0>
struct OrvStringRefBase {
    const T *characters; ///< may be null when the length is 0
    uint32_t length;     ///< OrvTerminated: the characters are counted up to their terminator

    /// No text, a terminated text, or a counted text.
    constexpr OrvStringRefBase() : characters(nullptr), length(0) {}
    constexpr OrvStringRefBase(const T *terminated) : characters(terminated), length(OrvTerminated) {}
    constexpr OrvStringRefBase(const T *text, uint32_t count) : characters(text), length(count) {}
};

static_assert(sizeof(OrvStringRefBase<wchar_t>) == 8, "fixed layout");

/// Text to read that has a terminator, so that its characters can be passed on as they are.
template <typename T, int = 0>
struct OrvStringzRefBase {
    const T *characters; ///< terminated

    /// A terminated text.
    constexpr OrvStringzRefBase(const T *terminated) : characters(terminated) {}
};

/// The part of a writable reference that changes with its owner: the current array and length.
template <typename T>
struct OrvMutableStringView {
    T *characters;   ///< null while the owner holds no characters
    uint32_t length; ///< in characters
};

/// How a writable reference reaches the owner of its characters. Each operation stores the changes in the
/// reference's view, and returns a result code.
template <typename T>
struct OrvMutableStringOperations {
    uint32_t kind; ///< always 1

    /// Sets the owner's length, growing it as needed, with a terminator after the last character.
    OrvResult (*resize)(OrvMutableStringView<T> &view, uint32_t length, void *owner);

    /// Makes the owner able to hold `count` characters without another allocation.
    OrvResult (*reserve)(T *&characters, uint32_t count, void *owner);

    /// Exchanges the storage of two owners of the same kind: returns ORV_E_NOT_SUPPORTED when the other
    /// reference has another table. May be null.
    OrvResult (*exchange)(OrvMutableStringView<T> &view, const OrvMutableStringOperations *otherTable,
                          void *owner, OrvMutableStringView<T> &otherView, void *otherOwner);
};

/// Text to write: the owner, the way to make it grow, and a view of its characters. Operations take it by
/// const reference, because it is a handle: its view is brought up to date as the owner changes.
template <typename T, int = 0>
struct OrvMutableStringRefBase2 {
    const OrvMutableStringOperations<T> *operations; ///< how the owner is reached
    void *owner;                                     ///< the argument of its operations
    mutable OrvMutableStringView<T> view;            ///< what the owner holds at the moment
};

static_assert(sizeof(OrvMutableStringRefBase2<wchar_t>) == 16, "fixed layout");
