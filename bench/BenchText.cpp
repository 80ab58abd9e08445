// The text form against the C library: writing a value (OrvDateTimeGetString beside
// strftime with "%Y%m%dT%H%M%SZ" from a struct tm) and reading one (OrvDateTimeConstructCStr
// + OrvDateTimeDestruct, and OrvDateTimeSetCStr into an existing value, beside strptime
// into a struct tm, and strptime followed by timegm, which like the library also yields
// the instant); and both beside a hand-written fixed-width writer and reader of exactly
// that form, the limit. Samples are spread over 1970-2100 so that no branch sees the
// same digits every time.
//
// ISO 8601 with nanoseconds and an offset, "2024-05-01T09:30:00.123456789+02:00",
// beside a hand-written fixed-width writer (from the same fields) and reader (digits,
// separators and ranges checked, to the instant) of exactly that form; and patterns,
// "%Y-%m-%dT%H:%M:%S", beside strftime and strptime.
#include "Orv/Calendar/OrvDateTime.h"
#include "RatioReporter.h"

#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kCount = 1024;

struct Sample {
    OrvTime instant;
    std::tm tm;
    std::string text; // with Z
};

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = [] {
        std::mt19937_64 rng(20240501);
        std::uniform_int_distribution<OrvTime> seconds(0, 4102444800LL); // 1970 .. 2100
        std::vector<Sample> v;
        for (std::size_t i = 0; i < kCount; ++i) {
            Sample s{};
            s.instant = seconds(rng) * ORV_TIME_NANOSECONDS_PER_SECOND;
            const std::time_t t = static_cast<std::time_t>(s.instant / ORV_TIME_NANOSECONDS_PER_SECOND);
            gmtime_r(&t, &s.tm);
            char buf[32];
            std::strftime(buf, sizeof buf, "%Y%m%dT%H%M%SZ", &s.tm);
            s.text = buf;
            v.push_back(s);
        }
        return v;
    }();
    return samples;
}

inline char* Put2(char* p, unsigned v)
{
    p[0] = static_cast<char>('0' + v / 10);
    p[1] = static_cast<char>('0' + v % 10);
    return p + 2;
}

// Days since 1970-01-01 of a date of years 1..9999, by the usual era arithmetic, in
// unsigned numbers (the years are positive here).
OrvTime HandDays(unsigned y, unsigned m, unsigned d)
{
    const unsigned yy = y - (m <= 2);
    const unsigned era = yy / 400;
    const unsigned yoe = yy - era * 400;
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    return OrvTime{era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy} - 719468;
}

// The ranges, tested together without a branch per field.
bool HandFieldsInRange(unsigned y, unsigned m, unsigned d, unsigned hh, unsigned mm, unsigned ss)
{
    static constexpr unsigned char kDays[13] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const unsigned leap = (y % 4 == 0) & ((y % 100 != 0) | (y % 400 == 0));
    const bool monthOk = m - 1 < 12;
    return monthOk & (d - 1 < kDays[monthOk ? m : 0] + (m == 2 ? leap : 0)) & (hh <= 23) & (mm <= 59) & (ss <= 59);
}

// The peers' date and time of day, fixed width: YYYY-MM-DDTHH:MM:SS, or without the
// separators but the T.
template <bool kExtended>
char* HandPutReading(char* p, const OrvDateTime& d)
{
    p = Put2(p, static_cast<unsigned>(d.year / 100));
    p = Put2(p, static_cast<unsigned>(d.year % 100));
    if (kExtended) *p++ = '-';
    p = Put2(p, static_cast<unsigned>(d.month));
    if (kExtended) *p++ = '-';
    p = Put2(p, static_cast<unsigned>(d.monthDay));
    *p++ = 'T';
    p = Put2(p, static_cast<unsigned>(d.hour));
    if (kExtended) *p++ = ':';
    p = Put2(p, static_cast<unsigned>(d.min));
    if (kExtended) *p++ = ':';
    return Put2(p, static_cast<unsigned>(d.sec));
}

