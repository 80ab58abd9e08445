// Equality and ordering: the instant path, the UTC-field path for values without an
// instant, values whose zone gives no offset, and the strict weak ordering that the
// ordered set relies on, checked against an independent UTC key.
#include "Orv/Calendar/OrvDateTime.h"

#include "support/CountingAllocator.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

namespace {

using orv::test::kHour;
using orv::test::UtcInstant;

constexpr int kUtc = 10000, kFloating = 10001; // zones of a reading besides fixed offsets in minutes

struct Reading {
    int year, month, day, hour, min, sec, nanosec;
    int zone;
};

// Owns the zones a test needs and the values built in them.
class CompareTest : public ::testing::Test {
protected:
    ~CompareTest() override
    {
        for (OrvDateTime& d : values_) OrvDateTimeDestruct(&d);
        for (OrvTimezone& tz : zones_) OrvTimezoneDestruct(&tz);
        EXPECT_EQ(alloc_.liveBlocks(), 0u);
    }
    const OrvTimezone* FixedZone(int offsetMinutes)
    {
        EXPECT_NE(OrvFixedTimezoneConstruct(&zones_.emplace_back(), offsetMinutes * 60 * ORV_TIME_NANOSECONDS_PER_SECOND, alloc_.get()),
                  nullptr);
        return &zones_.back();
    }
    OrvDateTime* Make(const Reading& r)
    {
        const OrvTimezone* tz = r.zone == kUtc        ? OrvFixedTimezoneGetUTC()
                                : r.zone == kFloating ? nullptr
                                                      : FixedZone(r.zone);
        return MakeIn(tz, r.year, r.month, r.day, r.hour, r.min, r.sec, r.nanosec);
    }
    OrvDateTime* MakeIn(const OrvTimezone* tz, int y, int mo, int d, int h, int mi = 0, int s = 0, int ns = 0)
    {
        OrvDateTime* v = &values_.emplace_back();
        EXPECT_NE(OrvDateTimeConstructFields(v, y, mo, d, h, mi, s, ns, tz), nullptr);
        return v;
    }

    orv::test::CountingAllocator alloc_;
    std::deque<OrvTimezone> zones_;
    std::deque<OrvDateTime> values_;
};

// The UTC reading as (seconds since 1970, nanoseconds), from std::chrono's calendar.
std::pair<std::int64_t, int> KeyOf(const Reading& r)
{
    using namespace std::chrono;
    const sys_days day = year{r.year} / month{static_cast<unsigned>(r.month)} / r.day;
    const int offset = r.zone == kUtc || r.zone == kFloating ? 0 : r.zone;
    return {std::int64_t{day.time_since_epoch().count()} * 86400 + r.hour * 3600 + (r.min - offset) * 60 + r.sec,
            r.nanosec};
}

// Inside and outside the instant range, in several zones, near neighbours on both paths.
const Reading kReadings[] = {
    {2024, 5, 1, 10, 0, 0, 0, 60}, // = 2024-05-01T09:00Z
    {2024, 5, 1, 9, 0, 0, 0, kUtc},
    {2024, 5, 1, 9, 0, 0, 0, kFloating},           // floating reads as UTC
    {2024, 5, 1, 4, 59, 59, 999999999, -240},      // 1 ns before 09:00Z
    {2024, 5, 1, 8, 30, 0, 0, -60},                // earlier reading, later instant
    {2024, 12, 31, 23, 59, 59, 999999999, kUtc},
    {2025, 1, 1, 0, 0, 0, 0, kUtc},
    {2020, 1, 1, 0, 0, 0, 0, kUtc},
    {3000, 1, 1, 0, 0, 0, 0, kUtc},
    {3000, 1, 1, 1, 0, 0, 0, 60},                  // equal to the one above, field path
    {3000, 1, 1, 0, 59, 59, 999999999, 60},        // 1 ns earlier, across a minute and hour
    {2999, 12, 31, 23, 59, 59, 999999999, kUtc},
    {3000, 1, 1, 5, 30, 0, 0, 330},
    {1000, 6, 15, 12, 0, 0, 0, kUtc},
    {1000, 6, 15, 12, 0, 0, 1, kFloating},
    {1000, 6, 15, 13, 0, 0, 0, 60},                // equal to 1000-06-15T12:00Z
    {1677, 9, 21, 0, 12, 43, 145224192, kUtc},     // the first instant
    {1677, 9, 21, 0, 12, 43, 145224191, kUtc},     // one ns before it: field path
    {2262, 4, 11, 23, 47, 16, 854775806, kUtc},    // the last instant
    {2262, 4, 11, 23, 47, 16, 854775807, kUtc},    // would be ORV_TIME_INVALID
    {2262, 4, 12, 0, 0, 0, 0, kUtc},
    {2262, 4, 12, 1, 0, 0, 0, 60},                 // equal to the one above
    {1970, 1, 1, 0, 0, 0, 0, -1},
};

// Every ordered pair, each value with itself included. Every other value has other
// week settings, which take no part.
TEST_F(CompareTest, AgreesWithUtcKeyOnEveryPair)
{
    std::vector<OrvDateTime*> v;
    for (const Reading& r : kReadings) {
        v.push_back(Make(r));
        if (v.size() % 2 == 0) {
            ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(v.back(), ORV_WEEKDAY_Saturday));
            ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(v.back(), 1));
        }
    }
    for (std::size_t i = 0; i < v.size(); ++i) {
        for (std::size_t j = 0; j < v.size(); ++j) {
            SCOPED_TRACE(::testing::Message() << "readings " << i << " vs " << j);
            EXPECT_EQ(OrvDateTimeLess(v[i], v[j]) != 0, KeyOf(kReadings[i]) < KeyOf(kReadings[j]));
            EXPECT_EQ(OrvDateTimeEqual(v[i], v[j]) != 0, KeyOf(kReadings[i]) == KeyOf(kReadings[j]));
        }
    }
}

