// Deterministic zones for tests, built on the public plug-in interface.
//
// A TransitionZone has an initial offset and a list of transitions (instant, offset
// from then on). For a local reading it answers like a real zone database: the offset
// of the first occurrence of a repeated reading, and for a skipped reading the offset
// in force before the change (so 02:30 on a spring-forward night becomes 03:30).
// It can be told to have no answer, for readings or for instants.
#ifndef ORV_TESTS_SUPPORT_TESTZONES_H
#define ORV_TESTS_SUPPORT_TESTZONES_H

#include "Orv/Calendar/OrvTimezone.h"

#include <vector>

namespace orv::test {

inline constexpr OrvTime kHour = ORV_TIME_NANOSECONDS_PER_HOUR;

struct Transition {
    OrvTime at;     // instant, UTC
    OrvTime offset; // offset from `at` on
};

struct TransitionZoneRules {
    OrvTime initialOffset = 0;
    std::vector<Transition> transitions; // ascending
    bool failFields = false;   // getOffsetFromFields answers ORV_TIME_INVALID
    bool failInstants = false; // getOffset answers ORV_TIME_INVALID
};

// Builds a counted zone whose object comes from `a` (new, for the C++ parts) and
// whose count block comes from `a`. deleterCalls, if given, counts deleter runs.
// Returns tz, or null when the allocator fails (nothing leaked).
OrvTimezone* MakeTransitionZone(OrvTimezone* tz, const TransitionZoneRules& rules, OrvAllocator* a,
                                int* deleterCalls = nullptr);

// A zone at +1 h that moves to +2 h at 2024-03-31T01:00Z (local 02:00 -> 03:00,
// 02:xx skipped) and back at 2024-10-27T01:00Z (local 03:00 -> 02:00, 02:xx repeated).
TransitionZoneRules DstRules();

// Instant of a UTC reading (test helper, no zone involved).
OrvTime UtcInstant(int y, int mo, int d, int h = 0, int mi = 0, int s = 0, OrvTime ns = 0);

} // namespace orv::test

#endif
