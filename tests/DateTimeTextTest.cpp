// The text form YYYYMMDDTHHMMSS[Z]: writing, what the reader accepts and refuses, the
// zone a built or replaced value ends in, the exact restore after a refused
// replacement, and the two-letter weekday codes.
#include "Calendar/OrvDateTimeInternal.hpp"
#include "Orv/Utils/OrvCLib.h"
#include "support/CountingAllocator.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

using orv::test::CountingAllocator;
using orv::test::kHour;
using orv::test::MakeTransitionZone;
using orv::test::UtcInstant;

// Counted zones: +1 h, the clock-change zone, and one with no answer for readings.
struct Zones {
    Zones()
    {
        MakeTransitionZone(&plusOneHour, {kHour, {}, false, false}, alloc.get());
        MakeTransitionZone(&dst, orv::test::DstRules(), alloc.get());
        MakeTransitionZone(&noAnswer, {0, {}, true, false}, alloc.get());
    }
    ~Zones()
    {
        for (OrvTimezone* tz : {&plusOneHour, &dst, &noAnswer}) OrvTimezoneDestruct(tz);
    }
    CountingAllocator alloc;
    OrvTimezone plusOneHour, dst, noAnswer;
};

enum class ZoneArg { None, Utc, PlusOne, Dst, NoAnswer };

const OrvTimezone* Pick(Zones& z, ZoneArg which)
{
    const OrvTimezone* const zones[] = {nullptr, OrvFixedTimezoneGetUTC(), &z.plusOneHour, &z.dst, &z.noAnswer};
    return zones[static_cast<int>(which)];
}

OrvInt Uses(const OrvTimezone* tz) { return tz != nullptr ? OrvTimezoneGetUseCount(tz) : 0; }

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

// Every member, the zone handle's four included (padding aside).
bool SameValue(const OrvDateTime& a, const OrvDateTime& b)
{
    return a.nanosec == b.nanosec && a.sec == b.sec && a.min == b.min && a.hour == b.hour &&
           a.monthDay == b.monthDay && a.month == b.month && a.year == b.year && a.wallTime == b.wallTime &&
           a.offset == b.offset && a.tz.impl.ref == b.tz.impl.ref && a.tz.impl.ptr == b.tz.impl.ptr &&
           a.tz.impl.a == b.tz.impl.a && a.tz.impl.d == b.tz.impl.d && a.firstDayOfWeek == b.firstDayOfWeek &&
           a.minimalDaysInFirstWeek == b.minimalDaysInFirstWeek && a.normalized == b.normalized &&
           a.floating == b.floating;
}

// What a field writer leaves behind: a raw month and the fields as the authority.
void MakePending(OrvDateTime& d, OrvInt month)
{
    d.month = month;
    d.normalized = ORV_FALSE;
    d.offset = ORV_TIME_INVALID;
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

TEST(OrvDateTimeGetString, WritesStoredFieldsUncarriedAndZForUtc)
{
    const struct {
        Fields f;
        OrvInt nanos;
        ZoneArg zone;
        bool pending; // month 13 written, not carried
        const char* want;
    } cases[] = {
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::Utc, false, "20240501T093000Z"},
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::PlusOne, false, "20240501T093000"},
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::None, false, "20240501T093000Z"}, // floating holds the UTC zone
        {{2024, 5, 1, 9, 30, 0}, 0, ZoneArg::None, true, "20241301T093000Z"},
        {{2024, 12, 31, 23, 59, 59}, 999999999, ZoneArg::Utc, false, "20241231T235959Z"},
        {{999, 1, 2, 3, 4, 5}, 0, ZoneArg::PlusOne, false, "09990102T030405"},
        {{12345, 1, 1, 0, 0, 0}, 0, ZoneArg::PlusOne, false, "123450101T000000"},
        {{-5, 1, 1, 0, 0, 0}, 0, ZoneArg::Utc, false, "-0050101T000000Z"},
    };
    Zones zones;
    for (const auto& c : cases) {
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.f.year, c.f.month, c.f.day, c.f.hour, c.f.min, c.f.sec, c.nanos,
                                             Pick(zones, c.zone)),
                  nullptr);
        if (c.pending) MakePending(d, 13);
        EXPECT_EQ(Text(d), c.want);
        OrvDateTimeDestruct(&d);
    }
}