// Offsets a plug-in may give beyond an OrvInt of seconds, at and around 2^31 s: on the
// field path a value equals itself and the UTC reading its offset gives, and precedes
// that reading plus one nanosecond.
TEST_F(CompareTest, FieldPathTakesOffsetsOfAnySize)
{
    const struct {
        std::int64_t secs;
        int nanos;
    } offsets[] = {{2147483648, 0}, {-2147483648, 0}, {2147483647, 0}, {-2147483649, -5}, {9000000000, 999999999},
                   {-9000000000, 0}};
    for (const auto& o : offsets) {
        SCOPED_TRACE(::testing::Message() << "offset " << o.secs << " s " << o.nanos << " ns");
        OrvTimezone* tz = &zones_.emplace_back();
        ASSERT_NE(orv::test::MakeTransitionZone(tz, {o.secs * ORV_TIME_NANOSECONDS_PER_SECOND + o.nanos, {}, false, false},
                                                alloc_.get()),
                  nullptr);
        OrvDateTime* local = MakeIn(tz, 3000, 1, 1, 0);
        const int min = static_cast<int>(-(o.secs / 60)), sec = static_cast<int>(-(o.secs % 60));
        OrvDateTime* utc = MakeIn(OrvFixedTimezoneGetUTC(), 3000, 1, 1, 0, min, sec, -o.nanos);
        OrvDateTime* later = MakeIn(OrvFixedTimezoneGetUTC(), 3000, 1, 1, 0, min, sec, -o.nanos + 1);
        EXPECT_TRUE(OrvDateTimeEqual(local, local));
        EXPECT_TRUE(OrvDateTimeEqual(local, utc) && OrvDateTimeEqual(utc, local));
        EXPECT_FALSE(OrvDateTimeLess(local, utc) || OrvDateTimeLess(utc, local));
        EXPECT_TRUE(OrvDateTimeLess(local, later) && !OrvDateTimeLess(later, local));
    }
}

TEST_F(CompareTest, PendingFieldsAreCarriedAndLeftNormalized)
{
    OrvDateTime* a = Make({2023, 6, 1, 0, 0, 0, 0, 120});
    OrvDateTime* jan = Make({2024, 1, 1, 0, 0, 0, 0, 120});
    ASSERT_TRUE(OrvDateTimeSetField(a, ORV_DATETIMEFIELD_Month, 13));
    ASSERT_TRUE(OrvDateTimeSetField(a, ORV_DATETIMEFIELD_DayOfMonth, 1));
    EXPECT_TRUE(OrvDateTimeEqual(a, jan));
    EXPECT_TRUE(a->normalized);
    EXPECT_EQ(a->year * 100 + a->month, 202401);
    EXPECT_EQ(a->wallTime, jan->wallTime);
}