// The peer compact writer: the same fields, YYYYMMDDTHHMMSSZ, into a buffer.
void HandWriteCompact(const OrvDateTime& d, char* out)
{
    char* p = HandPutReading<false>(out, d);
    *p++ = 'Z';
    *p = '\0';
}

// The peer compact reader: every digit and both letters checked (without a branch per
// character: a digit test is gathered over all of them), the ranges, and the instant.
bool HandReadCompact(const char* s, OrvTime* out)
{
    unsigned bad = 0;
    auto num = [s, &bad](int at, int n) {
        unsigned v = 0;
        for (int i = 0; i < n; ++i) {
            const unsigned c = static_cast<unsigned char>(s[at + i]) - '0';
            bad |= c > 9 ? 1 : 0;
            v = v * 10 + c;
        }
        return v;
    };
    const unsigned y = num(0, 4), m = num(4, 2), d = num(6, 2), hh = num(9, 2), mm = num(11, 2), ss = num(13, 2);
    if ((bad != 0) | (s[8] != 'T') | (s[15] != 'Z') | (s[16] != '\0') || !HandFieldsInRange(y, m, d, hh, mm, ss))
        return false;
    *out = (HandDays(y, m, d) * 86400 + hh * 3600 + mm * 60 + ss) * ORV_TIME_NANOSECONDS_PER_SECOND;
    return true;
}

void FormatOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    std::vector<OrvDateTime> values(kCount);
    for (std::size_t i = 0; i < kCount; ++i) OrvDateTimeConstruct(&values[i], samples[i].instant, OrvFixedTimezoneGetUTC());
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTimeGetString(&values[i++ & (kCount - 1)], &s);
        benchmark::DoNotOptimize(s.buf);
    }
    if (std::string(OrvStringCStr(&s)) != samples[(i - 1) & (kCount - 1)].text) state.SkipWithError("wrong text");
    OrvStringDestruct(&s);
    for (OrvDateTime& d : values) OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

void FormatStrftime(benchmark::State& state)
{
    const auto& samples = Samples();
    char buf[32];
    std::size_t i = 0;
    for (auto _ : state) {
        std::strftime(buf, sizeof buf, "%Y%m%dT%H%M%SZ", &samples[i++ & (kCount - 1)].tm);
        benchmark::DoNotOptimize(buf);
    }
    state.SetItemsProcessed(state.iterations());
}

void FormatHand(benchmark::State& state)
{
    const auto& samples = Samples();
    std::vector<OrvDateTime> values(kCount);
    for (std::size_t i = 0; i < kCount; ++i) OrvDateTimeConstruct(&values[i], samples[i].instant, OrvFixedTimezoneGetUTC());
    char buf[32];
    std::size_t i = 0;
    for (auto _ : state) {
        HandWriteCompact(values[i++ & (kCount - 1)], buf);
        benchmark::DoNotOptimize(buf);
    }
    if (samples[(i - 1) & (kCount - 1)].text != buf) state.SkipWithError("wrong text");
    for (OrvDateTime& d : values) OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

void ParseOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        OrvDateTime d;
        if (OrvDateTimeConstructCStr(&d, samples[i++ & (kCount - 1)].text.c_str(), nullptr) != nullptr) {
            sum += d.wallTime;
            OrvDateTimeDestruct(&d);
        }
    }
    benchmark::DoNotOptimize(sum);
    OrvDateTime check;
    if (OrvDateTimeConstructCStr(&check, samples[0].text.c_str(), nullptr) == nullptr ||
        check.wallTime != samples[0].instant)
        state.SkipWithError("wrong instant");
    else
        OrvDateTimeDestruct(&check);
    state.SetItemsProcessed(state.iterations());
}

