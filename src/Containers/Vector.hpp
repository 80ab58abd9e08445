// The growable array behind OrvVector_OrvDateTime, written once over an
// element-operations class; the C entry points that call it are in
// src/Calendar/OrvDateTimeVector.cpp, its iterators' steps in VectorIterator.hpp.
//
// The element-operations class E provides
//     using Value = <element record>;
//     static Value* ConstructCopy(Value* slot, const Value* src); // null: the copy failed
//     static Value* Assign(Value* slot, const Value* src);        // null: the copy failed
//     static void Destruct(Value* slot);
// A failed ConstructCopy leaves its slot raw (nothing to destruct); a failed Assign
// leaves its slot holding its former value. An E whose copies never fail may say so
// (static constexpr bool kCopiesNeverFail = true) and then also provides
//     static void ConstructCopies(Value* slots, const Value* src, OrvSizeT n);  // [src, src + n)
//     static void ConstructRepeated(Value* slots, const Value* src, OrvSizeT n); // n copies of *src
// with the effect of n ConstructCopy calls into raw slots that do not overlap the
// sources; the vector then copies runs of elements with them. The record R is the
// public C struct {allocator, begin, end, endBuf}.
//
// Rules every operation keeps:
//  - Elements are created, overwritten and ended only through E, never by copying
//    bytes. Moving to a new block copy-constructs every element there first (new
//    elements included) and destructs the old ones afterwards, last first.
//  - Storage comes from the record's allocator in blocks of exactly Capacity slots and
//    goes back with that same byte size. Nothing asks for zero slots.
//  - A failed allocation, or a request past kMaxSize, leaves the vector as it was
//    (Assign excepted: it has already released its old block and is left empty,
//    without storage).
//  - A failed element copy gives the operation's failure result; afterwards every
//    slot below end holds a constructed element and nothing is leaked. The vector is
//    as it was when the copy went into a new block (constructors give null holding
//    nothing; PushBack, Resize, Reserve and the growing Insert, InsertN and
//    InsertRange leave it untouched) or into a raw slot past the end (PushBack and
//    Resize with room). A copy that fails while elements are shifted or overwritten in
//    place leaves the state each operation below describes: the vector is then valid
//    but neither its former self nor the requested result. OrvDateTime's copies never
//    fail, so for the public vector every failure leaves it as it was.
#ifndef ORV_SRC_CONTAINERS_VECTOR_HPP
#define ORV_SRC_CONTAINERS_VECTOR_HPP

#include "Orv/Utils/OrvAllocator.h"

#include <cstdint>

namespace orv::containers {

template <class E, class R>
class Vector {
public:
    using T = typename E::Value;
    using Size = OrvSizeT;

    // The largest element count: the byte size of a block stays below 2^32.
    static constexpr Size kMaxSize = Size{0xFFFFFFFFu} / sizeof(T);

    // Whether E copies runs of elements at once (see above).
    static constexpr bool kBulk = [] {
        if constexpr (requires { E::kCopiesNeverFail; }) return E::kCopiesNeverFail;
        return false;
    }();

    // --- construction and whole-vector operations ---------------------------------

    static R* ConstructDefault(R* x, OrvAllocator* a)
    {
        x->allocator = a;
        x->begin = x->end = x->endBuf = nullptr;
        return x;
    }

    static R* ConstructN(R* x, Size n, const T* t, OrvAllocator* a)
    {
        ConstructDefault(x, a);
        if (n == 0) return x;
        if (n > kMaxSize) return nullptr;
        T* block = Allocate(a, n);
        if (block == nullptr) return nullptr;
        if constexpr (kBulk) {
            E::ConstructRepeated(block, t, n);
            Adopt(x, block, n, n);
            return x;
        }
        T* out = block;
        for (; out != block + n; ++out) {
            if (E::ConstructCopy(out, t) == nullptr) return AbandonBlock(x, block, out, n);
        }
        Adopt(x, block, n, n);
        return x;
    }