TEST(TextWriters, ReplaceContentAndReportAllocationFailure)
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
    for (OrvSizeT room : {0u, 15u}) {
        // With room for the fifteen characters, only the append of the Z fails.
        // Nor is there room for a weekday code.
        Str s(alloc.get());
        ASSERT_TRUE(room == 0 || (OrvStringReserve(s.get(), room) != nullptr && s.get()->capacity < 17u));
        alloc.failAll(true);
        EXPECT_FALSE(OrvDateTimeGetString(&d, s.get()));
        const OrvWeekday we = ORV_WEEKDAY_Wednesday;
        EXPECT_FALSE(OrvWeekdayAppendToString(&we, s.get()));
        EXPECT_EQ(s.text(), room == 0 ? "" : "20240501T093000");
        alloc.failAll(false);
    }
    EXPECT_EQ(alloc.liveBlocks(), 0u);
    EXPECT_EQ(alloc.badDeallocations(), 0u);
    OrvDateTimeDestruct(&d);
}

TEST(TextForm, AcceptsTheTextFormAndLenientFields)
{
    const struct {
        const char* text;
        ZoneArg zone;
        Fields want;
        bool utc; // ends in the global UTC zone
        bool floating;
        OrvTime offset;
    } cases[] = {
        {"20240501T093000Z", ZoneArg::None, {2024, 5, 1, 9, 30, 0}, true, false, 0},
        {"20240501T093000Z", ZoneArg::PlusOne, {2024, 5, 1, 9, 30, 0}, true, false, 0},
        {"20240501T093000", ZoneArg::None, {2024, 5, 1, 9, 30, 0}, true, true, 0},
        {"20240501T093000", ZoneArg::Utc, {2024, 5, 1, 9, 30, 0}, true, false, 0},
        {"20240501T093000", ZoneArg::PlusOne, {2024, 5, 1, 9, 30, 0}, false, false, kHour},
        {"20240229T235959Z", ZoneArg::None, {2024, 2, 29, 23, 59, 59}, true, false, 0},
        {"19700101T000000Z", ZoneArg::None, {1970, 1, 1, 0, 0, 0}, true, false, 0},
        {"00010101T000000Z", ZoneArg::None, {1, 1, 1, 0, 0, 0}, true, false, 0}, // no instant
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
    // Each text is read into a new value, and into a value already in that zone.
    Zones zones;
    for (const auto& c : cases) {
        for (bool replace : {false, true}) {
            SCOPED_TRACE(::testing::Message() << c.text << (replace ? " replacing" : ""));
            const OrvInt uses = Uses(&zones.plusOneHour);
            OrvDateTime d;
            if (replace) {
                ASSERT_NE(OrvDateTimeConstructFields(&d, 1999, 1, 1, 0, 0, 0, 5, Pick(zones, c.zone)), nullptr);
                ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, ORV_WEEKDAY_Saturday));
                Str s;
                ASSERT_NE(OrvStringAssignCStr(s.get(), c.text), nullptr);
                ASSERT_TRUE(OrvDateTimeSetString(&d, s.get()));
            } else {
                ASSERT_NE(OrvDateTimeConstructCStr(&d, c.text, Pick(zones, c.zone)), nullptr);
            }
            EXPECT_TRUE(FieldsAre(d, c.want));
            EXPECT_EQ(OrvFixedTimezoneIsGlobalUTC(&d.tz), c.utc);
            EXPECT_EQ(d.floating, c.floating);
            EXPECT_EQ(d.offset, c.offset);
            EXPECT_EQ(d.firstDayOfWeek, replace ? ORV_WEEKDAY_Saturday : ORV_WEEKDAY_Monday);
            EXPECT_EQ(d.minimalDaysInFirstWeek, 4);
            EXPECT_EQ(d.wallTime, c.want.year < 1678 ? ORV_TIME_INVALID
                                                     : UtcInstant(c.want.year, c.want.month, c.want.day, c.want.hour,
                                                                  c.want.min, c.want.sec) - c.offset);
            // A Z text holds the UTC zone, not the zone given.
            EXPECT_EQ(Uses(&zones.plusOneHour), uses + (c.zone == ZoneArg::PlusOne && !c.utc ? 1 : 0));
            OrvDateTimeDestruct(&d);
        }
    }
}

