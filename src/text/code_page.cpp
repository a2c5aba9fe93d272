// Conversions between code pages: they choose the library's own converter or the platform's, and define the
// content of the caller's array afterwards.

#include "orv/text/code_page.h"

#include "orv/runtime/result.h"
#include "orv/text/string.h"
#include "runtime/status.h"
#include "text/code_page_matrix.h"
#include "text/converted_text.h"
#include "text/length.h"
#include "text/native_page.h"
#include "text/vector.h"

namespace
{

using detail::CodePageConverter;
using detail::NativePageReader;
using detail::NativePageWriter;

bool IsNativeTowardsUtf16(OrvCodePage page)
{
    return page == OrvCodePageDefault || page == OrvCodePageAnsi || page == OrvCodePageOem;
}

bool IsNative(OrvCodePage page)
{
    return page == OrvCodePageDefault || page == OrvCodePageOem;
}

/// Stores a size if it still fits into 32 bits together with a terminator.
OrvResult StoreSize(uint32_t &size, uint64_t length)
{
    if (length >= UINT32_MAX)
        return ORV_E_BAD_LENGTH;
    size = static_cast<uint32_t>(length);
    return ORV_S_OK;
}

/// The result of a conversion that found too little room.
OrvResult RequireSize(uint32_t *size, uint64_t length)
{
    uint32_t counted = 0;
    const OrvResult result = StoreSize(counted, length);
    if (OrvFailed(result))
        return result;
    if (size)
        *size = counted + 1;
    return ORV_E_BUFFER_TOO_SMALL;
}

template <typename T>
OrvResult PutEmpty(T *target, uint32_t capacity, uint32_t *size)
{
    if (capacity == 0)
        return RequireSize(size, 0);
    detail::StoreUnit(target, T(0));
    if (size)
        *size = 0;
    return ORV_S_OK;
}

template <typename T>
OrvResult CopyText(T *target, uint32_t capacity, const T *source, uint32_t count, uint32_t *size)
{
    if (count >= capacity)
        return RequireSize(size, count);
    if (size)
        *size = count;
    return OrvCopyString(target, capacity, source, count);
}

// Through the library's converters.

struct Bytes {
    const uint8_t *first;
    uint32_t size;
};

/// The most units of a UTF-16 text: a longer one would not fit into the address space.
constexpr uint32_t kMostUtf16 = UINT32_MAX / sizeof(wchar_t);

Bytes BytesOf(const char *text, uint32_t count)
{
    return {reinterpret_cast<const uint8_t *>(text), count};
}

Bytes BytesOf(const wchar_t *text, uint32_t count)
{
    return {reinterpret_cast<const uint8_t *>(text), static_cast<uint32_t>(count * sizeof(wchar_t))};
}

/// Runs a converter. ORV_E_INVALID_DATA also when the result does not consist of whole units, which can
/// happen when bytes are copied.
template <typename T>
OrvResult RunConverter(CodePageConverter convert, Bytes source, T *target, uint32_t room, uint64_t &length)
{
    // A caller's capacity may reach beyond the end of the address space, but a pointer must not. So the room
    // is limited to the address space, and to the most that the source can become.
    constexpr uint64_t kMostGrowth = 8; // bytes per byte of the source; a single byte takes five in UTF-7
    const uint32_t mostRoom = (UINTPTR_MAX - reinterpret_cast<uintptr_t>(target)) / sizeof(T);
    const uint64_t largest = uint64_t{room < mostRoom ? room : mostRoom} * sizeof(T);
    const uint64_t enough = source.size * kMostGrowth;
    const auto roomBytes = static_cast<uint32_t>(largest < enough ? largest : enough);
    uint64_t size = 0;
    const OrvResult result =
        convert(source.first, source.size, reinterpret_cast<uint8_t *>(target), roomBytes, size);
    length = size / sizeof(T);
    return OrvSucceeded(result) && size % sizeof(T) != 0 ? ORV_E_INVALID_DATA : result;
}

template <typename T>
OrvResult MeasureOwn(uint64_t &length, Bytes source, OrvCodePage from, OrvCodePage to)
{
    const CodePageConverter convert = detail::FindCodePageConverter(from, to);
    return convert ? RunConverter<T>(convert, source, nullptr, 0, length) : ORV_E_NOT_PROVIDED;
}

template <typename T>
OrvResult ConvertOwn(T *target, uint32_t capacity, Bytes source, OrvCodePage from, OrvCodePage to,
                     uint32_t *size)
{
    const CodePageConverter convert = detail::FindCodePageConverter(from, to);
    if (!convert)
        return ORV_E_NOT_PROVIDED;
    uint64_t length = 0;
    if (capacity != 0) {
        const OrvResult result = RunConverter(convert, source, target, capacity - 1, length);
        if (OrvSucceeded(result)) {
            detail::StoreUnit(target + length, T(0));
            if (size)
                *size = static_cast<uint32_t>(length);
            return result;
        }
        detail::StoreUnit(target, T(0));
        if (result != ORV_E_BUFFER_TOO_SMALL)
            return result;
    }
    const OrvResult result = RunConverter<T>(convert, source, nullptr, 0, length);
    return OrvFailed(result) ? result : RequireSize(size, length);
}

// Through the platform.

template <typename Page>
uint64_t MeasureNative(const Page &page, const typename Page::Source *source, uint32_t count)
{
    uint64_t length = 0;
    while (count != 0) {
        const uint32_t piece = page.PieceLength(source, count);
        length += page.Measure(source, piece);
        source += piece;
        count -= piece;
    }
    return length;
}

template <typename Page>
OrvResult ConvertNative(const Page &page, typename Page::Target *target, uint32_t capacity,
                        const typename Page::Source *source, uint32_t count, uint32_t *size)
{
    uint32_t length = 0;
    while (count != 0) {
        const uint32_t piece = page.PieceLength(source, count);
        uint32_t written = 0;
        const NTSTATUS status = page.Convert(target + length, capacity - length, source, piece, written);
        if (!NT_SUCCESS(status)) {
            if (length < capacity)
                detail::StoreUnit(target + length, typename Page::Target(0));
            return status == STATUS_BUFFER_OVERFLOW
                       ? RequireSize(size, length + MeasureNative(page, source, count))
                       : detail::ResultFromStatus(status);
        }
        length += written;
        source += piece;
        count -= piece;
    }
    if (size)
        *size = length;
    return ORV_S_OK;
}

// Into heap buffers.

OrvResult Convert(wchar_t *target, uint32_t capacity, const char *source, OrvCodePage page, uint32_t count,
                  uint32_t &size)
{
    return OrvConvertMb2Utf16String(target, capacity, source, page, &size, count);
}

OrvResult Convert(char *target, uint32_t capacity, const wchar_t *source, OrvCodePage page, uint32_t count,
                  uint32_t &size)
{
    return OrvConvertUtf162MbString(target, capacity, source, page, &size, count);
}

/// A short text is converted on the stack, so that a failure changes nothing. A text that is too long for the
/// stack has been measured, and so checked, before the buffer is touched.
template <typename T, typename Source>
OrvResult ConvertInto(OrvCharHeapBuffer<T> &target, const Source *source, OrvCodePage page, uint32_t count)
{
    constexpr uint32_t kShort = 256;
    T text[kShort];
    uint32_t size = 0;
    count = detail::ResolveLength(source, count);
    OrvResult result = Convert(text, kShort, source, page, count, size);
    if (OrvSucceeded(result))
        return target.Assign(text, size);
    if (result != ORV_E_BUFFER_TOO_SMALL)
        return result;
    result = target.ReserveElements(size); // reserves one more than needed, so that Resize does not allocate
    if (OrvFailed(result))
        return result;
    result = Convert(target.GetBuffer(), target.GetCapacity(), source, page, count, size);
    target.Resize(OrvSucceeded(result) ? size : 0); // there is room
    return result;
}

} // namespace