    static R* ConstructRange(R* x, const T* first, const T* last, OrvAllocator* a)
    {
        ConstructDefault(x, a);
        const Size n = static_cast<Size>(last - first);
        if (n == 0) return x;
        if (n > kMaxSize) return nullptr;
        T* block = Allocate(a, n);
        if (block == nullptr) return nullptr;
        if constexpr (kBulk) {
            E::ConstructCopies(block, first, n);
            Adopt(x, block, n, n);
            return x;
        }
        T* out = block;
        for (const T* s = first; s != last; ++s, ++out) {
            if (E::ConstructCopy(out, s) == nullptr) return AbandonBlock(x, block, out, n);
        }
        Adopt(x, block, n, n);
        return x;
    }

    static R* ConstructCopy(R* x, const R* y) { return ConstructRange(x, y->begin, y->end, y->allocator); }

    static void Destruct(R* x)
    {
        DestroyBackward(x->begin, x->end);
        if (x->begin != nullptr) Deallocate(x->allocator, x->begin, Capacity(x));
    }

    // A failed element copy, the k-th (from 0) of y's elements, leaves x holding copies
    // of y's first k elements, followed by x's own former elements from index k on when
    // it failed overwriting one of them in place (in the first min(Size(x), Size(y))
    // copies of an Assign that did not need a new block).
    static R* Assign(R* x, const R* y)
    {
        if (x == y) return x;
        const Size ySize = SizeOf(y);
        if (ySize > Capacity(x)) {
            Destruct(x);
            x->begin = x->end = x->endBuf = nullptr;
            T* block = Allocate(x->allocator, ySize);
            if (block == nullptr) return nullptr;
            x->begin = x->end = block;
            x->endBuf = block + ySize;
            if constexpr (kBulk) {
                E::ConstructCopies(block, y->begin, ySize);
                x->end = block + ySize;
                return x;
            }
            for (const T* s = y->begin; s != y->end; ++s) {
                if (E::ConstructCopy(x->end, s) == nullptr) return nullptr;
                ++x->end;
            }
            return x;
        }
        const Size xSize = SizeOf(x);
        const Size common = xSize < ySize ? xSize : ySize;
        for (Size i = 0; i < common; ++i) {
            if (E::Assign(x->begin + i, y->begin + i) == nullptr) return nullptr;
        }
        if (xSize > ySize) {
            DestroyBackward(x->begin + ySize, x->end);
            x->end = x->begin + ySize;
        }
        if constexpr (kBulk) {
            E::ConstructCopies(x->end, y->begin + common, ySize - common);
            x->end = x->begin + ySize;
            return x;
        }
        for (const T* s = y->begin + common; s != y->end; ++s) {
            if (E::ConstructCopy(x->end, s) == nullptr) return nullptr;
            ++x->end;
        }
        return x;
    }

    static OrvBool Swap(R* x, R* y)
    {
        if (x->begin == x->end && y->begin == y->end) return ORV_TRUE;
        if (x->allocator == y->allocator) {
            R tmp = *x;
            *x = *y;
            *y = tmp;
            return ORV_TRUE;
        }
        // Different allocators: every element stays on storage of the vector that
        // holds it. The larger vector L keeps its block and receives the smaller one's
        // values; the smaller vector S gets a new block from its own allocator, sized
        // for L's values. A failed element copy into the new block leaves both as they
        // were; one into L's block, after L's former elements were destructed, leaves S
        // as it was and L holding copies of S's first k elements (k the copies made).
        R* l = SizeOf(x) >= SizeOf(y) ? x : y;
        R* s = l == x ? y : x;
        const Size lSize = SizeOf(l);
        T* block = Allocate(s->allocator, lSize);
        if (block == nullptr) return ORV_FALSE;
        T* out = block;
        for (const T* p = l->begin; p != l->end; ++p, ++out) {
            if (E::ConstructCopy(out, p) == nullptr) {
                DestroyBackward(block, out);
                Deallocate(s->allocator, block, lSize);
                return ORV_FALSE;
            }
        }
        DestroyBackward(l->begin, l->end);
        l->end = l->begin;
        for (const T* p = s->begin; p != s->end; ++p) {
            if (E::ConstructCopy(l->end, p) == nullptr) {
                DestroyBackward(block, block + lSize);
                Deallocate(s->allocator, block, lSize);
                return ORV_FALSE;
            }
            ++l->end;
        }
        Destruct(s);
        Adopt(s, block, lSize, lSize);
        return ORV_TRUE;
    }

