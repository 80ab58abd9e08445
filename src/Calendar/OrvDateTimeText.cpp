// The compact text form of a date-time value, YYYYMMDDTHHMMSS with an optional Z, and
// what every text reader and writer of the value shares (OrvDateTimeTextInternal.hpp).
//
// The compact reader is deliberately as lenient per field as strtoul in base 10
// (leading blanks, a sign) but strict about everything else: the exact length, the two
// letters, each field filling its width, and every field already in range. One checker,
// CompactRead, decides for the four readers and for OrvDateTimeExplainCStr: it checks
// the shape and the ranges, then settles the reading in its zone in a scratch value, so
// the zone has its say too (a local time it skips is refused) and nothing is written to
// the caller's value unless the text is accepted.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeTextInternal.hpp"

#include "Orv/Calendar/OrvTimezoneInline.h"
#include "Orv/Utils/OrvCLib.h"
#include "Timezone/SharedFixedZones.hpp"
#include "Utils/OrvCLibInline.hpp"

#include <bit>
#include <cstdint>
#include <cstring>

namespace orv::text {

namespace {

void CopyReading(OrvDateTime* d, const OrvDateTime& s)
{
    d->nanosec = s.nanosec;
    d->sec = s.sec;
    d->min = s.min;
    d->hour = s.hour;
    d->monthDay = s.monthDay;
    d->month = s.month;
    d->year = s.year;
    d->wallTime = s.wallTime;
    d->offset = s.offset;
    d->normalized = s.normalized;
    d->floating = s.floating;
}

} // namespace

OrvTextError SettleInZone(OrvDateTime* scratch, TextFields f, const Target& t)
{
    Alias(scratch, t);
    detail::StoreReading(scratch, f.year, f.month, f.day, f.hour, f.min, f.sec, f.nanos);
    scratch->normalized = ORV_FALSE;
    scratch->wallTime = ORV_TIME_INVALID;
    scratch->offset = ORV_TIME_INVALID;
    if (!OrvDateTimeNormalizeAndSetWall(scratch)) return ORV_TEXTERROR_NoOffset;
    // The fields were in range, so only the zone can have moved them.
    const bool unchanged = scratch->nanosec == f.nanos && scratch->sec == f.sec && scratch->min == f.min &&
                           scratch->hour == f.hour && scratch->monthDay == f.day && scratch->month == f.month &&
                           scratch->year == f.year;
    return unchanged ? ORV_TEXTERROR_None : ORV_TEXTERROR_Skipped;
}

OrvTextError SettleInstant(OrvDateTime* scratch, OrvTime t, const Target& target)
{
    Alias(scratch, target);
    const OrvTime offset = t == ORV_TIME_INVALID ? ORV_TIME_INVALID : OrvTimezoneGetOffsetInline(&scratch->tz, t);
    if (offset == ORV_TIME_INVALID) return ORV_TEXTERROR_NoOffset;
    OrvInt64 local;
    if (__builtin_add_overflow(t, offset, &local)) return ORV_TEXTERROR_FieldRange;
    scratch->wallTime = t;
    scratch->offset = offset;
    OrvDateTimeSetFieldsFromWall(scratch);
    return ORV_TEXTERROR_None;
}

void CommitExisting(OrvDateTime* d, const OrvDateTime& scratch)
{
    AssignZone(d, &scratch.tz);
    CopyReading(d, scratch);
}

bool ResolveNamedZone(const TextZone& z, Target* out, OrvTextStatus* refusal)
{
    if (z.kind == ZoneKind::Utc) {
        *out = {OrvFixedTimezoneGetUTC(), 0, false};
        return true;
    }
    const OrvTimezone* shared = detail::SharedFixedZone(z.offset);
    if (shared == nullptr) {
        *refusal = Refuse(ORV_TEXTERROR_Allocation, z.pos);
        return false;
    }
    *out = {shared, z.offset, false};
    return true;
}

bool ReadZone(Cursor* c, TextZone* z, OrvTextStatus* refusal)
{
    const int sign = c->Peek();
    if (sign == 'Z' || sign == 'z') {
        *z = {ZoneKind::Utc, 0, c->pos};
        ++c->pos;
        return true;
    }
    if (sign != '+' && sign != '-') {
        *refusal = c->Unexpected();
        return false;
    }
    const OrvSizeT signPos = c->pos++;
    OrvInt64 hh = 0, mm = 0, ss = 0;
    if (!c->Digits(2, &hh, refusal)) return false;
    const bool colon = c->Peek() == ':';
    if (colon || IsDigit(c->Peek())) {
        c->pos += colon ? 1 : 0;
        if (!c->Digits(2, &mm, refusal)) return false;
        if (colon ? c->Peek() == ':' : IsDigit(c->Peek())) {
            c->pos += colon ? 1 : 0;
            if (!c->Digits(2, &ss, refusal)) return false;
        }
    }
    if (hh > 23 || mm > 59 || ss > 59) {
        *refusal = Refuse(ORV_TEXTERROR_OffsetRange, signPos);
        return false;
    }
    const OrvTime magnitude = cal::SecondsFromHms(hh, mm, ss) * cal::kNanosecondsPerSecond;
    *z = {ZoneKind::Offset, sign == '-' ? -magnitude : magnitude, signPos};
    return true;
}

char* PutInt(char* p, OrvInt64 v, int minDigits)
{
    unsigned long long mag = v < 0 ? 0ULL - static_cast<unsigned long long>(v) : static_cast<unsigned long long>(v);
    if (v < 0) *p++ = '-';
    char digits[20];
    int n = 0;
    do {
        digits[n++] = static_cast<char>('0' + mag % 10);
        mag /= 10;
    } while (mag != 0);
    while (n < minDigits && n < 20) digits[n++] = '0';
    while (n > 0) *p++ = digits[--n];
    return p;
}

char* PutFraction(char* p, OrvInt nanos, int digits)
{
    if (digits == 0 || (digits < 0 && nanos == 0)) return p;
    char nine[9];
    auto v = static_cast<unsigned>(nanos);
    nine[0] = static_cast<char>('0' + v / 100000000);
    v %= 100000000;
    Put2(nine + 1, v / 1000000);
    v %= 1000000;
    Put2(nine + 3, v / 10000);
    v %= 10000;
    Put2(nine + 5, v / 100);
    Put2(nine + 7, v % 100);
    if (digits < 0) { // the fewest exact digits: nanos is not 0, so one digit at least stays
        digits = 9;
        while (nine[digits - 1] == '0') --digits;
    }
    *p++ = '.';
    std::memcpy(p, nine, static_cast<std::size_t>(digits));
    return p + digits;
}

char* PutOffset(char* p, OrvTime offset, bool colon)
{
    *p++ = offset < 0 ? '-' : '+';
    const unsigned long long magnitude =
        offset < 0 ? 0ULL - static_cast<unsigned long long>(offset) : static_cast<unsigned long long>(offset);
    const auto hms = cal::HmsFromSeconds(magnitude / ORV_TIME_NANOSECONDS_PER_SECOND);
    p = hms.hour < 100 ? Put2(p, static_cast<unsigned>(hms.hour)) : PutInt(p, static_cast<OrvInt64>(hms.hour), 2);
    if (colon) *p++ = ':';
    p = Put2(p, static_cast<unsigned>(hms.minute));
    if (hms.second != 0) {
        if (colon) *p++ = ':';
        p = Put2(p, static_cast<unsigned>(hms.second));
    }
    return p;
}

} // namespace orv::text

