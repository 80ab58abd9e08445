// Zones at a constant offset, and the process-wide UTC zone (an uncounted handle to a
// static object, so copying it touches no counter).
#include "Orv/Calendar/OrvFixedTimezone.h"

#include "Timezone/GlobalUtc.hpp"

namespace {

struct FixedZone {
    OrvTimezoneImpl base; // first member: the zone object is its OrvTimezoneImpl
    OrvTime offset;
};

OrvTime FixedGetOffset(OrvTimezoneImpl* impl, OrvTime) { return reinterpret_cast<FixedZone*>(impl)->offset; }

OrvTime FixedGetOffsetFromFields(OrvTimezoneImpl* impl, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvTime)
{
    return reinterpret_cast<FixedZone*>(impl)->offset;
}

constexpr OrvTimezoneImplPlugIn kFixedPlugIn = {FixedGetOffset, FixedGetOffsetFromFields};

void FixedDelete(OrvVoidPtr obj, OrvAllocator* a) { OrvAllocatorDeallocate(a, obj, sizeof(FixedZone)); }

FixedZone gUtcZone = {{&kFixedPlugIn}, 0};
OrvTimezone gUtc = {{nullptr, &gUtcZone.base, nullptr, nullptr}};

} // namespace

OrvTimezoneImpl* const orv::detail::gGlobalUtcImpl = &gUtcZone.base;

OrvTimezone* OrvFixedTimezoneGetUTC(void) { return &gUtc; }

OrvBool OrvFixedTimezoneIsGlobalUTC(const OrvTimezone* tz)
{
    return orv::detail::IsGlobalUtc(tz) ? ORV_TRUE : ORV_FALSE;
}

OrvTimezone* OrvFixedTimezoneConstruct(OrvTimezone* tz, OrvTime offset, OrvAllocator* a)
{
    if (tz == nullptr || a == nullptr) return nullptr;
    if (offset == ORV_TIME_INVALID || offset <= -ORV_TIME_NANOSECONDS_PER_DAY || offset >= ORV_TIME_NANOSECONDS_PER_DAY)
        return nullptr;
    auto* zone = static_cast<FixedZone*>(OrvAllocatorAllocate(a, sizeof(FixedZone)));
    if (zone == nullptr) return nullptr;
    zone->base.plugIn = &kFixedPlugIn;
    zone->offset = offset;
    if (OrvTimezoneConstruct(tz, &zone->base, a, FixedDelete) == nullptr) {
        FixedDelete(zone, a);
        return nullptr;
    }
    return tz;
}
