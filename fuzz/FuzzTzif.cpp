// Arbitrary bytes into the zone-file reader. Whatever it accepts must answer both offset
// queries at assorted instants and readings, and give back every byte it allocated.
// (Rules alone: FuzzPosixRule.cpp.)
#include "Timezone/TzdbZone.hpp"
#include "Timezone/TzifFile.hpp"

#include <cstdint>
#include <cstdlib>
#include <initializer_list>

namespace {

// Counts live bytes, so a leak aborts the run at once rather than at exit.
struct Counter {
    OrvAllocator base;
    std::int64_t live;
};

OrvVoidPtr Allocate(OrvAllocator* a, OrvSizeT size)
{
    reinterpret_cast<Counter*>(a)->live += static_cast<std::int64_t>(size);
    return std::malloc(size);
}

void Deallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size)
{
    reinterpret_cast<Counter*>(a)->live -= static_cast<std::int64_t>(size);
    std::free(p);
}

void Exercise(OrvTimezone* tz)
{
    constexpr OrvTime kInstants[] = {INT64_MIN, -2208988800000000000, -1, 0, 1711846800000000000,
                                     4102444800000000000, INT64_MAX - 1};
    for (OrvTime t : kInstants) {
        const OrvTime off = OrvTimezoneGetOffset(tz, t);
        if (off == ORV_TIME_INVALID || off > 26 * ORV_TIME_NANOSECONDS_PER_HOUR ||
            off < -26 * ORV_TIME_NANOSECONDS_PER_HOUR)
            std::abort();
    }
    for (OrvInt year : {1677, 1900, 2024, 2262, 9999}) {
        if (OrvTimezoneGetOffsetFromFields(tz, year, 3, 31, 2, 30, 0, 0) == ORV_TIME_INVALID) std::abort();
        OrvTzdbLookup r;
        if (!OrvTzdbTimezoneLookup(tz, year, 10, 27, 2, 30, 0, &r)) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Counter counter{{Allocate, Deallocate, SIZE_MAX, nullptr}, 0};
    OrvTimezone tz;
    if (orv::tzdb::ConstructFromBytes(&tz, data, size, "fuzz", &counter.base) != nullptr) {
        Exercise(&tz);
        OrvTimezoneDestruct(&tz);
    }
    if (counter.live != 0) std::abort();
    return 0;
}
