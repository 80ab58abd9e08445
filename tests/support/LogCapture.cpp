#include "support/LogCapture.h"

namespace orv::test {

LogCapture::LogCapture() { OrvLogSetSink(Sink, this); }

LogCapture::~LogCapture() { OrvLogSetSink(nullptr, nullptr); }

void LogCapture::Sink(OrvVoidPtr user, OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                      const char* function, const char* message)
{
    static_cast<LogCapture*>(user)->lines_.push_back(
        {level, category != nullptr ? category : "", file != nullptr ? file : "", line, function != nullptr ? function : "",
         message != nullptr ? message : ""});
}

} // namespace orv::test
