// Zones of the compiled database: gap and overlap policy on real zones, the TZif and
// rule readers on made-up files, bad input, allocation failure and the local zone.
#include "Timezone/TzdbDatabase.hpp"
#include "Timezone/TzdbZone.hpp"
#include "Timezone/TzifFile.hpp"
#include "Orv/Calendar/OrvDateTime.h"
#include "support/CountingAllocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

using orv::test::CountingAllocator;
using Bytes = std::vector<unsigned char>;

constexpr OrvTime kH = ORV_TIME_NANOSECONDS_PER_HOUR;
constexpr OrvTime kMin = ORV_TIME_NANOSECONDS_PER_MINUTE;
constexpr OrvTime kS = ORV_TIME_NANOSECONDS_PER_SECOND;

std::string DatabaseDir()
{
    const char* dir = std::getenv("TZDIR");
    return (dir != nullptr && dir[0] != '\0') ? dir : "/usr/share/zoneinfo";
}

bool HaveDatabase() { return access((DatabaseDir() + "/Europe/Berlin").c_str(), R_OK) == 0; }

#define REQUIRE_DATABASE()                                                                                             \
    do {                                                                                                               \
        if (!HaveDatabase()) GTEST_SKIP() << "no time-zone database at " << DatabaseDir() << " (install tzdata)";      \
    } while (0)

Bytes ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Sets or clears an environment variable for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name)
    {
        if (const char* old = std::getenv(name)) old_ = old;
        Set(value);
    }
    ~ScopedEnv() { Set(old_ ? old_->c_str() : nullptr); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    void Set(const char* v) { v != nullptr ? setenv(name_.c_str(), v, 1) : unsetenv(name_.c_str()); }
    std::string name_;
    std::optional<std::string> old_;
};

std::vector<std::string> AllIds()
{
    std::vector<std::string> ids;
    EXPECT_TRUE(OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids));
    std::sort(ids.begin(), ids.end());
    return ids;
}

// A writer of small TZif files, so the reader can be fed exactly what a test needs.
struct TzifLayout {
    char version = '2'; // '\0' for version 1
    std::vector<std::int64_t> times{};
    std::vector<unsigned char> typeIndexes{};
    std::vector<std::int32_t> offsets{0}; // one per type
    std::string footer{};                 // without its newlines
    std::uint32_t leapCount = 0;
    std::vector<std::string> names{};     // per type: abbreviation, a leading '*' for daylight
};                                        // time; none: every type "ABC", standard time

void PutBe32(Bytes* out, std::uint32_t v)
{
    for (int shift = 24; shift >= 0; shift -= 8) out->push_back(static_cast<unsigned char>(v >> shift));
}

void PutBlock(Bytes* out, const TzifLayout& s, int timeSize)
{
    const auto types = static_cast<std::uint32_t>(s.offsets.size());
    std::string chars = s.names.empty() ? std::string("ABC", 4) : "";
    for (const std::string& name : s.names) chars.append(name.c_str() + (name[0] == '*'), name.size() + 1 - (name[0] == '*'));
    out->insert(out->end(), {'T', 'Z', 'i', 'f', static_cast<unsigned char>(s.version)});
    out->insert(out->end(), 15, 0);
    for (std::uint32_t n : {types, types, s.leapCount, static_cast<std::uint32_t>(s.times.size()), types,
                            static_cast<std::uint32_t>(chars.size())})
        PutBe32(out, n);
    for (std::int64_t t : s.times) {
        if (timeSize == 8) PutBe32(out, static_cast<std::uint32_t>(static_cast<std::uint64_t>(t) >> 32));
        PutBe32(out, static_cast<std::uint32_t>(t));
    }
    out->insert(out->end(), s.typeIndexes.begin(), s.typeIndexes.end());
    for (std::size_t i = 0, at = 0; i < s.offsets.size(); ++i) {
        PutBe32(out, static_cast<std::uint32_t>(s.offsets[i]));
        const bool dst = !s.names.empty() && s.names[i][0] == '*';
        out->insert(out->end(), {static_cast<unsigned char>(dst), static_cast<unsigned char>(at)});
        if (!s.names.empty()) at += s.names[i].size() + 1 - dst;
    }
    out->insert(out->end(), chars.begin(), chars.end());
    for (std::uint32_t i = 0; i < s.leapCount; ++i) {
        if (timeSize == 8) PutBe32(out, 0);
        PutBe32(out, 78796800U + i * 15724800U);
        PutBe32(out, i + 1);
    }
    out->insert(out->end(), 2 * s.offsets.size(), 0);
}

Bytes MakeTzif(const TzifLayout& s)
{
    Bytes out;
    if (s.version == '\0') {
        PutBlock(&out, s, 4);
        return out;
    }
    // The 32-bit block of a version 2+ file: one type, nothing else.
    PutBlock(&out, TzifLayout{.version = s.version, .offsets = {s.offsets[0]}}, 4);
    PutBlock(&out, s, 8);
    out.push_back('\n');
    out.insert(out.end(), s.footer.begin(), s.footer.end());
    out.push_back('\n');
    return out;
}

// A zone on a counting allocator, from file bytes, a database id or a rule; ok is false
// when construction was refused. Whatever happens, nothing may leak.
struct Posix {
    const char* rule;
};

