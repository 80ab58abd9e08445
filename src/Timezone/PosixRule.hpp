// POSIX TZ rules, as carried in the footer of a TZif file and in the TZ variable:
// "std offset [dst [offset] [,start[/time],end[/time]]]". Times here are whole
// seconds, offsets seconds east of UTC.
#ifndef ORV_SRC_TIMEZONE_POSIXRULE_HPP
#define ORV_SRC_TIMEZONE_POSIXRULE_HPP

#include <cstddef>
#include <cstdint>

namespace orv::tzdb {

// Largest |offset| a zone may have: 25 h less a second west, 26 h less a second east
// (the bounds the TZif format allows for UT offsets).
inline constexpr std::int32_t kMinUtOffset = -89999;
inline constexpr std::int32_t kMaxUtOffset = 93599;

// One date of a POSIX rule: when in the year, and at what local time of that day.
struct PosixRuleDate {
    enum class Kind : std::uint8_t {
        JulianNoLeap, // Jn: day 1..365, 29 February never counted
        ZeroBased,    // n: day 0..365, 29 February counted in leap years
        MonthWeekDay, // Mm.w.d: weekday d (0 = Sunday) of week w (5 = last) of month m
    };
    Kind kind = Kind::MonthWeekDay;
    std::int32_t day = 0;   // Jn / n
    std::int32_t month = 0; // 1..12
    std::int32_t week = 0;  // 1..5
    std::int32_t weekday = 0;
    std::int32_t time = 7200; // seconds after local midnight, -167 h .. +167 h
};

// "std offset [dst [offset] [,start[/time],end[/time]]]", offsets turned east-positive.
struct PosixRule {
    std::int32_t stdOffset = 0;
    bool hasDst = false;
    std::int32_t dstOffset = 0;
    PosixRuleDate start; // standard -> daylight, at standard local time
    PosixRuleDate end;   // daylight -> standard, at daylight local time
};

// Parses exactly len bytes (no terminator needed). A rule with a daylight name but no
// dates gets the dates M3.2.0,M11.1.0. False for anything else than a full rule.
bool ParsePosixRule(const char* text, std::size_t len, PosixRule* out);

// The two changes of the rule's year `year` as UTC seconds: *toDst when daylight time
// starts, *toStd when it ends. Only meaningful when rule.hasDst.
void PosixRuleChangesInYear(const PosixRule& rule, std::int64_t year, std::int64_t* toDst, std::int64_t* toStd);

// The offset the rule puts in force at UTC second t.
std::int32_t PosixRuleOffsetAt(const PosixRule& rule, std::int64_t t);

} // namespace orv::tzdb

#endif // ORV_SRC_TIMEZONE_POSIXRULE_HPP
