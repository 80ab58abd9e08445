/*
 * OrvTimezone.h - the counted handle to a time-zone object and its plug-in.
 *
 * A zone object is any record whose first member is an OrvTimezoneImpl: a pointer to
 * a table of two callbacks that give the zone's offset (local time minus UTC, in
 * nanoseconds, east positive) at an instant, and for a local reading. A callback that
 * has no answer returns ORV_TIME_INVALID.
 *
 * OrvTimezone is a shared handle to such an object: copies share one count block
 * (OrvSharedPtrRefCount, 8 bytes from the handle's allocator); when the last copy is
 * destructed the deleter runs on the object and the block goes back to the allocator.
 * Counts change atomically, so copies may live on different threads. A handle
 * without a count block (ref null) is not counted: the object outlives every handle
 * (the global UTC zone is such a handle).
 *
 * Building a zone of your own:
 *
 *     typedef struct MyZone { OrvTimezoneImpl base; OrvTime offset; } MyZone;
 *     static OrvTime MyGetOffset(OrvTimezoneImpl* impl, OrvTime t) { ... }
 *     static OrvTime MyGetOffsetFromFields(OrvTimezoneImpl* impl, OrvInt y, OrvInt mo, OrvInt d,
 *                                          OrvInt h, OrvInt mi, OrvInt s, OrvTime ns) { ... }
 *     static const OrvTimezoneImplPlugIn kMyPlugIn = { MyGetOffset, MyGetOffsetFromFields };
 *     static void MyDelete(OrvVoidPtr obj, OrvAllocator* a) { OrvAllocatorDeallocate(a, obj, sizeof(MyZone)); }
 *
 *     MyZone* z = OrvAllocatorAllocate(a, sizeof *z);    // z->base.plugIn = &kMyPlugIn; ...
 *     OrvTimezone tz;
 *     if (!OrvTimezoneConstruct(&tz, &z->base, a, MyDelete)) { ... you still own z ... }
 *     ...
 *     OrvTimezoneDestruct(&tz);                           // runs MyDelete
 */
#ifndef ORV_CALENDAR_ORVTIMEZONE_H
#define ORV_CALENDAR_ORVTIMEZONE_H

#include "Orv/Os/OrvSharedPtr.h"
#include "Orv/Os/OrvTime.h"

ORV_EXTERN_C_BEGIN

typedef struct OrvTimezoneImpl OrvTimezoneImpl;

/** The offset in force at the instant wallTime, or ORV_TIME_INVALID. */
typedef OrvTime (*OrvTimezoneImplPlugInGetOffsetCallback)(OrvTimezoneImpl* impl, OrvTime wallTime);
/** The offset that applies to a local reading, or ORV_TIME_INVALID. The fields are
 *  in range when the date-time module calls. */
typedef OrvTime (*OrvTimezoneImplPlugInGetOffsetFromFieldsCallback)(OrvTimezoneImpl* impl, OrvInt year,
                                                                    OrvInt month, OrvInt day, OrvInt hour,
                                                                    OrvInt minute, OrvInt second,
                                                                    OrvTime nanosecs);

typedef struct OrvTimezoneImplPlugIn {
    OrvTimezoneImplPlugInGetOffsetCallback getOffset;
    OrvTimezoneImplPlugInGetOffsetFromFieldsCallback getOffsetFromFields;
} OrvTimezoneImplPlugIn;

struct OrvTimezoneImpl {
    const OrvTimezoneImplPlugIn* plugIn;
};

typedef struct OrvSharedPtr_OrvTimezoneImpl {
    OrvSharedPtrRefCount* ref;     /* count block; null for an uncounted handle */
    OrvTimezoneImpl* ptr;          /* the zone object */
    OrvAllocator* a;               /* owns the count block; passed to the deleter */
    OrvSharedPtrDeleterCallback d; /* destroys the zone object */
} OrvSharedPtr_OrvTimezoneImpl;

typedef struct OrvTimezone {
    OrvSharedPtr_OrvTimezoneImpl impl;
} OrvTimezone;

/** Builds a handle to impl with a new count block from a (one use, one weak unit).
 *  Returns tz; null when any argument is null or the block cannot be allocated, and
 *  then the caller still owns impl. */
ORV_API OrvTimezone* OrvTimezoneConstruct(OrvTimezone* tz, OrvTimezoneImpl* impl, OrvAllocator* a,
                                          OrvSharedPtrDeleterCallback d);
/** Copies orig into tz, taking one use reference. Returns tz. */
ORV_API OrvTimezone* OrvTimezoneConstructCopy(OrvTimezone* tz, const OrvTimezone* orig);
/** Drops tz's reference: at the last one the deleter runs and the block is freed.
 *  The handle's members are left as they were. */
ORV_API void OrvTimezoneDestruct(OrvTimezone* tz);
/** Makes tz refer to orig's zone. Returns tz.
 *  When both handles have the same count block, or both have none, tz takes orig's
 *  zone object, allocator and deleter and no count changes. Otherwise tz's old
 *  reference is dropped first, exactly as OrvTimezoneDestruct drops it (the old
 *  zone's deleter may run), and only then does tz take all of orig's members and one
 *  more use reference of orig's block.
 *  The caller guarantees that orig, and the zone it refers to, survive the release of
 *  tz's old zone: orig must not be stored in memory that the old zone's deleter frees,
 *  nor be kept alive only by the old zone. When that cannot be ruled out, copy orig
 *  into a handle of its own first (OrvTimezoneConstructCopy) and assign from it. */
ORV_API OrvTimezone* OrvTimezoneAssign(OrvTimezone* tz, const OrvTimezone* orig);
/** True when both handles refer to the same zone object. */
ORV_API OrvBool OrvTimezoneEqual(const OrvTimezone* a, const OrvTimezone* b);
/** Exchanges the two handles; no count changes. Always true. */
ORV_API OrvBool OrvTimezoneSwap(OrvTimezone* a, OrvTimezone* b);
/** The zone's offset at the instant wallTime, or ORV_TIME_INVALID. */
ORV_API OrvTime OrvTimezoneGetOffset(const OrvTimezone* tz, OrvTime wallTime);
/** The zone's offset for a local reading, or ORV_TIME_INVALID. */
ORV_API OrvTime OrvTimezoneGetOffsetFromFields(const OrvTimezone* tz, OrvInt year, OrvInt month, OrvInt day,
                                               OrvInt hour, OrvInt minute, OrvInt second, OrvTime nanosecs);
/** The number of handles sharing tz's count block; 0 for an uncounted handle. */
ORV_API OrvInt OrvTimezoneGetUseCount(const OrvTimezone* tz);

ORV_EXTERN_C_END

#endif /* ORV_CALENDAR_ORVTIMEZONE_H */
