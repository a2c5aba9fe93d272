// The XML writer: a small state machine over a text stream.
//
// The state says what directly precedes the next piece. It decides whether a start tag must still be closed
// with ">", whether an end tag gets a line of its own, and how text is escaped. The first failed write is
// kept in result_; every later operation then returns at once.

#include "orv/xml/xml_writer.h"

#include "orv/text/format.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/string.h"
#include "runtime/heap.h"
#include "xml/escape.h"
#include "xml/name_stack.h"
#include "xml/text_stream.h"

namespace
{

typedef OrvStringRefBase<wchar_t> Text;

enum class State : uint8_t {
    kStart,     // nothing written
    kLineStart, // at the start of a line, no indentation written
    kContent,   // after the declaration, text, a fragment or indentation
    kEndTag,    // after an end tag
    kStartTag,  // in a start tag: its > is not written
    kAttribute, // in an attribute's value: its closing quote is not written
};

/// The view with its length as a count.
Text Counted(const Text &text)
{
    return text.length == OrvTerminated ? Text(text.characters, OrvGetStringSizeInElements(text.characters))
                                        : text;
}

class Writer final : public OrvBasXmlWriter::Impl
{
public:
    explicit Writer(IOrvStream &stream) : text_(stream) {}

    static void *operator new(size_t size) noexcept { return detail::AllocateBytes(size); }
    static void operator delete(void *block) { detail::FreeBytes(block); }

    OrvResult Error() const { return result_; }

    OrvResult SetIndentation(const Text &indent, LineEndSequence lineEnd)
    {
        if (lineEnd > LineEndCrLf)
            return ORV_E_INVALID_ARGUMENT;
        const Text counted = indent.characters ? Counted(indent) : Text(); // a null view is empty
        const OrvResult result = indent_.Assign(counted.characters, counted.length);
        if (OrvFailed(result))
            return result;
        text_.SetLineEnd(lineEnd);
        indents_ = true;
        return ORV_S_OK;
    }

    OrvResult FlushDocument()
    {
        if (state_ == State::kEndTag && names_.Depth() == 0)
            StartLine(0);
        return Keep(OrvFailed(result_) ? result_ : text_.Flush());
    }

    OrvResult Declare(const Text &version)
    {
        Put(L"<?xml version=\"");
        PutEscaped(version, true);
        Put(L"\" encoding=\"utf-8\"?>");
        state_ = State::kContent;
        return result_;
    }

    OrvResult StartElement(const Text &name)
    {
        const Text counted = Counted(name);
        const OrvResult pushed = names_.Push(counted);
        if (OrvFailed(pushed))
            return pushed;
        if (state_ == State::kStartTag) {
            Put(L">");
            state_ = State::kEndTag;
        } else if (state_ == State::kStart) {
            state_ = State::kLineStart;
        }
        StartLine(names_.Depth() - 1);
        Put(L"<");
        Put(counted);
        state_ = State::kStartTag;
        return result_;
    }

    OrvResult EndElement(bool full)
    {
        if (names_.Depth() == 0)
            return ORV_E_INVALID_STATE;
        switch (state_) {
        case State::kStartTag:
            if (full) {
                Put(L">");
                PutEndTag();
            } else {
                Put(L"/>");
            }
            break;
        case State::kEndTag:
            StartLine(names_.Depth() - 1);
            PutEndTag();
            break;
        case State::kContent:
            PutEndTag();
            break;
        default:
            break;
        }
        names_.Pop();
        state_ = State::kEndTag;
        return result_;
    }

    OrvResult StartAttribute(const Text &name)
    {
        Put(L" ");
        Put(Counted(name));
        Put(L"=\"");
        state_ = State::kAttribute;
        return result_;
    }

    OrvResult EndAttribute()
    {
        Put(L"\"");
        state_ = State::kStartTag;
        return result_;
    }

    OrvResult PutText(const Text &text)
    {
        const Text counted = Counted(text);
        if (counted.length == 0)
            return result_;
        switch (state_) {
        case State::kAttribute:
            return PutEscaped(counted, true);
        case State::kStart:
        case State::kLineStart:
            return ORV_E_NOT_PROVIDED;
        case State::kEndTag:
            StartLine(names_.Depth());
            break;
        case State::kStartTag:
            Put(L">");
            break;
        case State::kContent:
            break;
        }
        state_ = State::kContent;
        return PutEscaped(counted, false);
    }

    OrvResult PutFragment(const Text &xml)
    {
        if (state_ == State::kAttribute)
            return Keep(ORV_E_NOT_SUPPORTED);
        const Text counted = Counted(xml);
        if (counted.length == 0)
            return result_;
        if (state_ == State::kStartTag)
            Put(L">");
        state_ = State::kContent;
        return Put(counted);
    }

    OrvResult StartLine(unsigned depth)
    {
        if (!indents_)
            return result_;
        if (state_ != State::kLineStart && OrvSucceeded(result_))
            Keep(text_.WriteLineEnd());
        const _ORV_UTF16CHAR_STR &indent = indent_.GetInternal();
        for (unsigned i = 0; i < depth && indent.length && OrvSucceeded(result_); i++)
            Put(Text(indent.characters, indent.length));
        state_ = depth ? State::kContent : State::kLineStart;
        return result_;
    }

