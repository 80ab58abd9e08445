// Field access: reading the stored and derived fields, week numbers under every week
// setting against a brute-force reference, setting fields, and additions (elapsed time
// for time fields, wall-clock reading for date fields, amounts near the 32-bit limits).
#include "Orv/Calendar/OrvDateTime.h"

#include "support/CountingAllocator.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cstring>
#include <string>

namespace {

using namespace std::chrono;
using orv::test::kHour;
using orv::test::UtcInstant;

struct Ymd {
    int y, m, d;
};

// A UTC value of a date (plus an optional time), ended by the test.
class Value {
public:
    explicit Value(int y, int mo, int d, int h = 0, int mi = 0, int s = 0, int ns = 0,
                   const OrvTimezone* tz = OrvFixedTimezoneGetUTC())
    {
        ok_ = OrvDateTimeConstructFields(&v_, y, mo, d, h, mi, s, ns, tz) != nullptr;
        EXPECT_TRUE(ok_);
    }
    Value(OrvTime t, const OrvTimezone* tz) { ok_ = OrvDateTimeConstruct(&v_, t, tz) != nullptr; EXPECT_TRUE(ok_); }
    ~Value()
    {
        if (ok_) OrvDateTimeDestruct(&v_);
    }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    OrvDateTime* operator->() { return &v_; }
    OrvDateTime* get() { return &v_; }
    OrvInt Get(OrvDateTimeField f) { return OrvDateTimeGetField(&v_, f); }
    std::string Text()
    {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d.%09d", Get(ORV_DATETIMEFIELD_Year),
                      Get(ORV_DATETIMEFIELD_Month), Get(ORV_DATETIMEFIELD_DayOfMonth), Get(ORV_DATETIMEFIELD_Hour),
                      Get(ORV_DATETIMEFIELD_Minute), Get(ORV_DATETIMEFIELD_Second), Get(ORV_DATETIMEFIELD_Nanosecond));
        return buf;
    }

private:
    OrvDateTime v_;
    bool ok_ = false;
};

// ---------------------------------------------------------------------------------
// Brute-force week numbering, on std::chrono's calendar: walk to the start of the
// week, decide which year owns that week by counting its days in each year, and
// count the owner's weeks back to its first.

int WeekdayOf(sys_days day) { return static_cast<int>(weekday{day}.c_encoding()); }
int YearOf(sys_days day) { return static_cast<int>(year_month_day{day}.year()); }

sys_days WeekStart(sys_days day, int firstDay)
{
    while (WeekdayOf(day) != firstDay) day -= days{1};
    return day;
}

// The year that the week starting at `start` belongs to.
int OwnerYear(sys_days start, int minimalDays)
{
    const int first = YearOf(start), last = YearOf(start + days{6});
    if (first == last) return first;
    int inLast = 0;
    for (int i = 0; i < 7; ++i) inLast += YearOf(start + days{i}) == last;
    return inLast >= minimalDays ? last : first;
}

struct RefWeek {
    int owner;
    int week;
    int weeksInOwner;
};

RefWeek ReferenceWeekOfYear(sys_days day, int firstDay, int minimalDays)
{
    const sys_days start = WeekStart(day, firstDay);
    const int owner = OwnerYear(start, minimalDays);
    int week = 1;
    while (OwnerYear(start - days{7 * week}, minimalDays) == owner) ++week;
    int total = week;
    while (OwnerYear(start + days{7 * (total - week + 1)}, minimalDays) == owner) ++total;
    return {owner, week, total};
}

// Week of month: weeks start on firstDay; the partial week that opens the month is
// week 1 when it has at least minimalDays days in the month, else week 0.
int ReferenceWeekOfMonth(sys_days day, int firstDay, int minimalDays)
{
    const year_month_day ymd{day};
    const sys_days first = sys_days{ymd.year() / ymd.month() / 1};
    int week = 0;
    for (sys_days d = first; d <= day; d += days{1}) week += WeekdayOf(d) == firstDay;
    if (WeekdayOf(first) != firstDay) {
        int openingDays = 0;
        for (sys_days d = first; WeekdayOf(d) != firstDay || d == first; d += days{1}) ++openingDays;
        week += openingDays >= minimalDays;
    }
    return week;
}

