// Field access: stored and derived fields, week numbers under every week setting
// against a brute-force reference, setting fields, and additions (elapsed time for
// time fields, wall-clock reading for date fields, amounts near the 32-bit limits).
#include "Orv/Calendar/OrvDateTime.h"

#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono;
using orv::test::kHour;
using orv::test::UtcInstant;

struct Ymd {
    int y, m, d;
};

// A value built from a UTC reading or from an instant in a zone, ended by the test.
class Value {
public:
    Value(int y, int mo, int d, int h = 0)
        : ok_(OrvDateTimeConstructFields(&v_, y, mo, d, h, 0, 0, 0, OrvFixedTimezoneGetUTC()) != nullptr)
    {
        EXPECT_TRUE(ok_);
    }
    Value(OrvTime t, const OrvTimezone* tz) : ok_(OrvDateTimeConstruct(&v_, t, tz) != nullptr) { EXPECT_TRUE(ok_); }
    ~Value()
    {
        if (ok_) OrvDateTimeDestruct(&v_);
    }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    OrvDateTime* operator->() { return &v_; }
    OrvDateTime* get() { return &v_; }
    OrvInt Get(OrvDateTimeField f) { return OrvDateTimeGetField(&v_, f); }
    void Week(int firstDay, int minimalDays)
    {
        EXPECT_TRUE(OrvDateTimeSetFirstDayOfWeek(&v_, static_cast<OrvWeekday>(firstDay)));
        EXPECT_TRUE(OrvDateTimeSetMinimalDaysInFirstWeek(&v_, minimalDays));
    }
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
    bool ok_;
};

// Brute-force week numbering on std::chrono's calendar: walk back to the start of the
// week, give the week to the year holding enough of its days, count weeks back.
int WeekdayOf(sys_days day) { return static_cast<int>(weekday{day}.c_encoding()); }
int YearOf(sys_days day) { return static_cast<int>(year_month_day{day}.year()); }

// The year that the week starting at `start` belongs to.
int OwnerYear(sys_days start, int minimalDays)
{
    const int first = YearOf(start), last = YearOf(start + days{6});
    int inLast = 0;
    for (int i = 0; i < 7; ++i) inLast += YearOf(start + days{i}) == last;
    return first == last || inLast >= minimalDays ? last : first;
}

// The week number of `day` and the number of weeks of the year owning it.
std::pair<int, int> ReferenceWeekOfYear(sys_days day, int firstDay, int minimalDays)
{
    sys_days start = day;
    while (WeekdayOf(start) != firstDay) start -= days{1};
    const int owner = OwnerYear(start, minimalDays);
    int week = 1;
    while (OwnerYear(start - days{7 * week}, minimalDays) == owner) ++week;
    int total = week;
    while (OwnerYear(start + days{7 * (total - week + 1)}, minimalDays) == owner) ++total;
    return {week, total};
}

// Weeks start on firstDay; the partial week opening the month is week 1 when it has
// at least minimalDays days, else week 0.
int ReferenceWeekOfMonth(sys_days day, int firstDay, int minimalDays)
{
    const year_month_day ymd{day};
    const sys_days first = sys_days{ymd.year() / ymd.month() / 1};
    int week = 0, opening = 0;
    for (sys_days d = first; d <= day; d += days{1}) week += WeekdayOf(d) == firstDay;
    for (sys_days d = first; opening == 0 || WeekdayOf(d) != firstDay; d += days{1}) ++opening;
    return week + (WeekdayOf(first) != firstDay && opening >= minimalDays);
}

