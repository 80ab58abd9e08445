/*
 * OrvDateTime.h - the date-time value, and the vector and ordered set of such values.
 *
 * Conventions
 *  1. Storage. The caller owns the storage of every value, vector and set. A
 *     constructor fills it and returns its address, or returns null after releasing
 *     whatever it took; storage whose constructor failed holds nothing and must not
 *     be destructed. Every constructed object ends with its Destruct.
 *  2. Results. Operations that can fail return OrvBool ORV_FALSE; readers returning
 *     OrvInt give -1 for a bad selector or a failed normalization; readers returning
 *     OrvTime give ORV_TIME_INVALID for "no answer".
 *  3. Instants. wallTime counts nanoseconds since 1970-01-01T00:00:00 UTC, so
 *     instants exist from 1677-09-21 to 2262-04-11. A value whose date lies outside
 *     keeps its fields and reports ORV_TIME_INVALID as its instant.
 *  4. Laziness. Field writers leave the fields as the authority; the next reader
 *     carries them into range and works out offset and instant. Readers therefore
 *     write to the value even through a const pointer.
 *  5. Zones. A value holds one counted reference to its zone. A floating value (built
 *     without a zone) holds the global UTC zone and reports no zone and no offset.
 *  6. Calendar. Proleptic Gregorian for every year, days of exactly 86400 seconds,
 *     no leap seconds. Divisions round towards minus infinity.
 *  7. Threads. No locks. A value, vector or set must not be used from two threads
 *     at once, reads included; values on different threads may share a zone.
 *  8. Memory. Only the vector and the set allocate, always through the caller's
 *     OrvAllocator, returning each block with the byte size it was obtained with.
 *  9. Booleans. An OrvBool the library reads (the normalized and floating members of
 *     a value, a callback's answer) is true when it is nonzero, whatever its value.
 *     The OrvBool results are ORV_TRUE (1) or ORV_FALSE (0), except that
 *     OrvDateTimeIsFloating returns the floating member as it is stored.
 * 10. Null pointers. A zone argument tz may be null where its function says what null
 *     means (floating). Every other pointer argument must point to a valid object: a
 *     constructed value, vector, set or string, zero-terminated text, a weekday; null
 *     is not checked for. (The containers' null iterator is their own: see their
 *     headers.)
 *
 * Example:
 *
 *     OrvDateTime d;
 *     OrvDateTimeConstructFields(&d, 2024, 13, 1, 0, 0, 0, 0, OrvFixedTimezoneGetUTC());
 *     // month 13 of 2024 carried: d reads 2025-01-01, instant 1735689600000000000
 *     OrvTime t = OrvDateTimeGetWallTime(&d);
 *     OrvDateTimeDestruct(&d);
 */
#ifndef ORV_CALENDAR_ORVDATETIME_H
#define ORV_CALENDAR_ORVDATETIME_H

#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Calendar/OrvTimezone.h"
#include "Orv/Os/OrvTime.h"
#include "Orv/Utils/OrvAllocator.h"
#include "Orv/Utils/OrvString.h"

ORV_EXTERN_C_BEGIN

/** Days of the week; also the first day of a week for week numbering. A signed 32-bit
 *  type in C and C++: any other number is a valid value that no function accepts as
 *  a weekday. */
typedef enum OrvWeekday ORV_ENUM_BASE(OrvInt) {
    ORV_WEEKDAY_NoWeekday = -1,
    ORV_WEEKDAY_Sunday = 0,
    ORV_WEEKDAY_Monday = 1,
    ORV_WEEKDAY_Tuesday = 2,
    ORV_WEEKDAY_Wednesday = 3,
    ORV_WEEKDAY_Thursday = 4,
    ORV_WEEKDAY_Friday = 5,
    ORV_WEEKDAY_Saturday = 6
} OrvWeekday;
ORV_ENUM_SIZE_CHECK(OrvWeekday);

