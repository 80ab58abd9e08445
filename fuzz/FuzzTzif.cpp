// Arbitrary bytes into the zone readers: as a whole TZif file, and as a POSIX TZ rule.
// Whatever is accepted must answer both offset queries at assorted instants and
// readings, and give back every byte it allocated.
#include "Timezone/TzdbZone.hpp"
#include "Timezone/TzifFile.hpp"

#include <cstdint>
#include <cstdlib>
#include <string>

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

    const std::string text(reinterpret_cast<const char*>(data), size);
    orv::tzdb::PosixRule rule;
    const bool parsed = orv::tzdb::ParsePosixRule(text.data(), text.size(), &rule);
    if (text.find('\0') == std::string::npos) {
        const bool built = OrvTzdbTimezoneConstructPosix(&tz, text.c_str(), &counter.base) != nullptr;
        if (built != parsed) std::abort(); // only allocation could make them differ, and it does not fail here
        if (built) {
            Exercise(&tz);
            OrvTimezoneDestruct(&tz);
        }
    }
    if (counter.live != 0) std::abort();
    return 0;
}
