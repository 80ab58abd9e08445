// Zones, offsets and instants: moving values between zones (across a clock change,
// to and from floating, refused moves) with reference counts checked on every path,
// setting the instant, and the UTC test.
#include "Orv/Calendar/OrvDateTime.h"

#include "support/CountingAllocator.h"
#include "support/LogCapture.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using orv::test::CountingAllocator;
using orv::test::kHour;
using orv::test::UtcInstant;

struct Fields {
    int y, mo, d, h, mi;
    bool operator==(const Fields&) const = default;
};

Fields FieldsOf(const OrvDateTime* v) { return {v->year, v->month, v->monthDay, v->hour, v->min}; }

// Counted zones from one allocator; every zone's deleter runs exactly once by the end.
class ZoneTest : public ::testing::Test {
protected:
    enum Kind { kDst, kPlus2, kMinus4, kFailFields, kFailInstants, kZeroOffset, kKinds };

    ZoneTest()
    {
        const orv::test::TransitionZoneRules specs[kKinds] = {
            orv::test::DstRules(), {2 * kHour, {}, false, false}, {-4 * kHour, {}, false, false},
            {kHour, {}, true, false}, {kHour, {}, false, true}, {0, {}, false, false},
        };
        for (int k = 0; k < kKinds; ++k) {
            EXPECT_NE(orv::test::MakeTransitionZone(&zones_[k], specs[k], alloc_.get(), &deleted_[k]), nullptr);
        }
    }
    ~ZoneTest() override
    {
        for (OrvTimezone& tz : zones_) OrvTimezoneDestruct(&tz);
        for (int k = 0; k < kKinds; ++k) EXPECT_EQ(deleted_[k], 1) << k;
        EXPECT_EQ(alloc_.liveBlocks(), 0u);
        EXPECT_EQ(alloc_.badDeallocations(), 0u);
    }

    const OrvTimezone* Zone(Kind k) { return &zones_[k]; }
    OrvInt Uses(Kind k) { return OrvTimezoneGetUseCount(&zones_[k]); }

    CountingAllocator alloc_;
    OrvTimezone zones_[kKinds];
    int deleted_[kKinds] = {};
};

// Moves between zones, keeping the local reading.
TEST_F(ZoneTest, MoveKeepsLocalReading)
{
    struct Case {
        Fields local;
        Kind from, to;
        Fields expected;
        OrvTime expectedOffset;
    } const cases[] = {
        {{2024, 7, 1, 12, 0}, kPlus2, kMinus4, {2024, 7, 1, 12, 0}, -4 * kHour},
        {{2024, 7, 1, 12, 0}, kPlus2, kDst, {2024, 7, 1, 12, 0}, 2 * kHour},
        {{2024, 1, 1, 12, 0}, kPlus2, kDst, {2024, 1, 1, 12, 0}, kHour},
        // The DST zone skips 02:xx on 2024-03-31: the reading moves to 03:xx.
        {{2024, 3, 31, 2, 30}, kMinus4, kDst, {2024, 3, 31, 3, 30}, 2 * kHour},
        {{2024, 3, 31, 1, 59}, kMinus4, kDst, {2024, 3, 31, 1, 59}, kHour},
        {{2024, 3, 31, 3, 0}, kMinus4, kDst, {2024, 3, 31, 3, 0}, 2 * kHour},
        // ... and repeats 02:xx on 2024-10-27: the first occurrence, still at +2 h.
        {{2024, 10, 27, 2, 30}, kPlus2, kDst, {2024, 10, 27, 2, 30}, 2 * kHour},
        {{2024, 10, 27, 3, 0}, kPlus2, kDst, {2024, 10, 27, 3, 0}, kHour},
        // Out of the clock change again.
        {{2024, 3, 31, 2, 30}, kDst, kPlus2, {2024, 3, 31, 3, 30}, 2 * kHour},
    };
    for (const Case& c : cases) {
        OrvDateTime v;
        ASSERT_NE(OrvDateTimeConstructFields(&v, c.local.y, c.local.mo, c.local.d, c.local.h, c.local.mi, 0, 0,
                                             Zone(c.from)),
                  nullptr);
        const Fields before = FieldsOf(&v);
        SCOPED_TRACE(std::to_string(before.mo) + "-" + std::to_string(before.d) + " " + std::to_string(before.h) +
                     ":" + std::to_string(before.mi) + " zone " + std::to_string(c.from) + " -> " +
                     std::to_string(c.to));
        ASSERT_TRUE(OrvDateTimeSetTimezone(&v, Zone(c.to)));
        EXPECT_EQ(FieldsOf(&v), c.expected);
        EXPECT_EQ(OrvDateTimeGetOffset(&v), c.expectedOffset);
        EXPECT_EQ(OrvDateTimeGetWallTime(&v),
                  UtcInstant(c.expected.y, c.expected.mo, c.expected.d, c.expected.h, c.expected.mi) -
                      c.expectedOffset);
        EXPECT_EQ(OrvDateTimeGetTimezone(&v)->impl.ptr, Zone(c.to)->impl.ptr);
        OrvDateTimeDestruct(&v);
    }
}

