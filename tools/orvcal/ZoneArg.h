// Zones named on the command line. ParseZoneArg is the one place that turns a zone
// argument into an OrvTimezone; every verb's --zone goes through it.
#ifndef ORVCAL_ZONEARG_H
#define ORVCAL_ZONEARG_H

#include "Invocation.h"

#include "Orv/Calendar/OrvTimezone.h"

#include <string>
#include <string_view>

namespace orvcal {

// A zone given on the command line, or none. Holds one reference to its zone and
// drops it when destroyed.
class Zone {
public:
    Zone() = default;
    ~Zone();
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

    // The zone, or null when none was given (values are then floating).
    const OrvTimezone* get() const { return held_ ? &tz_ : nullptr; }
    // How the zone is written in output: "UTC", "+05:30", "Europe/Berlin".
    const std::string& name() const { return name_; }

private:
    friend bool ParseZoneArg(std::string_view text, Zone* out, std::string* expected);
    OrvTimezone tz_{};
    bool held_ = false;
    std::string name_;
};

// What ParseZoneArg accepts, for help texts and refusals.
extern const char* const kZoneArgForms;

// Turns text into a zone: "UTC" (any case) is the library's global UTC zone; a fixed
// offset is a sign and hours, optionally with minutes, as +05:30, -04:00, +0530 or +05
// (hours 0 to 23, minutes 0 to 59); any other text is a zone id of the system's
// time-zone database ("Europe/Berlin"), and "local" is the system's own zone. False,
// with *expected saying what is accepted, for anything else; out is then unchanged.
bool ParseZoneArg(std::string_view text, Zone* out, std::string* expected);

// Reads the option `option` (for example "--zone") into out when it was given.
// kOk, or the refusal's status.
int ReadZoneOption(Invocation& inv, std::string_view option, Zone* out);

} // namespace orvcal

#endif
