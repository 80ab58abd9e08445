#include "Common.h"

#include "Orv/Utils/OrvCLib.h"
#include "Orv/Utils/OrvString.h"

#include <cstdio>

namespace orvcal {

namespace {

constexpr char kTextFormsText[] =
    "a date-time as YYYYMMDDTHHMMSS (local) or YYYYMMDDTHHMMSSZ (UTC), such as 20240501T093000Z";

} // namespace

const char* const kTextForms = kTextFormsText;

const char* const kFieldNames = "nanosecond, second, minute, hour, day, month, year, day-of-week, week-of-month, "
                                "week or day-of-year (plurals too)";

const PositionalSpec kTextArgument = {"TEXT", kTextFormsText};
const OptionSpec kZoneOption = {"--zone", "ZONE", kZoneArgForms};
const OptionSpec kFromOption = {"--from", "ZONE", "the zone TEXT without Z is read in, as --zone names zones "
                                                  "(default: its fields are read as UTC)"};
const OptionSpec kFirstOption = {"--first", "DAY", "first day of the week: SU, MO, TU, WE, TH, FR or SA (default MO)"};
const OptionSpec kMinOption = {"--min", "N", "days the first week of a month or year needs, 1 to 7 (default 4)"};

DateTime::~DateTime()
{
    if (held_) OrvDateTimeDestruct(&d_);
}

namespace {

// Why the library refused text, checked in the order its reader checks. length is the
// full length of the text, of which text may hold only the start.
std::string ExplainText(std::string_view text, std::size_t length, bool zoned)
{
    if ((length != 15 && length != 16) || text.size() != length)
        return "15 or 16 characters, " + std::string(kTextForms) + " (got " + std::to_string(length) + ")";
    if (text.size() == 16 && text[15] != 'Z') return "an upper-case Z as the 16th character, or none";
    if (text[8] != 'T') return "an upper-case T as the 9th character (YYYYMMDDTHHMMSS)";
    struct Part {
        std::size_t pos, len;
        const char* name;
    };
    constexpr Part parts[] = {{0, 4, "year (YYYY)"}, {4, 2, "month (MM)"},  {6, 2, "day (DD)"},
                              {9, 2, "hour (HH)"},   {11, 2, "minute (MM)"}, {13, 2, "second (SS)"}};
    for (const Part& p : parts) {
        char buf[8] = {};
        text.copy(buf, p.len, p.pos);
        char* end = nullptr;
        const auto v = static_cast<OrvInt>(OrvStrToUint32(buf, &end, 10));
        if (end != buf + p.len || v < 0)
            return std::string("digits for the ") + p.name + ", characters " + std::to_string(p.pos + 1) + " to " +
                   std::to_string(p.pos + p.len);
    }
    if (zoned) return "a local time that exists in the zone given (it skips this one or has no offset for it)";
    return "a date and time that exist as written: month 01-12, a day of that month, hour 00-23, minute and "
           "second 00-59";
}

enum class ZRule {
    kRefusedWithZone, // a zone and a text ending in Z contradict each other
    kUtcWhateverZone, // a text ending in Z is UTC; the zone reads the others
};

// Every text the tool reads goes through here: the library reads it, and a refusal
// says why.
int Read(Invocation& inv, std::string_view what, std::string_view text, std::size_t length, const Zone& given,
         std::string_view zoneOption, ZRule rule, DateTime* out)
{
    const bool whole = length == text.size();
    const bool endsInZ = whole && !text.empty() && text.back() == 'Z';
    const Zone none;
    const Zone& zone = endsInZ && rule == ZRule::kUtcWhateverZone ? none : given;
    if (zone.get() != nullptr && endsInZ)
        return inv.Refuse(zoneOption, zone.name(),
                          "no zone with a TEXT that ends in Z (UTC already); drop the Z to read " +
                              Quoted(text.substr(0, 15)) + " in " + zone.name());
    // The library reads up to a NUL; a text with one inside is never a date-time.
    const bool readable = whole && text.find('\0') == std::string_view::npos;
    const std::string s(readable ? text : std::string_view());
    if (readable && OrvDateTimeConstructCStr(out->get(), s.c_str(), zone.get()) != nullptr) {
        out->Adopt();
        return kOk;
    }
    // Whether the fields alone are fine tells a zone's refusal from a bad date.
    bool fieldsFine = false;
    if (readable && zone.get() != nullptr) {
        OrvDateTime floating;
        if (OrvDateTimeConstructCStr(&floating, s.c_str(), nullptr) != nullptr) {
            fieldsFine = true;
            OrvDateTimeDestruct(&floating);
        }
    }
    return inv.Refuse(what, text, ExplainText(text, length, fieldsFine));
}

} // namespace

int ReadDateTime(Invocation& inv, std::string_view what, std::string_view text, const Zone& zone,
                 std::string_view zoneOption, DateTime* out)
{
    return Read(inv, what, text, text.size(), zone, zoneOption, ZRule::kRefusedWithZone, out);
}

int ReadDateTimeLine(Invocation& inv, std::size_t lineNumber, std::string_view line, std::size_t length,
                     const Zone& zone, DateTime* out)
{
    return Read(inv, "line " + std::to_string(lineNumber), line, length, zone, "--zone", ZRule::kUtcWhateverZone,
                out);
}

std::optional<std::string> TextOf(const OrvDateTime* d)
{
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    std::optional<std::string> result;
    if (OrvDateTimeGetString(d, &s)) result = std::string(OrvStringCStr(&s), OrvStringLength(&s));
    // The library writes a floating value with Z (it holds the UTC zone); on the command
    // line it is shown as it was given, a local reading without Z.
    if (result && OrvDateTimeIsFloating(d) && !result->empty() && result->back() == 'Z') result->pop_back();
    OrvStringDestruct(&s);
    return result;
}

std::string FormatOffset(OrvTime offset)
{
    const char sign = offset < 0 ? '-' : '+';
    const unsigned long long magnitude =
        offset < 0 ? 0ULL - static_cast<unsigned long long>(offset) : static_cast<unsigned long long>(offset);
    const unsigned long long nsPerSec = 1000000000ULL;
    const unsigned long long secs = magnitude / nsPerSec;
    const unsigned long long nanos = magnitude % nsPerSec;
    char buf[64];
    int n = std::snprintf(buf, sizeof buf, "%c%02llu:%02llu", sign, secs / 3600, secs / 60 % 60);
    if (secs % 60 != 0 || nanos != 0) n += std::snprintf(buf + n, sizeof buf - static_cast<std::size_t>(n), ":%02llu", secs % 60);
    if (nanos != 0) std::snprintf(buf + n, sizeof buf - static_cast<std::size_t>(n), ".%09llu", nanos);
    return buf;
}

std::string FormatDate(const OrvDateTime* d)
{
    char buf[48];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", d->year, d->month, d->monthDay);
    return buf;
}

std::string FormatTime(const OrvDateTime* d)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d.%09d", d->hour, d->min, d->sec, d->nanosec);
    return buf;
}

