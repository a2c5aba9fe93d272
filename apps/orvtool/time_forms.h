// The text forms of an instant that the library converts, each with its name.

#pragma once

#include "console.h"

#include "orv/time/time_struct.h"

namespace orvtool
{

/// The outcome of parsing an instant.
enum class TimeParse { kDone, kNotOfThisForm, kRefused };

struct TimeForm {
    const wchar_t *name;

    /// Reads an instant in UTC; `result` is what the library returned when it refused to convert it.
    TimeParse (*parse)(const wchar_t *text, OrvTime &time, OrvResult &result);

    /// Prints an instant in UTC, never the end marker. Returns 0; otherwise what the library returned, and
    /// then nothing is printed.
    OrvResult (*print)(Stream &out, OrvTime time);
};

/// The form with this name; null when there is none.
const TimeForm *FindTimeForm(const wchar_t *name);

/// Prints an instant with a precision of 100 ns, followed by a Z if it is in UTC. Returns as TimeForm::print;
/// for the end marker returns ORV_S_END_OF_TIME and prints nothing.
OrvResult PrintIsoTime(Stream &out, OrvTime time, bool isUtc);

} // namespace orvtool
