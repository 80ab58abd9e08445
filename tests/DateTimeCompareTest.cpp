// Equality and ordering: the instant path, the UTC-field path for values without an
// instant, values whose zone gives no offset, and the strict weak ordering that the
// ordered set relies on, checked against an independent UTC key.
#include "Orv/Calendar/OrvDateTime.h"

#include "support/CountingAllocator.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <chrono>
#include <compare>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace {

using orv::test::CountingAllocator;
using orv::test::kHour;

constexpr OrvTime kSecond = ORV_TIME_NANOSECONDS_PER_SECOND;

struct Reading {
    int year, month, day, hour, min, sec, nanosec;
    // Zone: "Z" the global UTC zone, "F" floating, else a fixed offset in minutes.
    const char* zone;
    int offsetMinutes;
};

// Owns the fixed zones a test needs and the values built in them.
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
        zones_.emplace_back();
        OrvTimezone* tz = &zones_.back();
        EXPECT_NE(OrvFixedTimezoneConstruct(tz, offsetMinutes * 60 * kSecond, alloc_.get()), nullptr);
        return tz;
    }

    OrvDateTime* Make(const Reading& r)
    {
        const OrvTimezone* tz = nullptr;
        if (std::string(r.zone) == "Z") tz = OrvFixedTimezoneGetUTC();
        else if (std::string(r.zone) != "F") tz = FixedZone(r.offsetMinutes);
        values_.emplace_back();
        OrvDateTime* d = &values_.back();
        EXPECT_NE(OrvDateTimeConstructFields(d, r.year, r.month, r.day, r.hour, r.min, r.sec, r.nanosec, tz), nullptr);
        return d;
    }

    OrvDateTime* MakeIn(const OrvTimezone* tz, int y, int mo, int d, int h = 0)
    {
        values_.emplace_back();
        OrvDateTime* v = &values_.back();
        EXPECT_NE(OrvDateTimeConstructFields(v, y, mo, d, h, 0, 0, 0, tz), nullptr);
        return v;
    }

    CountingAllocator alloc_;
    std::deque<OrvTimezone> zones_;
    std::deque<OrvDateTime> values_;
};

// The UTC reading as (seconds since 1970, nanoseconds), from std::chrono's calendar,
// which covers every year these tests use.
struct UtcKey {
    std::int64_t secs;
    int nanosec;
    auto operator<=>(const UtcKey&) const = default;
};

UtcKey KeyOf(const Reading& r)
{
    using namespace std::chrono;
    const sys_days day = year{r.year} / month{static_cast<unsigned>(r.month)} / r.day;
    const int offset = (std::string(r.zone) == "Z" || std::string(r.zone) == "F") ? 0 : r.offsetMinutes;
    const std::int64_t secs =
        std::int64_t{day.time_since_epoch().count()} * 86400 + r.hour * 3600 + r.min * 60 + r.sec - offset * 60;
    return {secs, r.nanosec};
}

std::string Describe(const Reading& r)
{
    return std::to_string(r.year) + "-" + std::to_string(r.month) + "-" + std::to_string(r.day) + "T" +
           std::to_string(r.hour) + ":" + std::to_string(r.min) + ":" + std::to_string(r.sec) + "." +
           std::to_string(r.nanosec) + " " + r.zone + std::to_string(r.offsetMinutes);
}

