// Text of date-time values. The compact form YYYYMMDDTHHMMSS[Z]: writing, what the
// reader accepts and refuses and why, the zone a built or replaced value ends in, the
// exact restore after a refused replacement. ISO 8601: tables of written, read and
// refused texts, round trips in every kind of zone. Patterns: against strftime, tables
// of parsed and refused texts. The week-based year, the shared fixed zones, corrupted
// and unterminated input, and the two-letter weekday codes.
#include "Calendar/OrvDateTimeInternal.hpp"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Utils/OrvCLib.h"
#include "Timezone/SharedFixedZones.hpp"
#include "support/CountingAllocator.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
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
                EXPECT_TRUE(OrvDateTimeExplainCStr(c.text, Pick(zones, c.zone), nullptr));
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
// and times, and fields strtoul reads but that do not fill their width or are negative;
// with the reason OrvDateTimeExplainCStr gives.
struct Refusal {
    const char* text;
    OrvTextError error;
    OrvSizeT position;
};
constexpr OrvTextError kLen = ORV_TEXTERROR_Length, kChar = ORV_TEXTERROR_Character, kRange = ORV_TEXTERROR_FieldRange;
const Refusal kRefused[] = {
    {"20240501t093000Z", kChar, 8},  {"20240501T093000z", kChar, 15},  {"2024-05-01T09:30:00Z", kLen, 16},
    {"20240501 093000Z", kChar, 8},  {"20240501T0930", kLen, 13},      {"20240501T093000ZZ", kLen, 16},
    {"", kLen, 0},                   {" 20240501T093000", kChar, 8},   {"20240501T093000 ", kChar, 15},
    {"20240501T09300Z", kChar, 14},  {"20240230T000000Z", kRange, 6},  {"20230229T000000Z", kRange, 6},
    {"20241301T000000Z", kRange, 4}, {"20240001T000000Z", kRange, 4},  {"20240500T000000Z", kRange, 6},
    {"20240501T240000Z", kRange, 9}, {"20240501T236000Z", kRange, 11}, {"20240501T235960Z", kRange, 13},
    {"2024050lT093000Z", kChar, 7},  {"0x240501T093000Z", kChar, 1},   {"-0010501T000000Z", kRange, 0},
    {"2024-501T093000Z", kRange, 4}, {"+-240501T093000Z", kChar, 0},   {"    0501T093000Z", kChar, 0},
};

