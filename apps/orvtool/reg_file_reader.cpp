// Reads the text format of the system's registry editor.

#include "reg_file_reader.h"

#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "orv/text/string.h"
#include "text/hexadecimal_digit.h"

namespace orvtool
{

namespace
{

bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t' || character == L'\r';
}

} // namespace

OrvResult RegFileReader::Fail(const wchar_t *problem)
{
    problem_ = problem;
    return ORV_E_INVALID_DATA;
}

void RegFileReader::SkipBlanks()
{
    while (next_ != last_ && IsBlank(*next_))
        next_++;
}

void RegFileReader::SkipLine()
{
    const wchar_t *const end = OrvFindElement(next_, L'\n', static_cast<uint32_t>(last_ - next_));
    next_ = end ? end : last_;
}

bool RegFileReader::Take(const wchar_t *word)
{
    const wchar_t *at = next_;
    for (; *word; word++, at++) {
        if (at == last_ || OrvToASCIILower(*at) != *word)
            return false;
    }
    next_ = at;
    return true;
}

bool RegFileReader::TakeHexNumber(uint32_t mostDigits, uint32_t &number)
{
    number = 0;
    uint32_t digits = 0;
    for (; digits < mostDigits && next_ != last_ && detail::HexadecimalDigit(*next_) < 16; digits++)
        number = number << 4 | detail::HexadecimalDigit(*next_++);
    return digits != 0;
}

/// Reads the rest of a line after an entry. Does not take the line feed, which Next takes.
OrvResult RegFileReader::ReadLineEnd()
{
    SkipBlanks();
    if (IsAt(L';'))
        SkipLine();
    return IsAtEnd() || IsAt(L'\n') ? ORV_S_OK : Fail(L"there is something behind the end of the entry");
}

OrvResult RegFileReader::ReadHeader()
{
    line_ = 1;
    if (Take(L"regedit4"))
        return Fail(
            L"this is the older format, REGEDIT4, whose text depends on a code page; export it as version "
            L"5.00");
    if (!Take(L"windows registry editor version 5.00"))
        return Fail(L"the first line is not 'Windows Registry Editor Version 5.00'");
    return ReadLineEnd();
}

OrvResult RegFileReader::Next(RegFileEntry &entry, bool &found)
{
    found = false;
    OrvResult result = line_ ? ORV_S_OK : ReadHeader();
    while (OrvSucceeded(result)) {
        SkipBlanks();
        if (IsAtEnd())
            return ORV_S_OK;
        if (*next_ == L'\n') {
            next_++;
            line_++;
            continue;
        }
        if (*next_ == L';') {
            SkipLine();
            continue;
        }
        entry.line = line_;
        result = *next_ == L'[' ? ReadKey(entry) : ReadValue(entry);
        if (OrvSucceeded(result))
            result = ReadLineEnd();
        found = OrvSucceeded(result);
        if (found)
            return ORV_S_OK;
    }
    return result;
}

OrvResult RegFileReader::ReadKey(RegFileEntry &entry)
{
    const wchar_t *first = next_ + 1;
    SkipLine();
    const wchar_t *const end = OrvFindElementFromRight(first, L']', static_cast<uint32_t>(next_ - first));
    if (!end)
        return Fail(L"the bracket is not closed");
    next_ = end + 1;
    const bool isDeleted = first != end && *first == L'-';
    first += isDeleted;
    const OrvResult result =
        ParseRegistryLocation(key_, OrvBasWinRegistryHandle::Name(first, static_cast<uint32_t>(end - first)));
    if (result == ORV_E_INVALID_ARGUMENT || (OrvSucceeded(result) && key_.hasValue))
        return Fail(L"this is no key");
    if (isDeleted && OrvSucceeded(result) && key_.path.GetLength() == 0)
        return Fail(L"a root cannot be deleted");
    isKeyOpen_ = !isDeleted;
    entry.kind = isDeleted ? RegFileEntry::kDeletedKey : RegFileEntry::kKey;
    entry.root = key_.root;
    entry.path = key_.Path();
    return result;
}

