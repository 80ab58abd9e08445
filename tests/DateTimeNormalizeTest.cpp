// Instant-to-fields and fields-to-instant conversions at both ends of the instant
// range, the two log lines, clock-change corrections and the normalization states.
#include "Calendar/OrvDateTimeInternal.hpp"
#include "support/CountingAllocator.h"
#include "support/FieldsMatcher.h"
#include "support/LogCapture.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using orv::test::CountingAllocator;
using orv::test::FieldsAre;
using orv::test::Ymd;
using orv::test::kHour;
using orv::test::LogCapture;
using orv::test::MakeTransitionZone;
using orv::test::TransitionZoneRules;
using orv::test::UtcInstant;

// A fixed zone at any offset, counted, from the test allocator.
struct FixedZone {
    explicit FixedZone(OrvTime offset)
    {
        TransitionZoneRules rules;
        rules.initialOffset = offset;
        MakeTransitionZone(&tz, rules, alloc.get());
    }
    ~FixedZone() { OrvTimezoneDestruct(&tz); }
    CountingAllocator alloc;
    OrvTimezone tz;
};

TEST(InstantToFields, BothEndsOfTheRange)
{
    struct Case {
        OrvTime wall;
        OrvTime offset;
        Ymd fields;
    };
    const Case cases[] = {
        {0, 0, {1970, 1, 1, 0, 0, 0, 0}},
        {-1, 0, {1969, 12, 31, 23, 59, 59, 999999999}},
        {INT64_MIN, 0, {1677, 9, 21, 0, 12, 43, 145224192}},
        {INT64_MAX - 1, 1, {2262, 4, 11, 23, 47, 16, 854775807}},
        {INT64_MIN + kHour, -kHour, {1677, 9, 21, 0, 12, 43, 145224192}}, // local sum exactly INT64_MIN
        {UtcInstant(2024, 2, 29, 23, 59, 59, 999999999), 1, {2024, 3, 1, 0, 0, 0, 0}},
    };
    for (const Case& c : cases) {
        FixedZone zone(c.offset);
        LogCapture log;
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstruct(&d, c.wall, &zone.tz), nullptr) << c.wall;
        EXPECT_TRUE(FieldsAre(d, c.fields)) << c.wall;
        EXPECT_EQ(d.wallTime, c.wall);
        EXPECT_EQ(d.offset, c.offset);
        EXPECT_TRUE(log.lines().empty());
        OrvDateTimeDestruct(&d);
    }
}

TEST(InstantToFields, RefusesWrapsWithTheErrorLine)
{
    struct Case {
        OrvTime wall;
        OrvTime offset;
        const char* message;
    };
    const Case cases[] = {
        {INT64_MAX - 1, 2, "Can't set fields for wall time 9223372036854775806 with offset 2: would wrap"},
        {INT64_MIN, -1, "Can't set fields for wall time -9223372036854775808 with offset -1: would wrap"},
        {ORV_TIME_INVALID, 0, "Can't set fields for wall time 9223372036854775807 with offset 0: would wrap"},
        {ORV_TIME_INVALID, -kHour, "Can't set fields for wall time 9223372036854775807 with offset -3600000000000: would wrap"},
    };
    for (const Case& c : cases) {
        FixedZone zone(c.offset);
        LogCapture log;
        OrvDateTime d;
        EXPECT_EQ(OrvDateTimeConstruct(&d, c.wall, &zone.tz), nullptr);
        EXPECT_EQ(OrvTimezoneGetUseCount(&zone.tz), 1);
        ASSERT_EQ(log.lines().size(), 1u);
        const orv::test::LogLine& line = log.lines()[0];
        EXPECT_EQ(line.level, ORV_LOGLEVEL_ERROR);
        EXPECT_EQ(line.category, OrvLogCalendar_);
        EXPECT_EQ(line.file, "Orv/Calendar/OrvDateTime");
        EXPECT_GT(line.line, 0);
        EXPECT_EQ(line.function, "OrvDateTimeSetFieldsFromWall");
        EXPECT_EQ(line.message, c.message);
    }
}

TEST(InstantToFields, EveryDayOfTheRangeRoundTripsThroughFields)
{
    // Noon of every day from 1677-09-21 to 2262-04-11, to fields and back.
    for (OrvInt64 day = -106752; day <= 106751; ++day) {
        const OrvTime noon = (day * 86400 + 43200) * ORV_TIME_NANOSECONDS_PER_SECOND + 123;
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstruct(&d, noon, nullptr), nullptr) << day;
        ASSERT_EQ(OrvDateTimeGetDaysSincePosixEpoch_(&d), day);
        ASSERT_EQ(d.hour, 12);
        OrvDateTime back;
        ASSERT_NE(OrvDateTimeConstructFields(&back, d.year, d.month, d.monthDay, d.hour, d.min, d.sec, d.nanosec,
                                             nullptr),
                  nullptr);
        ASSERT_EQ(back.wallTime, noon) << day;
        OrvDateTimeDestruct(&back);
        OrvDateTimeDestruct(&d);
    }
}

