// OrvSet_OrvDateTime: the C entry points declared in Orv/Calendar/OrvDateTimeSet.h, each
// a call into the AVL tree (Containers/AvlTree.hpp) or the set over it
// (Containers/AvlSet.hpp), over date-time elements ordered by the inline form of
// OrvDateTimeLess.
#include "Orv/Calendar/OrvDateTimeSet.h"

#include "Calendar/OrvDateTimeElement.hpp"
#include "Containers/AvlSet.hpp"
#include "Containers/AvlTree.hpp"

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
static_assert(sizeof(OrvSet_OrvDateTime_Node) == 136);
static_assert(offsetof(OrvSet_OrvDateTime_Node, value) == 0);
static_assert(offsetof(OrvSet_OrvDateTime_Node, left) == 96);
static_assert(offsetof(OrvSet_OrvDateTime_Node, right) == 104);
static_assert(offsetof(OrvSet_OrvDateTime_Node, parent) == 112);
static_assert(offsetof(OrvSet_OrvDateTime_Node, pPtr) == 120);
static_assert(offsetof(OrvSet_OrvDateTime_Node, height) == 128);
static_assert(sizeof(OrvSet_OrvDateTime) == 152);
static_assert(offsetof(OrvSet_OrvDateTime, end) == 0);
static_assert(offsetof(OrvSet_OrvDateTime, size) == 136);
static_assert(offsetof(OrvSet_OrvDateTime, alloc) == 144);
static_assert(sizeof(OrvPair_OrvSet_OrvDateTimeIterator__OrvBool) == 16);
static_assert(offsetof(OrvPair_OrvSet_OrvDateTimeIterator__OrvBool, second) == 8);
static_assert(sizeof(OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator) == 16);
static_assert(sizeof(OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator) == 16);

namespace {

struct Records {
    using Node = OrvSet_OrvDateTime_Node;
    using Set = OrvSet_OrvDateTime;
    using InsertResult = OrvPair_OrvSet_OrvDateTimeIterator__OrvBool;
    using Range = OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator;
    using ConstRange = OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator;
};
using Element = orv::detail::DateTimeElement;
using Tree = orv::containers::AvlTree<Element, Records>;
using Impl = orv::containers::AvlSet<Element, Records>;
using It = orv::containers::SetIterator<Element, Records, OrvSet_OrvDateTime_Node*, false>;
using CIt = orv::containers::SetIterator<Element, Records, const OrvSet_OrvDateTime_Node*, false>;
using RIt = orv::containers::SetIterator<Element, Records, OrvSet_OrvDateTime_Node*, true>;
using CRIt = orv::containers::SetIterator<Element, Records, const OrvSet_OrvDateTime_Node*, true>;

} // namespace

