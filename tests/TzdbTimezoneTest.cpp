// Zones of the compiled database: gap and overlap policy on real zones, the TZif and
// rule readers on made-up files, bad input, allocation failure and the local zone.
#include "Calendar/OrvTzdbTimezoneInternal.hpp"
#include "Calendar/TzifReader.hpp"
#include "Orv/Calendar/OrvDateTime.h"
#include "support/CountingAllocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using orv::test::CountingAllocator;

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

std::vector<unsigned char> ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Sets or clears an environment variable for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name)
    {
        const char* old = std::getenv(name);
        had_ = old != nullptr;
        if (had_) old_ = old;
        if (value != nullptr) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
    }
    ~ScopedEnv()
    {
        if (had_) {
            setenv(name_.c_str(), old_.c_str(), 1);
        } else {
            unsetenv(name_.c_str());
        }
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string name_;
    bool had_ = false;
    std::string old_;
};

// A scratch folder that goes away with the test.
class TempDir {
public:
    TempDir()
    {
        char tmpl[] = "/tmp/orv-tzdb-XXXXXX";
        path_ = mkdtemp(tmpl);
    }
    ~TempDir() { std::filesystem::remove_all(path_); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& path() const { return path_; }
    void Write(const std::string& rel, const std::vector<unsigned char>& bytes) const
    {
        const std::string full = path_ + "/" + rel;
        std::filesystem::create_directories(std::filesystem::path(full).parent_path());
        std::ofstream(full, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                                    static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::string path_;
};

// ---------------------------------------------------------------------------------
// A writer of small TZif files, so the reader can be fed exactly what a test needs.
// ---------------------------------------------------------------------------------

struct TzifSpec {
    char version = '2'; // '\0' for version 1
    std::vector<std::int64_t> times;
    std::vector<unsigned char> typeIndexes;
    std::vector<std::int32_t> offsets{0}; // one per type
    std::string footer;                   // without its newlines
    std::uint32_t leapCount = 0;
};

void PutBe32(std::vector<unsigned char>* out, std::uint32_t v)
{
    for (int shift = 24; shift >= 0; shift -= 8) out->push_back(static_cast<unsigned char>(v >> shift));
}

void PutBlock(std::vector<unsigned char>* out, const TzifSpec& s, int timeSize)
{
    const auto types = static_cast<std::uint32_t>(s.offsets.size());
    const auto times = static_cast<std::uint32_t>(s.times.size());
    out->insert(out->end(), {'T', 'Z', 'i', 'f', static_cast<unsigned char>(s.version)});
    out->insert(out->end(), 15, 0);
    for (std::uint32_t count : {types, types, s.leapCount, times, types, 4U}) PutBe32(out, count);
    for (std::int64_t t : s.times) {
        if (timeSize == 8) PutBe32(out, static_cast<std::uint32_t>(static_cast<std::uint64_t>(t) >> 32));
        PutBe32(out, static_cast<std::uint32_t>(t));
    }
    out->insert(out->end(), s.typeIndexes.begin(), s.typeIndexes.end());
    for (std::int32_t off : s.offsets) {
        PutBe32(out, static_cast<std::uint32_t>(off));
        out->insert(out->end(), {0, 0});
    }
    out->insert(out->end(), {'A', 'B', 'C', 0});
    for (std::uint32_t i = 0; i < s.leapCount; ++i) {
        if (timeSize == 8) PutBe32(out, 0);
        PutBe32(out, 78796800U + i * 15724800U);
        PutBe32(out, i + 1);
    }
    out->insert(out->end(), 2 * s.offsets.size(), 0);
}

std::vector<unsigned char> MakeTzif(const TzifSpec& s)
{
    std::vector<unsigned char> out;
    if (s.version == '\0') {
        PutBlock(&out, s, 4);
        return out;
    }
    TzifSpec v1 = s; // the 32-bit block of a version 2+ file: one type, nothing else
    v1.times.clear();
    v1.typeIndexes.clear();
    v1.offsets = {s.offsets[0]};
    v1.leapCount = 0;
    PutBlock(&out, v1, 4);
    PutBlock(&out, s, 8);
    out.push_back('\n');
    out.insert(out.end(), s.footer.begin(), s.footer.end());
    out.push_back('\n');
    return out;
}

// The offset a zone built from bytes gives at UTC second t; INT64_MIN when it is refused.
struct BytesZone {
    explicit BytesZone(const std::vector<unsigned char>& bytes)
        : ok(orv::tzdb::ConstructFromBytes(&tz, bytes.data(), bytes.size(), "test", alloc.get()) != nullptr)
    {
    }
    ~BytesZone()
    {
        if (ok) OrvTimezoneDestruct(&tz);
        EXPECT_EQ(alloc.liveBlocks(), 0U);
        EXPECT_EQ(alloc.badDeallocations(), 0U);
    }
    BytesZone(const BytesZone&) = delete;
    BytesZone& operator=(const BytesZone&) = delete;
    OrvTime At(std::int64_t t) { return OrvTimezoneGetOffset(&tz, t * kS); }

    CountingAllocator alloc;
    OrvTimezone tz{};
    bool ok;
};

constexpr std::int64_t Utc(int y, int mo, int d, int h = 0, int mi = 0, int s = 0)
{
    // Days from civil, the same formula every calendar library uses; kept local so
    // the test does not check the library against itself.
    const int yy = y - (mo <= 2 ? 1 : 0);
    const int era = (yy >= 0 ? yy : yy - 399) / 400;
    const int yoe = yy - era * 400;
    const int doy = (153 * (mo + (mo > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    const std::int64_t days = std::int64_t{era} * 146097 + doe - 719468;
    return days * 86400 + h * 3600 + mi * 60 + s;
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

constexpr OrvTime kLhStd = 10 * kH + 30 * kMin; // Lord Howe, +10:30 and +11:00

const PolicyCase kPolicyCases[] = {
    // Europe/Berlin: +1 -> +2 at 01:00Z on the last Sunday of March, back in October.
    {"Europe/Berlin", 2024, 3, 31, 1, 59, ORV_TZDBLOOKUPKIND_Unique, kH, kH, 0, 1, 59},
    {"Europe/Berlin", 2024, 3, 31, 2, 0, ORV_TZDBLOOKUPKIND_Skipped, kH, 2 * kH, Utc(2024, 3, 31, 1), 3, 0},
    {"Europe/Berlin", 2024, 3, 31, 2, 30, ORV_TZDBLOOKUPKIND_Skipped, kH, 2 * kH, Utc(2024, 3, 31, 1), 3, 30},
    {"Europe/Berlin", 2024, 3, 31, 3, 0, ORV_TZDBLOOKUPKIND_Unique, 2 * kH, 2 * kH, 0, 3, 0},
    {"Europe/Berlin", 2024, 10, 27, 1, 59, ORV_TZDBLOOKUPKIND_Unique, 2 * kH, 2 * kH, 0, 1, 59},
    {"Europe/Berlin", 2024, 10, 27, 2, 0, ORV_TZDBLOOKUPKIND_Repeated, 2 * kH, kH, Utc(2024, 10, 27, 1), 2, 0},
    {"Europe/Berlin", 2024, 10, 27, 2, 59, ORV_TZDBLOOKUPKIND_Repeated, 2 * kH, kH, Utc(2024, 10, 27, 1), 2, 59},
    {"Europe/Berlin", 2024, 10, 27, 3, 0, ORV_TZDBLOOKUPKIND_Unique, kH, kH, 0, 3, 0},
    // Beyond the file's transitions: the footer rule, unrolled.
    {"Europe/Berlin", 2199, 3, 31, 2, 30, ORV_TZDBLOOKUPKIND_Skipped, kH, 2 * kH, Utc(2199, 3, 31, 1), 3, 30},
    // Double summer time in 1947 (+2 -> +3 at 03:00 local on 11 May).
    {"Europe/Berlin", 1947, 5, 11, 3, 30, ORV_TZDBLOOKUPKIND_Skipped, 2 * kH, 3 * kH, Utc(1947, 5, 11, 1), 4, 30},
    // America/New_York: -5 -> -4 at 07:00Z, back at 06:00Z.
    {"America/New_York", 2024, 3, 10, 2, 30, ORV_TZDBLOOKUPKIND_Skipped, -5 * kH, -4 * kH, Utc(2024, 3, 10, 7), 3,
     30},
    {"America/New_York", 2024, 11, 3, 1, 30, ORV_TZDBLOOKUPKIND_Repeated, -4 * kH, -5 * kH, Utc(2024, 11, 3, 6), 1,
     30},
    {"America/New_York", 2100, 3, 14, 2, 30, ORV_TZDBLOOKUPKIND_Skipped, -5 * kH, -4 * kH, Utc(2100, 3, 14, 7), 3,
     30},
    // Australia/Lord_Howe: a half-hour change, 02:00 -> 02:30 in October, 02:00 -> 01:30 in April.
    {"Australia/Lord_Howe", 2024, 10, 6, 2, 15, ORV_TZDBLOOKUPKIND_Skipped, kLhStd, kLhStd + 30 * kMin,
     Utc(2024, 10, 5, 15, 30), 2, 45},
    {"Australia/Lord_Howe", 2024, 10, 6, 2, 30, ORV_TZDBLOOKUPKIND_Unique, kLhStd + 30 * kMin, kLhStd + 30 * kMin, 0,
     2, 30},
    {"Australia/Lord_Howe", 2024, 4, 7, 1, 45, ORV_TZDBLOOKUPKIND_Repeated, kLhStd + 30 * kMin, kLhStd,
     Utc(2024, 4, 6, 15), 1, 45},
    {"Australia/Lord_Howe", 2024, 4, 7, 2, 0, ORV_TZDBLOOKUPKIND_Unique, kLhStd, kLhStd, 0, 2, 0},
    // Europe/Dublin: winter time is the "negative daylight" one; offsets +0 and +1 all the same.
    {"Europe/Dublin", 2024, 3, 31, 1, 30, ORV_TZDBLOOKUPKIND_Skipped, 0, kH, Utc(2024, 3, 31, 1), 2, 30},
    {"Europe/Dublin", 2024, 10, 27, 1, 30, ORV_TZDBLOOKUPKIND_Repeated, kH, 0, Utc(2024, 10, 27, 1), 1, 30},
};

TEST(TzdbPolicy, KnownChanges)
{
    REQUIRE_DATABASE();
    for (const PolicyCase& c : kPolicyCases) {
        SCOPED_TRACE(testing::Message() << c.zone << " " << c.y << "-" << c.mo << "-" << c.d << " " << c.h << ":"
                                        << c.mi);
        OrvTimezone tz;
        ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, c.zone, OrvAllocatorGetDefault()), nullptr);
        OrvTzdbLookup r{};
        ASSERT_TRUE(OrvTzdbTimezoneLookup(&tz, c.y, c.mo, c.d, c.h, c.mi, 0, &r));
        EXPECT_EQ(r.kind, c.kind);
        EXPECT_EQ(r.offsetBefore, c.before);
        EXPECT_EQ(r.offsetAfter, c.after);
        EXPECT_EQ(r.transition, c.kind == ORV_TZDBLOOKUPKIND_Unique ? ORV_TIME_INVALID : c.transition * kS);
        // The plug-in answers the offset before the change for both kinds of change.
        EXPECT_EQ(OrvTimezoneGetOffsetFromFields(&tz, c.y, c.mo, c.d, c.h, c.mi, 0, 0), c.before);

        OrvDateTime d;
        ASSERT_NE(OrvDateTimeConstructFields(&d, c.y, c.mo, c.d, c.h, c.mi, 0, 0, &tz), nullptr);
        EXPECT_EQ(d.hour, c.readH);
        EXPECT_EQ(d.min, c.readMi);
        const std::int64_t local = Utc(c.y, c.mo, c.d, c.h, c.mi);
        if (c.kind == ORV_TZDBLOOKUPKIND_Repeated) {
            EXPECT_EQ(d.wallTime, local * kS - c.before); // the first occurrence
        }
        OrvDateTimeDestruct(&d);
        OrvTimezoneDestruct(&tz);
    }
}

// Every quarter hour of ten years: the lookup's answer must be what the offsets at the
// candidate instants say, so the two queries of a zone can never disagree.
TEST(TzdbPolicy, LookupAgreesWithInstantOffsets)
{
    REQUIRE_DATABASE();
    for (const char* zone : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Europe/Dublin"}) {
        SCOPED_TRACE(zone);
        OrvTimezone tz;
        ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, zone, OrvAllocatorGetDefault()), nullptr);
        int changes = 0;
        for (std::int64_t local = Utc(2018, 1, 1); local < Utc(2028, 1, 1); local += 900) {
            const std::int64_t days = local / 86400;
            const int secOfDay = static_cast<int>(local % 86400);
            OrvTzdbLookup r{};
            ASSERT_TRUE(OrvTzdbTimezoneLookup(&tz, 1970, 1, static_cast<OrvInt>(days + 1), secOfDay / 3600,
                                              secOfDay / 60 % 60, 0, &r));
            const OrvTime l = local * kS;
            const OrvTime underBefore = OrvTimezoneGetOffset(&tz, l - r.offsetBefore);
            const OrvTime underAfter = OrvTimezoneGetOffset(&tz, l - r.offsetAfter);
            switch (r.kind) {
            case ORV_TZDBLOOKUPKIND_Unique:
                ASSERT_EQ(underBefore, r.offsetBefore) << local;
                break;
            case ORV_TZDBLOOKUPKIND_Skipped: // neither offset reproduces the reading
                ASSERT_EQ(underBefore, r.offsetAfter) << local;
                ASSERT_EQ(underAfter, r.offsetBefore) << local;
                ++changes;
                break;
            case ORV_TZDBLOOKUPKIND_Repeated: // both do
                ASSERT_EQ(underBefore, r.offsetBefore) << local;
                ASSERT_EQ(underAfter, r.offsetAfter) << local;
                ++changes;
                break;
            }
        }
        EXPECT_GT(changes, 0);
        OrvTimezoneDestruct(&tz);
    }
}

// ---------------------------------------------------------------------------------
// The readers on made-up files
// ---------------------------------------------------------------------------------

TEST(TzdbFiles, VersionOneFileUsesItsOnlyBlock)
{
    TzifSpec s;
    s.version = '\0';
    s.times = {0, 1000};
    s.typeIndexes = {1, 0};
    s.offsets = {3600, 7200};
    BytesZone z(MakeTzif(s));
    ASSERT_TRUE(z.ok);
    EXPECT_EQ(z.At(-1), kH); // before the first transition: type 0
    EXPECT_EQ(z.At(0), 2 * kH);
    EXPECT_EQ(z.At(999), 2 * kH);
    EXPECT_EQ(z.At(1000), kH);
    EXPECT_EQ(z.At(Utc(2200, 1, 1)), kH); // no footer: the last offset stays
}

TEST(TzdbFiles, VersionThreeFooterWithExtendedTimes)
{
    // The shape of America/Nuuk: -2 with daylight -1, changes at -1:00 and 0:00 local.
    TzifSpec s;
    s.version = '3';
    s.times = {Utc(2000, 1, 1)};
    s.typeIndexes = {1};
    s.offsets = {-3 * 3600, -2 * 3600};
    s.footer = "<-02>2<-01>,M3.5.0/-1,M10.5.0/0";
    BytesZone z(MakeTzif(s));
    ASSERT_TRUE(z.ok);
    // 2030: last Sunday of March is the 31st; -1:00 local on it is 30 March 23:00 -02 = 31 March 01:00Z.
    EXPECT_EQ(z.At(Utc(2030, 3, 31, 1) - 1), -2 * kH);
    EXPECT_EQ(z.At(Utc(2030, 3, 31, 1)), -1 * kH);
    // Last Sunday of October 2030 is the 27th; 00:00 local -01 = 01:00Z.
    EXPECT_EQ(z.At(Utc(2030, 10, 27, 1) - 1), -1 * kH);
    EXPECT_EQ(z.At(Utc(2030, 10, 27, 1)), -2 * kH);
    // Unrolled to the end of the OrvTime range.
    EXPECT_EQ(z.At(Utc(2261, 7, 1)), -1 * kH);
}

TEST(TzdbFiles, FooterDecidesFromTheLastTransitionOn)
{
    // The last transition says +5, the footer says +3 for all later time: the footer wins
    // from that instant on (the file is inconsistent, the rule is the newer statement).
    TzifSpec s;
    s.times = {1000};
    s.typeIndexes = {1};
    s.offsets = {0, 5 * 3600};
    s.footer = "<+03>-3";
    BytesZone z(MakeTzif(s));
    ASSERT_TRUE(z.ok);
    EXPECT_EQ(z.At(999), 0);
    EXPECT_EQ(z.At(1000), 3 * kH);
}

TEST(TzdbFiles, JulianAndZeroBasedRuleDates)
{
    // Daylight time from J60 (1 March in every year) to day 59 counted from 0 (29 February
    // in a leap year, 1 March otherwise), both at local midnight: standard time lasts
    // 25 hours in a leap year and one hour in other years.
    OrvTimezone tz;
    ASSERT_NE(OrvTzdbTimezoneConstructPosix(&tz, "AAA0BBB,J60/0,59/0", OrvAllocatorGetDefault()), nullptr);
    const auto at = [&tz](std::int64_t t) { return OrvTimezoneGetOffset(&tz, t * kS); };
    EXPECT_EQ(at(Utc(2024, 2, 28, 23) - 1), kH);
    EXPECT_EQ(at(Utc(2024, 2, 28, 23)), 0);
    EXPECT_EQ(at(Utc(2024, 2, 29, 12)), 0);
    EXPECT_EQ(at(Utc(2024, 3, 1) - 1), 0);
    EXPECT_EQ(at(Utc(2024, 3, 1)), kH);
    EXPECT_EQ(at(Utc(2023, 2, 28, 23) - 1), kH);
    EXPECT_EQ(at(Utc(2023, 2, 28, 23, 30)), 0);
    EXPECT_EQ(at(Utc(2023, 3, 1)), kH);
    EXPECT_STREQ(OrvTzdbTimezoneGetId(&tz), "AAA0BBB,J60/0,59/0");
    OrvTimezoneDestruct(&tz);
}

TEST(TzdbFiles, RealFileAndTheRuleAloneAgreeAfterTheLastTransition)
{
    REQUIRE_DATABASE();
    OrvTimezone file;
    OrvTimezone rule;
    ASSERT_NE(OrvTzdbTimezoneConstruct(&file, "Europe/Berlin", OrvAllocatorGetDefault()), nullptr);
    ASSERT_NE(OrvTzdbTimezoneConstructPosix(&rule, "CET-1CEST,M3.5.0,M10.5.0/3", OrvAllocatorGetDefault()), nullptr);
    for (std::int64_t t = Utc(1996, 1, 1); t < Utc(2262, 1, 1); t += 3 * 86400 + 3599) {
        ASSERT_EQ(OrvTimezoneGetOffset(&file, t * kS), OrvTimezoneGetOffset(&rule, t * kS)) << t;
    }
    // The ends of the OrvTime range have answers too.
    EXPECT_EQ(OrvTimezoneGetOffset(&file, INT64_MIN), OrvTime{3208} * kS); // local mean time
    EXPECT_EQ(OrvTimezoneGetOffset(&file, INT64_MAX - 1), 2 * kH); // April 2262
    EXPECT_EQ(OrvTimezoneGetOffset(&file, ORV_TIME_INVALID), ORV_TIME_INVALID);
    OrvTimezoneDestruct(&file);
    OrvTimezoneDestruct(&rule);
}

TEST(TzdbFiles, TzdirIsTheDatabaseFolder)
{
    REQUIRE_DATABASE();
    const std::vector<unsigned char> berlin = ReadFile(DatabaseDir() + "/Europe/Berlin");
    TempDir dir;
    dir.Write("My/Zone", berlin);
    dir.Write("zone.tab", {'#', '\n'});
    ASSERT_EQ(symlink("Zone", (dir.path() + "/My/Link").c_str()), 0);
    ASSERT_EQ(symlink((DatabaseDir() + "/Europe/Berlin").c_str(), (dir.path() + "/My/Escape").c_str()), 0);
    ScopedEnv tzdir("TZDIR", dir.path().c_str());
    OrvTimezone tz;
    ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, "My/Zone", OrvAllocatorGetDefault()), nullptr);
    EXPECT_EQ(OrvTimezoneGetOffset(&tz, Utc(2024, 7, 1) * kS), 2 * kH);
    OrvTimezoneDestruct(&tz);
    ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, "My/Link", OrvAllocatorGetDefault()), nullptr); // link inside: fine
    OrvTimezoneDestruct(&tz);
    EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, "My/Escape", OrvAllocatorGetDefault()), nullptr); // leads outside
    EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, "Europe/Berlin", OrvAllocatorGetDefault()), nullptr);
    EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, "zone.tab", OrvAllocatorGetDefault()), nullptr);

    std::vector<std::string> ids;
    EXPECT_TRUE(OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids));
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, (std::vector<std::string>{"My/Link", "My/Zone"})); // not the link leading out
}

