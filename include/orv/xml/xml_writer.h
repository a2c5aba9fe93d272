// Writing XML forward only, without a tree.
//
//     OrvBasXmlWriter::Impl *writer = OrvBasXmlWriter::Impl::New(stream);
//     writer->WriteXmlDecl(L"1.0");
//     writer->WriteStartElement(L"settings");
//     writer->WriteAttribute(L"version", L"2");
//     writer->WriteElement(L"name", L"value");
//     writer->WriteEndElement();
//     OrvResult result = writer->Flush();
//     OrvBasXmlWriter::Impl::Delete(writer);
//
// The output is UTF-8. The caller keeps the order; the writer decides where a start tag ends, when an element
// is empty, what is escaped, and where lines break. Names are written as they are. After the first failure of
// the stream the writer writes nothing more, and every operation returns that failure; what an operation
// "returns also" is told once. A writer belongs to one thread at a time.

#pragma once

#include "orv/stream/stream.h"
#include "orv/text/string_ref.h"
#include "orv/xml/line_end.h"

/// The name that the writer stands under.
struct OrvBasXmlWriter {
    class Impl;
};

/// Unless it says otherwise an operation returns 0 or the writer's first failure: what the stream returned,
/// ORV_E_WRITE_FAULT for a stream that claims to have written nothing or more than it was given, or
/// ORV_E_INVALID_DATA for a surrogate without its other half in a name, an indent or a fragment.
class OrvBasXmlWriter::Impl
{
public:
    typedef OrvStringRefBase<wchar_t> Text; ///< counted or terminated, in UTF-16

    Impl(const Impl &) = delete;
    Impl &operator=(const Impl &) = delete;

    /// A writer on the heap, which the caller gives to Delete. The stream must outlive it, and is never
    /// closed. Null when memory runs out.
    ORV_API static Impl *New(IOrvStream &stream);

    /// What was not flushed is lost. Null is allowed.
    ORV_API static void Delete(Impl *writer);

    /// The writer's first failure, or 0.
    ORV_API OrvResult GetError() const;

    /// Breaks lines with CR LF and indents each by the depth of its element. Without it the document is one
    /// line. A null view stands for an empty one. Returns also ORV_E_OUT_OF_MEMORY, and nothing is changed.
    ORV_API OrvResult SetIndent(const Text &indent);

    /// The same with another line end; ORV_E_INVALID_ARGUMENT for a value outside its enumeration.
    ORV_API OrvResult SetIndent(const Text &indent, LineEndSequence lineEnd);

    /// Hands everything to the stream. A complete document ends with a line break when lines are indented.
    ORV_API OrvResult Flush();

    /// Writes the declaration, with the encoding utf-8.
    ORV_API OrvResult WriteXmlDecl(const Text &version);

    /// Opens an element. Returns also ORV_E_OUT_OF_MEMORY, and nothing is written.
    ORV_API OrvResult WriteStartElement(const Text &name);

    /// Closes the innermost element; an empty one as <name/>. Returns also ORV_E_INVALID_STATE when none is
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

    /// Writes text into an element or an attribute, escaped. An empty text writes nothing. Returns also
    /// ORV_E_NOT_PROVIDED where neither the declaration nor an element was written, which is no lasting
    /// failure.
    ORV_API OrvResult WriteText(const Text &text);

    /// WriteText of the characters from `begin` up to, not including, `end`.
    ORV_API OrvResult Append(const wchar_t *begin, const wchar_t *end);

    /// Writes a piece of XML as it is. An attribute cannot hold one: ORV_E_NOT_SUPPORTED, which lasts.
    ORV_API OrvResult WriteXmlFragment(const Text &xml);

    /// Starts a line at this depth, unless the writer is at the start of one. Does nothing before SetIndent.
    ORV_API OrvResult Indent(unsigned depth);

    /// Writes text escaped as in an element: & < > and what XML has no character for, surrogates included, as
    /// references. The writer's state stays. The top bit of a length does not count.
    ORV_API OrvResult WriteEscapedText(const Text &text);

    /// The same for an attribute, where quotes and apostrophes are escaped too.
    ORV_API OrvResult WriteEscapedAttribute(const Text &value);

protected:
    Impl() = default;
    ~Impl() = default;
};
