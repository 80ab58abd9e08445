// Instant <-> fields conversions against glibc, std::chrono and, as the limit, Neri and
// Schneider's published day-count algorithm written out beside the loop, over a fixed
// pseudo-random spread of instants across the whole instant range (1677-2262).
#include "Calendar/OrvDateTimeInternal.hpp"
#include "RatioReporter.h"

#include <chrono>
#include <cstdint>
#include <ctime>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kCount = 8192; // a power of two

struct Sample {
    OrvTime instant;
    int year, month, day, hour, min, sec, nanos;
};

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = [] {
        std::mt19937_64 rng(1970);
        std::uniform_int_distribution<OrvTime> dist(INT64_MIN, INT64_MAX - 1);
        std::vector<Sample> v;
        for (std::size_t i = 0; i < kCount; ++i) {
            Sample s{};
            s.instant = dist(rng);
            OrvDateTime d;
            OrvDateTimeConstruct(&d, s.instant, nullptr);
            s.year = d.year, s.month = d.month, s.day = d.monthDay, s.hour = d.hour, s.min = d.min, s.sec = d.sec,
            s.nanos = d.nanosec;
            OrvDateTimeDestruct(&d);
            v.push_back(s);
        }
        return v;
    }();
    return samples;
}

void InstantToFieldsOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTimeSetWallTime(&d, samples[i++ & (kCount - 1)].instant);
        benchmark::DoNotOptimize(d.year);
        benchmark::DoNotOptimize(d.nanosec);
    }
    OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

void InstantToFieldsGmtime(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        const OrvTime t = samples[i++ & (kCount - 1)].instant;
        const time_t secs = static_cast<time_t>(t >= 0 ? t / 1000000000 : (t + 1) / 1000000000 - 1);
        std::tm tm;
        gmtime_r(&secs, &tm);
        benchmark::DoNotOptimize(tm.tm_year);
        benchmark::DoNotOptimize(tm.tm_sec);
    }
    state.SetItemsProcessed(state.iterations());
}

void InstantToFieldsChrono(benchmark::State& state)
{
    using namespace std::chrono;
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        const sys_time<nanoseconds> t{nanoseconds{samples[i++ & (kCount - 1)].instant}};
        const auto day = floor<days>(t);
        const year_month_day ymd{day};
        const hh_mm_ss<nanoseconds> hms{t - day};
        benchmark::DoNotOptimize(ymd);
        benchmark::DoNotOptimize(hms);
    }
    state.SetItemsProcessed(state.iterations());
}

// Neri and Schneider, "Euclidean affine functions and their application to calendar
// algorithms" (2022): days since 1970-01-01 to the civil date in 32-bit arithmetic, on
// a computational calendar that starts 82 cycles of 400 years before year 0.
struct NsDate {
    int year;
    unsigned month, day;
};

inline NsDate NeriSchneiderDate(std::int32_t days)
{
    constexpr std::uint32_t kShift = 82, kK = 719468 + 146097 * kShift, kL = 400 * kShift;
    const std::uint32_t n = static_cast<std::uint32_t>(days) + kK;
    const std::uint32_t n1 = 4 * n + 3;
    const std::uint32_t c = n1 / 146097;
    const std::uint32_t nc = n1 % 146097 / 4;
    const std::uint32_t n2 = 4 * nc + 3;
    const std::uint64_t p2 = std::uint64_t{2939745} * n2;
    const std::uint32_t z = static_cast<std::uint32_t>(p2 >> 32);
    const std::uint32_t ny = static_cast<std::uint32_t>(p2) / 2939745 / 4;
    const std::uint32_t n3 = 2141 * ny + 197913;
    const std::uint32_t m = n3 >> 16;
    const std::uint32_t d = (n3 & 0xFFFF) / 2141;
    const std::uint32_t j = ny >= 306;
    return {static_cast<int>(100 * c + z + j - kL), j ? m - 12 : m, d + 1};
}