// The dates around a year's end where the week rules disagree, for several years of
// every weekday pattern (2015..2030 covers all fourteen year kinds but one, 2036 adds
// a leap year starting on a Tuesday), and two mid-year dates.
std::vector<sys_days> YearEndDates()
{
    std::vector<sys_days> dates;
    for (int y : {2015, 2016, 2017, 2018, 2019, 2020, 2021, 2022, 2023, 2024, 2025, 2026, 2027, 2028, 2032, 2036}) {
        const sys_days newYear = sys_days{year{y} / January / 1};
        for (int i = -10; i <= 10; ++i) dates.push_back(newYear + days{i});
        dates.push_back(sys_days{year{y} / June / 15});
    }
    return dates;
}

TEST(WeekOfYear, EveryWeekSettingMatchesBruteForce)
{
    const std::vector<sys_days> dates = YearEndDates();
    for (int firstDay = 0; firstDay <= 6; ++firstDay) {
        for (int minimalDays = 1; minimalDays <= 7; ++minimalDays) {
            for (sys_days day : dates) {
                const year_month_day ymd{day};
                Value v(static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
                        static_cast<int>(static_cast<unsigned>(ymd.day())));
                ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(v.get(), static_cast<OrvWeekday>(firstDay)));
                ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(v.get(), minimalDays));
                const RefWeek ref = ReferenceWeekOfYear(day, firstDay, minimalDays);
                SCOPED_TRACE(v.Text() + " first " + std::to_string(firstDay) + " min " + std::to_string(minimalDays));
                EXPECT_EQ(v.Get(ORV_DATETIMEFIELD_WeekOfYear), ref.week);
                EXPECT_EQ(OrvDateTimeGetActualMaximum(v.get(), ORV_DATETIMEFIELD_WeekOfYear), ref.weeksInOwner);
            }
        }
    }
}

TEST(WeekOfMonth, EveryWeekSettingMatchesBruteForceOverTwoYears)
{
    for (int firstDay = 0; firstDay <= 6; ++firstDay) {
        for (int minimalDays = 1; minimalDays <= 7; ++minimalDays) {
            Value v(2023, 1, 1);
            ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(v.get(), static_cast<OrvWeekday>(firstDay)));
            ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(v.get(), minimalDays));
            for (sys_days day = sys_days{2023y / January / 1}; day <= sys_days{2024y / December / 31}; day += days{1}) {
                const year_month_day ymd{day};
                const sys_days last = sys_days{ymd.year() / ymd.month() / std::chrono::last};
                SCOPED_TRACE(v.Text() + " first " + std::to_string(firstDay) + " min " + std::to_string(minimalDays));
                ASSERT_EQ(v.Get(ORV_DATETIMEFIELD_WeekOfMonth), ReferenceWeekOfMonth(day, firstDay, minimalDays));
                ASSERT_EQ(OrvDateTimeGetActualMaximum(v.get(), ORV_DATETIMEFIELD_WeekOfMonth),
                          ReferenceWeekOfMonth(last, firstDay, minimalDays));
                ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfMonth, 1));
            }
        }
    }
}

TEST(WeekOfYear, IsoDefaultAgreesWithChronoIsoRuleOverFourCenturies)
{
    // Monday/4 is ISO 8601: the week holding the year's first Thursday is week 1.
    Value v(1800, 1, 1);
    for (sys_days day = sys_days{1800y / January / 1}; day < sys_days{2200y / January / 1}; day += days{1}) {
        const sys_days thursday = day - days{(WeekdayOf(day) + 6) % 7} + days{3};
        const sys_days jan1 = sys_days{year_month_day{thursday}.year() / January / 1};
        const int isoWeek = static_cast<int>((thursday - jan1).count() / 7 + 1);
        ASSERT_EQ(v.Get(ORV_DATETIMEFIELD_WeekOfYear), isoWeek) << v.Text();
        ASSERT_EQ(v.Get(ORV_DATETIMEFIELD_DayOfWeek), WeekdayOf(day)) << v.Text();
        ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfYear, 1));
    }
}

