// The compact text form of a date-time value: YYYYMMDDTHHMMSS with an optional Z.
//
// The reader is deliberately as lenient per field as strtoul in base 10 (leading
// blanks, a sign) but strict about everything else: the exact length, the two
// letters, each field filling its width, and every field already in range. The
// range check is done by normalizing and requiring that nothing moved, so the zone
// has its say too (a local time it skips is refused).
#include "Calendar/OrvDateTimeInternal.hpp"

#include "Orv/Utils/OrvCLib.h"
#include "Utils/OrvCLibInline.hpp"

namespace {

constexpr OrvSizeT kLocalLength = 15; // YYYYMMDDTHHMMSS
constexpr OrvSizeT kUtcLength = 16;   // ... and Z
constexpr OrvSizeT kTPos = 8;
constexpr OrvSizeT kZPos = 15;

// Copies the len characters at pos into buf and terminates it. False when the text
// ends inside the field. This is the outcome of OrvStrLCpy(buf, pos, len + 1) < len
// (strlcpy's result is the source's length, short exactly when a terminating zero lies
// within the field) without measuring the rest of the text after the field.
inline bool CopyField(char* buf, const char* pos, OrvSizeT len)
{
    for (OrvSizeT i = 0; i < len; ++i) {
        if (pos[i] == '\0') return false;
        buf[i] = pos[i];
    }
    buf[len] = '\0';
    return true;
}

// Converts the len characters at pos (len <= 15) as strtoul does in base 10. The
// number, truncated to 32 bits, is stored through val whatever the outcome. True only
// when the conversion used the whole field and the number is not negative: a field
// that ends early (a terminating zero inside it), holds no digit, has anything after
// its digits, or reads as a negative number is refused. The conversion is
// OrvStrToUint32's, taken inline so that it is specialised for base 10.
inline bool GetFixedSizeInt(const char* pos, OrvSizeT len, OrvInt* val)
{
    char buf[16];
    if (!CopyField(buf, pos, len)) return false;
    char* end = nullptr;
    *val = static_cast<OrvInt>(orv::clib::StrToUint32(buf, &end, 10));
    return end == buf + len && *val >= 0;
}

} // namespace

OrvBool OrvDateTimeDoSetString_(OrvDateTime* d, const char* cstr, OrvSizeT len)
{
    if (len != kLocalLength && len != kUtcLength) return ORV_FALSE;
    const bool utc = len == kUtcLength;
    if (utc && cstr[kZPos] != 'Z') return ORV_FALSE;
    if (cstr[kTPos] != 'T') return ORV_FALSE;

    OrvInt y = 0, mo = 0, dy = 0, h = 0, m = 0, s = 0;
    if (!GetFixedSizeInt(cstr + 0, 4, &y) || !GetFixedSizeInt(cstr + 4, 2, &mo) ||
        !GetFixedSizeInt(cstr + 6, 2, &dy) || !GetFixedSizeInt(cstr + 9, 2, &h) ||
        !GetFixedSizeInt(cstr + 11, 2, &m) || !GetFixedSizeInt(cstr + 13, 2, &s))
        return ORV_FALSE;

    // From here on d is written; the public entries discard or restore it on failure.
    if (utc) {
        OrvTimezoneAssign(&d->tz, OrvFixedTimezoneGetUTC());
        d->floating = ORV_FALSE;
    }
    d->nanosec = 0;
    d->sec = s;
    d->min = m;
    d->hour = h;
    d->monthDay = dy;
    d->month = mo;
    d->year = y;
    d->normalized = ORV_FALSE;
    d->wallTime = ORV_TIME_INVALID;
    d->offset = ORV_TIME_INVALID;
    if (!OrvDateTimeNormalizeAndSetWall(d)) return ORV_FALSE;

    // Anything carried (month 13, 30 February, hour 24) or moved by the zone (a
    // skipped local time) means the text did not name an existing reading.
    const bool unchanged = d->nanosec == 0 && d->sec == s && d->min == m && d->hour == h && d->monthDay == dy &&
                           d->month == mo && d->year == y;
    return unchanged ? ORV_TRUE : ORV_FALSE;
}

OrvBool OrvDateTimeGetString(const OrvDateTime* d, OrvString* str)
{
    if (OrvStringAssignFormatted(str, "%04d%02d%02dT%02d%02d%02d", d->year, d->month, d->monthDay, d->hour, d->min,
                                 d->sec) == nullptr)
        return ORV_FALSE;
    if (OrvDateTimeIsUTC(d) && OrvStringAppendChar(str, 'Z') == nullptr) return ORV_FALSE;
    return ORV_TRUE;
}

namespace {

OrvDateTime* ConstructFromText(OrvDateTime* d, const char* cstr, OrvSizeT len, const OrvTimezone* tz)
{
    orv::detail::TakeZone(d, tz);
    if (OrvDateTimeDoSetString_(d, cstr, len)) return d;
    OrvTimezoneDestruct(&d->tz);
    return nullptr;
}

OrvBool SetFromText(OrvDateTime* d, const char* cstr, OrvSizeT len)
{
    // The parser may have replaced the zone and the fields before it refuses, so a
    // copy (one more zone reference) is the way back to exactly the old value.
    OrvDateTime saved;
    if (OrvDateTimeConstructCopy(&saved, d) == nullptr) return ORV_FALSE;
    const OrvBool ok = OrvDateTimeDoSetString_(d, cstr, len);
    if (!ok) OrvDateTimeAssign(d, &saved);
    OrvDateTimeDestruct(&saved);
    return ok;
}

} // namespace

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
    return SetFromText(d, OrvStringCStr(str), OrvStringLength(str));
}

OrvBool OrvDateTimeSetCStr(OrvDateTime* d, const char* str) { return SetFromText(d, str, OrvStrLen(str)); }
