// An OrvAllocator for tests: counts calls, remembers every live block with its size,
// reports blocks returned with a wrong size, and can be told to fail the n-th
// allocation.
#ifndef ORV_TESTS_SUPPORT_COUNTINGALLOCATOR_H
#define ORV_TESTS_SUPPORT_COUNTINGALLOCATOR_H

#include "Orv/Utils/OrvAllocator.h"

#include <cstddef>
#include <map>
#include <vector>

namespace orv::test {

class CountingAllocator {
public:
    CountingAllocator();
    ~CountingAllocator();
    CountingAllocator(const CountingAllocator&) = delete;
    CountingAllocator& operator=(const CountingAllocator&) = delete;

    OrvAllocator* get() { return &allocator_; }

    // The n-th allocation from now on (1-based) returns null; 0 disables.
    void failAt(std::size_t n) { failAt_ = n == 0 ? 0 : allocations_ + n; }
    // Every allocation from now on fails (true) or not (false).
    void failAll(bool fail) { failAll_ = fail; }

    std::size_t allocations() const { return allocations_; }     // calls, failed ones included
    std::size_t deallocations() const { return deallocations_; }
    std::size_t liveBlocks() const { return live_.size(); }
    std::size_t liveBytes() const;
    std::size_t badDeallocations() const { return badDeallocations_; } // unknown block or wrong size
    // Sizes of every successful allocation and every deallocation, in order.
    const std::vector<OrvSizeT>& allocatedSizes() const { return allocatedSizes_; }
    const std::vector<OrvSizeT>& deallocatedSizes() const { return deallocatedSizes_; }

private:
    static OrvVoidPtr Allocate(OrvAllocator* a, OrvSizeT size);
    static void Deallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size);

    OrvAllocator allocator_;
    std::map<void*, OrvSizeT> live_;
    std::vector<OrvSizeT> allocatedSizes_;
    std::vector<OrvSizeT> deallocatedSizes_;
    std::size_t allocations_ = 0;
    std::size_t deallocations_ = 0;
    std::size_t badDeallocations_ = 0;
    std::size_t failAt_ = 0;
    bool failAll_ = false;
};

} // namespace orv::test

#endif
