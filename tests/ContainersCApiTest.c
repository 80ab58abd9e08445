/* The vector and the set of date-time values used from a C11 program: build both from
 * text, walk them both ways, and check that every zone reference comes back. */
#include "Orv/Calendar/OrvDateTime.h"
#include "support/CCheck.h"

#include <stdio.h>

int main(void)
{
    static const char* const texts[] = {"20240501T093000", "20231231T235959", "20240501T093000", "20240229T120000"};
    OrvTimezone east;
    OrvVector_OrvDateTime v;
    OrvSet_OrvDateTime s;
    OrvDateTime d;
    size_t i;

    CHECK(OrvFixedTimezoneConstruct(&east, ORV_TIME_NANOSECONDS_PER_HOUR, OrvAllocatorGetDefault()) == &east);
    OrvVector_OrvDateTimeConstructDefault(&v, OrvAllocatorGetDefault());
    CHECK(OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault()) == &s);
    for (i = 0; i < sizeof texts / sizeof texts[0]; ++i) {
        CHECK(OrvDateTimeConstructCStr(&d, texts[i], &east) == &d);
        CHECK(OrvVector_OrvDateTimePushBack(&v, &d));
        CHECK(OrvSet_OrvDateTimeInsert(&s, &d).first != OrvSet_OrvDateTimeEnd(&s));
        OrvDateTimeDestruct(&d);
    }
    CHECK(OrvVector_OrvDateTimeSize(&v) == 4 && OrvVector_OrvDateTimeCapacity(&v) == 4);
    CHECK(OrvSet_OrvDateTimeSize(&s) == 3); /* the repeated reading is one key */
    CHECK(OrvTimezoneGetUseCount(&east) == 1 + 4 + 3);

    {
        /* The set ascending, then descending with a reverse iterator. */
        OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(&s);
        const OrvSet_OrvDateTimeIterator end = OrvSet_OrvDateTimeEnd(&s);
        OrvSet_OrvDateTimeReverseIterator r = OrvSet_OrvDateTimeEnd(&s);
        const OrvSet_OrvDateTimeReverseIterator rend = OrvSet_OrvDateTimeBegin(&s);
        OrvTime last = INT64_MIN;
        int steps = 0;
        while (!OrvSet_OrvDateTimeIteratorEqual(&it, &end)) {
            const OrvDateTime* e = OrvSet_OrvDateTimeIteratorContentOfConst(&it);
            CHECK(e->wallTime > last);
            last = e->wallTime;
            OrvSet_OrvDateTimeIteratorIncrement(&it);
            ++steps;
        }
        CHECK(steps == 3);
        CHECK(OrvSet_OrvDateTimeReverseIteratorContentOf(&r)->year == 2024);
        while (!OrvSet_OrvDateTimeReverseIteratorEqual(&r, &rend)) {
            const OrvTime w = OrvSet_OrvDateTimeReverseIteratorContentOfConst(&r)->wallTime;
            CHECK(steps == 3 ? w == last : w < last);
            last = w;
            OrvSet_OrvDateTimeReverseIteratorIncrement(&r);
            --steps;
        }
        CHECK(steps == 0);
    }
    {
        OrvVector_OrvDateTimeReverseIterator r = OrvVector_OrvDateTimeRBegin(&v);
        OrvVector_OrvDateTimeReverseIterator rend = OrvVector_OrvDateTimeREnd(&v);
        CHECK(OrvVector_OrvDateTimeReverseIteratorSubtract(&rend, &r) == 4);
        CHECK(OrvVector_OrvDateTimeReverseIteratorContentOf(&r)->monthDay == 29);
        CHECK(OrvVector_OrvDateTimeReverseIteratorAt(&r, 3)->monthDay == 1);
        CHECK(OrvVector_OrvDateTimeEraseRange(&v, OrvVector_OrvDateTimeBegin(&v), OrvVector_OrvDateTimeBegin(&v) + 2) ==
              OrvVector_OrvDateTimeBegin(&v));
        CHECK(OrvVector_OrvDateTimeSize(&v) == 2);
    }
    CHECK(OrvSet_OrvDateTimeEraseKey(&s, OrvVector_OrvDateTimeFront(&v)) == 1);
    CHECK(OrvTimezoneGetUseCount(&east) == 1 + 2 + 2);
    OrvVector_OrvDateTimeDestruct(&v);
    OrvSet_OrvDateTimeDestruct(&s);
    CHECK(OrvTimezoneGetUseCount(&east) == 1);
    OrvTimezoneDestruct(&east);
    if (failures == 0) printf("containers C API: all checks passed\n");
    return failures == 0 ? 0 : 1;
}
