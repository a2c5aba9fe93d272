// The two readings of a document that formatting needs. The writer keeps its first failure, so it is enough
// to check for it once for each event.

#include "xml_formatter.h"

#include "orv/text/string.h"
#include "runtime/heap.h"

namespace orvtool
{

namespace
{

bool IsWhiteSpace(const OrvBasXmlSaxHandlerBase::Text &text)
{
    for (uint32_t i = 0; i < text.length; i++) {
        const wchar_t c = text.characters[i];
        if (c != L' ' && c != L'\t' && c != L'\n' && c != L'\r')
            return false;
    }
    return true;
}

bool Equal(const OrvBasXmlSaxHandlerBase::Text &text, const wchar_t *terminated)
{
    return OrvCompareString(text.characters, terminated, text.length) == 0;
}

/// The raw text for a character that the writer's own escapes would not preserve: white space that a reader
/// would change to other white space, and the halves of a surrogate pair. Empty for all other characters.
OrvBasXmlSaxHandlerBase::Text RawFormOf(const wchar_t &character, bool isAttribute)
{
    if (character == L'\r')
        return L"&#13;";
    if (character == L'\n' && isAttribute)
        return L"&#10;";
    if (character == L'\t' && isAttribute)
        return L"&#9;";
    const bool isSurrogate = (character & 0xF800) == 0xD800;
    return {&character, isSurrogate ? 1u : 0u};
}

} // namespace

XmlOutline::~XmlOutline()
{
    detail::FreeBytes(elements_);
}

OrvResult XmlOutline::StartElement(const Text & /*element*/)
{
    constexpr uint32_t kInitialCapacity = 1024;
    constexpr uint32_t kMostElements = kNone;
    if (count_ == kMostElements)
        return ORV_E_OUT_OF_MEMORY;
    if (count_ == capacity_) {
        const uint32_t capacity = capacity_ ? capacity_ * 2 : kInitialCapacity;
        void *const grown = detail::ReallocateBytes(elements_, capacity * sizeof(Element));
        if (!grown)
            return ORV_E_OUT_OF_MEMORY;
        elements_ = static_cast<Element *>(grown);
        capacity_ = capacity;
    }
    if (current_ != kNone)
        elements_[current_].hasElements = true;
    elements_[count_] = {current_, false, false, false};
    current_ = count_++;
    return ORV_S_OK;
}

OrvResult XmlOutline::Attribute(const Text & /*element*/, const Text &name, const Text &value)
{
    if (Equal(name, L"xml:space") && Equal(value, L"preserve"))
        elements_[current_].isKept = true;
    return ORV_S_OK;
}

OrvResult XmlOutline::EndElement(const Text & /*element*/)
{
    Element &element = elements_[current_];
    if (element.hasElements && element.hasText)
        element.isKept = true;
    current_ = element.parent;
    return ORV_S_OK;
}

OrvResult XmlOutline::CharacterData(const Text &text)
{
    if (!IsWhiteSpace(text))
        elements_[current_].hasText = true;
    return ORV_S_OK;
}

OrvResult XmlFormatter::StartElement(const Text &element)
{
    EndStartTag();
    const bool isInside = current_ != XmlOutline::kNone && outline_[current_].isKept;
    current_ = next_++;
    if (isInside)
        outline_[current_].isKept = true;
    else
        writer_.Indent(depth_);
    depth_++;
    isTagOpen_ = true;
    writer_.WriteXmlFragment(L"<");
    return writer_.WriteXmlFragment(element);
}

OrvResult XmlFormatter::Attribute(const Text & /*element*/, const Text &name, const Text &value)
{
    writer_.WriteXmlFragment(L" ");
    writer_.WriteXmlFragment(name);
    writer_.WriteXmlFragment(L"=\"");
    WriteEscaped(value, true);
    return writer_.WriteXmlFragment(L"\"");
}

OrvResult XmlFormatter::EndElement(const Text &element)
{
    const XmlOutline::Element known = outline_[current_];
    current_ = known.parent;
    depth_--;
    if (isTagOpen_) {
        isTagOpen_ = false;
        return writer_.WriteXmlFragment(L"/>");
    }
    if (known.hasElements && !known.isKept)
        writer_.Indent(depth_);
    writer_.WriteXmlFragment(L"</");
    writer_.WriteXmlFragment(element);
    return writer_.WriteXmlFragment(L">");
}

OrvResult XmlFormatter::CharacterData(const Text &text)
{
    const XmlOutline::Element known = outline_[current_];
    if (known.hasElements && !known.isKept) // white space
        return ORV_S_OK;
    EndStartTag();
    WriteEscaped(text, false);
    return writer_.GetError();
}

OrvResult XmlFormatter::Finish()
{
    writer_.Indent(0);
    return writer_.Flush();
}

void XmlFormatter::EndStartTag()
{
    if (isTagOpen_)
        writer_.WriteXmlFragment(L">");
    isTagOpen_ = false;
}

void XmlFormatter::WriteEscaped(const Text &text, bool isAttribute)
{
    const auto write = [this, isAttribute](const wchar_t *first, const wchar_t *last) {
        const Text run(first, static_cast<uint32_t>(last - first));
        if (isAttribute)
            writer_.WriteEscapedAttribute(run);
        else
            writer_.WriteEscapedText(run);
    };
    const wchar_t *run = text.characters;
    const wchar_t *const last = run + text.length;
    for (const wchar_t *next = run; next != last; next++) {
        const Text raw = RawFormOf(*next, isAttribute);
        if (raw.length == 0)
            continue;
        write(run, next);
        writer_.WriteXmlFragment(raw);
        run = next + 1;
    }
    write(run, last);
}

} // namespace orvtool