void ParseHand(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        OrvTime t;
        if (HandReadCompact(samples[i++ & (kCount - 1)].text.c_str(), &t)) sum += t;
    }
    benchmark::DoNotOptimize(sum);
    OrvTime t = 0;
    if (!HandReadCompact(samples[0].text.c_str(), &t) || t != samples[0].instant) state.SkipWithError("wrong instant");
    state.SetItemsProcessed(state.iterations());
}

// Replacing the reading of an existing value (in UTC; the texts name UTC themselves).
void SetCStrOrv(benchmark::State& state)
{
    const auto& samples = Samples();
    OrvDateTime d;
    OrvDateTimeConstructDefault(&d);
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        if (OrvDateTimeSetCStr(&d, samples[i++ & (kCount - 1)].text.c_str())) sum += d.wallTime;
    }
    benchmark::DoNotOptimize(sum);
    if (!OrvDateTimeSetCStr(&d, samples[0].text.c_str()) || d.wallTime != samples[0].instant)
        state.SkipWithError("wrong instant");
    OrvDateTimeDestruct(&d);
    state.SetItemsProcessed(state.iterations());
}

void ParseStrptime(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    for (auto _ : state) {
        std::tm tm{};
        benchmark::DoNotOptimize(strptime(samples[i++ & (kCount - 1)].text.c_str(), "%Y%m%dT%H%M%SZ", &tm));
        benchmark::DoNotOptimize(tm);
    }
    state.SetItemsProcessed(state.iterations());
}

void ParseStrptimeTimegm(benchmark::State& state)
{
    const auto& samples = Samples();
    std::size_t i = 0;
    std::time_t sum = 0;
    for (auto _ : state) {
        std::tm tm{};
        if (strptime(samples[i++ & (kCount - 1)].text.c_str(), "%Y%m%dT%H%M%SZ", &tm) != nullptr) sum += timegm(&tm);
    }
    benchmark::DoNotOptimize(sum);
    std::tm tm{};
    strptime(samples[0].text.c_str(), "%Y%m%dT%H%M%SZ", &tm);
    if (timegm(&tm) * ORV_TIME_NANOSECONDS_PER_SECOND != samples[0].instant) state.SkipWithError("wrong instant");
    state.SetItemsProcessed(state.iterations());
}

// ---- ISO 8601 ------------------------------------------------------------------------

constexpr OrvTime kIsoOffset = 2 * ORV_TIME_NANOSECONDS_PER_HOUR;
constexpr std::size_t kIsoLength = 35; // 2024-05-01T09:30:00.123456789+02:00

struct IsoSamples {
    std::vector<OrvDateTime> values; // in the shared +02:00 zone
    std::vector<std::string> texts;
    std::vector<OrvTime> instants;
};

const IsoSamples& Iso()
{
    static const IsoSamples samples = [] {
        IsoSamples s;
        std::mt19937_64 rng(8601);
        std::uniform_int_distribution<OrvTime> nanos(0, 4102444800LL * ORV_TIME_NANOSECONDS_PER_SECOND);
        OrvString text;
        OrvStringConstruct(&text, OrvAllocatorGetDefault());
        s.values.resize(kCount);
        for (std::size_t i = 0; i < kCount; ++i) {
            const OrvTime t = nanos(rng) | 1; // a last fraction digit, so that all nine are written
            OrvDateTimeConstruct(&s.values[i], t, OrvFixedTimezoneGetShared(kIsoOffset));
            OrvDateTimeGetISO8601(&s.values[i], &text, -1);
            s.texts.emplace_back(OrvStringCStr(&text));
            s.instants.push_back(t);
        }
        OrvStringDestruct(&text);
        return s;
    }();
    return samples;
}