TEST_F(ZoneTest, FloatingAndBack)
{
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstructFields(&v, 2024, 7, 1, 12, 0, 0, 0, Zone(kPlus2)), nullptr);
    ASSERT_TRUE(OrvDateTimeSetTimezone(&v, nullptr));
    EXPECT_EQ(OrvDateTimeGetTimezone(&v), nullptr);
    EXPECT_TRUE(OrvDateTimeIsFloating(&v));
    EXPECT_EQ(OrvDateTimeGetOffset(&v), ORV_TIME_INVALID);
    EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(&v), 0);
    EXPECT_EQ(FieldsOf(&v), (Fields{2024, 7, 1, 12, 0}));
    EXPECT_EQ(OrvDateTimeGetWallTime(&v), UtcInstant(2024, 7, 1, 12));
    EXPECT_TRUE(OrvDateTimeIsUTC(&v));
    EXPECT_EQ(Uses(kPlus2), 1);

    OrvDateTime before;
    std::memcpy(&before, &v, sizeof v);
    EXPECT_TRUE(OrvDateTimeSetTimezone(&v, nullptr));
    EXPECT_EQ(std::memcmp(&before, &v, sizeof v), 0);

    // The global UTC zone itself is a zone: the value stops floating.
    ASSERT_TRUE(OrvDateTimeSetTimezone(&v, OrvFixedTimezoneGetUTC()));
    EXPECT_FALSE(OrvDateTimeIsFloating(&v));
    EXPECT_NE(OrvDateTimeGetTimezone(&v), nullptr);
    EXPECT_EQ(OrvDateTimeGetOffset(&v), 0);
    EXPECT_EQ(FieldsOf(&v), (Fields{2024, 7, 1, 12, 0}));

    ASSERT_TRUE(OrvDateTimeSetTimezone(&v, Zone(kMinus4)));
    EXPECT_EQ(OrvDateTimeGetWallTime(&v), UtcInstant(2024, 7, 1, 16));
    EXPECT_FALSE(OrvDateTimeIsUTC(&v));
    OrvDateTimeDestruct(&v);
}

TEST_F(ZoneTest, SameZoneChangesNothing)
{
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstructFields(&v, 2024, 7, 1, 12, 0, 0, 0, Zone(kPlus2)), nullptr);
    OrvTimezone copy; // another handle to the same zone object
    OrvTimezoneConstructCopy(&copy, Zone(kPlus2));
    OrvDateTime before;
    std::memcpy(&before, &v, sizeof v);
    for (const OrvTimezone* same : {Zone(kPlus2), OrvDateTimeGetTimezone(&v), static_cast<const OrvTimezone*>(&copy)}) {
        EXPECT_TRUE(OrvDateTimeSetTimezone(&v, same));
        EXPECT_EQ(std::memcmp(&before, &v, sizeof v), 0);
        EXPECT_EQ(Uses(kPlus2), 3);
    }
    OrvTimezoneDestruct(&copy);
    OrvDateTimeDestruct(&v);
}

