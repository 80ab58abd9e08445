// OrvVector_OrvDateTime: the C entry points declared in Orv/Calendar/OrvDateTimeVector.h,
// each a call into the vector template (Containers/Vector.hpp) or the position
// arithmetic of its iterators (Containers/VectorIterator.hpp), over date-time elements.
#include "Orv/Calendar/OrvDateTimeVector.h"

#include "Calendar/OrvDateTimeElement.hpp"
#include "Containers/Vector.hpp"
#include "Containers/VectorIterator.hpp"

#include <cstddef>

// Every definition below must match a declaration of the public header: a different
// signature conflicts with the declared C function, and a function the header does not
// declare is refused here.
#if defined(__clang__)
#pragma clang diagnostic error "-Wmissing-prototypes"
#elif defined(__GNUC__)
#pragma GCC diagnostic error "-Wmissing-declarations"
#endif

// The records are public layout: pin them.
static_assert(sizeof(OrvVector_OrvDateTime) == 32);
static_assert(offsetof(OrvVector_OrvDateTime, allocator) == 0);
static_assert(offsetof(OrvVector_OrvDateTime, begin) == 8);
static_assert(offsetof(OrvVector_OrvDateTime, end) == 16);
static_assert(offsetof(OrvVector_OrvDateTime, endBuf) == 24);

namespace {

using Impl = orv::containers::Vector<orv::detail::DateTimeElement, OrvVector_OrvDateTime>;
using It = orv::containers::VectorIterator<OrvDateTime, OrvDateTime*, false>;
using CIt = orv::containers::VectorIterator<OrvDateTime, const OrvDateTime*, false>;
using RIt = orv::containers::VectorIterator<OrvDateTime, OrvDateTime*, true>;
using CRIt = orv::containers::VectorIterator<OrvDateTime, const OrvDateTime*, true>;

static_assert(Impl::kMaxSize == 44739242);

} // namespace