// The peer's split of an instant: floor division into days, the second of the day and
// the nanosecond of the second.
struct NsSplit {
    std::int32_t days;
    unsigned secOfDay;
    std::int32_t nanos;
};

inline NsSplit SplitInstant(OrvTime t)
{
    OrvTime secs = t / 1000000000, nanos = t % 1000000000;
    if (nanos < 0) nanos += 1000000000, --secs;
    OrvTime days = secs / 86400, sod = secs % 86400;
    if (sod < 0) sod += 86400, --days;
    return {static_cast<std::int32_t>(days), static_cast<unsigned>(sod), static_cast<std::int32_t>(nanos)};
}

void InstantToFieldsNeriSchneider(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        const NsSplit split = SplitInstant(samples[i++ & (kCount - 1)].instant);
        const NsDate date = NeriSchneiderDate(split.days);
        benchmark::DoNotOptimize(date);
        benchmark::DoNotOptimize(split.secOfDay / 3600);
        benchmark::DoNotOptimize(split.secOfDay / 60 % 60);
        benchmark::DoNotOptimize(split.secOfDay % 60);
        benchmark::DoNotOptimize(split.nanos);
    }
    for (const Sample& s : samples) {
        const NsSplit split = SplitInstant(s.instant);
        const NsDate date = NeriSchneiderDate(split.days);
        if (date.year != s.year || static_cast<int>(date.month) != s.month || static_cast<int>(date.day) != s.day ||
            static_cast<int>(split.secOfDay) != (s.hour * 60 + s.min) * 60 + s.sec || split.nanos != s.nanos) {
            state.SkipWithError("wrong reading");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void FieldsToInstantOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    const OrvTimezone* utc = OrvFixedTimezoneGetUTC();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        OrvDateTime d;
        OrvDateTimeConstructFields(&d, s.year, s.month, s.day, s.hour, s.min, s.sec, s.nanos, utc);
        benchmark::DoNotOptimize(d.wallTime);
        OrvDateTimeDestruct(&d);
    }
    state.SetItemsProcessed(state.iterations());
}

void FieldsToInstantTimegm(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        std::tm tm{};
        tm.tm_year = s.year - 1900;
        tm.tm_mon = s.month - 1;
        tm.tm_mday = s.day;
        tm.tm_hour = s.hour;
        tm.tm_min = s.min;
        tm.tm_sec = s.sec;
        const time_t secs = timegm(&tm);
        benchmark::DoNotOptimize(static_cast<OrvTime>(secs) * 1000000000 + s.nanos);
    }
    state.SetItemsProcessed(state.iterations());
}

void FieldsToInstantChrono(benchmark::State& state)
{
    using namespace std::chrono;
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        const sys_days day{year{s.year} / month{static_cast<unsigned>(s.month)} / std::chrono::day{static_cast<unsigned>(s.day)}};
        const auto t = day + hours{s.hour} + minutes{s.min} + seconds{s.sec} + nanoseconds{s.nanos};
        benchmark::DoNotOptimize(t);
    }
    state.SetItemsProcessed(state.iterations());
}

void NormalizeConsistentOrv(benchmark::State& state)
{
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvDateTimeNormalizeAndSetWall(&d));
        benchmark::ClobberMemory();
    }
    OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(InstantToFieldsOrv)->Name("InstantToFields:orv");
BENCHMARK(InstantToFieldsGmtime)->Name("InstantToFields:gmtime_r");
BENCHMARK(InstantToFieldsChrono)->Name("InstantToFields:std::chrono");
BENCHMARK(InstantToFieldsNeriSchneider)->Name("InstantToFields:neri-schneider");
BENCHMARK(FieldsToInstantOrv)->Name("FieldsToInstant:orv");
BENCHMARK(FieldsToInstantTimegm)->Name("FieldsToInstant:timegm");
BENCHMARK(FieldsToInstantChrono)->Name("FieldsToInstant:std::chrono");
BENCHMARK(NormalizeConsistentOrv)->Name("NormalizeConsistent:orv");

} // namespace
