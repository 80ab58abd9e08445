// The zone database: where zones are found (a folder of TZif files or the copy built
// into the library), which ids may name them, the machine's local zone, the list of
// ids and the database version.
//
// Every lookup resolves its source once, at its start, and uses only that source: the
// explicit choice of SetSource when there is one, else TZDIR when it is set and not
// empty, else the system folder when it exists, else the embedded copy.
#ifndef ORV_SRC_TIMEZONE_TZDBDATABASE_HPP
#define ORV_SRC_TIMEZONE_TZDBDATABASE_HPP

#include "Orv/Calendar/OrvTzdbTimezone.h"

#include <cstddef>

namespace orv::tzdb {

// The folder of the machine's compiled database.
inline constexpr char kSystemFolder[] = "/usr/share/zoneinfo";

// True when id may name a zone of the database (see OrvTzdbTimezoneConstruct).
bool IsValidZoneId(const char* id);

// The zone of a valid id in the source in use. Null when the source has no such zone
// (for a folder: no such file inside it, or not a usable zone file) or an allocation
// fails.
OrvTimezone* ConstructFromDatabase(OrvTimezone* tz, const char* zoneId, OrvAllocator* a);

// The machine's local zone (TZ, then /etc/localtime, then UTC); see
// OrvTzdbTimezoneConstructLocal and OrvTzdbSetSource.
OrvTimezone* ConstructLocalZone(OrvTimezone* tz, OrvAllocator* a);

// Calls fn with every zone id of the source in use until it returns false. False when
// that source is a folder that cannot be read.
bool ForEachZoneId(OrvTzdbIdCallback fn, OrvVoidPtr userData);

// The version of the database in use ("2025b": the first line of a folder's
// tzdata.zi, or the version the embedded copy was built from); "" when it does not
// say. Valid until the calling thread's next call.
const char* DatabaseVersion();

// The source choice; see OrvTzdbSetSource / OrvTzdbGetSource / OrvTzdbGetSourceInUse.
bool SetSource(OrvTzdbSource source, const char* folder);
OrvTzdbSource GetSource();
OrvTzdbSource SourceInUse(char* name, std::size_t size);

// The automatic rule on its own: Folder when tzdir is set and not empty (that folder,
// even if it is missing) or when systemFolder is a directory (that folder); else
// Embedded when the library carries a copy; else Folder (systemFolder, which then
// holds nothing).
OrvTzdbSource AutomaticSource(const char* tzdir, const char* systemFolder, bool haveEmbedded);

} // namespace orv::tzdb

#endif // ORV_SRC_TIMEZONE_TZDBDATABASE_HPP
