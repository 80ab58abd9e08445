/*
 * OrvTime.h - the library's time type.
 *
 * An OrvTime is a signed 64-bit count of nanoseconds. As an instant it counts from
 * 1970-01-01T00:00:00 UTC, so instants run from 1677-09-21T00:12:43.145224192 UTC to
 * 2262-04-11T23:47:16.854775807 UTC. As a zone offset it is local time minus UTC,
 * east positive.
 *
 * ORV_TIME_INVALID, the largest OrvTime, is never a real instant or offset: stored,
 * it marks a value as not yet worked out; returned, it means there is no answer.
 *
 * OrvTimeNow reads the current instant.
 */
#ifndef ORV_OS_ORVTIME_H
#define ORV_OS_ORVTIME_H

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

typedef OrvInt64 OrvTime;

#define ORV_TIME_INVALID ((OrvTime)INT64_C(9223372036854775807))

#define ORV_TIME_NANOSECONDS_PER_SECOND ((OrvTime)1000000000)
#define ORV_TIME_NANOSECONDS_PER_MINUTE ((OrvTime)60 * ORV_TIME_NANOSECONDS_PER_SECOND)
#define ORV_TIME_NANOSECONDS_PER_HOUR ((OrvTime)3600 * ORV_TIME_NANOSECONDS_PER_SECOND)
#define ORV_TIME_NANOSECONDS_PER_DAY ((OrvTime)86400 * ORV_TIME_NANOSECONDS_PER_SECOND)

ORV_EXTERN_C_BEGIN

/** The current instant: the system's real-time clock (CLOCK_REALTIME), in nanoseconds
 *  since 1970-01-01T00:00:00 UTC. It follows the system's clock, so it can jump when
 *  the clock is set; measure durations with a monotonic clock instead.
 *  ORV_TIME_INVALID when the clock cannot be read or lies outside the instant range.
 *      OrvTime now = OrvTimeNow();   // e.g. 1714555800123456789 */
ORV_API OrvTime OrvTimeNow(void);

ORV_EXTERN_C_END

#endif /* ORV_OS_ORVTIME_H */
