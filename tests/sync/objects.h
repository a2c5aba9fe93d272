// Looking at a waitable and its kernel object from outside.

#pragma once

#include "harness/test.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/sync/waitable.h"

/// One of the 32-bit fields: the virtual table, the manual-reset flag, the resource, its type.
inline uint32_t &Field(OrvBasWaitable &waitable, uint32_t index)
{
    return reinterpret_cast<uint32_t *>(&waitable)[index];
}

/// The rights of a handle and the number of handles to its object; zeros when it is not open.
inline OBJECT_BASIC_INFORMATION Query(HANDLE handle)
{
    OBJECT_BASIC_INFORMATION information = {};
    NtQueryObject(handle, ObjectBasicInformation, &information, sizeof information, nullptr);
    return information;
}

inline bool IsOpen(HANDLE handle)
{
    return Query(handle).HandleCount != 0;
}

/// Counts its Destroy calls and remembers what it still held at the last one.
template <typename Base>
struct Watched : Base {
    using Base::Base;

    OrvResult Destroy() override
    {
        calls++;
        held = this->GetHandle();
        return Base::Destroy();
    }

    int calls = 0;
    void *held = nullptr;
};

/// A full native name, made without help from the library.
struct Path {
    wchar_t text[128] = {};
    uint32_t length = 0;

    Path &operator<<(const wchar_t *piece)
    {
        while (*piece)
            text[length++] = *piece++;
        return *this;
    }
    Path &operator<<(ULONG number)
    {
        if (number >= 10)
            *this << number / 10;
        text[length++] = static_cast<wchar_t>(L'0' + number % 10);
        return *this;
    }
};
