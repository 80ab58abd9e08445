// The table of a database zone.
//
// At construction a zone file is read, validated (TzifFile) and flattened into one
// table of (instant, local time type from then on) covering the whole OrvTime range:
// the file's own transitions, then those its footer rule produces up to the end of the
// range. A local time type is an offset, a daylight-saving flag and an abbreviation;
// types equal in all three are one type, and an entry that does not change the type is
// dropped, so every entry after the first is a transition. The table lives in the same
// allocator block as the zone object, with two bucket indexes over it, so both offset
// queries are a bucket look-up followed by a scan of the one to three transitions a
// bucket usually holds.
//
// Table, for n entries (n >= 1):
//   transitions[0]      = {INT64_MIN, offset before the first transition}
//   transitions[i]      = {instant of change i, offset from it on}, strictly ascending
//                         (the offset may equal the one before: then only the flag or
//                         the abbreviation changes)
//   localStarts[i]      = first local reading affected by change i: the instant plus
//                         the smaller of the offsets before and after (ascending)
//   typeOf[i]           = the local time type from change i on
// A change from offset `before` to `after` at instant T affects the local readings
// [T + min(before, after), T + max(before, after)): skipped when after > before,
// repeated when after < before, none when they are equal.
//
// Local readings outside the table (years past 2262, or before 1677) follow the
// footer rule with the year of the reading; before the first transition of a file,
// its first local time type holds.
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
// Local time types of a zone: the file's (at most 256) and the rule's two.
constexpr std::uint32_t kMaxTypes = 258;

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

struct LocalType {
    OrvTime offset;
    std::uint32_t abbreviation; // index of its first character in names
    bool isDst;
};

struct TzdbZone {
    OrvTimezoneImpl base; // first member: the zone object is its OrvTimezoneImpl
    OrvSizeT blockSize;   // bytes of this allocation, table included
    std::uint32_t count;
    const Transition* transitions;
    const OrvTime* localStarts;
    const std::uint16_t* typeOf;
    const LocalType* types;
    const char* names; // the abbreviations, each terminated
    // Local readings past the end of the table follow the rule (a footer that holds
    // from the file's last transition on); before its start too (a zone from a rule
    // alone). The rule's names are not kept.
    bool ruleAfter;
    bool ruleBefore;
    PosixRule rule;
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

// Seconds since 1970-01-01T00:00 of a local reading; in-range months of the years the
// date-time module asks about take the short way.
std::int64_t LocalSeconds(OrvInt year, OrvInt month, OrvInt day, OrvInt hour, OrvInt minute, OrvInt second)
{
    if (static_cast<std::uint32_t>(month) - 1 < 12 && year >= -cal::kFastYearLimit && year <= cal::kFastYearLimit) {
        const std::int64_t days = cal::DaysFromCivilFast(year, month) + (std::int64_t{day} - 1);
        return days * cal::kSecondsPerDay + std::int64_t{hour} * cal::kSecondsPerHour +
               std::int64_t{minute} * cal::kSecondsPerMinute + second;
    }
    return cal::LocalSecondsFromFields(year, month, day, hour, minute, second);
}

// The local reading as nanoseconds since 1970-01-01T00:00 local (saturated at the
// ends of the 64-bit range); false when its second lies outside the instant range,
// where the table does not reach.
bool LocalReading(std::int64_t secs, OrvTime nanosecs, OrvTime* local)
{
    if (secs > kMaxSecond || secs < kMinSecond) return false;
    *local = SaturatingAdd(secs * kNsPerSecond, nanosecs);
    return true;
}

// A local reading outside the table, at local second secs: the rule's reading where
// the rule holds there, else the first or the last entry's offset.
PosixRuleReading FarReading(const TzdbZone* z, std::int64_t secs)
{
    if (secs > 0 ? z->ruleAfter : z->ruleBefore) return PosixRuleReadLocal(z->rule, secs);
    const OrvTime offset = z->transitions[secs > 0 ? z->count - 1 : 0].offset;
    const auto s = static_cast<std::int32_t>(offset / kNsPerSecond);
    return {s, s, INT64_MIN};
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
    const std::int64_t secs = LocalSeconds(year, month, day, hour, minute, second);
    LocalOffset answer;
    if (OffsetOfLocal(impl, secs, nanosecs, &answer)) return answer.offset;
    return OrvTime{FarReading(reinterpret_cast<const TzdbZone*>(impl), secs).offsetBefore} * kNsPerSecond;
}

void TzdbDelete(OrvVoidPtr obj, OrvAllocator* a)
{
    auto* z = static_cast<TzdbZone*>(obj);
    OrvAllocatorDeallocate(a, z, z->blockSize);
}

// ---------------------------------------------------------------------------------
// Building the table
// ---------------------------------------------------------------------------------

// A local time type while the zone is built: its abbreviation still points into the
// file or the rule text.
struct TypeDraft {
    std::int32_t offset;
    bool isDst;
    const char* name;
    std::size_t nameLength;
};

// The distinct local time types of a file and its rule, and where each of the file's
// types and the rule's two went.
struct TypeSet {
    TypeDraft types[kMaxTypes];
    std::uint32_t count = 0;
    std::uint16_t ofFile[256] = {};
    std::uint16_t ruleStd = 0;
    std::uint16_t ruleDst = 0;

