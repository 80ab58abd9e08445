/*
 * OrvSharedPtr.h - the count block behind the library's counted handles.
 *
 * A counted handle (such as OrvTimezone) holds a pointer to one of these blocks. The
 * use count counts handles; the weak count counts weak references plus one unit for
 * all use references together. When the use count drops to zero the object's deleter
 * runs; when the weak count then drops to zero the block (8 bytes) goes back to the
 * allocator it came from.
 */
#ifndef ORV_OS_ORVSHAREDPTR_H
#define ORV_OS_ORVSHAREDPTR_H

#include "Orv/Os/OrvAtomicInteger.h"
#include "Orv/Utils/OrvAllocator.h"

ORV_EXTERN_C_BEGIN

typedef struct OrvSharedPtrRefCount {
    OrvAtomicInteger useCount;
    OrvAtomicInteger weakCount;
} OrvSharedPtrRefCount;

/** Destroys the shared object; a is the allocator the handle was built with. */
typedef void (*OrvSharedPtrDeleterCallback)(OrvVoidPtr obj, OrvAllocator* a);

/** Takes a count block from a, with one use and one weak unit. Null on failure. */
ORV_API OrvSharedPtrRefCount* OrvSharedPtrRefCountCreate(OrvAllocator* a);
/** Atomically raises the use count. */
ORV_API void OrvSharedPtrRefCountIncUseCount(OrvSharedPtrRefCount* ref);
/** Atomically lowers the use count and returns the new value. */
ORV_API OrvInt OrvSharedPtrRefCountDecUseCount(OrvSharedPtrRefCount* ref);
/** Atomically lowers the weak count and returns the new value. */
ORV_API OrvInt OrvSharedPtrRefCountDecWeakCount(OrvSharedPtrRefCount* ref);
/** The current use count (a snapshot). */
ORV_API OrvInt OrvSharedPtrRefCountGetUseCount(const OrvSharedPtrRefCount* ref);

/** Drops one use reference: at zero runs d(obj, a), then drops the weak unit of the
 *  use references and, at zero, returns the block to a with size 8. */
ORV_API void OrvSharedPtrRefCountRelease(OrvSharedPtrRefCount* ref, OrvVoidPtr obj, OrvAllocator* a,
                                         OrvSharedPtrDeleterCallback d);

ORV_EXTERN_C_END

#endif /* ORV_OS_ORVSHAREDPTR_H */
