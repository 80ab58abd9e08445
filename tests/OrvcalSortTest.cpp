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
        {"blank lines and CRLF", {}, "\n20240102T000000Z\r\n  \t\r\n20240101T000000Z\r\n",
         "20240101T000000Z\n20240102T000000Z\n"},
        {"byte-order mark, no final newline", {}, "\xEF\xBB\xBF" "20240102T000000Z\n20240101T000000Z",
         "20240101T000000Z\n20240102T000000Z\n"},
        {"empty input", {}, "", ""},
        {"ISO 8601 lines, one with an offset written in UTC", {"--zone", "+02:00"},
         "2024-05-01T11:30:00+02:00\n2024-05-01 09:30Z\n2024-01-01T00:00\n", "20240101T000000\n20240501T093000Z\n"},
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

// Bad lines: each reported on one line of stderr, escaped and cut, then skipped; the
// good lines are written and the status is 1.
TEST(OrvcalSort, BadLinesAreReportedSkippedAndGiveStatus1)
{
    using namespace std::string_literals;
    struct Case {
        std::vector<std::string> args;
        std::string input;
        const char* want;
        std::vector<std::string> mentions; // in order, one per stderr line
    };
    // Two lines of 10 MB, the last without a newline, written without holding them in
    // memory: the child's peak memory then starts from a small parent's.
    const std::string path = ::testing::TempDir() + "orvcal_sort_huge_" + std::to_string(getpid()) + ".txt";
    {
        std::ofstream file(path, std::ios::binary);
        const std::string mb(1 << 20, '7');
        for (int i = 0; i < 20; ++i) file << mb << (i == 9 ? "\n20240101T000000Z\n" : "");
    }
    const Case cases[] = {
        {{}, "20240501T093000Z\nnot a date\n20240230T000000Z\n20240101T000000Z\n", "20240101T000000Z\n20240501T093000Z\n",
         {"line 2 'not a date'", "line 3 '20240230T000000Z'", "skipped 2 bad lines of 4"}},
        {{}, "\x01\0\xFF\tx\r\n20240101T000000Z\0\n2024\r0101T000000\r\n\r\r\n"s, "",
         {"line 1 '\\x01\\x00\\xFF\\tx': ", "line 2 '20240101T000000Z\\x00': expected 15 or 16",
          "line 3 '2024\\r0101T000000'", "line 4 '\\r'", "skipped 4 bad lines of 4"}},
        {{path}, "", "20240101T000000Z\n",
         {"line 1 '" + std::string(40, '7') + "...': expected 15 or 16 characters", "line 3 '7777", "of 3"}},
    };
    const long smallKb = orv::test::RunTool(ORVCAL_PATH, {"sort"}, "x\n").maxRssKb;
    for (const Case& c : cases) {
        std::vector<std::string> args{"sort"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const ToolRun r = orv::test::RunTool(ORVCAL_PATH, args, c.input);
        const std::string what = c.input.substr(0, 20);
        EXPECT_EQ(r.status, 1) << what;
        EXPECT_EQ(r.out, c.want) << what;
        std::size_t from = 0;
        for (const std::string& m : c.mentions) {
            const std::size_t end = r.err.find('\n', from);
            ASSERT_NE(end, std::string::npos) << what << ": " << r.err;
            EXPECT_NE(r.err.substr(from, end - from).find(m), std::string::npos) << what << ": " << m << "\n" << r.err;
            from = end + 1;
        }
        EXPECT_EQ(from, r.err.size()) << what << ": " << r.err;
        // Lines are read in bounded memory, never held whole.
        EXPECT_LT(r.maxRssKb, smallKb + 4 * 1024) << what;
    }
    std::remove(path.c_str());
}

} // namespace
