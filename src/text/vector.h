// A vector at a time: the inner loops of measuring, finding, comparing and moving text.
//
// SSE2 is always available: the library is compiled for it. The text may end just before a page that cannot
// be read, so a loop may load only these vectors:
//   counted text      vectors that are completely inside the count; the rest at the end, shorter than a
//                     vector, is covered by a vector that overlaps the previous one, or unit by unit;
//   terminated text   vectors that are in the same page as a unit known to belong to the text: aligned
//                     vectors, or others after a check of the address.
// Text may be at any address, UTF-16 text also at an odd one, so single units are loaded and stored with
// LoadUnit and StoreUnit. Each loop has a twin in `plain`, which does the same unit by unit. It is used for
// text that is too short or not aligned to its units, and the tests check that both give the same results.
//
// A match is a function object that is called with a unit or with a vector of units; for a vector it sets all
// bits of each unit that matches. Positions and counts are in units of the text.

#pragma once

#include <emmintrin.h>
#include <stddef.h>
#include <stdint.h>

namespace detail
{

constexpr uint32_t kVectorSize = sizeof(__m128i);
constexpr uint32_t kPageSize = 0x1000;

/// Units in a vector.
template <typename T>
constexpr uint32_t kLanes = kVectorSize / sizeof(T);

template <typename T>
struct __attribute__((packed, may_alias)) AnyAddress {
    T unit;
};

template <typename T>
T LoadUnit(const T *at)
{
    return reinterpret_cast<const AnyAddress<T> *>(at)->unit;
}

template <typename T>
void StoreUnit(T *at, T unit)
{
    reinterpret_cast<AnyAddress<T> *>(at)->unit = unit;
}

inline __m128i LoadVector(const void *at)
{
    return _mm_loadu_si128(static_cast<const __m128i *>(at));
}

inline void StoreVector(void *at, __m128i vector)
{
    _mm_storeu_si128(static_cast<__m128i *>(at), vector);
}

// The two loads that may read bytes outside the text. The address sanitizer would report them.

__attribute__((no_sanitize("address"))) inline __m128i LoadAlignedVector(uintptr_t at)
{
    return *reinterpret_cast<const __m128i *>(at);
}

__attribute__((no_sanitize("address"))) inline __m128i LoadVectorInPage(const void *at)
{
    return _mm_loadu_si128(static_cast<const __m128i *>(at));
}

/// Whether the vector at an address is within one page.
inline bool StaysInPage(const void *at)
{
    return reinterpret_cast<uintptr_t>(at) % kPageSize <= kPageSize - kVectorSize;
}

/// One bit for each byte of a vector of matches.
inline uint32_t BitsOf(__m128i matches)
{
    return static_cast<uint32_t>(_mm_movemask_epi8(matches));
}

template <typename T>
uint32_t FirstLane(uint32_t bits)
{
    return static_cast<uint32_t>(__builtin_ctz(bits)) / sizeof(T);
}

template <typename T>
uint32_t LastLane(uint32_t bits)
{
    return (31 - static_cast<uint32_t>(__builtin_clz(bits))) / sizeof(T);
}

// The operations that differ between the two character types.

inline __m128i Splat(char unit)
{
    return _mm_set1_epi8(unit);
}

inline __m128i Splat(wchar_t unit)
{
    return _mm_set1_epi16(static_cast<short>(unit));
}

template <typename T>
__m128i EqualUnits(__m128i a, __m128i b)
{
    return sizeof(T) == 1 ? _mm_cmpeq_epi8(a, b) : _mm_cmpeq_epi16(a, b);
}

/// Changes the case of the 26 letters that start with `first`, 'a' or 'A'; every other unit stays.
template <typename T>
__m128i ChangeAsciiCase(__m128i units, T first)
{
    // The values are shifted so that the letters become the lowest signed numbers: then one comparison
    // separates them from all others.
    constexpr auto kLowest = static_cast<T>(sizeof(T) == 1 ? 0x80 : 0x8000);
    const __m128i distance = Splat(static_cast<T>(kLowest - first));
    const __m128i behind = Splat(static_cast<T>(kLowest + 26));
    __m128i letters;
    if constexpr (sizeof(T) == 1)
        letters = _mm_cmplt_epi8(_mm_add_epi8(units, distance), behind);
    else
        letters = _mm_cmplt_epi16(_mm_add_epi16(units, distance), behind);
    return _mm_xor_si128(units, _mm_and_si128(letters, Splat(static_cast<T>(0x20))));
}

// Matches.

template <typename T>
struct IsTerminator {
    bool operator()(T unit) const { return unit == 0; }
    __m128i operator()(__m128i units) const { return EqualUnits<T>(units, _mm_setzero_si128()); }
};

template <typename T>
struct IsUnit {
    explicit IsUnit(T wanted) : unit_(wanted), units_(Splat(wanted)) {}
    bool operator()(T unit) const { return unit == unit_; }
    __m128i operator()(__m128i units) const { return EqualUnits<T>(units, units_); }

private:
    T unit_;
    __m128i units_;
};

template <typename T>
struct IsUnitOrTerminator {
    explicit IsUnitOrTerminator(T wanted) : unit_(wanted) {}
    bool operator()(T unit) const { return unit_(unit) || unit == 0; }
    __m128i operator()(__m128i units) const { return _mm_or_si128(unit_(units), IsTerminator<T>()(units)); }

private:
    IsUnit<T> unit_;
};

template <typename T>
struct AreEqual {
    bool operator()(T a, T b) const { return a == b; }
    __m128i operator()(__m128i a, __m128i b) const { return EqualUnits<T>(a, b); }
};

namespace plain
{

template <typename T, typename Match>
uint32_t ScanTerminated(const T *text, uint32_t limit, const Match &match)
{
    uint32_t at = 0;
    while (at < limit && !match(LoadUnit(text + at)))
        at++;
    return at;
}

template <typename T, typename Match>
const T *FindFirst(const T *text, uint32_t count, const Match &match)
{
    for (uint32_t at = 0; at < count; at++) {
        if (match(LoadUnit(text + at)))
            return text + at;
    }
    return nullptr;
}

template <typename T, typename Match>
const T *FindLast(const T *text, uint32_t count, const Match &match)
{
    for (uint32_t at = count; at > 0; at--) {
        if (match(LoadUnit(text + at - 1)))
            return text + at - 1;
    }
    return nullptr;
}

template <typename T, typename Same>
uint32_t FirstDifference(const T *a, const T *b, uint32_t at, uint32_t end, const Same &same)
{
    while (at < end && same(LoadUnit(a + at), LoadUnit(b + at)))
        at++;
    return at;
}

} // namespace plain

/// The position of the first match in a terminated text, or `limit` when there is none before it. The
/// terminator must match too, unless the limit is the length of the text.
template <typename T, typename Match>
uint32_t ScanTerminated(const T *text, uint32_t limit, const Match &match)
{
    constexpr uint32_t kBlock = 4 * kVectorSize;
    const auto start = reinterpret_cast<uintptr_t>(text);
    if (limit == 0 || start % sizeof(T) != 0)
        return plain::ScanTerminated(text, limit, match);
    const uintptr_t end = limit > (UINTPTR_MAX - start) / sizeof(T) ? UINTPTR_MAX : start + limit * sizeof(T);
    const auto noneInBlock = [&match](uintptr_t at) {
        const __m128i first = _mm_or_si128(match(LoadAlignedVector(at)), match(LoadAlignedVector(at + 16)));
        const __m128i last =
            _mm_or_si128(match(LoadAlignedVector(at + 32)), match(LoadAlignedVector(at + 48)));
        return BitsOf(_mm_or_si128(first, last)) == 0;
    };

    uintptr_t at = start & ~uintptr_t(kVectorSize - 1);
    uint32_t bits = BitsOf(match(LoadAlignedVector(at))) & (~0u << (start - at));
    while (!bits) {
        at += kVectorSize;
        if (at >= end)
            return limit;
        while (at % kBlock == 0 && noneInBlock(at)) {
            at += kBlock;
            if (at >= end)
                return limit;
        }
        bits = BitsOf(match(LoadAlignedVector(at)));
    }
    const uint32_t found = (at + static_cast<uint32_t>(__builtin_ctz(bits)) - start) / sizeof(T);
    return found < limit ? found : limit;
}

/// Whether four vectors of counted text contain no match.
template <typename T, typename Match>
bool NoneInBlock(const T *text, const Match &match)
{
    const __m128i first = _mm_or_si128(match(LoadVector(text)), match(LoadVector(text + kLanes<T>)));
    const __m128i last =
        _mm_or_si128(match(LoadVector(text + 2 * kLanes<T>)), match(LoadVector(text + 3 * kLanes<T>)));
    return BitsOf(_mm_or_si128(first, last)) == 0;
}

/// The first match among `count` units, or null.
template <typename T, typename Match>
const T *FindFirst(const T *text, uint32_t count, const Match &match)
{
    if (count < kLanes<T>)
        return plain::FindFirst(text, count, match);
    uint32_t at = 0;
    while (count - at >= 4 * kLanes<T> && NoneInBlock(text + at, match))
        at += 4 * kLanes<T>;
    for (; count - at >= kLanes<T>; at += kLanes<T>) {
        if (const uint32_t bits = BitsOf(match(LoadVector(text + at))))
            return text + at + FirstLane<T>(bits);
    }
    const T *const last = text + (count - kLanes<T>);
    const uint32_t bits = BitsOf(match(LoadVector(last)));
    return bits ? last + FirstLane<T>(bits) : nullptr;
}

/// The last match among `count` units, or null.
template <typename T, typename Match>
const T *FindLast(const T *text, uint32_t count, const Match &match)
{
    if (count < kLanes<T>)
        return plain::FindLast(text, count, match);
    uint32_t end = count;
    while (end >= 4 * kLanes<T> && NoneInBlock(text + (end - 4 * kLanes<T>), match))
        end -= 4 * kLanes<T>;
    for (; end >= kLanes<T>; end -= kLanes<T>) {
        const T *const at = text + (end - kLanes<T>);
        if (const uint32_t bits = BitsOf(match(LoadVector(at))))
            return at + LastLane<T>(bits);
    }
    const uint32_t bits = BitsOf(match(LoadVector(text)));
    return bits ? text + LastLane<T>(bits) : nullptr;
}

/// The first position from `at` on at which two counted texts differ, or `end`.
template <typename T, typename Same>
uint32_t FirstDifference(const T *a, const T *b, uint32_t at, uint32_t end, const Same &same)
{
    constexpr uint32_t kHalf = kLanes<T> / 2;
    const auto sameAt = [&same, a, b](uint32_t position) {
        return same(LoadVector(a + position), LoadVector(b + position));
    };
    while (end - at >= 4 * kLanes<T>) {
        const __m128i first = _mm_and_si128(sameAt(at), sameAt(at + kLanes<T>));
        const __m128i last = _mm_and_si128(sameAt(at + 2 * kLanes<T>), sameAt(at + 3 * kLanes<T>));
        if (BitsOf(_mm_and_si128(first, last)) != 0xFFFF)
            break;
        at += 4 * kLanes<T>;
    }
    for (; end - at >= kLanes<T>; at += kLanes<T>) {
        if (const uint32_t bits = BitsOf(sameAt(at)) ^ 0xFFFF)
            return at + FirstLane<T>(bits);
    }
    if (end - at >= kHalf) {
        const __m128i halfA = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(a + at));
        const __m128i halfB = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(b + at));
        if (const uint32_t bits = BitsOf(same(halfA, halfB)) ^ 0xFFFF)
            return at + FirstLane<T>(bits);
        at += kHalf;
    }
    return plain::FirstDifference(a, b, at, end, same);
}

