// The reader's events, in order and in views, and its failures, from every side.

#include "orv/xml/xml_sax.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/text/code_page.h"
#include "orv/text/format.h"
#include "orv/text/string.h"
#include "xml/streams.h"

namespace
{

/// Writes the events down, and fails at one of them when told to. Texts that come in pieces are joined.
class Recorder final : public OrvBasXmlSaxHandlerBase
{
public:
    OrvResult StartElement(const Text &element) override
    {
        return Record(L"<%.*s", element.length, element.characters);
    }
    OrvResult Attribute(const Text &element, const Text &name, const Text &value) override
    {
        return Record(L" %.*s.%.*s=%.*s", element.length, element.characters, name.length, name.characters,
                      value.length, value.characters);
    }
    OrvResult EndElement(const Text &element) override
    {
        return Record(L"/%.*s>", element.length, element.characters);
    }
    OrvResult CharacterData(const Text &text) override
    {
        textCalls++;
        return Record(L"%.*s", text.length, text.characters);
    }

    OrvUtf16CharHeapBuffer events;
    uint32_t calls = 0;
    uint32_t textCalls = 0;
    uint32_t failAt = 0;

private:
    template <typename... Parts>
    OrvResult Record(const wchar_t *format, Parts... parts)
    {
        if (++calls == failAt)
            return ORV_E_ABORTED;
        CHECK_EQUAL(OrvAppendFormatString(OrvMakeMutableStringRef(events), format, parts...), ORV_S_OK);
        return ORV_S_NOT_SET; // a remark does not end the parse, and the last one is its result
    }
};

const char kDocument[] = "<?xml version='1.0'?><a x='1' y=\"&lt;&#x20AC;\">t<!-- c --><b/><![CDATA[<]]>u</a>";
const wchar_t kEvents[] = L"<a a.x=1 a.y=<\u20ACt<b/b><u/a>";

} // namespace

TEST_CASE(EventsComeInOrderFromPiecesOfAnySize)
{
    for (uint32_t piece = 1; piece <= sizeof kDocument; piece += 5) {
        test::Note("piece", piece);
        test::PiecewiseStream stream(kDocument, sizeof kDocument - 1, piece);
        Recorder recorder;
        CHECK_EQUAL(OrvBasXmlSaxParse(stream, recorder), ORV_S_NOT_SET);
        CHECK_TEXT(recorder.events.GetValue(), kEvents);
    }
    // UTF-16 with a byte order mark, found by itself.
    static const wchar_t kUtf16[] = L"\xFEFF<a>\u00E9</a>";
    OrvMemoryStream stream(kUtf16, sizeof kUtf16 - sizeof(wchar_t));
    Recorder recorder;
    CHECK_EQUAL(OrvBasXmlSaxParse(stream, recorder), ORV_S_NOT_SET);
    CHECK_TEXT(recorder.events.GetValue(), L"<a\u00E9/a>");

    // A text across two reads comes in two calls: a comment brings it to the border between them.
    static char longText[4110];
    __builtin_memset(longText, 'c', sizeof longText);
    __builtin_memcpy(longText, "<a><!--", 7);
    __builtin_memcpy(longText + 4090, "-->12345678</a>", 15);
    OrvMemoryStream longStream(longText, 4090 + 15);
    Recorder longRecorder;
    CHECK_EQUAL(OrvBasXmlSaxParse(longStream, longRecorder), ORV_S_NOT_SET);
    CHECK_EQUAL(longRecorder.textCalls, 2u);
    CHECK_TEXT(longRecorder.events.GetValue(), L"<a12345678/a>");
}

TEST_CASE(MalformedDocumentsAreRefusedWhereTheyBreak)
{
    struct {
        const char *document;
        uint32_t offset;
    } const cases[] = {
        {"", 0},
        {"  ", 2},
        {"text", 0},
        {"<a>", 3},
        {"<a></b>", 5},
        {"<a x='1' x='2'/>", 9},
        {"<a x=1/>", 5},
        {"<a>&undefined;</a>", 3},
        {"<a>\x01</a>", 3},
        {"<a>\xFF</a>", 3},
        {"<a/><b/>", 4},
        {"<a>&#xD800;</a>", 3},
        {"<?xml version='1.0' encoding='no-such'?><a/>", 30},
        {"<a><![CDATA[x</a>", 17},
    };
    for (const auto &c : cases) {
        test::Note(c.document, 0);
        OrvMemoryStream stream(c.document, OrvGetStringSizeInElements(c.document));
        Recorder recorder;
        OrvBasXmlSaxError error = {0, 0, 0, OrvXmlTooDeep};
        CHECK_EQUAL(OrvBasXmlSaxParse(stream, recorder, error), ORV_E_INVALID_DATA);
        CHECK_EQUAL(error.byteOffset, uint64_t(c.offset));
        CHECK(error.line >= 1);
        CHECK_EQUAL(error.reason, OrvXmlNotWellFormed);
    }
    // Cut at every byte, no document is complete.
    for (uint32_t size = 0; size < sizeof kDocument - 1; size++) {
        OrvMemoryStream stream(kDocument, size);
        Recorder recorder;
        CHECK_EQUAL(OrvBasXmlSaxParse(stream, recorder), ORV_E_INVALID_DATA);
    }
}

