/* The public API used from a C11 program: values, zones, strings and the log. */
#include "Orv/Calendar/OrvDateTime.h"
#include "support/CCheck.h"
#include "Orv/Os/OrvLog.h"

#include <stdio.h>
#include <string.h>

static int infoLines = 0;

static void Sink(OrvVoidPtr user, OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                 const char* function, const char* message)
{
    (void)user, (void)category, (void)file, (void)line, (void)function, (void)message;
    if (level == ORV_LOGLEVEL_INFO) ++infoLines;
}

int main(void)
{
    OrvDateTime d, copy;
    OrvTimezone east;
    OrvString s;

    CHECK(OrvFixedTimezoneConstruct(&east, ORV_TIME_NANOSECONDS_PER_HOUR, OrvAllocatorGetDefault()) == &east);

    CHECK(OrvDateTimeConstructFields(&d, 2024, 13, 1, 0, 0, 0, 0, &east) == &d);
    CHECK(d.year == 2025 && d.month == 1 && d.monthDay == 1);
    CHECK(d.wallTime == INT64_C(1735686000000000000));
    CHECK(OrvTimezoneGetUseCount(&east) == 2);
    CHECK(OrvDateTimeConstructCopy(&copy, &d) == &copy);
    CHECK(OrvTimezoneGetUseCount(&east) == 3);
    OrvDateTimeDestruct(&copy);
    OrvDateTimeDestruct(&d);
    CHECK(OrvTimezoneGetUseCount(&east) == 1);

    CHECK(OrvDateTimeConstruct(&d, -1, NULL) == &d);
    CHECK(OrvDateTimeIsFloating(&d) && OrvDateTimeGetTimezone(&d) == NULL);
    CHECK(d.year == 1969 && d.nanosec == 999999999);
    CHECK(OrvDateTimeSetFirstDayOfWeek(&d, ORV_WEEKDAY_Sunday));
    CHECK(!OrvDateTimeSetMinimalDaysInFirstWeek(&d, 0));
    OrvDateTimeDestruct(&d);

    OrvLogSetSink(Sink, NULL);
    CHECK(OrvDateTimeConstructFields(&d, 3000, 1, 1, 0, 0, 0, 0, NULL) == &d);
    CHECK(d.wallTime == ORV_TIME_INVALID && infoLines == 1);
    OrvDateTimeDestruct(&d);
    OrvLogSetSink(NULL, NULL);

    CHECK(OrvStringConstruct(&s, OrvAllocatorGetDefault()) == &s);
    CHECK(OrvStringAssignFormatted(&s, "%04d", 7) != NULL && strcmp(OrvStringCStr(&s), "0007") == 0);
    OrvStringDestruct(&s);

    OrvTimezoneDestruct(&east);
    return failures == 0 ? 0 : 1;
}
