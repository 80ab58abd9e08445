// Look-ups in the embedded copy of the zone database; the tables themselves are
// generated at build time (see TzdbEmbedded.hpp). Built with ORV_TZDB_EMBEDDED=0 the
// copy is absent.
#include "Timezone/TzdbEmbedded.hpp"

#include <cstring>

#ifndef ORV_TZDB_EMBEDDED
#define ORV_TZDB_EMBEDDED 0
#endif

namespace orv::tzdb {

#if ORV_TZDB_EMBEDDED

bool HaveEmbeddedDatabase() { return embedded::kIdCount != 0; }

bool FindEmbeddedZone(const char* id, const unsigned char** bytes, std::size_t* size)
{
    std::size_t lo = 0;
    std::size_t hi = embedded::kIdCount;
    while (lo < hi) {
        const std::size_t mid = lo + (hi - lo) / 2;
        const int order = std::strcmp(embedded::kIdNames + embedded::kIds[mid].name, id);
        if (order == 0) {
            const std::uint32_t z = embedded::kIds[mid].zone;
            *bytes = embedded::kZoneBytes + embedded::kZoneStarts[z];
            *size = embedded::kZoneStarts[z + 1] - embedded::kZoneStarts[z];
            return true;
        }
        if (order < 0) {
            lo = mid + 1;
        } else {
            hi = mid;
        }
    }
    return false;
}

std::size_t EmbeddedIdCount() { return embedded::kIdCount; }

const char* EmbeddedIdAt(std::size_t i)
{
    return i < embedded::kIdCount ? embedded::kIdNames + embedded::kIds[i].name : nullptr;
}

const char* EmbeddedVersion() { return embedded::kVersion; }

#else

bool HaveEmbeddedDatabase() { return false; }

bool FindEmbeddedZone(const char*, const unsigned char**, std::size_t*) { return false; }

std::size_t EmbeddedIdCount() { return 0; }

const char* EmbeddedIdAt(std::size_t) { return nullptr; }

const char* EmbeddedVersion() { return ""; }

#endif

} // namespace orv::tzdb
