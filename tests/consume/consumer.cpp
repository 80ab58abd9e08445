// A C++ program built against the installed library: the C++ header when the package
// has it, the C API otherwise; prints a date carried into range.
#if __has_include(<Orv/Calendar/OrvCalendar.hpp>)
#include <Orv/Calendar/OrvCalendar.hpp>
#endif
#include <Orv/Calendar/OrvDateTime.h>

#include <cstdio>

int main()
{
    OrvDateTime d;
    if (OrvDateTimeConstructFields(&d, 2024, 13, 1, 0, 0, 0, 0, OrvFixedTimezoneGetUTC()) == nullptr) return 1;
    std::printf("%04d-%02d-%02d %lld\n", d.year, d.month, d.monthDay, static_cast<long long>(d.wallTime));
    OrvDateTimeDestruct(&d);
    return 0;
}
