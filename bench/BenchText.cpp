// The text form against the C library: writing a value (OrvDateTimeGetString beside
// strftime with "%Y%m%dT%H%M%SZ" from a struct tm) and reading one (OrvDateTimeConstructCStr
// + OrvDateTimeDestruct beside strptime into a struct tm, and strptime followed by
// timegm, which like the library also yields the instant). Samples are spread over
// 1970-2100 so that no branch sees the same digits every time.
#include "Orv/Calendar/OrvDateTime.h"
#include "RatioReporter.h"

#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kCount = 1024;

struct Sample {
    OrvTime instant;
    std::tm tm;
    std::string text; // with Z
};

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = [] {
        std::mt19937_64 rng(20240501);
        std::uniform_int_distribution<OrvTime> seconds(0, 4102444800LL); // 1970 .. 2100
        std::vector<Sample> v;
        for (std::size_t i = 0; i < kCount; ++i) {
            Sample s{};
            s.instant = seconds(rng) * ORV_TIME_NANOSECONDS_PER_SECOND;
            const std::time_t t = static_cast<std::time_t>(s.instant / ORV_TIME_NANOSECONDS_PER_SECOND);
            gmtime_r(&t, &s.tm);
            char buf[32];
            std::strftime(buf, sizeof buf, "%Y%m%dT%H%M%SZ", &s.tm);
            s.text = buf;
            v.push_back(s);
        }
        return v;
    }();
    return samples;
}

void FormatOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    std::vector<OrvDateTime> values(kCount);
    for (std::size_t i = 0; i < kCount; ++i) OrvDateTimeConstruct(&values[i], samples[i].instant, OrvFixedTimezoneGetUTC());
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTimeGetString(&values[i++ & (kCount - 1)], &s);
        benchmark::DoNotOptimize(s.buf);
    }
    if (std::string(OrvStringCStr(&s)) != samples[(i - 1) & (kCount - 1)].text) state.SkipWithError("wrong text");
    OrvStringDestruct(&s);
    for (OrvDateTime& d : values) OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

void FormatStrftime(benchmark::State& state)
{
    const auto& samples = Samples();
    char buf[32];
    std::size_t i = 0;
    for (auto _ : state) {
        std::strftime(buf, sizeof buf, "%Y%m%dT%H%M%SZ", &samples[i++ & (kCount - 1)].tm);
        benchmark::DoNotOptimize(buf);
    }
    state.SetItemsProcessed(state.iterations());
}

void ParseOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        OrvDateTime d;
        if (OrvDateTimeConstructCStr(&d, samples[i++ & (kCount - 1)].text.c_str(), nullptr) != nullptr) {
            sum += d.wallTime;
            OrvDateTimeDestruct(&d);
        }
    }
    benchmark::DoNotOptimize(sum);
    OrvDateTime check;
    if (OrvDateTimeConstructCStr(&check, samples[0].text.c_str(), nullptr) == nullptr ||
        check.wallTime != samples[0].instant)
        state.SkipWithError("wrong instant");
    else
        OrvDateTimeDestruct(&check);
    state.SetItemsProcessed(state.iterations());
}

void ParseStrptime(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        std::tm tm{};
        benchmark::DoNotOptimize(strptime(samples[i++ & (kCount - 1)].text.c_str(), "%Y%m%dT%H%M%SZ", &tm));
        benchmark::DoNotOptimize(tm);
    }
    state.SetItemsProcessed(state.iterations());
}

void ParseStrptimeTimegm(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    std::time_t sum = 0;
    for (auto _ : state) {
        std::tm tm{};
        if (strptime(samples[i++ & (kCount - 1)].text.c_str(), "%Y%m%dT%H%M%SZ", &tm) != nullptr) sum += timegm(&tm);
    }
    benchmark::DoNotOptimize(sum);
    std::tm tm{};
    strptime(samples[0].text.c_str(), "%Y%m%dT%H%M%SZ", &tm);
    if (timegm(&tm) * ORV_TIME_NANOSECONDS_PER_SECOND != samples[0].instant) state.SkipWithError("wrong instant");
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(FormatOrv)->Name("Format:orv");
BENCHMARK(FormatStrftime)->Name("Format:strftime");
BENCHMARK(ParseOrv)->Name("Parse:orv");
BENCHMARK(ParseStrptime)->Name("Parse:strptime");
BENCHMARK(ParseStrptimeTimegm)->Name("Parse:strptime+timegm");
