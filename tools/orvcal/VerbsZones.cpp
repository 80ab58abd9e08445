// orvcal zones: the ids --zone accepts from the system's time-zone database.
#include "Commands.h"

#include "Orv/Calendar/OrvTzdbTimezone.h"

#include <algorithm>
#include <string>
#include <vector>

namespace orvcal {

int RunZones(Invocation& inv)
{
    const Usage usage{
        .positionals = {},
        .options = {},
        .notes = "The database is the folder named by TZDIR, else /usr/share/zoneinfo. Each id is a ZONE that "
                 "--zone and --from take.\n"
                 "Example: orvcal zones | grep Europe/",
    };
    if (!inv.Read(usage)) return inv.Finished();
    std::vector<std::string> ids;
    const OrvBool read = OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids);
    if (!read || ids.empty())
        return inv.RefuseUsage("no time-zone database found (install tzdata or set TZDIR to its folder)");
    std::sort(ids.begin(), ids.end());
    for (const std::string& id : ids) inv.Out() += id + "\n";
    return kOk;
}

} // namespace orvcal
