// The command table. Adding a verb: write its handler in the source file of its group
// (or a new one, listed in tools/CMakeLists.txt), declare it below, add its row.
#include "Commands.h"

namespace orvcal {

// VerbsInspect.cpp
int RunShow(Invocation& inv);
int RunConvert(Invocation& inv);
int RunWeek(Invocation& inv);
// VerbsArithmetic.cpp
int RunAdd(Invocation& inv);
// VerbsSort.cpp
int RunSort(Invocation& inv);
// VerbsZones.cpp
int RunZones(Invocation& inv);

namespace {

constexpr Command kCommands[] = {
    {"show", "Shows the fields, week numbers, instant, offset and zone of a date-time.", RunShow},
    {"convert", "Writes the instant of a date-time as read in another zone.", RunConvert},
    {"add", "Adds an amount to one field of a date-time and writes the result.", RunAdd},
    {"week", "Shows the week numbers of a date under a week rule.", RunWeek},
    {"sort", "Reads date-times one per line and writes them in order, without duplicates.", RunSort},
    {"zones", "Lists the zone ids of the system's time-zone database, one per line.", RunZones},
};

} // namespace

std::span<const Command> AllCommands() { return kCommands; }

const Command* FindCommand(std::string_view name)
{
    for (const Command& c : kCommands)
        if (name == c.name) return &c;
    return nullptr;
}

} // namespace orvcal
