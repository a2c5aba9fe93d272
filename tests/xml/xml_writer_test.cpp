// The writer's documents, to the letter; its failures, at every write.

#include "orv/xml/xml_writer.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "xml/streams.h"

namespace
{

typedef OrvBasXmlWriter::Impl Impl;

/// Counted text at an unmapped page.
template <uint32_t size>
Impl::Text Guarded(const wchar_t (&text)[size])
{
    return {test::GuardedCopy(text, size - 1), size - 1};
}

/// Runs the calls on a new writer and compares what arrives.
template <typename Calls>
void CheckDocument(const char *expected, Calls calls)
{
    test::SlowStream stream(3);
    Impl *const writer = Impl::New(stream);
    if (!CHECK(writer != nullptr))
        return;
    calls(*writer);
    CHECK_EQUAL(writer->Flush(), ORV_S_OK);
    CHECK_EQUAL(writer->GetError(), ORV_S_OK);
    Impl::Delete(writer);
    CHECK_TEXT(stream.Text(), expected);
}

} // namespace

TEST_CASE(WithoutIndentationAllIsOneLine)
{
    CheckDocument("<?xml version=\"1.0\" encoding=\"utf-8\"?><a x=\"1 &lt; 2\">t</a>", [](Impl &writer) {
        writer.WriteXmlDecl(Guarded(L"1.0"));
        writer.WriteStartElement(Guarded(L"a"));
        writer.WriteAttribute(Guarded(L"x"), Guarded(L"1 < 2"));
        writer.WriteText(Guarded(L"t"));
        writer.WriteEndElement();
    });
    CheckDocument("<a><b/><c></c>text<d>x</d><e/></a>", [](Impl &writer) {
        writer.WriteStartElement(L"a");
        writer.WriteStartElement(L"b");
        writer.WriteEndElement();
        writer.WriteStartElement(L"c");
        writer.WriteFullEndElement();
        writer.WriteText(L"text");
        writer.WriteElement(L"d", L"x");
        writer.WriteElement(L"e", L"");
        writer.WriteEndElement();
    });
}

TEST_CASE(IndentationBreaksLines)
{
    CheckDocument("<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<a>\r\n  <b/>\r\n</a>\r\n",
                  [](Impl &writer) {
                      writer.SetIndent(L"  ");
                      writer.WriteXmlDecl(L"1.0");
                      writer.WriteStartElement(L"a");
                      writer.WriteStartElement(L"b");
                      writer.WriteEndElement();
                      writer.WriteEndElement();
                  });
    CheckDocument("<a>\n\t<b>text</b>\n\t<c>\n\t\t<d></d>\n\t</c>\n\ttail</a>\n", [](Impl &writer) {
        writer.SetIndent(L"\t", LineEndLf);
        writer.WriteStartElement(L"a");
        writer.WriteElement(L"b", L"text");
        writer.WriteStartElement(L"c");
        writer.WriteStartElement(L"d");
        writer.WriteFullEndElement();
        writer.WriteEndElement();
        writer.WriteText(L"tail");
        writer.WriteEndElement();
    });
    // Lines that the caller asks for; the start of one is no place for text.
    CheckDocument("<a>t\n.u\nx\n.<b/>\n</a>\n", [](Impl &writer) {
        CHECK_EQUAL(writer.Indent(3), ORV_S_OK); // not before SetIndent
        writer.SetIndent(L".", LineEndLf);
        writer.WriteStartElement(L"a");
        writer.WriteText(L"t");
        writer.Indent(1);
        writer.WriteText(L"u");
        writer.Indent(0);
        CHECK_EQUAL(writer.Indent(0), ORV_S_OK);
        CHECK_EQUAL(writer.WriteText(L"t"), ORV_E_NOT_PROVIDED);
        writer.WriteXmlFragment(L"x");
        writer.Indent(0);
        writer.WriteStartElement(L"b");
        writer.WriteEndElement();
        writer.WriteEndElement();
    });
}

TEST_CASE(AttributesComeFromNumbersAndFormats)
{
    CheckDocument("<a i=\"-5\" u=\"4294967295\" l=\"-1\" n=\"4294967295\" s=\"-9223372036854775808\" "
                  "m=\"18446744073709551615\" f=\"&lt;00FF&gt; \xC3\xBC\" e=\"\"/>",
                  [](Impl &writer) {
                      writer.WriteStartElement(L"a");
                      writer.WriteAttribute(L"i", -5);
                      writer.WriteAttribute(L"u", UINT32_MAX);
                      writer.WriteAttribute(L"l", -1L);
                      writer.WriteAttribute(L"n", static_cast<unsigned long>(UINT32_MAX));
                      writer.WriteAttribute(L"s", INT64_MIN);
                      writer.WriteAttribute(L"m", UINT64_MAX);
                      writer.WriteFormattedAttribute(L"f", L"<%04X> %hs", 255, "\xC3\xBC");
                      CHECK_EQUAL(writer.WriteFormattedAttribute(L"x", L"%hs", "\xC3"), ORV_E_INVALID_DATA);
                      CHECK_EQUAL(writer.WriteFormattedAttribute(L"e", L""), ORV_S_OK);
                      writer.WriteEndElement();
                  });
    // Around the longest value that takes no memory.
    for (int length = 254; length <= 257; length++) {
        test::SlowStream stream(1000);
        OrvBasXmlWriter::Holder writer(stream);
        if (!CHECK(writer))
            return;
        CHECK_EQUAL(writer->WriteStartElement(L"a"), ORV_S_OK);
        CHECK_EQUAL(writer->WriteFormattedAttribute(L"x", L"%0*d", length, 7), ORV_S_OK);
        CHECK_EQUAL(writer.Get()->Flush(), ORV_S_OK);
        const char *const text = stream.Text();
        CHECK_EQUAL(stream.buffer.GetLength(), static_cast<uint32_t>(length) + 8); // <a x="" and a zero
        CHECK_EQUAL(text[5 + length], '7');
    }
}

