// The text of a double for a directive, as pieces that the format engine writes one after another. A piece is
// either stored digits or a run of zeros that is only counted, so that no precision is too large.

#pragma once

#include "text/double_to_decimal.h"
#include "text/format_directive.h"

namespace detail
{

struct FloatText {
    struct Piece {
        const char *text; // null: zeros
        uint32_t length;
    };
    static constexpr uint32_t kMostPieces = 7;

    char sign;     // 0: no sign
    bool isNumber; // neither infinite nor NaN
    uint32_t pieceCount = 0;
    uint64_t length = 0; // of all pieces together, without the sign
    Piece pieces[kMostPieces];
    Decimal decimal;
    char exponent[5]; // at most e+308 or e-324

    FloatText(const FormatDirective &directive, double value);
    FloatText(const FloatText &) = delete;
    FloatText &operator=(const FloatText &) = delete;

private:
    void Add(const char *text, uint32_t count);
    void AddDigits(uint32_t first, uint32_t count);
    void AddPoint(uint32_t precision, bool alternate);
    void AddFixed(uint32_t precision, bool alternate);
    void AddExponential(uint32_t precision, bool alternate, bool upperCase);
    void AddExponent(int value, bool upperCase);
    void AddGeneral(const DoubleParts &parts, uint32_t precision, const FormatDirective &directive);
};

} // namespace detail
