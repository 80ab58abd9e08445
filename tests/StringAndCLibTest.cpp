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

constexpr int kBases[] = {0, 2, 8, 10, 16, 36};

// Value, characters used and errno, from ours and from strtoul.
void ExpectSameAsStrtoul(const std::string& s, int base)
{
    char *ourEnd = nullptr, *refEnd = nullptr;
    errno = 0;
    const OrvUint32 ours = OrvStrToUint32(s.c_str(), &ourEnd, base);
    const int ourErrno = errno;
    errno = 0;
    const auto ref = static_cast<OrvUint32>(std::strtoul(s.c_str(), &refEnd, base));
    EXPECT_TRUE(ours == ref && ourEnd == refEnd && ourErrno == errno)
        << "'" << s << "' base " << base << ": " << ours << " vs " << ref << ", used " << ourEnd - s.c_str()
        << " vs " << refEnd - s.c_str() << ", errno " << ourErrno << " vs " << errno;
}

// Every string of up to four characters over an alphabet of blanks, signs, digits of
// every base used, the hex prefix and characters that are no digit.
TEST(OrvStrToUint32, MatchesStrtoulOnAllShortStrings)
{
    const std::string alphabet = " \t\n+-0179afxXzZ.";
    std::vector<std::string> inputs = {""};
    for (std::size_t from = 0, to = 1; inputs.back().size() < 4; from = to, to = inputs.size())
        for (std::size_t i = from; i < to; ++i)
            for (char c : alphabet) inputs.push_back(inputs[i] + c);
    ASSERT_GT(inputs.size(), 60000u);
    for (const std::string& s : inputs)
        for (int base : kBases) ExpectSameAsStrtoul(s, base);
}

TEST(OrvStrToUint32, MatchesStrtoulAtTheOverflowBoundaryAndOnRandomDigitStrings)
{
    for (const char* s :
         {"4294967295", "4294967296", "18446744073709551615", "18446744073709551616", "99999999999999999999999", "-1",
          "-4294967295", "-4294967296", "-18446744073709551615", "-18446744073709551616", "  +18446744073709551615x",
          "0xffffffffffffffff", "0x10000000000000000", "01777777777777777777777", "02000000000000000000000",
          "3w5e11264sgsf", "3w5e11264sgsg", "0x", "0X1g", "-0x", "+-1", "--1", "\v\f\r 42", "00000000000000000000000001"})
        for (int base : kBases) ExpectSameAsStrtoul(s, base);
    std::mt19937 rng(12345);
    const std::string chars = "0123456789abcdefABCDEFxz+- ";
    for (int i = 0; i < 100000 && !HasFailure(); ++i) {
        std::string s(rng() % 26, ' ');
        // Mostly digits so that long numbers reach the overflow region.
        for (char& c : s) c = rng() % 5 != 0 ? static_cast<char>('0' + rng() % 10) : chars[rng() % chars.size()];
        ExpectSameAsStrtoul(s, kBases[rng() % std::size(kBases)]);
    }
}

// Formats with both and compares the whole text, embedded zeros included. A spare
// trailing argument keeps every call a call with arguments (printf ignores extras).
template <typename... A>
void Check(const std::string& format, A... args)
{
    char ref[1024];
    const int n = std::snprintf(ref, sizeof ref, format.c_str(), args..., 0);
    ASSERT_TRUE(n >= 0 && n < static_cast<int>(sizeof ref)) << format;
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    EXPECT_NE(OrvStringAssignFormatted(&s, format.c_str(), args..., 0), nullptr) << format;
    EXPECT_EQ(std::string(OrvStringCStr(&s), OrvStringLength(&s)), std::string(ref, static_cast<std::size_t>(n)))
        << "format \"" << format << "\"";
    OrvStringDestruct(&s);
}

// Flag sets, widths and precisions whose meaning C defines for the conversion at hand
// (no '0' with s or c, no precision with c, no '#' at all).
const std::vector<std::string> kIntFlags = {"", "-", "0", "+", " ", "-0", "0-", "+0", " 0", "-+", "00", "+ "};
const std::vector<std::string> kTextFlags = {"", "-"};
const std::vector<std::string> kWidths = {"", "1", "2", "4", "9", "12", "40", "300"};
const std::vector<std::string> kPrecisions = {"", ".", ".0", ".1", ".5", ".12"};