    // --- size and storage ----------------------------------------------------------

    static Size SizeOf(const R* x) { return static_cast<Size>(x->end - x->begin); }
    static Size Capacity(const R* x) { return static_cast<Size>(x->endBuf - x->begin); }
    static OrvBool Empty(const R* x) { return x->begin == x->end ? ORV_TRUE : ORV_FALSE; }

    static OrvBool Reserve(R* x, Size capacity)
    {
        if (capacity <= Capacity(x)) return ORV_TRUE;
        if (capacity > kMaxSize) return ORV_FALSE;
        return Reallocate(x, capacity) ? ORV_TRUE : ORV_FALSE;
    }

    static OrvBool Resize(R* x, Size n, const T* t)
    {
        const Size size = SizeOf(x);
        if (n < size) {
            DestroyBackward(x->begin + n, x->end);
            x->end = x->begin + n;
            return ORV_TRUE;
        }
        if (n == size) return ORV_TRUE;
        if (n > kMaxSize) return ORV_FALSE;
        // Room for the current size plus the requested size, as the growth policy
        // has it; capped at the largest count, which still holds n.
        const Size wanted = size + n > kMaxSize ? kMaxSize : size + n;
        if (wanted > Capacity(x)) return RebuildAround(x, x->end, n - size, wanted, Repeat(t)) ? ORV_TRUE : ORV_FALSE;
        if constexpr (kBulk) {
            E::ConstructRepeated(x->end, t, n - size);
            x->end = x->begin + n;
            return ORV_TRUE;
        }
        T* const oldEnd = x->end;
        while (x->end != x->begin + n) {
            if (E::ConstructCopy(x->end, t) == nullptr) {
                DestroyBackward(oldEnd, x->end); // the copies made so far go again
                x->end = oldEnd;
                return ORV_FALSE;
            }
            ++x->end;
        }
        return ORV_TRUE;
    }

    static void Clear(R* x)
    {
        DestroyBackward(x->begin, x->end);
        x->end = x->begin;
    }

    // --- changing the contents -------------------------------------------------------

    static OrvBool PushBack(R* x, const T* t)
    {
        if (x->end == x->endBuf) [[unlikely]]
            return GrowAndPush(x, t);
        if constexpr (kBulk) {
            E::ConstructCopy(x->end, t);
        } else if (E::ConstructCopy(x->end, t) == nullptr) {
            return ORV_FALSE;
        }
        ++x->end;
        return ORV_TRUE;
    }

    static void PopBack(R* x)
    {
        --x->end;
        E::Destruct(x->end);
    }

    // In place, a failed copy of the last element into the raw slot past the end
    // leaves the vector as it was; a failed shift or final assignment leaves Size + 1
    // elements: the former ones in order, the one at the slot where the copy failed (at
    // or after pos) appearing twice.
    static T* Insert(R* x, T* pos, const T* t)
    {
        if (x->end == x->endBuf) {
            const Size size = SizeOf(x);
            if (size >= kMaxSize) return nullptr;
            const Size index = static_cast<Size>(pos - x->begin);
            return RebuildAround(x, pos, 1, GrowOne(size), Repeat(t)) ? x->begin + index : nullptr;
        }
        if (pos == x->end) {
            if (E::ConstructCopy(x->end, t) == nullptr) return nullptr;
            ++x->end;
            return pos;
        }
        // A source inside the vector at or after pos has moved up one slot by the
        // time it is read.
        const T* src = Inside(t, pos, x->end) ? t + 1 : t;
        if (E::ConstructCopy(x->end, x->end - 1) == nullptr) return nullptr;
        ++x->end;
        for (T* p = x->end - 2; p != pos; --p) {
            if (E::Assign(p, p - 1) == nullptr) return nullptr;
        }
        return E::Assign(pos, src) == nullptr ? nullptr : pos;
    }

    // In place, a failed element copy leaves between Size and Size + n elements, each a
    // former element or one of the new values, in an order that depends on the step
    // that failed (see InsertCounted).
    static OrvBool InsertN(R* x, T* pos, Size n, const T* t)
    {
        return InsertCounted(x, pos, n, Repeat(t));
    }