TEST(TzdbIds, TheSystemListHasTheZonesAndNotTheCopies)
{
    REQUIRE_DATABASE();
    std::vector<std::string> ids;
    ASSERT_TRUE(OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids));
    auto has = [&](const std::string& id) { return std::find(ids.begin(), ids.end(), id) != ids.end(); };
    EXPECT_TRUE(has("Europe/Berlin"));
    EXPECT_TRUE(has("America/Argentina/Buenos_Aires"));
    EXPECT_TRUE(has("UTC"));
    EXPECT_FALSE(has("posixrules"));
    EXPECT_FALSE(has("zone.tab"));
    for (const std::string& id : ids) {
        ASSERT_NE(id.rfind("right/", 0), 0U) << id;
        ASSERT_NE(id.rfind("posix/", 0), 0U) << id;
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
    const char* ids[] = {"", "/etc/passwd", "/usr/share/zoneinfo/Europe/Berlin", "../zoneinfo/Europe/Berlin",
                         "Europe/../Europe/Berlin", "Europe/..", "..", "./Europe/Berlin", "Europe//Berlin",
                         "Europe/Berlin/", "Europe/Berlin\n", "Europe/\x01", "Europe/Ber\x7flin", tooLong.c_str(),
                         longest.c_str(), "Nowhere/Zone", "Europe", "zone.tab", "iso3166.tab"};
    CountingAllocator alloc;
    for (const char* id : ids) {
        OrvTimezone tz;
        EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, id, alloc.get()), nullptr) << id;
    }
    EXPECT_TRUE(orv::tzdb::IsValidZoneId(longest.c_str()));
    EXPECT_FALSE(orv::tzdb::IsValidZoneId(tooLong.c_str()));
    EXPECT_TRUE(orv::tzdb::IsValidZoneId("Etc/GMT+5"));
    EXPECT_TRUE(orv::tzdb::IsValidZoneId("a..b/.c"));
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
        const std::vector<unsigned char> full = ReadFile(DatabaseDir() + "/" + zone);
        ASSERT_GT(full.size(), 44U);
        {
            BytesZone whole(full);
            EXPECT_TRUE(whole.ok);
        }
        for (std::size_t n = 0; n < full.size(); ++n) {
            BytesZone z(std::vector<unsigned char>(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(n)));
            ASSERT_FALSE(z.ok) << zone << " cut to " << n << " bytes";
        }
    }
}

