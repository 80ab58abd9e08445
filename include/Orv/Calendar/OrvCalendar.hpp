/*
 * OrvCalendar.hpp - the library from C++20: owning value types over the C records,
 * std::chrono at the edges, standard iterators on the containers. Header-only: every
 * function here is inline and calls the C API, so the library exports no C++ symbol.
 *
 *     #include <Orv/Calendar/OrvCalendar.hpp>
 *
 *     using namespace std::chrono;
 *     std::optional<orv::Zone> berlin = orv::Zone::from_id("Europe/Berlin");
 *     if (!berlin) return;                                  // not in the database
 *     std::optional<orv::DateTime> d =
 *         orv::DateTime::from_fields(2024y / March / 31, 2h + 30min, *berlin);
 *     // 02:30 is skipped that night: d reads 03:30 at +02:00
 *     std::cout << *d << ' ' << d->offset()->count() << '\n';
 *
 *     std::pmr::monotonic_buffer_resource arena;            // every node from one arena
 *     orv::PmrAllocator alloc(&arena);
 *     orv::DateTimeSet set(alloc.get());
 *     if (!set.insert(*d)) return;                         // out of memory, set unchanged
 *     for (const orv::DateTime& v : set) std::cout << v.to_string() << '\n';
 *
 * Policies, the same for every type here:
 *  - Nothing throws, except where a contract says so (text as std::string, stream
 *    output). Whatever can fail reports it as a value: std::optional for results,
 *    bool for operations on an existing object; the object is then as the C function
 *    documents (usually unchanged).
 *  - Instants are std::chrono::sys_time<nanoseconds> (a time point of a coarser integer
 *    duration is accepted, and one outside the instant range, 1677-09-21 .. 2262-04-11,
 *    is refused like an instant the zone has no offset for); offsets are nanoseconds.
 *  - Readers normalize the value in place, as the C readers do, so a const DateTime is
 *    still written to: do not read one value from two threads at once.
 *  - Moving never touches a reference count.
 */
#ifndef ORV_CALENDAR_ORVCALENDAR_HPP
#define ORV_CALENDAR_ORVCALENDAR_HPP

#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Calendar/OrvTimezone.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Utils/OrvAllocator.h"
#include "Orv/Utils/OrvString.h"

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstring>
#include <functional>
#include <iterator>
#include <limits>
#include <memory_resource>
#include <optional>
#include <ostream>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace orv {

static_assert(std::is_same_v<OrvInt, int>, "fields are passed as int");

/** Tag: the constructor takes over the C record's zone reference instead of copying it. */
struct adopt_t {
    explicit constexpr adopt_t() = default;
};
inline constexpr adopt_t adopt{};

/** Tag: a value that belongs to no zone (read as UTC, reporting no zone and no offset). */
struct floating_t {
    explicit constexpr floating_t() = default;
};
inline constexpr floating_t floating{};

namespace detail {

/** d in nanoseconds; nullopt when that count is not a real OrvTime (it does not fit, or
 *  it is ORV_TIME_INVALID). */
template <class Rep, class Period>
constexpr std::optional<OrvTime> ToOrvTime(std::chrono::duration<Rep, Period> d) noexcept
{
    using PerUnit = std::ratio_divide<Period, std::nano>;
    static_assert(PerUnit::den == 1, "a duration finer than a nanosecond needs an explicit cast");
    constexpr OrvTime kMax = (ORV_TIME_INVALID - 1) / PerUnit::num;
    constexpr OrvTime kMin = std::numeric_limits<OrvTime>::min() / PerUnit::num;
    const Rep n = d.count();
    if (std::cmp_greater(n, kMax) || std::cmp_less(n, kMin)) return std::nullopt;
    return static_cast<OrvTime>(n) * PerUnit::num;
}

/** Durations the layer accepts for instants: integer counts of nanoseconds or coarser. */
template <class Duration>
concept InstantDuration = std::is_integral_v<typename Duration::rep> &&
                          std::ratio_divide<typename Duration::period, std::nano>::den == 1;

inline std::optional<std::chrono::nanoseconds> Nanos(OrvTime t) noexcept
{
    if (t == ORV_TIME_INVALID) return std::nullopt;
    return std::chrono::nanoseconds{t};
}

} // namespace detail

/* ---------------------------------------------------------------------------------
 * PmrAllocator
 * ------------------------------------------------------------------------------ */

/** An OrvAllocator whose blocks come from a std::pmr::memory_resource, aligned for any
 *  object. A resource that throws (std::bad_alloc or anything else) gives the C side
 *  the null block it expects. Not copyable or movable: containers keep get()'s
 *  address, so the adapter, and the resource, must outlive everything built on it. */
class PmrAllocator {
public:
    /** Serves from resource (the default resource when not given). */
    explicit PmrAllocator(std::pmr::memory_resource* resource = std::pmr::get_default_resource()) noexcept
        : a_{&Allocate, &Deallocate, std::numeric_limits<OrvSizeT>::max(), resource}
    {
    }
    PmrAllocator(const PmrAllocator&) = delete;
    PmrAllocator& operator=(const PmrAllocator&) = delete;

    /** The allocator to hand to containers and zone constructors. */
    OrvAllocator* get() noexcept { return &a_; }
    /** The resource the blocks come from. */
    std::pmr::memory_resource* resource() const noexcept { return static_cast<std::pmr::memory_resource*>(a_.userData); }

private:
    static OrvVoidPtr Allocate(OrvAllocator* a, OrvSizeT size) noexcept
    {
        try {
            return static_cast<std::pmr::memory_resource*>(a->userData)->allocate(size, alignof(std::max_align_t));
        } catch (...) {
            return nullptr;
        }
    }
    static void Deallocate(OrvAllocator* a, OrvVoidPtr p, OrvSizeT size) noexcept
    {
        static_cast<std::pmr::memory_resource*>(a->userData)->deallocate(p, size, alignof(std::max_align_t));
    }

    OrvAllocator a_;
};

/* ---------------------------------------------------------------------------------
 * Zone
 * ------------------------------------------------------------------------------ */

/** A counted handle to a time zone. Copies share the zone (one more use reference);
 *  a moved-from Zone is the global UTC zone. */
