// Zones at a constant offset, and the process-wide ones behind uncounted handles to
// static objects (copying them touches no counter): the UTC zone, the shared zone of
// every whole-minute offset, and a pool for offsets with seconds.
#include "Orv/Calendar/OrvFixedTimezone.h"

#include "Timezone/GlobalUtc.hpp"
#include "Timezone/SharedFixedZones.hpp"

#include <array>
#include <atomic>
#include <cstdint>
#include <utility>

namespace {

struct FixedZone {
    OrvTimezoneImpl base; // first member: the zone object is its OrvTimezoneImpl
    OrvTime offset;
};

OrvTime FixedGetOffset(OrvTimezoneImpl* impl, OrvTime) { return reinterpret_cast<FixedZone*>(impl)->offset; }

OrvTime FixedGetOffsetFromFields(OrvTimezoneImpl* impl, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvTime)
{
    return reinterpret_cast<FixedZone*>(impl)->offset;
}

constexpr OrvTimezoneImplPlugIn kFixedPlugIn = {FixedGetOffset, FixedGetOffsetFromFields};

void FixedDelete(OrvVoidPtr obj, OrvAllocator* a) { OrvAllocatorDeallocate(a, obj, sizeof(FixedZone)); }

FixedZone gUtcZone = {{&kFixedPlugIn}, 0};
OrvTimezone gUtc = {{nullptr, &gUtcZone.base, nullptr, nullptr}};

// The shared zones of the whole-minute offsets -23:59 .. +23:59, index minutes + 1439:
// constant-initialized, so there is nothing to set up and nothing to race on.
constexpr OrvTime kNanosecondsPerMinute = ORV_TIME_NANOSECONDS_PER_MINUTE;
constexpr int kMaxMinutes = 23 * 60 + 59;
constexpr std::size_t kMinuteZones = 2 * kMaxMinutes + 1;

constexpr std::array<FixedZone, kMinuteZones> MakeMinuteZones()
{
    std::array<FixedZone, kMinuteZones> zones{};
    for (std::size_t i = 0; i < kMinuteZones; ++i)
        zones[i] = {{&kFixedPlugIn}, (static_cast<OrvTime>(i) - kMaxMinutes) * kNanosecondsPerMinute};
    return zones;
}
constinit std::array<FixedZone, kMinuteZones> gMinuteZones = MakeMinuteZones();

constexpr std::array<OrvTimezone, kMinuteZones> MakeMinuteHandles()
{
    std::array<OrvTimezone, kMinuteZones> handles{};
    for (std::size_t i = 0; i < kMinuteZones; ++i) handles[i] = {{nullptr, &gMinuteZones[i].base, nullptr, nullptr}};
    return handles;
}
constinit std::array<OrvTimezone, kMinuteZones> gMinuteHandles = MakeMinuteHandles();

// Offsets with seconds (local mean time of old dates: +00:53:28 in Berlin before 1893)
// take a slot of a fixed pool the first time they are asked for, and keep it for the
// life of the process. A slot's offset is 0 while it is free (0 has no seconds) and is
// claimed once by compare-and-exchange; the zone reads it with a relaxed load, since
// everyone who holds the handle got it after the claim.
struct PoolZone {
    OrvTimezoneImpl base; // first member
    std::atomic<OrvTime> offset;
};

OrvTime PoolGetOffset(OrvTimezoneImpl* impl, OrvTime)
{
    return reinterpret_cast<PoolZone*>(impl)->offset.load(std::memory_order_relaxed);
}

OrvTime PoolGetOffsetFromFields(OrvTimezoneImpl* impl, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvInt, OrvTime)
{
    return reinterpret_cast<PoolZone*>(impl)->offset.load(std::memory_order_relaxed);
}

constexpr OrvTimezoneImplPlugIn kPoolPlugIn = {PoolGetOffset, PoolGetOffsetFromFields};

template <std::size_t... I>
constexpr std::array<PoolZone, sizeof...(I)> MakePoolZones(std::index_sequence<I...>)
{
    return {{((void)I, PoolZone{{&kPoolPlugIn}, 0})...}};
}
constinit std::array<PoolZone, orv::detail::kSecondsZonePoolSize> gPoolZones =
    MakePoolZones(std::make_index_sequence<orv::detail::kSecondsZonePoolSize>());

constexpr std::array<OrvTimezone, orv::detail::kSecondsZonePoolSize> MakePoolHandles()
{
    std::array<OrvTimezone, orv::detail::kSecondsZonePoolSize> handles{};
    for (std::size_t i = 0; i < handles.size(); ++i) handles[i] = {{nullptr, &gPoolZones[i].base, nullptr, nullptr}};
    return handles;
}
constinit std::array<OrvTimezone, orv::detail::kSecondsZonePoolSize> gPoolHandles = MakePoolHandles();

const OrvTimezone* PoolZoneFor(OrvTime offset)
{
    constexpr std::size_t n = orv::detail::kSecondsZonePoolSize;
    const auto seconds = static_cast<std::uint64_t>(offset / ORV_TIME_NANOSECONDS_PER_SECOND);
    const std::size_t start = static_cast<std::size_t>((seconds * 0x9E3779B97F4A7C15ull) >> 32) % n;
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t i = (start + k) % n;
        PoolZone& zone = gPoolZones[i];
        OrvTime held = zone.offset.load(std::memory_order_acquire);
        if (held == 0) {
            if (zone.offset.compare_exchange_strong(held, offset, std::memory_order_acq_rel)) return &gPoolHandles[i];
        }
        if (held == offset) return &gPoolHandles[i];
    }
    return nullptr;
}

} // namespace

