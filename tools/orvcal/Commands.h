// The verbs of orvcal. Each is a handler that reads its arguments through an
// Invocation and returns an exit status; the table in Commands.cpp names them.
#ifndef ORVCAL_COMMANDS_H
#define ORVCAL_COMMANDS_H

#include "Invocation.h"

#include <span>
#include <string_view>

namespace orvcal {

using Handler = int (*)(Invocation& inv);

struct Command {
    const char* name;
    const char* summary; // one line, for the command list and the verb's --help
    Handler run;
};

// Every verb, in the order the command list shows them.
std::span<const Command> AllCommands();
// The verb called name, or null.
const Command* FindCommand(std::string_view name);

// The tour that runs without arguments.
int RunTour(Invocation& inv);

} // namespace orvcal

#endif