class Zone {
public:
    /** The global UTC zone (uncounted; never fails). */
    Zone() noexcept { OrvTimezoneConstructCopy(&tz_, OrvFixedTimezoneGetUTC()); }
    /** Shares tz's zone (one more use reference). */
    explicit Zone(const OrvTimezone& tz) noexcept { OrvTimezoneConstructCopy(&tz_, &tz); }
    /** Takes over the reference tz holds; the caller must not destruct tz afterwards. */
    Zone(adopt_t, const OrvTimezone& tz) noexcept : tz_(tz) {}
    Zone(const Zone& o) noexcept { OrvTimezoneConstructCopy(&tz_, &o.tz_); }
    Zone(Zone&& o) noexcept : tz_(o.tz_) { o.Reset(); }
    Zone& operator=(const Zone& o) noexcept
    {
        OrvTimezoneAssign(&tz_, &o.tz_);
        return *this;
    }
    Zone& operator=(Zone&& o) noexcept
    {
        if (this != &o) {
            OrvTimezoneDestruct(&tz_);
            tz_ = o.tz_;
            o.Reset();
        }
        return *this;
    }
    ~Zone() { OrvTimezoneDestruct(&tz_); }

    /** The global UTC zone. */
    static Zone utc() noexcept { return Zone(); }

    /** A zone at the constant offset (east positive), its object from a. Nullopt when
     *  the offset is not below one day in magnitude or the allocation fails. */
    static std::optional<Zone> fixed(std::chrono::nanoseconds offset, OrvAllocator* a = OrvAllocatorGetDefault()) noexcept
    {
        OrvTimezone tz;
        if (OrvFixedTimezoneConstruct(&tz, offset.count(), a) == nullptr) return std::nullopt;
        return std::optional<Zone>(std::in_place, adopt, tz);
    }

    /** The database zone named id ("Europe/Berlin"), read from the zone folder. Nullopt
     *  for an id OrvTzdbTimezoneConstruct refuses (unknown, not a plain relative name,
     *  over ORV_TZDB_ID_MAX bytes, holding a zero byte), a bad file, or no memory. */
    static std::optional<Zone> from_id(std::string_view id, OrvAllocator* a = OrvAllocatorGetDefault()) noexcept
    {
        char buf[ORV_TZDB_ID_MAX + 1];
        OrvTimezone tz;
        if (!TerminateId(id, buf) || OrvTzdbTimezoneConstruct(&tz, buf, a) == nullptr) return std::nullopt;
        return std::optional<Zone>(std::in_place, adopt, tz);
    }

    /** The process-wide database zone named id, loaded once and never released (its
     *  handle is uncounted, so copies cost no atomic operation). Nullopt as for
     *  from_id; a later call tries again. */
    static std::optional<Zone> shared(std::string_view id) noexcept
    {
        char buf[ORV_TZDB_ID_MAX + 1];
        const OrvTimezone* tz = TerminateId(id, buf) ? OrvTzdbTimezoneGetShared(buf) : nullptr;
        if (tz == nullptr) return std::nullopt;
        return std::optional<Zone>(std::in_place, *tz);
    }

    /** The system's local zone (TZ, else /etc/localtime, else UTC). Nullopt when
     *  /etc/localtime is not a valid zone file or the allocation fails. */
    static std::optional<Zone> local(OrvAllocator* a = OrvAllocatorGetDefault()) noexcept
    {
        OrvTimezone tz;
        if (OrvTzdbTimezoneConstructLocal(&tz, a) == nullptr) return std::nullopt;
        return std::optional<Zone>(std::in_place, adopt, tz);
    }

    /** The offset (local minus UTC) in force at t. Nullopt when the zone has no answer
     *  or t lies outside the instant range. */
    template <detail::InstantDuration Duration>
    std::optional<std::chrono::nanoseconds> offset_at(std::chrono::sys_time<Duration> t) const noexcept
    {
        const std::optional<OrvTime> ns = detail::ToOrvTime(t.time_since_epoch());
        if (!ns) return std::nullopt;
        return detail::Nanos(OrvTimezoneGetOffset(&tz_, *ns));
    }

    /** The database id ("Europe/Berlin", a local zone's name, a POSIX rule's text);
     *  empty for any other zone. Valid while the zone lives. */
    std::string_view id() const noexcept
    {
        const char* id = OrvTzdbTimezoneGetId(&tz_);
        return id != nullptr ? std::string_view(id) : std::string_view();
    }

    /** True for the global UTC zone (a fixed zone at offset 0 is not it). */
    bool is_utc() const noexcept { return OrvFixedTimezoneIsGlobalUTC(&tz_) != ORV_FALSE; }
    /** Handles sharing the zone; 0 for an uncounted zone (the global UTC zone). */
    long use_count() const noexcept { return OrvTimezoneGetUseCount(&tz_); }
    /** The C handle, valid while this Zone lives and is not assigned to. */
    const OrvTimezone* c_ptr() const noexcept { return &tz_; }
    /** Gives the reference to the caller (who destructs it); this becomes UTC. */
    OrvTimezone release() noexcept
    {
        const OrvTimezone out = tz_;
        Reset();
        return out;
    }

    /** True when both designate the same zone object. */
    friend bool operator==(const Zone& a, const Zone& b) noexcept { return OrvTimezoneEqual(&a.tz_, &b.tz_) != ORV_FALSE; }

private:
    // The global UTC handle is uncounted: storing it takes no reference.
    void Reset() noexcept { OrvTimezoneConstructCopy(&tz_, OrvFixedTimezoneGetUTC()); }

    // Copies id into buf, zero-terminated. False for an id too long, or holding a zero
    // byte (the C side would read a shorter id).
    static bool TerminateId(std::string_view id, char (&buf)[ORV_TZDB_ID_MAX + 1]) noexcept
    {
        if (id.size() > ORV_TZDB_ID_MAX || id.find('\0') != std::string_view::npos) return false;
        std::memcpy(buf, id.data(), id.size());
        buf[id.size()] = '\0';
        return true;
    }

    OrvTimezone tz_;
};