/** Field selectors, an unsigned 32-bit type in C and C++. A selector above
 *  ORV_DATETIMEFIELD_DayOfYear is invalid everywhere. */
typedef enum OrvDateTimeField ORV_ENUM_BASE(OrvUint32) {
    ORV_DATETIMEFIELD_Nanosecond = 0,
    ORV_DATETIMEFIELD_Second = 1,
    ORV_DATETIMEFIELD_Minute = 2,
    ORV_DATETIMEFIELD_Hour = 3,
    ORV_DATETIMEFIELD_DayOfWeek = 4,
    ORV_DATETIMEFIELD_DayOfMonth = 5,
    ORV_DATETIMEFIELD_Month = 6,
    ORV_DATETIMEFIELD_Year = 7,
    ORV_DATETIMEFIELD_WeekOfMonth = 8,
    ORV_DATETIMEFIELD_WeekOfYear = 9,
    ORV_DATETIMEFIELD_DayOfYear = 10
} OrvDateTimeField;
ORV_ENUM_SIZE_CHECK(OrvDateTimeField);

/**
 * The date-time value (96 bytes). Members are public layout; use the functions.
 *
 * States between operations:
 *  - consistent: normalized, and neither wallTime nor offset is ORV_TIME_INVALID; the
 *    fields are the calendar reading of wallTime + offset;
 *  - fields pending: !normalized or offset == ORV_TIME_INVALID; the fields (possibly
 *    out of range, month 13, hour -1) are the authority;
 *  - instant not representable: normalized, offset real, wallTime ORV_TIME_INVALID.
 */
typedef struct OrvDateTime {
    OrvInt nanosec;   /* 0..999999999 once normalized */
    OrvInt sec;       /* 0..59 */
    OrvInt min;       /* 0..59 */
    OrvInt hour;      /* 0..23 */
    OrvInt monthDay;  /* 1..length of the month */
    OrvInt month;     /* 1..12 */
    OrvInt year;      /* proleptic Gregorian */
    OrvTime wallTime; /* the instant, ns since 1970-01-01T00:00:00 UTC */
    OrvTime offset;   /* local minus UTC at that instant, ns */
    OrvTimezone tz;   /* one counted reference */
    OrvWeekday firstDayOfWeek;     /* Sunday..Saturday; Monday by default */
    OrvInt minimalDaysInFirstWeek; /* 1..7; 4 by default (ISO 8601) */
    OrvBool normalized;
    OrvBool floating;
} OrvDateTime;

/* ---------------------------------------------------------------------------------
 * Construction, copy and release
 * ------------------------------------------------------------------------------ */

/** 1970-01-01T00:00:00Z in the global UTC zone (not floating), Monday/4. Returns d. */
ORV_API OrvDateTime* OrvDateTimeConstructDefault(OrvDateTime* d);

/** The instant t read in tz, or floating (read as UTC) when tz is null.
 *  Null when the zone has no offset at t, when t is ORV_TIME_INVALID, or when t plus
 *  the offset leaves the 64-bit range (logged as an error).
 *      OrvDateTimeConstruct(&d, 0, NULL);   // 1970-01-01T00:00:00, floating */
ORV_API OrvDateTime* OrvDateTimeConstruct(OrvDateTime* d, OrvTime t, const OrvTimezone* tz);

/** The current instant (OrvTimeNow) read in tz, or floating (read as UTC) when tz is
 *  null. Null when the clock cannot be read, or as OrvDateTimeConstruct.
 *      OrvDateTimeConstructNow(&d, OrvTzdbTimezoneGetSharedLocal());   // local time now */
ORV_API OrvDateTime* OrvDateTimeConstructNow(OrvDateTime* d, const OrvTimezone* tz);

