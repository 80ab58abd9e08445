// Building a value in Europe/Berlin, from an instant and from local fields, and finding
// the zone's next transition after an instant, over a fixed pseudo-random spread of
// instants from 1900 to 2100, beside glibc (localtime_r / mktime with TZ=Europe/Berlin),
// cctz, Abseil and ICU when they are installed. The "orv" rows use the shared zone
// (no count to change per value); "orv-counted" a zone of the caller's own. The
// TzNy rows build values in America/New_York's shared zone beside cctz's conversions.
#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "RatioReporter.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <vector>

#if ORV_BENCH_HAVE_CCTZ
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#endif
#if ORV_BENCH_HAVE_ABSL
#include <absl/time/civil_time.h>
#include <absl/time/time.h>
#endif
#if ORV_BENCH_HAVE_ICU
#include <unicode/gregocal.h>
#include <unicode/timezone.h>
#endif

namespace {

constexpr std::size_t kCount = 4096; // a power of two
constexpr const char* kZone = "Europe/Berlin";
constexpr OrvTime kNs = ORV_TIME_NANOSECONDS_PER_SECOND;

struct Sample {
    OrvTime instant;
    int year, month, day, hour, min, sec;
};

const OrvTimezone* Berlin()
{
    const OrvTimezone* tz = OrvTzdbTimezoneGetShared(kZone);
    if (tz == nullptr) {
        std::fprintf(stderr, "cannot load %s from the zone database\n", kZone);
        std::exit(1);
    }
    return tz;
}

const OrvTimezone* CountedBerlin()
{
    static OrvTimezone tz;
    static const bool ok = OrvTzdbTimezoneConstruct(&tz, kZone, OrvAllocatorGetDefault()) != nullptr;
    if (!ok) std::exit(1);
    return &tz;
}

constexpr const char* kNyZone = "America/New_York";

const OrvTimezone* NewYork()
{
    const OrvTimezone* tz = OrvTzdbTimezoneGetShared(kNyZone);
    if (tz == nullptr) {
        std::fprintf(stderr, "cannot load %s from the zone database\n", kNyZone);
        std::exit(1);
    }
    return tz;
}

// The instants and their local readings in tz.
std::vector<Sample> MakeSamples(const OrvTimezone* tz)
{
    std::mt19937_64 rng(1900);
    // 1900-01-01T00:00Z to 2100-01-01T00:00Z, whole seconds.
    std::uniform_int_distribution<std::int64_t> dist(-2208988800, 4102444799);
    std::vector<Sample> v;
    for (std::size_t i = 0; i < kCount; ++i) {
        const OrvTime t = dist(rng) * kNs;
        OrvDateTime d;
        OrvDateTimeConstruct(&d, t, tz);
        v.push_back({t, d.year, d.month, d.monthDay, d.hour, d.min, d.sec});
        OrvDateTimeDestruct(&d);
    }
    return v;
}

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = MakeSamples(Berlin());
    return samples;
}

const std::vector<Sample>& NySamples()
{
    static const std::vector<Sample> samples = MakeSamples(NewYork());
    return samples;
}

void UseGlibcZone()
{
    setenv("TZ", kZone, 1);
    tzset();
}

// ---------------------------------------------------------------------------------
// Instant -> value
// ---------------------------------------------------------------------------------

void FromInstantOrv(benchmark::State& state, const OrvTimezone* tz, const std::vector<Sample>& samples)
{
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTime d;
        OrvDateTimeConstruct(&d, samples[i++ & (kCount - 1)].instant, tz);
        benchmark::DoNotOptimize(d.year);
        benchmark::DoNotOptimize(d.sec);
        OrvDateTimeDestruct(&d);
    }
    state.SetItemsProcessed(state.iterations());
}

void FromInstantLocaltime(benchmark::State& state)
{
    const auto& samples = Samples();
    UseGlibcZone();
    std::size_t i = 0;
    for (auto _ : state) {
        const time_t t = static_cast<time_t>(samples[i++ & (kCount - 1)].instant / kNs);
        std::tm tm;
        localtime_r(&t, &tm);
        benchmark::DoNotOptimize(tm.tm_year);
        benchmark::DoNotOptimize(tm.tm_sec);
    }
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------------
// Local fields -> value
// ---------------------------------------------------------------------------------

void FromFieldsOrv(benchmark::State& state, const OrvTimezone* tz, const std::vector<Sample>& samples)
{
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        OrvDateTime d;
        OrvDateTimeConstructFields(&d, s.year, s.month, s.day, s.hour, s.min, s.sec, 0, tz);
        benchmark::DoNotOptimize(d.wallTime);
        OrvDateTimeDestruct(&d);
    }
    state.SetItemsProcessed(state.iterations());
}

