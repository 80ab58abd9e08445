// Field access of date-time values: reading, setting and adding to one field through
// a selector, including the derived day of week, week numbers and day of year.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"
#include "Calendar/OrvDateTimeWeeks.hpp"

#include <limits>

namespace {

using namespace orv::cal;
using orv::detail::Normalize;
using orv::detail::SelectorIndex;

constexpr OrvInt64 kIntMin = std::numeric_limits<OrvInt>::min();
constexpr OrvInt64 kIntMax = std::numeric_limits<OrvInt>::max();

constexpr bool FitsInt(OrvInt64 v) { return v >= kIntMin && v <= kIntMax; }

// The stored member a selector adds to: the time fields and the date fields; every
// derived field adds whole days to the day of month.
OrvInt* AddTarget(OrvDateTime* d, OrvDateTimeField f)
{
    switch (f) {
    case ORV_DATETIMEFIELD_Nanosecond: return &d->nanosec;
    case ORV_DATETIMEFIELD_Second: return &d->sec;
    case ORV_DATETIMEFIELD_Minute: return &d->min;
    case ORV_DATETIMEFIELD_Hour: return &d->hour;
    case ORV_DATETIMEFIELD_Month: return &d->month;
    case ORV_DATETIMEFIELD_Year: return &d->year;
    default: return &d->monthDay;
    }
}

struct WideFields {
    OrvInt64 nanosec, sec, min, hour, monthDay, month0, year;
};

// The reading of d with `amount` added to the field that f adds to, carried into range
// in 64 bits. False when the year it lands in does not fit an OrvInt.
bool CarryWide(const OrvDateTime* d, OrvDateTimeField f, OrvInt64 amount, WideFields* out)
{
    WideFields w{d->nanosec, d->sec, d->min, d->hour, d->monthDay, OrvInt64{d->month} - 1, d->year};
    switch (f) {
    case ORV_DATETIMEFIELD_Nanosecond: w.nanosec += amount; break;
    case ORV_DATETIMEFIELD_Second: w.sec += amount; break;
    case ORV_DATETIMEFIELD_Minute: w.min += amount; break;
    case ORV_DATETIMEFIELD_Hour: w.hour += amount; break;
    case ORV_DATETIMEFIELD_Month: w.month0 += amount; break;
    case ORV_DATETIMEFIELD_Year: w.year += amount; break;
    default: w.monthDay += amount; break; // |amount| <= 7 * 2^31
    }
    NormalizeAndCarry<OrvInt64>(&w.sec, &w.nanosec, kNanosecondsPerSecond);
    NormalizeAndCarry<OrvInt64>(&w.min, &w.sec, kSecondsPerMinute);
    NormalizeAndCarry<OrvInt64>(&w.hour, &w.min, kMinutesPerHour);
    NormalizeAndCarry<OrvInt64>(&w.monthDay, &w.hour, kHoursPerDay); // |monthDay| < 2^35
    NormalizeAndCarry<OrvInt64>(&w.year, &w.month0, kMonthsPerYear); // |year| < 2^33
    const CivilDate64 date = CivilFromDays(DaysFromCivil(w.year, static_cast<OrvInt>(w.month0) + 1, w.monthDay));
    if (!FitsInt(date.year)) return false;
    w.year = date.year;
    w.month0 = date.month - 1;
    w.monthDay = date.day;
    *out = w;
    return true;
}

} // namespace

OrvInt OrvDateTimeGetField(const OrvDateTime* d, OrvDateTimeField f)
{
    if (!Normalize(d)) return -1;
    switch (f) {
    case ORV_DATETIMEFIELD_Nanosecond: return d->nanosec;
    case ORV_DATETIMEFIELD_Second: return d->sec;
    case ORV_DATETIMEFIELD_Minute: return d->min;
    case ORV_DATETIMEFIELD_Hour: return d->hour;
    case ORV_DATETIMEFIELD_DayOfWeek: return orv::detail::OrvDateTimeCalculateDayOfWeek(d);
    case ORV_DATETIMEFIELD_DayOfMonth: return d->monthDay;
    case ORV_DATETIMEFIELD_Month: return d->month;
    case ORV_DATETIMEFIELD_Year: return d->year;
    case ORV_DATETIMEFIELD_WeekOfMonth: return orv::detail::OrvDateTimeCalculateWeekOfMonth(d);
    case ORV_DATETIMEFIELD_WeekOfYear: return orv::detail::OrvDateTimeCalculateWeekOfYear(d);
    case ORV_DATETIMEFIELD_DayOfYear: return OrvDateTimeCalculateDayOfYear(d);
    }
    return -1;
}

OrvBool OrvDateTimeSetField(OrvDateTime* d, OrvDateTimeField f, OrvInt val)
{
    if (SelectorIndex(f) > ORV_DATETIMEFIELD_Year || f == ORV_DATETIMEFIELD_DayOfWeek) return ORV_FALSE;
    *AddTarget(d, f) = val;
    // The raw number is the authority now; the next reader carries it into range and
    // asks the zone for the offset of the new local reading.
    d->normalized = ORV_FALSE;
    d->offset = ORV_TIME_INVALID;
    return ORV_TRUE;
}

OrvBool OrvDateTimeAddToField(OrvDateTime* d, OrvDateTimeField f, OrvInt inc)
{
    if (inc == 0) return ORV_TRUE;
    if (!Normalize(d)) return ORV_FALSE;
    if (SelectorIndex(f) > ORV_DATETIMEFIELD_DayOfYear) return ORV_FALSE;

    const bool weeks = f == ORV_DATETIMEFIELD_WeekOfMonth || f == ORV_DATETIMEFIELD_WeekOfYear;
    const OrvInt64 amount = weeks ? OrvInt64{inc} * 7 : OrvInt64{inc};
    OrvInt* const target = AddTarget(d, f);

    // The sum is carried in 64 bits first, to refuse a year beyond 32 bits before
    // anything changes. When the plain sum fits the field, the field takes it and the
    // normalization below carries it; otherwise the reading is stored already carried.
    WideFields w;
    if (!CarryWide(d, f, amount, &w)) return ORV_FALSE;
    const OrvInt64 sum = *target + amount;
    if (FitsInt(sum)) {
        *target = static_cast<OrvInt>(sum);
    } else {
        d->nanosec = static_cast<OrvInt>(w.nanosec);
        d->sec = static_cast<OrvInt>(w.sec);
        d->min = static_cast<OrvInt>(w.min);
        d->hour = static_cast<OrvInt>(w.hour);
        d->monthDay = static_cast<OrvInt>(w.monthDay);
        d->month = static_cast<OrvInt>(w.month0) + 1;
        d->year = static_cast<OrvInt>(w.year);
    }

    // Time fields keep the offset in force, so the instant moves by exactly the amount
    // added; date fields keep the local reading and take the zone's offset for it.
    if (SelectorIndex(f) >= ORV_DATETIMEFIELD_DayOfWeek) d->offset = ORV_TIME_INVALID;
    d->normalized = ORV_FALSE;
    return OrvDateTimeNormalizeAndSetWall(d);
}