// Around each year's end and at each month's first and last day, for years of every
// weekday pattern (2015..2028 and 2032 cover all fourteen kinds but one, 2036 adds a
// leap year starting on a Tuesday).
TEST(WeekFields, EveryWeekSettingMatchesBruteForce)
{
    std::vector<sys_days> dates;
    for (int y : {2015, 2016, 2017, 2018, 2019, 2020, 2021, 2022, 2023, 2024, 2025, 2026, 2027, 2028, 2032, 2036}) {
        for (int i = -10; i <= 10; ++i) dates.push_back(sys_days{year{y} / January / 1} + days{i});
        for (unsigned m = 2; m <= 12; ++m) dates.push_back(sys_days{year{y} / month{m} / 1});
        for (unsigned m = 1; m <= 11; ++m) dates.push_back(sys_days{year{y} / month{m} / last});
    }
    for (sys_days day : dates) {
        const year_month_day ymd{day};
        const sys_days monthEnd = sys_days{ymd.year() / ymd.month() / last};
        for (int firstDay = 0; firstDay <= 6; ++firstDay) {
            for (int minimalDays = 1; minimalDays <= 7; ++minimalDays) {
                Value v(static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
                        static_cast<int>(static_cast<unsigned>(ymd.day())));
                v.Week(firstDay, minimalDays);
                const auto [week, weeks] = ReferenceWeekOfYear(day, firstDay, minimalDays);
                SCOPED_TRACE(v.Text() + " first " + std::to_string(firstDay) + " min " + std::to_string(minimalDays));
                EXPECT_EQ(v.Get(ORV_DATETIMEFIELD_WeekOfYear), week);
                EXPECT_EQ(OrvDateTimeGetActualMaximum(v.get(), ORV_DATETIMEFIELD_WeekOfYear), weeks);
                EXPECT_EQ(v.Get(ORV_DATETIMEFIELD_WeekOfMonth), ReferenceWeekOfMonth(day, firstDay, minimalDays));
                EXPECT_EQ(OrvDateTimeGetActualMaximum(v.get(), ORV_DATETIMEFIELD_WeekOfMonth),
                          ReferenceWeekOfMonth(monthEnd, firstDay, minimalDays));
            }
        }
    }
}

// Monday/4 is ISO 8601: the week holding the year's first Thursday is week 1.
TEST(DerivedFields, IsoWeekWeekdayAndDayOfYearAgreeWithChronoOverFourCenturies)
{
    Value v(1800, 1, 1);
    for (sys_days day = sys_days{1800y / January / 1}; day < sys_days{2200y / January / 1}; day += days{1}) {
        const sys_days thursday = day - days{(WeekdayOf(day) + 6) % 7} + days{3};
        const sys_days jan1 = sys_days{year_month_day{thursday}.year() / January / 1};
        ASSERT_EQ(v.Get(ORV_DATETIMEFIELD_WeekOfYear), (thursday - jan1).count() / 7 + 1) << v.Text();
        ASSERT_EQ(v.Get(ORV_DATETIMEFIELD_DayOfWeek), WeekdayOf(day)) << v.Text();
        ASSERT_EQ(v.Get(ORV_DATETIMEFIELD_DayOfYear), (day - sys_days{year_month_day{day}.year() / January / 1}).count() + 1)
            << v.Text();
        ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfYear, 1));
    }
    // Outside the instant range too.
    EXPECT_EQ(Value(3000, 1, 1).Get(ORV_DATETIMEFIELD_DayOfWeek), 3);
    EXPECT_EQ(Value(1000, 1, 1).Get(ORV_DATETIMEFIELD_DayOfWeek), 3);
    EXPECT_EQ(Value(3000, 12, 31).Get(ORV_DATETIMEFIELD_DayOfYear), 365);
}