    std::uint16_t Add(const TypeDraft& t)
    {
        for (std::uint32_t i = 0; i < count; ++i) {
            const TypeDraft& u = types[i];
            if (u.offset == t.offset && u.isDst == t.isDst && u.nameLength == t.nameLength &&
                std::memcmp(u.name, t.name, t.nameLength) == 0)
                return static_cast<std::uint16_t>(i);
        }
        types[count] = t;
        return static_cast<std::uint16_t>(count++);
    }
};

void CollectTypes(const TzifFile& f, TypeSet* s)
{
    for (std::uint32_t i = 0; i < f.typeCount; ++i) {
        // An abbreviation runs to its terminator, or to the end of the characters.
        const char* name = reinterpret_cast<const char*>(f.chars) + f.abbrIndexes[i];
        const std::size_t room = f.charCount - f.abbrIndexes[i];
        const void* nul = std::memchr(name, '\0', room);
        const std::size_t length = nul != nullptr ? static_cast<std::size_t>(static_cast<const char*>(nul) - name) : room;
        s->ofFile[i] = s->Add({f.utOffsets[i], f.isDst[i] != 0, name, length});
    }
    if (!f.hasRule) return;
    s->ruleStd = s->Add({f.rule.stdOffset, false, f.rule.stdName, f.rule.stdNameLength});
    s->ruleDst = f.rule.hasDst ? s->Add({f.rule.dstOffset, true, f.rule.dstName, f.rule.dstNameLength}) : s->ruleStd;
}

struct Entry {
    OrvTime at;
    OrvTime offset;
    std::uint16_t type;
};

// Appends changes to a scratch table, keeping it strictly ascending and free of
// changes that change nothing. The first call sets the type before everything.
class TableBuilder {
public:
    TableBuilder(const TypeSet& types, Entry* buf, std::uint32_t capacity)
        : types_(types), buf_(buf), capacity_(capacity) {}

    // A change at UTC second `at` to type `type`. False once `at` lies past the end of
    // the OrvTime range (later changes cannot matter).
    bool Add(std::int64_t at, std::uint16_t type)
    {
        if (at > kMaxSecond) return false;
        Put(at < kMinSecond ? INT64_MIN : at * kNsPerSecond, type);
        return true;
    }

    void Start(std::uint16_t type)
    {
        buf_[0] = {INT64_MIN, OffsetOf(type), type};
        n_ = 1;
    }

    std::uint32_t size() const { return n_; }

private:
    OrvTime OffsetOf(std::uint16_t type) const { return OrvTime{types_.types[type].offset} * kNsPerSecond; }

    void Put(OrvTime at, std::uint16_t type)
    {
        Entry& last = buf_[n_ - 1];
        if (at < last.at) return; // out of order: only a damaged rule can ask this
        if (at == last.at) {      // same instant: the later statement wins
            last.type = type;
            last.offset = OffsetOf(type);
            if (n_ > 1 && buf_[n_ - 2].type == type) --n_;
            return;
        }
        if (type == last.type || n_ == capacity_) return;
        buf_[n_++] = {at, OffsetOf(type), type};
    }

