/*
 * OrvTzdbTimezone.h - named zones from the system's compiled time-zone database
 * ("Europe/Berlin", "America/New_York", ...).
 *
 * A zone is read once, at construction, from the binary zone file (TZif, versions 1
 * to 4) under the database folder: the TZDIR environment variable when it is set and
 * not empty, else /usr/share/zoneinfo. The file's transitions and the rule in its
 * footer (the POSIX TZ string that continues the zone after its last transition) are
 * turned into one table covering every instant an OrvTime can hold, so the offset
 * queries never touch the file system and never allocate. The zone object and its
 * table come from the caller's allocator; the zone is shared by the usual counted
 * handle (OrvTimezone.h) and can be used from several threads at once. A program that
 * wants each zone once for its whole run takes OrvTzdbTimezoneGetShared instead.
 *
 * Local readings outside the instant range (years after 2262 or before 1677, which
 * values keep as fields) follow the zone's own rules: after the file's last
 * transition the footer rule, evaluated in the reading's own year (3000-01-01T00:00
 * in America/New_York is -05:00, 3000-07-01 -04:00); before its first transition the
 * file's first local time type (local mean time, for most zones). A zone built from a
 * rule alone follows the rule in every year.
 *
 * Besides offsets, each instant has a local time type's daylight-saving flag and
 * abbreviation ("CEST", "EST", "IST", "-03"), and the zone lists its transitions:
 *
 *     OrvTzdbTransition tr;
 *     OrvTime t = INT64_MIN;
 *     while (OrvTzdbTimezoneNextTransition(&berlin, t, &tr)) {   // oldest first
 *         printf("%lld %s -> %s\n", (long long)tr.instant, tr.abbreviationBefore, tr.abbreviationAfter);
 *         t = tr.instant;
 *     }
 *
 * Gaps and overlaps (what getOffsetFromFields answers for a local reading):
 *  - a reading that occurs once gets the offset in force at that moment;
 *  - a reading that a clock change skips (02:30 on a spring-forward night) gets the
 *    offset in force BEFORE the change, so that building a value from it moves the
 *    reading forward by the length of the gap: 02:30 becomes 03:30;
 *  - a reading that occurs twice (02:30 on a fall-back night) gets the offset of its
 *    FIRST occurrence, which is again the offset in force before the change.
 * Callers who need to choose differently ask OrvTzdbTimezoneLookup.
 *
 * Not supported: files with leap-second records (the "right/" variants), since
 * OrvTime has no leap seconds; such a file is refused rather than read with instants
 * off by the accumulated leap seconds.
 *
 *     OrvTimezone berlin;
 *     if (!OrvTzdbTimezoneConstruct(&berlin, "Europe/Berlin", OrvAllocatorGetDefault())) { ... }
 *     OrvDateTime d;
 *     OrvDateTimeConstructFields(&d, 2024, 3, 31, 2, 30, 0, 0, &berlin);  // reads 03:30 +02:00
 *     OrvDateTimeDestruct(&d);
 *     OrvTimezoneDestruct(&berlin);
 */
#ifndef ORV_CALENDAR_ORVTZDBTIMEZONE_H
#define ORV_CALENDAR_ORVTZDBTIMEZONE_H

#include "Orv/Calendar/OrvTimezone.h"
#include "Orv/Utils/OrvAllocator.h"

ORV_EXTERN_C_BEGIN

/** The longest zone id accepted, in bytes. */
#define ORV_TZDB_ID_MAX 255

/** The zone named zoneId, read from the database folder. Returns tz; null, with
 *  nothing held, when an argument is null, when the id is not a plain relative name
 *  inside the folder (empty, over ORV_TZDB_ID_MAX bytes, starting with '/', with an
 *  empty, "." or ".." component, or with a control character), when the file is
 *  missing, outside the folder once links are followed, not a regular file, not a
 *  valid TZif file or has a footer that does not parse, or when an allocation fails. */
ORV_API OrvTimezone* OrvTzdbTimezoneConstruct(OrvTimezone* tz, const char* zoneId, OrvAllocator* a);

