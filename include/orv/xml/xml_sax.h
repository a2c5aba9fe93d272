// Reading XML event by event.

#pragma once

#include "orv/stream/stream.h"
#include "orv/text/string_ref.h"

/// What receives the events. A view is valid during its call; its length is a count. A failing call ends the
/// parse, and no further call is made. The virtual functions have this order.
struct OrvBasXmlSaxHandlerBase {
    typedef OrvStringRefBase<wchar_t> Text; ///< counted, in UTF-16

    /// Not called by the parser.
    virtual OrvResult Reserved() { return ORV_S_OK; }

    /// A start tag, or the first half of an empty element. The name is as in the document, prefix included.
    virtual OrvResult StartElement(const Text & /*element*/) { return ORV_S_OK; }

    /// Once for each attribute of the element that has just started, in document order.
    virtual OrvResult Attribute(const Text & /*element*/, const Text & /*name*/, const Text & /*value*/)
    {
        return ORV_S_OK;
    }

    /// An end tag, or the second half of an empty element.
    virtual OrvResult EndElement(const Text & /*element*/) { return ORV_S_OK; }

    /// Character data. One text of the document may come in several calls; a surrogate pair is never split.
    virtual OrvResult CharacterData(const Text & /*text*/) { return ORV_S_OK; }

protected:
    ~OrvBasXmlSaxHandlerBase() = default;
};

/// Why a document is refused. For all reasons but the first, the document may be well-formed, but it demands
/// more than the parser allows.
enum OrvBasXmlSaxReason : uint32_t {
    /// It breaks the grammar, or its bytes are not in its encoding.
    OrvXmlNotWellFormed = 0,
    /// Its entities multiply: what they expand to is, together with the bytes read so far, more than 8 MiB
    /// and more than 100 times those bytes.
    OrvXmlTooMuchExpansion = 1,
    /// More than 250,000 elements are open at once.
    OrvXmlTooDeep = 2,
    /// One tag, comment, processing instruction, reference or literal is longer than 64 MiB (67,108,864
    /// bytes). Text between tags and in CDATA sections may be of any length.
    OrvXmlTokenTooLong = 3,
};

/// Where a parse met its first fault. The form of OrvBasXmlSaxParse that takes one fills it.
struct OrvBasXmlSaxError {
    uint64_t byteOffset;       ///< from the start of the stream
    uint64_t line;             ///< from 1
    uint64_t column;           ///< from 0, in characters
    OrvBasXmlSaxReason reason; ///< why it is refused
};

/// Reads a document from the stream to its end and passes its events to the handler, on the calling thread.
/// The document may be of any size: only its open elements, its declarations and the token that is being read
/// are kept. External entities are not followed. OrvBasXmlSaxReason lists the limits of what a document may
/// demand.
///
/// Returns 0, or the remark that the handler's last call returned; ORV_E_OUT_OF_MEMORY, also when what is
/// kept grows beyond 64 MiB and 100 times the bytes read; ORV_E_INVALID_DATA when the document is not
/// well-formed XML or goes beyond a limit; the first failure of the stream (other than the end of its data)
/// or of the handler; ORV_E_READ_FAULT for a stream that claims to have read more than it was asked for.
ORV_API OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler);

/// The same; when the document is refused, `error` says where and why. Otherwise it is untouched.
ORV_API OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler,
                                    OrvBasXmlSaxError &error);
