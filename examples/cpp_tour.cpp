// The library from C++: zones, values read through std::chrono, a sorted vector and an
// ordered set whose nodes come from a std::pmr arena.
#include <Orv/Calendar/OrvCalendar.hpp>

#include <algorithm>
#include <iostream>
#include <memory_resource>

int main()
{
    using namespace std::chrono;

    const std::optional<orv::Zone> plus0530 = orv::Zone::fixed(5h + 30min);
    if (!plus0530) return 1;

    // 2024-13-01 carries into 2025-01-01, read at +05:30.
    const std::optional<orv::DateTime> d = orv::DateTime::from_fields(2024, 13, 1, 0, 0, 0, 0, *plus0530);
    if (!d) return 1;
    std::cout << "2024-13-01 carried:        " << *d << ", offset " << d->offset()->count() << " ns, "
              << d->instant()->time_since_epoch().count() << " ns since the epoch\n";

    // The same instant in UTC, and in a database zone when the system has one.
    const std::optional<orv::DateTime> utc = orv::DateTime::from_instant(*d->instant(), orv::Zone::utc());
    if (!utc) return 1;
    std::cout << "the same instant in UTC:   " << *utc << '\n';
    if (std::optional<orv::Zone> tokyo = orv::Zone::from_id("Asia/Tokyo")) {
        orv::DateTime there = *utc;
        there.set_zone(*tokyo); // keeps the local reading: a different instant
        std::cout << "that reading in " << tokyo->id() << ": " << there << ", offset "
                  << duration_cast<hours>(*there.offset()).count() << " h\n";
    }

    // Text in, fields out; refused text is a value, not an exception.
    if (std::optional<orv::DateTime> t = orv::DateTime::parse("20210101T120000", orv::floating)) {
        std::cout << "20210101T120000 (floating): week " << *t->week_of_year() << ", "
                  << (t->day_of_week() == Friday ? "a Friday" : "not a Friday") << '\n';
    }
    std::cout << "20240230T000000 accepted:  " << orv::DateTime::parse("20240230T000000", orv::floating).has_value()
              << '\n';

    // A vector sorted with std::ranges; a set whose nodes come from an arena.
    orv::DateTimeVector v;
    for (int month : {11, 2, 7, 4}) {
        if (auto m = orv::DateTime::from_fields(2024, month, 1, 0, 0, 0, 0, orv::floating); !m || !v.push_back(*m))
            return 1;
    }
    std::ranges::sort(v);
    std::cout << "sorted:";
    for (const orv::DateTime& x : v) std::cout << ' ' << x;
    std::cout << '\n';

    std::pmr::monotonic_buffer_resource arena;
    orv::PmrAllocator alloc(&arena);
    orv::DateTimeSet set(alloc.get());
    for (auto it = v.rbegin(); it != v.rend(); ++it) {
        if (!set.insert(*it)) return 1; // out of memory
    }
    if (!set.insert(*utc)) return 1; // 2024-12-31T18:30:00Z
    const auto after = set.upper_bound(v[1]);
    std::cout << "set of " << set.size() << ", first after " << v[1] << ": " << *after << '\n';
    return 0;
}