/** The zone argument of the DateTime operations: a Zone, or orv::floating. It refers to
 *  the Zone, so it is for passing, not for keeping. */
class ZoneRef {
public:
    ZoneRef(const Zone& zone) noexcept : tz_(zone.c_ptr()) {}
    constexpr ZoneRef(floating_t) noexcept : tz_(nullptr) {}
    /** The C handle, or null for floating. */
    constexpr const OrvTimezone* c_ptr() const noexcept { return tz_; }

private:
    const OrvTimezone* tz_;
};

/* ---------------------------------------------------------------------------------
 * DateTime
 * ------------------------------------------------------------------------------ */

/** Field selectors, as OrvDateTimeField. */
enum class Field : int {
    nanosecond = ORV_DATETIMEFIELD_Nanosecond,
    second = ORV_DATETIMEFIELD_Second,
    minute = ORV_DATETIMEFIELD_Minute,
    hour = ORV_DATETIMEFIELD_Hour,
    day_of_week = ORV_DATETIMEFIELD_DayOfWeek,
    day = ORV_DATETIMEFIELD_DayOfMonth,
    month = ORV_DATETIMEFIELD_Month,
    year = ORV_DATETIMEFIELD_Year,
    week_of_month = ORV_DATETIMEFIELD_WeekOfMonth,
    week_of_year = ORV_DATETIMEFIELD_WeekOfYear,
    day_of_year = ORV_DATETIMEFIELD_DayOfYear,
};

/** A date and time of day to the nanosecond in a zone (or floating), with the instant
 *  it denotes: an OrvDateTime with value semantics. A DateTime is exactly its C
 *  record (the containers view their elements as DateTime). A default DateTime is
 *  1970-01-01T00:00:00Z in the global UTC zone; a moved-from one is floating. */
class DateTime {
    struct Unbuilt {
        explicit Unbuilt() = default;
    };

public:
    /** 1970-01-01T00:00:00 in the global UTC zone. */
    DateTime() noexcept { OrvDateTimeConstructDefault(&v_); }
    /** A copy of the C value d (one more zone reference). */
    explicit DateTime(const OrvDateTime& d) noexcept { OrvDateTimeConstructCopy(&v_, &d); }
    /** Takes over the constructed C value d; the caller must not destruct d afterwards. */
    DateTime(adopt_t, const OrvDateTime& d) noexcept : v_(d) {}
    /** Storage for the factories to build in; not for use outside this class (its tag
     *  cannot be named there). */
    explicit DateTime(Unbuilt) noexcept {}
    DateTime(const DateTime& o) noexcept { OrvDateTimeConstructCopy(&v_, &o.v_); }
    DateTime(DateTime&& o) noexcept : v_(o.v_) { o.Reset(); }
    DateTime& operator=(const DateTime& o) noexcept
    {
        OrvDateTimeAssign(&v_, &o.v_);
        return *this;
    }
    DateTime& operator=(DateTime&& o) noexcept
    {
        if (this != &o) {
            OrvDateTimeDestruct(&v_);
            v_ = o.v_;
            o.Reset();
        }
        return *this;
    }
    ~DateTime() { OrvDateTimeDestruct(&v_); }

    /* --- construction; nullopt on failure --------------------------------------- */

    /** The instant t read in zone. Nullopt when the zone has no offset at t or t lies
     *  outside the instant range. */
    template <detail::InstantDuration Duration>
    static std::optional<DateTime> from_instant(std::chrono::sys_time<Duration> t, ZoneRef zone) noexcept
    {
        const std::optional<OrvTime> ns = detail::ToOrvTime(t.time_since_epoch());
        if (!ns) return std::nullopt;
        return Make([&](OrvDateTime* d) { return OrvDateTimeConstruct(d, *ns, zone.c_ptr()); });
    }

    /** The current instant read in zone. Nullopt when the clock cannot be read or the
     *  zone has no offset now. */
    static std::optional<DateTime> now(ZoneRef zone) noexcept
    {
        return Make([&](OrvDateTime* d) { return OrvDateTimeConstructNow(d, zone.c_ptr()); });
    }

    /** The local reading given by the fields, carried into range as
     *  OrvDateTimeConstructFields carries them (month 13 is January of the next year,
     *  day 0 the last of the month before); a reading the zone skips moves forward. A
     *  date outside the instant range keeps its fields and has no instant. Nullopt only
     *  when the zone has no offset for the reading. */
    static std::optional<DateTime> from_fields(int year, int month, int day, int hour, int minute, int second,
                                               int nanosecond, ZoneRef zone) noexcept
    {
        return Make([&](OrvDateTime* d) {
            return OrvDateTimeConstructFields(d, year, month, day, hour, minute, second, nanosecond, zone.c_ptr());
        });
    }

    /** from_fields with a chrono date (carried too: 2024y/13/1 is 2025-01-01) and the
     *  time since its midnight (any sign or length: 25h is 01:00 of the next day). */
    static std::optional<DateTime> from_fields(std::chrono::year_month_day date, std::chrono::nanoseconds since_midnight,
                                               ZoneRef zone) noexcept
    {
        using namespace std::chrono;
        const auto h = duration_cast<hours>(since_midnight);
        const auto m = duration_cast<minutes>(since_midnight - h);
        const auto s = duration_cast<seconds>(since_midnight - h - m);
        const auto ns = since_midnight - h - m - s;
        return from_fields(int(date.year()), static_cast<int>(unsigned(date.month())),
                           static_cast<int>(unsigned(date.day())), static_cast<int>(h.count()),
                           static_cast<int>(m.count()), static_cast<int>(s.count()), static_cast<int>(ns.count()),
                           zone);
    }

    /** The local reading t (a std::chrono::local_time) in zone, as from_fields. */
    template <detail::InstantDuration Duration>
    static std::optional<DateTime> from_local(std::chrono::local_time<Duration> t, ZoneRef zone) noexcept
    {
        using namespace std::chrono;
        const local_days day = floor<days>(t);
        return from_fields(year_month_day{day}, duration_cast<nanoseconds>(t - day), zone);
    }

