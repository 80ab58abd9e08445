// The count block of the library's counted handles.
#include "Orv/Os/OrvSharedPtr.h"

#include <cstddef>

static_assert(sizeof(OrvSharedPtrRefCount) == 8, "the count block is two 32-bit counters");
static_assert(offsetof(OrvSharedPtrRefCount, useCount) == 0);
static_assert(offsetof(OrvSharedPtrRefCount, weakCount) == 4);

OrvSharedPtrRefCount* OrvSharedPtrRefCountCreate(OrvAllocator* a)
{
    if (a == nullptr) return nullptr;
    auto* ref = static_cast<OrvSharedPtrRefCount*>(OrvAllocatorAllocate(a, sizeof(OrvSharedPtrRefCount)));
    if (ref == nullptr) return nullptr;
    OrvAtomicIntegerInit(&ref->useCount, 1);
    OrvAtomicIntegerInit(&ref->weakCount, 1);
    return ref;
}

void OrvSharedPtrRefCountIncUseCount(OrvSharedPtrRefCount* ref) { OrvAtomicIntegerIncrement(&ref->useCount); }

OrvInt OrvSharedPtrRefCountDecUseCount(OrvSharedPtrRefCount* ref)
{
    return OrvAtomicIntegerDecrement(&ref->useCount);
}

OrvInt OrvSharedPtrRefCountDecWeakCount(OrvSharedPtrRefCount* ref)
{
    return OrvAtomicIntegerDecrement(&ref->weakCount);
}

OrvInt OrvSharedPtrRefCountGetUseCount(const OrvSharedPtrRefCount* ref)
{
    return OrvAtomicIntegerLoad(&ref->useCount);
}

void OrvSharedPtrRefCountRelease(OrvSharedPtrRefCount* ref, OrvVoidPtr obj, OrvAllocator* a,
                                 OrvSharedPtrDeleterCallback d)
{
    if (OrvSharedPtrRefCountDecUseCount(ref) != 0) return;
    if (d != nullptr) d(obj, a);
    if (OrvSharedPtrRefCountDecWeakCount(ref) == 0) OrvAllocatorDeallocate(a, ref, sizeof(OrvSharedPtrRefCount));
}
