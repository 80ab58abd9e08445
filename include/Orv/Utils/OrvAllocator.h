/*
 * OrvAllocator.h - the allocator every OrvCalendar container and shared object
 * takes its memory from.
 *
 * An allocator is a record of two callbacks and two data members, owned by the
 * caller, who keeps it alive while anything holds memory from it. Deallocation is
 * sized: a block is always handed back with the byte size it was obtained with.
 *
 *     OrvAllocator* a = OrvAllocatorGetDefault();        // malloc and free
 *     void* p = OrvAllocatorAllocate(a, 64);
 *     OrvAllocatorDeallocate(a, p, 64);
 */
#ifndef ORV_UTILS_ORVALLOCATOR_H
#define ORV_UTILS_ORVALLOCATOR_H

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

ORV_EXTERN_C_BEGIN

typedef struct OrvAllocator OrvAllocator;

/** Returns a block of at least size bytes, suitably aligned for any object, or null. */
typedef OrvVoidPtr (*OrvAllocatorAllocateCallback)(OrvAllocator* a, OrvSizeT size);
/** Takes back a block obtained from the same allocator with the same size. */
typedef void (*OrvAllocatorDeallocateCallback)(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size);

struct OrvAllocator {
    OrvAllocatorAllocateCallback allocate;
    OrvAllocatorDeallocateCallback deallocate;
    OrvSizeT maxSize;    /* largest request the allocator can serve; informational */
    OrvVoidPtr userData; /* the allocator's own state */
};

/** Calls a->allocate(a, size). Null means failure. */
ORV_API OrvVoidPtr OrvAllocatorAllocate(OrvAllocator* a, OrvSizeT size);
/** Calls a->deallocate(a, p, size). */
ORV_API void OrvAllocatorDeallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size);
/** The process-wide allocator over malloc and free. Never null; never destroyed.
 *  A request for 0 bytes, or for more than maxSize, gives null. */
ORV_API OrvAllocator* OrvAllocatorGetDefault(void);

ORV_EXTERN_C_END

#endif /* ORV_UTILS_ORVALLOCATOR_H */