/// The first position from `at` on at which two terminated texts differ or both end, but at most `limit`.
template <typename T, typename Same>
uint32_t FirstDifferenceTerminated(const T *a, const T *b, uint32_t at, uint32_t limit, const Same &same)
{
    while (at < limit) {
        if (StaysInPage(a + at) && StaysInPage(b + at)) {
            const __m128i units = LoadVectorInPage(a + at);
            const __m128i equal = same(units, LoadVectorInPage(b + at));
            // The conjunction is zero for a unit that differs and for a terminator.
            if (const uint32_t bits = BitsOf(IsTerminator<T>()(_mm_and_si128(units, equal)))) {
                const uint32_t found = at + FirstLane<T>(bits);
                return found < limit ? found : limit;
            }
            at += kLanes<T>;
        } else {
            const T unit = LoadUnit(a + at);
            if (unit == 0 || !same(unit, LoadUnit(b + at)))
                return at;
            at++;
        }
    }
    return limit;
}

/// Moves more than two vectors of bytes; source and destination may overlap. Not inlined, because for so many
/// bytes a call is cheap.
__attribute__((noinline)) inline void MoveLong(uint8_t *to, const uint8_t *from, size_t size)
{
    constexpr size_t kBlock = 4 * kVectorSize;
    const auto moveVector = [to, from](size_t at) { StoreVector(to + at, LoadVector(from + at)); };
    const auto moveBlock = [to, from](size_t at) {
        const __m128i units[] = {LoadVector(from + at), LoadVector(from + at + 16),
                                 LoadVector(from + at + 32), LoadVector(from + at + 48)};
        for (size_t i = 0; i < 4; i++)
            StoreVector(to + at + i * kVectorSize, units[i]);
    };
    // Upwards, unless the destination begins inside the source. The vector at the far end overlaps the
    // previous one; it is loaded first, before it can be overwritten.
    if (reinterpret_cast<uintptr_t>(to) - reinterpret_cast<uintptr_t>(from) >= size) {
        const __m128i last = LoadVector(from + size - kVectorSize);
        size_t at = 0;
        for (; size - at >= kBlock; at += kBlock)
            moveBlock(at);
        for (; size - at >= kVectorSize; at += kVectorSize)
            moveVector(at);
        StoreVector(to + size - kVectorSize, last);
    } else {
        const __m128i first = LoadVector(from);
        size_t end = size;
        for (; end >= kBlock; end -= kBlock)
            moveBlock(end - kBlock);
        for (; end >= kVectorSize; end -= kVectorSize)
            moveVector(end - kVectorSize);
        StoreVector(to, first);
    }
}

