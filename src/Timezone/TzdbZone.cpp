// The table of a database zone.
//
// At construction a zone file is read, validated (TzifFile) and flattened into one
// table of (instant, offset from then on) covering the whole OrvTime range: the
// file's own transitions, then those its footer rule produces up to the end of the
// range. The table lives in the same allocator block as the zone object, with two
// bucket indexes over it, so both offset queries are a bucket look-up followed by a
// scan of the one to three transitions a bucket usually holds.
//
// Table, for n entries (n >= 1):
//   transitions[0]      = {INT64_MIN, offset before the first transition}
//   transitions[i]      = {instant of change i, offset from it on}, strictly ascending,
//                         each offset different from the one before
//   localStarts[i]      = first local reading affected by change i: the instant plus
//                         the smaller of the offsets before and after (ascending)
// A change from offset `before` to `after` at instant T affects the local readings
// [T + min(before, after), T + max(before, after)): skipped when after > before,
// repeated when after < before.
#include "Timezone/TzdbZone.hpp"

#include "Calendar/CalendarMath.hpp"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace orv::tzdb {

namespace {

constexpr OrvTime kNsPerSecond = ORV_TIME_NANOSECONDS_PER_SECOND;
// Whole seconds whose first nanosecond is an OrvTime.
constexpr std::int64_t kMinSecond = cal::kMinInstantSecond;
constexpr std::int64_t kMaxSecond = cal::kMaxInstantSecond;
// Years the footer rule is unrolled for: a little beyond both ends of the range.
constexpr std::int64_t kFirstRuleYear = 1676;
constexpr std::int64_t kLastRuleYear = 2263;

// Buckets split the signed 64-bit line into 512 equal spans of 2^55 ns (about 1.14
// years), so a bucket holds at most a few changes of a real zone.
constexpr int kBucketShift = 55;
constexpr std::uint32_t kBuckets = 512;

std::uint32_t BucketOf(OrvTime t)
{
    return static_cast<std::uint32_t>((static_cast<std::uint64_t>(t) ^ (std::uint64_t{1} << 63)) >> kBucketShift);
}

OrvTime BucketLow(std::uint32_t b)
{
    return static_cast<OrvTime>((std::uint64_t{b} << kBucketShift) ^ (std::uint64_t{1} << 63));
}

OrvTime SaturatingAdd(OrvTime a, OrvTime b)
{
    OrvTime r = 0;
    if (__builtin_add_overflow(a, b, &r)) return b > 0 ? INT64_MAX : INT64_MIN;
    return r;
}

} // namespace

struct Transition {
    OrvTime at;
    OrvTime offset;
};

struct TzdbZone {
    OrvTimezoneImpl base; // first member: the zone object is its OrvTimezoneImpl
    OrvSizeT blockSize;   // bytes of this allocation, table included
    std::uint32_t count;
    const Transition* transitions;
    const OrvTime* localStarts;
    // index[b]: the last entry whose key is at or before the bucket's low end; the
    // answer for any key in bucket b lies in [index[b], index[b + 1]].
    std::uint32_t instantIndex[kBuckets + 1];
    std::uint32_t localIndex[kBuckets + 1];
    char id[ORV_TZDB_ID_MAX + 1];
};