namespace {

using namespace orv::text;

constexpr OrvSizeT kLocalLength = 15; // YYYYMMDDTHHMMSS
constexpr OrvSizeT kUtcLength = 16;   // ... and Z
constexpr OrvSizeT kTPos = 8;
constexpr OrvSizeT kZPos = 15;

// Reads the field of width characters at pos as strtoul does in base 10 (the
// conversion is OrvStrToUint32's, taken inline so that it is specialised for base 10).
// The field must not hold a terminating zero, must be used up by the conversion, and
// must not read as a negative number.
bool CompactField(const char* text, OrvSizeT pos, OrvSizeT width, OrvInt* val, OrvTextStatus* refusal)
{
    char buf[8];
    for (OrvSizeT i = 0; i < width; ++i) {
        if (text[pos + i] == '\0') {
            *refusal = Refuse(ORV_TEXTERROR_Character, pos + i);
            return false;
        }
        buf[i] = text[pos + i];
    }
    buf[width] = '\0';
    char* end = nullptr;
    *val = static_cast<OrvInt>(orv::clib::StrToUint32(buf, &end, 10));
    if (end != buf + width) {
        *refusal = Refuse(ORV_TEXTERROR_Character, pos + static_cast<OrvSizeT>(end - buf));
        return false;
    }
    if (*val < 0) {
        *refusal = Refuse(ORV_TEXTERROR_FieldRange, pos);
        return false;
    }
    return true;
}

// The fields and the T one by one, left to right, as CompactField reads them.
OrvTextStatus CompactFields(const char* text, TextFields* f)
{
    OrvTextStatus refusal = kAccepted;
    if (!CompactField(text, 0, 4, &f->year, &refusal) || !CompactField(text, 4, 2, &f->month, &refusal) ||
        !CompactField(text, 6, 2, &f->day, &refusal))
        return refusal;
    if (text[kTPos] != 'T') return Refuse(ORV_TEXTERROR_Character, kTPos);
    if (!CompactField(text, 9, 2, &f->hour, &refusal) || !CompactField(text, 11, 2, &f->min, &refusal) ||
        !CompactField(text, 13, 2, &f->sec, &refusal))
        return refusal;
    return kAccepted;
}

// ---- the common text: fourteen digits and the T, read eight characters at a time ----

constexpr std::uint64_t kEveryByte = 0x0101010101010101;

inline std::uint64_t Load8(const char* p)
{
    std::uint64_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
}

// Whether every byte of w is a decimal digit: its high nibble is 3, and stays 3 with
// 6 added (no carry crosses a byte once every high nibble is 3).
constexpr bool AllDigits(std::uint64_t w)
{
    return (w & 0xF0 * kEveryByte) == 0x30 * kEveryByte && ((w + 0x06 * kEveryByte) & 0xF0 * kEveryByte) == 0x30 * kEveryByte;
}

// Of eight digits in little-endian order: byte 2k of the result is the two-digit number
// of characters 2k and 2k + 1 (at most 99, so no byte carries into the next).
constexpr std::uint64_t DigitPairs(std::uint64_t w)
{
    const std::uint64_t v = w - '0' * kEveryByte;
    return v * 10 + (v >> 8);
}

constexpr OrvInt Pair(std::uint64_t pairs, int k) { return static_cast<OrvInt>((pairs >> (16 * k)) & 0xFF); }

// Characters 0..14 of the text when they are YYYYMMDDTHHMMSS with every field all
// digits, which CompactFields reads to the same numbers; false for anything else (and
// on machines that are not little-endian), which CompactFields then reads and refuses.
// Reads characters 0..14 only.
inline bool CompactDigits(const char* text, TextFields* f)
{
    if constexpr (std::endian::native != std::endian::little) return false;
    const std::uint64_t date = Load8(text);
    // Characters 7..14: the last day digit, the T (checked, then read as a '0'), the time.
    const std::uint64_t time = Load8(text + 7) ^ (std::uint64_t{'T' ^ '0'} << 8);
    if (text[kTPos] != 'T' || !AllDigits(date) || !AllDigits(time)) return false;
    const std::uint64_t d = DigitPairs(date), t = DigitPairs(time);
    f->year = Pair(d, 0) * 100 + Pair(d, 1);
    f->month = Pair(d, 2);
    f->day = Pair(d, 3);
    f->hour = Pair(t, 1);
    f->min = Pair(t, 2);
    f->sec = Pair(t, 3);
    return true;
}

// The one checker of the compact form: shape, fields left to right, ranges, and the
// zone the reading is settled in (the global UTC zone for a Z, else local).
OrvTextStatus CompactParse(const char* text, OrvSizeT len, const Target& local, TextFields* f, Target* target)
{
    if (len != kLocalLength && len != kUtcLength)
        return Refuse(ORV_TEXTERROR_Length, len < kUtcLength ? len : kUtcLength);
    f->nanosPos = 0;
    f->monthPos = 4;
    f->dayPos = 6;
    f->hourPos = 9;
    f->minPos = 11;
    f->secPos = 13;
    if (!CompactDigits(text, f)) [[unlikely]] {
        const OrvTextStatus refusal = CompactFields(text, f);
        if (refusal.error != ORV_TEXTERROR_None) return refusal;
    }
    const bool utc = len == kUtcLength;
    if (utc && text[kZPos] != 'Z') return Refuse(ORV_TEXTERROR_Character, kZPos);
    *target = utc ? Target{OrvFixedTimezoneGetUTC(), 0, false} : local;
    return CheckFields(*f);
}

// ... then the reading settled in scratch, where the zone has its say.
OrvTextStatus CompactSettle(const TextFields& f, const Target& target, OrvDateTime* scratch)
{
    switch (Settle(scratch, f, target)) {
    case ORV_TEXTERROR_None: return kAccepted;
    case ORV_TEXTERROR_Skipped: return Refuse(ORV_TEXTERROR_Skipped, f.hourPos);
    default: return Refuse(ORV_TEXTERROR_NoOffset, 0);
    }
}

OrvTextStatus CompactRead(const char* text, OrvSizeT len, const Target& local, OrvDateTime* scratch)
{
    TextFields f;
    Target target;
    const OrvTextStatus refusal = CompactParse(text, len, local, &f, &target);
    return refusal.error != ORV_TEXTERROR_None ? refusal : CompactSettle(f, target, scratch);
}

OrvDateTime* ConstructFromText(OrvDateTime* d, const char* text, OrvSizeT len, const OrvTimezone* tz)
{
    if (CompactRead(text, len, LocalTarget(tz), d).error != ORV_TEXTERROR_None) return nullptr;
    HoldZone(d);
    return d;
}

} // namespace

