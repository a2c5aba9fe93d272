// Reads and prints the types and the data of registry values.

#include "reg_data.h"

#include "orv/runtime/result.h"
#include "orv/text/number.h"
#include "text/hexadecimal_digit.h"

namespace orvtool
{

namespace
{

enum class Form { kBytes, kText, kTexts, kNumber32, kNumber32BigEndian, kNumber64 };

struct Type {
    OrvBasWinRegistryValueType type;
    const wchar_t *name;
    Form form;
};

constexpr Type kTypes[] = {
    {OrvRegistryNone, L"none", Form::kBytes},
    {OrvRegistryString, L"sz", Form::kText},
    {OrvRegistryExpandString, L"expand_sz", Form::kText},
    {OrvRegistryBinary, L"binary", Form::kBytes},
    {OrvRegistryDWord, L"dword", Form::kNumber32},
    {OrvRegistryDWordBigEndian, L"dword_be", Form::kNumber32BigEndian},
    {OrvRegistryLink, L"link", Form::kBytes},
    {OrvRegistryMultiString, L"multi_sz", Form::kTexts},
    {OrvRegistryQWord, L"qword", Form::kNumber64},
};

const Type *FindType(OrvBasWinRegistryValueType type)
{
    for (const Type &each : kTypes) {
        if (each.type == type)
            return &each;
    }
    return nullptr;
}

Form FormOf(OrvBasWinRegistryValueType type)
{
    const Type *const found = FindType(type);
    return found ? found->form : Form::kBytes;
}

void PrintBytes(Stream &out, const uint8_t *bytes, uint32_t size)
{
    for (uint32_t i = 0; i < size; i++)
        out.Print(L"%02x", bytes[i]);
}

uint64_t NumberFrom(const uint8_t *bytes, uint32_t size, bool isBigEndian)
{
    uint64_t number = 0;
    for (uint32_t i = 0; i < size; i++)
        number = number << 8 | bytes[isBigEndian ? i : size - 1 - i];
    return number;
}

/// Reads a number as ParseNumber does, but of 64 bits.
bool ParseNumber64(const wchar_t *text, uint64_t &number)
{
    const wchar_t *end = nullptr;
    if (*text != L'-')
        return *text && OrvSucceeded(OrvConvertString2Number(number, text, OrvTerminated, 0, &end));
    __int64 negative = 0;
    const OrvResult result = OrvConvertString2Number(negative, text, OrvTerminated, 0, &end);
    number = static_cast<uint64_t>(negative);
    return text[1] && OrvSucceeded(result);
}

OrvResult AssignNumber(OrvMbCharHeapBuffer &bytes, uint64_t number, uint32_t size, bool isBigEndian)
{
    char turned[sizeof number];
    for (uint32_t i = 0; i < size; i++)
        turned[isBigEndian ? size - 1 - i : i] = static_cast<char>(number >> i * 8);
    return bytes.Assign(turned, size);
}

OrvResult AssignText(OrvMbCharHeapBuffer &bytes, const wchar_t *text, uint32_t length)
{
    return bytes.Assign(reinterpret_cast<const char *>(text), length * sizeof(wchar_t));
}

/// Stores the texts unchanged, and a terminator after the last one.
OrvResult AssignTexts(OrvMbCharHeapBuffer &bytes, const OrvUtf16CharHeapBuffer &texts)
{
    const uint32_t length = texts.GetInternal().length;
    const wchar_t *const characters = texts.GetValue();
    for (uint32_t i = 0; i < length; i++) {
        if (characters[i] == 0 && (i == 0 || characters[i - 1] == 0))
            return ORV_E_INVALID_ARGUMENT;
    }
    return AssignText(bytes, characters, length + 1);
}

/// Reads two hexadecimal digits for each byte. The text must contain nothing else.
OrvResult AssignDigits(OrvMbCharHeapBuffer &bytes, const wchar_t *text, uint32_t length)
{
    const OrvResult result = length % 2 ? ORV_E_INVALID_ARGUMENT : bytes.Resize(length / 2);
    if (OrvFailed(result))
        return result;
    for (uint32_t i = 0; i < length; i += 2) {
        const uint32_t high = detail::HexadecimalDigit(text[i]);
        const uint32_t low = detail::HexadecimalDigit(text[i + 1]);
        if (high > 15 || low > 15)
            return ORV_E_INVALID_ARGUMENT;
        bytes[i / 2] = static_cast<char>(high << 4 | low);
    }
    return ORV_S_OK;
}

} // namespace

bool ParseTypeName(const wchar_t *text, OrvBasWinRegistryValueType &type)
{
    for (const Type &each : kTypes) {
        if (Equal(each.name, text)) {
            type = each.type;
            return true;
        }
    }
    uint32_t number = 0;
    if (*text == L'-' || !ParseNumber(text, number))
        return false;
    type = static_cast<OrvBasWinRegistryValueType>(number);
    return true;
}

void PrintTypeName(Stream &out, OrvBasWinRegistryValueType type, int width)
{
    if (const Type *const found = FindType(type))
        out.Print(L"%-*s", width, found->name);
    else
        out.Print(L"%#-*x", width, type);
}

void PrintData(Stream &out, OrvBasWinRegistryValueType type, const uint8_t *bytes, uint32_t size,
               const wchar_t *separator)
{
    const Form form = FormOf(type);
    auto *text = reinterpret_cast<const wchar_t *>(bytes);
    if (form == Form::kText && size) {
        out.Print(L"%s", text);
    } else if (form == Form::kTexts && size) {
        for (bool isFirst = true; *text; isFirst = false) {
            out.Print(L"%s%s", isFirst ? L"" : separator, text);
            text += OrvGetStringSizeInElements(text) + 1;
        }
    } else if (form == Form::kNumber64 && size == sizeof(uint64_t)) {
        out.Print(L"0x%016I64X", NumberFrom(bytes, size, false));
    } else if ((form == Form::kNumber32 || form == Form::kNumber32BigEndian) && size == sizeof(uint32_t)) {
        out.Print(L"0x%08I64X", NumberFrom(bytes, size, form == Form::kNumber32BigEndian));
    } else {
        PrintBytes(out, bytes, size);
    }
}

OrvResult DataArguments::Add(const wchar_t *text)
{
    count++;
    return texts.Append(text, OrvGetStringSizeInElements(text) + 1);
}

OrvResult ParseData(OrvMbCharHeapBuffer &bytes, OrvBasWinRegistryValueType type, const DataArguments &data)
{
    const Form form = FormOf(type);
    if (form == Form::kTexts)
        return AssignTexts(bytes, data.texts);
    if (data.count != 1)
        return ORV_E_INVALID_ARGUMENT;
    const wchar_t *const text = data.texts.GetValue();
    const uint32_t length = data.texts.GetInternal().length; // including the terminator
    uint32_t number32 = 0;
    uint64_t number64 = 0;
    switch (form) {
    case Form::kText:
        return AssignText(bytes, text, length);
    case Form::kNumber32:
    case Form::kNumber32BigEndian:
        return ParseNumber(text, number32)
                   ? AssignNumber(bytes, number32, sizeof number32, form == Form::kNumber32BigEndian)
                   : ORV_E_INVALID_ARGUMENT;
    case Form::kNumber64:
        return ParseNumber64(text, number64) ? AssignNumber(bytes, number64, sizeof number64, false)
                                             : ORV_E_INVALID_ARGUMENT;
    default:
        return AssignDigits(bytes, text, length - 1);
    }
}

} // namespace orvtool
