// POSIX TZ rules ("CET-1CEST,M3.5.0,M10.5.0/3"): parsing and evaluation, no allocation.
#include "Timezone/PosixRule.hpp"

#include "Calendar/CalendarMath.hpp"

#include <algorithm>
#include <utility>

namespace orv::tzdb {

namespace {

using cal::kSecondsPerHour;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

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
    // letters, digits, '+' and '-'; *name and *length get it without the brackets.
    bool Name(const char** name, std::size_t* length)
    {
        std::size_t n = 0;
        const bool quoted = Eat('<');
        *name = p_;
        if (quoted) {
            while (!AtEnd() && *p_ != '>') {
                const char c = *p_;
                if (!IsAlpha(c) && !IsDigit(c) && c != '+' && c != '-') return false;
                ++p_;
                ++n;
            }
            *length = n;
            return Eat('>') && n >= 3;
        }
        while (!AtEnd() && IsAlpha(*p_)) {
            ++p_;
            ++n;
        }
        *length = n;
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
        *out = sign * cal::SecondsFromHms(h, m, s);
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
    const std::int64_t delta = cal::FloorMod(d.weekday - cal::WeekdayOfDays(first), cal::kDaysPerWeek);
    std::int64_t monthDay = 1 + delta + 7 * (d.week - 1); // [1, 35]
    const std::int64_t length = cal::MonthLength(year, d.month);
    while (monthDay > length) monthDay -= 7; // week 5 means the last such weekday
    return first + monthDay - 1;
}

} // namespace

bool ParsePosixRule(const char* text, std::size_t len, PosixRule* out)
{
    RuleCursor c(text, len);
    PosixRule r;
    std::int32_t west = 0;
    if (!c.Name(&r.stdName, &r.stdNameLength) || !c.SignedHms(24, &west)) return false;
    r.stdOffset = -west;
    if (c.AtEnd()) {
        *out = r;
        return true;
    }
    if (!c.Name(&r.dstName, &r.dstNameLength)) return false;
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
    *toDst = RuleDay(rule.start, year) * cal::kSecondsPerDay + rule.start.time - rule.stdOffset;
    *toStd = RuleDay(rule.end, year) * cal::kSecondsPerDay + rule.end.time - rule.dstOffset;
}

bool PosixRuleIsDstAt(const PosixRule& rule, std::int64_t t)
{
    if (!rule.hasDst) return false;
    // The changes of the year before, this year and the next bracket t (each change
    // lies within a week of its own year); the latest one at or before t wins.
    const std::int64_t year = cal::YearOfSecond(t);
    std::int64_t best = INT64_MIN;
    bool dst = false;
    for (std::int64_t y = year - 1; y <= year + 1; ++y) {
        std::int64_t toDst = 0;
        std::int64_t toStd = 0;
        PosixRuleChangesInYear(rule, y, &toDst, &toStd);
        if (toDst <= t && toDst >= best) {
            best = toDst;
            dst = true;
        }
        if (toStd <= t && toStd >= best) {
            best = toStd;
            dst = false;
        }
    }
    return dst;
}

std::int32_t PosixRuleOffsetAt(const PosixRule& rule, std::int64_t t)
{
    return PosixRuleIsDstAt(rule, t) ? rule.dstOffset : rule.stdOffset;
}

PosixRuleReading PosixRuleReadLocal(const PosixRule& rule, std::int64_t local)
{
    if (!rule.hasDst) return {rule.stdOffset, rule.stdOffset, INT64_MIN};
    // The changes of the reading's year and the years either side, in the order the
    // zone table takes them: by year, the earlier of a year's two first; a change at
    // the instant of the one before replaces it; one that goes back is dropped.
    struct Change {
        std::int64_t at;
        bool toDst;
    } changes[6];
    int n = 0;
    const std::int64_t year = cal::YearOfSecond(local);
    for (std::int64_t y = year - 1; y <= year + 1; ++y) {
        Change pair[2] = {{0, true}, {0, false}};
        PosixRuleChangesInYear(rule, y, &pair[0].at, &pair[1].at);
        if (pair[1].at < pair[0].at) std::swap(pair[0], pair[1]);
        for (const Change& c : pair) {
            if (n > 0 && c.at < changes[n - 1].at) continue;
            if (n > 0 && c.at == changes[n - 1].at) {
                changes[n - 1].toDst = c.toDst;
            } else {
                changes[n++] = c;
            }
        }
    }
    const auto offset = [&rule](bool dst) { return dst ? rule.dstOffset : rule.stdOffset; };
    bool dst = PosixRuleIsDstAt(rule, changes[0].at - 1);
    for (int i = 0; i < n; ++i) {
        if (changes[i].toDst == dst) continue;
        const std::int32_t before = offset(dst);
        const std::int32_t after = offset(changes[i].toDst);
        if (local < changes[i].at + std::min(before, after)) return {before, before, INT64_MIN};
        if (local < changes[i].at + std::max(before, after)) return {before, after, changes[i].at};
        dst = changes[i].toDst;
    }
    return {offset(dst), offset(dst), INT64_MIN};
}

} // namespace orv::tzdb
