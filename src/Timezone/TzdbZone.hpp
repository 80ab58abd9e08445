// The table of a database zone: built from a TZif file or a POSIX rule, and queried
// by instant and by local reading. The zone object and its table share one block of
// the caller's allocator.
#ifndef ORV_SRC_TIMEZONE_TZDBZONE_HPP
#define ORV_SRC_TIMEZONE_TZDBZONE_HPP

#include "Orv/Calendar/OrvTzdbTimezone.h"

#include "Timezone/TzifFile.hpp"

#include <cstddef>
#include <cstdint>

namespace orv::tzdb {

struct TzdbZone;

// The plug-in of every database zone.
extern const OrvTimezoneImplPlugIn kTzdbPlugIn;

// The database zone behind tz, or null when tz is not one.
const TzdbZone* AsTzdbZone(const OrvTimezone* tz);

// Whether impl is a database zone (tz->impl.ptr of a live handle).
inline bool IsTzdbImpl(const OrvTimezoneImpl* impl) { return impl->plugIn == &kTzdbPlugIn; }

// A database zone's answer for a local reading, and the instants [from, to] at which
// its offset query by instant gives the same table entry, so the same offset.
struct LocalOffset {
    OrvTime offset;
    OrvTime from;
    OrvTime to;
};

// The offset the zone's getOffsetFromFields gives for the reading at local second secs
// (secs = the reading's seconds since 1970-01-01T00:00 local, its month carried) plus
// nanosecs, with its span. False, *out unchanged, when secs lies outside the instant
// range: the table does not reach there and the plug-in call answers.
bool OffsetOfLocal(const OrvTimezoneImpl* impl, std::int64_t secs, OrvTime nanosecs, LocalOffset* out);

// The zone's id as it was built (cut to ORV_TZDB_ID_MAX bytes).
const char* ZoneId(const TzdbZone* z);

// Classifies a local reading (month 1..12, other fields carried) against the table.
OrvTzdbLookup LookupLocal(const TzdbZone* z, OrvInt year, OrvInt month, OrvInt day, OrvInt hour, OrvInt minute,
                          OrvInt second);

// A zone from a validated file, named id. Null, with nothing held, when an
// allocation fails.
OrvTimezone* BuildZone(OrvTimezone* tz, const TzifFile& f, const char* id, OrvAllocator* a);

// A zone from the bytes of a TZif file, named id. Null, with nothing held, when the
// bytes are not a usable zone file or an allocation fails.
OrvTimezone* ConstructFromBytes(OrvTimezone* tz, const unsigned char* bytes, std::size_t size, const char* id,
                                OrvAllocator* a);

// A zone from a POSIX rule alone, named after the rule. Null when the rule does not
// parse or an allocation fails.
OrvTimezone* ConstructFromRule(OrvTimezone* tz, const char* rule, OrvAllocator* a);

// The first transition strictly after t (Next) or the last strictly before t (Prev);
// false, *out unchanged, when there is none inside the OrvTime range.
bool NextTransition(const TzdbZone* z, OrvTime t, OrvTzdbTransition* out);
bool PrevTransition(const TzdbZone* z, OrvTime t, OrvTzdbTransition* out);

// The abbreviation and the daylight-saving flag of the local time type in force at t.
const char* AbbreviationAt(const TzdbZone* z, OrvTime t);
bool IsDstAt(const TzdbZone* z, OrvTime t);

// Number of table entries of a database zone (its transitions inside the OrvTime
// range, plus one for the time type before the first); 0 for any other zone.
std::size_t TransitionCount(const OrvTimezone* tz);

// Entry i of that table: *at the instant of the change (INT64_MIN for entry 0), *offset
// the offset from then on. False when i is out of range or tz is not such a zone.
bool TransitionAt(const OrvTimezone* tz, std::size_t i, OrvTime* at, OrvTime* offset);

// Turns a handle fresh from one of the constructors, and not yet copied, into an
// uncounted one: its count block goes back to the allocator, and the zone then lives
// until the caller runs tz->impl.d(tz->impl.ptr, tz->impl.a) itself.
void DropCountBlock(OrvTimezone* tz);

} // namespace orv::tzdb

#endif // ORV_SRC_TIMEZONE_TZDBZONE_HPP
