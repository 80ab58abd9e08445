// Runs a program as a child process and collects its exit status, stdout and stderr
// through pipes (no scratch files, so test processes running in parallel stay apart).
#ifndef ORV_TESTS_SUPPORT_TOOLRUN_H
#define ORV_TESTS_SUPPORT_TOOLRUN_H

#include <string>
#include <vector>

namespace orv::test {

struct ToolRun {
    int status = -1; // exit status; -1 when the program did not exit normally
    std::string out;
    std::string err;
    long maxRssKb = 0; // the child's peak resident memory
};

// Where the child's standard output goes.
enum class Stdout {
    kPipe,       // collected into ToolRun::out
    kDevFull,    // /dev/full: every write fails with ENOSPC
    kClosedPipe, // a pipe whose reading end is closed before the child starts: EPIPE
};

// Runs program with args, stdinText on its standard input, and env ("NAME=value") added
// to the environment. The child starts with SIGPIPE at its default action.
ToolRun RunTool(const std::string& program, const std::vector<std::string>& args, const std::string& stdinText = {},
                const std::vector<std::string>& env = {}, Stdout out = Stdout::kPipe);

// The arguments joined with spaces, for failure messages.
std::string Join(const std::vector<std::string>& args);

} // namespace orv::test

#endif
