// Growable strings on the process heap.
//
// A buffer is a descriptor and nothing else, so GetInternal gives the buffer itself to operations that take a
// descriptor. A new buffer is all zeros and owns no array. An array always has a terminator after the last
// character, and the length is below the capacity.
//
// Growth is exact: an array is made as large as the operation needs, and it never shrinks before it is freed.
// Reserve first when building a long text piece by piece.
//
// Lengths, counts, positions and capacities are in characters; OrvTerminated as a count means that the text
// is terminated and is counted up to its terminator. A text to assign or append may be the buffer's own, or a
// part of it. An operation that fails leaves the array, the length and the capacity as they were. A buffer is
// not locked: one thread at a time may change it.

#pragma once

#include "orv/base.h"
#include "orv/text/string_ref.h"

/// The constant empty text, of either width: all of its bytes are 0.
ORV_API extern const wchar_t OrvEmptyText[1];

/// A string that owns its array.
template <typename T>
class OrvCharHeapBuffer
{
public:
    typedef typename OrvDescriptorOf<T>::Type Descriptor; ///< of the same width

    constexpr OrvCharHeapBuffer() : text_{0, 0, nullptr} {}
    OrvCharHeapBuffer(const OrvCharHeapBuffer &) = delete;
    OrvCharHeapBuffer &operator=(const OrvCharHeapBuffer &) = delete;
    ~OrvCharHeapBuffer()
    {
        if (text_.characters)
            Clear();
    }

    /// Sets the length. Characters up to the smaller of both lengths stay, new ones have any value, and a
    /// terminator follows the last. An array that has to be replaced gets one spare character.
    ///
    /// With OrvTerminated the length is counted in the array, which the caller has written to, up to its
    /// terminator. ORV_E_INVALID_DATA: there is no terminator within the capacity.
    ///
    /// ORV_E_OUT_OF_MEMORY: the heap refuses, or the length is more than 32 bits can count with its
    /// terminator.
    ORV_API OrvResult Resize(uint32_t length);

    /// Makes room for `count` characters and a terminator; the text stays.
    ///
    /// ORV_E_OUT_OF_MEMORY: as Resize.
    ORV_API OrvResult ReserveElements(uint32_t count);

    /// Frees the array; the buffer is as new.
    ORV_API void Clear();

    /// What the array can hold, terminator included.
    uint32_t GetCapacity() const { return text_.capacity; }

    /// Whether the text has no characters; the buffer may still own an array.
    bool IsEmpty() const { return text_.length == 0; }

    /// The terminated text; never null.
    const T *GetValue() const
    {
        return text_.length != 0 ? text_.characters : reinterpret_cast<const T *>(OrvEmptyText);
    }

    /// The descriptor itself, for operations that take one.
    Descriptor &GetInternal() { return text_; }
    const Descriptor &GetInternal() const { return text_; }

    /// The array; null when there is none.
    T *GetBuffer() { return text_.characters; }

    /// A character. The index is not checked.
    T &Element(uint32_t index) { return text_.characters[index]; }
    const T &ConstElement(uint32_t index) const { return text_.characters[index]; }
    T &operator[](uint32_t index) { return text_.characters[index]; }
    const T &operator[](uint32_t index) const { return text_.characters[index]; }

    /// Exchanges the texts, arrays and capacities.
    void Swap(OrvCharHeapBuffer &other)
    {
        const Descriptor text = text_;
        text_ = other.text_;
        other.text_ = text;
    }

    /// Replaces the text. Null characters, with any count, free the array.
    ///
    /// ORV_E_OUT_OF_MEMORY: as Resize.
    ORV_API OrvResult Assign(const T *characters, uint32_t count = OrvTerminated);
    ORV_API OrvResult Assign(const Descriptor &text);

    /// Replaces the text by the other buffer's; an empty one leaves an array that holds an empty text.
    ///
    /// ORV_E_OUT_OF_MEMORY: as Resize.
    ORV_API OrvResult Assign(const OrvCharHeapBuffer &other);
    ORV_API OrvResult Assign(T character);

    /// Appends the characters to the text. An array that has to be replaced gets one spare character.
    ///
    /// ORV_E_OUT_OF_MEMORY: as Resize.
    ORV_API OrvResult Append(const T *characters, uint32_t count = OrvTerminated);
    ORV_API OrvResult Append(const Descriptor &text);
    ORV_API OrvResult Append(const OrvCharHeapBuffer &other);
    ORV_API OrvResult Append(T character);

    /// Removes `count` characters at `position`; OrvTerminated removes all from there on. Neither is checked:
    /// the text must reach that far. Always 0 then, except ORV_E_OUT_OF_MEMORY when nothing is to be erased
    /// from an array that is full to its last character.
    ORV_API OrvResult Erase(uint32_t position, uint32_t count);

private:
    Descriptor text_;
};

/// UTF-16 text, and bytes.
typedef OrvCharHeapBuffer<wchar_t> OrvUtf16CharHeapBuffer;
typedef OrvCharHeapBuffer<char> OrvMbCharHeapBuffer;

static_assert(sizeof(OrvUtf16CharHeapBuffer) == sizeof(_ORV_UTF16CHAR_STR), "a descriptor and nothing else");
static_assert(sizeof(OrvMbCharHeapBuffer) == sizeof(_ORV_MBCHAR_STR), "a descriptor and nothing else");

/// How a writable reference reaches a UTF-16 heap buffer: by Resize and ReserveElements. There is no
/// exchange.
ORV_API extern const OrvMutableStringOperations<wchar_t> OrvUtf16CharHeapBufferOperations;

/// A writable reference over the buffer, which must outlive it.
inline OrvMutableStringRefBase2<wchar_t> OrvMakeMutableStringRef(OrvUtf16CharHeapBuffer &buffer)
{
    return {&OrvUtf16CharHeapBufferOperations,
            &buffer,
            {buffer.IsEmpty() ? nullptr : buffer.GetBuffer(), buffer.GetInternal().length}};
}
