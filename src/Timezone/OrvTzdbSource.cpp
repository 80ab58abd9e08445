// The C entry points that choose and name the zone database source.
#include "Orv/Calendar/OrvTzdbTimezone.h"

#include "Timezone/TzdbDatabase.hpp"

OrvBool OrvTzdbSetSource(OrvTzdbSource source, const char* folder)
{
    return orv::tzdb::SetSource(source, folder) ? ORV_TRUE : ORV_FALSE;
}

OrvTzdbSource OrvTzdbGetSource(void) { return orv::tzdb::GetSource(); }

OrvTzdbSource OrvTzdbGetSourceInUse(char* name, OrvSizeT size)
{
    return orv::tzdb::SourceInUse(name, static_cast<std::size_t>(size));
}