    /** The text form "YYYYMMDDTHHMMSS[Z]": with Z a UTC value whatever zone is, without
     *  Z a local reading in zone. Nullopt for any other text, and for a reading that does
     *  not exist as written (30 February, hour 24, a local time the zone skips). */
    static std::optional<DateTime> parse(std::string_view text, ZoneRef zone) noexcept
    {
        char buf[kMaxTextIn + 1];
        if (!Terminate(text, buf)) return std::nullopt;
        return Make([&](OrvDateTime* d) { return OrvDateTimeConstructCStr(d, buf, zone.c_ptr()); });
    }

    /* --- fields ------------------------------------------------------------------ */

    /** Field f of the normalized value (OrvDateTimeGetField): day of week 0 (Sunday)
     *  .. 6, week of month 0 .. 6, week of year 1 .. 53, day of year 1 .. 366. Nullopt
     *  when the zone has no offset for the value. */
    std::optional<int> get(Field f) const noexcept
    {
        // A consistent value's stored fields are its reading (the C reader would
        // return them as they are), so they are read in place.
        if (Consistent()) {
            switch (f) {
            case Field::nanosecond: return v_.nanosec;
            case Field::second: return v_.sec;
            case Field::minute: return v_.min;
            case Field::hour: return v_.hour;
            case Field::day: return v_.monthDay;
            case Field::month: return v_.month;
            case Field::year: return v_.year;
            default: break;
            }
        }
        const OrvInt v = OrvDateTimeGetField(&v_, static_cast<OrvDateTimeField>(f));
        // -1 is also a real year: it is a failure only when the normalization failed.
        if (v == -1 && (f != Field::year || OrvDateTimeGetCurrentUTCOffset(&v_) == ORV_TIME_INVALID))
            return std::nullopt;
        return v;
    }
    /** The readers of single fields: get(Field::...). Nullopt as for get. */
    std::optional<int> year() const noexcept { return get(Field::year); }
    std::optional<int> month() const noexcept { return get(Field::month); }
    std::optional<int> day() const noexcept { return get(Field::day); }
    std::optional<int> hour() const noexcept { return get(Field::hour); }
    std::optional<int> minute() const noexcept { return get(Field::minute); }
    std::optional<int> second() const noexcept { return get(Field::second); }
    std::optional<int> nanosecond() const noexcept { return get(Field::nanosecond); }
    std::optional<int> day_of_year() const noexcept { return get(Field::day_of_year); }
    std::optional<int> week_of_month() const noexcept { return get(Field::week_of_month); }
    std::optional<int> week_of_year() const noexcept { return get(Field::week_of_year); }
    /** The day of the week. Nullopt when the zone has no offset for the value. */
    std::optional<std::chrono::weekday> day_of_week() const noexcept
    {
        const std::optional<int> w = get(Field::day_of_week);
        if (!w) return std::nullopt;
        return std::chrono::weekday(static_cast<unsigned>(*w));
    }

    /** Stores v, unchecked, into a stored field (not day of week or the week and
     *  day-of-year numbers); the next reader carries it. False, unchanged, for a
     *  derived field. */
    bool set(Field f, int v) noexcept { return OrvDateTimeSetField(&v_, static_cast<OrvDateTimeField>(f), v) != ORV_FALSE; }
    /** Adds inc to field f as OrvDateTimeAddToField: time fields move the instant by
     *  exactly that much, date fields keep the wall-clock reading, no clamping. False
     *  when the zone has no offset, or (unchanged) when the year would leave 32 bits. */
    bool add(Field f, int inc) noexcept { return OrvDateTimeAddToField(&v_, static_cast<OrvDateTimeField>(f), inc) != ORV_FALSE; }

    /** The first day of a week for week numbering (Monday unless set). */
    std::chrono::weekday first_day_of_week() const noexcept
    {
        return std::chrono::weekday(static_cast<unsigned>(OrvDateTimeGetFirstDayOfWeek(&v_)));
    }
    /** Sets it; false, unchanged, for a weekday that is not ok(). */
    bool set_first_day_of_week(std::chrono::weekday w) noexcept
    {
        if (!w.ok()) return false;
        return OrvDateTimeSetFirstDayOfWeek(&v_, static_cast<OrvWeekday>(w.c_encoding())) != ORV_FALSE;
    }
    /** Days a year's or month's opening week needs to be its week 1 (4 unless set). */
    int minimal_days_in_first_week() const noexcept { return OrvDateTimeGetMinimalDaysInFirstWeek(&v_); }
    /** Sets it; false, unchanged, outside 1..7. */
    bool set_minimal_days_in_first_week(int days) noexcept
    {
        return OrvDateTimeSetMinimalDaysInFirstWeek(&v_, days) != ORV_FALSE;
    }

    /* --- zone, offset, instant ----------------------------------------------------- */

    /** The value's zone (shared); nullopt for a floating value. */
    std::optional<Zone> zone() const noexcept
    {
        const OrvTimezone* tz = OrvDateTimeGetTimezone(&v_);
        if (tz == nullptr) return std::nullopt;
        return std::optional<Zone>(std::in_place, *tz);
    }
    /** True for a value that belongs to no zone. */
    bool is_floating() const noexcept { return OrvDateTimeIsFloating(&v_) != ORV_FALSE; }
    /** True in the global UTC zone, floating values included. */
    bool is_utc() const noexcept { return OrvDateTimeIsUTC(&v_) != ORV_FALSE; }

    /** Moves the value to zone keeping its local reading (the instant changes; a reading
     *  the zone skips moves forward); orv::floating makes it floating. False when the
     *  zone has no offset for the reading: the value keeps its zone. */
    bool set_zone(ZoneRef zone) noexcept { return OrvDateTimeSetTimezone(&v_, zone.c_ptr()) != ORV_FALSE; }

    /** Moves the value to zone keeping its instant (the fields become its reading
     *  there); orv::floating makes it floating with its UTC reading. False, unchanged,
     *  when the value has no instant or the zone no offset at it. */
    bool convert_to(ZoneRef zone) noexcept { return OrvDateTimeConvertToTimezone(&v_, zone.c_ptr()) != ORV_FALSE; }