// The peer writer: the same fields, the same form, fixed width, into a buffer.
void HandWrite(const OrvDateTime& d, char* out)
{
    char* p = HandPutReading<true>(out, d);
    *p++ = '.';
    unsigned ns = static_cast<unsigned>(d.nanosec);
    for (int i = 8; i >= 0; --i, ns /= 10) p[i] = static_cast<char>('0' + ns % 10);
    p += 9;
    const OrvTime offsetMinutes = d.offset / ORV_TIME_NANOSECONDS_PER_MINUTE;
    const OrvTime magnitude = offsetMinutes < 0 ? -offsetMinutes : offsetMinutes;
    *p++ = offsetMinutes < 0 ? '-' : '+';
    p = Put2(p, static_cast<unsigned>(magnitude / 60));
    *p++ = ':';
    p = Put2(p, static_cast<unsigned>(magnitude % 60));
    *p = '\0';
}

// The peer reader: checks every digit and separator and the ranges, and gives the
// instant (days from the civil date by the usual era arithmetic).
bool HandRead(const char* s, std::size_t len, OrvTime* out)
{
    static constexpr char kShape[] = "dddd-dd-ddTdd:dd:dd.ddddddddd+dd:dd";
    if (len != kIsoLength) return false;
    for (std::size_t i = 0; i < kIsoLength; ++i) {
        if (kShape[i] == 'd' ? static_cast<unsigned>(s[i] - '0') > 9 : (kShape[i] != s[i] && i != 29)) return false;
    }
    if (s[29] != '+' && s[29] != '-') return false;
    auto num = [s](int at, int n) {
        int v = 0;
        for (int i = 0; i < n; ++i) v = v * 10 + (s[at + i] - '0');
        return v;
    };
    const int y = num(0, 4), m = num(5, 2), d = num(8, 2), hh = num(11, 2), mm = num(14, 2), ss = num(17, 2);
    const int oh = num(30, 2), om = num(33, 2);
    if (!HandFieldsInRange(y, m, d, hh, mm, ss) || oh > 23 || om > 59) return false;
    const OrvTime days = HandDays(y, m, d);
    const OrvTime offset = (s[29] == '-' ? -1 : 1) * (OrvTime{oh} * 60 + om) * 60;
    *out = ((days * 86400 + hh * 3600 + mm * 60 + ss) - offset) * ORV_TIME_NANOSECONDS_PER_SECOND + num(20, 9);
    return true;
}

void IsoWriteOrv(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTimeGetISO8601(&samples.values[i++ & (kCount - 1)], &s, 9);
        benchmark::DoNotOptimize(s.buf);
    }
    if (samples.texts[(i - 1) & (kCount - 1)] != OrvStringCStr(&s)) state.SkipWithError("wrong text");
    OrvStringDestruct(&s);
    state.SetItemsProcessed(state.iterations());
}

void IsoWriteHand(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    char buf[48];
    std::size_t i = 0;
    for (auto _ : state) {
        HandWrite(samples.values[i++ & (kCount - 1)], buf);
        benchmark::DoNotOptimize(buf);
    }
    if (samples.texts[(i - 1) & (kCount - 1)] != buf) state.SkipWithError("wrong text");
    state.SetItemsProcessed(state.iterations());
}

void IsoReadOrv(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        const std::string& text = samples.texts[i++ & (kCount - 1)];
        OrvDateTime d;
        if (OrvDateTimeConstructISO8601(&d, text.data(), text.size(), nullptr, nullptr) != nullptr) {
            sum += d.wallTime;
            OrvDateTimeDestruct(&d);
        }
    }
    benchmark::DoNotOptimize(sum);
    OrvDateTime check;
    if (OrvDateTimeConstructISO8601(&check, samples.texts[0].data(), kIsoLength, nullptr, nullptr) == nullptr ||
        check.wallTime != samples.instants[0] || check.offset != kIsoOffset)
        state.SkipWithError("wrong instant");
    else
        OrvDateTimeDestruct(&check);
    state.SetItemsProcessed(state.iterations());
}

void IsoReadHand(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        const std::string& text = samples.texts[i++ & (kCount - 1)];
        OrvTime t;
        if (HandRead(text.data(), text.size(), &t)) sum += t;
    }
    benchmark::DoNotOptimize(sum);
    OrvTime t = 0;
    if (!HandRead(samples.texts[0].data(), kIsoLength, &t) || t != samples.instants[0]) state.SkipWithError("wrong instant");
    state.SetItemsProcessed(state.iterations());
}

