// Verbs that read a date-time and report on it: show, convert, week, and now, which
// reports on the current one.
#include "Commands.h"
#include "Common.h"

#include "Orv/Calendar/OrvTzdbTimezone.h"
#include "Orv/Os/OrvTime.h"

namespace orvcal {

namespace {

std::string WeekRule(const OrvDateTime* d)
{
    return "weeks start on " + WeekdayCode(d->firstDayOfWeek) + ", week 1 has at least " +
           std::to_string(d->minimalDaysInFirstWeek) + (d->minimalDaysInFirstWeek == 1 ? " day" : " days");
}

// The derived fields shared by show and week. False when a read fails.
bool AddWeekFields(Invocation& inv, const OrvDateTime* d)
{
    const OrvInt wday = OrvDateTimeGetField(d, ORV_DATETIMEFIELD_DayOfWeek);
    const OrvInt woy = OrvDateTimeGetField(d, ORV_DATETIMEFIELD_WeekOfYear);
    const OrvInt wom = OrvDateTimeGetField(d, ORV_DATETIMEFIELD_WeekOfMonth);
    const OrvInt doy = OrvDateTimeGetField(d, ORV_DATETIMEFIELD_DayOfYear);
    if (wday < 0 || woy < 0 || wom < 0 || doy < 0) return false;
    inv.Field("day of week", WeekdayCode(wday));
    // The reads above have shown that the zone has an offset, so -1 is the year -1 here.
    inv.Field("week of year", std::to_string(woy) + " (of " + std::to_string(OrvDateTimeGetWeekYear(d)) + ")");
    inv.Field("week of month", std::to_string(wom));
    inv.Field("day of year", std::to_string(doy));
    return true;
}

} // namespace

int RunShow(Invocation& inv)
{
    const Usage usage{
        .positionals = {kTextArgument},
        .options = {kZoneOption, kFirstOption, kMinOption, kFormatOption},
        .notes = "TEXT without Z or an offset is read in the --zone given; without one the value is floating: it "
                 "belongs to no zone, has no offset, and its instant reads its fields as UTC. TEXT with Z or an "
                 "offset names an instant, shown as read in the --zone given.\n"
                 "Example: orvcal show 20240501T093000 --zone America/New_York",
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), zone, "--zone", InstantText::kReadInZone, &value);
        status != kOk)
        return status;
    OrvDateTime* d = value.get();
    if (int status = ReadWeekRule(inv, d); status != kOk) return status;
    std::string formatted;
    if (inv.Option("--format") != nullptr) {
        if (int status = WriteDateTime(inv, d, &formatted); status != kOk) return status;
    }

    const std::optional<std::string> text = IsoOf(d);
    if (!text) return inv.Internal("cannot write the ISO 8601 form");
    inv.Field("text", *text);
    if (inv.Option("--format") != nullptr) inv.Field("formatted", formatted);
    inv.Field("date", FormatDate(d));
    inv.Field("time", FormatTime(d));
    if (!AddWeekFields(inv, d)) return inv.Internal("cannot read the week fields");
    inv.Field("week rule", WeekRule(d));
    const OrvTime instant = OrvDateTimeGetWallTime(d);
    inv.Field("instant", instant == ORV_TIME_INVALID ? "none (dates outside 1677-09-21 to 2262-04-11 have none)"
                                                     : std::to_string(instant) + " ns since 1970-01-01T00:00:00Z");
    const bool floating = OrvDateTimeIsFloating(d);
    const OrvTime offset = OrvDateTimeGetOffset(d);
    std::string offsetText = floating ? "none (floating)" : offset == ORV_TIME_INVALID ? "none" : FormatOffset(offset);
    // A zone of the database also names its local time type.
    const OrvTimezone* tz = OrvDateTimeGetTimezone(d);
    const char* abbreviation = instant == ORV_TIME_INVALID || !OrvTzdbTimezoneIs(tz)
                                   ? nullptr
                                   : OrvTzdbTimezoneGetAbbreviation(tz, instant);
    if (abbreviation != nullptr)
        offsetText += std::string(" (") + abbreviation +
                      (OrvTzdbTimezoneIsDst(tz, instant) ? ", daylight saving time)" : ")");
    inv.Field("offset", offsetText);
    inv.Field("zone", ZoneNameOf(d));
    inv.Field("floating", floating ? "yes" : "no");
    return kOk;
}