/// Copies `size` bytes. The two places may overlap; they may be null when the size is 0. A short text needs
/// no loop: two pieces that may overlap cover it, and both are loaded before one is stored.
inline void MoveBytes(void *destination, const void *source, size_t size)
{
    auto *const to = static_cast<uint8_t *>(destination);
    const auto *const from = static_cast<const uint8_t *>(source);
    const auto moveEnds = [to, from, size](auto piece) {
        const auto first = LoadUnit(reinterpret_cast<const decltype(piece) *>(from));
        const auto last = LoadUnit(reinterpret_cast<const decltype(piece) *>(from + size - sizeof piece));
        StoreUnit(reinterpret_cast<decltype(piece) *>(to), first);
        StoreUnit(reinterpret_cast<decltype(piece) *>(to + size - sizeof piece), last);
    };
    if (size > 2 * kVectorSize)
        MoveLong(to, from, size);
    else if (size >= kVectorSize)
        moveEnds(__m128i());
    else if (size >= sizeof(uint64_t))
        moveEnds(uint64_t());
    else if (size >= sizeof(uint32_t))
        moveEnds(uint32_t());
    else if (size >= sizeof(uint16_t))
        moveEnds(uint16_t());
    else if (size != 0)
        *to = *from;
}

} // namespace detail
