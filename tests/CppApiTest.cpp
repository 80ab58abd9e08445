// The C++ layer: zones and values with their refusals (bad text, zones without an
// offset, instants out of range), reference counts across copies and moves, ordering
// and hashing against ==, and the containers under ranges algorithms and failing
// allocators (the counting allocator and a pmr resource that throws).
#include "Orv/Calendar/OrvCalendar.hpp"

#include "support/CountingAllocator.h"
#include "support/TestZones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <ranges>
#include <string>
#include <sstream>
#include <unordered_set>
#include <vector>

namespace {

using namespace std::chrono;
using orv::DateTime;
using orv::Field;
using orv::Zone;
using orv::test::CountingAllocator;
using orv::test::kHour;

const orv::test::TransitionZoneRules kNoFields{kHour, {}, true, false};
const orv::test::TransitionZoneRules kNoInstants{kHour, {}, false, true};

Zone TestZone(const orv::test::TransitionZoneRules& rules)
{
    OrvTimezone tz;
    EXPECT_NE(orv::test::MakeTransitionZone(&tz, rules, OrvAllocatorGetDefault()), nullptr);
    return Zone(orv::adopt, tz);
}

DateTime At(int y, int mo, int d, int h = 0, orv::ZoneRef zone = orv::floating)
{
    return DateTime::from_fields(y, mo, d, h, 0, 0, 0, zone).value();
}

// A value whose zone has no offset for its (pending) reading.
DateTime WithoutOffset(const Zone& noFields)
{
    DateTime d = DateTime::from_instant(sys_seconds{0s}, noFields).value();
    EXPECT_TRUE(d.set(Field::hour, 5));
    return d;
}

// Throws std::bad_alloc at its failAt-th allocation (1-based; 0: never); counts live blocks.
class ThrowingResource : public std::pmr::memory_resource {
public:
    explicit ThrowingResource(std::size_t failAt) : failAt_(failAt) {}
    long live = 0;

private:
    void* do_allocate(std::size_t n, std::size_t align) override
    {
        if (++calls_ == failAt_) throw std::bad_alloc();
        return ++live, std::pmr::new_delete_resource()->allocate(n, align);
    }
    void do_deallocate(void* p, std::size_t n, std::size_t align) override
    {
        --live, std::pmr::new_delete_resource()->deallocate(p, n, align);
    }
    bool do_is_equal(const memory_resource& o) const noexcept override { return this == &o; }
    std::size_t failAt_, calls_ = 0;
};

TEST(CppZone, FactoriesOffsetsAndRefusals)
{
    EXPECT_TRUE(Zone().is_utc());
    EXPECT_EQ(Zone::utc().use_count(), 0);
    const Zone plus = Zone::fixed(5h + 30min).value();
    EXPECT_TRUE(!plus.is_utc() && plus.id().empty());
    EXPECT_EQ(plus.offset_at(sys_days{2024y / 1 / 1}), 5h + 30min);
    EXPECT_EQ(Zone::fixed(-23h).value().offset_at(sys_seconds{0s}), -23h);
    EXPECT_FALSE(plus.offset_at(sys_days{3000y / 1 / 1})); // past 2262: no instant
    EXPECT_FALSE(TestZone(kNoInstants).offset_at(sys_seconds{0s}));
    EXPECT_FALSE(Zone::fixed(24h) || Zone::fixed(-24h));
    EXPECT_TRUE(Zone::local());

    const std::string ids[] = {"No/Such_Zone", "", "../zoneinfo/UTC", std::string("UTC\0x", 5), std::string(300, 'a')};
    for (const std::string& id : ids) EXPECT_FALSE(Zone::from_id(id)) << id;
    CountingAllocator alloc;
    alloc.failAll(true);
    EXPECT_FALSE(Zone::fixed(1h, alloc.get()) || Zone::from_id("UTC", alloc.get()));
    EXPECT_EQ(alloc.liveBlocks(), 0u);
}

TEST(CppZone, DatabaseZone)
{
    const char* dir = std::getenv("TZDIR");
    if (!std::filesystem::exists(std::string(dir && *dir ? dir : "/usr/share/zoneinfo") + "/Europe/Berlin"))
        GTEST_SKIP() << "no time-zone database";
    const Zone berlin = Zone::from_id("Europe/Berlin").value();
    EXPECT_EQ(berlin.id(), "Europe/Berlin");
    EXPECT_EQ(berlin.offset_at(sys_days{2024y / July / 1}), 2h);
    const DateTime d = DateTime::from_fields(2024y / March / 31, 2h + 30min, berlin).value(); // skipped: 03:30
    EXPECT_TRUE(d.hour() == 3 && d.offset() == 2h && d.zone().value().id() == "Europe/Berlin");
    const Zone shared = Zone::shared("Europe/Berlin").value();
    EXPECT_TRUE(shared == Zone::shared("Europe/Berlin").value() && shared.use_count() == 0);
    EXPECT_FALSE(Zone::shared("No/Such_Zone") || Zone::shared(std::string("UTC\0x", 5)));
}

TEST(CppDateTime, ConstructionForms)
{
    const Zone plus2 = Zone::fixed(2h).value();
    const struct {
        std::optional<DateTime> d;
        const char* text;
        bool floating;
    } cases[] = {
        {DateTime::from_fields(2024, 13, 1, 0, 0, 0, 0, Zone::utc()), "20250101T000000Z", false},
        {DateTime::from_fields(2024y / March / 1, -1ns, plus2), "20240229T235959", false},
        {DateTime::from_fields(2024y / 1 / 31, 25h, orv::floating), "20240201T010000Z", true},
        {DateTime::from_local(local_days{2024y / 5 / 1} + 9h + 30min, plus2), "20240501T093000", false},
        {DateTime::from_instant(sys_days{2024y / 5 / 1} + 9h + 30min, plus2), "20240501T113000", false},
        {DateTime::parse("20240501T093000Z", plus2), "20240501T093000Z", false},
        {DateTime::parse("20240501T093000", plus2), "20240501T093000", false},
        {DateTime::parse("20240501T093000", orv::floating), "20240501T093000Z", true},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(c.d) << c.text;
        EXPECT_EQ(c.d->to_string(), c.text);
        EXPECT_EQ(c.d->is_floating(), c.floating) << c.text;
        EXPECT_EQ(c.d->zone().has_value(), !c.floating) << c.text;
    }
    EXPECT_EQ(cases[1].d->nanosecond(), 999999999);
    EXPECT_EQ(cases[4].d->local_time(), local_days{2024y / 5 / 1} + 11h + 30min);
    const auto before = system_clock::now();
    const DateTime now = DateTime::now(plus2).value();
    EXPECT_TRUE(now.instant() >= before && now.instant() <= system_clock::now() && now.offset() == 2h);

    const Zone noFields = TestZone(kNoFields), noInstants = TestZone(kNoInstants);
    const std::optional<DateTime> refused[] = {
        DateTime::from_fields(2024, 1, 1, 0, 0, 0, 0, noFields),
        DateTime::from_fields(2024y / 1 / 1, 0ns, noFields),
        DateTime::from_instant(sys_seconds{0s}, noInstants),
        DateTime::from_instant(sys_days{3000y / 1 / 1}, Zone::utc()),
        DateTime::from_instant(sys_time<nanoseconds>::max(), orv::floating),
        DateTime::parse("20240230T000000", orv::floating),
        DateTime::parse("2024-05-01T0930", orv::floating),
        DateTime::parse("20240501T093000Z ", orv::floating),
        DateTime::parse(std::string_view("20240501T093000\0", 16), orv::floating),
        DateTime::parse("", orv::floating),
    };
    for (std::size_t i = 0; i < std::size(refused); ++i) EXPECT_FALSE(refused[i]) << i;
}

TEST(CppDateTime, FieldsAndWeekSettings)
{
    DateTime d = DateTime::from_fields(2021, 1, 1, 12, 34, 56, 789000000, orv::floating).value();
    const std::pair<Field, int> expected[] = {
        {Field::year, 2021},       {Field::month, 1},         {Field::day, 1},          {Field::hour, 12},
        {Field::minute, 34},       {Field::second, 56},       {Field::nanosecond, 789000000},
        {Field::day_of_week, 5},   {Field::day_of_year, 1},   {Field::week_of_year, 53}, {Field::week_of_month, 0},
    };
    for (auto [f, v] : expected) EXPECT_EQ(d.get(f), v) << static_cast<int>(f);
    EXPECT_EQ(d.day_of_week(), Friday);
    EXPECT_EQ(d.week_of_year(), 53);
    EXPECT_EQ(d.first_day_of_week(), Monday);
    EXPECT_TRUE(d.set_first_day_of_week(Sunday) && d.set_minimal_days_in_first_week(1));
    EXPECT_EQ(d.week_of_year(), 1);
    EXPECT_FALSE(d.set_first_day_of_week(weekday{8}) || d.set_minimal_days_in_first_week(8));
    EXPECT_TRUE(d.first_day_of_week() == Sunday && d.minimal_days_in_first_week() == 1);

    // Year -1 is a year, not a failure; it has no instant.
    const DateTime bc = At(-1, 6, 1);
    EXPECT_EQ(bc.year(), -1);
    EXPECT_FALSE(bc.instant() || bc.local_time());

    const Zone noFields = TestZone(kNoFields);
    DateTime bad = WithoutOffset(noFields);
    for (auto [f, v] : expected) EXPECT_FALSE(bad.get(f)) << static_cast<int>(f);
    EXPECT_FALSE(bad.day_of_week() || bad.instant() || bad.offset() || bad.local_time());
    EXPECT_FALSE(bad.add(Field::day, 1));
    EXPECT_EQ(bad.to_string(), "19700101T050000"); // the fields as they stand
}

TEST(CppDateTime, SetAddZoneInstantText)
{
    DateTime d = At(2023, 2, 10);
    EXPECT_TRUE(d.set(Field::day, 31));
    EXPECT_EQ(d.to_string(), "20230303T000000Z"); // normalized before writing
    EXPECT_FALSE(d.set(Field::day_of_week, 1) || d.set(Field::week_of_year, 1));
    d = At(2023, 1, 31);
    EXPECT_TRUE(d.add(Field::month, 1) && d.day() == 3);
    EXPECT_FALSE(d.add(Field::year, INT_MAX));
    EXPECT_EQ(d.year(), 2023);

    const Zone dst = TestZone(orv::test::DstRules());
    DateTime night = At(2024, 3, 31, 1, dst);
    EXPECT_TRUE(night.add(Field::hour, 1)); // elapsed time across the change: 01:00 -> 03:00
    EXPECT_TRUE(night.hour() == 3 && night.offset() == 2h);

    const Zone plus2 = Zone::fixed(2h).value(), minus4 = Zone::fixed(-4h).value(), noFields = TestZone(kNoFields);
    DateTime v = At(2024, 7, 1, 12, plus2);
    const auto before = v.instant().value();
    EXPECT_TRUE(v.set_zone(minus4));
    EXPECT_TRUE(v.hour() == 12 && v.instant().value() - before == 6h);
    EXPECT_FALSE(v.set_zone(noFields));
    EXPECT_TRUE(v.zone().value() == minus4);
    DateTime kept = v;
    EXPECT_TRUE(kept.convert_to(plus2) && kept.hour() == 18 && kept == v);
    EXPECT_FALSE(At(3000, 1, 1).convert_to(plus2)); // no instant
    EXPECT_TRUE(v.set_zone(orv::floating));
    EXPECT_TRUE(v.is_floating() && v.is_utc());
    EXPECT_FALSE(v.offset() || v.zone());

    EXPECT_TRUE(v.set_instant(sys_days{2000y / 1 / 1}));
    EXPECT_FALSE(v.set_instant(sys_days{3000y / 1 / 1}));
    EXPECT_EQ(v.to_string(), "20000101T000000Z");

    DateTime t = At(2024, 1, 1, 0, plus2);
    EXPECT_TRUE(t.set_text("20240501T093000"));
    EXPECT_EQ(t.offset(), 2h);
    EXPECT_FALSE(t.set_text("20240501T250000"));
    EXPECT_FALSE(t.set_text(std::string_view("20240501T133000\0", 16)));
    EXPECT_EQ(t.to_string(), "20240501T093000");
    EXPECT_TRUE(t.set_text("20240501T093000Z") && t.is_utc());

    std::ostringstream os;
    os << std::setw(18) << std::setfill('*') << t << '|' << At(2024, 13, 1);
    EXPECT_EQ(os.str(), "**20240501T093000Z|20250101T000000Z");
}

// Copies take a reference, moves take none and leave the global UTC zone (a Zone) or a
// floating value with the same reading (a DateTime); every block goes back at the end.
TEST(CppLifecycle, CopiesShareMovesSteal)
{
    CountingAllocator alloc;
    {
        Zone z = Zone::fixed(1h, alloc.get()).value();
        Zone copy = z;
        EXPECT_TRUE(copy == z);
        Zone moved = std::move(copy);
        EXPECT_TRUE(z.use_count() == 2 && copy.is_utc());
        copy = z;
        copy = std::move(moved); // drops copy's reference, takes moved's
        Zone& alias = copy;
        copy = std::move(alias);
        EXPECT_EQ(z.use_count(), 2);

        DateTime a = At(2024, 5, 1, 9, z);
        DateTime b = a;
        DateTime c = std::move(b);
        EXPECT_EQ(z.use_count(), 4);
        EXPECT_TRUE(b.is_floating() && b.hour() == 9);
        b = c;
        a = std::move(c);
        b = At(2000, 1, 1);
        EXPECT_TRUE(z.use_count() == 3 && a.hour() == 9);

        copy = Zone::utc();
        OrvTimezone raw = z.release();
        EXPECT_TRUE(z.is_utc() && OrvTimezoneGetUseCount(&raw) == 2);
        OrvTimezoneDestruct(&raw);
    }
    EXPECT_EQ(alloc.liveBlocks(), 0u);
}

TEST(CppDateTime, OrderingAgreesWithEqualityAndHash)
{
    const Zone plus1 = Zone::fixed(1h).value(), utc = Zone::utc();
    const struct {
        DateTime a, b;
        std::weak_ordering order;
    } cases[] = {
        {At(2024, 5, 1, 10, plus1), At(2024, 5, 1, 9, utc), std::weak_ordering::equivalent},
        {At(2024, 5, 1, 9), At(2024, 5, 1, 9, utc), std::weak_ordering::equivalent},
        {At(2024, 5, 1, 9), At(2025, 1, 1), std::weak_ordering::less},
        {At(3000, 1, 1), At(2024, 1, 1), std::weak_ordering::greater}, // no instant: by fields
        {At(1000, 1, 1, 0, plus1), At(1677, 9, 22), std::weak_ordering::less},
        {At(3000, 1, 1, 1, plus1), At(3000, 1, 1, 0, utc), std::weak_ordering::equivalent},
        {At(3000, 1, 1, 2, plus1), At(3000, 1, 1, 0, utc), std::weak_ordering::greater},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [a, b, order] = cases[i];
        EXPECT_EQ(a <=> b, order) << i;
        EXPECT_EQ(b <=> a, 0 <=> order) << i;
        const bool got[] = {a == b, a < b, a > b, a <= b, a >= b};
        const bool want[] = {order == 0, order < 0, order > 0, order <= 0, order >= 0};
        EXPECT_TRUE(std::ranges::equal(got, want)) << i;
        EXPECT_TRUE(order != 0 || std::hash<DateTime>{}(a) == std::hash<DateTime>{}(b)) << i;
    }
    std::unordered_set<DateTime> set;
    for (const auto& c : cases) set.insert({c.a, c.b});
    EXPECT_EQ(set.size(), 7u);

    const Zone noFields = TestZone(kNoFields);
    const DateTime bad = WithoutOffset(noFields);
    EXPECT_FALSE(bad == bad); // like NaN
}

TEST(CppContainers, VectorWithRanges)
{
    CountingAllocator alloc;
    {
        orv::DateTimeVector v(alloc.get());
        ASSERT_TRUE(v.insert(v.begin(), At(2024, 1, 1))); // into a vector without storage
        for (int y : {2030, 2020, 2025, 2010}) EXPECT_TRUE(v.push_back(At(y, 1, 1)));
        EXPECT_TRUE(v.push_back(v[0])); // an element of its own
        std::ranges::sort(v);
        EXPECT_TRUE(std::ranges::is_sorted(v));
        EXPECT_EQ(std::ranges::lower_bound(v, At(2024, 1, 1)) - v.begin(), 2);
        EXPECT_EQ(std::ranges::upper_bound(v, At(2024, 1, 1)) - v.begin(), 4);
        std::vector<int> years;
        for (auto it = v.rbegin(); it != v.rend(); ++it) years.push_back(it->year().value());
        EXPECT_EQ(years, (std::vector<int>{2030, 2025, 2024, 2024, 2020, 2010}));
        EXPECT_EQ(v.erase(v.begin() + 2, v.begin() + 4)->year(), 2025);
        EXPECT_EQ(v.erase(v.begin())->year(), 2020);
        EXPECT_EQ(v.insert(v.begin() + 1, At(2022, 1, 1)).value() - v.begin(), 1);
        EXPECT_TRUE(v.front() == At(2020, 1, 1) && v.back() == At(2030, 1, 1));

        std::optional<orv::DateTimeVector> copy = v.clone();
        ASSERT_TRUE(copy && std::ranges::equal(*copy, v));
        orv::DateTimeVector moved = std::move(*copy);
        EXPECT_TRUE(copy->empty() && moved.size() == 4);
        moved.pop_back();
        EXPECT_TRUE(moved.resize(5, At(1999, 1, 1)));
        EXPECT_EQ(moved.back().year(), 1999);

        alloc.failAll(true);
        orv::DateTimeVector empty(alloc.get());
        EXPECT_FALSE(empty.push_back(At(2024, 1, 1)) || empty.insert(empty.end(), At(2024, 1, 1)));
        EXPECT_FALSE(v.reserve(100) || v.clone());
        EXPECT_EQ(v.size(), 4u);
        alloc.failAll(false);
        v.clear();
        EXPECT_TRUE(v.empty());
    }
    EXPECT_EQ(alloc.liveBlocks(), 0u);
    EXPECT_EQ(alloc.badDeallocations(), 0u);
}

TEST(CppContainers, SetInAnArena)
{
    std::pmr::monotonic_buffer_resource arena;
    orv::PmrAllocator pa(&arena);
    orv::DateTimeSet s(pa.get());
    for (int h : {7, 3, 19, 0, 12, 5, 16, 1, 9, 14, 2, 18, 6, 11, 4, 17, 8, 13, 10, 15}) EXPECT_TRUE(s.insert(At(2024, 1, 1, h)).value().second);
    const Zone plus1 = Zone::fixed(1h).value();
    const auto dup = s.insert(At(2024, 1, 1, 6, plus1)).value(); // 05:00Z, present
    EXPECT_TRUE(!dup.second && dup.first->hour() == 5);
    EXPECT_EQ(s.size(), 20u);
    EXPECT_TRUE(std::ranges::is_sorted(s));
    EXPECT_TRUE(std::ranges::is_sorted(s.rbegin(), s.rend(), std::greater{}));
    EXPECT_EQ((--s.end())->hour(), 19);
    EXPECT_EQ(s.rbegin()->hour(), 19);

    const DateTime miss = DateTime::from_fields(2024, 1, 1, 7, 30, 0, 0, orv::floating).value();
    EXPECT_TRUE(s.find(miss) == s.end() && !s.contains(miss));
    EXPECT_EQ(s.count(At(2024, 1, 1, 7)), 1u);
    EXPECT_EQ(s.lower_bound(miss)->hour(), 8);
    EXPECT_EQ(s.upper_bound(At(2024, 1, 1, 7))->hour(), 8);
    EXPECT_EQ(std::ranges::lower_bound(s, miss), s.lower_bound(miss));
    const auto range = s.equal_range(At(2024, 1, 1, 7));
    EXPECT_TRUE(range.first->hour() == 7 && range.second->hour() == 8);
    EXPECT_EQ(std::ranges::count_if(s, [](const DateTime& d) { return d.hour() < 5; }), 5);

    EXPECT_EQ(s.erase(At(2024, 1, 1, 7)) * 2 + s.erase(At(2024, 1, 1, 7)), 2u); // then absent
    EXPECT_EQ(s.erase(s.begin())->hour(), 1);
    EXPECT_EQ(s.erase(s.begin(), s.find(At(2024, 1, 1, 10))), s.find(At(2024, 1, 1, 10)));
    EXPECT_EQ(s.begin()->hour(), 10);

    std::optional<orv::DateTimeSet> copy = s.clone();
    ASSERT_TRUE(copy);
    EXPECT_TRUE(std::ranges::equal(*copy, s));
    const auto it = copy->begin();
    orv::DateTimeSet moved = std::move(*copy);
    EXPECT_TRUE(copy->empty());
    EXPECT_EQ(moved.begin(), it); // nodes change hands, positions stay valid
    s = std::move(moved);
    s.clear();
    EXPECT_TRUE(s.empty() && moved.empty());
}

// With the failAt-th allocation throwing, exactly one of four additions fails and
// leaves the container as it was; every block goes back.
template <class Container, class Add>
void OneAdditionFails(std::size_t failAt, Add add)
{
    ThrowingResource r(failAt);
    {
        orv::PmrAllocator a(&r);
        Container c(a.get());
        int failures = 0;
        for (int h = 0; h < 4; ++h) {
            const std::size_t before = c.size();
            const bool ok = add(c, At(2024, 1, 1, h));
            failures += !ok;
            EXPECT_EQ(c.size(), before + ok) << failAt;
        }
        EXPECT_EQ(failures, 1) << failAt;
    }
    EXPECT_EQ(r.live, 0) << failAt;
}

TEST(CppContainers, ThrowingResourceFailsWithoutLeaks)
{
    for (std::size_t n = 1; n <= 4; ++n) // one node per insertion
        OneAdditionFails<orv::DateTimeSet>(n, [](auto& s, const DateTime& d) { return s.insert(d).has_value(); });
    for (std::size_t n = 1; n <= 2; ++n) // blocks at the 1st and 3rd push_back
        OneAdditionFails<orv::DateTimeVector>(n, [](auto& v, const DateTime& d) { return v.push_back(d); });
    for (std::size_t n = 1; n <= 2; ++n) { // a fixed zone's object and its count block
        ThrowingResource r(n);
        orv::PmrAllocator a(&r);
        EXPECT_FALSE(Zone::fixed(1h, a.get())) << n;
        EXPECT_EQ(r.live, 0) << n;
    }
    ThrowingResource r(2);
    orv::PmrAllocator a(&r);
    orv::DateTimeSet s(a.get());
    ASSERT_TRUE(s.insert(At(2024, 1, 1)));
    EXPECT_FALSE(s.clone());
    EXPECT_EQ(s.size(), 1u);
}

} // namespace