    const TypeSet& types_;
    Entry* buf_;
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

std::uint32_t FillTable(const TzifFile& f, const TypeSet& types, Entry* buf, std::uint32_t capacity)
{
    TableBuilder b(types, buf, capacity);
    const auto ruleType = [&](std::int64_t t) { return PosixRuleIsDstAt(f.rule, t) ? types.ruleDst : types.ruleStd; };
    const bool ruleOnly = f.timeCount == 0 && f.hasRule;
    b.Start(ruleOnly ? ruleType(kMinSecond) : types.ofFile[0]);
    std::int64_t tLast = INT64_MIN;
    for (std::uint32_t i = 0; i < f.timeCount; ++i) {
        tLast = f.TimeAt(i);
        if (!b.Add(tLast, types.ofFile[f.typeIndexes[i]])) return b.size();
    }
    if (!f.hasRule) return b.size();
    // From the last transition on, the footer rule decides, the last transition's
    // own type included.
    if (f.timeCount != 0) b.Add(tLast, ruleType(tLast));
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
            std::uint16_t type;
        } changes[2] = {{toDst, types.ruleDst}, {toStd, types.ruleStd}};
        if (toStd < toDst) std::swap(changes[0], changes[1]);
        for (const auto& c : changes) {
            if (c.at > tLast && !b.Add(c.at, c.type)) return b.size();
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

std::size_t AlignUp(std::size_t n, std::size_t a) { return (n + a - 1) / a * a; }

void FillTransition(const TzdbZone* z, std::uint32_t i, OrvTzdbTransition* out)
{
    const LocalType& before = z->types[z->typeOf[i - 1]];
    const LocalType& after = z->types[z->typeOf[i]];
    *out = {z->transitions[i].at,
            before.offset,
            after.offset,
            before.isDst ? ORV_TRUE : ORV_FALSE,
            after.isDst ? ORV_TRUE : ORV_FALSE,
            z->names + before.abbreviation,
            z->names + after.abbreviation};
}

const LocalType* TypeAt(const TzdbZone* z, OrvTime t) { return &z->types[z->typeOf[FindByInstant(z, t)]]; }

} // namespace

OrvTimezone* BuildZone(OrvTimezone* tz, const TzifFile& f, const char* id, OrvAllocator* a)
{
    TypeSet types;
    CollectTypes(f, &types);
    const std::uint32_t capacity = ScratchCapacity(f);
    const std::size_t scratchBytes = std::size_t{capacity} * sizeof(Entry);
    auto* scratch = static_cast<Entry*>(OrvAllocatorAllocate(a, scratchBytes));
    if (scratch == nullptr) return nullptr;
    const std::uint32_t n = FillTable(f, types, scratch, capacity);

    // Zone, transitions, local starts, types, type of each entry, abbreviations.
    std::size_t namesBytes = 0;
    for (std::uint32_t i = 0; i < types.count; ++i) namesBytes += types.types[i].nameLength + 1;
    const std::size_t typesAt = kTableOffset + std::size_t{n} * (sizeof(Transition) + sizeof(OrvTime));
    const std::size_t typeOfAt = typesAt + std::size_t{types.count} * sizeof(LocalType);
    const std::size_t namesAt = typeOfAt + std::size_t{n} * sizeof(std::uint16_t);
    const std::size_t blockSize = AlignUp(namesAt + namesBytes, alignof(TzdbZone));
    void* block = OrvAllocatorAllocate(a, blockSize);
    if (block == nullptr) {
        OrvAllocatorDeallocate(a, scratch, scratchBytes);
        return nullptr;
    }
    auto* bytes = static_cast<unsigned char*>(block);
    auto* z = new (block) TzdbZone{};
    auto* transitions = reinterpret_cast<Transition*>(bytes + kTableOffset);
    auto* localStarts = reinterpret_cast<OrvTime*>(transitions + n);
    auto* zoneTypes = reinterpret_cast<LocalType*>(bytes + typesAt);
    auto* typeOf = reinterpret_cast<std::uint16_t*>(bytes + typeOfAt);
    auto* names = reinterpret_cast<char*>(bytes + namesAt);
    for (std::uint32_t i = 0; i < n; ++i) {
        transitions[i] = {scratch[i].at, scratch[i].offset};
        typeOf[i] = scratch[i].type;
    }
    OrvAllocatorDeallocate(a, scratch, scratchBytes);
    std::size_t nameAt = 0;
    for (std::uint32_t i = 0; i < types.count; ++i) {
        const TypeDraft& t = types.types[i];
        zoneTypes[i] = {OrvTime{t.offset} * kNsPerSecond, static_cast<std::uint32_t>(nameAt), t.isDst};
        std::memcpy(names + nameAt, t.name, t.nameLength);
        names[nameAt + t.nameLength] = '\0';
        nameAt += t.nameLength + 1;
    }

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
    z->typeOf = typeOf;
    z->types = zoneTypes;
    z->names = names;
    z->ruleAfter = f.hasRule && (f.timeCount == 0 || f.TimeAt(f.timeCount - 1) <= kMaxSecond);
    z->ruleBefore = f.hasRule && f.timeCount == 0;
    z->rule = f.rule;
    z->rule.stdName = nullptr; // they point into the file
    z->rule.dstName = nullptr;
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

extern const OrvTimezoneImplPlugIn kTzdbPlugIn = {TzdbGetOffset, TzdbGetOffsetFromFields};

bool OffsetOfLocal(const OrvTimezoneImpl* impl, std::int64_t secs, OrvTime nanosecs, LocalOffset* out)
{
    const auto* z = reinterpret_cast<const TzdbZone*>(impl);
    OrvTime local = 0;
    if (!LocalReading(secs, nanosecs, &local)) return false;
    const std::uint32_t i = FindByLocal(z, local);
    const Transition* tr = z->transitions;
    // Inside the window of change i (skipped or repeated) the earlier offset applies.
    std::uint32_t k = i;
    if (i != 0 && local < SaturatingAdd(tr[i].at, std::max(tr[i - 1].offset, tr[i].offset))) k = i - 1;
    // The instants are strictly ascending, so by instant entry k holds from its own
    // change to the instant before the next.
    *out = {tr[k].offset, tr[k].at, k + 1 < z->count ? tr[k + 1].at - 1 : INT64_MAX};
    return true;
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
    const std::int64_t secs = cal::LocalSecondsFromFields(year, month, day, hour, minute, second);
    OrvTime local = 0;
    if (!LocalReading(secs, 0, &local)) {
        const PosixRuleReading r = FarReading(z, secs);
        const OrvTime before = OrvTime{r.offsetBefore} * kNsPerSecond;
        const OrvTime after = OrvTime{r.offsetAfter} * kNsPerSecond;
        if (r.change == INT64_MIN) return {ORV_TZDBLOOKUPKIND_Unique, before, after, ORV_TIME_INVALID};
        const OrvTime at = r.change >= kMinSecond && r.change <= kMaxSecond ? r.change * kNsPerSecond
                                                                             : ORV_TIME_INVALID;
        return {after > before ? ORV_TZDBLOOKUPKIND_Skipped : ORV_TZDBLOOKUPKIND_Repeated, before, after, at};
    }
    const std::uint32_t i = FindByLocal(z, local);
    const Transition* tr = z->transitions;
    OrvTzdbLookup r{ORV_TZDBLOOKUPKIND_Unique, tr[i].offset, tr[i].offset, ORV_TIME_INVALID};
    if (i != 0) {
        const OrvTime before = tr[i - 1].offset;
        const OrvTime after = tr[i].offset;
        if (before != after && local < SaturatingAdd(tr[i].at, std::max(before, after))) {
            r.kind = after > before ? ORV_TZDBLOOKUPKIND_Skipped : ORV_TZDBLOOKUPKIND_Repeated;
            r.offsetBefore = before;
            r.transition = tr[i].at;
        }
    }
    return r;
}

bool NextTransition(const TzdbZone* z, OrvTime t, OrvTzdbTransition* out)
{
    const std::uint32_t i = FindByInstant(z, t) + 1;
    if (i >= z->count) return false;
    FillTransition(z, i, out);
    return true;
}

bool PrevTransition(const TzdbZone* z, OrvTime t, OrvTzdbTransition* out)
{
    if (t == INT64_MIN) return false;
    const std::uint32_t i = FindByInstant(z, t - 1);
    if (i == 0) return false;
    FillTransition(z, i, out);
    return true;
}

const char* AbbreviationAt(const TzdbZone* z, OrvTime t) { return z->names + TypeAt(z, t)->abbreviation; }

bool IsDstAt(const TzdbZone* z, OrvTime t) { return TypeAt(z, t)->isDst; }

OrvTimezone* ConstructFromRule(OrvTimezone* tz, const char* rule, OrvAllocator* a)
{
    TzifFile f;
    if (!ParsePosixRule(rule, std::strlen(rule), &f.rule)) return nullptr;
    f.version = 0;
    f.typeCount = 1;
    f.utOffsets[0] = f.rule.stdOffset;
    f.chars = reinterpret_cast<const unsigned char*>(f.rule.stdName);
    f.charCount = static_cast<std::uint32_t>(f.rule.stdNameLength);
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

void DropCountBlock(OrvTimezone* tz)
{
    OrvAllocatorDeallocate(tz->impl.a, tz->impl.ref, sizeof(OrvSharedPtrRefCount));
    tz->impl.ref = nullptr;
}

} // namespace orv::tzdb
