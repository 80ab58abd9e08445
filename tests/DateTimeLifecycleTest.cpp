// Construction, copy, assignment and release of date-time values, with the zone's
// reference counts watched through a counting allocator and a counted test zone.
#include "Calendar/OrvDateTimeInternal.hpp"
#include "support/CountingAllocator.h"
#include "support/FieldsMatcher.h"
#include "support/LogCapture.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using orv::test::CountingAllocator;
using orv::test::FieldsAre;
using orv::test::Ymd;
using orv::test::kHour;
using orv::test::MakeTransitionZone;
using orv::test::TransitionZoneRules;

// A counted zone at a fixed offset, owned by the fixture.
class LifecycleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        TransitionZoneRules rules;
        rules.initialOffset = kHour;
        ASSERT_NE(MakeTransitionZone(&zone_, rules, alloc_.get(), &deleterCalls_), nullptr);
    }
    void TearDown() override
    {
        if (!zoneReleased_) OrvTimezoneDestruct(&zone_);
        EXPECT_EQ(deleterCalls_, 1);
        EXPECT_EQ(alloc_.liveBlocks(), 0u);
        EXPECT_EQ(alloc_.badDeallocations(), 0u);
    }
    void ReleaseZone()
    {
        OrvTimezoneDestruct(&zone_);
        zoneReleased_ = true;
    }
    OrvInt Uses() const { return OrvTimezoneGetUseCount(&zone_); }

    CountingAllocator alloc_;
    OrvTimezone zone_;
    int deleterCalls_ = 0;
    bool zoneReleased_ = false;
};

