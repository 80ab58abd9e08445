// The containers beside the standard library's, holding the same 96-byte value:
//  - the vector beside std::vector of a record whose copy and destruction are written
//    inline as a C++ user would write them (the 96 bytes, and one atomic step of the
//    zone's count when the zone is counted); it is copied on growth, as the vector is;
//  - the set beside std::set of the same records ordered by an inline comparison of the
//    instants (a.wallTime < b.wallTime), the row a user compares with, and beside
//    std::set ordered through the library's OrvDateTimeLess (the same comparisons as
//    the set, so that row measures the tree alone);
//  - `orvcal sort` beside `sort -u` on the same generated file of 1e6 lines: wall time
//    per line and peak memory (the OrvcalSortPeak group's "ns/item" column is KiB).
// Keys are distinct instants in a fixed shuffled order; the vector's values cycle through
// 8192 pseudo-random instants in a counted zone. The heap is kept warm (no block goes
// back to the system), so whole-container rows do not time page faults.
//
// The rows at 1e6 run once each (insert hands its set to the find, walk and erase rows
// of the same implementation), and each command of the sort rows runs once, so
// `--benchmark_min_time=0.01` finishes in seconds.
#include "Orv/Calendar/OrvDateTime.h"
#include "RatioReporter.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <malloc.h>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

const bool kWarmHeap = [] {
    mallopt(M_MMAP_MAX, 0);        // every block from the heap...
    mallopt(M_TRIM_THRESHOLD, -1); // ...which never shrinks
    return true;
}();

constexpr OrvTime kStep = 2000000000; // set keys 2 s apart; misses fall in between
constexpr std::size_t kBatch = 8192;  // distinct inputs the vector rows and the probes cycle through
constexpr OrvTime kHour = 3600 * ORV_TIME_NANOSECONDS_PER_SECOND;

