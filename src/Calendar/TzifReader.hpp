// Readers for the two formats of the compiled zone database: the binary TZif file
// (versions 1 to 4) and the POSIX TZ rule it carries in its footer. Neither reader
// allocates or keeps a pointer past the call except into the bytes it was given;
// both refuse anything they do not fully understand. Times here are whole seconds,
// offsets seconds east of UTC.
#ifndef ORV_SRC_CALENDAR_TZIFREADER_HPP
#define ORV_SRC_CALENDAR_TZIFREADER_HPP

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

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

// A validated TZif file, still pointing into the caller's bytes. Only the newest data
// block is described (the 64-bit one in version 2 and later files).
struct TzifFile {
    int version = 0;                           // 1..4
    std::uint32_t timeCount = 0;               // transitions
    std::uint32_t typeCount = 0;               // local time types, 1..256
    int timeSize = 0;                          // 4 or 8 bytes per transition time
    const unsigned char* times = nullptr;      // timeCount big-endian times, strictly ascending
    const unsigned char* typeIndexes = nullptr; // timeCount bytes, each < typeCount
    std::int32_t utOffsets[256] = {};          // per type, within [kMinUtOffset, kMaxUtOffset]
    bool hasRule = false;                      // footer present and not empty
    PosixRule rule;

    std::int64_t TimeAt(std::uint32_t i) const;
    std::int32_t OffsetAfter(std::uint32_t i) const { return utOffsets[typeIndexes[i]]; }
};

enum class TzifStatus {
    Ok,
    BadFormat,   // not TZif, truncated, absurd counts, out-of-range values, bad footer
    LeapSeconds, // valid but carries leap-second records, which OrvTime cannot express
};

// Validates size bytes as a TZif file and describes it in *out.
TzifStatus ReadTzif(const unsigned char* bytes, std::size_t size, TzifFile* out);

} // namespace orv::tzdb

#endif // ORV_SRC_CALENDAR_TZIFREADER_HPP
