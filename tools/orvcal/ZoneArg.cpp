#include "ZoneArg.h"

#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Os/OrvTime.h"

#include <cstdio>

namespace orvcal {

const char* const kZoneArgForms =
    "UTC, a fixed offset such as +05:30 or -04:00, a zone id of the system's database such as "
    "America/New_York (orvcal zones lists them), or local (the system's own zone)";

Zone::~Zone()
{
    if (held_) OrvTimezoneDestruct(&tz_);
}

namespace {

// Two decimal digits at text[pos], or -1.
int TwoDigits(std::string_view text, std::size_t pos)
{
    if (pos + 2 > text.size()) return -1;
    const char a = text[pos];
    const char b = text[pos + 1];
    if (a < '0' || a > '9' || b < '0' || b > '9') return -1;
    return (a - '0') * 10 + (b - '0');
}

// "+HH", "+HHMM" or "+HH:MM" (or with '-'); the offset in minutes east of UTC.
bool ParseFixedOffset(std::string_view text, int* minutes)
{
    if (text.empty() || (text[0] != '+' && text[0] != '-')) return false;
    const int hours = TwoDigits(text, 1);
    int mins = 0;
    switch (text.size()) {
    case 3: break;
    case 5: mins = TwoDigits(text, 3); break;
    case 6: mins = text[3] == ':' ? TwoDigits(text, 4) : -1; break;
    default: return false;
    }
    if (hours < 0 || hours > 23 || mins < 0 || mins > 59) return false;
    *minutes = (text[0] == '-' ? -1 : 1) * (hours * 60 + mins);
    return true;
}

bool IsUtcName(std::string_view text)
{
    if (text.size() != 3) return false;
    for (std::size_t i = 0; i < 3; ++i)
        if ((text[i] | 0x20) != "utc"[i]) return false;
    return true;
}

} // namespace

bool ParseZoneArg(std::string_view text, Zone* out, std::string* expected)
{
    if (IsUtcName(text)) {
        if (out->held_) OrvTimezoneDestruct(&out->tz_);
        OrvTimezoneConstructCopy(&out->tz_, OrvFixedTimezoneGetUTC());
        out->held_ = true;
        out->name_ = "UTC";
        return true;
    }
    int minutes = 0;
    if (ParseFixedOffset(text, &minutes)) {
        OrvTimezone tz;
        if (OrvFixedTimezoneConstruct(&tz, minutes * ORV_TIME_NANOSECONDS_PER_MINUTE, OrvAllocatorGetDefault()) ==
            nullptr) {
            *expected = "a zone that can be built (out of memory)";
            return false;
        }
        if (out->held_) OrvTimezoneDestruct(&out->tz_);
        out->tz_ = tz; // the reference moves into out
        out->held_ = true;
        char name[32];
        const int magnitude = minutes < 0 ? -minutes : minutes;
        std::snprintf(name, sizeof name, "%c%02d:%02d", minutes < 0 ? '-' : '+', magnitude / 60, magnitude % 60);
        out->name_ = name;
        return true;
    }
    // A zone of the system's database, or the system's own zone.
    OrvTimezone tz;
    const std::string id(text);
    const bool isLocal = id == "local";
    if (isLocal ? OrvTzdbTimezoneConstructLocal(&tz, OrvAllocatorGetDefault()) != nullptr
                : OrvTzdbTimezoneConstruct(&tz, id.c_str(), OrvAllocatorGetDefault()) != nullptr) {
        if (out->held_) OrvTimezoneDestruct(&out->tz_);
        out->tz_ = tz; // the reference moves into out
        out->held_ = true;
        out->name_ = OrvTzdbTimezoneGetId(&tz);
        return true;
    }
    *expected = kZoneArgForms;
    return false;
}

int ReadZoneOption(Invocation& inv, std::string_view option, Zone* out)
{
    const std::string_view* value = inv.Option(option);
    if (value == nullptr) return kOk;
    std::string expected;
    if (!ParseZoneArg(*value, out, &expected)) return inv.Refuse(option, *value, expected);
    return kOk;
}

} // namespace orvcal
