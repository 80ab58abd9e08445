/*
 * OrvDateTimeSet.h - OrvSet_OrvDateTime, an ordered set of date-time values with unique
 * keys, in an AVL tree whose nodes come from the caller's allocator.
 * Orv/Calendar/OrvDateTime.h includes it; it also compiles on its own.
 *
 * The set
 *  - orders its elements by OrvDateTimeLess: by instant, so values denoting the same
 *    instant are one key whatever their zones. Comparisons normalize stored elements
 *    and keys in place;
 *  - holds copies of its elements, one per node, made with OrvDateTimeConstructCopy
 *    (each holds its own zone reference) and ended with OrvDateTimeDestruct; the value
 *    is the node's first member, so an iterator (a node pointer) is also a pointer to
 *    its element;
 *  - takes every node from the allocator given at construction (a copy constructed
 *    set takes the source's), always with the size GetNodeSize reports, and returns
 *    it with that size;
 *  - embeds a sentinel node, `end`, that holds no element: its left link is the root,
 *    and its address is the end position. The root's parent and pPtr point into the
 *    set record, so a non-empty set must not be moved by copying its bytes (Swap
 *    re-hangs the roots);
 *  - keeps every node where it was allocated: erasing relinks a substitute node and
 *    never moves values, so iterators to other elements stay valid.
 *
 * Failure. Only node memory can run out. Insert then gives the end position with
 * false (a key already present gives its own node with false); ConstructCopy gives
 * null and holds nothing (do not destruct it); Assign gives null and leaves d as it
 * was. Swap between sets with different allocators gives false when a copy fails and
 * then leaves both sets as they were (a's former elements are handed back to it).
 * Nothing is leaked on any path.
 *
 * Preconditions not checked: a null node for the node-level searches, minimum,
 * maximum, copy and release; stepping a forward iterator past the end or before the
 * begin position (and a reverse one past its ends); erasing the end position; ranges
 * not reachable by forward steps.
 *
 * Iterators. A forward iterator holds the node of its element, or the sentinel for the
 * end position. A reverse iterator holds the node after the element it designates:
 * form the reverse begin by holding the set's End, and the reverse end by holding its
 * Begin. Null is the exceptional iterator of every kind; it stays null when moved, and
 * reading through it gives null.
 *
 *     OrvSet_OrvDateTime s;
 *     OrvSet_OrvDateTimeConstruct(&s, OrvAllocatorGetDefault());
 *     OrvPair_OrvSet_OrvDateTimeIterator__OrvBool r = OrvSet_OrvDateTimeInsert(&s, &d);
 *     if (r.first == OrvSet_OrvDateTimeEnd(&s)) { ... out of memory ... }
 *     for (OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(&s);
 *          it != OrvSet_OrvDateTimeEnd(&s); OrvSet_OrvDateTimeIteratorIncrement(&it)) {
 *         const OrvDateTime* v = OrvSet_OrvDateTimeIteratorContentOfConst(&it);
 *     }
 *     OrvSet_OrvDateTimeDestruct(&s);
 */
#ifndef ORV_CALENDAR_ORVDATETIMESET_H
#define ORV_CALENDAR_ORVDATETIMESET_H

#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Utils/OrvAllocator.h"
#include "Orv/Utils/SysDep/OrvBaseTypes.h"

ORV_EXTERN_C_BEGIN

typedef struct OrvSet_OrvDateTime_Node OrvSet_OrvDateTime_Node;
/** One tree node (136 bytes). height is 1 for a leaf; an absent subtree counts 0. */
struct OrvSet_OrvDateTime_Node {
    OrvDateTime value;                /* the element; first, so a node's address is its element's */
    OrvSet_OrvDateTime_Node* left;    /* subtree of lesser elements, or null */
    OrvSet_OrvDateTime_Node* right;   /* subtree of greater elements, or null */
    OrvSet_OrvDateTime_Node* parent;  /* the node above; the sentinel for the root; null in the sentinel */
    OrvSet_OrvDateTime_Node** pPtr;   /* the link that points at this node */
    OrvSizeT height;                  /* height of the subtree rooted here */
};
/** The set (152 bytes). end is the sentinel: end.left is the root, its other links stay
 *  null. */