// Each refused text is tried on a new value and as a replacement, which must leave the
// value exactly as it was; no zone reference may stay behind. The explanation names the
// reason.
TEST(TextForm, RefusalBuildsNothingAndRestoresTheValueExactly)
{
    Zones zones;
    const struct {
        ZoneArg zone;
        bool pending; // fields written but not yet carried
    } starts[] = {{ZoneArg::Dst, false}, {ZoneArg::PlusOne, true}, {ZoneArg::None, false}, {ZoneArg::None, true}};
    for (const auto& st : starts) {
        // Plus a local time the clock-change zone skips, and a zone with no offset.
        std::vector<std::pair<Refusal, ZoneArg>> texts = {
            {{"20240331T023000", ORV_TEXTERROR_Skipped, 9}, ZoneArg::Dst},
            {{"20240501T093000", ORV_TEXTERROR_NoOffset, 0}, ZoneArg::NoAnswer}};
        for (const Refusal& r : kRefused) texts.emplace_back(r, ZoneArg::None);
        for (const auto& [r, zone] : texts) {
            const char* const text = r.text;
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
            OrvTextStatus why{};
            EXPECT_FALSE(OrvDateTimeExplainCStr(text, OrvDateTimeGetTimezone(&d), &why));
            EXPECT_EQ(why.error, r.error);
            EXPECT_EQ(why.position, r.position);
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

// ---- ISO 8601 / RFC 3339 -------------------------------------------------------------

constexpr OrvTime kSec = ORV_TIME_NANOSECONDS_PER_SECOND;
constexpr OrvTime kMin = ORV_TIME_NANOSECONDS_PER_MINUTE;

std::string Iso(const OrvDateTime& d, OrvInt digits = -1)
{
    Str s;
    EXPECT_TRUE(OrvDateTimeGetISO8601(&d, s.get(), digits));
    return s.text();
}

std::string Formatted(const OrvDateTime& d, const char* pattern)
{
    Str s;
    EXPECT_TRUE(OrvDateTimeFormat(&d, pattern, s.get())) << pattern;
    return s.text();
}

::testing::AssertionResult StatusIs(const OrvTextStatus& st, OrvTextError e, OrvSizeT pos)
{
    if (st.error == e && st.position == pos) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "status " << st.error << " at " << st.position;
}

// A value with raw fields in tz (floating when null), read by the next reader.
OrvDateTime Pending(const Fields& f, OrvInt nanos, const OrvTimezone* tz)
{
    OrvDateTime d;
    EXPECT_NE(OrvDateTimeConstructFields(&d, 2000, 1, 1, 0, 0, 0, 0, nullptr), nullptr);
    if (tz != nullptr) {
        OrvTimezoneAssign(&d.tz, tz);
        d.floating = ORV_FALSE;
    }
    d.year = f.year, d.monthDay = f.day, d.hour = f.hour, d.min = f.min, d.sec = f.sec, d.nanosec = nanos;
    MakePending(d, f.month);
    return d;
}

TEST(Iso8601, WritesTheExtendedFormWithFractionAndZone)
{
    Zones zones;
    OrvTimezone lmt; // Berlin's local mean time
    ASSERT_NE(OrvFixedTimezoneConstruct(&lmt, 53 * kMin + 28 * kSec, zones.alloc.get()), nullptr);
    const OrvTimezone* const utc = OrvFixedTimezoneGetUTC();
    const Fields may1 = {2024, 5, 1, 9, 30, 0};
    const struct {
        Fields f;
        OrvInt nanos;
        const OrvTimezone* tz;
        OrvInt digits;
        const char* want; // null: refused
    } cases[] = {
        {may1, 123456789, utc, -1, "2024-05-01T09:30:00.123456789Z"}, {may1, 123456789, utc, 3, "2024-05-01T09:30:00.123Z"},
        {may1, 123456789, utc, 0, "2024-05-01T09:30:00Z"},            {may1, 500000000, utc, -1, "2024-05-01T09:30:00.5Z"},
        {may1, 0, utc, 9, "2024-05-01T09:30:00.000000000Z"},          {may1, 5000, nullptr, -1, "2024-05-01T09:30:00.000005"},
        {may1, 0, &zones.plusOneHour, -1, "2024-05-01T09:30:00+01:00"},
        {may1, 0, OrvFixedTimezoneGetShared(-5 * kHour - 30 * kMin), -1, "2024-05-01T09:30:00-05:30"},
        {{1850, 1, 1, 0, 0, 0}, 0, &lmt, -1, "1850-01-01T00:00:00+00:53:28"},
        {{-1, 12, 31, 23, 59, 59}, 0, utc, -1, "-0001-12-31T23:59:59Z"},
        {{10000, 1, 1, 0, 0, 0}, 0, utc, -1, "+10000-01-01T00:00:00Z"},
        {{0, 13, 1, 0, 0, 0}, 0, utc, -1, "0001-01-01T00:00:00Z"}, // carried first
        {may1, 0, utc, 10, nullptr}, {may1, 0, utc, -2, nullptr},   {may1, 0, &zones.noAnswer, -1, nullptr},
    };
    for (const auto& c : cases) {
        OrvDateTime d = Pending(c.f, c.nanos, c.tz);
        Str s;
        ASSERT_NE(OrvStringAssignCStr(s.get(), "kept"), nullptr);
        EXPECT_EQ(OrvDateTimeGetISO8601(&d, s.get(), c.digits), c.want != nullptr);
        EXPECT_EQ(s.text(), c.want != nullptr ? c.want : "kept");
        OrvDateTimeDestruct(&d);
    }
    OrvTimezoneDestruct(&lmt);
}

// Each text is read into a new value and into a value in the zone given: accepted, it
// writes as `want` and reads back as itself; refused, the reason is given and the
// replaced value is exactly as it was.
TEST(Iso8601, ReadsEveryFormAndRefusesWithTheReason)
{
    Zones zones;
    const OrvTime may1 = UtcInstant(2024, 5, 1, 9, 30);
    const OrvTextError kOffset = ORV_TEXTERROR_OffsetRange, kNone = ORV_TEXTERROR_None;
    const struct {
        std::string text;
        ZoneArg zone;
        const char* want; // null: refused with error at position
        OrvTime instant;
        OrvTextError error;
        OrvSizeT position;
    } cases[] = {
        {"2024-05-01T09:30:00Z", ZoneArg::None, "2024-05-01T09:30:00Z", may1, kNone, 0},
        {"2024-05-01t09:30:00.5z", ZoneArg::PlusOne, "2024-05-01T09:30:00.5Z", may1 + kSec / 2, kNone, 0},
        {"2024-05-01 09:30:00,25+02:00", ZoneArg::None, "2024-05-01T09:30:00.25+02:00", may1 - 2 * kHour + kSec / 4, kNone, 0},
        {"20240501T093000.123456789-0530", ZoneArg::Dst, "2024-05-01T09:30:00.123456789-05:30",
         may1 + 5 * kHour + 30 * kMin + 123456789, kNone, 0},
        {"20240501T0930+05", ZoneArg::None, "2024-05-01T09:30:00+05:00", may1 - 5 * kHour, kNone, 0},
        {"2024-05-01T09:30-00:00", ZoneArg::None, "2024-05-01T09:30:00+00:00", may1, kNone, 0},
        {"2024-05-01T09:30:00-23:59:59", ZoneArg::None, "2024-05-01T09:30:00-23:59:59", may1 + 24 * kHour - kSec, kNone, 0},
        {"2024-05-01T09:30", ZoneArg::None, "2024-05-01T09:30:00", may1, kNone, 0}, // floating
        {"20240501T0930", ZoneArg::PlusOne, "2024-05-01T09:30:00+01:00", may1 - kHour, kNone, 0},
        {"2024-10-27T02:30", ZoneArg::Dst, "2024-10-27T02:30:00+02:00", UtcInstant(2024, 10, 27, 0, 30), kNone, 0},
        {"+02024-05-01T09:30Z", ZoneArg::None, "2024-05-01T09:30:00Z", may1, kNone, 0},
        {"+10000-01-01T00:00Z", ZoneArg::None, "+10000-01-01T00:00:00Z", ORV_TIME_INVALID, kNone, 0},
        {"-00010101T000000", ZoneArg::None, "-0001-01-01T00:00:00", ORV_TIME_INVALID, kNone, 0},
        {"", ZoneArg::None, nullptr, 0, kLen, 0},                      {"2024-05-01", ZoneArg::None, nullptr, 0, kLen, 10},
        {"2024-05-01T09:30:", ZoneArg::None, nullptr, 0, kLen, 17},    {"2024-05-01T09:30+05:3", ZoneArg::None, nullptr, 0, kLen, 21},
        {"2024-05-01X09:30", ZoneArg::None, nullptr, 0, kChar, 10},    {"20240501 0930", ZoneArg::None, nullptr, 0, kChar, 8},
        {"2024-05-01T0930", ZoneArg::None, nullptr, 0, kChar, 13},     {"20240501T09:30", ZoneArg::None, nullptr, 0, kChar, 11},
        {"20245-05-01T09:30", ZoneArg::None, nullptr, 0, kChar, 4},    {"+999-01-01T00:00", ZoneArg::None, nullptr, 0, kChar, 4},
        {"2024-05-01T09:30.5", ZoneArg::None, nullptr, 0, kChar, 16},  {"2024-05-01T09:30:00.Z", ZoneArg::None, nullptr, 0, kChar, 20},
        {"2024-05-01T09:30Zx", ZoneArg::None, nullptr, 0, kChar, 17},  {std::string("2024-05-01T09:30\0Z", 18), ZoneArg::None, nullptr, 0, kChar, 16},
        {"2024-13-01T09:30", ZoneArg::None, nullptr, 0, kRange, 5},    {"2023-02-29T09:30", ZoneArg::None, nullptr, 0, kRange, 8},
        {"2024-05-01T24:00", ZoneArg::None, nullptr, 0, kRange, 11},   {"2024-05-01T09:30:60", ZoneArg::None, nullptr, 0, kRange, 17},
        {"2024-05-01T09:30:00.1234567890Z", ZoneArg::None, nullptr, 0, kRange, 20},
        {"+12345678901-01-01T00:00", ZoneArg::None, nullptr, 0, kRange, 0}, {"+2147483648-01-01T00:00", ZoneArg::None, nullptr, 0, kRange, 0},
        {"2024-05-01T09:30+24:00", ZoneArg::None, nullptr, 0, kOffset, 16}, {"2024-05-01T09:30-05:60", ZoneArg::None, nullptr, 0, kOffset, 16},
        {"2024-03-31T02:30", ZoneArg::Dst, nullptr, 0, ORV_TEXTERROR_Skipped, 11},
        {"2024-05-01T09:30", ZoneArg::NoAnswer, nullptr, 0, ORV_TEXTERROR_NoOffset, 0},
    };
    for (const auto& c : cases) {
        for (bool replace : {false, true}) {
            SCOPED_TRACE(::testing::Message() << "'" << c.text << "'" << (replace ? " replacing" : ""));
            OrvDateTime d = Pending({2024, 3, 31, 1, 30, 0}, 7, Pick(zones, c.zone));
            ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, ORV_WEEKDAY_Saturday));
            const OrvDateTime before = d;
            OrvTextStatus st{ORV_TEXTERROR_Conflict, 99};
            bool ok = false;
            if (replace) {
                ok = OrvDateTimeSetISO8601(&d, c.text.data(), c.text.size(), &st);
            } else {
                OrvDateTimeDestruct(&d);
                ok = OrvDateTimeConstructISO8601(&d, c.text.data(), c.text.size(), Pick(zones, c.zone), &st) == &d;
            }
            EXPECT_TRUE(StatusIs(st, c.error, c.position));
            ASSERT_EQ(ok, c.want != nullptr);
            if (!ok) {
                if (replace) {
                    EXPECT_TRUE(SameValue(d, before));
                    OrvDateTimeDestruct(&d);
                }
                continue;
            }
            const std::string written = Iso(d);
            EXPECT_EQ(written, c.want);
            EXPECT_EQ(d.wallTime, c.instant);
            EXPECT_EQ(d.firstDayOfWeek, replace ? ORV_WEEKDAY_Saturday : ORV_WEEKDAY_Monday);
            OrvDateTime back;
            ASSERT_NE(OrvDateTimeConstructISO8601(&back, written.c_str(), written.size(), Pick(zones, c.zone), nullptr),
                      nullptr);
            EXPECT_EQ(Iso(back), written);
            EXPECT_EQ(back.wallTime, d.wallTime);
            OrvDateTimeDestruct(&back);
            OrvDateTimeDestruct(&d);
        }
    }
    for (const OrvTimezone* tz : {&zones.dst, &zones.plusOneHour, &zones.noAnswer}) EXPECT_EQ(Uses(tz), 1);
}

// The database zones of the property tests; ok tells whether all three were built.
struct DatabaseZones {
    DatabaseZones()
    {
        for (int i = 0; i < 3; ++i) built += OrvTzdbTimezoneConstruct(&tz[i], kIds[i], alloc.get()) != nullptr;
    }
    ~DatabaseZones()
    {
        for (int i = 0; i < built; ++i) OrvTimezoneDestruct(&tz[i]);
    }
    static constexpr const char* kIds[3] = {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe"};
    CountingAllocator alloc;
    OrvTimezone tz[3];
    int built = 0;
};

// read(write(value)) has the value's instant and offset and writes as the same text, in
// UTC, fixed zones (whole minutes, and seconds) and database zones; the pattern writer
// and reader of the same form agree.
TEST(Iso8601, RoundTripsInstantAndOffsetInEveryKindOfZone)
{
    DatabaseZones db;
    ASSERT_EQ(db.built, 3);
    OrvTimezone lmt;
    ASSERT_NE(OrvFixedTimezoneConstruct(&lmt, -(4 * kHour + 56 * kMin + 2 * kSec), db.alloc.get()), nullptr);
    const OrvTimezone* const zones[] = {OrvFixedTimezoneGetUTC(), OrvFixedTimezoneGetShared(5 * kHour + 45 * kMin),
                                        &lmt, &db.tz[0], &db.tz[1], &db.tz[2]};
    const char* const pattern = "%FT%H:%M:%E*S%Ez";
    std::mt19937_64 rng(8601);
    std::uniform_int_distribution<OrvTime> instants(UtcInstant(1678, 1, 1), UtcInstant(2262, 1, 1));
    for (const OrvTimezone* tz : zones) {
        for (int n = 0; n < 600; ++n) {
            const OrvTime t = instants(rng);
            OrvDateTime d, back, parsed;
            ASSERT_NE(OrvDateTimeConstruct(&d, t, tz), nullptr);
            const std::string text = Iso(d, n % 2 == 0 ? -1 : 9), patterned = Formatted(d, pattern);
            ASSERT_NE(OrvDateTimeConstructISO8601(&back, text.c_str(), text.size(), nullptr, nullptr), nullptr) << text;
            ASSERT_NE(OrvDateTimeConstructParse(&parsed, pattern, patterned.c_str(), patterned.size(), nullptr, nullptr),
                      nullptr) << patterned;
            EXPECT_EQ(Iso(back, n % 2 == 0 ? -1 : 9), text);
            for (const OrvDateTime* v : {&back, &parsed}) {
                EXPECT_EQ(v->wallTime, t) << text;
                EXPECT_EQ(v->offset, d.offset) << text;
            }
            for (OrvDateTime* v : {&d, &back, &parsed}) OrvDateTimeDestruct(v);
        }
    }
    OrvTimezoneDestruct(&lmt);
}

// ---- patterns ---------------------------------------------------------------------------

// Every conversion strftime shares, over random values in UTC (any year of the instant
// range), a fixed and the database zones (1900-2100, away from local mean time).
TEST(Pattern, FormatsAsStrftimeInTheCLocale)
{
    DatabaseZones db;
    ASSERT_EQ(db.built, 3);
    const char* const pattern = "%Y|%m|%d|%e|%H|%I|%M|%S|%p|%y|%C|%j|%a|%A|%b|%B|%h|%u|%w|%U|%W|%V|%G|%g|%F|%T|%D|%R|"
                                "%z|%n|%t|%%";
    const OrvTimezone* const zones[] = {OrvFixedTimezoneGetUTC(), OrvFixedTimezoneGetShared(-3 * kHour - 30 * kMin),
                                        &db.tz[0], &db.tz[1], &db.tz[2]};
    std::mt19937_64 rng(1989);
    for (const OrvTimezone* tz : zones) {
        const bool utc = OrvFixedTimezoneIsGlobalUTC(tz);
        std::uniform_int_distribution<OrvTime> instants(UtcInstant(utc ? 1678 : 1900, 1, 1),
                                                        UtcInstant(utc ? 2262 : 2100, 1, 1));
        for (int n = 0; n < 1500; ++n) {
            const OrvTime t = instants(rng);
            OrvDateTime d;
            ASSERT_NE(OrvDateTimeConstruct(&d, t, tz), nullptr);
            std::tm tm{};
            tm.tm_year = d.year - 1900, tm.tm_mon = d.month - 1, tm.tm_mday = d.monthDay;
            tm.tm_hour = d.hour, tm.tm_min = d.min, tm.tm_sec = d.sec;
            tm.tm_wday = OrvDateTimeGetField(&d, ORV_DATETIMEFIELD_DayOfWeek);
            tm.tm_yday = OrvDateTimeGetField(&d, ORV_DATETIMEFIELD_DayOfYear) - 1;
            tm.tm_gmtoff = static_cast<long>(d.offset / kSec);
            char want[512];
            ASSERT_NE(std::strftime(want, sizeof want, pattern, &tm), 0u);
            EXPECT_EQ(Formatted(d, pattern), want);
            EXPECT_EQ(Formatted(d, "%s"), std::to_string((t - ((t % kSec) + kSec) % kSec) / kSec));
            OrvDateTimeDestruct(&d);
        }
    }
}

TEST(Pattern, FormatsFractionsOffsetsZoneNamesAndRefusesUnknownConversions)
{
    DatabaseZones db;
    ASSERT_EQ(db.built, 3);
    const struct {
        const char* iso;
        const OrvTimezone* tz;
        const char* pattern;
        const char* want; // null: refused
    } cases[] = {
        {"2024-05-01T09:05:03.25+05:30", nullptr, "%E*S|%E3S|%E0S|%E9S", "03.25|03.250|03|03.250000000"},
        {"2024-05-01T09:05:03+05:30", nullptr, "%E*S|%z|%Ez|%Z|%s", "03|+0530|+05:30|+0530|1714534503"},
        {"2024-12-30T23:00:00Z", nullptr, "%Z %z %Ez %G-W%V-%u %g", "UTC +0000 +00:00 2025-W01-1 25"},
        {"2024-05-01T09:30", nullptr, "[%z][%Ez][%Z]", "[][][]"}, // floating
        {"1850-01-01T00:00+00:53:28", nullptr, "%z %Ez %Z", "+005328 +00:53:28 +005328"},
        {"2024-07-01T12:00", &db.tz[0], "%Z %z", "CEST +0200"},
        {"2024-01-01T12:00", &db.tz[1], "%Z %Ez", "EST -05:00"},
        {"-0001-01-01T00:00Z", nullptr, "%Y %C %y %G %g %s", "-0001 -01 99 -0002 98 -62198755200"},
        {"+10000-01-01T00:00Z", nullptr, "%Y %C %F", "10000 100 10000-01-01"},
        {"2024-05-01T09:30Z", nullptr, "%Q", nullptr},   {"2024-05-01T09:30Z", nullptr, "abc%", nullptr},
        {"2024-05-01T09:30Z", nullptr, "%E", nullptr},   {"2024-05-01T09:30Z", nullptr, "%Ex", nullptr},
        {"2024-05-01T09:30Z", nullptr, "%E*", nullptr},  {"2024-05-01T09:30Z", nullptr, "%-d", nullptr},
        {"2024-05-01T09:30Z", nullptr, "%5Y", nullptr},  {"2024-05-01T09:30Z", nullptr, "%c", nullptr},
    };
    for (const auto& c : cases) {
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructISO8601(&d, c.iso, std::strlen(c.iso), c.tz, nullptr), nullptr) << c.iso;
        Str s;
        ASSERT_NE(OrvStringAssignCStr(s.get(), "kept"), nullptr);
        EXPECT_EQ(OrvDateTimeFormat(&d, c.pattern, s.get()), c.want != nullptr) << c.pattern;
        EXPECT_EQ(s.text(), c.want != nullptr ? c.want : "kept") << c.pattern;
        OrvDateTimeDestruct(&d);
    }
}

// Output beyond the stack buffer goes through the string's allocator; a failed
// allocation leaves the string as it was and leaks nothing.
TEST(Pattern, LongOutputAndAllocationFailures)
{
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstructISO8601(&d, "2024-05-01T09:30Z", 17, nullptr, nullptr), nullptr);
    const std::string pattern = std::string(300, 'x') + "%F" + std::string(300, 'y');
    const std::string want = std::string(300, 'x') + "2024-05-01" + std::string(300, 'y');
    CountingAllocator alloc;
    for (std::size_t failAt = 1;; ++failAt) {
        Str s(alloc.get());
        ASSERT_NE(OrvStringAssignCStr(s.get(), "kept"), nullptr);
        alloc.failAt(failAt);
        const bool ok = OrvDateTimeFormat(&d, pattern.c_str(), s.get());
        const bool isoOk = OrvDateTimeGetISO8601(&d, s.get(), 9);
        alloc.failAt(0);
        EXPECT_EQ(s.text(), isoOk ? "2024-05-01T09:30:00.000000000Z" : ok ? want : "kept") << failAt;
        if (ok && isoOk) break;
    }
    EXPECT_EQ(alloc.liveBlocks(), 0u);
    EXPECT_EQ(alloc.badDeallocations(), 0u);
    OrvDateTimeDestruct(&d);
}

