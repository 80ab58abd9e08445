// The library's global UTC zone, as the rest of the library may rely on it: an
// uncounted handle to one static object whose offset is 0 for every instant and every
// local reading, so that callers need not ask it.
#ifndef ORV_SRC_TIMEZONE_GLOBALUTC_HPP
#define ORV_SRC_TIMEZONE_GLOBALUTC_HPP

#include "Orv/Calendar/OrvTimezone.h"

namespace orv::detail {

// The global UTC zone's object.
extern OrvTimezoneImpl* const gGlobalUtcImpl;

// True when tz designates the global UTC zone (the public OrvFixedTimezoneIsGlobalUTC,
// compiled in place).
inline bool IsGlobalUtc(const OrvTimezone* tz) { return tz->impl.ptr == gGlobalUtcImpl; }

} // namespace orv::detail

#endif // ORV_SRC_TIMEZONE_GLOBALUTC_HPP
