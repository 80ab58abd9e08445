// Field reads and ordering on consistent values: day of week and ISO week of year
// against std::chrono (weekday plus the ISO Thursday rule), both of a value together,
// and OrvDateTimeLess against a plain comparison of two int64 as the floor. Every row
// walks the same fixed pseudo-random spread of dates, 1900-2100, in several fixed zones.
//
// Field writes: the seven OrvDateTimeSetField calls of a whole reading and the instant
// read back (OrvDateTimeGetWallTime), beside the same reading written straight into the
// members, marked pending as SetField marks it, and read back the same way: the floor.
#include "Orv/Calendar/OrvDateTime.h"
#include "RatioReporter.h"

#include <chrono>
#include <random>
#include <vector>

namespace {

using namespace std::chrono;

constexpr std::size_t kCount = 4096; // a power of two

struct Samples {
    std::vector<OrvDateTime> values; // consistent, Monday/4
    std::vector<year_month_day> dates;
    std::vector<OrvTime> instants;
    std::vector<int> isoWeeks; // from the library, to check the peer against
    OrvTimezone zones[3];

    Samples()
    {
        const OrvTime offsets[3] = {0, 5 * ORV_TIME_NANOSECONDS_PER_HOUR + 30 * ORV_TIME_NANOSECONDS_PER_MINUTE,
                                    -4 * ORV_TIME_NANOSECONDS_PER_HOUR};
        for (int z = 0; z < 3; ++z) OrvFixedTimezoneConstruct(&zones[z], offsets[z], OrvAllocatorGetDefault());
        std::mt19937_64 rng(2024);
        std::uniform_int_distribution<OrvTime> dist(-70 * 365 * ORV_TIME_NANOSECONDS_PER_DAY,
                                                    130 * 365 * ORV_TIME_NANOSECONDS_PER_DAY);
        values.resize(kCount);
        for (std::size_t i = 0; i < kCount; ++i) {
            OrvDateTime* d = &values[i];
            OrvDateTimeConstruct(d, dist(rng), &zones[i % 3]);
            dates.push_back(year{d->year} / month{static_cast<unsigned>(d->month)} / day{static_cast<unsigned>(d->monthDay)});
            instants.push_back(d->wallTime);
            isoWeeks.push_back(OrvDateTimeGetField(d, ORV_DATETIMEFIELD_WeekOfYear));
        }
    }
    ~Samples()
    {
        for (OrvDateTime& d : values) OrvDateTimeDestruct(&d);
        for (OrvTimezone& tz : zones) OrvTimezoneDestruct(&tz);
    }
};

const Samples& Get()
{
    static const Samples samples;
    return samples;
}

void DayOfWeekOrv(benchmark::State& state)
{
    const OrvDateTime* values = Get().values.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvDateTimeGetField(&values[i++ & (kCount - 1)], ORV_DATETIMEFIELD_DayOfWeek));
    }
    state.SetItemsProcessed(state.iterations());
}

void DayOfWeekChrono(benchmark::State& state)
{
    const year_month_day* dates = Get().dates.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(weekday{sys_days{dates[i++ & (kCount - 1)]}}.c_encoding());
    }
    state.SetItemsProcessed(state.iterations());
}

void WeekOfYearOrv(benchmark::State& state)
{
    const OrvDateTime* values = Get().values.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvDateTimeGetField(&values[i++ & (kCount - 1)], ORV_DATETIMEFIELD_WeekOfYear));
    }
    state.SetItemsProcessed(state.iterations());
}

// ISO 8601 weeks of a year: 53 when 1 January is a Thursday, or a Wednesday in a leap
// year; jan1 is its ISO weekday, 1 (Monday) .. 7.
int IsoWeeksInYear(int jan1, bool leap) { return jan1 == 4 || (leap && jan1 == 3) ? 53 : 52; }

// ISO 8601 week number from the day of the year and the weekday, with the two
// corrections at the ends of the year (two day counts and a weekday in all).
unsigned IsoWeek(year_month_day ymd)
{
    const sys_days day{ymd};
    const int wd = static_cast<int>(weekday{day}.iso_encoding());
    const int doy = static_cast<int>((day - sys_days{ymd.year() / January / 1}).count()) + 1;
    const int jan1 = (wd - doy + 7 * 53) % 7 + 1; // ISO weekday of 1 January
    const int week = (doy - wd + 10) / 7;
    if (week < 1) {
        const year prev = ymd.year() - years{1};
        const int prevJan1 = (jan1 - 1 - (prev.is_leap() ? 366 : 365) + 7 * 53) % 7 + 1;
        return static_cast<unsigned>(IsoWeeksInYear(prevJan1, prev.is_leap()));
    }
    return static_cast<unsigned>(week > IsoWeeksInYear(jan1, ymd.year().is_leap()) ? 1 : week);
}