struct Zone {
    explicit Zone(const Bytes& b)
        : ok(orv::tzdb::ConstructFromBytes(&tz, b.data(), b.size(), "test", alloc.get()) != nullptr) {}
    explicit Zone(const char* id) : ok(OrvTzdbTimezoneConstruct(&tz, id, alloc.get()) != nullptr) {}
    explicit Zone(Posix p) : ok(OrvTzdbTimezoneConstructPosix(&tz, p.rule, alloc.get()) != nullptr) {}
    ~Zone()
    {
        if (ok) OrvTimezoneDestruct(&tz);
        EXPECT_EQ(alloc.liveBlocks(), 0U);
        EXPECT_EQ(alloc.badDeallocations(), 0U);
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
    OrvTime At(std::int64_t t) const { return OrvTimezoneGetOffset(&tz, t * kS); }

    CountingAllocator alloc;
    OrvTimezone tz{};
    bool ok;
};

// Days from civil, kept local so the test does not check the library against itself.
constexpr std::int64_t Utc(int y, int mo, int d, int h = 0, int mi = 0, int s = 0)
{
    const int yy = y - (mo <= 2 ? 1 : 0);
    const int era = (yy >= 0 ? yy : yy - 399) / 400;
    const int yoe = yy - era * 400;
    const int doy = (153 * (mo + (mo > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return (std::int64_t{era} * 146097 + doe - 719468) * 86400 + h * 3600 + mi * 60 + s;
}

// ---------------------------------------------------------------------------------
// Gap and overlap policy on real zones
// ---------------------------------------------------------------------------------

struct PolicyCase {
    const char* zone;
    int y, mo, d, h, mi;
    OrvTzdbLookupKind kind;
    OrvTime before, after; // offsets
    std::int64_t transition;
    int readH, readMi; // the reading a value built from these fields ends up with
};

constexpr auto kU = ORV_TZDBLOOKUPKIND_Unique;
constexpr auto kSkip = ORV_TZDBLOOKUPKIND_Skipped;
constexpr auto kRep = ORV_TZDBLOOKUPKIND_Repeated;
constexpr OrvTime kLh = 10 * kH + 30 * kMin; // Lord Howe, +10:30 and +11:00
constexpr OrvTime kLhDst = kLh + 30 * kMin;

const PolicyCase kPolicyCases[] = {
    // Europe/Berlin: +1 -> +2 at 01:00Z on the last Sunday of March, back in October.
    {"Europe/Berlin", 2024, 3, 31, 2, 0, kSkip, kH, 2 * kH, Utc(2024, 3, 31, 1), 3, 0},
    {"Europe/Berlin", 2024, 3, 31, 2, 30, kSkip, kH, 2 * kH, Utc(2024, 3, 31, 1), 3, 30},
    {"Europe/Berlin", 2024, 3, 31, 3, 0, kU, 2 * kH, 2 * kH, 0, 3, 0},
    {"Europe/Berlin", 2024, 10, 27, 2, 0, kRep, 2 * kH, kH, Utc(2024, 10, 27, 1), 2, 0},
    {"Europe/Berlin", 2024, 10, 27, 2, 59, kRep, 2 * kH, kH, Utc(2024, 10, 27, 1), 2, 59},
    {"Europe/Berlin", 2199, 3, 31, 2, 30, kSkip, kH, 2 * kH, Utc(2199, 3, 31, 1), 3, 30}, // footer, unrolled
    {"Europe/Berlin", 1947, 5, 11, 3, 30, kSkip, 2 * kH, 3 * kH, Utc(1947, 5, 11, 1), 4, 30}, // double summer time
    // America/New_York: -5 -> -4 at 07:00Z, back at 06:00Z.
    {"America/New_York", 2024, 3, 10, 2, 30, kSkip, -5 * kH, -4 * kH, Utc(2024, 3, 10, 7), 3, 30},
    {"America/New_York", 2024, 11, 3, 1, 30, kRep, -4 * kH, -5 * kH, Utc(2024, 11, 3, 6), 1, 30},
    {"America/New_York", 2100, 3, 14, 2, 30, kSkip, -5 * kH, -4 * kH, Utc(2100, 3, 14, 7), 3, 30},
    // Australia/Lord_Howe: a half-hour change, 02:00 -> 02:30 in October, 02:00 -> 01:30 in April.
    {"Australia/Lord_Howe", 2024, 10, 6, 2, 15, kSkip, kLh, kLhDst, Utc(2024, 10, 5, 15, 30), 2, 45},
    {"Australia/Lord_Howe", 2024, 10, 6, 2, 30, kU, kLhDst, kLhDst, 0, 2, 30},
    {"Australia/Lord_Howe", 2024, 4, 7, 1, 45, kRep, kLhDst, kLh, Utc(2024, 4, 6, 15), 1, 45},
    {"Australia/Lord_Howe", 2024, 4, 7, 2, 0, kU, kLh, kLh, 0, 2, 0},
    // Europe/Dublin: winter time is the "negative daylight" one; offsets +0 and +1 all the same.
    {"Europe/Dublin", 2024, 3, 31, 1, 30, kSkip, 0, kH, Utc(2024, 3, 31, 1), 2, 30},
    {"Europe/Dublin", 2024, 10, 27, 1, 30, kRep, kH, 0, Utc(2024, 10, 27, 1), 1, 30},
    // Outside the instant range: the footer rule in the reading's year (no instant of the
    // change, and a value without an instant keeps its fields), or the first local time type.
    {"America/New_York", 3000, 1, 1, 0, 0, kU, -5 * kH, -5 * kH, 0, 0, 0},
    {"America/New_York", 3000, 7, 1, 0, 0, kU, -4 * kH, -4 * kH, 0, 0, 0},
    {"Europe/Berlin", 3000, 3, 30, 2, 30, kSkip, kH, 2 * kH, 0, 2, 30},
    {"Europe/Berlin", 3000, 10, 26, 2, 30, kRep, 2 * kH, kH, 0, 2, 30},
    {"Europe/Berlin", 1600, 7, 1, 0, 0, kU, 3208 * kS, 3208 * kS, 0, 0, 0},
};

TEST(TzdbPolicy, KnownChanges)
{
    REQUIRE_DATABASE();
    for (const PolicyCase& c : kPolicyCases) {
        SCOPED_TRACE(testing::Message() << c.zone << " " << c.y << "-" << c.mo << "-" << c.d << " " << c.h << ":"
                                        << c.mi);
        Zone z(c.zone);
        ASSERT_TRUE(z.ok);
        OrvTzdbLookup r{};
        ASSERT_TRUE(OrvTzdbTimezoneLookup(&z.tz, c.y, c.mo, c.d, c.h, c.mi, 0, &r));
        EXPECT_EQ(r.kind, c.kind);
        EXPECT_EQ(r.offsetBefore, c.before);
        EXPECT_EQ(r.offsetAfter, c.after);
        EXPECT_EQ(r.transition, c.kind == kU || c.y > 2262 ? ORV_TIME_INVALID : c.transition * kS);
        // The plug-in answers the offset before the change for both kinds of change.
        EXPECT_EQ(OrvTimezoneGetOffsetFromFields(&z.tz, c.y, c.mo, c.d, c.h, c.mi, 0, 0), c.before);
        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.y, c.mo, c.d, c.h, c.mi, 0, 0, &z.tz), nullptr);
        EXPECT_EQ(d.hour, c.readH);
        EXPECT_EQ(d.min, c.readMi);
        if (c.kind == kRep && c.y <= 2262) { // the first occurrence
            EXPECT_EQ(d.wallTime, Utc(c.y, c.mo, c.d, c.h, c.mi) * kS - c.before);
        }
        OrvDateTimeDestruct(&d);
    }
}

// A plug-in zone that forwards both queries to a database zone: values in it take the
// normalization's path for any plug-in, values in the database zone its own lookup.
struct ForwardingZone {
    struct Impl {
        OrvTimezoneImpl base;
        OrvTimezoneImpl* inner;
    };
    static OrvTime Offset(OrvTimezoneImpl* impl, OrvTime t)
    {
        OrvTimezoneImpl* inner = reinterpret_cast<Impl*>(impl)->inner;
        return inner->plugIn->getOffset(inner, t);
    }
    static OrvTime FromFields(OrvTimezoneImpl* impl, OrvInt y, OrvInt mo, OrvInt d, OrvInt h, OrvInt mi, OrvInt s,
                              OrvTime ns)
    {
        OrvTimezoneImpl* inner = reinterpret_cast<Impl*>(impl)->inner;
        return inner->plugIn->getOffsetFromFields(inner, y, mo, d, h, mi, s, ns);
    }
    static constexpr OrvTimezoneImplPlugIn kPlugIn = {Offset, FromFields};

    explicit ForwardingZone(const OrvTimezone* target) : impl{{&kPlugIn}, target->impl.ptr}
    {
        OrvTimezoneConstruct(&tz, &impl.base, alloc.get(), [](OrvVoidPtr, OrvAllocator*) {});
    }
    ~ForwardingZone() { OrvTimezoneDestruct(&tz); }
    CountingAllocator alloc;
    Impl impl;
    OrvTimezone tz{};
};

// Every database zone, readings around each change of its table (and a spread of
// others): a value built in the zone equals one built in a zone that forwards the
// plug-in's two queries, fields, instant and offset.
TEST(TzdbPolicy, ValuesFromFieldsAsThePlugInQueriesGiveThem)
{
    REQUIRE_DATABASE();
    struct Reading {
        OrvInt y, mo, d, h, mi, s, ns;
    };
    std::mt19937_64 rng(1883);
    std::uniform_int_distribution<OrvTime> anyLocal(INT64_MIN, INT64_MAX);
    for (const std::string& id : AllIds()) {
        SCOPED_TRACE(id);
        Zone z(id.c_str());
        ASSERT_TRUE(z.ok);
        ForwardingZone plain(&z.tz);
        // Both ends of the instant range and beyond it, where the rule or the first
        // local time type answers.
        std::vector<Reading> readings = {{1677, 9, 21, 0, 12, 43, 145224192}, {1677, 9, 21, 0, 0, 0, 0},
                                         {2262, 4, 11, 23, 47, 16, 854775807}, {2262, 4, 11, 23, 59, 0, 0},
                                         {3000, 7, 1, 0, 0, 0, 0},             {1600, 1, 1, 0, 0, 0, 0}};
        std::vector<OrvTime> locals;
        for (int i = 0; i < 16; ++i) locals.push_back(anyLocal(rng));
        // Each change's window of skipped or repeated readings, its first and last
        // reading and those either side.
        OrvTime at = 0, offset = 0, before = 0;
        for (std::size_t i = 0; orv::tzdb::TransitionAt(&z.tz, i, &at, &offset); ++i, before = offset) {
            const OrvTime size = std::max(before, offset) - std::min(before, offset);
            OrvTime local = 0;
            for (OrvTime n : {OrvTime{-1}, OrvTime{0}, size - 1, size})
                if (i != 0 && !__builtin_add_overflow(at, std::min(before, offset) + n, &local)) locals.push_back(local);
        }
        for (OrvTime local : locals) {
            OrvDateTime r; // the local reading, as the library reads the instant in UTC
            ASSERT_NE(OrvDateTimeConstruct(&r, local, nullptr), nullptr);
            readings.push_back({r.year, r.month, r.monthDay, r.hour, r.min, r.sec, r.nanosec});
            OrvDateTimeDestruct(&r);
        }
        for (const Reading& r : readings) {
            OrvDateTime fast, generic;
            const bool a = OrvDateTimeConstructFields(&fast, r.y, r.mo, r.d, r.h, r.mi, r.s, r.ns, &z.tz) != nullptr;
            const bool b = OrvDateTimeConstructFields(&generic, r.y, r.mo, r.d, r.h, r.mi, r.s, r.ns, &plain.tz) != nullptr;
            const auto text = testing::Message() << r.y << "-" << r.mo << "-" << r.d << " " << r.h << ":" << r.mi << ":"
                                                 << r.s << "." << r.ns;
            ASSERT_EQ(a, b) << text;
            if (!a) continue;
            ASSERT_TRUE(fast.wallTime == generic.wallTime && fast.offset == generic.offset && fast.year == generic.year &&
                        fast.month == generic.month && fast.monthDay == generic.monthDay && fast.hour == generic.hour &&
                        fast.min == generic.min && fast.sec == generic.sec && fast.nanosec == generic.nanosec)
                << text;
            OrvDateTimeDestruct(&fast);
            OrvDateTimeDestruct(&generic);
        }
    }
}

// ---------------------------------------------------------------------------------
// The readers on made-up files and rules
// ---------------------------------------------------------------------------------

TEST(TzdbFiles, OffsetsOfMadeUpZones)
{
    struct Case {
        const char* what;
        TzifLayout layout;
        const char* rule; // instead of a file, when set
        std::vector<std::pair<std::int64_t, OrvTime>> want;
    };
    const Case cases[] = {
        {"version 1: its only block, the last offset stays",
         {.version = '\0', .times = {0, 1000}, .typeIndexes = {1, 0}, .offsets = {3600, 7200}},
         nullptr,
         {{-1, kH}, {0, 2 * kH}, {999, 2 * kH}, {1000, kH}, {Utc(2200, 1, 1), kH}}},
        // The shape of America/Nuuk: -2 with daylight -1, changes at -1:00 and 0:00 local;
        // in 2030 those are 31 March and 27 October, both 01:00Z.
        {"version 3 footer with extended times",
         {.version = '3', .times = {Utc(2000, 1, 1)}, .typeIndexes = {1}, .offsets = {-3 * 3600, -2 * 3600},
          .footer = "<-02>2<-01>,M3.5.0/-1,M10.5.0/0"},
         nullptr,
         {{Utc(2030, 3, 31, 1) - 1, -2 * kH}, {Utc(2030, 3, 31, 1), -kH}, {Utc(2030, 10, 27, 1) - 1, -kH},
          {Utc(2030, 10, 27, 1), -2 * kH}, {Utc(2261, 7, 1), -kH}}},
        // The last transition says +5, the footer +3: the footer, the newer statement, wins.
        {"footer decides from the last transition on",
         {.times = {1000}, .typeIndexes = {1}, .offsets = {0, 5 * 3600}, .footer = "<+03>-3"},
         nullptr,
         {{999, 0}, {1000, 3 * kH}}},
        // Daylight time from J60 (1 March) to zero-based day 59 (29 February in a leap year,
        // else 1 March), both at local midnight: standard time lasts 25 hours or one.
        {"Julian and zero-based rule dates",
         {},
         "AAA0BBB,J60/0,59/0",
         {{Utc(2024, 2, 28, 23) - 1, kH}, {Utc(2024, 2, 28, 23), 0}, {Utc(2024, 2, 29, 12), 0},
          {Utc(2024, 3, 1) - 1, 0}, {Utc(2024, 3, 1), kH}, {Utc(2023, 2, 28, 23) - 1, kH},
          {Utc(2023, 2, 28, 23, 30), 0}, {Utc(2023, 3, 1), kH}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Zone z = c.rule != nullptr ? Zone(Posix{c.rule}) : Zone(MakeTzif(c.layout));
        ASSERT_TRUE(z.ok);
        for (const auto& [t, offset] : c.want) EXPECT_EQ(z.At(t), offset) << "at " << t;
        if (c.rule != nullptr) {
            EXPECT_STREQ(OrvTzdbTimezoneGetId(&z.tz), c.rule);
        }
    }
}

// Transitions change the offset, the daylight flag or the abbreviation; file entries
// that change none of them are not transitions.
TEST(TzdbFiles, TransitionsAndAbbreviationsOfMadeUpZones)
{
    struct Want {
        std::int64_t at;
        OrvTime before, after;
        bool dstBefore, dstAfter;
        const char *nameBefore, *nameAfter;
    };
    const struct {
        const char* what;
        TzifLayout layout;
        const char* rule;
        std::vector<Want> want;
    } cases[] = {
        {"flag only, name only, and a repeated type that is no change",
         {.times = {1000, 2000, 3000, 4000}, .typeIndexes = {1, 4, 2, 3}, .offsets = {600, 3600, 3600, 3600, 3600},
          .footer = "BBB-1", .names = {"LMT", "AAA", "*AAA", "BBB", "AAA"}},
         nullptr,
         {{1000, 600 * kS, kH, false, false, "LMT", "AAA"},
          {3000, kH, kH, false, true, "AAA", "AAA"},
          {4000, kH, kH, true, false, "AAA", "BBB"}}},
        {"the footer's names from its last transition on, brackets dropped",
         {.times = {Utc(2261, 1, 1)}, .typeIndexes = {1}, .offsets = {-3 * 3600, -3 * 3600},
          .footer = "<-03>3<-02>,M3.5.0/-2,M10.5.0/-1", .names = {"XXX", "-03"}},
         nullptr,
         {{Utc(2261, 1, 1), -3 * kH, -3 * kH, false, false, "XXX", "-03"},
          {Utc(2261, 3, 31, 1), -3 * kH, -2 * kH, false, true, "-03", "-02"},
          {Utc(2261, 10, 27, 1), -2 * kH, -3 * kH, true, false, "-02", "-03"},
          {Utc(2262, 3, 30, 1), -3 * kH, -2 * kH, false, true, "-03", "-02"}}},
        {"a rule alone", {}, "<+0330>-3:30", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Zone z = c.rule != nullptr ? Zone(Posix{c.rule}) : Zone(MakeTzif(c.layout));
        ASSERT_TRUE(z.ok);
        std::vector<OrvTzdbTransition> got;
        OrvTzdbTransition tr{};
        for (OrvTime t = INT64_MIN; OrvTzdbTimezoneNextTransition(&z.tz, t, &tr); t = tr.instant) got.push_back(tr);
        ASSERT_EQ(got.size(), c.want.size());
        for (std::size_t i = 0; i < got.size(); ++i) {
            const Want& w = c.want[i];
            EXPECT_EQ(got[i].instant, w.at * kS) << i;
            EXPECT_EQ(got[i].offsetBefore, w.before) << i;
            EXPECT_EQ(got[i].offsetAfter, w.after) << i;
            EXPECT_EQ(got[i].isDstBefore != 0, w.dstBefore) << i;
            EXPECT_EQ(got[i].isDstAfter != 0, w.dstAfter) << i;
            EXPECT_STREQ(got[i].abbreviationBefore, w.nameBefore) << i;
            EXPECT_STREQ(got[i].abbreviationAfter, w.nameAfter) << i;
            // The instant answers as the transition says, on either side.
            EXPECT_STREQ(OrvTzdbTimezoneGetAbbreviation(&z.tz, w.at * kS - 1), w.nameBefore);
            EXPECT_STREQ(OrvTzdbTimezoneGetAbbreviation(&z.tz, w.at * kS), w.nameAfter);
            EXPECT_EQ(OrvTzdbTimezoneIsDst(&z.tz, w.at * kS) != 0, w.dstAfter);
            EXPECT_EQ(z.At(w.at), w.after);
        }
        const bool none = got.empty();
        EXPECT_EQ(OrvTzdbTimezonePrevTransition(&z.tz, ORV_TIME_INVALID, &tr) == 0, none);
        if (!none) {
            EXPECT_EQ(tr.instant, got.back().instant);
            EXPECT_FALSE(OrvTzdbTimezonePrevTransition(&z.tz, got.front().instant, &tr));
            EXPECT_FALSE(OrvTzdbTimezoneNextTransition(&z.tz, got.back().instant, &tr));
        }
    }
    const Zone rule(Posix{"<+0330>-3:30"});
    EXPECT_STREQ(OrvTzdbTimezoneGetAbbreviation(&rule.tz, 0), "+0330");
    EXPECT_EQ(OrvTzdbTimezoneGetAbbreviation(&rule.tz, ORV_TIME_INVALID), nullptr);
    OrvTzdbTransition untouched{};
    untouched.instant = 42;
    EXPECT_FALSE(OrvTzdbTimezoneNextTransition(OrvFixedTimezoneGetUTC(), 0, &untouched));
    EXPECT_FALSE(OrvTzdbTimezonePrevTransition(&rule.tz, 0, nullptr));
    EXPECT_EQ(untouched.instant, 42);
    EXPECT_EQ(OrvTzdbTimezoneGetAbbreviation(OrvFixedTimezoneGetUTC(), 0), nullptr);
    EXPECT_FALSE(OrvTzdbTimezoneIsDst(OrvFixedTimezoneGetUTC(), 0));
}

TEST(TzdbFiles, EndsOfTheTimeRange)
{
    REQUIRE_DATABASE();
    const Zone z("Europe/Berlin");
    ASSERT_TRUE(z.ok);
    EXPECT_EQ(OrvTimezoneGetOffset(&z.tz, INT64_MIN), OrvTime{3208} * kS); // local mean time
    EXPECT_EQ(OrvTimezoneGetOffset(&z.tz, INT64_MAX - 1), 2 * kH);         // April 2262, footer unrolled
    EXPECT_EQ(OrvTimezoneGetOffset(&z.tz, ORV_TIME_INVALID), ORV_TIME_INVALID);
}

TEST(TzdbFiles, TzdirIsTheDatabaseFolder)
{
    REQUIRE_DATABASE();
    char tmpl[] = "/tmp/orv-tzdb-XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const std::string dir = tmpl;
    std::filesystem::create_directories(dir + "/My");
    const Bytes berlin = ReadFile(DatabaseDir() + "/Europe/Berlin");
    std::ofstream(dir + "/My/Zone", std::ios::binary).write(reinterpret_cast<const char*>(berlin.data()),
                                                            static_cast<std::streamsize>(berlin.size()));
    std::ofstream(dir + "/zone.tab") << "#\n";
    ASSERT_EQ(symlink("Zone", (dir + "/My/Link").c_str()), 0);
    ASSERT_EQ(symlink((DatabaseDir() + "/Europe/Berlin").c_str(), (dir + "/My/Escape").c_str()), 0);
    {
        ScopedEnv tzdir("TZDIR", dir.c_str());
        const Zone zone("My/Zone");
        ASSERT_TRUE(zone.ok);
        EXPECT_EQ(zone.At(Utc(2024, 7, 1)), 2 * kH);
        EXPECT_TRUE(Zone("My/Link").ok);            // a link inside: fine
        EXPECT_FALSE(Zone("My/Escape").ok);         // leads outside
        EXPECT_FALSE(Zone("Europe/Berlin").ok);     // only this folder counts
        EXPECT_FALSE(Zone("zone.tab").ok);
        EXPECT_EQ(AllIds(), (std::vector<std::string>{"My/Link", "My/Zone"})); // not the link leading out
    }
    std::filesystem::remove_all(dir);
}

TEST(TzdbIds, TheSystemListHasTheZonesAndNotTheCopies)
{
    REQUIRE_DATABASE();
    const std::vector<std::string> ids = AllIds();
    for (const char* id : {"Europe/Berlin", "America/Argentina/Buenos_Aires", "UTC"})
        EXPECT_TRUE(std::binary_search(ids.begin(), ids.end(), id)) << id;
    for (const char* id : {"posixrules", "zone.tab"}) EXPECT_FALSE(std::binary_search(ids.begin(), ids.end(), id));
    for (const std::string& id : ids) {
        ASSERT_TRUE(id.rfind("right/", 0) != 0 && id.rfind("posix/", 0) != 0) << id;
    }
    int seen = 0;
    OrvTzdbTimezoneForEachId(
        [](const char*, OrvVoidPtr user) -> OrvBool { return ++*static_cast<int*>(user) < 3 ? ORV_TRUE : ORV_FALSE; },
        &seen);
    EXPECT_EQ(seen, 3); // the callback can stop the walk
}

// ---------------------------------------------------------------------------------
// Bad input
// ---------------------------------------------------------------------------------

TEST(TzdbBadInput, ZoneIdsThatDoNotNameAFileOfTheDatabase)
{
    REQUIRE_DATABASE();
    const std::string tooLong(256, 'a');
    const std::string longest = "Europe/" + std::string(248, 'b'); // 255 bytes: valid, just missing
    for (const char* id : {"", "/etc/passwd", "/usr/share/zoneinfo/Europe/Berlin", "../zoneinfo/Europe/Berlin",
                           "Europe/../Europe/Berlin", "Europe/..", "..", "./Europe/Berlin", "Europe//Berlin",
                           "Europe/Berlin/", "Europe/Berlin\n", "Europe/\x01", "Europe/Ber\x7flin", tooLong.c_str(),
                           longest.c_str(), "Nowhere/Zone", "Europe", "zone.tab", "iso3166.tab"}) {
        EXPECT_FALSE(Zone(id).ok) << id;
    }
    EXPECT_TRUE(orv::tzdb::IsValidZoneId(longest.c_str()));
    EXPECT_FALSE(orv::tzdb::IsValidZoneId(tooLong.c_str()));
    EXPECT_TRUE(orv::tzdb::IsValidZoneId("Etc/GMT+5"));
    EXPECT_TRUE(orv::tzdb::IsValidZoneId("a..b/.c"));
    CountingAllocator alloc;
    OrvTimezone tz;
    EXPECT_EQ(OrvTzdbTimezoneConstruct(nullptr, "UTC", alloc.get()), nullptr);
    EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, nullptr, alloc.get()), nullptr);
    EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, "UTC", nullptr), nullptr);
    EXPECT_EQ(alloc.liveBlocks(), 0U);
}

TEST(TzdbBadInput, EveryTruncationOfARealFileIsRefused)
{
    REQUIRE_DATABASE();
    for (const char* zone : {"Europe/Berlin", "Australia/Lord_Howe"}) {
        const Bytes full = ReadFile(DatabaseDir() + "/" + zone);
        ASSERT_GT(full.size(), 44U);
        EXPECT_TRUE(Zone(full).ok);
        for (std::size_t n = 0; n < full.size(); ++n)
            ASSERT_FALSE(Zone(Bytes(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(n))).ok)
                << zone << " cut to " << n << " bytes";
    }
}

TEST(TzdbBadInput, CorruptHeadersTablesAndFooters)
{
    const TzifLayout good{.times = {0, 1000}, .typeIndexes = {1, 0}, .offsets = {3600, 7200}, .footer = "CET-1"};
    ASSERT_TRUE(Zone(MakeTzif(good)).ok); // the baseline parses, so each refusal below is the damage's doing
    // The 64-bit header follows a 32-bit block with one type and no transitions.
    constexpr std::size_t h2 = 44 + 6 + 4 + 2;
    constexpr std::size_t data2 = h2 + 44;
    struct Patch {
        const char* what;
        std::size_t at;
        std::uint32_t value;
        bool wide; // a 32-bit big-endian field, else one byte
    };
    const Patch patches[] = {
        {"magic", 0, 'X', false},
        {"unknown version", 4, '5', false},
        {"versions differ", h2 + 4, '3', false},
        {"timecnt huge", h2 + 32, 0xffffffffU, true},
        {"timecnt one more", h2 + 32, 3, true},
        {"typecnt zero", h2 + 36, 0, true},
        {"typecnt huge", h2 + 36, 0x40000000U, true},
        {"charcnt zero", h2 + 40, 0, true},
        {"isutcnt differs from typecnt", h2 + 20, 1, true},
        {"leapcnt huge", h2 + 28, 0x7fffffffU, true},
        {"first-block timecnt huge", 32, 0xfffffff0U, true},
        {"times not ascending", data2 + 8, 0xffffffffU, true},
        {"type index out of range", data2 + 16, 7, false},
        {"offset beyond 26 hours", data2 + 18, 100000, true},
        {"offset of -2^31", data2 + 18, 0x80000000U, true},
        {"isdst neither 0 nor 1", data2 + 18 + 4, 2, false},
        {"abbreviation index past the characters", data2 + 18 + 5, 4, false},
    };
    for (const Patch& p : patches) {
        Bytes bytes = MakeTzif(good);
        const int width = p.wide ? 4 : 1;
        for (int i = 0; i < width; ++i)
            bytes[p.at + static_cast<std::size_t>(i)] = static_cast<unsigned char>(p.value >> (8 * (width - 1 - i)));
        EXPECT_FALSE(Zone(bytes).ok) << p.what;
    }
    Bytes bytes = MakeTzif(good);
    bytes.back() = 'x';
    EXPECT_FALSE(Zone(bytes).ok) << "footer without its closing newline";
    bytes.back() = '\n';
    bytes.push_back('\n');
    EXPECT_FALSE(Zone(bytes).ok) << "bytes after the footer";
    bytes.pop_back();
    bytes.insert(bytes.end(), {'C', 'E', 'T', '-', '1', '\n'});
    EXPECT_FALSE(Zone(bytes).ok) << "two rules on two lines";
    TzifLayout leap{.footer = "UTC0", .leapCount = 2};
    EXPECT_FALSE(Zone(MakeTzif(leap)).ok) << "leap seconds";
    if (access((DatabaseDir() + "/right/UTC").c_str(), R_OK) == 0) {
        EXPECT_FALSE(Zone("right/UTC").ok);
    }
}

TEST(TzdbBadInput, PosixRules)
{
    struct Good {
        const char* text;
        std::int32_t stdOffset, dstOffset; // seconds east; dst 0 when there is none
    };
    const Good good[] = {
        {"UTC0", 0, 0},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 3600, 7200},
        {"<+03>-3", 3 * 3600, 0},
        {"<+0330>-3:30", 3 * 3600 + 1800, 0},
        {"<-03>3<-02>,M3.5.0/-2,M10.5.0/-1", -3 * 3600, -2 * 3600},
        {"IST-2IDT,M3.4.4/26,M10.5.0", 2 * 3600, 3 * 3600},
        {"EET-2EEST,M3.4.4/50,M10.4.4/50", 2 * 3600, 3 * 3600},
        {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", 37800, 39600},
        {"EST5EDT", -5 * 3600, -4 * 3600}, // default dates
        {"AAA+1:02:03BBB-24:59:59,J1/167,365/-167", -3723, 89999},
    };
    const char* const bad[] = {
        "C", "CET", "CET-", "CET-25", "CET-1:60", "CET-1CE", "<+03-3", "<+3>-3", "<+0 3>-3",
        "CET-1CEST,M13.5.0,M10.5.0", "CET-1CEST,M3.6.0,M10.5.0", "CET-1CEST,M3.0.0,M10.5.0",
        "CET-1CEST,M3.5.7,M10.5.0", "CET-1CEST,M3.5.0", "CET-1CEST,M3.5.0,", "CET-1CEST,M3.5.0/168,M10.5.0",
        "CET-1CEST,J0,J365", "CET-1CEST,366,J365", "CET-1CEST,M3.5.0,M10.5.0x", "CET-1 ", "CET-0001",
    };
    // A file carrying a rule in its footer stands or falls with it.
    const auto inFooter = [](const char* rule) { return Zone(MakeTzif(TzifLayout{.footer = rule})).ok; };
    orv::tzdb::PosixRule rule;
    for (const Good& g : good) {
        ASSERT_TRUE(orv::tzdb::ParsePosixRule(g.text, std::strlen(g.text), &rule)) << g.text;
        EXPECT_EQ(rule.stdOffset, g.stdOffset) << g.text;
        EXPECT_EQ(rule.hasDst ? rule.dstOffset : 0, g.dstOffset) << g.text;
        EXPECT_TRUE(inFooter(g.text)) << g.text;
    }
    EXPECT_FALSE(orv::tzdb::ParsePosixRule("", 0, &rule)); // though an empty footer means "no rule"
    for (const char* text : bad) {
        EXPECT_FALSE(orv::tzdb::ParsePosixRule(text, std::strlen(text), &rule)) << text;
        EXPECT_FALSE(inFooter(text)) << text;
    }
}

TEST(TzdbBadInput, RandomDamageNeverCrashesOrLeaks)
{
    REQUIRE_DATABASE();
    const Bytes full = ReadFile(DatabaseDir() + "/America/New_York");
    std::mt19937 rng(7);
    int accepted = 0;
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes = full;
        for (int k = 0, flips = 1 + static_cast<int>(rng() % 4); k < flips; ++k)
            bytes[rng() % bytes.size()] = static_cast<unsigned char>(rng());
        const Zone z(bytes); // leaks and bad frees are checked by its destructor
        if (!z.ok) continue;
        ++accepted;
        // A damaged file that still passes must still answer for every instant.
        for (std::int64_t t : {std::int64_t{-4000000000}, std::int64_t{0}, Utc(2024, 3, 10, 7), Utc(2200, 1, 1)})
            ASSERT_LE(std::abs(z.At(t)), 26 * kH);
        ASSERT_NE(OrvTimezoneGetOffsetFromFields(&z.tz, 2024, 3, 10, 2, 30, 0, 0), ORV_TIME_INVALID);
    }
    EXPECT_GT(accepted, 0); // some damage (in abbreviations, the first block) is harmless
}

