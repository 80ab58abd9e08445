// The database folder: where zone files are found, which ids may name them, the
// machine's local zone, and the list of ids.
#ifndef ORV_SRC_TIMEZONE_TZDBDATABASE_HPP
#define ORV_SRC_TIMEZONE_TZDBDATABASE_HPP

#include "Orv/Calendar/OrvTzdbTimezone.h"

namespace orv::tzdb {

// True when id may name a file of the database folder (see OrvTzdbTimezoneConstruct).
bool IsValidZoneId(const char* id);

// The zone of the database file named by a valid id. Null when there is no such
// file inside the folder, it is not a usable zone file, or an allocation fails.
OrvTimezone* ConstructFromDatabase(OrvTimezone* tz, const char* zoneId, OrvAllocator* a);

// The machine's local zone (TZ, then /etc/localtime, then UTC); see
// OrvTzdbTimezoneConstructLocal.
OrvTimezone* ConstructLocalZone(OrvTimezone* tz, OrvAllocator* a);

// Calls fn with every zone id of the folder until it returns false. False when the
// folder cannot be read.
bool ForEachZoneId(OrvTzdbIdCallback fn, OrvVoidPtr userData);

} // namespace orv::tzdb

#endif // ORV_SRC_TIMEZONE_TZDBDATABASE_HPP
