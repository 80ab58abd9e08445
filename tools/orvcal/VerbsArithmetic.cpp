// Verbs that change a date-time: add.
#include "Commands.h"
#include "Common.h"

namespace orvcal {

namespace {

const PositionalSpec kAmountArgument = {"AMOUNT", "a whole number from -2147483648 to 2147483647, negative to go back"};

} // namespace

int RunAdd(Invocation& inv)
{
    const Usage usage{
        .positionals = {kTextArgument, {"FIELD", kFieldNames}, kAmountArgument},
        .options = {kZoneOption, kFormatOption},
        .notes = "TEXT without Z or an offset is read in the --zone given; without one the value is floating. TEXT "
                 "with Z or an offset names an instant, read in the --zone given.\n"
                 "Time fields (nanosecond to hour) count elapsed time; date fields keep the wall-clock reading, "
                 "and a day that does not exist carries into the next month.\n"
                 "Writes the value before and after in ISO 8601 with their offsets, so that the two readings of a "
                 "repeated hour can be told apart; with --format, only the result through the pattern.\n"
                 "Example: orvcal add 20230131T000000 month 1   ends in -> 2023-03-03T00:00:00",
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), zone, "--zone", InstantText::kReadInZone, &value);
        status != kOk)
        return status;
    const std::optional<OrvDateTimeField> field = ParseFieldName(inv.Positional(1));
    if (!field) return inv.Refuse("FIELD", inv.Positional(1), kFieldNames);
    const std::optional<OrvInt> amount = ParseInt32(inv.Positional(2));
    if (!amount) return inv.Refuse("AMOUNT", inv.Positional(2), kAmountArgument.help);

    const std::optional<std::string> before = IsoOf(value.get());
    if (!before) return inv.Internal("cannot write the ISO 8601 form");
    if (!OrvDateTimeAddToField(value.get(), *field, *amount))
        return inv.Refuse("AMOUNT", inv.Positional(2), "an amount whose result the zone can place");
    std::string after;
    if (int status = WriteDateTime(inv, value.get(), &after); status != kOk) return status;
    inv.Out() += (inv.Option("--format") != nullptr ? after : *before + " -> " + after) + "\n";
    return kOk;
}

} // namespace orvcal