OrvResult OrvGetMb2Utf16StringSize(uint32_t &size, const char *source, OrvCodePage page, uint32_t count)
{
    count = detail::ResolveLength(source, count);
    if (IsNativeTowardsUtf16(page))
        return StoreSize(size, MeasureNative(NativePageReader(page), source, count));
    uint64_t length = 0;
    const OrvResult result = MeasureOwn<wchar_t>(length, BytesOf(source, count), page, OrvCodePageUtf16);
    return OrvFailed(result) ? result : StoreSize(size, length);
}

OrvResult OrvConvertMb2Utf16String(wchar_t *target, uint32_t capacity, const char *source, OrvCodePage page,
                                   uint32_t *size, uint32_t count)
{
    count = detail::ResolveLength(source, count);
    if (!target)
        capacity = 0;
    if (count == 0)
        return PutEmpty(target, capacity, size);
    if (IsNativeTowardsUtf16(page))
        return ConvertNative(NativePageReader(page), target, capacity, source, count, size);
    return ConvertOwn(target, capacity, BytesOf(source, count), page, OrvCodePageUtf16, size);
}

OrvResult OrvGetUtf162MbStringSize(uint32_t &size, const wchar_t *source, OrvCodePage page, uint32_t count)
{
    count = detail::ResolveLength(source, count);
    if (IsNative(page))
        return StoreSize(size, MeasureNative(NativePageWriter(page), source, count));
    if (count > kMostUtf16)
        return ORV_E_BAD_LENGTH;
    uint64_t length = 0;
    const OrvResult result = MeasureOwn<char>(length, BytesOf(source, count), OrvCodePageUtf16, page);
    return OrvFailed(result) ? result : StoreSize(size, length);
}