TEST_CASE(HalvesOfPairsStandInPairs)
{
    constexpr uint32_t kWellFormed = 0xFFFF;
    struct {
        const wchar_t *document;
        uint32_t fault; ///< the unit that is refused
    } const cases[] = {
        {L"<a b='\xD83D\xDE00'>\xD83D\xDE00<!--\xDBFF\xDFFF--></a>", kWellFormed},
        {L"<a>\xD83D</a>", 3},
        {L"<a>\xD83D\xD83D\xDE00</a>", 3},
        {L"<a>\xDE00\xD83D</a>", 3},
        {L"<a b='\xD83Dx'/>", 6},
        {L"<a><!--\xD83D--></a>", 7},
        {L"<a><![CDATA[\xD83D]]></a>", 12},
        {L"<a/>\xD83D", 4},
        {L"\xD83D<a/>", 0},
    };
    for (const auto &c : cases) {
        for (uint32_t form = 0; form < 4; form++) { // either order of bytes, with a mark and without
            wchar_t document[32] = {0xFEFF};
            const bool isMarked = form % 2;
            uint32_t length = isMarked;
            for (const wchar_t *unit = c.document; *unit; unit++)
                document[length++] = *unit;
            for (uint32_t i = 0; i < length && form / 2; i++)
                document[i] = __builtin_bswap16(document[i]);
            for (uint32_t piece = 1; piece <= 5; piece++) {
                test::Note("case", &c - cases);
                test::PiecewiseStream stream(document, length * sizeof(wchar_t), piece);
                Recorder recorder;
                OrvBasXmlSaxError error = {};
                const bool isWellFormed = c.fault == kWellFormed;
                const OrvResult result = OrvBasXmlSaxParse(stream, recorder, error);
                CHECK_EQUAL(result, isWellFormed ? ORV_S_NOT_SET : ORV_E_INVALID_DATA);
                if (isWellFormed)
                    CHECK_TEXT(recorder.events.GetValue(), L"<a a.b=\xD83D\xDE00\xD83D\xDE00/a>");
                else if (c.fault || isMarked) // without a mark this one is no UTF-16 to expat
                    CHECK_EQUAL(error.byteOffset, (c.fault + isMarked) * uint64_t(sizeof(wchar_t)));
            }
        }
    }
}

TEST_CASE(PairsStayTogetherFromReadToRead)
{
    static wchar_t document[5000] = L"\xFEFF<a>x"; // so that each read of 4,096 bytes would part a pair
    for (uint32_t i = 5; i < 4995; i++)
        document[i] = i % 2 ? 0xD83D : 0xDE00;
    __builtin_memcpy(document + 4995, L"</a>", 4 * sizeof(wchar_t));
    OrvMemoryStream stream(document, 4999 * sizeof(wchar_t));
    Recorder recorder;
    CHECK_EQUAL(OrvBasXmlSaxParse(stream, recorder), ORV_S_NOT_SET);
    CHECK_EQUAL(recorder.events.GetInternal().length, 2u + 4991 + 3);
    CHECK(__builtin_memcmp(recorder.events.GetValue() + 2, document + 4, 4991 * sizeof(wchar_t)) == 0);
}

namespace
{

/// The same document in UTF-8 and in UTF-16 of either order.
enum Form : uint32_t { kUtf8, kLittleEndian, kBigEndian, kFormCount };

/// In UTF-16 the document begins with a byte order mark.
void Encode(OrvMbCharHeapBuffer &out, const OrvUtf16CharHeapBuffer &text, Form form)
{
    const uint32_t length = text.GetInternal().length;
    uint32_t size = sizeof(wchar_t) * (1 + length);
    if (form == kUtf8) {
        OrvGetUtf162MbStringSize(size, text.GetValue(), OrvCodePageUtf8, length);
        out.Resize(size);
        OrvConvertUtf162MbString(out.GetBuffer(), size + 1, text.GetValue(), OrvCodePageUtf8, nullptr,
                                 length);
        return;
    }
    out.Resize(size);
    for (uint32_t i = 0; i <= length; i++) {
        const wchar_t unit = i ? text.GetValue()[i - 1] : 0xFEFF;
        out[2 * i + (form == kBigEndian)] = static_cast<char>(unit);
        out[2 * i + (form == kLittleEndian)] = static_cast<char>(unit >> 8);
    }
}

/// Of one element: its attribute, and its text joined. No call may part a pair.
struct PairReader final : OrvBasXmlSaxHandlerBase {
    OrvResult Attribute(const Text &, const Text &, const Text &value) override
    {
        return attribute.Append(value.characters, value.length);
    }
    OrvResult CharacterData(const Text &text) override
    {
        CHECK(text.length != 0 && text.characters[0] >> 10 != 0x37);
        CHECK(text.characters[text.length - 1] >> 10 != 0x36);
        return content.Append(text.characters, text.length);
    }