/** The system's local zone: the TZ variable when it names a zone of the database
 *  (a leading ':' is ignored) or is a POSIX TZ rule such as "CET-1CEST,M3.5.0,M10.5.0/3";
 *  else the zone in /etc/localtime; else UTC. Null only when an argument is null, an
 *  allocation fails or /etc/localtime exists but is not a valid zone file. */
ORV_API OrvTimezone* OrvTzdbTimezoneConstructLocal(OrvTimezone* tz, OrvAllocator* a);

/** The zone described by a POSIX TZ rule alone ("EST5EDT,M3.2.0,M11.1.0", "<+0330>-3:30"),
 *  without any file. Returns tz; null when the rule does not parse or an allocation fails. */
ORV_API OrvTimezone* OrvTzdbTimezoneConstructPosix(OrvTimezone* tz, const char* rule, OrvAllocator* a);

/** True when tz is a zone built by this header's constructors. */
ORV_API OrvBool OrvTzdbTimezoneIs(const OrvTimezone* tz);

/** The id the zone was built from ("Europe/Berlin"; for the local zone the database
 *  name when /etc/localtime links into the database, else "localtime"; for a rule,
 *  the rule text, cut to ORV_TZDB_ID_MAX bytes). Null when tz is not such a zone.
 *  Valid while the zone lives. */
ORV_API const char* OrvTzdbTimezoneGetId(const OrvTimezone* tz);

/** The zone named zoneId, loaded once for the whole process and kept until it ends.
 *  Every call with the same id, from any thread, returns the same handle; the first
 *  call reads the database, so later changes to the files, to TZDIR or to the source
 *  choice (OrvTzdbSetSource) do not reach it. The handle is uncounted (no count block, like the global UTC zone): values
 *  copy and drop it without any atomic operation. Never destruct it or assign into
 *  it. Its memory comes from the default allocator (OrvAllocatorGetDefault) and is
 *  never freed. Safe to call from many threads at once; the lookup takes no lock.
 *  Null, with nothing kept, for an id OrvTzdbTimezoneConstruct refuses (a null id
 *  included) or when an allocation fails; a later call tries again.
 *      const OrvTimezone* ny = OrvTzdbTimezoneGetShared("America/New_York");
 *      OrvDateTimeConstruct(&d, t, ny);   // no count changes; nothing to release */
ORV_API const OrvTimezone* OrvTzdbTimezoneGetShared(const char* zoneId);

/** The local zone, found as OrvTzdbTimezoneConstructLocal finds it at the first
 *  successful call, then shared like OrvTzdbTimezoneGetShared's zones (uncounted,
 *  default allocator, never freed, the same handle for every thread). Null only when
 *  OrvTzdbTimezoneConstructLocal fails; a later call tries again. */
ORV_API const OrvTimezone* OrvTzdbTimezoneGetSharedLocal(void);

/** A change of a zone's local time type at one instant: of the offset, of the
 *  daylight-saving flag, of the abbreviation, or of several. A change of none of them
 *  is not a transition. */
typedef struct OrvTzdbTransition {
    OrvTime instant;                /* the first instant of the new type */
    OrvTime offsetBefore;           /* local minus UTC before the instant, ns */
    OrvTime offsetAfter;            /* local minus UTC from the instant on, ns */
    OrvBool isDstBefore;            /* daylight-saving flags before and after */
    OrvBool isDstAfter;
    const char* abbreviationBefore; /* "CET", "CEST", "-03"; valid while the zone lives */
    const char* abbreviationAfter;
} OrvTzdbTransition;

/** The first transition strictly after t, into *out. False, with *out unchanged, when
 *  there is none before the end of the OrvTime range, when tz is not a zone of this
 *  header or out is null. Any t is accepted (INT64_MIN: the zone's first transition).
 *      OrvTzdbTimezoneNextTransition(&berlin, t2024_01_01, &tr);
 *      // tr.instant 2024-03-31T01:00Z, +01:00 "CET" -> +02:00 "CEST", isDstAfter true */
ORV_API OrvBool OrvTzdbTimezoneNextTransition(const OrvTimezone* tz, OrvTime t, OrvTzdbTransition* out);

