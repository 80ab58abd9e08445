// Every zone of the system database against glibc: the offset of each instant must be
// tm_gmtoff of localtime_r with TZ set to the zone, at every change of our table (and
// one second either side) and at random instants from 1900 to 2100; and the local
// reading of each of those instants must look up to the same offset.
#include "Calendar/OrvTzdbTimezoneInternal.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr OrvTime kNs = ORV_TIME_NANOSECONDS_PER_SECOND;
constexpr std::int64_t k1900 = -2208988800; // 1900-01-01T00:00:00Z
constexpr std::int64_t k2100 = 4102444800;  // 2100-01-01T00:00:00Z
constexpr int kRandomInstantsPerZone = 3000;

std::vector<std::string> AllZoneIds()
{
    std::vector<std::string> ids;
    OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids);
    std::sort(ids.begin(), ids.end());
    return ids;
}

// glibc's offset at UTC second t in the zone TZ currently names, in seconds.
long GlibcOffset(std::int64_t t)
{
    const auto tt = static_cast<time_t>(t);
    tm out{};
    if (localtime_r(&tt, &out) == nullptr) return LONG_MIN;
    return out.tm_gmtoff;
}

class SavedTz {
public:
    SavedTz()
    {
        const char* tz = std::getenv("TZ");
        had_ = tz != nullptr;
        if (had_) value_ = tz;
    }
    ~SavedTz()
    {
        if (had_) {
            setenv("TZ", value_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    SavedTz(const SavedTz&) = delete;
    SavedTz& operator=(const SavedTz&) = delete;

private:
    bool had_ = false;
    std::string value_;
};

TEST(TzdbAgainstGlibc, EveryZoneAtEveryChangeAndAtRandomInstants)
{
    const std::vector<std::string> ids = AllZoneIds();
    if (ids.empty()) GTEST_SKIP() << "no time-zone database found (install Debian's tzdata or set TZDIR)";
    SavedTz saved;
    std::mt19937_64 rng(20240501);
    std::uniform_int_distribution<std::int64_t> inRange(k1900, k2100);
    std::size_t zones = 0;
    std::size_t checks = 0;
    for (const std::string& id : ids) {
        OrvTimezone tz;
        ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, id.c_str(), OrvAllocatorGetDefault()), nullptr) << id;
        setenv("TZ", id.c_str(), 1);
        tzset();
        int failures = 0;
        auto check = [&](std::int64_t t) {
            ++checks;
            const long expected = GlibcOffset(t);
            const OrvTime ours = OrvTimezoneGetOffset(&tz, t * kNs);
            if (ours != OrvTime{expected} * kNs && ++failures <= 3) {
                ADD_FAILURE() << id << " at " << t << " s: ours " << ours / kNs << " s, glibc " << expected << " s";
            }
            // The reading of that instant, looked up the other way, must exist and name
            // this offset: as the only one, or as one of the two of a repeated reading.
            const std::int64_t local = t + expected;
            const std::int64_t days = local >= 0 ? local / 86400 : (local - 86399) / 86400;
            const std::int64_t sec = local - days * 86400;
            OrvTzdbLookup r{};
            OrvTzdbTimezoneLookup(&tz, 1970, 1, static_cast<OrvInt>(days + 1), static_cast<OrvInt>(sec / 3600),
                                  static_cast<OrvInt>(sec / 60 % 60), static_cast<OrvInt>(sec % 60), &r);
            const bool consistent = r.kind == ORV_TZDBLOOKUPKIND_Unique ? r.offsetBefore == ours
                                    : r.kind == ORV_TZDBLOOKUPKIND_Repeated
                                        ? (r.offsetBefore == ours || r.offsetAfter == ours)
                                        : false;
            if (!consistent && ++failures <= 3) {
                ADD_FAILURE() << id << " reading of " << t << " s: kind " << r.kind << ", offsets "
                              << r.offsetBefore / kNs << " / " << r.offsetAfter / kNs << ", instant's " << ours / kNs;
            }
        };
        // Changes: glibc's time_t reaches far beyond OrvTime, so every change of the
        // table (first entry excepted, it stands for "before everything") is checked.
        OrvTime at = 0;
        OrvTime offset = 0;
        for (std::size_t i = 1; orv::tzdb::TransitionAt(&tz, i, &at, &offset); ++i) {
            const std::int64_t s = at / kNs;
            check(s - 1);
            check(s);
            check(s + 1);
        }
        for (int k = 0; k < kRandomInstantsPerZone; ++k) check(inRange(rng));
        OrvTimezoneDestruct(&tz);
        ++zones;
    }
    RecordProperty("zones", static_cast<int>(zones));
    RecordProperty("checks", static_cast<int>(checks));
    std::printf("compared %zu zones, %zu instants\n", zones, checks);
    EXPECT_GT(zones, 300U);
}

} // namespace
