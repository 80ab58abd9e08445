// The library's log: one process-wide sink, formatting only when the sink wants the line.
#include "Orv/Os/OrvLog.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

OrvLogCategory OrvLogCalendar_ = "Calendar";

namespace {

void DefaultSink(OrvVoidPtr, OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                 const char* function, const char* message)
{
    if (level != ORV_LOGLEVEL_ERROR) return;
    std::fprintf(stderr, "[%s] error %s:%d %s: %s\n", category != nullptr ? category : "-",
                 file != nullptr ? file : "-", static_cast<int>(line), function != nullptr ? function : "-",
                 message);
}

struct SinkState {
    std::mutex mutex; // held while a line is delivered, so a replaced sink is never called afterwards
    OrvLogSinkCallback sink = DefaultSink;
    OrvVoidPtr userData = nullptr;
};

SinkState& State()
{
    static SinkState state;
    return state;
}

} // namespace

void OrvLogSetSink(OrvLogSinkCallback sink, OrvVoidPtr userData)
{
    SinkState& s = State();
    std::lock_guard<std::mutex> lock(s.mutex);
    s.sink = sink != nullptr ? sink : DefaultSink;
    s.userData = sink != nullptr ? userData : nullptr;
}

void OrvLogDoFormatted_(OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                        const char* function, const char* format, ...)
{
    SinkState& s = State();
    std::lock_guard<std::mutex> lock(s.mutex);
    // The default sink drops everything but errors: skip the formatting as well.
    if (s.sink == DefaultSink && level != ORV_LOGLEVEL_ERROR) return;
    char message[1024];
    va_list args;
    va_start(args, format);
    const int n = format != nullptr ? std::vsnprintf(message, sizeof message, format, args) : -1;
    va_end(args);
    if (n < 0) message[0] = '\0';
    s.sink(s.userData, level, category, file, line, function, message);
}
