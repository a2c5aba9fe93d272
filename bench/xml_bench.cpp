// The XML reader, compared with bare expat on the same document, and the writer, compared with only encoding the
// document's text. The size of a row is that of the document in bytes.

#include "bench.h"

#include "orv/orv.h"

#include <expat.h>

// This program links its own copy of expat, whose salt need not be secret here.
extern "C" void arc4random_buf(void *bytes, size_t size)
{
    for (size_t i = 0; i < size; i++)
        static_cast<uint8_t *>(bytes)[i] = static_cast<uint8_t>(i);
}

namespace
{

typedef OrvBasXmlWriter::Impl Writer;
typedef OrvStringRefBase<wchar_t> Text;

constexpr uint32_t kRecords = 2000;

void WriteDocument(IOrvStream &stream)
{
    Writer *const writer = Writer::New(stream);
    writer->SetIndent(L"  ", LineEndLf);
    writer->WriteXmlDecl(L"1.0");
    writer->WriteStartElement(L"records");
    for (uint32_t i = 0; i < kRecords; i++) {
        writer->WriteStartElement(L"record");
        writer->WriteAttribute(L"name", L"section object");
        writer->WriteAttribute(L"access", L"read & write");
        writer->WriteText(
            L"The caller's view of a section, mapped into its own process; it ends with the process.");
        writer->WriteEndElement();
    }
    writer->WriteEndElement();
    writer->Flush();
    Writer::Delete(writer);
}

void XMLCALL IgnoreStart(void *, const XML_Char *, const XML_Char **) {}
void XMLCALL IgnoreEnd(void *, const XML_Char *) {}
void XMLCALL IgnoreText(void *, const XML_Char *, int) {}

/// The reader's own loop, with the same handlers, which do nothing.
void ParseBare(IOrvStream &stream)
{
    constexpr int kPiece = 4096;
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(parser, IgnoreStart, IgnoreEnd);
    XML_SetCharacterDataHandler(parser, IgnoreText);
    uint32_t read = 0;
    do {
        stream.Read(XML_GetBuffer(parser, kPiece), kPiece, read);
        XML_ParseBuffer(parser, static_cast<int>(read), read == 0);
    } while (read);
    XML_ParserFree(parser);
}

class Ignore final : public OrvBasXmlSaxHandlerBase
{
};

} // namespace

BENCHMARK(Xml)
{
    OrvBufferStream document;
    WriteDocument(document);
    const uint8_t *const bytes = document.GetBytes();
    const uint32_t size = document.GetLength();
    bench::Compare(
        {"XML reader", size, "bare expat"},
        [bytes, size] {
            OrvMemoryStream stream(bytes, size);
            Ignore ignore;
            OrvBasXmlSaxParse(stream, ignore);
        },
        [bytes, size] {
            OrvMemoryStream stream(bytes, size);
            ParseBare(stream);
        });

    static wchar_t text[0x80000];
    static char encoded[0x80000];
    uint32_t units = 0;
    OrvConvertMb2Utf16String(text, sizeof text / sizeof *text, reinterpret_cast<const char *>(bytes),
                             OrvCodePageUtf8, &units, size);
    OrvBufferStream target;
    bench::Compare(
        {"XML writer", size, "no peer: encoding alone"},
        [&target] {
            target.Clear();
            WriteDocument(target);
        },
        [units] {
            uint32_t written = 0;
            OrvConvertUtf162MbString(encoded, sizeof encoded, text, OrvCodePageUtf8, &written, units);
            bench::Use(written);
        });
}