// Values inside and outside the instant range, in several zones, with near neighbours
// on both paths.
const Reading kReadings[] = {
    {2024, 5, 1, 10, 0, 0, 0, "+", 60},          // = 2024-05-01T09:00Z
    {2024, 5, 1, 9, 0, 0, 0, "Z", 0},
    {2024, 5, 1, 9, 0, 0, 0, "F", 0},            // floating reads as UTC
    {2024, 5, 1, 4, 59, 59, 999999999, "-", -240}, // 1 ns before 09:00Z
    {2024, 12, 31, 23, 59, 59, 999999999, "Z", 0},
    {2025, 1, 1, 0, 0, 0, 0, "Z", 0},
    {2020, 1, 1, 0, 0, 0, 0, "Z", 0},
    {3000, 1, 1, 0, 0, 0, 0, "Z", 0},
    {3000, 1, 1, 1, 0, 0, 0, "+", 60},           // equal to the one above, field path
    {3000, 1, 1, 0, 59, 59, 999999999, "+", 60}, // 1 ns earlier, across a minute and hour
    {2999, 12, 31, 23, 59, 59, 999999999, "Z", 0},
    {3000, 1, 1, 5, 30, 0, 0, "+", 330},
    {1000, 6, 15, 12, 0, 0, 0, "Z", 0},
    {1000, 6, 15, 12, 0, 0, 1, "F", 0},
    {1000, 6, 15, 13, 0, 0, 0, "+", 60},         // equal to 1000-06-15T12:00Z
    {1677, 9, 21, 0, 12, 43, 145224192, "Z", 0},  // the first instant
    {1677, 9, 21, 0, 12, 43, 145224191, "Z", 0},  // one ns before it: field path
    {2262, 4, 11, 23, 47, 16, 854775806, "Z", 0}, // the last instant
    {2262, 4, 11, 23, 47, 16, 854775807, "Z", 0}, // would be ORV_TIME_INVALID
    {2262, 4, 12, 0, 0, 0, 0, "Z", 0},
    {2262, 4, 12, 1, 0, 0, 0, "+", 60},           // equal to the one above
    {1970, 1, 1, 0, 0, 0, 0, "-", -1},
};

// Every ordered pair, each value with itself included.
TEST_F(CompareTest, AgreesWithUtcKeyOnEveryPair)
{
    std::vector<OrvDateTime*> v;
    for (const Reading& r : kReadings) v.push_back(Make(r));
    const std::size_t n = std::size(kReadings);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            SCOPED_TRACE(Describe(kReadings[i]) + " vs " + Describe(kReadings[j]));
            const UtcKey ki = KeyOf(kReadings[i]), kj = KeyOf(kReadings[j]);
            EXPECT_EQ(OrvDateTimeLess(v[i], v[j]) != 0, ki < kj);
            EXPECT_EQ(OrvDateTimeEqual(v[i], v[j]) != 0, ki == kj);
        }
    }
}

TEST_F(CompareTest, WeekSettingsAndFloatingTakeNoPart)
{
    OrvDateTime* a = Make({2024, 5, 1, 9, 0, 0, 0, "Z", 0});
    OrvDateTime* b = Make({2024, 5, 1, 9, 0, 0, 0, "F", 0});
    ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(b, ORV_WEEKDAY_Saturday));
    ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(b, 1));
    EXPECT_TRUE(OrvDateTimeEqual(a, b));
    EXPECT_FALSE(OrvDateTimeLess(a, b));
    EXPECT_FALSE(OrvDateTimeLess(b, a));
}

TEST_F(CompareTest, PendingFieldsAreCarriedAndLeftNormalized)
{
    OrvDateTime* a = Make({2023, 6, 1, 0, 0, 0, 0, "+", 120});
    OrvDateTime* jan = Make({2024, 1, 1, 0, 0, 0, 0, "+", 120});
    ASSERT_TRUE(OrvDateTimeSetField(a, ORV_DATETIMEFIELD_Month, 13));
    ASSERT_TRUE(OrvDateTimeSetField(a, ORV_DATETIMEFIELD_DayOfMonth, 1));
    EXPECT_TRUE(OrvDateTimeEqual(a, jan));
    EXPECT_TRUE(a->normalized);
    EXPECT_EQ(a->year, 2024);
    EXPECT_EQ(a->month, 1);
    EXPECT_EQ(a->wallTime, jan->wallTime);

    ASSERT_TRUE(OrvDateTimeSetField(a, ORV_DATETIMEFIELD_Month, 0)); // December 2023
    EXPECT_TRUE(OrvDateTimeLess(a, jan));
    EXPECT_EQ(a->year, 2023);
    EXPECT_EQ(a->month, 12);
}

