/* A zone of the system's time-zone database on its two clock-change nights: 02:30 is
 * skipped in March and repeated in October. OrvTzdbTimezoneLookup tells such readings
 * apart; a value built from them takes the offset in force before the change. */
#include <Orv/Calendar/OrvDateTime.h>
#include <Orv/Calendar/OrvTzdbTimezone.h>

#include <stdio.h>

#define MINUTES(t) ((long long)((t) / ORV_TIME_NANOSECONDS_PER_MINUTE))

static void Print(const char* what, const OrvDateTime* d)
{
    printf("  %-24s %04d-%02d-%02d %02d:%02d, offset %+lld min\n", what, d->year, d->month, d->monthDay, d->hour,
           d->min, MINUTES(OrvDateTimeGetOffset(d)));
}

/* Classifies 02:30 on the given day of 2024 in zone and shows the values it gives. */
static int Explain(const OrvTimezone* zone, int month, int day)
{
    OrvTzdbLookup r;
    OrvDateTime d;
    if (!OrvTzdbTimezoneLookup(zone, 2024, month, day, 2, 30, 0, &r)) return 0;
    printf("2024-%02d-%02d 02:30 %s", month, day,
           r.kind == ORV_TZDBLOOKUPKIND_Unique ? "occurs once\n"
           : r.kind == ORV_TZDBLOOKUPKIND_Skipped ? "is skipped" : "occurs twice");
    if (r.kind != ORV_TZDBLOOKUPKIND_Unique)
        printf(": clocks go from %+lld to %+lld min\n", MINUTES(r.offsetBefore), MINUTES(r.offsetAfter));

    /* Building a value from the reading: a skipped one moves forward by the gap, a
     * repeated one is its first occurrence. */
    if (OrvDateTimeConstructFields(&d, 2024, month, day, 2, 30, 0, 0, zone) == NULL) return 0;
    Print("built from the reading", &d);

    if (r.kind == ORV_TZDBLOOKUPKIND_Repeated) {
        /* The same reading under the offset after the change comes this much later. */
        const OrvTime later = OrvDateTimeGetWallTime(&d) + (r.offsetBefore - r.offsetAfter);
        if (!OrvDateTimeSetWallTime(&d, later)) {
            OrvDateTimeDestruct(&d);
            return 0;
        }
        Print("its second occurrence", &d);
    }
    OrvDateTimeDestruct(&d);
    return 1;
}

int main(void)
{
    OrvTimezone berlin;
    if (OrvTzdbTimezoneConstruct(&berlin, "Europe/Berlin", OrvAllocatorGetDefault()) == NULL) {
        fprintf(stderr, "Europe/Berlin not found: install tzdata or set TZDIR\n");
        return 77; /* skipped, for the test run */
    }
    const int ok = Explain(&berlin, 3, 31) && Explain(&berlin, 10, 27) && Explain(&berlin, 7, 1);
    OrvTimezoneDestruct(&berlin);
    if (!ok) fprintf(stderr, "a reading could not be built\n");
    return ok ? 0 : 1;
}
