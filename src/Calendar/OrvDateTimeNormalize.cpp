// Calendar arithmetic of date-time values: fields from the instant, carrying fields into
// range, the instant from the fields, and the normalization every reader calls first,
// compiled into the constructor from fields here. The module's only log lines are
// written here.
//
// The normalization works the local seconds of the fields out once and uses them for
// the zone's question and for the instant. The global UTC zone is not asked; a
// database zone is asked once, through its own lookup, which also tells over which
// instants its answer holds, so that the confirming question by instant is left out
// whenever the instant lies there (a reading the zone neither skips nor repeats).
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

#include "Orv/Calendar/OrvTimezoneInline.h"
#include "Orv/Os/OrvLog.h"
#include "Timezone/TzdbZone.hpp"

namespace {

using namespace orv::cal;

constexpr const char* kLogFile = "Orv/Calendar/OrvDateTime";

// Stores a reading whose fields are in range, as the value's consistent fields.
inline void StoreFields(OrvDateTime* d, const Reading& r)
{
    orv::detail::StoreReading(d, r);
    d->normalized = ORV_TRUE;
}

// Every field within its range: the time fields and the month compared unsigned in
// one go, the day against 28 first and against its month's length only beyond.
inline bool FieldsInRange(const OrvDateTime* d)
{
    const bool time = (static_cast<OrvUint32>(d->nanosec) < static_cast<OrvUint32>(kNanosecondsPerSecond)) &
                      (static_cast<OrvUint32>(d->sec) < static_cast<OrvUint32>(kSecondsPerMinute)) &
                      (static_cast<OrvUint32>(d->min) < static_cast<OrvUint32>(kMinutesPerHour)) &
                      (static_cast<OrvUint32>(d->hour) < static_cast<OrvUint32>(kHoursPerDay)) &
                      (static_cast<OrvUint32>(d->month) - 1u < static_cast<OrvUint32>(kMonthsPerYear));
    return time && (static_cast<OrvUint32>(d->monthDay) - 1u < 28u || DayInMonth(d->year, d->month, d->monthDay));
}

// Seconds since 1970-01-01T00:00 local of the stored fields, month 1..12.
inline OrvInt64 LocalSecondsOf(const OrvDateTime* d)
{
    return LocalSecondsFromDays(DaysFromCivil(d->year, d->month, d->monthDay), d->hour, d->min, d->sec);
}

// The instant secs * 1e9 + nanosec - offset, false when it leaves the 64-bit range. In
// the first second of the instant range (floor second kMinInstantSecond - 1) secs * 1e9
// alone lies below it, so a negative secs lends one second to the nanosecond part.
inline bool WallOf(OrvInt64 secs, OrvInt nanosec, OrvTime offset, OrvTime* wall)
{
    const OrvInt64 lent = secs < 0 ? 1 : 0;
    OrvInt64 adj = 0;
    return secs <= kMaxInstantSecond && secs >= kMinInstantSecond - 1 &&
           !__builtin_sub_overflow(OrvInt64{nanosec} - lent * kNanosecondsPerSecond, offset, &adj) &&
           !__builtin_add_overflow((secs + lent) * kNanosecondsPerSecond, adj, wall);
}

[[gnu::cold, gnu::noinline]] void LogWallWraps(const OrvDateTime* d)
{
    OrvLogDoFormatted_(ORV_LOGLEVEL_INFO, OrvLogCalendar_, kLogFile, __LINE__, "OrvDateTimeSetWallFromFields",
                       "Can't set wall time for time %d-%02d-%02d %02d:%02d:%02d.%09d with offset %lld: would wrap",
                       d->year, d->month, d->monthDay, d->hour, d->min, d->sec, d->nanosec,
                       static_cast<long long>(d->offset));
}

// OrvDateTimeSetWallFromFields with the local seconds at hand.
inline void SetWallFromLocalSeconds(OrvDateTime* d, OrvInt64 secs)
{
    // Exactly ORV_TIME_INVALID counts as not representable, silently.
    if (WallOf(secs, d->nanosec, d->offset, &d->wallTime)) return;
    LogWallWraps(d);
    d->wallTime = ORV_TIME_INVALID;
}

[[gnu::noinline]] void CarryFields(OrvDateTime* d)
{
    Reading r{d->year, d->month, d->monthDay, d->hour, d->min, d->sec, d->nanosec};
    CarryReading(&r); // |year| < 2^32
    StoreFields(d, r);
}

// The instant is known and d->offset is the zone's answer for the fields; the zone is
// asked for the offset at the instant. The same answer: consistent. Otherwise the local
// time is one the zone skips or repeats: the instant stands, the fields follow it.
bool Confirm(OrvDateTime* d)
{
    const OrvTime offset2 = OrvTimezoneGetOffsetInline(&d->tz, d->wallTime);
    if (offset2 == d->offset) return true;
    d->offset = offset2;
    if (offset2 != ORV_TIME_INVALID && orv::detail::SetFieldsFromWall(d)) return true;
    // No offset at the instant, or fields that cannot follow it: the fields stay pending,
    // so the next reader fails as this one did rather than find the value consistent.
    d->offset = ORV_TIME_INVALID;
    return false;
}

// The instant of normalized fields at local second secs in a zone that must be asked
// through its plug-in, or whose offset is already known.
[[gnu::noinline]] bool SettleInZone(OrvDateTime* d, OrvInt64 secs)
{
    if (d->offset == ORV_TIME_INVALID) {
        d->offset = OrvTimezoneGetOffsetFromFieldsInline(&d->tz, d->year, d->month, d->monthDay, d->hour, d->min,
                                                         d->sec, d->nanosec);
        if (d->offset == ORV_TIME_INVALID) return false;
    }
    SetWallFromLocalSeconds(d, secs);
    return d->wallTime == ORV_TIME_INVALID || Confirm(d);
}

// OrvDateTimeNormalizeAndSetWall for a value that is not consistent, compiled into the
// two entries of this file that settle fields: the global UTC zone's case and a
// database zone's in place.
inline bool Settle(OrvDateTime* d)
{
    if (!d->normalized) {
        if (FieldsInRange(d)) [[likely]]
            d->normalized = ORV_TRUE;
        else
            CarryFields(d);
    }
    const OrvInt64 secs = LocalSecondsOf(d); // |secs| < 2^59
    OrvTimezoneImpl* const impl = d->tz.impl.ptr;
    if (orv::detail::IsGlobalUtc(&d->tz)) {
        // Both of the zone's answers are 0: the instant follows from the fields alone.
        d->offset = 0;
        SetWallFromLocalSeconds(d, secs);
        return true;
    }
    orv::tzdb::LocalOffset answer;
    if (d->offset == ORV_TIME_INVALID && orv::tzdb::IsTzdbImpl(impl) &&
        orv::tzdb::OffsetOfLocal(impl, secs, d->nanosec, &answer)) {
        // The answer getOffsetFromFields gives; getOffset gives it too at every instant
        // of [answer.from, answer.to].
        d->offset = answer.offset;
        SetWallFromLocalSeconds(d, secs);
        return d->wallTime == ORV_TIME_INVALID || (d->wallTime >= answer.from && d->wallTime <= answer.to) ||
               Confirm(d);
    }
    return SettleInZone(d, secs);
}

} // namespace

