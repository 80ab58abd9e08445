#include "Common.h"

#include "Orv/Calendar/OrvDateTimeText.h"
#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Utils/OrvString.h"

#include <cstdio>

namespace orvcal {

namespace {

constexpr char kCompactForms[] =
    "a date-time as YYYYMMDDTHHMMSS (local) or YYYYMMDDTHHMMSSZ (UTC), such as 20240501T093000Z";
constexpr char kExamples[] = "such as 20240501T093000Z or 2024-05-01T09:30:00+02:00";
constexpr char kTextFormsText[] =
    "a date-time as YYYYMMDDTHHMMSS (local) or YYYYMMDDTHHMMSSZ (UTC), such as 20240501T093000Z, or ISO 8601 "
    "text such as 2024-05-01T09:30:00+02:00, 2024-05-01 09:30Z or 2024-05-01T09:30:00.25 (local without Z or an "
    "offset)";

} // namespace

const char* const kTextForms = kTextFormsText;

const char* const kFieldNames = "nanosecond, second, minute, hour, day, month, year, day-of-week, week-of-month, "
                                "week or day-of-year (plurals too)";

const PositionalSpec kTextArgument = {"TEXT", kTextFormsText};
const OptionSpec kZoneOption = {"--zone", "ZONE", kZoneArgForms};
const OptionSpec kFromOption = {"--from", "ZONE", "the zone TEXT without Z or an offset is read in, as --zone names "
                                                  "zones (default: its fields are read as UTC)"};
const OptionSpec kFirstOption = {"--first", "DAY", "first day of the week: SU, MO, TU, WE, TH, FR or SA (default MO)"};
const OptionSpec kMinOption = {"--min", "N", "days the first week of a month or year needs, 1 to 7 (default 4)"};
const OptionSpec kFormatOption = {
    "--format", "PATTERN",
    "writes the date-time through PATTERN instead of as ISO 8601, with strftime's conversions in the C locale: "
    "%Y %m %d %H %M %S, %F (%Y-%m-%d), %T (%H:%M:%S), %E3S (seconds and 3 digits of fraction; %E*S as many as "
    "needed), %z (+0200), %Ez (+02:00), %Z (CEST), %a %A %b %B (names), %j (day of year), %u %w (weekday), "
    "%V %G (week of year and its year), %s (seconds since 1970), %% (a %)"};

DateTime::~DateTime() { Reset(); }

void DateTime::Reset()
{
    if (held_) OrvDateTimeDestruct(&d_);
    held_ = false;
}

namespace {

// Why both readers refused a text, and how far the compact reader got.
struct Reasons {
    OrvTextStatus compact{ORV_TEXTERROR_None, 0};
    OrvTextStatus iso{ORV_TEXTERROR_None, 0};
    std::size_t compactReach = 0;
};

// Reads text in tz, the compact form first, then ISO 8601. length is the full length
// of the text, of which text may hold only the start (then nothing is accepted). True
// with out built; false with both readers' reasons in *why.
bool TryRead(std::string_view text, std::size_t length, const OrvTimezone* tz, DateTime* out, Reasons* why)
{
    const bool whole = length == text.size();
    const std::size_t zero = text.find('\0');
    const std::string s(text);
    // The compact reader takes zero-terminated text, so a zero byte would end it early.
    if (whole && zero == std::string_view::npos && OrvDateTimeConstructCStr(out->get(), s.c_str(), tz) != nullptr) {
        out->Adopt();
        return true;
    }
    if (OrvDateTimeConstructISO8601(out->get(), s.data(), s.size(), tz, &why->iso) != nullptr) {
        if (whole) {
            out->Adopt();
            return true;
        }
        OrvDateTimeDestruct(out->get()); // only the start of a longer line
        why->iso = {ORV_TEXTERROR_Character, s.size()};
    }
    // The compact form has a fixed length, checked before anything else; how far a text
    // of another length gets is how far its first 16 characters read (all of them: a
    // compact text with more after it).
    if (length != 15 && length != 16) {
        why->compact = {ORV_TEXTERROR_Length, length < 16 ? length : 16};
        OrvTextStatus head{ORV_TEXTERROR_None, 0};
        const std::string first(text.substr(0, 16));
        why->compactReach = length < 16                                         ? 0
                            : OrvDateTimeExplainCStr(first.c_str(), tz, &head) ? 16
                                                                               : head.position;
    } else if (zero != std::string_view::npos) {
        why->compact = {ORV_TEXTERROR_Character, zero}; // as the compact reader refuses a zero byte in a field
        why->compactReach = zero;
    } else {
        OrvDateTimeExplainCStr(s.c_str(), tz, &why->compact);
        why->compactReach = why->compact.position;
    }
    return false;
}

// A reason about the value rather than the shape of the text.
bool AboutTheValue(OrvTextError e)
{
    return e == ORV_TEXTERROR_FieldRange || e == ORV_TEXTERROR_OffsetRange || e == ORV_TEXTERROR_Skipped ||
           e == ORV_TEXTERROR_NoOffset;
}

// "'x' at character 5": the character at pos quoted, or the field there: two digits,
// or all of them for a year (at the start) or a fraction (after '.' or ',').
std::string AtCharacter(std::string_view text, std::size_t pos)
{
    if (pos >= text.size()) return "the end after character " + std::to_string(pos);
    const auto digit = [&text](std::size_t i) { return text[i] >= '0' && text[i] <= '9'; };
    const char before = pos == 0 ? '\0' : text[pos - 1];
    const bool wide = pos == 0 || (pos == 1 && (before == '+' || before == '-')) || before == '.' || before == ',';
    std::size_t n = 1;
    while (digit(pos) && pos + n < text.size() && n < (wide ? 10U : 2U) && digit(pos + n)) ++n;
    return Quoted(text.substr(pos, n)) + " at character " + std::to_string(pos + 1);
}

// What was expected of text, and where it went wrong, by the reader that got further
// (the compact reader when both stopped at the same place, unless only the ISO 8601
// reader found a problem with the value there). zoneName names the zone the text was
// read in, empty for none.
std::string Explain(std::string_view text, std::size_t length, const Reasons& why, const std::string& zoneName)
{
    const bool iso = why.iso.position > why.compactReach ||
                     (why.iso.position == why.compactReach && AboutTheValue(why.iso.error) &&
                      !AboutTheValue(why.compact.error));
    const OrvTextStatus s = iso ? why.iso : why.compact;
    const std::size_t p = s.position;
    switch (s.error) {
    case ORV_TEXTERROR_Length:
        if (!iso)
            return "15 or 16 characters, " + std::string(kCompactForms) + " (got " + std::to_string(length) +
                   "), or ISO 8601 text such as 2024-05-01T09:30:00+02:00";
        return "a complete date-time, " + std::string(kExamples) + "; the text ends after character " +
               std::to_string(p);
    case ORV_TEXTERROR_Character:
        if (iso) return "a date-time " + std::string(kExamples) + "; " + AtCharacter(text, p) + " does not fit";
        if (p == 8) return "an upper-case T as the 9th character (YYYYMMDDTHHMMSS)";
        if (p == 15) return "an upper-case Z as the 16th character, or none";
        {
            struct Part {
                std::size_t pos, len;
                const char* name;
            };
            constexpr Part parts[] = {{0, 4, "year (YYYY)"}, {4, 2, "month (MM)"},  {6, 2, "day (DD)"},
                                      {9, 2, "hour (HH)"},   {11, 2, "minute (MM)"}, {13, 2, "second (SS)"}};
            for (const Part& part : parts)
                if (p >= part.pos && p < part.pos + part.len)
                    return std::string("digits for the ") + part.name + ", characters " + std::to_string(part.pos + 1) +
                           " to " + std::to_string(part.pos + part.len) + "; " + AtCharacter(text, p) + " is not one";
        }
        return std::string(kCompactForms) + "; " + AtCharacter(text, p) + " does not fit";
    case ORV_TEXTERROR_FieldRange:
        return "a date and time that exist as written: month 01-12, a day of that month, hour 00-23, minute and "
               "second 00-59, up to 9 digits of fraction; " +
               AtCharacter(text, p) + " is out of range";
    case ORV_TEXTERROR_OffsetRange:
        return "an offset up to 23:59:59, minutes and seconds 00-59; the one at character " + std::to_string(p + 1) +
               " is out of range";
    case ORV_TEXTERROR_Skipped:
        return "a local time that exists in " + zoneName + ": its clocks skip this reading (at character " +
               std::to_string(p + 1) + ")";
    default:
        return "a local time that " + (zoneName.empty() ? std::string("the zone") : zoneName) +
               " gives an offset for";
    }
}

// Every text the tool reads goes through here: the library reads it, and a refusal
// says why.
int Read(Invocation& inv, std::string_view what, std::string_view text, std::size_t length, const Zone& zone,
         std::string_view zoneOption, InstantText rule, DateTime* out)
{
    Reasons why;
    // Read without a zone first: a floating value says that the text names no instant.
    bool read = TryRead(text, length, nullptr, out, &why);
    const bool local = read && OrvDateTimeIsFloating(out->get());
    if (local && zone.get() != nullptr) {
        out->Reset();
        read = TryRead(text, length, zone.get(), out, &why);
    }
    if (!read) {
        if (why.iso.error == ORV_TEXTERROR_Allocation) return inv.Internal("out of memory");
        return inv.Refuse(what, text, Explain(text, length, why, zone.name()));
    }
    if (local || (zone.get() == nullptr && rule != InstantText::kUtc)) return kOk;
    const OrvTimezone* target = zone.get();
    std::string targetName = zone.name();
    switch (rule) {
    case InstantText::kRefuseZone:
        return inv.Refuse(zoneOption, zone.name(),
                          "no zone with a TEXT that names its instant (it ends in Z or has an offset); drop " +
                              std::string(zoneOption) + ", or drop the Z or offset to read the text in " +
                              zone.name());
    case InstantText::kUtc:
        if (OrvDateTimeIsUTC(out->get())) return kOk;
        target = OrvFixedTimezoneGetUTC();
        targetName = "UTC";
        break;
    case InstantText::kReadInZone: break;
    }
    if (!OrvDateTimeConvertToTimezone(out->get(), target))
        return inv.Refuse(what, text, "a date from 1677-09-21 to 2262-04-11 (others have no instant to read in " +
                                          targetName + ")");
    return kOk;
}

} // namespace

int ReadDateTime(Invocation& inv, std::string_view what, std::string_view text, const Zone& zone,
                 std::string_view zoneOption, InstantText rule, DateTime* out)
{
    return Read(inv, what, text, text.size(), zone, zoneOption, rule, out);
}

int ReadDateTimeLine(Invocation& inv, std::size_t lineNumber, std::string_view line, std::size_t length,
                     const Zone& zone, DateTime* out)
{
    return Read(inv, "line " + std::to_string(lineNumber), line, length, zone, "--zone", InstantText::kUtc, out);
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

std::optional<std::string> IsoOf(const OrvDateTime* d, int fractionDigits)
{
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    std::optional<std::string> result;
    if (OrvDateTimeGetISO8601(d, &s, fractionDigits)) result = std::string(OrvStringCStr(&s), OrvStringLength(&s));
    OrvStringDestruct(&s);
    return result;
}

int WriteDateTime(Invocation& inv, const OrvDateTime* d, std::string* text)
{
    const std::string_view* pattern = inv.Option("--format");
    if (pattern == nullptr) {
        const std::optional<std::string> iso = IsoOf(d);
        if (!iso) return inv.Internal("cannot write the ISO 8601 form");
        *text = *iso;
        return kOk;
    }
    const std::string p(*pattern);
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    const bool written = OrvDateTimeFormat(d, p.c_str(), &s) != ORV_FALSE;
    if (written) text->assign(OrvStringCStr(&s), OrvStringLength(&s));
    // The pattern is at fault when it fails on a plain value too.
    OrvDateTime plain;
    OrvDateTimeConstructDefault(&plain);
    const bool patternFine = written || OrvDateTimeFormat(&plain, p.c_str(), &s) != ORV_FALSE;
    OrvDateTimeDestruct(&plain);
    OrvStringDestruct(&s);
    if (written) return kOk;
    if (!patternFine)
        return inv.Refuse("--format", *pattern,
                          "a PATTERN of known conversions (see --help); it has another, or ends in a lone %");
    return inv.Internal("cannot write the date-time through the pattern");
}

std::string ZoneNameOf(const OrvDateTime* d)
{
    if (OrvDateTimeIsFloating(d)) return "none";
    if (OrvDateTimeIsUTC(d)) return "UTC";
    const OrvTimezone* tz = OrvDateTimeGetTimezone(d);
    if (OrvTzdbTimezoneIs(tz)) return OrvTzdbTimezoneGetId(tz);
    const OrvTime offset = OrvDateTimeGetOffset(d);
    return offset == ORV_TIME_INVALID ? "a zone without an offset here" : FormatOffset(offset);
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