// Accepted texts (want: the value in ISO 8601) and refused ones (want null: the error at
// the position, in the pattern for ORV_TEXTERROR_Conversion).
TEST(Pattern, ParsesStrictlyAndRefusesWithTheReason)
{
    Zones zones;
    const OrvTextError kNone = ORV_TEXTERROR_None, kConflict = ORV_TEXTERROR_Conflict;
    const OrvTextError kConversion = ORV_TEXTERROR_Conversion;
    const struct {
        const char* pattern;
        std::string text;
        ZoneArg zone;
        const char* want;
        OrvTextError error;
        OrvSizeT position;
    } cases[] = {
        {"%d/%m/%Y %H:%M", "01/05/2024 09:30", ZoneArg::PlusOne, "2024-05-01T09:30:00+01:00", kNone, 0},
        {"%a %d %b %Y %T %z", "wed 01 MAY 2024 09:30:00 +0200", ZoneArg::PlusOne, "2024-05-01T09:30:00+02:00", kNone, 0},
        {"%A, %B %e, %Y %I:%M %p", "Wednesday, May  1, 2024 09:30 PM", ZoneArg::None, "2024-05-01T21:30:00", kNone, 0},
        {"%I:%M %p", "12:05 am", ZoneArg::None, "1970-01-01T00:05:00", kNone, 0},
        {"%E3S", "05.120", ZoneArg::None, "1970-01-01T00:00:05.12", kNone, 0},
        {"%Y%m%d%H%M%S", "20240501093000", ZoneArg::Utc, "2024-05-01T09:30:00Z", kNone, 0},
        {"%Y-%m-%d", "+12345-01-01", ZoneArg::None, "+12345-01-01T00:00:00", kNone, 0},
        {"%s %z", "-1 +0200", ZoneArg::None, "1970-01-01T01:59:59+02:00", kNone, 0},
        {"%s %F %a %H", "1714555800 2024-05-01 Wed 11", ZoneArg::Dst, "2024-05-01T11:30:00+02:00", kNone, 0},
        {"%Y-%j", "2024-366", ZoneArg::None, "2024-12-31T00:00:00", kNone, 0},
        {"%y-%m-%d|%y", "69-01-01|69", ZoneArg::None, "1969-01-01T00:00:00", kNone, 0},
        {"%y", "68", ZoneArg::None, "2068-01-01T00:00:00", kNone, 0},
        {"%C%y", "1999", ZoneArg::None, "1999-01-01T00:00:00", kNone, 0},
        {"%G-W%V-%u %F %U %W %j %g %C", "2025-W01-1 2024-12-30 52 53 365 25 20", ZoneArg::None, "2024-12-30T00:00:00", kNone, 0},
        {"%D %R %p %I", "05/01/24 21:30 PM 09", ZoneArg::None, "2024-05-01T21:30:00", kNone, 0},
        {"%H:%M %Z", "09:30 UTC", ZoneArg::PlusOne, "1970-01-01T09:30:00Z", kNone, 0},
        {"%H:%M %Z", "09:30 CEST", ZoneArg::PlusOne, "1970-01-01T09:30:00+01:00", kNone, 0}, // a name gives no offset
        {"%H:%M %Z|%z", "09:30 -03|-0300", ZoneArg::None, "1970-01-01T09:30:00-03:00", kNone, 0},
        {"%F%n%t%%", "2024-05-01\n\t%", ZoneArg::None, "2024-05-01T00:00:00", kNone, 0},
        {"", "", ZoneArg::None, "1970-01-01T00:00:00", kNone, 0},
        {"%Y-%m-%d", "2024-5-01", ZoneArg::None, nullptr, kChar, 6},   {"%Y-%m-%d", "2024-05", ZoneArg::None, nullptr, kLen, 7},
        {"%Y", "2024x", ZoneArg::None, nullptr, kChar, 4},             {"%b", "Mai", ZoneArg::None, nullptr, kChar, 0},
        {"%F", std::string("2024-05-01\0", 11), ZoneArg::None, nullptr, kChar, 10},
        {"%Y-%m-%d", "2024-02-30", ZoneArg::None, nullptr, kRange, 8}, {"%H:%M", "24:00", ZoneArg::None, nullptr, kRange, 0},
        {"%I %p", "13 AM", ZoneArg::None, nullptr, kRange, 0},         {"%j", "366", ZoneArg::None, nullptr, kRange, 0},
        {"%Y%m%d", "123450101", ZoneArg::None, nullptr, kRange, 4},    {"%E3S", "05.1234", ZoneArg::None, nullptr, kChar, 6},
        {"%E*S", "05.1234567891", ZoneArg::None, nullptr, kRange, 3},  {"%s", "9223372037", ZoneArg::None, nullptr, kRange, 0},
        {"%s", "99999999999999999999", ZoneArg::None, nullptr, kRange, 0},
        {"%z", "+2400", ZoneArg::None, nullptr, ORV_TEXTERROR_OffsetRange, 0},
        {"%a %F", "Tue 2024-05-01", ZoneArg::None, nullptr, kConflict, 0}, {"%F %u", "2024-05-01 2", ZoneArg::None, nullptr, kConflict, 11},
        {"%d %d", "01 02", ZoneArg::None, nullptr, kConflict, 3},      {"%z %Z", "+0200 +0100", ZoneArg::None, nullptr, kConflict, 6},
        {"%G %F", "2024 2024-12-30", ZoneArg::None, nullptr, kConflict, 0},
        {"%Q", "x", ZoneArg::None, nullptr, kConversion, 0},           {"%Y %", "2024 ", ZoneArg::None, nullptr, kConversion, 3},
        {"x%Ex", "x", ZoneArg::None, nullptr, kConversion, 1},         {nullptr, "", ZoneArg::None, nullptr, kConversion, 0},
        {"%F %T", "2024-03-31 02:30:00", ZoneArg::Dst, nullptr, ORV_TEXTERROR_Skipped, 11},
        {"%F", "2024-05-01", ZoneArg::NoAnswer, nullptr, ORV_TEXTERROR_NoOffset, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << (c.pattern != nullptr ? c.pattern : "(null)") << " / " << c.text);
        OrvDateTime d;
        OrvTextStatus st{ORV_TEXTERROR_Length, 99};
        const bool ok =
            OrvDateTimeConstructParse(&d, c.pattern, c.text.data(), c.text.size(), Pick(zones, c.zone), &st) != nullptr;
        EXPECT_TRUE(StatusIs(st, c.error, c.position));
        ASSERT_EQ(ok, c.want != nullptr);
        if (!ok) continue;
        EXPECT_EQ(Iso(d), c.want);
        OrvDateTimeDestruct(&d);
    }
    for (const OrvTimezone* tz : {&zones.dst, &zones.plusOneHour, &zones.noAnswer}) EXPECT_EQ(Uses(tz), 1);
}

