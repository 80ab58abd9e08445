#include "support/TestZones.h"

#include "Calendar/CalendarMath.hpp"

#include <new>

namespace orv::test {

namespace {

struct TransitionZone {
    OrvTimezoneImpl base;
    TransitionZoneRules rules;
    int* deleterCalls;
};

TransitionZone* Self(OrvTimezoneImpl* impl) { return reinterpret_cast<TransitionZone*>(impl); }

OrvTime OffsetAt(const TransitionZoneRules& rules, OrvTime t)
{
    OrvTime offset = rules.initialOffset;
    for (const Transition& tr : rules.transitions) {
        if (t < tr.at) break;
        offset = tr.offset;
    }
    return offset;
}

OrvTime GetOffset(OrvTimezoneImpl* impl, OrvTime t)
{
    const TransitionZoneRules& rules = Self(impl)->rules;
    return rules.failInstants ? ORV_TIME_INVALID : OffsetAt(rules, t);
}

OrvTime GetOffsetFromFields(OrvTimezoneImpl* impl, OrvInt y, OrvInt mo, OrvInt d, OrvInt h, OrvInt mi, OrvInt s,
                            OrvTime ns)
{
    const TransitionZoneRules& rules = Self(impl)->rules;
    if (rules.failFields) return ORV_TIME_INVALID;
    const OrvTime local = UtcInstant(y, mo, d, h, mi, s, ns);
    // Segment i holds offset o_i on [start_i, end_i).
    const std::size_t n = rules.transitions.size();
    for (std::size_t i = 0; i <= n; ++i) {
        const OrvTime o = i == 0 ? rules.initialOffset : rules.transitions[i - 1].offset;
        const bool hasEnd = i < n;
        OrvTime u;
        if (__builtin_sub_overflow(local, o, &u)) u = local < 0 ? INT64_MIN : INT64_MAX;
        if (hasEnd && u >= rules.transitions[i].at) continue;
        if (i == 0 || u >= rules.transitions[i - 1].at) return o;                    // first occurrence
        return i == 1 ? rules.initialOffset : rules.transitions[i - 2].offset;        // skipped: offset before
    }
    return ORV_TIME_INVALID; // unreachable
}

constexpr OrvTimezoneImplPlugIn kPlugIn = {GetOffset, GetOffsetFromFields};

void Delete(OrvVoidPtr obj, OrvAllocator*)
{
    auto* zone = static_cast<TransitionZone*>(obj);
    if (zone->deleterCalls != nullptr) ++*zone->deleterCalls;
    delete zone;
}

} // namespace

OrvTimezone* MakeTransitionZone(OrvTimezone* tz, const TransitionZoneRules& rules, OrvAllocator* a, int* deleterCalls)
{
    auto* zone = new TransitionZone{{&kPlugIn}, rules, deleterCalls};
    if (OrvTimezoneConstruct(tz, &zone->base, a, Delete) == nullptr) {
        delete zone;
        return nullptr;
    }
    return tz;
}

TransitionZoneRules DstRules()
{
    return {kHour, {{UtcInstant(2024, 3, 31, 1), 2 * kHour}, {UtcInstant(2024, 10, 27, 1), kHour}}, false, false};
}

OrvTime UtcInstant(int y, int mo, int d, int h, int mi, int s, OrvTime ns)
{
    // Saturates outside the instant range, so zones can be asked about any reading.
    const OrvInt64 secs = ((orv::cal::DaysFromCivil(y, mo, d) * 24 + h) * 60 + mi) * 60 + s;
    OrvTime t;
    if (__builtin_mul_overflow(secs, ORV_TIME_NANOSECONDS_PER_SECOND, &t) || __builtin_add_overflow(t, ns, &t))
        return secs < 0 ? INT64_MIN : INT64_MAX - 1;
    return t;
}

} // namespace orv::test
