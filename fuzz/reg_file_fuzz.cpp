// Any text in the registry editor's format: reading, writing and reading it again gives the same, and so does
// writing it again. And any value: it is read as it was written.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "reg_file_reader.h"
#include "reg_file_text.h"
#include "reg_file_writer.h"

namespace
{

using orvtool::RegFileEntry;
using orvtool::RegFileReader;
using orvtool::RegFileWriter;

constexpr wchar_t kHeader[] = L"Windows Registry Editor Version 5.00\r\n";

class Sink final : public OrvBasAppendable<wchar_t>
{
public:
    OrvResult Append(const wchar_t *first, const wchar_t *last) override
    {
        return first == last ? ORV_S_OK : text.Append(first, static_cast<uint32_t>(last - first));
    }

    uint32_t Length() const { return text.GetInternal().length; }

    OrvUtf16CharHeapBuffer text;
};

/// Writes down all entries that the writer has words for. False when the text is malformed.
bool Rewrite(const wchar_t *text, uint32_t length, Sink &out)
{
    ExactArray<wchar_t> exact(text, length);
    RegFileReader reader(exact, length);
    RegFileWriter writer(out);
    writer.WriteHeader();
    bool isKeyWritten = false;
    uint32_t line = 0;
    for (;;) {
        RegFileEntry entry;
        bool found = false;
        const OrvResult result = reader.Next(entry, found);
        REQUIRE(reader.GetLine() >= line);
        line = reader.GetLine();
        REQUIRE(result == ORV_S_OK || (result == ORV_E_INVALID_DATA && reader.GetProblem() && !found));
        if (OrvFailed(result) || !found)
            return OrvSucceeded(result);
        REQUIRE(entry.line >= 1 && entry.line <= line);
        if (entry.kind == RegFileEntry::kKey) {
            isKeyWritten = RegFileWriter::CanWriteKey(entry.path);
            if (isKeyWritten)
                writer.WriteKey(entry.root, entry.path);
        } else if (entry.kind == RegFileEntry::kValue && isKeyWritten) {
            writer.WriteValue(entry.name, entry.type, entry.bytes, entry.size);
        }
    }
}

void CheckText(const OrvUtf16CharHeapBuffer &text)
{
    Sink first;
    if (!Rewrite(text.GetValue(), text.GetInternal().length, first))
        return;
    Sink second;
    REQUIRE(Rewrite(first.text.GetValue(), first.Length(), second));
    REQUIRE(first.Length() == second.Length());
    REQUIRE(memcmp(first.text.GetValue(), second.text.GetValue(), first.Length() * sizeof(wchar_t)) == 0);
}

void CheckValue(Input &input)
{
    constexpr uint32_t kMostName = 40;
    const auto type = static_cast<OrvBasWinRegistryValueType>(input.Byte() % 13);
    ExactArray<wchar_t> name(kMostName);
    const uint32_t nameLength = input.Byte() % (kMostName + 1);
    for (uint32_t i = 0; i < nameLength; i++) {
        const uint8_t byte = input.Byte();
        name[i] = static_cast<wchar_t>(byte < 0xF0 ? byte : byte << 8);
    }
    const uint32_t size = input.Left();
    ExactArray<uint8_t> bytes(input.Bytes(size), size);

    Sink out;
    RegFileWriter writer(out);
    writer.WriteHeader();
    writer.WriteKey(OrvRegistryCurrentUser, {L"a", 1});
    REQUIRE(writer.WriteValue({name, nameLength}, type, bytes, size) == ORV_S_OK);
    RegFileReader reader(out.text.GetValue(), out.Length());
    RegFileEntry entry;
    bool found = false;
    REQUIRE(reader.Next(entry, found) == ORV_S_OK && found && entry.kind == RegFileEntry::kKey);
    REQUIRE(reader.Next(entry, found) == ORV_S_OK && found && entry.kind == RegFileEntry::kValue);
    REQUIRE(entry.name.length == nameLength);
    REQUIRE(memcmp(entry.name.characters, name, nameLength * sizeof(wchar_t)) == 0);
    REQUIRE(entry.type == type && entry.size == size && memcmp(entry.bytes, bytes, size) == 0);
    REQUIRE(reader.Next(entry, found) == ORV_S_OK && !found);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    if (choice % 4 == 3) {
        CheckValue(input);
        return 0;
    }
    const uint32_t count = input.Left();
    ExactArray<char> bytes(reinterpret_cast<const char *>(input.Bytes(count)), count);
    OrvUtf16CharHeapBuffer decoded;
    uint32_t line = 0;
    const OrvResult result = orvtool::DecodeRegFile(bytes, count, decoded, line);
    REQUIRE(result == ORV_S_OK || (result == ORV_E_INVALID_DATA && line >= 1));
    if (OrvFailed(result))
        return 0;
    OrvUtf16CharHeapBuffer text;
    if (choice % 4) // the header would take the fuzzer long to find
        text.Append(kHeader);
    text.Append(decoded);
    CheckText(text);
    return 0;
}