/** The last transition strictly before t, into *out; as OrvTzdbTimezoneNextTransition
 *  otherwise. ORV_TIME_INVALID (the largest OrvTime) gives the zone's last transition
 *  in the range. */
ORV_API OrvBool OrvTzdbTimezonePrevTransition(const OrvTimezone* tz, OrvTime t, OrvTzdbTransition* out);

/** The abbreviation in force at the instant t, as the database gives it ("CEST", "EST",
 *  "IST", "-03"; a rule's quoted names without their angle brackets). Valid while the
 *  zone lives. Null when tz is not a zone of this header or t is ORV_TIME_INVALID.
 *      OrvTzdbTimezoneGetAbbreviation(&berlin, t2024_07_01);   // "CEST" */
ORV_API const char* OrvTzdbTimezoneGetAbbreviation(const OrvTimezone* tz, OrvTime t);

/** True when daylight-saving time is in force at the instant t, as the database flags
 *  it (Europe/Dublin flags its winter time, GMT, and not its summer time, IST). False
 *  when tz is not a zone of this header or t is ORV_TIME_INVALID. */
ORV_API OrvBool OrvTzdbTimezoneIsDst(const OrvTimezone* tz, OrvTime t);

/** The version of the database in use ("2025b"), or "" when it does not say. Valid
 *  until the calling thread's next call. */
ORV_API const char* OrvTzdbGetVersion(void);

/** What a local reading is in a zone. */
typedef enum OrvTzdbLookupKind ORV_ENUM_BASE(OrvUint32) {
    ORV_TZDBLOOKUPKIND_Unique = 0,   /* occurs exactly once */
    ORV_TZDBLOOKUPKIND_Skipped = 1,  /* skipped by a clock change (in a gap) */
    ORV_TZDBLOOKUPKIND_Repeated = 2  /* occurs twice (in an overlap) */
} OrvTzdbLookupKind;
ORV_ENUM_SIZE_CHECK(OrvTzdbLookupKind);

typedef struct OrvTzdbLookup {
    OrvTzdbLookupKind kind;
    /** Unique: the offset of the reading, in both members. Skipped or repeated: the
     *  offsets in force before and after the clock change. The reading's instant
     *  under either offset is (local reading - offset): for a repeated reading these
     *  are its two occurrences; for a skipped one, the instants the reading would
     *  have had under the old and the new offset. */
    OrvTime offsetBefore;
    OrvTime offsetAfter;
    /** Skipped or repeated: the instant of the clock change (the new offset applies
     *  from it on), or ORV_TIME_INVALID when it lies outside the instant range.
     *  Unique: ORV_TIME_INVALID. */
    OrvTime transition;
} OrvTzdbLookup;

/** Classifies the local reading year-month-day hour:minute:second in tz. The month
 *  must be 1..12; the other fields are counted on linearly (day 32 is the first of
 *  the next month, hour 24 midnight of the next day). False, with *out unchanged,
 *  when tz is not a zone of this header, out is null or the month is out of range.
 *
 *      OrvTzdbLookup r;
 *      OrvTzdbTimezoneLookup(&berlin, 2024, 10, 27, 2, 30, 0, &r);
 *      // r.kind == ORV_TZDBLOOKUPKIND_Repeated, r.offsetBefore 2 h, r.offsetAfter 1 h:
 *      // the later occurrence is the reading minus r.offsetAfter. */
ORV_API OrvBool OrvTzdbTimezoneLookup(const OrvTimezone* tz, OrvInt year, OrvInt month, OrvInt day, OrvInt hour,
                                      OrvInt minute, OrvInt second, OrvTzdbLookup* out);

/** Called once per zone id; return ORV_FALSE to stop the walk. */
typedef OrvBool (*OrvTzdbIdCallback)(const char* zoneId, OrvVoidPtr userData);

/** Calls fn for every zone id of the database folder, in no particular order: every
 *  file under it that starts like a TZif file, except the "posix/" and "right/"
 *  copies and the "localtime" and "posixrules" aliases. Returns ORV_FALSE when the
 *  folder cannot be read (or fn is null); ORV_TRUE otherwise, also when fn stopped. */
