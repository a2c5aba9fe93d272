// Formats XML in two readings of the same document. The first reading finds the elements in which white space
// is significant: those with both text and child elements, and those that ask for it with an attribute. The
// second reading writes the document. It keeps the contents of these elements unchanged, and replaces the
// white space of all others, which is only layout.

#pragma once

#include "orv/runtime/result.h"
#include "orv/xml/xml_sax.h"
#include "orv/xml/xml_writer.h"

namespace orvtool
{

/// The first reading: the facts about each element, in document order.
class XmlOutline final : public OrvBasXmlSaxHandlerBase
{
public:
    static constexpr uint32_t kNone = 0x1FFFFFFF;

    struct Element {
        uint32_t parent : 29; ///< kNone for the outermost one
        uint32_t hasElements : 1;
        uint32_t hasText : 1; ///< text other than white space
        uint32_t isKept : 1;  ///< its contents are kept unchanged
    };

    XmlOutline() = default;
    XmlOutline(const XmlOutline &) = delete;
    XmlOutline &operator=(const XmlOutline &) = delete;
    ~XmlOutline();

    OrvResult StartElement(const Text &element) override;
    OrvResult Attribute(const Text &element, const Text &name, const Text &value) override;
    OrvResult EndElement(const Text &element) override;
    OrvResult CharacterData(const Text &text) override;

    Element &operator[](uint32_t index) { return elements_[index]; }

private:
    Element *elements_ = nullptr;
    uint32_t count_ = 0;
    uint32_t capacity_ = 0;
    uint32_t current_ = kNone;
};

/// The second reading. Tags are written as fragments, because the writer's own start tag cannot keep a line
/// end in the value of an attribute, which must be a character reference.
class XmlFormatter final : public OrvBasXmlSaxHandlerBase
{
public:
    XmlFormatter(XmlOutline &outline, OrvBasXmlWriter::Impl &writer) : outline_(outline), writer_(writer) {}

    OrvResult StartElement(const Text &element) override;
    OrvResult Attribute(const Text &element, const Text &name, const Text &value) override;
    OrvResult EndElement(const Text &element) override;
    OrvResult CharacterData(const Text &text) override;

    /// Ends the last line and passes everything to the stream. Returns 0 or the writer's first failure.
    OrvResult Finish();

private:
    void EndStartTag();
    void WriteEscaped(const Text &text, bool isAttribute);

    XmlOutline &outline_;
    OrvBasXmlWriter::Impl &writer_;
    uint32_t next_ = 0;
    uint32_t current_ = XmlOutline::kNone;
    uint32_t depth_ = 0;
    bool isTagOpen_ = false;
};

} // namespace orvtool
