/*
 * OrvFixedTimezone.h - zones at a constant offset, and the library's global UTC zone.
 *
 * The global UTC zone lives for the whole process and its handle is uncounted, so
 * copying it costs nothing. A fixed zone built with OrvFixedTimezoneConstruct is an
 * ordinary counted zone whose object comes from the given allocator. The shared fixed
 * zones, one for every whole-minute offset from -23:59 to +23:59, also live for the
 * whole process behind uncounted handles; the text readers put values in them.
 *
 *     OrvTimezone plus0530;
 *     OrvFixedTimezoneConstruct(&plus0530, (5 * 3600 + 30 * 60) * ORV_TIME_NANOSECONDS_PER_SECOND,
 *                               OrvAllocatorGetDefault());
 *     ...
 *     OrvTimezoneDestruct(&plus0530);
 */
#ifndef ORV_CALENDAR_ORVFIXEDTIMEZONE_H
#define ORV_CALENDAR_ORVFIXEDTIMEZONE_H

#include "Orv/Calendar/OrvTimezone.h"

ORV_EXTERN_C_BEGIN

/** The handle of the global UTC zone (offset 0 always). Never null. Copy it with
 *  OrvTimezoneConstructCopy or OrvTimezoneAssign; do not destruct or change it. */
ORV_API OrvTimezone* OrvFixedTimezoneGetUTC(void);
/** True when tz designates the global UTC zone. A fixed zone at offset 0 is not it. */
ORV_API OrvBool OrvFixedTimezoneIsGlobalUTC(const OrvTimezone* tz);
/** A zone at the constant offset (nanoseconds east of UTC) for every instant and
 *  reading. Returns tz; null when tz or a is null, when the allocation fails, or when
 *  the offset is ORV_TIME_INVALID or not below one day in magnitude. */
ORV_API OrvTimezone* OrvFixedTimezoneConstruct(OrvTimezone* tz, OrvTime offset, OrvAllocator* a);
/** The process-wide shared zone at the constant offset (nanoseconds east of UTC), for
 *  a whole number of minutes from -23:59 to +23:59; null for any other offset. The
 *  handle is uncounted, like the global UTC zone's: copy it freely, do not destruct or
 *  change it. The same offset always gives the same handle; the zone at offset 0 is
 *  not the global UTC zone. Never allocates; safe from any thread.
 *      const OrvTimezone* plus2 = OrvFixedTimezoneGetShared(2 * ORV_TIME_NANOSECONDS_PER_HOUR);
 *      OrvDateTimeConstruct(&d, 0, plus2);   // 1970-01-01T02:00:00+02:00 */
ORV_API const OrvTimezone* OrvFixedTimezoneGetShared(OrvTime offset);

ORV_EXTERN_C_END

#endif /* ORV_CALENDAR_ORVFIXEDTIMEZONE_H */