OrvBool OrvDateTimeDoSetString_(OrvDateTime* d, const char* cstr, OrvSizeT len)
{
    TextFields f;
    Target target;
    if (CompactParse(cstr, len, OwnTarget(d), &f, &target).error != ORV_TEXTERROR_None) return ORV_FALSE;
    if (SettlesAlone(f, target)) [[likely]] {
        // Nothing can refuse the reading now: it goes straight into d.
        AssignZone(d, target.zone);
        d->floating = target.floating ? ORV_TRUE : ORV_FALSE;
        StoreSettled(d, f, target);
        return ORV_TRUE;
    }
    OrvDateTime scratch;
    if (CompactSettle(f, target, &scratch).error != ORV_TEXTERROR_None) return ORV_FALSE;
    CommitExisting(d, scratch);
    return ORV_TRUE;
}

OrvBool OrvDateTimeGetString(const OrvDateTime* d, OrvString* str)
{
    // Fields of two digits and a year of four (any normalized value of years 0..9999)
    // are written at fixed width here, with the same characters the format gives.
    const bool fixedWidth = static_cast<OrvUint32>(d->year) <= 9999 && static_cast<OrvUint32>(d->month) <= 99 &&
                            static_cast<OrvUint32>(d->monthDay) <= 99 && static_cast<OrvUint32>(d->hour) <= 99 &&
                            static_cast<OrvUint32>(d->min) <= 99 && static_cast<OrvUint32>(d->sec) <= 99;
    if (fixedWidth) [[likely]] {
        char buf[kLocalLength + 1];
        *PutReading(buf, d, false) = '\0';
        if (OrvStringAssignCStr(str, buf) == nullptr) return ORV_FALSE;
    } else if (OrvStringAssignFormatted(str, "%04d%02d%02dT%02d%02d%02d", d->year, d->month, d->monthDay, d->hour,
                                        d->min, d->sec) == nullptr) {
        return ORV_FALSE;
    }
    if (orv::detail::IsGlobalUtc(&d->tz) && OrvStringAppendChar(str, 'Z') == nullptr) return ORV_FALSE;
    return ORV_TRUE;
}

