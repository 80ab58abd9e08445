// Calendar arithmetic of date-time values: fields from the instant, carrying fields into
// range, the instant from the fields, and the normalization every reader calls first.
// The module's only log lines are written here.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

#include "Orv/Calendar/OrvTimezoneInline.h"
#include "Orv/Os/OrvLog.h"

#include <limits>

namespace {

using namespace orv::cal;

constexpr const char* kLogFile = "Orv/Calendar/OrvDateTime";
constexpr OrvInt64 kInt64Max = std::numeric_limits<OrvInt64>::max();
constexpr OrvInt64 kInt64Min = std::numeric_limits<OrvInt64>::min();
// Local seconds since the epoch whose nanoseconds fit an OrvTime (quotients of the
// 64-bit limits by 10^9, rounded towards zero).
constexpr OrvInt64 kMaxSecs = kInt64Max / kNanosecondsPerSecond; //  9223372036
constexpr OrvInt64 kMinSecs = kInt64Min / kNanosecondsPerSecond; // -9223372036

// Writes the date of a day count in the instant range and the time of day.
inline void StoreFields(OrvDateTime* d, OrvInt64 localNs)
{
    OrvInt64 nanos;
    const OrvInt64 secs = DivDownAndModBranchless<OrvInt64>(localNs, kNanosecondsPerSecond, &nanos); // [-9223372037, 9223372036]
    OrvInt64 secOfDay;
    const OrvInt64 days = DivDownAndModBranchless<OrvInt64>(secs, kSecondsPerDay, &secOfDay); // [-106752, 106751]
    const OrvInt sod = static_cast<OrvInt>(secOfDay);                                // [0, 86399]
    const CivilDate date = CivilFromInstantDays(static_cast<OrvInt>(days));
    d->nanosec = static_cast<OrvInt>(nanos);
    d->sec = sod % 60;
    d->min = sod / 60 % 60;
    d->hour = sod / 3600;
    d->monthDay = date.day;
    d->month = date.month;
    d->year = date.year;
    d->normalized = ORV_TRUE;
}

inline bool MonthDayInRange(OrvInt64 year, OrvInt month, OrvInt64 monthDay)
{
    return monthDay >= 1 && monthDay <= monthLengths[IsLeap(year)][month - 1];
}

} // namespace

OrvBool OrvDateTimeSetFieldsFromWall(OrvDateTime* d)
{
    OrvInt64 local;
    if (d->wallTime == ORV_TIME_INVALID || __builtin_add_overflow(d->wallTime, d->offset, &local)) {
        OrvLogDoFormatted_(ORV_LOGLEVEL_ERROR, OrvLogCalendar_, kLogFile, __LINE__, "OrvDateTimeSetFieldsFromWall",
                           "Can't set fields for wall time %lld with offset %lld: would wrap",
                           static_cast<long long>(d->wallTime), static_cast<long long>(d->offset));
        return ORV_FALSE;
    }
    StoreFields(d, local);
    return ORV_TRUE;
}

// Carrying is done in 64 bits, so no carry overflows whatever the 32-bit fields hold,
// and the whole-year and month steps collapse into one day count and back: the result
// is the calendar date that the day count denotes, which is exactly where carrying
// year by year, then month by month, ends. Constant time for any day of month.
OrvBool OrvDateTimeNormalizeFields(OrvDateTime* d)
{
    // Fields already in range (the common case of values built from fields) carry nothing.
    if (static_cast<OrvUint32>(d->nanosec) < static_cast<OrvUint32>(kNanosecondsPerSecond) &&
        static_cast<OrvUint32>(d->sec) < 60 && static_cast<OrvUint32>(d->min) < 60 &&
        static_cast<OrvUint32>(d->hour) < 24 && static_cast<OrvUint32>(d->month) - 1u < 12 &&
        d->monthDay >= 1 && d->monthDay <= monthLengths[IsLeap(d->year)][d->month - 1]) {
        d->normalized = ORV_TRUE;
        return ORV_TRUE;
    }
    OrvInt64 nanos = d->nanosec, sec = d->sec, min = d->min, hour = d->hour;
    OrvInt64 monthDay = d->monthDay, month0 = OrvInt64{d->month} - 1, year = d->year;
    NormalizeAndCarry<OrvInt64>(&sec, &nanos, kNanosecondsPerSecond);
    NormalizeAndCarry<OrvInt64>(&min, &sec, kSecondsPerMinute);
    NormalizeAndCarry<OrvInt64>(&hour, &min, kMinutesPerHour);
    NormalizeAndCarry<OrvInt64>(&monthDay, &hour, kHoursPerDay);
    NormalizeAndCarry<OrvInt64>(&year, &month0, kMonthsPerYear); // |year| < 2^32
    OrvInt month = static_cast<OrvInt>(month0) + 1;
    if (!MonthDayInRange(year, month, monthDay)) {
        const CivilDate64 date = CivilFromDays(DaysFromCivil(year, month, monthDay));
        year = date.year;
        month = date.month;
        monthDay = date.day;
    }
    d->nanosec = static_cast<OrvInt>(nanos);
    d->sec = static_cast<OrvInt>(sec);
    d->min = static_cast<OrvInt>(min);
    d->hour = static_cast<OrvInt>(hour);
    d->monthDay = static_cast<OrvInt>(monthDay);
    d->month = month;
    d->year = static_cast<OrvInt>(year); // wraps modulo 2^32 beyond the 32-bit years
    d->normalized = ORV_TRUE;
    return ORV_TRUE;
}