std::size_t N(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

// --- values --------------------------------------------------------------------------

// The zone count's atomic steps, written inline as a C++ user would (what std::shared_ptr does).
void Acquire(const OrvDateTime& d)
{
    if (d.tz.impl.ref != nullptr) std::atomic_ref<OrvInt>(d.tz.impl.ref->useCount.value).fetch_add(1);
}
void Release(OrvDateTime& d)
{
    OrvSharedPtrRefCount* ref = d.tz.impl.ref;
    if (ref == nullptr || std::atomic_ref<OrvInt>(ref->useCount.value).fetch_sub(1) != 1) return;
    if (d.tz.impl.d != nullptr) d.tz.impl.d(d.tz.impl.ptr, d.tz.impl.a);
    if (OrvSharedPtrRefCountDecWeakCount(ref) == 0) OrvAllocatorDeallocate(d.tz.impl.a, ref, sizeof *ref);
}

// The vector's peer element: the record with an inline copy and destruction.
struct Counted {
    OrvDateTime v;
    explicit Counted(const OrvDateTime& d)
    {
        std::memcpy(&v, &d, sizeof v);
        Acquire(v);
    }
    Counted(const Counted& o) : Counted(o.v) {}
    Counted& operator=(const Counted&) = delete;
    ~Counted() { Release(v); }
};

// The old peer of the set: every copy, destruction and comparison through the library.
struct LibValue {
    OrvDateTime v;
    explicit LibValue(const OrvDateTime& d) { OrvDateTimeConstructCopy(&v, &d); }
    LibValue(const LibValue& o) { OrvDateTimeConstructCopy(&v, &o.v); }
    LibValue& operator=(const LibValue&) = delete;
    ~LibValue() { OrvDateTimeDestruct(&v); }
};
struct LibLess {
    using is_transparent = void;
    static const OrvDateTime& D(const LibValue& x) { return x.v; }
    static const OrvDateTime& D(const OrvDateTime& x) { return x; }
    template <class A, class B>
    bool operator()(const A& a, const B& b) const
    {
        return OrvDateTimeLess(&D(a), &D(b)) != ORV_FALSE;
    }
};

// The user's comparison: the instants, inline.
struct InstantLess {
    bool operator()(const OrvDateTime& a, const OrvDateTime& b) const { return a.wallTime < b.wallTime; }
};

// n set keys (instants 0, 2 s, 4 s, ... in shuffled order), all floating; kBatch hit
// probes drawn from them and kBatch misses (the odd seconds); the keys again in another
// shuffled order for erasing.
struct Keys {
    std::vector<OrvDateTime> hits, probeHits, probeMisses;
    std::vector<const OrvDateTime*> eraseOrder;
    explicit Keys(std::size_t n) : hits(n), probeHits(kBatch), probeMisses(kBatch)
    {
        for (std::size_t i = 0; i < n; ++i) OrvDateTimeConstruct(&hits[i], static_cast<OrvTime>(i) * kStep, nullptr);
        std::mt19937_64 rng(n);
        std::shuffle(hits.begin(), hits.end(), rng);
        for (std::size_t i = 0; i < kBatch; ++i) {
            const auto k = static_cast<OrvTime>(rng() % n);
            OrvDateTimeConstruct(&probeHits[i], k * kStep, nullptr);
            OrvDateTimeConstruct(&probeMisses[i], k * kStep + kStep / 2, nullptr);
        }
        for (const OrvDateTime& d : hits) eraseOrder.push_back(&d);
        std::shuffle(eraseOrder.begin(), eraseOrder.end(), rng);
    }
    ~Keys()
    {
        for (auto* v : {&hits, &probeHits, &probeMisses})
            for (OrvDateTime& d : *v) OrvDateTimeDestruct(&d);
    }
};

const Keys& KeysFor(std::size_t n)
{
    static std::map<std::size_t, std::unique_ptr<Keys>> cache;
    auto& k = cache[n];
    if (!k) k = std::make_unique<Keys>(n);
    return *k;
}

// --- the three sets behind one interface ----------------------------------------------

struct OrvSet {
    OrvSet_OrvDateTime s;
    OrvSet() { OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault()); }
    ~OrvSet() { OrvSet_OrvDateTimeDestruct(&s); }
    OrvSet(const OrvSet&) = delete;
    OrvSet& operator=(const OrvSet&) = delete;
    void Insert(const OrvDateTime& d) { OrvSet_OrvDateTimeInsert(&s, &d); }
    const void* Find(const OrvDateTime& d) { return OrvSet_OrvDateTimeFind(&s, &d); }
    void Erase(const OrvDateTime& d) { OrvSet_OrvDateTimeEraseKey(&s, &d); }
    std::size_t Size() const { return s.size; }
    OrvTime Walk()
    {
        OrvTime sum = 0;
        const OrvSet_OrvDateTimeIterator end = OrvSet_OrvDateTimeEnd(&s);
        for (OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(&s); it != end;
             OrvSet_OrvDateTimeIteratorIncrement(&it)) {
            sum += OrvSet_OrvDateTimeIteratorContentOfConst(&it)->wallTime;
        }
        return sum;
    }
};

template <class Set, class Key>
struct StdSetOf {
    Set s;
    void Insert(const OrvDateTime& d) { s.emplace(d); }
    const void* Find(const OrvDateTime& d)
    {
        const auto it = s.find(d);
        return it == s.end() ? nullptr : &*it;
    }
    std::size_t Size() const { return s.size(); }
    OrvTime Walk()
    {
        OrvTime sum = 0;
        for (const Key& v : s) sum += reinterpret_cast<const OrvDateTime&>(v).wallTime;
        return sum;
    }
};
struct InstantSet : StdSetOf<std::set<OrvDateTime, InstantLess>, OrvDateTime> {
    void Erase(const OrvDateTime& d) { s.erase(d); }
};
struct LibLessSet : StdSetOf<std::set<LibValue, LibLess>, LibValue> {
    void Erase(const OrvDateTime& d)
    {
        auto it = s.find(d);
        if (it != s.end()) s.erase(it);
    }
};

// A set of n keys per implementation, built on demand; the insert row leaves its last
// set here for the rows that read or empty one.
template <class S>
std::unique_ptr<S>& Cached(std::size_t n)
{
    static std::map<std::size_t, std::unique_ptr<S>> cache;
    return cache[n];
}