typedef struct OrvSet_OrvDateTime {
    OrvSet_OrvDateTime_Node end;
    OrvSizeT size;
    OrvAllocator* alloc;
} OrvSet_OrvDateTime;
typedef OrvSizeT OrvSet_OrvDateTimeSizeType;
typedef OrvSet_OrvDateTime_Node* OrvSet_OrvDateTimeIterator;
typedef const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTimeConstIterator;
typedef OrvSet_OrvDateTime_Node* OrvSet_OrvDateTimeReverseIterator;
typedef const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTimeConstReverseIterator;
typedef struct OrvPair_OrvSet_OrvDateTimeIterator__OrvBool {
    OrvSet_OrvDateTimeIterator first;
    OrvBool second;
} OrvPair_OrvSet_OrvDateTimeIterator__OrvBool;
typedef struct OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator {
    OrvSet_OrvDateTimeIterator first;
    OrvSet_OrvDateTimeIterator second;
} OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator;
typedef struct OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator {
    OrvSet_OrvDateTimeConstIterator first;
    OrvSet_OrvDateTimeConstIterator second;
} OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator;

/* --- node level: node is the root of a subtree and must not be null ---------------- */

/** The node equivalent to key, or null. */
ORV_API OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeFind(OrvSet_OrvDateTime_Node* node, const OrvDateTime* key);
ORV_API const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeFindConst(const OrvSet_OrvDateTime_Node* node,
                                                                        const OrvDateTime* key);
/** 1 when a node equivalent to key exists, else 0. */
ORV_API OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTime_NodeCount(const OrvSet_OrvDateTime_Node* node,
                                                                const OrvDateTime* key);
/** The least node not less than key, or null. */
ORV_API OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeLowerBound(OrvSet_OrvDateTime_Node* node,
                                                                   const OrvDateTime* key);
ORV_API const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeLowerBoundConst(const OrvSet_OrvDateTime_Node* node,
                                                                              const OrvDateTime* key);
/** The least node greater than key, or null. */
ORV_API OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeUpperBound(OrvSet_OrvDateTime_Node* node,
                                                                   const OrvDateTime* key);
ORV_API const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeUpperBoundConst(const OrvSet_OrvDateTime_Node* node,
                                                                              const OrvDateTime* key);
/** The node equivalent to key and its in-order successor (the sentinel after the
 *  greatest element), or two nulls. */
ORV_API OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator OrvSet_OrvDateTime_NodeEqualRange(
    OrvSet_OrvDateTime_Node* node, const OrvDateTime* key);
ORV_API OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator
OrvSet_OrvDateTime_NodeEqualRangeConst(const OrvSet_OrvDateTime_Node* node, const OrvDateTime* key);
/** The leftmost node of the subtree. From the sentinel: the least element, or the
 *  sentinel itself when the tree is empty. */
ORV_API OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMinimum(OrvSet_OrvDateTime_Node* node);
ORV_API const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMinimumConst(const OrvSet_OrvDateTime_Node* node);
/** The rightmost node of the subtree (the sentinel has no right link: it gives itself). */
ORV_API OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMaximum(OrvSet_OrvDateTime_Node* node);
ORV_API const OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeGetMaximumConst(const OrvSet_OrvDateTime_Node* node);
/** Links newNode (value constructed, links null, height 1) into the subtree at curNode
 *  and rebalances: newNode and true. A key already present: its node and false, with
 *  newNode untouched for the caller to release. Never fails. */
ORV_API OrvPair_OrvSet_OrvDateTimeIterator__OrvBool OrvSet_OrvDateTime_NodeInsert(OrvSet_OrvDateTime_Node* curNode,
                                                                                  OrvSet_OrvDateTime_Node* newNode);
/** The rebalancing climb from node after an insertion (removing false) or a removal
 *  (removing true). Does nothing on the sentinel. */
