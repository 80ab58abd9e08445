// Drives `orvcal sort` as a process: input on stdin or in a file, output, stderr and
// exit status.
#include "support/ToolRun.h"

#include <gtest/gtest.h>


#include <cstdio>
#include <fstream>

#include <unistd.h>
#include <string>
#include <vector>

namespace {

using orv::test::ToolRun;

// Runs orvcal sort with args, feeding `input` on stdin.
ToolRun Sort(const std::vector<std::string>& args, const std::string& input)
{
    std::vector<std::string> all{"sort"};
    all.insert(all.end(), args.begin(), args.end());
    return orv::test::RunTool(ORVCAL_PATH, all, input);
}

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
    for (const Case& c : cases) {
        const ToolRun r = Sort(c.args, c.input);
        EXPECT_EQ(r.status, 0) << c.what << "\n" << r.err;
        EXPECT_EQ(r.out, c.want) << c.what;
        EXPECT_EQ(r.err, "") << c.what;
    }
}

TEST(OrvcalSort, BadLinesAreReportedSkippedAndGiveStatus1)
{
    const ToolRun r = Sort({}, "20240501T093000Z\nnot a date\n20240230T000000Z\n20240101T000000Z\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "20240101T000000Z\n20240501T093000Z\n");
    EXPECT_NE(r.err.find("line 2 'not a date'"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("line 3 '20240230T000000Z'"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("line 1"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("skipped 2 bad lines of 4"), std::string::npos) << r.err;
}

TEST(OrvcalSort, ReadsAFile)
{
    const std::string path = ::testing::TempDir() + "orvcal_sort_file_" + std::to_string(getpid()) + ".txt";
    std::ofstream(path) << "20240301T000000\n20240201T000000\n";
    const ToolRun r = Sort({path}, "19700101T000000\n"); // stdin is not read
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "20240201T000000\n20240301T000000\n");

    const ToolRun missing = Sort({path + ".missing"}, "");
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.out, "");
    EXPECT_NE(missing.err.find("FILE"), std::string::npos) << missing.err;

    const ToolRun flagWithValue = Sort({"--reverse=yes"}, "");
    EXPECT_EQ(flagWithValue.status, 2);
    EXPECT_NE(flagWithValue.err.find("--reverse takes no value"), std::string::npos) << flagWithValue.err;
}

} // namespace