TEST(OrvDateTimeGetWeekYear, FollowsTheValuesWeekSettings)
{
    Zones zones;
    const struct {
        Fields f;
        OrvWeekday first;
        OrvInt minimalDays;
        OrvInt want;
        const char* g; // %G
    } cases[] = {
        {{2021, 1, 1, 0, 0, 0}, ORV_WEEKDAY_Monday, 4, 2020, "2020"}, {{2024, 12, 30, 0, 0, 0}, ORV_WEEKDAY_Monday, 4, 2025, "2025"},
        {{2026, 12, 31, 0, 0, 0}, ORV_WEEKDAY_Sunday, 1, 2027, "2027"}, {{2022, 1, 1, 0, 0, 0}, ORV_WEEKDAY_Sunday, 7, 2021, "2021"},
        {{2022, 1, 1, 0, 0, 0}, ORV_WEEKDAY_Saturday, 7, 2022, "2022"}, {{-1, 1, 1, 0, 0, 0}, ORV_WEEKDAY_Monday, 4, -2, "-0002"},
    };
    for (const auto& c : cases) {
        OrvDateTime d = Pending(c.f, 0, nullptr);
        ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(&d, c.first));
        ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(&d, c.minimalDays));
        EXPECT_EQ(OrvDateTimeGetWeekYear(&d), c.want);
        EXPECT_EQ(Formatted(d, "%G"), c.g);
        OrvDateTimeDestruct(&d);
    }
    OrvDateTime d = Pending({2024, 5, 1, 0, 0, 0}, 0, &zones.noAnswer);
    EXPECT_EQ(OrvDateTimeGetWeekYear(&d), -1);
    EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(&d), ORV_TIME_INVALID);
    OrvDateTimeDestruct(&d);
}