ORV_API void OrvSet_OrvDateTime_NodeBalance(OrvSet_OrvDateTime_Node* node, OrvBool removing);
/** Lifts node's right child into node's place. Heights are not changed. */
ORV_API void OrvSet_OrvDateTime_NodeRotateLeft(OrvSet_OrvDateTime_Node* node);
/** Lifts node's left child into node's place. Heights are not changed. */
ORV_API void OrvSet_OrvDateTime_NodeRotateRight(OrvSet_OrvDateTime_Node* node);
/** A deep copy of the subtree at node with the same shape and heights, nodes from alloc
 *  in pre-order; its root gets parent and pPtr (the caller stores it in the link).
 *  Null on failure, with everything it took released. */
ORV_API OrvSet_OrvDateTime_Node* OrvSet_OrvDateTime_NodeCopy(const OrvSet_OrvDateTime_Node* node,
                                                             OrvSet_OrvDateTime_Node* parent,
                                                             OrvSet_OrvDateTime_Node** pPtr, OrvAllocator* alloc);
/** Releases the subtree at node in post-order; the link to it is left alone. */
ORV_API void OrvSet_OrvDateTime_NodeDelete(OrvSet_OrvDateTime_Node* node, OrvAllocator* alloc);

/* --- the set ------------------------------------------------------------------------- */

/** Empty set on alloc. Never fails. Returns bt. */
ORV_API OrvSet_OrvDateTime* OrvSet_OrvDateTimeConstruct(OrvSet_OrvDateTime* bt, OrvAllocator* alloc);
/** A copy of s with its shape, on s's allocator. Null on failure. */
ORV_API OrvSet_OrvDateTime* OrvSet_OrvDateTimeConstructCopy(OrvSet_OrvDateTime* d, const OrvSet_OrvDateTime* s);
/** Makes d hold copies of s's elements, on d's own allocator. Null on failure, with d
 *  unchanged. Assigning a set to itself keeps its elements (in new nodes). */
ORV_API OrvSet_OrvDateTime* OrvSet_OrvDateTimeAssign(OrvSet_OrvDateTime* d, const OrvSet_OrvDateTime* s);
/** Releases every element and node. */
ORV_API void OrvSet_OrvDateTimeDestruct(OrvSet_OrvDateTime* bt);
/** Releases every element and node; the set stays usable and empty. */
ORV_API void OrvSet_OrvDateTimeClear(OrvSet_OrvDateTime* bt);
/** Exchanges the contents. Same allocator: the trees change hands and element iterators
 *  follow them; never fails. Different allocators: copies, each set keeps its
 *  allocator; false, both unchanged, when a copy fails. */
ORV_API OrvBool OrvSet_OrvDateTimeSwap(OrvSet_OrvDateTime* a, OrvSet_OrvDateTime* b);
/** Inserts a copy of *value: its node and true; the node of an equivalent element
 *  already present and false; the end position and false when memory runs out. */
ORV_API OrvPair_OrvSet_OrvDateTimeIterator__OrvBool OrvSet_OrvDateTimeInsert(OrvSet_OrvDateTime* bt,
                                                                             const OrvDateTime* value);
/** Erases the element at node; returns the position after it. */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeErase(OrvSet_OrvDateTime* bt, OrvSet_OrvDateTimeIterator node);
/** Erases [first, last); returns last. */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeEraseRange(OrvSet_OrvDateTime* bt,
                                                                OrvSet_OrvDateTimeIterator first,
                                                                OrvSet_OrvDateTimeIterator last);
/** Erases the element equivalent to key; returns the count erased, 0 or 1. */
ORV_API OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeEraseKey(OrvSet_OrvDateTime* bt, const OrvDateTime* key);
/** The element equivalent to key, or the end position. */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeFind(OrvSet_OrvDateTime* bt, const OrvDateTime* key);
ORV_API OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeFindConst(const OrvSet_OrvDateTime* bt,
                                                                    const OrvDateTime* key);
