// Any bytes as an XML document. No call splits a surrogate pair; the events are the same in pieces as at once,
// and the same as those of the parser built for UTF-8; a handler that fails gets no further call; and what the
// writer writes for the events is read as the same events again.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/code_page.h"
#include "orv/text/heap_buffer.h"
#include "orv/xml/xml_sax.h"
#include "orv/xml/xml_writer.h"
#include "utf8_events.h"
#include "xml/streams.h"

namespace
{

typedef OrvStringRefBase<wchar_t> Text;

// What stands before each part of an event in a record. No document has these characters.
enum Mark : wchar_t { kNone, kStart, kAttribute, kValue, kEnd, kText };

/// Writes the events down, the pieces of a text as one, and checks their order.
class Recorder final : public OrvBasXmlSaxHandlerBase
{
public:
    static constexpr uint32_t kMostUnits = 0x10000;

    explicit Recorder(uint32_t failAt = 0) : failAt_(failAt) {}

    OrvResult StartElement(const Text &element) override { return Record(kStart, element); }

    OrvResult Attribute(const Text &, const Text &name, const Text &value) override
    {
        const OrvResult result = Record(kAttribute, name);
        return OrvFailed(result) ? result : Add(kValue, value);
    }

    OrvResult EndElement(const Text &element) override { return Record(kEnd, element); }

    OrvResult CharacterData(const Text &text) override
    {
        REQUIRE(text.length > 0);
        REQUIRE(text.characters[0] >> 10 != 0x37 && text.characters[text.length - 1] >> 10 != 0x36);
        return Record(kText, text);
    }

    /// Writes down one part of an event. All pieces of a text get one mark.
    OrvResult Add(Mark mark, const Text &text)
    {
        if (mark != kText || last_ != kText)
            events_.Append(mark);
        last_ = mark;
        return events_.Append(text.characters, text.length);
    }

    template <typename Body>
    void ForEach(Body body) const
    {
        const wchar_t *next = events_.GetValue();
        const wchar_t *const last = next + events_.GetInternal().length;
        while (next != last) {
            const auto mark = static_cast<Mark>(*next++);
            const wchar_t *const first = next;
            while (next != last && *next > kText)
                next++;
            body(mark, {first, static_cast<uint32_t>(next - first)});
        }
    }

    uint32_t Length() const { return events_.GetInternal().length; }

    bool Equals(const Recorder &other) const { return Length() == other.Length() && StartsLike(other); }

    /// Whether one of both is the beginning of the other.
    bool StartsLike(const Recorder &other) const
    {
        const uint32_t length = Length() < other.Length() ? Length() : other.Length();
        return memcmp(events_.GetValue(), other.events_.GetValue(), length * sizeof(wchar_t)) == 0;
    }

    uint32_t Calls() const { return calls_; }

    /// For events that the writer cannot write as they are: see Writable.
    template <typename Map>
    void Change(Map map)
    {
        for (uint32_t i = 0; i < events_.GetInternal().length; i++)
            events_[i] = map(events_[i]);
    }

private:
    OrvResult Record(Mark mark, const Text &text)
    {
        REQUIRE(failAt_ == 0 || calls_ < failAt_);
        if (++calls_ == failAt_ || events_.GetInternal().length > kMostUnits)
            return ORV_E_ABORTED;
        return Add(mark, text);
    }

    OrvUtf16CharHeapBuffer events_;
    uint32_t failAt_;
    uint32_t calls_ = 0;
    Mark last_ = kNone;
};

/// The writer writes halves of pairs as references, which no reader takes, and line ends and tabs as they
/// are, which a reader turns into others.
wchar_t Writable(wchar_t unit)
{
    return unit == L'\r' || unit == L'\n' || unit == L'\t' ? L' ' : unit >> 11 == 0x1B ? L'?' : unit;
}

void CheckWriter(Recorder &events)
{
    events.Change(Writable);
    OrvBufferStream stream;
    OrvBasXmlWriter::Impl *const writer = OrvBasXmlWriter::Impl::New(stream);
    writer->WriteXmlDecl(L"1.0");
    Text attribute;
    events.ForEach([&](Mark mark, const Text &text) {
        if (mark == kStart)
            writer->WriteStartElement(text);
        else if (mark == kAttribute)
            attribute = text;
        else if (mark == kValue)
            writer->WriteAttribute(attribute, text);
        else if (mark == kEnd)
            text.length % 2 ? writer->WriteEndElement() : writer->WriteFullEndElement();
        else
            writer->WriteText(text);
    });
    REQUIRE(writer->Flush() == ORV_S_OK);
    OrvBasXmlWriter::Impl::Delete(writer);
    Recorder again;
    REQUIRE(OrvBasXmlSaxParse(stream, again) == ORV_S_OK);
    REQUIRE(again.Equals(events));
}

/// Gives a recorder an event of the build for UTF-8.
void Receive(void *recorder, Utf8Event event, const char *text, uint32_t length)
{
    constexpr Mark kMarks[] = {kStart, kAttribute, kValue, kEnd, kText};
    ExactArray<wchar_t> units(length + 1);
    uint32_t count = 0;
    REQUIRE(OrvConvertMb2Utf16String(units, length + 1, text, OrvCodePageUtf8, &count, length) == ORV_S_OK);
    static_cast<Recorder *>(recorder)->Add(kMarks[event], {units, count});
}

/// Of a document in UTF-16 the build for UTF-8 takes what ours refuses, halves of pairs.
void CheckAgainstUtf8(const uint8_t *bytes, uint32_t size, OrvResult result, const Recorder &ours)
{
    Recorder theirs;
    const bool isWellFormed = ReadUtf8Events(bytes, size, Receive, &theirs);
    const bool isUtf16 = size >= 2 && (bytes[0] == 0 || bytes[1] == 0 || bytes[0] >= 0xFE);
    if (result == ORV_S_OK)
        REQUIRE(isWellFormed && theirs.Equals(ours));
    else if (result == ORV_E_INVALID_DATA)
        REQUIRE(!isWellFormed || isUtf16);
}

void CheckDocument(const uint8_t *bytes, uint32_t size, uint32_t piece, uint32_t failAt)
{
    OrvMemoryStream stream(bytes, size);
    Recorder whole;
    OrvBasXmlSaxError error = {};
    const OrvResult result = OrvBasXmlSaxParse(stream, whole, error);
    REQUIRE(result == ORV_S_OK || result == ORV_E_INVALID_DATA || result == ORV_E_ABORTED);
    REQUIRE(error.byteOffset <= size && (error.line != 0) == (result == ORV_E_INVALID_DATA));

    CheckAgainstUtf8(bytes, size, result, whole);

    test::PiecewiseStream pieces(bytes, size, piece);
    Recorder parts;
    REQUIRE(OrvBasXmlSaxParse(pieces, parts) == result);
    // How much of a text comes before the fault in it depends on the pieces.
    REQUIRE(result == ORV_S_OK ? parts.Equals(whole) : parts.StartsLike(whole));

    if (failAt && failAt <= whole.Calls()) {
        stream.SetPosition(0);
        Recorder failing(failAt);
        REQUIRE(OrvBasXmlSaxParse(stream, failing) == ORV_E_ABORTED && failing.Calls() == failAt);
    }
    if (result == ORV_S_OK)
        CheckWriter(whole);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint32_t piece = 1 + input.Byte();
    const uint32_t failAt = input.Byte();
    const uint32_t count = input.Left();
    ExactArray<uint8_t> bytes(input.Bytes(count), count);
    CheckDocument(bytes, count, piece, failAt);
    return 0;
}
