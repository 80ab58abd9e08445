// The text form YYYYMMDDTHHMMSS[Z]: writing, what the reader accepts and refuses, the
// zone a built or replaced value ends in, and the exact restore after a refused
// replacement. Also the two-letter weekday codes.
#include "Calendar/OrvDateTimeInternal.h"
#include "Orv/Utils/OrvCLib.h"
#include "support/CountingAllocator.h"
#include "support/LogCapture.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

namespace {

using orv::test::CountingAllocator;
using orv::test::DstRules;
using orv::test::kHour;
using orv::test::LogCapture;
using orv::test::MakeTransitionZone;
using orv::test::TransitionZoneRules;
using orv::test::UtcInstant;

// Counted zones from a test allocator: +1 h, the clock-change zone, and zones with no
// answer for readings.
struct Zones {
    Zones()
    {
        TransitionZoneRules plusOne;
        plusOne.initialOffset = kHour;
        MakeTransitionZone(&plusOneHour, plusOne, alloc.get());
        MakeTransitionZone(&dst, DstRules(), alloc.get());
        TransitionZoneRules broken;
        broken.failFields = true;
        MakeTransitionZone(&noAnswer, broken, alloc.get());
    }
    ~Zones()
    {
        OrvTimezoneDestruct(&plusOneHour);
        OrvTimezoneDestruct(&dst);
        OrvTimezoneDestruct(&noAnswer);
    }
    CountingAllocator alloc;
    OrvTimezone plusOneHour;
    OrvTimezone dst;
    OrvTimezone noAnswer;
};

enum class ZoneArg { None, Utc, PlusOne, Dst, NoAnswer };

const OrvTimezone* Pick(Zones& z, ZoneArg which)
{
    switch (which) {
    case ZoneArg::None: return nullptr;
    case ZoneArg::Utc: return OrvFixedTimezoneGetUTC();
    case ZoneArg::PlusOne: return &z.plusOneHour;
    case ZoneArg::Dst: return &z.dst;
    case ZoneArg::NoAnswer: return &z.noAnswer;
    }
    return nullptr;
}

struct Fields {
    OrvInt year, month, day, hour, min, sec;
};

::testing::AssertionResult FieldsAre(const OrvDateTime& d, const Fields& e)
{
    if (d.year == e.year && d.month == e.month && d.monthDay == e.day && d.hour == e.hour && d.min == e.min &&
        d.sec == e.sec && d.nanosec == 0)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << d.year << "-" << d.month << "-" << d.monthDay << " " << d.hour
                                         << ":" << d.min << ":" << d.sec << "." << d.nanosec;
}

// Every member, the zone handle's four included.
::testing::AssertionResult SameValue(const OrvDateTime& a, const OrvDateTime& b)
{
    const bool same = a.nanosec == b.nanosec && a.sec == b.sec && a.min == b.min && a.hour == b.hour &&
                      a.monthDay == b.monthDay && a.month == b.month && a.year == b.year && a.wallTime == b.wallTime &&
                      a.offset == b.offset && a.tz.impl.ref == b.tz.impl.ref && a.tz.impl.ptr == b.tz.impl.ptr &&
                      a.tz.impl.a == b.tz.impl.a && a.tz.impl.d == b.tz.impl.d &&
                      a.firstDayOfWeek == b.firstDayOfWeek && a.minimalDaysInFirstWeek == b.minimalDaysInFirstWeek &&
                      a.normalized == b.normalized && a.floating == b.floating;
    if (same) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "value changed";
}

class Str {
public:
    explicit Str(OrvAllocator* a = OrvAllocatorGetDefault()) { OrvStringConstruct(&s_, a); }
    ~Str() { OrvStringDestruct(&s_); }
    Str(const Str&) = delete;
    Str& operator=(const Str&) = delete;
    OrvString* get() { return &s_; }
    std::string text() const { return std::string(OrvStringCStr(&s_), OrvStringLength(&s_)); }

private:
    OrvString s_;
};

std::string Text(const OrvDateTime& d)
{
    Str s;
    EXPECT_TRUE(OrvDateTimeGetString(&d, s.get()));
    return s.text();
}

// --- writing ---------------------------------------------------------------------

TEST(OrvDateTimeGetString, WritesStoredFieldsAndZForUtc)
{
    struct Case {
        Fields f;
        OrvInt nanos;
        ZoneArg zone;
        const char* want;
    };
    const Case cases[] = {
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::Utc, "20240501T093000Z"},
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::PlusOne, "20240501T093000"},
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::None, "20240501T093000Z"}, // floating holds the UTC zone
        {{2024, 12, 31, 23, 59, 59}, 999999999, ZoneArg::Utc, "20241231T235959Z"},
        {{999, 1, 2, 3, 4, 5}, 0, ZoneArg::PlusOne, "09990102T030405"},
        {{12345, 1, 1, 0, 0, 0}, 0, ZoneArg::PlusOne, "123450101T000000"},
        {{-5, 1, 1, 0, 0, 0}, 0, ZoneArg::Utc, "-0050101T000000Z"},
    };
    Zones zones;
    for (const Case& c : cases) {
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.f.year, c.f.month, c.f.day, c.f.hour, c.f.min, c.f.sec, c.nanos,
                                             Pick(zones, c.zone)),
                  nullptr);
        EXPECT_EQ(Text(d), c.want);
        OrvDateTimeDestruct(&d);
    }
}