template <class S>
std::unique_ptr<S> Build(std::size_t n)
{
    auto s = std::make_unique<S>();
    for (const OrvDateTime& d : KeysFor(n).hits) s->Insert(d);
    return s;
}

template <class S>
S& Filled(std::size_t n)
{
    auto& s = Cached<S>(n);
    if (!s || s->Size() != n) s = Build<S>(n);
    return *s;
}

template <class S>
void SetInsert(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    for (auto _ : state) {
        auto s = std::make_unique<S>();
        for (const OrvDateTime& d : keys.hits) s->Insert(d);
        benchmark::DoNotOptimize(s->Size());
        state.PauseTiming();
        Cached<S>(N(state)) = std::move(s);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class S, bool kHit>
void SetFind(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    const std::vector<OrvDateTime>& probes = kHit ? keys.probeHits : keys.probeMisses;
    S& s = Filled<S>(N(state));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.Find(probes[i]));
        i = (i + 1) % kBatch;
    }
    state.SetItemsProcessed(state.iterations());
}

template <class S>
void SetWalk(benchmark::State& state)
{
    S& s = Filled<S>(N(state));
    for (auto _ : state) benchmark::DoNotOptimize(s.Walk());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Every key erased, in another shuffled order.
template <class S>
void SetErase(benchmark::State& state)
{
    const Keys& keys = KeysFor(N(state));
    for (auto _ : state) {
        state.PauseTiming();
        S& s = Filled<S>(N(state));
        state.ResumeTiming();
        for (const OrvDateTime* d : keys.eraseOrder) s.Erase(*d);
        benchmark::DoNotOptimize(s.Size());
    }
    Cached<S>(N(state)).reset();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- the vector ------------------------------------------------------------------------

// kBatch pseudo-random instants of 1970..2100 in a counted +01:00 zone.
struct VectorInputs {
    OrvTimezone zone;
    std::vector<OrvDateTime> values;
    VectorInputs() : values(kBatch)
    {
        OrvFixedTimezoneConstruct(&zone, kHour, OrvAllocatorGetDefault());
        std::mt19937_64 rng(42);
        for (OrvDateTime& d : values) {
            const auto t = static_cast<OrvTime>(rng() % (130ULL * 365 * 86400)) * ORV_TIME_NANOSECONDS_PER_SECOND;
            OrvDateTimeConstruct(&d, t, &zone);
        }
    }
    ~VectorInputs()
    {
        for (OrvDateTime& d : values) OrvDateTimeDestruct(&d);
        OrvTimezoneDestruct(&zone);
    }
};

const std::vector<OrvDateTime>& VectorValues()
{
    static VectorInputs inputs;
    return inputs.values;
}

struct OrvVec {
    OrvVector_OrvDateTime v;
    OrvVec() { OrvVector_OrvDateTimeConstructDefault(&v, OrvAllocatorGetDefault()); }
    ~OrvVec() { OrvVector_OrvDateTimeDestruct(&v); }
    OrvVec(const OrvVec&) = delete;
    OrvVec& operator=(const OrvVec&) = delete;
    void Reserve(std::size_t n) { OrvVector_OrvDateTimeReserve(&v, n); }
    void Push(const OrvDateTime& d) { OrvVector_OrvDateTimePushBack(&v, &d); }
    const void* Data() const { return v.begin; }
};

struct StdVec {
    std::vector<Counted> v;
    void Reserve(std::size_t n) { v.reserve(n); }
    void Push(const OrvDateTime& d) { v.emplace_back(d); }
    const void* Data() const { return v.data(); }
};

// One untimed round first, so that even a single timed one finds the heap warm.
template <class V>
void WarmUp(std::size_t n)
{
    const std::vector<OrvDateTime>& values = VectorValues();
    V v;
    for (std::size_t i = 0; i < n; ++i) v.Push(values[i % kBatch]);
}

template <class V, bool kReserve>
void VectorPushBack(benchmark::State& state)
{
    const std::vector<OrvDateTime>& values = VectorValues();
    const std::size_t n = N(state);
    WarmUp<V>(n);
    for (auto _ : state) {
        state.PauseTiming();
        auto v = std::make_unique<V>();
        if (kReserve) v->Reserve(n);
        state.ResumeTiming();
        for (std::size_t i = 0; i < n; ++i) v->Push(values[i % kBatch]);
        benchmark::DoNotOptimize(v->Data());
        state.PauseTiming();
        v.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class V>
void VectorDestroy(benchmark::State& state)
{
    const std::vector<OrvDateTime>& values = VectorValues();
    const std::size_t n = N(state);
    WarmUp<V>(n);
    for (auto _ : state) {
        state.PauseTiming();
        auto v = std::make_unique<V>();
        v->Reserve(n);
        for (std::size_t i = 0; i < n; ++i) v->Push(values[i % kBatch]);
        state.ResumeTiming();
        v.reset();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- orvcal sort beside sort -u ----------------------------------------------------------

constexpr std::size_t kSortLines = 1000000;

// 1e6 lines of 1970..2100 in UTC ("20240501T093000Z"): one in 20 repeats an earlier
// line, one in 1000 is bad. Written as they are made, holding only the instants (the
// peak of each child includes this process's size when it forks; see OrvcalSort).
// Removed at exit.
struct SortInput {
    std::string path = "/tmp/orv_bench_sort_" + std::to_string(getpid()) + ".txt";
    SortInput()
    {
        std::FILE* f = std::fopen(path.c_str(), "wb");
        if (f == nullptr) return;
        std::mt19937_64 rng(2024);
        std::vector<OrvTime> made;
        made.reserve(kSortLines);
        for (std::size_t i = 0; i < kSortLines; ++i) {
            if (rng() % 1000 == 0) {
                std::fputs("2024-05-01 bad line\n", f);
                continue;
            }
            OrvTime t = static_cast<OrvTime>(rng() % (130ULL * 365 * 86400)) * ORV_TIME_NANOSECONDS_PER_SECOND;
            if (!made.empty() && rng() % 20 == 0) t = made[rng() % made.size()];
            made.push_back(t);
            OrvDateTime d;
            OrvDateTimeConstruct(&d, t, OrvFixedTimezoneGetUTC());
            std::fprintf(f, "%04d%02d%02dT%02d%02d%02dZ\n", d.year, d.month, d.monthDay, d.hour, d.min, d.sec);
            OrvDateTimeDestruct(&d);
        }
        std::fclose(f);
    }
    ~SortInput() { std::remove(path.c_str()); }
};

const std::string& SortFile()
{
    static SortInput input;
    return input.path;
}

// orvcal built beside the benchmarks (<build>/tools/orvcal), or empty.
std::string OrvcalPath()
{
    char self[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    if (n <= 0) return {};
    std::string dir(self, static_cast<std::size_t>(n));
    dir.erase(dir.rfind('/'));
    const std::string path = dir.substr(0, dir.rfind('/')) + "/tools/orvcal";
    return access(path.c_str(), X_OK) == 0 ? path : std::string();
}

struct ChildRun {
    bool ok = false;
    double seconds = 0;
    long peakKiB = 0;
};

// Runs argv with standard output and error on /dev/null: wall time and peak resident size.
ChildRun RunChild(const std::vector<std::string>& args)
{
    std::vector<char*> argv;
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        dup2(null, 2);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    ChildRun run;
    int status = 0;
    rusage usage{};
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) return run;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.peakKiB = usage.ru_maxrss;
    run.ok = WIFEXITED(status) && WEXITSTATUS(status) <= 1; // 1: bad lines were skipped
    return run;
}

// One run of `orvcal sort` or `sort -u` on the file, shared by the time and memory rows.
const ChildRun& SortRun(bool orvcal)
{
    static std::map<bool, ChildRun> runs;
    auto found = runs.find(orvcal);
    if (found != runs.end()) return found->second;
    const std::string tool = orvcal ? OrvcalPath() : "sort";
    ChildRun run;
    if (!tool.empty()) run = RunChild(orvcal ? std::vector<std::string>{tool, "sort", SortFile()}
                                             : std::vector<std::string>{tool, "-u", SortFile()});
    return runs[orvcal] = run;
}

// kMemory: the "time" reported is the peak in KiB, so the ratio table compares memory.
// A child's peak counts this process's resident size when it forked, so these rows are
// registered first, before any container is built.
template <bool kOrvcal, bool kMemory>
void OrvcalSort(benchmark::State& state)
{
    const ChildRun& run = SortRun(kOrvcal);
    for (auto _ : state) {
        if (!run.ok) {
            state.SkipWithError(kOrvcal && OrvcalPath().empty() ? "orvcal is not built beside the benchmarks"
                                                                : "the command failed");
            return;
        }
        state.SetIterationTime(kMemory ? static_cast<double>(run.peakKiB) * 1e-9 : run.seconds / kSortLines);
    }
}

// --- registration ---------------------------------------------------------------------------

template <class S>
void RegisterSetRows(const char* impl, int n)
{
    const std::string name(impl);
    auto whole = [n](benchmark::internal::Benchmark* b) {
        b->Arg(n);
        if (n >= 1000000) b->Iterations(1)->Unit(benchmark::kMillisecond);
    };
    whole(benchmark::RegisterBenchmark(("SetInsert:" + name).c_str(), SetInsert<S>));
    benchmark::RegisterBenchmark(("SetFindHit:" + name).c_str(), SetFind<S, true>)->Arg(n);
    benchmark::RegisterBenchmark(("SetFindMiss:" + name).c_str(), SetFind<S, false>)->Arg(n);
    whole(benchmark::RegisterBenchmark(("SetWalk:" + name).c_str(), SetWalk<S>));
    whole(benchmark::RegisterBenchmark(("SetErase:" + name).c_str(), SetErase<S>));
}

// Each row beside its peer, so that both find the heap as the other left it (the rows
// are bound by memory, and where a block lands matters).
void RegisterVectorRows()
{
    const auto both = [](const char* row, benchmark::internal::Function* orv, benchmark::internal::Function* peer) {
        for (const auto& [impl, f] : {std::pair{":orv", orv}, std::pair{":std::vector", peer}}) {
            benchmark::RegisterBenchmark((row + std::string(impl)).c_str(), f)
                ->Arg(1000000)
                ->Unit(benchmark::kMillisecond);
        }
    };
    both("VectorPushBack", VectorPushBack<OrvVec, false>, VectorPushBack<StdVec, false>);
    both("VectorPushBackReserved", VectorPushBack<OrvVec, true>, VectorPushBack<StdVec, true>);
    both("VectorDestroy", VectorDestroy<OrvVec>, VectorDestroy<StdVec>);
}

const bool kRegistered = [] {
    (void)kWarmHeap;
    for (auto* b : {benchmark::RegisterBenchmark("OrvcalSort:orv", OrvcalSort<true, false>),
                    benchmark::RegisterBenchmark("OrvcalSort:sort -u", OrvcalSort<false, false>),
                    benchmark::RegisterBenchmark("OrvcalSortPeakKiB:orv", OrvcalSort<true, true>),
                    benchmark::RegisterBenchmark("OrvcalSortPeakKiB:sort -u", OrvcalSort<false, true>)}) {
        b->Arg(static_cast<int>(kSortLines))->UseManualTime()->Iterations(1);
    }
    RegisterVectorRows();
    // Per size, every implementation's rows run one after the other, so the set that
    // the insert row leaves behind serves the rows after it. The peer ordered through
    // OrvDateTimeLess stops at 1e5, to keep a short run (--benchmark_min_time=0.01)
    // within seconds.
    for (const int n : {1000, 100000, 1000000}) {
        RegisterSetRows<OrvSet>("orv", n);
        RegisterSetRows<InstantSet>("std::set", n);
        if (n < 1000000) RegisterSetRows<LibLessSet>("std::set+OrvDateTimeLess", n);
    }
    return true;
}();

} // namespace
