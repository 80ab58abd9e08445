// OrvVector_OrvDateTime, and the same template over a plain integer record.
#include "Orv/Calendar/OrvDateTime.h"
#include "support/CountingAllocator.h"
#include "support/IntContainers.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

using orv::test::CountingAllocator;
using orv::test::Int;
using orv::test::IntState;

namespace {

constexpr OrvSizeT kSlot = sizeof(OrvDateTime);
constexpr OrvTime kSecond = 1000000000;

// Date-time values 0, 1, 2, ... seconds after the epoch, owned by the test: floating,
// in tz, or value i in zones[i % zones.size()] (null: floating).
class Values {
public:
    explicit Values(int n, const OrvTimezone* tz = nullptr) : Values(n, {tz}) {}
    Values(int n, std::initializer_list<const OrvTimezone*> zones) : v_(static_cast<std::size_t>(n))
    {
        for (int i = 0; i < n; ++i) {
            const OrvTimezone* tz = zones.begin()[static_cast<std::size_t>(i) % zones.size()];
            OrvDateTimeConstruct(&v_[static_cast<std::size_t>(i)], i * kSecond, tz);
        }
    }
    ~Values()
    {
        for (auto& d : v_) OrvDateTimeDestruct(&d);
    }
    const OrvDateTime* operator[](int i) const { return &v_[static_cast<std::size_t>(i)]; }
    const OrvDateTime* end() const { return v_.data() + v_.size(); }

private:
    std::vector<OrvDateTime> v_;
};

// The seconds held by the vector, in order.
std::vector<OrvTime> Seconds(const OrvVector_OrvDateTime* v)
{
    std::vector<OrvTime> out;
    for (const OrvDateTime* p = v->begin; p != v->end; ++p) out.push_back(p->wallTime / kSecond);
    return out;
}

// A vector on `a` holding `size` values 0.. with exactly `capacity` slots.
void Make(OrvVector_OrvDateTime* v, OrvAllocator* a, int size, OrvSizeT capacity, const Values& values)
{
    OrvVector_OrvDateTimeConstructDefault(v, a);
    ASSERT_TRUE(OrvVector_OrvDateTimeReserve(v, capacity));
    for (int i = 0; i < size; ++i) ASSERT_TRUE(OrvVector_OrvDateTimePushBack(v, values[i]));
    ASSERT_EQ(OrvVector_OrvDateTimeCapacity(v), capacity);
}

// Every block went back, each with the size it was obtained with.
void ExpectAllReturned(const CountingAllocator& a)
{
    EXPECT_EQ(a.liveBlocks(), 0u);
    EXPECT_EQ(a.badDeallocations(), 0u);
}

using V = OrvVector_OrvDateTime*;
using Op = std::function<bool(V, const Values&)>; // true on success

// --- growth policy --------------------------------------------------------------

struct GrowthCase {
    const char* name;
    int size;
    OrvSizeT capacity;
    Op op;
    OrvSizeT wantCapacity; // the one block obtained, if it grew
    OrvSizeT wantSize;
};

// The operations of the growth table, the value inserted being 9.
Op PushBack() { return [](V v, const Values& x) { return OrvVector_OrvDateTimePushBack(v, x[9]) != 0; }; }
Op Insert(int pos)
{
    return [=](V v, const Values& x) { return OrvVector_OrvDateTimeInsert(v, v->begin + pos, x[9]) != nullptr; };
}
Op InsertN(int pos, OrvSizeT n)
{
    return [=](V v, const Values& x) { return OrvVector_OrvDateTimeInsertN(v, v->begin + pos, n, x[9]) != 0; };
}
Op InsertRange(int pos, int first, int last)
{
    return [=](V v, const Values& x) { return OrvVector_OrvDateTimeInsertRange(v, v->begin + pos, x[first], x[last]) != 0; };
}
Op Reserve(OrvSizeT n) { return [=](V v, const Values&) { return OrvVector_OrvDateTimeReserve(v, n) != 0; }; }
Op Resize(OrvSizeT n) { return [=](V v, const Values& x) { return OrvVector_OrvDateTimeResize(v, n, x[9]) != 0; }; }

// Every growing operation obtains exactly one block of the size the policy gives. With
// that allocation failing it gives its failure result and leaves the vector as it was;
// either way nothing leaks.
TEST(VectorGrowth, CapacityAfterEveryGrowthPathAndItsAllocationFailure)
{
    const std::vector<GrowthCase> cases = {
        {"PushBack into no storage", 0, 0, PushBack(), 2, 1},
        {"PushBack, 3rd element", 2, 2, PushBack(), 4, 3},
        {"PushBack, 5th element", 4, 4, PushBack(), 8, 5},
        {"PushBack with room", 1, 2, PushBack(), 2, 2},
        {"Insert into full 3", 3, 3, Insert(1), 6, 4},
        {"Insert into no storage", 0, 0, Insert(0), 2, 1},
        {"InsertN 5 into no storage", 0, 0, InsertN(0, 5), 10, 5},
        {"InsertN 3 into 4 of 4", 4, 4, InsertN(2, 3), 8, 7},
        {"InsertN 10 into 4 of 4", 4, 4, InsertN(4, 10), 14, 14},
        {"InsertN 3 into 2 of 8 (room)", 2, 8, InsertN(0, 3), 8, 5},
        {"InsertN 0 into no storage", 0, 0, InsertN(0, 0), 0, 0},
        {"InsertRange 3 into 4 of 4", 4, 4, InsertRange(0, 5, 8), 8, 7},
        {"Reserve 5 on no storage", 0, 0, Reserve(5), 5, 0},
        {"Reserve 0 on no storage", 0, 0, Reserve(0), 0, 0},
        {"Reserve below Capacity", 2, 8, Reserve(3), 8, 2},
        {"Resize 3 of 4 to 5", 3, 4, Resize(5), 8, 5},
        {"Resize 3 of 10 to 5", 3, 10, Resize(5), 10, 5},
        {"Resize 3 of 4 to 1", 3, 4, Resize(1), 4, 1},
        {"Clear keeps the block", 3, 4, [](V v, const Values&) { OrvVector_OrvDateTimeClear(v); return true; }, 4, 0},
    };
    for (const GrowthCase& c : cases) {
        SCOPED_TRACE(c.name);
        Values values(12);
        CountingAllocator a;
        OrvVector_OrvDateTime v;
        Make(&v, a.get(), c.size, c.capacity, values);
        const bool grew = c.wantCapacity != c.capacity;
        if (grew) {
            const OrvVector_OrvDateTime was = v;
            const std::vector<OrvTime> seconds = Seconds(&v);
            a.failAt(1);
            EXPECT_FALSE(c.op(&v, values));
            a.failAt(0);
            EXPECT_TRUE(v.begin == was.begin && v.end == was.end && v.endBuf == was.endBuf);
            EXPECT_EQ(Seconds(&v), seconds);
        }
        const std::size_t before = a.allocatedSizes().size();
        ASSERT_TRUE(c.op(&v, values));
        EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&v), c.wantCapacity);
        EXPECT_EQ(OrvVector_OrvDateTimeSize(&v), c.wantSize);
        ASSERT_EQ(a.allocatedSizes().size() - before, grew ? 1u : 0u);
        if (grew) {
            EXPECT_EQ(a.allocatedSizes().back(), c.wantCapacity * kSlot);
        }
        if (grew && c.capacity > 0) {
            EXPECT_EQ(a.deallocatedSizes().back(), c.capacity * kSlot);
        }
        OrvVector_OrvDateTimeDestruct(&v);
        ExpectAllReturned(a);
    }
}

