// The calendar kernels against a literal, loop-based reference of the calendar rules:
// year estimate with single-step corrections and a month walk for day counts, and
// year-by-year, month-by-month carrying for out-of-range fields.
#include "Calendar/CalendarMath.hpp"

#include <gtest/gtest.h>

#include <random>

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

struct Fields {
    OrvInt64 year, month, day, hour, min, sec, nanos;
    bool operator==(const Fields&) const = default;
};

// Carrying one unit at a time from the smallest field up, then whole years of days,
// then whole months of days.
Fields RefCarry(Fields f)
{
    auto carry = [](OrvInt64* larger, OrvInt64* smaller, OrvInt64 base) {
        OrvInt64 mod;
        *larger += DivDownAndMod<OrvInt64>(*smaller, base, &mod);
        *smaller = mod;
    };
    carry(&f.sec, &f.nanos, 1000000000);
    carry(&f.min, &f.sec, 60);
    carry(&f.hour, &f.min, 60);
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

// The kernels' carrying, as the date-time normalization composes them.
Fields KernelCarry(Fields f)
{
    NormalizeAndCarry<OrvInt64>(&f.sec, &f.nanos, 1000000000);
    NormalizeAndCarry<OrvInt64>(&f.min, &f.sec, 60);
    NormalizeAndCarry<OrvInt64>(&f.hour, &f.min, 60);
    NormalizeAndCarry<OrvInt64>(&f.day, &f.hour, 24);
    OrvInt64 month0 = f.month - 1;
    NormalizeAndCarry<OrvInt64>(&f.year, &month0, 12);
    const CivilDate64 date = CivilFromDays(DaysFromCivil(f.year, static_cast<OrvInt>(month0) + 1, f.day));
    return {date.year, date.month, date.day, f.hour, f.min, f.sec, f.nanos};
}

// ---- compile-time checks ------------------------------------------------------------

static_assert(DivDown(-1, 4) == -1 && DivDown(-4, 4) == -1 && DivDown(-5, 4) == -2 && DivDown(7, 4) == 1);
static_assert(DaysFromCivil(1970, 1, 1) == 0 && DaysFromCivil(2000, 3, 1) == 11017);
static_assert(CivilFromInstantDays(-106752).year == 1677 && CivilFromInstantDays(106751).day == 11);

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
        }
    }
}

TEST(CivilFromDays, EveryInstantDayMatchesReferenceBothWays)
{
    for (OrvInt days = -106752; days <= 106751; ++days) {
        const RefDate ref = RefCivilFromDays(days);
        const CivilDate fast = CivilFromInstantDays(days);
        const CivilDate64 wide = CivilFromDays(days);
        ASSERT_EQ(fast.year, ref.year) << days;
        ASSERT_EQ(fast.month, ref.month) << days;
        ASSERT_EQ(fast.day, ref.day) << days;
        ASSERT_EQ(wide.year, ref.year) << days;
        ASSERT_EQ(wide.month, ref.month) << days;
        ASSERT_EQ(wide.day, ref.day) << days;
        ASSERT_LE(fast.day, monthLengths[IsLeap(fast.year)][fast.month - 1]) << days;
        ASSERT_EQ(DaysFromCivil(fast.year, fast.month, fast.day), days);
        ASSERT_EQ(RefDaysSinceEpoch(fast.year, fast.month, fast.day), days);
    }
}

TEST(CivilFromDays, FirstDaysOfYearsBefore1970LandInThatYear)
{
    struct Case {
        OrvInt days;
        OrvInt year, month, day;
    };
    const Case cases[] = {{-731, 1968, 1, 1},  {-25567, 1900, 1, 1}, {-25551, 1900, 1, 17},
                          {-106752, 1677, 9, 21}, {106751, 2262, 4, 11}, {-1, 1969, 12, 31}, {0, 1970, 1, 1}};
    for (const Case& c : cases) {
        const CivilDate d = CivilFromInstantDays(c.days);
        EXPECT_EQ(d.year, c.year) << c.days;
        EXPECT_EQ(d.month, c.month) << c.days;
        EXPECT_EQ(d.day, c.day) << c.days;
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
        }
    }
}

TEST(Carry, KnownCalendarCarries)
{
    struct Case {
        Fields in, out;
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
        EXPECT_EQ(RefCarry(c.in), c.out) << c.in.year << "-" << c.in.month << "-" << c.in.day;
        EXPECT_EQ(KernelCarry(c.in), c.out) << c.in.year << "-" << c.in.month << "-" << c.in.day;
    }
}

TEST(Carry, RandomFieldsMatchYearByYearCarrying)
{
    std::mt19937_64 rng(20240501);
    std::uniform_int_distribution<OrvInt64> year(-3000, 5000), month(-40, 40), day(-400000, 400000), hour(-100, 100),
        minute(-5000, 5000), second(-100000, 100000), nanos(-3000000000, 3000000000);
    for (int i = 0; i < 20000; ++i) {
        const Fields in{year(rng), month(rng), day(rng), hour(rng), minute(rng), second(rng), nanos(rng)};
        ASSERT_EQ(KernelCarry(in), RefCarry(in)) << in.year << "-" << in.month << "-" << in.day << " " << in.hour
                                                 << ":" << in.min << ":" << in.sec << "." << in.nanos;
    }
}

} // namespace
