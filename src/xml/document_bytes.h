// The bytes of a document on their way to expat.
//
// Expat takes the unit behind the first half of a pair for the second one, whatever it is: in a document in
// UTF-16 it would swallow markup, and hand out text that is none. A half that stands alone therefore goes to
// it as U+FFFF, which no document may have, and is refused where it stands.

#pragma once

#include "orv/stream/stream.h"

namespace detail
{

class DocumentBytes
{
public:
    explicit DocumentBytes(IOrvStream &stream) : stream_(stream) {}

    /// Reads the next bytes; there may be none of them yet. `more` is cleared behind the last ones.
    ///
    /// Returns 0; the stream's failure; ORV_E_READ_FAULT for a stream that claims more than there is room
    /// for.
    OrvResult Read(uint8_t *bytes, uint32_t capacity, uint32_t &size, bool &more);

private:
    enum class Encoding : uint8_t { kUnknown, kBytes, kLittleEndian, kBigEndian };

    uint32_t Screen(uint8_t *bytes, uint32_t size);

    IOrvStream &stream_;
    Encoding encoding_ = Encoding::kUnknown;
    uint32_t restSize_ = 0;
    uint8_t rest_[3]; // what needs the bytes that follow
};

} // namespace detail