TEST(ConstructDefault, IsTheEpochInUtcWithIsoWeeks)
{
    OrvDateTime d;
    ASSERT_EQ(OrvDateTimeConstructDefault(&d), &d);
    EXPECT_TRUE(FieldsAre(d, {1970, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(d.wallTime, 0);
    EXPECT_EQ(d.offset, 0);
    EXPECT_TRUE(d.normalized);
    EXPECT_FALSE(OrvDateTimeIsFloating(&d));
    EXPECT_NE(OrvDateTimeGetTimezone(&d), nullptr);
    EXPECT_TRUE(OrvFixedTimezoneIsGlobalUTC(OrvDateTimeGetTimezone(&d)));
    EXPECT_EQ(OrvDateTimeGetFirstDayOfWeek(&d), ORV_WEEKDAY_Monday);
    EXPECT_EQ(OrvDateTimeGetMinimalDaysInFirstWeek(&d), 4);
    OrvDateTimeDestruct(&d);
}

TEST(Construct, WithoutZoneIsFloatingUtcReading)
{
    OrvDateTime d;
    ASSERT_EQ(OrvDateTimeConstruct(&d, 0, nullptr), &d);
    EXPECT_TRUE(FieldsAre(d, {1970, 1, 1, 0, 0, 0, 0}));
    EXPECT_TRUE(OrvDateTimeIsFloating(&d));
    EXPECT_EQ(OrvDateTimeGetTimezone(&d), nullptr);
    EXPECT_EQ(d.offset, 0);
    OrvDateTimeDestruct(&d);
}

TEST_F(LifecycleTest, ConstructReadsTheInstantInTheZone)
{
    OrvDateTime d;
    ASSERT_EQ(OrvDateTimeConstruct(&d, orv::test::UtcInstant(2024, 5, 1, 9, 30), &zone_), &d);
    EXPECT_TRUE(FieldsAre(d, {2024, 5, 1, 10, 30, 0, 0}));
    EXPECT_EQ(d.offset, kHour);
    EXPECT_FALSE(OrvDateTimeIsFloating(&d));
    EXPECT_EQ(OrvDateTimeGetTimezone(&d), &d.tz);
    EXPECT_EQ(Uses(), 2);
    OrvDateTimeDestruct(&d);
    EXPECT_EQ(Uses(), 1);
}

TEST_F(LifecycleTest, FailedConstructionsGiveTheZoneReferenceBack)
{
    OrvDateTime d;
    EXPECT_EQ(OrvDateTimeConstruct(&d, ORV_TIME_INVALID, &zone_), nullptr);
    EXPECT_EQ(Uses(), 1);
    EXPECT_EQ(OrvDateTimeConstruct(&d, INT64_MAX - kHour + 1, &zone_), nullptr); // local reading wraps
    EXPECT_EQ(Uses(), 1);

    // Zones without an answer for readings, or for instants, and a zone whose correction
    // of a reading it skips carries the reading past the 64-bit range (+2 h from an hour
    // before the last instant; logged as an error). The same reading fails a move there.
    const TransitionZoneRules kinds[] = {
        {0, {}, true, false}, {0, {}, false, true}, {0, {{INT64_MAX - kHour, 2 * kHour}}, false, false}};
    for (const TransitionZoneRules& rules : kinds) {
        SCOPED_TRACE(&rules - kinds);
        orv::test::LogCapture log;
        OrvTimezone broken;
        int calls = 0;
        ASSERT_NE(MakeTransitionZone(&broken, rules, alloc_.get(), &calls), nullptr);
        EXPECT_EQ(OrvDateTimeConstructFields(&d, 2262, 4, 11, 23, 17, 16, 854775807, &broken), nullptr);
        EXPECT_EQ(OrvTimezoneGetUseCount(&broken), 1);
        EXPECT_EQ(log.lines().size(), rules.transitions.size());
        if (rules.failInstants) {
            EXPECT_EQ(OrvDateTimeConstruct(&d, 0, &broken), nullptr);
        }
        ASSERT_NE(OrvDateTimeConstructFields(&d, 2262, 4, 11, 23, 17, 16, 854775807, nullptr), nullptr);
        EXPECT_FALSE(OrvDateTimeSetTimezone(&d, &broken));
        EXPECT_TRUE(OrvDateTimeIsFloating(&d) && OrvDateTimeGetWallTime(&d) == INT64_MAX - kHour / 2);
        OrvDateTimeDestruct(&d);
        EXPECT_EQ(OrvTimezoneGetUseCount(&broken), 1);
        OrvTimezoneDestruct(&broken);
        EXPECT_EQ(calls, 1);
    }
}

// Calendar carries are checked against a reference in the kernel tests; these go
// through the value, including the fast path for fields already in range.
TEST(ConstructFields, CarriesOutOfRangeFields)
{
    struct Case {
        Ymd in, out;
    };
    const Case cases[] = {
        {{2024, 1, 1, 24, 60, 60, 1000000000}, {2024, 1, 2, 1, 1, 1, 0}},
        {{2024, 2, 30, 0, 0, 0, 0}, {2024, 3, 1, 0, 0, 0, 0}},
        {{2024, 2, 29, 23, 59, 59, 999999999}, {2024, 2, 29, 23, 59, 59, 999999999}},
        {{2000, 1, 100000000, 0, 0, 0, 0}, {275790, 9, 12, 0, 0, 0, 0}},
        {{2000, 1, -100000000, 0, 0, 0, 0}, {-271791, 4, 19, 0, 0, 0, 0}},
        {{2000, 1, 1, 0, 0, 0, INT_MIN}, {1999, 12, 31, 23, 59, 57, 852516352}},
    };
    for (const Case& c : cases) {
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.in.year, c.in.month, c.in.day, c.in.hour, c.in.min, c.in.sec,
                                             c.in.nanos, OrvFixedTimezoneGetUTC()),
                  nullptr);
        SCOPED_TRACE(testing::Message() << c.in.year << "-" << c.in.month << "-" << c.in.day);
        EXPECT_TRUE(FieldsAre(d, c.out));
        EXPECT_TRUE(d.normalized);
        EXPECT_FALSE(OrvDateTimeIsFloating(&d));
        OrvDateTimeDestruct(&d);
    }
}

TEST(ConstructFields, FieldsAtThe32BitLimitsGiveDefinedInRangeResults)
{
    // Every combination of extreme fields must carry exactly (64-bit intermediate
    // arithmetic) and leave every field in range; the sanitizer build checks that no
    // signed overflow happens on the way.
    const OrvInt extremes[] = {INT_MIN, -1, 0, INT_MAX};
    for (OrvInt year : extremes)
        for (OrvInt month : extremes)
            for (OrvInt day : extremes)
                for (OrvInt time : extremes) {
                    OrvDateTime d;
                    ASSERT_NE(OrvDateTimeConstructFields(&d, year, month, day, time, time, time, time, nullptr), nullptr);
                    EXPECT_GE(d.month, 1);
                    EXPECT_LE(d.month, 12);
                    EXPECT_GE(d.monthDay, 1);
                    EXPECT_LE(d.monthDay, 31);
                    EXPECT_GE(d.hour, 0);
                    EXPECT_LE(d.hour, 23);
                    EXPECT_GE(d.nanosec, 0);
                    OrvDateTimeDestruct(&d);
                }
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructFields(&d, INT_MAX, 12, 31, 23, 59, 59, 1000000000, nullptr), nullptr);
    EXPECT_EQ(d.year, INT_MIN); // the year wraps modulo 2^32 past the 32-bit range
    EXPECT_EQ(d.month, 1);
    EXPECT_EQ(d.monthDay, 1);
    OrvDateTimeDestruct(&d);
}

