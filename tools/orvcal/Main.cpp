// orvcal: try the OrvCalendar library from a shell.
//
//   orvcal                      a short tour on built-in sample date-times
//   orvcal --help               the list of verbs
//   orvcal VERB ARGS...         run a verb; orvcal VERB --help explains it
//
// Output goes to stdout only when a verb succeeds; a refused argument gives one line on
// stderr and exit status 2.
#include "Commands.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string CommandList()
{
    std::string s = "usage: orvcal [VERB [ARGS...]]\n\n"
                    "Without arguments, a short tour of the library on built-in sample date-times.\n\nverbs:\n";
    for (const orvcal::Command& c : orvcal::AllCommands()) {
        std::string name = "  " + std::string(c.name);
        name.resize(12, ' ');
        s += name + c.summary + "\n";
    }
    s += "\nRun 'orvcal VERB --help' for a verb's arguments.\n";
    return s;
}

int Finish(const orvcal::Invocation& inv, int status, const std::string& out)
{
    if (status == orvcal::kOk) {
        std::fwrite(out.data(), 1, out.size(), stdout);
        if (std::fflush(stdout) != 0) return orvcal::kInternalError;
    } else {
        std::fprintf(stderr, "%s\n", inv.Error().c_str());
    }
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string_view> args(argv + 1, argv + argc);
    if (args.empty()) {
        orvcal::Invocation inv("tour", "", {});
        const int status = orvcal::RunTour(inv);
        return Finish(inv, status, inv.Out());
    }
    const std::string_view verb = args[0];
    if (verb == "--help" || verb == "-h" || verb == "help") {
        if (args.size() == 2) {
            if (const orvcal::Command* c = orvcal::FindCommand(args[1])) {
                orvcal::Invocation inv(c->name, c->summary, {"--help"});
                return Finish(inv, c->run(inv), inv.Out());
            }
        }
        const std::string list = CommandList();
        std::fwrite(list.data(), 1, list.size(), stdout);
        return orvcal::kOk;
    }
    const orvcal::Command* command = orvcal::FindCommand(verb);
    if (command == nullptr) {
        std::string names;
        for (const orvcal::Command& c : orvcal::AllCommands()) names += (names.empty() ? "" : ", ") + std::string(c.name);
        std::fprintf(stderr, "orvcal: unknown verb '%.*s' (expected one of: %s; see orvcal --help)\n",
                     static_cast<int>(verb.size()), verb.data(), names.c_str());
        return orvcal::kBadInput;
    }
    orvcal::Invocation inv(command->name, command->summary, {args.begin() + 1, args.end()});
    const int status = command->run(inv);
    return Finish(inv, status, inv.Out());
}
