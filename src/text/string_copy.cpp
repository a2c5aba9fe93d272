// Copies and appends strings. The terminator is written last, so that a source that overlaps the destination
// is read before it is overwritten.

#include "orv/runtime/result.h"
#include "orv/text/string.h"

#include "text/length.h"
#include "text/vector.h"

namespace
{

template <typename T>
void Put(T *destination, const T *source, uint32_t length)
{
    detail::MoveBytes(destination, source, length * sizeof(T));
    detail::StoreUnit(destination + length, T(0));
}

template <typename T>
OrvResult Copy(T *destination, uint32_t capacity, const T *source, uint32_t count)
{
    if (capacity == 0 || !destination)
        return ORV_E_INVALID_ARGUMENT;
    const uint32_t length = detail::ResolveLengthUpTo(source, count, capacity);
    if (length >= capacity) {
        detail::StoreUnit(destination, T(0));
        return ORV_E_BUFFER_TOO_SMALL;
    }
    Put(destination, source, length);
    return ORV_S_OK;
}

template <typename T>
OrvResult CopyRange(T *destination, uint32_t capacity, const T *source, uint32_t start, uint32_t count,
                    uint32_t sourceLength)
{
    if (capacity == 0 || !destination || detail::ResolveLengthUpTo(source, sourceLength, count) < count)
        return ORV_E_INVALID_ARGUMENT;
    return Copy(destination, capacity, count ? source + start : source, count);
}

template <typename T>
OrvResult Append(T *destination, uint32_t capacity, const T *source, uint32_t *length, uint32_t count)
{
    if (capacity == 0 || !destination)
        return ORV_E_INVALID_ARGUMENT;
    const uint32_t present = length ? *length : OrvGetStringSizeInElements(destination, capacity);
    if (present >= capacity)
        return ORV_E_NOT_TERMINATED;
    const uint32_t room = capacity - present;
    const uint32_t added = detail::ResolveLengthUpTo(source, count, room);
    if (added >= room)
        return ORV_E_BUFFER_TOO_SMALL;
    Put(destination + present, source, added);
    if (length)
        *length = present + added;
    return ORV_S_OK;
}

/// The result of a function with a descriptor when the text does not fit.
OrvResult RequireSize(uint64_t length, uint32_t *requiredSize)
{
    if (requiredSize)
        *requiredSize = detail::SizeWithTerminator(length);
    return ORV_E_BUFFER_TOO_SMALL;
}

} // namespace

OrvResult OrvCopyString(char *destination, uint32_t capacity, const char *source, uint32_t count)
{
    return Copy(destination, capacity, source, count);
}

OrvResult OrvCopyString(wchar_t *destination, uint32_t capacity, const wchar_t *source, uint32_t count)
{
    return Copy(destination, capacity, source, count);
}

OrvResult OrvCopyString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count,
                        uint32_t *requiredSize)
{
    const uint32_t length = detail::ResolveLength(source, count);
    if (length >= destination.capacity)
        return RequireSize(length, requiredSize);
    const OrvResult result = Copy(destination.characters, destination.capacity, source, length);
    if (OrvSucceeded(result))
        destination.length = length;
    return result;
}

OrvResult OrvCopySubString(char *destination, uint32_t capacity, const char *source, uint32_t start,
                           uint32_t count, uint32_t sourceLength)
{
    return CopyRange(destination, capacity, source, start, count, sourceLength);
}

OrvResult OrvCopySubString(wchar_t *destination, uint32_t capacity, const wchar_t *source, uint32_t start,
                           uint32_t count, uint32_t sourceLength)
{
    return CopyRange(destination, capacity, source, start, count, sourceLength);
}

OrvResult OrvCopySubString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t start,
                           uint32_t count, uint32_t sourceLength, uint32_t *requiredSize)
{
    if (count >= destination.capacity)
        return RequireSize(count, requiredSize);
    const OrvResult result =
        CopyRange(destination.characters, destination.capacity, source, start, count, sourceLength);
    if (OrvSucceeded(result))
        destination.length = count;
    return result;
}

OrvResult OrvAppendString(char *destination, uint32_t capacity, const char *source, uint32_t *length,
                          uint32_t count)
{
    return Append(destination, capacity, source, length, count);
}

OrvResult OrvAppendString(wchar_t *destination, uint32_t capacity, const wchar_t *source, uint32_t *length,
                          uint32_t count)
{
    return Append(destination, capacity, source, length, count);
}

OrvResult OrvAppendString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count,
                          uint32_t *requiredSize)
{
    uint32_t length = destination.length;
    if (length == OrvTerminated) {
        length = destination.characters
                     ? OrvGetStringSizeInElements(destination.characters, destination.capacity)
                     : destination.capacity;
        if (length >= destination.capacity)
            return ORV_E_NOT_TERMINATED;
    }
    const uint32_t added = detail::ResolveLength(source, count);
    const uint64_t result = uint64_t(length) + added;
    if (result >= destination.capacity)
        return RequireSize(result, requiredSize);
    const OrvResult appended = Append(destination.characters, destination.capacity, source, &length, added);
    if (OrvSucceeded(appended))
        destination.length = length;
    return appended;
}
