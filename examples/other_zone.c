/* One instant shown in other zones. OrvDateTimeConstruct reads an instant in a zone;
 * OrvDateTimeSetTimezone would instead keep the local reading and move the instant. */
#include <Orv/Calendar/OrvDateTime.h>
#include <Orv/Calendar/OrvTzdbTimezone.h>

#include <stdio.h>

/* Prints the instant t as read in zone, named name. */
static int Show(const char* name, OrvTime t, const OrvTimezone* zone)
{
    OrvDateTime d;
    if (OrvDateTimeConstruct(&d, t, zone) == NULL) return 0;
    const OrvTime offset = OrvDateTimeGetOffset(&d);
    printf("  %-20s %04d-%02d-%02d %02d:%02d:%02d  offset %+lld min\n", name, d.year, d.month, d.monthDay, d.hour,
           d.min, d.sec, (long long)(offset / ORV_TIME_NANOSECONDS_PER_MINUTE));
    OrvDateTimeDestruct(&d);
    return 1;
}

int main(void)
{
    static const char* const kIds[] = {"America/New_York", "Asia/Kolkata", "Australia/Lord_Howe"};
    OrvDateTime utc;
    OrvTimezone fixed;
    if (OrvDateTimeConstructCStr(&utc, "20240501T093000Z", NULL) == NULL) return 1;
    const OrvTime instant = OrvDateTimeGetWallTime(&utc);
    OrvDateTimeDestruct(&utc);
    if (OrvFixedTimezoneConstruct(&fixed, -3 * ORV_TIME_NANOSECONDS_PER_HOUR, OrvAllocatorGetDefault()) == NULL)
        return 1;

    printf("instant %lld ns:\n", (long long)instant);
    int ok = Show("UTC", instant, OrvFixedTimezoneGetUTC()) && Show("fixed -03:00", instant, &fixed);
    OrvTimezoneDestruct(&fixed);
    for (size_t i = 0; ok && i < sizeof kIds / sizeof kIds[0]; ++i) {
        OrvTimezone zone;
        if (OrvTzdbTimezoneConstruct(&zone, kIds[i], OrvAllocatorGetDefault()) == NULL) {
            fprintf(stderr, "%s not found: install tzdata or set TZDIR\n", kIds[i]);
            return 77; /* skipped, for the test run */
        }
        ok = Show(kIds[i], instant, &zone);
        OrvTimezoneDestruct(&zone);
    }
    if (!ok) fprintf(stderr, "an instant could not be read in a zone\n");
    return ok ? 0 : 1;
}