// ---- patterns ---------------------------------------------------------------------------

constexpr const char* kPattern = "%Y-%m-%dT%H:%M:%S";

void PatternFormatOrv(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    OrvString s;
    OrvStringConstruct(&s, OrvAllocatorGetDefault());
    std::size_t i = 0;
    for (auto _ : state) {
        OrvDateTimeFormat(&samples.values[i++ & (kCount - 1)], kPattern, &s);
        benchmark::DoNotOptimize(s.buf);
    }
    if (samples.texts[(i - 1) & (kCount - 1)].compare(0, 19, OrvStringCStr(&s)) != 0) state.SkipWithError("wrong text");
    OrvStringDestruct(&s);
    state.SetItemsProcessed(state.iterations());
}

void PatternFormatStrftime(benchmark::State& state)
{
    const auto& samples = Samples();
    char buf[32];
    std::size_t i = 0;
    for (auto _ : state) {
        std::strftime(buf, sizeof buf, kPattern, &samples[i++ & (kCount - 1)].tm);
        benchmark::DoNotOptimize(buf);
    }
    state.SetItemsProcessed(state.iterations());
}

void PatternParseOrv(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    std::size_t i = 0;
    OrvTime sum = 0;
    for (auto _ : state) {
        OrvDateTime d;
        if (OrvDateTimeConstructParse(&d, kPattern, samples.texts[i++ & (kCount - 1)].data(), 19, nullptr, nullptr) !=
            nullptr) {
            sum += d.wallTime;
            OrvDateTimeDestruct(&d);
        }
    }
    benchmark::DoNotOptimize(sum);
    OrvDateTime check;
    if (OrvDateTimeConstructParse(&check, kPattern, samples.texts[0].data(), 19, nullptr, nullptr) == nullptr ||
        check.wallTime != samples.instants[0] + kIsoOffset - samples.values[0].nanosec)
        state.SkipWithError("wrong instant");
    else
        OrvDateTimeDestruct(&check);
    state.SetItemsProcessed(state.iterations());
}

void PatternParseStrptime(benchmark::State& state)
{
    const IsoSamples& samples = Iso();
    std::size_t i = 0;
    for (auto _ : state) {
        std::tm tm{};
        benchmark::DoNotOptimize(strptime(samples.texts[i++ & (kCount - 1)].c_str(), kPattern, &tm));
        benchmark::DoNotOptimize(tm);
    }
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(IsoWriteOrv)->Name("IsoWrite:orv");
BENCHMARK(IsoWriteHand)->Name("IsoWrite:fixed-width");
BENCHMARK(IsoReadOrv)->Name("IsoRead:orv");
BENCHMARK(IsoReadHand)->Name("IsoRead:fixed-width");
BENCHMARK(PatternFormatOrv)->Name("PatternFormat:orv");
BENCHMARK(PatternFormatStrftime)->Name("PatternFormat:strftime");
BENCHMARK(PatternParseOrv)->Name("PatternParse:orv");
BENCHMARK(PatternParseStrptime)->Name("PatternParse:strptime");
BENCHMARK(FormatOrv)->Name("Format:orv");
BENCHMARK(FormatStrftime)->Name("Format:strftime");
BENCHMARK(FormatHand)->Name("Format:fixed-width");
BENCHMARK(ParseOrv)->Name("Parse:orv");
BENCHMARK(ParseStrptime)->Name("Parse:strptime");
BENCHMARK(ParseStrptimeTimegm)->Name("Parse:strptime+timegm");
BENCHMARK(ParseHand)->Name("Parse:fixed-width");
BENCHMARK(SetCStrOrv)->Name("SetCStr:orv");
BENCHMARK(ParseStrptime)->Name("SetCStr:strptime");
BENCHMARK(ParseHand)->Name("SetCStr:fixed-width");