TEST(OrvDateTimeGetString, WritesPendingFieldsUncarried)
{
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructFields(&d, 2024, 5, 1, 9, 30, 0, 0, nullptr), nullptr);
    // What a field writer leaves behind: a raw month and the fields as the authority.
    d.month = 13;
    d.normalized = ORV_FALSE;
    d.offset = ORV_TIME_INVALID;
    EXPECT_EQ(Text(d), "20241301T093000Z");
    ASSERT_TRUE(OrvDateTimeNormalizeAndSetWall(&d));
    EXPECT_EQ(Text(d), "20250101T093000Z");
    OrvDateTimeDestruct(&d);
}

TEST(OrvDateTimeGetString, ReplacesContentAndReportsAllocationFailure)
{
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructCStr(&d, "20240501T093000Z", nullptr), nullptr);
    CountingAllocator alloc;
    {
        Str s(alloc.get());
        ASSERT_NE(OrvStringAssignCStr(s.get(), "old content that is longer"), nullptr);
        EXPECT_TRUE(OrvDateTimeGetString(&d, s.get()));
        EXPECT_EQ(s.text(), "20240501T093000Z");
    }
    {
        // Room for the fifteen characters but not for the Z: the append fails.
        Str s(alloc.get());
        ASSERT_NE(OrvStringReserve(s.get(), 15), nullptr);
        ASSERT_LT(s.get()->capacity, 17u);
        alloc.failAll(true);
        EXPECT_FALSE(OrvDateTimeGetString(&d, s.get()));
        EXPECT_EQ(s.text(), "20240501T093000");
        alloc.failAll(false);
    }
    {
        Str s(alloc.get());
        alloc.failAll(true);
        EXPECT_FALSE(OrvDateTimeGetString(&d, s.get()));
        EXPECT_EQ(s.text(), "");
        alloc.failAll(false);
    }
    EXPECT_EQ(alloc.liveBlocks(), 0u);
    EXPECT_EQ(alloc.badDeallocations(), 0u);
    OrvDateTimeDestruct(&d);
}

// --- reading: accepted text ------------------------------------------------------

