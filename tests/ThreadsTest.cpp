// Threads meeting inside the library: values, vectors and sets on different threads that
// share zones (counted and shared), and the log called from many threads at once. Run
// under ThreadSanitizer by the test command; the counts below must also come out exact.
#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Os/OrvLog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

constexpr int kThreads = 8;

template <typename Body>
void OnThreads(Body body)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) threads.emplace_back(body, t);
    for (std::thread& t : threads) t.join();
}

TEST(Threads, ContainersOnEachThreadShareZones)
{
    OrvTimezone counted;
    ASSERT_NE(OrvTzdbTimezoneConstruct(&counted, "Europe/Berlin", OrvAllocatorGetDefault()), nullptr);
    const OrvTimezone* shared = OrvTzdbTimezoneGetShared("America/New_York");
    ASSERT_NE(shared, nullptr);
    std::atomic<int> failures{0};
    OnThreads([&](int t) {
        OrvVector_OrvDateTime vec;
        OrvSet_OrvDateTime set;
        if (OrvVector_OrvDateTimeConstructDefault(&vec, OrvAllocatorGetDefault()) == nullptr ||
            OrvSet_OrvDateTimeConstruct(&set, OrvAllocatorGetDefault()) == nullptr) {
            ++failures;
            return;
        }
        for (int i = 0; i < 2000; ++i) {
            OrvDateTime d;
            // Minute i of the year, alternately in the two zones: 2000 distinct instants.
            const OrvTimezone* zone = i % 2 == 0 ? &counted : shared;
            if (OrvDateTimeConstructFields(&d, 2000 + t, 1, 1, 0, i, 0, 0, zone) == nullptr) {
                ++failures;
                continue;
            }
            if (!OrvVector_OrvDateTimePushBack(&vec, &d)) ++failures;
            if (!OrvSet_OrvDateTimeInsert(&set, &d).second) ++failures;
            OrvDateTimeDestruct(&d);
        }
        if (OrvVector_OrvDateTimeSize(&vec) != 2000 || OrvSet_OrvDateTimeSize(&set) != 2000) ++failures;
        OrvVector_OrvDateTimeDestruct(&vec);
        OrvSet_OrvDateTimeDestruct(&set);
    });
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(OrvTimezoneGetUseCount(&counted), 1);
    OrvTimezoneDestruct(&counted);
}

std::atomic<int> gLines{0};

void CountingSink(OrvVoidPtr, OrvLogLevel, OrvLogCategory, const char*, OrvInt, const char*, const char*)
{
    gLines.fetch_add(1, std::memory_order_relaxed);
}

TEST(Threads, LogFromManyThreadsDeliversEveryLine)
{
    // A value in the year 3000 has no instant: building one logs one informational line.
    constexpr int kPerThread = 500;
    gLines = 0;
    OrvLogSetSink(CountingSink, nullptr);
    OnThreads([](int t) {
        for (int i = 0; i < kPerThread; ++i) {
            OrvDateTime d;
            if (OrvDateTimeConstructFields(&d, 3000 + t, 1, 1, 0, 0, 0, 0, OrvFixedTimezoneGetUTC()) != nullptr)
                OrvDateTimeDestruct(&d);
        }
    });
    OrvLogSetSink(nullptr, nullptr);
    EXPECT_EQ(gLines.load(), kThreads * kPerThread);
}

} // namespace
