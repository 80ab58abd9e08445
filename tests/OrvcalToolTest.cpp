// Drives the orvcal binary as a process: what it writes to stdout and stderr and the
// exit status, for good input, bad input, --help and output that cannot be written.
#include "support/ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using orv::test::Join;
using orv::test::Stdout;
using orv::test::ToolRun;

ToolRun Orvcal(const std::vector<std::string>& args) { return orv::test::RunTool(ORVCAL_PATH, args); }

// Successful runs: status 0, nothing on stderr, and either exactly the one line `exact`
// or output containing each of `lines`.
TEST(Orvcal, Results)
{
    struct Case {
        std::vector<std::string> args;
        const char* exact;
        std::vector<const char*> lines;
    };
    const Case cases[] = {
        {{"add", "20230131T000000", "month", "1"}, "2023-01-31T00:00:00 -> 2023-03-03T00:00:00\n", {}},
        {{"add", "20241231T235959Z", "second", "1"}, "2024-12-31T23:59:59Z -> 2025-01-01T00:00:00Z\n", {}},
        {{"add", "2024-05-01T23:30", "hour", "1", "--zone", "+05:30"},
         "2024-05-01T23:30:00+05:30 -> 2024-05-02T00:30:00+05:30\n", {}},
        {{"add", "20240301T000000", "week", "-1", "--format", "%G-W%V-%u %j"}, "2024-W08-5 054\n", {}},
        {{"add", "2024-03-01 00:00:00.5-03:00", "--", "day", "-1"},
         "2024-03-01T00:00:00.5-03:00 -> 2024-02-29T00:00:00.5-03:00\n", {}},
        {{"convert", "20240501T093000Z", "--zone", "+05:30"}, "2024-05-01T15:00:00+05:30\n", {}},
        {{"convert", "2024-05-01T09:30:00+02:00", "--zone=-04:00"}, "2024-05-01T03:30:00-04:00\n", {}},
        {{"convert", "20240501t093000z", "--zone", "utc", "--format", "%d %b %Y %T %Z"}, "01 May 2024 09:30:00 UTC\n", {}},
        {{"convert", "20240501T093000", "--from", "+0530", "--zone", "UTC"}, "2024-05-01T04:00:00Z\n", {}},
        {{"convert", "20240101T003000", "--from", "+01", "--zone", "-00:30"}, "2023-12-31T23:00:00-00:30\n", {}},
        {{"show", "20240501T093000Z"}, nullptr,
         {"text           2024-05-01T09:30:00Z\n", "date           2024-05-01\n", "time           09:30:00.000000000\n",
          "day of week    WE\n", "week of year   18 (of 2024)\n", "week of month  1\n", "day of year    122\n",
          "instant        1714555800000000000 ns", "offset         +00:00\n", "zone           UTC\n",
          "floating       no\n"}},
        // Text that names its instant is shown as read in the zone given.
        {{"show", "20240501T093000Z", "--zone", "+01:00", "--format", "%H:%M %z"}, nullptr,
         {"text           2024-05-01T10:30:00+01:00\n", "formatted      10:30 +0100\n", "zone           +01:00\n"}},
        {{"show", "20240501T093000"}, nullptr,
         {"offset         none (floating)\n", "zone           none\n", "floating       yes\n",
          "instant        1714555800000000000 ns"}},
        {{"show", "20240501T093000", "--zone", "-04:00"}, nullptr,
         {"instant        1714570200000000000 ns", "offset         -04:00\n", "zone           -04:00\n"}},
        {{"show", "00010101T000000Z"}, nullptr, {"date           0001-01-01\n", "instant        none"}},
        {{"week", "20241230T000000"}, nullptr,
         {"day of week    MO\n", "week of year   1 (of 2025)\n", "week of month  5\n", "day of year    365\n"}},
        {{"week", "2027-01-01T00:00"}, nullptr, {"week of year   53 (of 2026)\n", "week of month  0\n"}},
        {{"week", "20270101T000000", "--first", "su", "--min", "1"}, nullptr,
         {"week rule      weeks start on SU, week 1 has at least 1 day\n", "week of year   1 (of 2027)\n",
          "week of month  1\n"}},
        {{"show", "20240107T000000", "--min=7", "--first=SU"}, nullptr, {"week of year   1 (of 2024)\n"}},
        {{"now", "--zone", "UTC", "--format", "%Z"}, "UTC\n", {}},
        {{"now", "--zone", "-03:30"}, nullptr, {"-03:30\n"}},
        {{}, nullptr,
         {"Text form", "Zones, offsets and instants", "Fields and week numbers", "Additions", "Weekday codes",
          "20230303T000000\n"}},
        {{"--help"}, nullptr,
         {"usage: orvcal", "  show ", "  convert ", "  add ", "  week ", "  now ", "  sort ", "  zones ", "  transitions ",
          "exit status:\n  0  "}},
    };
    for (const Case& c : cases) {
        const ToolRun r = Orvcal(c.args);
        EXPECT_EQ(r.status, 0) << Join(c.args) << "\n" << r.err;
        EXPECT_EQ(r.err, "") << Join(c.args);
        if (c.exact != nullptr) {
            EXPECT_EQ(r.out, c.exact) << Join(c.args);
        }
        for (const char* line : c.lines) {
            EXPECT_NE(r.out.find(line), std::string::npos) << Join(c.args) << ": " << line << "\n" << r.out;
        }
    }
}

