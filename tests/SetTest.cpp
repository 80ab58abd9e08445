// OrvSet_OrvDateTime, and the same AVL template over a plain integer record.
#include "Calendar/OrvDateTimeElement.hpp"
#include "Containers/AvlSet.hpp"
#include "Orv/Calendar/OrvDateTime.h"
#include "support/CountingAllocator.h"
#include "support/IntContainers.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <set>
#include <string>
#include <vector>

using orv::test::CountingAllocator;
using orv::test::Int;
using orv::test::IntNode;
using orv::test::IntSetRecord;
using orv::test::IntState;
using orv::test::TestInt;
using IS = orv::test::IntSet;

namespace {

constexpr OrvTime kSecond = 1000000000;

struct DateTimeRecords {
    using Node = OrvSet_OrvDateTime_Node;
    using Set = OrvSet_OrvDateTime;
    using InsertResult = OrvPair_OrvSet_OrvDateTimeIterator__OrvBool;
    using Range = OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator;
    using ConstRange = OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator;
};
using DateTimeTree = orv::containers::AvlSet<orv::detail::DateTimeElement, DateTimeRecords>;

// Floating date-time values, `s` seconds after the epoch, kept alive for the test.
class Keys {
public:
    const OrvDateTime* operator()(int64_t s, const OrvTimezone* tz = nullptr)
    {
        OrvDateTime& d = pool_.emplace_back();
        OrvDateTimeConstruct(&d, s * kSecond, tz);
        return &d;
    }
    ~Keys()
    {
        for (auto& d : pool_) OrvDateTimeDestruct(&d);
    }

private:
    std::deque<OrvDateTime> pool_;
};

// Keys without an instant (see MakeKey) count on from here.
constexpr int64_t kFar = 224;

// The seconds of a key or element, normalizing it as any reader does; for one without
// an instant, kFar plus its second of 2300.
int64_t Sec(const OrvDateTime* d)
{
    const OrvTime t = OrvDateTimeGetWallTime(d);
    return t != ORV_TIME_INVALID ? t / kSecond : kFar + d->sec;
}

// "key/height(left,right)", "-" for an absent child, leaves without parentheses.
template <class Node, class KeyOf>
std::string Shape(const Node* n, KeyOf key)
{
    if (n == nullptr) return "-";
    std::string s = std::to_string(key(&n->value)) + "/" + std::to_string(n->height);
    if (n->left == nullptr && n->right == nullptr) return s;
    return s + "(" + Shape(n->left, key) + "," + Shape(n->right, key) + ")";
}

std::string Shape(const IntSetRecord* s)
{
    return Shape(s->end.left, [](const TestInt* v) { return v->value; });
}

std::vector<int64_t> Walk(OrvSet_OrvDateTime* s)
{
    std::vector<int64_t> out;
    for (OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(s); it != OrvSet_OrvDateTimeEnd(s);
         OrvSet_OrvDateTimeIteratorIncrement(&it)) {
        out.push_back(Sec(OrvSet_OrvDateTimeIteratorContentOfConst(&it)));
    }
    return out;
}

#define EXPECT_VALID(set) EXPECT_EQ(DateTimeTree::Validate(set), nullptr)

class SetShapes : public ::testing::Test {
protected:
    void SetUp() override { orv::test::ResetIntState(); }
    void TearDown() override { EXPECT_EQ(IntState().live, 0) << "elements leaked or destructed twice"; }

