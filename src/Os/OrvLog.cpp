// The library's log: one process-wide sink, formatting only when the sink wants the line.
// The sink runs under a lock made of one atomic flag (no runtime support, no library
// call); a thread that is delivering a line is marked, so that lines it logs from inside
// the sink are dropped instead of waiting for the lock it holds.
#include "Orv/Os/OrvLog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <thread>

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
    std::atomic_flag busy; // set while the sink or userData is read or written
    OrvLogSinkCallback sink;
    OrvVoidPtr userData;
};

constinit SinkState gState{{}, DefaultSink, nullptr};

// True on the thread that holds gState.busy while it delivers a line.
constinit thread_local bool tDelivering = false;

// Takes the flag; a thread that finds it taken gives up its time slice until it is free.
class StateLock {
public:
    StateLock()
    {
        while (gState.busy.test_and_set(std::memory_order_acquire)) {
            while (gState.busy.test(std::memory_order_relaxed)) std::this_thread::yield();
        }
    }
    ~StateLock() { gState.busy.clear(std::memory_order_release); }
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;
};

void Store(OrvLogSinkCallback sink, OrvVoidPtr userData)
{
    gState.sink = sink != nullptr ? sink : DefaultSink;
    gState.userData = sink != nullptr ? userData : nullptr;
}

} // namespace

void OrvLogSetSink(OrvLogSinkCallback sink, OrvVoidPtr userData)
{
    if (tDelivering) { // called by the running sink, which holds the flag already
        Store(sink, userData);
        return;
    }
    StateLock lock;
    Store(sink, userData);
}

void OrvLogDoFormatted_(OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                        const char* function, const char* format, ...)
{
    if (tDelivering) return; // a line logged from inside the sink: dropped
    StateLock lock;
    // The default sink drops everything but errors: skip the formatting as well.
    if (gState.sink == DefaultSink && level != ORV_LOGLEVEL_ERROR) return;
    char message[1024];
    va_list args;
    va_start(args, format);
    const int n = format != nullptr ? std::vsnprintf(message, sizeof message, format, args) : -1;
    va_end(args);
    if (n < 0) message[0] = '\0';
    tDelivering = true;
    gState.sink(gState.userData, level, category, file, line, function, message);
    tDelivering = false;
}