// Constructors and Assign take exactly the counts they need. Failing, a constructor
// returns null holding nothing, and Assign leaves its target empty, without storage
// and still usable. Every zone reference comes back.
TEST(VectorGrowth, ConstructorsAndAssignTakeExactCountsAndFailCleanly)
{
    CountingAllocator za;
    OrvTimezone zone;
    ASSERT_NE(orv::test::MakeTransitionZone(&zone, {}, za.get()), nullptr);
    const OrvInt uses = OrvTimezoneGetUseCount(&zone);
    {
        Values values(8, &zone);
        CountingAllocator a;
        CountingAllocator b;
        OrvVector_OrvDateTime v;
        ASSERT_EQ(OrvVector_OrvDateTimeConstructN(&v, 0, values[0], a.get()), &v);
        EXPECT_EQ(v.begin, nullptr);
        EXPECT_EQ(a.allocations(), 0u);
        OrvVector_OrvDateTimeDestruct(&v);
        ASSERT_EQ(OrvVector_OrvDateTimeConstructRange(&v, values[2], values[2], a.get()), &v);
        EXPECT_EQ(v.begin, nullptr);
        OrvVector_OrvDateTimeDestruct(&v);

        OrvVector_OrvDateTime src;
        Make(&src, a.get(), 3, 8, values);
        OrvVector_OrvDateTime copy;
        ASSERT_EQ(OrvVector_OrvDateTimeConstructCopy(&copy, &src), &copy);
        EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&copy), 3u);
        EXPECT_EQ(OrvVector_OrvDateTimeGetAllocator(&copy), a.get());
        EXPECT_EQ(a.allocatedSizes().back(), 3 * kSlot);

        OrvVector_OrvDateTime five;
        ASSERT_NE(OrvVector_OrvDateTimeConstructRange(&five, values[0], values[5], b.get()), nullptr);
        OrvVector_OrvDateTime small;
        Make(&small, b.get(), 2, 3, values);
        ASSERT_EQ(OrvVector_OrvDateTimeAssign(&small, &five), &small);
        EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&small), 5u);
        EXPECT_EQ(Seconds(&small), (std::vector<OrvTime>{0, 1, 2, 3, 4}));
        EXPECT_EQ(OrvVector_OrvDateTimeGetAllocator(&small), b.get());

        OrvVector_OrvDateTime big;
        Make(&big, a.get(), 7, 8, values);
        const std::size_t allocations = a.allocations();
        ASSERT_EQ(OrvVector_OrvDateTimeAssign(&big, &five), &big);
        EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&big), 8u);
        EXPECT_EQ(Seconds(&big), (std::vector<OrvTime>{0, 1, 2, 3, 4}));
        EXPECT_EQ(a.allocations(), allocations);
        EXPECT_EQ(OrvVector_OrvDateTimeAssign(&big, &big), &big);
        EXPECT_EQ(Seconds(&big), (std::vector<OrvTime>{0, 1, 2, 3, 4}));

        a.failAll(true);
        EXPECT_EQ(OrvVector_OrvDateTimeConstructN(&v, 3, values[0], a.get()), nullptr);
        EXPECT_EQ(OrvVector_OrvDateTimeConstructRange(&v, values[0], values[3], a.get()), nullptr);
        EXPECT_EQ(OrvVector_OrvDateTimeConstructCopy(&v, &src), nullptr);
        EXPECT_EQ(OrvVector_OrvDateTimeAssign(&copy, &big), nullptr); // needs 5 slots, has 3
        a.failAll(false);
        EXPECT_TRUE(copy.begin == nullptr && copy.end == nullptr && copy.endBuf == nullptr);
        EXPECT_EQ(OrvVector_OrvDateTimeGetAllocator(&copy), a.get());
        ASSERT_TRUE(OrvVector_OrvDateTimePushBack(&copy, values[6]));
        EXPECT_EQ(Seconds(&copy), std::vector<OrvTime>{6});

        for (auto* x : {&src, &copy, &five, &small, &big}) OrvVector_OrvDateTimeDestruct(x);
        ExpectAllReturned(a);
        ExpectAllReturned(b);
    }
    EXPECT_EQ(OrvTimezoneGetUseCount(&zone), uses);
    OrvTimezoneDestruct(&zone);
    EXPECT_EQ(za.liveBlocks(), 0u);
}