namespace {

constexpr std::size_t kTableOffset = (sizeof(TzdbZone) + alignof(Transition) - 1) / alignof(Transition) *
                                     alignof(Transition);

// The last entry i in [lo, hi] with key(i) <= k, given key(lo) <= k.
template <typename KeyAt>
std::uint32_t FindLast(std::uint32_t lo, std::uint32_t hi, OrvTime k, KeyAt key)
{
    while (hi - lo > 4) {
        const std::uint32_t mid = lo + (hi - lo + 1) / 2;
        if (key(mid) <= k) {
            lo = mid;
        } else {
            hi = mid - 1;
        }
    }
    while (lo < hi && key(lo + 1) <= k) ++lo;
    return lo;
}

std::uint32_t FindByInstant(const TzdbZone* z, OrvTime t)
{
    const std::uint32_t b = BucketOf(t);
    const Transition* tr = z->transitions;
    return FindLast(z->instantIndex[b], z->instantIndex[b + 1], t, [tr](std::uint32_t i) { return tr[i].at; });
}

std::uint32_t FindByLocal(const TzdbZone* z, OrvTime local)
{
    const std::uint32_t b = BucketOf(local);
    const OrvTime* ls = z->localStarts;
    return FindLast(z->localIndex[b], z->localIndex[b + 1], local, [ls](std::uint32_t i) { return ls[i]; });
}

// The local reading as nanoseconds since 1970-01-01T00:00 local, saturated at the
// ends of the 64-bit range (where every zone has one fixed offset anyway).
OrvTime LocalReading(OrvInt year, OrvInt month, OrvInt day, OrvInt hour, OrvInt minute, OrvInt second,
                     OrvTime nanosecs)
{
    const std::int64_t secs = cal::LocalSecondsFromFields(year, month, day, hour, minute, second);
    if (secs > kMaxSecond + 1) return INT64_MAX;
    if (secs < kMinSecond - 1) return INT64_MIN;
    return SaturatingAdd(secs * kNsPerSecond, nanosecs);
}

// ---------------------------------------------------------------------------------
// Plug-in
// ---------------------------------------------------------------------------------

OrvTime TzdbGetOffset(OrvTimezoneImpl* impl, OrvTime t)
{
    if (t == ORV_TIME_INVALID) return ORV_TIME_INVALID;
    const auto* z = reinterpret_cast<const TzdbZone*>(impl);
    return z->transitions[FindByInstant(z, t)].offset;
}

OrvTime TzdbGetOffsetFromFields(OrvTimezoneImpl* impl, OrvInt year, OrvInt month, OrvInt day, OrvInt hour,
                                OrvInt minute, OrvInt second, OrvTime nanosecs)
{
    const auto* z = reinterpret_cast<const TzdbZone*>(impl);
    const OrvTime local = LocalReading(year, month, day, hour, minute, second, nanosecs);
    const std::uint32_t i = FindByLocal(z, local);
    const Transition* tr = z->transitions;
    if (i == 0) return tr[0].offset;
    const OrvTime before = tr[i - 1].offset;
    const OrvTime after = tr[i].offset;
    // Inside the change's window (skipped or repeated) the earlier offset applies.
    return local < SaturatingAdd(tr[i].at, std::max(before, after)) ? before : after;
}

constexpr OrvTimezoneImplPlugIn kTzdbPlugIn = {TzdbGetOffset, TzdbGetOffsetFromFields};

void TzdbDelete(OrvVoidPtr obj, OrvAllocator* a)
{
    auto* z = static_cast<TzdbZone*>(obj);
    OrvAllocatorDeallocate(a, z, z->blockSize);
}

// ---------------------------------------------------------------------------------
// Building the table
// ---------------------------------------------------------------------------------

// Appends changes to a scratch table, keeping it strictly ascending and free of
// changes that change nothing. The first call sets the offset before everything.
class TableBuilder {
public:
    TableBuilder(Transition* buf, std::uint32_t capacity) : buf_(buf), capacity_(capacity) {}

    // A change at UTC second `at` to offset `utoff`. False once `at` lies past the
    // end of the OrvTime range (later changes cannot matter).
    bool Add(std::int64_t at, std::int32_t utoff)
    {
        if (at > kMaxSecond) return false;
        Put(at < kMinSecond ? INT64_MIN : at * kNsPerSecond, OrvTime{utoff} * kNsPerSecond);
        return true;
    }

    void Start(std::int32_t utoff)
    {
        buf_[0] = {INT64_MIN, OrvTime{utoff} * kNsPerSecond};
        n_ = 1;
    }

    std::uint32_t size() const { return n_; }

private:
    void Put(OrvTime at, OrvTime offset)
    {
        Transition& last = buf_[n_ - 1];
        if (at < last.at) return; // out of order: only a damaged rule can ask this
        if (at == last.at) {      // same instant: the later statement wins
            last.offset = offset;
            if (n_ > 1 && buf_[n_ - 2].offset == offset) --n_;
            return;
        }
        if (offset == last.offset || n_ == capacity_) return;
        buf_[n_++] = {at, offset};
    }