OrvTimezoneImpl* const orv::detail::gGlobalUtcImpl = &gUtcZone.base;

OrvTimezone* OrvFixedTimezoneGetUTC(void) { return &gUtc; }

OrvBool OrvFixedTimezoneIsGlobalUTC(const OrvTimezone* tz)
{
    return orv::detail::IsGlobalUtc(tz) ? ORV_TRUE : ORV_FALSE;
}

OrvTimezone* OrvFixedTimezoneConstruct(OrvTimezone* tz, OrvTime offset, OrvAllocator* a)
{
    if (tz == nullptr || a == nullptr) return nullptr;
    if (offset == ORV_TIME_INVALID || offset <= -ORV_TIME_NANOSECONDS_PER_DAY || offset >= ORV_TIME_NANOSECONDS_PER_DAY)
        return nullptr;
    auto* zone = static_cast<FixedZone*>(OrvAllocatorAllocate(a, sizeof(FixedZone)));
    if (zone == nullptr) return nullptr;
    zone->base.plugIn = &kFixedPlugIn;
    zone->offset = offset;
    if (OrvTimezoneConstruct(tz, &zone->base, a, FixedDelete) == nullptr) {
        FixedDelete(zone, a);
        return nullptr;
    }
    return tz;
}

const OrvTimezone* OrvFixedTimezoneGetShared(OrvTime offset)
{
    if (offset % kNanosecondsPerMinute != 0) return nullptr;
    const OrvTime minutes = offset / kNanosecondsPerMinute;
    if (minutes < -kMaxMinutes || minutes > kMaxMinutes) return nullptr;
    return &gMinuteHandles[static_cast<std::size_t>(minutes + kMaxMinutes)];
}

const OrvTimezone* orv::detail::SharedFixedZone(OrvTime offset)
{
    if (offset % ORV_TIME_NANOSECONDS_PER_SECOND != 0 || offset <= -ORV_TIME_NANOSECONDS_PER_DAY ||
        offset >= ORV_TIME_NANOSECONDS_PER_DAY)
        return nullptr;
    if (offset % kNanosecondsPerMinute == 0) return OrvFixedTimezoneGetShared(offset);
    return PoolZoneFor(offset);
}
