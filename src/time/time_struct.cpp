// Broken-down instants and durations: setting and comparing their fields.

#include "orv/time/time_struct.h"

#include "time/calendar.h"

namespace
{

template <typename T>
int Order(T left, T right)
{
    return left < right ? -1 : left > right;
}

} // namespace

void OrvTimeStruct::Initialize(uint16_t yearValue, OrvMonth monthValue, uint16_t dayValue,
                               OrvDayOfWeek dayOfWeekValue, uint16_t hourValue, uint16_t minuteValue,
                               uint16_t secondValue, uint16_t millisecondValue, uint16_t microsecondValue,
                               uint16_t nanosecondValue)
{
    *this = OrvTimeStruct(yearValue, monthValue, dayValue, dayOfWeekValue, hourValue, minuteValue,
                          secondValue, millisecondValue, microsecondValue, nanosecondValue);
}

int OrvTimeStruct::Compare(const OrvTimeStruct &other, int resolution) const
{
    int order = Order(year, other.year);
    if (order == 0 && resolution >= ResolutionMonth)
        order = Order(static_cast<int32_t>(month), static_cast<int32_t>(other.month));
    constexpr uint16_t OrvTimeStruct::*kFields[] = {&OrvTimeStruct::day,         &OrvTimeStruct::hour,
                                                    &OrvTimeStruct::minute,      &OrvTimeStruct::second,
                                                    &OrvTimeStruct::millisecond, &OrvTimeStruct::microsecond,
                                                    &OrvTimeStruct::nanosecond};
    int level = ResolutionDay;
    for (const auto field : kFields) {
        if (order != 0 || resolution < level++)
            break;
        order = Order(this->*field, other.*field);
    }
    return order;
}

bool OrvTimeStruct::Less(const OrvTimeStruct &other, int resolution) const
{
    return Compare(other, resolution) < 0;
}

bool OrvTimeStruct::Equal(const OrvTimeStruct &other, int resolution) const
{
    return Compare(other, resolution) == 0;
}

bool OrvTimeStruct::IsValid() const
{
    return Compare(detail::kEndMarkerStruct, ResolutionDay) > 0;
}

void OrvTimeDifferenceStruct::Initialize(uint16_t dayCount, uint16_t hourCount, uint16_t minuteCount,
                                         uint16_t secondCount, uint16_t millisecondCount,
                                         uint16_t microsecondCount, uint16_t nanosecondCount)
{
    *this = OrvTimeDifferenceStruct(dayCount, hourCount, minuteCount, secondCount, millisecondCount,
                                    microsecondCount, nanosecondCount);
}

bool OrvTimeDifferenceStruct::Equal(const OrvTimeDifferenceStruct &other) const
{
    return days == other.days && hours == other.hours && minutes == other.minutes &&
           seconds == other.seconds && milliseconds == other.milliseconds &&
           microseconds == other.microseconds && nanoseconds == other.nanoseconds;
}
