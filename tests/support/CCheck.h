/* A check for the tests written in C: reports the failed condition and counts it. */
#ifndef ORV_TESTS_SUPPORT_CCHECK_H
#define ORV_TESTS_SUPPORT_CCHECK_H

#include <stdio.h>

static int failures = 0;

#define CHECK(cond)                                                                   \
    do {                                                                              \
        if (!(cond)) {                                                                \
            fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
            ++failures;                                                               \
        }                                                                             \
    } while (0)

#endif
