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

    /* Numbers that name no enumerator, as a C caller may pass them: refused, with no
     * undefined behaviour inside the library (the enumerations' fixed types). */
    CHECK(OrvDateTimeConstructDefault(&d) == &d);
    {
        const OrvDateTimeField bad[] = {(OrvDateTimeField)11, (OrvDateTimeField)16, (OrvDateTimeField)0xFFFFFFFFu};
        OrvWeekday w = (OrvWeekday)8;
        size_t i;
        for (i = 0; i < sizeof bad / sizeof bad[0]; ++i) {
            CHECK(OrvDateTimeGetField(&d, bad[i]) == -1 && !OrvDateTimeSetField(&d, bad[i], 1));
            CHECK(!OrvDateTimeAddToField(&d, bad[i], 1) && OrvDateTimeGetActualMaximum(&d, bad[i]) == -1);
            CHECK(OrvDateTimeGetMinimum(&d, bad[i]) == -1 && OrvDateTimeGetMaximum(&d, bad[i]) == -1);
        }
        CHECK(!OrvDateTimeSetFirstDayOfWeek(&d, w) && !OrvDateTimeSetFirstDayOfWeek(&d, (OrvWeekday)-2));
        CHECK(OrvDateTimeGetFirstDayOfWeek(&d) == ORV_WEEKDAY_Monday);
        CHECK(OrvStringConstruct(&s, OrvAllocatorGetDefault()) == &s);
        CHECK(!OrvWeekdayAppendToString(&w, &s) && OrvStringLength(&s) == 0);
        OrvStringDestruct(&s);
    }
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
