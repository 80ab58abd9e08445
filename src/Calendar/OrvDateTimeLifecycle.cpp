// Construction, copy, assignment and release of date-time values, and the accessors of
// their zone and week settings.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

#include "Orv/Calendar/OrvTimezoneInline.h"

#include <cstddef>

// The record is public layout: pin it.
static_assert(sizeof(OrvDateTime) == 96);
static_assert(offsetof(OrvDateTime, nanosec) == 0);
static_assert(offsetof(OrvDateTime, year) == 24);
static_assert(offsetof(OrvDateTime, wallTime) == 32);
static_assert(offsetof(OrvDateTime, offset) == 40);
static_assert(offsetof(OrvDateTime, tz) == 48);
static_assert(offsetof(OrvDateTime, firstDayOfWeek) == 80);
static_assert(offsetof(OrvDateTime, minimalDaysInFirstWeek) == 84);
static_assert(offsetof(OrvDateTime, normalized) == 88);
static_assert(offsetof(OrvDateTime, floating) == 89);
static_assert(sizeof(OrvWeekday) == 4 && sizeof(OrvDateTimeField) == 4);

namespace {

// Every member but the zone handle, which the caller copies or assigns with its count.
void CopyAllButZone(OrvDateTime* d, const OrvDateTime* orig)
{
    d->nanosec = orig->nanosec;
    d->sec = orig->sec;
    d->min = orig->min;
    d->hour = orig->hour;
    d->monthDay = orig->monthDay;
    d->month = orig->month;
    d->year = orig->year;
    d->wallTime = orig->wallTime;
    d->offset = orig->offset;
    d->firstDayOfWeek = orig->firstDayOfWeek;
    d->minimalDaysInFirstWeek = orig->minimalDaysInFirstWeek;
    d->normalized = orig->normalized;
    d->floating = orig->floating;
}

} // namespace

OrvDateTime* OrvDateTimeConstructDefault(OrvDateTime* d)
{
    orv::detail::TakeZone(d, OrvFixedTimezoneGetUTC());
    d->wallTime = 0;
    d->offset = 0;
    if (!orv::detail::SetFieldsFromWall(d)) {
        OrvTimezoneDestruct(&d->tz);
        return nullptr;
    }
    return d;
}

OrvDateTime* OrvDateTimeConstruct(OrvDateTime* d, OrvTime t, const OrvTimezone* tz)
{
    orv::detail::TakeZone(d, tz);
    const OrvTime offset = orv::detail::IsGlobalUtc(&d->tz) ? 0 : OrvTimezoneGetOffsetInline(&d->tz, t);
    if (offset == ORV_TIME_INVALID) {
        OrvTimezoneDestruct(&d->tz);
        return nullptr;
    }
    d->wallTime = t;
    d->offset = offset;
    if (!orv::detail::SetFieldsFromWall(d)) {
        OrvTimezoneDestruct(&d->tz);
        return nullptr;
    }
    return d;
}

OrvDateTime* OrvDateTimeConstructCopy(OrvDateTime* d, const OrvDateTime* orig)
{
    orv::detail::CopyZoneHandle(&d->tz, &orig->tz);
    CopyAllButZone(d, orig);
    return d;
}

OrvDateTime* OrvDateTimeAssign(OrvDateTime* d, const OrvDateTime* orig)
{
    if (d == orig) return d;
    OrvTimezoneAssign(&d->tz, &orig->tz);
    CopyAllButZone(d, orig);
    return d;
}

void OrvDateTimeDestruct(OrvDateTime* d)
{
    if (d->tz.impl.ref != nullptr) OrvTimezoneDestruct(&d->tz); // an uncounted zone holds nothing
}

const OrvTimezone* OrvDateTimeGetTimezone(const OrvDateTime* d) { return d->floating ? nullptr : &d->tz; }

OrvBool OrvDateTimeIsFloating(const OrvDateTime* d) { return d->floating; }

OrvWeekday OrvDateTimeGetFirstDayOfWeek(const OrvDateTime* d) { return d->firstDayOfWeek; }

OrvBool OrvDateTimeSetFirstDayOfWeek(OrvDateTime* d, OrvWeekday w)
{
    if (w < ORV_WEEKDAY_Sunday || w > ORV_WEEKDAY_Saturday) return ORV_FALSE;
    d->firstDayOfWeek = w;
    return ORV_TRUE;
}

OrvInt OrvDateTimeGetMinimalDaysInFirstWeek(OrvDateTime* d) { return d->minimalDaysInFirstWeek; }

OrvBool OrvDateTimeSetMinimalDaysInFirstWeek(OrvDateTime* d, OrvInt days)
{
    if (days < 1 || days > orv::cal::kDaysPerWeek) return ORV_FALSE;
    d->minimalDaysInFirstWeek = days;
    return ORV_TRUE;
}