OrvResult OrvConvertUtf162MbString(char *target, uint32_t capacity, const wchar_t *source, OrvCodePage page,
                                   uint32_t *size, uint32_t count)
{
    count = detail::ResolveLength(source, count);
    if (!target)
        capacity = 0;
    if (count == 0)
        return PutEmpty(target, capacity, size);
    if (IsNative(page))
        return ConvertNative(NativePageWriter(page), target, capacity, source, count, size);
    if (count > kMostUtf16)
        return ORV_E_BAD_LENGTH;
    return ConvertOwn(target, capacity, BytesOf(source, count), OrvCodePageUtf16, page, size);
}

OrvResult OrvGetMb2MbStringSize(uint32_t &size, const char *source, OrvCodePage sourcePage,
                                OrvCodePage targetPage, uint32_t count)
{
    count = detail::ResolveLength(source, count);
    if (sourcePage == targetPage || (IsNativeTowardsUtf16(sourcePage) && IsNativeTowardsUtf16(targetPage)))
        return StoreSize(size, count);
    if (IsNativeTowardsUtf16(sourcePage) || IsNative(targetPage)) {
        // The conversion below would not check the page when the text is empty.
        if (!IsNativeTowardsUtf16(sourcePage) && !detail::FindCodePageConverter(sourcePage, OrvCodePageUtf16))
            return ORV_E_NOT_PROVIDED;
        detail::ConvertedText<wchar_t> text;
        const OrvResult result = text.Convert(source, sourcePage, count);
        return OrvFailed(result) ? result
                                 : OrvGetUtf162MbStringSize(size, text.Get(), targetPage, text.Length());
    }
    // For the library's own pages, a direct conversion gives the same size as one through UTF-16.
    uint64_t length = 0;
    const OrvResult result = MeasureOwn<char>(length, BytesOf(source, count), sourcePage, targetPage);
    return OrvFailed(result) ? result : StoreSize(size, length);
}

