// Field access of date-time values: reading, setting and adding to one field through
// a selector, including the derived day of week, week numbers and day of year.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimeInternal.hpp"
#include "Calendar/OrvDateTimeWeeks.hpp"

#include <cstddef>
#include <limits>

namespace {

using namespace orv::cal;
using orv::detail::Normalize;
using orv::detail::SelectorIndex;

constexpr OrvInt64 kIntMin = std::numeric_limits<OrvInt>::min();
constexpr OrvInt64 kIntMax = std::numeric_limits<OrvInt>::max();

constexpr bool FitsInt(OrvInt64 v) { return v >= kIntMin && v <= kIntMax; }

// Where in the record the member a selector sets or adds to lies: the time fields and
// the date fields; every derived field adds whole days to the day of month.
constexpr std::size_t kMemberOffset[ORV_DATETIMEFIELD_DayOfYear + 1] = {
    offsetof(OrvDateTime, nanosec),  offsetof(OrvDateTime, sec),      offsetof(OrvDateTime, min),
    offsetof(OrvDateTime, hour),     offsetof(OrvDateTime, monthDay), offsetof(OrvDateTime, monthDay),
    offsetof(OrvDateTime, month),    offsetof(OrvDateTime, year),     offsetof(OrvDateTime, monthDay),
    offsetof(OrvDateTime, monthDay), offsetof(OrvDateTime, monthDay),
};

// The member of a selector up to ORV_DATETIMEFIELD_DayOfYear: a table look-up instead
// of a jump per selector.
OrvInt* AddTarget(OrvDateTime* d, OrvDateTimeField f)
{
    return reinterpret_cast<OrvInt*>(reinterpret_cast<char*>(d) + kMemberOffset[SelectorIndex(f)]);
}

// The reading of d with `amount` added to the field that f adds to, carried into range
// in 64 bits. False when the year it lands in does not fit an OrvInt.
bool CarryWide(const OrvDateTime* d, OrvDateTimeField f, OrvInt64 amount, Reading* out)
{
    Reading r{d->year, d->month, d->monthDay, d->hour, d->min, d->sec, d->nanosec};
    switch (f) {
    case ORV_DATETIMEFIELD_Nanosecond: r.nanosecond += amount; break;
    case ORV_DATETIMEFIELD_Second: r.second += amount; break;
    case ORV_DATETIMEFIELD_Minute: r.minute += amount; break;
    case ORV_DATETIMEFIELD_Hour: r.hour += amount; break;
    case ORV_DATETIMEFIELD_Month: r.month += amount; break;
    case ORV_DATETIMEFIELD_Year: r.year += amount; break;
    default: r.day += amount; break; // |amount| <= 7 * 2^31
    }
    CarryReading(&r); // every field below 2^35 in magnitude
    if (!FitsInt(r.year)) return false;
    *out = r;
    return true;
}

} // namespace

OrvInt OrvDateTimeGetField(const OrvDateTime* d, OrvDateTimeField f)
{
    if (!Normalize(d)) return -1;
    switch (f) {
    case ORV_DATETIMEFIELD_Nanosecond: return d->nanosec;
    case ORV_DATETIMEFIELD_Second: return d->sec;
    case ORV_DATETIMEFIELD_Minute: return d->min;
    case ORV_DATETIMEFIELD_Hour: return d->hour;
    case ORV_DATETIMEFIELD_DayOfWeek: return orv::detail::OrvDateTimeCalculateDayOfWeek(d);
    case ORV_DATETIMEFIELD_DayOfMonth: return d->monthDay;
    case ORV_DATETIMEFIELD_Month: return d->month;
    case ORV_DATETIMEFIELD_Year: return d->year;
    case ORV_DATETIMEFIELD_WeekOfMonth: return orv::detail::OrvDateTimeCalculateWeekOfMonth(d);
    case ORV_DATETIMEFIELD_WeekOfYear: return orv::detail::OrvDateTimeCalculateWeekOfYear(d);
    case ORV_DATETIMEFIELD_DayOfYear: return OrvDateTimeCalculateDayOfYear(d);
    }
    return -1;
}

OrvBool OrvDateTimeSetField(OrvDateTime* d, OrvDateTimeField f, OrvInt val)
{
    if (SelectorIndex(f) > ORV_DATETIMEFIELD_Year || f == ORV_DATETIMEFIELD_DayOfWeek) return ORV_FALSE;
    *AddTarget(d, f) = val;
    // The raw number is the authority now; the next reader carries it into range and
    // asks the zone for the offset of the new local reading.
    d->normalized = ORV_FALSE;
    d->offset = ORV_TIME_INVALID;
    return ORV_TRUE;
}

OrvBool OrvDateTimeAddToField(OrvDateTime* d, OrvDateTimeField f, OrvInt inc)
{
    if (inc == 0) return ORV_TRUE;
    if (!Normalize(d)) return ORV_FALSE;
    if (SelectorIndex(f) > ORV_DATETIMEFIELD_DayOfYear) return ORV_FALSE;

    const bool weeks = f == ORV_DATETIMEFIELD_WeekOfMonth || f == ORV_DATETIMEFIELD_WeekOfYear;
    const OrvInt64 amount = weeks ? OrvInt64{inc} * kDaysPerWeek : OrvInt64{inc};
    OrvInt* const target = AddTarget(d, f);

    // The sum is carried in 64 bits first, to refuse a year beyond 32 bits before
    // anything changes. When the plain sum fits the field, the field takes it and the
    // normalization below carries it; otherwise the reading is stored already carried.
    Reading w;
    if (!CarryWide(d, f, amount, &w)) return ORV_FALSE;
    const OrvInt64 sum = *target + amount;
    if (FitsInt(sum)) {
        *target = static_cast<OrvInt>(sum);
    } else {
        orv::detail::StoreReading(d, w);
    }

    // Time fields keep the offset in force, so the instant moves by exactly the amount
    // added; date fields keep the local reading and take the zone's offset for it.
    if (SelectorIndex(f) >= ORV_DATETIMEFIELD_DayOfWeek) d->offset = ORV_TIME_INVALID;
    d->normalized = ORV_FALSE;
    return OrvDateTimeNormalizeAndSetWall(d);
}
