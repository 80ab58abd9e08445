// Arbitrary text into the POSIX TZ rule parser. A rule that parses must build a zone
// that agrees with it, give at every sampled instant the offset of the latest change
// at or before it (the changes worked out here with std::chrono over five years), and
// classify local readings as the offsets at their candidate instants say.
#include "FuzzSupport.h"
#include "Timezone/PosixRule.hpp"

#include <algorithm>
#include <string>
#include <vector>

using namespace orv::tzdb;

namespace {

// Days since 1970-01-01 of the rule date in year y.
std::int64_t RuleDay(const PosixRuleDate& d, int y)
{
    using namespace std::chrono;
    const sys_days jan1{year{y} / January / 1};
    switch (d.kind) {
    case PosixRuleDate::Kind::JulianNoLeap: return (jan1 + days{d.day - 1 + (year{y}.is_leap() && d.day >= 60)}).time_since_epoch().count();
    case PosixRuleDate::Kind::ZeroBased: return (jan1 + days{d.day}).time_since_epoch().count();
    case PosixRuleDate::Kind::MonthWeekDay: break;
    }
    const auto ym = year{y} / month{unsigned(d.month)};
    const weekday wd{unsigned(d.weekday)};
    const sys_days day = d.week == 5 ? sys_days{ym / wd[last]} : sys_days{ym / wd[unsigned(d.week)]};
    return day.time_since_epoch().count();
}

// The changes of the five years around UTC second t, in the rule's order (year by
// year, daylight first), as (instant, to daylight).
std::vector<std::pair<std::int64_t, bool>> ChangesAround(const PosixRule& r, std::int64_t t)
{
    using namespace std::chrono;
    const int y = int(year_month_day{sys_days{days{t / 86400 - (t % 86400 < 0)}}}.year());
    std::vector<std::pair<std::int64_t, bool>> changes;
    for (int yy = y - 2; yy <= y + 2; ++yy) {
        changes.emplace_back(RuleDay(r.start, yy) * 86400 + r.start.time - r.stdOffset, true);
        changes.emplace_back(RuleDay(r.end, yy) * 86400 + r.end.time - r.dstOffset, false);
    }
    return changes;
}

// The offset in force at t: that of the latest change at or before t, the later one in
// the rule's order when two coincide.
std::int32_t BruteOffsetAt(const PosixRule& r, std::int64_t t)
{
    if (!r.hasDst) return r.stdOffset;
    std::pair<std::int64_t, bool> best{INT64_MIN, false};
    for (const auto& c : ChangesAround(r, t))
        if (c.first <= t && c.first >= best.first) best = c;
    FUZZ_CHECK(best.first != INT64_MIN);
    return best.second ? r.dstOffset : r.stdOffset;
}

// Whether the local readings each change skips or repeats stay clear of the other
// changes near t (changes further apart than the two offsets), as in every real zone.
bool ChangesApart(const PosixRule& r, std::int64_t t)
{
    if (!r.hasDst) return true;
    std::vector<std::pair<std::int64_t, bool>> changes = ChangesAround(r, t);
    std::sort(changes.begin(), changes.end());
    for (std::size_t i = 1; i < changes.size(); ++i)
        if (changes[i].first - changes[i - 1].first <= std::abs(r.dstOffset - r.stdOffset)) return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    PosixRule rule;
    const bool parsed = ParsePosixRule(text.data(), text.size(), &rule);
    fuzz::Allocator alloc;
    OrvTimezone tz;
    const bool built = text.find('\0') == std::string::npos && OrvTzdbTimezoneConstructPosix(&tz, text.c_str(), &alloc.base);
    FUZZ_CHECK(built == (parsed && text.find('\0') == std::string::npos)); // the allocator does not fail here
    if (!parsed) return 0;
    FUZZ_CHECK(rule.stdOffset >= kMinUtOffset && rule.stdOffset <= kMaxUtOffset && rule.dstOffset >= kMinUtOffset &&
               rule.dstOffset <= kMaxUtOffset);
    std::vector<std::int64_t> instants = {0, -1, 4102444800, -2208988800, 253402300799, -62135596800};
    for (int y : {1900, 1970, 2024, 2037, 2100, 9999}) {
        if (!rule.hasDst) break;
        std::int64_t toDst = 0, toStd = 0;
        PosixRuleChangesInYear(rule, y, &toDst, &toStd);
        for (std::int64_t d : {-86400 * 7, -1, 0, 1, 86400 * 7}) {
            instants.push_back(toDst + d);
            instants.push_back(toStd + d);
        }
    }
    for (std::int64_t t : instants) {
        const std::int32_t offset = PosixRuleOffsetAt(rule, t);
        FUZZ_CHECK(offset == BruteOffsetAt(rule, t));
        if (built && t > -9000000000 && t < 9000000000)
            FUZZ_CHECK(OrvTimezoneGetOffset(&tz, t * ORV_TIME_NANOSECONDS_PER_SECOND) == offset * ORV_TIME_NANOSECONDS_PER_SECOND);
        // The reading t of local time occurs at t - offset for each offset the rule
        // has there: skipped when none does, repeated when both do.
        if (!ChangesApart(rule, t)) continue;
        const PosixRuleReading r = PosixRuleReadLocal(rule, t);
        const bool stdFits = PosixRuleOffsetAt(rule, t - rule.stdOffset) == rule.stdOffset;
        const bool dstFits = rule.hasDst && PosixRuleOffsetAt(rule, t - rule.dstOffset) == rule.dstOffset;
        if (r.change == INT64_MIN) {
            FUZZ_CHECK(r.offsetBefore == r.offsetAfter &&
                       PosixRuleOffsetAt(rule, t - r.offsetBefore) == r.offsetBefore);
        } else {
            FUZZ_CHECK(r.offsetBefore != r.offsetAfter && (r.offsetAfter > r.offsetBefore ? !stdFits && !dstFits : stdFits && dstFits));
        }
    }
    if (built) OrvTimezoneDestruct(&tz);
    FUZZ_CHECK(alloc.live.empty());
    return 0;
}
