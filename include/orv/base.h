// What every public header needs: the export macro, the result code with its two tests, and the length that
// means "terminated".

#pragma once

#include <stddef.h>
#include <stdint.h>

// ORV_BUILD is set while orvsys.dll itself is built, ORV_STATIC by a program that links the objects directly.
#if defined(ORV_STATIC)
#define ORV_API
#elif defined(ORV_BUILD)
#define ORV_API __declspec(dllexport)
#else
#define ORV_API __declspec(dllimport)
#endif

// Marks short operations that are always inlined into their caller. Microsoft's compiler decides for itself:
// with __forceinline it would warn wherever it cannot obey, as in the clean-up code of exceptions.
#ifdef __clang__
#define ORV_ALWAYS_INLINE __forceinline
#else
#define ORV_ALWAYS_INLINE inline
#endif

/// A result code. Below zero is failure, 0 is plain success, above zero is a success with a remark. The named
/// values and the layout are in orv/runtime/result.h.
typedef int32_t OrvResult;

/// Whether the result is a failure: below zero, warnings included.
constexpr bool OrvFailed(OrvResult result)
{
    return result < 0;
}

/// Whether the result is a success, with a remark or without.
constexpr bool OrvSucceeded(OrvResult result)
{
    return result >= 0;
}

/// As a length, this means that the text is terminated: its characters are counted up to the terminator.
constexpr uint32_t OrvTerminated = 0xFFFFFFFF;
