// Field reads and ordering on consistent values: day of week and ISO week of year
// against std::chrono (weekday plus the ISO Thursday rule), and OrvDateTimeLess against
// a plain comparison of two int64 as the floor. Every row walks the same fixed
// pseudo-random spread of dates, 1900-2100, in several fixed zones.
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

// ISO 8601: the week's Thursday decides the year; the week number counts from the
// first Thursday of that year.
unsigned IsoWeek(year_month_day ymd)
{
    const sys_days day{ymd};
    const sys_days thursday = day - (weekday{day} - Monday) + days{3};
    const sys_days jan1{year_month_day{thursday}.year() / January / 1};
    return static_cast<unsigned>((thursday - jan1).count() / 7 + 1);
}

void WeekOfYearChrono(benchmark::State& state)
{
    const year_month_day* dates = Get().dates.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(IsoWeek(dates[i++ & (kCount - 1)]));
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
BENCHMARK(LessOrv)->Name("Less:orv");
BENCHMARK(LessInt64)->Name("Less:int64");
