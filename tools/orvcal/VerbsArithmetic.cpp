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
        .options = {kZoneOption},
        .notes = "TEXT without Z is read in the --zone given; without one the value is floating.\n"
                 "Time fields (nanosecond to hour) count elapsed time; date fields keep the wall-clock reading, "
                 "and a day that does not exist carries into the next month.\n"
                 "Example: orvcal add 20230131T000000 month 1   gives 20230303T000000",
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    DateTime value;
    if (int status = ReadDateTime(inv, "TEXT", inv.Positional(0), zone, "--zone", &value); status != kOk)
        return status;
    const std::optional<OrvDateTimeField> field = ParseFieldName(inv.Positional(1));
    if (!field) return inv.Refuse("FIELD", inv.Positional(1), kFieldNames);
    const std::optional<OrvInt> amount = ParseInt32(inv.Positional(2));
    if (!amount) return inv.Refuse("AMOUNT", inv.Positional(2), kAmountArgument.help);

    if (!OrvDateTimeAddToField(value.get(), *field, *amount))
        return inv.Refuse("AMOUNT", inv.Positional(2), "an amount whose result the zone can place");
    const std::optional<std::string> text = TextOf(value.get());
    if (!text) return inv.Internal("cannot write the text form");
    inv.Out() += *text + "\n";
    return kOk;
}

} // namespace orvcal