    OrvUtf16CharHeapBuffer attribute;
    OrvUtf16CharHeapBuffer content;
};

/// Its parts one after the other, each so many times, as one document without end or nearly.
class PartsStream final : public IOrvStream
{
public:
    struct Part {
        const char *text;
        uint32_t count;
    };

    explicit PartsStream(const Part *parts) : part_(parts), text_(parts->text) {}

    OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override
    {
        for (read = 0; read < size && part_->count;) {
            const uint32_t left = OrvGetStringSizeInElements(text_);
            const uint32_t count = left < size - read ? left : size - read;
            __builtin_memcpy(static_cast<char *>(bytes) + read, text_, count);
            read += count;
            text_ += count;
            if (count == left)
                NextText();
        }
        total += read;
        return read ? ORV_S_OK : ORV_E_END_OF_DATA;
    }

    uint64_t total = 0;

private:
    void NextText()
    {
        if (++given_ == part_->count) {
            part_++;
            given_ = 0;
        }
        text_ = part_->text;
    }

    const Part *part_;
    const char *text_;
    uint32_t given_ = 0;
};

struct Counter final : OrvBasXmlSaxHandlerBase {
    OrvResult EndElement(const Text &) override
    {
        ends++;
        return ORV_S_OK;
    }
    OrvResult CharacterData(const Text &text) override
    {
        characters += text.length;
        return ORV_S_OK;
    }

    uint64_t characters = 0;
    uint32_t ends = 0;
};

} // namespace

TEST_CASE(PairsAreNeverHalved)
{
    // The parser moves text in portions of 1,024 units, or so: the pair stands around the ends of these.
    for (uint32_t portion = 1024; portion <= 4096; portion *= 2) {
        for (uint32_t length = portion - 4; length <= portion + 2; length++) {
            OrvUtf16CharHeapBuffer expected;
            for (uint32_t i = 0; i < length; i++)
                expected.Append(L'x');
            expected.Append(L"\xD83D\xDE00\xD83D\xDE01", 4);
            for (uint32_t form = 0; form < 2u * kFormCount; form++) {
                test::Note("units before the pair", length);
                const bool isEntity = form % 2;
                const wchar_t *const value = isEntity ? L"&e;" : expected.GetValue();
                OrvUtf16CharHeapBuffer text;
                OrvFormatString(OrvMakeMutableStringRef(text),
                                L"<!DOCTYPE a [<!ENTITY e \"%s\">]><a b=\"%s\">%s</a>", expected.GetValue(),
                                value, value);
                OrvMbCharHeapBuffer document;
                Encode(document, text, static_cast<Form>(form / 2));
                OrvMemoryStream stream(document.GetValue(), document.GetInternal().length);
                PairReader reader;
                CHECK_EQUAL(OrvBasXmlSaxParse(stream, reader), ORV_S_OK);
                CHECK_TEXT(reader.attribute.GetValue(), expected.GetValue());
                CHECK_TEXT(reader.content.GetValue(), expected.GetValue());
            }
        }
    }
}