// ---- bad input, shared fixed zones ---------------------------------------------------------

// Every single-byte corruption of valid texts, and lengths beyond the terminator: no
// crash, the compact explanation agrees with the compact reader, and whatever the ISO
// reader accepts writes back as text it reads as the same instant.
TEST(TextReaders, SurviveCorruptedAndUnterminatedInput)
{
    const std::string compact = "20240501T093000Z", iso = "2024-05-01T09:30:00.125+02:00";
    const char* const pattern = "%a %d %b %Y %T %Ez";
    const std::string patterned = "Wed 01 May 2024 09:30:00 +02:00";
    for (const std::string* base : {&compact, &iso, &patterned}) {
        for (std::size_t at = 0; at < base->size(); ++at) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text = *base;
                text[at] = static_cast<char>(byte);
                OrvDateTime d;
                const bool built = OrvDateTimeConstructCStr(&d, text.c_str(), nullptr) != nullptr;
                EXPECT_EQ(OrvDateTimeExplainCStr(text.c_str(), nullptr, nullptr), built) << text;
                if (built) OrvDateTimeDestruct(&d);
                if (OrvDateTimeConstructParse(&d, pattern, text.data(), text.size(), nullptr, nullptr) != nullptr)
                    OrvDateTimeDestruct(&d);
                if (OrvDateTimeConstructISO8601(&d, text.data(), text.size(), nullptr, nullptr) == nullptr) continue;
                const std::string written = Iso(d);
                OrvDateTime back;
                ASSERT_NE(OrvDateTimeConstructISO8601(&back, written.data(), written.size(), nullptr, nullptr), nullptr)
                    << written;
                EXPECT_EQ(back.wallTime, d.wallTime) << written;
                OrvDateTimeDestruct(&back);
                OrvDateTimeDestruct(&d);
            }
        }
    }
    OrvDateTime d;
    OrvTextStatus st{};
    EXPECT_EQ(OrvDateTimeConstructISO8601(&d, iso.c_str(), ~OrvSizeT{0}, nullptr, &st), nullptr);
    EXPECT_TRUE(StatusIs(st, kChar, iso.size()));
    EXPECT_EQ(OrvDateTimeConstructParse(&d, pattern, patterned.c_str(), ~OrvSizeT{0}, nullptr, &st), nullptr);
    EXPECT_TRUE(StatusIs(st, kChar, patterned.size()));
}

