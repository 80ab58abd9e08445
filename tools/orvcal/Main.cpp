// orvcal: try the OrvCalendar library from a shell.
//
//   orvcal                      a short tour on built-in sample date-times
//   orvcal --help               the list of verbs and the exit statuses
//   orvcal VERB ARGS...         run a verb; orvcal VERB --help explains it
//
// Every verb keeps its output back and returns a status; Finish writes the output (for
// kOk and kLinesSkipped) and the one line of stderr, and turns a failed write into
// kWriteFailed. A reader that closes the pipe early ends the output quietly.
#include "Commands.h"
#include "Output.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string CommandList()
{
    std::string s = "usage: orvcal [VERB [ARGS...]]\n\n"
                    "Without arguments, a short tour of the library on built-in sample date-times.\n\nverbs:\n";
    for (const orvcal::Command& c : orvcal::AllCommands()) {
        std::string name = "  " + std::string(c.name);
        name.resize(15, ' '); // wider than the longest verb
        s += name + c.summary + "\n";
    }
    s += "\nRun 'orvcal VERB --help' for a verb's arguments.\n\nexit status:\n";
    for (const orvcal::StatusMeaning& m : orvcal::StatusMeanings())
        s += "  " + std::to_string(m.status) + "  " + m.meaning + "\n";
    return s;
}

int Finish(const orvcal::Invocation& inv, int status)
{
    if (status == orvcal::kOk || status == orvcal::kLinesSkipped) {
        const orvcal::WriteResult written = orvcal::WriteFully(STDOUT_FILENO, inv.Out());
        if (written == orvcal::WriteResult::kFailed) {
            const int error = errno;
            orvcal::WriteErrorLine(inv.Prefix() + "cannot write the output: " + std::strerror(error));
            return orvcal::kWriteFailed;
        }
        // kClosed: the reader has all it wanted; the status stays the verb's.
    }
    if (!inv.Error().empty()) orvcal::WriteErrorLine(inv.Error());
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    // A closed pipe shows as EPIPE from write, not as a signal that ends the process.
    std::signal(SIGPIPE, SIG_IGN);

    std::vector<std::string_view> args(argv + 1, argv + argc);
    if (args.empty()) {
        orvcal::Invocation inv("tour", "", {});
        return Finish(inv, orvcal::RunTour(inv));
    }
    const std::string_view verb = args[0];
    if (verb == "--help" || verb == "-h" || verb == "help") {
        if (args.size() == 2) {
            if (const orvcal::Command* c = orvcal::FindCommand(args[1])) {
                orvcal::Invocation inv(c->name, c->summary, {"--help"});
                return Finish(inv, c->run(inv));
            }
        }
        orvcal::Invocation inv("", "", {});
        inv.Out() = CommandList();
        return Finish(inv, orvcal::kOk);
    }
    const orvcal::Command* command = orvcal::FindCommand(verb);
    if (command == nullptr) {
        std::string names;
        for (const orvcal::Command& c : orvcal::AllCommands()) names += (names.empty() ? "" : ", ") + std::string(c.name);
        orvcal::Invocation inv("", "", {});
        return Finish(inv, inv.RefuseUsage("unknown verb " + orvcal::Quoted(verb) + " (expected one of: " + names +
                                           "; see orvcal --help)"));
    }
    orvcal::Invocation inv(command->name, command->summary, {args.begin() + 1, args.end()});
    return Finish(inv, command->run(inv));
}