void WeekOfYearChrono(benchmark::State& state)
{
    const year_month_day* dates = Get().dates.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(IsoWeek(dates[i++ & (kCount - 1)]));
    }
    for (std::size_t k = 0; k < kCount; ++k) {
        if (static_cast<int>(IsoWeek(dates[k])) != Get().isoWeeks[k]) {
            state.SkipWithError("wrong week");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void WeekdayIsoWeekOrv(benchmark::State& state)
{
    const OrvDateTime* values = Get().values.data();
    std::size_t i = 0;
    for (auto _ : state) {
        const OrvDateTime* d = &values[i++ & (kCount - 1)];
        benchmark::DoNotOptimize(OrvDateTimeGetField(d, ORV_DATETIMEFIELD_DayOfWeek));
        benchmark::DoNotOptimize(OrvDateTimeGetField(d, ORV_DATETIMEFIELD_WeekOfYear));
    }
    state.SetItemsProcessed(state.iterations());
}

void WeekdayIsoWeekChrono(benchmark::State& state)
{
    const year_month_day* dates = Get().dates.data();
    std::size_t i = 0;
    for (auto _ : state) {
        const year_month_day ymd = dates[i++ & (kCount - 1)];
        benchmark::DoNotOptimize(weekday{sys_days{ymd}}.c_encoding());
        benchmark::DoNotOptimize(IsoWeek(ymd));
    }
    state.SetItemsProcessed(state.iterations());
}

// A value in UTC to write the readings of the samples into.
struct UtcTarget {
    OrvDateTime d;
    UtcTarget() { OrvDateTimeConstructDefault(&d); }
    ~UtcTarget() { OrvDateTimeDestruct(&d); }
};

void SetFieldsOrv(benchmark::State& state)
{
    const OrvDateTime* values = Get().values.data();
    UtcTarget target;
    OrvDateTime* d = &target.d;
    std::size_t i = 0;
    for (auto _ : state) {
        const OrvDateTime& s = values[i++ & (kCount - 1)];
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Year, s.year);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Month, s.month);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_DayOfMonth, s.monthDay);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Hour, s.hour);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Minute, s.min);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Second, s.sec);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Nanosecond, s.nanosec);
        benchmark::DoNotOptimize(OrvDateTimeGetWallTime(d));
    }
    state.SetItemsProcessed(state.iterations());
}

void SetFieldsMembers(benchmark::State& state)
{
    const OrvDateTime* values = Get().values.data();
    UtcTarget target;
    OrvDateTime* d = &target.d;
    std::size_t i = 0;
    for (auto _ : state) {
        const OrvDateTime& s = values[i++ & (kCount - 1)];
        d->year = s.year;
        d->month = s.month;
        d->monthDay = s.monthDay;
        d->hour = s.hour;
        d->min = s.min;
        d->sec = s.sec;
        d->nanosec = s.nanosec;
        d->normalized = ORV_FALSE;
        d->offset = ORV_TIME_INVALID;
        benchmark::DoNotOptimize(OrvDateTimeGetWallTime(d));
    }
    state.SetItemsProcessed(state.iterations());
}

void LessOrv(benchmark::State& state)
{
    const OrvDateTime* values = Get().values.data();
    std::size_t i = 0;
    for (auto _ : state) {
        const std::size_t j = i++ & (kCount - 1);
        benchmark::DoNotOptimize(OrvDateTimeLess(&values[j], &values[(j + 1) & (kCount - 1)]));
    }
    state.SetItemsProcessed(state.iterations());
}

void LessInt64(benchmark::State& state)
{
    const OrvTime* instants = Get().instants.data();
    std::size_t i = 0;
    for (auto _ : state) {
        const std::size_t j = i++ & (kCount - 1);
        benchmark::DoNotOptimize(instants[j] < instants[(j + 1) & (kCount - 1)]);
    }
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(DayOfWeekOrv)->Name("DayOfWeek:orv");
BENCHMARK(DayOfWeekChrono)->Name("DayOfWeek:std::chrono");
BENCHMARK(WeekOfYearOrv)->Name("WeekOfYear:orv");
BENCHMARK(WeekOfYearChrono)->Name("WeekOfYear:std::chrono");
BENCHMARK(WeekdayIsoWeekOrv)->Name("WeekdayIsoWeek:orv");
BENCHMARK(WeekdayIsoWeekChrono)->Name("WeekdayIsoWeek:std::chrono");
BENCHMARK(SetFieldsOrv)->Name("SetFields:orv");
BENCHMARK(SetFieldsMembers)->Name("SetFields:members");
BENCHMARK(LessOrv)->Name("Less:orv");
BENCHMARK(LessInt64)->Name("Less:int64");
