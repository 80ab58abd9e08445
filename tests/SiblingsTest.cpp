// The small components under the date-time module: zone handles and their counts, fixed
// zones, the allocator, the string, the C-library wrappers and the log sink.
#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Os/OrvLog.h"
#include "Orv/Utils/OrvString.h"
#include "support/CountingAllocator.h"
#include "support/LogCapture.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

using orv::test::CountingAllocator;
using orv::test::kHour;

TEST(FixedTimezone, GlobalUtcIsUncountedAndAnswersZero)
{
    OrvTimezone* utc = OrvFixedTimezoneGetUTC();
    ASSERT_NE(utc, nullptr);
    EXPECT_TRUE(OrvFixedTimezoneIsGlobalUTC(utc));
    EXPECT_EQ(OrvTimezoneGetUseCount(utc), 0);
    EXPECT_EQ(OrvTimezoneGetOffset(utc, INT64_MIN), 0);
    EXPECT_EQ(OrvTimezoneGetOffsetFromFields(utc, 2024, 5, 1, 0, 0, 0, 0), 0);
    OrvTimezone copy;
    OrvTimezoneConstructCopy(&copy, utc);
    EXPECT_TRUE(OrvFixedTimezoneIsGlobalUTC(&copy));
    EXPECT_TRUE(OrvTimezoneEqual(&copy, utc));
    OrvTimezoneDestruct(&copy);
}

TEST(FixedTimezone, ConstructFailsCleanlyAtEveryAllocation)
{
    for (std::size_t n = 1; n <= 3; ++n) {
        CountingAllocator alloc;
        alloc.failAt(n);
        OrvTimezone tz;
        OrvTimezone* r = OrvFixedTimezoneConstruct(&tz, 5 * kHour + 30 * 60 * ORV_TIME_NANOSECONDS_PER_SECOND, alloc.get());
        if (n <= 2) {
            EXPECT_EQ(r, nullptr) << n;
        } else {
            ASSERT_EQ(r, &tz);
            EXPECT_FALSE(OrvFixedTimezoneIsGlobalUTC(&tz));
            EXPECT_EQ(OrvTimezoneGetOffset(&tz, 0), 19800 * ORV_TIME_NANOSECONDS_PER_SECOND);
            EXPECT_EQ(OrvTimezoneGetUseCount(&tz), 1);
            OrvTimezoneDestruct(&tz);
        }
        EXPECT_EQ(alloc.liveBlocks(), 0u) << n;
        EXPECT_EQ(alloc.badDeallocations(), 0u) << n;
    }
}

TEST(FixedTimezone, RefusesOffsetsThatAreNotOffsets)
{
    CountingAllocator alloc;
    OrvTimezone tz;
    for (OrvTime offset : {ORV_TIME_INVALID, 24 * kHour, -24 * kHour, INT64_MIN}) {
        EXPECT_EQ(OrvFixedTimezoneConstruct(&tz, offset, alloc.get()), nullptr) << offset;
    }
    EXPECT_EQ(OrvFixedTimezoneConstruct(nullptr, 0, alloc.get()), nullptr);
    EXPECT_EQ(OrvFixedTimezoneConstruct(&tz, 0, nullptr), nullptr);
    EXPECT_EQ(alloc.allocations(), 0u);
}

TEST(TimezoneHandle, ConstructLeavesTheObjectToTheCallerOnFailure)
{
    CountingAllocator alloc;
    alloc.failAll(true);
    OrvTimezone tz;
    int deleted = 0;
    orv::test::TransitionZoneRules rules;
    EXPECT_EQ(orv::test::MakeTransitionZone(&tz, rules, alloc.get(), &deleted), nullptr);
    EXPECT_EQ(deleted, 0); // the object was never handed over, so no deleter ran
}

