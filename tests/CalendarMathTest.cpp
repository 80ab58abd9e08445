// The calendar kernels against a literal, loop-based reference of the calendar rules:
// year estimate with single-step corrections and a month walk for day counts, and
// unit-by-unit, year-by-year, month-by-month carrying for out-of-range fields.
#include "Calendar/CalendarMath.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

namespace {

using namespace orv::cal;

// ---- reference implementations (deliberately naive) -------------------------------

struct RefDate {
    OrvInt64 year;
    OrvInt month;
    OrvInt day;
};

OrvInt64 RefEpochYearDays(OrvInt64 y)
{
    return 365 * y + DivDown<OrvInt64>(y + 1, 4) - DivDown<OrvInt64>(y + 69, 100) + DivDown<OrvInt64>(y + 369, 400);
}

// Day count to date: estimate the year, correct by single steps, walk the months.
RefDate RefCivilFromDays(OrvInt64 days)
{
    OrvInt64 epochYear = DivDown<OrvInt64>(days, 365);
    while (days < RefEpochYearDays(epochYear)) --epochYear;
    while (days >= RefEpochYearDays(epochYear + 1)) ++epochYear;
    const OrvInt64 year = epochYear + 1970;
    const OrvInt64 yday = days - RefEpochYearDays(epochYear);
    const auto& row = monthDays[IsLeap(year)];
    OrvInt month = 12;
    for (OrvInt m = 1; m <= 11; ++m) {
        if (yday < row[m]) {
            month = m;
            break;
        }
    }
    return {year, month, static_cast<OrvInt>(yday - row[month - 1] + 1)};
}

// Date to day count by the leap-day counting formula.
OrvInt64 RefDaysSinceEpoch(OrvInt64 year, OrvInt month, OrvInt64 day)
{
    return 365 * year - 719050 + DivDown<OrvInt64>(year - 1969, 4) - DivDown<OrvInt64>(year - 1901, 100) +
           DivDown<OrvInt64>(year - 1601, 400) + monthDays[IsLeap(year)][month - 1] + day - 1;
}

// Carrying one unit at a time from the smallest field up, then whole years of days,
// then whole months of days.
Reading RefCarry(Reading f)
{
    auto carry = [](OrvInt64* larger, OrvInt64* smaller, OrvInt64 base) {
        for (; *smaller < 0; *smaller += base) --*larger;
        for (; *smaller >= base; *smaller -= base) ++*larger;
    };
    carry(&f.second, &f.nanosecond, 1000000000);
    carry(&f.minute, &f.second, 60);
    carry(&f.hour, &f.minute, 60);
    carry(&f.day, &f.hour, 24);
    OrvInt64 month0 = f.month - 1;
    carry(&f.year, &month0, 12);
    f.month = month0 + 1;
    while (f.day <= 0) {
        f.day += YearLength(f.month < 3 ? f.year - 1 : f.year);
        --f.year;
    }
    while (f.day > 366) {
        f.day -= YearLength(f.month >= 3 ? f.year + 1 : f.year);
        ++f.year;
    }
    while (f.day > monthLengths[IsLeap(f.year)][f.month - 1]) {
        f.day -= monthLengths[IsLeap(f.year)][f.month - 1];
        if (++f.month > 12) {
            f.month = 1;
            ++f.year;
        }
    }
    return f;
}

Reading Carried(Reading f)
{
    CarryReading(&f);
    return f;
}

std::string Text(const Reading& r)
{
    std::string s;
    for (OrvInt64 v : {r.year, r.month, r.day, r.hour, r.minute, r.second, r.nanosecond}) s += std::to_string(v) + " ";
    return s;
}

// ---- compile-time checks ------------------------------------------------------------

static_assert(DivDown(-1, 4) == -1 && DivDown(-4, 4) == -1 && DivDown(-5, 4) == -2 && DivDown(7, 4) == 1);
static_assert(DaysFromCivil(1970, 1, 1) == 0 && DaysFromCivil(2000, 3, 1) == 11017);
static_assert(CivilFromInstantDays(-106752).year == 1677 && CivilFromInstantDays(106751).day == 11);
static_assert(kSecondsPerMinute == 60 && kMinutesPerHour == 60 && kHoursPerDay == 24 && kSecondsPerHour == 3600 &&
              kSecondsPerDay == 86400 && kMaxInstantSecond == 9223372036 && kMinInstantSecond == -9223372036);

// ---- tests --------------------------------------------------------------------------

TEST(IsLeap, GregorianRuleForEveryYear)
{
    struct Case {
        OrvInt year;
        bool leap;
    };
    const Case cases[] = {{1900, false}, {2000, true}, {2024, true}, {2023, false}, {1600, true}, {2100, false},
                          {0, true},     {-4, true},   {-100, false}, {-400, true}, {-1, false}};
    for (const Case& c : cases) {
        EXPECT_EQ(IsLeap(c.year) != 0, c.leap) << c.year;
        EXPECT_EQ(YearLength(c.year), c.leap ? 366 : 365) << c.year;
    }
    // The masked form against the rule as usually written, at both ends of the 32-bit
    // years and across two cycles around year 0.
    for (OrvInt64 y : {INT64_C(-2147483648), INT64_C(-2147483600), INT64_C(2147483600), INT64_C(2147483647)}) {
        for (OrvInt64 k = 0; k < 48; ++k) {
            const OrvInt64 year = y < 0 ? y + k : y - k;
            EXPECT_EQ(IsLeap(static_cast<OrvInt>(year)) != 0, year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)) << year;
        }
    }
    for (OrvInt year = -400; year <= 400; ++year)
        EXPECT_EQ(IsLeap(year) != 0, year % 4 == 0 && (year % 100 != 0 || year % 400 == 0)) << year;
}

