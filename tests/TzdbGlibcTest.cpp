// Every zone of the system database against glibc (localtime_r with TZ set to the
// zone): the offset, daylight-saving flag and abbreviation of each instant must be
// glibc's tm_gmtoff, tm_isdst and tm_zone, on both sides of every transition the zone
// lists (walked forwards from the start and backwards from the end of the range), in
// the middle of every span between two transitions, and at random instants; readings
// must look up consistently (an instant's reading to its offset, the edges of each
// change as skipped or repeated); and local readings outside the instant range (years
// 1600, 2263, 3000, 9999) must take glibc's offset for that date.
#include "Timezone/TzdbZone.hpp"

#include "Orv/Calendar/OrvDateTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr OrvTime kNs = ORV_TIME_NANOSECONDS_PER_SECOND;
constexpr std::int64_t kFirstSecond = INT64_MIN / kNs; // the whole seconds of the OrvTime range
constexpr std::int64_t kLastSecond = INT64_MAX / kNs;

// A local time type as glibc reports it for the zone TZ currently names.
struct Type {
    long offset; // seconds
    bool isDst;
    std::string abbreviation;
    bool operator==(const Type&) const = default;
};

Type GlibcAt(std::int64_t t)
{
    const auto tt = static_cast<time_t>(t);
    tm out{};
    if (localtime_r(&tt, &out) == nullptr) return {LONG_MIN, false, "?"};
    return {out.tm_gmtoff, out.tm_isdst > 0, out.tm_zone != nullptr ? out.tm_zone : ""};
}

Type OursAt(const OrvTimezone* tz, std::int64_t t)
{
    const char* abbreviation = OrvTzdbTimezoneGetAbbreviation(tz, t * kNs);
    return {static_cast<long>(OrvTimezoneGetOffset(tz, t * kNs) / kNs), OrvTzdbTimezoneIsDst(tz, t * kNs) != 0,
            abbreviation != nullptr ? abbreviation : "(null)"};
}

Type Before(const OrvTzdbTransition& tr)
{
    return {static_cast<long>(tr.offsetBefore / kNs), tr.isDstBefore != 0, tr.abbreviationBefore};
}

Type After(const OrvTzdbTransition& tr)
{
    return {static_cast<long>(tr.offsetAfter / kNs), tr.isDstAfter != 0, tr.abbreviationAfter};
}

std::ostream& operator<<(std::ostream& os, const Type& t)
{
    return os << t.offset << " s " << (t.isDst ? "dst" : "std") << " \"" << t.abbreviation << "\"";
}

