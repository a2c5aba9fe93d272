// The SAX reader: a thin layer over expat.
//
// Expat calls back while it parses a buffer. The first failure of the handler is kept; later callbacks within
// the same buffer return at once, and the loop ends after that buffer.
//
// The limits below bound what a document may cost, and xml_sax.h promises their values: an untrusted document
// must not decide how much memory and time its reader needs.

#include "orv/xml/xml_sax.h"

#include "orv/text/string.h"
#include "runtime/entropy.h"
#include "runtime/heap.h"
#include "xml/document_bytes.h"

#include <expat.h>

/// Expat calls this for the salt of its hash tables.
extern "C" void arc4random_buf(void *bytes, size_t size)
{
    detail::FillWithEntropy(bytes, static_cast<uint32_t>(size));
}

namespace
{

static_assert(sizeof(XML_Char) == sizeof(wchar_t), "expat is built for UTF-16");

typedef OrvBasXmlSaxHandlerBase::Text Text;

constexpr int kPieceBytes = 4096;
constexpr uint32_t kMostOpenElements = 250000;
constexpr uint64_t kMostTokenBytes = 64 << 20;
constexpr float kMostExpansion = 100; // (bytes read + expanded) / read, from kFreeExpansion of the sum on
constexpr uint64_t kFreeExpansion = 8 << 20;
constexpr float kMostMemory = 100; // bytes that expat allocates / bytes read, from kFreeMemory allocated on
constexpr uint64_t kFreeMemory = 64 << 20;

Text Counted(const XML_Char *terminated)
{
    return Text(terminated, OrvGetStringSizeInElements(terminated));
}

constexpr XML_Memory_Handling_Suite kProcessHeap = {detail::AllocateBytes, detail::ReallocateBytes,
                                                    detail::FreeBytes};

/// The parsing of one document: expat's parser and the state of its callbacks.
class Reading
{
public:
    Reading(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler)
        : parser_(XML_ParserCreate_MM(nullptr, &kProcessHeap, nullptr)), document_(stream), handler_(handler)
    {
    }
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;
    ~Reading()
    {
        if (parser_)
            XML_ParserFree(parser_);
    }

    /// `error` may be null.
    OrvResult Run(OrvBasXmlSaxError *error);

private:
    static void XMLCALL OnStartElement(void *opaque, const XML_Char *name, const XML_Char **attributes);
    static void XMLCALL OnEndElement(void *opaque, const XML_Char *name);
    static void XMLCALL OnCharacterData(void *opaque, const XML_Char *text, int length);

    void SetUp();
    OrvResult ParsePiece();
    bool IsTokenTooLong();
    void GiveElement(const Text &element, const XML_Char **attributes);
    OrvResult GiveText(Text text);
    OrvResult Refuse(OrvBasXmlSaxReason reason);

    XML_Parser parser_;
    detail::DocumentBytes document_;
    OrvBasXmlSaxHandlerBase &handler_;
    OrvResult handled_ = ORV_S_OK; // the result of the handler's last call
    uint32_t openElements_ = 0;
    uint64_t bytesGiven_ = 0; // passed to expat so far
    uint64_t tokenStart_ = 0;
    OrvBasXmlSaxError fault_; // valid when isRefused_
    bool isRefused_ = false;
    bool hasMore_ = true;
    wchar_t firstHalf_ = 0;
};

void Reading::SetUp()
{
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, OnStartElement, OnEndElement);
    XML_SetCharacterDataHandler(parser_, OnCharacterData);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser_, kMostExpansion);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser_, kFreeExpansion);
    XML_SetAllocTrackerMaximumAmplification(parser_, kMostMemory);
    XML_SetAllocTrackerActivationThreshold(parser_, kFreeMemory);
}

void XMLCALL Reading::OnStartElement(void *opaque, const XML_Char *name, const XML_Char **attributes)
{
    Reading &self = *static_cast<Reading *>(opaque);
    if (self.isRefused_ || OrvFailed(self.handled_))
        return;
    if (self.openElements_ == kMostOpenElements) {
        self.Refuse(OrvXmlTooDeep);
        XML_StopParser(self.parser_, XML_FALSE);
        return;
    }
    self.openElements_++;
    self.GiveElement(Counted(name), attributes);
}

void Reading::GiveElement(const Text &element, const XML_Char **attributes)
{
    handled_ = handler_.StartElement(element);
    for (; *attributes && OrvSucceeded(handled_); attributes += 2)
        handled_ = handler_.Attribute(element, Counted(attributes[0]), Counted(attributes[1]));
}