// Values built from instants in a zone that answers for instants only, then given
// pending fields: they have no offset and so no order.
TEST_F(CompareTest, ValueWithoutOffsetIsUnordered)
{
    OrvTimezone* noFields = &zones_.emplace_back();
    ASSERT_NE(orv::test::MakeTransitionZone(noFields, {kHour, {}, true, false}, alloc_.get()), nullptr);
    OrvDateTime* ok = Make({2024, 5, 1, 9, 0, 0, 0, kUtc});
    OrvDateTime* far = Make({3000, 5, 1, 9, 0, 0, 0, kUtc});
    OrvDateTime *bad = &values_.emplace_back(), *badFar = &values_.emplace_back();
    for (OrvDateTime* d : {bad, badFar}) {
        ASSERT_NE(OrvDateTimeConstruct(d, UtcInstant(2024, 5, 1, 9), noFields), nullptr);
        ASSERT_TRUE(OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Minute, 1));
    }
    ASSERT_TRUE(OrvDateTimeSetField(badFar, ORV_DATETIMEFIELD_Year, 3000));
    const OrvInt uses = OrvTimezoneGetUseCount(noFields);
    for (OrvDateTime* b : {bad, badFar}) {
        for (OrvDateTime* other : {bad, badFar, ok, far}) {
            EXPECT_FALSE(OrvDateTimeEqual(b, other) || OrvDateTimeEqual(other, b));
            EXPECT_FALSE(OrvDateTimeLess(b, other) || OrvDateTimeLess(other, b));
        }
    }
    EXPECT_EQ(OrvTimezoneGetUseCount(noFields), uses);
}

TEST_F(CompareTest, FieldPathLeavesArgumentsAndCountsAsTheyWere)
{
    const OrvTimezone* east = FixedZone(60);
    OrvDateTime* a = MakeIn(east, 3000, 1, 1, 1);
    OrvDateTime* b = MakeIn(east, 2024, 1, 1, 1);
    const OrvDateTime before = *a;
    const OrvInt uses = OrvTimezoneGetUseCount(east);
    const std::size_t allocations = alloc_.allocations();
    EXPECT_TRUE(OrvDateTimeLess(b, a));
    EXPECT_FALSE(OrvDateTimeLess(a, b));
    EXPECT_EQ(OrvTimezoneGetUseCount(east), uses);
    EXPECT_TRUE(a->hour == before.hour && a->year == before.year && a->offset == before.offset);
    EXPECT_EQ(a->wallTime, ORV_TIME_INVALID);
    EXPECT_EQ(alloc_.allocations(), allocations);
}

// UTC readings beyond the 32-bit years: such a value equals itself and keeps its place
// (the field path once moved copies through the fields, which cannot hold that year).
TEST_F(CompareTest, FieldPathPastTheEndsOfTheYears)
{
    OrvDateTime* top = MakeIn(FixedZone(-210), INT32_MAX, 12, 31, 20, 30); // 2147483648-01-01T00:00Z
    OrvDateTime* topUtc = MakeIn(OrvFixedTimezoneGetUTC(), INT32_MAX, 12, 31, 23, 59, 59, 999999999);
    OrvDateTime* bottom = MakeIn(FixedZone(60), INT32_MIN, 1, 1, 0, 30); // 23:30Z the day before
    OrvDateTime* bottomUtc = MakeIn(OrvFixedTimezoneGetUTC(), INT32_MIN, 1, 1, 0);
    EXPECT_TRUE(OrvDateTimeEqual(top, top) && OrvDateTimeEqual(bottom, bottom));
    EXPECT_TRUE(OrvDateTimeLess(topUtc, top) && !OrvDateTimeLess(top, topUtc));
    EXPECT_TRUE(OrvDateTimeLess(bottom, bottomUtc) && !OrvDateTimeLess(bottomUtc, bottom));
}

} // namespace
