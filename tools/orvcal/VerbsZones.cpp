// Verbs about the time-zone database: zones (its ids, its version and where it is read
// from) and transitions (a zone's clock changes).
#include "Commands.h"
#include "Common.h"

#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Calendar/OrvTzdbTimezone.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orvcal {

int RunZones(Invocation& inv)
{
    const Usage usage{
        .positionals = {},
        .options = {{"--version", nullptr, "writes the database's version and where it is read from instead"}},
        .notes = "The database is the folder named by TZDIR, else /usr/share/zoneinfo, else the copy built into the "
                 "library. Each id is a ZONE that --zone and --from take.\n"
                 "Example: orvcal zones | grep Europe/",
    };
    if (!inv.Read(usage)) return inv.Finished();
    if (inv.Option("--version") != nullptr) {
        std::array<char, ORV_TZDB_FOLDER_MAX + 1> folder{};
        const OrvTzdbSource source = OrvTzdbGetSourceInUse(folder.data(), folder.size());
        const std::string version = OrvTzdbGetVersion();
        inv.Field("version", version.empty() ? "unknown (the database does not say)" : version);
        inv.Field("source", source == ORV_TZDBSOURCE_Embedded ? "embedded (the copy built into the library)"
                                                              : std::string(folder.data()));
        return kOk;
    }
    std::vector<std::string> ids;
    const OrvBool read = OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids);
    if (!read || ids.empty())
        return inv.RefuseUsage("no time-zone database found (install tzdata or set TZDIR to its folder)");
    std::sort(ids.begin(), ids.end());
    for (const std::string& id : ids) inv.Out() += id + "\n";
    return kOk;
}

namespace {

const PositionalSpec kZoneArgument = {
    "ZONE", "a zone id of the system's database such as Europe/Berlin (orvcal zones lists them), or local"};
const PositionalSpec kFromArgument = {
    "FROM", "where the span starts: TEXT, read in ZONE without Z or an offset, or a year such as 2024, from its "
            "1 January 00:00 (default: this year in ZONE)"};
const PositionalSpec kToArgument = {
    "TO", "where the span ends, not included: TEXT, or a year, up to its end (default: a year after FROM)"};

// An end of the span into out: a bare year (four digits) is 1 January 00:00 of it in
// zone, or with pastYear of the year after; other text as TEXT. kOk, or the refusal's status.
int ReadBound(Invocation& inv, std::string_view what, std::string_view text, const Zone& zone, bool pastYear,
              DateTime* out)
{
    const bool year = text.size() == 4 && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!year) return ReadDateTime(inv, what, text, zone, "ZONE", InstantText::kReadInZone, out);
    const OrvInt y = ((text[0] - '0') * 10 + (text[1] - '0')) * 100 + (text[2] - '0') * 10 + (text[3] - '0');
    if (OrvDateTimeConstructFields(out->get(), y + (pastYear ? 1 : 0), 1, 1, 0, 0, 0, 0, zone.get()) == nullptr)
        return inv.Refuse(what, text, "a year whose start " + zone.name() + " can place");
    out->Adopt();
    return kOk;
}

// The ISO 8601 text of the instant t plus offset as a reading without a zone, or "?"
// when it cannot be written (outside the range of values).
std::string LocalReading(OrvTime t, OrvTime offset)
{
    OrvTime local = 0;
    OrvDateTime d;
    if (__builtin_add_overflow(t, offset, &local) || OrvDateTimeConstruct(&d, local, nullptr) == nullptr) return "?";
    const std::optional<std::string> text = IsoOf(&d);
    OrvDateTimeDestruct(&d);
    return text ? *text : "?";
}

std::string Abbreviation(const char* a) { return a != nullptr ? a : "?"; }

} // namespace

