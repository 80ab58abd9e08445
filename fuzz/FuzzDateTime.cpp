// Date-time values under sequences of operations decoded from the input: constructions
// (from instants, from fields far out of range, from text), field writes and additions,
// zone moves and text round trips on three values. After every step each value is
// checked against std::chrono's reading of its instant plus offset, comparisons
// against the UTC readings, and a refused operation must have left its value as it was.
#include "FuzzSupport.h"

using fuzz::Bytes;
using fuzz::SameRecord;

namespace {

using fuzz::CarriedLocal;
using fuzz::Wide;
constexpr OrvTime kNs = ORV_TIME_NANOSECONDS_PER_SECOND;
constexpr Wide kDay = Wide{86400} * kNs;

bool YearFits(Wide local) { return local / kDay / 365 < 2147480000 && -local / kDay / 365 < 2147480000; }
bool Gapless(const OrvTimezone* tz) { return tz == nullptr || !OrvTzdbTimezoneIs(tz); }

// A normalized value reads `expected`, or (its zone skipped it) a reading at most 2
// days later.
void CheckCarried(const OrvDateTime& d, Wide expected, bool gapless)
{
    if (!YearFits(expected)) return;
    const Wide got = CarriedLocal(d);
    FUZZ_CHECK(got == expected || (!gapless && got > expected && got - expected <= 2 * kDay));
}

struct Session {
    OrvDateTime v[3]{};
    bool live[3] = {};
    OrvTimezone counted; // a counted zone, so that lost or extra references show
    fuzz::Allocator zoneAlloc;

    const OrvTimezone* Zone(Bytes& in)
    {
        const unsigned i = in.U8();
        return i % 16 == 15 ? &counted : fuzz::Zone(i);
    }

    // Normalizes d and checks it; false when its zone has no offset for it.
    static bool Check(OrvDateTime* d)
    {
        const bool pending = !d->normalized || d->offset == ORV_TIME_INVALID;
        const Wide expected = CarriedLocal(*d);
        const OrvTime t = OrvDateTimeGetWallTime(d);
        const OrvTime off = OrvDateTimeGetCurrentUTCOffset(d);
        FUZZ_CHECK(OrvDateTimeGetWallTime(d) == t); // a reader that failed fails again
        if (off == ORV_TIME_INVALID) return false;
        FUZZ_CHECK(d->normalized && d->offset == off && (d->floating ? off == 0 : OrvDateTimeGetOffset(d) == off));
        if (pending) CheckCarried(*d, expected, Gapless(OrvDateTimeGetTimezone(d)));
        if (t == ORV_TIME_INVALID) {
            FUZZ_CHECK(d->month >= 1 && d->month <= 12 && d->monthDay >= 1 && d->monthDay <= 31 && d->hour >= 0 &&
                       d->hour <= 23 && d->min >= 0 && d->min <= 59 && d->sec >= 0 && d->sec <= 59 && d->nanosec >= 0 &&
                       d->nanosec < kNs);
            return true;
        }
        FUZZ_CHECK(d->floating || OrvTimezoneGetOffset(&d->tz, t) == off);
        const Wide local = Wide{t} + off; // may leave 64 bits at the ends of the instant range
        FUZZ_CHECK(CarriedLocal(*d) == local);
        if (local != OrvTime(local)) return true;
        const fuzz::Reading r = fuzz::ReadingOf(OrvTime(local));
        FUZZ_CHECK(d->year == r.year && d->month == r.month && d->monthDay == r.day && d->hour == r.hour &&
                   d->min == r.min && d->sec == r.sec && d->nanosec == r.nanos);
        FUZZ_CHECK(OrvDateTimeGetField(d, ORV_DATETIMEFIELD_DayOfWeek) == r.weekday &&
                   OrvDateTimeGetField(d, ORV_DATETIMEFIELD_DayOfYear) == r.dayOfYear);
        return true;
    }

