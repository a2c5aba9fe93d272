// Reading XML event by event.

#pragma once

#include "orv/stream/stream.h"
#include "orv/text/string_ref.h"

/// What receives the events. A view lasts for its call; its length is a count. A failing call ends the parse,
/// and no further call is made. The slots stand in this order.
struct OrvBasXmlSaxHandlerBase {
    typedef OrvStringRefBase<wchar_t> Text; ///< counted, in UTF-16

    /// Not called by the parser.
    virtual OrvResult Reserved() { return ORV_S_OK; }

    /// A start tag, or the first half of an empty element. The name is as it stands, prefix included.
    virtual OrvResult StartElement(const Text & /*element*/) { return ORV_S_OK; }

    /// Once for each attribute of the element that has just started, in document order.
    virtual OrvResult Attribute(const Text & /*element*/, const Text & /*name*/, const Text & /*value*/)
    {
        return ORV_S_OK;
    }

    /// An end tag, or the second half of an empty element.
    virtual OrvResult EndElement(const Text & /*element*/) { return ORV_S_OK; }

    /// Character data. One text of the document may come in several calls.
    virtual OrvResult CharacterData(const Text & /*text*/) { return ORV_S_OK; }

protected:
    ~OrvBasXmlSaxHandlerBase() = default;
};

/// Where a parse met its first fault: filled by the form below that takes one.
struct OrvBasXmlSaxError {
    uint64_t byteOffset; ///< from the start of the stream
    uint64_t line;       ///< from 1
    uint64_t column;     ///< from 0, in characters
};

/// Reads a document from the stream to its end and hands its events to the handler, on the calling thread.
/// External entities are not followed, and a document whose entities multiply beyond measure is refused.
///
/// Returns 0, or the remark that the handler's last call returned; ORV_E_OUT_OF_MEMORY; ORV_E_INVALID_DATA
/// when the document is not well-formed XML; the first failure of the stream (other than the end of its data)
/// or of the handler; ORV_E_READ_FAULT for a stream that claims to have read more than it was asked for.
ORV_API OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler);

/// The same; when the document is not well-formed, `error` says where. Otherwise it is untouched.
ORV_API OrvResult OrvBasXmlSaxParse(IOrvStream &stream, OrvBasXmlSaxHandlerBase &handler,
                                    OrvBasXmlSaxError &error);
