// The element operations the containers are instantiated over for OrvDateTime: copies
// take a zone reference each, destruction drops it, and the order is by instant.
#ifndef ORV_SRC_CALENDAR_ORVDATETIMEELEMENT_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMEELEMENT_HPP

#include "Calendar/OrvDateTimeInternal.hpp"

namespace orv::detail {

struct DateTimeElement {
    using Value = OrvDateTime;
    static OrvDateTime* ConstructCopy(OrvDateTime* d, const OrvDateTime* s) { return OrvDateTimeConstructCopy(d, s); }
    static OrvDateTime* Assign(OrvDateTime* d, const OrvDateTime* s) { return OrvDateTimeAssign(d, s); }
    static void Destruct(OrvDateTime* d) { OrvDateTimeDestruct(d); }
    static bool Less(const OrvDateTime* a, const OrvDateTime* b) { return orv::detail::Less(a, b); }
};

} // namespace orv::detail

#endif // ORV_SRC_CALENDAR_ORVDATETIMEELEMENT_HPP