/** The local reading given by the fields in tz (floating when tz is null), carried
 *  into range: month 13 of 2024 is January 2025, day 0 the last day of the month
 *  before, hour -1 23:00 of the day before. A reading the zone skips moves forward
 *  by the zone's correction. A date outside the instant range is built with its
 *  fields and ORV_TIME_INVALID as its instant (logged at info level).
 *  Null only when the zone has no offset for the reading or its instant, or when the
 *  zone corrects the reading (its offset at the reading's instant differs from the
 *  one it gave for the reading, as for a skipped reading) and the fields can then not
 *  be worked out again: the instant plus the corrected offset leaves the 64-bit range
 *  (only within a zone's offset of the ends of the instant range; logged as an error).
 *
 *  Fields near the 32-bit limits: carrying is exact (done in 64-bit arithmetic), in
 *  constant time whatever the size of a field. When the carried year does not fit
 *  in 32 bits it wraps modulo 2^32; no input crashes. */
ORV_API OrvDateTime* OrvDateTimeConstructFields(OrvDateTime* d, OrvInt year, OrvInt month, OrvInt day,
                                                OrvInt hour, OrvInt minute, OrvInt second, OrvInt nanosecs,
                                                const OrvTimezone* tz);

/** A copy of orig, taking one more reference to its zone; orig is not normalized
 *  first. Never fails. Returns d. */
ORV_API OrvDateTime* OrvDateTimeConstructCopy(OrvDateTime* d, const OrvDateTime* orig);
/** Makes the constructed d a copy of orig (zone reference moved as needed). Returns d. */
ORV_API OrvDateTime* OrvDateTimeAssign(OrvDateTime* d, const OrvDateTime* orig);
/** Drops d's zone reference. */
ORV_API void OrvDateTimeDestruct(OrvDateTime* d);

/** d's own zone handle (valid while d lives), or null for a floating value. */
ORV_API const OrvTimezone* OrvDateTimeGetTimezone(const OrvDateTime* d);
/** True for a value that belongs to no zone. */
ORV_API OrvBool OrvDateTimeIsFloating(const OrvDateTime* d);
ORV_API OrvWeekday OrvDateTimeGetFirstDayOfWeek(const OrvDateTime* d);
/** Stores w when it is Sunday..Saturday; false and nothing changed otherwise. */
ORV_API OrvBool OrvDateTimeSetFirstDayOfWeek(OrvDateTime* d, OrvWeekday w);
ORV_API OrvInt OrvDateTimeGetMinimalDaysInFirstWeek(OrvDateTime* d);
/** Stores days when it is 1..7; false and nothing changed otherwise. */
ORV_API OrvBool OrvDateTimeSetMinimalDaysInFirstWeek(OrvDateTime* d, OrvInt days);

/** Days from 1970-01-01 to d's stored local date, read as it stands (no
 *  normalization). For the library's own use. A month outside 1..12 is carried into
 *  the year for this count; the stored fields are not changed. */
ORV_API OrvTime OrvDateTimeGetDaysSincePosixEpoch_(const OrvDateTime* d);

/* ---------------------------------------------------------------------------------
 * Zone, offset and instant
 * ------------------------------------------------------------------------------ */

/** Moves d to zone tz, keeping its local date and time; tz null makes it floating (read
 *  as UTC, reporting no zone and no offset). The instant is worked out again, so it
 *  changes by the difference of the two zones' offsets; a local time the new zone
 *  skips moves forward by the zone's correction. True and nothing changed when tz is
 *  d's own zone, or tz is null and d already floats. A floating value given any zone,
 *  the global UTC zone included, stops floating. A date outside the instant range
 *  counts as success (its instant stays ORV_TIME_INVALID).
 *  False when the new zone has no offset for the reading or for its instant, or when
 *  the new zone corrects the reading and the fields can then not be worked out again
 *  (the instant plus the corrected offset leaves the 64-bit range; logged as an
 *  error, as for OrvDateTimeConstructFields): d keeps its old zone, floating flag and
 *  fields (carried into range), and the new zone keeps no reference from d.
 *      // d reads 2024-07-01 12:00 at +02:00; moved to a -04:00 zone it still reads
 *      // 2024-07-01 12:00, and its instant is 6 hours later */