TEST_CASE(CharactersAreEscaped)
{
    // Everything that is escaped, and its neighbours that are not.
    static const wchar_t kText[] = {L'&',   L'<',   L'>',   L'"',   L'\'',  9,      10,
                                    13,     1,      0x1F,   0x20,   0x7F,   0x80,   0xD7FF,
                                    0xD800, 0xDE00, 0xDFFF, 0xE000, 0xFFFD, 0xFFFE, 0xFFFF};
    const OrvStringRefBase<wchar_t> text(kText, sizeof kText / sizeof *kText);
    CheckDocument("<a x=\"&amp;&lt;&gt;&quot;&apos;\t\n\r&#x1;&#x1f; \x7F\xC2\x80\xED\x9F\xBF"
                  "&#xd800;&#xde00;&#xdfff;\xEE\x80\x80\xEF\xBF\xBD&#xfffe;&#xffff;\">"
                  "&amp;&lt;&gt;\"'\t\n\r&#x1;&#x1f; \x7F\xC2\x80\xED\x9F\xBF"
                  "&#xd800;&#xde00;&#xdfff;\xEE\x80\x80\xEF\xBF\xBD&#xfffe;&#xffff;</a>",
                  [&text](Impl &writer) {
                      writer.WriteStartElement(L"a");
                      writer.WriteAttribute(L"x", text);
                      writer.WriteText(text);
                      writer.WriteEndElement();
                  });
    // A zero is a character below 0x20 when the length counts it; the top bit of a length does not count.
    CheckDocument("<a>x&#x0;y&lt;</a>", [](Impl &writer) {
        writer.WriteStartElement(L"a");
        writer.WriteText({L"x\0y", 3});
        writer.WriteEscapedText({L"<<", 0x80000001});
        writer.WriteEndElement();
    });
}

TEST_CASE(NamesAndFragmentsGoOutAsTheyAre)
{
    // A pair may come in two pieces; lengths end a text before its terminator.
    static const wchar_t kPair[] = {0xD83D, 0xDE00, 0};
    CheckDocument("<\xF0\x9F\x98\x80 a&=\"v1v&amp;2\"><raw/>&amp;t</\xF0\x9F\x98\x80>", [](Impl &writer) {
        writer.WriteStartElement({kPair, 2});
        writer.WriteStartAttribute({L"a&b", 2});
        writer.WriteText(L"v1");
        writer.WriteText(L"v&2");
        writer.WriteEndAttribute();
        writer.WriteXmlFragment(L"");
        writer.WriteXmlFragment(L"<raw/>");
        const wchar_t tail[] = L"&t";
        writer.Append(tail, tail + 2);
        writer.WriteEndElement();
    });
    CheckDocument("<a>\xF0\x9F\x98\x80</a>", [](Impl &writer) {
        writer.WriteStartElement(L"a");
        writer.WriteXmlFragment({kPair, 1});
        writer.WriteXmlFragment({kPair + 1, 1});
        writer.WriteEndElement();
    });
}

TEST_CASE(LongDocumentsPassTheBuffer)
{
    constexpr uint32_t kElements = 3000;
    OrvBufferStream stream;
    Impl *const writer = Impl::New(stream);
    CHECK_EQUAL(writer->WriteStartElement(L"root"), ORV_S_OK);
    // Pairs behind an odd and an even place, one of which the pieces of a long text would cut.
    constexpr uint32_t kUnits = 8000;
    static wchar_t pairs[1 + kUnits] = {L'x'};
    for (uint32_t i = 1; i <= kUnits; i++)
        pairs[i] = i % 2 ? 0xD83D : 0xDE00;
    CHECK_EQUAL(writer->WriteXmlFragment({pairs, 1 + kUnits}), ORV_S_OK);
    CHECK_EQUAL(writer->WriteXmlFragment({pairs + 1, kUnits}), ORV_S_OK);
    for (uint32_t i = 0; i < kElements; i++) {
        CHECK_EQUAL(writer->WriteElement(L"e\u00E9\u20AC", L"t"), ORV_S_OK);
        CHECK_EQUAL(writer->WriteStartElement(L"open"), ORV_S_OK); // as deep as it is long
    }
    for (uint32_t i = 0; i <= kElements; i++)
        CHECK_EQUAL(writer->WriteEndElement(), ORV_S_OK);
    CHECK_EQUAL(writer->WriteEndElement(), ORV_E_INVALID_STATE);
    CHECK_EQUAL(writer->Flush(), ORV_S_OK);
    Impl::Delete(writer);
    // <root>, then <eXY>t</eXY> and <open> each time, the innermost empty, and the end tags.
    const uint32_t each = 1 + 6 + 1 + 1 + 2 + 6 + 1 + 6;
    CHECK_EQUAL(stream.GetLength(), 6 + 1 + 4 * kUnits + kElements * each + 1 + (kElements - 1) * 7 + 7);
}