    Transition* buf_;
    std::uint32_t capacity_;
    std::uint32_t n_ = 0;
};

// The years whose rule changes can fall after `after` and inside the range.
void RuleYears(const TzifFile& f, std::int64_t* first, std::int64_t* last)
{
    *first = kFirstRuleYear;
    *last = kLastRuleYear;
    if (f.timeCount == 0) return;
    const std::int64_t tLast = f.TimeAt(f.timeCount - 1);
    if (tLast > kMaxSecond) {
        *first = *last + 1; // nothing to add
    } else if (tLast > kMinSecond) {
        *first = std::max(*first, cal::YearOfSecond(tLast) - 1);
    }
}

std::uint32_t FillTable(const TzifFile& f, Transition* buf, std::uint32_t capacity)
{
    TableBuilder b(buf, capacity);
    const bool ruleOnly = f.timeCount == 0 && f.hasRule;
    b.Start(ruleOnly ? PosixRuleOffsetAt(f.rule, kMinSecond) : f.utOffsets[0]);
    std::int64_t tLast = INT64_MIN;
    for (std::uint32_t i = 0; i < f.timeCount; ++i) {
        tLast = f.TimeAt(i);
        if (!b.Add(tLast, f.OffsetAfter(i))) return b.size();
    }
    if (!f.hasRule) return b.size();
    // From the last transition on, the footer rule decides, the last transition's
    // own offset included.
    if (f.timeCount != 0) b.Add(tLast, PosixRuleOffsetAt(f.rule, tLast));
    if (!f.rule.hasDst) return b.size();
    std::int64_t y0 = 0;
    std::int64_t y1 = 0;
    RuleYears(f, &y0, &y1);
    for (std::int64_t y = y0; y <= y1; ++y) {
        std::int64_t toDst = 0;
        std::int64_t toStd = 0;
        PosixRuleChangesInYear(f.rule, y, &toDst, &toStd);
        struct {
            std::int64_t at;
            std::int32_t offset;
        } changes[2] = {{toDst, f.rule.dstOffset}, {toStd, f.rule.stdOffset}};
        if (toStd < toDst) std::swap(changes[0], changes[1]);
        for (const auto& c : changes) {
            if (c.at > tLast && !b.Add(c.at, c.offset)) return b.size();
        }
    }
    return b.size();
}

std::uint32_t ScratchCapacity(const TzifFile& f)
{
    std::uint64_t cap = std::uint64_t{f.timeCount} + 2;
    if (f.hasRule && f.rule.hasDst) {
        std::int64_t y0 = 0;
        std::int64_t y1 = 0;
        RuleYears(f, &y0, &y1);
        if (y1 >= y0) cap += 2 * static_cast<std::uint64_t>(y1 - y0 + 1);
    }
    return static_cast<std::uint32_t>(cap); // timeCount is bounded by the file size
}

void BuildIndex(std::uint32_t n, std::uint32_t* index, const OrvTime* keys, std::size_t stride)
{
    std::uint32_t i = 0;
    for (std::uint32_t b = 0; b < kBuckets; ++b) {
        const OrvTime low = BucketLow(b);
        while (i + 1 < n && keys[(i + 1) * stride] <= low) ++i;
        index[b] = i;
    }
    index[kBuckets] = n - 1;
}

} // namespace

