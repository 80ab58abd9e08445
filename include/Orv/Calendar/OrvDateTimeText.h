/*
 * OrvDateTimeText.h - text of date-time values beyond the compact form: why a text was
 * refused, ISO 8601 / RFC 3339, strftime-style patterns, and the week-based year.
 *
 * Included by OrvDateTime.h; include either.
 *
 * Common rules of the readers in this header
 *  - A reader takes a pointer and a length. It reads neither past the length nor past
 *    the first zero byte: a zero byte inside the length is an unexpected character (so
 *    a zero-terminated text passed with too large a length is refused at its end, and
 *    never read beyond it).
 *  - Every field must be in range as written: nothing is carried (30 February, hour
 *    24, minute or second 60 are refused with the field's position).
 *  - Text with a numeric offset denotes an instant read in a fixed zone of exactly that
 *    offset, so the value writes back the same offset. The zone is shared for the life
 *    of the process, uncounted, and never allocated: OrvFixedTimezoneGetShared's for
 *    whole minutes; for offsets with seconds (local mean time of old dates, +00:53:28)
 *    a slot of a process-wide pool of 1024 such zones, taken on first use (when every
 *    slot holds another offset, the text is refused with ORV_TEXTERROR_Allocation).
 *    Text with Z denotes an instant read in the global UTC zone. Text without an
 *    offset is a local reading in the zone the caller gives (floating when none): a
 *    reading that zone skips is refused (ORV_TEXTERROR_Skipped); a repeated reading
 *    takes the zone's answer (for the zones of the database, the first occurrence).
 *  - A refused Construct holds nothing; a refused Set leaves the value exactly as it was.
 *  - status may be null. On success it holds ORV_TEXTERROR_None and position 0.
 *
 * Common rules of the writers: they normalize the value first, replace the string's
 * content, and on failure leave the string as it was.
 */
#ifndef ORV_CALENDAR_ORVDATETIMETEXT_H
#define ORV_CALENDAR_ORVDATETIMETEXT_H

#include "Orv/Calendar/OrvDateTime.h"

ORV_EXTERN_C_BEGIN

/** Why a text was refused. The enumeration is 32 bits wide in C and C++. */
typedef enum OrvTextError ORV_ENUM_BASE(OrvInt) {
    /** Accepted. */
    ORV_TEXTERROR_None = 0,
    /** The text ends before its form is complete (position: the text's length), or, for
     *  the compact form, is not 15 or 16 characters long (position: the smaller of its
     *  length and 16). */
    ORV_TEXTERROR_Length = 1,
    /** A character that does not fit the form at its place, a zero byte included, or a
     *  character after a complete text (position: the first such character). */
    ORV_TEXTERROR_Character = 2,
    /** A date or time field outside its range as written: month 13, 30 February, hour
     *  24, second 60, a fraction of more than nine digits, a negative or too large year,
     *  a day of year beyond the year (position: the field's first character). */
    ORV_TEXTERROR_FieldRange = 3,
    /** A numeric offset beyond 23:59:59, or with minutes or seconds above 59
     *  (position: its sign). */
    ORV_TEXTERROR_OffsetRange = 4,
    /** A local reading that the zone skips, such as 02:30 on a spring-forward night
     *  (position: the hour field, or 0 when the text has none). */
    ORV_TEXTERROR_Skipped = 5,
    /** The zone gives no offset for the reading or its instant (position: 0). */
    ORV_TEXTERROR_NoOffset = 6,
    /** The readers' one resource ran out: no shared fixed zone is left for one more
     *  offset with seconds (position: the offset's sign). Nothing else is allocated. */
    ORV_TEXTERROR_Allocation = 7,
    /** An unknown conversion in a pattern, or a '%' that ends it (position: the '%' in
     *  the PATTERN, not in the text). */
    ORV_TEXTERROR_Conversion = 8,
    /** A field that contradicts the value the other fields give, such as a weekday that
     *  is not the date's, or the same conversion twice with different values
     *  (position: that field). */
    ORV_TEXTERROR_Conflict = 9
} OrvTextError;
ORV_ENUM_SIZE_CHECK(OrvTextError);

/** What a reader found: the kind, and the offset in the text (bytes from its start)
 *  where the problem lies, as each kind above says. */
typedef struct OrvTextStatus {
    OrvTextError error;
    OrvSizeT position;
} OrvTextStatus;

/* ---------------------------------------------------------------------------------
 * The compact form, explained
 * ------------------------------------------------------------------------------ */

/** True when OrvDateTimeConstructCStr(&d, text, tz) would accept text (same code);
 *  otherwise false with the reason in *status (status may be null). A null text is
 *  refused as ORV_TEXTERROR_Length at 0. The zone is only asked, never held.
 *      OrvTextStatus st;
 *      OrvDateTimeExplainCStr("20240230T000000Z", NULL, &st);  // false: FieldRange at 6 */