void FromFieldsMktime(benchmark::State& state)
{
    const auto& samples = Samples();
    UseGlibcZone();
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
        tm.tm_isdst = -1;
        benchmark::DoNotOptimize(mktime(&tm));
    }
    state.SetItemsProcessed(state.iterations());
}

// ---------------------------------------------------------------------------------
// Next transition after an instant
// ---------------------------------------------------------------------------------

void NextTransitionOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    const OrvTimezone* tz = Berlin();
    std::size_t i = 0;
    for (auto _ : state) {
        OrvTzdbTransition tr;
        benchmark::DoNotOptimize(OrvTzdbTimezoneNextTransition(tz, samples[i++ & (kCount - 1)].instant, &tr));
        benchmark::DoNotOptimize(tr.instant);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(FromInstantOrv, shared, Berlin(), Samples())->Name("TzFromInstant:orv");
BENCHMARK_CAPTURE(FromInstantOrv, counted, CountedBerlin(), Samples())->Name("TzFromInstant:orv-counted");
BENCHMARK(FromInstantLocaltime)->Name("TzFromInstant:localtime_r");
BENCHMARK_CAPTURE(FromFieldsOrv, shared, Berlin(), Samples())->Name("TzFromFields:orv");
BENCHMARK_CAPTURE(FromFieldsOrv, counted, CountedBerlin(), Samples())->Name("TzFromFields:orv-counted");
BENCHMARK_CAPTURE(FromInstantOrv, ny, NewYork(), NySamples())->Name("TzNyFromInstant:orv");
BENCHMARK_CAPTURE(FromFieldsOrv, ny, NewYork(), NySamples())->Name("TzNyFromFields:orv");
BENCHMARK(FromFieldsMktime)->Name("TzFromFields:mktime");
BENCHMARK(NextTransitionOrv)->Name("TzNextTransition:orv");

#if ORV_BENCH_HAVE_CCTZ
cctz::time_zone CctzLoad(const char* id)
{
    cctz::time_zone z;
    if (!cctz::load_time_zone(id, &z)) std::fprintf(stderr, "cctz cannot load %s\n", id);
    return z;
}

const cctz::time_zone& CctzBerlin()
{
    static const cctz::time_zone tz = CctzLoad(kZone);
    return tz;
}

const cctz::time_zone& CctzNewYork()
{
    static const cctz::time_zone tz = CctzLoad(kNyZone);
    return tz;
}

void FromInstantCctz(benchmark::State& state, const cctz::time_zone& tz, const std::vector<Sample>& samples)
{
    using namespace std::chrono;
    std::size_t i = 0;
    for (auto _ : state) {
        const cctz::time_point<seconds> t{seconds{samples[i++ & (kCount - 1)].instant / kNs}};
        const cctz::civil_second cs = cctz::convert(t, tz);
        benchmark::DoNotOptimize(cs);
    }
    state.SetItemsProcessed(state.iterations());
}

void FromFieldsCctz(benchmark::State& state, const cctz::time_zone& tz, const std::vector<Sample>& samples)
{
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        const auto t = cctz::convert(cctz::civil_second(s.year, s.month, s.day, s.hour, s.min, s.sec), tz);
        benchmark::DoNotOptimize(t);
    }
    state.SetItemsProcessed(state.iterations());
}

