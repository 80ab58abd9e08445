// The process-wide fixed zones the text readers put values in: an uncounted handle for
// every offset of whole seconds within a day, so that reading "+02:00" or "+00:53:28"
// neither allocates nor counts.
#ifndef ORV_SRC_TIMEZONE_SHAREDFIXEDZONES_HPP
#define ORV_SRC_TIMEZONE_SHAREDFIXEDZONES_HPP

#include "Orv/Calendar/OrvTimezone.h"

#include <cstddef>

namespace orv::detail {

// Offsets with seconds that can be in use at once, process-wide (the database has a
// few hundred distinct local mean times).
inline constexpr std::size_t kSecondsZonePoolSize = 1024;

// The shared zone of a whole-second offset below one day in magnitude:
// OrvFixedTimezoneGetShared's for whole minutes, else a slot of the pool, claimed for
// good on first use. Null for any other offset, or when the pool is full.
const OrvTimezone* SharedFixedZone(OrvTime offset);

} // namespace orv::detail

#endif // ORV_SRC_TIMEZONE_SHAREDFIXEDZONES_HPP