void XMLCALL Reading::OnEndElement(void *opaque, const XML_Char *name)
{
    Reading &self = *static_cast<Reading *>(opaque);
    if (self.isRefused_ || OrvFailed(self.handled_))
        return;
    self.openElements_--;
    self.handled_ = self.handler_.EndElement(Counted(name));
}

void XMLCALL Reading::OnCharacterData(void *opaque, const XML_Char *text, int length)
{
    Reading &self = *static_cast<Reading *>(opaque);
    if (length && !self.isRefused_ && OrvSucceeded(self.handled_))
        self.handled_ = self.GiveText(Text(text, static_cast<uint32_t>(length)));
}

/// Expat converts a long run of text in pieces of a fixed size, and may split a surrogate pair between two
/// pieces. The first half is then kept until the next piece, which starts with the second half.
OrvResult Reading::GiveText(Text text)
{
    if (firstHalf_) {
        const wchar_t pair[] = {firstHalf_, *text.characters};
        firstHalf_ = 0;
        const OrvResult result = handler_.CharacterData(Text(pair, 2));
        text = Text(text.characters + 1, text.length - 1);
        if (OrvFailed(result) || text.length == 0)
            return result;
    }
    constexpr uint32_t kHalfBits = 0xFC00;
    constexpr uint32_t kFirstHalf = 0xD800;
    const wchar_t last = text.characters[text.length - 1];
    if ((last & kHalfBits) == kFirstHalf) {
        firstHalf_ = last;
        text.length--;
    }
    return text.length ? handler_.CharacterData(text) : handled_;
}

/// Keeps only the first reason, because expat reports one more error after it was stopped.
OrvResult Reading::Refuse(OrvBasXmlSaxReason reason)
{
    if (!isRefused_) {
        const XML_Index index = XML_GetCurrentByteIndex(parser_);
        fault_ = {index < 0 ? tokenStart_ : static_cast<uint64_t>(index), XML_GetCurrentLineNumber(parser_),
                  XML_GetCurrentColumnNumber(parser_), reason};
    }
    isRefused_ = true;
    return ORV_E_INVALID_DATA;
}

/// Whether expat holds the beginning of a token (a name, tag, comment or the like) that is longer than
/// allowed. After expat has moved its buffer it does not know where its last token starts, until it looks at
/// the token again; so the last known start is kept.
bool Reading::IsTokenTooLong()
{
    const XML_Index start = XML_GetCurrentByteIndex(parser_);
    if (start >= 0)
        tokenStart_ = static_cast<uint64_t>(start);
    return bytesGiven_ - tokenStart_ > kMostTokenBytes;
}

/// Reads the next piece into expat's own buffer and parses it.
OrvResult Reading::ParsePiece()
{
    void *const buffer = XML_GetBuffer(parser_, kPieceBytes);
    if (!buffer)
        return ORV_E_OUT_OF_MEMORY;
    uint32_t size = 0;
    const OrvResult result = document_.Read(static_cast<uint8_t *>(buffer), kPieceBytes, size, hasMore_);
    if (OrvFailed(result) || (size == 0 && hasMore_))
        return result;
    bytesGiven_ += size;
    if (XML_ParseBuffer(parser_, static_cast<int>(size), !hasMore_) != XML_STATUS_ERROR)
        return IsTokenTooLong() ? Refuse(OrvXmlTokenTooLong) : ORV_S_OK;
    switch (XML_GetErrorCode(parser_)) {
    case XML_ERROR_NO_MEMORY:
        return ORV_E_OUT_OF_MEMORY;
    case XML_ERROR_AMPLIFICATION_LIMIT_BREACH:
        return Refuse(OrvXmlTooMuchExpansion);
    default:
        return Refuse(OrvXmlNotWellFormed);
    }
}

OrvResult Reading::Run(OrvBasXmlSaxError *error)
{
    if (!parser_)
        return ORV_E_OUT_OF_MEMORY;
    SetUp();
    while (hasMore_) {
        const OrvResult result = ParsePiece();
        if (OrvFailed(handled_)) // the handler's failure came first, whatever expat found after it
            return handled_;
        if (isRefused_ && error)
            *error = fault_;
        if (OrvFailed(result))
            return result;
    }
    return handled_; // may be a success code other than ORV_S_OK
}

} // namespace

OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler)
{
    return Reading(stream, handler).Run(nullptr);
}

OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler, OrvBasXmlSaxError &error)
{
    return Reading(stream, handler).Run(&error);
}