// Offsets of the fields of the 64-bit header in a MakeTzif file with one type and no
// transitions in its 32-bit block.
std::size_t SecondHeader() { return 44 + 6 + 4 + 2; }

void PatchBe32(std::vector<unsigned char>* b, std::size_t at, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i) (*b)[at + static_cast<std::size_t>(i)] = static_cast<unsigned char>(v >> (24 - 8 * i));
}

TEST(TzdbBadInput, CorruptHeadersAndTables)
{
    TzifSpec good;
    good.times = {0, 1000};
    good.typeIndexes = {1, 0};
    good.offsets = {3600, 7200};
    good.footer = "CET-1";
    {
        BytesZone z(MakeTzif(good));
        ASSERT_TRUE(z.ok); // the baseline parses, so each refusal below is the patch's doing
    }
    const std::size_t h2 = SecondHeader();
    const std::size_t data2 = h2 + 44;
    struct Patch {
        const char* what;
        std::size_t at;   // byte offset; 32-bit patches when wide
        std::uint32_t value;
        bool wide;
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
        std::vector<unsigned char> bytes = MakeTzif(good);
        if (p.wide) {
            PatchBe32(&bytes, p.at, p.value);
        } else {
            bytes[p.at] = static_cast<unsigned char>(p.value);
        }
        BytesZone z(bytes);
        EXPECT_FALSE(z.ok) << p.what;
    }
    // Footer framing: missing newlines, an embedded newline, bytes after the footer.
    std::vector<unsigned char> bytes = MakeTzif(good);
    bytes.back() = 'x';
    EXPECT_FALSE(BytesZone(bytes).ok);
    bytes = MakeTzif(good);
    bytes.push_back('\n');
    EXPECT_FALSE(BytesZone(bytes).ok);
    bytes = MakeTzif(good); // two valid rules on two lines
    bytes.pop_back();
    bytes.insert(bytes.end(), {'\n', 'C', 'E', 'T', '-', '1', '\n'});
    EXPECT_FALSE(BytesZone(bytes).ok);
}

