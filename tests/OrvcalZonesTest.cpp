// orvcal with zones of the system database: --zone ids and local, and the zones verb,
// driven as a process (status, stdout, stderr). Unknown ids are refused among the
// tool's other bad input in OrvcalToolTest.
#include "support/ToolRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using orv::test::Join;
using orv::test::ToolRun;

ToolRun Orvcal(const std::vector<std::string>& args, const std::vector<std::string>& env = {})
{
    return orv::test::RunTool(ORVCAL_PATH, args, {}, env);
}

bool HaveDatabase()
{
    const char* dir = std::getenv("TZDIR");
    const std::string root = (dir != nullptr && dir[0] != '\0') ? dir : "/usr/share/zoneinfo";
    return access((root + "/Europe/Berlin").c_str(), R_OK) == 0;
}

// Status 0 with exactly `want` on stdout, or status 2 with `want` in the one line on stderr.
TEST(OrvcalZones, ZoneIdsAndLocal)
{
    if (!HaveDatabase()) GTEST_SKIP() << "no time-zone database (install tzdata)";
    struct Case {
        std::vector<std::string> args;
        std::vector<std::string> env;
        int status;
        const char* want;
    };
    const Case cases[] = {
        {{"convert", "20240501T093000Z", "--zone", "America/New_York"}, {}, 0, "2024-05-01T05:30:00-04:00\n"},
        {{"convert", "20240115T093000Z", "--zone", "Europe/Berlin"}, {}, 0, "2024-01-15T10:30:00+01:00\n"},
        {{"convert", "20240501T093000Z", "--zone", "Asia/Kathmandu"}, {}, 0, "2024-05-01T15:15:00+05:45\n"},
        // 02:30 occurs twice in Berlin that night: read as its first occurrence (+02:00).
        {{"convert", "20241027T023000", "--from", "Europe/Berlin", "--zone", "UTC"}, {}, 0, "2024-10-27T00:30:00Z\n"},
        {{"convert", "20240501T093000Z", "--zone", "local"}, {"TZ=Asia/Tokyo"}, 0, "2024-05-01T18:30:00+09:00\n"},
        {{"convert", "20240501T093000Z", "--zone", "local"}, {"TZ=<+0530>-5:30"}, 0, "2024-05-01T15:00:00+05:30\n"},
        // The first occurrence of the repeated hour, and an hour later the second.
        {{"add", "20241103T013000", "hour", "1", "--zone", "America/New_York"}, {}, 0,
         "2024-11-03T01:30:00-04:00 -> 2024-11-03T01:30:00-05:00\n"},
        {{"now", "--format", "%Z %z"}, {"TZ=Asia/Tokyo"}, 0, "JST +0900\n"},
        {{"transitions", "Europe/Berlin", "2024"}, {}, 0,
         "Europe/Berlin from 2024-01-01T00:00:00+01:00 to 2025-01-01T00:00:00+01:00: 2 transitions\n"
         "instant (UTC)         local before         local after          offset            abbreviation  "
         "daylight saving\n"
         "2024-03-31T01:00:00Z  2024-03-31T02:00:00  2024-03-31T03:00:00  +01:00 -> +02:00  CET -> CEST   no -> yes\n"
         "2024-10-27T01:00:00Z  2024-10-27T03:00:00  2024-10-27T02:00:00  +02:00 -> +01:00  CEST -> CET   yes -> no\n"},
        // FROM is in the span, TO is not; text in ZONE or with its own offset.
        {{"transitions", "America/New_York", "2024-03-10T07:00:00Z", "2024-11-03T01:00-05:00"}, {}, 0,
         "America/New_York from 2024-03-10T03:00:00-04:00 to 2024-11-03T01:00:00-05:00: 1 transition\n"
         "instant (UTC)         local before         local after          offset            abbreviation  "
         "daylight saving\n"
         "2024-03-10T07:00:00Z  2024-03-10T02:00:00  2024-03-10T03:00:00  -05:00 -> -04:00  EST -> EDT    no -> yes\n"},
        {{"transitions", "Asia/Tokyo", "2000", "2010"}, {}, 0,
         "Asia/Tokyo from 2000-01-01T00:00:00+09:00 to 2011-01-01T00:00:00+09:00: no transitions\n"},
        {{"show", "20240310T023000", "--zone", "America/New_York"}, {}, 2, "America/New_York: its clocks skip"},
        {{"transitions", "Europe/Berlin", "2025", "2024"}, {}, 2, "TO '2024': expected a time after FROM"},
        {{"transitions", "Europe/Berlin", "3000"}, {}, 2, "FROM '3000': expected a time from 1677-09-21"},
        {{"transitions", "Europe/Berlin", "2024-13-01T00:00"}, {}, 2, "'13' at character 6 is out of range"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Orvcal(c.args, c.env);
        EXPECT_EQ(r.status, c.status) << Join(c.args) << "\n" << r.err;
        if (c.status == 0) {
            EXPECT_EQ(r.out, c.want) << Join(c.args);
            EXPECT_EQ(r.err, "") << Join(c.args);
        } else {
            EXPECT_EQ(r.out, "") << Join(c.args);
            EXPECT_NE(r.err.find(c.want), std::string::npos) << Join(c.args) << ": " << r.err;
            EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << Join(c.args) << ": one line: " << r.err;
        }
    }
    const ToolRun show = Orvcal({"show", "2024-07-01T12:00", "--zone", "Europe/Berlin"});
    EXPECT_EQ(show.status, 0) << show.err;
    EXPECT_NE(show.out.find("offset         +02:00 (CEST, daylight saving time)\nzone           Europe/Berlin\n"),
              std::string::npos)
        << show.out;
}

TEST(OrvcalZones, ListsTheDatabase)
{
    if (!HaveDatabase()) GTEST_SKIP() << "no time-zone database (install tzdata)";
    const ToolRun r = Orvcal({"zones"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    std::vector<std::string> ids;
    std::istringstream lines(r.out);
    for (std::string line; std::getline(lines, line);) ids.push_back(line);
    EXPECT_GT(ids.size(), 300U);
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end()));
    for (const char* id : {"Europe/Berlin", "America/Argentina/Buenos_Aires"})
        EXPECT_TRUE(std::binary_search(ids.begin(), ids.end(), id)) << id;
    for (const std::string& id : ids) ASSERT_NE(id.rfind("right/", 0), 0U) << id;

    const char* dir = std::getenv("TZDIR");
    const std::string root = (dir != nullptr && dir[0] != '\0') ? dir : "/usr/share/zoneinfo";
    const ToolRun version = Orvcal({"zones", "--version"}, {"TZDIR=" + root});
    EXPECT_EQ(version.status, 0) << version.err;
    EXPECT_EQ(version.out.rfind("version        ", 0), 0U) << version.out;
    EXPECT_NE(version.out.find("\nsource         " + root + "\n"), std::string::npos) << version.out;

    const ToolRun full = orv::test::RunTool(ORVCAL_PATH, {"zones"}, {}, {}, orv::test::Stdout::kDevFull);
    EXPECT_EQ(full.status, 3) << full.err;

    const ToolRun missing = Orvcal({"zones"}, {"TZDIR=/nonexistent/zoneinfo"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.out, "");
    EXPECT_NE(missing.err.find("TZDIR"), std::string::npos) << missing.err;
}

} // namespace