TEST(VectorGrowth, MaxSizeIsFixedAndLargerRequestsFailWithoutAllocating)
{
    CountingAllocator a;
    Values values(1);
    OrvVector_OrvDateTime v;
    OrvVector_OrvDateTimeConstructDefault(&v, a.get());
    EXPECT_EQ(OrvVector_OrvDateTimeMaxSize(&v), 44739242u);
    EXPECT_FALSE(OrvVector_OrvDateTimeReserve(&v, 44739243));
    EXPECT_FALSE(OrvVector_OrvDateTimeResize(&v, 44739243, values[0]));
    EXPECT_FALSE(OrvVector_OrvDateTimeInsertN(&v, v.begin, 44739243, values[0]));
    OrvVector_OrvDateTime w;
    EXPECT_EQ(OrvVector_OrvDateTimeConstructN(&w, 44739243, values[0], a.get()), nullptr);
    EXPECT_EQ(a.allocations(), 0u);
    OrvVector_OrvDateTimeDestruct(&v);
}

// --- swap ------------------------------------------------------------------------

// Two empty vectors keep their blocks whatever their allocators; otherwise vectors
// sharing an allocator exchange records without allocating.
TEST(VectorSwap, EmptyVectorsKeepBlocksSharedAllocatorExchangesRecords)
{
    Values values(2);
    for (bool shared : {true, false}) {
        SCOPED_TRACE(shared);
        CountingAllocator a;
        CountingAllocator b;
        OrvVector_OrvDateTime x;
        OrvVector_OrvDateTime y;
        Make(&x, a.get(), 0, 3, values);
        Make(&y, shared ? a.get() : b.get(), 0, 7, values);
        EXPECT_TRUE(OrvVector_OrvDateTimeSwap(&x, &y));
        EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&x), 3u);
        EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&y), 7u);
        if (shared) {
            ASSERT_TRUE(OrvVector_OrvDateTimePushBack(&x, values[1]));
            const OrvDateTime* xBlock = x.begin;
            const std::size_t allocations = a.allocations();
            EXPECT_TRUE(OrvVector_OrvDateTimeSwap(&x, &y));
            EXPECT_EQ(y.begin, xBlock);
            EXPECT_EQ(Seconds(&y), std::vector<OrvTime>{1});
            EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&x), 7u);
            EXPECT_EQ(a.allocations(), allocations);
        }
        OrvVector_OrvDateTimeDestruct(&x);
        OrvVector_OrvDateTimeDestruct(&y);
        ExpectAllReturned(a);
        ExpectAllReturned(b);
    }
}