extern "C" {

OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructDefault(OrvVector_OrvDateTime* x, OrvAllocator* a)
{
    return Impl::ConstructDefault(x, a);
}
OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructN(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType n,
                                                       const OrvDateTime* t, OrvAllocator* a)
{
    return Impl::ConstructN(x, n, t, a);
}
OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructRange(OrvVector_OrvDateTime* x,
                                                           OrvVector_OrvDateTimeConstIterator first,
                                                           OrvVector_OrvDateTimeConstIterator last, OrvAllocator* a)
{
    return Impl::ConstructRange(x, first, last, a);
}
OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructCopy(OrvVector_OrvDateTime* x, const OrvVector_OrvDateTime* y)
{
    return Impl::ConstructCopy(x, y);
}
void OrvVector_OrvDateTimeDestruct(OrvVector_OrvDateTime* x) { Impl::Destruct(x); }
OrvVector_OrvDateTime* OrvVector_OrvDateTimeAssign(OrvVector_OrvDateTime* x, const OrvVector_OrvDateTime* y)
{
    return Impl::Assign(x, y);
}
OrvBool OrvVector_OrvDateTimeSwap(OrvVector_OrvDateTime* x, OrvVector_OrvDateTime* y) { return Impl::Swap(x, y); }
OrvVector_OrvDateTimeSizeType OrvVector_OrvDateTimeSize(const OrvVector_OrvDateTime* x) { return Impl::SizeOf(x); }
OrvVector_OrvDateTimeSizeType OrvVector_OrvDateTimeCapacity(const OrvVector_OrvDateTime* x)
{
    return Impl::Capacity(x);
}
OrvBool OrvVector_OrvDateTimeEmpty(const OrvVector_OrvDateTime* x) { return Impl::Empty(x); }
OrvVector_OrvDateTimeSizeType OrvVector_OrvDateTimeMaxSize(const OrvVector_OrvDateTime*) { return Impl::kMaxSize; }
OrvAllocator* OrvVector_OrvDateTimeGetAllocator(const OrvVector_OrvDateTime* x) { return x->allocator; }
OrvBool OrvVector_OrvDateTimeReserve(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType capacity)
{
    return Impl::Reserve(x, capacity);
}
OrvBool OrvVector_OrvDateTimeResize(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType n, const OrvDateTime* t)
{
    return Impl::Resize(x, n, t);
}
void OrvVector_OrvDateTimeClear(OrvVector_OrvDateTime* x) { Impl::Clear(x); }
OrvDateTime* OrvVector_OrvDateTimeAt(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType n) { return x->begin + n; }
const OrvDateTime* OrvVector_OrvDateTimeAtConst(const OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType n)
{
    return x->begin + n;
}
OrvDateTime* OrvVector_OrvDateTimeFront(OrvVector_OrvDateTime* x) { return x->begin; }
const OrvDateTime* OrvVector_OrvDateTimeFrontConst(const OrvVector_OrvDateTime* x) { return x->begin; }
OrvDateTime* OrvVector_OrvDateTimeBack(OrvVector_OrvDateTime* x) { return x->end - 1; }
const OrvDateTime* OrvVector_OrvDateTimeBackConst(const OrvVector_OrvDateTime* x) { return x->end - 1; }
OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeBegin(OrvVector_OrvDateTime* x) { return x->begin; }
OrvVector_OrvDateTimeConstIterator OrvVector_OrvDateTimeBeginConst(const OrvVector_OrvDateTime* x) { return x->begin; }
OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeEnd(OrvVector_OrvDateTime* x) { return x->end; }
OrvVector_OrvDateTimeConstIterator OrvVector_OrvDateTimeEndConst(const OrvVector_OrvDateTime* x) { return x->end; }
OrvVector_OrvDateTimeReverseIterator OrvVector_OrvDateTimeRBegin(OrvVector_OrvDateTime* x) { return x->end; }
OrvVector_OrvDateTimeConstReverseIterator OrvVector_OrvDateTimeRBeginConst(const OrvVector_OrvDateTime* x)
{
    return x->end;
}
OrvVector_OrvDateTimeReverseIterator OrvVector_OrvDateTimeREnd(OrvVector_OrvDateTime* x) { return x->begin; }
OrvVector_OrvDateTimeConstReverseIterator OrvVector_OrvDateTimeREndConst(const OrvVector_OrvDateTime* x)
{
    return x->begin;
}
OrvBool OrvVector_OrvDateTimePushBack(OrvVector_OrvDateTime* x, const OrvDateTime* t) { return Impl::PushBack(x, t); }
void OrvVector_OrvDateTimePopBack(OrvVector_OrvDateTime* x) { Impl::PopBack(x); }
OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeInsert(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeIterator pos,
                                                          const OrvDateTime* t)
{
    return Impl::Insert(x, pos, t);
}
OrvBool OrvVector_OrvDateTimeInsertN(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeIterator pos,
                                     OrvVector_OrvDateTimeSizeType n, const OrvDateTime* t)
{
    return Impl::InsertN(x, pos, n, t);
}
OrvBool OrvVector_OrvDateTimeInsertRange(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeIterator pos,
                                         OrvVector_OrvDateTimeConstIterator first,
                                         OrvVector_OrvDateTimeConstIterator last)
{
    return Impl::InsertRange(x, pos, first, last);
}
OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeErase(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeIterator pos)
{
    return Impl::Erase(x, pos);
}
OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeEraseRange(OrvVector_OrvDateTime* x,
                                                              OrvVector_OrvDateTimeIterator first,
                                                              OrvVector_OrvDateTimeIterator last)
{
    return Impl::EraseRange(x, first, last);
}
void OrvVector_OrvDateTimeDump(const OrvVector_OrvDateTime*, const char*, unsigned int) {}

// Iterator
void OrvVector_OrvDateTimeIteratorDestruct(OrvVector_OrvDateTimeIterator*) {}
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorConstructCopy(OrvVector_OrvDateTimeIterator* x,
                                                                          const OrvVector_OrvDateTimeIterator* y)
{
    return It::Store(x, *y);
}
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorAssign(OrvVector_OrvDateTimeIterator* x,
                                                                   const OrvVector_OrvDateTimeIterator* y)
{
    return It::Store(x, *y);
}
OrvBool OrvVector_OrvDateTimeIteratorSwap(OrvVector_OrvDateTimeIterator* x, OrvVector_OrvDateTimeIterator* y)
{
    return It::Swap(x, y);
}
OrvBool OrvVector_OrvDateTimeIteratorEqual(const OrvVector_OrvDateTimeIterator* x,
                                           const OrvVector_OrvDateTimeIterator* y)
{
    return It::Equal(x, y);
}
OrvDateTime* OrvVector_OrvDateTimeIteratorContentOf(OrvVector_OrvDateTimeIterator* x) { return It::ContentOf(*x); }
const OrvDateTime* OrvVector_OrvDateTimeIteratorContentOfConst(const OrvVector_OrvDateTimeIterator* x)
{
    return It::ContentOf(*x);
}
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorConstructExceptional(OrvVector_OrvDateTimeIterator* x)
{
    return It::Store(x, nullptr);
}
OrvBool OrvVector_OrvDateTimeIteratorIsExceptional(OrvVector_OrvDateTimeIterator x) { return It::IsExceptional(x); }
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorIncrement(OrvVector_OrvDateTimeIterator* x)
{
    return It::Store(x, It::Forward(*x, 1));
}
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorDecrement(OrvVector_OrvDateTimeIterator* x)
{
    return It::Store(x, It::Backward(*x, 1));
}
OrvBool OrvVector_OrvDateTimeIteratorLess(const OrvVector_OrvDateTimeIterator* x,
                                          const OrvVector_OrvDateTimeIterator* y)
{
    return It::Less(x, y);
}
OrvDateTime* OrvVector_OrvDateTimeIteratorAt(OrvVector_OrvDateTimeIterator* x,
                                             OrvVector_OrvDateTimeIteratorDifferenceType n)
{
    return It::At(*x, n);
}
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorIncrementN(OrvVector_OrvDateTimeIterator* x,
                                                                       OrvVector_OrvDateTimeIteratorDifferenceType n)
{
    return It::Store(x, It::Forward(*x, n));
}
OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorDecrementN(OrvVector_OrvDateTimeIterator* x,
                                                                       OrvVector_OrvDateTimeIteratorDifferenceType n)
{
    return It::Store(x, It::Backward(*x, n));
}
OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeIteratorAdd(OrvVector_OrvDateTimeIterator* x,
                                                               OrvVector_OrvDateTimeIteratorDifferenceType n)
{
    return It::Forward(*x, n);
}
OrvVector_OrvDateTimeIteratorDifferenceType OrvVector_OrvDateTimeIteratorSubtract(OrvVector_OrvDateTimeIterator* x,
                                                                                  OrvVector_OrvDateTimeIterator* y)
{
    return It::Subtract(*x, *y);
}

// ConstIterator
void OrvVector_OrvDateTimeConstIteratorDestruct(OrvVector_OrvDateTimeConstIterator*) {}
OrvVector_OrvDateTimeConstIterator*
OrvVector_OrvDateTimeConstIteratorConstructCopy(OrvVector_OrvDateTimeConstIterator* x,
                                                const OrvVector_OrvDateTimeConstIterator* y)
{
    return CIt::Store(x, *y);
}
OrvVector_OrvDateTimeConstIterator*
OrvVector_OrvDateTimeConstIteratorAssign(OrvVector_OrvDateTimeConstIterator* x,
                                         const OrvVector_OrvDateTimeConstIterator* y)
{
    return CIt::Store(x, *y);
}
OrvBool OrvVector_OrvDateTimeConstIteratorSwap(OrvVector_OrvDateTimeConstIterator* x,
                                               OrvVector_OrvDateTimeConstIterator* y)
{
    return CIt::Swap(x, y);
}
OrvBool OrvVector_OrvDateTimeConstIteratorEqual(const OrvVector_OrvDateTimeConstIterator* x,
                                                const OrvVector_OrvDateTimeConstIterator* y)
{
    return CIt::Equal(x, y);
}
const OrvDateTime* OrvVector_OrvDateTimeConstIteratorContentOf(OrvVector_OrvDateTimeConstIterator* x)
{
    return CIt::ContentOf(*x);
}
const OrvDateTime* OrvVector_OrvDateTimeConstIteratorContentOfConst(const OrvVector_OrvDateTimeConstIterator* x)
{
    return CIt::ContentOf(*x);
}
OrvVector_OrvDateTimeConstIterator*
OrvVector_OrvDateTimeConstIteratorConstructExceptional(OrvVector_OrvDateTimeConstIterator* x)
{
    return CIt::Store(x, nullptr);
}
OrvBool OrvVector_OrvDateTimeConstIteratorIsExceptional(OrvVector_OrvDateTimeConstIterator x)
{
    return CIt::IsExceptional(x);
}
OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorIncrement(OrvVector_OrvDateTimeConstIterator* x)
{
    return CIt::Store(x, CIt::Forward(*x, 1));
}
OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorDecrement(OrvVector_OrvDateTimeConstIterator* x)
{
    return CIt::Store(x, CIt::Backward(*x, 1));
}
OrvBool OrvVector_OrvDateTimeConstIteratorLess(const OrvVector_OrvDateTimeConstIterator* x,
                                               const OrvVector_OrvDateTimeConstIterator* y)
{
    return CIt::Less(x, y);
}
const OrvDateTime* OrvVector_OrvDateTimeConstIteratorAt(OrvVector_OrvDateTimeConstIterator* x,
                                                        OrvVector_OrvDateTimeConstIteratorDifferenceType n)
{
    return CIt::At(*x, n);
}
OrvVector_OrvDateTimeConstIterator*
OrvVector_OrvDateTimeConstIteratorIncrementN(OrvVector_OrvDateTimeConstIterator* x,
                                             OrvVector_OrvDateTimeConstIteratorDifferenceType n)
{
    return CIt::Store(x, CIt::Forward(*x, n));
}
OrvVector_OrvDateTimeConstIterator*
OrvVector_OrvDateTimeConstIteratorDecrementN(OrvVector_OrvDateTimeConstIterator* x,
                                             OrvVector_OrvDateTimeConstIteratorDifferenceType n)
{
    return CIt::Store(x, CIt::Backward(*x, n));
}
OrvVector_OrvDateTimeConstIterator
OrvVector_OrvDateTimeConstIteratorAdd(OrvVector_OrvDateTimeConstIterator* x,
                                      OrvVector_OrvDateTimeConstIteratorDifferenceType n)
{
    return CIt::Forward(*x, n);
}
OrvVector_OrvDateTimeConstIteratorDifferenceType
OrvVector_OrvDateTimeConstIteratorSubtract(OrvVector_OrvDateTimeConstIterator* x, OrvVector_OrvDateTimeConstIterator* y)
{
    return CIt::Subtract(*x, *y);
}

// ReverseIterator
void OrvVector_OrvDateTimeReverseIteratorDestruct(OrvVector_OrvDateTimeReverseIterator*) {}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorConstructCopy(OrvVector_OrvDateTimeReverseIterator* x,
                                                  const OrvVector_OrvDateTimeReverseIterator* y)
{
    return RIt::Store(x, *y);
}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorAssign(OrvVector_OrvDateTimeReverseIterator* x,
                                           const OrvVector_OrvDateTimeReverseIterator* y)
{
    return RIt::Store(x, *y);
}
OrvBool OrvVector_OrvDateTimeReverseIteratorSwap(OrvVector_OrvDateTimeReverseIterator* x,
                                                 OrvVector_OrvDateTimeReverseIterator* y)
{
    return RIt::Swap(x, y);
}
OrvBool OrvVector_OrvDateTimeReverseIteratorEqual(const OrvVector_OrvDateTimeReverseIterator* x,
                                                  const OrvVector_OrvDateTimeReverseIterator* y)
{
    return RIt::Equal(x, y);
}
OrvDateTime* OrvVector_OrvDateTimeReverseIteratorContentOf(OrvVector_OrvDateTimeReverseIterator* x)
{
    return RIt::ContentOf(*x);
}
const OrvDateTime* OrvVector_OrvDateTimeReverseIteratorContentOfConst(const OrvVector_OrvDateTimeReverseIterator* x)
{
    return RIt::ContentOf(*x);
}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorConstructExceptional(OrvVector_OrvDateTimeReverseIterator* x)
{
    return RIt::Store(x, nullptr);
}
OrvBool OrvVector_OrvDateTimeReverseIteratorIsExceptional(OrvVector_OrvDateTimeReverseIterator x)
{
    return RIt::IsExceptional(x);
}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorIncrement(OrvVector_OrvDateTimeReverseIterator* x)
{
    return RIt::Store(x, RIt::Forward(*x, 1));
}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorDecrement(OrvVector_OrvDateTimeReverseIterator* x)
{
    return RIt::Store(x, RIt::Backward(*x, 1));
}
OrvBool OrvVector_OrvDateTimeReverseIteratorLess(const OrvVector_OrvDateTimeReverseIterator* x,
                                                 const OrvVector_OrvDateTimeReverseIterator* y)
{
    return RIt::Less(x, y);
}
OrvDateTime* OrvVector_OrvDateTimeReverseIteratorAt(OrvVector_OrvDateTimeReverseIterator* x,
                                                    OrvVector_OrvDateTimeReverseIteratorDifferenceType n)
{
    return RIt::At(*x, n);
}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorIncrementN(OrvVector_OrvDateTimeReverseIterator* x,
                                               OrvVector_OrvDateTimeReverseIteratorDifferenceType n)
{
    return RIt::Store(x, RIt::Forward(*x, n));
}
OrvVector_OrvDateTimeReverseIterator*
OrvVector_OrvDateTimeReverseIteratorDecrementN(OrvVector_OrvDateTimeReverseIterator* x,
                                               OrvVector_OrvDateTimeReverseIteratorDifferenceType n)
{
    return RIt::Store(x, RIt::Backward(*x, n));
}
OrvVector_OrvDateTimeReverseIterator
OrvVector_OrvDateTimeReverseIteratorAdd(OrvVector_OrvDateTimeReverseIterator* x,
                                        OrvVector_OrvDateTimeReverseIteratorDifferenceType n)
{
    return RIt::Forward(*x, n);
}
OrvVector_OrvDateTimeReverseIteratorDifferenceType
OrvVector_OrvDateTimeReverseIteratorSubtract(OrvVector_OrvDateTimeReverseIterator* x,
                                             OrvVector_OrvDateTimeReverseIterator* y)
{
    return RIt::Subtract(*x, *y);
}

// ConstReverseIterator
void OrvVector_OrvDateTimeConstReverseIteratorDestruct(OrvVector_OrvDateTimeConstReverseIterator*) {}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorConstructCopy(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                       const OrvVector_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Store(x, *y);
}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorAssign(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                const OrvVector_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Store(x, *y);
}
OrvBool OrvVector_OrvDateTimeConstReverseIteratorSwap(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                      OrvVector_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Swap(x, y);
}
OrvBool OrvVector_OrvDateTimeConstReverseIteratorEqual(const OrvVector_OrvDateTimeConstReverseIterator* x,
                                                       const OrvVector_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Equal(x, y);
}
const OrvDateTime* OrvVector_OrvDateTimeConstReverseIteratorContentOf(OrvVector_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::ContentOf(*x);
}
const OrvDateTime*
OrvVector_OrvDateTimeConstReverseIteratorContentOfConst(const OrvVector_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::ContentOf(*x);
}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorConstructExceptional(OrvVector_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::Store(x, nullptr);
}
OrvBool OrvVector_OrvDateTimeConstReverseIteratorIsExceptional(OrvVector_OrvDateTimeConstReverseIterator x)
{
    return CRIt::IsExceptional(x);
}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorIncrement(OrvVector_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::Store(x, CRIt::Forward(*x, 1));
}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorDecrement(OrvVector_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::Store(x, CRIt::Backward(*x, 1));
}
OrvBool OrvVector_OrvDateTimeConstReverseIteratorLess(const OrvVector_OrvDateTimeConstReverseIterator* x,
                                                      const OrvVector_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Less(x, y);
}
const OrvDateTime*
OrvVector_OrvDateTimeConstReverseIteratorAt(OrvVector_OrvDateTimeConstReverseIterator* x,
                                            OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n)
{
    return CRIt::At(*x, n);
}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorIncrementN(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                    OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n)
{
    return CRIt::Store(x, CRIt::Forward(*x, n));
}
OrvVector_OrvDateTimeConstReverseIterator*
OrvVector_OrvDateTimeConstReverseIteratorDecrementN(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                    OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n)
{
    return CRIt::Store(x, CRIt::Backward(*x, n));
}
OrvVector_OrvDateTimeConstReverseIterator
OrvVector_OrvDateTimeConstReverseIteratorAdd(OrvVector_OrvDateTimeConstReverseIterator* x,
                                             OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n)
{
    return CRIt::Forward(*x, n);
}
OrvVector_OrvDateTimeConstReverseIteratorDifferenceType
OrvVector_OrvDateTimeConstReverseIteratorSubtract(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                  OrvVector_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Subtract(*x, *y);
}

} // extern "C"