TEST(OrvDateTimeConstructCStr, AcceptsTheTextFormAndLenientFields)
{
    struct Case {
        const char* text;
        ZoneArg zone;
        Fields want;
        bool utc;      // ends in the global UTC zone
        bool floating;
        OrvTime offset;
    };
    const Case cases[] = {
        {"20240501T093000Z", ZoneArg::None, {2024, 5, 1, 9, 30, 0}, true, false, 0},
        {"20240501T093000Z", ZoneArg::PlusOne, {2024, 5, 1, 9, 30, 0}, true, false, 0},
        {"20240501T093000", ZoneArg::None, {2024, 5, 1, 9, 30, 0}, true, true, 0},
        {"20240501T093000", ZoneArg::Utc, {2024, 5, 1, 9, 30, 0}, true, false, 0},
        {"20240501T093000", ZoneArg::PlusOne, {2024, 5, 1, 9, 30, 0}, false, false, kHour},
        {"20240229T235959Z", ZoneArg::None, {2024, 2, 29, 23, 59, 59}, true, false, 0},
        {"19700101T000000Z", ZoneArg::None, {1970, 1, 1, 0, 0, 0}, true, false, 0},
        // The repeated hour reads as its first occurrence, at summer time.
        {"20241027T023000", ZoneArg::Dst, {2024, 10, 27, 2, 30, 0}, false, false, 2 * kHour},
        // Each field is read as strtoul reads it and must fill its width.
        {"+0240501T093000Z", ZoneArg::None, {24, 5, 1, 9, 30, 0}, true, false, 0},
        {" 0240501T093000Z", ZoneArg::None, {24, 5, 1, 9, 30, 0}, true, false, 0},
        {"\t\n 90501T093000Z", ZoneArg::None, {9, 5, 1, 9, 30, 0}, true, false, 0},
        {"2024+5 1T+9 0+0Z", ZoneArg::None, {2024, 5, 1, 9, 0, 0}, true, false, 0},
        {"20240501T-0-0-0Z", ZoneArg::None, {2024, 5, 1, 0, 0, 0}, true, false, 0},
        {"-0000101T000000Z", ZoneArg::None, {0, 1, 1, 0, 0, 0}, true, false, 0},
    };
    Zones zones;
    for (const Case& c : cases) {
        const OrvInt uses = OrvTimezoneGetUseCount(&zones.plusOneHour);
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructCStr(&d, c.text, Pick(zones, c.zone)), nullptr) << c.text;
        EXPECT_TRUE(FieldsAre(d, c.want)) << c.text;
        EXPECT_EQ(OrvFixedTimezoneIsGlobalUTC(&d.tz), c.utc) << c.text;
        EXPECT_EQ(d.floating, c.floating) << c.text;
        EXPECT_EQ(d.offset, c.offset) << c.text;
        EXPECT_EQ(d.firstDayOfWeek, ORV_WEEKDAY_Monday);
        EXPECT_EQ(d.minimalDaysInFirstWeek, 4);
        if (c.want.year >= 1678) {
            EXPECT_EQ(d.wallTime, UtcInstant(c.want.year, c.want.month, c.want.day, c.want.hour, c.want.min,
                                             c.want.sec) - c.offset)
                << c.text;
        }
        // A Z text holds the UTC zone, not the zone given.
        const bool holdsPlusOne = c.zone == ZoneArg::PlusOne && !c.utc;
        EXPECT_EQ(OrvTimezoneGetUseCount(&zones.plusOneHour), uses + (holdsPlusOne ? 1 : 0)) << c.text;
        OrvDateTimeDestruct(&d);
    }
}

TEST(OrvDateTimeConstructCStr, DatesOutsideTheInstantRangeParseWithoutInstant)
{
    LogCapture log;
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructCStr(&d, "00010101T000000Z", nullptr), nullptr);
    EXPECT_TRUE(FieldsAre(d, {1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(d.wallTime, ORV_TIME_INVALID);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].level, ORV_LOGLEVEL_INFO);
    OrvDateTimeDestruct(&d);
}

TEST(OrvDateTimeConstructString, UsesTheStringsLengthNotItsTerminator)
{
    Str s;
    ASSERT_NE(OrvStringAssignCStr(s.get(), "20240501T093000Z"), nullptr);
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructString(&d, s.get(), nullptr), nullptr);
    EXPECT_TRUE(FieldsAre(d, {2024, 5, 1, 9, 30, 0}));
    OrvDateTimeDestruct(&d);

    // A zero inside the characters ends a field early: refused, although the length is 16.
    s.get()->buf[3] = '\0';
    ASSERT_EQ(OrvStringLength(s.get()), 16u);
    EXPECT_EQ(OrvDateTimeConstructString(&d, s.get(), nullptr), nullptr);
    s.get()->buf[3] = '4';
    s.get()->buf[12] = '\0';
    EXPECT_EQ(OrvDateTimeConstructString(&d, s.get(), nullptr), nullptr);
}

