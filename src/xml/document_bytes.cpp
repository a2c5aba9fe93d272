// Reads a document's bytes and replaces surrogates without their other half.

#include "xml/document_bytes.h"

#include "crt/memory.h"
#include "orv/runtime/result.h"

namespace detail
{

OrvResult DocumentBytes::Read(uint8_t *bytes, uint32_t capacity, uint32_t &size, bool &more)
{
    memcpy(bytes, rest_, restSize_);
    const uint32_t room = capacity - restSize_;
    uint32_t read = 0;
    const OrvResult result = stream_.Read(bytes + restSize_, room, read);
    if (result == ORV_E_END_OF_DATA)
        read = 0;
    else if (OrvFailed(result))
        return result;
    if (read > room)
        return ORV_E_READ_FAULT;
    more = read != 0;
    const uint32_t all = restSize_ + read;
    size = more ? Screen(bytes, all) : all; // expat itself refuses a document that ends inside a character
    restSize_ = all - size;
    memcpy(rest_, bytes + size, restSize_);
    return ORV_S_OK;
}

/// Replaces halves without their other half. Returns how many of the bytes could be judged; the rest depend
/// on bytes that follow.
uint32_t DocumentBytes::Screen(uint8_t *bytes, uint32_t size)
{
    if (encoding_ == Encoding::kUnknown) {
        if (size < 2)
            return 0;
        // Detected as expat does it: by the byte order mark, or by the zero byte of the first character,
        // which is ASCII.
        if ((bytes[0] == 0xFE && bytes[1] == 0xFF) || bytes[0] == 0)
            encoding_ = Encoding::kBigEndian;
        else if ((bytes[0] == 0xFF && bytes[1] == 0xFE) || bytes[1] == 0)
            encoding_ = Encoding::kLittleEndian;
        else
            encoding_ = Encoding::kBytes;
    }
    if (encoding_ == Encoding::kBytes)
        return size;
    constexpr uint8_t kHalfBits = 0xFC; // of a unit's high byte
    constexpr uint8_t kFirstHalf = 0xD8;
    constexpr uint8_t kSecondHalf = 0xDC;
    const uint32_t high = encoding_ == Encoding::kLittleEndian;
    uint32_t at = 0;
    while (size - at >= 2) {
        if ((bytes[at + high] & kHalfBits) != kFirstHalf) {
            at += 2;
            continue;
        }
        if (size - at < 4)
            break;
        if ((bytes[at + 2 + high] & kHalfBits) == kSecondHalf) {
            at += 4;
            continue;
        }
        bytes[at] = 0xFF;
        bytes[at + 1] = 0xFF;
        at += 2;
    }
    return at;
}

} // namespace detail
