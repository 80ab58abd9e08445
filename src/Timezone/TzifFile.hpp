// Reader of the binary TZif files of the compiled zone database (versions 1 to 4).
// The reader allocates nothing and keeps no pointer past the call except into the
// bytes it was given; it refuses anything it does not fully understand. Times here
// are whole seconds, offsets seconds east of UTC.
#ifndef ORV_SRC_TIMEZONE_TZIFFILE_HPP
#define ORV_SRC_TIMEZONE_TZIFFILE_HPP

#include "Timezone/PosixRule.hpp"

#include <cstddef>
#include <cstdint>

namespace orv::tzdb {

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
    std::uint8_t isDst[256] = {};              // per type, 0 or 1
    std::uint8_t abbrIndexes[256] = {};        // per type, each < charCount
    const unsigned char* chars = nullptr;      // charCount bytes of NUL-separated abbreviations
    std::uint32_t charCount = 0;               // at least 1
    bool hasRule = false;                      // footer present and not empty
    PosixRule rule;                            // its names point into the footer

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

#endif // ORV_SRC_TIMEZONE_TZIFFILE_HPP