TEST(FieldsToInstant, BothEndsOfTheRange)
{
    struct Case {
        Ymd fields;
        OrvTime wall;
        bool infoLine;
    };
    const Case cases[] = {
        {{2262, 4, 11, 23, 47, 16, 854775806}, INT64_MAX - 1, false},
        {{2262, 4, 11, 23, 47, 16, 854775807}, ORV_TIME_INVALID, false}, // indistinguishable from the marker
        {{2262, 4, 11, 23, 47, 16, 854775808}, ORV_TIME_INVALID, true},
        {{2262, 4, 11, 23, 47, 17, 0}, ORV_TIME_INVALID, true},           // seconds test
        {{1677, 9, 21, 0, 12, 44, 0}, -9223372036000000000, false},
        {{1677, 9, 21, 0, 12, 43, 999999999}, -9223372036000000001, false}, // the range's first second
        {{1677, 9, 21, 0, 12, 43, 145224192}, INT64_MIN, false},          // a value built from INT64_MIN
        {{1677, 9, 21, 0, 12, 43, 145224191}, ORV_TIME_INVALID, true},
        {{3000, 1, 1, 0, 0, 0, 0}, ORV_TIME_INVALID, true},
        {{1000, 1, 1, 0, 0, 0, 0}, ORV_TIME_INVALID, true},
    };
    for (const Case& c : cases) {
        LogCapture log;
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.fields.year, c.fields.month, c.fields.day, c.fields.hour,
                                             c.fields.min, c.fields.sec, c.fields.nanos, OrvFixedTimezoneGetUTC()),
                  nullptr);
        EXPECT_EQ(d.wallTime, c.wall) << c.fields.year << " " << c.fields.nanos;
        EXPECT_TRUE(FieldsAre(d, c.fields));
        EXPECT_EQ(log.lines().size(), c.infoLine ? 1u : 0u) << c.fields.year << " " << c.fields.nanos;
        OrvDateTimeDestruct(&d);
    }
}

TEST(FieldsToInstant, InfoLineNamesTheNormalizedFieldsAndOffset)
{
    FixedZone zone(-kHour);
    LogCapture log;
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructFields(&d, 3000, 13, 1, 0, 0, 0, 5, &zone.tz), nullptr);
    ASSERT_EQ(log.lines().size(), 1u);
    const orv::test::LogLine& line = log.lines()[0];
    EXPECT_EQ(line.level, ORV_LOGLEVEL_INFO);
    EXPECT_EQ(line.category, "Calendar");
    EXPECT_EQ(line.file, "Orv/Calendar/OrvDateTime");
    EXPECT_EQ(line.function, "OrvDateTimeSetWallFromFields");
    EXPECT_EQ(line.message, "Can't set wall time for time 3001-01-01 00:00:00.000000005 with offset -3600000000000: would wrap");

    // Not representable: every normalization works the instant out again, and logs again.
    d.normalized = ORV_TRUE;
    EXPECT_TRUE(OrvDateTimeNormalizeAndSetWall(&d));
    EXPECT_TRUE(OrvDateTimeNormalizeAndSetWall(&d));
    EXPECT_EQ(log.lines().size(), 3u);
    EXPECT_EQ(d.wallTime, ORV_TIME_INVALID);
    EXPECT_EQ(d.year, 3001);
    OrvDateTimeDestruct(&d);
}

class ClockChangeTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(MakeTransitionZone(&dst_, orv::test::DstRules(), alloc_.get()), nullptr); }
    void TearDown() override
    {
        OrvTimezoneDestruct(&dst_);
        EXPECT_EQ(alloc_.liveBlocks(), 0u);
    }
    CountingAllocator alloc_;
    OrvTimezone dst_;
};

