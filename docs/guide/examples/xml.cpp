#include "orv/orv.h"

namespace
{

/// Prints what the parser reports. The views are valid during the call only, and are counted, not terminated.
struct Printer final : OrvBasXmlSaxHandlerBase {
    OrvResult StartElement(const Text &element) override
    {
        OrvPrint(L"<%.*s>\n", element.length, element.characters);
        return ORV_S_OK;
    }

    OrvResult Attribute(const Text &, const Text &name, const Text &value) override
    {
        OrvPrint(L"  %.*s: %.*s\n", name.length, name.characters, value.length, value.characters);
        return ORV_S_OK;
    }

    // A text may come in several calls: collect it, and use it when its element ends.
    OrvResult CharacterData(const Text &text) override { return text_.Append(text.characters, text.length); }

    OrvResult EndElement(const Text &element) override
    {
        OrvPrint(L"  '%s'\n</%.*s>\n", text_.GetValue(), element.length, element.characters);
        return text_.Resize(0);
    }

private:
    OrvUtf16CharHeapBuffer text_;
};

} // namespace

int OrvMain(int, wchar_t **)
{
    // The writer remembers the first failure of its stream, so one check at the end is enough. It does not
    // remember that there was no memory for an element's name.
    OrvBufferStream document;
    OrvBasXmlWriter::Holder writer(document);
    if (!writer)
        return 1;
    writer->WriteXmlDecl(L"1.0");
    OrvResult result = writer->WriteStartElement(L"note");
    if (OrvSucceeded(result)) {
        writer->WriteAttribute(L"to", L"A & B");
        writer->WriteAttribute(L"page", 3);
        writer->WriteText(L"1 < 2");
        writer->WriteEndElement();
        result = writer->Flush();
    }
    OrvPrint(L"%u bytes, %08X\n", document.GetLength(), result);

    Printer printer;
    OrvMemoryStream input(document.GetBytes(), document.GetLength());
    if (OrvSucceeded(result))
        result = OrvBasXmlSaxParse(input, printer);

    const char broken[] = "<a>\n<b></a>";
    OrvMemoryStream brokenInput(broken, sizeof broken - 1);
    struct : OrvBasXmlSaxHandlerBase {
    } nobody;
    OrvBasXmlSaxError error = {};
    const OrvResult fault = OrvBasXmlSaxParse(brokenInput, nobody, error);
    OrvPrint(L"%08X in line %I64u, column %I64u\n", fault, error.line, error.column);
    return OrvFailed(result) ? 1 : 0;
}
