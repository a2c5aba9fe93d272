// Matching of names against patterns: "*" matches any run of characters, also an empty one, "?" exactly one
// character; every other character, the dot too, matches itself. There are no escapes and no classes.

#pragma once

#include "orv/base.h"
#include "orv/text/string_ref.h"

/// Whether the whole name matches the whole pattern. The patterns "*" and "*.*" match every name, also one
/// without a dot and the empty one; the empty pattern matches only the empty name. Null characters are an
/// empty text.
///
/// Takes no memory, and at most about as many steps as the lengths multiplied. Always returns 0.
ORV_API OrvResult OrvBasMatchWildcards(bool &matches, const OrvStringRefBase<wchar_t> &pattern,
                                       const OrvStringRefBase<wchar_t> &name);

/// The same without regard to case: two characters are equal when the platform gives both the same upper-case
/// form.
ORV_API OrvResult OrvBasMatchWildcardsNoCase(bool &matches, const OrvStringRefBase<wchar_t> &pattern,
                                             const OrvStringRefBase<wchar_t> &name);