// The string's length counts, not its terminator: a zero inside the characters ends a
// field early and the text is refused, although the length is 16.
TEST(OrvDateTimeConstructString, UsesTheStringsLength)
{
    Str s;
    ASSERT_NE(OrvStringAssignCStr(s.get(), "20240501T093000Z"), nullptr);
    for (std::size_t at : {16u, 3u, 12u}) {
        const char kept = s.get()->buf[at];
        s.get()->buf[at] = '\0';
        OrvDateTime d;
        const bool whole = at == 16;
        ASSERT_EQ(OrvDateTimeConstructString(&d, s.get(), nullptr) != nullptr, whole) << at;
        if (whole) OrvDateTimeDestruct(&d);
        s.get()->buf[at] = kept;
    }
}

// Refused in any zone: letters, separators, lengths, shifted positions, impossible dates
// and times, and fields strtoul reads but that do not fill their width or are negative.
const char* const kRefused[] = {
    "20240501t093000Z", "20240501T093000z", "2024-05-01T09:30:00Z", "20240501 093000Z", "20240501T0930",
    "20240501T093000ZZ", "", " 20240501T093000", "20240501T093000 ", "20240501T09300Z", "20240230T000000Z",
    "20230229T000000Z", "20241301T000000Z", "20240001T000000Z", "20240500T000000Z", "20240501T240000Z",
    "20240501T236000Z", "20240501T235960Z", "2024050lT093000Z", "0x240501T093000Z", "-0010501T000000Z",
    "2024-501T093000Z", "+-240501T093000Z", "    0501T093000Z",
};

// Each refused text is tried on a new value and as a replacement, which must leave the
// value exactly as it was; no zone reference may stay behind.
TEST(TextForm, RefusalBuildsNothingAndRestoresTheValueExactly)
{
    Zones zones;
    const struct {
        ZoneArg zone;
        bool pending; // fields written but not yet carried
    } starts[] = {{ZoneArg::Dst, false}, {ZoneArg::PlusOne, true}, {ZoneArg::None, false}, {ZoneArg::None, true}};
    for (const auto& st : starts) {
        // Plus a local time the clock-change zone skips, and a zone with no offset.
        std::vector<std::pair<const char*, ZoneArg>> texts = {{"20240331T023000", ZoneArg::Dst},
                                                              {"20240501T093000", ZoneArg::NoAnswer}};
        for (const char* text : kRefused) texts.emplace_back(text, ZoneArg::None);
        for (const auto& [text, zone] : texts) {
            SCOPED_TRACE(::testing::Message() << "zone " << static_cast<int>(st.zone) << " pending " << st.pending
                                              << ": '" << text << "'");
            OrvDateTime d;
            ASSERT_NE(OrvDateTimeConstructFields(&d, 2024, 3, 31, 1, 30, 0, 7, Pick(zones, st.zone)), nullptr);
            ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, ORV_WEEKDAY_Sunday));
            ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(&d, 1));
            if (st.pending) MakePending(d, 14);
            if (zone != ZoneArg::None) { // the case is about that zone: read the text in it
                ASSERT_NE(OrvTimezoneAssign(&d.tz, Pick(zones, zone)), nullptr);
                d.floating = ORV_FALSE;
            }
            OrvDateTime fresh;
            EXPECT_EQ(OrvDateTimeConstructCStr(&fresh, text, OrvDateTimeGetTimezone(&d)), nullptr);
            const OrvDateTime before = d; // a plain snapshot of the members, no reference taken
            const OrvInt uses = Uses(d.tz.impl.ref != nullptr ? &d.tz : nullptr);
            EXPECT_FALSE(OrvDateTimeSetCStr(&d, text));
            EXPECT_TRUE(SameValue(d, before));
            EXPECT_EQ(Uses(d.tz.impl.ref != nullptr ? &d.tz : nullptr), uses);
            OrvDateTimeDestruct(&d);
        }
    }
    for (const OrvTimezone* tz : {&zones.dst, &zones.plusOneHour, &zones.noAnswer}) EXPECT_EQ(Uses(tz), 1);
}