// One uncounted zone per whole-minute offset; offsets with seconds share a process-wide
// pool. Once it is used up the refusal names the offset, and offsets in use and whole
// minutes go on working.
TEST(SharedFixedZones, WholeMinutesAndAPoolForSeconds)
{
    const OrvTime maxOffset = 23 * kHour + 59 * kMin;
    for (OrvTime offset : {OrvTime{0}, -kMin, 5 * kHour + 30 * kMin, maxOffset, -maxOffset}) {
        const OrvTimezone* z = OrvFixedTimezoneGetShared(offset);
        ASSERT_NE(z, nullptr);
        EXPECT_EQ(z, OrvFixedTimezoneGetShared(offset));
        EXPECT_EQ(OrvTimezoneGetOffset(z, 0), offset);
        EXPECT_EQ(OrvTimezoneGetOffsetFromFields(z, 2024, 5, 1, 0, 0, 0, 0), offset);
        EXPECT_EQ(OrvTimezoneGetUseCount(z), 0);
        EXPECT_FALSE(OrvFixedTimezoneIsGlobalUTC(z));
    }
    for (OrvTime bad : {kSec, OrvTime{1}, maxOffset + kMin, -maxOffset - kMin, ORV_TIME_INVALID})
        EXPECT_EQ(OrvFixedTimezoneGetShared(bad), nullptr) << bad;
    OrvDateTime a, b;
    ASSERT_NE(OrvDateTimeConstructISO8601(&a, "1850-01-01T00:00+00:53:28", 25, nullptr, nullptr), nullptr);
    ASSERT_NE(OrvDateTimeConstructISO8601(&b, "1900-01-01T00:00+005328", 23, nullptr, nullptr), nullptr);
    EXPECT_TRUE(OrvTimezoneEqual(&a.tz, &b.tz));
    EXPECT_EQ(OrvTimezoneGetUseCount(&a.tz), 0);
    OrvDateTimeDestruct(&b);
    // The pool is used up in a child process, so that the order of the tests is free.
    auto useUpThePool = [&] {
        std::size_t claimed = 0;
        OrvTextStatus st{};
        for (int minutes = 0; minutes < 24 * 60 && st.error == ORV_TEXTERROR_None; ++minutes) {
            char text[32];
            std::snprintf(text, sizeof text, "2024-05-01T09:30-%02d:%02d:17", minutes / 60, minutes % 60);
            if (OrvDateTimeConstructISO8601(&b, text, std::strlen(text), nullptr, &st) == nullptr) break;
            ++claimed;
            OrvDateTimeDestruct(&b);
        }
        bool ok = StatusIs(st, ORV_TEXTERROR_Allocation, 16) && claimed <= orv::detail::kSecondsZonePoolSize &&
                  OrvTimezoneGetOffset(&a.tz, 0) == 53 * kMin + 28 * kSec;
        for (const char* text : {"1850-01-01T00:00+00:53:28", "2024-05-01T09:30-00:00:17", "2024-05-01T09:30+01:01"}) {
            ok = ok && OrvDateTimeConstructISO8601(&b, text, std::strlen(text), nullptr, nullptr) != nullptr;
            if (ok) OrvDateTimeDestruct(&b);
        }
        std::fprintf(stderr, ok ? "pool ok" : "pool wrong");
        std::exit(ok ? 0 : 1);
    };
    EXPECT_EXIT(useUpThePool(), ::testing::ExitedWithCode(0), "pool ok");
    OrvDateTimeDestruct(&a);
}

} // namespace
