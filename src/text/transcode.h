// Conversion from one encoding to another, code point by code point.
//
// Most encodings have no state: a code point takes one to four units, independent of the units around it.
// Such an encoding is a type with
//   Unit            uint8_t or wchar_t
//   kPlainLimit     a unit below it is the code point of the same value, and such a code point is that unit
//   Decode(at, c)   reads the code point at a place and returns the place after it, or null when the units
//                   are malformed; it may read kLongest units
//   Encode(at, c)   writes the code point and returns the place after it; it may overwrite kLongest units
//   Length(c)       the number of units of the encoded code point
// Decode never gives a surrogate. Transcode and Measure convert between two such encodings as fast as
// possible: while there is a block of units to read and room for a block to write, only the text is checked;
// and units that are plain in both encodings are copied a block at a time.
//
// UTF-7 has a state, and consists of a reader and a writer. PlainReader and PlainWriter provide the same for
// an encoding without state, so that one loop connects any two. A writer writes to a target, which is an
// array or only a count: so the same code that writes a text also measures it.

#pragma once

#include "orv/runtime/result.h"
#include "text/unit_run.h"

namespace detail
{

constexpr uint32_t kBlockUnits = 8; ///< the units copied at once

constexpr uint32_t kFirstSupplementary = 0x10000;
constexpr uint32_t kLastCodePoint = 0x10FFFF;

/// Whether the unit is either half of a surrogate pair.
constexpr bool IsSurrogate(uint32_t unit)
{
    return (unit & 0xFFFFF800) == 0xD800;
}

constexpr bool IsHighSurrogate(uint32_t unit)
{
    return (unit & 0xFFFFFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(uint32_t unit)
{
    return (unit & 0xFFFFFC00) == 0xDC00;
}

constexpr uint32_t CombineSurrogates(uint32_t high, uint32_t low)
{
    return kFirstSupplementary + ((high & 0x3FF) << 10 | (low & 0x3FF));
}

/// The number of units between two pointers, also when they are more than half of the address space apart.
template <typename T>
uint32_t UnitsBetween(const T *first, const T *last)
{
    return (reinterpret_cast<uintptr_t>(last) - reinterpret_cast<uintptr_t>(first)) / sizeof(T);
}

template <typename From, typename To>
constexpr uint32_t kCommonLimit = From::kPlainLimit < To::kPlainLimit ? From::kPlainLimit : To::kPlainLimit;

/// Decodes near the end of a text as if zeros followed it; a zero never completes a code point.
template <typename From>
__declspec(noinline) const
    typename From::Unit *DecodeLast(const typename From::Unit *at, uint32_t left, uint32_t &codePoint)
{
    typename From::Unit padded[From::kLongest];
    for (uint32_t i = 0; i < From::kLongest; i++)
        padded[i] = i < left ? LoadUnit(at + i) : typename From::Unit(0);
    const auto *const next = From::Decode(padded, codePoint);
    return next ? at + (next - padded) : nullptr;
}

template <typename From>
__forceinline const typename From::Unit *DecodeWithin(const typename From::Unit *at,
                                                      const typename From::Unit *end, uint32_t &codePoint)
{
    const uint32_t left = UnitsBetween(at, end);
    if (left >= From::kLongest)
        return From::Decode(at, codePoint);
    uint32_t last = 0; // a separate variable, so that `codePoint` can stay in a register
    at = DecodeLast<From>(at, left, last);
    codePoint = last;
    return at;
}

/// Encodes near the end of an array; null when the code point does not fit.
template <typename To>
__declspec(noinline) typename To::Unit *EncodeLast(typename To::Unit *at, uint32_t room, uint32_t codePoint)
{
    typename To::Unit units[To::kLongest] = {};
    const auto length = static_cast<uint32_t>(To::Encode(units, codePoint) - units);
    if (length > room)
        return nullptr;
    for (uint32_t i = 0; i < To::kLongest; i++) {
        if (i < length)
            StoreUnit(at + i, units[i]);
    }
    return at + length;
}

template <typename To>
__forceinline typename To::Unit *EncodeWithin(typename To::Unit *at, const typename To::Unit *end,
                                              uint32_t codePoint)
{
    const uint32_t room = UnitsBetween<typename To::Unit>(at, end);
    return room >= To::kLongest ? To::Encode(at, codePoint) : EncodeLast<To>(at, room, codePoint);
}

/// Copies the plain units at a place where a block can be read and written. Returns their number.
template <uint32_t kLimit, typename From, typename To>
uint32_t CopyPlain(const From *from, uint32_t left, To *to, uint32_t room)
{
    const UnitBlock<From, kBlockUnits> block(from);
    block.Store(to);
    if (const uint32_t ends = block.template EndsOfRun<kLimit>())
        return static_cast<uint32_t>(__builtin_ctz(ends));
    const uint32_t count = (left < room ? left : room) - kBlockUnits;
    return kBlockUnits + CopyBlocks<kLimit>(from + kBlockUnits, to + kBlockUnits, count);
}

/// A faster conversion of a run of units that are not plain, for pairs of encodings that have one. It
/// advances both pointers, and returns true when it has converted any unit.
template <typename From, typename To>
struct RunEncoder {
    static bool Encode(const typename From::Unit *&, const typename From::Unit *, typename To::Unit *&,
                       const typename To::Unit *)
    {
        return false;
    }
};

/// Converts `size` bytes into at most `room`; `converted` is the size of the result in bytes.
template <typename From, typename To>
OrvResult Transcode(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room, uint64_t &converted)
{
    typedef typename From::Unit FromUnit;
    typedef typename To::Unit ToUnit;
    constexpr uint32_t kLimit = kCommonLimit<From, To>;
    const auto *from = reinterpret_cast<const FromUnit *>(source);
    const auto *const fromEnd = from + size / sizeof(FromUnit);
    auto *to = reinterpret_cast<ToUnit *>(target);
    auto *const toEnd = to + room / sizeof(ToUnit);

    while (from != fromEnd) {
        uint32_t codePoint = LoadUnit(from);
        if (codePoint < kLimit) {
            const uint32_t left = UnitsBetween(from, fromEnd);
            const uint32_t places = UnitsBetween<ToUnit>(to, toEnd);
            // For a single plain unit, such as a space between words, a block does not pay.
            if (left >= kBlockUnits && places >= kBlockUnits && LoadUnit(from + 1) < kLimit) {
                const uint32_t length = CopyPlain<kLimit>(from, left, to, places);
                from += length;
                to += length;
                continue;
            }
            if (places == 0)
                return ORV_E_BUFFER_TOO_SMALL;
            StoreUnit(to++, static_cast<ToUnit>(codePoint));
            from++;
            continue;
        }
        if (RunEncoder<From, To>::Encode(from, fromEnd, to, toEnd))
            continue;
        from = DecodeWithin<From>(from, fromEnd, codePoint);
        if (!from)
            return ORV_E_INVALID_DATA;
        to = EncodeWithin<To>(to, toEnd, codePoint);
        if (!to)
            return ORV_E_BUFFER_TOO_SMALL;
    }
    if (size % sizeof(FromUnit) != 0)
        return ORV_E_INVALID_DATA;
    converted = UnitsBetween(target, reinterpret_cast<uint8_t *>(to));
    return ORV_S_OK;
}

/// The size in bytes that Transcode gives when there is room.
template <typename From, typename To>
OrvResult Measure(const uint8_t *source, uint32_t size, uint64_t &converted)
{
    constexpr uint32_t kLimit = kCommonLimit<From, To>;
    const auto *from = reinterpret_cast<const typename From::Unit *>(source);
    const auto *const fromEnd = from + size / sizeof(typename From::Unit);
    uint64_t length = 0;
    while (from != fromEnd) {
        uint32_t codePoint = LoadUnit(from);
        if (codePoint < kLimit) {
            const uint32_t run = CountRun<kLimit>(from, UnitsBetween(from, fromEnd));
            length += run;
            from += run;
            continue;
        }
        from = DecodeWithin<From>(from, fromEnd, codePoint);
        if (!from)
            return ORV_E_INVALID_DATA;
        length += To::Length(codePoint);
    }
    if (size % sizeof(typename From::Unit) != 0)
        return ORV_E_INVALID_DATA;
    converted = length * sizeof(typename To::Unit);
    return ORV_S_OK;
}

// The loop for readers and writers.

/// A target that is written: an array.
template <typename T>
class TargetArray
{
public:
    TargetArray(uint8_t *bytes, uint32_t room)
        : first_(reinterpret_cast<T *>(bytes)), next_(first_), end_(first_ + room / sizeof(T))
    {
    }

    /// False when there is no room.
    bool Append(uint32_t unit)
    {
        if (next_ == end_)
            return false;
        StoreUnit(next_++, static_cast<T>(unit));
        return true;
    }

    /// The size of the written units, in bytes.
    uint64_t Size() const { return UnitsBetween(first_, next_) * sizeof(T); }

private:
    T *first_;
    T *next_;
    T *end_;
};

/// A target that only counts, and is never full.
template <typename T>
class TargetCount
{
public:
    bool Append(uint32_t /*unit*/)
    {
        count_++;
        return true;
    }

    uint64_t Size() const { return count_ * sizeof(T); }

private:
    uint64_t count_ = 0;
};

enum class ReadStep : uint8_t { kCodePoint, kEnd, kMalformed };

template <typename Encoding>
class PlainReader
{
public:
    PlainReader(const uint8_t *bytes, uint32_t size)
        : next_(reinterpret_cast<const Unit *>(bytes)), end_(next_ + size / sizeof(Unit)),
          endsInUnit_(size % sizeof(Unit) != 0)
    {
    }

    ReadStep Read(uint32_t &codePoint)
    {
        if (next_ == end_)
            return endsInUnit_ ? ReadStep::kMalformed : ReadStep::kEnd;
        next_ = DecodeWithin<Encoding>(next_, end_, codePoint);
        return next_ ? ReadStep::kCodePoint : ReadStep::kMalformed;
    }

private:
    typedef typename Encoding::Unit Unit;

    const Unit *next_;
    const Unit *end_;
    bool endsInUnit_;
};

template <typename Encoding>
struct PlainWriter {
    template <template <typename> class TargetOf>
    class On
    {
    public:
        typedef TargetOf<typename Encoding::Unit> Target;

        explicit On(const Target &target) : target_(target) {}

        /// False when the target is full.
        bool Put(uint32_t codePoint)
        {
            typename Encoding::Unit units[Encoding::kLongest] = {};
            const auto *const end = Encoding::Encode(units, codePoint);
            for (const auto *unit = units; unit != end; unit++) {
                if (!target_.Append(*unit))
                    return false;
            }
            return true;
        }

        /// Writes any pending output; there is none here. False when the target is full.
        bool Finish() { return true; }

        uint64_t Size() const { return target_.Size(); }

    private:
        Target target_;
    };
};

template <typename Reader, typename Writer>
OrvResult TranscodeThrough(Reader reader, Writer writer, uint64_t &converted)
{
    for (;;) {
        uint32_t codePoint = 0;
        const ReadStep step = reader.Read(codePoint);
        if (step == ReadStep::kMalformed)
            return ORV_E_INVALID_DATA;
        const bool written = step == ReadStep::kEnd ? writer.Finish() : writer.Put(codePoint);
        if (!written)
            return ORV_E_BUFFER_TOO_SMALL;
        if (step == ReadStep::kEnd)
            break;
    }
    converted = writer.Size();
    return ORV_S_OK;
}

} // namespace detail
