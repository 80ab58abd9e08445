// Pure calendar kernels of the date-time module: the proleptic Gregorian calendar, floor
// division and carrying, day counts from 1970-01-01. No zone, no log, no allocation;
// everything is constexpr so the tests can check it at compile time as well.
//
// Ranges are written beside the intermediates. "days" always means days since
// 1970-01-01 (day 0, a Thursday).
#ifndef ORV_SRC_CALENDAR_CALENDARMATH_HPP
#define ORV_SRC_CALENDAR_CALENDARMATH_HPP

#include "Orv/Os/OrvTime.h"
#include "Orv/Utils/SysDep/OrvBaseTypes.h"

#include <concepts>
#include <cstdint>

namespace orv::cal {

inline constexpr OrvInt kSecondsPerMinute = 60;
inline constexpr OrvInt kMinutesPerHour = 60;
inline constexpr OrvInt kHoursPerDay = 24;
inline constexpr OrvInt kMonthsPerYear = 12;
inline constexpr OrvInt kSecondsPerDay = 86400;
inline constexpr OrvInt kNanosecondsPerSecond = 1000000000;
inline constexpr OrvInt kDaysPer400Years = 146097;
// Days from 0000-03-01 to 1970-01-01 (the shifted-year epoch of the day-count kernels).
inline constexpr OrvInt kDaysFromMarch0000 = 719468;

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

// Gregorian leap rule for every year, negative years included (exact divisibility).
template <std::signed_integral T>
constexpr OrvBool IsLeap(T year)
{
    return (year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)) ? ORV_TRUE : ORV_FALSE;
}

template <std::signed_integral T>
constexpr OrvInt YearLength(T year)
{
    return IsLeap(year) ? 366 : 365;
}

// floor(a / b) for b > 0: the truncating quotient, less one when a is negative and
// not a multiple of b.
template <std::signed_integral T>
constexpr T DivDown(T a, T b)
{
    T q = a / b;
    return (a % b != 0 && a < 0) ? q - 1 : q;
}

// floor(a / b) for b > 0, with *mod = a - b * floor(a / b) in [0, b - 1].
template <std::signed_integral T>
constexpr T DivDownAndMod(T a, T b, T* mod)
{
    T q = a / b;
    T r = a % b;
    if (r < 0) {
        r += b;
        --q;
    }
    *mod = r;
    return q;
}

// Carries whole multiples of base from *smaller into *larger, leaving *smaller in
// [0, base - 1]. The caller picks T wide enough that *larger cannot overflow.
template <std::signed_integral T>
constexpr void NormalizeAndCarry(T* larger, T* smaller, T base)
{
    T largerDelta = DivDownAndMod(*smaller, base, smaller);
    *larger += largerDelta;
}

// Days from 1970-01-01 to 1 January of 1970 + y (negative before 1970).
constexpr OrvInt64 EpochYearDays(OrvInt64 y)
{
    return 365 * y + DivDown<OrvInt64>(y + 1, 4) - DivDown<OrvInt64>(y + 69, 100) + DivDown<OrvInt64>(y + 369, 400);
}

// Days from 1970-01-01 to year-month-day, month 1..12, any day (a day outside the month
// counts on from the first of the month). Year |y| < 2^40 keeps everything exact.
constexpr OrvInt64 DaysFromCivil(OrvInt64 y, OrvInt m, OrvInt64 d)
{
    y -= m <= 2;                                                      // years start in March
    const OrvInt64 era = DivDown<OrvInt64>(y, 400);
    const OrvInt64 yoe = y - era * 400;                               // [0, 399]
    const OrvInt64 mp = m > 2 ? m - 3 : m + 9;                        // [0, 11], March = 0
    const OrvInt64 doy = (153 * mp + 2) / 5;                          // [0, 337] before day d
    const OrvInt64 doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;       // [0, 146096]
    return era * kDaysPer400Years + doe - kDaysFromMarch0000 + (d - 1);
}

struct CivilDate64 {
    OrvInt64 year;
    OrvInt month; // 1..12
    OrvInt day;   // 1..31
};

// Inverse of DaysFromCivil for any day count with |days| < 2^50.
constexpr CivilDate64 CivilFromDays(OrvInt64 days)
{
    const OrvInt64 z = days + kDaysFromMarch0000;
    const OrvInt64 era = DivDown<OrvInt64>(z, kDaysPer400Years);
    const OrvInt64 doe = z - era * kDaysPer400Years;                         // [0, 146096]
    const OrvInt64 yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365; // [0, 399]
    const OrvInt64 doy = doe - (365 * yoe + yoe / 4 - yoe / 100);            // [0, 365]
    const OrvInt64 mp = (5 * doy + 2) / 153;                                 // [0, 11]
    const OrvInt day = static_cast<OrvInt>(doy - (153 * mp + 2) / 5 + 1);   // [1, 31]
    const OrvInt month = static_cast<OrvInt>(mp < 10 ? mp + 3 : mp - 9);    // [1, 12]
    return {yoe + era * 400 + (month <= 2), month, day};
}

struct CivilDate {
    OrvInt year;
    OrvInt month;
    OrvInt day;
};

// The same inverse, in 32-bit unsigned arithmetic, for the day counts an OrvTime can
// reach: days in [-106752, 106751] (1677-09-21 .. 2262-04-11).
constexpr CivilDate CivilFromInstantDays(OrvInt days)
{
    const std::uint32_t z = static_cast<std::uint32_t>(days + kDaysFromMarch0000); // [612716, 825219]
    const std::uint32_t era = z / kDaysPer400Years;                                 // [4, 5]
    const std::uint32_t doe = z - era * kDaysPer400Years;                           // [0, 146096]
    const std::uint32_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365; // [0, 399]
    const std::uint32_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);               // [0, 365]
    const std::uint32_t mp = (5 * doy + 2) / 153;                                    // [0, 11]
    const OrvInt day = static_cast<OrvInt>(doy - (153 * mp + 2) / 5 + 1);
    const OrvInt month = static_cast<OrvInt>(mp < 10 ? mp + 3 : mp - 9);
    return {static_cast<OrvInt>(yoe + era * 400) + (month <= 2), month, day};
}

} // namespace orv::cal

#endif // ORV_SRC_CALENDAR_CALENDARMATH_HPP