TEST(OrvStringAssignFormatted, MatchesSnprintfForIntegerConversions)
{
    const long long values[] = {0, 1, -1, 7, -7, 42, 999, -1000, 2024, INT_MAX, INT_MIN, LLONG_MAX, LLONG_MIN,
                                4294967296LL, 65535, static_cast<long long>(ULLONG_MAX)};
    for (const std::string& flags : kIntFlags)
        for (const std::string& width : kWidths)
            for (const std::string& prec : kPrecisions) {
                const std::string body = "%" + flags + width + prec;
                const bool unsignedFlags = flags.find_first_of("+ ") == std::string::npos;
                for (long long v : values) {
                    for (const char* conv : {"d", "i"}) {
                        Check(body + conv, static_cast<int>(v));
                        Check(body + "l" + conv, static_cast<long>(v));
                        Check(body + "ll" + conv, v);
                        Check(body + "h" + conv, static_cast<int>(static_cast<short>(v)));
                        Check("<" + body + "hh" + conv + ">", static_cast<int>(static_cast<signed char>(v)));
                    }
                    if (!unsignedFlags) continue;
                    const auto u = static_cast<unsigned long long>(v);
                    Check(body + "u", static_cast<unsigned>(u));
                    Check(body + "lu", static_cast<unsigned long>(u));
                    Check(body + "llu", u);
                    Check(body + "hu", static_cast<unsigned>(static_cast<unsigned short>(u)));
                }
                if (HasFailure()) return;
            }
}

TEST(OrvStringAssignFormatted, MatchesSnprintfForTextConversions)
{
    const std::string longText(700, 'x');
    for (const std::string& flags : kTextFlags)
        for (const std::string& width : kWidths) {
            for (const std::string& prec : kPrecisions)
                for (const char* t : {"", "a", "MO", "hello world", longText.c_str()})
                    Check("[%" + flags + width + prec + "s]", t);
            for (int c : {65, 122, 32, 37, 0, 200, -3}) Check("[%" + flags + width + "c]", c);
        }
    for (const char* plain : {"100%%", "%%d%%", "", "no directives at all"}) Check(plain);
    Check("%04d%02d%02dT%02d%02d%02d", -5, 13, 0, 24, -1, 60);
    Check("%s=%d (%c) %u%%", "year", 2024, 'Y', 7u);
}

// Random directive sequences, each with its own argument type.
TEST(OrvStringAssignFormatted, MatchesSnprintfOnRandomDirectives)
{
    std::mt19937 rng(777);
    auto pick = [&rng](const std::vector<std::string>& v) { return v[rng() % v.size()]; };
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const int value = static_cast<int>(rng()) - static_cast<int>(rng() % 1000);
        const std::string literal = rng() % 2 != 0 ? "T" : "";
        switch (rng() % 4) {
        case 0: Check(literal + "%" + pick(kIntFlags) + pick(kWidths) + pick(kPrecisions) + "d" + literal, value); break;
        case 1: Check("%" + pick(kIntFlags) + pick(kWidths) + "d%" + pick(kIntFlags) + pick(kWidths) + "d", value, -value / 3); break;
        case 2: Check("%" + pick(kTextFlags) + pick(kWidths) + pick(kPrecisions) + "s" + literal, "abcdef"); break;
        default: Check("%" + pick({"", "0", "-"}) + pick(kWidths) + "llu", static_cast<unsigned long long>(rng()) << 20); break;
        }
    }
}

TEST(OrvStrLCpy, BehavesAsStrlcpy)
{
    const struct {
        const char* src;
        OrvSizeT size;
        const char* want;
    } cases[] = {{"20240501", 5, "2024"}, {"ab", 5, "ab"}, {"abcd", 5, "abcd"},
                   {"abcde", 5, "abcd"},    {"", 3, ""},      {"x", 1, ""},        {"abc", 0, "#######"}};
    for (const auto& c : cases) {
        char dst[8] = "#######"; // every byte written shows
        EXPECT_EQ(OrvStrLCpy(dst, c.src, c.size), std::strlen(c.src));
        EXPECT_STREQ(dst, c.want);
    }
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
