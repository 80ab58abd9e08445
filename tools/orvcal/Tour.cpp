// What orvcal shows without arguments: each capability of the library in a few lines,
// on built-in sample date-times.
#include "Commands.h"
#include "Common.h"

#include "Orv/Calendar/OrvFixedTimezone.h"
#include "Orv/Os/OrvTime.h"

namespace orvcal {

namespace {

// Writes "  left" padded to a column, then right.
void Row(std::string& out, std::string_view left, std::string_view right)
{
    std::string cell = "  " + std::string(left);
    cell.resize(cell.size() < 38 ? 38 : cell.size() + 1, ' ');
    out += cell + std::string(right) + "\n";
}

// Builds a sample from text in zone (floating without one); false on failure.
bool Sample(DateTime* out, const char* text, const OrvTimezone* zone = nullptr)
{
    if (OrvDateTimeConstructCStr(out->get(), text, zone) == nullptr) return false;
    out->Adopt();
    return true;
}

bool FixedZone(Zone* out, const char* arg)
{
    std::string expected;
    return ParseZoneArg(arg, out, &expected);
}

bool TextForm(std::string& out)
{
    out += "Text form: YYYYMMDDTHHMMSS, with a Z for UTC\n";
    DateTime utc;
    DateTime floating;
    if (!Sample(&utc, "20240501T093000Z") || !Sample(&floating, "20240501T093000")) return false;
    Row(out, "20240501T093000Z", "UTC, instant " + std::to_string(OrvDateTimeGetWallTime(utc.get())) + " ns");
    Row(out, "20240501T093000", "floating: no zone, no offset; its instant reads it as UTC");
    for (const char* bad : {"20240230T000000Z", "20240501T240000Z"}) {
        OrvDateTime d;
        if (OrvDateTimeConstructCStr(&d, bad, nullptr) != nullptr) {
            OrvDateTimeDestruct(&d);
            return false;
        }
    }
    Row(out, "20240230T000000Z, ...T240000Z", "refused: 30 February and hour 24 do not exist");
    return true;
}

bool Zones(std::string& out)
{
    out += "\nZones, offsets and instants\n";
    Zone india;
    Zone plusTwo;
    Zone minusFour;
    if (!FixedZone(&india, "+05:30") || !FixedZone(&plusTwo, "+02:00") || !FixedZone(&minusFour, "-04:00"))
        return false;
    DateTime utc;
    if (!Sample(&utc, "20240501T093000Z")) return false;
    DateTime there;
    if (OrvDateTimeConstruct(there.get(), OrvDateTimeGetWallTime(utc.get()), india.get()) == nullptr) return false;
    there.Adopt();
    const std::optional<std::string> thereText = TextOf(there.get());
    if (!thereText) return false;
    Row(out, "20240501T093000Z read in +05:30", *thereText + ", offset " + FormatOffset(OrvDateTimeGetOffset(there.get())));

    DateTime moved;
    if (!Sample(&moved, "20240701T120000", plusTwo.get())) return false;
    const OrvTime before = OrvDateTimeGetWallTime(moved.get());
    if (!OrvDateTimeSetTimezone(moved.get(), minusFour.get())) return false;
    const OrvTime after = OrvDateTimeGetWallTime(moved.get());
    const std::optional<std::string> movedText = TextOf(moved.get());
    if (!movedText) return false;
    Row(out, "20240701T120000 at +02:00 to -04:00",
        "still " + *movedText + ", instant " + std::to_string((after - before) / ORV_TIME_NANOSECONDS_PER_HOUR) +
            " h later");
    return true;
}

bool Weeks(std::string& out)
{
    out += "\nFields and week numbers\n";
    DateTime d;
    if (!Sample(&d, "20270101T120000")) return false;
    auto describe = [&d]() {
        const OrvDateTime* v = d.get();
        return WeekdayCode(OrvDateTimeGetField(v, ORV_DATETIMEFIELD_DayOfWeek)) + ", week " +
               std::to_string(OrvDateTimeGetField(v, ORV_DATETIMEFIELD_WeekOfYear)) + " of the year, week " +
               std::to_string(OrvDateTimeGetField(v, ORV_DATETIMEFIELD_WeekOfMonth)) + " of the month, day " +
               std::to_string(OrvDateTimeGetField(v, ORV_DATETIMEFIELD_DayOfYear));
    };
    Row(out, "20270101T120000, weeks MO/4 (ISO)", describe());
    if (!OrvDateTimeSetFirstDayOfWeek(d.get(), ORV_WEEKDAY_Sunday) || !OrvDateTimeSetMinimalDaysInFirstWeek(d.get(), 1))
        return false;
    Row(out, "the same, weeks SU/1", describe());
    return true;
}

bool Additions(std::string& out)
{
    out += "\nAdditions: time fields count elapsed time, date fields keep the wall clock\n";
    struct Case {
        const char* text;
        OrvDateTimeField field;
        OrvInt amount;
        const char* label;
    };
    const Case cases[] = {
        {"20230131T000000", ORV_DATETIMEFIELD_Month, 1, "20230131T000000 + 1 month"},
        {"20240229T120000", ORV_DATETIMEFIELD_Year, 1, "20240229T120000 + 1 year"},
        {"20241231T235959Z", ORV_DATETIMEFIELD_Second, 1, "20241231T235959Z + 1 second"},
        {"20240301T000000", ORV_DATETIMEFIELD_WeekOfYear, -1, "20240301T000000 - 1 week"},
    };
    for (const Case& c : cases) {
        DateTime d;
        if (!Sample(&d, c.text) || !OrvDateTimeAddToField(d.get(), c.field, c.amount)) return false;
        const std::optional<std::string> text = TextOf(d.get());
        if (!text) return false;
        Row(out, c.label, *text);
    }
    return true;
}

bool WeekdayCodes(std::string& out)
{
    out += "\nWeekday codes\n";
    OrvWeekday w;
    if (OrvWeekdayConstructCStr(&w, "we") == nullptr) return false;
    std::string all;
    for (int i = 0; i <= 6; ++i) all += (i == 0 ? "" : " ") + WeekdayCode(i);
    Row(out, "written", all);
    Row(out, "read ignoring case", "we -> " + WeekdayCode(w) + " (" + std::to_string(w) + ")");
    return true;
}

} // namespace

int RunTour(Invocation& inv)
{
    std::string& out = inv.Out();
    out += "orvcal: a short tour of OrvCalendar on built-in sample date-times.\n"
           "Run 'orvcal --help' for the commands, 'orvcal VERB --help' for one of them.\n\n";
    if (!TextForm(out) || !Zones(out) || !Weeks(out) || !Additions(out) || !WeekdayCodes(out))
        return inv.Internal("a sample failed");
    return kOk;
}

} // namespace orvcal
