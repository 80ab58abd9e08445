// TZif files and POSIX TZ rules: validation and decoding, no allocation.
//
// TZif layout (all integers big-endian):
//   header:  "TZif", version ('\0', '2', '3', '4'), 15 reserved bytes, then six 32-bit
//            counts: isutcnt, isstdcnt, leapcnt, timecnt, typecnt, charcnt
//   data:    timecnt transition times (4 bytes in the first block, 8 in the second),
//            timecnt type indexes (1 byte), typecnt types (utoff 4, isdst 1, abbr index 1),
//            charcnt abbreviation bytes, leapcnt leap records (time + 4), isstdcnt and
//            isutcnt indicator bytes
//   v2+:     a second header and data block with 8-byte times, then "\n" footer "\n"
#include "TzifReader.hpp"

#include "CalendarMath.hpp"

#include <algorithm>
#include <cstring>

namespace orv::tzdb {

namespace {

constexpr std::size_t kHeaderSize = 44;
constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerDay = cal::kSecondsPerDay;

std::uint32_t ReadBe32(const unsigned char* p)
{
    return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | std::uint32_t{p[3]};
}

std::int64_t ReadBe64(const unsigned char* p)
{
    const std::uint64_t v = (std::uint64_t{ReadBe32(p)} << 32) | ReadBe32(p + 4);
    return static_cast<std::int64_t>(v);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// ---------------------------------------------------------------------------------
// POSIX TZ rules
// ---------------------------------------------------------------------------------

class RuleCursor {
public:
    RuleCursor(const char* p, std::size_t len) : p_(p), end_(p + len) {}

    bool AtEnd() const { return p_ == end_; }
    char Peek() const { return p_ < end_ ? *p_ : '\0'; }
    bool Eat(char c)
    {
        if (AtEnd() || *p_ != c) return false;
        ++p_;
        return true;
    }

    // A zone abbreviation: three or more letters, or <...> with three or more of
    // letters, digits, '+' and '-'. Only its well-formedness matters here.
    bool Name()
    {
        std::size_t n = 0;
        if (Eat('<')) {
            while (!AtEnd() && *p_ != '>') {
                const char c = *p_;
                if (!IsAlpha(c) && !IsDigit(c) && c != '+' && c != '-') return false;
                ++p_;
                ++n;
            }
            return Eat('>') && n >= 3;
        }
        while (!AtEnd() && IsAlpha(*p_)) {
            ++p_;
            ++n;
        }
        return n >= 3;
    }

    // Unsigned decimal of 1..maxDigits digits, at most maxValue.
    bool Number(int maxDigits, std::int32_t maxValue, std::int32_t* out)
    {
        std::int32_t v = 0;
        int digits = 0;
        while (!AtEnd() && IsDigit(*p_) && digits < maxDigits) {
            v = v * 10 + (*p_ - '0');
            ++p_;
            ++digits;
        }
        if (digits == 0 || v > maxValue || (!AtEnd() && IsDigit(*p_))) return false;
        *out = v;
        return true;
    }

    // [+|-]hh[:mm[:ss]] in seconds, hours at most maxHours.
    bool SignedHms(std::int32_t maxHours, std::int32_t* out)
    {
        std::int32_t sign = 1;
        if (Eat('-')) {
            sign = -1;
        } else {
            Eat('+');
        }
        std::int32_t h = 0;
        std::int32_t m = 0;
        std::int32_t s = 0;
        if (!Number(3, maxHours, &h)) return false;
        if (Eat(':')) {
            if (!Number(2, 59, &m)) return false;
            if (Eat(':') && !Number(2, 59, &s)) return false;
        }
        *out = sign * (h * kSecondsPerHour + m * 60 + s);
        return true;
    }

    // Jn | n | Mm.w.d, then an optional /time.
    bool Date(PosixRuleDate* d)
    {
        if (Eat('J')) {
            d->kind = PosixRuleDate::Kind::JulianNoLeap;
            if (!Number(3, 365, &d->day) || d->day < 1) return false;
        } else if (Eat('M')) {
            d->kind = PosixRuleDate::Kind::MonthWeekDay;
            if (!Number(2, 12, &d->month) || d->month < 1 || !Eat('.')) return false;
            if (!Number(1, 5, &d->week) || d->week < 1 || !Eat('.')) return false;
            if (!Number(1, 6, &d->weekday)) return false;
        } else if (IsDigit(Peek())) {
            d->kind = PosixRuleDate::Kind::ZeroBased;
            if (!Number(3, 365, &d->day)) return false;
        } else {
            return false;
        }
        d->time = 2 * kSecondsPerHour;
        if (Eat('/')) return SignedHms(167, &d->time);
        return true;
    }

private:
    const char* p_;
    const char* end_;
};

// Days since 1970-01-01 of the rule date in `year`.
std::int64_t RuleDay(const PosixRuleDate& d, std::int64_t year)
{
    switch (d.kind) {
    case PosixRuleDate::Kind::JulianNoLeap: {
        const std::int64_t jan1 = cal::DaysFromCivil(year, 1, 1);
        return jan1 + d.day - 1 + ((cal::IsLeap(year) && d.day >= 60) ? 1 : 0);
    }
    case PosixRuleDate::Kind::ZeroBased:
        return cal::DaysFromCivil(year, 1, 1) + d.day;
    case PosixRuleDate::Kind::MonthWeekDay:
        break;
    }
    const std::int64_t first = cal::DaysFromCivil(year, d.month, 1);
    std::int64_t firstWeekday = 0;                             // 0 = Sunday
    cal::DivDownAndMod<std::int64_t>(first + 4, 7, &firstWeekday); // 1970-01-01 was a Thursday
    std::int64_t delta = 0;
    cal::DivDownAndMod<std::int64_t>(d.weekday - firstWeekday, 7, &delta);
    std::int64_t monthDay = 1 + delta + 7 * (d.week - 1); // [1, 35]
    const std::int64_t length = cal::monthLengths[cal::IsLeap(year)][d.month - 1];
    while (monthDay > length) monthDay -= 7; // week 5 means the last such weekday
    return first + monthDay - 1;
}

} // namespace

bool ParsePosixRule(const char* text, std::size_t len, PosixRule* out)
{
    RuleCursor c(text, len);
    PosixRule r;
    std::int32_t west = 0;
    if (!c.Name() || !c.SignedHms(24, &west)) return false;
    r.stdOffset = -west;
    if (c.AtEnd()) {
        *out = r;
        return true;
    }
    if (!c.Name()) return false;
    r.hasDst = true;
    r.dstOffset = r.stdOffset + kSecondsPerHour;
    const char next = c.Peek();
    if (!c.AtEnd() && (IsDigit(next) || next == '+' || next == '-')) {
        if (!c.SignedHms(24, &west)) return false;
        r.dstOffset = -west;
    }
    if (c.AtEnd()) {
        // No dates: the customary default, second Sunday of March to first Sunday of November.
        r.start = {PosixRuleDate::Kind::MonthWeekDay, 0, 3, 2, 0, 2 * kSecondsPerHour};
        r.end = {PosixRuleDate::Kind::MonthWeekDay, 0, 11, 1, 0, 2 * kSecondsPerHour};
    } else if (!c.Eat(',') || !c.Date(&r.start) || !c.Eat(',') || !c.Date(&r.end) || !c.AtEnd()) {
        return false;
    }
    *out = r;
    return true;
}

void PosixRuleChangesInYear(const PosixRule& rule, std::int64_t year, std::int64_t* toDst, std::int64_t* toStd)
{
    *toDst = RuleDay(rule.start, year) * kSecondsPerDay + rule.start.time - rule.stdOffset;
    *toStd = RuleDay(rule.end, year) * kSecondsPerDay + rule.end.time - rule.dstOffset;
}

std::int32_t PosixRuleOffsetAt(const PosixRule& rule, std::int64_t t)
{
    if (!rule.hasDst) return rule.stdOffset;
    // The changes of the year before, this year and the next bracket t (each change
    // lies within a week of its own year); the latest one at or before t wins.
    const std::int64_t year = cal::CivilFromDays(cal::DivDown<std::int64_t>(t, kSecondsPerDay)).year;
    std::int64_t best = INT64_MIN;
    std::int32_t offset = rule.stdOffset;
    for (std::int64_t y = year - 1; y <= year + 1; ++y) {
        std::int64_t toDst = 0;
        std::int64_t toStd = 0;
        PosixRuleChangesInYear(rule, y, &toDst, &toStd);
        if (toDst <= t && toDst >= best) {
            best = toDst;
            offset = rule.dstOffset;
        }
        if (toStd <= t && toStd >= best) {
            best = toStd;
            offset = rule.stdOffset;
        }
    }
    return offset;
}

// ---------------------------------------------------------------------------------
// TZif
// ---------------------------------------------------------------------------------

std::int64_t TzifFile::TimeAt(std::uint32_t i) const
{
    const unsigned char* p = times + static_cast<std::size_t>(i) * static_cast<std::size_t>(timeSize);
    return timeSize == 8 ? ReadBe64(p) : static_cast<std::int64_t>(static_cast<std::int32_t>(ReadBe32(p)));
}

namespace {

struct Header {
    int version;
    std::uint32_t isutcnt, isstdcnt, leapcnt, timecnt, typecnt, charcnt;
};

bool ReadHeader(const unsigned char* p, std::size_t avail, Header* h)
{
    if (avail < kHeaderSize || std::memcmp(p, "TZif", 4) != 0) return false;
    switch (p[4]) {
    case 0: h->version = 1; break;
    case '2': h->version = 2; break;
    case '3': h->version = 3; break;
    case '4': h->version = 4; break;
    default: return false;
    }
    h->isutcnt = ReadBe32(p + 20);
    h->isstdcnt = ReadBe32(p + 24);
    h->leapcnt = ReadBe32(p + 28);
    h->timecnt = ReadBe32(p + 32);
    h->typecnt = ReadBe32(p + 36);
    h->charcnt = ReadBe32(p + 40);
    return true;
}

constexpr std::uint64_t kBadBlock = UINT64_MAX;

// Bytes of the data block after a header, or kBadBlock when the counts are
// inconsistent. The sum is formed in 64 bits from 32-bit counts, so it cannot wrap.
std::uint64_t BlockSize(const Header& h, int timeSize)
{
    if (h.isutcnt != 0 && h.isutcnt != h.typecnt) return kBadBlock;
    if (h.isstdcnt != 0 && h.isstdcnt != h.typecnt) return kBadBlock;
    const std::uint64_t ts = static_cast<std::uint64_t>(timeSize);
    return h.timecnt * ts + h.timecnt + h.typecnt * std::uint64_t{6} + h.charcnt + h.leapcnt * (ts + 4) +
           h.isstdcnt + h.isutcnt;
}

// Checks the data block that follows a header and fills `out` from it.
TzifStatus ReadBlock(const Header& h, const unsigned char* p, int timeSize, TzifFile* out)
{
    // Real files have under 300 types and a few thousand transitions; the type
    // indexes are bytes, so more than 256 types cannot be addressed.
    if (h.typecnt == 0 || h.typecnt > 256 || h.charcnt == 0) return TzifStatus::BadFormat;
    out->timeCount = h.timecnt;
    out->typeCount = h.typecnt;
    out->timeSize = timeSize;
    out->times = p;
    out->typeIndexes = p + static_cast<std::size_t>(h.timecnt) * static_cast<std::size_t>(timeSize);
    const unsigned char* types = out->typeIndexes + h.timecnt;
    std::int64_t previous = INT64_MIN;
    for (std::uint32_t i = 0; i < h.timecnt; ++i) {
        const std::int64_t t = out->TimeAt(i);
        if (i > 0 && t <= previous) return TzifStatus::BadFormat;
        previous = t;
        if (out->typeIndexes[i] >= h.typecnt) return TzifStatus::BadFormat;
    }
    for (std::uint32_t i = 0; i < h.typecnt; ++i) {
        const unsigned char* ty = types + 6 * static_cast<std::size_t>(i);
        const auto utoff = static_cast<std::int32_t>(ReadBe32(ty));
        if (utoff < kMinUtOffset || utoff > kMaxUtOffset) return TzifStatus::BadFormat;
        if (ty[4] > 1 || ty[5] >= h.charcnt) return TzifStatus::BadFormat;
        out->utOffsets[i] = utoff;
    }
    const unsigned char* indicators = types + 6 * static_cast<std::size_t>(h.typecnt) + h.charcnt +
                                      static_cast<std::size_t>(h.leapcnt) * static_cast<std::size_t>(timeSize + 4);
    for (std::uint32_t i = 0; i < h.isstdcnt + h.isutcnt; ++i) {
        if (indicators[i] > 1) return TzifStatus::BadFormat;
    }
    return h.leapcnt != 0 ? TzifStatus::LeapSeconds : TzifStatus::Ok;
}

} // namespace

TzifStatus ReadTzif(const unsigned char* bytes, std::size_t size, TzifFile* out)
{
    Header h1{};
    if (!ReadHeader(bytes, size, &h1)) return TzifStatus::BadFormat;
    const std::uint64_t block1 = BlockSize(h1, 4);
    const std::uint64_t avail1 = size - kHeaderSize;
    if (block1 > avail1) return TzifStatus::BadFormat;
    if (h1.version == 1) {
        if (block1 != avail1) return TzifStatus::BadFormat;
        out->version = 1;
        out->hasRule = false;
        return ReadBlock(h1, bytes + kHeaderSize, 4, out);
    }
    // Version 2 and later: skip the 32-bit block; the 64-bit one is authoritative.
    const unsigned char* p2 = bytes + kHeaderSize + block1;
    const std::size_t avail2 = static_cast<std::size_t>(avail1 - block1);
    Header h2{};
    if (!ReadHeader(p2, avail2, &h2) || h2.version != h1.version) return TzifStatus::BadFormat;
    const std::uint64_t block2 = BlockSize(h2, 8);
    if (block2 > avail2 - kHeaderSize) return TzifStatus::BadFormat;
    out->version = h2.version;
    const TzifStatus status = ReadBlock(h2, p2 + kHeaderSize, 8, out);
    if (status == TzifStatus::BadFormat) return status;

    // Footer: "\n" rule "\n", and nothing after it.
    const unsigned char* f = p2 + kHeaderSize + block2;
    const std::size_t footerSize = static_cast<std::size_t>(avail2 - kHeaderSize - block2);
    if (footerSize < 2 || f[0] != '\n' || f[footerSize - 1] != '\n') return TzifStatus::BadFormat;
    const char* text = reinterpret_cast<const char*>(f + 1);
    const std::size_t textLen = footerSize - 2;
    if (std::find(text, text + textLen, '\n') != text + textLen) return TzifStatus::BadFormat;
    out->hasRule = textLen != 0;
    if (out->hasRule && !ParsePosixRule(text, textLen, &out->rule)) return TzifStatus::BadFormat;
    return status;
}

} // namespace orv::tzdb
