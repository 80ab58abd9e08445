/* The smallest tour of the library: instants to fields, fields (carried) to instants. */
#include <Orv/Calendar/OrvDateTime.h>

#include <stdio.h>

static void Print(const char* what, const OrvDateTime* d)
{
    printf("%-34s %04d-%02d-%02d %02d:%02d:%02d.%09d  instant %lld ns\n", what, d->year, d->month, d->monthDay,
           d->hour, d->min, d->sec, d->nanosec, (long long)d->wallTime);
}

int main(void)
{
    OrvDateTime d;
    OrvTimezone plus0530;
    if (OrvFixedTimezoneConstruct(&plus0530, (5 * 3600 + 30 * 60) * ORV_TIME_NANOSECONDS_PER_SECOND,
                                  OrvAllocatorGetDefault()) == NULL)
        return 1;

    OrvDateTimeConstructDefault(&d);
    Print("the epoch", &d);
    OrvDateTimeDestruct(&d);

    OrvDateTimeConstruct(&d, -1, NULL);
    Print("instant -1 ns, floating", &d);
    OrvDateTimeDestruct(&d);

    OrvDateTimeConstruct(&d, INT64_C(1714555800000000000), &plus0530);
    Print("instant 1714555800 s at +05:30", &d);
    OrvDateTimeDestruct(&d);

    OrvDateTimeConstructFields(&d, 2024, 13, 1, 0, 0, 0, 0, OrvFixedTimezoneGetUTC());
    Print("2024-13-01 carried", &d);
    OrvDateTimeDestruct(&d);

    OrvDateTimeConstructFields(&d, 2024, 3, 0, 0, 0, 0, 0, OrvFixedTimezoneGetUTC());
    Print("2024-03-00 carried", &d);
    OrvDateTimeDestruct(&d);

    OrvDateTimeConstructFields(&d, 2024, 1, 1, -1, -1, -1, -1, OrvFixedTimezoneGetUTC());
    Print("2024-01-01 -1h -1m -1s -1ns", &d);
    OrvDateTimeDestruct(&d);

    OrvDateTimeConstructFields(&d, 3000, 1, 1, 0, 0, 0, 0, NULL);
    Print("3000-01-01 (no instant)", &d);
    OrvDateTimeDestruct(&d);

    OrvTimezoneDestruct(&plus0530);
    return 0;
}