    /** Local minus UTC at the value's instant. Nullopt for a floating value and when the
     *  zone has no offset. */
    std::optional<std::chrono::nanoseconds> offset() const noexcept { return detail::Nanos(OrvDateTimeGetOffset(&v_)); }

    /** The instant (a floating value's fields read as UTC). Nullopt when the zone has no
     *  offset or the date lies outside the instant range. */
    std::optional<std::chrono::sys_time<std::chrono::nanoseconds>> instant() const noexcept
    {
        const OrvTime t = OrvDateTimeGetWallTime(&v_);
        if (t == ORV_TIME_INVALID) return std::nullopt;
        return std::chrono::sys_time<std::chrono::nanoseconds>(std::chrono::nanoseconds(t));
    }

    /** The local reading (instant plus offset; a floating value's own fields). Nullopt
     *  when there is no instant or the reading leaves the 64-bit nanosecond range. */
    std::optional<std::chrono::local_time<std::chrono::nanoseconds>> local_time() const noexcept
    {
        const OrvTime t = OrvDateTimeGetWallTime(&v_);
        if (t == ORV_TIME_INVALID) return std::nullopt;
        const OrvTime offset = OrvDateTimeGetCurrentUTCOffset(&v_);
        if (offset > 0 ? t > ORV_TIME_INVALID - offset : t < std::numeric_limits<OrvTime>::min() - offset)
            return std::nullopt;
        return std::chrono::local_time<std::chrono::nanoseconds>(std::chrono::nanoseconds(t + offset));
    }

    /** Sets the instant, keeping the zone. False, unchanged, when the zone has no offset
     *  at t or t lies outside the instant range. */
    template <detail::InstantDuration Duration>
    bool set_instant(std::chrono::sys_time<Duration> t) noexcept
    {
        const std::optional<OrvTime> ns = detail::ToOrvTime(t.time_since_epoch());
        return ns && OrvDateTimeSetWallTime(&v_, *ns) != ORV_FALSE;
    }

    /* --- text ---------------------------------------------------------------------- */

    /** Replaces the value with the text form (Z moves it to UTC; without Z the text is
     *  read in the value's own zone). False, with the value unchanged, for text parse()
     *  refuses. */
    bool set_text(std::string_view text) noexcept
    {
        char buf[kMaxTextIn + 1];
        return Terminate(text, buf) && OrvDateTimeSetCStr(&v_, buf) != ORV_FALSE;
    }

    /** The normalized value as text: "20240501T093000Z" in the global UTC zone (floating
     *  values included), without Z otherwise; no fraction of a second. The fields as they
     *  stand when the zone has no offset. Throws std::bad_alloc when the string cannot
     *  be allocated. */
    std::string to_string() const
    {
        char buf[kMaxTextOut];
        return std::string(buf, WriteText(buf));
    }

    /** Writes to_string()'s text to os, honouring its width and fill. */
    friend std::ostream& operator<<(std::ostream& os, const DateTime& d)
    {
        char buf[kMaxTextOut];
        return os << std::string_view(buf, d.WriteText(buf));
    }

    /* --- comparison and hash ------------------------------------------------------- */

    /** Same instant (OrvDateTimeEqual): zones and week settings play no part; values
     *  without an instant compare their UTC readings. A value whose zone has no offset
     *  equals nothing, itself included. */
    friend bool operator==(const DateTime& a, const DateTime& b) noexcept
    {
        if (a.Consistent() && b.Consistent()) return a.v_.wallTime == b.v_.wallTime;
        return OrvDateTimeEqual(&a.v_, &b.v_) != ORV_FALSE;
    }
    /** Order by instant (OrvDateTimeLess both ways): dates without an instant sort before
     *  or after all others. Values whose zones give offsets are totally ordered; a value
     *  whose zone has none is "equivalent" to everything yet equal to nothing, so keep
     *  such values out of sorted ranges, as NaN is kept out of them. */
    friend std::weak_ordering operator<=>(const DateTime& a, const DateTime& b) noexcept
    {
        if (Less(a, b)) return std::weak_ordering::less;
        if (Less(b, a)) return std::weak_ordering::greater;
        return std::weak_ordering::equivalent;
    }
    /** One OrvDateTimeLess each (<=> needs two when the answer is no). */
    friend bool operator<(const DateTime& a, const DateTime& b) noexcept { return Less(a, b); }
    friend bool operator>(const DateTime& a, const DateTime& b) noexcept { return Less(b, a); }
    friend bool operator<=(const DateTime& a, const DateTime& b) noexcept { return !Less(b, a); }
    friend bool operator>=(const DateTime& a, const DateTime& b) noexcept { return !Less(a, b); }

    /** A hash consistent with ==: of the instant, or for a value without one of its UTC
     *  reading; 0 when the zone has no offset (such a value equals nothing). */
    std::size_t hash() const noexcept
    {
        const OrvTime t = OrvDateTimeGetWallTime(&v_);
        if (t != ORV_TIME_INVALID) return std::hash<OrvTime>{}(t);
        const OrvTime offset = OrvDateTimeGetCurrentUTCOffset(&v_);
        if (offset == ORV_TIME_INVALID) return 0;
        // The fields are in range now; take the reading as (days, ns of the day) and
        // move it to UTC without leaving 64 bits.
        constexpr OrvTime kDay = ORV_TIME_NANOSECONDS_PER_DAY;
        OrvInt64 days = DaysFromCivil(v_.year, v_.month, v_.monthDay) - offset / kDay;
        OrvTime ns = ((OrvTime{v_.hour} * 60 + v_.min) * 60 + v_.sec) * ORV_TIME_NANOSECONDS_PER_SECOND + v_.nanosec -
                     offset % kDay;
        if (ns < 0) ns += kDay, --days;
        if (ns >= kDay) ns -= kDay, ++days;
        return std::hash<OrvInt64>{}(days) * 31 + std::hash<OrvTime>{}(ns);
    }

    /* --- the C record -------------------------------------------------------------- */

    /** The C value, for the C API; valid while this DateTime lives. */
    const OrvDateTime* c_ptr() const noexcept { return &v_; }
    OrvDateTime* c_ptr() noexcept { return &v_; }

private:
    static constexpr std::size_t kMaxTextIn = 16;   // the longest text form
    static constexpr std::size_t kMaxTextOut = 128; // 6 fields of up to 11 characters, T, Z