TEST(DerivedFields, Examples)
{
    struct Case {
        Ymd date;
        int firstDay, minimalDays;
        OrvDateTimeField field;
        OrvInt expected;
    } const cases[] = {
        {{1970, 1, 1}, 1, 4, ORV_DATETIMEFIELD_DayOfWeek, 4},
        {{1969, 12, 31}, 1, 4, ORV_DATETIMEFIELD_DayOfWeek, 3},
        {{3000, 1, 1}, 1, 4, ORV_DATETIMEFIELD_DayOfWeek, 3},   // outside the instant range
        {{1000, 1, 1}, 1, 4, ORV_DATETIMEFIELD_DayOfWeek, 3},
        {{2024, 12, 31}, 1, 4, ORV_DATETIMEFIELD_DayOfYear, 366},
        {{2023, 3, 1}, 1, 4, ORV_DATETIMEFIELD_DayOfYear, 60},
        {{2024, 3, 1}, 1, 4, ORV_DATETIMEFIELD_DayOfYear, 61},
        {{2021, 1, 1}, 1, 4, ORV_DATETIMEFIELD_WeekOfYear, 53},
        {{2024, 12, 29}, 1, 4, ORV_DATETIMEFIELD_WeekOfYear, 52},
        {{2024, 12, 30}, 1, 4, ORV_DATETIMEFIELD_WeekOfYear, 1},
        {{2024, 12, 28}, 0, 1, ORV_DATETIMEFIELD_WeekOfYear, 52},
        {{2024, 12, 31}, 0, 1, ORV_DATETIMEFIELD_WeekOfYear, 1},
        {{2025, 1, 1}, 0, 1, ORV_DATETIMEFIELD_WeekOfYear, 1},
        {{2021, 12, 26}, 1, 7, ORV_DATETIMEFIELD_WeekOfYear, 51},
        {{2021, 12, 27}, 1, 7, ORV_DATETIMEFIELD_WeekOfYear, 52},
        {{2022, 1, 2}, 1, 7, ORV_DATETIMEFIELD_WeekOfYear, 52},
        {{2022, 1, 3}, 1, 7, ORV_DATETIMEFIELD_WeekOfYear, 1},
        {{2024, 6, 1}, 1, 4, ORV_DATETIMEFIELD_WeekOfMonth, 0},
        {{2024, 6, 2}, 1, 4, ORV_DATETIMEFIELD_WeekOfMonth, 0},
        {{2024, 6, 3}, 1, 4, ORV_DATETIMEFIELD_WeekOfMonth, 1},
        {{2024, 6, 30}, 1, 4, ORV_DATETIMEFIELD_WeekOfMonth, 4},
        {{2024, 6, 30}, 0, 1, ORV_DATETIMEFIELD_WeekOfMonth, 6},
    };
    for (const Case& c : cases) {
        Value v(c.date.y, c.date.m, c.date.d);
        ASSERT_TRUE(OrvDateTimeSetFirstDayOfWeek(v.get(), static_cast<OrvWeekday>(c.firstDay)));
        ASSERT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(v.get(), c.minimalDays));
        EXPECT_EQ(v.Get(c.field), c.expected) << v.Text() << " field " << c.field;
    }
}

// ---------------------------------------------------------------------------------
// Reading with a bad selector or a failing zone, and setting.

TEST(GetField, BadSelectorReadsMinusOneAfterNormalizing)
{
    Value v(2024, 1, 1);
    ASSERT_TRUE(OrvDateTimeSetField(v.get(), ORV_DATETIMEFIELD_Month, 14));
    EXPECT_EQ(OrvDateTimeGetField(v.get(), static_cast<OrvDateTimeField>(11)), -1);
    EXPECT_TRUE(v->normalized);
    EXPECT_EQ(v->month, 2);
    EXPECT_EQ(v->year, 2025);
    EXPECT_EQ(OrvDateTimeGetField(v.get(), static_cast<OrvDateTimeField>(15)), -1);
}

TEST(SetField, RefusesDerivedAndBadSelectorsLeavingTheValueAlone)
{
    Value v(2024, 5, 17, 9, 30);
    for (unsigned f : {4u, 8u, 9u, 10u, 11u, 15u}) {
        OrvDateTime before;
        std::memcpy(&before, v.get(), sizeof before);
        EXPECT_FALSE(OrvDateTimeSetField(v.get(), static_cast<OrvDateTimeField>(f), 1)) << f;
        EXPECT_EQ(std::memcmp(&before, v.get(), sizeof before), 0) << f;
    }
}

