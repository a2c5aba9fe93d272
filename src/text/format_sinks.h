// The sinks: the targets of formatted text. A sink is a type with a Character and two operations that return
// a result code: Write(characters, count) and Fill(character, count). They are not inlined into the engine,
// which calls them from many places; for its pieces, the cost of a call is small.

#pragma once

#include "crt/memory.h"
#include "orv/runtime/result.h"
#include "orv/text/interfaces.h"
#include "orv/text/string_ref.h"

namespace detail
{

template <typename T>
__declspec(noinline) void FillCharacters(T *target, T character, uint32_t count)
{
    for (uint32_t i = 0; i < count; i++)
        target[i] = character;
}

/// A caller's array. Text that does not fit is cut, and the operation fails.
template <typename T>
class ArraySink
{
public:
    typedef T Character;

    /// `room` does not include the terminator.
    ArraySink(T *characters, uint32_t room) : characters_(characters), room_(room) {}

    __declspec(noinline) OrvResult Write(const T *characters, uint32_t count)
    {
        const uint32_t fitting = Fitting(count);
        memcpy(characters_ + written_, characters, fitting * sizeof(T));
        written_ += fitting;
        return fitting == count ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL;
    }

    __declspec(noinline) OrvResult Fill(T character, uint32_t count)
    {
        const uint32_t fitting = Fitting(count);
        FillCharacters(characters_ + written_, character, fitting);
        written_ += fitting;
        return fitting == count ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL;
    }

    /// Writes the terminator, and returns the number of characters before it.
    uint32_t Terminate()
    {
        characters_[written_] = 0;
        return written_;
    }

private:
    uint32_t Fitting(uint32_t count) const { return count < room_ - written_ ? count : room_ - written_; }

    T *characters_;
    uint32_t room_;
    uint32_t written_ = 0;
};

/// The owner of the text that a writable reference refers to. It is resized for every piece.
template <typename T>
class ReferenceSink
{
public:
    typedef T Character;

    explicit ReferenceSink(const OrvMutableStringRefBase2<T, 0> &reference) : reference_(reference) {}

    __declspec(noinline) OrvResult Write(const T *characters, uint32_t count)
    {
        const uint32_t length = reference_.view.length;
        const OrvResult result = Grow(count);
        if (OrvSucceeded(result))
            memcpy(reference_.view.characters + length, characters, count * sizeof(T));
        return result;
    }

    __declspec(noinline) OrvResult Fill(T character, uint32_t count)
    {
        const uint32_t length = reference_.view.length;
        const OrvResult result = Grow(count);
        if (OrvSucceeded(result))
            FillCharacters(reference_.view.characters + length, character, count);
        return result;
    }

    OrvResult Resize(uint32_t length)
    {
        return reference_.operations->resize(reference_.view, length, reference_.owner);
    }

private:
    OrvResult Grow(uint32_t count)
    {
        const uint32_t length = reference_.view.length;
        return count < UINT32_MAX - length ? Resize(length + count) : ORV_E_OUT_OF_MEMORY;
    }

    const OrvMutableStringRefBase2<T, 0> &reference_;
};

/// A caller's appendable object.
template <typename T>
class AppendableSink
{
public:
    typedef T Character;

    explicit AppendableSink(OrvBasAppendable<T> &target) : target_(target) {}

    __declspec(noinline) OrvResult Write(const T *characters, uint32_t count)
    {
        return target_.Append(characters, characters + count);
    }

    __declspec(noinline) OrvResult Fill(T character, uint32_t count)
    {
        constexpr uint32_t kChunk = 32;
        T chunk[kChunk];
        FillCharacters(chunk, character, kChunk);
        OrvResult result = ORV_S_OK;
        while (count && OrvSucceeded(result)) {
            const uint32_t piece = count < kChunk ? count : kChunk;
            result = Write(chunk, piece);
            count -= piece;
        }
        return result;
    }

private:
    OrvBasAppendable<T> &target_;
};

} // namespace detail