TEST_CASE(DocumentsThatAskForTooMuchAreRefused)
{
    constexpr uint32_t kMostDeep = 250000;
    constexpr uint32_t kMostLong = 64 << 20;
    char kilobyte[1025] = {};
    __builtin_memset(kilobyte, 'x', 1024);
    const struct {
        OrvBasXmlSaxReason reason; ///< OrvXmlNotWellFormed for a document that is taken
        uint32_t offset;
        uint32_t mostRead;
        PartsStream::Part parts[7];
    } cases[] = {
        // Entities of entities, in text, and one long entity many times, in an attribute.
        {OrvXmlTooMuchExpansion,
         0,
         200000,
         {{"<!DOCTYPE a [<!ENTITY d '", 1},
          {kilobyte, 1},
          {"'><!ENTITY e '", 1},
          {"&d;", 1000},
          {"'>]><a>", 1},
          {"&e;", 1000}}},
        {OrvXmlTooMuchExpansion,
         0,
         300000,
         {{"<!DOCTYPE a [<!ENTITY e '", 1}, {kilobyte, 50}, {"'>]><a b='", 1}, {"&e;", 50000}, {"'/>", 1}}},
        {OrvXmlNotWellFormed, 0, 7 * kMostDeep, {{"<a>", kMostDeep}, {"</a>", kMostDeep}}},
        {OrvXmlTooDeep, 3 * kMostDeep, 3 * kMostDeep + 4, {{"<a>", kMostDeep}, {"<b/>", 1}}},
        // Side by side there may be any number.
        {OrvXmlNotWellFormed, 0, 4 * kMostDeep + 11, {{"<a>", 1}, {"<b/>", kMostDeep + 1}, {"</a>", 1}}},
        {OrvXmlTokenTooLong, 0, kMostLong + 4096, {{"<a b='", 1}, {kilobyte, 300 << 10}, {"'/>", 1}}},
        {OrvXmlTokenTooLong,
         3,
         kMostLong + 2 * 4096,
         {{"<a><!--", 1}, {kilobyte, 300 << 10}, {"--></a>", 1}}},
    };
    for (const auto &c : cases) {
        test::Note("case", &c - cases);
        PartsStream stream(c.parts);
        Counter counter;
        OrvBasXmlSaxError error = {};
        const OrvResult expected = c.reason == OrvXmlNotWellFormed ? ORV_S_OK : ORV_E_INVALID_DATA;
        CHECK_EQUAL(OrvBasXmlSaxParse(stream, counter, error), expected);
        CHECK_EQUAL(error.reason, c.reason);
        if (c.offset)
            CHECK_EQUAL(error.byteOffset, uint64_t(c.offset));
        CHECK(stream.total <= c.mostRead);
        CHECK(counter.characters <= uint64_t(100) * c.mostRead);
        if (expected == ORV_S_OK)
            CHECK(counter.ends >= kMostDeep);
    }
}

TEST_CASE(OutsideEntitiesAreNotRead)
{
    const char outside[] = "<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><a>&x;</a>";
    Recorder recorder;
    OrvMemoryStream outsideStream(outside, sizeof outside - 1);
    CHECK_EQUAL(OrvBasXmlSaxParse(outsideStream, recorder), ORV_S_NOT_SET);
    CHECK_TEXT(recorder.events.GetValue(), L"<a/a>");
}

TEST_CASE(FirstFailureIsTheResult)
{
    // The handler's, at every event: no further call is made.
    OrvMemoryStream whole(kDocument, sizeof kDocument - 1);
    Recorder all;
    CHECK_EQUAL(OrvBasXmlSaxParse(whole, all), ORV_S_NOT_SET);
    for (uint32_t failAt = 1; failAt <= all.calls; failAt++) {
        test::Note("fails at", failAt);
        OrvMemoryStream stream(kDocument, sizeof kDocument - 1);
        Recorder failing;
        failing.failAt = failAt;
        OrvBasXmlSaxError error = {7, 7, 7, OrvXmlTooDeep};
        CHECK_EQUAL(OrvBasXmlSaxParse(stream, failing, error), ORV_E_ABORTED);
        CHECK_EQUAL(failing.calls, failAt);
        CHECK_EQUAL(error.byteOffset, uint64_t(7));
    }
    // It comes before what is malformed behind it.
    OrvMemoryStream broken("<a></b>", 7);
    Recorder failing;
    failing.failAt = 1;
    OrvBasXmlSaxError untouched = {7, 7, 7, OrvXmlTooDeep};
    CHECK_EQUAL(OrvBasXmlSaxParse(broken, failing, untouched), ORV_E_ABORTED);
    CHECK_EQUAL(untouched.line, uint64_t(7));

    // The stream's, at every read.
    test::PiecewiseStream counted(kDocument, sizeof kDocument - 1, 10);
    Recorder recorder;
    CHECK_EQUAL(OrvBasXmlSaxParse(counted, recorder), ORV_S_NOT_SET);
    for (uint32_t failAt = 1; failAt <= counted.reads; failAt++) {
        test::PiecewiseStream stream(kDocument, sizeof kDocument - 1, 10, failAt);
        Recorder partial;
        CHECK_EQUAL(OrvBasXmlSaxParse(stream, partial), ORV_E_READ_FAULT);
        CHECK_EQUAL(stream.reads, failAt);
    }
    class Boaster final : public IOrvStream
    {
        OrvResult Read(void *, uint32_t size, uint32_t &read) override
        {
            read = size + 1;
            return ORV_S_OK;
        }
    } boaster;
    CHECK_EQUAL(OrvBasXmlSaxParse(boaster, recorder), ORV_E_READ_FAULT);
    struct final : OrvBasXmlSaxHandlerBase {
    } silent;
    OrvMemoryStream plain(kDocument, sizeof kDocument - 1);
    CHECK_EQUAL(OrvBasXmlSaxParse(plain, silent), ORV_S_OK);
}