// Every path of a move, zoned or floating before, with the counts of both zones.
TEST_F(ZoneTest, ReferenceCountsBalanceOnEveryPath)
{
    struct Case {
        bool floatingBefore;
        int to; // a Kind, or -1 for floating
        bool succeeds;
    } const cases[] = {
        {false, kMinus4, true},  {false, kPlus2, true},        {false, -1, true},
        {false, kFailFields, false}, {false, kFailInstants, false},
        {true, kMinus4, true},   {true, -1, true},             {true, kFailFields, false},
        {true, kFailInstants, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.floatingBefore) + " -> " + std::to_string(c.to));
        OrvDateTime v;
        ASSERT_NE(OrvDateTimeConstructFields(&v, 2024, 7, 1, 12, 0, 0, 0, c.floatingBefore ? nullptr : Zone(kPlus2)),
                  nullptr);
        OrvInt uses[kKinds];
        for (int k = 0; k < kKinds; ++k) uses[k] = Uses(static_cast<Kind>(k));
        const bool sameZone = !c.floatingBefore && c.to == kPlus2;

        EXPECT_EQ(OrvDateTimeSetTimezone(&v, c.to < 0 ? nullptr : Zone(static_cast<Kind>(c.to))) != 0, c.succeeds);
        for (int k = 0; k < kKinds; ++k) {
            OrvInt expected = uses[k];
            if (c.succeeds && !sameZone) {
                if (k == c.to) ++expected;
                if (k == kPlus2 && !c.floatingBefore) --expected;
            }
            EXPECT_EQ(Uses(static_cast<Kind>(k)), expected) << "zone " << k;
        }
        const bool floatingAfter = c.succeeds ? c.to < 0 : c.floatingBefore;
        EXPECT_EQ(OrvDateTimeIsFloating(&v) != 0, floatingAfter);
        EXPECT_EQ(FieldsOf(&v), (Fields{2024, 7, 1, 12, 0}));
        OrvDateTimeDestruct(&v);
        for (int k = 0; k < kKinds; ++k) EXPECT_EQ(Uses(static_cast<Kind>(k)), 1) << "zone " << k;
    }
}

TEST_F(ZoneTest, RefusedMoveKeepsOldZoneAndCarriedFields)
{
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstructFields(&v, 2024, 7, 1, 12, 0, 0, 0, Zone(kPlus2)), nullptr);
    ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Month, 13)); // pending: 2025-01
    EXPECT_FALSE(OrvDateTimeSetTimezone(&v, Zone(kFailFields)));
    EXPECT_EQ(v.tz.impl.ptr, Zone(kPlus2)->impl.ptr);
    EXPECT_FALSE(OrvDateTimeIsFloating(&v));
    EXPECT_EQ(FieldsOf(&v), (Fields{2025, 1, 1, 12, 0}));
    EXPECT_EQ(v.wallTime, ORV_TIME_INVALID);
    EXPECT_EQ(v.offset, ORV_TIME_INVALID);
    // The next read works the instant out again in the old zone.
    EXPECT_EQ(OrvDateTimeGetWallTime(&v), UtcInstant(2025, 1, 1, 10));
    EXPECT_EQ(OrvDateTimeGetOffset(&v), 2 * kHour);
    OrvDateTimeDestruct(&v);
}

TEST_F(ZoneTest, DateOutsideTheInstantRangeMovesAndReportsNoInstant)
{
    orv::test::LogCapture log;
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstructFields(&v, 3000, 1, 1, 0, 0, 0, 0, Zone(kPlus2)), nullptr);
    EXPECT_EQ(OrvDateTimeGetWallTime(&v), ORV_TIME_INVALID);
    EXPECT_EQ(OrvDateTimeGetOffset(&v), 2 * kHour);
    ASSERT_TRUE(OrvDateTimeSetTimezone(&v, Zone(kMinus4)));
    EXPECT_EQ(FieldsOf(&v), (Fields{3000, 1, 1, 0, 0}));
    EXPECT_EQ(OrvDateTimeGetOffset(&v), -4 * kHour);
    EXPECT_EQ(OrvDateTimeGetWallTime(&v), ORV_TIME_INVALID);
    EXPECT_EQ(Uses(kPlus2), 1);
    EXPECT_EQ(Uses(kMinus4), 2);
    OrvDateTimeDestruct(&v);
}

