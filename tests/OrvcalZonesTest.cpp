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

TEST(OrvcalZones, ZoneIdsAndLocal)
{
    if (!HaveDatabase()) GTEST_SKIP() << "no time-zone database (install tzdata)";
    struct Case {
        std::vector<std::string> args;
        std::vector<std::string> env;
        const char* want;
    };
    const Case cases[] = {
        {{"convert", "20240501T093000Z", "--zone", "America/New_York"}, {}, "20240501T053000\n"},
        {{"convert", "20240115T093000Z", "--zone", "Europe/Berlin"}, {}, "20240115T103000\n"},
        {{"convert", "20240501T093000Z", "--zone", "Asia/Kathmandu"}, {}, "20240501T151500\n"},
        // 02:30 occurs twice in Berlin that night: read as its first occurrence (+02:00).
        {{"convert", "20241027T023000", "--from", "Europe/Berlin", "--zone", "UTC"}, {}, "20241027T003000Z\n"},
        {{"convert", "20240501T093000Z", "--zone", "local"}, {"TZ=Asia/Tokyo"}, "20240501T183000\n"},
        {{"convert", "20240501T093000Z", "--zone", "local"}, {"TZ=<+0530>-5:30"}, "20240501T150000\n"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Orvcal(c.args, c.env);
        EXPECT_EQ(r.status, 0) << Join(c.args) << "\n" << r.err;
        EXPECT_EQ(r.out, c.want) << Join(c.args);
        EXPECT_EQ(r.err, "") << Join(c.args);
    }
    const ToolRun show = Orvcal({"show", "20240701T120000", "--zone", "Europe/Berlin"});
    EXPECT_EQ(show.status, 0) << show.err;
    EXPECT_NE(show.out.find("Europe/Berlin"), std::string::npos) << show.out;
    EXPECT_NE(show.out.find("+02:00"), std::string::npos) << show.out;
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

    const ToolRun full = orv::test::RunTool(ORVCAL_PATH, {"zones"}, {}, {}, orv::test::Stdout::kDevFull);
    EXPECT_EQ(full.status, 3) << full.err;

    const ToolRun missing = Orvcal({"zones"}, {"TZDIR=/nonexistent/zoneinfo"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.out, "");
    EXPECT_NE(missing.err.find("TZDIR"), std::string::npos) << missing.err;
}

} // namespace
