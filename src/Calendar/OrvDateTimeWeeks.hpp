// Derived fields of a date-time value: day of week and week numbers under the value's
// week settings. Inline, because field reads of consistent values are hot paths; the
// field reader and the actual-maximum reader both use them. All of them read the
// stored fields as they stand: callers normalize first.
#ifndef ORV_SRC_CALENDAR_ORVDATETIMEWEEKS_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMEWEEKS_HPP

#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

namespace orv::detail {

// A selector as the unsigned number callers pass: an unscoped enumeration promotes to
// int, so comparing it directly would let selectors from 2^31 up pass for small ones.
constexpr OrvUint32 SelectorIndex(OrvDateTimeField f) { return static_cast<OrvUint32>(f); }

// 0 (Sunday) .. 6 (Saturday). The day count is
// OrvDateTimeGetDaysSincePosixEpoch_'s, worked out inline: with the month already in
// 1..12 there is nothing to carry.
inline OrvInt OrvDateTimeCalculateDayOfWeek(const OrvDateTime* d)
{
    return cal::WeekdayOfDays(cal::DaysFromCivil(d->year, d->month, d->monthDay));
}

// OrvDateTimeCalculateDayOfYear for in-range fields, inline: 1 .. 366.
inline OrvInt DayOfYearInRange(const OrvDateTime* d)
{
    return static_cast<OrvInt>(cal::DayOfYear(d->year, d->month, d->monthDay));
}

// The week number of day dayInPeriod (1-based) of a month or year, given its weekday:
// weeks start on firstDayOfWeek, and the partial week that opens the period counts as
// week 1 when it has at least minimalDays days, else as week 0.
//   wday [0, 6], firstDayOfWeek [0, 6], minimalDays [1, 7], dayInPeriod [1, 732].
inline OrvInt WeekInPeriod(OrvInt wday, OrvInt dayInPeriod, OrvInt firstDayOfWeek, OrvInt minimalDays)
{
    const OrvInt relWday1st = cal::FloorMod(wday - firstDayOfWeek - dayInPeriod + 1, cal::kDaysPerWeek); // weekday of day 1, relative
    OrvInt week = (dayInPeriod + relWday1st - 1) / cal::kDaysPerWeek;
    if (cal::kDaysPerWeek - relWday1st >= minimalDays) ++week;
    return week;
}

inline OrvInt OrvDateTimeCalculateWeekInPeriod(const OrvDateTime* d, OrvInt wday, OrvInt dayInPeriod)
{
    return WeekInPeriod(wday, dayInPeriod, d->firstDayOfWeek, d->minimalDaysInFirstWeek);
}

// 0 .. 6; no adjustment at the month's edges.
inline OrvInt OrvDateTimeCalculateWeekOfMonth(const OrvDateTime* d)
{
    return OrvDateTimeCalculateWeekInPeriod(d, OrvDateTimeCalculateDayOfWeek(d), d->monthDay);
}

// 1 .. 53. Days of a week that the year's rule leaves to the neighbouring year carry
// that year's number: the last week of the previous year, or week 1 of the next.
inline OrvInt OrvDateTimeCalculateWeekOfYear(const OrvDateTime* d)
{
    const OrvInt wday = OrvDateTimeCalculateDayOfWeek(d);
    const OrvInt yday = DayOfYearInRange(d); // [1, 366]
    OrvInt week = OrvDateTimeCalculateWeekInPeriod(d, wday, yday);
    if (week == 0) {
        return OrvDateTimeCalculateWeekInPeriod(d, wday, yday + cal::YearLength(OrvInt64{d->year} - 1));
    }
    if (yday >= 359) {
        const OrvInt yearLength = cal::YearLength(d->year);
        const OrvInt relWday = cal::FloorMod(wday - d->firstDayOfWeek, cal::kDaysPerWeek);
        if (yday - relWday + 6 > yearLength) {
            const OrvInt relWdayLast = relWday + yearLength - yday; // weekday of 31 December, relative
            if (6 - relWdayLast >= d->minimalDaysInFirstWeek) week = 1;
        }
    }
    return week;
}

} // namespace orv::detail

#endif // ORV_SRC_CALENDAR_ORVDATETIMEWEEKS_HPP
