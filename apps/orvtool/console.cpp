// Writes text to the standard streams and to files, without a C runtime.

#include "console.h"

#include "orv/text/code_page.h"

namespace orvtool
{

OrvResult Stream::Append(const wchar_t *first, const wchar_t *last)
{
    while (first != last && OrvSucceeded(result_)) {
        if (length_ == kCapacity)
            Flush();
        characters_[length_++] = *first++;
    }
    return result_;
}

OrvResult Stream::Print(const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvBasAppendFormatV(*this, format, arguments);
    va_end(arguments);
    if (OrvSucceeded(result) && isConsole_ && length_ && characters_[length_ - 1] == L'\n')
        Flush();
    return result_;
}

OrvResult Stream::Flush()
{
    if (OrvFailed(result_) || length_ == 0)
        return result_;
    if (isUtf16_) {
        const uint32_t size = length_ * sizeof(wchar_t);
        length_ = 0;
        return result_ = detail::WriteToStream(handle_, reinterpret_cast<const char *>(characters_), size);
    }
    // A pair must not be split between two conversions.
    const bool keepsHalf = length_ > 1 && (characters_[length_ - 1] & 0xFC00) == 0xD800;
    const uint32_t count = keepsHalf ? length_ - 1 : length_;
    const OrvCodePage page = isConsole_ ? OrvCodePageOem : OrvCodePageUtf8;
    char bytes[kCapacity * 3 + 1];
    uint32_t size = 0;
    result_ = OrvConvertUtf162MbString(bytes, sizeof bytes, characters_, page, &size, count);
    if (result_ == ORV_E_INVALID_DATA) { // names of files may contain lone surrogates
        ReplaceLoneSurrogates(count);
        result_ = OrvConvertUtf162MbString(bytes, sizeof bytes, characters_, page, &size, count);
    }
    if (OrvSucceeded(result_))
        result_ = detail::WriteToStream(handle_, bytes, size);
    if (keepsHalf)
        characters_[0] = characters_[count];
    length_ -= count;
    return result_;
}

void Stream::ReplaceLoneSurrogates(uint32_t count)
{
    constexpr wchar_t kReplacement = 0xFFFD;
    for (uint32_t i = 0; i < count; i++) {
        if ((characters_[i] & 0xF800) != 0xD800)
            continue;
        const bool isPair =
            (characters_[i] & 0xFC00) == 0xD800 && i + 1 < count && (characters_[i + 1] & 0xFC00) == 0xDC00;
        if (isPair)
            i++;
        else
            characters_[i] = kReplacement;
    }
}

OrvResult Stream::UseUtf16()
{
    constexpr wchar_t kByteOrderMark = 0xFEFF;
    if (isConsole_ || OrvFailed(Flush()))
        return result_;
    isUtf16_ = true;
    return Append(&kByteOrderMark, &kByteOrderMark + 1);
}

OrvResult Stream::WriteBytes(const void *bytes, uint32_t count)
{
    if (OrvSucceeded(Flush()))
        result_ = detail::WriteToStream(handle_, static_cast<const char *>(bytes), count);
    return result_;
}

} // namespace orvtool