// Different allocators: the smaller vector gets a new block from its own allocator
// (y on equal sizes), the larger keeps its block; a failure changes nothing.
TEST(VectorSwap, DifferentAllocatorsCopyAndKeepAllocators)
{
    Values values(10);
    CountingAllocator a;
    CountingAllocator b;
    OrvVector_OrvDateTime x;
    OrvVector_OrvDateTime y;
    Make(&x, a.get(), 2, 4, values);
    OrvVector_OrvDateTimeConstructDefault(&y, b.get());
    ASSERT_TRUE(OrvVector_OrvDateTimeReserve(&y, 6));
    ASSERT_TRUE(OrvVector_OrvDateTimeInsertRange(&y, y.begin, values[5], values.end()));
    const OrvDateTime* yBlock = y.begin;

    a.failAt(1);
    EXPECT_FALSE(OrvVector_OrvDateTimeSwap(&x, &y));
    EXPECT_EQ(Seconds(&x), (std::vector<OrvTime>{0, 1}));
    EXPECT_EQ(Seconds(&y), (std::vector<OrvTime>{5, 6, 7, 8, 9}));

    ASSERT_TRUE(OrvVector_OrvDateTimeSwap(&x, &y));
    EXPECT_EQ(Seconds(&x), (std::vector<OrvTime>{5, 6, 7, 8, 9}));
    EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&x), 5u);
    EXPECT_EQ(a.allocatedSizes().back(), 5 * kSlot);
    EXPECT_EQ(a.deallocatedSizes().back(), 4 * kSlot);
    EXPECT_EQ(Seconds(&y), (std::vector<OrvTime>{0, 1}));
    EXPECT_EQ(y.begin, yBlock);
    EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&y), 6u);
    EXPECT_EQ(x.allocator, a.get());
    EXPECT_EQ(y.allocator, b.get());

    OrvVector_OrvDateTimeResize(&x, 2, values[0]);
    const OrvDateTime* xBlock = x.begin;
    ASSERT_TRUE(OrvVector_OrvDateTimeSwap(&x, &y));
    EXPECT_EQ(x.begin, xBlock);
    EXPECT_EQ(OrvVector_OrvDateTimeCapacity(&y), 2u);
    EXPECT_EQ(Seconds(&x), (std::vector<OrvTime>{0, 1}));
    EXPECT_EQ(Seconds(&y), (std::vector<OrvTime>{5, 6}));

    OrvVector_OrvDateTimeDestruct(&x);
    OrvVector_OrvDateTimeDestruct(&y);
    ExpectAllReturned(a);
    ExpectAllReturned(b);
}

// --- element handling, seen through the template over integers ------------------------

using orv::test::IntVectorRecord;
using orv::test::TestInt;
using IV = orv::test::IntVector;

class VectorElements : public ::testing::Test {
protected:
    void SetUp() override { orv::test::ResetIntState(); }
    void TearDown() override { EXPECT_EQ(IntState().live, 0) << "elements leaked or destructed twice"; }

    static std::vector<int64_t> Contents(const IntVectorRecord* v)
    {
        std::vector<int64_t> out;
        for (const TestInt* p = v->begin; p != v->end; ++p) out.push_back(p->value);
        return out;
    }
    static void Fill(IntVectorRecord* v, OrvAllocator* a, std::initializer_list<int64_t> values, OrvSizeT capacity)
    {
        IV::ConstructDefault(v, a);
        IV::Reserve(v, capacity);
        for (int64_t x : values) {
            const TestInt t = Int(x);
            IV::PushBack(v, &t);
        }
    }
    // Runs op and returns the element operations it made.
    template <class F>
    static std::vector<std::string> Logged(F op)
    {
        IntState().log.clear();
        IntState().logging = true;
        op();
        IntState().logging = false;
        return IntState().log;
    }
    using Log = std::vector<std::string>;
};

// Reallocation copies every element, the new one included, then destructs the old ones
// last first; in-place inserts and erases shift by assignment, constructing or
// destructing only at the end.
TEST_F(VectorElements, ElementOperationOrder)
{
    CountingAllocator a;
    IntVectorRecord v;
    Fill(&v, a.get(), {1, 2, 3}, 3);
    const TestInt t4 = Int(4);
    EXPECT_EQ(Logged([&] { ASSERT_TRUE(IV::PushBack(&v, &t4)); }), (Log{"C1", "C2", "C3", "C4", "D3", "D2", "D1"}));
    EXPECT_EQ(Logged([&] { IV::Destruct(&v); }), (Log{"D4", "D3", "D2", "D1"}));

    Fill(&v, a.get(), {1, 2, 3, 4, 5}, 16);
    const TestInt t = Int(9);
    EXPECT_EQ(Logged([&] { ASSERT_EQ(IV::Insert(&v, v.begin + 3, &t), v.begin + 3); }), (Log{"C5", "A4", "A9"}));
    TestInt* at = nullptr;
    EXPECT_EQ(Logged([&] { at = IV::Insert(&v, v.end, &t); }), Log{"C9"}); // at the end: no assigns
    EXPECT_EQ(at, v.end - 1);
    EXPECT_EQ(Logged([&] { ASSERT_EQ(IV::EraseRange(&v, v.begin + 1, v.begin + 3), v.begin + 1); }),
              (Log{"A9", "A4", "A5", "A9", "D9", "D5"}));
    EXPECT_EQ(Contents(&v), (std::vector<int64_t>{1, 9, 4, 5, 9}));
    IV::Destruct(&v);
}