ORV_API OrvBool OrvDateTimeExplainCStr(const char* text, const OrvTimezone* tz, OrvTextStatus* status);

/* ---------------------------------------------------------------------------------
 * ISO 8601 and RFC 3339
 * ------------------------------------------------------------------------------ */

/** Writes d in the ISO 8601 extended form, replacing str's content:
 *  "2024-05-01T09:30:00.123456789+02:00". The zone part is "Z" for a value in the
 *  global UTC zone that is not floating, nothing for a floating value, otherwise the
 *  offset as +hh:mm, or +hh:mm:ss when it has seconds (local mean time of old dates;
 *  a fraction of a second in an offset, which only a custom zone can give, is dropped).
 *  fractionDigits 0..9 writes that many digits of the second (cut, not rounded) after
 *  a '.'; -1 writes the fewest digits that are exact, and none when the nanoseconds are
 *  0. Years 0..9999 take four digits; other years take a sign and at least four digits
 *  ("+10000-01-01", "-0001-12-31", "-12345-..."). The value is normalized first.
 *  False, with str unchanged, for another fractionDigits, when normalization fails or
 *  when str cannot grow.
 *      OrvDateTimeGetISO8601(&d, &s, -1);  // "2024-05-01T09:30:00.5+02:00"
 *      OrvDateTimeGetISO8601(&d, &s, 3);   // "2024-05-01T09:30:00.500+02:00" */
ORV_API OrvBool OrvDateTimeGetISO8601(const OrvDateTime* d, OrvString* str, OrvInt fractionDigits);

/** Builds d from the len characters of ISO 8601 / RFC 3339 text. Accepted forms:
 *   - extended: 2024-05-01T09:30:00, 2024-05-01T09:30 (RFC 3339 with the offset);
 *   - basic: 20240501T093000, 20240501T0930;
 *   - 't' or, in the extended form only, one space in place of 'T';
 *   - seconds may take a fraction of 1 to 9 digits after '.' or ',';
 *   - then Z or z, an offset +hh:mm, +hhmm, +hh, +hh:mm:ss or +hhmmss (or with '-';
 *     -00:00 reads as +00:00), or nothing;
 *   - a year 0000..9999 in four digits, or (as the writer writes other years) a sign
 *     and 4 to 10 digits within 32 bits: +10000-01-01T00:00Z, -00010101T0000.
 *  Extended and basic parts are not mixed within the date and time. A text with Z is
 *  an instant in the global UTC zone, one with an offset an instant in the shared fixed
 *  zone of that offset, one without a local reading in tz (floating when tz is null).
 *  Returns d; null, with nothing held and the reason in *status, when refused.
 *      OrvDateTimeConstructISO8601(&d, "2024-05-01T09:30:00+02:00", 25, NULL, NULL);
 *      // 07:30Z, offset +2 h, zone OrvFixedTimezoneGetShared(2 h) */
ORV_API OrvDateTime* OrvDateTimeConstructISO8601(OrvDateTime* d, const char* text, OrvSizeT len,
                                                 const OrvTimezone* tz, OrvTextStatus* status);

/** Replaces the value of the constructed d with ISO 8601 text, as
 *  OrvDateTimeConstructISO8601 reads it, text without an offset being read in d's own
 *  zone (floating stays floating). The week settings are kept. False when refused, with
 *  the reason in *status and d exactly as before.
 *      OrvDateTimeSetISO8601(&d, "2024-05-01T09:30Z", 17, &st);   // UTC
 *      OrvDateTimeSetISO8601(&d, "2024-02-30T09:30", 16, &st);    // false, FieldRange at 8 */
ORV_API OrvBool OrvDateTimeSetISO8601(OrvDateTime* d, const char* text, OrvSizeT len, OrvTextStatus* status);

/* ---------------------------------------------------------------------------------
 * Patterns
 * ------------------------------------------------------------------------------ */

