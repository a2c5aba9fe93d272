// XML laid out anew, in two readings of the same document. The first finds the elements in which white space
// counts: those with text beside their child elements, and those that ask for it. The second writes, and
// leaves the inside of these as it is; the white space of all others is layout and is replaced.

#pragma once

#include "orv/runtime/result.h"
#include "orv/xml/xml_sax.h"
#include "orv/xml/xml_writer.h"

namespace orvtool
{

/// The first reading: what is known of each element, in document order.
class XmlOutline final : public OrvBasXmlSaxHandlerBase
{
public:
    static constexpr uint32_t kNone = 0x1FFFFFFF;

    struct Element {
        uint32_t parent : 29; ///< kNone for the outermost one
        uint32_t hasElements : 1;
        uint32_t hasText : 1; ///< other than white space
        uint32_t isKept : 1;  ///< its inside stays as it is
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

/// The second reading. Tags are written as fragments: a writer's own start tag has no way to keep a line end
/// in an attribute's value, which has to be a reference.
class XmlFormatter final : public OrvBasXmlSaxHandlerBase
{
public:
    XmlFormatter(XmlOutline &outline, OrvBasXmlWriter::Impl &writer) : outline_(outline), writer_(writer) {}

    OrvResult StartElement(const Text &element) override;
    OrvResult Attribute(const Text &element, const Text &name, const Text &value) override;
    OrvResult EndElement(const Text &element) override;
    OrvResult CharacterData(const Text &text) override;

    /// Ends the last line and hands everything to the stream. Returns the writer's first failure, or 0.
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