// A source inside the vector is read as if it had been copied out first, on the
// in-place and the reallocating paths alike.
TEST_F(VectorElements, SourcesInsideTheVector)
{
    for (OrvSizeT capacity : {5u, 16u}) {
        SCOPED_TRACE(capacity);
        CountingAllocator a;
        IntVectorRecord v;
        Fill(&v, a.get(), {0, 1, 2, 3, 4}, capacity);
        ASSERT_TRUE(IV::PushBack(&v, v.begin + 1));
        EXPECT_EQ(Contents(&v), (std::vector<int64_t>{0, 1, 2, 3, 4, 1}));
        ASSERT_NE(IV::Insert(&v, v.begin, v.begin + 2), nullptr);
        EXPECT_EQ(Contents(&v), (std::vector<int64_t>{2, 0, 1, 2, 3, 4, 1}));
        ASSERT_TRUE(IV::InsertN(&v, v.begin + 1, 2, v.begin + 5));
        EXPECT_EQ(Contents(&v), (std::vector<int64_t>{2, 4, 4, 0, 1, 2, 3, 4, 1}));
        ASSERT_TRUE(IV::InsertRange(&v, v.begin + 2, v.begin + 1, v.begin + 5));
        EXPECT_EQ(Contents(&v), (std::vector<int64_t>{2, 4, 4, 4, 0, 1, 4, 0, 1, 2, 3, 4, 1}));
        ASSERT_TRUE(IV::Resize(&v, 15, v.begin + 4));
        EXPECT_EQ(Contents(&v), (std::vector<int64_t>{2, 4, 4, 4, 0, 1, 4, 0, 1, 2, 3, 4, 1, 0, 0}));
        IV::Destruct(&v);
    }
}

// A failing element copy, stepped through every copy each operation makes: failure
// result, only constructed elements left (each a former or a new value), nothing
// leaked. A copy into a new block or a raw slot past the end leaves the vector as it
// was: every copy of the growing paths, the first of an in-place insert.
TEST_F(VectorElements, FailingElementCopyAtEveryStep)
{
    using P = IntVectorRecord*;
    struct Case {
        const char* name;
        OrvSizeT capacity;
        long unchangedUpTo; // a failure in this many first copies leaves the vector as it was
        std::function<bool(P, P)> op; // on {1, 2, 3, 4} and, on another allocator, {5, 6, 7}
        std::vector<int64_t> want;    // both afterwards, on success
        std::vector<int64_t> wantOther = {5, 6, 7};
    };
    const TestInt t = Int(99);
    const TestInt r[4] = {Int(7), Int(8), Int(9), Int(10)};
    const long all = 99;
    const std::vector<Case> cases = {
        {"PushBack, growing", 4, all, [&](P v, P) { return IV::PushBack(v, &t) != 0; }, {1, 2, 3, 4, 99}},
        {"Insert, growing", 4, all, [&](P v, P) { return IV::Insert(v, v->begin + 1, &t) != nullptr; },
         {1, 99, 2, 3, 4}},
        {"Insert, in place", 8, 1, [&](P v, P) { return IV::Insert(v, v->begin + 1, &t) != nullptr; },
         {1, 99, 2, 3, 4}},
        {"InsertN, growing", 4, all, [&](P v, P) { return IV::InsertN(v, v->begin + 1, 3, &t) != 0; },
         {1, 99, 99, 99, 2, 3, 4}},
        {"InsertN, in place, tail longer", 8, 1, [&](P v, P) { return IV::InsertN(v, v->begin + 1, 2, &t) != 0; },
         {1, 99, 99, 2, 3, 4}},
        {"InsertRange, in place, tail shorter", 8, 1,
         [&](P v, P) { return IV::InsertRange(v, v->begin + 2, r, r + 4) != 0; }, {1, 2, 7, 8, 9, 10, 3, 4}},
        {"Reserve", 4, all, [&](P v, P) { return IV::Reserve(v, 9) != 0; }, {1, 2, 3, 4}},
        {"Resize, growing", 4, all, [&](P v, P) { return IV::Resize(v, 6, &t) != 0; }, {1, 2, 3, 4, 99, 99}},
        {"Resize, in place", 12, all, [&](P v, P) { return IV::Resize(v, 7, &t) != 0; }, {1, 2, 3, 4, 99, 99, 99}},
        {"Erase", 4, 0, [&](P v, P) { return IV::Erase(v, v->begin) != nullptr; }, {2, 3, 4}},
        {"EraseRange", 4, 0, [&](P v, P) { return IV::EraseRange(v, v->begin, v->begin + 2) != nullptr; }, {3, 4}},
        {"Assign, in place", 4, 0, [&](P v, P w) { return IV::Assign(v, w) != nullptr; }, {5, 6, 7}},
        {"Swap, other allocator", 4, 4, [&](P v, P w) { return IV::Swap(v, w) != 0; }, {5, 6, 7}, {1, 2, 3, 4}},
    };
    auto known = [](const std::vector<int64_t>& values) {
        for (int64_t x : values) {
            if (!((x >= 1 && x <= 10) || x == 99)) return false;
        }
        return true;
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (long k = 1;; ++k) {
            orv::test::ResetIntState();
            CountingAllocator a;
            CountingAllocator b;
            IntVectorRecord v;
            IntVectorRecord w;
            Fill(&v, a.get(), {1, 2, 3, 4}, c.capacity);
            Fill(&w, b.get(), {5, 6, 7}, 3);
            const IntVectorRecord before = v;
            IntState().copies = 0;
            IntState().failCopyAt = k;
            const bool ok = c.op(&v, &w);
            const bool failed = IntState().copies >= k;
            EXPECT_EQ(ok, !failed) << "copy " << k;
            EXPECT_EQ(IntState().live, static_cast<long>((v.end - v.begin) + (w.end - w.begin))) << "copy " << k;
            EXPECT_TRUE(known(Contents(&v)) && known(Contents(&w))) << "copy " << k;
            if (failed && k <= c.unchangedUpTo) {
                EXPECT_EQ(v.begin, before.begin);
                EXPECT_EQ(v.endBuf, before.endBuf);
                EXPECT_EQ(Contents(&v), (std::vector<int64_t>{1, 2, 3, 4}));
                EXPECT_EQ(Contents(&w), (std::vector<int64_t>{5, 6, 7}));
            }
            if (ok) {
                EXPECT_EQ(Contents(&v), c.want);
                EXPECT_EQ(Contents(&w), c.wantOther);
            }
            IV::Destruct(&v);
            IV::Destruct(&w);
            ExpectAllReturned(a);
            ExpectAllReturned(b);
            if (!failed) break;
        }
    }
    for (long k = 1; k <= 3; ++k) {
        orv::test::ResetIntState();
        CountingAllocator a;
        IntState().failCopyAt = k;
        IntVectorRecord v;
        EXPECT_EQ(IV::ConstructN(&v, 3, &t, a.get()), nullptr);
        EXPECT_EQ(IntState().live, 0);
        ExpectAllReturned(a);
    }
}