OrvResult RegFileReader::ReadValue(RegFileEntry &entry)
{
    OrvResult result = ORV_S_OK;
    if (Take(L"@"))
        result = name_.Resize(0);
    else if (IsAt(L'"'))
        result = ReadQuoted(name_);
    else
        return Fail(L"this is neither a key in brackets nor a value, '@' or a name in quotation marks");
    if (OrvFailed(result))
        return result;
    if (!isKeyOpen_)
        return Fail(L"a value stands below no key");
    SkipBlanks();
    if (!Take(L"="))
        return Fail(L"an equals sign is missing behind the name of the value");
    SkipBlanks();
    entry.name = OrvBasWinRegistryHandle::Name(name_.GetValue(), name_.GetInternal().length);
    entry.kind = RegFileEntry::kValue;
    return ReadData(entry);
}

OrvResult RegFileReader::ReadData(RegFileEntry &entry)
{
    if (Take(L"-")) {
        entry.kind = RegFileEntry::kDeletedValue;
        return ORV_S_OK;
    }
    if (IsAt(L'"')) {
        const OrvResult result = ReadQuoted(text_);
        entry.type = OrvRegistryString;
        entry.bytes = reinterpret_cast<const uint8_t *>(text_.GetValue());
        entry.size = (text_.GetInternal().length + 1) * sizeof(wchar_t);
        return result;
    }
    uint32_t type = OrvRegistryBinary;
    if (Take(L"dword:"))
        return ReadDWord(entry);
    if (Take(L"hex(")) {
        if (!TakeHexNumber(8, type) || !Take(L"):"))
            return Fail(L"the number of a type is wrong");
    } else if (!Take(L"hex:")) {
        return Fail(L"the data is no text in quotation marks, dword:, hex:, hex(TYPE): or minus sign");
    }
    entry.type = static_cast<OrvBasWinRegistryValueType>(type);
    return ReadBytes(entry);
}

OrvResult RegFileReader::ReadQuoted(OrvUtf16CharHeapBuffer &text)
{
    const wchar_t *const first = next_ + 1;
    const wchar_t *end = first;
    uint32_t escapes = 0;
    uint32_t lines = 0;
    for (; end != last_ && *end != L'"'; end++) {
        lines += *end == L'\n';
        if (*end != L'\\')
            continue;
        end++;
        escapes++;
        if (end == last_ || (*end != L'\\' && *end != L'"'))
            return Fail(
                L"a backslash in quotation marks stands before neither a backslash nor a quotation mark");
    }
    if (end == last_)
        return Fail(L"the quotation marks are not closed");
    const OrvResult result = text.Resize(static_cast<uint32_t>(end - first) - escapes);
    if (OrvFailed(result))
        return result;
    wchar_t *out = text.GetBuffer();
    for (next_ = first; next_ != end; next_++) {
        next_ += *next_ == L'\\';
        *out++ = *next_;
    }
    next_++;
    line_ += lines;
    return ORV_S_OK;
}

OrvResult RegFileReader::ReadDWord(RegFileEntry &entry)
{
    uint32_t number = 0;
    SkipBlanks();
    if (!TakeHexNumber(8, number))
        return Fail(L"dword: wants up to eight hexadecimal digits");
    const OrvResult result = bytes_.Assign(reinterpret_cast<const char *>(&number), sizeof number);
    entry.type = OrvRegistryDWord;
    entry.bytes = reinterpret_cast<const uint8_t *>(bytes_.GetValue());
    entry.size = sizeof number;
    return result;
}

OrvResult RegFileReader::ReadBytes(RegFileEntry &entry)
{
    constexpr uint32_t kFirstSize = 256;
    uint32_t count = 0;
    for (bool isListed = false;;) { // after a comma another byte must follow
        SkipBlanks();
        if (Take(L"\\")) {
            SkipBlanks();
            if (!IsAt(L'\n'))
                return Fail(L"a backslash that continues the bytes does not end its line");
            next_++;
            line_++;
            continue;
        }
        uint32_t byte = 0;
        const bool isByte = TakeHexNumber(2, byte);
        if (!isByte && isListed)
            return Fail(L"a byte of two hexadecimal digits is missing");
        if (!isByte)
            break;
        if (count == bytes_.GetInternal().length) {
            const OrvResult result = bytes_.Resize(count ? count * 2 : kFirstSize);
            if (OrvFailed(result))
                return result;
        }
        bytes_[count++] = static_cast<char>(byte);
        SkipBlanks();
        isListed = Take(L",");
        if (!isListed)
            break;
    }
    entry.bytes = reinterpret_cast<const uint8_t *>(bytes_.GetValue());
    entry.size = count;
    return ORV_S_OK;
}

} // namespace orvtool