    template <class Build>
    static std::optional<DateTime> Make(Build build) noexcept
    {
        // Built in place: copying a freshly written record costs more than the build.
        std::optional<DateTime> r(std::in_place, Unbuilt());
        if (build(&r->v_) == nullptr) {
            OrvTimezoneConstructCopy(&r->v_.tz, OrvFixedTimezoneGetUTC()); // something to destruct
            r.reset();
        }
        return r;
    }

    // Copies text into buf, zero-terminated. False for text no text form can match
    // (too long, or with a zero byte, which the C reader would take as the end).
    static bool Terminate(std::string_view text, char (&buf)[kMaxTextIn + 1]) noexcept
    {
        if (text.size() > kMaxTextIn || text.find('\0') != std::string_view::npos) return false;
        std::memcpy(buf, text.data(), text.size());
        buf[text.size()] = '\0';
        return true;
    }

    // The text into buf (kMaxTextOut bytes), not terminated; returns its length. The
    // string's one block comes from a buffer on the stack.
    std::size_t WriteText(char* buf) const noexcept
    {
        (void)OrvDateTimeGetCurrentUTCOffset(&v_); // normalizes
        alignas(std::max_align_t) unsigned char arena[2 * kMaxTextOut];
        std::pmr::monotonic_buffer_resource resource(arena, sizeof arena, std::pmr::null_memory_resource());
        PmrAllocator alloc(&resource);
        OrvString s;
        OrvStringConstruct(&s, alloc.get());
        std::size_t n = 0;
        if (OrvStringReserve(&s, kMaxTextOut - 1) != nullptr && OrvDateTimeGetString(&v_, &s) != ORV_FALSE) {
            n = OrvStringLength(&s);
            std::memcpy(buf, OrvStringCStr(&s), n);
        }
        OrvStringDestruct(&s);
        return n;
    }

    // The documented consistent state: the instant is worked out and current.
    bool Consistent() const noexcept
    {
        return v_.normalized && v_.wallTime != ORV_TIME_INVALID && v_.offset != ORV_TIME_INVALID;
    }

    static bool Less(const DateTime& a, const DateTime& b) noexcept
    {
        if (a.Consistent() && b.Consistent()) return a.v_.wallTime < b.v_.wallTime;
        return OrvDateTimeLess(&a.v_, &b.v_) != ORV_FALSE;
    }

    // A floating value with the same fields, holding the uncounted UTC handle.
    void Reset() noexcept
    {
        OrvTimezoneConstructCopy(&v_.tz, OrvFixedTimezoneGetUTC());
        v_.floating = ORV_TRUE;
        v_.normalized = ORV_FALSE;
        v_.wallTime = ORV_TIME_INVALID;
        v_.offset = ORV_TIME_INVALID;
    }

    // Days from 1970-01-01 to a proleptic Gregorian date with month 1..12.
    static constexpr OrvInt64 DaysFromCivil(OrvInt64 y, OrvInt64 m, OrvInt64 d) noexcept
    {
        y -= m <= 2;
        const OrvInt64 era = (y >= 0 ? y : y - 399) / 400;
        const OrvInt64 yoe = y - era * 400;
        const OrvInt64 doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
        return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
    }

    // Readers normalize in place, through const, as the C readers do.
    mutable OrvDateTime v_;
};

static_assert(sizeof(DateTime) == sizeof(OrvDateTime) && alignof(DateTime) == alignof(OrvDateTime));
static_assert(std::is_standard_layout_v<DateTime>);
static_assert(std::is_nothrow_move_constructible_v<DateTime> && std::totally_ordered<DateTime>);

namespace detail {

// Container elements are C records; DateTime is that record with value semantics.
// Positions may be null (the iterators of a vector without storage).
inline DateTime* AsDateTime(OrvDateTime* d) noexcept { return reinterpret_cast<DateTime*>(d); }
inline OrvDateTime* AsRecord(const DateTime* d) noexcept
{
    return reinterpret_cast<OrvDateTime*>(const_cast<DateTime*>(d));
}

} // namespace detail

/* ---------------------------------------------------------------------------------
 * DateTimeVector
 * ------------------------------------------------------------------------------ */

/** A growable array of DateTime over OrvVector_OrvDateTime, on a caller's allocator.
 *  Iterators are element pointers (contiguous); growth and invalidation as the C
 *  vector documents. Copies can fail, so they are made with clone(). */
class DateTimeVector {
public:
    using value_type = DateTime;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = DateTime&;
    using const_reference = const DateTime&;
    using iterator = DateTime*;
    using const_iterator = const DateTime*;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

    /** Empty, without storage, on a (which must outlive the vector). */
    explicit DateTimeVector(OrvAllocator* a = OrvAllocatorGetDefault()) noexcept
    {
        OrvVector_OrvDateTimeConstructDefault(&v_, a);
    }
    DateTimeVector(const DateTimeVector&) = delete;
    DateTimeVector& operator=(const DateTimeVector&) = delete;
    /** Takes o's block; o is left empty, without storage, on the same allocator. */
    DateTimeVector(DateTimeVector&& o) noexcept : v_(o.v_) { OrvVector_OrvDateTimeConstructDefault(&o.v_, v_.allocator); }
    /** Releases this vector's elements, then takes o's block and allocator. */
    DateTimeVector& operator=(DateTimeVector&& o) noexcept
    {
        if (this != &o) {
            OrvVector_OrvDateTimeDestruct(&v_);
            v_ = o.v_;
            OrvVector_OrvDateTimeConstructDefault(&o.v_, v_.allocator);
        }
        return *this;
    }
    ~DateTimeVector() { OrvVector_OrvDateTimeDestruct(&v_); }

    /** A copy on the same allocator; nullopt when memory runs out. */
    std::optional<DateTimeVector> clone() const noexcept
    {
        std::optional<DateTimeVector> r(std::in_place, v_.allocator);
        if (OrvVector_OrvDateTimeAssign(&r->v_, &v_) == nullptr) r.reset();
        return r;
    }