// Additions, and setting a field (raw, carried on the next read).
TEST(AddToAndSetField, Table)
{
    const struct {
        Ymd start;
        int hour;
        OrvDateTimeField field;
        OrvInt inc; // or the value set, with `set`
        const char* expected;
        bool set = false;
    } cases[] = {
        {{2023, 6, 10}, 0, ORV_DATETIMEFIELD_Month, 13, "2024-01-10T00:00:00.000000000", true},
        {{2024, 3, 10}, 0, ORV_DATETIMEFIELD_DayOfMonth, 0, "2024-02-29T00:00:00.000000000", true},
        {{2024, 1, 1}, 0, ORV_DATETIMEFIELD_Nanosecond, -1, "2023-12-31T23:59:59.999999999", true},
        {{2024, 2, 29}, 0, ORV_DATETIMEFIELD_Year, 2023, "2023-03-01T00:00:00.000000000", true},
        {{2024, 1, 1}, 0, ORV_DATETIMEFIELD_Second, INT_MAX, "2092-01-19T03:14:07.000000000", true},
        {{2023, 1, 31}, 0, ORV_DATETIMEFIELD_Month, 1, "2023-03-03T00:00:00.000000000"},
        {{2024, 2, 29}, 0, ORV_DATETIMEFIELD_Year, 1, "2025-03-01T00:00:00.000000000"},
        {{2024, 12, 28}, 0, ORV_DATETIMEFIELD_WeekOfYear, 1, "2025-01-04T00:00:00.000000000"},
        {{2024, 6, 1}, 0, ORV_DATETIMEFIELD_WeekOfMonth, -1, "2024-05-25T00:00:00.000000000"},
        {{2024, 3, 1}, 0, ORV_DATETIMEFIELD_DayOfWeek, -1, "2024-02-29T00:00:00.000000000"},
        {{2023, 1, 1}, 0, ORV_DATETIMEFIELD_DayOfYear, 365, "2024-01-01T00:00:00.000000000"},
        {{2024, 1, 1}, 23, ORV_DATETIMEFIELD_Minute, 61, "2024-01-02T00:01:00.000000000"},
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
        {{2024, 3, 5}, 0, ORV_DATETIMEFIELD_WeekOfYear, INT_MAX, "41159297-11-05T00:00:00.000000000"},
        {{2024, 3, 5}, 0, ORV_DATETIMEFIELD_WeekOfMonth, INT_MIN, "-41155250-06-27T00:00:00.000000000"},
    };
    for (const auto& c : cases) {
        Value v(c.start.y, c.start.m, c.start.d, c.hour);
        SCOPED_TRACE(v.Text() + " field " + std::to_string(c.field) + (c.set ? " = " : " + ") + std::to_string(c.inc));
        if (c.set) {
            ASSERT_TRUE(OrvDateTimeSetField(v.get(), c.field, c.inc));
            EXPECT_FALSE(v->normalized);
            EXPECT_EQ(v->offset, ORV_TIME_INVALID);
        } else {
            EXPECT_TRUE(OrvDateTimeAddToField(v.get(), c.field, c.inc));
        }
        EXPECT_EQ(v.Text(), c.expected);
    }
}

// Refused: setting a derived field or a bad selector, adding with a bad selector or
// beyond a 32-bit year. The value is left alone.
TEST(AddToAndSetField, RefusalsKeepTheValue)
{
    const struct {
        bool set;
        unsigned field;
        OrvInt amount;
    } cases[] = {
        {true, 4, 1},  {true, 8, 1},  {true, 9, 1}, {true, 10, 1},        {true, 11, 1},          {true, 15, 1},
        {false, 11, 1}, {false, ORV_DATETIMEFIELD_Year, INT_MAX}, {false, ORV_DATETIMEFIELD_Year, 2147481624},
        {false, ORV_DATETIMEFIELD_WeekOfYear, INT_MAX},
    };
    for (const auto& c : cases) {
        const auto field = static_cast<OrvDateTimeField>(c.field);
        Value v(2024, 3, 5, 9);
        ASSERT_TRUE(c.amount == 1 || OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Year, 2147000000));
        OrvDateTime before;
        std::memcpy(&before, v.get(), sizeof before);
        EXPECT_FALSE(c.set ? OrvDateTimeSetField(v.get(), field, c.amount) : OrvDateTimeAddToField(v.get(), field, c.amount))
            << c.field;
        EXPECT_EQ(std::memcmp(&before, v.get(), sizeof before), 0) << c.field;
    }
}