    static void Build(IntSetRecord* s, OrvAllocator* a, const std::vector<int64_t>& order)
    {
        IS::Construct(s, a);
        for (int64_t k : order) {
            const TestInt v = Int(k);
            ASSERT_TRUE(IS::Insert(s, &v).second);
        }
    }
    static IntNode* Node(IntSetRecord* s, int64_t k)
    {
        const TestInt v = Int(k);
        return IS::FindIn(s, &v);
    }
};

// --- tree shapes ---------------------------------------------------------------------

TEST_F(SetShapes, ShapesAndHeightsAfterInsertionOrders)
{
    struct Case {
        std::vector<int64_t> order;
        const char* shape;
    };
    const std::vector<Case> cases = {
        {{1}, "1/1"},
        {{1, 2, 3}, "2/2(1/1,3/1)"},                                   // single left rotation at 1
        {{3, 2, 1}, "2/2(1/1,3/1)"},                                   // single right rotation at 3
        {{1, 3, 2}, "2/2(1/1,3/1)"},                                   // right at 3, then left at 1
        {{3, 1, 2}, "2/2(1/1,3/1)"},                                   // left at 1, then right at 3
        {{1, 2, 3, 4, 5, 6, 7}, "4/3(2/2(1/1,3/1),6/2(5/1,7/1))"},
        {{2, 1, 5, 4, 6, 3}, "4/3(2/2(1/1,3/1),5/2(-,6/1))"},          // double rotation below the root
        {{5, 2, 8, 1, 4, 7, 9, 3, 6}, "5/4(2/3(1/1,4/2(3/1,-)),8/3(7/2(6/1,-),9/1))"}, // no rotation
    };
    for (const Case& c : cases) {
        CountingAllocator a;
        IntSetRecord s;
        Build(&s, a.get(), c.order);
        EXPECT_EQ(Shape(&s), c.shape);
        EXPECT_EQ(a.liveBlocks(), c.order.size());
        IS::Destruct(&s);
        EXPECT_EQ(a.liveBlocks(), 0u);
    }
}

// Erase relinks a substitute and rebalances as the removal rules say; the nodes of the
// remaining elements are the same nodes as before.
TEST_F(SetShapes, ShapesAfterRemoval)
{
    struct Case {
        const char* what;
        std::vector<int64_t> order;
        int64_t erase;
        const char* shape;
        int64_t next; // key of the returned position, -1 for the end position
    };
    const std::vector<Case> cases = {
        {"single rotation, subtree keeps its height", {3, 1, 4, 0, 2}, 4, "1/3(0/1,3/2(2/1,-))", -1},
        {"single rotation, subtree shrinks", {3, 2, 4, 1}, 4, "2/2(1/1,3/1)", -1},
        {"single rotation below the root shrinks: climb goes on", {8, 5, 10, 3, 6, 9, 11, 2}, 6,
         "8/3(3/2(2/1,5/1),10/2(9/1,11/1))", 8},
        {"double rotation", {3, 1, 4, 2}, 4, "2/2(1/1,3/1)", -1},
        {"two children: predecessor takes the place", {2, 1, 3}, 2, "1/2(-,3/1)", 3},
        {"right child only: successor takes the place", {1, 2}, 1, "2/1", 2},
        {"predecessor with a left child", {5, 2, 8, 1, 4, 7, 9, 3}, 5, "4/3(2/2(1/1,3/1),8/2(7/1,9/1))", 7},
        {"only element", {1}, 1, "-", -1},
        {"shrink continues to the root", {5, 2, 8, 1, 4, 7, 9, 3, 6}, 9, "5/4(2/3(1/1,4/2(3/1,-)),7/2(6/1,8/1))", -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        CountingAllocator a;
        IntSetRecord s;
        Build(&s, a.get(), c.order);
        std::vector<std::pair<int64_t, IntNode*>> nodes;
        for (int64_t k : c.order) {
            if (k != c.erase) nodes.emplace_back(k, Node(&s, k));
        }
        IntNode* next = IS::Erase(&s, Node(&s, c.erase));
        EXPECT_EQ(next, c.next < 0 ? &s.end : Node(&s, c.next));
        EXPECT_EQ(Shape(&s), c.shape);
        for (const auto& [k, node] : nodes) EXPECT_EQ(Node(&s, k), node) << k;
        EXPECT_EQ(a.liveBlocks(), c.order.size() - 1);
        EXPECT_EQ(a.badDeallocations(), 0u);
        IS::Destruct(&s);
    }
}

// --- copy ------------------------------------------------------------------------------

// A copy keeps shape and heights, allocating in pre-order; with the k-th element copy
// failing NodeCopy gives null, everything it took released, the source untouched.
TEST_F(SetShapes, CopyKeepsShapeAllocatingInPreOrderAndFailsCleanly)
{
    CountingAllocator a;
    IntSetRecord s;
    Build(&s, a.get(), {5, 2, 8, 1, 4, 7, 9, 3, 6});
    IntState().logging = true;
    IntSetRecord copy;
    ASSERT_EQ(IS::ConstructCopy(&copy, &s), &copy);
    EXPECT_EQ(IntState().log, (std::vector<std::string>{"C5", "C2", "C1", "C4", "C3", "C8", "C7", "C6", "C9"}));
    IntState().logging = false;
    EXPECT_EQ(Shape(&copy), Shape(&s));
    EXPECT_EQ(copy.end.left->parent, &copy.end);
    EXPECT_EQ(copy.end.left->pPtr, &copy.end.left);
    EXPECT_EQ(copy.size, 9u);
    EXPECT_EQ(copy.alloc, a.get());
    IS::Destruct(&copy);

    const std::string shape = Shape(&s);
    IntNode* root = nullptr;
    for (long k = 1; k <= 9; ++k) {
        CountingAllocator b;
        IntState().copies = 0;
        IntState().failCopyAt = k;
        EXPECT_EQ(orv::test::IntTree::Copy(s.end.left, nullptr, &root, b.get()), nullptr) << k;
        EXPECT_EQ(b.liveBlocks(), 0u);
        EXPECT_EQ(b.badDeallocations(), 0u);
        EXPECT_EQ(IntState().live, 9);
    }
    IntState().failCopyAt = 0;
    EXPECT_EQ(Shape(&s), shape);
    IS::Destruct(&s);
}

// Insert with no node to be had, or with the element copy failing: the end position and
// false, the set as it was, nothing leaked.
TEST_F(SetShapes, InsertFailsCleanly)
{
    for (bool copyFails : {false, true}) {
        SCOPED_TRACE(copyFails);
        CountingAllocator a;
        IntSetRecord s;
        Build(&s, a.get(), {1, 2});
        IntState().copies = 0;
        IntState().failCopyAt = copyFails ? 1 : 0;
        a.failAt(copyFails ? 0 : 1);
        const TestInt v = Int(3);
        const auto r = IS::Insert(&s, &v);
        EXPECT_EQ(r.first, &s.end);
        EXPECT_FALSE(r.second);
        EXPECT_EQ(Shape(&s), "1/2(-,2/1)");
        EXPECT_EQ(a.liveBlocks(), 2u);
        EXPECT_EQ(IntState().live, 2);
        IS::Destruct(&s);
        EXPECT_EQ(a.badDeallocations(), 0u);
    }
}

// --- allocation failure, date-time sets ------------------------------------------------

// A counted zone for the date-time tests; when the test ends (after its keys are gone)
// the zone must be back to the one reference held here.
class CountedZone {
public:
    CountedZone() { orv::test::MakeTransitionZone(&zone_, orv::test::DstRules(), alloc_.get()); }
    ~CountedZone()
    {
        EXPECT_EQ(OrvTimezoneGetUseCount(&zone_), 1) << "zone references leaked";
        OrvTimezoneDestruct(&zone_);
        EXPECT_EQ(alloc_.liveBlocks(), 0u);
    }
    const OrvTimezone* get() const { return &zone_; }

private:
    CountingAllocator alloc_;
    OrvTimezone zone_{};
};

class DateTimeSet : public ::testing::Test {
protected:
    void Fill(OrvSet_OrvDateTime* s, OrvAllocator* a, std::initializer_list<int64_t> secs)
    {
        OrvSet_OrvDateTimeConstruct(s, a);
        for (int64_t k : secs) ASSERT_TRUE(OrvSet_OrvDateTimeInsert(s, key(k, zone())).second);
    }
    const OrvTimezone* zone() const { return zone_.get(); }
    OrvInt Uses() const { return OrvTimezoneGetUseCount(zone()); }

private:
    CountedZone zone_; // declared first: outlives the keys

protected:
    Keys key;
};

TEST_F(DateTimeSet, ConstructCopyAndAssignFailingAtEveryAllocation)
{
    CountingAllocator a;
    OrvSet_OrvDateTime s;
    Fill(&s, a.get(), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    for (std::size_t n = 1; n <= 12; ++n) {
        SCOPED_TRACE(n);
        const OrvInt uses = Uses();
        a.failAt(n);
        OrvSet_OrvDateTime copy;
        EXPECT_EQ(OrvSet_OrvDateTimeConstructCopy(&copy, &s), nullptr);
        EXPECT_EQ(a.liveBlocks(), 12u);
        EXPECT_EQ(Uses(), uses);

        CountingAllocator b;
        OrvSet_OrvDateTime d;
        Fill(&d, b.get(), {20, 21});
        b.failAt(n);
        const OrvInt withD = Uses();
        EXPECT_EQ(OrvSet_OrvDateTimeAssign(&d, &s), nullptr);
        EXPECT_EQ(Uses(), withD);
        EXPECT_EQ(Walk(&d), (std::vector<int64_t>{20, 21}));
        EXPECT_VALID(&d);
        OrvSet_OrvDateTimeDestruct(&d);
        EXPECT_EQ(b.liveBlocks(), 0u);
        EXPECT_EQ(b.badDeallocations(), 0u);
    }
    a.failAt(0);
    OrvSet_OrvDateTimeDestruct(&s);
    EXPECT_EQ(a.liveBlocks(), 0u);
    EXPECT_EQ(a.badDeallocations(), 0u);
}

// Swap between different allocators copies both ways; a failure in either copy leaves
// both sets as they were.
TEST_F(DateTimeSet, SwapBetweenAllocatorsFailingAtEveryAllocation)
{
    for (int side = 0; side < 2; ++side) {
        for (std::size_t n = 1;; ++n) {
            CountingAllocator a;
            CountingAllocator b;
            OrvSet_OrvDateTime x;
            OrvSet_OrvDateTime y;
            Fill(&x, a.get(), {1, 2, 3});
            Fill(&y, b.get(), {7, 8, 9, 10});
            CountingAllocator& failing = side == 0 ? a : b;
            const std::size_t before = failing.allocations();
            failing.failAt(n);
            const bool ok = OrvSet_OrvDateTimeSwap(&x, &y) != 0;
            const bool failed = failing.allocations() - before >= n;
            EXPECT_EQ(ok, !failed);
            const std::vector<int64_t> small = {1, 2, 3};
            const std::vector<int64_t> large = {7, 8, 9, 10};
            EXPECT_EQ(Walk(&x), ok ? large : small);
            EXPECT_EQ(Walk(&y), ok ? small : large);
            EXPECT_EQ(OrvSet_OrvDateTimeGetAllocator(&x), a.get());
            EXPECT_VALID(&x);
            EXPECT_VALID(&y);
            EXPECT_EQ(a.liveBlocks(), OrvSet_OrvDateTimeSize(&x));
            EXPECT_EQ(b.liveBlocks(), OrvSet_OrvDateTimeSize(&y));
            OrvSet_OrvDateTimeDestruct(&x);
            OrvSet_OrvDateTimeDestruct(&y);
            EXPECT_EQ(a.liveBlocks() + b.liveBlocks(), 0u);
            EXPECT_EQ(a.badDeallocations() + b.badDeallocations(), 0u);
            if (!failed) break;
        }
    }
}

// --- zone references ---------------------------------------------------------------------

TEST_F(DateTimeSet, OneZoneReferencePerElement)
{
    CountingAllocator a;
    const OrvInt base = Uses();
    OrvSet_OrvDateTime s;
    Fill(&s, a.get(), {1, 2, 3, 4});
    EXPECT_EQ(Uses(), base + 4 + 4); // the keys and their copies in the set
    const OrvInt withSet = Uses();
    EXPECT_FALSE(OrvSet_OrvDateTimeInsert(&s, key(2, zone())).second);
    EXPECT_EQ(Uses(), withSet + 1); // only the new key: the set's copy was released
    EXPECT_FALSE(OrvSet_OrvDateTimeInsert(&s, key(2)).second); // floating, the same wall time
    EXPECT_EQ(OrvSet_OrvDateTimeSize(&s), 4u);
    EXPECT_EQ(OrvSet_OrvDateTimeEraseKey(&s, key(3)), 1u);
    EXPECT_EQ(Uses(), withSet);
    OrvSet_OrvDateTime copy;
    ASSERT_NE(OrvSet_OrvDateTimeConstructCopy(&copy, &s), nullptr);
    EXPECT_EQ(Uses(), withSet + 3);
    OrvSet_OrvDateTimeDestruct(&copy);
    OrvSet_OrvDateTimeClear(&s);
    EXPECT_EQ(Uses(), withSet - 3);
    OrvSet_OrvDateTimeDestruct(&s);
    EXPECT_EQ(a.liveBlocks(), 0u);
}

// --- set operations ------------------------------------------------------------------------

// Every search of an empty and a filled set against std::set; the node-level searches
// give null for absence, the set's the end position.
TEST_F(DateTimeSet, SearchesAndBoundsMatchStdSet)
{
    for (const std::set<int64_t>& model : {std::set<int64_t>{}, std::set<int64_t>{10, 20, 30, 40, 50}}) {
        OrvSet_OrvDateTime s;
        OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault());
        for (int64_t k : model) ASSERT_TRUE(OrvSet_OrvDateTimeInsert(&s, key(k)).second);
        auto keyOf = [&](OrvSet_OrvDateTimeConstIterator it) { return it == &s.end ? -1 : Sec(&it->value); };
        auto modelKey = [&](std::set<int64_t>::const_iterator it) { return it == model.end() ? -1 : *it; };
        for (int64_t probe = 5; probe <= 55; probe += 5) {
            SCOPED_TRACE(probe);
            const OrvDateTime* k = key(probe);
            EXPECT_EQ(keyOf(OrvSet_OrvDateTimeLowerBound(&s, k)), modelKey(model.lower_bound(probe)));
            EXPECT_EQ(keyOf(OrvSet_OrvDateTimeUpperBoundConst(&s, k)), modelKey(model.upper_bound(probe)));
            EXPECT_EQ(keyOf(OrvSet_OrvDateTimeFindConst(&s, k)), modelKey(model.find(probe)));
            EXPECT_EQ(keyOf(OrvSet_OrvDateTimeFind(&s, k)), modelKey(model.find(probe)));
            EXPECT_EQ(OrvSet_OrvDateTimeCount(&s, k), model.count(probe));
            const auto range = OrvSet_OrvDateTimeEqualRangeConst(&s, k);
            const auto mutableRange = OrvSet_OrvDateTimeEqualRange(&s, k);
            const bool present = model.count(probe) != 0;
            EXPECT_EQ(keyOf(range.first), present ? probe : -1);
            EXPECT_EQ(keyOf(range.second), present ? modelKey(model.upper_bound(probe)) : -1);
            EXPECT_TRUE(mutableRange.first == range.first && mutableRange.second == range.second);
        }
        EXPECT_EQ(OrvSet_OrvDateTimeEmpty(&s), model.empty());
        EXPECT_EQ(OrvSet_OrvDateTimeBegin(&s), model.empty() ? &s.end : OrvSet_OrvDateTime_NodeGetMinimum(&s.end));
        const OrvDateTime* front = OrvSet_OrvDateTimeFront(&s);
        const OrvDateTime* back = OrvSet_OrvDateTimeBack(&s);
        EXPECT_EQ(front == nullptr ? -1 : Sec(front), model.empty() ? -1 : *model.begin());
        EXPECT_EQ(back == nullptr ? -1 : Sec(back), model.empty() ? -1 : *model.rbegin());
        OrvSet_OrvDateTimeDestruct(&s);
    }
    OrvSet_OrvDateTime s;
    Fill(&s, OrvAllocatorGetDefault(), {10, 20, 30, 40, 50});
    EXPECT_EQ(OrvSet_OrvDateTime_NodeLowerBound(s.end.left, key(60)), nullptr);
    EXPECT_EQ(OrvSet_OrvDateTime_NodeUpperBound(s.end.left, key(50)), nullptr);
    const auto absent = OrvSet_OrvDateTime_NodeEqualRange(s.end.left, key(15));
    EXPECT_EQ(absent.first, nullptr);
    EXPECT_EQ(absent.second, nullptr);
    EXPECT_EQ(OrvSet_OrvDateTime_NodeEqualRange(s.end.left, key(50)).second, &s.end);
    EXPECT_EQ(OrvSet_OrvDateTimeMaxSize(&s), 18446744073709551615u);
    EXPECT_EQ(OrvSet_OrvDateTimeGetNodeSize(&s), sizeof(OrvSet_OrvDateTime_Node));
    OrvSet_OrvDateTimeDestruct(&s);
}

// Assign copies into the target's own allocator (a set assigned to itself keeps its
// elements); Swap on one allocator hands the trees over, iterators and all, allocating
// nothing.
TEST_F(DateTimeSet, AssignAndSwapKeepAllocators)
{
    CountingAllocator a;
    CountingAllocator b;
    OrvSet_OrvDateTime x;
    OrvSet_OrvDateTime y;
    OrvSet_OrvDateTime z;
    Fill(&x, a.get(), {1, 2, 3});
    Fill(&y, b.get(), {9});
    ASSERT_EQ(OrvSet_OrvDateTimeAssign(&y, &x), &y);
    EXPECT_EQ(Walk(&y), (std::vector<int64_t>{1, 2, 3}));
    EXPECT_EQ(OrvSet_OrvDateTimeGetAllocator(&y), b.get());
    EXPECT_EQ(b.liveBlocks(), 3u);
    ASSERT_EQ(OrvSet_OrvDateTimeAssign(&x, &x), &x);
    EXPECT_EQ(Walk(&x), (std::vector<int64_t>{1, 2, 3}));
    EXPECT_EQ(a.liveBlocks(), 3u);

    OrvSet_OrvDateTimeConstruct(&z, a.get());
    OrvSet_OrvDateTimeIterator two = OrvSet_OrvDateTimeFind(&x, key(2));
    const std::size_t allocations = a.allocations();
    EXPECT_TRUE(OrvSet_OrvDateTimeSwap(&x, &z));
    EXPECT_EQ(a.allocations(), allocations);
    EXPECT_EQ(OrvSet_OrvDateTimeSize(&x), 0u);
    EXPECT_EQ(OrvSet_OrvDateTimeFind(&z, key(2)), two);
    for (const OrvSet_OrvDateTime* set : {&x, &y, &z}) EXPECT_VALID(set);
    for (OrvSet_OrvDateTime* set : {&x, &y, &z}) OrvSet_OrvDateTimeDestruct(set);
    EXPECT_EQ(a.liveBlocks() + b.liveBlocks(), 0u);
}

// --- iterators -------------------------------------------------------------------------------

TEST_F(DateTimeSet, IteratorsWalkBothWays)
{
    OrvSet_OrvDateTime s;
    Fill(&s, OrvAllocatorGetDefault(), {4, 2, 6, 1, 3, 5, 7});
    const std::vector<int64_t> ascending = {1, 2, 3, 4, 5, 6, 7};

    std::vector<int64_t> seen;
    OrvSet_OrvDateTimeConstIterator c = OrvSet_OrvDateTimeBeginConst(&s);
    const OrvSet_OrvDateTimeConstIterator cend = OrvSet_OrvDateTimeEndConst(&s);
    while (!OrvSet_OrvDateTimeConstIteratorEqual(&c, &cend)) {
        seen.push_back(Sec(OrvSet_OrvDateTimeConstIteratorContentOf(&c)));
        OrvSet_OrvDateTimeConstIteratorIncrement(&c);
    }
    EXPECT_EQ(seen, ascending);

    // Backwards from the end position.
    seen.clear();
    OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeEnd(&s);
    for (int i = 0; i < 7; ++i) {
        seen.insert(seen.begin(), Sec(OrvSet_OrvDateTimeIteratorContentOf(OrvSet_OrvDateTimeIteratorDecrement(&it))));
    }
    EXPECT_EQ(seen, ascending);
    EXPECT_EQ(it, OrvSet_OrvDateTimeBegin(&s));

    // Reverse (the full walk is in the C test): reading does not move it; one step back
    // from the reverse end designates the least element.
    OrvSet_OrvDateTimeReverseIterator r = OrvSet_OrvDateTimeEnd(&s);
    EXPECT_EQ(Sec(OrvSet_OrvDateTimeReverseIteratorContentOf(&r)), 7);
    EXPECT_EQ(r, OrvSet_OrvDateTimeEnd(&s));
    r = OrvSet_OrvDateTimeBegin(&s);
    OrvSet_OrvDateTimeReverseIteratorDecrement(&r);
    EXPECT_EQ(Sec(OrvSet_OrvDateTimeReverseIteratorContentOf(&r)), 1);

    OrvSet_OrvDateTimeConstReverseIterator cr = OrvSet_OrvDateTimeEndConst(&s);
    OrvSet_OrvDateTimeConstReverseIteratorIncrement(&cr);
    EXPECT_EQ(Sec(OrvSet_OrvDateTimeConstReverseIteratorContentOf(&cr)), 6);
    OrvSet_OrvDateTimeConstReverseIteratorDecrement(&cr);
    EXPECT_EQ(cr, OrvSet_OrvDateTimeEndConst(&s));

    // Pointer operations.
    OrvSet_OrvDateTimeIterator a;
    OrvSet_OrvDateTimeIteratorConstruct(&a);
    EXPECT_TRUE(OrvSet_OrvDateTimeIteratorIsExceptional(a));
    OrvSet_OrvDateTimeReverseIterator re;
    OrvSet_OrvDateTimeReverseIteratorConstructExceptional(&re);
    EXPECT_TRUE(OrvSet_OrvDateTimeReverseIteratorIsExceptional(re));
    OrvSet_OrvDateTimeIterator b = OrvSet_OrvDateTimeBegin(&s);
    OrvSet_OrvDateTimeIterator e = OrvSet_OrvDateTimeEnd(&s);
    EXPECT_NE(OrvSet_OrvDateTimeIteratorLess(&b, &e), OrvSet_OrvDateTimeIteratorLess(&e, &b));
    EXPECT_FALSE(OrvSet_OrvDateTimeIteratorLess(&b, &b));
    EXPECT_TRUE(OrvSet_OrvDateTimeIteratorSwap(&b, &e));
    EXPECT_EQ(e, OrvSet_OrvDateTimeBegin(&s));
    OrvSet_OrvDateTimeIteratorAssign(&a, &b);
    EXPECT_TRUE(OrvSet_OrvDateTimeIteratorEqual(&a, &b));

    // The null iterator stays null when moved, and reads as null.
    OrvSet_OrvDateTimeIteratorConstructExceptional(&a);
    OrvSet_OrvDateTimeIteratorIncrement(&a);
    OrvSet_OrvDateTimeReverseIteratorDecrement(&re);
    OrvSet_OrvDateTimeConstReverseIterator cre = nullptr;
    OrvSet_OrvDateTimeConstReverseIteratorIncrement(&cre);
    EXPECT_TRUE(a == nullptr && re == nullptr && cre == nullptr);
    EXPECT_EQ(OrvSet_OrvDateTimeIteratorContentOf(&a), nullptr);
    EXPECT_EQ(OrvSet_OrvDateTimeConstReverseIteratorContentOfConst(&cre), nullptr);
    OrvSet_OrvDateTimeDestruct(&s);
}

// --- randomized, against std::set --------------------------------------------------------------

// Key k of the randomized test: k seconds after the epoch; from kFar on, seconds
// k - kFar of 2300 (no instant: compared by their fields). Every seventh is built
// with its fields pending and a wrong stale instant (100 s late), and made so again
// before each use, as comparing normalizes it: searches meet values that have an
// instant, values that never do and values that must be normalized first, as keys and
// as elements.
void MakeKey(OrvDateTime* d, int64_t k)
{
    if (k >= kFar) {
        OrvDateTimeConstructFields(d, 2300, 1, 1, 0, 0, static_cast<OrvInt>(k - kFar), 0, nullptr);
    } else if (k % 7 == 3) {
        OrvDateTimeConstruct(d, (k + 100) * kSecond, nullptr);
        OrvDateTimeSetField(d, ORV_DATETIMEFIELD_Second, d->sec - 100);
    } else {
        OrvDateTimeConstruct(d, k * kSecond, nullptr);
    }
}

// At least 100000 mixed operations; every invariant of the tree (order, balance,
// heights, parent and pPtr links, size) is checked after every one.
TEST_F(DateTimeSet, RandomizedAgainstStdSet)
{
    CountingAllocator a;
    CountingAllocator b;
    std::vector<OrvDateTime> keys(256);
    for (std::size_t i = 0; i < keys.size(); ++i) MakeKey(&keys[i], static_cast<int64_t>(i));
    auto probe = [&](int64_t k) {
        OrvDateTime* d = &keys[static_cast<std::size_t>(k)];
        if (k < kFar && k % 7 == 3) {
            OrvDateTimeDestruct(d);
            MakeKey(d, k);
        }
        return d;
    };
    OrvSet_OrvDateTime s;
    OrvSet_OrvDateTime other;
    OrvSet_OrvDateTimeConstruct(&s, a.get());
    OrvSet_OrvDateTimeConstruct(&other, b.get());
    std::set<int64_t> model;
    std::set<int64_t> otherModel;
    std::mt19937 rng(7);
    for (int step = 0; step < 100000; ++step) {
        const int64_t k = static_cast<int64_t>(rng() % keys.size());
        const OrvDateTime* kp = probe(k);
        const unsigned op = rng() % 100;
        if (op < 45) {
            const auto r = OrvSet_OrvDateTimeInsert(&s, kp);
            const bool inserted = model.insert(k).second;
            ASSERT_EQ(r.second != 0, inserted);
            ASSERT_EQ(Sec(&r.first->value), k);
        } else if (op < 65) {
            ASSERT_EQ(OrvSet_OrvDateTimeEraseKey(&s, kp), model.erase(k));
        } else if (op < 80) {
            OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeLowerBound(&s, kp);
            const auto mit = model.lower_bound(k);
            ASSERT_EQ(it == &s.end, mit == model.end());
            if (it != &s.end) {
                ASSERT_EQ(Sec(&it->value), *mit);
                OrvSet_OrvDateTimeIterator next = OrvSet_OrvDateTimeErase(&s, it);
                const auto mnext = model.erase(mit);
                ASSERT_EQ(next == &s.end ? -1 : Sec(&next->value), mnext == model.end() ? -1 : *mnext);
            }
        } else if (op < 84) {
            const int64_t hi = k + static_cast<int64_t>(rng() % 16);
            OrvSet_OrvDateTimeIterator first = OrvSet_OrvDateTimeLowerBound(&s, kp);
            OrvSet_OrvDateTimeIterator last = hi < static_cast<int64_t>(keys.size())
                                                  ? OrvSet_OrvDateTimeLowerBound(&s, probe(hi))
                                                  : OrvSet_OrvDateTimeEnd(&s);
            ASSERT_EQ(OrvSet_OrvDateTimeEraseRange(&s, first, last), last);
            model.erase(model.lower_bound(k), model.lower_bound(hi));
        } else if (op < 97) {
            const auto up = OrvSet_OrvDateTimeUpperBound(&s, kp);
            const auto mup = model.upper_bound(k);
            ASSERT_EQ(up == &s.end ? -1 : Sec(&up->value), mup == model.end() ? -1 : *mup);
            ASSERT_EQ(OrvSet_OrvDateTimeCount(&s, probe(k)), model.count(k));
        } else if (op < 98) {
            ASSERT_NE(OrvSet_OrvDateTimeAssign(&other, &s), nullptr);
            otherModel = model;
        } else if (op < 99) {
            ASSERT_TRUE(OrvSet_OrvDateTimeSwap(&s, &other));
            std::swap(model, otherModel);
            ASSERT_EQ(DateTimeTree::Validate(&other), nullptr);
        } else if (rng() % 4 == 0) {
            OrvSet_OrvDateTimeClear(&s);
            model.clear();
        }
        const char* fault = DateTimeTree::Validate(&s);
        ASSERT_EQ(fault, nullptr) << "step " << step;
        ASSERT_EQ(OrvSet_OrvDateTimeSize(&s), model.size());
        if (step % 1000 == 0) {
            ASSERT_EQ(Walk(&s), std::vector<int64_t>(model.begin(), model.end()));
        }
    }
    ASSERT_EQ(Walk(&s), std::vector<int64_t>(model.begin(), model.end()));
    ASSERT_EQ(Walk(&other), std::vector<int64_t>(otherModel.begin(), otherModel.end()));
    OrvSet_OrvDateTimeDestruct(&s);
    OrvSet_OrvDateTimeDestruct(&other);
    for (auto& d : keys) OrvDateTimeDestruct(&d);
    EXPECT_EQ(a.liveBlocks() + b.liveBlocks(), 0u);
    EXPECT_EQ(a.badDeallocations() + b.badDeallocations(), 0u);
}

} // namespace
