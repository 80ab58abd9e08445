// Module-internal operations of the date-time value, shared by its source files (and
// reachable by the tests and benchmarks, which link the library statically).
#ifndef ORV_SRC_CALENDAR_ORVDATETIMEINTERNAL_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMEINTERNAL_HPP

#include "Orv/Calendar/OrvDateTime.h"

#include "Calendar/CalendarMath.hpp"
#include "Timezone/GlobalUtc.hpp"

extern "C" {

// Fields from wallTime + offset. False (error logged, nothing changed) when wallTime is
// invalid or the sum leaves the 64-bit range. detail::SetFieldsFromWall is the same
// with its common case compiled in place.
OrvBool OrvDateTimeSetFieldsFromWall(OrvDateTime* d);
// Brings the value to the consistent state, or to "instant not representable". False
// when the zone gives no offset, or when re-deriving the fields fails.
OrvBool OrvDateTimeNormalizeAndSetWall(OrvDateTime* d);
// Carries out-of-range fields into range. Always true.
OrvBool OrvDateTimeNormalizeFields(OrvDateTime* d);
// wallTime from the (normalized) fields and a real offset; ORV_TIME_INVALID, with an
// info line, when the instant is not representable. Always true.
OrvBool OrvDateTimeSetWallFromFields(OrvDateTime* d);
// Day of the year of the stored date, 1..366 for in-range fields; no normalization.
OrvInt OrvDateTimeCalculateDayOfYear(const OrvDateTime* d);
// The text-form parser behind the four text entries: cstr holds len characters.
// Refuses before touching d when the shape or a field is wrong; afterwards d holds
// the parsed fields (and UTC for a Z) even when it refuses, so callers restore it.
OrvBool OrvDateTimeDoSetString_(OrvDateTime* d, const char* cstr, OrvSizeT len);

} // extern "C"

namespace orv::detail {

// The consistent state, tested inline so that readers of consistent values pay three
// comparisons and no call.
inline bool IsConsistent(const OrvDateTime* d)
{
    return d->normalized && d->wallTime != ORV_TIME_INVALID && d->offset != ORV_TIME_INVALID;
}

// OrvDateTimeNormalizeAndSetWall for readers that hold the value read-only: the value
// is brought up to date in place, as every reader of the module does.
inline bool Normalize(const OrvDateTime* d)
{
    return IsConsistent(d) || OrvDateTimeNormalizeAndSetWall(const_cast<OrvDateTime*>(d));
}

// OrvDateTimeLess with its common case, two consistent values, compiled in place: the
// containers ask it on every step of a search.
inline bool Less(const OrvDateTime* a, const OrvDateTime* b)
{
    if (IsConsistent(a) && IsConsistent(b)) return a->wallTime < b->wallTime;
    return OrvDateTimeLess(a, b) != ORV_FALSE;
}

// Stores the seven fields of a reading as they stand (no check, no flag changed).
inline void StoreReading(OrvDateTime* d, OrvInt year, OrvInt month, OrvInt day, OrvInt hour, OrvInt minute,
                         OrvInt second, OrvInt nanosecond)
{
    d->nanosec = nanosecond;
    d->sec = second;
    d->min = minute;
    d->hour = hour;
    d->monthDay = day;
    d->month = month;
    d->year = year;
}

// The same for a 64-bit reading whose fields are in range; the year wraps modulo 2^32
// beyond the 32-bit years.
inline void StoreReading(OrvDateTime* d, const cal::Reading& r)
{
    StoreReading(d, static_cast<OrvInt>(r.year), static_cast<OrvInt>(r.month), static_cast<OrvInt>(r.day),
                 static_cast<OrvInt>(r.hour), static_cast<OrvInt>(r.minute), static_cast<OrvInt>(r.second),
                 static_cast<OrvInt>(r.nanosecond));
}

// OrvTimezoneConstructCopy compiled in place: the handle, and one more use when it is
// counted (shared and global zones are not).
inline void CopyZoneHandle(OrvTimezone* tz, const OrvTimezone* orig)
{
    tz->impl = orig->impl;
    if (tz->impl.ref != nullptr) OrvSharedPtrRefCountIncUseCount(tz->impl.ref);
}

// OrvDateTimeSetFieldsFromWall without the log line: false, nothing changed, when
// wallTime is invalid or wallTime + offset leaves the 64-bit range.
inline bool TrySetFieldsFromWall(OrvDateTime* d)
{
    OrvInt64 local;
    if (d->wallTime == ORV_TIME_INVALID || __builtin_add_overflow(d->wallTime, d->offset, &local)) return false;
    StoreReading(d, cal::ReadingFromLocalNanoseconds(local));
    d->normalized = ORV_TRUE;
    return true;
}

// OrvDateTimeSetFieldsFromWall, the common case in place, the failure (and its log
// line) out of line.
inline bool SetFieldsFromWall(OrvDateTime* d) { return TrySetFieldsFromWall(d) || OrvDateTimeSetFieldsFromWall(d); }

// Takes the zone for a new value: tz, or the global UTC zone and floating when tz is
// null; Monday and 4 for the week settings.
inline void TakeZone(OrvDateTime* d, const OrvTimezone* tz)
{
    d->floating = tz == nullptr ? ORV_TRUE : ORV_FALSE;
    CopyZoneHandle(&d->tz, tz != nullptr ? tz : OrvFixedTimezoneGetUTC());
    d->firstDayOfWeek = ORV_WEEKDAY_Monday;
    d->minimalDaysInFirstWeek = 4;
}

} // namespace orv::detail

#endif // ORV_SRC_CALENDAR_ORVDATETIMEINTERNAL_HPP
