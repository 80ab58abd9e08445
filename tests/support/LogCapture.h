// Captures the library's log lines for the lifetime of the object.
#ifndef ORV_TESTS_SUPPORT_LOGCAPTURE_H
#define ORV_TESTS_SUPPORT_LOGCAPTURE_H

#include "Orv/Os/OrvLog.h"

#include <string>
#include <vector>

namespace orv::test {

struct LogLine {
    OrvLogLevel level;
    std::string category;
    std::string file;
    int line;
    std::string function;
    std::string message;
};

class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<LogLine>& lines() const { return lines_; }
    void clear() { lines_.clear(); }

private:
    static void Sink(OrvVoidPtr user, OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                     const char* function, const char* message);
    std::vector<LogLine> lines_;
};

} // namespace orv::test

#endif