extern "C" {

OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeFind(OrvSet_OrvDateTime_Node* node, const OrvDateTime* key)
{
    return Tree::Find(node, key);
}
const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeFindConst(const OrvSet_OrvDateTime_Node* node,
                                                                const OrvDateTime* key)
{
    return Tree::Find(node, key);
}
OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTime_NodeCount(const OrvSet_OrvDateTime_Node* node, const OrvDateTime* key)
{
    return Tree::Find(node, key) != nullptr ? 1 : 0;
}
OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeLowerBound(OrvSet_OrvDateTime_Node* node, const OrvDateTime* key)
{
    return Tree::LowerBound(node, key);
}
const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeLowerBoundConst(const OrvSet_OrvDateTime_Node* node,
                                                                      const OrvDateTime* key)
{
    return Tree::LowerBound(node, key);
}
OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeUpperBound(OrvSet_OrvDateTime_Node* node, const OrvDateTime* key)
{
    return Tree::UpperBound(node, key);
}
const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeUpperBoundConst(const OrvSet_OrvDateTime_Node* node,
                                                                      const OrvDateTime* key)
{
    return Tree::UpperBound(node, key);
}
OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator
OrvSet_OrvDateTime_NodeEqualRange(OrvSet_OrvDateTime_Node* node, const OrvDateTime* key)
{
    return Tree::EqualRange<Records::Range>(node, key);
}
OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator
OrvSet_OrvDateTime_NodeEqualRangeConst(const OrvSet_OrvDateTime_Node* node, const OrvDateTime* key)
{
    return Tree::EqualRange<Records::ConstRange>(node, key);
}
OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMinimum(OrvSet_OrvDateTime_Node* node)
{
    return Tree::Minimum(node);
}
const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMinimumConst(const OrvSet_OrvDateTime_Node* node)
{
    return Tree::Minimum(node);
}
OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMaximum(OrvSet_OrvDateTime_Node* node)
{
    return Tree::Maximum(node);
}
const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMaximumConst(const OrvSet_OrvDateTime_Node* node)
{
    return Tree::Maximum(node);
}
OrvPair_OrvSet_OrvDateTimeIterator__OrvBool OrvSet_OrvDateTime_NodeInsert(OrvSet_OrvDateTime_Node* curNode,
                                                                          OrvSet_OrvDateTime_Node* newNode)
{
    return Tree::Insert(curNode, newNode);
}
void OrvSet_OrvDateTime_NodeBalance(OrvSet_OrvDateTime_Node* node, OrvBool removing)
{
    Tree::Balance(node, removing != ORV_FALSE);
}
void OrvSet_OrvDateTime_NodeRotateLeft(OrvSet_OrvDateTime_Node* node) { Tree::RotateLeft(node); }
void OrvSet_OrvDateTime_NodeRotateRight(OrvSet_OrvDateTime_Node* node) { Tree::RotateRight(node); }
OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeCopy(const OrvSet_OrvDateTime_Node* node,
                                                     OrvSet_OrvDateTime_Node* parent, OrvSet_OrvDateTime_Node** pPtr,
                                                     OrvAllocator* alloc)
{
    return Tree::Copy(node, parent, pPtr, alloc);
}
void OrvSet_OrvDateTime_NodeDelete(OrvSet_OrvDateTime_Node* node, OrvAllocator* alloc) { Tree::Delete(node, alloc); }

OrvSet_OrvDateTime* OrvSet_OrvDateTimeConstruct(OrvSet_OrvDateTime* bt, OrvAllocator* alloc)
{
    return Impl::Construct(bt, alloc);
}
OrvSet_OrvDateTime* OrvSet_OrvDateTimeConstructCopy(OrvSet_OrvDateTime* d, const OrvSet_OrvDateTime* s)
{
    return Impl::ConstructCopy(d, s);
}
OrvSet_OrvDateTime* OrvSet_OrvDateTimeAssign(OrvSet_OrvDateTime* d, const OrvSet_OrvDateTime* s)
{
    return Impl::Assign(d, s);
}
void OrvSet_OrvDateTimeDestruct(OrvSet_OrvDateTime* bt) { Impl::Destruct(bt); }
void OrvSet_OrvDateTimeClear(OrvSet_OrvDateTime* bt) { Impl::Clear(bt); }
OrvBool OrvSet_OrvDateTimeSwap(OrvSet_OrvDateTime* a, OrvSet_OrvDateTime* b) { return Impl::Swap(a, b); }
OrvPair_OrvSet_OrvDateTimeIterator__OrvBool OrvSet_OrvDateTimeInsert(OrvSet_OrvDateTime* bt, const OrvDateTime* value)
{
    return Impl::Insert(bt, value);
}
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeErase(OrvSet_OrvDateTime* bt, OrvSet_OrvDateTimeIterator node)
{
    return Impl::Erase(bt, node);
}
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeEraseRange(OrvSet_OrvDateTime* bt, OrvSet_OrvDateTimeIterator first,
                                                        OrvSet_OrvDateTimeIterator last)
{
    return Impl::EraseRange(bt, first, last);
}
OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeEraseKey(OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::EraseKey(bt, key);
}
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeFind(OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::FindIn(bt, key);
}
OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeFindConst(const OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::FindIn(bt, key);
}
OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeCount(const OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::Count(bt, key);
}
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeLowerBound(OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::LowerBoundIn(bt, key);
}
OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeLowerBoundConst(const OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::LowerBoundIn(bt, key);
}
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeUpperBound(OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::UpperBoundIn(bt, key);
}
OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeUpperBoundConst(const OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::UpperBoundIn(bt, key);
}
OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeEqualRange(OrvSet_OrvDateTime* bt,
                                                                                            const OrvDateTime* key)
{
    return Impl::EqualRange(bt, key);
}
OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator
OrvSet_OrvDateTimeEqualRangeConst(const OrvSet_OrvDateTime* bt, const OrvDateTime* key)
{
    return Impl::EqualRange(bt, key);
}
OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeSize(const OrvSet_OrvDateTime* bt) { return bt->size; }
OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeMaxSize(const OrvSet_OrvDateTime*) { return Impl::kMaxSize; }
OrvBool OrvSet_OrvDateTimeEmpty(const OrvSet_OrvDateTime* bt) { return bt->size == 0 ? ORV_TRUE : ORV_FALSE; }
OrvAllocator* OrvSet_OrvDateTimeGetAllocator(const OrvSet_OrvDateTime* bt) { return bt->alloc; }
OrvDateTime* OrvSet_OrvDateTimeFront(OrvSet_OrvDateTime* bt) { return Impl::Front(bt); }
OrvDateTime* OrvSet_OrvDateTimeBack(OrvSet_OrvDateTime* bt) { return Impl::Back(bt); }
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeBegin(OrvSet_OrvDateTime* bt) { return Impl::Begin(bt); }
OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeBeginConst(const OrvSet_OrvDateTime* bt) { return Impl::Begin(bt); }
OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeEnd(OrvSet_OrvDateTime* bt) { return &bt->end; }
OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeEndConst(const OrvSet_OrvDateTime* bt) { return &bt->end; }
OrvSizeT OrvSet_OrvDateTimeGetNodeSize(const OrvSet_OrvDateTime*) { return Impl::kNodeSize; }

// Iterator
OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorConstruct(OrvSet_OrvDateTimeIterator* x)
{
    return It::Store(x, nullptr);
}
void OrvSet_OrvDateTimeIteratorDestruct(OrvSet_OrvDateTimeIterator*) {}
OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorConstructCopy(OrvSet_OrvDateTimeIterator* x,
                                                                    const OrvSet_OrvDateTimeIterator* y)
{
    return It::Store(x, *y);
}
OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorAssign(OrvSet_OrvDateTimeIterator* x,
                                                             const OrvSet_OrvDateTimeIterator* y)
{
    return It::Store(x, *y);
}
OrvBool OrvSet_OrvDateTimeIteratorSwap(OrvSet_OrvDateTimeIterator* x, OrvSet_OrvDateTimeIterator* y)
{
    return It::Swap(x, y);
}
OrvBool OrvSet_OrvDateTimeIteratorEqual(const OrvSet_OrvDateTimeIterator* x, const OrvSet_OrvDateTimeIterator* y)
{
    return It::Equal(x, y);
}
OrvBool OrvSet_OrvDateTimeIteratorLess(const OrvSet_OrvDateTimeIterator* x, const OrvSet_OrvDateTimeIterator* y)
{
    return It::Less(x, y);
}
OrvDateTime* OrvSet_OrvDateTimeIteratorContentOf(OrvSet_OrvDateTimeIterator* x) { return It::ContentOf(*x); }
const OrvDateTime* OrvSet_OrvDateTimeIteratorContentOfConst(const OrvSet_OrvDateTimeIterator* x)
{
    return It::ContentOf(*x);
}
OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorIncrement(OrvSet_OrvDateTimeIterator* x)
{
    return It::Increment(x);
}
OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorDecrement(OrvSet_OrvDateTimeIterator* x)
{
    return It::Decrement(x);
}
OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorConstructExceptional(OrvSet_OrvDateTimeIterator* x)
{
    return It::Store(x, nullptr);
}
OrvBool OrvSet_OrvDateTimeIteratorIsExceptional(OrvSet_OrvDateTimeIterator x)
{
    return x == nullptr ? ORV_TRUE : ORV_FALSE;
}

// ConstIterator
OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorConstruct(OrvSet_OrvDateTimeConstIterator* x)
{
    return CIt::Store(x, nullptr);
}
void OrvSet_OrvDateTimeConstIteratorDestruct(OrvSet_OrvDateTimeConstIterator*) {}
OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorConstructCopy(OrvSet_OrvDateTimeConstIterator* x,
                                                                              const OrvSet_OrvDateTimeConstIterator* y)
{
    return CIt::Store(x, *y);
}
OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorAssign(OrvSet_OrvDateTimeConstIterator* x,
                                                                       const OrvSet_OrvDateTimeConstIterator* y)
{
    return CIt::Store(x, *y);
}
OrvBool OrvSet_OrvDateTimeConstIteratorSwap(OrvSet_OrvDateTimeConstIterator* x, OrvSet_OrvDateTimeConstIterator* y)
{
    return CIt::Swap(x, y);
}
OrvBool OrvSet_OrvDateTimeConstIteratorEqual(const OrvSet_OrvDateTimeConstIterator* x,
                                             const OrvSet_OrvDateTimeConstIterator* y)
{
    return CIt::Equal(x, y);
}
OrvBool OrvSet_OrvDateTimeConstIteratorLess(const OrvSet_OrvDateTimeConstIterator* x,
                                            const OrvSet_OrvDateTimeConstIterator* y)
{
    return CIt::Less(x, y);
}
const OrvDateTime* OrvSet_OrvDateTimeConstIteratorContentOf(OrvSet_OrvDateTimeConstIterator* x)
{
    return CIt::ContentOf(*x);
}
const OrvDateTime* OrvSet_OrvDateTimeConstIteratorContentOfConst(const OrvSet_OrvDateTimeConstIterator* x)
{
    return CIt::ContentOf(*x);
}
OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorIncrement(OrvSet_OrvDateTimeConstIterator* x)
{
    return CIt::Increment(x);
}
OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorDecrement(OrvSet_OrvDateTimeConstIterator* x)
{
    return CIt::Decrement(x);
}
OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorConstructExceptional(OrvSet_OrvDateTimeConstIterator* x)
{
    return CIt::Store(x, nullptr);
}
OrvBool OrvSet_OrvDateTimeConstIteratorIsExceptional(OrvSet_OrvDateTimeConstIterator x)
{
    return x == nullptr ? ORV_TRUE : ORV_FALSE;
}

// ReverseIterator
void OrvSet_OrvDateTimeReverseIteratorDestruct(OrvSet_OrvDateTimeReverseIterator*) {}
OrvSet_OrvDateTimeReverseIterator*
OrvSet_OrvDateTimeReverseIteratorConstructCopy(OrvSet_OrvDateTimeReverseIterator* x,
                                               const OrvSet_OrvDateTimeReverseIterator* y)
{
    return RIt::Store(x, *y);
}
OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorAssign(OrvSet_OrvDateTimeReverseIterator* x,
                                                                           const OrvSet_OrvDateTimeReverseIterator* y)
{
    return RIt::Store(x, *y);
}
OrvBool OrvSet_OrvDateTimeReverseIteratorSwap(OrvSet_OrvDateTimeReverseIterator* x,
                                              OrvSet_OrvDateTimeReverseIterator* y)
{
    return RIt::Swap(x, y);
}
OrvBool OrvSet_OrvDateTimeReverseIteratorEqual(const OrvSet_OrvDateTimeReverseIterator* x,
                                               const OrvSet_OrvDateTimeReverseIterator* y)
{
    return RIt::Equal(x, y);
}
OrvDateTime* OrvSet_OrvDateTimeReverseIteratorContentOf(OrvSet_OrvDateTimeReverseIterator* x)
{
    return RIt::ContentOf(*x);
}
const OrvDateTime* OrvSet_OrvDateTimeReverseIteratorContentOfConst(const OrvSet_OrvDateTimeReverseIterator* x)
{
    return RIt::ContentOf(*x);
}
OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorIncrement(OrvSet_OrvDateTimeReverseIterator* x)
{
    return RIt::Increment(x);
}
OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorDecrement(OrvSet_OrvDateTimeReverseIterator* x)
{
    return RIt::Decrement(x);
}
OrvSet_OrvDateTimeReverseIterator*
OrvSet_OrvDateTimeReverseIteratorConstructExceptional(OrvSet_OrvDateTimeReverseIterator* x)
{
    return RIt::Store(x, nullptr);
}
OrvBool OrvSet_OrvDateTimeReverseIteratorIsExceptional(OrvSet_OrvDateTimeReverseIterator x)
{
    return x == nullptr ? ORV_TRUE : ORV_FALSE;
}

// ConstReverseIterator
void OrvSet_OrvDateTimeConstReverseIteratorDestruct(OrvSet_OrvDateTimeConstReverseIterator*) {}
OrvSet_OrvDateTimeConstReverseIterator*
OrvSet_OrvDateTimeConstReverseIteratorConstructCopy(OrvSet_OrvDateTimeConstReverseIterator* x,
                                                    const OrvSet_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Store(x, *y);
}
OrvSet_OrvDateTimeConstReverseIterator*
OrvSet_OrvDateTimeConstReverseIteratorAssign(OrvSet_OrvDateTimeConstReverseIterator* x,
                                             const OrvSet_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Store(x, *y);
}
OrvBool OrvSet_OrvDateTimeConstReverseIteratorSwap(OrvSet_OrvDateTimeConstReverseIterator* x,
                                                   OrvSet_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Swap(x, y);
}
OrvBool OrvSet_OrvDateTimeConstReverseIteratorEqual(const OrvSet_OrvDateTimeConstReverseIterator* x,
                                                    const OrvSet_OrvDateTimeConstReverseIterator* y)
{
    return CRIt::Equal(x, y);
}
const OrvDateTime* OrvSet_OrvDateTimeConstReverseIteratorContentOf(OrvSet_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::ContentOf(*x);
}
const OrvDateTime* OrvSet_OrvDateTimeConstReverseIteratorContentOfConst(const OrvSet_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::ContentOf(*x);
}
OrvSet_OrvDateTimeConstReverseIterator*
OrvSet_OrvDateTimeConstReverseIteratorIncrement(OrvSet_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::Increment(x);
}
OrvSet_OrvDateTimeConstReverseIterator*
OrvSet_OrvDateTimeConstReverseIteratorDecrement(OrvSet_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::Decrement(x);
}
OrvSet_OrvDateTimeConstReverseIterator*
OrvSet_OrvDateTimeConstReverseIteratorConstructExceptional(OrvSet_OrvDateTimeConstReverseIterator* x)
{
    return CRIt::Store(x, nullptr);
}
OrvBool OrvSet_OrvDateTimeConstReverseIteratorIsExceptional(OrvSet_OrvDateTimeConstReverseIterator x)
{
    return x == nullptr ? ORV_TRUE : ORV_FALSE;
}

} // extern "C"