/** 1 when an element equivalent to key is present, else 0. */
ORV_API OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeCount(const OrvSet_OrvDateTime* bt, const OrvDateTime* key);
/** The first element not less than key, or the end position. */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeLowerBound(OrvSet_OrvDateTime* bt, const OrvDateTime* key);
ORV_API OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeLowerBoundConst(const OrvSet_OrvDateTime* bt,
                                                                          const OrvDateTime* key);
/** The first element greater than key, or the end position. */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeUpperBound(OrvSet_OrvDateTime* bt, const OrvDateTime* key);
ORV_API OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeUpperBoundConst(const OrvSet_OrvDateTime* bt,
                                                                          const OrvDateTime* key);
/** The element equivalent to key and the position after it; the end position twice
 *  when key is absent. */
ORV_API OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeEqualRange(
    OrvSet_OrvDateTime* bt, const OrvDateTime* key);
ORV_API OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeEqualRangeConst(
    const OrvSet_OrvDateTime* bt, const OrvDateTime* key);
/** Number of elements. */
ORV_API OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeSize(const OrvSet_OrvDateTime* bt);
/** The largest OrvSizeT, whatever the allocator. */
ORV_API OrvSet_OrvDateTimeSizeType OrvSet_OrvDateTimeMaxSize(const OrvSet_OrvDateTime* bt);
/** True when the set holds no element. */
ORV_API OrvBool OrvSet_OrvDateTimeEmpty(const OrvSet_OrvDateTime* bt);
/** The allocator the nodes come from. */
ORV_API OrvAllocator* OrvSet_OrvDateTimeGetAllocator(const OrvSet_OrvDateTime* bt);
/** The least element, or null when the set is empty. */
ORV_API OrvDateTime* OrvSet_OrvDateTimeFront(OrvSet_OrvDateTime* bt);
/** The greatest element, or null when the set is empty. */
ORV_API OrvDateTime* OrvSet_OrvDateTimeBack(OrvSet_OrvDateTime* bt);
/** The least element's position, or the end position when empty. */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeBegin(OrvSet_OrvDateTime* bt);
ORV_API OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeBeginConst(const OrvSet_OrvDateTime* bt);
/** The end position: the address of the sentinel (and of the set record). */
ORV_API OrvSet_OrvDateTimeIterator OrvSet_OrvDateTimeEnd(OrvSet_OrvDateTime* bt);
ORV_API OrvSet_OrvDateTimeConstIterator OrvSet_OrvDateTimeEndConst(const OrvSet_OrvDateTime* bt);
/** The byte size of one node, as every node allocation of the set asks for. */
ORV_API OrvSizeT OrvSet_OrvDateTimeGetNodeSize(const OrvSet_OrvDateTime* bt);

/* --- OrvSet_OrvDateTimeIterator: ascending, over modifiable elements ----------------- */

