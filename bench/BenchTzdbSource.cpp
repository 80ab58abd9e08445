// Building a database zone from the embedded copy and from the system folder (the
// file opened, read and checked each time), cycling through a few zones of different
// sizes, beside glibc loading the same zone for a new TZ.
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "RatioReporter.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr const char* kZones[] = {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Kolkata"};
constexpr std::size_t kZoneCount = sizeof kZones / sizeof kZones[0];

void Construct(benchmark::State& state, OrvTzdbSource source, const char* folder)
{
    if (!OrvTzdbSetSource(source, folder)) {
        state.SkipWithError("source not available");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        OrvTimezone tz;
        if (OrvTzdbTimezoneConstruct(&tz, kZones[i++ % kZoneCount], OrvAllocatorGetDefault()) == nullptr) {
            state.SkipWithError("zone missing");
            break;
        }
        OrvTimezoneDestruct(&tz);
    }
    OrvTzdbSetSource(ORV_TZDBSOURCE_Automatic, nullptr);
    state.SetItemsProcessed(state.iterations());
}

void ConstructEmbedded(benchmark::State& state) { Construct(state, ORV_TZDBSOURCE_Embedded, nullptr); }
void ConstructFolder(benchmark::State& state) { Construct(state, ORV_TZDBSOURCE_Folder, "/usr/share/zoneinfo"); }

// glibc reads the zone file again whenever TZ names another zone.
void ConstructTzset(benchmark::State& state)
{
    std::size_t i = 0;
    for (auto _ : state) {
        setenv("TZ", kZones[i++ % kZoneCount], 1);
        tzset();
        benchmark::DoNotOptimize(timezone);
    }
    unsetenv("TZ");
    tzset();
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(ConstructEmbedded)->Name("TzConstruct:orv");
BENCHMARK(ConstructFolder)->Name("TzConstruct:orv_folder");
BENCHMARK(ConstructTzset)->Name("TzConstruct:tzset");
