/*
 * OrvAtomicInteger.h - a 32-bit signed integer changed only by atomic
 * read-modify-write operations with full (sequentially consistent) ordering.
 *
 * The record is plain so that it can sit inside other public records (the shared
 * pointer's count block); always go through these functions to touch it.
 */
#ifndef ORV_OS_ORVATOMICINTEGER_H
#define ORV_OS_ORVATOMICINTEGER_H

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

ORV_EXTERN_C_BEGIN

typedef struct OrvAtomicInteger {
    OrvInt value; /* 4 bytes, naturally aligned; accessed atomically only */
} OrvAtomicInteger;

/** Stores v (plain initialisation; not for a counter other threads already see). */
ORV_API void OrvAtomicIntegerInit(OrvAtomicInteger* a, OrvInt v);
/** Atomic load. */
ORV_API OrvInt OrvAtomicIntegerLoad(const OrvAtomicInteger* a);
/** Atomic store. */
ORV_API void OrvAtomicIntegerStore(OrvAtomicInteger* a, OrvInt v);
/** Atomically adds one and returns the new value. */
ORV_API OrvInt OrvAtomicIntegerIncrement(OrvAtomicInteger* a);
/** Atomically subtracts one and returns the new value. */
ORV_API OrvInt OrvAtomicIntegerDecrement(OrvAtomicInteger* a);
/** Atomically adds delta and returns the new value (wraps like unsigned arithmetic). */
ORV_API OrvInt OrvAtomicIntegerAdd(OrvAtomicInteger* a, OrvInt delta);

ORV_EXTERN_C_END

#endif /* ORV_OS_ORVATOMICINTEGER_H */