std::string WeekdayCode(OrvInt weekday)
{
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    const auto w = static_cast<OrvWeekday>(weekday >= 0 && weekday <= 6 ? weekday : -1);
    std::string code = OrvWeekdayAppendToString(&w, &s) ? OrvStringCStr(&s) : "??";
    OrvStringDestruct(&s);
    return code;
}

std::optional<OrvDateTimeField> ParseFieldName(std::string_view name)
{
    struct Name {
        const char* name;
        OrvDateTimeField field;
    };
    static constexpr Name kNames[] = {
        {"nanosecond", ORV_DATETIMEFIELD_Nanosecond},      {"second", ORV_DATETIMEFIELD_Second},
        {"minute", ORV_DATETIMEFIELD_Minute},              {"hour", ORV_DATETIMEFIELD_Hour},
        {"day-of-week", ORV_DATETIMEFIELD_DayOfWeek},      {"day", ORV_DATETIMEFIELD_DayOfMonth},
        {"day-of-month", ORV_DATETIMEFIELD_DayOfMonth},    {"month", ORV_DATETIMEFIELD_Month},
        {"year", ORV_DATETIMEFIELD_Year},                  {"week-of-month", ORV_DATETIMEFIELD_WeekOfMonth},
        {"week", ORV_DATETIMEFIELD_WeekOfYear},            {"week-of-year", ORV_DATETIMEFIELD_WeekOfYear},
        {"day-of-year", ORV_DATETIMEFIELD_DayOfYear},
    };
    for (const Name& n : kNames) {
        const std::string_view candidate = n.name;
        // Plural accepted: "months", "days".
        if (name == candidate || (name.size() == candidate.size() + 1 && name.back() == 's' &&
                                  name.substr(0, candidate.size()) == candidate))
            return n.field;
    }
    return std::nullopt;
}

std::optional<OrvInt> ParseInt32(std::string_view text)
{
    std::size_t i = 0;
    const bool negative = !text.empty() && text[0] == '-';
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) i = 1;
    if (i == text.size()) return std::nullopt;
    long long value = 0;
    for (; i < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9') return std::nullopt;
        value = value * 10 + (text[i] - '0');
        if (value > 2147483648LL) return std::nullopt;
    }
    if (negative) value = -value;
    if (value > 2147483647LL) return std::nullopt;
    return static_cast<OrvInt>(value);
}

int ReadWeekRule(Invocation& inv, OrvDateTime* d)
{
    if (const std::string_view* first = inv.Option("--first")) {
        OrvWeekday w;
        const std::string code(*first);
        if (OrvWeekdayConstructCStr(&w, code.c_str()) == nullptr || !OrvDateTimeSetFirstDayOfWeek(d, w))
            return inv.Refuse("--first", *first, kFirstOption.help);
    }
    if (const std::string_view* min = inv.Option("--min")) {
        const std::optional<OrvInt> days = ParseInt32(*min);
        if (!days || !OrvDateTimeSetMinimalDaysInFirstWeek(d, *days))
            return inv.Refuse("--min", *min, kMinOption.help);
    }
    return kOk;
}

} // namespace orvcal