ORV_API OrvBool OrvDateTimeSetTimezone(OrvDateTime* d, const OrvTimezone* tz);

/** Moves d to zone tz, keeping its instant: the fields become the instant's reading in
 *  tz; tz null makes d floating with its UTC reading as fields. A floating d's instant
 *  is its fields read as UTC. The counterpart of OrvDateTimeSetTimezone, which keeps
 *  the reading and moves the instant. The week settings are kept.
 *  False, with d unchanged (only normalized), when d has no instant (its zone has no
 *  offset, or its date lies outside 1677-09-21 .. 2262-04-11), when tz has no offset
 *  at that instant, or when the reading would leave the 64-bit range.
 *      // d reads 2024-07-01 12:00 at +02:00; converted to a -04:00 zone it reads
 *      // 2024-07-01 06:00 and denotes the same instant */
ORV_API OrvBool OrvDateTimeConvertToTimezone(OrvDateTime* d, const OrvTimezone* tz);

/** The zone's offset at d's instant (local minus UTC, ns, east positive).
 *  ORV_TIME_INVALID for a floating value and when the zone has no offset. */
ORV_API OrvTime OrvDateTimeGetOffset(const OrvDateTime* d);

/** The offset d's arithmetic uses: as OrvDateTimeGetOffset, but 0 for a floating value.
 *  ORV_TIME_INVALID only when the zone has no offset. */
ORV_API OrvTime OrvDateTimeGetCurrentUTCOffset(OrvDateTime* d);

/** The instant d denotes (ns since 1970-01-01T00:00:00 UTC); a floating value's fields
 *  are read as UTC. ORV_TIME_INVALID when the zone has no offset or the date lies
 *  outside 1677-09-21 .. 2262-04-11 (a caller cannot tell these apart). */
ORV_API OrvTime OrvDateTimeGetWallTime(const OrvDateTime* d);

/** Sets the instant, keeping the zone: the fields become the local reading of t.
 *  False, with d unchanged, when the zone has no offset at t, when t is
 *  ORV_TIME_INVALID, or when t plus the offset leaves the 64-bit range (logged).
 *      OrvDateTimeSetWallTime(&d, 0);   // in a +01:00 zone: 1970-01-01 01:00:00 */
ORV_API OrvBool OrvDateTimeSetWallTime(OrvDateTime* d, OrvTime t);

/** True when d holds the global UTC zone, floating values included. A value in another
 *  zone is not UTC even where its offset is 0. Does not normalize. */
ORV_API OrvBool OrvDateTimeIsUTC(const OrvDateTime* d);

/* ---------------------------------------------------------------------------------
 * Fields, week numbering and ranges
 * ------------------------------------------------------------------------------ */

/** Reads one field, normalizing d in place first. Day of week 0 (Sunday) .. 6; week
 *  of month 0 .. 6 (days before the month's first counted week are week 0); week of
 *  year 1 .. 53 (the days of a week that belongs to the neighbouring year carry that
 *  year's number); day of year 1 .. 366. Weeks start on d's first day of week, and a
 *  period's opening partial week is week 1 when it has at least d's minimal days.
 *  -1 for a selector above ORV_DATETIMEFIELD_DayOfYear or when the zone has no offset
 *  (a stored year -1 also reads -1).
 *      // Monday/4 (ISO 8601): 2021-01-01 is in week 53, 2024-12-30 in week 1 */
ORV_API OrvInt OrvDateTimeGetField(const OrvDateTime* d, OrvDateTimeField f);

/** Stores val, unchecked, into a stored field (nanosecond .. year, not day of week);
 *  the next reader carries it into range and asks the zone for the new reading's
 *  offset. False, with nothing changed, for a derived field or a bad selector.
 *      // on 2023-02-10: set day of month 31, then read: 2023-03-03 */