// Seconds since 1970-01-01T00:00 of a reading, kept local so the test does not check
// the library against itself.
constexpr std::int64_t Seconds(std::int64_t y, int mo, int d, int h)
{
    const std::int64_t yy = y - (mo <= 2 ? 1 : 0);
    const std::int64_t era = (yy >= 0 ? yy : yy - 399) / 400;
    const std::int64_t yoe = yy - era * 400;
    const std::int64_t doy = (153 * (mo + (mo > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    return (era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468) * 86400 + h * 3600;
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

std::vector<OrvTzdbTransition> Walk(const OrvTimezone* tz, bool forwards)
{
    std::vector<OrvTzdbTransition> list;
    OrvTzdbTransition tr{};
    OrvTime t = forwards ? INT64_MIN : ORV_TIME_INVALID;
    while (forwards ? OrvTzdbTimezoneNextTransition(tz, t, &tr) : OrvTzdbTimezonePrevTransition(tz, t, &tr)) {
        list.push_back(tr);
        t = tr.instant;
    }
    if (!forwards) std::reverse(list.begin(), list.end());
    return list;
}

TEST(TzdbAgainstGlibc, EveryZoneAtEveryTransitionAndAtRandomInstants)
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
    std::uniform_int_distribution<std::int64_t> recent(Seconds(1900, 1, 1, 0), Seconds(2100, 1, 1, 0));
    std::uniform_int_distribution<std::int64_t> anywhere(kFirstSecond, kLastSecond);
    std::size_t checks = 0;
    std::size_t transitions = 0;
    for (const std::string& id : ids) {
        SCOPED_TRACE(id);
        OrvTimezone tz;
        ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, id.c_str(), OrvAllocatorGetDefault()), nullptr);
        setenv("TZ", id.c_str(), 1);
        tzset();
        int failures = 0;
        const auto fail = [&]() { return ++failures <= 3; }; // a few reports per zone are enough
        auto check = [&](std::int64_t t, const Type* want = nullptr) {
            ++checks;
            const Type glibc = GlibcAt(t);
            const Type ours = OursAt(&tz, t);
            if ((ours != glibc || (want != nullptr && *want != glibc)) && fail())
                ADD_FAILURE() << "at " << t << " s: ours " << ours << ", glibc " << glibc;
            // The instant's reading must name this offset: as the only one, or as one of two.
            const OrvTime offset = OrvTime{glibc.offset} * kNs;
            const OrvTzdbLookup r = LookUp(&tz, t + glibc.offset);
            const bool named = r.kind == ORV_TZDBLOOKUPKIND_Unique     ? r.offsetBefore == offset
                               : r.kind == ORV_TZDBLOOKUPKIND_Repeated ? (r.offsetBefore == offset || r.offsetAfter == offset)
                                                                        : false;
            if (!named && fail()) {
                ADD_FAILURE() << "reading of " << t << " s: kind " << r.kind << ", offsets " << r.offsetBefore / kNs
                              << " / " << r.offsetAfter / kNs << ", glibc's " << glibc.offset;
            }
        };
        const std::vector<OrvTzdbTransition> list = Walk(&tz, true);
        const std::vector<OrvTzdbTransition> backwards = Walk(&tz, false);
        ASSERT_EQ(backwards.size(), list.size());
        transitions += list.size();
        check(kFirstSecond);
        check(kLastSecond);
        for (std::size_t i = 0; i < list.size(); ++i) {
            const OrvTzdbTransition& tr = list[i];
            ASSERT_EQ(std::memcmp(&tr, &backwards[i], sizeof tr), 0) << "transition " << i << " walked backwards";
            ASSERT_EQ(tr.instant % kNs, 0);
            const Type before = Before(tr);
            const Type after = After(tr);
            ASSERT_NE(before, after) << "a transition that changes nothing at " << tr.instant / kNs;
            if (i > 0) {
                ASSERT_GT(tr.instant, list[i - 1].instant);
                ASSERT_EQ(before, After(list[i - 1]));
            }
            const std::int64_t s = tr.instant / kNs;
            check(s - 1, &before);
            check(s, &after);
            check(s + 1);
            // Halfway to the next: glibc must see no change that the list lacks.
            const std::int64_t end = i + 1 < list.size() ? list[i + 1].instant / kNs : kLastSecond;
            check(s + (end - s) / 2, &after);
            if (tr.offsetBefore == tr.offsetAfter) continue;
            // A forward change skips the readings [s + before, s + after), a backward one
            // repeats [s + after, s + before): check the first and last of them.
            const std::int64_t lo = s + std::min(before.offset, after.offset);
            const std::int64_t hi = s + std::max(before.offset, after.offset) - 1;
            for (std::int64_t local : {lo, hi}) {
                const OrvTzdbLookup r = LookUp(&tz, local);
                const auto kind = after.offset > before.offset ? ORV_TZDBLOOKUPKIND_Skipped
                                                               : ORV_TZDBLOOKUPKIND_Repeated;
                if ((r.kind != kind || r.offsetBefore != tr.offsetBefore || r.offsetAfter != tr.offsetAfter ||
                     r.transition != tr.instant) &&
                    fail()) {
                    ADD_FAILURE() << "reading " << local << " at the change at " << s << " s: kind " << r.kind
                                  << ", offsets " << r.offsetBefore / kNs << " / " << r.offsetAfter / kNs;
                }
            }
        }
        for (int k = 0; k < 2000; ++k) check(recent(rng));
        for (int k = 0; k < 500; ++k) check(anywhere(rng));
        // Readings outside the instant range, mid-month at noon, far from any change:
        // the offset in force there (glibc's, at the reading taken as UTC).
        for (const std::int64_t year : {1600, 2263, 3000, 9999}) {
            for (const int month : {1, 7}) {
                const long want = GlibcAt(Seconds(year, month, 15, 12)).offset;
                const auto y = static_cast<OrvInt>(year);
                const OrvTime ours = OrvTimezoneGetOffsetFromFields(&tz, y, month, 15, 12, 0, 0, 0);
                OrvDateTime d;
                ASSERT_NE(OrvDateTimeConstructFields(&d, y, month, 15, 12, 0, 0, 0, &tz), nullptr);
                if ((ours != OrvTime{want} * kNs || d.offset != ours || d.hour != 12) && fail())
                    ADD_FAILURE() << year << "-" << month << "-15T12:00: ours " << ours / kNs << " s, glibc " << want;
                OrvDateTimeDestruct(&d);
            }
        }
        OrvTimezoneDestruct(&tz);
    }
    oldTz != nullptr ? setenv("TZ", savedTz.c_str(), 1) : unsetenv("TZ");
    tzset();
    std::printf("compared %zu zones, %zu transitions, %zu instants\n", ids.size(), transitions, checks);
    EXPECT_GT(ids.size(), 300U);
}

} // namespace
