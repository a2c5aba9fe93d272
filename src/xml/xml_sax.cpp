// The SAX reader: a thin layer over expat.
//
// Expat calls back while it takes a buffer in. The first failure of the handler is kept; the callbacks that
// follow within the same buffer return at once, and the loop ends behind it.

#include "orv/xml/xml_sax.h"

#include "orv/text/string.h"
#include "runtime/entropy.h"
#include "runtime/heap.h"
#include "xml/document_bytes.h"

#include <expat.h>

/// Where expat takes the salt of its hash tables from.
extern "C" void arc4random_buf(void *bytes, size_t size)
{
    detail::FillWithEntropy(bytes, static_cast<uint32_t>(size));
}

namespace
{

static_assert(sizeof(XML_Char) == sizeof(wchar_t), "expat is built for UTF-16");

typedef OrvBasXmlSaxHandlerBase::Text Text;

Text Counted(const XML_Char *terminated)
{
    return Text(terminated, OrvGetStringSizeInElements(terminated));
}

struct ParseContext {
    OrvBasXmlSaxHandlerBase &handler;
    OrvResult result;
};

constexpr XML_Memory_Handling_Suite kProcessHeap = {detail::AllocateBytes, detail::ReallocateBytes,
                                                    detail::FreeBytes};

class Parser
{
public:
    Parser() : parser_(XML_ParserCreate_MM(nullptr, &kProcessHeap, nullptr)) {}
    Parser(const Parser &) = delete;
    Parser &operator=(const Parser &) = delete;
    ~Parser()
    {
        if (parser_)
            XML_ParserFree(parser_);
    }

    explicit operator bool() const { return parser_ != nullptr; }
    XML_Parser Get() const { return parser_; }

private:
    XML_Parser parser_;
};

void XMLCALL OnStartElement(void *opaque, const XML_Char *name, const XML_Char **attributes)
{
    auto &context = *static_cast<ParseContext *>(opaque);
    if (OrvFailed(context.result))
        return;
    const Text element = Counted(name);
    context.result = context.handler.StartElement(element);
    for (; *attributes && OrvSucceeded(context.result); attributes += 2)
        context.result = context.handler.Attribute(element, Counted(attributes[0]), Counted(attributes[1]));
}

void XMLCALL OnEndElement(void *opaque, const XML_Char *name)
{
    auto &context = *static_cast<ParseContext *>(opaque);
    if (OrvSucceeded(context.result))
        context.result = context.handler.EndElement(Counted(name));
}

void XMLCALL OnCharacterData(void *opaque, const XML_Char *text, int length)
{
    auto &context = *static_cast<ParseContext *>(opaque);
    if (OrvSucceeded(context.result))
        context.result = context.handler.CharacterData(Text(text, static_cast<uint32_t>(length)));
}

/// Reads the next piece into expat's own buffer and hands it over. `more` is cleared behind the last one.
OrvResult ParsePiece(XML_Parser parser, detail::DocumentBytes &document, bool &more)
{
    constexpr int kPieceBytes = 4096;
    void *const buffer = XML_GetBuffer(parser, kPieceBytes);
    if (!buffer)
        return ORV_E_OUT_OF_MEMORY;
    uint32_t size = 0;
    const OrvResult result = document.Read(static_cast<uint8_t *>(buffer), kPieceBytes, size, more);
    if (OrvFailed(result) || (size == 0 && more))
        return result;
    if (XML_ParseBuffer(parser, static_cast<int>(size), !more) != XML_STATUS_ERROR)
        return ORV_S_OK;
    return XML_GetErrorCode(parser) == XML_ERROR_NO_MEMORY ? ORV_E_OUT_OF_MEMORY : ORV_E_INVALID_DATA;
}

OrvResult Parse(const Parser &parser, IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler)
{
    if (!parser)
        return ORV_E_OUT_OF_MEMORY;
    ParseContext context = {handler, ORV_S_OK};
    XML_SetUserData(parser.Get(), &context);
    XML_SetElementHandler(parser.Get(), OnStartElement, OnEndElement);
    XML_SetCharacterDataHandler(parser.Get(), OnCharacterData);
    detail::DocumentBytes document(stream);
    bool more = true;
    while (more) {
        const OrvResult result = ParsePiece(parser.Get(), document, more);
        if (OrvFailed(context.result)) // the handler's came first, whatever expat found behind it
            return context.result;
        if (OrvFailed(result))
            return result;
    }
    return context.result; // it may be a remark
}

} // namespace

OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler)
{
    const Parser parser;
    return Parse(parser, stream, handler);
}

OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler, OrvBasXmlSaxError &error)
{
    const Parser parser;
    const OrvResult result = Parse(parser, stream, handler);
    const bool found = result == ORV_E_INVALID_DATA && XML_GetErrorCode(parser.Get()) != XML_ERROR_NONE;
    if (found)
        error = {static_cast<uint64_t>(XML_GetCurrentByteIndex(parser.Get())),
                 XML_GetCurrentLineNumber(parser.Get()), XML_GetCurrentColumnNumber(parser.Get())};
    return result;
}
