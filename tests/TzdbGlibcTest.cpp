// Every zone of the system database against glibc: the offset of each instant must be
// tm_gmtoff of localtime_r with TZ set to the zone, at every change of our table (and
// one second either side) and at random instants from 1900 to 2100. The readings must
// look up consistently: an instant's reading to its offset, and the readings at the
// edges of each change as skipped or repeated between the old and the new offset.
#include "Timezone/TzdbZone.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr OrvTime kNs = ORV_TIME_NANOSECONDS_PER_SECOND;
constexpr std::int64_t k1900 = -2208988800; // 1900-01-01T00:00:00Z
constexpr std::int64_t k2100 = 4102444800;  // 2100-01-01T00:00:00Z

// glibc's offset at UTC second t in the zone TZ currently names, in seconds.
long GlibcOffset(std::int64_t t)
{
    const auto tt = static_cast<time_t>(t);
    tm out{};
    return localtime_r(&tt, &out) == nullptr ? LONG_MIN : out.tm_gmtoff;
}

// The lookup of a local reading given as seconds since 1970-01-01T00:00:00 local.
OrvTzdbLookup LookUp(const OrvTimezone* tz, std::int64_t local)
{
    const std::int64_t days = local >= 0 ? local / 86400 : (local - 86399) / 86400;
    const std::int64_t sec = local - days * 86400;
    OrvTzdbLookup r{};
    EXPECT_TRUE(OrvTzdbTimezoneLookup(tz, 1970, 1, static_cast<OrvInt>(days + 1), static_cast<OrvInt>(sec / 3600),
                                      static_cast<OrvInt>(sec / 60 % 60), static_cast<OrvInt>(sec % 60), &r));
    return r;
}

TEST(TzdbAgainstGlibc, EveryZoneAtEveryChangeAndAtRandomInstants)
{
    std::vector<std::string> ids;
    OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids);
    if (ids.empty()) GTEST_SKIP() << "no time-zone database found (install Debian's tzdata or set TZDIR)";
    std::sort(ids.begin(), ids.end());
    const char* oldTz = std::getenv("TZ");
    const std::string savedTz = oldTz != nullptr ? oldTz : "";
    std::mt19937_64 rng(20240501);
    std::uniform_int_distribution<std::int64_t> inRange(k1900, k2100);
    std::size_t checks = 0;
    for (const std::string& id : ids) {
        OrvTimezone tz;
        ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, id.c_str(), OrvAllocatorGetDefault()), nullptr) << id;
        setenv("TZ", id.c_str(), 1);
        tzset();
        int failures = 0;
        const auto fail = [&]() { return ++failures <= 3; }; // a few reports per zone are enough
        auto check = [&](std::int64_t t) {
            ++checks;
            const long expected = GlibcOffset(t);
            const OrvTime ours = OrvTimezoneGetOffset(&tz, t * kNs);
            if (ours != OrvTime{expected} * kNs && fail()) {
                ADD_FAILURE() << id << " at " << t << " s: ours " << ours / kNs << " s, glibc " << expected << " s";
            }
            // The instant's reading must name this offset: as the only one, or as one of two.
            const OrvTzdbLookup r = LookUp(&tz, t + expected);
            const bool named = r.kind == ORV_TZDBLOOKUPKIND_Unique     ? r.offsetBefore == ours
                               : r.kind == ORV_TZDBLOOKUPKIND_Repeated ? (r.offsetBefore == ours || r.offsetAfter == ours)
                                                                        : false;
            if (!named && fail()) {
                ADD_FAILURE() << id << " reading of " << t << " s: kind " << r.kind << ", offsets "
                              << r.offsetBefore / kNs << " / " << r.offsetAfter / kNs << ", instant's " << ours / kNs;
            }
        };
        // The first table entry stands for "before everything"; each later one is a change.
        OrvTime at = 0;
        OrvTime offset = 0;
        OrvTime previous = 0;
        orv::tzdb::TransitionAt(&tz, 0, &at, &previous);
        for (std::size_t i = 1; orv::tzdb::TransitionAt(&tz, i, &at, &offset); ++i, previous = offset) {
            const std::int64_t s = at / kNs;
            check(s - 1);
            check(s);
            check(s + 1);
            if (offset == previous) continue;
            // A forward change skips the readings [s + previous, s + offset), a backward one
            // repeats [s + offset, s + previous): check the first and last of them.
            const std::int64_t lo = s + std::min(previous, offset) / kNs;
            const std::int64_t hi = s + std::max(previous, offset) / kNs - 1;
            for (std::int64_t local : {lo, hi}) {
                const OrvTzdbLookup r = LookUp(&tz, local);
                const auto kind = offset > previous ? ORV_TZDBLOOKUPKIND_Skipped : ORV_TZDBLOOKUPKIND_Repeated;
                if ((r.kind != kind || r.offsetBefore != previous || r.offsetAfter != offset || r.transition != at) &&
                    fail()) {
                    ADD_FAILURE() << id << " reading " << local << " at the change at " << s << " s: kind " << r.kind
                                  << ", offsets " << r.offsetBefore / kNs << " / " << r.offsetAfter / kNs;
                }
            }
        }
        for (int k = 0; k < 3000; ++k) check(inRange(rng));
        OrvTimezoneDestruct(&tz);
    }
    oldTz != nullptr ? setenv("TZ", savedTz.c_str(), 1) : unsetenv("TZ");
    tzset();
    std::printf("compared %zu zones, %zu instants\n", ids.size(), checks);
    EXPECT_GT(ids.size(), 300U);
}

} // namespace