OrvBool OrvDateTimeSetWallFromFields(OrvDateTime* d)
{
    const OrvInt64 days = OrvDateTimeGetDaysSincePosixEpoch_(d);                 // |days| < 2^40
    const OrvInt64 secs = days * kSecondsPerDay + OrvInt64{d->hour} * 3600 + OrvInt64{d->min} * 60 + d->sec;
    OrvInt64 adj = 0, wall = 0;
    if (secs > kMaxSecs || secs < kMinSecs || __builtin_sub_overflow(OrvInt64{d->nanosec}, d->offset, &adj) ||
        __builtin_add_overflow(secs * kNanosecondsPerSecond, adj, &wall)) {
        OrvLogDoFormatted_(ORV_LOGLEVEL_INFO, OrvLogCalendar_, kLogFile, __LINE__, "OrvDateTimeSetWallFromFields",
                           "Can't set wall time for time %d-%02d-%02d %02d:%02d:%02d.%09d with offset %lld: would wrap",
                           d->year, d->month, d->monthDay, d->hour, d->min, d->sec, d->nanosec,
                           static_cast<long long>(d->offset));
        d->wallTime = ORV_TIME_INVALID;
        return ORV_TRUE;
    }
    d->wallTime = wall; // exactly ORV_TIME_INVALID counts as not representable, silently
    return ORV_TRUE;
}

OrvBool OrvDateTimeNormalizeAndSetWall(OrvDateTime* d)
{
    if (orv::detail::IsConsistent(d)) return ORV_TRUE;
    if (!d->normalized) OrvDateTimeNormalizeFields(d);
    if (orv::detail::IsGlobalUtc(&d->tz)) {
        // Both of the zone's answers are 0: the instant follows from the fields alone.
        d->offset = 0;
        return OrvDateTimeSetWallFromFields(d);
    }
    if (d->offset == ORV_TIME_INVALID) {
        d->offset = OrvTimezoneGetOffsetFromFieldsInline(&d->tz, d->year, d->month, d->monthDay, d->hour, d->min,
                                                         d->sec, d->nanosec);
        if (d->offset == ORV_TIME_INVALID) return ORV_FALSE;
    }
    OrvDateTimeSetWallFromFields(d);
    if (d->wallTime == ORV_TIME_INVALID) return ORV_TRUE;
    const OrvTime offset2 = OrvTimezoneGetOffsetInline(&d->tz, d->wallTime);
    if (offset2 == ORV_TIME_INVALID) return ORV_FALSE;
    if (offset2 == d->offset) return ORV_TRUE;
    // A local time the zone skips or repeats: the instant stands, the fields follow it.
    d->offset = offset2;
    return OrvDateTimeSetFieldsFromWall(d);
}

OrvInt OrvDateTimeCalculateDayOfYear(const OrvDateTime* d)
{
    // A month outside 1..12 (only for values read before normalization) picks the row
    // of the year it carries into; the sum wraps instead of overflowing.
    OrvInt64 month0;
    const OrvInt64 year = d->year + DivDownAndMod<OrvInt64>(OrvInt64{d->month} - 1, kMonthsPerYear, &month0);
    return static_cast<OrvInt>(monthDays[IsLeap(year)][month0] + OrvInt64{d->monthDay});
}

OrvTime OrvDateTimeGetDaysSincePosixEpoch_(const OrvDateTime* d)
{
    OrvInt64 month0;
    const OrvInt64 year = d->year + DivDownAndMod<OrvInt64>(OrvInt64{d->month} - 1, kMonthsPerYear, &month0);
    return DaysFromCivil(year, static_cast<OrvInt>(month0) + 1, d->monthDay);
}
