// What the text readers and writers of the date-time value share: a cursor that never
// reads past a zero byte, refusals with their position, the range check of the fields
// a text names, settling them in a zone, and the digit, fraction and offset writers.
#ifndef ORV_SRC_CALENDAR_ORVDATETIMETEXTINTERNAL_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMETEXTINTERNAL_HPP

#include "Calendar/OrvDateTimeInternal.hpp"

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

// A local reading as a text names it, with where each field starts.
struct TextFields {
    OrvInt year = 1970, month = 1, day = 1, hour = 0, min = 0, sec = 0, nanos = 0;
    OrvSizeT monthPos = 0, dayPos = 0, hourPos = 0, minPos = 0, secPos = 0, nanosPos = 0;
};

// Every field but the year within its range as written (month 1..12, the day within
// its month, hour 0..23, minute and second 0..59, nanoseconds below 10^9).
OrvTextStatus CheckFields(const TextFields& f);

// Where a reading is settled: the zone (a live handle) and the floating flag.
struct Target {
    const OrvTimezone* zone;
    bool floating;
};

// Fills scratch with the reading f in t.zone (an uncounted alias of the handle: scratch
// must never be destructed) and normalizes it. The fields must have passed CheckFields.
// ORV_TEXTERROR_None, ORV_TEXTERROR_NoOffset, or ORV_TEXTERROR_Skipped when the zone
// moved the reading (a time it skips).
OrvTextError Settle(OrvDateTime* scratch, const TextFields& f, Target t);

// Fills scratch with the instant t read in target, as Settle does. False when the
// zone has no offset at t or the reading leaves the 64-bit range.
OrvTextError SettleInstant(OrvDateTime* scratch, OrvTime t, Target target);

// A settled scratch value into a new value (one more reference to its zone; Monday
// and 4 for the week settings), or into a constructed one (its zone reference moved,
// its week settings kept).
void CommitNew(OrvDateTime* d, const OrvDateTime& scratch);
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
bool ResolveZone(const TextZone& z, Target local, Target* out, OrvTextStatus* refusal);

// Reads Z, z, or an offset +hh, +hhmm, +hh:mm, +hhmmss, +hh:mm:ss (or with '-') at the
// cursor. False with the refusal when there is none or it is out of range.
bool ReadZone(Cursor* c, TextZone* z, OrvTextStatus* refusal);

// ---- writers -----------------------------------------------------------------------

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

// '.' and the first `digits` digits of the nanoseconds; digits -1: the fewest that
// are exact, nothing for 0; digits 0: nothing.
char* PutFraction(char* p, OrvInt nanos, int digits);

// +hh:mm, or +hh:mm:ss when the offset has seconds (without colons when colon is
// false); a fraction of a second is dropped.
char* PutOffset(char* p, OrvTime offset, bool colon);

} // namespace orv::text

#endif // ORV_SRC_CALENDAR_ORVDATETIMETEXTINTERNAL_HPP