int RunConvert(Invocation& inv)
{
    const Usage usage{
        .positionals = {kTextArgument},
        .options = {kZoneOption, kFromOption, kFormatOption},
        .notes = "Writes one line, the same instant read in the --zone given, in ISO 8601 with its offset (Z for "
                 "UTC).\n"
                 "Example: orvcal convert 20240501T093000Z --zone +05:30   gives 2024-05-01T15:00:00+05:30",
        .requiredOptions = 1,
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone to;
    Zone from;
    if (int status = ReadZoneOption(inv, "--zone", &to); status != kOk) return status;
    if (int status = ReadZoneOption(inv, "--from", &from); status != kOk) return status;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), from, "--from", InstantText::kRefuseZone, &value);
        status != kOk)
        return status;

    const OrvTime instant = OrvDateTimeGetWallTime(value.get());
    if (instant == ORV_TIME_INVALID)
        return inv.Refuse("TEXT", inv.Positional(0), "a date from 1677-09-21 to 2262-04-11 (others have no instant)");
    DateTime converted;
    if (OrvDateTimeConstruct(converted.get(), instant, to.get()) == nullptr)
        return inv.Refuse("TEXT", inv.Positional(0), "an instant that zone " + to.name() + " can read");
    converted.Adopt();
    std::string text;
    if (int status = WriteDateTime(inv, converted.get(), &text); status != kOk) return status;
    inv.Out() += text + "\n";
    return kOk;
}

int RunNow(Invocation& inv)
{
    const Usage usage{
        .positionals = {},
        .options = {kZoneOption, kFormatOption},
        .notes = "Writes the current time in ISO 8601 with its offset, to the second (--format %FT%H:%M:%E9S%Ez "
                 "for nanoseconds), read in the --zone given, else in the system's own zone (TZ, else /etc/localtime).\n"
                 "Example: orvcal now --zone Asia/Tokyo",
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (inv.Option("--zone") != nullptr) {
        if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    } else if (std::string expected; !ParseZoneArg("local", &zone, &expected)) {
        return inv.RefuseUsage("the system's own zone cannot be read (TZ or /etc/localtime); name one with --zone");
    }
    DateTime now;
    if (OrvDateTimeConstructNow(now.get(), zone.get()) == nullptr) return inv.Internal("cannot read the clock");
    now.Adopt();
    std::string text;
    if (inv.Option("--format") != nullptr) {
        if (int status = WriteDateTime(inv, now.get(), &text); status != kOk) return status;
    } else if (const std::optional<std::string> iso = IsoOf(now.get(), 0)) {
        text = *iso;
    } else {
        return inv.Internal("cannot write the ISO 8601 form");
    }
    inv.Out() += text + "\n";
    return kOk;
}

int RunWeek(Invocation& inv)
{
    const Usage usage{
        .positionals = {kTextArgument},
        .options = {kFirstOption, kMinOption},
        .notes = "The default rule, weeks from MO with at least 4 days in week 1, is ISO 8601's.\n"
                 "Example: orvcal week 20241230T000000 --first SU --min 1",
    };
    if (!inv.Read(usage)) return inv.Finished();
    const Zone none;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), none, "", InstantText::kReadInZone, &value);
        status != kOk)
        return status;
    OrvDateTime* d = value.get();
    if (int status = ReadWeekRule(inv, d); status != kOk) return status;

    inv.Field("date", FormatDate(d));
    inv.Field("week rule", WeekRule(d));
    if (!AddWeekFields(inv, d)) return inv.Internal("cannot read the week fields");
    return kOk;
}

} // namespace orvcal