    /// Writes text with its escapes. Runs that need no escape are written in one piece.
    OrvResult PutEscaped(const Text &text, bool attribute)
    {
        constexpr uint32_t kLengthBits = 0x7FFFFFFF;
        const Text counted = Counted(text);
        const wchar_t *next = counted.characters;
        uint32_t left = counted.length & kLengthBits;
        while (left && OrvSucceeded(result_)) {
            const uint32_t run = detail::CountUnescaped(next, left, attribute);
            Put(Text(next, run));
            next += run;
            left -= run;
            if (left == 0 || OrvFailed(result_))
                break;
            if (const wchar_t *const entity = detail::EntityOf(*next))
                Put(entity);
            else
                Keep(OrvBasAppendFormat(text_, L"&#x%x;", *next));
            next++;
            left--;
        }
        return result_;
    }

private:
    OrvResult Keep(OrvResult result)
    {
        if (OrvSucceeded(result_) && OrvFailed(result))
            result_ = result;
        return result_;
    }

    OrvResult Put(const Text &text)
    {
        if (OrvFailed(result_))
            return result_;
        const Text counted = Counted(text);
        return Keep(text_.Append(counted.characters, counted.characters + counted.length));
    }

    void PutEndTag()
    {
        Put(L"</");
        Put(names_.Top());
        Put(L">");
    }

    detail::OrvBasTextStreamImpl text_;
    OrvResult result_ = ORV_S_OK;
    detail::NameStack names_;
    bool indents_ = false;
    OrvUtf16CharHeapBuffer indent_;
    State state_ = State::kStart;
};

Writer &WriterOf(OrvBasXmlWriter::Impl *impl)
{
    return *static_cast<Writer *>(impl);
}

} // namespace

OrvBasXmlWriter::Impl *OrvBasXmlWriter::Impl::New(IOrvStream &stream)
{
    return new Writer(stream);
}

void OrvBasXmlWriter::Impl::Delete(Impl *writer)
{
    delete static_cast<Writer *>(writer);
}

OrvResult OrvBasXmlWriter::Impl::GetError() const
{
    return static_cast<const Writer *>(this)->Error();
}

// Each operation returns at once when an earlier one failed.

OrvResult OrvBasXmlWriter::Impl::SetIndent(const Text &indent)
{
    return SetIndent(indent, LineEndCrLf);
}

OrvResult OrvBasXmlWriter::Impl::SetIndent(const Text &indent, LineEndSequence lineEnd)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).SetIndentation(indent, lineEnd);
}

OrvResult OrvBasXmlWriter::Impl::Flush()
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).FlushDocument();
}

OrvResult OrvBasXmlWriter::Impl::WriteXmlDecl(const Text &version)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).Declare(version);
}

OrvResult OrvBasXmlWriter::Impl::WriteStartElement(const Text &name)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).StartElement(name);
}

OrvResult OrvBasXmlWriter::Impl::WriteEndElement()
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).EndElement(false);
}

OrvResult OrvBasXmlWriter::Impl::WriteFullEndElement()
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).EndElement(true);
}

OrvResult OrvBasXmlWriter::Impl::WriteElement(const Text &name, const Text &text)
{
    OrvResult result = WriteStartElement(name);
    if (OrvSucceeded(result))
        result = WriteText(text);
    return OrvSucceeded(result) ? WriteEndElement() : result;
}

OrvResult OrvBasXmlWriter::Impl::WriteStartAttribute(const Text &name)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).StartAttribute(name);
}

OrvResult OrvBasXmlWriter::Impl::WriteEndAttribute()
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).EndAttribute();
}

OrvResult OrvBasXmlWriter::Impl::WriteAttribute(const Text &name, const Text &value)
{
    OrvResult result = WriteStartAttribute(name);
    if (OrvSucceeded(result))
        result = WriteEscapedAttribute(value);
    return OrvSucceeded(result) ? WriteEndAttribute() : result;
}

OrvResult OrvBasXmlWriter::Impl::WriteAttribute(const Text &name, int64_t value)
{
    return WriteFormattedAttribute(name, L"%I64d", value);
}

OrvResult OrvBasXmlWriter::Impl::WriteAttribute(const Text &name, uint64_t value)
{
    return WriteFormattedAttribute(name, L"%I64u", value);
}

/// The value is complete before anything is written, so a format that fails does not break the document.
OrvResult OrvBasXmlWriter::Impl::WriteFormattedAttributeV(const Text &name, const wchar_t *format,
                                                          va_list arguments)
{
    if (OrvFailed(GetError()))
        return GetError();
    constexpr uint32_t kShort = 256;
    wchar_t text[kShort];
    uint32_t length = 0;
    va_list again;
    va_copy(again, arguments);
    OrvResult result = OrvFormatStringV(OrvCodePageUtf8, text, kShort, format, &length, arguments);
    if (OrvSucceeded(result)) {
        result = WriteAttribute(name, Text(text, length));
    } else if (result == ORV_E_BUFFER_TOO_SMALL) {
        OrvUtf16CharHeapBuffer longer;
        result = OrvFormatStringV(OrvCodePageUtf8, longer, format, again);
        if (OrvSucceeded(result))
            result = WriteAttribute(name, Text(longer.GetValue(), longer.GetInternal().length));
    }
    va_end(again);
    return result;
}

OrvResult OrvBasXmlWriter::Impl::WriteText(const Text &text)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).PutText(text);
}

OrvResult OrvBasXmlWriter::Impl::Append(const wchar_t *begin, const wchar_t *end)
{
    return WriteText(Text(begin, static_cast<uint32_t>(end - begin)));
}

OrvResult OrvBasXmlWriter::Impl::WriteXmlFragment(const Text &xml)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).PutFragment(xml);
}

OrvResult OrvBasXmlWriter::Impl::Indent(unsigned depth)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).StartLine(depth);
}

OrvResult OrvBasXmlWriter::Impl::WriteEscapedText(const Text &text)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).PutEscaped(text, false);
}

OrvResult OrvBasXmlWriter::Impl::WriteEscapedAttribute(const Text &value)
{
    return OrvFailed(GetError()) ? GetError() : WriterOf(this).PutEscaped(value, true);
}