    static OrvBool InsertRange(R* x, T* pos, const T* first, const T* last)
    {
        return InsertCounted(x, pos, static_cast<Size>(last - first), [first](Size k) { return first + k; });
    }

    // A failed assignment at slot p cuts the vector there: it keeps the elements before
    // p (those from pos on already moved down one slot), destructs the rest and gives
    // null. EraseRange does the same.
    static T* Erase(R* x, T* pos)
    {
        for (T* p = pos; p + 1 != x->end; ++p) {
            if (E::Assign(p, p + 1) == nullptr) return EndAt(x, p);
        }
        PopBack(x);
        return pos;
    }

    static T* EraseRange(R* x, T* first, T* last)
    {
        if (first == last) return first;
        T* out = first;
        for (T* s = last; s != x->end; ++s, ++out) {
            if (E::Assign(out, s) == nullptr) return EndAt(x, out);
        }
        DestroyBackward(out, x->end);
        x->end = out;
        return first;
    }

private:
    // The allocator's own callbacks, called as OrvAllocatorAllocate and
    // OrvAllocatorDeallocate call them.
    static T* Allocate(OrvAllocator* a, Size n) { return static_cast<T*>(a->allocate(a, n * sizeof(T))); }
    static void Deallocate(OrvAllocator* a, T* block, Size n) { a->deallocate(a, block, n * sizeof(T)); }

    [[gnu::noinline]] static OrvBool GrowAndPush(R* x, const T* t)
    {
        const Size size = SizeOf(x);
        if (size >= kMaxSize) return ORV_FALSE;
        return RebuildAround(x, x->end, 1, GrowOne(size), Repeat(t)) ? ORV_TRUE : ORV_FALSE;
    }

    static void DestroyBackward(T* first, T* last)
    {
        while (last != first) E::Destruct(--last);
    }

    static void Adopt(R* x, T* block, Size size, Size capacity)
    {
        x->begin = block;
        x->end = block + size;
        x->endBuf = block + capacity;
    }

    // A constructor's element copy failed: release what it made and report failure.
    static R* AbandonBlock(R* x, T* block, T* made, Size n)
    {
        DestroyBackward(block, made);
        Deallocate(x->allocator, block, n);
        return nullptr;
    }

    // An element assignment in Erase or EraseRange failed at slot p: the vector ends
    // there, and the slots it gives up are destructed so that nothing leaks.
    static T* EndAt(R* x, T* p)
    {
        DestroyBackward(p, x->end);
        x->end = p;
        return nullptr;
    }

    // Addresses compared as integers: sources may lie in any array.
    static bool Inside(const T* p, const T* first, const T* last)
    {
        const auto a = reinterpret_cast<std::uintptr_t>(p);
        return a >= reinterpret_cast<std::uintptr_t>(first) && a < reinterpret_cast<std::uintptr_t>(last);
    }

    // The source of every new element when all are copies of one value.
    static auto Repeat(const T* t)
    {
        return [t](Size) { return t; };
    }

    // Growth by one element (PushBack, Insert): double, or 2 slots for an empty vector.
    static Size GrowOne(Size size)
    {
        const Size grown = size == 0 ? 2 : 2 * size;
        return grown > kMaxSize ? kMaxSize : grown;
    }

    // Growth by n elements (InsertN, InsertRange); the caller has checked that
    // size + n fits.
    static Size GrowN(const R* x, Size n)
    {
        const Size needed = SizeOf(x) + n;
        Size grown = x->begin == nullptr ? 2 * n : 2 * Capacity(x);
        if (grown < needed) grown = needed;
        return grown > kMaxSize ? kMaxSize : grown;
    }

    // Moves every element to a new block of `capacity` slots.
    static bool Reallocate(R* x, Size capacity)
    {
        return RebuildAround(x, x->end, 0, capacity, [](Size) -> const T* { return nullptr; });
    }

