// Pattern formatting of date-time values (strftime's conversions in the C locale, plus
// %E*S, %E#S and %Ez), the numbers the conversions stand for, and the week-based year.
//
// Output goes to a 256-byte buffer on the stack and, only for longer output, on into a
// string from the caller's allocator, which replaces the caller's content at the end;
// so a failure leaves the caller's string as it was.
#include "Calendar/CalendarMath.hpp"
#include "Calendar/OrvDateTimePattern.hpp"
#include "Calendar/OrvDateTimeTextInternal.hpp"
#include "Calendar/OrvDateTimeWeeks.hpp"

#include "Orv/Calendar/OrvTzdbTimezone.h"

#include <cstring>

namespace orv::pattern {

OrvInt WeekYearOf(const OrvDateTime* d)
{
    // January days in a week numbered 52 or 53 lie in the last week of the year before;
    // December days in week 1 in the first week of the next (no other week number can
    // reach into the neighbouring year, whatever the week settings).
    const OrvInt week = detail::OrvDateTimeCalculateWeekOfYear(d);
    OrvInt64 year = d->year;
    if (d->month == 1 && week >= 52) --year;
    else if (d->month == 12 && week == 1) ++year;
    return static_cast<OrvInt>(year); // wraps at the 32-bit limit, as carried fields do
}

namespace {

OrvInt64 Mod100(OrvInt64 v)
{
    OrvInt64 mod;
    cal::DivDownAndMod<OrvInt64>(v, 100, &mod);
    return mod;
}

} // namespace

OrvInt64 QuantityOf(Quantity q, const OrvDateTime* d)
{
    switch (q) {
    case Quantity::Year: return d->year;
    case Quantity::Century: return cal::DivDown<OrvInt64>(d->year, 100);
    case Quantity::Year2: return Mod100(d->year);
    case Quantity::WeekYear: return WeekYearOf(d);
    case Quantity::WeekYear2: return Mod100(WeekYearOf(d));
    case Quantity::Month: return d->month;
    case Quantity::Day: return d->monthDay;
    case Quantity::DayOfYear: return detail::DayOfYearInRange(d);
    case Quantity::Hour: return d->hour;
    case Quantity::Hour12: return (d->hour + 11) % 12 + 1;
    case Quantity::Pm: return d->hour >= 12 ? 1 : 0;
    case Quantity::Minute: return d->min;
    case Quantity::Second: return d->sec;
    case Quantity::Nanos: return d->nanosec;
    case Quantity::Weekday: return detail::OrvDateTimeCalculateDayOfWeek(d);
    // %U and %W: weeks from the first Sunday or Monday, the days before it week 0.
    case Quantity::WeekU:
        return detail::WeekInPeriod(detail::OrvDateTimeCalculateDayOfWeek(d), detail::DayOfYearInRange(d),
                                    ORV_WEEKDAY_Sunday, cal::kDaysPerWeek);
    case Quantity::WeekW:
        return detail::WeekInPeriod(detail::OrvDateTimeCalculateDayOfWeek(d), detail::DayOfYearInRange(d),
                                    ORV_WEEKDAY_Monday, cal::kDaysPerWeek);
    case Quantity::WeekV: return detail::OrvDateTimeCalculateWeekOfYear(d);
    case Quantity::Epoch: {
        if (d->wallTime != ORV_TIME_INVALID) return cal::DivDown<OrvInt64>(d->wallTime, cal::kNanosecondsPerSecond);
        // A date outside the instant range: its seconds still fit 64 bits.
        const OrvInt64 local = cal::LocalSecondsFromFields(d->year, d->month, d->monthDay, d->hour, d->min, d->sec);
        return local + cal::DivDown<OrvInt64>(d->nanosec - d->offset, cal::kNanosecondsPerSecond);
    }
    case Quantity::Count: break;
    }
    return 0;
}

} // namespace orv::pattern

namespace {

using namespace orv::text;
using orv::pattern::Quantity;
using orv::pattern::QuantityOf;

class Sink {
public:
    explicit Sink(OrvAllocator* a) : allocator_(a) {}
    ~Sink()
    {
        if (spilled_) OrvStringDestruct(&spill_);
    }
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    // Where n <= kPieceMax characters may be written; null when the output cannot grow.
    char* Room(OrvSizeT n)
    {
        if (used_ + n < kBuffer) return buf_ + used_;
        return Flush() ? buf_ : nullptr;
    }
    void Done(const char* end) { used_ = static_cast<OrvSizeT>(end - buf_); }

    bool Append(const char* s, OrvSizeT n)
    {
        while (n > 0) {
            char* w = Room(kPieceMax);
            if (w == nullptr) return false;
            const OrvSizeT k = n < kPieceMax ? n : kPieceMax;
            std::memcpy(w, s, k);
            Done(w + k);
            s += k;
            n -= k;
        }
        return true;
    }

    // Replaces str's content with the output.
    bool Finish(OrvString* str)
    {
        if (!spilled_) return AssignText(str, buf_, used_);
        if (!Flush()) return false;
        OrvString old = *str;
        *str = spill_;
        spilled_ = false;
        OrvStringDestruct(&old);
        return true;
    }

private:
    static constexpr OrvSizeT kBuffer = 256;

    bool Flush()
    {
        if (!spilled_) {
            if (OrvStringConstruct(&spill_, allocator_) == nullptr) return false;
            spilled_ = true;
        }
        buf_[used_] = '\0';
        if (OrvStringAppendCStr(&spill_, buf_) == nullptr) return false;
        used_ = 0;
        return true;
    }

