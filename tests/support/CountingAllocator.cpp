#include "support/CountingAllocator.h"

#include <cstdlib>

namespace orv::test {

CountingAllocator::CountingAllocator() : allocator_{Allocate, Deallocate, ~OrvSizeT{0}, this} {}

CountingAllocator::~CountingAllocator()
{
    for (auto& [p, size] : live_) std::free(p);
}

std::size_t CountingAllocator::liveBytes() const
{
    std::size_t n = 0;
    for (const auto& [p, size] : live_) n += size;
    return n;
}

OrvVoidPtr CountingAllocator::Allocate(OrvAllocator* a, OrvSizeT size)
{
    auto* self = static_cast<CountingAllocator*>(a->userData);
    ++self->allocations_;
    if (self->failAll_ || self->allocations_ == self->failAt_ || size == 0) return nullptr;
    void* p = std::malloc(size);
    if (p == nullptr) return nullptr;
    self->live_[p] = size;
    self->allocatedSizes_.push_back(size);
    return p;
}

void CountingAllocator::Deallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size)
{
    auto* self = static_cast<CountingAllocator*>(a->userData);
    ++self->deallocations_;
    self->deallocatedSizes_.push_back(size);
    auto it = self->live_.find(p);
    if (it == self->live_.end() || it->second != size) {
        ++self->badDeallocations_;
        return; // leave it: a double free or a wrong size must not crash the test
    }
    self->live_.erase(it);
    std::free(p);
}

} // namespace orv::test
