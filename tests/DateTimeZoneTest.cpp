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
        const orv::test::TransitionZoneRules rules[kKinds] = {
            orv::test::DstRules(),    {2 * kHour, {}, false, false}, {-4 * kHour, {}, false, false},
            {kHour, {}, true, false}, {kHour, {}, false, true},      {0, {}, false, false},
        };
        for (int k = 0; k < kKinds; ++k)
            EXPECT_NE(orv::test::MakeTransitionZone(&zones_[k], rules[k], alloc_.get(), &deleted_[k]), nullptr);
    }
    ~ZoneTest() override
    {
        for (OrvTimezone& tz : zones_) OrvTimezoneDestruct(&tz);
        for (int k = 0; k < kKinds; ++k) EXPECT_EQ(deleted_[k], 1) << k;
        EXPECT_EQ(alloc_.liveBlocks(), 0u);
        EXPECT_EQ(alloc_.badDeallocations(), 0u);
    }
    const OrvTimezone* Zone(int k) { return k < 0 ? nullptr : &zones_[k]; } // -1: floating
    OrvInt Uses(int k) { return OrvTimezoneGetUseCount(&zones_[k]); }
    OrvDateTime* Make(int zone, const Fields& f)
    {
        EXPECT_NE(OrvDateTimeConstructFields(&v_, f.y, f.mo, f.d, f.h, f.mi, 0, 0, Zone(zone)), nullptr);
        return &v_;
    }
    OrvDateTime* July(int zone = kPlus2) { return Make(zone, {2024, 7, 1, 12, 0}); }

    orv::test::CountingAllocator alloc_;
    OrvTimezone zones_[kKinds];
    int deleted_[kKinds] = {};
    OrvDateTime v_;
};

TEST_F(ZoneTest, MoveKeepsLocalReading)
{
    const struct {
        Fields local;
        Kind from, to;
        Fields expected;
        OrvTime expectedOffset;
    } cases[] = {
        {{2024, 7, 1, 12, 0}, kPlus2, kMinus4, {2024, 7, 1, 12, 0}, -4 * kHour},
        {{2024, 7, 1, 12, 0}, kPlus2, kDst, {2024, 7, 1, 12, 0}, 2 * kHour},
        {{2024, 1, 1, 12, 0}, kPlus2, kDst, {2024, 1, 1, 12, 0}, kHour},
        // The clock-change zone skips 02:xx on 2024-03-31: the reading moves to 03:xx ...
        {{2024, 3, 31, 2, 30}, kMinus4, kDst, {2024, 3, 31, 3, 30}, 2 * kHour},
        {{2024, 3, 31, 1, 59}, kMinus4, kDst, {2024, 3, 31, 1, 59}, kHour},
        {{2024, 3, 31, 3, 0}, kMinus4, kDst, {2024, 3, 31, 3, 0}, 2 * kHour},
        // ... and repeats 02:xx on 2024-10-27: the first occurrence, still at +2 h.
        {{2024, 10, 27, 2, 30}, kPlus2, kDst, {2024, 10, 27, 2, 30}, 2 * kHour},
        {{2024, 10, 27, 3, 0}, kPlus2, kDst, {2024, 10, 27, 3, 0}, kHour},
        {{2024, 3, 31, 2, 30}, kDst, kPlus2, {2024, 3, 31, 3, 30}, 2 * kHour}, // out of the change
        {{3000, 1, 1, 0, 0}, kPlus2, kMinus4, {3000, 1, 1, 0, 0}, -4 * kHour}, // no instant, before or after
    };
    for (const auto& c : cases) {
        OrvDateTime& v = *Make(c.from, c.local);
        SCOPED_TRACE(::testing::Message() << c.local.mo << "-" << c.local.d << " " << c.local.h << ":" << c.local.mi
                                          << " zone " << c.from << " -> " << c.to);
        ASSERT_TRUE(OrvDateTimeSetTimezone(&v, Zone(c.to)));
        EXPECT_EQ(FieldsOf(&v), c.expected);
        EXPECT_EQ(OrvDateTimeGetOffset(&v), c.expectedOffset);
        const Fields& e = c.expected;
        EXPECT_EQ(OrvDateTimeGetWallTime(&v),
                  e.y > 2262 ? ORV_TIME_INVALID : UtcInstant(e.y, e.mo, e.d, e.h, e.mi) - c.expectedOffset);
        EXPECT_EQ(OrvDateTimeGetTimezone(&v)->impl.ptr, Zone(c.to)->impl.ptr);
        OrvDateTimeDestruct(&v);
    }
}

