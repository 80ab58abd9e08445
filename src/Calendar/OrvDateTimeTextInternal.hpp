// What the text readers and writers of the date-time value share: a cursor that never
// reads past a zero byte, refusals with their position, the range check of the fields
// a text names, settling them in a zone, and the digit, fraction and offset writers.
#ifndef ORV_SRC_CALENDAR_ORVDATETIMETEXTINTERNAL_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMETEXTINTERNAL_HPP

#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

#include <cstring>

namespace orv::text {

inline constexpr OrvTextStatus kAccepted = {ORV_TEXTERROR_None, 0};

inline OrvTextStatus Refuse(OrvTextError e, OrvSizeT position) { return {e, position}; }

inline void Report(OrvTextStatus* status, OrvTextStatus s)
{
    if (status != nullptr) *status = s;
}

inline constexpr bool IsDigit(int c) { return c >= '0' && c <= '9'; }

// Reading position in len characters. Peek gives -1 at the end; a zero byte is a
// character that nothing matches, so a reader that only steps over what it matched
// never reads past it, whatever len says.
struct Cursor {
    const char* text;
    OrvSizeT len;
    OrvSizeT pos;

    int Peek() const { return pos < len ? static_cast<unsigned char>(text[pos]) : -1; }
    int PeekAt(OrvSizeT k) const { return pos + k < len ? static_cast<unsigned char>(text[pos + k]) : -1; }
    bool Take(int c)
    {
        if (Peek() != c) return false;
        ++pos;
        return true;
    }
    // The refusal for what stands at pos: the end of the text, or a wrong character.
    OrvTextStatus Unexpected() const
    {
        return Refuse(pos < len ? ORV_TEXTERROR_Character : ORV_TEXTERROR_Length, pos);
    }
    // Digits from pos on, without stepping: stops at the first non-digit (a zero byte
    // included), so it never looks past one.
    OrvSizeT DigitRun() const
    {
        OrvSizeT n = 0;
        while (IsDigit(PeekAt(n))) ++n;
        return n;
    }
    // Exactly n digits (n <= 18) into *v.
    bool Digits(int n, OrvInt64* v, OrvTextStatus* refusal)
    {
        if (n == 2 && pos + 2 <= len) {
            // The common two-digit field in one step; the second byte is read only when
            // the first is a digit, so never past a zero.
            const unsigned d0 = static_cast<unsigned char>(text[pos]) - '0';
            const unsigned d1 = d0 < 10 ? static_cast<unsigned char>(text[pos + 1]) - '0' : 0;
            if (d0 < 10 && d1 < 10) {
                *v = d0 * 10 + d1;
                pos += 2;
                return true;
            }
        }
        OrvInt64 x = 0;
        for (int i = 0; i < n; ++i) {
            const int c = Peek();
            if (!IsDigit(c)) {
                *refusal = Unexpected();
                return false;
            }
            x = x * 10 + (c - '0');
            ++pos;
        }
        *v = x;
        return true;
    }
};

// A local reading as a text names it, with where each field starts (every reader sets
// all six positions; they are left uninitialized here so that building the record on
// the hot path costs no block clear).
struct TextFields {
    OrvInt year = 1970, month = 1, day = 1, hour = 0, min = 0, sec = 0, nanos = 0;
    OrvSizeT monthPos, dayPos, hourPos, minPos, secPos, nanosPos;
};

// Every field but the year within its range as written (month 1..12, the day within
// its month, hour 0..23, minute and second 0..59, nanoseconds below 10^9).
inline OrvTextStatus CheckFields(const TextFields& f)
{
    if (f.month < 1 || f.month > 12) return Refuse(ORV_TEXTERROR_FieldRange, f.monthPos);
    if ((f.day < 1 || f.day > 28) && !cal::DayInMonth(f.year, f.month, f.day))
        return Refuse(ORV_TEXTERROR_FieldRange, f.dayPos);
    if (f.hour < 0 || f.hour > 23) return Refuse(ORV_TEXTERROR_FieldRange, f.hourPos);
    if (f.min < 0 || f.min > 59) return Refuse(ORV_TEXTERROR_FieldRange, f.minPos);
    if (f.sec < 0 || f.sec > 59) return Refuse(ORV_TEXTERROR_FieldRange, f.secPos);
    if (f.nanos < 0 || f.nanos >= cal::kNanosecondsPerSecond) return Refuse(ORV_TEXTERROR_FieldRange, f.nanosPos);
    return kAccepted;
}

// Where a reading is settled: the zone (a live handle), the floating flag, and the
// zone's offset when it has one offset that is known without asking it (the global UTC
// zone, the fixed zone a text names), else ORV_TIME_INVALID.
struct Target {
    const OrvTimezone* zone;
    OrvTime offset;
    bool floating;
};

// The target of a local reading in tz, floating when tz is null.
inline Target LocalTarget(const OrvTimezone* tz)
{
    if (tz == nullptr) return {OrvFixedTimezoneGetUTC(), 0, true};
    return {tz, detail::IsGlobalUtc(tz) ? 0 : ORV_TIME_INVALID, false};
}

// The target of a local reading in d's own zone.
inline Target OwnTarget(const OrvDateTime* d)
{
    return {&d->tz, detail::IsGlobalUtc(&d->tz) ? 0 : ORV_TIME_INVALID, d->floating != ORV_FALSE};
}

// Fills scratch with the reading f in t.zone (an uncounted alias of the handle: scratch
// must never be destructed) and normalizes it. The fields must have passed CheckFields.
// ORV_TEXTERROR_None, ORV_TEXTERROR_NoOffset, or ORV_TEXTERROR_Skipped when the zone
// moved the reading (a time it skips).
OrvTextError SettleInZone(OrvDateTime* scratch, TextFields f, const Target& t);

inline void Alias(OrvDateTime* scratch, const Target& t)
{
    scratch->tz = *t.zone; // no reference: the scratch value is never destructed
    scratch->floating = t.floating ? ORV_TRUE : ORV_FALSE;
    scratch->firstDayOfWeek = ORV_WEEKDAY_Monday;
    scratch->minimalDaysInFirstWeek = 4;
}

// Whether the reading f settles in t without asking the zone: a zone of one known
// offset, and a year whose every reading has an instant.
inline bool SettlesAlone(const TextFields& f, const Target& t)
{
    return t.offset != ORV_TIME_INVALID && f.year >= 1678 && f.year <= 2261;
}

// Stores the reading f settled in t (SettlesAlone) into d: fields, instant, offset and
// the consistent state, as the normalization would find them. The zone handle, the
// floating flag and the week settings are the caller's.
inline void StoreSettled(OrvDateTime* d, const TextFields& f, const Target& t)
{
    const OrvInt64 secs = cal::LocalSecondsFromDays(cal::DaysFromCivil(f.year, f.month, f.day), f.hour, f.min, f.sec);
    detail::StoreReading(d, f.year, f.month, f.day, f.hour, f.min, f.sec, f.nanos);
    d->normalized = ORV_TRUE;
    d->offset = t.offset;
    d->wallTime = secs * cal::kNanosecondsPerSecond + f.nanos - t.offset;
}

// SettleInZone, with the common case (SettlesAlone) inline.
inline OrvTextError Settle(OrvDateTime* scratch, const TextFields& f, const Target& t)
{
    if (!SettlesAlone(f, t)) [[unlikely]]
        return SettleInZone(scratch, f, t);
    Alias(scratch, t);
    StoreSettled(scratch, f, t);
    return ORV_TEXTERROR_None;
}

// OrvTimezoneAssign(&d->tz, zone), with the case of one count (or two uncounted
// handles), where it only copies the handle, in place.
inline void AssignZone(OrvDateTime* d, const OrvTimezone* zone)
{
    if (d->tz.impl.ref == zone->impl.ref)
        d->tz.impl = zone->impl;
    else
        OrvTimezoneAssign(&d->tz, zone);
}

// Fills scratch with the instant t read in target, as Settle does. False when the
// zone has no offset at t or the reading leaves the 64-bit range.
OrvTextError SettleInstant(OrvDateTime* scratch, OrvTime t, const Target& target);

// A constructor settles the reading in the caller's storage itself and, once the text
// is accepted, takes the value's reference to its zone (Settle left an alias). A
// replacement settles in a scratch value and commits it into the constructed value:
// its zone reference moved, its week settings kept.
inline void HoldZone(OrvDateTime* d)
{
    if (d->tz.impl.ref != nullptr) OrvSharedPtrRefCountIncUseCount(d->tz.impl.ref);
}
void CommitExisting(OrvDateTime* d, const OrvDateTime& scratch);

// Settles and commits a checked reading whose zone comes from text: the global UTC
// zone, a shared fixed zone, or the caller's local target.
enum class ZoneKind : unsigned char { Local, Utc, Offset };

struct TextZone {
    ZoneKind kind = ZoneKind::Local;
    OrvTime offset = 0;
    OrvSizeT pos = 0; // of the Z or the offset's sign
};

// The target a text's zone part names; false (ORV_TEXTERROR_Allocation at z.pos) when
// no shared zone is left for an offset with seconds.
bool ResolveNamedZone(const TextZone& z, Target* out, OrvTextStatus* refusal);

inline bool ResolveZone(const TextZone& z, const Target& local, Target* out, OrvTextStatus* refusal)
{
    if (z.kind != ZoneKind::Local) return ResolveNamedZone(z, out, refusal);
    *out = local;
    return true;
}

// Reads Z, z, or an offset +hh, +hhmm, +hh:mm, +hhmmss, +hh:mm:ss (or with '-') at the
// cursor. False with the refusal when there is none or it is out of range.
bool ReadZone(Cursor* c, TextZone* z, OrvTextStatus* refusal);

// ---- writers -----------------------------------------------------------------------

// Replaces str's content with the n characters at text (a buffer of the writer's own),
// copied in 8-byte words: the string is made room for that much. False, with str
// unchanged, when it cannot grow.
inline bool AssignText(OrvString* str, const char* text, OrvSizeT n)
{
    if (OrvStringReserve(str, n + 7) == nullptr) return false;
    char* dst = str->buf;
    for (OrvSizeT i = 0; i < n; i += 8) std::memcpy(dst + i, text + i, 8);
    dst[n] = '\0';
    str->size = n;
    return true;
}

// Room every single piece below needs at most.
inline constexpr OrvSizeT kPieceMax = 32;

inline char* Put2(char* p, unsigned v)
{
    p[0] = static_cast<char>('0' + v / 10);
    p[1] = static_cast<char>('0' + v % 10);
    return p + 2;
}

// |v| in at least minDigits digits (at most 20), '-' first when v is negative.
char* PutInt(char* p, OrvInt64 v, int minDigits);

// The ISO 8601 year: 0..9999 in four digits, else a sign and at least four digits.
inline char* PutIsoYear(char* p, OrvInt year)
{
    if (year >= 0 && year <= 9999) {
        p = Put2(p, static_cast<unsigned>(year / 100));
        return Put2(p, static_cast<unsigned>(year % 100));
    }
    if (year > 0) *p++ = '+';
    return PutInt(p, year, 4);
}

// The date and time of day of d's fields: YYYY-MM-DDTHH:MM:SS (extended) or
// YYYYMMDDTHHMMSS, the year as PutIsoYear writes it, every other field 0..99 in two
// digits.
inline char* PutReading(char* p, const OrvDateTime* d, bool extended)
{
    p = PutIsoYear(p, d->year);
    if (extended) *p++ = '-';
    p = Put2(p, static_cast<unsigned>(d->month));
    if (extended) *p++ = '-';
    p = Put2(p, static_cast<unsigned>(d->monthDay));
    *p++ = 'T';
    p = Put2(p, static_cast<unsigned>(d->hour));
    if (extended) *p++ = ':';
    p = Put2(p, static_cast<unsigned>(d->min));
    if (extended) *p++ = ':';
    return Put2(p, static_cast<unsigned>(d->sec));
}

// '.' and the first `digits` digits of the nanoseconds; digits -1: the fewest that
// are exact, nothing for 0; digits 0: nothing.
char* PutFraction(char* p, OrvInt nanos, int digits);

// +hh:mm, or +hh:mm:ss when the offset has seconds (without colons when colon is
// false); a fraction of a second is dropped.
char* PutOffset(char* p, OrvTime offset, bool colon);

} // namespace orv::text

#endif // ORV_SRC_CALENDAR_ORVDATETIMETEXTINTERNAL_HPP
