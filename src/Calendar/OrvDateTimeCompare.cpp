// Equality and ordering of date-time values: by instant, and by the calendar fields
// read in UTC when either value has no usable instant.
#include "Calendar/OrvDateTimeInternal.hpp"

namespace {

using orv::detail::Normalize;

enum class Order { Less, Equal, Greater, Unordered };

// Moves a copy of a value from its local reading to UTC: minus the offset, as the part
// under one second and the whole seconds (both carrying the offset's sign); time fields
// keep the copy's offset. A plug-in may give offsets of any size: when the seconds to
// add do not fit an OrvInt (beyond about 68 years), the whole hours go separately.
bool ShiftToUtc(OrvDateTime* copy, OrvTime offset)
{
    const OrvInt64 nanos = offset % ORV_TIME_NANOSECONDS_PER_SECOND; // (-10^9, 10^9)
    const OrvInt64 secs = offset / ORV_TIME_NANOSECONDS_PER_SECOND;  // |secs| < 2^34
    const bool secsFit = secs <= OrvInt64{2147483648} && secs >= -OrvInt64{2147483647}; // -secs fits
    const OrvInt64 hours = secsFit ? 0 : secs / 3600;                                    // |hours| < 2^22
    return OrvDateTimeAddToField(copy, ORV_DATETIMEFIELD_Nanosecond, static_cast<OrvInt>(-nanos)) &&
           OrvDateTimeAddToField(copy, ORV_DATETIMEFIELD_Second, static_cast<OrvInt>(hours * 3600 - secs)) &&
           OrvDateTimeAddToField(copy, ORV_DATETIMEFIELD_Hour, static_cast<OrvInt>(-hours));
}

Order CompareUtcFields(const OrvDateTime* a, const OrvDateTime* b)
{
    const OrvInt fa[] = {a->year, a->month, a->monthDay, a->hour, a->min, a->sec, a->nanosec};
    const OrvInt fb[] = {b->year, b->month, b->monthDay, b->hour, b->min, b->sec, b->nanosec};
    for (int i = 0; i < 7; ++i) {
        if (fa[i] != fb[i]) return fa[i] < fb[i] ? Order::Less : Order::Greater;
    }
    return Order::Equal;
}

// The field path, for pairs in which a value has no usable instant: compare UTC
// readings of copies, so the arguments keep their own fields and zone.
[[gnu::noinline, gnu::cold]] Order CompareByFields(const OrvDateTime* a, const OrvDateTime* b)
{
    OrvDateTime aCopy, bCopy;
    OrvDateTimeConstructCopy(&aCopy, a);
    OrvDateTimeConstructCopy(&bCopy, b);
    Order order = Order::Unordered;
    if (ShiftToUtc(&aCopy, a->offset) && ShiftToUtc(&bCopy, b->offset)) order = CompareUtcFields(&aCopy, &bCopy);
    OrvDateTimeDestruct(&bCopy);
    OrvDateTimeDestruct(&aCopy);
    return order;
}

} // namespace

// Both operations normalize a first, then b whatever a gave; the instant path needs
// both normalizations to succeed and both instants to be representable.
OrvBool OrvDateTimeEqual(const OrvDateTime* a, const OrvDateTime* b)
{
    const bool aOk = Normalize(a);
    const OrvTime aWall = aOk ? a->wallTime : ORV_TIME_INVALID;
    if (Normalize(b) && aWall != ORV_TIME_INVALID && b->wallTime != ORV_TIME_INVALID) {
        return aWall == b->wallTime ? ORV_TRUE : ORV_FALSE;
    }
    return CompareByFields(a, b) == Order::Equal ? ORV_TRUE : ORV_FALSE;
}

OrvBool OrvDateTimeLess(const OrvDateTime* a, const OrvDateTime* b)
{
    const bool aOk = Normalize(a);
    const OrvTime aWall = aOk ? a->wallTime : ORV_TIME_INVALID;
    if (Normalize(b) && aWall != ORV_TIME_INVALID && b->wallTime != ORV_TIME_INVALID) {
        return aWall < b->wallTime ? ORV_TRUE : ORV_FALSE;
    }
    return CompareByFields(a, b) == Order::Less ? ORV_TRUE : ORV_FALSE;
}