// --- iterators ---------------------------------------------------------------------

TEST(VectorIterators, ForwardAndReversePositions)
{
    Values values(5);
    CountingAllocator a;
    OrvVector_OrvDateTime v;
    ASSERT_NE(OrvVector_OrvDateTimeConstructRange(&v, values[0], values.end(), a.get()), nullptr);
    auto second = [](const OrvDateTime* d) { return d->wallTime / kSecond; };

    OrvVector_OrvDateTimeReverseIterator rb = OrvVector_OrvDateTimeRBegin(&v);
    OrvVector_OrvDateTimeReverseIterator re = OrvVector_OrvDateTimeREnd(&v);
    OrvVector_OrvDateTimeReverseIterator walk;
    OrvVector_OrvDateTimeReverseIteratorConstructCopy(&walk, &rb);
    std::vector<OrvTime> seen;
    while (!OrvVector_OrvDateTimeReverseIteratorEqual(&walk, &re)) {
        seen.push_back(second(OrvVector_OrvDateTimeReverseIteratorContentOfConst(&walk)));
        OrvVector_OrvDateTimeReverseIteratorIncrement(&walk);
    }
    EXPECT_EQ(seen, (std::vector<OrvTime>{4, 3, 2, 1, 0}));
    EXPECT_EQ(second(OrvVector_OrvDateTimeReverseIteratorAt(&rb, 0)), 4);
    EXPECT_TRUE(OrvVector_OrvDateTimeReverseIteratorLess(&rb, &re));
    EXPECT_FALSE(OrvVector_OrvDateTimeReverseIteratorLess(&re, &rb));
    OrvVector_OrvDateTimeReverseIteratorDecrement(&walk);
    EXPECT_EQ(second(OrvVector_OrvDateTimeReverseIteratorContentOf(&walk)), 0);

    OrvVector_OrvDateTimeIterator b = OrvVector_OrvDateTimeBegin(&v);
    OrvVector_OrvDateTimeIterator e = OrvVector_OrvDateTimeEnd(&v);
    EXPECT_EQ(OrvVector_OrvDateTimeIteratorSubtract(&e, &b), 5);
    EXPECT_EQ(OrvVector_OrvDateTimeIteratorSubtract(&b, &e), -5);
    EXPECT_TRUE(OrvVector_OrvDateTimeIteratorLess(&b, &e));
    EXPECT_FALSE(OrvVector_OrvDateTimeIteratorLess(&b, &b));
    OrvVector_OrvDateTimeIterator three = OrvVector_OrvDateTimeIteratorAdd(&b, 3);
    EXPECT_EQ(b, v.begin);
    EXPECT_EQ(second(OrvVector_OrvDateTimeIteratorContentOf(&three)), 3);
    OrvVector_OrvDateTimeIterator p = three;
    OrvVector_OrvDateTimeIterator q = three;
    OrvVector_OrvDateTimeIteratorIncrementN(&p, -2);
    OrvVector_OrvDateTimeIteratorDecrementN(&q, 2);
    EXPECT_TRUE(OrvVector_OrvDateTimeIteratorEqual(&p, &q));
    EXPECT_EQ(second(OrvVector_OrvDateTimeIteratorAt(&p, 2)), 3);
    EXPECT_TRUE(OrvVector_OrvDateTimeIteratorSwap(&p, &three));
    EXPECT_EQ(second(OrvVector_OrvDateTimeIteratorContentOfConst(&p)), 3);

    // The constant kinds give the same answers for the same slots.
    OrvVector_OrvDateTimeConstIterator cb = OrvVector_OrvDateTimeBeginConst(&v);
    OrvVector_OrvDateTimeConstIterator ce = OrvVector_OrvDateTimeEndConst(&v);
    EXPECT_EQ(OrvVector_OrvDateTimeConstIteratorSubtract(&ce, &cb), 5);
    OrvVector_OrvDateTimeConstReverseIterator crb = OrvVector_OrvDateTimeRBeginConst(&v);
    OrvVector_OrvDateTimeConstReverseIterator cre = OrvVector_OrvDateTimeREndConst(&v);
    EXPECT_EQ(second(OrvVector_OrvDateTimeConstReverseIteratorAt(&crb, 1)), 3);
    EXPECT_EQ(OrvVector_OrvDateTimeConstReverseIteratorSubtract(&cre, &crb), 5);
    OrvVector_OrvDateTimeConstReverseIteratorIncrementN(&crb, 5);
    EXPECT_TRUE(OrvVector_OrvDateTimeConstReverseIteratorEqual(&crb, &cre));
    OrvVector_OrvDateTimeConstReverseIterator first = OrvVector_OrvDateTimeConstReverseIteratorAdd(&cre, -1);
    EXPECT_EQ(second(OrvVector_OrvDateTimeConstReverseIteratorContentOfConst(&first)), 0);
    OrvVector_OrvDateTimeDestruct(&v);
}

