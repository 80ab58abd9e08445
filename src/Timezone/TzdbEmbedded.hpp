// The compact copy of the zone database carried in the library. It is built with the
// library from the build machine's compiled database (cmake/TzdbPack.cpp, CMake option
// ORV_EMBED_TZDATA); without it every query here answers "none".
#ifndef ORV_SRC_TIMEZONE_TZDBEMBEDDED_HPP
#define ORV_SRC_TIMEZONE_TZDBEMBEDDED_HPP

#include <cstddef>
#include <cstdint>

namespace orv::tzdb {

namespace embedded {

// The generated tables. Zone z is the TZif file kZoneBytes[kZoneStarts[z]] up to
// kZoneBytes[kZoneStarts[z + 1]]; kIds is sorted by strcmp of the names, each name a
// NUL-terminated string at kIdNames + name.
struct IdEntry {
    std::uint32_t name;
    std::uint32_t zone;
};

extern const char kVersion[];
extern const std::uint32_t kZoneCount;
extern const std::uint32_t kIdCount;
extern const std::uint32_t kZoneStarts[];
extern const IdEntry kIds[];
extern const char kIdNames[];
extern const unsigned char kZoneBytes[];

} // namespace embedded

// True when the library carries the copy.
bool HaveEmbeddedDatabase();

// The TZif bytes of the zone named id (exact match), or false when there is none.
bool FindEmbeddedZone(const char* id, const unsigned char** bytes, std::size_t* size);

// The ids of the copy, in strcmp order: EmbeddedIdAt(0 .. EmbeddedIdCount() - 1).
std::size_t EmbeddedIdCount();
const char* EmbeddedIdAt(std::size_t i);

// The version of the database the copy was built from ("2025b"); "" when it did not
// say or there is no copy.
const char* EmbeddedVersion();

} // namespace orv::tzdb

#endif // ORV_SRC_TIMEZONE_TZDBEMBEDDED_HPP
