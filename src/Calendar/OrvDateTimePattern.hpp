// What the pattern formatter and the pattern parser share: the English names of the C
// locale, and the numbers the conversions stand for, worked out from a value in one
// place so that the parser checks a field against exactly what the formatter writes.
#ifndef ORV_SRC_CALENDAR_ORVDATETIMEPATTERN_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMEPATTERN_HPP

#include "Calendar/OrvDateTimeInternal.hpp"

namespace orv::pattern {

inline constexpr const char* kDayNames[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                             "Thursday", "Friday", "Saturday"};
inline constexpr const char* kMonthNames[12] = {"January", "February", "March",     "April",   "May",      "June",
                                                "July",    "August",   "September", "October", "November", "December"};

// The numbers behind the conversions (several conversions may share one: %d and %e,
// %m and %b, %a %A %u and %w).
enum class Quantity : unsigned char {
    Year,      // %Y
    Century,   // %C: floor(year / 100)
    Year2,     // %y: year mod 100
    WeekYear,  // %G
    WeekYear2, // %g
    Month,     // %m %b %B %h: 1..12
    Day,       // %d %e
    DayOfYear, // %j: 1..366
    Hour,      // %H
    Hour12,    // %I: 1..12
    Pm,        // %p: 0 AM, 1 PM
    Minute,    // %M
    Second,    // %S
    Nanos,     // the fraction of %E*S and %E#S
    Weekday,   // %a %A %u %w: 0 (Sunday) .. 6
    WeekU,     // %U: 0..53, weeks from Sunday
    WeekW,     // %W: 0..53, weeks from Monday
    WeekV,     // %V: 1..53 under the value's week settings
    Epoch,     // %s: seconds since 1970-01-01T00:00:00Z, floor
    Count
};

// The year of d's week of year under d's week settings; d normalized.
OrvInt WeekYearOf(const OrvDateTime* d);

// The quantity for d, normalized.
OrvInt64 QuantityOf(Quantity q, const OrvDateTime* d);

} // namespace orv::pattern

#endif // ORV_SRC_CALENDAR_ORVDATETIMEPATTERN_HPP
