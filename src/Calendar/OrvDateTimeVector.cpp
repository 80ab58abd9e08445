// OrvVector_OrvDateTime: the library's vector instantiated for date-time values.
#include "Containers/Vector.hpp"
#include "Calendar/OrvDateTimeElement.hpp"

#include <cstddef>

// The records are public layout: pin them.
static_assert(sizeof(OrvVector_OrvDateTime) == 32);
static_assert(offsetof(OrvVector_OrvDateTime, allocator) == 0);
static_assert(offsetof(OrvVector_OrvDateTime, begin) == 8);
static_assert(offsetof(OrvVector_OrvDateTime, end) == 16);
static_assert(offsetof(OrvVector_OrvDateTime, endBuf) == 24);

ORV_GENERATE_VECTOR(OrvDateTime, orv::detail::DateTimeElement)

static_assert(OrvVectorImpl_OrvDateTime::kMaxSize == 44739242);