TEST_CASE(FailuresLast)
{
    const auto write = [](Impl &writer) {
        writer.SetIndent(L" ");
        writer.WriteXmlDecl(L"1.0");
        writer.WriteStartElement(L"a");
        for (uint32_t i = 0; i < 800; i++)
            writer.WriteElement(L"element", L"text & text");
        writer.WriteEndElement();
        return writer.Flush();
    };
    test::SlowStream whole(4096);
    Impl *writer = Impl::New(whole);
    CHECK_EQUAL(write(*writer), ORV_S_OK);
    Impl::Delete(writer);
    CHECK(whole.writes > 5);
    for (uint32_t failAt = 1; failAt <= whole.writes; failAt++) {
        test::Note("fails at", failAt);
        test::SlowStream failing(4096, failAt);
        writer = Impl::New(failing);
        CHECK_EQUAL(write(*writer), ORV_E_DISK_FULL);
        CHECK_EQUAL(failing.writes, failAt); // nothing is tried again
        CHECK_EQUAL(writer->GetError(), ORV_E_DISK_FULL);
        CHECK_EQUAL(writer->WriteText(L"x"), ORV_E_DISK_FULL);
        CHECK_EQUAL(writer->SetIndent(L"x"), ORV_E_DISK_FULL);
        Impl::Delete(writer);
    }
}

TEST_CASE(MisuseIsRefused)
{
    test::SlowStream stream(100);
    Impl *writer = Impl::New(stream);
    CHECK_EQUAL(writer->WriteText(L""), ORV_S_OK);
    CHECK_EQUAL(writer->WriteText(L"x"), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(writer->GetError(), ORV_S_OK);
    CHECK_EQUAL(writer->SetIndent(L"x", static_cast<LineEndSequence>(3)), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(writer->WriteEndElement(), ORV_E_INVALID_STATE);
    CHECK_EQUAL(writer->WriteStartElement(L"a"), ORV_S_OK);
    CHECK_EQUAL(writer->WriteStartAttribute(L"x"), ORV_S_OK);
    CHECK_EQUAL(writer->WriteXmlFragment(L"<b/>"), ORV_E_NOT_SUPPORTED);
    CHECK_EQUAL(writer->WriteEndAttribute(), ORV_E_NOT_SUPPORTED);
    Impl::Delete(writer);
    Impl::Delete(nullptr);

    // Half a pair in a name, and at the end of everything.
    const wchar_t half[] = {0xDC00, 0};
    writer = Impl::New(stream);
    CHECK_EQUAL(writer->WriteStartElement(half), ORV_E_INVALID_DATA);
    CHECK_EQUAL(writer->Flush(), ORV_E_INVALID_DATA);
    Impl::Delete(writer);
    const wchar_t high[] = {0xD83D, 0};
    const wchar_t *const behind[] = {L"", L"x"};
    for (const wchar_t *const text : behind) {
        writer = Impl::New(stream);
        CHECK_EQUAL(writer->WriteStartElement(L"a"), ORV_S_OK);
        CHECK_EQUAL(writer->WriteXmlFragment(high), ORV_S_OK);
        CHECK_EQUAL(writer->WriteXmlFragment(text), *text ? ORV_E_INVALID_DATA : ORV_S_OK);
        CHECK_EQUAL(writer->Flush(), ORV_E_INVALID_DATA);
        Impl::Delete(writer);
    }

    // A stream that takes nothing would be asked for ever, and one that claims more than it was given, too.
    class Boaster final : public IOrvStream
    {
        OrvResult Write(const void *, uint32_t size, uint32_t &written) override
        {
            writes++;
            written = size + 1;
            return ORV_S_OK;
        }

    public:
        uint32_t writes = 0;
    } boaster;
    test::SlowStream full(0);
    IOrvStream *const streams[] = {&full, &boaster};
    for (IOrvStream *const faulty : streams) {
        writer = Impl::New(*faulty);
        CHECK_EQUAL(writer->WriteStartElement(L"a"), ORV_S_OK);
        CHECK_EQUAL(writer->Flush(), ORV_E_WRITE_FAULT);
        Impl::Delete(writer);
    }
    CHECK(full.writes == 1 && boaster.writes == 1);
}