// The null iterator, which Begin and End of a vector without storage also give, stays
// null however it is moved or read: stepping it was pointer arithmetic on null.
TEST(VectorIterators, MovingTheNullIteratorIsNoArithmeticOnNull)
{
    OrvVector_OrvDateTime v;
    OrvVector_OrvDateTimeConstructDefault(&v, OrvAllocatorGetDefault());
    OrvVector_OrvDateTimeIterator it = OrvVector_OrvDateTimeEnd(&v);
    OrvVector_OrvDateTimeConstIterator c = OrvVector_OrvDateTimeBeginConst(&v);
    OrvVector_OrvDateTimeReverseIterator r = OrvVector_OrvDateTimeRBegin(&v);
    OrvVector_OrvDateTimeConstReverseIterator cr;
    OrvVector_OrvDateTimeConstReverseIteratorConstructExceptional(&cr);
    EXPECT_TRUE(OrvVector_OrvDateTimeIteratorIsExceptional(it));
    EXPECT_TRUE(OrvVector_OrvDateTimeReverseIteratorIsExceptional(r));
    EXPECT_EQ(OrvVector_OrvDateTimeIteratorIncrement(&it), &it);
    OrvVector_OrvDateTimeIteratorDecrementN(&it, 3);
    OrvVector_OrvDateTimeConstIteratorIncrementN(&c, -2);
    OrvVector_OrvDateTimeReverseIteratorIncrement(&r);
    OrvVector_OrvDateTimeReverseIteratorDecrement(&r);
    OrvVector_OrvDateTimeConstReverseIteratorDecrementN(&cr, 7);
    EXPECT_EQ(it, nullptr);
    EXPECT_EQ(c, nullptr);
    EXPECT_EQ(r, nullptr);
    EXPECT_EQ(cr, nullptr);
    EXPECT_EQ(OrvVector_OrvDateTimeIteratorAdd(&it, 4), nullptr);
    EXPECT_EQ(OrvVector_OrvDateTimeConstIteratorAt(&c, 1), nullptr);
    EXPECT_EQ(OrvVector_OrvDateTimeReverseIteratorContentOf(&r), nullptr);
    EXPECT_EQ(OrvVector_OrvDateTimeReverseIteratorAt(&r, 0), nullptr);
    EXPECT_EQ(OrvVector_OrvDateTimeConstReverseIteratorAdd(&cr, -1), nullptr);
    EXPECT_EQ(OrvVector_OrvDateTimeConstReverseIteratorSubtract(&cr, &cr), 0);
    EXPECT_TRUE(OrvVector_OrvDateTimeConstReverseIteratorEqual(&cr, &cr));
    OrvVector_OrvDateTimeDestruct(&v);
}

// --- randomized, against std::vector ---------------------------------------------------

