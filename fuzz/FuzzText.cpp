// Text readers and writers on arbitrary text: the compact form (and its explanation,
// which must agree with the reader), ISO 8601 and patterns. The first byte picks the
// reader, the zone and the fraction digits; for patterns the rest is the pattern, a
// newline, and the text. Whatever a reader accepts must write and read back as the
// same instant and offset, and a refused Set must leave its value untouched.
#include "FuzzSupport.h"

#include <string>

using fuzz::SameRecord;

namespace {

void CheckSame(const OrvDateTime& a, const OrvDateTime& b)
{
    FUZZ_CHECK(a.wallTime == b.wallTime && a.offset == b.offset && a.floating == b.floating);
    FUZZ_CHECK(a.year == b.year && a.month == b.month && a.monthDay == b.monthDay && a.hour == b.hour &&
               a.min == b.min && a.sec == b.sec && a.nanosec == b.nanosec);
}

// A value in tz (floating for null) for the Set readers to overwrite.
OrvDateTime Target(const OrvTimezone* tz)
{
    OrvDateTime e;
    FUZZ_CHECK(OrvDateTimeConstruct(&e, 1000000000, tz));
    return e;
}

// status says what the result says; a refusal points into the text (or the pattern).
void CheckStatus(bool built, const OrvTextStatus& st, std::size_t len)
{
    FUZZ_CHECK(built ? st.error == ORV_TEXTERROR_None && st.position == 0
                     : st.error > ORV_TEXTERROR_None && st.error <= ORV_TEXTERROR_Conflict &&
                           (st.position <= len || st.error == ORV_TEXTERROR_Conversion));
}

void Compact(const std::string& text, const OrvTimezone* tz, OrvString* s)
{
    OrvTextStatus st;
    OrvDateTime d, back, e = Target(tz);
    const bool built = OrvDateTimeConstructCStr(&d, text.c_str(), tz) != nullptr;
    FUZZ_CHECK(OrvDateTimeExplainCStr(text.c_str(), tz, &st) == built);
    CheckStatus(built, st, std::max<std::size_t>(text.size(), 16));
    const OrvDateTime before = e;
    FUZZ_CHECK(OrvDateTimeSetCStr(&e, text.c_str()) == built);
    if (built) {
        CheckSame(d, e);
        FUZZ_CHECK(OrvDateTimeGetString(&d, s) && OrvDateTimeConstructCStr(&back, OrvStringCStr(s), tz));
        FUZZ_CHECK(back.wallTime == d.wallTime && back.offset == d.offset);
        OrvDateTimeDestruct(&back);
        OrvDateTimeDestruct(&d);
    } else {
        FUZZ_CHECK(SameRecord(before, e));
    }
    OrvDateTimeDestruct(&e);
}

void Iso(std::string_view text, const OrvTimezone* tz, OrvInt digits, OrvString* s)
{
    OrvTextStatus st;
    OrvDateTime d, back, e = Target(tz);
    const bool built = OrvDateTimeConstructISO8601(&d, text.data(), text.size(), tz, &st) != nullptr;
    CheckStatus(built, st, text.size());
    const OrvDateTime before = e;
    FUZZ_CHECK(OrvDateTimeSetISO8601(&e, text.data(), text.size(), nullptr) == built);
    if (!built) {
        FUZZ_CHECK(SameRecord(before, e));
        OrvDateTimeDestruct(&e);
        return;
    }
    CheckSame(d, e);
    OrvDateTimeDestruct(&e);
    FUZZ_CHECK(OrvDateTimeGetISO8601(&d, s, digits));
    const std::string written = OrvStringCStr(s);
    if (!OrvDateTimeConstructISO8601(&back, written.data(), written.size(), tz, &st)) {
        FUZZ_CHECK(st.error == ORV_TEXTERROR_Allocation); // the pool of offsets with seconds is full
        OrvDateTimeDestruct(&d);
        return;
    }
    OrvInt cut = 1;
    for (OrvInt i = digits < 0 ? 9 : digits; i < 9; ++i) cut *= 10;
    // Cut digits move the instant back: before the first instant for the first one; to
    // an instant for the reading whose instant would be ORV_TIME_INVALID itself.
    if (d.wallTime != ORV_TIME_INVALID && __builtin_sub_overflow(d.wallTime, d.nanosec % cut, &d.wallTime))
        d.wallTime = ORV_TIME_INVALID;
    if (d.wallTime == ORV_TIME_INVALID && back.wallTime > ORV_TIME_INVALID - ORV_TIME_NANOSECONDS_PER_SECOND)
        d.wallTime = back.wallTime;
    d.nanosec -= d.nanosec % cut;
    CheckSame(d, back);
    FUZZ_CHECK(OrvDateTimeGetISO8601(&back, s, digits) && written == OrvStringCStr(s));
    OrvDateTimeDestruct(&back);
    OrvDateTimeDestruct(&d);
}

void Pattern(std::string_view input, const OrvTimezone* tz, OrvString* s)
{
    const std::size_t cut = std::min(input.find('\n'), input.size());
    const std::string pattern(input.substr(0, cut));
    const std::string_view text = input.substr(std::min(cut + 1, input.size()));
    OrvTextStatus st;
    OrvDateTime d, back;
    const bool built = OrvDateTimeConstructParse(&d, pattern.c_str(), text.data(), text.size(), tz, &st) != nullptr;
    CheckStatus(built, st, text.size());
    if (OrvDateTimeConstructFields(&back, INT32_MAX, 12, 31, 23, 59, 59, 999999999, tz)) {
        OrvDateTimeFormat(&back, pattern.c_str(), s); // far from the instant range: must not crash
        OrvDateTimeDestruct(&back);
    }
    if (!built) return;
    FUZZ_CHECK(OrvDateTimeFormat(&d, pattern.c_str(), s));
    // A floating value writes nothing for %z, %Ez and %Z, which the reader then misses;
    // an offset read (up to +hhmmss) takes the digits of a conversion right after it.
    if ((d.floating && pattern.find_first_of("zZ") != std::string::npos) || pattern.find("z%") != std::string::npos ||
        pattern.find("Z%") != std::string::npos)
        return OrvDateTimeDestruct(&d);
    const std::string written = OrvStringCStr(s);
    if (!OrvDateTimeConstructParse(&back, pattern.c_str(), written.data(), written.size(), tz, &st)) {
        if (st.error == ORV_TEXTERROR_Allocation) return OrvDateTimeDestruct(&d);
        std::fprintf(stderr, "pattern '%s' wrote '%s', refused: %d at %zu\n", pattern.c_str(), written.c_str(),
                     int(st.error), st.position);
        std::abort();
    }
    CheckSame(d, back);
    OrvDateTimeDestruct(&back);
    OrvDateTimeDestruct(&d);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::SilenceLog();
    if (size == 0) return 0;
    const std::uint8_t choice = data[0];
    const OrvTimezone* tz = fuzz::Zone(choice / 3 % 16);
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    switch (choice % 3) {
    case 0: Compact(std::string(rest.substr(0, rest.find('\0'))), tz, &s); break;
    case 1: Iso(rest, tz, static_cast<OrvInt>(choice / 3 % 11) - 1, &s); break;
    default: Pattern(rest, tz, &s); break;
    }
    OrvStringDestruct(&s);
    return 0;
}