/* Conversions, as strftime's in the C locale (English names, AM/PM), for format and
 * parse alike:
 *   %Y year, at least 4 digits, '-' before negative years     %C  year / 100 (floor), 2+ digits
 *   %y year % 100, 2 digits    %m month 01-12    %d day 01-31    %e day, space-padded " 1"
 *   %H 00-23   %I 01-12   %p AM or PM   %M 00-59   %S 00-59   %j day of year 001-366
 *   %a Mon  %A Monday  %b %h May  %B May  %u 1-7 (Monday 1)  %w 0-6 (Sunday 0)
 *   %U week of year 00-53, weeks from Sunday; %W the same from Monday (days before the
 *      year's first such day are week 00)
 *   %V week of year 01-53 and %G its year (at least 4 digits), %g that year % 100: under
 *      the value's week settings, which are ISO 8601's unless changed
 *   %F %Y-%m-%d   %T %H:%M:%S   %D %m/%d/%y   %R %H:%M
 *   %z offset +hhmm (+hhmmss when it has seconds)   %Ez offset +hh:mm (+hh:mm:ss)
 *   %Z the zone's abbreviation where it knows one, "UTC" for the global UTC zone, else
 *      the offset as %z writes it
 *   %s seconds since 1970-01-01T00:00:00Z (floor)   %n newline   %t tab   %% '%'
 *   %E*S seconds with the fewest fraction digits that are exact (no '.' when 0)
 *   %E#S seconds with # fraction digits, # 0..9 (no '.' for 0)
 * A floating value writes nothing for %z, %Ez and %Z. Any other conversion (flags and
 * widths included) is refused. */

/** Writes d through pattern, replacing str's content. Locale-free.
 *  False, with str unchanged, for an unknown conversion, a null pattern, when
 *  normalization fails or when str cannot grow.
 *      OrvDateTimeFormat(&d, "%a %d %b %Y %H:%M %Z", &s);  // "Wed 01 May 2024 09:30 CEST"
 *      OrvDateTimeFormat(&d, "%FT%H:%M:%E3S%Ez", &s);      // "2024-05-01T09:30:00.000+02:00" */
ORV_API OrvBool OrvDateTimeFormat(const OrvDateTime* d, const char* pattern, OrvString* str);

/** Builds d from the len characters of text laid out as pattern says, strictly:
 *  characters other than conversions must match exactly (a space matches one space;
 *  %n a newline, %t a tab); numbers take exactly their width (2 digits, 3 for %j,
 *  1 for %u and %w; %e a space and a digit or 2 digits), except %Y and %G, which take
 *  an optional sign and 4 digits, or 4 to 10 when the pattern does not go on with a
 *  '%' (so "%Y%m%d" reads 4, "%Y-%m-%d" up to 10); %s takes an optional '-' and up to 19 digits; %E*S 2 digits with
 *  an optional fraction of 1 to 9 digits after '.', %E#S exactly # fraction digits;
 *  names match ignoring case, %a and %b abbreviated, %A and %B in full.
 *  %z, %Ez and %Z read Z, z or any offset form of the ISO 8601 reader; %Z also reads
 *  "UTC" (as Z) and skips any other run of letters (an abbreviation names no offset).
 *  The value: the year from %Y, else from %C and %y (%y alone: 69-99 are 19xx, 00-68
 *  20xx); the month and day from %m/%b and %d/%e, else from %j; the hour from %H, else
 *  from %I and %p; or every field from the instant %s gives. What the pattern does not
 *  give is 1970-01-01 00:00:00. Every other field read (weekday, week numbers, %G, %p,
 *  a repeated conversion, ...) is checked against the value (ORV_TEXTERROR_Conflict).
 *  An offset in the text wins over tz; without one the reading is local in tz
 *  (floating when null). Returns d; null, with nothing held and the reason in *status,
 *  when refused (ORV_TEXTERROR_Conversion reports a position in the pattern).
 *      OrvDateTimeConstructParse(&d, "%d/%m/%Y %H:%M", "01/05/2024 09:30", 16, NULL, &st);
 *      // floating 2024-05-01T09:30:00 */
ORV_API OrvDateTime* OrvDateTimeConstructParse(OrvDateTime* d, const char* pattern, const char* text, OrvSizeT len,
                                               const OrvTimezone* tz, OrvTextStatus* status);

/* ---------------------------------------------------------------------------------
 * Week-based year
 * ------------------------------------------------------------------------------ */

/** The year that d's week of year belongs to under d's week settings (the ISO 8601
 *  week-based year under the default Monday/4): the calendar year, less one for days
 *  of January in the last week of the year before, plus one for days of December in
 *  week 1 of the next. Normalizes d first. -1 when the zone has no offset; -1 is
 *  also a real year: OrvDateTimeGetCurrentUTCOffset(d) is ORV_TIME_INVALID exactly on
 *  failure. (At the 32-bit limit the year wraps, as carried fields do.)
 *      // 2021-01-01 (week 53 of 2020) gives 2020; 2024-12-30 (week 1 of 2025) gives 2025
 *      OrvInt wy = OrvDateTimeGetWeekYear(&d); */
ORV_API OrvInt OrvDateTimeGetWeekYear(const OrvDateTime* d);

ORV_EXTERN_C_END

#endif /* ORV_CALENDAR_ORVDATETIMETEXT_H */
