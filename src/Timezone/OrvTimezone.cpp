// The counted zone handle: copies share one count block; the last release runs the
// deleter and returns the block.
#include "Orv/Calendar/OrvTimezone.h"

#include "Orv/Calendar/OrvTimezoneInline.h"

#include <cstddef>

static_assert(sizeof(OrvSharedPtr_OrvTimezoneImpl) == 4 * sizeof(void*));
static_assert(offsetof(OrvSharedPtr_OrvTimezoneImpl, ref) == 0);
static_assert(offsetof(OrvSharedPtr_OrvTimezoneImpl, ptr) == sizeof(void*));
static_assert(offsetof(OrvSharedPtr_OrvTimezoneImpl, a) == 2 * sizeof(void*));
static_assert(offsetof(OrvSharedPtr_OrvTimezoneImpl, d) == 3 * sizeof(void*));
static_assert(sizeof(OrvTimezone) == sizeof(OrvSharedPtr_OrvTimezoneImpl));

OrvTimezone* OrvTimezoneConstruct(OrvTimezone* tz, OrvTimezoneImpl* impl, OrvAllocator* a,
                                  OrvSharedPtrDeleterCallback d)
{
    if (tz == nullptr || impl == nullptr || a == nullptr || d == nullptr) return nullptr;
    OrvSharedPtrRefCount* ref = OrvSharedPtrRefCountCreate(a);
    if (ref == nullptr) return nullptr;
    tz->impl = {ref, impl, a, d};
    return tz;
}

OrvTimezone* OrvTimezoneConstructCopy(OrvTimezone* tz, const OrvTimezone* orig)
{
    tz->impl = orig->impl;
    if (tz->impl.ref != nullptr) OrvSharedPtrRefCountIncUseCount(tz->impl.ref);
    return tz;
}

void OrvTimezoneDestruct(OrvTimezone* tz)
{
    if (tz->impl.ref != nullptr) OrvSharedPtrRefCountRelease(tz->impl.ref, tz->impl.ptr, tz->impl.a, tz->impl.d);
}

OrvTimezone* OrvTimezoneAssign(OrvTimezone* tz, const OrvTimezone* orig)
{
    if (tz->impl.ref == orig->impl.ref) {
        tz->impl.ptr = orig->impl.ptr;
        tz->impl.d = orig->impl.d;
        tz->impl.a = orig->impl.a;
        return tz;
    }
    // The old reference goes first (its deleter may run here); orig is read only after
    // it, which the header makes the caller's guarantee.
    OrvTimezoneDestruct(tz);
    tz->impl = orig->impl;
    if (tz->impl.ref != nullptr) OrvSharedPtrRefCountIncUseCount(tz->impl.ref);
    return tz;
}

OrvBool OrvTimezoneEqual(const OrvTimezone* a, const OrvTimezone* b)
{
    return a->impl.ptr == b->impl.ptr ? ORV_TRUE : ORV_FALSE;
}

OrvBool OrvTimezoneSwap(OrvTimezone* a, OrvTimezone* b)
{
    OrvSharedPtr_OrvTimezoneImpl t = a->impl;
    a->impl = b->impl;
    b->impl = t;
    return ORV_TRUE;
}

OrvTime OrvTimezoneGetOffset(const OrvTimezone* tz, OrvTime wallTime)
{
    return OrvTimezoneGetOffsetInline(tz, wallTime);
}

OrvTime OrvTimezoneGetOffsetFromFields(const OrvTimezone* tz, OrvInt year, OrvInt month, OrvInt day, OrvInt hour,
                                       OrvInt minute, OrvInt second, OrvTime nanosecs)
{
    return OrvTimezoneGetOffsetFromFieldsInline(tz, year, month, day, hour, minute, second, nanosecs);
}

OrvInt OrvTimezoneGetUseCount(const OrvTimezone* tz)
{
    return tz->impl.ref != nullptr ? OrvSharedPtrRefCountGetUseCount(tz->impl.ref) : 0;
}