TEST(DivDown, FloorsTowardsMinusInfinityWithNonNegativeRemainder)
{
    for (OrvInt a = -50; a <= 50; ++a) {
        for (OrvInt b : {1, 3, 7, 60, 1000000000}) {
            OrvInt mod = -1;
            const OrvInt q = DivDownAndMod(a, b, &mod);
            EXPECT_EQ(q, DivDown(a, b));
            EXPECT_GE(mod, 0);
            EXPECT_LT(mod, b);
            EXPECT_EQ(q * b + mod, a);
            EXPECT_EQ(FloorMod(a, b), mod);
        }
    }
}

// 584 years, more than one 400-year cycle: every day of a century and every day of a
// year the fast forms' multiply-and-shift constants see, so this sweep is exhaustive
// for them. Weekday and day of year are counted along.
TEST(CivilFromDays, EveryInstantDayMatchesReferenceBothWays)
{
    OrvInt wday = 2;  // 1677-09-21 was a Tuesday
    OrvInt yday = 264; // and the 264th day of its year
    for (OrvInt days = -106752; days <= 106751; ++days, wday = wday == 6 ? 0 : wday + 1, ++yday) {
        const RefDate ref = RefCivilFromDays(days);
        const CivilDate fast = CivilFromInstantDays(days);
        const CivilDate64 wide = CivilFromDays(days);
        ASSERT_EQ(fast.year, ref.year) << days;
        ASSERT_EQ(fast.month, ref.month) << days;
        ASSERT_EQ(fast.day, ref.day) << days;
        ASSERT_EQ(wide.year, ref.year) << days;
        ASSERT_EQ(wide.month, ref.month) << days;
        ASSERT_EQ(wide.day, ref.day) << days;
        ASSERT_TRUE(DayInMonth(fast.year, fast.month, fast.day)) << days;
        ASSERT_EQ(DayInMonth(fast.year, fast.month, fast.day + 1), fast.day < MonthLength(fast.year, fast.month));
        if (fast.month == 1 && fast.day == 1) yday = 1;
        ASSERT_EQ(DayOfYear(fast.year, fast.month, fast.day), yday) << days;
        const MonthDay md = MonthDayOfYear(fast.year, yday);
        ASSERT_TRUE(md.month == fast.month && md.day == fast.day) << days;
        ASSERT_EQ(WeekdayOfDays(days), wday) << days;
        ASSERT_EQ(DaysFromCivil(fast.year, fast.month, fast.day), days);
        ASSERT_EQ(RefDaysSinceEpoch(fast.year, fast.month, fast.day), days);
    }
}

TEST(CivilFromDays, FarYearsRoundTrip)
{
    for (OrvInt64 year : {INT64_C(-2147483648), INT64_C(-5000000), INT64_C(-1000001), INT64_C(-1000000), INT64_C(-999999),
                          INT64_C(999999), INT64_C(1000000), INT64_C(1000001), INT64_C(-1), INT64_C(0), INT64_C(9999),
                          INT64_C(2147483647), INT64_C(2147483648) + 12}) {
        for (OrvInt month : {1, 2, 3, 12}) {
            const OrvInt64 days = DaysFromCivil(year, month, 28);
            const CivilDate64 d = CivilFromDays(days);
            EXPECT_EQ(d.year, year);
            EXPECT_EQ(d.month, month);
            EXPECT_EQ(d.day, 28);
            EXPECT_EQ(days, RefDaysSinceEpoch(year, month, 28));
            EXPECT_EQ(WeekdayOfDays(days), FloorMod<OrvInt64>(days + 4, 7));
        }
    }
    // Both sides of the limit of the fast form, 365 * 999999 days.
    for (OrvInt64 days : {INT64_C(-364999636), INT64_C(-364999635), INT64_C(364999635), INT64_C(364999636)}) {
        const CivilDate64 d = CivilFromDays(days);
        ASSERT_TRUE(d.month >= 1 && d.month <= 12) << days;
        EXPECT_TRUE(DayInMonth(d.year, d.month, d.day)) << days;
        EXPECT_EQ(RefDaysSinceEpoch(d.year, d.month, d.day), days);
    }
}