TEST(SetField, StoresRawNumbersCarriedOnTheNextRead)
{
    struct Case {
        Ymd start;
        OrvDateTimeField field;
        OrvInt value;
        const char* expected;
    } const cases[] = {
        {{2023, 6, 10}, ORV_DATETIMEFIELD_Month, 13, "2024-01-10T00:00:00.000000000"},
        {{2023, 2, 10}, ORV_DATETIMEFIELD_DayOfMonth, 31, "2023-03-03T00:00:00.000000000"},
        {{2024, 3, 10}, ORV_DATETIMEFIELD_DayOfMonth, 0, "2024-02-29T00:00:00.000000000"},
        {{2024, 1, 1}, ORV_DATETIMEFIELD_Hour, -1, "2023-12-31T23:00:00.000000000"},
        {{2024, 1, 1}, ORV_DATETIMEFIELD_Nanosecond, -1, "2023-12-31T23:59:59.999999999"},
        {{2024, 2, 29}, ORV_DATETIMEFIELD_Year, 2023, "2023-03-01T00:00:00.000000000"},
        {{2024, 1, 1}, ORV_DATETIMEFIELD_Second, INT_MAX, "2092-01-19T03:14:07.000000000"},
    };
    for (const Case& c : cases) {
        Value v(c.start.y, c.start.m, c.start.d);
        ASSERT_TRUE(OrvDateTimeSetField(v.get(), c.field, c.value));
        EXPECT_FALSE(v->normalized);
        EXPECT_EQ(v->offset, ORV_TIME_INVALID);
        EXPECT_EQ(v.Text(), c.expected);
    }
}

// ---------------------------------------------------------------------------------
// Additions.

TEST(AddToField, Table)
{
    struct Case {
        Ymd start;
        int hour;
        OrvDateTimeField field;
        OrvInt inc;
        const char* expected;
    } const cases[] = {
        {{2023, 1, 31}, 0, ORV_DATETIMEFIELD_Month, 1, "2023-03-03T00:00:00.000000000"},
        {{2024, 2, 29}, 0, ORV_DATETIMEFIELD_Year, 1, "2025-03-01T00:00:00.000000000"},
        {{2024, 12, 28}, 0, ORV_DATETIMEFIELD_WeekOfYear, 1, "2025-01-04T00:00:00.000000000"},
        {{2024, 6, 1}, 0, ORV_DATETIMEFIELD_WeekOfMonth, -1, "2024-05-25T00:00:00.000000000"},
        {{2024, 3, 1}, 0, ORV_DATETIMEFIELD_DayOfWeek, -1, "2024-02-29T00:00:00.000000000"},
        {{2023, 1, 1}, 0, ORV_DATETIMEFIELD_DayOfYear, 365, "2024-01-01T00:00:00.000000000"},
        {{2024, 1, 1}, 23, ORV_DATETIMEFIELD_Minute, 61, "2024-01-02T00:01:00.000000000"},
        {{2024, 1, 1}, 0, ORV_DATETIMEFIELD_Nanosecond, -1, "2023-12-31T23:59:59.999999999"},
        // Amounts whose plain sum leaves the 32-bit range of the field are carried exactly.
        {{2024, 1, 1}, 0, ORV_DATETIMEFIELD_Nanosecond, INT_MAX, "2024-01-01T00:00:02.147483647"},
        {{2024, 1, 1}, 0, ORV_DATETIMEFIELD_Nanosecond, INT_MIN, "2023-12-31T23:59:57.852516352"},
        {{2024, 1, 1}, 0, ORV_DATETIMEFIELD_Second, INT_MIN, "1955-12-13T20:45:52.000000000"},
        {{2024, 1, 1}, 1, ORV_DATETIMEFIELD_Hour, INT_MAX, "247007-10-10T08:00:00.000000000"},
        // 14699 cycles of 400 years are 2147479803 days: same day, 5879600 years on.
        {{2024, 3, 5}, 0, ORV_DATETIMEFIELD_DayOfMonth, 2147479803, "5881624-03-05T00:00:00.000000000"},
        {{2024, 3, 5}, 0, ORV_DATETIMEFIELD_DayOfYear, -2147479803, "-5877576-03-05T00:00:00.000000000"},
        {{2024, 3, 5}, 0, ORV_DATETIMEFIELD_Month, INT_MAX, "178958994-10-05T00:00:00.000000000"},
        {{2024, 3, 5}, 0, ORV_DATETIMEFIELD_Year, INT_MAX - 2024, "2147483647-03-05T00:00:00.000000000"},
    };
    for (const Case& c : cases) {
        Value v(c.start.y, c.start.m, c.start.d, c.hour);
        SCOPED_TRACE(v.Text() + " field " + std::to_string(c.field) + " + " + std::to_string(c.inc));
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), c.field, c.inc));
        EXPECT_EQ(v.Text(), c.expected);
    }
}