ORV_API OrvBool OrvTzdbTimezoneForEachId(OrvTzdbIdCallback fn, OrvVoidPtr userData);

/* ---- Where zones come from ----------------------------------------------------------
 * Every lookup of this header (a zone by id, the local zone, the id walk, the version)
 * uses one source, chosen once at its start, never a mix of two:
 *  1. the choice made with OrvTzdbSetSource, when one was made; else (the default,
 *     ORV_TZDBSOURCE_Automatic)
 *  2. the folder named by TZDIR when it is set and not empty, even a missing one
 *     (lookups then fail: a misspelt TZDIR is not hidden);
 *  3. else /usr/share/zoneinfo when it exists;
 *  4. else the copy of the database built into the library (CMake option
 *     ORV_EMBED_TZDATA, on by default): the build machine's database as it was then.
 * The embedded copy holds every id the folder walk of the build machine listed, less
 * any file that is not a sound TZif file or has leap seconds (the folder refuses
 * those too); it lists its ids in strcmp order. With it, the local zone is the id TZ
 * names in the copy; without TZ, the id /etc/localtime links to ("...zoneinfo/<id>"),
 * even when the link leads nowhere; else the file /etc/localtime; else UTC.
 * Zones already built keep what they were built from (OrvTzdbTimezoneGetShared's
 * included). Threads: the choice is process-wide and may change while other threads
 * look zones up; each lookup sees it whole, before or after the change. (TZDIR and TZ
 * are read with getenv, so changing them is as unsafe as with any getenv.)
 *
 *     OrvTzdbSetSource(ORV_TZDBSOURCE_Embedded, NULL);  // the same answers on every machine
 *     OrvTzdbTimezoneConstruct(&tz, "Europe/Berlin", OrvAllocatorGetDefault());
 */

/** The longest folder path OrvTzdbSetSource accepts, in bytes. */
#define ORV_TZDB_FOLDER_MAX 1023

typedef enum OrvTzdbSource ORV_ENUM_BASE(OrvUint32) {
    ORV_TZDBSOURCE_Automatic = 0, /* TZDIR, else /usr/share/zoneinfo, else embedded */
    ORV_TZDBSOURCE_Folder = 1,    /* a folder of compiled zone files */
    ORV_TZDBSOURCE_Embedded = 2   /* the copy built into the library */
} OrvTzdbSource;
ORV_ENUM_SIZE_CHECK(OrvTzdbSource);

/** Makes source the choice for every later lookup; folder names the folder for
 *  ORV_TZDBSOURCE_Folder (kept as given: a relative path follows the current
 *  directory) and is ignored otherwise. ORV_FALSE, with the choice unchanged, when
 *  source is none of the three, when a folder is null, empty, over
 *  ORV_TZDB_FOLDER_MAX bytes or not a directory, or when the library carries no
 *  embedded copy (built with ORV_EMBED_TZDATA off) and ORV_TZDBSOURCE_Embedded is asked. */
ORV_API OrvBool OrvTzdbSetSource(OrvTzdbSource source, const char* folder);

/** The choice of the last successful OrvTzdbSetSource; ORV_TZDBSOURCE_Automatic when
 *  none was made. */
ORV_API OrvTzdbSource OrvTzdbGetSource(void);

/** The source a lookup started now would use: ORV_TZDBSOURCE_Folder or
 *  ORV_TZDBSOURCE_Embedded, never Automatic. When name is not null and size is not 0,
 *  also writes its name there, NUL-terminated and cut to size - 1 bytes: the folder
 *  path, or "embedded" (ORV_TZDB_FOLDER_MAX + 1 bytes hold every usable name).
 *
 *      char name[ORV_TZDB_FOLDER_MAX + 1];
 *      OrvTzdbGetSourceInUse(name, sizeof name);  // "/usr/share/zoneinfo" */
ORV_API OrvTzdbSource OrvTzdbGetSourceInUse(char* name, OrvSizeT size);

ORV_EXTERN_C_END

#endif /* ORV_CALENDAR_ORVTZDBTIMEZONE_H */