// --- reading: refused text -------------------------------------------------------

struct Refused {
    const char* text;
    ZoneArg zone;
};

const Refused kRefused[] = {
    {"20240501t093000Z", ZoneArg::None},  // lower-case letters
    {"20240501T093000z", ZoneArg::None},
    {"2024-05-01T09:30:00Z", ZoneArg::None},  // separators
    {"20240501T0930", ZoneArg::None},         // short
    {"20240501T093000ZZ", ZoneArg::None},     // long
    {"", ZoneArg::None},
    {" 20240501T093000", ZoneArg::None},      // a leading blank shifts every position
    {"20240501T093000 ", ZoneArg::None},
    {"20240501 093000Z", ZoneArg::None},
    {"20240501T09300Z", ZoneArg::None},       // 15 characters, the Z inside the seconds
    {"20240230T000000Z", ZoneArg::None},      // 30 February
    {"20230229T000000Z", ZoneArg::None},      // 29 February of a common year
    {"20241301T000000Z", ZoneArg::None},      // month 13
    {"20240001T000000Z", ZoneArg::None},      // month 0
    {"20240500T000000Z", ZoneArg::None},      // day 0
    {"20240501T240000Z", ZoneArg::None},      // hour 24
    {"20240501T236000Z", ZoneArg::None},      // minute 60
    {"20240501T235960Z", ZoneArg::None},      // second 60
    {"2024050lT093000Z", ZoneArg::None},      // a letter for a digit
    {"0x240501T093000Z", ZoneArg::None},      // strtoul stops at the x
    {"-0010501T000000Z", ZoneArg::None},      // negative year
    {"2024-501T093000Z", ZoneArg::None},      // negative month
    {"+-240501T093000Z", ZoneArg::None},      // no digit after the sign
    {"    0501T093000Z", ZoneArg::None},      // blanks only
    {"20240331T023000", ZoneArg::Dst},        // a local time the zone skips
    {"20240501T093000", ZoneArg::NoAnswer},   // the zone has no offset
};

TEST(OrvDateTimeConstructCStr, RefusesAndReleasesTheZone)
{
    Zones zones;
    for (const Refused& r : kRefused) {
        // Cases that need no particular zone are tried floating and with a counted zone.
        const ZoneArg tries[] = {r.zone, r.zone == ZoneArg::None ? ZoneArg::PlusOne : r.zone};
        for (ZoneArg zone : tries) {
            const OrvTimezone* tz = Pick(zones, zone);
            const OrvInt uses = tz != nullptr ? OrvTimezoneGetUseCount(tz) : 0;
            OrvDateTime d;
            EXPECT_EQ(OrvDateTimeConstructCStr(&d, r.text, tz), nullptr) << "'" << r.text << "'";
            if (tz != nullptr) {
    EXPECT_EQ(OrvTimezoneGetUseCount(tz), uses) << "'" << r.text << "'"; }
        }
    }
}