TEST(AddToField, WeeksNearTheLimitAreSevenTimesTheAmountInDays)
{
    Value byWeeks(2024, 3, 5), byDays(2024, 3, 5);
    ASSERT_TRUE(OrvDateTimeAddToField(byWeeks.get(), ORV_DATETIMEFIELD_WeekOfYear, INT_MAX));
    for (int i = 0; i < 7; ++i) ASSERT_TRUE(OrvDateTimeAddToField(byDays.get(), ORV_DATETIMEFIELD_DayOfMonth, INT_MAX));
    EXPECT_EQ(byWeeks.Text(), byDays.Text());
    ASSERT_TRUE(OrvDateTimeAddToField(byWeeks.get(), ORV_DATETIMEFIELD_WeekOfMonth, INT_MIN));
    ASSERT_TRUE(OrvDateTimeAddToField(byWeeks.get(), ORV_DATETIMEFIELD_WeekOfMonth, 1));
    EXPECT_EQ(byWeeks.Text(), "2024-03-05T00:00:00.000000000");
}

TEST(AddToField, YearBeyondThirtyTwoBitsIsRefusedAndTheValueKept)
{
    for (auto [field, inc] : {std::pair{ORV_DATETIMEFIELD_Year, INT_MAX}, std::pair{ORV_DATETIMEFIELD_Year, 2147481624},
                              std::pair{ORV_DATETIMEFIELD_WeekOfYear, INT_MAX}}) {
        Value v(2024, 3, 5);
        ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Year, 2147000000));
        OrvDateTime before;
        std::memcpy(&before, v.get(), sizeof before);
        EXPECT_FALSE(OrvDateTimeAddToField(v.get(), field, inc)) << field;
        EXPECT_EQ(std::memcmp(&before, v.get(), sizeof before), 0) << field;
    }
}

TEST(AddToField, ZeroAndBadSelectors)
{
    orv::test::TransitionZoneRules rules;
    rules.failFields = true;
    OrvTimezone failing;
    ASSERT_NE(orv::test::MakeTransitionZone(&failing, rules, OrvAllocatorGetDefault()), nullptr);
    {
        Value v(UtcInstant(2024, 5, 1), &failing); // built from an instant: asks getOffset only
        ASSERT_TRUE(OrvDateTimeSetField(v.get(), ORV_DATETIMEFIELD_Hour, 30)); // now needs the fields' offset
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), static_cast<OrvDateTimeField>(99), 0));
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, 0));
        EXPECT_FALSE(v->normalized); // an amount of 0 does not normalize
        EXPECT_FALSE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, 1)); // cannot normalize first
        EXPECT_EQ(v->hour, 6);  // carried, nothing added
        EXPECT_EQ(v->monthDay, 2);
        EXPECT_EQ(OrvDateTimeGetField(v.get(), ORV_DATETIMEFIELD_Hour), -1);
    }
    {
        Value v(UtcInstant(2024, 5, 1, 10), &failing);
        // Time fields keep the offset and never ask for the fields' offset.
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, 1));
        EXPECT_EQ(v->hour, 11);
        // A date field asks, and fails after adding: the sum stays, pending.
        EXPECT_FALSE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfMonth, 40));
        EXPECT_EQ(v->monthDay, 10);
        EXPECT_EQ(v->month, 6);
        EXPECT_EQ(v->offset, ORV_TIME_INVALID);
    }
    Value v(2024, 5, 1);
    EXPECT_FALSE(OrvDateTimeAddToField(v.get(), static_cast<OrvDateTimeField>(11), 1));
    EXPECT_EQ(v.Text(), "2024-05-01T00:00:00.000000000");
    OrvTimezoneDestruct(&failing);
}