// ---------------------------------------------------------------------------------
// Memory and the local zone
// ---------------------------------------------------------------------------------

// Fails the n-th allocation for n = 1, 2, ... until construction succeeds: each failure
// must leave nothing behind, and the success must give everything back on destruction.
template <typename Construct>
void StepThroughAllocationFailures(Construct construct)
{
    for (std::size_t n = 1;; ++n) {
        ASSERT_LT(n, 20U) << "construction never succeeded";
        CountingAllocator alloc;
        alloc.failAt(n);
        OrvTimezone tz;
        if (construct(&tz, alloc.get()) == nullptr) {
            ASSERT_EQ(alloc.liveBlocks(), 0U) << "leak when allocation " << n << " fails";
            continue;
        }
        EXPECT_GE(n, 3U); // zone, table and count block at least
        OrvTimezoneDestruct(&tz);
        EXPECT_EQ(alloc.liveBlocks(), 0U);
        EXPECT_EQ(alloc.badDeallocations(), 0U);
        return;
    }
}

TEST(TzdbMemory, EveryAllocationFailureLeavesNothing)
{
    StepThroughAllocationFailures([](OrvTimezone* tz, OrvAllocator* a) {
        return OrvTzdbTimezoneConstructPosix(tz, "CET-1CEST,M3.5.0,M10.5.0/3", a);
    });
    if (!HaveDatabase()) GTEST_SKIP() << "no time-zone database: file-backed zones not checked";
    StepThroughAllocationFailures(
        [](OrvTimezone* tz, OrvAllocator* a) { return OrvTzdbTimezoneConstruct(tz, "Europe/Berlin", a); });
    ScopedEnv env("TZ", "America/New_York");
    StepThroughAllocationFailures([](OrvTimezone* tz, OrvAllocator* a) { return OrvTzdbTimezoneConstructLocal(tz, a); });
}