OrvTimezone* BuildZone(OrvTimezone* tz, const TzifFile& f, const char* id, OrvAllocator* a)
{
    const std::uint32_t capacity = ScratchCapacity(f);
    const std::size_t scratchBytes = std::size_t{capacity} * sizeof(Transition);
    auto* scratch = static_cast<Transition*>(OrvAllocatorAllocate(a, scratchBytes));
    if (scratch == nullptr) return nullptr;
    const std::uint32_t n = FillTable(f, scratch, capacity);

    const std::size_t blockSize = kTableOffset + std::size_t{n} * (sizeof(Transition) + sizeof(OrvTime));
    void* block = OrvAllocatorAllocate(a, blockSize);
    if (block == nullptr) {
        OrvAllocatorDeallocate(a, scratch, scratchBytes);
        return nullptr;
    }
    auto* z = new (block) TzdbZone{};
    auto* transitions = reinterpret_cast<Transition*>(static_cast<unsigned char*>(block) + kTableOffset);
    auto* localStarts = reinterpret_cast<OrvTime*>(transitions + n);
    std::memcpy(transitions, scratch, std::size_t{n} * sizeof(Transition));
    OrvAllocatorDeallocate(a, scratch, scratchBytes);

    localStarts[0] = INT64_MIN;
    for (std::uint32_t i = 1; i < n; ++i) {
        const OrvTime start = SaturatingAdd(transitions[i].at, std::min(transitions[i - 1].offset, transitions[i].offset));
        // Changes closer together than their own size (none in the real database)
        // would make the starts go back; keep them ordered so the search stays sound.
        localStarts[i] = std::max(start, localStarts[i - 1]);
    }
    z->base.plugIn = &kTzdbPlugIn;
    z->blockSize = blockSize;
    z->count = n;
    z->transitions = transitions;
    z->localStarts = localStarts;
    BuildIndex(n, z->instantIndex, &transitions[0].at, sizeof(Transition) / sizeof(OrvTime));
    BuildIndex(n, z->localIndex, localStarts, 1);
    std::size_t idLen = 0;
    while (idLen < ORV_TZDB_ID_MAX && id[idLen] != '\0') ++idLen;
    std::memcpy(z->id, id, idLen);
    z->id[idLen] = '\0';

    if (OrvTimezoneConstruct(tz, &z->base, a, TzdbDelete) == nullptr) {
        TzdbDelete(z, a);
        return nullptr;
    }
    return tz;
}


const TzdbZone* AsTzdbZone(const OrvTimezone* tz)
{
    if (tz == nullptr || tz->impl.ptr == nullptr || tz->impl.ptr->plugIn != &kTzdbPlugIn) return nullptr;
    return reinterpret_cast<const TzdbZone*>(tz->impl.ptr);
}

const char* ZoneId(const TzdbZone* z) { return z->id; }

OrvTzdbLookup LookupLocal(const TzdbZone* z, OrvInt year, OrvInt month, OrvInt day, OrvInt hour, OrvInt minute,
                          OrvInt second)
{
    const OrvTime local = LocalReading(year, month, day, hour, minute, second, 0);
    const std::uint32_t i = FindByLocal(z, local);
    const Transition* tr = z->transitions;
    OrvTzdbLookup r{ORV_TZDBLOOKUPKIND_Unique, tr[i].offset, tr[i].offset, ORV_TIME_INVALID};
    if (i != 0) {
        const OrvTime before = tr[i - 1].offset;
        const OrvTime after = tr[i].offset;
        if (local < SaturatingAdd(tr[i].at, std::max(before, after))) {
            r.kind = after > before ? ORV_TZDBLOOKUPKIND_Skipped : ORV_TZDBLOOKUPKIND_Repeated;
            r.offsetBefore = before;
            r.transition = tr[i].at;
        }
    }
    return r;
}

OrvTimezone* ConstructFromRule(OrvTimezone* tz, const char* rule, OrvAllocator* a)
{
    TzifFile f;
    if (!ParsePosixRule(rule, std::strlen(rule), &f.rule)) return nullptr;
    f.version = 0;
    f.typeCount = 1;
    f.utOffsets[0] = f.rule.stdOffset;
    f.hasRule = true;
    return BuildZone(tz, f, rule, a);
}

OrvTimezone* ConstructFromBytes(OrvTimezone* tz, const unsigned char* bytes, std::size_t size, const char* id,
                                OrvAllocator* a)
{
    if (tz == nullptr || bytes == nullptr || id == nullptr || a == nullptr) return nullptr;
    TzifFile f;
    if (ReadTzif(bytes, size, &f) != TzifStatus::Ok) return nullptr;
    return BuildZone(tz, f, id, a);
}

std::size_t TransitionCount(const OrvTimezone* tz)
{
    const TzdbZone* z = AsTzdbZone(tz);
    return z != nullptr ? z->count : 0;
}

bool TransitionAt(const OrvTimezone* tz, std::size_t i, OrvTime* at, OrvTime* offset)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || i >= z->count) return false;
    *at = z->transitions[i].at;
    *offset = z->transitions[i].offset;
    return true;
}

} // namespace orv::tzdb
