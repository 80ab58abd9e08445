// Drives `orvcal sort` as a process: input on stdin or in a file, output, stderr and
// exit status. Its refusals with status 2 are among the tool's in OrvcalToolTest.
#include "support/ToolRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using orv::test::ToolRun;

TEST(OrvcalSort, OrdersAndDropsEqualInstants)
{
    struct Case {
        const char* what;
        std::vector<std::string> args;
        const char* input;
        const char* want;
    };
    const Case cases[] = {
        {"ascending, duplicate dropped", {}, "20240501T093000Z\n20240101T000000Z\n20240501T093000Z\n",
         "20240101T000000Z\n20240501T093000Z\n"},
        {"reverse", {"--reverse"}, "20240101T000000Z\n20240501T093000Z\n19991231T235959Z\n",
         "20240501T093000Z\n20240101T000000Z\n19991231T235959Z\n"},
        {"same instant in another zone is one key, first kept", {"--zone", "+02:00"},
         "20240501T113000\n20240501T093000Z\n20240501T100000\n", "20240501T100000\n20240501T113000\n"},
        {"floating readings sort as UTC", {}, "20240501T093001\n20240501T093000Z\n",
         "20240501T093000Z\n20240501T093001\n"},
        {"blank lines and CRLF", {}, "\n20240102T000000Z\r\n  \n20240101T000000Z\r\n",
         "20240101T000000Z\n20240102T000000Z\n"},
        {"empty input", {}, "", ""},
        {"dates outside the instant range still sort", {}, "30000101T000000Z\n16000101T000000Z\n20240101T000000Z\n",
         "16000101T000000Z\n20240101T000000Z\n30000101T000000Z\n"},
    };
    const std::string path = ::testing::TempDir() + "orvcal_sort_file_" + std::to_string(getpid()) + ".txt";
    for (const Case& c : cases) {
        std::vector<std::string> args{"sort"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const ToolRun fromStdin = orv::test::RunTool(ORVCAL_PATH, args, c.input);
        // The same input from a file: stdin is not read then.
        std::ofstream(path) << c.input;
        args.push_back(path);
        const ToolRun fromFile = orv::test::RunTool(ORVCAL_PATH, args, "19700101T000000\n");
        for (const ToolRun& r : {fromStdin, fromFile}) {
            EXPECT_EQ(r.status, 0) << c.what << "\n" << r.err;
            EXPECT_EQ(r.out, c.want) << c.what;
            EXPECT_EQ(r.err, "") << c.what;
        }
    }
    std::remove(path.c_str());
}

TEST(OrvcalSort, BadLinesAreReportedSkippedAndGiveStatus1)
{
    const ToolRun r =
        orv::test::RunTool(ORVCAL_PATH, {"sort"}, "20240501T093000Z\nnot a date\n20240230T000000Z\n20240101T000000Z\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "20240101T000000Z\n20240501T093000Z\n");
    EXPECT_NE(r.err.find("line 2 'not a date'"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("line 3 '20240230T000000Z'"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("line 1"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("skipped 2 bad lines of 4"), std::string::npos) << r.err;
}

} // namespace