TEST(FieldAccess, ZoneWithoutAnswerForReadings)
{
    OrvTimezone failing;
    ASSERT_NE(orv::test::MakeTransitionZone(&failing, {0, {}, true, false}, OrvAllocatorGetDefault()), nullptr);
    {
        Value v(UtcInstant(2024, 5, 1), &failing); // built from an instant: asks getOffset only
        EXPECT_EQ(OrvDateTimeGetOffset(v.get()), 0);
        ASSERT_TRUE(OrvDateTimeSetField(v.get(), ORV_DATETIMEFIELD_Hour, 30)); // now needs the fields' offset
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), static_cast<OrvDateTimeField>(99), 0));
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, 0));
        EXPECT_FALSE(v->normalized); // an amount of 0 does not normalize
        EXPECT_FALSE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, 1)); // cannot normalize first
        EXPECT_EQ(v->monthDay * 100 + v->hour, 206); // carried, nothing added
        EXPECT_EQ(OrvDateTimeGetField(v.get(), ORV_DATETIMEFIELD_Hour), -1);
        EXPECT_EQ(OrvDateTimeGetOffset(v.get()), ORV_TIME_INVALID);
        EXPECT_EQ(OrvDateTimeGetCurrentUTCOffset(v.get()), ORV_TIME_INVALID);
        EXPECT_EQ(OrvDateTimeGetWallTime(v.get()), ORV_TIME_INVALID);
    }
    {
        Value v(UtcInstant(2024, 5, 1, 10), &failing);
        // Time fields keep the offset and never ask for the fields' offset.
        EXPECT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, 1));
        EXPECT_EQ(v->hour, 11);
        // A date field asks, and fails after adding: the sum stays, pending.
        EXPECT_FALSE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfMonth, 40));
        EXPECT_EQ(v->month * 100 + v->monthDay, 610);
        EXPECT_EQ(v->offset, ORV_TIME_INVALID);
    }
    OrvTimezoneDestruct(&failing);
}

// Across the test zone's clock changes (+1 h, +2 h from 2024-03-31T01:00Z, +1 h again
// from 2024-10-27T01:00Z) time fields count elapsed time, date fields keep the reading.
TEST(AddToField, ElapsedVersusWallClockAcrossClockChanges)
{
    OrvTimezone dst;
    ASSERT_NE(orv::test::MakeTransitionZone(&dst, orv::test::DstRules(), OrvAllocatorGetDefault()), nullptr);
    const struct {
        OrvTime start; // instant
        OrvDateTimeField field;
        OrvInt inc;
        const char* expectedLocal;
        OrvTime expectedElapsed;
    } cases[] = {
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
        {UtcInstant(2024, 3, 30, 1, 30), ORV_DATETIMEFIELD_DayOfMonth, 1, "2024-03-31T03:30:00.000000000", 24 * kHour},
        // A day back from the second 02:30 reads 02:30 at +2 h.
        {UtcInstant(2024, 10, 27, 1, 30), ORV_DATETIMEFIELD_DayOfMonth, -1, "2024-10-26T02:30:00.000000000", -25 * kHour},
    };
    for (const auto& c : cases) {
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
    Value v(2262, 4, 11);
    ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_DayOfMonth, 1));
    EXPECT_EQ(OrvDateTimeGetWallTime(v.get()), ORV_TIME_INVALID);
    EXPECT_EQ(v.Text(), "2262-04-12T00:00:00.000000000");
    ASSERT_TRUE(OrvDateTimeAddToField(v.get(), ORV_DATETIMEFIELD_Hour, -24));
    EXPECT_EQ(OrvDateTimeGetWallTime(v.get()), UtcInstant(2262, 4, 11));
}

} // namespace
