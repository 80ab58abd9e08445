// Field ranges: the general bounds, and the actual maximum of one value's month and
// year (week counts are checked against a brute-force reference in the field tests).
#include "Orv/Calendar/OrvDateTime.h"

#include "support/TestZones.h"

#include <gtest/gtest.h>

namespace {

constexpr OrvDateTimeField kBad = static_cast<OrvDateTimeField>(11);

TEST(Ranges, GeneralBoundsForEverySelector)
{
    struct Row {
        OrvDateTimeField field;
        OrvInt minimum, maximum;
    } const rows[] = {
        {ORV_DATETIMEFIELD_Nanosecond, 0, 999999999}, {ORV_DATETIMEFIELD_Second, 0, 59},
        {ORV_DATETIMEFIELD_Minute, 0, 59},            {ORV_DATETIMEFIELD_Hour, 0, 23},
        {ORV_DATETIMEFIELD_DayOfWeek, 0, 6},          {ORV_DATETIMEFIELD_DayOfMonth, 1, 31},
        {ORV_DATETIMEFIELD_Month, 1, 12},             {ORV_DATETIMEFIELD_Year, 1677, 2262},
        {ORV_DATETIMEFIELD_WeekOfMonth, 0, 6},        {ORV_DATETIMEFIELD_WeekOfYear, 1, 53},
        {ORV_DATETIMEFIELD_DayOfYear, 1, 366},        {kBad, -1, -1},
    };
    // The general bounds do not read the value: pending fields and a zone without
    // offsets change nothing.
    orv::test::TransitionZoneRules rules;
    rules.failFields = true;
    OrvTimezone failing;
    ASSERT_NE(orv::test::MakeTransitionZone(&failing, rules, OrvAllocatorGetDefault()), nullptr);
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstruct(&v, 0, &failing), nullptr);
    ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Month, 40));
    for (const Row& r : rows) {
        EXPECT_EQ(OrvDateTimeGetMinimum(&v, r.field), r.minimum) << r.field;
        EXPECT_EQ(OrvDateTimeGetActualMinimum(&v, r.field), r.minimum) << r.field;
        EXPECT_EQ(OrvDateTimeGetMaximum(&v, r.field), r.maximum) << r.field;
    }
    EXPECT_EQ(v.month, 40);
    // The actual maximum carries the fields, then finds no offset: 0 whatever the field.
    for (const Row& r : rows) EXPECT_EQ(OrvDateTimeGetActualMaximum(&v, r.field), 0) << r.field;
    EXPECT_EQ(v.month, 4);
    EXPECT_EQ(OrvDateTimeGetMinimum(nullptr, ORV_DATETIMEFIELD_Year), 1677);
    OrvDateTimeDestruct(&v);
    OrvTimezoneDestruct(&failing);
}

TEST(Ranges, ActualMaximumFollowsTheValuesMonthAndYear)
{
    struct Row {
        int year, month, day;
        OrvDateTimeField field;
        OrvInt expected;
    } const rows[] = {
        {2024, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 29}, {2023, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 28},
        {1900, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 28}, {2000, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 29},
        {2023, 4, 10, ORV_DATETIMEFIELD_DayOfMonth, 30}, {2023, 12, 10, ORV_DATETIMEFIELD_DayOfMonth, 31},
        {3000, 2, 10, ORV_DATETIMEFIELD_DayOfMonth, 28}, {2024, 6, 1, ORV_DATETIMEFIELD_DayOfYear, 366},
        {2100, 6, 1, ORV_DATETIMEFIELD_DayOfYear, 365},  {2023, 1, 15, ORV_DATETIMEFIELD_Year, 2262},
        {2023, 1, 15, ORV_DATETIMEFIELD_DayOfWeek, 6},   {2023, 1, 15, ORV_DATETIMEFIELD_Nanosecond, 999999999},
        {2023, 1, 15, kBad, -1},
        // Week counts under Monday/4: June 2024 runs to week 4, September 2024 to 5
        // (it starts on a Sunday, week 0), 2020 has 53 weeks and so has its week that
        // 2021-01-01 belongs to; 2024 has 52, and 2024-12-30 is in week 1 of 2025 (52).
        {2024, 6, 15, ORV_DATETIMEFIELD_WeekOfMonth, 4}, {2024, 9, 15, ORV_DATETIMEFIELD_WeekOfMonth, 5},
        {2020, 6, 15, ORV_DATETIMEFIELD_WeekOfYear, 53}, {2021, 1, 1, ORV_DATETIMEFIELD_WeekOfYear, 53},
        {2021, 1, 4, ORV_DATETIMEFIELD_WeekOfYear, 52},  {2024, 6, 15, ORV_DATETIMEFIELD_WeekOfYear, 52},
        {2026, 12, 31, ORV_DATETIMEFIELD_WeekOfYear, 53},
    };
    for (const Row& r : rows) {
        OrvDateTime v;
        ASSERT_NE(OrvDateTimeConstructFields(&v, r.year, r.month, r.day, 0, 0, 0, 0, nullptr), nullptr);
        EXPECT_EQ(OrvDateTimeGetActualMaximum(&v, r.field), r.expected)
            << r.year << "-" << r.month << "-" << r.day << " field " << r.field;
        OrvDateTimeDestruct(&v);
    }
}

TEST(Ranges, ActualMaximumNormalizesPendingFieldsFirst)
{
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstructFields(&v, 2023, 1, 15, 0, 0, 0, 0, OrvFixedTimezoneGetUTC()), nullptr);
    ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Month, 14)); // 2024-02-15
    EXPECT_EQ(OrvDateTimeGetActualMaximum(&v, ORV_DATETIMEFIELD_DayOfMonth), 29);
    EXPECT_TRUE(v.normalized);
    EXPECT_EQ(v.year, 2024);
    ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Month, 14)); // 2025-02-15
    EXPECT_EQ(OrvDateTimeGetActualMaximum(&v, kBad), -1);
    EXPECT_EQ(v.year, 2025); // normalized before the selector was looked at
    OrvDateTimeDestruct(&v);
}

} // namespace