    static void CheckOrder(OrvDateTime* a, OrvDateTime* b)
    {
        const bool eq = OrvDateTimeEqual(a, b), ab = OrvDateTimeLess(a, b), ba = OrvDateTimeLess(b, a);
        if (!Check(a) || !Check(b)) {
            FUZZ_CHECK(!eq && !ab && !ba);
            return;
        }
        // By the UTC readings: the instants where both have one (Check tied them).
        const Wide ka = CarriedLocal(*a) - a->offset, kb = CarriedLocal(*b) - b->offset;
        FUZZ_CHECK(eq == (ka == kb) && ab == (ka < kb) && ba == (kb < ka));
    }

    // Text written by the value reads back as the same instant and offset (ISO 8601),
    // or the same reading (the compact form, which has no nanoseconds and no offset).
    static void RoundTrip(OrvDateTime* d, OrvString* s)
    {
        OrvDateTime back;
        if (OrvDateTimeGetISO8601(d, s, -1)) {
            OrvTextStatus st;
            if (!OrvDateTimeConstructISO8601(&back, OrvStringCStr(s), OrvStringLength(s), OrvDateTimeGetTimezone(d), &st)) {
                FUZZ_CHECK(st.error == ORV_TEXTERROR_Allocation); // the pool of offsets with seconds is full
                return;
            }
            FUZZ_CHECK(back.wallTime == d->wallTime && back.offset == d->offset && back.year == d->year &&
                       back.nanosec == d->nanosec && back.floating == d->floating);
            OrvDateTimeDestruct(&back);
        }
        OrvDateTimeConstructCopy(&back, d);
        if (OrvDateTimeGetString(d, s) && OrvDateTimeSetCStr(&back, OrvStringCStr(s)))
            FUZZ_CHECK(back.year == d->year && back.month == d->month && back.monthDay == d->monthDay &&
                       back.hour == d->hour && back.min == d->min && back.sec == d->sec);
        OrvDateTimeDestruct(&back);
    }