ORV_API OrvBool OrvDateTimeSetField(OrvDateTime* d, OrvDateTimeField f, OrvInt val);

/** Adds inc to a field and normalizes. Nanoseconds to hours count elapsed time (the
 *  instant moves by exactly the amount, so 1 hour across a clock change moves the
 *  local reading by 0 or 2 hours); the date fields keep the local wall-clock reading
 *  and take the zone's offset for the new date. Day of week and day of year add days,
 *  week of month and week of year add 7 * inc days. No clamping: 1 month on
 *  2023-01-31 gives 2023-03-03. An inc of 0 is true at once, whatever f and d.
 *  Any inc is carried exactly, even where the plain sum leaves the 32-bit range of
 *  the field (2147483647 nanoseconds is 2.147483647 s).
 *  False for a bad selector, when the zone has no offset (before the addition: d only
 *  normalized; after: the sum stays in the fields), and, with d unchanged, when the
 *  resulting year would not fit an OrvInt. */
ORV_API OrvBool OrvDateTimeAddToField(OrvDateTime* d, OrvDateTimeField f, OrvInt inc);

/** The least value the field takes in any value (d is not read): 0, or 1 for day of
 *  month, month, week of year and day of year, 1677 for the year. -1 for a bad
 *  selector. */
ORV_API OrvInt OrvDateTimeGetMinimum(const OrvDateTime* d, OrvDateTimeField f);

/** The greatest value the field takes in any value (d is not read): 999999999, 59, 59,
 *  23, 6, 31, 12, 2262, 6, 53, 366 in selector order. -1 for a bad selector. The year
 *  bounds are the years in which the instant range begins and ends. */
ORV_API OrvInt OrvDateTimeGetMaximum(const OrvDateTime* d, OrvDateTimeField f);

/** The same as OrvDateTimeGetMinimum (d is not read). */
ORV_API OrvInt OrvDateTimeGetActualMinimum(const OrvDateTime* d, OrvDateTimeField f);

/** The greatest value the field takes within d's own month and year, normalizing d in
 *  place first: day of month the length of d's month, day of year the length of its
 *  year; week of month the week number of the month's last day (4 .. 6); week of year
 *  the number of weeks (52 or 53) of the week-numbering year that holds d's week, under
 *  d's week settings, so the week d reads never exceeds it (2021-01-01, in week 53 of
 *  2020 under Monday/4, gives 53). Other fields: as OrvDateTimeGetMaximum.
 *  0 when the zone has no offset (whatever f); -1 for a bad selector. */
ORV_API OrvInt OrvDateTimeGetActualMaximum(const OrvDateTime* d, OrvDateTimeField f);

/* ---------------------------------------------------------------------------------
 * Equality and ordering
 * ------------------------------------------------------------------------------ */

/** True when a and b denote the same instant; the zones, the floating flag and the
 *  week settings play no part (10:00 at +01:00 equals 09:00Z). When either value has no
 *  instant (a date outside 1677-09-21 .. 2262-04-11) the calendar fields read in UTC are
 *  compared instead. Normalizes both in place. False when a zone has no offset, so
 *  such a value is not even equal to itself. */
ORV_API OrvBool OrvDateTimeEqual(const OrvDateTime* a, const OrvDateTime* b);

/** True when a comes strictly before b: by instant, or by the fields read in UTC when
 *  either has no instant, so dates outside the instant range sort before or after every
 *  other value. A strict weak ordering for values whose zones give offsets; false when a
 *  zone has none. Normalizes both in place; on consistent values it is a comparison of
 *  two instants, with no copy and no reference count. */
ORV_API OrvBool OrvDateTimeLess(const OrvDateTime* a, const OrvDateTime* b);

/* ---------------------------------------------------------------------------------
 * Text form and weekday codes
 * ------------------------------------------------------------------------------ */

