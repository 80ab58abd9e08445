// Pieces the verbs share: the shared arguments and options, a held date-time value,
// reading TEXT in the compact form or ISO 8601 (the one place that puts the library's
// reason for a refusal into words), writing values (ISO 8601 or --format), field
// names, whole numbers and week rules.
#ifndef ORVCAL_COMMON_H
#define ORVCAL_COMMON_H

#include "Invocation.h"
#include "ZoneArg.h"

#include "Orv/Calendar/OrvDateTime.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvcal {

// The forms TEXT takes, for help texts and refusals.
extern const char* const kTextForms;

// The arguments and options that more than one verb takes, each described once.
extern const PositionalSpec kTextArgument; // TEXT
extern const OptionSpec kZoneOption;       // --zone ZONE
extern const OptionSpec kFromOption;       // --from ZONE
extern const OptionSpec kFirstOption;      // --first DAY
extern const OptionSpec kMinOption;        // --min N
extern const OptionSpec kFormatOption;     // --format PATTERN

// A date-time value that is destructed with its holder once it has been built.
class DateTime {
public:
    DateTime() = default;
    ~DateTime();
    DateTime(const DateTime&) = delete;
    DateTime& operator=(const DateTime&) = delete;

    OrvDateTime* get() { return &d_; }
    const OrvDateTime* get() const { return &d_; }
    // Call after a constructor succeeded on get().
    void Adopt() { held_ = true; }
    // Destructs a value built before, so that get() can be built again.
    void Reset();

private:
    OrvDateTime d_{};
    bool held_ = false;
};

// What a zone given on the command line does to a text that names its instant itself
// (it ends in Z or carries an offset); a text without either is always read in the zone.
enum class InstantText {
    kReadInZone, // the instant is read in the zone (show, add: "that moment, there")
    kRefuseZone, // the zone is refused: it says how to read a text that needs no help (--from)
    kUtc,        // the instant is kept in UTC, whatever the zone (sort: its form has no offsets)
};

// Builds out from the text of argument `what` ("TEXT"): the compact form first, then
// ISO 8601. A text without Z or an offset is read in zone (floating when zone holds
// none); one with either meets the zone as rule says, zoneOption naming the zone's
// option in a refusal. A refusal names the reason and points at its character.
// kOk, or the refusal's status.
int ReadDateTime(Invocation& inv, std::string_view what, std::string_view text, const Zone& zone,
                 std::string_view zoneOption, InstantText rule, DateTime* out);

// Builds out from an input line as sort reads it (InstantText::kUtc). The line may be
// the start of a longer one whose length is `length`. kOk, or the refusal's status (the
// refusal names "line N").
int ReadDateTimeLine(Invocation& inv, std::size_t lineNumber, std::string_view line, std::size_t length,
                     const Zone& zone, DateTime* out);

// The compact form of d ("20240501T093000Z"), without Z for a value outside the UTC
// zone, floating or not, or nothing when the string cannot grow.
std::optional<std::string> TextOf(const OrvDateTime* d);

// The ISO 8601 form of d with its offset ("2024-05-01T09:30:00+02:00", Z in UTC, no
// offset when floating), fraction digits only as needed, or nothing on failure.
std::optional<std::string> IsoOf(const OrvDateTime* d, int fractionDigits = -1);

// d as --format asks (the ISO 8601 form without the option) into *text. kOk, or the
// refusal's status (an unknown conversion in the pattern) or kInternalError.
int WriteDateTime(Invocation& inv, const OrvDateTime* d, std::string* text);

// How show names d's zone: "none" when floating, "UTC", a database id, or the offset
// of a fixed zone.
std::string ZoneNameOf(const OrvDateTime* d);

// An offset in nanoseconds as "+05:30", with seconds and nanoseconds only when
// they are not 0.
std::string FormatOffset(OrvTime offset);
// "2024-05-01" and "09:30:00.000000000" from the stored fields.
std::string FormatDate(const OrvDateTime* d);
std::string FormatTime(const OrvDateTime* d);
// The two-letter code of a weekday, "??" outside Sunday..Saturday.
std::string WeekdayCode(OrvInt weekday);

// Field names as the add verb takes them ("month", "day-of-year", "days"), and their list.
std::optional<OrvDateTimeField> ParseFieldName(std::string_view name);
extern const char* const kFieldNames;

// A whole number from -2147483648 to 2147483647 in decimal, with an optional sign.
std::optional<OrvInt> ParseInt32(std::string_view text);

// Applies --first (a weekday code) and --min (1 to 7) to d when they were given.
// kOk, or the refusal's status.
int ReadWeekRule(Invocation& inv, OrvDateTime* d);

} // namespace orvcal

#endif
