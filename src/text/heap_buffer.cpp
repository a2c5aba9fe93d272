// Growable strings on the process heap.
//
// An operation that replaces the array frees the old one last, because the characters that the caller passed
// may be in it.

#include "orv/text/heap_buffer.h"

#include "orv/runtime/result.h"
#include "orv/text/string.h"
#include "runtime/heap.h"
#include "text/length.h"
#include "text/vector.h"

namespace
{

/// Replaces the present array by one of `capacity` characters; `previous` receives the old array. The first
/// `kept` characters are copied and terminated; the last character of the new array is a terminator too.
template <typename T, typename Descriptor>
OrvResult Replace(Descriptor &text, uint64_t capacity, uint32_t kept, T *&previous)
{
    if (capacity > UINT32_MAX)
        return ORV_E_OUT_OF_MEMORY;
    const auto size = static_cast<uint32_t>(capacity);
    detail::HeapArray<T> array = detail::HeapArray<T>::Allocate(size);
    if (!array)
        return ORV_E_OUT_OF_MEMORY;
    detail::MoveBytes(array.Get(), text.characters, kept * sizeof(T));
    array.Get()[kept] = 0;
    array.Get()[size - 1] = 0;
    previous = text.characters;
    text.characters = array.Detach();
    text.capacity = size;
    return ORV_S_OK;
}

/// Sets the length and terminates the text. If the array is replaced, `previous` receives the old one.
template <typename T, typename Descriptor>
OrvResult SetLength(Descriptor &text, uint64_t length, T *&previous)
{
    if (length + 2 > text.capacity) {
        const OrvResult result = Replace(text, length + 2, text.length, previous);
        if (OrvFailed(result))
            return result;
    }
    text.length = static_cast<uint32_t>(length);
    text.characters[length] = 0;
    return ORV_S_OK;
}

/// Replaces the text. The new characters may be a part of the present array; they are copied before anything
/// else is written to it.
template <typename T, typename Descriptor>
OrvResult SetText(Descriptor &text, const T *characters, uint32_t count)
{
    T *previous = nullptr;
    if (uint64_t(count) + 2 > text.capacity) {
        const OrvResult result = Replace(text, uint64_t(count) + 2, 0, previous);
        if (OrvFailed(result))
            return result;
    }
    const detail::HeapArray<T> freed(previous);
    OrvCopyString(text.characters, text.capacity, characters, count);
    text.length = count;
    return ORV_S_OK;
}

} // namespace

const wchar_t OrvEmptyText[1] = {};

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Resize(uint32_t length)
{
    if (length == OrvTerminated) {
        const uint32_t found = OrvGetStringSizeInElements(text_.characters, text_.capacity);
        if (found == text_.capacity)
            return ORV_E_INVALID_DATA;
        text_.length = found;
        return ORV_S_OK;
    }
    T *previous = nullptr;
    const OrvResult result = SetLength(text_, length, previous);
    detail::FreeBytes(previous);
    return result;
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::ReserveElements(uint32_t count)
{
    if (count < text_.capacity)
        return ORV_S_OK;
    T *previous = nullptr;
    const OrvResult result = Replace(text_, uint64_t(count) + 1, text_.length, previous);
    detail::FreeBytes(previous);
    return result;
}

template <typename T>
void OrvCharHeapBuffer<T>::Clear()
{
    if (!text_.characters)
        return;
    detail::FreeBytes(text_.characters);
    text_ = {0, 0, nullptr};
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Assign(const T *characters, uint32_t count)
{
    if (!characters) {
        Clear();
        return ORV_S_OK;
    }
    return SetText(text_, characters, detail::ResolveLength(characters, count));
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Assign(const Descriptor &text)
{
    return Assign(text.characters, text.length);
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Assign(const OrvCharHeapBuffer &other)
{
    return SetText(text_, other.text_.characters, other.text_.length);
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Assign(T character)
{
    return SetText(text_, &character, 1);
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Append(const T *characters, uint32_t count)
{
    count = detail::ResolveLength(characters, count);
    const uint64_t reserved = uint64_t(text_.length) + 1 + count;
    T *previous = nullptr;
    if (reserved >= text_.capacity) {
        const OrvResult result = Replace(text_, reserved + 1, text_.length, previous);
        if (OrvFailed(result))
            return result;
    }
    const detail::HeapArray<T> freed(previous);
    return OrvAppendString(text_.characters, text_.capacity, characters, &text_.length, count);
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Append(const Descriptor &text)
{
    return Append(text.characters, text.length);
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Append(const OrvCharHeapBuffer &other)
{
    return Append(other.text_.characters, other.text_.length);
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Append(T character)
{
    T *previous = nullptr;
    const OrvResult result = SetLength(text_, uint64_t(text_.length) + 1, previous);
    detail::FreeBytes(previous);
    if (OrvSucceeded(result))
        text_.characters[text_.length - 1] = character;
    return result;
}

template <typename T>
OrvResult OrvCharHeapBuffer<T>::Erase(uint32_t position, uint32_t count)
{
    if (count == OrvTerminated)
        return Resize(position);
    const uint32_t behind = text_.length - count - position;
    T *const at = text_.characters + position;
    detail::MoveBytes(at, at + count, behind * sizeof(T));
    return Resize(text_.length - count);
}

template class OrvCharHeapBuffer<wchar_t>;
template class OrvCharHeapBuffer<char>;

namespace
{

OrvResult ResizeBuffer(OrvMutableStringView<wchar_t> &view, uint32_t length, void *owner)
{
    auto &buffer = *static_cast<OrvUtf16CharHeapBuffer *>(owner);
    const OrvResult result = buffer.Resize(length);
    view = {buffer.GetBuffer(), buffer.GetInternal().length};
    return result;
}

OrvResult ReserveInBuffer(wchar_t *&characters, uint32_t count, void *owner)
{
    auto &buffer = *static_cast<OrvUtf16CharHeapBuffer *>(owner);
    const OrvResult result = buffer.ReserveElements(count);
    characters = buffer.GetBuffer();
    return result;
}

} // namespace

const OrvMutableStringOperations<wchar_t> OrvUtf16CharHeapBufferOperations = {
    1,
    ResizeBuffer,
    ReserveInBuffer,
    nullptr,
};
