// The element operations the containers are instantiated over for OrvDateTime: copies
// take a zone reference each, destruction drops it, and the order is by instant.
//
// The operations are the inline forms of OrvDateTimeConstructCopy, OrvDateTimeAssign and
// OrvDateTimeDestruct, with the same effects: a copy is the record's bytes plus one use
// reference of the zone's count block when the zone is counted (none for an uncounted
// handle), a destruction drops one (running the zone's deleter and freeing the block at
// the last, as OrvSharedPtrRefCountRelease does), and an assignment keeps the count when
// both handles share a block, or drops the old reference before taking the new one. The
// counts change with the same sequentially consistent atomic steps as
// OrvAtomicIntegerIncrement and OrvAtomicIntegerDecrement, on the same counter.
#ifndef ORV_SRC_CALENDAR_ORVDATETIMEELEMENT_HPP
#define ORV_SRC_CALENDAR_ORVDATETIMEELEMENT_HPP

#include "Calendar/OrvDateTimeInternal.hpp"

#include <atomic>
#include <cstddef>
#include <cstring>

namespace orv::detail {

struct DateTimeElement {
    using Value = OrvDateTime;

    // Copies never fail, so the containers may copy many elements at once
    // (ConstructCopies) and leave out the recovery steps of a failed copy.
    static constexpr bool kCopiesNeverFail = true;

    static OrvDateTime* ConstructCopy(OrvDateTime* d, const OrvDateTime* s)
    {
        OrvSharedPtrRefCount* const ref = s->tz.impl.ref;
        std::memcpy(static_cast<void*>(d), s, sizeof *d);
        if (ref != nullptr) AddUses(ref, 1);
        return d;
    }

    // n copies of [s, s + n) into the raw slots [d, d + n), which must not overlap the
    // sources, in one pass: one count step per run of neighbouring values that share a
    // count block (adding the run's length), so the counts end exactly as after n
    // ConstructCopy calls.
    static void ConstructCopies(OrvDateTime* d, const OrvDateTime* s, OrvSizeT n)
    {
        OrvSharedPtrRefCount* run = nullptr;
        OrvInt length = 0;
        for (OrvSizeT i = 0; i < n; ++i) {
            std::memcpy(static_cast<void*>(d + i), s + i, sizeof *d);
            OrvSharedPtrRefCount* const ref = s[i].tz.impl.ref;
            if (ref != run) [[unlikely]] {
                if (run != nullptr) AddUses(run, length);
                run = ref;
                length = 0;
            }
            ++length;
        }
        if (run != nullptr) AddUses(run, length);
    }

    // n copies of *s into the raw slots [d, d + n).
    static void ConstructRepeated(OrvDateTime* d, const OrvDateTime* s, OrvSizeT n)
    {
        if (n == 0) return;
        for (OrvSizeT i = 0; i < n; ++i) std::memcpy(static_cast<void*>(d + i), s, sizeof *d);
        if (s->tz.impl.ref != nullptr) AddUses(s->tz.impl.ref, static_cast<OrvInt>(n));
    }

    static OrvDateTime* Assign(OrvDateTime* d, const OrvDateTime* s)
    {
        if (d == s) return d;
        OrvSharedPtrRefCount* const ref = s->tz.impl.ref;
        if (d->tz.impl.ref != ref) {
            // The old reference goes first (its deleter may run); s is read only after it.
            Destruct(d);
            if (s->tz.impl.ref != nullptr) AddUses(s->tz.impl.ref, 1);
        }
        std::memcpy(static_cast<void*>(d), s, sizeof *d);
        return d;
    }

    static void Destruct(OrvDateTime* d)
    {
        OrvSharedPtrRefCount* const ref = d->tz.impl.ref;
        if (ref != nullptr && std::atomic_ref<OrvInt>(ref->useCount.value).fetch_sub(1) == 1) ReleaseLast(d);
    }

    static bool Less(const OrvDateTime* a, const OrvDateTime* b) { return orv::detail::Less(a, b); }

    // The instant of a value in the consistent state, whose order against any other
    // consistent value is that of the instants alone (what Less compares without a
    // call); false for any other state, which the containers then compare with Less.
    static bool InstantKey(const OrvDateTime* v, OrvInt64* key)
    {
        // IsConsistent, as three separate tests: the usual answer is predicted and
        // costs no more than three compare-and-branch steps.
        *key = v->wallTime;
        if (__builtin_expect(v->normalized == 0, 0)) return false;
        if (__builtin_expect(v->wallTime == ORV_TIME_INVALID, 0)) return false;
        return __builtin_expect(v->offset != ORV_TIME_INVALID, 1);
    }
    static constexpr std::size_t kInstantKeyOffset = offsetof(OrvDateTime, wallTime);

private:
    // The count block's use counter, changed as OrvAtomicIntegerAdd changes it: wrapping,
    // sequentially consistent.
    static void AddUses(OrvSharedPtrRefCount* ref, OrvInt n)
    {
        std::atomic_ref<OrvInt>(ref->useCount.value).fetch_add(n);
    }

    // The last use reference of d's zone was just dropped: what OrvSharedPtrRefCountRelease
    // does after its decrement reached zero.
    [[gnu::noinline, gnu::cold]] static void ReleaseLast(OrvDateTime* d)
    {
        const OrvSharedPtr_OrvTimezoneImpl& h = d->tz.impl;
        if (h.d != nullptr) h.d(h.ptr, h.a);
        if (OrvSharedPtrRefCountDecWeakCount(h.ref) == 0)
            OrvAllocatorDeallocate(h.a, h.ref, sizeof(OrvSharedPtrRefCount));
    }
};

} // namespace orv::detail

#endif // ORV_SRC_CALENDAR_ORVDATETIMEELEMENT_HPP
