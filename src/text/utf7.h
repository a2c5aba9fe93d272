// UTF-7 (RFC 2152): ASCII text in which a plus sign opens a shift: 16-bit units in base64, up to the first
// character that is not base64.
//
// The writer writes few characters directly: letters, digits, white space and the marks ' ( ) , - . / : ? The
// plus sign is written as "+-". All other characters are written in a shift, and every shift is closed by a
// minus sign.
//
// The reader accepts all that the standard allows: outside a shift any ASCII character, but "+" only before a
// minus sign; inside a shift any code point; a shift ends at any character that is not base64 or at the end
// of the text. Malformed are: a byte above 127; a plus sign followed neither by base64 nor by a minus sign; a
// shift whose last unit is incomplete or padded with bits other than zeros; a surrogate without its other
// half.

#pragma once

#include "text/transcode.h"
#include "text/utf16.h"

namespace detail
{

struct Utf7Alphabet {
    char digits[64] = {};
    int8_t values[128] = {}; ///< -1: not a digit
    bool direct[128] = {};

    constexpr Utf7Alphabet()
    {
        for (int8_t &value : values)
            value = -1;
        AddRange('A', 26, 0);
        AddRange('a', 26, 26);
        AddRange('0', 10, 52);
        Add('+', 62);
        Add('/', 63);
        for (const char c : "\t\n\r '(),-.:?") // the terminator is included
            direct[static_cast<uint8_t>(c)] = true;
    }

private:
    constexpr void AddRange(char first, int count, int value)
    {
        for (int i = 0; i < count; i++)
            Add(static_cast<char>(first + i), value + i);
    }

    constexpr void Add(char digit, int value)
    {
        digits[value] = digit;
        values[static_cast<uint8_t>(digit)] = static_cast<int8_t>(value);
        direct[static_cast<uint8_t>(digit)] = true; // every base64 digit is also a direct character
    }
};

constexpr Utf7Alphabet kUtf7Alphabet;

class Utf7Reader
{
public:
    Utf7Reader(const uint8_t *bytes, uint32_t size) : next_(bytes), end_(bytes + size) {}

    ReadStep Read(uint32_t &codePoint)
    {
        const ReadStep step = ReadUnit(codePoint);
        if (step != ReadStep::kCodePoint || !IsSurrogate(codePoint))
            return step;
        uint32_t low = 0;
        if (!IsHighSurrogate(codePoint) || ReadUnit(low) != ReadStep::kCodePoint || !IsLowSurrogate(low))
            return ReadStep::kMalformed;
        codePoint = CombineSurrogates(codePoint, low);
        return ReadStep::kCodePoint;
    }

private:
    ReadStep ReadUnit(uint32_t &unit)
    {
        while (next_ != end_) {
            const uint32_t character = *next_;
            if (character >= 0x80)
                return ReadStep::kMalformed;
            if (!inShift_) {
                next_++;
                unit = character;
                if (character != '+' || TakeMinus())
                    return ReadStep::kCodePoint;
                if (!OpenShift())
                    return ReadStep::kMalformed;
            } else if (kUtf7Alphabet.values[character] >= 0) {
                next_++;
                if (TakeDigit(static_cast<uint32_t>(kUtf7Alphabet.values[character]), unit))
                    return ReadStep::kCodePoint;
            } else {
                TakeMinus();
                if (!CloseShift())
                    return ReadStep::kMalformed;
            }
        }
        return CloseShift() ? ReadStep::kEnd : ReadStep::kMalformed;
    }

    bool TakeMinus()
    {
        if (next_ == end_ || *next_ != '-')
            return false;
        next_++;
        return true;
    }

    bool OpenShift()
    {
        inShift_ = next_ != end_ && *next_ < 0x80 && kUtf7Alphabet.values[*next_] >= 0;
        return inShift_;
    }

    /// Adds a digit. Returns whether it completes a unit.
    bool TakeDigit(uint32_t value, uint32_t &unit)
    {
        bits_ = bits_ << 6 | value;
        bitCount_ += 6;
        if (bitCount_ < 16)
            return false;
        bitCount_ -= 16;
        unit = bits_ >> bitCount_ & 0xFFFF;
        bits_ &= (1u << bitCount_) - 1;
        return true;
    }

    /// Ends the shift. Returns whether the bits left are only padding: fewer than a digit, all zeros.
    bool CloseShift()
    {
        const bool padding = bitCount_ < 6 && bits_ == 0;
        inShift_ = false;
        bits_ = 0;
        bitCount_ = 0;
        return padding;
    }

    const uint8_t *next_;
    const uint8_t *end_;
    bool inShift_ = false;
    uint32_t bits_ = 0; ///< the first `bitCount_` bits of the next unit
    uint32_t bitCount_ = 0;
};

struct Utf7Writer {
    template <template <typename> class TargetOf>
    class On
    {
    public:
        explicit On(const TargetOf<uint8_t> &target) : target_(target) {}

        bool Put(uint32_t codePoint)
        {
            if (codePoint < 0x80 && kUtf7Alphabet.direct[codePoint])
                return Finish() && target_.Append(codePoint) && (codePoint != '+' || target_.Append('-'));
            if (!inShift_ && !target_.Append('+'))
                return false;
            inShift_ = true;
            if (codePoint < kFirstSupplementary)
                return PutUnit(codePoint);
            const uint32_t pair = SurrogatePair(codePoint);
            return PutUnit(pair & 0xFFFF) && PutUnit(pair >> 16);
        }

        /// Closes an open shift.
        bool Finish()
        {
            if (!inShift_)
                return true;
            inShift_ = false;
            const uint32_t pending = bitCount_;
            bitCount_ = 0;
            return (pending == 0 || target_.Append(Digit(bits_ << (6 - pending)))) && target_.Append('-');
        }

        uint64_t Size() const { return target_.Size(); }

    private:
        bool PutUnit(uint32_t unit)
        {
            bits_ = bits_ << 16 | unit;
            bitCount_ += 16;
            while (bitCount_ >= 6) {
                bitCount_ -= 6;
                if (!target_.Append(Digit(bits_ >> bitCount_)))
                    return false;
            }
            return true;
        }

        static uint32_t Digit(uint32_t value)
        {
            return static_cast<uint8_t>(kUtf7Alphabet.digits[value & 0x3F]);
        }

        TargetOf<uint8_t> target_;
        bool inShift_ = false;
        uint32_t bits_ = 0; ///< the lowest `bitCount_` bits are still to be written
        uint32_t bitCount_ = 0;
    };
};

} // namespace detail