// What is written reads back as the same value; a floating value comes back in UTC.
TEST(TextForm, RoundTrips)
{
    Zones zones;
    const OrvTime secondTwoThirty = UtcInstant(2024, 10, 27, 1, 30); // 02:30 again, at +1 h in the clock-change zone
    const OrvTime instants[] = {0, -1, UtcInstant(2024, 3, 31, 0, 59, 59), UtcInstant(2024, 10, 27, 0, 30),
                                secondTwoThirty, UtcInstant(1677, 9, 22), UtcInstant(2262, 4, 10, 23, 59, 59)};
    constexpr OrvTime kSecond = ORV_TIME_NANOSECONDS_PER_SECOND;
    for (ZoneArg zone : {ZoneArg::None, ZoneArg::Utc, ZoneArg::PlusOne, ZoneArg::Dst}) {
        for (OrvTime t : instants) {
            OrvDateTime d, back;
            ASSERT_NE(OrvDateTimeConstruct(&d, t, Pick(zones, zone)), nullptr);
            const std::string text = Text(d);
            ASSERT_NE(OrvDateTimeConstructCStr(&back, text.c_str(), Pick(zones, zone)), nullptr) << text;
            EXPECT_EQ(Text(back), text);
            EXPECT_EQ(back.floating, ORV_FALSE) << text;
            // Whole seconds survive; a repeated reading comes back as its first occurrence.
            const bool repeated = zone == ZoneArg::Dst && t == secondTwoThirty;
            EXPECT_EQ(back.wallTime, repeated ? t - kHour : t - ((t % kSecond) + kSecond) % kSecond) << text;
            OrvDateTimeDestruct(&back);
            OrvDateTimeDestruct(&d);
        }
    }
}

TEST(OrvWeekdayConstructCStr, ReadsCodesIgnoringCase)
{
    const char* const codes[] = {"SU", "mo", "Tu", "wE", "TH", "fr", "Sa"};
    for (int i = 0; i < 7; ++i) {
        OrvWeekday w = ORV_WEEKDAY_NoWeekday;
        EXPECT_EQ(OrvWeekdayConstructCStr(&w, codes[i]), &w) << codes[i];
        EXPECT_EQ(w, static_cast<OrvWeekday>(i)) << codes[i];
    }
    for (const char* bad : {"SUN", "S", "", " MO", "MO ", "M0", "1"}) {
        OrvWeekday w = ORV_WEEKDAY_Thursday;
        EXPECT_EQ(OrvWeekdayConstructCStr(&w, bad), nullptr) << "'" << bad << "'";
        EXPECT_EQ(w, ORV_WEEKDAY_NoWeekday) << "'" << bad << "'";
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
    for (int bad : {-1, 7, 8, INT_MIN, INT_MAX}) {
        OrvWeekday w; // any int a C caller may pass, without naming an out-of-range enumerator in C++
        std::memcpy(&w, &bad, sizeof w);
        EXPECT_FALSE(OrvWeekdayAppendToString(&w, s.get())) << bad;
    }
    EXPECT_EQ(s.text(), "BYDAY=SUMOTUWETHFRSA");
}

} // namespace