TEST(Orvcal, EveryVerbHasHelp)
{
    for (const std::string verb : {"show", "convert", "add", "week", "now", "sort", "zones", "transitions"}) {
        for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
                 {verb, "--help"}, {verb, "20240501T093000", "--bogus", "-h"}, {"help", verb}}) {
            const ToolRun r = Orvcal(args);
            EXPECT_EQ(r.status, 0) << Join(args);
            EXPECT_EQ(r.out.rfind("usage: orvcal " + verb, 0), 0u) << Join(args) << "\n" << r.out;
            EXPECT_NE(r.out.find("--help"), std::string::npos) << Join(args);
            EXPECT_EQ(r.err, "") << Join(args);
        }
    }
}

// Bad input: status 2, nothing on stdout, one line on stderr that names the argument
// and says what was expected; echoed input is escaped and cut.
TEST(Orvcal, RefusesBadInputWithOneLine)
{
    struct Case {
        std::vector<std::string> args;
        std::vector<std::string> mentions;
    };
    const Case cases[] = {
        {{"frob"}, {"'frob'", "show, convert, add, week"}},
        {{"fr\tob\x01\xff\\"}, {"'fr\\tob\\x01\\xFF\\\\'"}},
        {{"show", std::string(100, '9')}, {"TEXT '" + std::string(40, '9') + "...': ", "(got 100)"}},
        {{"show"}, {"missing TEXT"}},
        {{"show", "a", "b"}, {"unexpected argument 'b'"}},
        {{"show", "20240501"}, {"TEXT '20240501'", "ends after character 8"}},
        {{"show", "20240501X093000"}, {"upper-case T"}},
        {{"show", "202x0501T093000"}, {"digits for the year", "'x' at character 4"}},
        {{"show", "20240230T000000"}, {"TEXT '20240230T000000'", "exist", "'30' at character 7"}},
        {{"show", "20240501T240000Z"}, {"hour 00-23", "'24' at character 10"}},
        {{"show", "2024-05-01T09:30:00+02:00x"}, {"'x' at character 26 does not fit"}},
        {{"show", "2024-05-01T09:30+24:00"}, {"offset up to 23:59:59", "character 17"}},
        {{"show", "20240501T093000", "--zone", "Mars"}, {"--zone 'Mars'", "+05:30"}},
        {{"show", "20240501T093000", "--zone", "+24:00"}, {"--zone '+24:00'"}},
        {{"show", "20240501T093000", "--zone", "+05:60"}, {"--zone '+05:60'"}},
        {{"show", "20240501T093000", "--zone"}, {"--zone needs a value"}},
        {{"show", "20240501T093000", "--zone", "UTC", "--zone", "UTC"}, {"--zone given twice"}},
        {{"convert", "2024-05-01T09:30Z", "--from", "+01:00", "--zone", "UTC"}, {"--from '+01:00'", "names its instant"}},
        {{"add", "20240501T093000", "day", "1", "--format", "%Y%Q"}, {"--format '%Y%Q'", "known conversions"}},
        {{"transitions", "+05:30"}, {"ZONE '+05:30'", "never change"}},
        {{"show", "20240501T093000", "--bogus"}, {"unknown option '--bogus'", "--zone"}},
        {{"convert", "20240501T093000Z"}, {"missing --zone ZONE (expected UTC", "America/New_York"}},
        {{"convert", "00010101T000000Z", "--zone", "UTC"}, {"TEXT '00010101T000000Z'", "1677-09-21"}},
        {{"convert", "20240501T093000", "--zone", "UTC", "--from", "x"}, {"--from 'x'"}},
        // Ids of no zone, or leading out of the database, whether there is one or not.
        {{"convert", "20240501T093000Z", "--zone", "Nowhere/Zone"}, {"--zone 'Nowhere/Zone'", "orvcal zones"}},
        {{"convert", "20240501T093000Z", "--zone", "../etc/passwd"}, {"--zone '../etc/passwd'", "orvcal zones"}},
        {{"convert", "20240501T093000Z", "--zone", "/etc/localtime"}, {"--zone '/etc/localtime'"}},
        {{"convert", "20240501T093000Z", "--zone", "zone.tab"}, {"--zone 'zone.tab'"}},
        {{"add", "20240501T093000", "fortnight", "1"}, {"FIELD 'fortnight'", "month"}},
        {{"add", "20240501T093000", "day", "1.5"}, {"AMOUNT '1.5'", "whole number"}},
        {{"add", "20240501T093000", "day", "2147483648"}, {"AMOUNT '2147483648'"}},
        {{"add", "20240501T093000", "day"}, {"missing AMOUNT"}},
        {{"week", "20240501T093000", "--first", "SUN"}, {"--first 'SUN'", "SU, MO"}},
        {{"week", "20240501T093000", "--min", "0"}, {"--min '0'", "1 to 7"}},
        {{"sort", "/nonexistent/dates.txt"}, {"FILE '/nonexistent/dates.txt'"}},
        {{"sort", "--reverse=yes"}, {"--reverse takes no value"}},
    };
    for (const Case& c : cases) {
        const ToolRun r = Orvcal(c.args);
        EXPECT_EQ(r.status, 2) << Join(c.args);
        EXPECT_EQ(r.out, "") << Join(c.args);
        EXPECT_EQ(r.err.rfind("orvcal", 0), 0u) << r.err;
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << Join(c.args) << ": one line: " << r.err;
        for (const std::string& m : c.mentions) EXPECT_NE(r.err.find(m), std::string::npos) << Join(c.args) << ": " << r.err;
    }
}

