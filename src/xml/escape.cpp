// Finds the characters to escape, a vector at a time.

#include "xml/escape.h"

#include "text/vector.h"

namespace detail
{

namespace
{

constexpr uint32_t kLastControl = 0x1F;
constexpr uint32_t kFirstSurrogate = 0xD800;
constexpr uint32_t kLastSurrogate = 0xDFFF;
constexpr uint32_t kFirstNoCharacter = 0xFFFE;

bool IsEscaped(uint32_t unit, bool attribute)
{
    switch (unit) {
    case L'&':
    case L'<':
    case L'>':
        return true;
    case L'"':
    case L'\'':
        return attribute;
    case L'\t':
    case L'\n':
    case L'\r':
        return false;
    default:
        return unit <= kLastControl || (unit >= kFirstSurrogate && unit <= kLastSurrogate) ||
               unit >= kFirstNoCharacter;
    }
}

/// A mask with the two bits set of each unit that may need an escape: the special characters, all controls,
/// and everything from the first surrogate on.
uint32_t Suspects(__m128i units, bool attribute)
{
    const auto equals = [units](wchar_t unit) {
        return _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(unit)));
    };
    const __m128i zero = _mm_setzero_si128();
    // Saturating subtraction gives zero for units up to the limit.
    const __m128i control = _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(kLastControl)), zero);
    const __m128i low =
        _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(static_cast<short>(kFirstSurrogate - 1))), zero);
    __m128i suspects =
        _mm_or_si128(_mm_or_si128(equals(L'&'), equals(L'<')), _mm_or_si128(equals(L'>'), control));
    if (attribute)
        suspects = _mm_or_si128(suspects, _mm_or_si128(equals(L'"'), equals(L'\'')));
    suspects = _mm_or_si128(suspects, _mm_andnot_si128(low, _mm_set1_epi16(-1)));
    return static_cast<uint32_t>(_mm_movemask_epi8(suspects));
}

} // namespace

namespace plain
{

uint32_t CountUnescaped(const wchar_t *text, uint32_t count, bool attribute)
{
    uint32_t at = 0;
    while (at < count && !IsEscaped(LoadUnit(text + at), attribute))
        at++;
    return at;
}

} // namespace plain

uint32_t CountUnescaped(const wchar_t *text, uint32_t count, bool attribute)
{
    constexpr uint32_t kUnits = sizeof(__m128i) / sizeof(wchar_t);
    uint32_t at = 0;
    while (count - at >= kUnits) {
        const uint32_t suspects = Suspects(LoadVector(text + at), attribute);
        if (suspects == 0) {
            at += kUnits;
            continue;
        }
        // The first suspect ends the run if it really needs an escape; tab or U+E000, for example, does not.
        at += static_cast<uint32_t>(__builtin_ctz(suspects)) / sizeof(wchar_t);
        if (IsEscaped(LoadUnit(text + at), attribute))
            return at;
        at++;
    }
    return at + plain::CountUnescaped(text + at, count - at, attribute);
}

const wchar_t *EntityOf(wchar_t unit)
{
    switch (unit) {
    case L'&':
        return L"&amp;";
    case L'<':
        return L"&lt;";
    case L'>':
        return L"&gt;";
    case L'"':
        return L"&quot;";
    case L'\'':
        return L"&apos;";
    default:
        return nullptr;
    }
}

} // namespace detail
