// Pieces the verbs share: the shared arguments and options, a held date-time value,
// reading TEXT with an explanation of what is wrong with it (the one place that knows
// why a text is refused), field names, whole numbers, week rules, and formatting.
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

private:
    OrvDateTime d_{};
    bool held_ = false;
};

// Builds out from the text of argument `what` ("TEXT"), read in zone (floating when
// zone holds none). A text ending in Z is UTC; combined with a zone the request is
// ambiguous and refused, naming zoneOption. kOk, or the refusal's status.
int ReadDateTime(Invocation& inv, std::string_view what, std::string_view text, const Zone& zone,
                 std::string_view zoneOption, DateTime* out);

// Builds out from an input line: read in zone when it has no Z, as UTC when it ends in
// Z. The line may be the start of a longer one whose length is `length`. kOk, or the
// refusal's status (the refusal names "line N").
int ReadDateTimeLine(Invocation& inv, std::size_t lineNumber, std::string_view line, std::size_t length,
                     const Zone& zone, DateTime* out);

// The text form of d ("20240501T093000Z"), without Z for a floating value, or nothing
// when the string cannot grow.
std::optional<std::string> TextOf(const OrvDateTime* d);

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