// Every verb, the tour and --help: a failed write gives one line on stderr and status 3;
// a reader that has gone (a closed pipe) ends the output quietly with the usual status.
TEST(Orvcal, WriteFailures)
{
    const std::vector<std::string> runs[] = {
        {}, {"--help"}, {"sort", "--help"}, {"show", "20240501T093000Z"}, {"convert", "20240501T093000Z", "--zone", "UTC"},
        {"add", "20230131T000000", "month", "1"}, {"week", "20241230T000000"}, {"sort"}, {"now"},
        {"zones", "--version"}};
    for (const std::vector<std::string>& args : runs) {
        const ToolRun full = orv::test::RunTool(ORVCAL_PATH, args, "20240101T000000Z\n", {}, Stdout::kDevFull);
        EXPECT_EQ(full.status, 3) << Join(args);
        EXPECT_NE(full.err.find("cannot write the output: No space left on device\n"), std::string::npos) << full.err;
        EXPECT_EQ(full.err.find('\n'), full.err.size() - 1) << Join(args) << ": one line: " << full.err;
        const ToolRun closed = orv::test::RunTool(ORVCAL_PATH, args, "20240101T000000Z\n", {}, Stdout::kClosedPipe);
        EXPECT_EQ(closed.status, 0) << Join(args);
        EXPECT_EQ(closed.err, "") << Join(args);
    }
    // Lines refused before the output was cut short still count.
    const ToolRun closed = orv::test::RunTool(ORVCAL_PATH, {"sort"}, "x\n", {}, Stdout::kClosedPipe);
    EXPECT_EQ(closed.status, 1);
    EXPECT_NE(closed.err.find("skipped 1 bad line of 1\n"), std::string::npos) << closed.err;
}

} // namespace