OrvResult OrvConvertMb2MbString(char *target, uint32_t capacity, const char *source, OrvCodePage sourcePage,
                                OrvCodePage targetPage, uint32_t *size, uint32_t count)
{
    count = detail::ResolveLength(source, count);
    if (!target)
        capacity = 0;
    if (count == 0)
        return PutEmpty(target, capacity, size);
    if (sourcePage == targetPage) {
        const OrvResult result = CopyText(target, capacity, source, count, size);
        if (OrvFailed(result) && capacity != 0)
            *target = 0;
        return result;
    }
    if (!IsNative(sourcePage) && !IsNative(targetPage))
        return ConvertOwn(target, capacity, BytesOf(source, count), sourcePage, targetPage, size);
    detail::ConvertedText<wchar_t> text;
    const OrvResult result = text.Convert(source, sourcePage, count);
    if (OrvSucceeded(result))
        return OrvConvertUtf162MbString(target, capacity, text.Get(), targetPage, size, text.Length());
    if (result == ORV_E_INVALID_DATA && capacity != 0)
        *target = 0;
    return result;
}

OrvResult OrvGetMb2TStringSize(uint32_t &size, const char *source, OrvCodePage page, uint32_t count)
{
    return OrvGetMb2Utf16StringSize(size, source, page, count);
}

OrvResult OrvConvertMb2TString(wchar_t *target, uint32_t capacity, const char *source, OrvCodePage page,
                               uint32_t *size, uint32_t count)
{
    return OrvConvertMb2Utf16String(target, capacity, source, page, size, count);
}

OrvResult OrvConvertMb2TString(_ORV_UTF16CHAR_STR &target, const char *source, OrvCodePage page,
                               uint32_t count, uint32_t *requiredSize)
{
    uint32_t size = 0;
    const OrvResult result =
        OrvConvertMb2Utf16String(target.characters, target.capacity, source, page, &size, count);
    if (OrvSucceeded(result))
        target.length = size;
    else if (result == ORV_E_BUFFER_TOO_SMALL && requiredSize)
        *requiredSize = size;
    return result;
}

OrvResult OrvConvertMb2TString(OrvUtf16CharHeapBuffer &target, const char *source, OrvCodePage page,
                               uint32_t count)
{
    return ConvertInto(target, source, page, count);
}

OrvResult OrvGetT2MbStringSize(uint32_t &size, const wchar_t *source, OrvCodePage page, uint32_t count)
{
    return OrvGetUtf162MbStringSize(size, source, page, count);
}

OrvResult OrvConvertT2MbString(char *target, uint32_t capacity, const wchar_t *source, OrvCodePage page,
                               uint32_t *size, uint32_t count)
{
    return OrvConvertUtf162MbString(target, capacity, source, page, size, count);
}

OrvResult OrvConvertT2MbString(OrvMbCharHeapBuffer &target, const wchar_t *source, OrvCodePage page,
                               uint32_t count)
{
    return ConvertInto(target, source, page, count);
}

OrvResult OrvGetT2Utf16StringSize(uint32_t &size, const wchar_t *source, uint32_t count)
{
    size = detail::ResolveLength(source, count);
    return ORV_S_OK;
}

OrvResult OrvGetUtf162TStringSize(uint32_t &size, const wchar_t *source, uint32_t count)
{
    return OrvGetT2Utf16StringSize(size, source, count);
}

OrvResult OrvConvertT2Utf16String(wchar_t *target, uint32_t capacity, const wchar_t *source, uint32_t *size,
                                  uint32_t count)
{
    count = detail::ResolveLength(source, count);
    return CopyText(target, target ? capacity : 0, source, count, size);
}

OrvResult OrvConvertUtf162TString(wchar_t *target, uint32_t capacity, const wchar_t *source, uint32_t *size,
                                  uint32_t count)
{
    return OrvConvertT2Utf16String(target, capacity, source, size, count);
}

OrvResult OrvConvertUtf162TString(_ORV_UTF16CHAR_STR &target, const wchar_t *source, uint32_t count,
                                  uint32_t *requiredSize)
{
    uint32_t size = 0;
    const OrvResult result =
        OrvConvertT2Utf16String(target.characters, target.capacity, source, &size, count);
    if (OrvSucceeded(result))
        target.length = size;
    else if (requiredSize)
        *requiredSize = size;
    return result;
}
