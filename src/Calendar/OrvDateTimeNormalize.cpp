// Calendar arithmetic of date-time values: fields from the instant, carrying fields into
// range, the instant from the fields, and the normalization every reader calls first.
// The module's only log lines are written here.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

#include "Orv/Calendar/OrvTimezoneInline.h"
#include "Orv/Os/OrvLog.h"

namespace {

using namespace orv::cal;

constexpr const char* kLogFile = "Orv/Calendar/OrvDateTime";

// Stores a reading whose fields are in range, as the value's consistent fields.
inline void StoreFields(OrvDateTime* d, const Reading& r)
{
    orv::detail::StoreReading(d, r);
    d->normalized = ORV_TRUE;
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
    StoreFields(d, ReadingFromLocalNanoseconds(local));
    return ORV_TRUE;
}

// Carrying is done in 64 bits (CarryReading), so no carry overflows whatever the
// 32-bit fields hold.
OrvBool OrvDateTimeNormalizeFields(OrvDateTime* d)
{
    // Fields already in range (the common case of values built from fields) carry nothing.
    if (static_cast<OrvUint32>(d->nanosec) < static_cast<OrvUint32>(kNanosecondsPerSecond) &&
        static_cast<OrvUint32>(d->sec) < static_cast<OrvUint32>(kSecondsPerMinute) &&
        static_cast<OrvUint32>(d->min) < static_cast<OrvUint32>(kMinutesPerHour) &&
        static_cast<OrvUint32>(d->hour) < static_cast<OrvUint32>(kHoursPerDay) &&
        static_cast<OrvUint32>(d->month) - 1u < static_cast<OrvUint32>(kMonthsPerYear) &&
        DayInMonth(d->year, d->month, d->monthDay)) {
        d->normalized = ORV_TRUE;
        return ORV_TRUE;
    }
    Reading r{d->year, d->month, d->monthDay, d->hour, d->min, d->sec, d->nanosec};
    CarryReading(&r); // |year| < 2^32
    StoreFields(d, r);
    return ORV_TRUE;
}

OrvBool OrvDateTimeSetWallFromFields(OrvDateTime* d)
{
    // The day count first, out of line: the common path then holds no field across a call.
    const OrvInt64 days = OrvDateTimeGetDaysSincePosixEpoch_(d); // |days| < 2^40
    const OrvInt64 secs = LocalSecondsFromDays(days, d->hour, d->min, d->sec);
    // The instant is secs * 1e9 + nanosec - offset. In the first second of the instant
    // range (floor second kMinInstantSecond - 1) secs * 1e9 alone lies below it, so a
    // negative secs lends one second to the nanosecond part.
    const OrvInt64 lent = secs < 0 ? 1 : 0;
    OrvInt64 adj = 0, wall = 0;
    if (secs > kMaxInstantSecond || secs < kMinInstantSecond - 1 ||
        __builtin_sub_overflow(OrvInt64{d->nanosec} - lent * kNanosecondsPerSecond, d->offset, &adj) ||
        __builtin_add_overflow((secs + lent) * kNanosecondsPerSecond, adj, &wall)) {
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
    if (offset2 == d->offset) return ORV_TRUE;
    // A local time the zone skips or repeats: the instant stands, the fields follow it.
    d->offset = offset2;
    if (offset2 != ORV_TIME_INVALID && OrvDateTimeSetFieldsFromWall(d)) return ORV_TRUE;
    // No offset at the instant, or fields that cannot follow it: the fields stay pending,
    // so the next reader fails as this one did rather than find the value consistent.
    d->offset = ORV_TIME_INVALID;
    return ORV_FALSE;
}

OrvInt OrvDateTimeCalculateDayOfYear(const OrvDateTime* d)
{
    // A month outside 1..12 (only for values read before normalization) picks the row
    // of the year it carries into; the sum wraps instead of overflowing.
    OrvInt64 year = d->year;
    const OrvInt month = CarryMonthIntoYear(&year, d->month);
    return static_cast<OrvInt>(DayOfYear(year, month, d->monthDay));
}

OrvTime OrvDateTimeGetDaysSincePosixEpoch_(const OrvDateTime* d) { return DaysFromFields(d->year, d->month, d->monthDay); }
