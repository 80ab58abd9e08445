// Allocator dispatch and the process-wide default allocator over malloc and free.
#include "Orv/Utils/OrvAllocator.h"

#include <cstdint>
#include <cstdlib>

OrvVoidPtr OrvAllocatorAllocate(OrvAllocator* a, OrvSizeT size) { return a->allocate(a, size); }

void OrvAllocatorDeallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size) { a->deallocate(a, p, size); }

namespace {

// PTRDIFF_MAX keeps every block addressable with signed differences.
constexpr OrvSizeT kDefaultMaxSize = static_cast<OrvSizeT>(PTRDIFF_MAX);

OrvVoidPtr DefaultAllocate(OrvAllocator*, OrvSizeT size)
{
    if (size == 0 || size > kDefaultMaxSize) return nullptr;
    return std::malloc(static_cast<std::size_t>(size));
}

void DefaultDeallocate(OrvAllocator*, OrvVoidPtr p, OrvSizeT) { std::free(p); }

OrvAllocator gDefaultAllocator = {DefaultAllocate, DefaultDeallocate, kDefaultMaxSize, nullptr};

} // namespace

OrvAllocator* OrvAllocatorGetDefault(void) { return &gDefaultAllocator; }
