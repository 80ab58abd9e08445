/*
 * OrvTimezoneInline.h - inline forms of the zone handle's offset queries, for hot
 * paths. They do exactly what OrvTimezoneGetOffset and
 * OrvTimezoneGetOffsetFromFields do.
 */
#ifndef ORV_CALENDAR_ORVTIMEZONEINLINE_H
#define ORV_CALENDAR_ORVTIMEZONEINLINE_H

#include "Orv/Calendar/OrvTimezone.h"

static inline OrvTime OrvTimezoneGetOffsetInline(const OrvTimezone* tz, OrvTime wallTime)
{
    OrvTimezoneImpl* impl = tz->impl.ptr;
    return impl->plugIn->getOffset(impl, wallTime);
}

static inline OrvTime OrvTimezoneGetOffsetFromFieldsInline(const OrvTimezone* tz, OrvInt year, OrvInt month,
                                                           OrvInt day, OrvInt hour, OrvInt minute,
                                                           OrvInt second, OrvTime nanosecs)
{
    OrvTimezoneImpl* impl = tz->impl.ptr;
    return impl->plugIn->getOffsetFromFields(impl, year, month, day, hour, minute, second, nanosecs);
}

#endif /* ORV_CALENDAR_ORVTIMEZONEINLINE_H */
