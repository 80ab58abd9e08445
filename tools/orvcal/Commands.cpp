// The command table. Adding a verb: write its handler in the source file of its group
// (or a new one, listed in tools/CMakeLists.txt), declare it below, add its row.
#include "Commands.h"

namespace orvcal {

// VerbsInspect.cpp
int RunShow(Invocation& inv);
int RunConvert(Invocation& inv);
int RunWeek(Invocation& inv);
int RunNow(Invocation& inv);
// VerbsArithmetic.cpp
int RunAdd(Invocation& inv);
// VerbsSort.cpp
int RunSort(Invocation& inv);
// VerbsZones.cpp
int RunZones(Invocation& inv);
int RunTransitions(Invocation& inv);

namespace {

constexpr Command kCommands[] = {
    {"show", "Shows the fields, week numbers, instant, offset and zone of a date-time.", RunShow},
    {"convert", "Writes the instant of a date-time as read in another zone.", RunConvert},
    {"add", "Adds an amount to one field of a date-time and writes the result.", RunAdd},
    {"week", "Shows the week numbers of a date under a week rule.", RunWeek},
    {"now", "Writes the current date and time, in the system's own zone or another.", RunNow},
    {"sort", "Reads date-times one per line and writes them in order, without duplicates.", RunSort},
    {"zones", "Lists the zone ids of the system's time-zone database, one per line, or its version.", RunZones},
    {"transitions", "Lists the clock changes of a zone in a span of time, with offsets and abbreviations.",
     RunTransitions},
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