TEST_F(ZoneTest, GettersReportFailureAsInvalid)
{
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstruct(&v, UtcInstant(2024, 5, 1), Zone(kFailFields)), nullptr);
    EXPECT_EQ(OrvDateTimeGetOffset(&v), kHour); // consistent: the zone is not asked
    ASSERT_TRUE(OrvDateTimeSetField(&v, ORV_DATETIMEFIELD_Hour, 5));
    EXPECT_EQ(OrvDateTimeGetOffset(&v), ORV_TIME_INVALID);
    EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(&v), ORV_TIME_INVALID);
    EXPECT_EQ(OrvDateTimeGetWallTime(&v), ORV_TIME_INVALID);
    OrvDateTimeDestruct(&v);
}

TEST_F(ZoneTest, SetWallTime)
{
    struct Case {
        Kind zone; // kKinds for floating
        OrvTime t;
        bool succeeds;
        Fields expected;
        OrvTime expectedOffset;
    } const cases[] = {
        {kFailFields, 0, true, {1970, 1, 1, 1, 0}, kHour},
        {kDst, UtcInstant(2024, 3, 31, 1), true, {2024, 3, 31, 3, 0}, 2 * kHour},
        {kDst, UtcInstant(2024, 3, 31, 1) - 1, true, {2024, 3, 31, 1, 59}, kHour},
        {kKinds, UtcInstant(2024, 3, 31, 1), true, {2024, 3, 31, 1, 0}, 0},
        {kPlus2, INT64_MIN, true, {1677, 9, 21, 2, 12}, 2 * kHour},
        {kMinus4, INT64_MIN + 4 * kHour, true, {1677, 9, 21, 0, 12}, -4 * kHour},
        {kMinus4, INT64_MIN + 4 * kHour - 1, false, {}, 0},  // local reading below 64 bits
        {kPlus2, ORV_TIME_INVALID, false, {}, 0},
        {kPlus2, ORV_TIME_INVALID - 1, false, {}, 0}, // local reading beyond 64 bits
        {kFailInstants, 0, false, {}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.zone) + " at " + std::to_string(c.t));
        orv::test::LogCapture log;
        OrvDateTime v;
        if (c.zone == kFailInstants) {
            ASSERT_NE(OrvDateTimeConstructDefault(&v), nullptr); // no value can be built in that zone
            OrvTimezoneAssign(&v.tz, Zone(kFailInstants));
        } else {
            ASSERT_NE(OrvDateTimeConstruct(&v, UtcInstant(2000, 1, 1), c.zone == kKinds ? nullptr : Zone(c.zone)),
                      nullptr);
        }
        OrvDateTime before;
        std::memcpy(&before, &v, sizeof v);
        EXPECT_EQ(OrvDateTimeSetWallTime(&v, c.t) != 0, c.succeeds);
        if (c.succeeds) {
            EXPECT_EQ(FieldsOf(&v), c.expected);
            EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(&v), c.expectedOffset);
            EXPECT_EQ(OrvDateTimeGetWallTime(&v), c.t);
        } else {
            EXPECT_EQ(std::memcmp(&before, &v, sizeof v), 0);
        }
        OrvDateTimeDestruct(&v);
    }
}

TEST_F(ZoneTest, IsUtcLooksAtTheZoneOnly)
{
    OrvDateTime v;
    ASSERT_NE(OrvDateTimeConstructDefault(&v), nullptr);
    EXPECT_TRUE(OrvDateTimeIsUTC(&v));
    ASSERT_TRUE(OrvDateTimeSetTimezone(&v, Zone(kZeroOffset)));
    EXPECT_EQ(OrvDateTimeGetOffset(&v), 0);
    EXPECT_FALSE(OrvDateTimeIsUTC(&v));
    ASSERT_TRUE(OrvDateTimeSetTimezone(&v, nullptr));
    EXPECT_TRUE(OrvDateTimeIsUTC(&v));
    OrvDateTimeDestruct(&v);
}

} // namespace