    size_type size() const noexcept { return static_cast<size_type>(v_.end - v_.begin); }
    bool empty() const noexcept { return v_.end == v_.begin; }
    size_type capacity() const noexcept { return static_cast<size_type>(v_.endBuf - v_.begin); }
    size_type max_size() const noexcept { return OrvVector_OrvDateTimeMaxSize(&v_); }
    OrvAllocator* allocator() const noexcept { return v_.allocator; }
    /** Makes capacity() at least n. False, unchanged, when memory runs out. */
    bool reserve(size_type n) noexcept { return OrvVector_OrvDateTimeReserve(&v_, n) != ORV_FALSE; }
    /** Makes size() n, appending copies of fill. False, unchanged, when memory runs out. */
    bool resize(size_type n, const DateTime& fill = DateTime()) noexcept
    {
        return OrvVector_OrvDateTimeResize(&v_, n, fill.c_ptr()) != ORV_FALSE;
    }

    iterator begin() noexcept { return detail::AsDateTime(v_.begin); }
    const_iterator begin() const noexcept { return detail::AsDateTime(v_.begin); }
    iterator end() noexcept { return detail::AsDateTime(v_.end); }
    const_iterator end() const noexcept { return detail::AsDateTime(v_.end); }
    reverse_iterator rbegin() noexcept { return reverse_iterator(end()); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    reverse_iterator rend() noexcept { return reverse_iterator(begin()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }
    /** Element access; i, and front/back on an empty vector, are not checked. */
    reference operator[](size_type i) noexcept { return begin()[i]; }
    const_reference operator[](size_type i) const noexcept { return begin()[i]; }
    reference front() noexcept { return *begin(); }
    const_reference front() const noexcept { return *begin(); }
    reference back() noexcept { return end()[-1]; }
    const_reference back() const noexcept { return end()[-1]; }

    /** Appends a copy of d (which may be an element). False, unchanged, when memory
     *  runs out. */
    bool push_back(const DateTime& d) noexcept { return OrvVector_OrvDateTimePushBack(&v_, d.c_ptr()) != ORV_FALSE; }
    /** Removes the last element (not checked for empty). */
    void pop_back() noexcept { OrvVector_OrvDateTimePopBack(&v_); }
    /** Inserts a copy of d before pos; its position, or nullopt (unchanged) when memory
     *  runs out. */
    std::optional<iterator> insert(const_iterator pos, const DateTime& d) noexcept
    {
        OrvDateTime* it = OrvVector_OrvDateTimeInsert(&v_, detail::AsRecord(pos), d.c_ptr());
        if (it == nullptr) return std::nullopt;
        return detail::AsDateTime(it);
    }
    /** Removes the element at pos; returns the position after it. */
    iterator erase(const_iterator pos) noexcept
    {
        return detail::AsDateTime(OrvVector_OrvDateTimeErase(&v_, detail::AsRecord(pos)));
    }
    /** Removes [first, last); returns the position after them. */
    iterator erase(const_iterator first, const_iterator last) noexcept
    {
        return detail::AsDateTime(OrvVector_OrvDateTimeEraseRange(&v_, detail::AsRecord(first), detail::AsRecord(last)));
    }
    /** Removes every element, keeping the block. */
    void clear() noexcept { OrvVector_OrvDateTimeClear(&v_); }
    /** Exchanges contents (and, on different allocators, copies). False, both
     *  unchanged, when such a copy runs out of memory. */
    bool swap(DateTimeVector& o) noexcept { return OrvVector_OrvDateTimeSwap(&v_, &o.v_) != ORV_FALSE; }

    /** The C vector, for the C API. */
    const OrvVector_OrvDateTime* c_ptr() const noexcept { return &v_; }
    OrvVector_OrvDateTime* c_ptr() noexcept { return &v_; }

private:
    OrvVector_OrvDateTime v_;
};

static_assert(std::random_access_iterator<DateTimeVector::iterator>);
static_assert(std::random_access_iterator<DateTimeVector::const_iterator>);
static_assert(std::ranges::random_access_range<DateTimeVector> && std::ranges::sized_range<DateTimeVector>);

/* ---------------------------------------------------------------------------------
 * DateTimeSet
 * ------------------------------------------------------------------------------ */

/** An ordered set of DateTime with unique instants over OrvSet_OrvDateTime (an AVL
 *  tree whose nodes come from a caller's allocator). Elements are constant; iterators
 *  stay valid until their element is erased. Copies can fail, so they are made with
 *  clone(). */
class DateTimeSet {
public:
    /** Bidirectional position of an element (or the end); iterator and const_iterator
     *  are one type, since elements are keys. Default-constructed: singular. */
    class iterator {
    public:
        using iterator_concept = std::bidirectional_iterator_tag;
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = DateTime;
        using difference_type = std::ptrdiff_t;
        using reference = const DateTime&;
        using pointer = const DateTime*;

        constexpr iterator() noexcept = default;
        reference operator*() const noexcept { return *detail::AsDateTime(&node_->value); }
        pointer operator->() const noexcept { return detail::AsDateTime(&node_->value); }
        iterator& operator++() noexcept
        {
            OrvSet_OrvDateTimeIteratorIncrement(&node_);
            return *this;
        }
        iterator operator++(int) noexcept
        {
            iterator old = *this;
            ++*this;
            return old;
        }
        iterator& operator--() noexcept
        {
            OrvSet_OrvDateTimeIteratorDecrement(&node_);
            return *this;
        }
        iterator operator--(int) noexcept
        {
            iterator old = *this;
            --*this;
            return old;
        }
        friend constexpr bool operator==(const iterator&, const iterator&) noexcept = default;

        /** The C node, for the C API. */
        constexpr OrvSet_OrvDateTime_Node* c_node() const noexcept { return node_; }

    private:
        friend class DateTimeSet;
        constexpr explicit iterator(const OrvSet_OrvDateTime_Node* node) noexcept
            : node_(const_cast<OrvSet_OrvDateTime_Node*>(node))
        {
        }
        OrvSet_OrvDateTime_Node* node_ = nullptr;
    };
    using const_iterator = iterator;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = reverse_iterator;
    using value_type = DateTime;
    using key_type = DateTime;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = const DateTime&;
    using const_reference = const DateTime&;

    /** Empty, on a (which must outlive the set). */
    explicit DateTimeSet(OrvAllocator* a = OrvAllocatorGetDefault()) noexcept { OrvSet_OrvDateTimeConstruct(&s_, a); }
    DateTimeSet(const DateTimeSet&) = delete;
    DateTimeSet& operator=(const DateTimeSet&) = delete;
    /** Takes o's tree (its iterators stay valid and now belong to this set, except
     *  end()); o is left empty on the same allocator. */
    DateTimeSet(DateTimeSet&& o) noexcept
    {
        OrvSet_OrvDateTimeConstruct(&s_, o.s_.alloc);
        OrvSet_OrvDateTimeSwap(&s_, &o.s_); // same allocator: relinks, cannot fail
    }
    /** Releases this set's elements, then takes o's tree and allocator. */
    DateTimeSet& operator=(DateTimeSet&& o) noexcept
    {
        if (this != &o) {
            OrvSet_OrvDateTimeDestruct(&s_);
            OrvSet_OrvDateTimeConstruct(&s_, o.s_.alloc);
            OrvSet_OrvDateTimeSwap(&s_, &o.s_);
        }
        return *this;
    }
    ~DateTimeSet() { OrvSet_OrvDateTimeDestruct(&s_); }

    /** A copy on the same allocator; nullopt when memory runs out. */
    std::optional<DateTimeSet> clone() const noexcept
    {
        std::optional<DateTimeSet> r(std::in_place, s_.alloc);
        if (OrvSet_OrvDateTimeAssign(&r->s_, &s_) == nullptr) r.reset();
        return r;
    }

    size_type size() const noexcept { return s_.size; }
    bool empty() const noexcept { return s_.size == 0; }
    size_type max_size() const noexcept { return OrvSet_OrvDateTimeMaxSize(&s_); }
    OrvAllocator* allocator() const noexcept { return s_.alloc; }

    iterator begin() const noexcept { return iterator(OrvSet_OrvDateTimeBeginConst(&s_)); }
    iterator end() const noexcept { return iterator(&s_.end); }
    reverse_iterator rbegin() const noexcept { return reverse_iterator(end()); }
    reverse_iterator rend() const noexcept { return reverse_iterator(begin()); }

    /** Inserts a copy of d: its position and true; an equal element's position and
     *  false when the instant is present already; nullopt (unchanged) when memory runs
     *  out. */
    std::optional<std::pair<iterator, bool>> insert(const DateTime& d) noexcept
    {
        const OrvPair_OrvSet_OrvDateTimeIterator__OrvBool r = OrvSet_OrvDateTimeInsert(&s_, d.c_ptr());
        if (r.second == ORV_FALSE && r.first == &s_.end) return std::nullopt;
        return std::pair<iterator, bool>(iterator(r.first), r.second != ORV_FALSE);
    }
    /** Removes the element at pos (not end()); returns the position after it. */
    iterator erase(iterator pos) noexcept { return iterator(OrvSet_OrvDateTimeErase(&s_, pos.node_)); }
    /** Removes [first, last); returns last. */
    iterator erase(iterator first, iterator last) noexcept
    {
        return iterator(OrvSet_OrvDateTimeEraseRange(&s_, first.node_, last.node_));
    }
    /** Removes the element equal to key; returns how many were removed (0 or 1). */
    size_type erase(const DateTime& key) noexcept { return OrvSet_OrvDateTimeEraseKey(&s_, key.c_ptr()); }
    /** Removes every element. */
    void clear() noexcept { OrvSet_OrvDateTimeClear(&s_); }
    /** Exchanges contents (and, on different allocators, copies). False, both
     *  unchanged, when such a copy runs out of memory. */
    bool swap(DateTimeSet& o) noexcept { return OrvSet_OrvDateTimeSwap(&s_, &o.s_) != ORV_FALSE; }

    /** The element equal to key, or end(). */
    iterator find(const DateTime& key) const noexcept { return iterator(OrvSet_OrvDateTimeFindConst(&s_, key.c_ptr())); }
    /** True when an element equal to key is present. */
    bool contains(const DateTime& key) const noexcept { return OrvSet_OrvDateTimeCount(&s_, key.c_ptr()) != 0; }
    /** 1 when an element equal to key is present, else 0. */
    size_type count(const DateTime& key) const noexcept { return OrvSet_OrvDateTimeCount(&s_, key.c_ptr()); }
    /** The first element not before key, or end(). */
    iterator lower_bound(const DateTime& key) const noexcept
    {
        return iterator(OrvSet_OrvDateTimeLowerBoundConst(&s_, key.c_ptr()));
    }
    /** The first element after key, or end(). */
    iterator upper_bound(const DateTime& key) const noexcept
    {
        return iterator(OrvSet_OrvDateTimeUpperBoundConst(&s_, key.c_ptr()));
    }
    /** [lower_bound(key), upper_bound(key)). */
    std::pair<iterator, iterator> equal_range(const DateTime& key) const noexcept
    {
        const auto r = OrvSet_OrvDateTimeEqualRangeConst(&s_, key.c_ptr());
        return {iterator(r.first), iterator(r.second)};
    }

    /** The C set, for the C API. */
    const OrvSet_OrvDateTime* c_ptr() const noexcept { return &s_; }
    OrvSet_OrvDateTime* c_ptr() noexcept { return &s_; }

private:
    OrvSet_OrvDateTime s_;
};

static_assert(std::bidirectional_iterator<DateTimeSet::iterator>);
static_assert(std::bidirectional_iterator<DateTimeSet::reverse_iterator>);
static_assert(std::ranges::bidirectional_range<const DateTimeSet> && std::ranges::sized_range<const DateTimeSet>);

} // namespace orv

/** Hashes as DateTime::hash, consistent with ==. */
template <>
struct std::hash<orv::DateTime> {
    std::size_t operator()(const orv::DateTime& d) const noexcept { return d.hash(); }
};

#endif /* ORV_CALENDAR_ORVCALENDAR_HPP */