TEST(TzdbMemory, CopiesShareOneZoneUntilTheLastGoes)
{
    REQUIRE_DATABASE();
    CountingAllocator alloc;
    OrvTimezone tz;
    ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, "Europe/Berlin", alloc.get()), nullptr);
    EXPECT_EQ(alloc.liveBlocks(), 2U); // the zone with its table, and the count block: the file and scratch went back
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstruct(&d, 0, &tz), nullptr);
    OrvTimezoneDestruct(&tz);
    EXPECT_EQ(alloc.liveBlocks(), 2U);
    EXPECT_EQ(d.offset, kH);
    OrvDateTimeDestruct(&d);
    EXPECT_EQ(alloc.liveBlocks(), 0U);
    EXPECT_EQ(alloc.badDeallocations(), 0U);
}

// Shared zones: however the first calls race, every thread gets the same uncounted zone
// for an id (and for the local zone), and values built in it on every thread read it.
TEST(TzdbShared, RacedFromEightThreads)
{
    REQUIRE_DATABASE();
    const char* const ids[] = {"Europe/Berlin", "America/New_York", "Asia/Tokyo", "Australia/Lord_Howe", "UTC",
                               "America/Argentina/Buenos_Aires", "Nowhere/Zone", "../zoneinfo/UTC", nullptr};
    constexpr std::size_t kIds = std::size(ids);
    constexpr int kThreads = 8;
    const OrvTimezone* got[kThreads][kIds + 1] = {};
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int k = 0; k < kThreads; ++k) {
        threads.emplace_back([&, k] {
            waiting.fetch_sub(1);
            while (waiting.load() != 0) {
            }
            for (std::size_t n = 0; n < kIds; ++n) {
                const std::size_t i = (n + static_cast<std::size_t>(k)) % kIds; // each thread its own order
                got[k][i] = OrvTzdbTimezoneGetShared(ids[i]);
                OrvDateTime d;
                if (got[k][i] != nullptr && OrvDateTimeConstruct(&d, Utc(2024, 7, 1) * kS, got[k][i]) != nullptr) {
                    OrvDateTime copy;
                    OrvDateTimeConstructCopy(&copy, &d);
                    OrvDateTimeDestruct(&copy);
                    OrvDateTimeDestruct(&d);
                }
            }
            got[k][kIds] = OrvTzdbTimezoneGetSharedLocal();
        });
    }
    for (std::thread& t : threads) t.join();
    for (std::size_t i = 0; i <= kIds; ++i) {
        const bool valid = i == kIds || i < 6;
        SCOPED_TRACE(i < kIds && ids[i] != nullptr ? ids[i] : "local or null");
        for (int k = 0; k < kThreads; ++k) {
            ASSERT_EQ(got[k][i], got[0][i]) << "thread " << k;
        }
        ASSERT_EQ(got[0][i] != nullptr, valid);
        if (!valid) continue;
        EXPECT_EQ(got[0][i]->impl.ref, nullptr);
        EXPECT_EQ(got[0][i], i < kIds ? OrvTzdbTimezoneGetShared(ids[i]) : OrvTzdbTimezoneGetSharedLocal());
        if (i < kIds) {
            EXPECT_STREQ(OrvTzdbTimezoneGetId(got[0][i]), ids[i]);
        }
    }
    EXPECT_EQ(OrvTimezoneGetOffset(got[0][0], Utc(2024, 7, 1) * kS), 2 * kH);
}

