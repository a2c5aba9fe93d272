// Writing XML forward only, without a tree.
//
//     OrvBasXmlWriter::Holder writer(stream);
//     if (!writer)
//         return ORV_E_OUT_OF_MEMORY;
//     writer->WriteXmlDecl(L"1.0");
//     writer->WriteStartElement(L"settings");
//     writer->WriteAttribute(L"version", 2);
//     writer->WriteElement(L"name", L"value");
//     writer->WriteEndElement();
//     return writer->Flush();
//
// The output is UTF-8. The caller keeps the order; the writer decides where a start tag ends, when an element
// is empty, what is escaped, and where lines break. Names are written as they are. After the first failure of
// the stream the writer writes nothing more, and every operation returns that failure. A failure that an
// operation "also returns" is returned once. A writer belongs to one thread at a time.

#pragma once

#include <stdarg.h>

#include "orv/stream/stream.h"
#include "orv/text/string_ref.h"
#include "orv/xml/line_end.h"

/// The name of the writer.
struct OrvBasXmlWriter {
    class Impl;
    class Holder;
};

/// Unless it says otherwise, an operation returns 0 or the writer's first failure: what the stream returned,
/// ORV_E_WRITE_FAULT for a stream that claims to have written nothing or more than it was given, or
/// ORV_E_INVALID_DATA for a surrogate without its other half in a name, an indent or a fragment.
class OrvBasXmlWriter::Impl
{
public:
    typedef OrvStringRefBase<wchar_t> Text; ///< counted or terminated, in UTF-16

    Impl(const Impl &) = delete;
    Impl &operator=(const Impl &) = delete;

    /// A writer on the heap, which the caller gives to Delete. The stream must outlive it, and is never
    /// closed. Returns null when memory runs out.
    ORV_API static Impl *New(IOrvStream &stream);

    /// What was not flushed is lost. Null is allowed.
    ORV_API static void Delete(Impl *writer);

    /// The writer's first failure, or 0.
    ORV_API OrvResult GetError() const;

    /// Breaks lines with CR LF and indents each by the depth of its element. Without it the document is one
    /// line. A null view means an empty one. Also returns ORV_E_OUT_OF_MEMORY, and nothing is changed.
    ORV_API OrvResult SetIndent(const Text &indent);

    /// The same with another line end; ORV_E_INVALID_ARGUMENT for a value outside its enumeration.
    ORV_API OrvResult SetIndent(const Text &indent, LineEndSequence lineEnd);

    /// Passes everything to the stream. A complete document ends with a line break when lines are indented.
    ORV_API OrvResult Flush();

    /// Writes the declaration, with the encoding utf-8.
    ORV_API OrvResult WriteXmlDecl(const Text &version);

    /// Opens an element. Also returns ORV_E_OUT_OF_MEMORY, and nothing is written.
    ORV_API OrvResult WriteStartElement(const Text &name);

    /// Closes the innermost element; an empty one as <name/>. Also returns ORV_E_INVALID_STATE when none is
    /// open.
    ORV_API OrvResult WriteEndElement();

    /// The same, but an empty one as <name></name>.
    ORV_API OrvResult WriteFullEndElement();

    /// An element with nothing but text in it.
    ORV_API OrvResult WriteElement(const Text &name, const Text &text);

    /// Opens an attribute of the start tag that is being written; WriteText then writes its value.
    ORV_API OrvResult WriteStartAttribute(const Text &name);
    ORV_API OrvResult WriteEndAttribute();

    /// Both, with the text between them.
    ORV_API OrvResult WriteAttribute(const Text &name, const Text &value);

    /// An attribute with a number in decimal digits.
    ORV_API OrvResult WriteAttribute(const Text &name, int64_t value);
    ORV_API OrvResult WriteAttribute(const Text &name, uint64_t value);
    OrvResult WriteAttribute(const Text &name, int value) { return WriteAttribute(name, int64_t{value}); }
    OrvResult WriteAttribute(const Text &name, long value) { return WriteAttribute(name, int64_t{value}); }
    OrvResult WriteAttribute(const Text &name, unsigned value)
    {
        return WriteAttribute(name, uint64_t{value});
    }
    OrvResult WriteAttribute(const Text &name, unsigned long value)
    {
        return WriteAttribute(name, uint64_t{value});
    }

    /// An attribute with text that the format engine makes (orv/text/format.h), escaped. Byte text is UTF-8.
    /// Up to 255 characters take no memory. Also returns the failures of formatting, such as
    /// ORV_E_OUT_OF_MEMORY, and nothing is written.
    ORV_API OrvResult WriteFormattedAttributeV(const Text &name, const wchar_t *format, va_list arguments);

    /// WriteFormattedAttributeV, with the arguments after the format.
    OrvResult WriteFormattedAttribute(const Text &name, const wchar_t *format, ...)
    {
        va_list arguments;
        va_start(arguments, format);
        const OrvResult result = WriteFormattedAttributeV(name, format, arguments);
        va_end(arguments);
        return result;
    }

    /// Writes text into an element or an attribute, escaped. An empty text writes nothing. Also returns
    /// ORV_E_NOT_PROVIDED where neither the declaration nor an element was written; this failure does not
    /// last.
    ORV_API OrvResult WriteText(const Text &text);

    /// WriteText of the characters from `begin` up to, not including, `end`.
    ORV_API OrvResult Append(const wchar_t *begin, const wchar_t *end);

    /// Writes a piece of XML as it is. An attribute cannot hold one: ORV_E_NOT_SUPPORTED, which lasts.
    ORV_API OrvResult WriteXmlFragment(const Text &xml);

    /// Starts a line at this depth, unless the writer is at the start of one. Does nothing before SetIndent.
    ORV_API OrvResult Indent(unsigned depth);

    /// Writes text escaped as in an element: & < > and values that are not XML characters, surrogates
    /// included, become references. The writer's state does not change. The top bit of a length does not
    /// count.
    ORV_API OrvResult WriteEscapedText(const Text &text);

    /// The same for an attribute, where quotes and apostrophes are escaped too.
    ORV_API OrvResult WriteEscapedAttribute(const Text &value);

protected:
    Impl() = default;
    ~Impl() = default;
};

/// Owns a writer until its scope ends: Impl::New and Impl::Delete.
class OrvBasXmlWriter::Holder
{
public:
    /// A writer to the stream, which must outlive the holder and is never closed. There is none when memory
    /// runs out: test the holder before the first use.
    explicit Holder(IOrvStream &stream) : writer_(Impl::New(stream)) {}
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

    /// What was not flushed is lost.
    ~Holder() { Impl::Delete(writer_); }

    /// Whether there is a writer.
    explicit operator bool() const { return writer_ != nullptr; }

    /// The writer, which stays the holder's.
    Impl *Get() const { return writer_; }
    Impl *operator->() const { return writer_; }

private:
    Impl *writer_;
};