int RunTransitions(Invocation& inv)
{
    const Usage usage{
        .positionals = {kZoneArgument, kFromArgument, kToArgument},
        .options = {},
        .notes = "One line per change of the local time type from FROM to TO: the instant in UTC, what clocks "
                 "read at that instant before and after the change (02:00 to 03:00 when they skip an hour), the "
                 "offsets, the abbreviations and whether daylight-saving time is in force.\n"
                 "Example: orvcal transitions Europe/Berlin 2020 2024",
        .optionalPositionals = 2,
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    std::string expected;
    if (!ParseZoneArg(inv.Positional(0), &zone, &expected)) return inv.Refuse("ZONE", inv.Positional(0), expected);
    const OrvTimezone* tz = zone.get();
    if (!OrvTzdbTimezoneIs(tz))
        return inv.Refuse("ZONE", inv.Positional(0),
                          std::string(kZoneArgument.help) + "; UTC and fixed offsets never change");

    DateTime from;
    if (inv.PositionalCount() >= 2) {
        if (int status = ReadBound(inv, "FROM", inv.Positional(1), zone, false, &from); status != kOk) return status;
    } else {
        DateTime now;
        if (OrvDateTimeConstructNow(now.get(), tz) == nullptr) return inv.Internal("cannot read the clock");
        now.Adopt();
        if (OrvDateTimeConstructFields(from.get(), now.get()->year, 1, 1, 0, 0, 0, 0, tz) == nullptr)
            return inv.Internal("cannot place this year's start");
        from.Adopt();
    }
    DateTime to;
    if (inv.PositionalCount() == 3) {
        if (int status = ReadBound(inv, "TO", inv.Positional(2), zone, true, &to); status != kOk) return status;
    } else {
        OrvDateTimeConstructCopy(to.get(), from.get());
        to.Adopt();
        if (!OrvDateTimeAddToField(to.get(), ORV_DATETIMEFIELD_Year, 1)) return inv.Internal("cannot add a year");
    }
    const OrvTime start = OrvDateTimeGetWallTime(from.get());
    const OrvTime end = OrvDateTimeGetWallTime(to.get());
    const std::string_view fromText = inv.PositionalCount() >= 2 ? inv.Positional(1) : "";
    const std::string_view toText = inv.PositionalCount() == 3 ? inv.Positional(2) : "";
    if (start == ORV_TIME_INVALID)
        return inv.Refuse("FROM", fromText, "a time from 1677-09-21 to 2262-04-11 (others have no instant)");
    if (end == ORV_TIME_INVALID && toText.empty())
        return inv.Refuse("FROM", fromText, "a time a year or more before 2262-04-11 when TO is left out");
    if (end == ORV_TIME_INVALID)
        return inv.Refuse("TO", toText, "a time from 1677-09-21 to 2262-04-11 (a year as TO takes in all of it)");
    if (end <= start) return inv.Refuse("TO", toText, "a time after FROM");

    // Cells first, then the columns padded to their widest cell.
    std::vector<std::array<std::string, 6>> rows = {
        {"instant (UTC)", "local before", "local after", "offset", "abbreviation", "daylight saving"}};
    OrvTzdbTransition tr;
    for (OrvTime t = start == INT64_MIN ? start : start - 1; OrvTzdbTimezoneNextTransition(tz, t, &tr) && tr.instant < end;
         t = tr.instant) {
        OrvDateTime utc;
        std::optional<std::string> instant;
        if (OrvDateTimeConstruct(&utc, tr.instant, OrvFixedTimezoneGetUTC()) != nullptr) {
            instant = IsoOf(&utc);
            OrvDateTimeDestruct(&utc);
        }
        rows.push_back({instant ? *instant : "?", LocalReading(tr.instant, tr.offsetBefore),
                        LocalReading(tr.instant, tr.offsetAfter),
                        FormatOffset(tr.offsetBefore) + " -> " + FormatOffset(tr.offsetAfter),
                        Abbreviation(tr.abbreviationBefore) + " -> " + Abbreviation(tr.abbreviationAfter),
                        std::string(tr.isDstBefore ? "yes" : "no") + " -> " + (tr.isDstAfter ? "yes" : "no")});
    }
    const std::optional<std::string> fromIso = IsoOf(from.get());
    const std::optional<std::string> toIso = IsoOf(to.get());
    if (!fromIso || !toIso) return inv.Internal("cannot write the ISO 8601 form");
    const std::size_t count = rows.size() - 1;
    inv.Out() += zone.name() + " from " + *fromIso + " to " + *toIso + ": " +
                 (count == 0 ? std::string("no transitions") : std::to_string(count) + (count == 1 ? " transition" : " transitions")) +
                 "\n";
    if (count == 0) return kOk;
    std::array<std::size_t, 6> width{};
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) width[i] = std::max(width[i], row[i].size());
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line.append(width[i] - row[i].size() + 2, ' ');
        }
        inv.Out() += line + "\n";
    }
    return kOk;
}

} // namespace orvcal