OrvDateTime* OrvDateTimeConstructString(OrvDateTime* d, const OrvString* str, const OrvTimezone* tz)
{
    return ConstructFromText(d, OrvStringCStr(str), OrvStringLength(str), tz);
}

OrvDateTime* OrvDateTimeConstructCStr(OrvDateTime* d, const char* str, const OrvTimezone* tz)
{
    return ConstructFromText(d, str, OrvStrLen(str), tz);
}

OrvBool OrvDateTimeSetString(OrvDateTime* d, const OrvString* str)
{
    return OrvDateTimeDoSetString_(d, OrvStringCStr(str), OrvStringLength(str));
}

OrvBool OrvDateTimeSetCStr(OrvDateTime* d, const char* str) { return OrvDateTimeDoSetString_(d, str, std::strlen(str)); }

OrvBool OrvDateTimeExplainCStr(const char* text, const OrvTimezone* tz, OrvTextStatus* status)
{
    OrvDateTime scratch;
    const OrvTextStatus s =
        text == nullptr ? Refuse(ORV_TEXTERROR_Length, 0) : CompactRead(text, OrvStrLen(text), LocalTarget(tz), &scratch);
    Report(status, s);
    return s.error == ORV_TEXTERROR_None ? ORV_TRUE : ORV_FALSE;
}
