// Writing to stdout and stderr. Every write is checked: the verbs' output goes through
// WriteFully, whose result decides the exit status.
#ifndef ORVCAL_OUTPUT_H
#define ORVCAL_OUTPUT_H

#include <string_view>

namespace orvcal {

enum class WriteResult {
    kDone,
    kClosed, // the reading end of a pipe was closed (EPIPE): the reader wants no more
    kFailed, // any other error (a full disk, a closed descriptor); errno tells which
};

// Writes all of data to the descriptor fd, going on after short writes and interrupts.
// Needs SIGPIPE ignored, so that a closed pipe gives EPIPE rather than ending the process.
WriteResult WriteFully(int fd, std::string_view data);

// Writes line and a newline to stderr. A failure there is not reported: there is no
// other place to report it, and the status already says that something went wrong.
void WriteErrorLine(std::string_view line);

} // namespace orvcal

#endif