TEST(TzdbLocal, TheTzVariable)
{
    REQUIRE_DATABASE();
    struct LocalCase {
        const char* tz;
        const char* id;
        OrvTime julyOffset;
    };
    const LocalCase cases[] = {
        {"Europe/Berlin", "Europe/Berlin", 2 * kH},
        {":America/New_York", "America/New_York", -4 * kH},
        {"<+0530>-5:30", "<+0530>-5:30", 5 * kH + 30 * kMin},
        {"AAA3BBB,M10.1.0,M3.2.0", "AAA3BBB,M10.1.0,M3.2.0", -3 * kH}, // southern: July is standard time
    };
    OrvTimezone tz;
    for (const LocalCase& c : cases) {
        ScopedEnv env("TZ", c.tz);
        ASSERT_NE(OrvTzdbTimezoneConstructLocal(&tz, OrvAllocatorGetDefault()), nullptr) << c.tz;
        EXPECT_STREQ(OrvTzdbTimezoneGetId(&tz), c.id);
        EXPECT_EQ(OrvTimezoneGetOffset(&tz, Utc(2024, 7, 1) * kS), c.julyOffset) << c.tz;
        OrvTimezoneDestruct(&tz);
    }
    // Unset or naming nothing: /etc/localtime when there is one, else UTC; never null.
    for (const char* value : {static_cast<const char*>(nullptr), "Not a zone"}) {
        ScopedEnv env("TZ", value);
        ASSERT_NE(OrvTzdbTimezoneConstructLocal(&tz, OrvAllocatorGetDefault()), nullptr);
        EXPECT_TRUE(OrvTzdbTimezoneIs(&tz));
        OrvTimezoneDestruct(&tz);
    }
    EXPECT_FALSE(OrvTzdbTimezoneIs(OrvFixedTimezoneGetUTC()));
    EXPECT_EQ(OrvTzdbTimezoneGetId(OrvFixedTimezoneGetUTC()), nullptr);
    OrvTzdbLookup r{};
    EXPECT_FALSE(OrvTzdbTimezoneLookup(OrvFixedTimezoneGetUTC(), 2024, 1, 1, 0, 0, 0, &r));
}

} // namespace
