// The written forms of an instant that the library converts, each by its name.

#pragma once

#include "console.h"

#include "orv/time/time_struct.h"

namespace orvtool
{

/// How parsing an instant went.
enum class TimeParse { kDone, kNotOfThisForm, kRefused };

struct TimeForm {
    const wchar_t *name;

    /// Reads an instant in UTC; `result` is what the library returned when it refused to convert it.
    TimeParse (*parse)(const wchar_t *text, OrvTime &time, OrvResult &result);

    /// Prints an instant in UTC, never the end marker. Returns 0, or what the library returned, and nothing
    /// is printed.
    OrvResult (*print)(Stream &out, OrvTime time);
};

/// Null when there is none by that name.
const TimeForm *FindTimeForm(const wchar_t *name);

/// Prints an instant down to 100 ns, behind it a Z if it is in UTC. Returns as TimeForm::print, and
/// ORV_S_END_OF_TIME, with nothing printed, for the end marker.
OrvResult PrintIsoTime(Stream &out, OrvTime time, bool isUtc);

} // namespace orvtool