TEST(TimezoneHandle, AssignAndSwapMoveCountsOnlyWhenBlocksDiffer)
{
    CountingAllocator alloc;
    int deletedA = 0, deletedB = 0;
    OrvTimezone a, b;
    orv::test::TransitionZoneRules rules;
    ASSERT_NE(orv::test::MakeTransitionZone(&a, rules, alloc.get(), &deletedA), nullptr);
    ASSERT_NE(orv::test::MakeTransitionZone(&b, rules, alloc.get(), &deletedB), nullptr);

    OrvTimezone x;
    OrvTimezoneConstructCopy(&x, &a);
    EXPECT_EQ(OrvTimezoneGetUseCount(&a), 2);
    OrvTimezoneAssign(&x, &a); // same block: nothing changes
    EXPECT_EQ(OrvTimezoneGetUseCount(&a), 2);
    OrvTimezoneAssign(&x, &b);
    EXPECT_EQ(OrvTimezoneGetUseCount(&a), 1);
    EXPECT_EQ(OrvTimezoneGetUseCount(&b), 2);
    EXPECT_TRUE(OrvTimezoneEqual(&x, &b));
    EXPECT_FALSE(OrvTimezoneEqual(&x, &a));

    EXPECT_TRUE(OrvTimezoneSwap(&x, &a));
    EXPECT_TRUE(OrvTimezoneEqual(&x, &b) == ORV_FALSE && OrvTimezoneEqual(&a, &b));
    EXPECT_EQ(OrvTimezoneGetUseCount(&b), 2);

    OrvTimezoneAssign(&x, OrvFixedTimezoneGetUTC()); // x held the last reference to the first zone
    EXPECT_EQ(deletedA, 1);
    OrvTimezoneDestruct(&x);
    OrvTimezoneDestruct(&a);
    OrvTimezoneDestruct(&b);
    EXPECT_EQ(deletedB, 1);
    EXPECT_EQ(alloc.liveBlocks(), 0u);
}

// The documented order of an assignment between different blocks: the old zone is
// released (its deleter runs) before the new zone's count is raised.
TEST(TimezoneHandle, AssignReleasesTheOldReferenceBeforeTakingTheNew)
{
    static const OrvTimezone* incoming = nullptr;
    static OrvInt incomingUsesAtDelete = -1;
    static OrvTimezoneImpl impl{nullptr}; // never asked for an offset
    CountingAllocator alloc;
    OrvTimezone tz, other;
    ASSERT_NE(OrvTimezoneConstruct(&tz, &impl, alloc.get(),
                                   [](OrvVoidPtr, OrvAllocator*) { incomingUsesAtDelete = OrvTimezoneGetUseCount(incoming); }),
              nullptr);
    ASSERT_NE(orv::test::MakeTransitionZone(&other, {}, alloc.get()), nullptr);
    incoming = &other;
    EXPECT_EQ(OrvTimezoneAssign(&tz, &other), &tz);
    EXPECT_EQ(incomingUsesAtDelete, 1);
    EXPECT_EQ(OrvTimezoneGetUseCount(&other), 2);
    EXPECT_TRUE(OrvTimezoneEqual(&tz, &other));
    OrvTimezoneDestruct(&tz);
    OrvTimezoneDestruct(&other);
    EXPECT_EQ(alloc.liveBlocks(), 0u);
}

TEST(TimezoneHandle, CountsStayExactAcrossThreads)
{
    CountingAllocator alloc;
    int deleted = 0;
    OrvTimezone zone;
    orv::test::TransitionZoneRules rules;
    ASSERT_NE(orv::test::MakeTransitionZone(&zone, rules, alloc.get(), &deleted), nullptr);
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&zone] {
            for (int i = 0; i < 20000; ++i) {
                OrvTimezone copy;
                OrvTimezoneConstructCopy(&copy, &zone);
                OrvTimezoneDestruct(&copy);
            }
        });
    }
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(OrvTimezoneGetUseCount(&zone), 1);
    EXPECT_EQ(deleted, 0);
    OrvTimezoneDestruct(&zone);
    EXPECT_EQ(deleted, 1);
}

TEST(Allocator, DefaultRefusesZeroAndOversizedRequests)
{
    OrvAllocator* a = OrvAllocatorGetDefault();
    EXPECT_EQ(OrvAllocatorAllocate(a, 0), nullptr);
    EXPECT_EQ(OrvAllocatorAllocate(a, ~OrvSizeT{0}), nullptr);
    void* p = OrvAllocatorAllocate(a, 24);
    ASSERT_NE(p, nullptr);
    std::memset(p, 0xab, 24);
    OrvAllocatorDeallocate(a, p, 24);
}