TEST(OrvDateTimeSetCStr, RefusalRestoresTheValueExactly)
{
    Zones zones;
    struct Start {
        const char* name;
        ZoneArg zone;
        bool pending; // fields written but not yet carried
    };
    const Start starts[] = {
        {"consistent, counted zone", ZoneArg::Dst, false},
        {"pending fields, counted zone", ZoneArg::PlusOne, true},
        {"floating", ZoneArg::None, false},
        {"floating, pending", ZoneArg::None, true},
    };
    for (const Start& st : starts) {
        for (const Refused& r : kRefused) {
            OrvDateTime d;
            ASSERT_NE(OrvDateTimeConstructFields(&d, 2024, 3, 31, 1, 30, 0, 7, Pick(zones, st.zone)), nullptr);
            ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, ORV_WEEKDAY_Sunday));
            ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(&d, 1));
            if (st.pending) {
                d.month = 14;
                d.normalized = ORV_FALSE;
                d.offset = ORV_TIME_INVALID;
            }
            if (r.zone != ZoneArg::None) {
                // The case is about that zone: read the text in it.
                ASSERT_NE(OrvTimezoneAssign(&d.tz, Pick(zones, r.zone)), nullptr);
                d.floating = ORV_FALSE;
            }
            OrvDateTime before = d; // a plain snapshot of the members, no reference taken
            const OrvInt uses = d.tz.impl.ref != nullptr ? OrvTimezoneGetUseCount(&d.tz) : 0;

            EXPECT_FALSE(OrvDateTimeSetCStr(&d, r.text)) << st.name << ": '" << r.text << "'";
            EXPECT_TRUE(SameValue(d, before)) << st.name << ": '" << r.text << "'";
            if (d.tz.impl.ref != nullptr) {
    EXPECT_EQ(OrvTimezoneGetUseCount(&d.tz), uses) << r.text; }
            OrvDateTimeDestruct(&d);
        }
    }
    EXPECT_EQ(OrvTimezoneGetUseCount(&zones.dst), 1);
    EXPECT_EQ(OrvTimezoneGetUseCount(&zones.plusOneHour), 1);
}

TEST(OrvDateTimeSetString, ReplacesReadingInTheValuesOwnZone)
{
    struct Case {
        const char* text;
        ZoneArg start;
        bool utc;
        bool floating;
        OrvTime offset;
    };
    const Case cases[] = {
        {"20240501T093000", ZoneArg::PlusOne, false, false, kHour}, // local reading in +1 h
        {"20240501T093000Z", ZoneArg::PlusOne, true, false, 0},     // moved to UTC, +1 h released
        {"20240501T093000", ZoneArg::None, true, true, 0},          // stays floating
        {"20240501T093000Z", ZoneArg::None, true, false, 0},        // stops floating
        {"20240701T120000", ZoneArg::Dst, false, false, 2 * kHour},
    };
    Zones zones;
    for (const Case& c : cases) {
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, 1999, 1, 1, 0, 0, 0, 5, Pick(zones, c.start)), nullptr);
        ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, ORV_WEEKDAY_Saturday));
        const OrvTimezone* start = Pick(zones, c.start);
        const OrvInt uses = start != nullptr ? OrvTimezoneGetUseCount(start) : 0;
        Str s;
        ASSERT_NE(OrvStringAssignCStr(s.get(), c.text), nullptr);

        ASSERT_TRUE(OrvDateTimeSetString(&d, s.get())) << c.text;
        // A floating value holds the UTC zone and so is written with a Z.
        const std::string written = std::string(c.text) + (c.utc && c.floating ? "Z" : "");
        EXPECT_EQ(Text(d), written);
        EXPECT_EQ(d.nanosec, 0);
        EXPECT_EQ(OrvFixedTimezoneIsGlobalUTC(&d.tz), c.utc) << c.text;
        EXPECT_EQ(d.floating, c.floating) << c.text;
        EXPECT_EQ(d.offset, c.offset) << c.text;
        EXPECT_EQ(d.firstDayOfWeek, ORV_WEEKDAY_Saturday);
        if (start != nullptr) {
    EXPECT_EQ(OrvTimezoneGetUseCount(start), uses - (c.utc ? 1 : 0)) << c.text; }
        OrvDateTimeDestruct(&d);
    }
}

