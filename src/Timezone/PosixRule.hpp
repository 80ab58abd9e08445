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
// The names point into the parsed text, without the angle brackets of the quoted form
// ("<+03>" gives "+03"), and are not terminated: they are valid as long as the text.
struct PosixRule {
    std::int32_t stdOffset = 0;
    bool hasDst = false;
    std::int32_t dstOffset = 0;
    PosixRuleDate start; // standard -> daylight, at standard local time
    PosixRuleDate end;   // daylight -> standard, at daylight local time
    const char* stdName = nullptr;
    std::size_t stdNameLength = 0;
    const char* dstName = nullptr; // null without daylight time
    std::size_t dstNameLength = 0;
};

// Parses exactly len bytes (no terminator needed). A rule with a daylight name but no
// dates gets the dates M3.2.0,M11.1.0. False for anything else than a full rule.
bool ParsePosixRule(const char* text, std::size_t len, PosixRule* out);

// The two changes of the rule's year `year` as UTC seconds: *toDst when daylight time
// starts, *toStd when it ends. Only meaningful when rule.hasDst.
void PosixRuleChangesInYear(const PosixRule& rule, std::int64_t year, std::int64_t* toDst, std::int64_t* toStd);

// True when the rule has daylight time in force at UTC second t.
bool PosixRuleIsDstAt(const PosixRule& rule, std::int64_t t);

// The offset the rule puts in force at UTC second t.
std::int32_t PosixRuleOffsetAt(const PosixRule& rule, std::int64_t t);

// What the rule makes of a local reading, given as seconds since 1970-01-01T00:00
// local (any 64-bit value whose year the calendar kernels handle, |local| < 2^59):
// change is INT64_MIN and both offsets are the reading's own when it occurs once;
// otherwise change is the UTC second of the change that skips (offsetAfter greater)
// or repeats (offsetAfter smaller) the reading, with the offsets before and after it.
// The changes are those the zone table unrolls, in the same order of precedence.
struct PosixRuleReading {
    std::int32_t offsetBefore;
    std::int32_t offsetAfter;
    std::int64_t change;
};
PosixRuleReading PosixRuleReadLocal(const PosixRule& rule, std::int64_t local);

} // namespace orv::tzdb

#endif // ORV_SRC_TIMEZONE_POSIXRULE_HPP