/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorConstruct(OrvSet_OrvDateTimeIterator* x);
/** No effect. */
ORV_API void OrvSet_OrvDateTimeIteratorDestruct(OrvSet_OrvDateTimeIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorConstructCopy(OrvSet_OrvDateTimeIterator* x,
                                                                            const OrvSet_OrvDateTimeIterator* y);
ORV_API OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorAssign(OrvSet_OrvDateTimeIterator* x,
                                                                     const OrvSet_OrvDateTimeIterator* y);
/** Exchanges the two node pointers. Always true. */
ORV_API OrvBool OrvSet_OrvDateTimeIteratorSwap(OrvSet_OrvDateTimeIterator* x, OrvSet_OrvDateTimeIterator* y);
/** True when both hold the same node, or both are exceptional. */
ORV_API OrvBool OrvSet_OrvDateTimeIteratorEqual(const OrvSet_OrvDateTimeIterator* x,
                                                const OrvSet_OrvDateTimeIterator* y);
/** Orders iterators by node address, not by element. */
ORV_API OrvBool OrvSet_OrvDateTimeIteratorLess(const OrvSet_OrvDateTimeIterator* x,
                                               const OrvSet_OrvDateTimeIterator* y);
/** The designated element (null for the exceptional iterator). */
ORV_API OrvDateTime* OrvSet_OrvDateTimeIteratorContentOf(OrvSet_OrvDateTimeIterator* x);
ORV_API const OrvDateTime* OrvSet_OrvDateTimeIteratorContentOfConst(const OrvSet_OrvDateTimeIterator* x);
/** Moves to the next (previous) element in ascending order; null stays null. Returns x. */
ORV_API OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorIncrement(OrvSet_OrvDateTimeIterator* x);
ORV_API OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorDecrement(OrvSet_OrvDateTimeIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvSet_OrvDateTimeIterator* OrvSet_OrvDateTimeIteratorConstructExceptional(OrvSet_OrvDateTimeIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvSet_OrvDateTimeIteratorIsExceptional(OrvSet_OrvDateTimeIterator x);

/* --- OrvSet_OrvDateTimeConstIterator: ascending, reading only ------------------------- */

/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorConstruct(OrvSet_OrvDateTimeConstIterator* x);
/** No effect. */
ORV_API void OrvSet_OrvDateTimeConstIteratorDestruct(OrvSet_OrvDateTimeConstIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorConstructCopy(
    OrvSet_OrvDateTimeConstIterator* x, const OrvSet_OrvDateTimeConstIterator* y);
ORV_API OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorAssign(
    OrvSet_OrvDateTimeConstIterator* x, const OrvSet_OrvDateTimeConstIterator* y);
/** Exchanges the two node pointers. Always true. */
ORV_API OrvBool OrvSet_OrvDateTimeConstIteratorSwap(OrvSet_OrvDateTimeConstIterator* x,
                                                    OrvSet_OrvDateTimeConstIterator* y);
/** True when both hold the same node, or both are exceptional. */
ORV_API OrvBool OrvSet_OrvDateTimeConstIteratorEqual(const OrvSet_OrvDateTimeConstIterator* x,
                                                     const OrvSet_OrvDateTimeConstIterator* y);
/** Orders iterators by node address, not by element. */
ORV_API OrvBool OrvSet_OrvDateTimeConstIteratorLess(const OrvSet_OrvDateTimeConstIterator* x,
                                                    const OrvSet_OrvDateTimeConstIterator* y);
/** The designated element (null for the exceptional iterator). */
ORV_API const OrvDateTime* OrvSet_OrvDateTimeConstIteratorContentOf(OrvSet_OrvDateTimeConstIterator* x);
ORV_API const OrvDateTime* OrvSet_OrvDateTimeConstIteratorContentOfConst(const OrvSet_OrvDateTimeConstIterator* x);
/** Moves to the next (previous) element in ascending order; null stays null. Returns x. */
ORV_API OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorIncrement(OrvSet_OrvDateTimeConstIterator* x);
ORV_API OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorDecrement(OrvSet_OrvDateTimeConstIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvSet_OrvDateTimeConstIterator* OrvSet_OrvDateTimeConstIteratorConstructExceptional(
    OrvSet_OrvDateTimeConstIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvSet_OrvDateTimeConstIteratorIsExceptional(OrvSet_OrvDateTimeConstIterator x);

/* --- OrvSet_OrvDateTimeReverseIterator: descending, over modifiable elements ----------
 * It holds the node after the element it designates. */

/** No effect. */
ORV_API void OrvSet_OrvDateTimeReverseIteratorDestruct(OrvSet_OrvDateTimeReverseIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorConstructCopy(
    OrvSet_OrvDateTimeReverseIterator* x, const OrvSet_OrvDateTimeReverseIterator* y);
ORV_API OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorAssign(
    OrvSet_OrvDateTimeReverseIterator* x, const OrvSet_OrvDateTimeReverseIterator* y);
/** Exchanges the two node pointers. Always true. */
ORV_API OrvBool OrvSet_OrvDateTimeReverseIteratorSwap(OrvSet_OrvDateTimeReverseIterator* x,
                                                      OrvSet_OrvDateTimeReverseIterator* y);
/** True when both hold the same node, or both are exceptional. */
ORV_API OrvBool OrvSet_OrvDateTimeReverseIteratorEqual(const OrvSet_OrvDateTimeReverseIterator* x,
                                                       const OrvSet_OrvDateTimeReverseIterator* y);
/** The designated element: the one before the held node (null for the exceptional
 *  iterator). The iterator does not move. */
ORV_API OrvDateTime* OrvSet_OrvDateTimeReverseIteratorContentOf(OrvSet_OrvDateTimeReverseIterator* x);
ORV_API const OrvDateTime* OrvSet_OrvDateTimeReverseIteratorContentOfConst(const OrvSet_OrvDateTimeReverseIterator* x);
/** Moves to the previous (next) element in ascending order; null stays null. Returns x. */
ORV_API OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorIncrement(
    OrvSet_OrvDateTimeReverseIterator* x);
ORV_API OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorDecrement(
    OrvSet_OrvDateTimeReverseIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvSet_OrvDateTimeReverseIterator* OrvSet_OrvDateTimeReverseIteratorConstructExceptional(
    OrvSet_OrvDateTimeReverseIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvSet_OrvDateTimeReverseIteratorIsExceptional(OrvSet_OrvDateTimeReverseIterator x);

/* --- OrvSet_OrvDateTimeConstReverseIterator: descending, reading only ------------------
 * It holds the node after the element it designates. */

/** No effect. */
ORV_API void OrvSet_OrvDateTimeConstReverseIteratorDestruct(OrvSet_OrvDateTimeConstReverseIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvSet_OrvDateTimeConstReverseIterator* OrvSet_OrvDateTimeConstReverseIteratorConstructCopy(
    OrvSet_OrvDateTimeConstReverseIterator* x, const OrvSet_OrvDateTimeConstReverseIterator* y);
ORV_API OrvSet_OrvDateTimeConstReverseIterator* OrvSet_OrvDateTimeConstReverseIteratorAssign(
    OrvSet_OrvDateTimeConstReverseIterator* x, const OrvSet_OrvDateTimeConstReverseIterator* y);
/** Exchanges the two node pointers. Always true. */
ORV_API OrvBool OrvSet_OrvDateTimeConstReverseIteratorSwap(OrvSet_OrvDateTimeConstReverseIterator* x,
                                                           OrvSet_OrvDateTimeConstReverseIterator* y);
/** True when both hold the same node, or both are exceptional. */
ORV_API OrvBool OrvSet_OrvDateTimeConstReverseIteratorEqual(const OrvSet_OrvDateTimeConstReverseIterator* x,
                                                            const OrvSet_OrvDateTimeConstReverseIterator* y);
/** The designated element: the one before the held node (null for the exceptional
 *  iterator). The iterator does not move. */
ORV_API const OrvDateTime* OrvSet_OrvDateTimeConstReverseIteratorContentOf(OrvSet_OrvDateTimeConstReverseIterator* x);
ORV_API const OrvDateTime* OrvSet_OrvDateTimeConstReverseIteratorContentOfConst(
    const OrvSet_OrvDateTimeConstReverseIterator* x);
/** Moves to the previous (next) element in ascending order; null stays null. Returns x. */
ORV_API OrvSet_OrvDateTimeConstReverseIterator* OrvSet_OrvDateTimeConstReverseIteratorIncrement(
    OrvSet_OrvDateTimeConstReverseIterator* x);
ORV_API OrvSet_OrvDateTimeConstReverseIterator* OrvSet_OrvDateTimeConstReverseIteratorDecrement(
    OrvSet_OrvDateTimeConstReverseIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvSet_OrvDateTimeConstReverseIterator* OrvSet_OrvDateTimeConstReverseIteratorConstructExceptional(
    OrvSet_OrvDateTimeConstReverseIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvSet_OrvDateTimeConstReverseIteratorIsExceptional(OrvSet_OrvDateTimeConstReverseIterator x);

ORV_EXTERN_C_END

#endif /* ORV_CALENDAR_ORVDATETIMESET_H */
