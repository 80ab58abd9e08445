// The string formatter and the C-library wrappers promise the C library's exact
// behaviour (in the "C" locale) while taking their own fast paths. These tests hold
// them against the real functions over many generated inputs.
#include "Orv/Utils/OrvCLib.h"
#include "Orv/Utils/OrvString.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <strings.h>

namespace {

struct StrToULResult {
    OrvUint32 value;
    std::ptrdiff_t used; // end - start
    int err;
};

StrToULResult Reference(const char* s, int base)
{
    char* end = nullptr;
    errno = 0;
    const unsigned long v = std::strtoul(s, &end, base);
    return {static_cast<OrvUint32>(v), end - s, errno};
}

StrToULResult Ours(const char* s, int base)
{
    char* end = nullptr;
    errno = 0;
    const OrvUint32 v = OrvStrToUint32(s, &end, base);
    return {v, end - s, errno};
}

void ExpectSameAsStrtoul(const std::string& s, int base)
{
    const StrToULResult want = Reference(s.c_str(), base);
    const StrToULResult got = Ours(s.c_str(), base);
    EXPECT_EQ(got.value, want.value) << "'" << s << "' base " << base;
    EXPECT_EQ(got.used, want.used) << "'" << s << "' base " << base;
    EXPECT_EQ(got.err, want.err) << "'" << s << "' base " << base;
}

constexpr int kBases[] = {0, 2, 8, 10, 16, 36};

// Every string of up to four characters over an alphabet that exercises blanks, signs,
// digits of every base used, the hex prefix and characters that are no digit.
TEST(OrvStrToUint32, MatchesStrtoulOnAllShortStrings)
{
    const std::string alphabet = " \t\n+-0179afxXzZ.";
    std::vector<std::string> inputs = {""};
    for (std::size_t len = 1; len <= 4; ++len) {
        std::vector<std::string> next;
        for (const std::string& prefix : inputs)
            if (prefix.size() == len - 1)
                for (char c : alphabet) next.push_back(prefix + c);
        inputs.insert(inputs.end(), next.begin(), next.end());
    }
    ASSERT_GT(inputs.size(), 60000u);
    for (const std::string& s : inputs)
        for (int base : kBases) ExpectSameAsStrtoul(s, base);
}

TEST(OrvStrToUint32, MatchesStrtoulAtTheOverflowBoundary)
{
    const char* const cases[] = {
        "4294967295", "4294967296", "18446744073709551615", "18446744073709551616", "99999999999999999999999",
        "-1", "-4294967295", "-4294967296", "-18446744073709551615", "-18446744073709551616", "  +18446744073709551615x",
        "0xffffffffffffffff", "0x10000000000000000", "01777777777777777777777", "02000000000000000000000",
        "3w5e11264sgsf", "3w5e11264sgsg", "0x", "0X1g", "-0x", "+-1", "--1", "\v\f\r 42", "00000000000000000000000001",
    };
    for (const char* s : cases)
        for (int base : kBases) ExpectSameAsStrtoul(s, base);
}

TEST(OrvStrToUint32, MatchesStrtoulOnRandomDigitStrings)
{
    std::mt19937 rng(12345);
    const std::string chars = "0123456789abcdefABCDEFxz+- ";
    for (int i = 0; i < 100000; ++i) {
        std::string s;
        const int len = static_cast<int>(rng() % 26);
        for (int k = 0; k < len; ++k) {
            // Mostly digits so that long numbers reach the overflow region.
            s += rng() % 5 != 0 ? static_cast<char>('0' + rng() % 10) : chars[rng() % chars.size()];
        }
        ExpectSameAsStrtoul(s, kBases[rng() % std::size(kBases)]);
        if (HasFailure()) return;
    }
}

// --- OrvStringAssignFormatted against snprintf -------------------------------------

class Formatter {
public:
    Formatter() { OrvStringConstruct(&s_, OrvAllocatorGetDefault()); }
    ~Formatter() { OrvStringDestruct(&s_); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    // Formats with both and compares the whole text, embedded zeros included. A spare
    // trailing argument keeps every call a call with arguments (printf ignores extras).
    template <typename... A>
    void Check(const std::string& format, A... args)
    {
        char ref[1024];
        const int n = std::snprintf(ref, sizeof ref, format.c_str(), args..., 0);
        ASSERT_GE(n, 0) << format;
        ASSERT_LT(n, static_cast<int>(sizeof ref)) << format;
        ASSERT_NE(OrvStringAssignFormatted(&s_, format.c_str(), args..., 0), nullptr) << format;
        EXPECT_EQ(std::string(OrvStringCStr(&s_), OrvStringLength(&s_)), std::string(ref, static_cast<std::size_t>(n)))
            << "format \"" << format << "\"";
    }

private:
    OrvString s_;
};

// Flag sets, widths and precisions whose meaning C defines for the conversion at hand
// (no '0' with s or c, no precision with c, no '#' at all).
const std::vector<std::string> kIntFlags = {"", "-", "0", "+", " ", "-0", "0-", "+0", " 0", "-+", "00", "+ "};
const std::vector<std::string> kTextFlags = {"", "-"};
const std::vector<std::string> kWidths = {"", "1", "2", "4", "9", "12", "40", "300"};
const std::vector<std::string> kPrecisions = {"", ".", ".0", ".1", ".5", ".12"};

TEST(OrvStringAssignFormatted, MatchesSnprintfForSignedConversions)
{
    const long long values[] = {0, 1, -1, 7, -7, 42, 999, -1000, 2024, INT_MAX, INT_MIN, LLONG_MAX, LLONG_MIN,
                                4294967296LL};
    Formatter f;
    for (const std::string& flags : kIntFlags)
        for (const std::string& width : kWidths)
            for (const std::string& prec : kPrecisions)
                for (const char* conv : {"d", "i"}) {
                    const std::string body = "%" + flags + width + prec;
                    for (long long v : values) {
                        f.Check(body + conv, static_cast<int>(v));
                        f.Check(body + "l" + conv, static_cast<long>(v));
                        f.Check(body + "ll" + conv, v);
                        f.Check(body + "h" + conv, static_cast<int>(static_cast<short>(v)));
                        f.Check("<" + body + "hh" + conv + ">", static_cast<int>(static_cast<signed char>(v)));
                    }
                    if (::testing::Test::HasFailure()) return;
                }
}

TEST(OrvStringAssignFormatted, MatchesSnprintfForUnsignedConversions)
{
    const unsigned long long values[] = {0, 1, 9, 10, 65535, 4294967295ULL, 4294967296ULL, ULLONG_MAX};
    Formatter f;
    for (const char* flags : {"", "-", "0", "-0"})
        for (const std::string& width : kWidths)
            for (const std::string& prec : kPrecisions)
                for (unsigned long long v : values) {
                    const std::string body = std::string("%") + flags + width + prec;
                    f.Check(body + "u", static_cast<unsigned>(v));
                    f.Check(body + "lu", static_cast<unsigned long>(v));
                    f.Check(body + "llu", v);
                    f.Check(body + "hu", static_cast<unsigned>(static_cast<unsigned short>(v)));
                }
}

TEST(OrvStringAssignFormatted, MatchesSnprintfForTextConversions)
{
    const std::string longText(700, 'x');
    const char* const texts[] = {"", "a", "MO", "hello world", longText.c_str()};
    Formatter f;
    for (const std::string& flags : kTextFlags)
        for (const std::string& width : kWidths) {
            for (const std::string& prec : kPrecisions)
                for (const char* t : texts) f.Check("[%" + flags + width + prec + "s]", t);
            for (int c : {65, 122, 32, 37, 0, 200, -3}) f.Check("[%" + flags + width + "c]", c);
        }
    f.Check("100%%");
    f.Check("%%d%%");
    f.Check("");
    f.Check("no directives at all");
}

TEST(OrvStringAssignFormatted, MatchesSnprintfForMixedFormats)
{
    Formatter f;
    f.Check("%04d%02d%02dT%02d%02d%02d", 2024, 5, 1, 9, 30, 0);
    f.Check("%04d%02d%02dT%02d%02d%02d", 999, 13, 0, 24, -1, 60);
    f.Check("%04d%02d%02dT%02d%02d%02d", -5, 1, 1, 0, 0, 0);
    f.Check("%04d%02d%02dT%02d%02d%02d", 2147483647, -2147483647 - 1, 1, 0, 0, 0);
    f.Check("%d-%02d-%02d %02d:%02d:%02d.%09d with offset %lld", 2262, 4, 11, 23, 47, 16, 854775807,
            9223372036854775807LL);
    f.Check("%s=%d (%c) %u%%", "year", 2024, 'Y', 7u);
    f.Check("%300d|%-300s|", 5, "left");
}

// Random directive sequences, each with its own argument type.
TEST(OrvStringAssignFormatted, MatchesSnprintfOnRandomDirectives)
{
    std::mt19937 rng(777);
    Formatter f;
    auto pick = [&rng](const std::vector<std::string>& v) { return v[rng() % v.size()]; };
    for (int i = 0; i < 20000; ++i) {
        const int value = static_cast<int>(rng()) - static_cast<int>(rng() % 1000);
        const std::string literal = rng() % 2 != 0 ? "T" : "";
        switch (rng() % 4) {
        case 0: f.Check(literal + "%" + pick(kIntFlags) + pick(kWidths) + pick(kPrecisions) + "d" + literal, value); break;
        case 1: f.Check("%" + pick(kIntFlags) + pick(kWidths) + "d%" + pick(kIntFlags) + pick(kWidths) + "d", value, -value / 3); break;
        case 2: f.Check("%" + pick(kTextFlags) + pick(kWidths) + pick(kPrecisions) + "s" + literal, "abcdef"); break;
        default: f.Check("%" + pick({"", "0", "-"}) + pick(kWidths) + "llu", static_cast<unsigned long long>(rng()) << 20); break;
        }
        if (HasFailure()) return;
    }
}

TEST(OrvStrLCpy, BehavesAsStrlcpy)
{
    struct Case {
        const char* src;
        OrvSizeT size;
        const char* want;
    };
    const Case cases[] = {{"20240501", 5, "2024"}, {"ab", 5, "ab"}, {"abcd", 5, "abcd"}, {"abcde", 5, "abcd"},
                          {"", 3, ""},         {"x", 1, ""}};
    for (const Case& c : cases) {
        char dst[8];
        std::memset(dst, '#', sizeof dst);
        EXPECT_EQ(OrvStrLCpy(dst, c.src, c.size), std::strlen(c.src));
        EXPECT_STREQ(dst, c.want);
    }
    char untouched[2] = {'#', '#'};
    EXPECT_EQ(OrvStrLCpy(untouched, "abc", 0), 3u);
    EXPECT_EQ(untouched[0], '#');
}

TEST(OrvStrCaseCmp, HasTheSignOfStrcasecmp)
{
    const char* const words[] = {"", "a", "A", "mo", "MO", "Mo", "mon", "[", "_", "z", "Z", "@", "\xe9", "MO "};
    auto sign = [](int v) { return (v > 0) - (v < 0); };
    for (const char* a : words)
        for (const char* b : words)
            EXPECT_EQ(sign(OrvStrCaseCmp(a, b)), sign(::strcasecmp(a, b))) << "'" << a << "' vs '" << b << "'";
}

} // namespace
