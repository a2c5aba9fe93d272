// The source of a document's bytes for expat; it checks UTF-16 documents for lone surrogates.
//
// Expat takes the unit after the first half of a surrogate pair for the second half without a check: in a
// UTF-16 document it would swallow markup and report malformed text. So a first half without its second half
// is passed to expat as U+FFFF, which no document may contain: expat then refuses the document at that place.

#pragma once

#include "orv/stream/stream.h"

namespace detail
{

class DocumentBytes
{
public:
    explicit DocumentBytes(IOrvStream &stream) : stream_(stream) {}

    /// Reads the next bytes; `size` may be 0 before the end. `more` becomes false at the end of the document.
    ///
    /// Returns 0; the stream's failure; ORV_E_READ_FAULT for a stream that reports more bytes than there is
    /// room for.
    OrvResult Read(uint8_t *bytes, uint32_t capacity, uint32_t &size, bool &more);

private:
    enum class Encoding : uint8_t { kUnknown, kBytes, kLittleEndian, kBigEndian };

    uint32_t Screen(uint8_t *bytes, uint32_t size);

    IOrvStream &stream_;
    Encoding encoding_ = Encoding::kUnknown;
    uint32_t restSize_ = 0;
    uint8_t rest_[3]; // bytes read that cannot be judged before more follow
};

} // namespace detail
