/*
 * OrvLog.h - the library's log.
 *
 * Library code reports through OrvLogDoFormatted_ with a level, a category, the source
 * position and a printf-style message. Every line goes to one sink: by default a sink
 * that writes error lines to stderr and drops the rest; OrvLogSetSink installs the
 * caller's sink, which receives every line, informational ones included, with the
 * message already formatted (truncated to 1023 bytes).
 *
 *     static void MySink(OrvVoidPtr user, OrvLogLevel level, OrvLogCategory cat,
 *                        const char* file, OrvInt line, const char* fn, const char* msg);
 *     OrvLogSetSink(MySink, &myState);    // ...
 *     OrvLogSetSink(NULL, NULL);          // back to the default sink
 *
 * Threads: the sink may be called from any thread that uses the library, one line at
 * a time (a thread that logs while another thread's line is in the sink waits for it).
 * Setting the sink is safe while other threads log, and a sink that was replaced is not
 * called after OrvLogSetSink returns.
 *
 * What a sink may do: call any function of the library. A line that the library logs on
 * the sink's own thread while the sink runs (for example the info line of building a
 * value in the year 3000) is dropped: it reaches no sink, so a sink is never re-entered.
 * A sink may call OrvLogSetSink; the new sink receives the lines after the current one.
 * A sink must not wait for another thread that logs (that thread waits for the sink).
 * The lock behind this needs no runtime support: it is a flag that waiting threads poll,
 * yielding the processor between polls, so keep sinks short.
 */
#ifndef ORV_OS_ORVLOG_H
#define ORV_OS_ORVLOG_H

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

ORV_EXTERN_C_BEGIN

typedef enum OrvLogLevel ORV_ENUM_BASE(OrvUint32) {
    ORV_LOGLEVEL_NONE = 0,
    ORV_LOGLEVEL_ERROR = 1,
    ORV_LOGLEVEL_WARNING = 2,
    ORV_LOGLEVEL_INFO = 3,
    ORV_LOGLEVEL_DEBUG = 4
} OrvLogLevel;
ORV_ENUM_SIZE_CHECK(OrvLogLevel);

/** A log category is its name, a static string. */
typedef const char* OrvLogCategory;

/** The category of the date-time module's lines ("Calendar"). */
ORV_API extern OrvLogCategory OrvLogCalendar_;

typedef void (*OrvLogSinkCallback)(OrvVoidPtr userData, OrvLogLevel level, OrvLogCategory category,
                                   const char* file, OrvInt line, const char* function,
                                   const char* message);

/** Installs sink with its userData; a null sink restores the default sink. */
ORV_API void OrvLogSetSink(OrvLogSinkCallback sink, OrvVoidPtr userData);

/** Formats the message and hands it to the sink. For the library's own use. */
ORV_API void OrvLogDoFormatted_(OrvLogLevel level, OrvLogCategory category, const char* file, OrvInt line,
                                const char* function, const char* format, ...) ORV_PRINTF_FORMAT(6, 7);

ORV_EXTERN_C_END

#endif /* ORV_OS_ORVLOG_H */
