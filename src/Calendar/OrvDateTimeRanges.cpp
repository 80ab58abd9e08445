// The bounds of every field: in general, and for the month and year of one value.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"
#include "Calendar/OrvDateTimeWeeks.hpp"

namespace {

using namespace orv::cal;
using orv::detail::SelectorIndex;
using orv::detail::WeekInPeriod;

constexpr OrvUint32 kFieldCount = ORV_DATETIMEFIELD_DayOfYear + 1;

// Indexed by OrvDateTimeField. Years: those in which the instant range begins and ends.
constexpr OrvInt kMinimum[kFieldCount] = {0, 0, 0, 0, 0, 1, 1, 1677, 0, 1, 1};
constexpr OrvInt kMaximum[kFieldCount] = {999999999, 59, 59, 23, 6, 31, 12, 2262, 6, 53, 366};

// The weekday, or weekday relative to the first day of the week, v days on.
constexpr OrvInt Mod7(OrvInt64 v) { return static_cast<OrvInt>(FloorMod<OrvInt64>(v, kDaysPerWeek)); }

// Weeks of the month of d: the week number of its last day.
OrvInt WeeksInMonth(const OrvDateTime* d, OrvInt wday)
{
    const OrvInt length = MonthLength(d->year, d->month);
    const OrvInt wdayLast = Mod7(wday + length - d->monthDay);
    return WeekInPeriod(wdayLast, length, d->firstDayOfWeek, d->minimalDaysInFirstWeek);
}

// Weeks of a year whose 31 December falls on wdayLast: the number of its last week,
// less one when that week is long enough in the next year to be the next year's week 1.
OrvInt WeeksInYear(const OrvDateTime* d, OrvInt64 year, OrvInt wdayLast)
{
    const OrvInt length = YearLength(year);
    OrvInt weeks = WeekInPeriod(wdayLast, length, d->firstDayOfWeek, d->minimalDaysInFirstWeek);
    const OrvInt relWdayLast = Mod7(wdayLast - d->firstDayOfWeek);
    if (6 - relWdayLast >= d->minimalDaysInFirstWeek) --weeks;
    return weeks; // [52, 53]
}

// Weeks of the week-numbering year that holds d's week: the previous year for the
// first days of January numbered 52 or 53, the next year for the last days of December
// numbered 1, else d's own year.
OrvInt WeeksInWeekYear(const OrvDateTime* d)
{
    const OrvInt wday = orv::detail::OrvDateTimeCalculateDayOfWeek(d);
    const OrvInt week = orv::detail::OrvDateTimeCalculateWeekOfYear(d);
    const OrvInt yday = OrvDateTimeCalculateDayOfYear(d);
    const OrvInt64 year = d->year;
    const OrvInt64 toLastOfYear = YearLength(year) - yday; // days from d to 31 December
    if (d->month == 1 && week >= 52) return WeeksInYear(d, year - 1, Mod7(wday - yday));
    if (d->month == 12 && week == 1) return WeeksInYear(d, year + 1, Mod7(wday + toLastOfYear + YearLength(year + 1)));
    return WeeksInYear(d, year, Mod7(wday + toLastOfYear));
}

} // namespace

OrvInt OrvDateTimeGetMinimum(const OrvDateTime*, OrvDateTimeField f)
{
    return SelectorIndex(f) < kFieldCount ? kMinimum[f] : -1;
}

OrvInt OrvDateTimeGetMaximum(const OrvDateTime*, OrvDateTimeField f)
{
    return SelectorIndex(f) < kFieldCount ? kMaximum[f] : -1;
}

OrvInt OrvDateTimeGetActualMinimum(const OrvDateTime* d, OrvDateTimeField f) { return OrvDateTimeGetMinimum(d, f); }

OrvInt OrvDateTimeGetActualMaximum(const OrvDateTime* d, OrvDateTimeField f)
{
    if (!orv::detail::Normalize(d)) return 0;
    switch (f) {
    case ORV_DATETIMEFIELD_DayOfMonth: return MonthLength(d->year, d->month);
    case ORV_DATETIMEFIELD_DayOfYear: return YearLength(d->year);
    case ORV_DATETIMEFIELD_WeekOfMonth: return WeeksInMonth(d, orv::detail::OrvDateTimeCalculateDayOfWeek(d));
    case ORV_DATETIMEFIELD_WeekOfYear: return WeeksInWeekYear(d);
    default: return SelectorIndex(f) < kFieldCount ? kMaximum[f] : -1;
    }
}
