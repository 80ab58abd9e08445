// The C entry points of the database zones, and the process-wide shared zones.
//
// Shared zones sit in a registry that takes no lock and needs no C++ runtime: 64
// buckets, each a singly linked list that only ever grows at its head by a
// compare-exchange. A reader walks a list from an acquire load of its head; an entry
// is complete before the release that publishes it and never changes afterwards. Two
// threads asking for a new id at once both build the zone; the one whose publication
// fails finds the other's entry on its next walk and frees its own copy.
#include "Orv/Calendar/OrvTzdbTimezone.h"

#include "Timezone/TzdbDatabase.hpp"
#include "Timezone/TzdbZone.hpp"

#include <atomic>
#include <cstring>

using namespace orv::tzdb;

namespace {

struct SharedEntry {
    SharedEntry* next;
    OrvTimezone tz; // uncounted
};

constexpr std::size_t kSharedBuckets = 64;

// Constant-initialized: no guard, no constructor at start-up.
std::atomic<SharedEntry*> gShared[kSharedBuckets];
std::atomic<SharedEntry*> gSharedLocal{nullptr};

static_assert(std::atomic<SharedEntry*>::is_always_lock_free);

std::size_t BucketOfId(const char* id)
{
    std::uint32_t h = 2166136261U; // FNV-1a
    for (const char* p = id; *p != '\0'; ++p) h = (h ^ static_cast<unsigned char>(*p)) * 16777619U;
    return h % kSharedBuckets;
}

const SharedEntry* FindShared(const SharedEntry* e, const char* id)
{
    for (; e != nullptr; e = e->next) {
        if (std::strcmp(ZoneId(AsTzdbZone(&e->tz)), id) == 0) return e;
    }
    return nullptr;
}

// A new entry holding the zone that tz has just been built with, made uncounted; null
// (and the zone released) when the entry cannot be allocated.
SharedEntry* MakeEntry(OrvTimezone* tz)
{
    OrvAllocator* a = OrvAllocatorGetDefault();
    auto* e = static_cast<SharedEntry*>(OrvAllocatorAllocate(a, sizeof(SharedEntry)));
    if (e == nullptr) {
        OrvTimezoneDestruct(tz);
        return nullptr;
    }
    DropCountBlock(tz);
    e->next = nullptr;
    e->tz = *tz;
    return e;
}

void FreeEntry(SharedEntry* e)
{
    e->tz.impl.d(e->tz.impl.ptr, e->tz.impl.a);
    OrvAllocatorDeallocate(OrvAllocatorGetDefault(), e, sizeof(SharedEntry));
}

} // namespace

OrvTimezone* OrvTzdbTimezoneConstruct(OrvTimezone* tz, const char* zoneId, OrvAllocator* a)
{
    if (tz == nullptr || a == nullptr || !IsValidZoneId(zoneId)) return nullptr;
    return ConstructFromDatabase(tz, zoneId, a);
}

OrvTimezone* OrvTzdbTimezoneConstructPosix(OrvTimezone* tz, const char* rule, OrvAllocator* a)
{
    if (tz == nullptr || rule == nullptr || a == nullptr) return nullptr;
    return ConstructFromRule(tz, rule, a);
}

OrvTimezone* OrvTzdbTimezoneConstructLocal(OrvTimezone* tz, OrvAllocator* a)
{
    if (tz == nullptr || a == nullptr) return nullptr;
    return ConstructLocalZone(tz, a);
}

OrvBool OrvTzdbTimezoneIs(const OrvTimezone* tz) { return AsTzdbZone(tz) != nullptr ? ORV_TRUE : ORV_FALSE; }

const char* OrvTzdbTimezoneGetId(const OrvTimezone* tz)
{
    const TzdbZone* z = AsTzdbZone(tz);
    return z != nullptr ? ZoneId(z) : nullptr;
}

OrvBool OrvTzdbTimezoneLookup(const OrvTimezone* tz, OrvInt year, OrvInt month, OrvInt day, OrvInt hour,
                              OrvInt minute, OrvInt second, OrvTzdbLookup* out)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || out == nullptr || month < 1 || month > 12) return ORV_FALSE;
    *out = LookupLocal(z, year, month, day, hour, minute, second);
    return ORV_TRUE;
}

OrvBool OrvTzdbTimezoneForEachId(OrvTzdbIdCallback fn, OrvVoidPtr userData)
{
    if (fn == nullptr) return ORV_FALSE;
    return ForEachZoneId(fn, userData) ? ORV_TRUE : ORV_FALSE;
}

const OrvTimezone* OrvTzdbTimezoneGetShared(const char* zoneId)
{
    if (!IsValidZoneId(zoneId)) return nullptr;
    std::atomic<SharedEntry*>& head = gShared[BucketOfId(zoneId)];
    SharedEntry* first = head.load(std::memory_order_acquire);
    if (const SharedEntry* found = FindShared(first, zoneId)) return &found->tz;
    OrvTimezone tz;
    if (OrvTzdbTimezoneConstruct(&tz, zoneId, OrvAllocatorGetDefault()) == nullptr) return nullptr;
    SharedEntry* mine = MakeEntry(&tz);
    if (mine == nullptr) return nullptr;
    for (;;) {
        mine->next = first;
        if (head.compare_exchange_weak(first, mine, std::memory_order_release, std::memory_order_acquire))
            return &mine->tz;
        // Another entry was published meanwhile: perhaps this very zone.
        if (const SharedEntry* found = FindShared(first, zoneId)) {
            FreeEntry(mine);
            return &found->tz;
        }
    }
}

const OrvTimezone* OrvTzdbTimezoneGetSharedLocal(void)
{
    SharedEntry* current = gSharedLocal.load(std::memory_order_acquire);
    if (current != nullptr) return &current->tz;
    OrvTimezone tz;
    if (ConstructLocalZone(&tz, OrvAllocatorGetDefault()) == nullptr) return nullptr;
    SharedEntry* mine = MakeEntry(&tz);
    if (mine == nullptr) return nullptr;
    if (gSharedLocal.compare_exchange_strong(current, mine, std::memory_order_release, std::memory_order_acquire))
        return &mine->tz;
    FreeEntry(mine);
    return &current->tz;
}

OrvBool OrvTzdbTimezoneNextTransition(const OrvTimezone* tz, OrvTime t, OrvTzdbTransition* out)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || out == nullptr) return ORV_FALSE;
    return NextTransition(z, t, out) ? ORV_TRUE : ORV_FALSE;
}

OrvBool OrvTzdbTimezonePrevTransition(const OrvTimezone* tz, OrvTime t, OrvTzdbTransition* out)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || out == nullptr) return ORV_FALSE;
    return PrevTransition(z, t, out) ? ORV_TRUE : ORV_FALSE;
}

const char* OrvTzdbTimezoneGetAbbreviation(const OrvTimezone* tz, OrvTime t)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || t == ORV_TIME_INVALID) return nullptr;
    return AbbreviationAt(z, t);
}

OrvBool OrvTzdbTimezoneIsDst(const OrvTimezone* tz, OrvTime t)
{
    const TzdbZone* z = AsTzdbZone(tz);
    if (z == nullptr || t == ORV_TIME_INVALID) return ORV_FALSE;
    return IsDstAt(z, t) ? ORV_TRUE : ORV_FALSE;
}

const char* OrvTzdbGetVersion(void) { return DatabaseVersion(); }
