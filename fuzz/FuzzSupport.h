// What the fuzz targets share: a reader of the input bytes, an allocator that checks
// sizes and fails where the input says, the zones values are moved between, and the
// calendar reading of an instant worked out by std::chrono.
#ifndef ORV_FUZZ_FUZZSUPPORT_H
#define ORV_FUZZ_FUZZSUPPORT_H

#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Os/OrvLog.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string_view>

#define FUZZ_CHECK(cond)                                                                                              \
    do {                                                                                                              \
        if (!(cond)) {                                                                                                \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond);                            \
            std::abort();                                                                                             \
        }                                                                                                             \
    } while (0)

namespace fuzz {

// The input as a stream of choices; past its end every read gives 0.
struct Bytes {
    const std::uint8_t* p;
    std::size_t n;
    bool More() const { return n != 0; }
    template <class T> T Raw()
    {
        T v{};
        const std::size_t k = n < sizeof v ? n : sizeof v;
        std::memcpy(&v, p, k);
        p += k;
        n -= k;
        return v;
    }
    std::uint8_t U8() { return Raw<std::uint8_t>(); }
    std::string_view Text(std::size_t max)
    {
        const std::size_t k = std::min<std::size_t>(U8() % (max + 1), n);
        const std::string_view s(reinterpret_cast<const char*>(p), k);
        p += k;
        n -= k;
        return s;
    }
    // Mostly small numbers and the ends of the range, sometimes anything.
    OrvInt Int()
    {
        static constexpr OrvInt kEdges[] = {INT32_MIN, INT32_MIN + 1, INT32_MAX, INT32_MAX - 1, 0, -1, 1677, 2262, 12, 13};
        const std::uint8_t k = U8();
        switch (k % 4) {
        case 0: return static_cast<std::int8_t>(U8());
        case 1: return Raw<OrvInt>();
        case 2: return kEdges[k / 4 % std::size(kEdges)];
        default: return Raw<std::int16_t>();
        }
    }
    OrvTime Instant()
    {
        static constexpr OrvTime kEdges[] = {INT64_MIN, INT64_MAX, ORV_TIME_INVALID, 0, -1, -9223372036854775807 + 1,
                                             9223372036854775807 - 90000000000000, 1711846800000000000,
                                             1729990800000000000, -9223372036854775807 + 90000000000000};
        const std::uint8_t k = U8();
        switch (k % 3) {
        case 0: return Raw<OrvTime>();
        case 1: return kEdges[k / 3 % std::size(kEdges)];
        default: return 1711846800000000000 + OrvTime{Raw<std::int32_t>()} * 1000000000 + Raw<std::int16_t>();
        }
    }
};

// Checks that every block comes back once with its size; the n-th call fails when bit
// n % 64 of failMask is set.
struct Allocator {
    OrvAllocator base{Allocate, Deallocate, SIZE_MAX, this};
    std::uint64_t failMask = 0;
    std::uint64_t calls = 0;
    std::map<void*, OrvSizeT> live;

    static OrvVoidPtr Allocate(OrvAllocator* a, OrvSizeT size)
    {
        auto* self = static_cast<Allocator*>(a->userData);
        if ((self->failMask >> (self->calls++ % 64) & 1) != 0 || size == 0) return nullptr;
        void* p = std::malloc(size);
        self->live[p] = size;
        return p;
    }
    static void Deallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size)
    {
        auto& live = static_cast<Allocator*>(a->userData)->live;
        const auto it = live.find(p);
        FUZZ_CHECK(it != live.end() && it->second == size);
        live.erase(it);
        std::free(p);
    }
};

// The library logs refused values; the fuzzer's output should show only its own.
inline void SilenceLog()
{
    OrvLogSetSink([](OrvVoidPtr, OrvLogLevel, OrvLogCategory, const char*, OrvInt, const char*, const char*) {},
                  nullptr);
}

// A zone with holes, else at +01:00: no offset for the instants of the year 2000 (UTC),
// nor for the readings of its first half.
inline const OrvTimezone* HoleZone()
{
    static constexpr OrvTime kHour = ORV_TIME_NANOSECONDS_PER_HOUR;
    static OrvTimezoneImplPlugIn plugIn = {
        [](OrvTimezoneImpl*, OrvTime t) { return t >= 946684800000000000 && t < 978307200000000000 ? ORV_TIME_INVALID : kHour; },
        [](OrvTimezoneImpl*, OrvInt y, OrvInt m, OrvInt, OrvInt, OrvInt, OrvInt, OrvTime) {
            return y == 2000 && m <= 6 ? ORV_TIME_INVALID : kHour;
        }};
    static OrvTimezoneImpl impl{&plugIn};
    static OrvTimezone tz{{nullptr, &impl, nullptr, nullptr}};
    return &tz;
}