// Across the clock changes of the test zone (+1 h, +2 h from 2024-03-31T01:00Z, +1 h
// again from 2024-10-27T01:00Z), time fields count elapsed time and date fields keep
// the local reading.
TEST(AddToField, ElapsedVersusWallClockAcrossClockChanges)
{
    OrvTimezone dst;
    ASSERT_NE(orv::test::MakeTransitionZone(&dst, orv::test::DstRules(), OrvAllocatorGetDefault()), nullptr);
    struct Case {
        OrvTime start; // instant
        OrvDateTimeField field;
        OrvInt inc;
        const char* expectedLocal;
        OrvTime expectedElapsed;
    } const cases[] = {
        {UtcInstant(2024, 3, 30, 11), ORV_DATETIMEFIELD_Hour, 24, "2024-03-31T13:00:00.000000000", 24 * kHour},
        {UtcInstant(2024, 3, 30, 11), ORV_DATETIMEFIELD_DayOfMonth, 1, "2024-03-31T12:00:00.000000000", 23 * kHour},
        {UtcInstant(2024, 3, 30, 11), ORV_DATETIMEFIELD_DayOfWeek, 1, "2024-03-31T12:00:00.000000000", 23 * kHour},
        {UtcInstant(2024, 10, 26, 10), ORV_DATETIMEFIELD_Hour, 24, "2024-10-27T11:00:00.000000000", 24 * kHour},
        {UtcInstant(2024, 10, 26, 10), ORV_DATETIMEFIELD_DayOfMonth, 1, "2024-10-27T12:00:00.000000000", 25 * kHour},
        {UtcInstant(2024, 10, 20, 10), ORV_DATETIMEFIELD_WeekOfYear, 1, "2024-10-27T12:00:00.000000000", 169 * kHour},
        // One hour from 01:30 local jumps the skipped hour: the reading moves by two.
        {UtcInstant(2024, 3, 31, 0, 30), ORV_DATETIMEFIELD_Hour, 1, "2024-03-31T03:30:00.000000000", kHour},
        {UtcInstant(2024, 3, 31, 0, 30), ORV_DATETIMEFIELD_Minute, 60, "2024-03-31T03:30:00.000000000", kHour},
        // One hour from the first 02:30 gives the second 02:30: the reading stays.
        {UtcInstant(2024, 10, 27, 0, 30), ORV_DATETIMEFIELD_Hour, 1, "2024-10-27T02:30:00.000000000", kHour},
        // A day from 02:30 lands in the skipped hour and moves on to 03:30.
        {UtcInstant(2024, 3, 30, 1, 30), ORV_DATETIMEFIELD_DayOfMonth, 1, "2024-03-31T03:30:00.000000000",
         24 * kHour},
        // A day back from the second 02:30 reads 02:30 at +2 h.
        {UtcInstant(2024, 10, 27, 1, 30), ORV_DATETIMEFIELD_DayOfMonth, -1, "2024-10-26T02:30:00.000000000",
         -25 * kHour},
    };
    for (const Case& c : cases) {
        Value v(c.start, &dst);
        SCOPED_TRACE(v.Text() + " field " + std::to_string(c.field) + " + " + std::to_string(c.inc));
        ASSERT_TRUE(OrvDateTimeAddToField(v.get(), c.field, c.inc));
        EXPECT_EQ(v.Text(), c.expectedLocal);
        EXPECT_EQ(OrvDateTimeGetWallTime(v.get()) - c.start, c.expectedElapsed);
        EXPECT_TRUE(v->normalized);
    }
    OrvTimezoneDestruct(&dst);
}

TEST(AddToField, OutsideTheInstantRangeStillAdds)
{
    Value v(2262, 4, 11, 0);
    ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfMonth, 1));
    EXPECT_EQ(OrvDateTimeGetWallTime(v.get()), ORV_TIME_INVALID);
    EXPECT_EQ(v.Text(), "2262-04-12T00:00:00.000000000");
    ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, -24));
    EXPECT_EQ(OrvDateTimeGetWallTime(v.get()), UtcInstant(2262, 4, 11));
}

} // namespace
