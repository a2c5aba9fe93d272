// Writes the text format of the system's registry editor.

#include "reg_file_writer.h"

#include "reg_location.h"

#include "orv/text/format.h"
#include "orv/text/string.h"

namespace orvtool
{

namespace
{

bool HasLineBreak(const wchar_t *text, uint32_t length)
{
    return OrvFindElement(text, L'\r', length) || OrvFindElement(text, L'\n', length);
}

/// Whether the bytes are one line of text and its terminator.
bool IsPlainText(const uint8_t *bytes, uint32_t size)
{
    if (size == 0 || size % sizeof(wchar_t))
        return false;
    auto *const text = reinterpret_cast<const wchar_t *>(bytes);
    const uint32_t length = size / sizeof(wchar_t) - 1;
    return OrvGetStringSizeInElements(text, length + 1) == length && !HasLineBreak(text, length);
}

} // namespace

bool RegFileWriter::CanWriteKey(const Name &name)
{
    return !HasLineBreak(name.characters, name.length);
}

OrvResult RegFileWriter::PutCharacters(const wchar_t *text, uint32_t length)
{
    column_ += length;
    return out_.Append(text, text + length);
}

OrvResult RegFileWriter::Put(const wchar_t *text)
{
    return PutCharacters(text, OrvGetStringSizeInElements(text));
}

void RegFileWriter::PutQuoted(const wchar_t *text, uint32_t length)
{
    Put(L"\"");
    uint32_t written = 0;
    for (uint32_t i = 0; i < length; i++) {
        if (text[i] != L'"' && text[i] != L'\\')
            continue;
        PutCharacters(text + written, i - written);
        Put(L"\\");
        written = i;
    }
    PutCharacters(text + written, length - written);
    Put(L"\"");
}

void RegFileWriter::PutBytes(const uint8_t *bytes, uint32_t size)
{
    constexpr wchar_t kDigits[] = L"0123456789abcdef";
    constexpr uint32_t kFullLine = 77; // no room for another byte, its comma and a backslash
    for (uint32_t i = 0; i < size; i++) {
        const wchar_t byte[] = {kDigits[bytes[i] >> 4], kDigits[bytes[i] & 0xF], L','};
        const bool isLast = i + 1 == size;
        PutCharacters(byte, isLast ? 2 : 3);
        if (!isLast && column_ >= kFullLine) {
            Put(L"\\\r\n  ");
            column_ = 2;
        }
    }
}

OrvResult RegFileWriter::WriteHeader()
{
    return Put(L"Windows Registry Editor Version 5.00\r\n");
}

OrvResult RegFileWriter::WriteKey(OrvBasWinRegistryRootType root, const Name &path)
{
    Put(L"\r\n[");
    Put(LongNameOfRoot(root));
    if (path.length)
        Put(L"\\");
    PutCharacters(path.characters, path.length);
    return Put(L"]\r\n");
}

OrvResult RegFileWriter::WriteValue(const Name &name, OrvBasWinRegistryValueType type, const uint8_t *bytes,
                                    uint32_t size)
{
    column_ = 0;
    if (name.length)
        PutQuoted(name.characters, name.length);
    else
        Put(L"@");
    if (type == OrvRegistryString && IsPlainText(bytes, size)) {
        Put(L"=");
        PutQuoted(reinterpret_cast<const wchar_t *>(bytes), size / sizeof(wchar_t) - 1);
    } else if (type == OrvRegistryDWord && size == sizeof(uint32_t)) {
        OrvBasAppendFormat(out_, L"=dword:%02x%02x%02x%02x", bytes[3], bytes[2], bytes[1], bytes[0]);
    } else if (type == OrvRegistryBinary) {
        Put(L"=hex:");
        PutBytes(bytes, size);
    } else {
        wchar_t kind[16];
        OrvFormatString(OrvCodePageDefault, kind, sizeof kind / sizeof *kind, nullptr, L"=hex(%x):", type);
        Put(kind);
        PutBytes(bytes, size);
    }
    return Put(L"\r\n");
}

} // namespace orvtool
