// Abstract sinks and containers that operations take by reference, so that operations can fill a caller's own
// types. Their virtual functions have the order given. None has a virtual destructor, because nothing is ever
// deleted through one.

#pragma once

#include "orv/base.h"

/// Takes a text piece by piece.
template <typename T>
class OrvBasAppendable
{
public:
    /// Takes the characters from `first` up to, not including, `last`. A failure ends the operation that
    /// writes and becomes its result.
    virtual OrvResult Append(const T *first, const T *last) = 0;

protected:
    ~OrvBasAppendable() = default;
};

/// A string that is set as a whole.
template <typename T, int = 0>
class IOrvString
{
public:
    /// Replaces the content with `length` characters.
    virtual OrvResult Set(const T *characters, uint32_t length) = 0;

    /// The content and its length; not necessarily terminated.
    virtual const T *GetCharacters() const = 0;
    virtual uint32_t GetLength() const = 0;

protected:
    ~IOrvString() = default;
};

/// An array of plain elements, bytes mostly, that can be resized.
template <typename T>
class IOrvBuffer
{
public:
    /// Keeps the elements up to the smaller of both sizes; new ones have any value.
    virtual OrvResult Resize(uint32_t size) = 0;

    /// The elements and their number.
    virtual T *GetElements() = 0;
    virtual uint32_t GetSize() const = 0;

protected:
    ~IOrvBuffer() = default;
};

/// Takes a sequence item by item.
template <typename T>
class IOrvBackInserter
{
public:
    /// A failure ends the operation that inserts and becomes its result.
    virtual OrvResult Insert(const T &item) = 0;

protected:
    ~IOrvBackInserter() = default;
};

/// Gives a sequence item by item.
template <typename T>
class IOrvEnumerator
{
public:
    /// Stores the next item and sets `found`; after the last item, clears `found` and stores nothing.
    virtual OrvResult Next(T &item, bool &found) = 0;

protected:
    ~IOrvEnumerator() = default;
};