TEST_F(ZoneTest, FloatingAndBackAndTheUtcTest)
{
    OrvDateTime* v = July();
    ASSERT_TRUE(OrvDateTimeSetTimezone(v, nullptr));
    EXPECT_EQ(OrvDateTimeGetTimezone(v), nullptr);
    EXPECT_TRUE(OrvDateTimeIsFloating(v));
    EXPECT_EQ(OrvDateTimeGetOffset(v), ORV_TIME_INVALID);
    EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(v), 0);
    EXPECT_EQ(OrvDateTimeGetWallTime(v), UtcInstant(2024, 7, 1, 12));
    EXPECT_TRUE(OrvDateTimeIsUTC(v));
    // The global UTC zone itself is a zone: the value stops floating.
    ASSERT_TRUE(OrvDateTimeSetTimezone(v, OrvFixedTimezoneGetUTC()));
    EXPECT_FALSE(OrvDateTimeIsFloating(v));
    EXPECT_NE(OrvDateTimeGetTimezone(v), nullptr);
    EXPECT_EQ(OrvDateTimeGetOffset(v), 0);
    EXPECT_TRUE(OrvDateTimeIsUTC(v));
    // A zone at offset 0 is not UTC.
    ASSERT_TRUE(OrvDateTimeSetTimezone(v, Zone(kZeroOffset)));
    EXPECT_EQ(OrvDateTimeGetOffset(v), 0);
    EXPECT_FALSE(OrvDateTimeIsUTC(v));
    EXPECT_EQ(FieldsOf(v), (Fields{2024, 7, 1, 12, 0}));
    OrvDateTimeDestruct(v);
}

// Every path of a move, zoned or floating before, with the counts of every zone. A move
// to the zone already held, through any handle, changes no byte. A refused move keeps
// the old zone and carries pending fields, whose instant is worked out in that zone.
TEST_F(ZoneTest, ReferenceCountsBalanceOnEveryPath)
{
    const struct {
        int from, to; // Kinds, or -1 for floating
        bool succeeds;
    } cases[] = {
        {kPlus2, kMinus4, true}, {kPlus2, kPlus2, true},        {kPlus2, -1, true},
        {kPlus2, kFailFields, false}, {kPlus2, kFailInstants, false},
        {-1, kMinus4, true},     {-1, -1, true},                {-1, kFailFields, false},
        {-1, kFailInstants, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.from << " -> " << c.to);
        OrvDateTime* v = July(c.from);
        OrvInt uses[kKinds];
        for (int k = 0; k < kKinds; ++k) uses[k] = Uses(k);
        ASSERT_TRUE(c.succeeds || OrvDateTimeSetField(v, ORV_DATETIMEFIELD_Month, 13)); // refused: 2025-01 pending
        OrvDateTime before;
        std::memcpy(&before, v, sizeof before);
        EXPECT_EQ(OrvDateTimeSetTimezone(v, Zone(c.to)) != 0, c.succeeds);
        if (c.from == c.to) {
            EXPECT_TRUE(OrvDateTimeSetTimezone(v, OrvDateTimeGetTimezone(v)));
            EXPECT_EQ(std::memcmp(&before, v, sizeof before), 0);
        }
        for (int k = 0; k < kKinds; ++k) {
            const bool moved = c.succeeds && c.from != c.to;
            EXPECT_EQ(Uses(k), uses[k] + (moved && k == c.to) - (moved && k == c.from)) << "zone " << k;
        }
        const int zone = c.succeeds ? c.to : c.from;
        EXPECT_EQ(OrvDateTimeIsFloating(v) != 0, zone < 0);
        EXPECT_EQ(FieldsOf(v), (Fields{c.succeeds ? 2024 : 2025, c.succeeds ? 7 : 1, 1, 12, 0}));
        const OrvTime offset = zone == kMinus4 ? -4 * kHour : zone == kPlus2 ? 2 * kHour : 0;
        EXPECT_EQ(OrvDateTimeGetWallTime(v), UtcInstant(c.succeeds ? 2024 : 2025, c.succeeds ? 7 : 1, 1, 12) - offset);
        OrvDateTimeDestruct(v);
        for (int k = 0; k < kKinds; ++k) EXPECT_EQ(Uses(k), 1) << "zone " << k;
    }
}

