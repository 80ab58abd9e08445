// Verbs that read a date-time and report on it: show, convert, week.
#include "Commands.h"
#include "Common.h"

#include "Orv/Os/OrvTime.h"

namespace orvcal {

namespace {

std::string WeekRule(const OrvDateTime* d)
{
    return "weeks start on " + WeekdayCode(d->firstDayOfWeek) + ", week 1 has at least " +
           std::to_string(d->minimalDaysInFirstWeek) + (d->minimalDaysInFirstWeek == 1 ? " day" : " days");
}

// The year a week number belongs to: week 1 read in late December is the next
// year's, a week above 50 read in early January the previous year's.
OrvInt WeekYear(const OrvDateTime* d, OrvInt weekOfYear)
{
    if (d->month == 12 && weekOfYear == 1) return d->year + 1;
    if (d->month == 1 && weekOfYear > 50) return d->year - 1;
    return d->year;
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
    inv.Field("week of year", std::to_string(woy) + " (of " + std::to_string(WeekYear(d, woy)) + ")");
    inv.Field("week of month", std::to_string(wom));
    inv.Field("day of year", std::to_string(doy));
    return true;
}

} // namespace

int RunShow(Invocation& inv)
{
    const Usage usage{
        .positionals = {kTextArgument},
        .options = {kZoneOption, kFirstOption, kMinOption},
        .notes = "TEXT without Z is read in the --zone given; without one the value is floating: it belongs to "
                 "no zone, has no offset, and its instant reads its fields as UTC.\n"
                 "Example: orvcal show 20240501T093000 --zone America/New_York",
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), zone, "--zone", &value); status != kOk)
        return status;
    OrvDateTime* d = value.get();
    if (int status = ReadWeekRule(inv, d); status != kOk) return status;

    const std::optional<std::string> text = TextOf(d);
    if (!text) return inv.Internal("cannot write the text form");
    inv.Field("text", *text);
    inv.Field("date", FormatDate(d));
    inv.Field("time", FormatTime(d));
    if (!AddWeekFields(inv, d)) return inv.Internal("cannot read the week fields");
    inv.Field("week rule", WeekRule(d));
    const OrvTime instant = OrvDateTimeGetWallTime(d);
    inv.Field("instant", instant == ORV_TIME_INVALID ? "none (dates outside 1677-09-21 to 2262-04-11 have none)"
                                                     : std::to_string(instant) + " ns since 1970-01-01T00:00:00Z");
    const bool floating = OrvDateTimeIsFloating(d);
    const OrvTime offset = OrvDateTimeGetOffset(d);
    inv.Field("offset", floating ? "none (floating)" : offset == ORV_TIME_INVALID ? "none" : FormatOffset(offset));
    inv.Field("zone", floating ? "none" : OrvDateTimeIsUTC(d) ? "UTC" : zone.name());
    inv.Field("floating", floating ? "yes" : "no");
    return kOk;
}

int RunConvert(Invocation& inv)
{
    const Usage usage{
        .positionals = {kTextArgument},
        .options = {kZoneOption, kFromOption},
        .notes = "Writes one line, the text form of the same instant read in the --zone given (with Z only "
                 "for UTC).\n"
                 "Example: orvcal convert 20240501T093000Z --zone +05:30   gives 20240501T150000",
        .requiredOptions = 1,
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone to;
    Zone from;
    if (int status = ReadZoneOption(inv, "--zone", &to); status != kOk) return status;
    if (int status = ReadZoneOption(inv, "--from", &from); status != kOk) return status;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), from, "--from", &value); status != kOk)
        return status;

    const OrvTime instant = OrvDateTimeGetWallTime(value.get());
    if (instant == ORV_TIME_INVALID)
        return inv.Refuse("TEXT", inv.Positional(0), "a date from 1677-09-21 to 2262-04-11 (others have no instant)");
    DateTime converted;
    if (OrvDateTimeConstruct(converted.get(), instant, to.get()) == nullptr)
        return inv.Refuse("TEXT", inv.Positional(0), "an instant that zone " + to.name() + " can read");
    converted.Adopt();
    const std::optional<std::string> text = TextOf(converted.get());
    if (!text) return inv.Internal("cannot write the text form");
    inv.Out() += *text + "\n";
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
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), none, "", &value); status != kOk) return status;
    OrvDateTime* d = value.get();
    if (int status = ReadWeekRule(inv, d); status != kOk) return status;

    inv.Field("date", FormatDate(d));
    inv.Field("week rule", WeekRule(d));
    if (!AddWeekFields(inv, d)) return inv.Internal("cannot read the week fields");
    return kOk;
}

} // namespace orvcal