    char buf_[kBuffer];
    OrvSizeT used_ = 0;
    OrvAllocator* allocator_;
    OrvString spill_{};
    bool spilled_ = false;
};

char* PutName(char* w, const char* name, bool abbreviated)
{
    const OrvSizeT n = abbreviated ? 3 : std::strlen(name);
    std::memcpy(w, name, n);
    return w + n;
}

// The zone's own name for d's instant: the database's abbreviation, "UTC" for the
// global UTC zone; null when the zone has none.
const char* Abbreviation(const OrvDateTime* d)
{
    if (orv::detail::IsGlobalUtc(&d->tz)) return "UTC";
    if (d->wallTime == ORV_TIME_INVALID) return nullptr;
    return OrvTzdbTimezoneGetAbbreviation(&d->tz, d->wallTime);
}

bool FormatInto(const OrvDateTime* d, const char* pattern, Sink* out)
{
    const char* p = pattern;
    while (*p != '\0') {
        if (*p != '%') {
            const char* literal = p;
            while (*p != '\0' && *p != '%') ++p;
            if (!out->Append(literal, static_cast<OrvSizeT>(p - literal))) return false;
            continue;
        }
        const char conv = p[1];
        OrvSizeT step = 2;
        const char* composite = nullptr;
        char* w = out->Room(kPieceMax);
        if (w == nullptr) return false;
        switch (conv) {
        case 'Y': w = PutInt(w, d->year, 4); break;
        case 'C': w = PutInt(w, QuantityOf(Quantity::Century, d), 2); break;
        case 'y': w = Put2(w, static_cast<unsigned>(QuantityOf(Quantity::Year2, d))); break;
        case 'G': w = PutInt(w, orv::pattern::WeekYearOf(d), 4); break;
        case 'g': w = Put2(w, static_cast<unsigned>(QuantityOf(Quantity::WeekYear2, d))); break;
        case 'm': w = Put2(w, static_cast<unsigned>(d->month)); break;
        case 'd': w = Put2(w, static_cast<unsigned>(d->monthDay)); break;
        case 'e':
            if (d->monthDay < 10) *w++ = ' ';
            w = PutInt(w, d->monthDay, 1);
            break;
        case 'H': w = Put2(w, static_cast<unsigned>(d->hour)); break;
        case 'I': w = Put2(w, static_cast<unsigned>(QuantityOf(Quantity::Hour12, d))); break;
        case 'p': w = PutName(w, d->hour < 12 ? "AM" : "PM", false); break;
        case 'M': w = Put2(w, static_cast<unsigned>(d->min)); break;
        case 'S': w = Put2(w, static_cast<unsigned>(d->sec)); break;
        case 'j': w = PutInt(w, QuantityOf(Quantity::DayOfYear, d), 3); break;
        case 'a':
        case 'A':
            w = PutName(w, orv::pattern::kDayNames[QuantityOf(Quantity::Weekday, d)], conv == 'a');
            break;
        case 'b':
        case 'h':
        case 'B': w = PutName(w, orv::pattern::kMonthNames[d->month - 1], conv != 'B'); break;
        case 'u': {
            const OrvInt64 wday = QuantityOf(Quantity::Weekday, d);
            *w++ = static_cast<char>('0' + (wday == 0 ? 7 : wday));
            break;
        }
        case 'w': *w++ = static_cast<char>('0' + QuantityOf(Quantity::Weekday, d)); break;
        case 'U': w = Put2(w, static_cast<unsigned>(QuantityOf(Quantity::WeekU, d))); break;
        case 'W': w = Put2(w, static_cast<unsigned>(QuantityOf(Quantity::WeekW, d))); break;
        case 'V': w = Put2(w, static_cast<unsigned>(QuantityOf(Quantity::WeekV, d))); break;
        case 'F': composite = "%Y-%m-%d"; break;
        case 'T': composite = "%H:%M:%S"; break;
        case 'D': composite = "%m/%d/%y"; break;
        case 'R': composite = "%H:%M"; break;
        case 'z':
            if (!d->floating) w = PutOffset(w, d->offset, false);
            break;
        case 'Z':
            if (!d->floating) {
                const char* abbreviation = Abbreviation(d);
                if (abbreviation == nullptr) {
                    w = PutOffset(w, d->offset, false);
                } else {
                    out->Done(w);
                    if (!out->Append(abbreviation, std::strlen(abbreviation))) return false;
                    p += step;
                    continue;
                }
            }
            break;
        case 's': w = PutInt(w, QuantityOf(Quantity::Epoch, d), 1); break;
        case 'n': *w++ = '\n'; break;
        case 't': *w++ = '\t'; break;
        case '%': *w++ = '%'; break;
        case 'E':
            if (p[2] == 'z') {
                if (!d->floating) w = PutOffset(w, d->offset, true);
                step = 3;
            } else if ((p[2] == '*' || IsDigit(p[2])) && p[3] == 'S') {
                w = Put2(w, static_cast<unsigned>(d->sec));
                w = PutFraction(w, d->nanosec, p[2] == '*' ? -1 : p[2] - '0');
                step = 4;
            } else {
                return false;
            }
            break;
        default: return false; // unknown, or a '%' that ends the pattern
        }
        out->Done(w);
        if (composite != nullptr && !FormatInto(d, composite, out)) return false;
        p += step;
    }
    return true;
}

} // namespace

OrvBool OrvDateTimeFormat(const OrvDateTime* d, const char* pattern, OrvString* str)
{
    if (pattern == nullptr || !orv::detail::Normalize(d)) return ORV_FALSE;
    Sink out(str->allocator);
    if (!FormatInto(d, pattern, &out)) return ORV_FALSE;
    return out.Finish(str) ? ORV_TRUE : ORV_FALSE;
}

OrvInt OrvDateTimeGetWeekYear(const OrvDateTime* d)
{
    if (!orv::detail::Normalize(d)) return -1;
    return orv::pattern::WeekYearOf(d);
}
