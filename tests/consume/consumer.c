/* A program built against the installed library: prints a date carried into range. */
#include <Orv/Calendar/OrvDateTime.h>

#include <stdio.h>

int main(void)
{
    OrvDateTime d;
    if (OrvDateTimeConstructFields(&d, 2024, 13, 1, 0, 0, 0, 0, OrvFixedTimezoneGetUTC()) == NULL) return 1;
    printf("%04d-%02d-%02d %lld\n", d.year, d.month, d.monthDay, (long long)d.wallTime);
    OrvDateTimeDestruct(&d);
    return 0;
}