// Zone i of a fixed list (null: floating): UTC, shared fixed zones, zones of the
// database with gaps and overlaps of different sizes, a rule zone, and the holes above.
inline const OrvTimezone* Zone(unsigned i)
{
    static const OrvTimezone* zones[] = {
        nullptr,
        OrvFixedTimezoneGetUTC(),
        OrvFixedTimezoneGetShared(0),
        OrvFixedTimezoneGetShared((5 * 60 + 30) * 60 * ORV_TIME_NANOSECONDS_PER_SECOND),
        OrvFixedTimezoneGetShared(-(23 * 60 + 59) * 60 * ORV_TIME_NANOSECONDS_PER_SECOND),
        OrvTzdbTimezoneGetShared("Europe/Berlin"),
        OrvTzdbTimezoneGetShared("America/New_York"),
        OrvTzdbTimezoneGetShared("Australia/Lord_Howe"),
        OrvTzdbTimezoneGetShared("Pacific/Apia"),
        OrvTzdbTimezoneGetShared("Europe/Dublin"),
        OrvTzdbTimezoneGetShared("America/St_Johns"),
        OrvTzdbTimezoneGetShared("Asia/Kathmandu"),
        HoleZone(),
    };
    return zones[i % std::size(zones)];
}

// The calendar reading of local nanoseconds since 1970-01-01T00:00.
struct Reading {
    OrvInt year, month, day, hour, min, sec, nanos, weekday, dayOfYear;
};
inline Reading ReadingOf(OrvTime local)
{
    using namespace std::chrono;
    constexpr std::int64_t kDayNs = 86400 * ORV_TIME_NANOSECONDS_PER_SECOND;
    const std::int64_t ns = (local % kDayNs + kDayNs) % kDayNs;
    const sys_days day{days{local / kDayNs - (local % kDayNs < 0)}};
    const year_month_day ymd{day};
    const auto dayOfYear = (day - sys_days{ymd.year() / January / 1}).count() + 1;
    return {int(ymd.year()), int(unsigned(ymd.month())), int(unsigned(ymd.day())), int(ns / 3600000000000),
            int(ns / 60000000000 % 60), int(ns / 1000000000 % 60), int(ns % 1000000000),
            int(weekday{day}.c_encoding()), int(dayOfYear)};
}

using Wide = __int128;

inline std::int64_t DaysFromCivil(std::int64_t y, std::int64_t m, std::int64_t d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1 - 719468;
}

// The local reading fields carry to, as nanoseconds since 1970-01-01T00:00 local.
inline Wide CarriedLocal(std::int64_t y, std::int64_t mo, std::int64_t d, std::int64_t h, std::int64_t mi,
                         std::int64_t s, std::int64_t ns)
{
    const std::int64_t m0 = mo - 1, carry = (m0 >= 0 ? m0 : m0 - 11) / 12;
    const Wide day = Wide{86400} * ORV_TIME_NANOSECONDS_PER_SECOND;
    return (DaysFromCivil(y + carry, m0 - carry * 12 + 1, 1) + d - 1) * day +
           ((Wide{h} * 60 + mi) * 60 + s) * ORV_TIME_NANOSECONDS_PER_SECOND + ns;
}
inline Wide CarriedLocal(const OrvDateTime& d)
{
    return CarriedLocal(d.year, d.month, d.monthDay, d.hour, d.min, d.sec, d.nanosec);
}

// Every member but the padding, to tell whether a refused operation touched a value.
inline bool SameRecord(const OrvDateTime& a, const OrvDateTime& b)
{
    return a.nanosec == b.nanosec && a.sec == b.sec && a.min == b.min && a.hour == b.hour &&
           a.monthDay == b.monthDay && a.month == b.month && a.year == b.year && a.wallTime == b.wallTime &&
           a.offset == b.offset && std::memcmp(&a.tz, &b.tz, sizeof a.tz) == 0 &&
           a.firstDayOfWeek == b.firstDayOfWeek && a.minimalDaysInFirstWeek == b.minimalDaysInFirstWeek &&
           a.normalized == b.normalized && a.floating == b.floating;
}

} // namespace fuzz

#endif
