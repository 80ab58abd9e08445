#include "Output.h"

#include <unistd.h>

#include <cerrno>
#include <string>

namespace orvcal {

WriteResult WriteFully(int fd, std::string_view data)
{
    while (!data.empty()) {
        const ssize_t n = ::write(fd, data.data(), data.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            return errno == EPIPE ? WriteResult::kClosed : WriteResult::kFailed;
        }
        if (n == 0) { // no progress and no error: give up rather than spin
            errno = EIO;
            return WriteResult::kFailed;
        }
        data.remove_prefix(static_cast<std::size_t>(n));
    }
    return WriteResult::kDone;
}

void WriteErrorLine(std::string_view line)
{
    std::string s(line);
    s += '\n';
    static_cast<void>(WriteFully(STDERR_FILENO, s));
}

} // namespace orvcal
