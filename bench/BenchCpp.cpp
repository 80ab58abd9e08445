// What the C++ layer adds to the C API: each operation once through the C functions
// (the "orv" row) and once through orv:: (the "orv++" row) on the same inputs, so the
// ratio column reads as the layer's cost. Both rows hand plain integers to
// DoNotOptimize, since a std::optional there would be forced through memory.
#include "Orv/Calendar/OrvCalendar.hpp"
#include "RatioReporter.h"

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace std::chrono;

constexpr std::size_t kCount = 4096;

struct Sample {
    OrvTime instant;
    int year, month, day, hour, min, sec, nanos;
};

// Instants spread over the whole instant range, with their UTC fields.
const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = [] {
        std::mt19937_64 rng(1970);
        std::uniform_int_distribution<OrvTime> dist(INT64_MIN, INT64_MAX - 1);
        std::vector<Sample> v;
        for (std::size_t i = 0; i < kCount; ++i) {
            const OrvTime t = dist(rng);
            const orv::DateTime d = orv::DateTime::from_instant(sys_time<nanoseconds>(nanoseconds(t)), orv::floating).value();
            v.push_back({t, *d.year(), *d.month(), *d.day(), *d.hour(), *d.minute(), *d.second(), *d.nanosecond()});
        }
        return v;
    }();
    return samples;
}

// --- instant to fields: set the instant, read two fields ----------------------------

void InstantToFieldsC(benchmark::State& state)
{
    const auto& samples = Samples();
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTimeSetWallTime(&d, samples[i++ & (kCount - 1)].instant);
        benchmark::DoNotOptimize(OrvDateTimeGetField(&d, ORV_DATETIMEFIELD_Year));
        benchmark::DoNotOptimize(OrvDateTimeGetField(&d, ORV_DATETIMEFIELD_Nanosecond));
    }
    OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

void InstantToFieldsCpp(benchmark::State& state)
{
    const auto& samples = Samples();
    orv::DateTime d;
    std::size_t i = 0;
    for (auto _ : state) {
        d.set_instant(sys_time<nanoseconds>(nanoseconds(samples[i++ & (kCount - 1)].instant)));
        benchmark::DoNotOptimize(d.year().value_or(-1));
        benchmark::DoNotOptimize(d.nanosecond().value_or(-1));
    }
    state.SetItemsProcessed(state.iterations());
}

// --- construction from fields in UTC, reading the instant -----------------------------

void FromFieldsC(benchmark::State& state)
{
    const auto& samples = Samples();
    const OrvTimezone* utc = OrvFixedTimezoneGetUTC();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        OrvDateTime d;
        if (OrvDateTimeConstructFields(&d, s.year, s.month, s.day, s.hour, s.min, s.sec, s.nanos, utc) != nullptr) {
            benchmark::DoNotOptimize(OrvDateTimeGetWallTime(&d));
            OrvDateTimeDestruct(&d);
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void FromFieldsCpp(benchmark::State& state)
{
    const auto& samples = Samples();
    const orv::Zone utc = orv::Zone::utc();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        const auto d = orv::DateTime::from_fields(s.year, s.month, s.day, s.hour, s.min, s.sec, s.nanos, utc);
        if (d) benchmark::DoNotOptimize(d->instant().value_or(sys_time<nanoseconds>()).time_since_epoch().count());
    }
    state.SetItemsProcessed(state.iterations());
}

// --- the set: build in shuffled order, and look up present keys ------------------------

constexpr OrvTime kStep = 2000000000; // keys 2 s apart

// n distinct floating keys (0, 2 s, 4 s, ...) in a fixed shuffled order.
const std::vector<orv::DateTime>& KeysFor(std::size_t n)
{
    static std::map<std::size_t, std::vector<orv::DateTime>> cache;
    std::vector<orv::DateTime>& keys = cache[n];
    if (keys.empty()) {
        for (std::size_t i = 0; i < n; ++i)
            keys.push_back(orv::DateTime::from_instant(sys_time<nanoseconds>(nanoseconds(static_cast<OrvTime>(i) * kStep)),
                                                       orv::floating)
                               .value());
        std::shuffle(keys.begin(), keys.end(), std::mt19937_64(n));
    }
    return keys;
}

std::size_t N(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

void SetInsertC(benchmark::State& state)
{
    const auto& keys = KeysFor(N(state));
    for (auto _ : state) {
        OrvSet_OrvDateTime s;
        OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault());
        for (const orv::DateTime& k : keys) OrvSet_OrvDateTimeInsert(&s, k.c_ptr());
        benchmark::DoNotOptimize(s.size);
        state.PauseTiming();
        OrvSet_OrvDateTimeDestruct(&s);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SetInsertCpp(benchmark::State& state)
{
    const auto& keys = KeysFor(N(state));
    for (auto _ : state) {
        auto s = std::make_unique<orv::DateTimeSet>();
        for (const orv::DateTime& k : keys) s->insert(k);
        benchmark::DoNotOptimize(s->size());
        state.PauseTiming();
        s.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Sets built once per size for the lookups, one through each interface.
const orv::DateTimeSet& SetFor(std::size_t n)
{
    static std::map<std::size_t, std::unique_ptr<orv::DateTimeSet>> cache;
    auto& s = cache[n];
    if (!s) {
        s = std::make_unique<orv::DateTimeSet>();
        for (const orv::DateTime& k : KeysFor(n)) s->insert(k);
    }
    return *s;
}

void SetFindC(benchmark::State& state)
{
    const auto& keys = KeysFor(N(state));
    const OrvSet_OrvDateTime* s = SetFor(N(state)).c_ptr();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvSet_OrvDateTimeFindConst(s, keys[i].c_ptr()));
        if (++i == keys.size()) i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

void SetFindCpp(benchmark::State& state)
{
    const auto& keys = KeysFor(N(state));
    const orv::DateTimeSet& s = SetFor(N(state));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.find(keys[i]));
        if (++i == keys.size()) i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(InstantToFieldsC)->Name("InstantToFields:orv");
BENCHMARK(InstantToFieldsCpp)->Name("InstantToFields:orv++");
BENCHMARK(FromFieldsC)->Name("FromFields:orv");
BENCHMARK(FromFieldsCpp)->Name("FromFields:orv++");
BENCHMARK(SetInsertC)->Name("SetInsert:orv")->Arg(1000)->Arg(100000);
BENCHMARK(SetInsertCpp)->Name("SetInsert:orv++")->Arg(1000)->Arg(100000);
BENCHMARK(SetFindC)->Name("SetFind:orv")->Arg(1000)->Arg(100000);
BENCHMARK(SetFindCpp)->Name("SetFind:orv++")->Arg(1000)->Arg(100000);

} // namespace
