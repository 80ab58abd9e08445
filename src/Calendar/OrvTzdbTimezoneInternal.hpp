// Entry points of the database zones for the library's own tests and fuzz targets:
// building a zone straight from the bytes of a zone file, and the zone id check.
#ifndef ORV_SRC_CALENDAR_ORVTZDBTIMEZONEINTERNAL_HPP
#define ORV_SRC_CALENDAR_ORVTZDBTIMEZONEINTERNAL_HPP

#include "Orv/Calendar/OrvTzdbTimezone.h"

#include <cstddef>

namespace orv::tzdb {

// A zone from the bytes of a TZif file, named id (cut to ORV_TZDB_ID_MAX bytes).
// Null, with nothing held, when the bytes are not a usable zone file or an
// allocation fails.
OrvTimezone* ConstructFromBytes(OrvTimezone* tz, const unsigned char* bytes, std::size_t size, const char* id,
                                OrvAllocator* a);

// True when id may name a file of the database folder (see OrvTzdbTimezoneConstruct).
bool IsValidZoneId(const char* id);

// Number of table entries of a zone built here (its transitions inside the OrvTime
// range, plus one for the offset before the first); 0 for any other zone.
std::size_t TransitionCount(const OrvTimezone* tz);

// Entry i of that table: *at the instant of the change (INT64_MIN for entry 0), *offset
// the offset from then on. False when i is out of range or tz is not such a zone.
bool TransitionAt(const OrvTimezone* tz, std::size_t i, OrvTime* at, OrvTime* offset);

} // namespace orv::tzdb

#endif // ORV_SRC_CALENDAR_ORVTZDBTIMEZONEINTERNAL_HPP
