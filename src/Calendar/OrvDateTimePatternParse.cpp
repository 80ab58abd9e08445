// Pattern parsing of date-time values: the conversions of the formatter read back,
// strictly.
//
// One pass over pattern and text records each number a conversion reads under the
// quantity it stands for (OrvDateTimePattern.hpp), with its position; the same quantity
// read twice must agree. Then the value is built from the quantities that decide it (the
// instant of %s; else year, month, day, hour, minute, second and fraction), settled in
// its zone in a scratch value, and every other quantity read (weekday, week numbers,
// %G, %p, %C, ...) is checked against what the formatter would write for that value.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimePattern.hpp"
#include "Calendar/OrvDateTimeTextInternal.hpp"

#include <cstring>
#include <limits>

namespace {

using namespace orv::text;
using orv::pattern::Quantity;

constexpr int kQuantities = static_cast<int>(Quantity::Count);
constexpr OrvSizeT kMaxYearDigits = 10;

constexpr int Lower(int c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; }
constexpr bool IsLetter(int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

struct Parser {
    // seen[q] is written before its bit in `have` is set, and read only after.
    explicit Parser(Cursor cursor) : c(cursor) {}

    Cursor c;
    struct Seen {
        OrvInt64 value;
        OrvSizeT pos;
    } seen[kQuantities];
    OrvUint32 have = 0; // one bit per quantity
    TextZone zone;
    bool haveZone = false;
    OrvTextStatus refusal = kAccepted;

    bool Has(Quantity q) const { return (have >> static_cast<int>(q) & 1) != 0; }
    const Seen& Get(Quantity q) const { return seen[static_cast<int>(q)]; }

    bool Fail(OrvTextError e, OrvSizeT pos)
    {
        refusal = Refuse(e, pos);
        return false;
    }
    bool Unexpected()
    {
        refusal = c.Unexpected();
        return false;
    }

    // A quantity read at pos: the first reading counts, a later one must agree.
    bool Record(Quantity q, OrvInt64 v, OrvSizeT pos)
    {
        const int i = static_cast<int>(q);
        if (Has(q)) return seen[i].value == v || Fail(ORV_TEXTERROR_Conflict, pos);
        seen[i] = {v, pos};
        have |= OrvUint32{1} << i;
        return true;
    }

    bool RecordZone(const TextZone& z)
    {
        if (!haveZone) {
            zone = z;
            haveZone = true;
            return true;
        }
        return zone.offset == z.offset || Fail(ORV_TEXTERROR_Conflict, z.pos);
    }

    // Exactly width digits, lo..hi.
    bool Number(int width, OrvInt64 lo, OrvInt64 hi, Quantity q)
    {
        const OrvSizeT pos = c.pos;
        OrvInt64 v = 0;
        if (!c.Digits(width, &v, &refusal)) return false;
        if (v < lo || v > hi) return Fail(ORV_TEXTERROR_FieldRange, pos);
        return Record(q, v, pos);
    }

    // An optional sign and 4 digits, or 4 to 10 when greedy; within 32 bits.
    bool Year(Quantity q, bool greedy)
    {
        const OrvSizeT pos = c.pos;
        const bool negative = c.Peek() == '-';
        if (negative || c.Peek() == '+') ++c.pos;
        const OrvSizeT run = c.DigitRun();
        if (run < 4) {
            c.pos += run;
            return Unexpected();
        }
        const OrvSizeT digits = greedy ? run : 4;
        if (digits > kMaxYearDigits) return Fail(ORV_TEXTERROR_FieldRange, pos);
        OrvInt64 v = 0;
        c.Digits(static_cast<int>(digits), &v, &refusal);
        if (negative) v = -v;
        if (v < std::numeric_limits<OrvInt>::min() || v > std::numeric_limits<OrvInt>::max())
            return Fail(ORV_TEXTERROR_FieldRange, pos);
        return Record(q, v, pos);
    }

    // One of the names, ignoring case: abbreviated to three letters, or in full.
    bool Name(const char* const* names, int count, bool abbreviated, Quantity q, int first)
    {
        for (int i = 0; i < count; ++i) {
            const OrvSizeT n = abbreviated ? 3 : std::strlen(names[i]);
            OrvSizeT k = 0;
            while (k < n && Lower(c.PeekAt(k)) == Lower(names[i][k])) ++k;
            if (k == n) {
                const OrvSizeT pos = c.pos;
                c.pos += n;
                return Record(q, i + first, pos);
            }
        }
        return Unexpected();
    }

    // %e: a space and a digit, or two digits.
    bool SpacePaddedDay()
    {
        const OrvSizeT pos = c.pos;
        OrvInt64 v = 0;
        if (!(c.Take(' ') ? c.Digits(1, &v, &refusal) : c.Digits(2, &v, &refusal))) return false;
        if (v < 1 || v > 31) return Fail(ORV_TEXTERROR_FieldRange, pos);
        return Record(Quantity::Day, v, pos);
    }

    // %s: an optional '-' and up to 19 digits, whose instant an OrvTime holds.
    bool Epoch()
    {
        const OrvSizeT pos = c.pos;
        const bool negative = c.Take('-');
        const OrvSizeT run = c.DigitRun();
        if (run == 0) return Unexpected();
        if (run > 19) return Fail(ORV_TEXTERROR_FieldRange, pos);
        OrvInt64 v = 0;
        c.Digits(static_cast<int>(run > 18 ? 18 : run), &v, &refusal);
        if (run == 19) {
            OrvInt64 last = 0;
            c.Digits(1, &last, &refusal);
            if (__builtin_mul_overflow(v, 10, &v) || __builtin_add_overflow(v, last, &v))
                return Fail(ORV_TEXTERROR_FieldRange, pos);
        }
        if (negative) v = -v;
        OrvTime t;
        if (__builtin_mul_overflow(v, ORV_TIME_NANOSECONDS_PER_SECOND, &t) || t == ORV_TIME_INVALID)
            return Fail(ORV_TEXTERROR_FieldRange, pos);
        return Record(Quantity::Epoch, v, pos);
    }

    // Seconds and their fraction: digits -1 for an optional fraction of 1 to 9 digits.
    bool SecondsWithFraction(int digits)
    {
        if (!Number(2, 0, 59, Quantity::Second)) return false;
        if (digits == 0 || (digits < 0 && c.Peek() != '.')) return true;
        if (!c.Take('.')) return Unexpected();
        const OrvSizeT pos = c.pos;
        const OrvSizeT run = digits < 0 ? c.DigitRun() : static_cast<OrvSizeT>(digits);
        if (run == 0) return Unexpected();
        if (run > 9) return Fail(ORV_TEXTERROR_FieldRange, pos);
        OrvInt64 v = 0;
        if (!c.Digits(static_cast<int>(run), &v, &refusal)) return false;
        for (OrvSizeT i = run; i < 9; ++i) v *= 10;
        return Record(Quantity::Nanos, v, pos);
    }

    bool Offset()
    {
        TextZone z;
        return ReadZone(&c, &z, &refusal) && RecordZone(z);
    }

    // %Z: Z, z or UTC; an offset; or an abbreviation, skipped.
    bool ZoneName()
    {
        const int first = c.Peek();
        if (first == '+' || first == '-') return Offset();
        const OrvSizeT pos = c.pos;
        OrvSizeT n = 0;
        while (IsLetter(c.PeekAt(n))) ++n;
        if (n == 0) return Unexpected();
        const bool utc = (n == 1 && Lower(first) == 'z') ||
                         (n == 3 && c.text[pos] == 'U' && c.text[pos + 1] == 'T' && c.text[pos + 2] == 'C');
        c.pos += n;
        return !utc || RecordZone({ZoneKind::Utc, 0, pos});
    }

    bool Parse(const char* pattern);
};

bool Parser::Parse(const char* pattern)
{
    // A composite conversion (%F, %T, %D, %R) is read as its own pattern, then the
    // pattern goes on after it.
    const char* resume = nullptr;
    for (const char* p = pattern;;) {
        if (*p == '\0') {
            if (resume == nullptr) break;
            p = resume;
            resume = nullptr;
            continue;
        }
        if (*p != '%') {
            if (!c.Take(static_cast<unsigned char>(*p))) return Unexpected();
            ++p;
            continue;
        }
        const char conv = p[1];
        int step = 2;
        bool ok = true;
        switch (conv) {
        case 'Y': ok = Year(Quantity::Year, p[2] != '%'); break;
        case 'G': ok = Year(Quantity::WeekYear, p[2] != '%'); break;
        case 'C': ok = Number(2, 0, 99, Quantity::Century); break;
        case 'y': ok = Number(2, 0, 99, Quantity::Year2); break;
        case 'g': ok = Number(2, 0, 99, Quantity::WeekYear2); break;
        case 'm': ok = Number(2, 1, 12, Quantity::Month); break;
        case 'd': ok = Number(2, 1, 31, Quantity::Day); break;
        case 'e': ok = SpacePaddedDay(); break;
        case 'H': ok = Number(2, 0, 23, Quantity::Hour); break;
        case 'I': ok = Number(2, 1, 12, Quantity::Hour12); break;
        case 'M': ok = Number(2, 0, 59, Quantity::Minute); break;
        case 'S': ok = Number(2, 0, 59, Quantity::Second); break;
        case 'j': ok = Number(3, 1, 366, Quantity::DayOfYear); break;
        case 'w': ok = Number(1, 0, 6, Quantity::Weekday); break;
        case 'U': ok = Number(2, 0, 53, Quantity::WeekU); break;
        case 'W': ok = Number(2, 0, 53, Quantity::WeekW); break;
        case 'V': ok = Number(2, 1, 53, Quantity::WeekV); break;
        case 'u': {
            const OrvSizeT pos = c.pos;
            OrvInt64 v = 0;
            ok = c.Digits(1, &v, &refusal) &&
                 (v >= 1 && v <= 7 ? Record(Quantity::Weekday, v % 7, pos) : Fail(ORV_TEXTERROR_FieldRange, pos));
            break;
        }
        case 'a':
        case 'A': ok = Name(orv::pattern::kDayNames, 7, conv == 'a', Quantity::Weekday, 0); break;
        case 'b':
        case 'h':
        case 'B': ok = Name(orv::pattern::kMonthNames, 12, conv != 'B', Quantity::Month, 1); break;
        case 'p': {
            static constexpr const char* kHalves[2] = {"AM", "PM"};
            ok = Name(kHalves, 2, false, Quantity::Pm, 0);
            break;
        }
        case 'F':
        case 'T':
        case 'D':
        case 'R':
            resume = p + 2;
            p = conv == 'F' ? "%Y-%m-%d" : conv == 'T' ? "%H:%M:%S" : conv == 'D' ? "%m/%d/%y" : "%H:%M";
            continue;
        case 'z': ok = Offset(); break;
        case 'Z': ok = ZoneName(); break;
        case 's': ok = Epoch(); break;
        case 'n': ok = c.Take('\n') || Unexpected(); break;
        case 't': ok = c.Take('\t') || Unexpected(); break;
        case '%': ok = c.Take('%') || Unexpected(); break;
        case 'E':
            if (p[2] == 'z') {
                ok = Offset();
                step = 3;
            } else if ((p[2] == '*' || IsDigit(p[2])) && p[3] == 'S') {
                ok = SecondsWithFraction(p[2] == '*' ? -1 : p[2] - '0');
                step = 4;
            } else {
                return Fail(ORV_TEXTERROR_Conversion, static_cast<OrvSizeT>(p - pattern));
            }
            break;
        default: return Fail(ORV_TEXTERROR_Conversion, static_cast<OrvSizeT>(p - pattern));
        }
        if (!ok) return false;
        p += step;
    }
    return true;
}

constexpr OrvUint32 Bit(Quantity q) { return OrvUint32{1} << static_cast<int>(q); }

// The reading the deciding quantities give; what the pattern leaves out is
// 1970-01-01 00:00:00. Adds the quantities used to *used.
OrvTextStatus Reading(const Parser& ps, TextFields* f, OrvUint32* used)
{
    auto use = [&](Quantity q) {
        *used |= Bit(q);
        return ps.Get(q);
    };
    f->monthPos = f->dayPos = f->hourPos = f->minPos = f->secPos = f->nanosPos = 0;
    if (ps.Has(Quantity::Year)) {
        f->year = static_cast<OrvInt>(use(Quantity::Year).value);
    } else if (ps.Has(Quantity::Century) || ps.Has(Quantity::Year2)) {
        const OrvInt64 y2 = ps.Has(Quantity::Year2) ? use(Quantity::Year2).value : 0;
        f->year = static_cast<OrvInt>(ps.Has(Quantity::Century) ? use(Quantity::Century).value * 100 + y2
                                                                 : (y2 < 69 ? 2000 : 1900) + y2);
    }
    if (ps.Has(Quantity::Month) || ps.Has(Quantity::Day) || !ps.Has(Quantity::DayOfYear)) {
        if (ps.Has(Quantity::Month)) {
            f->month = static_cast<OrvInt>(use(Quantity::Month).value);
            f->monthPos = ps.Get(Quantity::Month).pos;
        }
        if (ps.Has(Quantity::Day)) {
            f->day = static_cast<OrvInt>(use(Quantity::Day).value);
            f->dayPos = ps.Get(Quantity::Day).pos;
        }
    } else {
        const auto& yday = use(Quantity::DayOfYear);
        if (yday.value > orv::cal::YearLength(f->year)) return Refuse(ORV_TEXTERROR_FieldRange, yday.pos);
        const orv::cal::MonthDay md = orv::cal::MonthDayOfYear(f->year, static_cast<OrvInt>(yday.value));
        f->month = md.month;
        f->day = md.day;
        f->monthPos = f->dayPos = yday.pos;
    }
    if (ps.Has(Quantity::Hour)) {
        f->hour = static_cast<OrvInt>(use(Quantity::Hour).value);
        f->hourPos = ps.Get(Quantity::Hour).pos;
    } else if (ps.Has(Quantity::Hour12)) {
        const bool pm = ps.Has(Quantity::Pm) && use(Quantity::Pm).value != 0;
        f->hour = static_cast<OrvInt>(use(Quantity::Hour12).value % 12 + (pm ? 12 : 0));
        f->hourPos = ps.Get(Quantity::Hour12).pos;
    }
    if (ps.Has(Quantity::Minute)) f->min = static_cast<OrvInt>(use(Quantity::Minute).value);
    if (ps.Has(Quantity::Second)) f->sec = static_cast<OrvInt>(use(Quantity::Second).value);
    if (ps.Has(Quantity::Nanos)) f->nanos = static_cast<OrvInt>(use(Quantity::Nanos).value);
    return CheckFields(*f);
}

OrvTextStatus ReadPattern(const char* pattern, const char* text, OrvSizeT len, const Target& local, OrvDateTime* scratch)
{
    if (pattern == nullptr) [[unlikely]]
        return Refuse(ORV_TEXTERROR_Conversion, 0);
    Parser ps(Cursor{text != nullptr ? text : "", text != nullptr ? len : 0, 0});
    if (!ps.Parse(pattern)) [[unlikely]]
        return ps.refusal;
    if (ps.c.Peek() != -1) [[unlikely]]
        return Refuse(ORV_TEXTERROR_Character, ps.c.pos);

    OrvTextStatus s = kAccepted;
    Target target;
    if (!ResolveZone(ps.haveZone ? ps.zone : TextZone{}, local, &target, &s)) [[unlikely]]
        return s;
    OrvUint32 used = 0;
    if (ps.Has(Quantity::Epoch)) [[unlikely]] {
        used = Bit(Quantity::Epoch);
        const auto& epoch = ps.Get(Quantity::Epoch);
        switch (SettleInstant(scratch, epoch.value * ORV_TIME_NANOSECONDS_PER_SECOND, target)) {
        case ORV_TEXTERROR_None: break;
        case ORV_TEXTERROR_NoOffset: return Refuse(ORV_TEXTERROR_NoOffset, 0);
        default: return Refuse(ORV_TEXTERROR_FieldRange, epoch.pos);
        }
    } else {
        TextFields f;
        s = Reading(ps, &f, &used);
        if (s.error != ORV_TEXTERROR_None) [[unlikely]]
            return s;
        switch (Settle(scratch, f, target)) {
        case ORV_TEXTERROR_None: break;
        case ORV_TEXTERROR_Skipped: return Refuse(ORV_TEXTERROR_Skipped, f.hourPos);
        default: return Refuse(ORV_TEXTERROR_NoOffset, 0);
        }
    }
    // Every other quantity read must be what the value gives; the first in the text
    // that is not is reported.
    for (OrvUint32 rest = ps.have & ~used; rest != 0; rest &= rest - 1) {
        const auto q = static_cast<Quantity>(__builtin_ctz(rest));
        if (orv::pattern::QuantityOf(q, scratch) == ps.Get(q).value) continue;
        if (s.error == ORV_TEXTERROR_None || ps.Get(q).pos < s.position) s = Refuse(ORV_TEXTERROR_Conflict, ps.Get(q).pos);
    }
    return s;
}

} // namespace

OrvDateTime* OrvDateTimeConstructParse(OrvDateTime* d, const char* pattern, const char* text, OrvSizeT len,
                                       const OrvTimezone* tz, OrvTextStatus* status)
{
    const OrvTextStatus s = ReadPattern(pattern, text, len, LocalTarget(tz), d);
    Report(status, s);
    if (s.error != ORV_TEXTERROR_None) return nullptr;
    HoldZone(d);
    return d;
}