TEST(String, FailedAllocationLeavesTheContent)
{
    CountingAllocator alloc;
    OrvString s;
    OrvStringConstruct(&s, alloc.get());
    ASSERT_NE(OrvStringAssignCStr(&s, "kept"), nullptr);
    alloc.failAll(true);
    const std::string longer(300, 'x');
    EXPECT_EQ(OrvStringAppendCStr(&s, longer.c_str()), nullptr);
    EXPECT_EQ(OrvStringAssignCStr(&s, longer.c_str()), nullptr);
    EXPECT_EQ(OrvStringAssignFormatted(&s, "%s", longer.c_str()), nullptr);
    EXPECT_EQ(OrvStringAssignFormatted(&s, "%.1f %s", 1.0, longer.c_str()), nullptr);
    EXPECT_STREQ(OrvStringCStr(&s), "kept");
    EXPECT_EQ(OrvStringLength(&s), 4u);
    alloc.failAll(false);
    OrvStringDestruct(&s);
    EXPECT_EQ(alloc.liveBlocks(), 0u);
    EXPECT_EQ(OrvStringConstruct(nullptr, alloc.get()), nullptr);
    EXPECT_EQ(OrvStringConstruct(&s, nullptr), nullptr);
}

// A sink that logs and replaces itself: its nested line is dropped (no deadlock, no
// re-entry) and the new sink takes the next line. Run on a thread of its own so that a
// deadlock fails the test instead of hanging it.
TEST(Log, SinkThatLogsAndReplacesItselfIsNotReentered)
{
    static std::vector<std::string> first, second;
    static const OrvLogSinkCallback secondSink = [](OrvVoidPtr, OrvLogLevel, OrvLogCategory, const char*, OrvInt,
                                                    const char*, const char* message) { second.push_back(message); };
    OrvLogSetSink(
        [](OrvVoidPtr, OrvLogLevel, OrvLogCategory, const char*, OrvInt, const char*, const char* message) {
            first.push_back(message);
            OrvLogDoFormatted_(ORV_LOGLEVEL_ERROR, OrvLogCalendar_, "file", 1, "fn", "nested");
            OrvLogSetSink(secondSink, nullptr);
        },
        nullptr);
    std::atomic<bool> done{false};
    std::thread logger([&done] {
        OrvLogDoFormatted_(ORV_LOGLEVEL_INFO, OrvLogCalendar_, "file", 1, "fn", "outer");
        OrvLogDoFormatted_(ORV_LOGLEVEL_INFO, OrvLogCalendar_, "file", 2, "fn", "next");
        done = true;
    });
    for (int i = 0; i < 500 && !done; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (!done) {
        ADD_FAILURE() << "a sink that logs deadlocked the log";
        std::fflush(stdout);
        std::_Exit(1);
    }
    logger.join();
    OrvLogSetSink(nullptr, nullptr);
    EXPECT_EQ(first, std::vector<std::string>{"outer"});
    EXPECT_EQ(second, std::vector<std::string>{"next"});
}

TEST(Log, SinkReceivesFormattedLinesUntilReset)
{
    {
        orv::test::LogCapture capture;
        OrvLogDoFormatted_(ORV_LOGLEVEL_INFO, OrvLogCalendar_, "file", 7, "fn", "a %d %s", 1, "b");
        ASSERT_EQ(capture.lines().size(), 1u);
        EXPECT_EQ(capture.lines()[0].message, "a 1 b");
        EXPECT_EQ(capture.lines()[0].line, 7);
        EXPECT_EQ(capture.lines()[0].level, ORV_LOGLEVEL_INFO);
    }
    // Back on the default sink: info lines are dropped, errors reach stderr.
    ::testing::internal::CaptureStderr();
    OrvLogDoFormatted_(ORV_LOGLEVEL_INFO, OrvLogCalendar_, "file", 7, "fn", "quiet");
    OrvLogDoFormatted_(ORV_LOGLEVEL_ERROR, OrvLogCalendar_, "file", 8, "fn", "loud %d", 2);
    const std::string err = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.find("quiet"), std::string::npos);
    EXPECT_NE(err.find("loud 2"), std::string::npos);
}

} // namespace
