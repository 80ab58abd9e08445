// The C entry points of the database zones.
#include "Orv/Calendar/OrvTzdbTimezone.h"

#include "Timezone/TzdbDatabase.hpp"
#include "Timezone/TzdbZone.hpp"

using namespace orv::tzdb;

OrvTimezone* OrvTzdbTimezoneConstruct(OrvTimezone* tz, const char* zoneId, OrvAllocator* a)
{
    if (tz == nullptr || a == nullptr || !IsValidZoneId(zoneId)) return nullptr;
    return ConstructFromDatabase(tz, zoneId, a);
}

OrvTimezone* OrvTzdbTimezoneConstructPosix(OrvTimezone* tz, const char* rule, OrvAllocator* a)
{
    if (tz == nullptr || rule == nullptr || a == nullptr) return nullptr;
    return ConstructFromRule(tz, rule, a);
}

OrvTimezone* OrvTzdbTimezoneConstructLocal(OrvTimezone* tz, OrvAllocator* a)
{
    if (tz == nullptr || a == nullptr) return nullptr;
    return ConstructLocalZone(tz, a);
}

OrvBool OrvTzdbTimezoneIs(const OrvTimezone* tz) { return AsTzdbZone(tz) != nullptr ? ORV_TRUE : ORV_FALSE; }

const char* OrvTzdbTimezoneGetId(const OrvTimezone* tz)
{
    const TzdbZone* z = AsTzdbZone(tz);
    return z != nullptr ? ZoneId(z) : nullptr;
}

OrvBool OrvTzdbTimezoneLookup(const OrvTimezone* tz, OrvInt year, OrvInt month, OrvInt day, OrvInt hour,
                              OrvInt minute, OrvInt second, OrvTzdbLookup* out)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || out == nullptr || month < 1 || month > 12) return ORV_FALSE;
    *out = LookupLocal(z, year, month, day, hour, minute, second);
    return ORV_TRUE;
}

OrvBool OrvTzdbTimezoneForEachId(OrvTzdbIdCallback fn, OrvVoidPtr userData)
{
    if (fn == nullptr) return ORV_FALSE;
    return ForEachZoneId(fn, userData) ? ORV_TRUE : ORV_FALSE;
}