// A zone at +01:00 that can be told, after values were built in it, to stop answering.
struct SwitchableZone {
    OrvTimezoneImpl base;
    bool fail;
};

OrvTime SwitchableOffset(OrvTimezoneImpl* impl, OrvTime)
{
    return reinterpret_cast<SwitchableZone*>(impl)->fail ? ORV_TIME_INVALID : kHour;
}

OrvTime SwitchableOffsetFromFields(OrvTimezoneImpl* impl, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvTime)
{
    return SwitchableOffset(impl, 0);
}

constexpr OrvTimezoneImplPlugIn kSwitchablePlugIn = {SwitchableOffset, SwitchableOffsetFromFields};

TEST_F(CompareTest, ValueWithoutOffsetIsUnordered)
{
    SwitchableZone zone{{&kSwitchablePlugIn}, false};
    zones_.emplace_back();
    OrvTimezone* switchable = &zones_.back();
    ASSERT_NE(OrvTimezoneConstruct(switchable, &zone.base, alloc_.get(), [](OrvVoidPtr, OrvAllocator*) {}), nullptr);

    OrvDateTime* ok = Make({2024, 5, 1, 9, 0, 0, 0, "Z", 0});
    OrvDateTime* far = Make({3000, 5, 1, 9, 0, 0, 0, "Z", 0});
    OrvDateTime* bad = MakeIn(switchable, 2024, 5, 1, 10);
    OrvDateTime* badFar = MakeIn(switchable, 3000, 5, 1, 10);
    ASSERT_TRUE(OrvDateTimeEqual(bad, ok));
    ASSERT_TRUE(OrvDateTimeEqual(badFar, far));
    zone.fail = true;
    for (OrvDateTime* d : {bad, badFar}) ASSERT_TRUE(OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Minute, 1));
    const OrvInt uses = OrvTimezoneGetUseCount(switchable);

    for (OrvDateTime* b : {bad, badFar}) {
        for (OrvDateTime* other : {bad, badFar, ok, far}) {
            EXPECT_FALSE(OrvDateTimeEqual(b, other));
            EXPECT_FALSE(OrvDateTimeEqual(other, b));
            EXPECT_FALSE(OrvDateTimeLess(b, other));
            EXPECT_FALSE(OrvDateTimeLess(other, b));
        }
    }
    EXPECT_EQ(OrvTimezoneGetUseCount(switchable), uses);
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
    EXPECT_EQ(a->hour, before.hour);
    EXPECT_EQ(a->year, before.year);
    EXPECT_EQ(a->offset, before.offset);
    EXPECT_EQ(a->wallTime, ORV_TIME_INVALID);
    EXPECT_EQ(alloc_.allocations(), allocations);
}

TEST_F(CompareTest, ClockChangeZoneOrdersRepeatedHourByInstant)
{
    zones_.emplace_back();
    OrvTimezone* dst = &zones_.back();
    ASSERT_NE(orv::test::MakeTransitionZone(dst, orv::test::DstRules(), alloc_.get()), nullptr);
    // 02:30 local occurs twice on 2024-10-27: first at +2 h (00:30Z), then at +1 h.
    values_.emplace_back();
    OrvDateTime* first = &values_.back();
    ASSERT_NE(OrvDateTimeConstruct(first, orv::test::UtcInstant(2024, 10, 27, 0, 30), dst), nullptr);
    values_.emplace_back();
    OrvDateTime* second = &values_.back();
    ASSERT_NE(OrvDateTimeConstruct(second, orv::test::UtcInstant(2024, 10, 27, 1, 30), dst), nullptr);
    ASSERT_EQ(first->hour, second->hour);
    ASSERT_EQ(first->min, second->min);
    EXPECT_TRUE(OrvDateTimeLess(first, second));
    EXPECT_FALSE(OrvDateTimeLess(second, first));
    EXPECT_FALSE(OrvDateTimeEqual(first, second));
    EXPECT_EQ(first->offset, 2 * kHour);
}

} // namespace
