// The library's checksums and digests by their names, and the digest of a whole input.

#pragma once

#include "input.h"
#include "progress.h"

#include "runtime/heap.h"

namespace orvtool
{

constexpr uint32_t kLongestDigest = 64;

/// The longest input of which an algorithm of the library gives the standard digest.
struct LengthLimit {
    uint64_t mostBytes;
    const wchar_t *below;       ///< the smallest length that is too long, as text for a message
    const wchar_t *takeInstead; ///< which algorithm to use for a longer input
};

/// An algorithm, and how it digests an input in pieces.
struct Algorithm {
    const wchar_t *name;
    uint32_t digestSize; ///< in bytes
    const LengthLimit &limit;
    OrvResult (*digest)(Input &input, Progress &progress, uint8_t *piece, uint64_t mostBytes,
                        uint8_t *digest);
};

/// The algorithm with this name; null when there is none.
const Algorithm *FindAlgorithm(const wchar_t *name);

/// The best known algorithm with digests of this many bytes; null when there is none.
const Algorithm *FindAlgorithm(uint32_t digestSize);

/// Computes digests of inputs, with one buffer for all of them.
class Digester
{
public:
    Digester() : piece_(detail::HeapArray<uint8_t>::Allocate(kPieceSize)) {}

    /// Stores the digest of the whole input. A checksum is stored with its high byte first.
    ///
    /// Returns 0; ORV_E_OUT_OF_MEMORY; ORV_E_BAD_LENGTH when the input is too long for the algorithm, without
    /// reading it if its size is known; otherwise the input's failure.
    OrvResult Digest(const Algorithm &algorithm, Stream &error, Input &input,
                     uint8_t (&digest)[kLongestDigest]);

    static constexpr uint32_t kPieceSize = 256 * 1024;

private:
    detail::HeapArray<uint8_t> piece_;
};

} // namespace orvtool