// What is written reads back as the same value; a floating value comes back in UTC.
TEST(TextForm, RoundTrips)
{
    Zones zones;
    const OrvTime secondTwoThirty = UtcInstant(2024, 10, 27, 1, 30); // 02:30 again, at +1 h in the clock-change zone
    const OrvTime instants[] = {0, -1, UtcInstant(2024, 3, 31, 0, 59, 59), UtcInstant(2024, 10, 27, 0, 30),
                                secondTwoThirty, UtcInstant(1677, 9, 22), UtcInstant(2262, 4, 10, 23, 59, 59)};
    for (ZoneArg zone : {ZoneArg::None, ZoneArg::Utc, ZoneArg::PlusOne, ZoneArg::Dst}) {
        for (OrvTime t : instants) {
            OrvDateTime d;
            ASSERT_NE(OrvDateTimeConstruct(&d, t, Pick(zones, zone)), nullptr);
            const std::string text = Text(d);
            OrvDateTime back;
            ASSERT_NE(OrvDateTimeConstructCStr(&back, text.c_str(), Pick(zones, zone)), nullptr) << text;
            EXPECT_EQ(Text(back), text);
            EXPECT_EQ(back.floating, ORV_FALSE) << text;
            // Whole seconds survive; a repeated reading comes back as its first occurrence.
            const OrvTime wholeSeconds =
                t - ((t % ORV_TIME_NANOSECONDS_PER_SECOND) + ORV_TIME_NANOSECONDS_PER_SECOND) % ORV_TIME_NANOSECONDS_PER_SECOND;
            const bool repeated = zone == ZoneArg::Dst && t == secondTwoThirty;
            EXPECT_EQ(back.wallTime, repeated ? t - kHour : wholeSeconds) << text;
            OrvDateTimeDestruct(&back);
            OrvDateTimeDestruct(&d);
        }
    }
}

// --- weekday codes ---------------------------------------------------------------

TEST(OrvWeekdayConstructCStr, ReadsCodesIgnoringCase)
{
    struct Case {
        const char* text;
        OrvWeekday want;
    };
    const Case cases[] = {
        {"SU", ORV_WEEKDAY_Sunday},   {"su", ORV_WEEKDAY_Sunday},     {"Su", ORV_WEEKDAY_Sunday},
        {"mO", ORV_WEEKDAY_Monday},   {"TU", ORV_WEEKDAY_Tuesday},    {"we", ORV_WEEKDAY_Wednesday},
        {"Th", ORV_WEEKDAY_Thursday}, {"fr", ORV_WEEKDAY_Friday},     {"sa", ORV_WEEKDAY_Saturday},
        {"SUN", ORV_WEEKDAY_NoWeekday}, {"S", ORV_WEEKDAY_NoWeekday}, {"", ORV_WEEKDAY_NoWeekday},
        {" MO", ORV_WEEKDAY_NoWeekday}, {"MO ", ORV_WEEKDAY_NoWeekday}, {"M0", ORV_WEEKDAY_NoWeekday},
        {"1", ORV_WEEKDAY_NoWeekday},
    };
    for (const Case& c : cases) {
        OrvWeekday w = ORV_WEEKDAY_Thursday;
        OrvWeekday* r = OrvWeekdayConstructCStr(&w, c.text);
        EXPECT_EQ(w, c.want) << "'" << c.text << "'";
        EXPECT_EQ(r, c.want == ORV_WEEKDAY_NoWeekday ? nullptr : &w) << "'" << c.text << "'";
    }
}

TEST(OrvWeekdayAppendToString, AppendsUpperCaseCodesAndRefusesOthers)
{
    Str s;
    ASSERT_NE(OrvStringAssignCStr(s.get(), "BYDAY="), nullptr);
    for (int i = 0; i <= 6; ++i) {
        const auto w = static_cast<OrvWeekday>(i);
        EXPECT_TRUE(OrvWeekdayAppendToString(&w, s.get()));
    }
    EXPECT_EQ(s.text(), "BYDAY=SUMOTUWETHFRSA");
    for (int bad : {-1, 7, 8, INT_MIN, INT_MAX}) {
        OrvWeekday w; // any int a C caller may pass, without naming an out-of-range enumerator in C++
        std::memcpy(&w, &bad, sizeof w);
        EXPECT_FALSE(OrvWeekdayAppendToString(&w, s.get())) << bad;
    }
    EXPECT_EQ(s.text(), "BYDAY=SUMOTUWETHFRSA");

    CountingAllocator alloc;
    Str full(alloc.get());
    alloc.failAll(true);
    const OrvWeekday we = ORV_WEEKDAY_Wednesday;
    EXPECT_FALSE(OrvWeekdayAppendToString(&we, full.get()));
    EXPECT_EQ(full.text(), "");
    alloc.failAll(false);
}

} // namespace