TEST(YearOfSecond, AnySigned64BitSecond)
{
    const std::pair<OrvInt64, OrvInt64> cases[] = {
        {INT64_MIN, -292277022657}, {INT64_MAX, 292277026596}, {-1, 1969}, {0, 1970}, {31535999, 1970},
        {31536000, 1971},           {-62135596800, 1},         {-62135596801, 0},
    };
    for (const auto& [second, year] : cases) EXPECT_EQ(YearOfSecond(second), year) << second;
}

// Readings to local seconds (the month carried, the rest summed), and back from any
// nanosecond of the instant range.
TEST(Readings, LocalSecondsAndBack)
{
    struct Case {
        Reading reading;
        OrvInt64 seconds;
    };
    const Case cases[] = {
        {{1970, 1, 1, 0, 0, 0, 0}, 0},
        {{1969, 12, 31, 23, 59, 59, 0}, -1},
        {{1900, 1, 17, 0, 0, 0, 0}, -25551 * INT64_C(86400)},
        {{2024, 13, 1, 0, 0, 0, 0}, 20089 * INT64_C(86400)},  // 2025-01-01
        {{2024, 0, 1, 0, 0, 0, 0}, 19692 * INT64_C(86400)},   // 2023-12-01
        {{2024, -12, 1, 0, 0, 0, 0}, 19327 * INT64_C(86400)}, // 2022-12-01
        {{2024, 3, 1, -1, 61, -1, 0}, 19783 * INT64_C(86400) + 59},
        {{2262, 4, 11, 23, 47, 16, 0}, 9223372036},
        {{1677, 9, 21, 0, 12, 44, 0}, -9223372036},
        {{INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN, 0}, INT64_C(-73608841628889728)},
        {{INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, 0}, INT64_C(73608717254617267)},
    };
    for (const Case& c : cases) {
        const Reading& r = c.reading;
        EXPECT_EQ(LocalSecondsFromFields(r.year, r.month, r.day, r.hour, r.minute, r.second), c.seconds) << Text(r);
    }
    std::mt19937_64 rng(20240502);
    for (int i = 0; i < 100000; ++i) {
        const OrvInt64 ns = static_cast<OrvInt64>(rng());
        const Reading r = ReadingFromLocalNanoseconds(ns);
        ASSERT_EQ(RefCarry(r), r) << ns;
        ASSERT_EQ(LocalSecondsFromFields(r.year, r.month, r.day, r.hour, r.minute, r.second),
                  DivDown<OrvInt64>(ns, 1000000000))
            << ns;
        ASSERT_EQ(r.nanosecond, FloorMod<OrvInt64>(ns, 1000000000)) << ns;
    }
}

TEST(Carry, KnownCalendarCarries)
{
    struct Case {
        Reading in, out;
    };
    const Case cases[] = {
        {{2024, 13, 1, 0, 0, 0, 0}, {2025, 1, 1, 0, 0, 0, 0}},
        {{2024, 3, 0, 0, 0, 0, 0}, {2024, 2, 29, 0, 0, 0, 0}},
        {{2023, 3, 0, 0, 0, 0, 0}, {2023, 2, 28, 0, 0, 0, 0}},
        {{2024, 1, -365, 0, 0, 0, 0}, {2022, 12, 31, 0, 0, 0, 0}},
        {{2024, 3, 367, 0, 0, 0, 0}, {2025, 3, 2, 0, 0, 0, 0}},
        {{2024, -12, 1, 0, 0, 0, 0}, {2022, 12, 1, 0, 0, 0, 0}},
        {{2024, 1, 1, -1, -1, -1, -1}, {2023, 12, 31, 22, 58, 58, 999999999}},
        {{2024, 1, 1, 24, 60, 60, 1000000000}, {2024, 1, 2, 1, 1, 1, 0}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(RefCarry(c.in), c.out) << Text(c.in);
        EXPECT_EQ(Carried(c.in), c.out) << Text(c.in);
    }
}

TEST(Carry, RandomFieldsMatchUnitByUnitCarrying)
{
    std::mt19937_64 rng(20240501);
    std::uniform_int_distribution<OrvInt64> year(-3000, 5000), month(-40, 40), day(-400000, 400000), hour(-100, 100),
        minute(-5000, 5000), second(-100000, 100000), nanos(-3000000000, 3000000000);
    for (int i = 0; i < 20000; ++i) {
        const Reading in{year(rng), month(rng), day(rng), hour(rng), minute(rng), second(rng), nanos(rng)};
        ASSERT_EQ(Carried(in), RefCarry(in)) << Text(in);
    }
}

} // namespace