// The values are in three counted zones and floating, interleaved, so that the copies
// of many elements at once meet runs of one zone, of several and of uncounted values;
// after every step each zone's use count is exactly the references held.
TEST(VectorRandomized, MatchesStdVectorModel)
{
    CountingAllocator za;
    OrvTimezone zones[3];
    for (int i = 0; i < 3; ++i)
        ASSERT_NE(OrvFixedTimezoneConstruct(&zones[i], (i + 1) * 3600 * kSecond, za.get()), nullptr);
    Values values(64, {nullptr, &zones[0], &zones[0], &zones[1], &zones[2]});
    auto expectCounts = [&](const OrvVector_OrvDateTime* x, const OrvVector_OrvDateTime* y) {
        for (const OrvTimezone& z : zones) {
            OrvInt held = 1; // the handle here
            for (const OrvDateTime* d = values[0]; d != values.end(); ++d) held += d->tz.impl.ref == z.impl.ref;
            for (const auto* vec : {x, y})
                for (const OrvDateTime* d = vec->begin; d != vec->end; ++d) held += d->tz.impl.ref == z.impl.ref;
            if (OrvTimezoneGetUseCount(&z) != held) return false;
        }
        return true;
    };
    CountingAllocator a;
    CountingAllocator b;
    OrvVector_OrvDateTime v;
    OrvVector_OrvDateTime other;
    OrvVector_OrvDateTimeConstructDefault(&v, a.get());
    OrvVector_OrvDateTimeConstructDefault(&other, b.get());
    std::vector<OrvTime> model;
    std::vector<OrvTime> otherModel;
    std::mt19937 rng(20240501);
    auto pick = [&](std::size_t n) { return static_cast<std::size_t>(rng() % (n + 1)); }; // 0..n
    auto at = [&](std::size_t pos) { return model.begin() + static_cast<std::ptrdiff_t>(pos); };
    for (int step = 0; step < 100000; ++step) {
        const int value = static_cast<int>(rng() % 64);
        const std::size_t size = model.size();
        switch (rng() % 12) {
        case 0:
        case 1:
            ASSERT_TRUE(OrvVector_OrvDateTimePushBack(&v, values[value]));
            model.push_back(value);
            break;
        case 2:
            if (size > 0) {
                OrvVector_OrvDateTimePopBack(&v);
                model.pop_back();
            }
            break;
        case 3: {
            const std::size_t pos = pick(size);
            const OrvDateTime* in = OrvVector_OrvDateTimeInsert(&v, v.begin + pos, values[value]);
            ASSERT_EQ(in, v.begin + pos);
            model.insert(at(pos), value);
            break;
        }
        case 4: {
            const std::size_t pos = pick(size);
            const std::size_t n = rng() % 5;
            ASSERT_TRUE(OrvVector_OrvDateTimeInsertN(&v, v.begin + pos, n, values[value]));
            model.insert(at(pos), n, value);
            break;
        }
        case 5: {
            const std::size_t pos = pick(size);
            const int first = static_cast<int>(rng() % 60);
            const int n = static_cast<int>(rng() % 5);
            ASSERT_TRUE(OrvVector_OrvDateTimeInsertRange(&v, v.begin + pos, values[first], values[first + n]));
            for (int k = 0; k < n; ++k) model.insert(at(pos + static_cast<std::size_t>(k)), first + k);
            break;
        }
        case 6:
            if (size > 0) {
                const std::size_t pos = pick(size - 1);
                ASSERT_EQ(OrvVector_OrvDateTimeErase(&v, v.begin + pos), v.begin + pos);
                model.erase(at(pos));
            }
            break;
        case 7: {
            const std::size_t first = pick(size);
            const std::size_t last = first + pick(size - first);
            ASSERT_EQ(OrvVector_OrvDateTimeEraseRange(&v, v.begin + first, v.begin + last), v.begin + first);
            model.erase(at(first), at(last));
            break;
        }
        case 8: {
            const std::size_t n = pick(size + 4);
            ASSERT_TRUE(OrvVector_OrvDateTimeResize(&v, n, values[value]));
            model.resize(n, value);
            break;
        }
        case 9:
            if (rng() % 8 == 0) {
                OrvVector_OrvDateTimeClear(&v);
                model.clear();
            } else {
                ASSERT_TRUE(OrvVector_OrvDateTimeReserve(&v, pick(2 * size)));
            }
            break;
        case 10:
            if (rng() % 2 == 0) {
                ASSERT_NE(OrvVector_OrvDateTimeAssign(&other, &v), nullptr);
                otherModel = model;
            } else {
                ASSERT_NE(OrvVector_OrvDateTimeAssign(&v, &other), nullptr);
                model = otherModel;
            }
            break;
        case 11:
            ASSERT_TRUE(OrvVector_OrvDateTimeSwap(&v, &other));
            std::swap(model, otherModel);
            break;
        }
        ASSERT_LE(v.begin, v.end);
        ASSERT_LE(v.end, v.endBuf);
        ASSERT_EQ(Seconds(&v), model) << "step " << step;
        ASSERT_TRUE(expectCounts(&v, &other)) << "step " << step;
        if (model.size() > 200) { // keep the run fast
            OrvVector_OrvDateTimeClear(&v);
            model.clear();
        }
    }
    ASSERT_EQ(Seconds(&other), otherModel);
    EXPECT_EQ(a.liveBlocks() + b.liveBlocks(), (v.begin != nullptr ? 1u : 0u) + (other.begin != nullptr ? 1u : 0u));
    OrvVector_OrvDateTimeDestruct(&v);
    OrvVector_OrvDateTimeDestruct(&other);
    ExpectAllReturned(a);
    ExpectAllReturned(b);
    OrvVector_OrvDateTimeConstructDefault(&v, a.get());
    EXPECT_TRUE(expectCounts(&v, &v)); // only the values' references are left
    for (OrvTimezone& z : zones) OrvTimezoneDestruct(&z);
}

} // namespace
