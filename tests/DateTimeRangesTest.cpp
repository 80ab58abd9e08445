// Field ranges: the general bounds, and the actual maximum of one value's month and
// year (week counts are checked against a brute-force reference in the field tests).
#include "Orv/Calendar/OrvDateTime.h"

#include "support/TestZones.h"

#include <gtest/gtest.h>

namespace {

constexpr OrvDateTimeField kBad = static_cast<OrvDateTimeField>(11);

TEST(Ranges, GeneralBoundsForEverySelector)
{
    const struct {
        OrvDateTimeField field;
        OrvInt minimum, maximum;
    } rows[] = {
        {kBad, -1, -1},
        {ORV_DATETIMEFIELD_Nanosecond, 0, 999999999}, {ORV_DATETIMEFIELD_Second, 0, 59},
        {ORV_DATETIMEFIELD_Minute, 0, 59},            {ORV_DATETIMEFIELD_Hour, 0, 23},
        {ORV_DATETIMEFIELD_DayOfWeek, 0, 6},          {ORV_DATETIMEFIELD_DayOfMonth, 1, 31},
        {ORV_DATETIMEFIELD_Month, 1, 12},             {ORV_DATETIMEFIELD_Year, 1677, 2262},
        {ORV_DATETIMEFIELD_WeekOfMonth, 0, 6},        {ORV_DATETIMEFIELD_WeekOfYear, 1, 53},
        {ORV_DATETIMEFIELD_DayOfYear, 1, 366},
    };
    // The general bounds do not read the value: pending fields and a zone without
    // offsets change nothing.
    OrvTimezone failing;
    ASSERT_NE(orv::test::MakeTransitionZone(&failing, {0, {}, true, false}, OrvAllocatorGetDefault()), nullptr);
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstruct(&v, 0, &failing), nullptr);
    ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Month, 40));
    for (const auto& r : rows) {
        EXPECT_EQ(OrvDateTimeGetMinimum(&v, r.field), r.minimum) << r.field;
        EXPECT_EQ(OrvDateTimeGetActualMinimum(&v, r.field), r.minimum) << r.field;
        EXPECT_EQ(OrvDateTimeGetMaximum(&v, r.field), r.maximum) << r.field;
    }
    EXPECT_EQ(OrvDateTimeGetMinimum(nullptr, ORV_DATETIMEFIELD_Year), 1677);
    EXPECT_EQ(v.month, 40);
    // The actual maximum carries the fields before it looks at the selector, then
    // finds no offset: 0 whatever the field.
    for (const auto& r : rows) {
        EXPECT_EQ(OrvDateTimeGetActualMaximum(&v, r.field), 0) << r.field;
        EXPECT_EQ(v.month, 4) << r.field;
    }
    OrvDateTimeDestruct(&v);
    OrvTimezoneDestruct(&failing);
}

TEST(Ranges, ActualMaximumFollowsTheValuesMonthAndYear)
{
    const struct {
        int year, month, day;
        OrvDateTimeField field;
        OrvInt expected;
    } rows[] = {
        {2024, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 29}, {2023, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 28},
        {1900, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 28}, {2000, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 29},
        {2023, 4, 10, ORV_DATETIMEFIELD_DayOfMonth, 30}, {2023, 12, 10, ORV_DATETIMEFIELD_DayOfMonth, 31},
        {3000, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 28}, {2024, 6, 1, ORV_DATETIMEFIELD_DayOfYear, 366},
        {2100, 6, 1, ORV_DATETIMEFIELD_DayOfYear, 365},  {2023, 1, 15, ORV_DATETIMEFIELD_Year, 2262},
        {2023, 1, 15, ORV_DATETIMEFIELD_DayOfWeek, 6},   {2023, 1, 15, ORV_DATETIMEFIELD_Nanosecond, 999999999},
        {2023, 1, 15, kBad, -1}, {2023, 14, 15, kBad, -1},
        {2023, 14, 15, ORV_DATETIMEFIELD_DayOfMonth, 29}, // carried to 2024-02 first
    };
    for (const auto& r : rows) {
        OrvDateTime v;
        ASSERT_NE(OrvDateTimeConstructFields(&v, 2023, 1, r.day, 0, 0, 0, 0, nullptr), nullptr);
        ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Year, r.year));
        ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Month, r.month)); // pending until read
        if (r.field == kBad) { // the field reader, too, carries before it looks at the selector
            EXPECT_EQ(OrvDateTimeGetField(&v, kBad), -1);
            EXPECT_TRUE(v.normalized);
        }
        EXPECT_EQ(OrvDateTimeGetActualMaximum(&v, r.field), r.expected)
            << r.year << "-" << r.month << "-" << r.day << " field " << r.field;
        EXPECT_TRUE(v.normalized);
        EXPECT_EQ(v.year * 100 + v.month, r.month > 12 ? (r.year + 1) * 100 + r.month - 12 : r.year * 100 + r.month);
        OrvDateTimeDestruct(&v);
    }
}

} // namespace