    void Step(Bytes& in, OrvString* s)
    {
        const std::uint8_t op = in.U8();
        const int i = op / 16 % 3, j = op / 48 % 3;
        OrvDateTime* d = &v[i];
        if (!live[i] && op % 16 > 4) return;
        const bool ok = live[i] && Check(d);
        const OrvDateTime before = *d;
        bool done = true;
        switch (op % 16) {
        case 0: if (live[i]) OrvDateTimeDestruct(d); live[i] = false; break;
        case 1: if (!live[i]) live[i] = OrvDateTimeConstructDefault(d) != nullptr; break;
        case 2: {
            const OrvTime t = in.Instant();
            const OrvTimezone* tz = Zone(in);
            if (!live[i] && (live[i] = OrvDateTimeConstruct(d, t, tz) != nullptr))
                FUZZ_CHECK(OrvDateTimeGetWallTime(d) == t && !d->floating == (tz != nullptr));
            break;
        }
        case 3: {
            const OrvInt f[7] = {in.Int(), in.Int(), in.Int(), in.Int(), in.Int(), in.Int(), in.Int()};
            const OrvTimezone* tz = Zone(in);
            if (!live[i] && (live[i] = OrvDateTimeConstructFields(d, f[0], f[1], f[2], f[3], f[4], f[5], f[6], tz)) &&
                OrvDateTimeGetCurrentUTCOffset(d) != ORV_TIME_INVALID)
                CheckCarried(*d, CarriedLocal(f[0], f[1], f[2], f[3], f[4], f[5], f[6]), Gapless(tz));
            break;
        }
        case 4: {
            const std::string_view text = in.Text(40);
            const OrvTimezone* tz = Zone(in);
            if (!live[i]) live[i] = OrvDateTimeConstructISO8601(d, text.data(), text.size(), tz, nullptr) != nullptr;
            break;
        }
        case 5: if (live[j] && i != j) { OrvDateTimeAssign(d, &v[j]); FUZZ_CHECK(SameRecord(*d, v[j])); } break;
        case 6: {
            const auto f = static_cast<OrvDateTimeField>(in.U8() % 12);
            const OrvInt val = in.Int();
            done = OrvDateTimeSetField(d, f, val);
            FUZZ_CHECK(done == (f <= ORV_DATETIMEFIELD_Year && f != ORV_DATETIMEFIELD_DayOfWeek));
            break;
        }
        case 7: {
            const auto f = static_cast<OrvDateTimeField>(in.U8() % 12);
            const OrvInt inc = in.Int();
            static constexpr OrvTime kUnit[] = {1, kNs, 60 * kNs, 3600 * kNs};
            done = OrvDateTimeAddToField(d, f, inc);
            if (!done) FUZZ_CHECK(SameRecord(before, *d) || OrvDateTimeGetCurrentUTCOffset(d) == ORV_TIME_INVALID);
            if (done && ok && f <= ORV_DATETIMEFIELD_Hour && Check(d) && before.wallTime != ORV_TIME_INVALID &&
                d->wallTime != ORV_TIME_INVALID)
                FUZZ_CHECK(Wide{d->wallTime} == Wide{before.wallTime} + Wide{inc} * kUnit[f]);
            done = true;
            break;
        }
        case 8: {
            const OrvTime t = in.Instant();
            done = OrvDateTimeSetWallTime(d, t);
            if (done) FUZZ_CHECK(OrvDateTimeGetWallTime(d) == t);
            break;
        }
        case 9: {
            const OrvTimezone* tz = Zone(in);
            if (!OrvDateTimeSetTimezone(d, tz)) {
                // Zone, floating flag and (carried) fields kept; the instant may be pending.
                FUZZ_CHECK(std::memcmp(&before.tz, &d->tz, sizeof d->tz) == 0 && before.floating == d->floating &&
                           (!ok || CarriedLocal(before) == CarriedLocal(*d)));
            } else if (ok && Check(d)) {
                FUZZ_CHECK(d->floating == (tz == nullptr));
                CheckCarried(*d, CarriedLocal(before), Gapless(tz));
            }
            break;
        }
        case 10: {
            done = OrvDateTimeConvertToTimezone(d, Zone(in));
            if (done && ok && before.wallTime != ORV_TIME_INVALID) FUZZ_CHECK(OrvDateTimeGetWallTime(d) == before.wallTime);
            break;
        }
        case 11: done = OrvDateTimeSetFirstDayOfWeek(d, static_cast<OrvWeekday>(in.Int())); break;
        case 12: done = OrvDateTimeSetMinimalDaysInFirstWeek(d, in.Int()); break;
        case 13: {
            const std::string_view text = in.Text(40);
            done = OrvDateTimeSetISO8601(d, text.data(), text.size(), nullptr);
            if (done || text.size() < 15) break;
            const std::string cstr(text.substr(0, text.find('\0')));
            FUZZ_CHECK(SameRecord(before, *d));
            done = OrvDateTimeSetCStr(d, cstr.c_str());
            break;
        }
        case 14: if (live[j]) CheckOrder(d, &v[j]); break;
        default: if (ok) RoundTrip(d, s); break;
        }
        if (!done) FUZZ_CHECK(SameRecord(before, *d));
        for (int k = 0; k < 3; ++k)
            if (live[k]) Check(&v[k]);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::SilenceLog();
    Bytes in{data, size};
    Session s;
    FUZZ_CHECK(OrvFixedTimezoneConstruct(&s.counted, 10830 * kNs, &s.zoneAlloc.base));
    OrvString text;
    OrvStringConstruct(&text, OrvAllocatorGetDefault());
    for (int step = 0; step < 64 && in.More(); ++step) s.Step(in, &text);
    for (int k = 0; k < 3; ++k)
        if (s.live[k]) OrvDateTimeDestruct(&s.v[k]);
    OrvStringDestruct(&text);
    FUZZ_CHECK(OrvTimezoneGetUseCount(&s.counted) == 1);
    OrvTimezoneDestruct(&s.counted);
    FUZZ_CHECK(s.zoneAlloc.live.empty());
    return 0;
}
