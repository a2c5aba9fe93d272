// Any bytes as an XML document: its events are balanced, no call parts a pair, they are the same when it
// comes in pieces and those that the parser has for UTF-8, a handler that fails gets no further call, and
// what the writer makes of them is read as the same events again.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/heap_buffer.h"
#include "orv/xml/xml_sax.h"
#include "orv/xml/xml_writer.h"
#include "utf8_events.h"
#include "xml/escape.h"
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

    OrvResult StartElement(const Text &element) override
    {
        REQUIRE(depth_ > 0 || !hasRoot_);
        hasRoot_ = true;
        depth_++;
        return Record(kStart, element);
    }

    OrvResult Attribute(const Text &element, const Text &name, const Text &value) override
    {
        REQUIRE(last_ == kStart || last_ == kValue);
        REQUIRE(element.length && name.length);
        const OrvResult result = Record(kAttribute, name);
        return OrvFailed(result) ? result : Append(kValue, value);
    }

    OrvResult EndElement(const Text &element) override
    {
        REQUIRE(depth_ > 0);
        depth_--;
        return Record(kEnd, element);
    }

    OrvResult CharacterData(const Text &text) override
    {
        REQUIRE(depth_ > 0 && text.length > 0);
        REQUIRE(text.characters[0] >> 10 != 0x37 && text.characters[text.length - 1] >> 10 != 0x36);
        return Record(last_ == kText ? kNone : kText, text);
    }

    /// A document that was taken: one root, all that was opened is closed by its name, and text is text.
    void CheckForm() const
    {
        REQUIRE(hasRoot_ && depth_ == 0);
        OrvUtf16CharHeapBuffer open; // the names, each behind its mark
        ForEach([&open](Mark mark, const Text &text) {
            for (uint32_t i = 0; i < text.length; i++) {
                const wchar_t unit = text.characters[i];
                REQUIRE(unit < 0xFFFE && (unit >= 0x20 || unit == L'\t' || unit == L'\n' || unit == L'\r'));
                if (unit >> 11 == 0x1B) // a first half, and the second one behind it
                    REQUIRE(unit < 0xDC00 && ++i < text.length && text.characters[i] >> 10 == 0x37);
            }
            if (mark == kStart) {
                open.Append(kStart);
                open.Append(text.characters, text.length);
            } else if (mark == kEnd) {
                const uint32_t length = open.GetInternal().length;
                REQUIRE(length > text.length && open[length - text.length - 1] == kStart);
                REQUIRE(memcmp(open.GetValue() + length - text.length, text.characters,
                               text.length * sizeof(wchar_t)) == 0);
                open.Resize(length - text.length - 1);
            }
        });
        REQUIRE(open.IsEmpty());
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

    bool Equals(const Recorder &other) const { return Equals(other.events_); }

    bool Equals(const OrvUtf16CharHeapBuffer &events) const
    {
        const uint32_t length = events_.GetInternal().length;
        return events.GetInternal().length == length &&
               memcmp(events_.GetValue(), events.GetValue(), length * sizeof(wchar_t)) == 0;
    }

    /// Whether one of both is the beginning of the other.
    bool StartsLike(const Recorder &other) const
    {
        const uint32_t a = events_.GetInternal().length;
        const uint32_t b = other.events_.GetInternal().length;
        return memcmp(events_.GetValue(), other.events_.GetValue(), (a < b ? a : b) * sizeof(wchar_t)) == 0;
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
        return Append(mark, text);
    }

    OrvResult Append(Mark mark, const Text &text)
    {
        if (mark != kNone) {
            events_.Append(mark);
            last_ = mark;
        }
        return events_.Append(text.characters, text.length);
    }

    OrvUtf16CharHeapBuffer events_;
    uint32_t failAt_;
    uint32_t calls_ = 0;
    uint32_t depth_ = 0;
    bool hasRoot_ = false;
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

/// Writes the events of the build for UTF-8 down as a Recorder does.
class Utf8Recorder
{
public:
    static void Receive(void *opaque, Utf8Event event, const char *text, uint32_t length)
    {
        auto &self = *static_cast<Utf8Recorder *>(opaque);
        static const Mark kMarks[] = {kStart, kAttribute, kValue, kEnd, kText};
        const Mark mark = kMarks[event];
        if (mark != kText || self.last_ != kText)
            self.events_.Append(mark);
        self.last_ = mark;
        for (uint32_t i = 0; i < length;)
            i += self.AppendCharacter(reinterpret_cast<const uint8_t *>(text + i));
    }

    bool Equals(const Recorder &other) const { return other.Equals(events_); }

private:
    /// The parser has checked the bytes, and parts no character.
    uint32_t AppendCharacter(const uint8_t *bytes)
    {
        const uint32_t size = bytes[0] < 0x80 ? 1 : bytes[0] < 0xE0 ? 2 : bytes[0] < 0xF0 ? 3 : 4;
        uint32_t character = size == 1 ? bytes[0] : bytes[0] & (0x7F >> size);
        for (uint32_t i = 1; i < size; i++)
            character = character << 6 | (bytes[i] & 0x3F);
        if (character >= 0x10000) {
            events_.Append(static_cast<wchar_t>(0xD7C0 + (character >> 10)));
            character = 0xDC00 | (character & 0x3FF);
        }
        events_.Append(static_cast<wchar_t>(character));
        return size;
    }

    OrvUtf16CharHeapBuffer events_;
    Mark last_ = kNone;
};

/// Of a document in UTF-16 the build for UTF-8 takes what ours refuses, halves of pairs.
void CheckAgainstUtf8(const uint8_t *bytes, uint32_t size, OrvResult result, const Recorder &ours)
{
    Utf8Recorder theirs;
    const bool isWellFormed = ReadUtf8Events(bytes, size, Utf8Recorder::Receive, &theirs);
    const bool isUtf16 = size >= 2 && (bytes[0] == 0 || bytes[1] == 0 || bytes[0] >= 0xFE);
    if (result == ORV_S_OK)
        REQUIRE(isWellFormed && theirs.Equals(ours));
    else if (result == ORV_E_INVALID_DATA)
        REQUIRE(!isWellFormed || isUtf16);
}

void CheckEscape(const wchar_t *text, uint32_t count)
{
    for (uint32_t attribute = 0; attribute < 2; attribute++)
        REQUIRE(detail::CountUnescaped(text, count, attribute) ==
                detail::plain::CountUnescaped(text, count, attribute));
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
    if (result == ORV_S_OK) {
        whole.CheckForm();
        CheckWriter(whole);
    }
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
    ExactArray<wchar_t> units(count / sizeof(wchar_t));
    memcpy(units, bytes, count / sizeof(wchar_t) * sizeof(wchar_t));
    CheckEscape(units, count / sizeof(wchar_t));
    return 0;
}
