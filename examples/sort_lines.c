/* Text lines into an ordered set of date-times, and back out in order. Values that
 * denote the same instant are one key, so duplicates drop out; a refused line is
 * reported and skipped. */
#include <Orv/Calendar/OrvDateTime.h>

#include <stdio.h>

static const char* const kLines[] = {
    "20240501T093000Z", "20240101T000000Z", "20241231T235959", /* no Z: floating, read as UTC */
    "20240230T000000Z",                                         /* 30 February: refused */
    "20240501T093000Z",                                         /* again: not inserted */
};

int main(void)
{
    OrvSet_OrvDateTime set;
    OrvString text;
    int status = 0;
    OrvSet_OrvDateTimeConstruct(&set, OrvAllocatorGetDefault());
    OrvStringConstruct(&text, OrvAllocatorGetDefault());

    for (size_t i = 0; i < sizeof kLines / sizeof kLines[0] && status == 0; ++i) {
        OrvDateTime d;
        if (OrvDateTimeConstructCStr(&d, kLines[i], NULL) == NULL) {
            printf("line %zu refused: %s\n", i + 1, kLines[i]);
            continue;
        }
        /* The set stores a copy, so d is destructed either way. */
        const OrvPair_OrvSet_OrvDateTimeIterator__OrvBool r = OrvSet_OrvDateTimeInsert(&set, &d);
        if (r.first == OrvSet_OrvDateTimeEnd(&set)) status = 1; /* out of memory */
        else if (!r.second) printf("line %zu is already in the set: %s\n", i + 1, kLines[i]);
        OrvDateTimeDestruct(&d);
    }

    /* A floating value holds the UTC zone, so it is written back with Z. */
    printf("%zu values, in order:\n", (size_t)OrvSet_OrvDateTimeSize(&set));
    for (OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(&set);
         status == 0 && it != OrvSet_OrvDateTimeEnd(&set); OrvSet_OrvDateTimeIteratorIncrement(&it)) {
        if (!OrvDateTimeGetString(OrvSet_OrvDateTimeIteratorContentOfConst(&it), &text)) status = 1;
        else printf("  %s\n", OrvStringCStr(&text));
    }

    OrvStringDestruct(&text);
    OrvSet_OrvDateTimeDestruct(&set);
    if (status != 0) fprintf(stderr, "out of memory\n");
    return status;
}