OrvBool OrvDateTimeSetFieldsFromWall(OrvDateTime* d)
{
    if (orv::detail::TrySetFieldsFromWall(d)) return ORV_TRUE;
    OrvLogDoFormatted_(ORV_LOGLEVEL_ERROR, OrvLogCalendar_, kLogFile, __LINE__, "OrvDateTimeSetFieldsFromWall",
                       "Can't set fields for wall time %lld with offset %lld: would wrap",
                       static_cast<long long>(d->wallTime), static_cast<long long>(d->offset));
    return ORV_FALSE;
}

// Carrying is done in 64 bits (CarryReading), so no carry overflows whatever the
// 32-bit fields hold.
OrvBool OrvDateTimeNormalizeFields(OrvDateTime* d)
{
    // Fields already in range (the common case of values built from fields) carry nothing.
    if (FieldsInRange(d)) [[likely]]
        d->normalized = ORV_TRUE;
    else
        CarryFields(d);
    return ORV_TRUE;
}

OrvBool OrvDateTimeSetWallFromFields(OrvDateTime* d)
{
    SetWallFromLocalSeconds(d, LocalSecondsFromFields(d->year, d->month, d->monthDay, d->hour, d->min, d->sec));
    return ORV_TRUE;
}

OrvBool OrvDateTimeNormalizeAndSetWall(OrvDateTime* d)
{
    if (orv::detail::IsConsistent(d)) return ORV_TRUE;
    return Settle(d) ? ORV_TRUE : ORV_FALSE;
}

OrvDateTime* OrvDateTimeConstructFields(OrvDateTime* d, OrvInt year, OrvInt month, OrvInt day, OrvInt hour,
                                        OrvInt minute, OrvInt second, OrvInt nanosecs, const OrvTimezone* tz)
{
    orv::detail::TakeZone(d, tz);
    orv::detail::StoreReading(d, year, month, day, hour, minute, second, nanosecs);
    d->normalized = ORV_FALSE;
    d->wallTime = ORV_TIME_INVALID;
    d->offset = ORV_TIME_INVALID;
    if (!Settle(d)) {
        OrvTimezoneDestruct(&d->tz);
        return nullptr;
    }
    return d;
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
