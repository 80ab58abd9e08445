// Pure calendar kernels of the library: the proleptic Gregorian calendar, floor
// division and carrying, day counts from 1970-01-01, weekdays, and the conversions
// between local readings (field by field) and seconds or nanoseconds since the epoch.
// No zone, no log, no allocation; everything is constexpr so the tests can check it at
// compile time as well. Every calendar formula of src/ is written here once.
//
// Ranges are written beside the intermediates. "days" always means days since
// 1970-01-01 (day 0, a Thursday).
#ifndef ORV_SRC_CALENDAR_CALENDARMATH_HPP
#define ORV_SRC_CALENDAR_CALENDARMATH_HPP

#include "Orv/Os/OrvTime.h"
#include "Orv/Utils/SysDep/OrvBaseTypes.h"

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace orv::cal {

// The units, from the public nanosecond constants.
inline constexpr OrvInt kNanosecondsPerSecond = ORV_TIME_NANOSECONDS_PER_SECOND;
inline constexpr OrvInt kSecondsPerMinute = ORV_TIME_NANOSECONDS_PER_MINUTE / ORV_TIME_NANOSECONDS_PER_SECOND;
inline constexpr OrvInt kSecondsPerHour = ORV_TIME_NANOSECONDS_PER_HOUR / ORV_TIME_NANOSECONDS_PER_SECOND;
inline constexpr OrvInt kSecondsPerDay = ORV_TIME_NANOSECONDS_PER_DAY / ORV_TIME_NANOSECONDS_PER_SECOND;
inline constexpr OrvInt kMinutesPerHour = kSecondsPerHour / kSecondsPerMinute;
inline constexpr OrvInt kHoursPerDay = kSecondsPerDay / kSecondsPerHour;
inline constexpr OrvInt kDaysPerWeek = 7;
inline constexpr OrvInt kMonthsPerYear = 12;
inline constexpr OrvInt kDaysPer400Years = 146097;
// Days from 0000-03-01 to 1970-01-01 (the shifted-year epoch of the day-count kernels).
inline constexpr OrvInt kDaysFromMarch0000 = 719468;
// Whole seconds since the epoch whose first nanosecond is an OrvTime: the quotients of
// the 64-bit limits by 10^9, rounded towards zero (+-9223372036).
inline constexpr OrvInt64 kMaxInstantSecond = INT64_MAX / kNanosecondsPerSecond;
inline constexpr OrvInt64 kMinInstantSecond = INT64_MIN / kNanosecondsPerSecond;

// Indexed [IsLeap(year)][month - 1].
inline constexpr OrvInt monthLengths[2][12] = {
    {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
    {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
};
// Days of the year before the first of each month, indexed like monthLengths.
inline constexpr OrvInt monthDays[2][12] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335},
};

// Gregorian leap rule for every year, negative years included (exact divisibility):
// 4 | y, and of the century years (25 | y) only those with 16 | y, which are the ones
// that 400 divides. Two masks and one division by a constant.
template <std::signed_integral T>
constexpr OrvBool IsLeap(T year)
{
    const auto bits = static_cast<std::make_unsigned_t<T>>(year); // two's complement: masks test divisibility
    return ((bits & 3) == 0 && ((bits & 15) == 0 || year % 25 != 0)) ? ORV_TRUE : ORV_FALSE;
}

template <std::signed_integral T>
constexpr OrvInt YearLength(T year)
{
    return IsLeap(year) ? 366 : 365;
}

// Days of month 1..12 of a year. The year's type is a template parameter here and below,
// so that 32-bit years keep 32-bit divisions.
template <std::signed_integral T>
constexpr OrvInt MonthLength(T year, OrvInt month)
{
    return monthLengths[IsLeap(year)][month - 1];
}

// Whether day is a day of month 1..12 of year.
template <std::signed_integral T>
constexpr bool DayInMonth(T year, OrvInt month, OrvInt64 day)
{
    return day >= 1 && day <= MonthLength(year, month);
}

// Day of the year, 1 = 1 January, of a month 1..12 and any day (366 at most for a day
// of the month; a day beyond it counts on, in 64 bits).
template <std::signed_integral T>
constexpr OrvInt64 DayOfYear(T year, OrvInt month, OrvInt64 day)
{
    return monthDays[IsLeap(year)][month - 1] + day;
}

struct MonthDay {
    OrvInt month; // 1..12
    OrvInt day;   // 1..31
};

// Month and day of day of the year yday, 1 .. YearLength(year).
template <std::signed_integral T>
constexpr MonthDay MonthDayOfYear(T year, OrvInt yday)
{
    const OrvInt* const row = monthDays[IsLeap(year)];
    OrvInt month = 12;
    while (row[month - 1] >= yday) --month;
    return {month, yday - row[month - 1]};
}

// Seconds of hours, minutes and seconds, any values: T wide enough for the sum.
template <std::integral T>
constexpr T SecondsFromHms(T hour, T minute, T second)
{
    return hour * T{kSecondsPerHour} + minute * T{kSecondsPerMinute} + second;
}

template <std::integral T>
struct Hms {
    T hour, minute, second;
};

// Hours (any number of them), minutes 0..59 and seconds 0..59 of secs >= 0 seconds.
template <std::integral T>
constexpr Hms<T> HmsFromSeconds(T secs)
{
    return {secs / T{kSecondsPerHour}, secs / T{kSecondsPerMinute} % T{kMinutesPerHour}, secs % T{kSecondsPerMinute}};
}

// floor(a / b) for b > 0, with *mod = a - b * floor(a / b) in [0, b - 1]: the truncating
// quotient, less one when the remainder is negative. Written as selects, which leave
// the compiler free to use conditional moves where the sign is unpredictable (instants
// are as often negative as not).
template <std::signed_integral T>
constexpr T DivDownAndMod(T a, T b, T* mod)
{
    const T q = a / b;
    const T r = a % b;
    const bool negative = r < 0;
    *mod = negative ? r + b : r;
    return negative ? q - 1 : q;
}

// floor(a / b) for b > 0.
template <std::signed_integral T>
constexpr T DivDown(T a, T b)
{
    T mod;
    return DivDownAndMod(a, b, &mod);
}

// a - b * floor(a / b) for b > 0, in [0, b - 1].
template <std::signed_integral T>
constexpr T FloorMod(T a, T b)
{
    T mod;
    DivDownAndMod(a, b, &mod);
    return mod;
}

// Carries whole multiples of base from *smaller into *larger, leaving *smaller in
// [0, base - 1]. The caller picks T wide enough that *larger cannot overflow.
template <std::signed_integral T>
constexpr void NormalizeAndCarry(T* larger, T* smaller, T base)
{
    T largerDelta = DivDownAndMod(*smaller, base, smaller);
    *larger += largerDelta;
}

// Carries whole years from any month into *year and returns the month, 1..12: month 13
// is January of the next year, month 0 December of the year before.
constexpr OrvInt CarryMonthIntoYear(OrvInt64* year, OrvInt64 month)
{
    OrvInt64 month0 = month - 1;
    NormalizeAndCarry<OrvInt64>(year, &month0, kMonthsPerYear);
    return static_cast<OrvInt>(month0) + 1;
}

// ---- day counts ----------------------------------------------------------------------
//
// The fast forms count days from 1 March of year -kShiftYears, a computational calendar
// in which years start in March (so the leap day is the last day of its year) and every
// supported count is a positive 32-bit number. Centuries, years and months then fall
// out of multiply-and-shift steps (Neri and Schneider's Euclidean affine functions)
// instead of loops or general divisions. Each step's constants are exact over the
// whole domain the step sees, which every 400-year cycle covers once: the sweep of
// every OrvTime day (1677..2262) in the tests checks them all.

// A whole number of 400-year cycles, so the shifted calendar keeps the leap pattern.
inline constexpr OrvInt64 kShiftYears = 1468000;                                 // 3670 * 400
inline constexpr OrvInt64 kShiftDays = 3670 * OrvInt64{kDaysPer400Years} + kDaysFromMarch0000; // 536895458
// Years the fast forms serve. Their 32-bit intermediates stay in range, and the forms
// exact, for years -1467999 .. 10291220 (DaysFromCivilFast) and for day counts
// -536895458 .. 536846365, dates -1468000-03-01 .. 1471805-06-05 (CivilFromDaysFast):
// both cover +-kFastYearLimit with room to spare.
inline constexpr OrvInt64 kFastYearLimit = 1000000;

// Days from 1970-01-01 to the first of month m (1..12) of year y, |y| <= kFastYearLimit.
constexpr OrvInt64 DaysFromCivilFast(OrvInt64 y, OrvInt m)
{
    const std::uint32_t j = m < 3;                                                 // Jan, Feb: end of the year before
    const std::uint32_t y1 = static_cast<std::uint32_t>(y + kShiftYears) - j;    // [468000, 2468000]
    const std::uint32_t m1 = static_cast<std::uint32_t>(m) + 12 * j;               // [3, 14]
    const std::uint32_t century = y1 / 100;
    // 1461 / 4 = 365.25 days a year, less the century years, plus every fourth of them.
    const std::uint32_t yearDays = static_cast<std::uint32_t>(1461ull * y1 / 4) - century + century / 4;
    // (979 * m1 - 2919) / 32 = floor((153 * m1 - 457) / 5), the days from 1 March to the
    // first of month m1 (153 days every 5 months): exact for m1 in [3, 33].
    const std::uint32_t monthDaysBefore = (979 * m1 - 2919) / 32;                  // [0, 337]
    return static_cast<OrvInt64>(yearDays + monthDaysBefore) - kShiftDays;
}

// Days from 1970-01-01 to year-month-day, month 1..12, any day (a day outside the month
// counts on from the first of the month). Exact for |y| < 2^40.
constexpr OrvInt64 DaysFromCivil(OrvInt64 y, OrvInt m, OrvInt64 d)
{
    if (y >= -kFastYearLimit && y <= kFastYearLimit) [[likely]]
        return DaysFromCivilFast(y, m) + (d - 1);
    y -= m <= 2;                                                      // years start in March
    const OrvInt64 era = DivDown<OrvInt64>(y, 400);
    const OrvInt64 yoe = y - era * 400;                               // [0, 399]
    const OrvInt64 mp = m > 2 ? m - 3 : m + 9;                        // [0, 11], March = 0
    const OrvInt64 doy = (153 * mp + 2) / 5;                          // [0, 337] before day d
    const OrvInt64 doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;       // [0, 146096]
    return era * kDaysPer400Years + doe - kDaysFromMarch0000 + (d - 1);
}

// Days from 1970-01-01 to year-month-day with any month (carried into the year first)
// and any day. Exact for |year| < 2^39.
constexpr OrvInt64 DaysFromFields(OrvInt64 year, OrvInt64 month, OrvInt64 day)
{
    const OrvInt m = CarryMonthIntoYear(&year, month);
    return DaysFromCivil(year, m, day);
}

// 0 (Sunday) .. 6 (Saturday) of a day count, |days| < 2^61; day 0, 1970-01-01, is a
// Thursday. A whole number of weeks added makes the count positive, so the remainder
// is an unsigned one.
constexpr OrvInt WeekdayOfDays(OrvInt64 days)
{
    constexpr OrvInt64 kWeeks = OrvInt64{kDaysPerWeek} << 59; // 7 * 2^59: the sum stays in (0, 2^63)
    return static_cast<OrvInt>(static_cast<std::uint64_t>(days + kWeeks + 4) % kDaysPerWeek);
}

struct CivilDate {
    OrvInt year;
    OrvInt month; // 1..12
    OrvInt day;   // 1..31
};

// Date of a day count whose year is within kFastYearLimit, in 32-bit arithmetic.
constexpr CivilDate CivilFromDaysFast(OrvInt64 days)
{
    const std::uint32_t n = static_cast<std::uint32_t>(days + kShiftDays);        // days since the shifted epoch
    const std::uint32_t n1 = 4 * n + 3;
    const std::uint32_t century = n1 / kDaysPer400Years;                            // centuries
    const std::uint32_t dayOfCentury = n1 % kDaysPer400Years / 4;                   // [0, 36524]
    // Years of 1461 / 4 days: 2939745 / 2^32 approximates 1 / 1461, so the high word of
    // the product is n2 / 1461 and the low word, divided back by 2939745, n2 % 1461.
    // Exact for n2 < 28825529; here n2 <= 146099.
    const std::uint32_t n2 = 4 * dayOfCentury + 3;
    const std::uint64_t u2 = 2939745ull * n2;
    const std::uint32_t yearOfCentury = static_cast<std::uint32_t>(u2 >> 32);      // [0, 99]
    const std::uint32_t dayOfYear = static_cast<std::uint32_t>(u2) / 2939745 / 4;  // [0, 365], 0 = 1 March
    // Months of 153 / 5 days from March = 3: (2141 * dayOfYear + 197913) / 2^16
    // approximates (5 * dayOfYear + 461) / 153 (2141 / 2^16 ~ 5 / 153 and
    // 197913 / 2^16 ~ 461 / 153), so the high half is the month and the low half,
    // divided back by 2141, the day of that month less one. Exact for dayOfYear < 734;
    // here dayOfYear <= 365.
    const std::uint32_t n3 = 2141 * dayOfYear + 197913;
    const std::uint32_t month = n3 >> 16;                                           // [3, 14]
    const std::uint32_t day = (n3 & 0xFFFF) / 2141;                                 // [0, 30]
    const std::uint32_t j = dayOfYear >= 306;                                       // January or February
    const OrvInt64 year = OrvInt64{100 * century + yearOfCentury + j} - kShiftYears;
    return {static_cast<OrvInt>(year), static_cast<OrvInt>(j ? month - 12 : month), static_cast<OrvInt>(day + 1)};
}

// The dates an OrvTime can reach: days in [-106752, 106751] (1677-09-21 .. 2262-04-11).
constexpr CivilDate CivilFromInstantDays(OrvInt days) { return CivilFromDaysFast(days); }

struct CivilDate64 {
    OrvInt64 year;
    OrvInt month; // 1..12
    OrvInt day;   // 1..31
};

// Inverse of DaysFromCivil for any day count with |days| < 2^50.
constexpr CivilDate64 CivilFromDays(OrvInt64 days)
{
    constexpr OrvInt64 kFastDayLimit = 365 * (kFastYearLimit - 1);
    if (days >= -kFastDayLimit && days <= kFastDayLimit) [[likely]] {
        const CivilDate date = CivilFromDaysFast(days);
        return {date.year, date.month, date.day};
    }
    const OrvInt64 z = days + kDaysFromMarch0000;
    const OrvInt64 era = DivDown<OrvInt64>(z, kDaysPer400Years);
    const OrvInt64 doe = z - era * kDaysPer400Years;                            // [0, 146096]
    // Less the leap days before doe (one every 1460 days, none every 36524 days, one
    // again on the cycle's last day) leaves 365-day years.
    const OrvInt64 yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365; // [0, 399]
    const OrvInt64 doy = doe - (365 * yoe + yoe / 4 - yoe / 100);               // [0, 365]
    const OrvInt64 mp = (5 * doy + 2) / 153;                                    // [0, 11]
    const OrvInt day = static_cast<OrvInt>(doy - (153 * mp + 2) / 5 + 1);      // [1, 31]
    const OrvInt month = static_cast<OrvInt>(mp < 10 ? mp + 3 : mp - 9);       // [1, 12]
    return {yoe + era * 400 + (month <= 2), month, day};
}

// The calendar year of a second since the epoch, any 64-bit second.
constexpr OrvInt64 YearOfSecond(OrvInt64 t) { return CivilFromDays(DivDown<OrvInt64>(t, kSecondsPerDay)).year; }

// ---- readings ------------------------------------------------------------------------

// A local reading field by field, month 1-based, in 64 bits so that sums beyond the
// 32-bit fields carry exactly.
struct Reading {
    OrvInt64 year, month, day, hour, minute, second, nanosecond;
    bool operator==(const Reading&) const = default;
};

// Carries every field into range: nanoseconds into seconds, on up to days, months into
// years, then a day outside its month into the date that day count denotes (which is
// where carrying year by year, then month by month, ends). Constant time. Needs every
// field below 2^39 in magnitude.
constexpr void CarryReading(Reading* r)
{
    NormalizeAndCarry<OrvInt64>(&r->second, &r->nanosecond, kNanosecondsPerSecond);
    NormalizeAndCarry<OrvInt64>(&r->minute, &r->second, kSecondsPerMinute);
    NormalizeAndCarry<OrvInt64>(&r->hour, &r->minute, kMinutesPerHour);
    NormalizeAndCarry<OrvInt64>(&r->day, &r->hour, kHoursPerDay);
    const OrvInt month = CarryMonthIntoYear(&r->year, r->month);
    r->month = month;
    if (DayInMonth(r->year, month, r->day)) return;
    const CivilDate64 date = CivilFromDays(DaysFromCivil(r->year, month, r->day));
    r->year = date.year;
    r->month = date.month;
    r->day = date.day;
}

// The reading, every field in range, of nanoseconds since 1970-01-01T00:00 local: any
// 64-bit value (dates 1677-09-21 .. 2262-04-11).
constexpr Reading ReadingFromLocalNanoseconds(OrvInt64 localNs)
{
    OrvInt64 nanos;
    const OrvInt64 secs = DivDownAndMod<OrvInt64>(localNs, kNanosecondsPerSecond, &nanos); // [-9223372037, 9223372036]
    OrvInt64 secOfDay;
    const OrvInt64 days = DivDownAndMod<OrvInt64>(secs, kSecondsPerDay, &secOfDay);       // [-106752, 106751]
    const Hms<OrvInt> hms = HmsFromSeconds(static_cast<OrvInt>(secOfDay));
    const CivilDate date = CivilFromInstantDays(static_cast<OrvInt>(days));
    return {date.year, date.month, date.day, hms.hour, hms.minute, hms.second, nanos};
}

// Seconds since 1970-01-01T00:00 of a time of day, any fields, on a day count.
constexpr OrvInt64 LocalSecondsFromDays(OrvInt64 days, OrvInt64 hour, OrvInt64 minute, OrvInt64 second)
{
    return days * kSecondsPerDay + SecondsFromHms(hour, minute, second);
}

// Seconds since 1970-01-01T00:00 of a local reading, every field as it stands (the
// month carried like DaysFromFields, the rest simply summed). |result| < 2^59 for
// 32-bit fields.
constexpr OrvInt64 LocalSecondsFromFields(OrvInt64 year, OrvInt64 month, OrvInt64 day, OrvInt64 hour,
                                          OrvInt64 minute, OrvInt64 second)
{
    return LocalSecondsFromDays(DaysFromFields(year, month, day), hour, minute, second);
}

} // namespace orv::cal

#endif // ORV_SRC_CALENDAR_CALENDARMATH_HPP