void NextTransitionCctz(benchmark::State& state)
{
    using namespace std::chrono;
    const auto& samples = Samples();
    const cctz::time_zone& tz = CctzBerlin();
    std::size_t i = 0;
    for (auto _ : state) {
        const cctz::time_point<seconds> t{seconds{samples[i++ & (kCount - 1)].instant / kNs}};
        cctz::time_zone::civil_transition tr;
        benchmark::DoNotOptimize(tz.next_transition(t, &tr));
        benchmark::DoNotOptimize(tr.to);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(FromInstantCctz, berlin, CctzBerlin(), Samples())->Name("TzFromInstant:cctz");
BENCHMARK_CAPTURE(FromFieldsCctz, berlin, CctzBerlin(), Samples())->Name("TzFromFields:cctz");
BENCHMARK_CAPTURE(FromInstantCctz, ny, CctzNewYork(), NySamples())->Name("TzNyFromInstant:cctz");
BENCHMARK_CAPTURE(FromFieldsCctz, ny, CctzNewYork(), NySamples())->Name("TzNyFromFields:cctz");
BENCHMARK(NextTransitionCctz)->Name("TzNextTransition:cctz");
#endif

#if ORV_BENCH_HAVE_ABSL
const absl::TimeZone& AbslBerlin()
{
    static const absl::TimeZone tz = [] {
        absl::TimeZone z;
        if (!absl::LoadTimeZone(kZone, &z)) std::fprintf(stderr, "Abseil cannot load %s\n", kZone);
        return z;
    }();
    return tz;
}

void FromInstantAbsl(benchmark::State& state)
{
    const auto& samples = Samples();
    const absl::TimeZone& tz = AbslBerlin();
    std::size_t i = 0;
    for (auto _ : state) {
        const absl::Time t = absl::FromUnixSeconds(samples[i++ & (kCount - 1)].instant / kNs);
        benchmark::DoNotOptimize(absl::ToCivilSecond(t, tz));
    }
    state.SetItemsProcessed(state.iterations());
}

void FromFieldsAbsl(benchmark::State& state)
{
    const auto& samples = Samples();
    const absl::TimeZone& tz = AbslBerlin();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        benchmark::DoNotOptimize(absl::FromCivil(absl::CivilSecond(s.year, s.month, s.day, s.hour, s.min, s.sec), tz));
    }
    state.SetItemsProcessed(state.iterations());
}

void NextTransitionAbsl(benchmark::State& state)
{
    const auto& samples = Samples();
    const absl::TimeZone& tz = AbslBerlin();
    std::size_t i = 0;
    for (auto _ : state) {
        absl::TimeZone::CivilTransition tr;
        benchmark::DoNotOptimize(tz.NextTransition(absl::FromUnixSeconds(samples[i++ & (kCount - 1)].instant / kNs), &tr));
        benchmark::DoNotOptimize(tr.to);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(FromInstantAbsl)->Name("TzFromInstant:absl");
BENCHMARK(FromFieldsAbsl)->Name("TzFromFields:absl");
BENCHMARK(NextTransitionAbsl)->Name("TzNextTransition:absl");
#endif

#if ORV_BENCH_HAVE_ICU
// One calendar per benchmark, as an application keeps one per thread.
icu::GregorianCalendar* IcuBerlin()
{
    UErrorCode status = U_ZERO_ERROR;
    auto* cal = new icu::GregorianCalendar(icu::TimeZone::createTimeZone(kZone), status);
    if (U_FAILURE(status)) std::fprintf(stderr, "ICU cannot make a calendar for %s\n", kZone);
    return cal;
}

void FromInstantIcu(benchmark::State& state)
{
    const auto& samples = Samples();
    icu::GregorianCalendar* cal = IcuBerlin();
    std::size_t i = 0;
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        cal->setTime(static_cast<UDate>(samples[i++ & (kCount - 1)].instant / 1000000), status);
        benchmark::DoNotOptimize(cal->get(UCAL_YEAR, status));
        benchmark::DoNotOptimize(cal->get(UCAL_MONTH, status));
        benchmark::DoNotOptimize(cal->get(UCAL_DATE, status));
        benchmark::DoNotOptimize(cal->get(UCAL_HOUR_OF_DAY, status));
        benchmark::DoNotOptimize(cal->get(UCAL_MINUTE, status));
        benchmark::DoNotOptimize(cal->get(UCAL_SECOND, status));
    }
    delete cal;
    state.SetItemsProcessed(state.iterations());
}

void FromFieldsIcu(benchmark::State& state)
{
    const auto& samples = Samples();
    icu::GregorianCalendar* cal = IcuBerlin();
    std::size_t i = 0;
    for (auto _ : state) {
        const Sample& s = samples[i++ & (kCount - 1)];
        UErrorCode status = U_ZERO_ERROR;
        cal->clear();
        cal->set(s.year, s.month - 1, s.day, s.hour, s.min, s.sec);
        benchmark::DoNotOptimize(cal->getTime(status));
    }
    delete cal;
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(FromInstantIcu)->Name("TzFromInstant:icu");
BENCHMARK(FromFieldsIcu)->Name("TzFromFields:icu");
#endif

} // namespace