TEST(ConstructFields, DateOutsideTheInstantRangeKeepsItsFields)
{
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructFields(&d, 3000, 1, 1, 0, 0, 0, 0, OrvFixedTimezoneGetUTC()), nullptr);
    EXPECT_TRUE(FieldsAre(d, {3000, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(d.wallTime, ORV_TIME_INVALID);
    EXPECT_EQ(d.offset, 0);
    EXPECT_TRUE(d.normalized);
    OrvDateTimeDestruct(&d);
}

TEST(WeekSettings, SettersAcceptOnlyTheirRanges)
{
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    for (int w : {-1, 7, 100}) {
        EXPECT_FALSE(OrvDateTimeSetFirstDayOfWeek(&d, static_cast<OrvWeekday>(w)));
        EXPECT_EQ(OrvDateTimeGetFirstDayOfWeek(&d), ORV_WEEKDAY_Monday);
    }
    for (OrvWeekday w : {ORV_WEEKDAY_Sunday, ORV_WEEKDAY_Saturday}) {
        EXPECT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, w));
        EXPECT_EQ(OrvDateTimeGetFirstDayOfWeek(&d), w);
    }
    for (OrvInt n : {0, 8, -1}) {
        EXPECT_FALSE(OrvDateTimeSetMinimalDaysInFirstWeek(&d, n));
        EXPECT_EQ(OrvDateTimeGetMinimalDaysInFirstWeek(&d), 4);
    }
    for (OrvInt n : {1, 7}) {
        EXPECT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(&d, n));
        EXPECT_EQ(OrvDateTimeGetMinimalDaysInFirstWeek(&d), n);
    }
    OrvDateTime copy;
    OrvDateTimeConstructCopy(&copy, &d);
    EXPECT_EQ(OrvDateTimeGetFirstDayOfWeek(&copy), ORV_WEEKDAY_Saturday);
    EXPECT_EQ(OrvDateTimeGetMinimalDaysInFirstWeek(&copy), 7);
    OrvDateTimeDestruct(&copy);
    OrvDateTimeDestruct(&d);
}

TEST_F(LifecycleTest, CopiesShareTheZoneAndTheLastReleaseDeletesItOnce)
{
    OrvDateTime a, b;
    ASSERT_NE(OrvDateTimeConstructFields(&a, 2024, 5, 1, 9, 30, 0, 0, &zone_), nullptr);
    OrvDateTimeConstructCopy(&b, &a);
    EXPECT_EQ(Uses(), 3);
    EXPECT_EQ(b.wallTime, a.wallTime);
    ReleaseZone();
    EXPECT_EQ(OrvTimezoneGetUseCount(&b.tz), 2);
    OrvDateTimeDestruct(&a);
    EXPECT_EQ(deleterCalls_, 0);
    EXPECT_EQ(OrvTimezoneGetUseCount(&b.tz), 1);
    OrvDateTimeDestruct(&b);
    EXPECT_EQ(deleterCalls_, 1);
    ASSERT_EQ(alloc_.deallocatedSizes().size(), 1u);
    EXPECT_EQ(alloc_.deallocatedSizes()[0], 8u); // the count block, once, with its size
}

TEST_F(LifecycleTest, AssignMovesReferencesOnlyBetweenDifferentZones)
{
    OrvDateTime a, b, utc;
    ASSERT_NE(OrvDateTimeConstruct(&a, 0, &zone_), nullptr);
    ASSERT_NE(OrvDateTimeConstruct(&b, kHour, &zone_), nullptr);
    OrvDateTimeConstructDefault(&utc);
    EXPECT_EQ(Uses(), 3);

    OrvDateTimeAssign(&a, &a);
    EXPECT_EQ(Uses(), 3);
    OrvDateTimeAssign(&a, &b); // same zone
    EXPECT_EQ(Uses(), 3);
    EXPECT_EQ(a.wallTime, kHour);

    OrvDateTimeAssign(&a, &utc); // to the uncounted UTC zone
    EXPECT_EQ(Uses(), 2);
    EXPECT_TRUE(OrvFixedTimezoneIsGlobalUTC(&a.tz));
    EXPECT_EQ(a.wallTime, 0);
    OrvDateTimeAssign(&a, &b); // and back
    EXPECT_EQ(Uses(), 3);

    ReleaseZone();
    OrvDateTimeAssign(&b, &utc);
    OrvDateTimeAssign(&a, &utc); // drops the last reference: the zone goes
    EXPECT_EQ(deleterCalls_, 1);
    OrvDateTimeDestruct(&a);
    OrvDateTimeDestruct(&b);
    OrvDateTimeDestruct(&utc);
}

} // namespace