TEST(TzdbBadInput, LeapSecondFilesAreRefused)
{
    TzifSpec s;
    s.leapCount = 2;
    s.footer = "UTC0";
    EXPECT_FALSE(BytesZone(MakeTzif(s)).ok);
    s.leapCount = 0;
    EXPECT_TRUE(BytesZone(MakeTzif(s)).ok);
    if (HaveDatabase() && access((DatabaseDir() + "/right/UTC").c_str(), R_OK) == 0) {
        OrvTimezone tz;
        EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, "right/UTC", OrvAllocatorGetDefault()), nullptr);
    }
}

TEST(TzdbBadInput, PosixRules)
{
    struct RuleCase {
        const char* text;
        bool ok;
        std::int32_t stdOffset, dstOffset; // seconds east, when ok
    };
    const RuleCase cases[] = {
        {"UTC0", true, 0, 0},
        {"CET-1CEST,M3.5.0,M10.5.0/3", true, 3600, 7200},
        {"<+03>-3", true, 3 * 3600, 0},
        {"<+0330>-3:30", true, 3 * 3600 + 1800, 0},
        {"<-03>3<-02>,M3.5.0/-2,M10.5.0/-1", true, -3 * 3600, -2 * 3600},
        {"IST-2IDT,M3.4.4/26,M10.5.0", true, 2 * 3600, 3 * 3600},
        {"EET-2EEST,M3.4.4/50,M10.4.4/50", true, 2 * 3600, 3 * 3600},
        {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", true, 37800, 39600},
        {"EST5EDT", true, -5 * 3600, -4 * 3600}, // default dates
        {"AAA+1:02:03BBB-24:59:59,J1/167,365/-167", true, -3723, 89999},
        {"", false, 0, 0},
        {"C", false, 0, 0},
        {"CET", false, 0, 0},
        {"CET-", false, 0, 0},
        {"CET-25", false, 0, 0},
        {"CET-1:60", false, 0, 0},
        {"CET-1CE", false, 0, 0},
        {"<+03-3", false, 0, 0},
        {"<+3>-3", false, 0, 0},
        {"<+0 3>-3", false, 0, 0},
        {"CET-1CEST,M13.5.0,M10.5.0", false, 0, 0},
        {"CET-1CEST,M3.6.0,M10.5.0", false, 0, 0},
        {"CET-1CEST,M3.0.0,M10.5.0", false, 0, 0},
        {"CET-1CEST,M3.5.7,M10.5.0", false, 0, 0},
        {"CET-1CEST,M3.5.0", false, 0, 0},
        {"CET-1CEST,M3.5.0,", false, 0, 0},
        {"CET-1CEST,M3.5.0/168,M10.5.0", false, 0, 0},
        {"CET-1CEST,J0,J365", false, 0, 0},
        {"CET-1CEST,366,J365", false, 0, 0},
        {"CET-1CEST,M3.5.0,M10.5.0x", false, 0, 0},
        {"CET-1 ", false, 0, 0},
        {"CET-0001", false, 0, 0},
    };
    for (const RuleCase& c : cases) {
        orv::tzdb::PosixRule rule;
        const bool ok = orv::tzdb::ParsePosixRule(c.text, std::strlen(c.text), &rule);
        EXPECT_EQ(ok, c.ok) << c.text;
        if (ok && c.ok) {
            EXPECT_EQ(rule.stdOffset, c.stdOffset) << c.text;
            EXPECT_EQ(rule.hasDst ? rule.dstOffset : 0, c.dstOffset) << c.text;
        }
        // A file carrying the rule in its footer stands or falls with it.
        if (c.text[0] == '\0') continue; // an empty footer is allowed: no rule
        TzifSpec s;
        s.footer = c.text;
        EXPECT_EQ(BytesZone(MakeTzif(s)).ok, c.ok) << c.text;
    }
}

TEST(TzdbBadInput, RandomDamageNeverCrashesOrLeaks)
{
    REQUIRE_DATABASE();
    const std::vector<unsigned char> full = ReadFile(DatabaseDir() + "/America/New_York");
    std::mt19937 rng(7);
    int accepted = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<unsigned char> bytes = full;
        const int flips = 1 + static_cast<int>(rng() % 4);
        for (int k = 0; k < flips; ++k) bytes[rng() % bytes.size()] = static_cast<unsigned char>(rng());
        BytesZone z(bytes); // leaks and bad frees are checked by its destructor
        if (!z.ok) continue;
        ++accepted;
        // A damaged file that still passes must still answer for every instant.
        for (std::int64_t t : {std::int64_t{-4000000000}, std::int64_t{0}, Utc(2024, 3, 10, 7), Utc(2200, 1, 1)}) {
            const OrvTime off = z.At(t);
            ASSERT_LE(off < 0 ? -off : off, 26 * kH);
        }
        ASSERT_NE(OrvTimezoneGetOffsetFromFields(&z.tz, 2024, 3, 10, 2, 30, 0, 0), ORV_TIME_INVALID);
    }
    EXPECT_GT(accepted, 0); // some damage (in abbreviations, the first block) is harmless
}