TEST_F(ClockChangeTest, ReadingsAroundTheChangesGetTheirInstants)
{
    struct Case {
        Ymd local;
        Ymd expected;
        OrvTime wall;
        OrvTime offset;
    };
    const Case cases[] = {
        // Skipped hour: 02:30 does not exist and becomes 03:30, one instant after 01:59:59.
        {{2024, 3, 31, 2, 30, 0, 0}, {2024, 3, 31, 3, 30, 0, 0}, UtcInstant(2024, 3, 31, 1, 30), 2 * kHour},
        {{2024, 3, 31, 1, 59, 59, 0}, {2024, 3, 31, 1, 59, 59, 0}, UtcInstant(2024, 3, 31, 0, 59, 59), kHour},
        {{2024, 3, 31, 3, 0, 0, 0}, {2024, 3, 31, 3, 0, 0, 0}, UtcInstant(2024, 3, 31, 1), 2 * kHour},
        // Repeated hour: 02:30 is read as its first occurrence.
        {{2024, 10, 27, 2, 30, 0, 0}, {2024, 10, 27, 2, 30, 0, 0}, UtcInstant(2024, 10, 27, 0, 30), 2 * kHour},
        {{2024, 10, 27, 3, 0, 0, 0}, {2024, 10, 27, 3, 0, 0, 0}, UtcInstant(2024, 10, 27, 2), kHour},
        // Carried into the skipped hour: 2024-03-30 26:30 is 03-31 02:30, then 03:30.
        {{2024, 3, 30, 26, 30, 0, 0}, {2024, 3, 31, 3, 30, 0, 0}, UtcInstant(2024, 3, 31, 1, 30), 2 * kHour},
    };
    for (const Case& c : cases) {
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.local.year, c.local.month, c.local.day, c.local.hour, c.local.min,
                                             c.local.sec, c.local.nanos, &dst_),
                  nullptr);
        EXPECT_TRUE(FieldsAre(d, c.expected));
        EXPECT_EQ(d.wallTime, c.wall);
        EXPECT_EQ(d.offset, c.offset);
        EXPECT_TRUE(orv::detail::IsConsistent(&d));
        OrvDateTimeDestruct(&d);
    }
}

TEST_F(ClockChangeTest, InstantsAcrossTheChangeReadTheirLocalTime)
{
    const OrvTime change = UtcInstant(2024, 3, 31, 1);
    OrvDateTime before, after;
    ASSERT_NE(OrvDateTimeConstruct(&before, change - 1, &dst_), nullptr);
    ASSERT_NE(OrvDateTimeConstruct(&after, change, &dst_), nullptr);
    EXPECT_TRUE(FieldsAre(before, {2024, 3, 31, 1, 59, 59, 999999999}));
    EXPECT_TRUE(FieldsAre(after, {2024, 3, 31, 3, 0, 0, 0}));
    OrvDateTimeDestruct(&before);
    OrvDateTimeDestruct(&after);
}

// The normalization's states when the zone cannot answer, driven on raw records.
TEST(NormalizeAndSetWall, StatesWhenTheZoneHasNoAnswer)
{
    CountingAllocator alloc;
    for (bool failFields : {true, false}) {
        TransitionZoneRules rules;
        rules.initialOffset = kHour;
        rules.failFields = failFields;
        rules.failInstants = !failFields;
        OrvTimezone zone;
        ASSERT_NE(MakeTransitionZone(&zone, rules, alloc.get()), nullptr);

        OrvDateTime d;
        OrvDateTimeConstructDefault(&d);
        OrvTimezoneAssign(&d.tz, &zone);
        d.month = 13;
        d.normalized = ORV_FALSE;
        d.offset = ORV_TIME_INVALID;
        d.wallTime = ORV_TIME_INVALID;
        EXPECT_FALSE(OrvDateTimeNormalizeAndSetWall(&d));
        EXPECT_TRUE(d.normalized);
        EXPECT_TRUE(FieldsAre(d, {1971, 1, 1, 0, 0, 0, 0}));
        // Without an answer for the instant the fields stay pending: a later call fails too.
        EXPECT_EQ(d.offset, ORV_TIME_INVALID);
        EXPECT_FALSE(OrvDateTimeNormalizeAndSetWall(&d));
        OrvDateTimeDestruct(&d);
        OrvTimezoneDestruct(&zone);
    }
    EXPECT_EQ(alloc.liveBlocks(), 0u);
}

TEST(NormalizeAndSetWall, ConsistentValueIsLeftAloneAndTheZoneNotAsked)
{
    CountingAllocator alloc;
    TransitionZoneRules rules;
    rules.failFields = true;
    rules.failInstants = true;
    OrvTimezone zone;
    ASSERT_NE(MakeTransitionZone(&zone, rules, alloc.get()), nullptr);
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    OrvTimezoneAssign(&d.tz, &zone);
    d.hour = 99; // a consistent value's fields are trusted as they are
    EXPECT_TRUE(OrvDateTimeNormalizeAndSetWall(&d));
    EXPECT_EQ(d.hour, 99);
    OrvDateTimeDestruct(&d);
    OrvTimezoneDestruct(&zone);
}

TEST(DaysSincePosixEpoch, ReadsStoredFieldsWithoutNormalizing)
{
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    struct Case {
        OrvInt year, month, day;
        OrvTime days;
    };
    // The day counts themselves are the calendar kernels' (CalendarMathTest).
    const Case cases[] = {{1968, 1, 1, -731}, {2024, 13, 1, 20089}, {2024, 0, 1, 19692}};
    for (const Case& c : cases) {
        d.year = c.year;
        d.month = c.month;
        d.monthDay = c.day;
        EXPECT_EQ(OrvDateTimeGetDaysSincePosixEpoch_(&d), c.days) << c.year << "-" << c.month;
        EXPECT_EQ(d.month, c.month);
    }
    OrvDateTimeDestruct(&d);
}

} // namespace
