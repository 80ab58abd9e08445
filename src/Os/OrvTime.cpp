// The current instant from the system's real-time clock.
#include "Orv/Os/OrvTime.h"

#include <time.h>

OrvTime OrvTimeNow(void)
{
    struct timespec ts {};
    if (clock_gettime(CLOCK_REALTIME, &ts) != 0) return ORV_TIME_INVALID;
    // Seconds past 2262 do not fit (no real clock gets there).
    OrvTime ns = 0;
    if (__builtin_mul_overflow(static_cast<OrvTime>(ts.tv_sec), ORV_TIME_NANOSECONDS_PER_SECOND, &ns) ||
        __builtin_add_overflow(ns, static_cast<OrvTime>(ts.tv_nsec), &ns) || ns == ORV_TIME_INVALID)
        return ORV_TIME_INVALID;
    return ns;
}
