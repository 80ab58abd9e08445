// ISO 8601 / RFC 3339 text of a date-time value: the writer of the extended form with
// a chosen number of fraction digits, and the reader of the extended and basic forms.
//
// The reader walks the text once with a cursor that stops at the first zero byte, so
// a caller may pass any length for a zero-terminated text. It fills a TextFields
// record (each field with its position, for the refusal), range-checks it, and settles
// it in the zone the text names in a scratch value; only an accepted text reaches the
// caller's value.
#include "Calendar/OrvDateTimeTextInternal.hpp"

#include <limits>

namespace {

using namespace orv::text;

constexpr OrvSizeT kMaxYearDigits = 10;

struct IsoText {
    TextFields fields;
    TextZone zone;
};

// The year at the cursor: four digits, or a sign and 4 to 10 digits. Sets *extended by
// what follows the digits (a '-' for the extended form). For the basic form the year's
// digits run on into the month and the day, so a signed year takes the run less four.
bool ReadYear(Cursor* c, IsoText* out, bool* extended, OrvTextStatus* refusal)
{
    const int sign = c->Peek();
    const bool signedYear = sign == '+' || sign == '-';
    if (signedYear) ++c->pos;
    const OrvSizeT run = c->DigitRun();
    *extended = c->PeekAt(run) == '-';
    const OrvSizeT dateDigits = *extended ? 0 : 4; // MMDD in the basic form
    OrvSizeT yearDigits = 4;
    if (signedYear) {
        if (run < 4 + dateDigits) {
            c->pos += run;
            *refusal = c->Unexpected();
            return false;
        }
        yearDigits = run - dateDigits;
        if (yearDigits > kMaxYearDigits) {
            *refusal = Refuse(ORV_TEXTERROR_FieldRange, 0);
            return false;
        }
    } else if (run != 4 + dateDigits) {
        c->pos += run < 4 + dateDigits ? run : 4 + dateDigits;
        *refusal = c->Unexpected();
        return false;
    }
    OrvInt64 year = 0;
    for (OrvSizeT i = 0; i < yearDigits; ++i) year = year * 10 + (c->text[c->pos + i] - '0');
    if (sign == '-') year = -year;
    if (year < std::numeric_limits<OrvInt>::min() || year > std::numeric_limits<OrvInt>::max()) {
        *refusal = Refuse(ORV_TEXTERROR_FieldRange, 0);
        return false;
    }
    out->fields.year = static_cast<OrvInt>(year);
    c->pos += yearDigits;
    return true;
}

// Two digits into a field, remembering where they start.
bool Read2(Cursor* c, OrvInt* field, OrvSizeT* pos, OrvTextStatus* refusal)
{
    *pos = c->pos;
    OrvInt64 v = 0;
    if (!c->Digits(2, &v, refusal)) return false;
    *field = static_cast<OrvInt>(v);
    return true;
}

bool Expect(Cursor* c, int ch, OrvTextStatus* refusal)
{
    if (c->Take(ch)) return true;
    *refusal = c->Unexpected();
    return false;
}

OrvTextStatus ParseIso(const char* text, OrvSizeT len, IsoText* out)
{
    Cursor c{text, len, 0};
    OrvTextStatus refusal = kAccepted;
    TextFields& f = out->fields;
    f.secPos = f.nanosPos = 0;
    bool extended = false;
    if (!ReadYear(&c, out, &extended, &refusal)) return refusal;
    if (extended && !Expect(&c, '-', &refusal)) return refusal;
    if (!Read2(&c, &f.month, &f.monthPos, &refusal)) return refusal;
    if (extended && !Expect(&c, '-', &refusal)) return refusal;
    if (!Read2(&c, &f.day, &f.dayPos, &refusal)) return refusal;
    const int t = c.Peek();
    if (t != 'T' && t != 't' && !(extended && t == ' ')) return c.Unexpected();
    ++c.pos;
    if (!Read2(&c, &f.hour, &f.hourPos, &refusal)) return refusal;
    if (extended && !Expect(&c, ':', &refusal)) return refusal;
    if (!Read2(&c, &f.min, &f.minPos, &refusal)) return refusal;
    f.secPos = c.pos;
    if (extended ? c.Peek() == ':' : IsDigit(c.Peek())) {
        c.pos += extended ? 1 : 0;
        if (!Read2(&c, &f.sec, &f.secPos, &refusal)) return refusal;
        if (c.Peek() == '.' || c.Peek() == ',') {
            ++c.pos;
            f.nanosPos = c.pos;
            const OrvSizeT run = c.DigitRun();
            if (run == 0) return c.Unexpected();
            if (run > 9) return Refuse(ORV_TEXTERROR_FieldRange, f.nanosPos);
            OrvInt64 frac = 0;
            c.Digits(static_cast<int>(run), &frac, &refusal);
            for (OrvSizeT i = run; i < 9; ++i) frac *= 10;
            f.nanos = static_cast<OrvInt>(frac);
        }
    }
    if (c.Peek() != -1 && !ReadZone(&c, &out->zone, &refusal)) return refusal;
    if (c.Peek() != -1) return Refuse(ORV_TEXTERROR_Character, c.pos);
    return CheckFields(f);
}

// The one reader behind Construct and Set: parse, check, settle in scratch (the
// caller's storage for Construct).
OrvTextStatus ReadIso(const char* text, OrvSizeT len, const Target& local, OrvDateTime* scratch)
{
    IsoText iso;
    OrvTextStatus s = ParseIso(text != nullptr ? text : "", text != nullptr ? len : 0, &iso);
    if (s.error != ORV_TEXTERROR_None) return s;
    Target target;
    if (!ResolveZone(iso.zone, local, &target, &s)) return s;
    switch (Settle(scratch, iso.fields, target)) {
    case ORV_TEXTERROR_None: return kAccepted;
    case ORV_TEXTERROR_Skipped: return Refuse(ORV_TEXTERROR_Skipped, iso.fields.hourPos);
    default: return Refuse(ORV_TEXTERROR_NoOffset, 0);
    }
}

} // namespace

OrvBool OrvDateTimeGetISO8601(const OrvDateTime* d, OrvString* str, OrvInt fractionDigits)
{
    if (fractionDigits < -1 || fractionDigits > 9) return ORV_FALSE;
    if (!orv::detail::Normalize(d)) return ORV_FALSE;
    char buf[64];
    char* p = PutReading(buf, d, true);
    p = PutFraction(p, d->nanosec, fractionDigits);
    if (!d->floating) {
        if (orv::detail::IsGlobalUtc(&d->tz)) *p++ = 'Z';
        else p = PutOffset(p, d->offset, true);
    }
    return AssignText(str, buf, static_cast<OrvSizeT>(p - buf)) ? ORV_TRUE : ORV_FALSE;
}

OrvDateTime* OrvDateTimeConstructISO8601(OrvDateTime* d, const char* text, OrvSizeT len, const OrvTimezone* tz,
                                         OrvTextStatus* status)
{
    const OrvTextStatus s = ReadIso(text, len, LocalTarget(tz), d);
    Report(status, s);
    if (s.error != ORV_TEXTERROR_None) return nullptr;
    HoldZone(d);
    return d;
}

OrvBool OrvDateTimeSetISO8601(OrvDateTime* d, const char* text, OrvSizeT len, OrvTextStatus* status)
{
    OrvDateTime scratch;
    const OrvTextStatus s = ReadIso(text, len, OwnTarget(d), &scratch);
    Report(status, s);
    if (s.error != ORV_TEXTERROR_None) return ORV_FALSE;
    CommitExisting(d, scratch);
    return ORV_TRUE;
}