/* The text form is exactly 15 or 16 characters: YYYYMMDD, an upper-case T, HHMMSS and
 * an optional upper-case Z for UTC. No fraction of a second, no numeric offset. Text
 * without Z is a local reading in the receiving value's zone, or floating. */

/** Writes d as text into str, replacing its content: "20240501T093000Z" when d is in
 *  the global UTC zone (floating values included), "20240501T093000" otherwise. The
 *  stored fields are written as they stand, without normalizing (a pending month 13
 *  shows as 13); nanoseconds are not written. False when str cannot grow. */
ORV_API OrvBool OrvDateTimeGetString(const OrvDateTime* d, OrvString* str);

/** Builds d from the text in str. Text with Z gives a UTC value whatever tz is; text
 *  without Z is read in tz, or floating when tz is null. Null, with nothing held, when
 *  the text is not the text form or names a reading that does not exist as written
 *  (30 February, hour 24, second 60, a local time the zone skips).
 *  Each field is read as strtoul reads it in base 10 and must fill its width exactly,
 *  so "+024" or " 024" read as the year 24 while "2024-05-01" is refused. */
ORV_API OrvDateTime* OrvDateTimeConstructString(OrvDateTime* d, const OrvString* str, const OrvTimezone* tz);

/** OrvDateTimeConstructString for a zero-terminated string.
 *      OrvDateTimeConstructCStr(&d, "20240501T093000Z", NULL);  // UTC, not floating
 *      OrvDateTimeConstructCStr(&d, "20240501T093000", NULL);   // floating */
ORV_API OrvDateTime* OrvDateTimeConstructCStr(OrvDateTime* d, const char* str, const OrvTimezone* tz);

/** Replaces the value of the constructed d with the text in str. Text with Z moves d
 *  to UTC; text without Z is read in d's own zone (floating stays floating). The week
 *  settings are kept. False when the text is refused (as for OrvDateTimeConstructString);
 *  d, its zone reference and its floating flag are then exactly as before. */
ORV_API OrvBool OrvDateTimeSetString(OrvDateTime* d, const OrvString* str);

/** OrvDateTimeSetString for a zero-terminated string. */
ORV_API OrvBool OrvDateTimeSetCStr(OrvDateTime* d, const char* str);

/** Reads a two-letter weekday code, ignoring case ("SU", "mo", "Tu", ...), into *w and
 *  returns w. Anything else ("SUN", "", " MO") stores ORV_WEEKDAY_NoWeekday and
 *  returns null. */
ORV_API OrvWeekday* OrvWeekdayConstructCStr(OrvWeekday* w, const char* str);

/** Appends the upper-case code of *w ("WE" for ORV_WEEKDAY_Wednesday) to str. False,
 *  with str unchanged, for a weekday outside Sunday..Saturday or when str cannot grow. */
ORV_API OrvBool OrvWeekdayAppendToString(const OrvWeekday* w, OrvString* str);

ORV_EXTERN_C_END

/* ---------------------------------------------------------------------------------
 * Containers: OrvVector_OrvDateTime and OrvSet_OrvDateTime
 * ------------------------------------------------------------------------------ */

/* OrvVector_OrvDateTime: a growable array of date-time values held by copy, every
 * element with its own zone reference; growth policy, failure results and every
 * operation in Orv/Calendar/OrvDateTimeVector.h. OrvSet_OrvDateTime: an ordered set of
 * date-time values with unique keys, ordered by OrvDateTimeLess; every operation in
 * Orv/Calendar/OrvDateTimeSet.h. Both headers come with this one. */
#include "Orv/Calendar/OrvDateTimeSet.h"
#include "Orv/Calendar/OrvDateTimeVector.h"
#include "Orv/Calendar/OrvDateTimeText.h"

#endif /* ORV_CALENDAR_ORVDATETIME_H */
