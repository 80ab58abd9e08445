// Atomic 32-bit integer over std::atomic_ref: the record stays a plain C struct, every
// access goes through a sequentially consistent read-modify-write or load/store.
#include "Orv/Os/OrvAtomicInteger.h"

#include <atomic>

static_assert(sizeof(OrvAtomicInteger) == 4, "OrvAtomicInteger is 4 bytes of public layout");
static_assert(std::atomic_ref<OrvInt>::required_alignment <= alignof(OrvAtomicInteger));

namespace {
std::atomic_ref<OrvInt> Ref(OrvAtomicInteger* a) { return std::atomic_ref<OrvInt>(a->value); }
} // namespace

void OrvAtomicIntegerInit(OrvAtomicInteger* a, OrvInt v) { a->value = v; }

OrvInt OrvAtomicIntegerLoad(const OrvAtomicInteger* a)
{
    // atomic_ref needs a mutable referent; a load never writes through it.
    return Ref(const_cast<OrvAtomicInteger*>(a)).load(std::memory_order_seq_cst);
}

void OrvAtomicIntegerStore(OrvAtomicInteger* a, OrvInt v) { Ref(a).store(v, std::memory_order_seq_cst); }

OrvInt OrvAtomicIntegerAdd(OrvAtomicInteger* a, OrvInt delta)
{
    // fetch_add on a signed atomic_ref wraps (two's complement), as the header says.
    return static_cast<OrvInt>(static_cast<OrvUint32>(Ref(a).fetch_add(delta, std::memory_order_seq_cst)) +
                               static_cast<OrvUint32>(delta));
}

OrvInt OrvAtomicIntegerIncrement(OrvAtomicInteger* a) { return OrvAtomicIntegerAdd(a, 1); }

OrvInt OrvAtomicIntegerDecrement(OrvAtomicInteger* a) { return OrvAtomicIntegerAdd(a, -1); }