// Converting keeps the instant and reads it in the new zone; a refused conversion
// changes nothing, counts included. The current time is an instant like any other.
TEST_F(ZoneTest, ConvertKeepsInstant)
{
    const struct {
        int from, to; // -1 for floating
        Fields local; // the value's reading, or at {} its instant is `instant`
        OrvTime instant;
        bool succeeds;
        Fields expected;
        OrvTime offset; // the arithmetic offset after
    } cases[] = {
        {kPlus2, kMinus4, {2024, 7, 1, 12, 0}, 0, true, {2024, 7, 1, 6, 0}, -4 * kHour},
        {kMinus4, kDst, {2024, 3, 30, 21, 30}, 0, true, {2024, 3, 31, 3, 30}, 2 * kHour}, // 01:30Z: after the change
        {kMinus4, kDst, {2024, 3, 30, 20, 59}, 0, true, {2024, 3, 31, 1, 59}, kHour},
        {kPlus2, kPlus2, {2024, 7, 1, 12, 0}, 0, true, {2024, 7, 1, 12, 0}, 2 * kHour},
        {kPlus2, -1, {2024, 7, 1, 12, 0}, 0, true, {2024, 7, 1, 10, 0}, 0},  // floating: the UTC reading
        {-1, kPlus2, {2024, 7, 1, 10, 0}, 0, true, {2024, 7, 1, 12, 0}, 2 * kHour}, // from the fields read as UTC
        {kPlus2, kFailFields, {2024, 7, 1, 12, 0}, 0, true, {2024, 7, 1, 11, 0}, kHour}, // asks instants only
        {kPlus2, kFailInstants, {2024, 7, 1, 12, 0}, 0, false, {}, 0},
        {kPlus2, kMinus4, {3000, 1, 1, 0, 0}, 0, false, {}, 0},   // no instant
        {kPlus2, kMinus4, {}, INT64_MIN, false, {}, 0},           // the reading would wrap
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.local.y << "-" << c.local.mo << "-" << c.local.d << " " << c.local.h
                                          << " zone " << c.from << " -> " << c.to);
        orv::test::LogCapture quiet;
        OrvDateTime* v = &v_;
        if (c.local == Fields{}) {
            ASSERT_NE(OrvDateTimeConstruct(v, c.instant, Zone(c.from)), nullptr);
        } else {
            Make(c.from, c.local);
        }
        const OrvTime instant = OrvDateTimeGetWallTime(v);
        OrvInt uses[kKinds];
        for (int k = 0; k < kKinds; ++k) uses[k] = Uses(k);
        OrvDateTime before;
        std::memcpy(&before, v, sizeof before);
        ASSERT_EQ(OrvDateTimeConvertToTimezone(v, Zone(c.to)) != 0, c.succeeds);
        if (c.succeeds) {
            EXPECT_EQ(OrvDateTimeGetWallTime(v), instant);
            EXPECT_EQ(FieldsOf(v), c.expected);
            EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(v), c.offset);
            EXPECT_EQ(OrvDateTimeIsFloating(v) != 0, c.to < 0);
            for (int k = 0; k < kKinds; ++k)
                EXPECT_EQ(Uses(k), uses[k] + (k == c.to) - (k == c.from)) << "zone " << k;
        } else {
            EXPECT_EQ(std::memcmp(&before, v, sizeof before), 0);
        }
        OrvDateTimeDestruct(v);
    }
    const OrvTime earliest = OrvTimeNow();
    OrvDateTime now;
    ASSERT_NE(OrvDateTimeConstructNow(&now, Zone(kPlus2)), nullptr);
    EXPECT_GE(now.wallTime, earliest);
    EXPECT_LE(now.wallTime, OrvTimeNow());
    EXPECT_GT(earliest, UtcInstant(2024, 1, 1));
    EXPECT_EQ(now.offset, 2 * kHour);
    OrvDateTimeDestruct(&now);
}

TEST_F(ZoneTest, SetWallTime)
{
    const struct {
        int zone; // -1 for floating
        OrvTime t;
        bool succeeds;
        Fields expected;
        OrvTime expectedOffset;
    } cases[] = {
        {kFailFields, 0, true, {1970, 1, 1, 1, 0}, kHour},
        {kDst, UtcInstant(2024, 3, 31, 1), true, {2024, 3, 31, 3, 0}, 2 * kHour},
        {kDst, UtcInstant(2024, 3, 31, 1) - 1, true, {2024, 3, 31, 1, 59}, kHour},
        {-1, UtcInstant(2024, 3, 31, 1), true, {2024, 3, 31, 1, 0}, 0},
        {kPlus2, INT64_MIN, true, {1677, 9, 21, 2, 12}, 2 * kHour},
        {kMinus4, INT64_MIN + 4 * kHour, true, {1677, 9, 21, 0, 12}, -4 * kHour},
        {kMinus4, INT64_MIN + 4 * kHour - 1, false, {}, 0}, // local reading below 64 bits
        {kPlus2, ORV_TIME_INVALID, false, {}, 0},
        {kPlus2, ORV_TIME_INVALID - 1, false, {}, 0}, // local reading beyond 64 bits
        {kFailInstants, 0, false, {}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.zone << " at " << c.t);
        orv::test::LogCapture quiet;
        OrvDateTime v;
        if (c.zone == kFailInstants) { // no value can be built in that zone
            ASSERT_NE(OrvDateTimeConstructDefault(&v), nullptr);
            OrvTimezoneAssign(&v.tz, Zone(kFailInstants));
        } else {
            ASSERT_NE(OrvDateTimeConstruct(&v, UtcInstant(2000, 1, 1), Zone(c.zone)), nullptr);
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

} // namespace
