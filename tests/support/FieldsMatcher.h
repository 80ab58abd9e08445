// Compares a value's seven calendar fields with expected ones, naming what it got.
#ifndef ORV_TESTS_SUPPORT_FIELDSMATCHER_H
#define ORV_TESTS_SUPPORT_FIELDSMATCHER_H

#include "Orv/Calendar/OrvDateTime.h"

#include <gtest/gtest.h>

namespace orv::test {

struct Ymd {
    OrvInt year, month, day, hour, min, sec, nanos;
};

inline ::testing::AssertionResult FieldsAre(const OrvDateTime& d, const Ymd& e)
{
    if (d.year == e.year && d.month == e.month && d.monthDay == e.day && d.hour == e.hour && d.min == e.min &&
        d.sec == e.sec && d.nanosec == e.nanos)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << d.year << "-" << d.month << "-" << d.monthDay << " " << d.hour
                                         << ":" << d.min << ":" << d.sec << "." << d.nanosec;
}

} // namespace orv::test

#endif