// ---------------------------------------------------------------------------------
// Memory
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
        OrvTimezone* r = construct(&tz, alloc.get());
        if (r == nullptr) {
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
    const std::size_t live = alloc.liveBlocks();
    EXPECT_EQ(live, 2U); // the zone with its table, and the count block: the file and scratch went back
    OrvDateTime d;
    ASSERT_NE(OrvDateTimeConstruct(&d, 0, &tz), nullptr);
    OrvTimezoneDestruct(&tz);
    EXPECT_EQ(alloc.liveBlocks(), live);
    EXPECT_EQ(d.offset, kH);
    OrvDateTimeDestruct(&d);
    EXPECT_EQ(alloc.liveBlocks(), 0U);
    EXPECT_EQ(alloc.badDeallocations(), 0U);
}

// ---------------------------------------------------------------------------------
// The local zone
// ---------------------------------------------------------------------------------

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
    for (const LocalCase& c : cases) {
        ScopedEnv env("TZ", c.tz);
        OrvTimezone tz;
        ASSERT_NE(OrvTzdbTimezoneConstructLocal(&tz, OrvAllocatorGetDefault()), nullptr) << c.tz;
        EXPECT_STREQ(OrvTzdbTimezoneGetId(&tz), c.id);
        EXPECT_EQ(OrvTimezoneGetOffset(&tz, Utc(2024, 7, 1) * kS), c.julyOffset) << c.tz;
        OrvTimezoneDestruct(&tz);
    }
    // Unset or naming nothing: /etc/localtime when there is one, else UTC; never null.
    for (const char* value : {static_cast<const char*>(nullptr), "Not a zone"}) {
        ScopedEnv env("TZ", value);
        OrvTimezone tz;
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
