// The zone of a date-time value, its offset and its instant: moving a value to another
// zone keeps the local reading, converting it keeps the instant; setting the instant
// keeps the zone; the current instant.
#include "Calendar/OrvDateTimeInternal.hpp"

#include "Orv/Calendar/OrvTimezoneInline.h"

using orv::detail::Normalize;

OrvDateTime* OrvDateTimeConstructNow(OrvDateTime* d, const OrvTimezone* tz)
{
    const OrvTime now = OrvTimeNow();
    if (now == ORV_TIME_INVALID) return nullptr;
    return OrvDateTimeConstruct(d, now, tz);
}

OrvBool OrvDateTimeConvertToTimezone(OrvDateTime* d, const OrvTimezone* tz)
{
    const OrvTime t = OrvDateTimeGetWallTime(d); // a floating value's fields read as UTC
    if (t == ORV_TIME_INVALID) return ORV_FALSE;
    const OrvTimezone* target = tz != nullptr ? tz : OrvFixedTimezoneGetUTC();
    const OrvTime offset = orv::detail::IsGlobalUtc(target) ? 0 : OrvTimezoneGetOffsetInline(target, t);
    OrvInt64 local = 0;
    if (offset == ORV_TIME_INVALID || __builtin_add_overflow(t, offset, &local)) return ORV_FALSE;
    // Take the new zone before the old one goes: tz may be d's own handle.
    OrvTimezone incoming;
    OrvTimezoneConstructCopy(&incoming, target);
    OrvTimezoneSwap(&d->tz, &incoming);
    OrvTimezoneDestruct(&incoming);
    d->floating = tz == nullptr ? ORV_TRUE : ORV_FALSE;
    d->wallTime = t;
    d->offset = offset;
    return orv::detail::SetFieldsFromWall(d) ? ORV_TRUE : ORV_FALSE; // cannot wrap: checked above
}

OrvBool OrvDateTimeSetTimezone(OrvDateTime* d, const OrvTimezone* tz)
{
    if (tz != nullptr && !d->floating && OrvTimezoneEqual(tz, &d->tz)) return ORV_TRUE;
    if (tz == nullptr && d->floating) return ORV_TRUE;

    // Keep the old zone alive and at hand until the new one has been asked.
    OrvTimezone saveTz;
    OrvTimezoneConstructCopy(&saveTz, &d->tz);
    const OrvBool saveFloating = d->floating;

    if (tz == nullptr) {
        OrvTimezoneAssign(&d->tz, OrvFixedTimezoneGetUTC());
        d->floating = ORV_TRUE;
    } else {
        OrvTimezoneAssign(&d->tz, tz);
        d->floating = ORV_FALSE;
    }
    // Same fields, new zone: the instant and offset are worked out again.
    d->wallTime = ORV_TIME_INVALID;
    d->offset = ORV_TIME_INVALID;

    if (OrvDateTimeNormalizeAndSetWall(d)) {
        OrvTimezoneDestruct(&saveTz);
        return ORV_TRUE;
    }
    // The new zone has no answer: back to the old one, which the next read asks again.
    OrvTimezoneSwap(&d->tz, &saveTz);
    d->floating = saveFloating;
    d->wallTime = ORV_TIME_INVALID;
    d->offset = ORV_TIME_INVALID;
    OrvTimezoneDestruct(&saveTz);
    return ORV_FALSE;
}

OrvTime OrvDateTimeGetOffset(const OrvDateTime* d)
{
    if (d->floating || !Normalize(d)) return ORV_TIME_INVALID;
    return d->offset;
}

OrvTime OrvDateTimeGetCurrentUTCOffset(OrvDateTime* d)
{
    if (!Normalize(d)) return ORV_TIME_INVALID;
    return d->offset;
}

OrvTime OrvDateTimeGetWallTime(const OrvDateTime* d)
{
    if (!Normalize(d)) return ORV_TIME_INVALID;
    return d->wallTime;
}

OrvBool OrvDateTimeSetWallTime(OrvDateTime* d, OrvTime t)
{
    // The global UTC zone's offset is 0 at every instant: not asked.
    const OrvTime offset = orv::detail::IsGlobalUtc(&d->tz) ? 0 : OrvTimezoneGetOffsetInline(&d->tz, t);
    if (offset == ORV_TIME_INVALID) return ORV_FALSE;
    const OrvTime oldWallTime = d->wallTime;
    const OrvTime oldOffset = d->offset;
    d->wallTime = t;
    d->offset = offset;
    if (!orv::detail::SetFieldsFromWall(d)) {
        d->wallTime = oldWallTime;
        d->offset = oldOffset;
        return ORV_FALSE;
    }
    return ORV_TRUE;
}

OrvBool OrvDateTimeIsUTC(const OrvDateTime* d) { return orv::detail::IsGlobalUtc(&d->tz) ? ORV_TRUE : ORV_FALSE; }
