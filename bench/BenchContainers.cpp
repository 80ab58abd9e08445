// The containers against the standard library's, holding the same 96-byte value with
// the same costs: std::set ordered by a comparator that calls OrvDateTimeLess, and
// std::vector of a wrapper whose copy, assignment and destruction call the date-time's
// own. Keys are distinct instants inserted in a fixed shuffled order.
#include "Orv/Calendar/OrvDateTime.h"
#include "RatioReporter.h"

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <vector>

namespace {

constexpr OrvTime kStep = 2000000000; // keys 2 s apart; misses fall in between

// A date-time with value semantics over the library's copy, assign and destruct.
struct Value {
    OrvDateTime v;
    explicit Value(const OrvDateTime& d) { OrvDateTimeConstructCopy(&v, &d); }
    Value(const Value& o) { OrvDateTimeConstructCopy(&v, &o.v); }
    Value& operator=(const Value& o)
    {
        OrvDateTimeAssign(&v, &o.v);
        return *this;
    }
    ~Value() { OrvDateTimeDestruct(&v); }
};

struct ValueLess {
    bool operator()(const Value& a, const Value& b) const { return OrvDateTimeLess(&a.v, &b.v) != ORV_FALSE; }
};

using StdSet = std::set<Value, ValueLess>;

// n keys in shuffled order (instants 0, 2 s, 4 s, ...) and n misses (the odd seconds),
// shuffled separately, all floating.
struct Keys {
    std::vector<OrvDateTime> hits;
    std::vector<OrvDateTime> misses;
    explicit Keys(std::size_t n) : hits(n), misses(n)
    {
        for (std::size_t i = 0; i < n; ++i) {
            OrvDateTimeConstruct(&hits[i], static_cast<OrvTime>(i) * kStep, nullptr);
            OrvDateTimeConstruct(&misses[i], static_cast<OrvTime>(i) * kStep + kStep / 2, nullptr);
        }
        std::mt19937_64 rng(n);
        std::shuffle(hits.begin(), hits.end(), rng);
        std::shuffle(misses.begin(), misses.end(), rng);
    }
    ~Keys()
    {
        for (auto& d : hits) OrvDateTimeDestruct(&d);
        for (auto& d : misses) OrvDateTimeDestruct(&d);
    }
};

const Keys& KeysFor(std::size_t n)
{
    static std::map<std::size_t, std::unique_ptr<Keys>> cache;
    auto& k = cache[n];
    if (!k) k = std::make_unique<Keys>(n);
    return *k;
}

// Sets built once per size, for the rows that only read them.
OrvSet_OrvDateTime* OrvSetFor(std::size_t n)
{
    static std::map<std::size_t, std::unique_ptr<OrvSet_OrvDateTime>> cache;
    auto& s = cache[n];
    if (!s) {
        s = std::make_unique<OrvSet_OrvDateTime>();
        OrvSet_OrvDateTimeConstruct(s.get(), OrvAllocatorGetDefault());
        for (const OrvDateTime& d : KeysFor(n).hits) OrvSet_OrvDateTimeInsert(s.get(), &d);
    }
    return s.get();
}

StdSet& StdSetFor(std::size_t n)
{
    static std::map<std::size_t, std::unique_ptr<StdSet>> cache;
    auto& s = cache[n];
    if (!s) {
        s = std::make_unique<StdSet>();
        for (const OrvDateTime& d : KeysFor(n).hits) s->emplace(d);
    }
    return *s;
}

std::size_t N(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

// --- insert: build a whole set in shuffled order ----------------------------------------

void SetInsertOrv(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    for (auto _ : state) {
        OrvSet_OrvDateTime s;
        OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault());
        for (const OrvDateTime& d : keys.hits) OrvSet_OrvDateTimeInsert(&s, &d);
        benchmark::DoNotOptimize(s.size);
        state.PauseTiming();
        OrvSet_OrvDateTimeDestruct(&s);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SetInsertStd(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    for (auto _ : state) {
        auto s = std::make_unique<StdSet>();
        for (const OrvDateTime& d : keys.hits) s->emplace(d);
        benchmark::DoNotOptimize(s->size());
        state.PauseTiming();
        s.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- erase: take every element out by key, in another shuffled order -----------------------

void SetEraseOrv(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    std::vector<const OrvDateTime*> order;
    for (const OrvDateTime& d : keys.hits) order.push_back(&d);
    std::shuffle(order.begin(), order.end(), std::mt19937_64(7));
    for (auto _ : state) {
        state.PauseTiming();
        OrvSet_OrvDateTime s;
        OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault());
        for (const OrvDateTime& d : keys.hits) OrvSet_OrvDateTimeInsert(&s, &d);
        state.ResumeTiming();
        for (const OrvDateTime* d : order) OrvSet_OrvDateTimeEraseKey(&s, d);
        benchmark::DoNotOptimize(s.size);
        OrvSet_OrvDateTimeDestruct(&s);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SetEraseStd(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    std::vector<const OrvDateTime*> order;
    for (const OrvDateTime& d : keys.hits) order.push_back(&d);
    std::shuffle(order.begin(), order.end(), std::mt19937_64(7));
    for (auto _ : state) {
        state.PauseTiming();
        auto s = std::make_unique<StdSet>();
        for (const OrvDateTime& d : keys.hits) s->emplace(d);
        std::vector<Value> probes;
        probes.reserve(order.size());
        for (const OrvDateTime* d : order) probes.emplace_back(*d);
        state.ResumeTiming();
        for (const Value& p : probes) s->erase(p);
        benchmark::DoNotOptimize(s->size());
        state.PauseTiming();
        probes.clear();
        s.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- find: one lookup per iteration, cycling through the probes ---------------------------

template <bool kHit>
void SetFindOrv(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    const std::vector<OrvDateTime>& probes = kHit ? keys.hits : keys.misses;
    OrvSet_OrvDateTime* s = OrvSetFor(N(state));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvSet_OrvDateTimeFind(s, &probes[i]));
        if (++i == probes.size()) i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

template <bool kHit>
void SetFindStd(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    std::vector<Value> probes;
    for (const OrvDateTime& d : kHit ? keys.hits : keys.misses) probes.emplace_back(d);
    StdSet& s = StdSetFor(N(state));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.find(probes[i]));
        if (++i == probes.size()) i = 0;
    }
    state.SetItemsProcessed(state.iterations());
}

// --- walk: every element in order, reading its instant ---------------------------------------

void SetWalkOrv(benchmark::State& state)
{
    OrvSet_OrvDateTime* s = OrvSetFor(N(state));
    for (auto _ : state) {
        OrvTime sum = 0;
        const OrvSet_OrvDateTimeIterator end = OrvSet_OrvDateTimeEnd(s);
        for (OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(s); it != end;
             OrvSet_OrvDateTimeIteratorIncrement(&it)) {
            sum += OrvSet_OrvDateTimeIteratorContentOfConst(&it)->wallTime;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SetWalkStd(benchmark::State& state)
{
    StdSet& s = StdSetFor(N(state));
    for (auto _ : state) {
        OrvTime sum = 0;
        for (const Value& v : s) sum += v.v.wallTime;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- vector push_back from empty ---------------------------------------------------------------

void VectorPushBackOrv(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    for (auto _ : state) {
        OrvVector_OrvDateTime v;
        OrvVector_OrvDateTimeConstructDefault(&v, OrvAllocatorGetDefault());
        for (const OrvDateTime& d : keys.hits) OrvVector_OrvDateTimePushBack(&v, &d);
        benchmark::DoNotOptimize(v.end);
        state.PauseTiming();
        OrvVector_OrvDateTimeDestruct(&v);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void VectorPushBackStd(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    for (auto _ : state) {
        auto v = std::make_unique<std::vector<Value>>();
        for (const OrvDateTime& d : keys.hits) v->emplace_back(d);
        benchmark::DoNotOptimize(v->data());
        state.PauseTiming();
        v.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Whole-container rows; at 1e6 they run a fixed few times (building or emptying a set
// of 1e6 takes seconds) to keep the whole run to a couple of minutes.
void Sizes(benchmark::internal::Benchmark* b)
{
    b->Arg(1000)->Arg(100000);
}

#define ORV_CONTAINER_BENCH(group, orv, peer, peerName, bigRuns)                                          \
    BENCHMARK(orv)->Name(group ":orv")->Apply(Sizes);                                                      \
    BENCHMARK(peer)->Name(group ":" peerName)->Apply(Sizes);                                               \
    BENCHMARK(orv)->Name(group ":orv")->Arg(1000000)->Iterations(bigRuns)->Unit(benchmark::kMillisecond);  \
    BENCHMARK(peer)->Name(group ":" peerName)->Arg(1000000)->Iterations(bigRuns)->Unit(benchmark::kMillisecond)

ORV_CONTAINER_BENCH("SetInsert", SetInsertOrv, SetInsertStd, "std::set", 1);
ORV_CONTAINER_BENCH("SetErase", SetEraseOrv, SetEraseStd, "std::set", 1);
ORV_CONTAINER_BENCH("SetWalk", SetWalkOrv, SetWalkStd, "std::set", 3);
ORV_CONTAINER_BENCH("VectorPushBack", VectorPushBackOrv, VectorPushBackStd, "std::vector", 3);

BENCHMARK(SetFindOrv<true>)->Name("SetFindHit:orv")->Arg(1000)->Arg(100000)->Arg(1000000);
BENCHMARK(SetFindStd<true>)->Name("SetFindHit:std::set")->Arg(1000)->Arg(100000)->Arg(1000000);
BENCHMARK(SetFindOrv<false>)->Name("SetFindMiss:orv")->Arg(1000)->Arg(100000)->Arg(1000000);
BENCHMARK(SetFindStd<false>)->Name("SetFindMiss:std::set")->Arg(1000)->Arg(100000)->Arg(1000000);

} // namespace