    // Builds a new block of `capacity` slots holding the elements before pos, then
    // `count` new elements (source(k) for k = 0..count-1), then the elements from pos
    // on; then releases the old block. The sources are read before the old block goes,
    // so they may lie inside it. False, with the vector untouched, when the block
    // cannot be obtained or an element copy fails.
    template <class Source>
    static bool RebuildAround(R* x, T* pos, Size count, Size capacity, Source source)
    {
        T* block = Allocate(x->allocator, capacity);
        if (block == nullptr) return false;
        if constexpr (kBulk) {
            // The elements around the gap in two runs; the new ones one by one (their
            // sources may be anywhere, the old block included).
            const Size before = static_cast<Size>(pos - x->begin);
            const Size after = static_cast<Size>(x->end - pos);
            E::ConstructCopies(block, x->begin, before);
            for (Size k = 0; k < count; ++k) E::ConstructCopy(block + before + k, source(k));
            E::ConstructCopies(block + before + count, pos, after);
            const Size newSize = before + count + after;
            Destruct(x);
            Adopt(x, block, newSize, capacity);
            return true;
        }
        T* out = block;
        auto put = [&out](const T* src) {
            if (E::ConstructCopy(out, src) == nullptr) return false;
            ++out;
            return true;
        };
        bool ok = true;
        for (const T* p = x->begin; ok && p != pos; ++p) ok = put(p);
        for (Size k = 0; ok && k < count; ++k) ok = put(source(k));
        for (const T* p = pos; ok && p != x->end; ++p) ok = put(p);
        if (!ok) {
            DestroyBackward(block, out);
            Deallocate(x->allocator, block, capacity);
            return false;
        }
        const Size newSize = SizeOf(x) + count;
        Destruct(x);
        Adopt(x, block, newSize, capacity);
        return true;
    }

    // InsertN and InsertRange: n new elements before pos, element k read from source(k).
    template <class Source>
    static OrvBool InsertCounted(R* x, T* pos, Size n, Source source)
    {
        if (n == 0) return ORV_TRUE;
        const Size size = SizeOf(x);
        if (n > kMaxSize - size) return ORV_FALSE;
        if (size + n > Capacity(x)) return RebuildAround(x, pos, n, GrowN(x, n), source) ? ORV_TRUE : ORV_FALSE;

        T* const oldEnd = x->end;
        const Size tail = static_cast<Size>(oldEnd - pos);
        // Where a source is once the tail has moved up n slots: one inside the vector
        // at or after pos has moved with it.
        auto moved = [&](Size k) {
            const T* s = source(k);
            return Inside(s, pos, oldEnd) ? s + n : s;
        };
        auto append = [x](const T* src) {
            if (E::ConstructCopy(x->end, src) == nullptr) return false;
            ++x->end;
            return true;
        };
        if (tail > n) {
            //  before:  [ ..pos | a b c d e ]            n = 2
            //  step 1:  [ ..pos | a b c d e | d e ]      last n copied into raw slots
            //  step 2:  [ ..pos | a b a b c | d e ]      the rest moved up by assignment
            //  step 3:  [ ..pos | t t a b c | d e ]      the new values assigned
            for (T* s = oldEnd - n; s != oldEnd; ++s) {
                if (!append(s)) return ORV_FALSE;
            }
            for (T* p = oldEnd - 1; p != pos + n - 1; --p) {
                if (E::Assign(p, p - n) == nullptr) return ORV_FALSE;
            }
            for (Size k = 0; k < n; ++k) {
                if (E::Assign(pos + k, moved(k)) == nullptr) return ORV_FALSE;
            }
            return ORV_TRUE;
        }
        //  before:  [ ..pos | a b ]                      n = 3
        //  step 1:  [ ..pos | a b | t ]                  new values past the tail built in place
        //  step 2:  [ ..pos | a b | t | a b ]            the tail copied behind them
        //  step 3:  [ ..pos | t t | t | a b ]            the first new values assigned
        for (Size k = tail; k < n; ++k) {
            if (!append(source(k))) return ORV_FALSE;
        }
        if (tail == 0) return ORV_TRUE;
        for (T* s = pos; s != oldEnd; ++s) {
            if (!append(s)) return ORV_FALSE;
        }
        for (Size k = 0; k < tail; ++k) {
            if (E::Assign(pos + k, moved(k)) == nullptr) return ORV_FALSE;
        }
        return ORV_TRUE;
    }
};

} // namespace orv::containers

#endif // ORV_SRC_CONTAINERS_VECTOR_HPP
