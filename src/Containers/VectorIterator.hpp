// Position arithmetic of the vector's iterators. P is the element pointer a kind holds
// (T* or const T*); a reverse kind holds the slot after the element it designates and
// steps the other way. Steps count elements.
//
// The null pointer is the exceptional iterator, and also Begin and End of a vector
// without storage, so a caller may legally hold it and move it: every operation keeps
// it null (moved, offset or read, it gives null) instead of doing pointer arithmetic on
// it, which would be undefined. Moving a real position outside its vector is the
// caller's error, as with any pointer.
#ifndef ORV_SRC_CONTAINERS_VECTORITERATOR_HPP
#define ORV_SRC_CONTAINERS_VECTORITERATOR_HPP

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

#include <cstdint>

namespace orv::containers {

template <class T, class P, bool kReverse>
struct VectorIterator {
    using Diff = OrvDistanceT;

    static P* Store(P* x, P p)
    {
        *x = p;
        return x;
    }
    static OrvBool Swap(P* x, P* y)
    {
        P t = *x;
        *x = *y;
        *y = t;
        return ORV_TRUE;
    }
    static OrvBool Equal(const P* x, const P* y) { return *x == *y ? ORV_TRUE : ORV_FALSE; }
    static OrvBool IsExceptional(P x) { return x == nullptr ? ORV_TRUE : ORV_FALSE; }

    // The designated element: the held slot, or for a reverse kind the one below it.
    static P ContentOf(P p) { return kReverse ? Down(p, 1) : p; }
    // The element n steps on from the designated one.
    static P At(P p, Diff n) { return kReverse ? Down(Down(p, n), 1) : Up(p, n); }
    // n steps forwards in iteration order (Forward) or backwards; n may be negative.
    static P Forward(P p, Diff n) { return kReverse ? Down(p, n) : Up(p, n); }
    static P Backward(P p, Diff n) { return kReverse ? Up(p, n) : Down(p, n); }

    // Iteration order by address, without pointer comparison across arrays.
    static OrvBool Less(const P* x, const P* y)
    {
        const auto p = reinterpret_cast<std::uintptr_t>(*x);
        const auto q = reinterpret_cast<std::uintptr_t>(*y);
        return (kReverse ? q < p : p < q) ? ORV_TRUE : ORV_FALSE;
    }
    // Steps from y to x, by address arithmetic (two null iterators are 0 apart).
    static Diff Subtract(P x, P y)
    {
        const auto bytes = static_cast<Diff>(reinterpret_cast<std::uintptr_t>(x) - reinterpret_cast<std::uintptr_t>(y));
        const Diff steps = bytes / static_cast<Diff>(sizeof(T));
        return kReverse ? -steps : steps;
    }

private:
    // The slot n above (below) p by address; null stays null. Neither negates n, so no
    // count overflows on the way.
    static P Up(P p, Diff n) { return p == nullptr ? p : p + n; }
    static P Down(P p, Diff n) { return p == nullptr ? p : p - n; }
};

} // namespace orv::containers

#endif // ORV_SRC_CONTAINERS_VECTORITERATOR_HPP
