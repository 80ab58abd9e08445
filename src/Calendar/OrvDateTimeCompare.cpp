// Equality and ordering of date-time values: by instant, and by the calendar fields
// read in UTC when either value has no usable instant.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"

namespace {

using orv::detail::Normalize;

enum class Order { Less, Equal, Greater, Unordered };

// The UTC reading of a value, as days since 1970-01-01 and nanoseconds into the day.
struct UtcKey {
    OrvInt64 days;
    OrvInt64 nanos;
};

// The normalized local reading less the offset, in 64-bit parts: a plug-in may give
// offsets of any size (|seconds| < 2^34), and the UTC date may leave the 32-bit years
// (2147483647-12-31T23:00 at -02:00), where the fields themselves could not hold it.
UtcKey UtcKeyOf(const OrvDateTime* d)
{
    using namespace orv::cal;
    const OrvInt64 secs = SecondsFromHms<OrvInt64>(d->hour, d->min, d->sec) - d->offset / kNanosecondsPerSecond;
    const OrvInt64 nanos = d->nanosec - d->offset % kNanosecondsPerSecond; // (-10^9, 2 * 10^9)
    const OrvInt64 daySecs = secs + DivDown<OrvInt64>(nanos, kNanosecondsPerSecond);
    return {DaysFromFields(d->year, d->month, d->monthDay) + DivDown<OrvInt64>(daySecs, kSecondsPerDay),
            FloorMod<OrvInt64>(daySecs, kSecondsPerDay) * kNanosecondsPerSecond +
                FloorMod<OrvInt64>(nanos, kNanosecondsPerSecond)};
}

// The field path, for pairs in which a value has no usable instant: compare the UTC
// readings. Unordered when a zone had no offset (the value is then not normalized, or
// its offset is ORV_TIME_INVALID).
[[gnu::noinline, gnu::cold]] Order CompareByFields(const OrvDateTime* a, const OrvDateTime* b)
{
    if (!a->normalized || !b->normalized || a->offset == ORV_TIME_INVALID || b->offset == ORV_TIME_INVALID)
        return Order::Unordered;
    const UtcKey ka = UtcKeyOf(a), kb = UtcKeyOf(b);
    if (ka.days != kb.days) return ka.days < kb.days ? Order::Less : Order::Greater;
    if (ka.nanos != kb.nanos) return ka.nanos < kb.nanos ? Order::Less : Order::Greater;
    return Order::Equal;
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
