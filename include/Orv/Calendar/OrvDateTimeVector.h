/*
 * OrvDateTimeVector.h - OrvVector_OrvDateTime, a growable array of date-time values.
 * Orv/Calendar/OrvDateTime.h includes it; it also compiles on its own.
 *
 * The vector
 *  - holds copies of its values in one block of Capacity slots taken from the allocator
 *    given at construction, which it does not own; every block goes back to that
 *    allocator with the byte size it was obtained with;
 *  - creates, overwrites and ends elements only with OrvDateTimeConstructCopy,
 *    OrvDateTimeAssign and OrvDateTimeDestruct, never by copying bytes, so every
 *    element holds its own zone reference; moving to a new block copies every element
 *    there (the new ones included) before the old ones are destructed; several
 *    elements are always destructed last first;
 *  - grows as follows:
 *        PushBack, Insert on a full vector       2 x Size (2 when empty)
 *        InsertN, InsertRange of n elements      max(2 x Capacity, Size + n); 2 x n without storage
 *        Reserve(c)                              exactly c
 *        Resize(n) above Size                    Reserve(Size + n)
 *        Assign(x, y) above Capacity(x)          exactly Size(y)
 *        ConstructN, ConstructRange, ConstructCopy   exactly the count
 *    and never shrinks, except in a Swap between different allocators and in an
 *    Assign whose allocation failed.
 *
 * Failure. Copying a date-time value never fails, so an operation fails only when the
 * allocator gives a null block or the request passes MaxSize. It then gives false,
 * null or the exceptional (null) iterator and leaves the vector as it was; the one
 * exception is Assign, which has already released x's elements and block and leaves x
 * empty and without storage. A constructor that returns null holds nothing: do not
 * destruct it.
 *
 * Choices this library makes where a caller might wonder:
 *  - A value or range passed to PushBack, Resize, Insert, InsertN or InsertRange may
 *    lie inside the same vector: it is read where it is, or where it has moved to,
 *    so the result is as if it had been copied out first.
 *  - No vector holds more than MaxSize elements, 44739242 (the byte size of a block
 *    stays below 2^32). A request beyond it fails as an allocation failure does,
 *    without calling the allocator; growth that would pass it is capped at MaxSize.
 *  - Positions, indexes and counts are not checked otherwise: At, Front, Back and
 *    PopBack on an empty vector, Erase at End and iterators from another vector are
 *    the caller's to avoid.
 *
 * Iterators are element pointers. A reverse iterator holds the slot after the element
 * it designates: RBegin holds End, REnd holds Begin. Steps count elements; a reverse
 * kind runs every operation the other way (Increment moves its held slot down, Less
 * and Subtract swap their operands, ContentOf and At look one slot lower). The null
 * pointer is the exceptional iterator of every kind; Begin and End of a vector without
 * storage are null too. A null iterator stays null: moved, offset or read through, it
 * gives null (Subtract of two null iterators is 0). Moving a real position outside its
 * vector, or reading there, is the caller's error. Reallocation, an Assign that
 * obtains a block, a Swap between different allocators and Destruct invalidate every
 * position.
 *
 *     OrvVector_OrvDateTime v;
 *     OrvVector_OrvDateTimeConstructDefault(&v, OrvAllocatorGetDefault());
 *     if (!OrvVector_OrvDateTimePushBack(&v, &d)) { ... out of memory, v unchanged ... }
 *     for (OrvVector_OrvDateTimeIterator it = OrvVector_OrvDateTimeBegin(&v);
 *          it != OrvVector_OrvDateTimeEnd(&v); ++it) { ... }
 *     OrvVector_OrvDateTimeDestruct(&v);
 */
#ifndef ORV_CALENDAR_ORVDATETIMEVECTOR_H
#define ORV_CALENDAR_ORVDATETIMEVECTOR_H

#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Utils/OrvAllocator.h"
#include "Orv/Utils/SysDep/OrvBaseTypes.h"

ORV_EXTERN_C_BEGIN

/** Growable array of date-time values (32 bytes). begin, end and endBuf are null while
 *  it has no storage. */
typedef struct OrvVector_OrvDateTime {
    OrvAllocator* allocator; /* supplies the block; never changes after construction */
    OrvDateTime* begin;      /* first slot */
    OrvDateTime* end;        /* one past the last element */
    OrvDateTime* endBuf;     /* one past the last slot */
} OrvVector_OrvDateTime;
typedef OrvSizeT OrvVector_OrvDateTimeSizeType;
typedef OrvDistanceT OrvVector_OrvDateTimeDifferenceType;
typedef OrvDateTime* OrvVector_OrvDateTimeIterator;
typedef const OrvDateTime* OrvVector_OrvDateTimeConstIterator;
typedef OrvDateTime* OrvVector_OrvDateTimeReverseIterator;
typedef const OrvDateTime* OrvVector_OrvDateTimeConstReverseIterator;
typedef OrvDistanceT OrvVector_OrvDateTimeIteratorDifferenceType;
typedef OrvDistanceT OrvVector_OrvDateTimeConstIteratorDifferenceType;
typedef OrvDistanceT OrvVector_OrvDateTimeReverseIteratorDifferenceType;
typedef OrvDistanceT OrvVector_OrvDateTimeConstReverseIteratorDifferenceType;

/* --- construction, copy and release --------------------------------------------- */

/** Empty vector without storage on allocator a. Never fails. Returns x. */
ORV_API OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructDefault(OrvVector_OrvDateTime* x, OrvAllocator* a);
/** n copies of *t in a block of exactly n slots (none when n is 0). Null on failure. */
ORV_API OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructN(OrvVector_OrvDateTime* x,
                                                               OrvVector_OrvDateTimeSizeType n, const OrvDateTime* t,
                                                               OrvAllocator* a);
/** Copies of [first, last) in a block of exactly that many slots. Null on failure. */
ORV_API OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructRange(OrvVector_OrvDateTime* x,
                                                                   OrvVector_OrvDateTimeConstIterator first,
                                                                   OrvVector_OrvDateTimeConstIterator last,
                                                                   OrvAllocator* a);
/** Copies of y's elements in exactly Size(y) slots, on y's allocator. Null on failure. */
ORV_API OrvVector_OrvDateTime* OrvVector_OrvDateTimeConstructCopy(OrvVector_OrvDateTime* x,
                                                                  const OrvVector_OrvDateTime* y);
/** Destructs every element, last first, and returns the block. */
ORV_API void OrvVector_OrvDateTimeDestruct(OrvVector_OrvDateTime* x);
/** Makes x hold copies of y's elements; x keeps its allocator. Null on failure, with x
 *  left empty and without storage. Assigning x to itself changes nothing. */
ORV_API OrvVector_OrvDateTime* OrvVector_OrvDateTimeAssign(OrvVector_OrvDateTime* x, const OrvVector_OrvDateTime* y);
/** Exchanges the contents. Same allocator: the records are exchanged, no element is
 *  touched. Different allocators: elements are copied and each keeps its allocator;
 *  false, both unchanged, when the new block cannot be obtained. */
ORV_API OrvBool OrvVector_OrvDateTimeSwap(OrvVector_OrvDateTime* x, OrvVector_OrvDateTime* y);

/* --- size and storage -------------------------------------------------------------- */

/** Number of elements. */
ORV_API OrvVector_OrvDateTimeSizeType OrvVector_OrvDateTimeSize(const OrvVector_OrvDateTime* x);
/** Number of slots in the block. */
ORV_API OrvVector_OrvDateTimeSizeType OrvVector_OrvDateTimeCapacity(const OrvVector_OrvDateTime* x);
/** True when the vector holds no element. */
ORV_API OrvBool OrvVector_OrvDateTimeEmpty(const OrvVector_OrvDateTime* x);
/** The largest element count: 2^32 - 1 bytes' worth, 44739242. */
ORV_API OrvVector_OrvDateTimeSizeType OrvVector_OrvDateTimeMaxSize(const OrvVector_OrvDateTime* x);
/** The allocator given at construction. */
ORV_API OrvAllocator* OrvVector_OrvDateTimeGetAllocator(const OrvVector_OrvDateTime* x);
/** Makes Capacity at least capacity (exactly capacity when it grows). False, unchanged,
 *  on failure. */
ORV_API OrvBool OrvVector_OrvDateTimeReserve(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType capacity);
/** Makes Size n: destructs the surplus, last first, or appends copies of *t after
 *  Reserve(Size + n). False, unchanged, on failure. */
ORV_API OrvBool OrvVector_OrvDateTimeResize(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType n,
                                            const OrvDateTime* t);
/** Destructs every element, last first; keeps the block. */
ORV_API void OrvVector_OrvDateTimeClear(OrvVector_OrvDateTime* x);

/* --- elements -------------------------------------------------------------------------- */

/** The element at index n (not checked). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeAt(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeSizeType n);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeAtConst(const OrvVector_OrvDateTime* x,
                                                        OrvVector_OrvDateTimeSizeType n);
/** The first element (the vector must not be empty). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeFront(OrvVector_OrvDateTime* x);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeFrontConst(const OrvVector_OrvDateTime* x);
/** The last element (the vector must not be empty). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeBack(OrvVector_OrvDateTime* x);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeBackConst(const OrvVector_OrvDateTime* x);

/* --- positions ------------------------------------------------------------------------- */

/** Begin holds begin, the first element (End when empty). Null without storage. */
ORV_API OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeBegin(OrvVector_OrvDateTime* x);
ORV_API OrvVector_OrvDateTimeConstIterator OrvVector_OrvDateTimeBeginConst(const OrvVector_OrvDateTime* x);
/** End holds end, one past the last element. Null without storage. */
ORV_API OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeEnd(OrvVector_OrvDateTime* x);
ORV_API OrvVector_OrvDateTimeConstIterator OrvVector_OrvDateTimeEndConst(const OrvVector_OrvDateTime* x);
/** RBegin holds end, designating the last element. Null without storage. */
ORV_API OrvVector_OrvDateTimeReverseIterator OrvVector_OrvDateTimeRBegin(OrvVector_OrvDateTime* x);
ORV_API OrvVector_OrvDateTimeConstReverseIterator OrvVector_OrvDateTimeRBeginConst(const OrvVector_OrvDateTime* x);
/** REnd holds begin, one before the first element in reverse order. Null without storage. */
ORV_API OrvVector_OrvDateTimeReverseIterator OrvVector_OrvDateTimeREnd(OrvVector_OrvDateTime* x);
ORV_API OrvVector_OrvDateTimeConstReverseIterator OrvVector_OrvDateTimeREndConst(const OrvVector_OrvDateTime* x);

/* --- changing the contents ------------------------------------------------------------- */

/** Appends a copy of *t. False, unchanged, on failure. */
ORV_API OrvBool OrvVector_OrvDateTimePushBack(OrvVector_OrvDateTime* x, const OrvDateTime* t);
/** Destructs the last element (the vector must not be empty). */
ORV_API void OrvVector_OrvDateTimePopBack(OrvVector_OrvDateTime* x);
/** Inserts a copy of *t before pos (Begin..End). Returns the new element's position;
 *  null, unchanged, on failure. */
ORV_API OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeInsert(OrvVector_OrvDateTime* x,
                                                                  OrvVector_OrvDateTimeIterator pos,
                                                                  const OrvDateTime* t);
/** Inserts n copies of *t before pos. False, unchanged, on failure. */
ORV_API OrvBool OrvVector_OrvDateTimeInsertN(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeIterator pos,
                                             OrvVector_OrvDateTimeSizeType n, const OrvDateTime* t);
/** Inserts copies of [first, last) before pos. False, unchanged, on failure. */
ORV_API OrvBool OrvVector_OrvDateTimeInsertRange(OrvVector_OrvDateTime* x, OrvVector_OrvDateTimeIterator pos,
                                                 OrvVector_OrvDateTimeConstIterator first,
                                                 OrvVector_OrvDateTimeConstIterator last);
/** Removes the element at pos; returns pos, now holding the next element or End. */
ORV_API OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeErase(OrvVector_OrvDateTime* x,
                                                                 OrvVector_OrvDateTimeIterator pos);
/** Removes [first, last); returns first. */
ORV_API OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeEraseRange(OrvVector_OrvDateTime* x,
                                                                      OrvVector_OrvDateTimeIterator first,
                                                                      OrvVector_OrvDateTimeIterator last);
/** Diagnostics hook; has no effect. */
ORV_API void OrvVector_OrvDateTimeDump(const OrvVector_OrvDateTime* x, const char* name, unsigned int tabStop);

/* --- OrvVector_OrvDateTimeIterator: forward positions over modifiable elements ---------- */

/** No effect. */
ORV_API void OrvVector_OrvDateTimeIteratorDestruct(OrvVector_OrvDateTimeIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorConstructCopy(
    OrvVector_OrvDateTimeIterator* x, const OrvVector_OrvDateTimeIterator* y);
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorAssign(OrvVector_OrvDateTimeIterator* x,
                                                                           const OrvVector_OrvDateTimeIterator* y);
/** Exchanges the two positions. Always true. */
ORV_API OrvBool OrvVector_OrvDateTimeIteratorSwap(OrvVector_OrvDateTimeIterator* x, OrvVector_OrvDateTimeIterator* y);
/** True when both hold the same slot (or both are exceptional). */
ORV_API OrvBool OrvVector_OrvDateTimeIteratorEqual(const OrvVector_OrvDateTimeIterator* x,
                                                   const OrvVector_OrvDateTimeIterator* y);
/** The designated element: the held slot (null for the exceptional iterator). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeIteratorContentOf(OrvVector_OrvDateTimeIterator* x);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeIteratorContentOfConst(const OrvVector_OrvDateTimeIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorConstructExceptional(
    OrvVector_OrvDateTimeIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvVector_OrvDateTimeIteratorIsExceptional(OrvVector_OrvDateTimeIterator x);
/** One slot up (down); null stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorIncrement(OrvVector_OrvDateTimeIterator* x);
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorDecrement(OrvVector_OrvDateTimeIterator* x);
/** True when x holds a lower address than y. */
ORV_API OrvBool OrvVector_OrvDateTimeIteratorLess(const OrvVector_OrvDateTimeIterator* x,
                                                  const OrvVector_OrvDateTimeIterator* y);
/** The element n slots above the held one (null for the exceptional iterator). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeIteratorAt(OrvVector_OrvDateTimeIterator* x,
                                                     OrvVector_OrvDateTimeIteratorDifferenceType n);
/** n slots up (down); n may be negative; null stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorIncrementN(
    OrvVector_OrvDateTimeIterator* x, OrvVector_OrvDateTimeIteratorDifferenceType n);
ORV_API OrvVector_OrvDateTimeIterator* OrvVector_OrvDateTimeIteratorDecrementN(
    OrvVector_OrvDateTimeIterator* x, OrvVector_OrvDateTimeIteratorDifferenceType n);
/** A new iterator n slots above x (null for null); x does not move. */
ORV_API OrvVector_OrvDateTimeIterator OrvVector_OrvDateTimeIteratorAdd(OrvVector_OrvDateTimeIterator* x,
                                                                       OrvVector_OrvDateTimeIteratorDifferenceType n);
/** Steps from y to x: x - y in elements. */
ORV_API OrvVector_OrvDateTimeIteratorDifferenceType OrvVector_OrvDateTimeIteratorSubtract(
    OrvVector_OrvDateTimeIterator* x, OrvVector_OrvDateTimeIterator* y);

/* --- OrvVector_OrvDateTimeConstIterator: forward positions that only read --------------- */

/** No effect. */
ORV_API void OrvVector_OrvDateTimeConstIteratorDestruct(OrvVector_OrvDateTimeConstIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorConstructCopy(
    OrvVector_OrvDateTimeConstIterator* x, const OrvVector_OrvDateTimeConstIterator* y);
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorAssign(
    OrvVector_OrvDateTimeConstIterator* x, const OrvVector_OrvDateTimeConstIterator* y);
/** Exchanges the two positions. Always true. */
ORV_API OrvBool OrvVector_OrvDateTimeConstIteratorSwap(OrvVector_OrvDateTimeConstIterator* x,
                                                       OrvVector_OrvDateTimeConstIterator* y);
/** True when both hold the same slot (or both are exceptional). */
ORV_API OrvBool OrvVector_OrvDateTimeConstIteratorEqual(const OrvVector_OrvDateTimeConstIterator* x,
                                                        const OrvVector_OrvDateTimeConstIterator* y);
/** The designated element: the held slot (null for the exceptional iterator). */
ORV_API const OrvDateTime* OrvVector_OrvDateTimeConstIteratorContentOf(OrvVector_OrvDateTimeConstIterator* x);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeConstIteratorContentOfConst(
    const OrvVector_OrvDateTimeConstIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorConstructExceptional(
    OrvVector_OrvDateTimeConstIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvVector_OrvDateTimeConstIteratorIsExceptional(OrvVector_OrvDateTimeConstIterator x);
/** One slot up (down); null stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorIncrement(
    OrvVector_OrvDateTimeConstIterator* x);
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorDecrement(
    OrvVector_OrvDateTimeConstIterator* x);
/** True when x holds a lower address than y. */
ORV_API OrvBool OrvVector_OrvDateTimeConstIteratorLess(const OrvVector_OrvDateTimeConstIterator* x,
                                                       const OrvVector_OrvDateTimeConstIterator* y);
/** The element n slots above the held one (null for the exceptional iterator). */
ORV_API const OrvDateTime* OrvVector_OrvDateTimeConstIteratorAt(OrvVector_OrvDateTimeConstIterator* x,
                                                                OrvVector_OrvDateTimeConstIteratorDifferenceType n);
/** n slots up (down); n may be negative; null stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorIncrementN(
    OrvVector_OrvDateTimeConstIterator* x, OrvVector_OrvDateTimeConstIteratorDifferenceType n);
ORV_API OrvVector_OrvDateTimeConstIterator* OrvVector_OrvDateTimeConstIteratorDecrementN(
    OrvVector_OrvDateTimeConstIterator* x, OrvVector_OrvDateTimeConstIteratorDifferenceType n);
/** A new iterator n slots above x (null for null); x does not move. */
ORV_API OrvVector_OrvDateTimeConstIterator OrvVector_OrvDateTimeConstIteratorAdd(
    OrvVector_OrvDateTimeConstIterator* x, OrvVector_OrvDateTimeConstIteratorDifferenceType n);
/** Steps from y to x: x - y in elements. */
ORV_API OrvVector_OrvDateTimeConstIteratorDifferenceType OrvVector_OrvDateTimeConstIteratorSubtract(
    OrvVector_OrvDateTimeConstIterator* x, OrvVector_OrvDateTimeConstIterator* y);

/* --- OrvVector_OrvDateTimeReverseIterator: last to first, over modifiable elements ------
 * It holds the slot after the element it designates and steps towards Begin. */

/** No effect. */
ORV_API void OrvVector_OrvDateTimeReverseIteratorDestruct(OrvVector_OrvDateTimeReverseIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorConstructCopy(
    OrvVector_OrvDateTimeReverseIterator* x, const OrvVector_OrvDateTimeReverseIterator* y);
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorAssign(
    OrvVector_OrvDateTimeReverseIterator* x, const OrvVector_OrvDateTimeReverseIterator* y);
/** Exchanges the two positions. Always true. */
ORV_API OrvBool OrvVector_OrvDateTimeReverseIteratorSwap(OrvVector_OrvDateTimeReverseIterator* x,
                                                         OrvVector_OrvDateTimeReverseIterator* y);
/** True when both hold the same slot (or both are exceptional). */
ORV_API OrvBool OrvVector_OrvDateTimeReverseIteratorEqual(const OrvVector_OrvDateTimeReverseIterator* x,
                                                          const OrvVector_OrvDateTimeReverseIterator* y);
/** The designated element: the slot below the held one (null for the exceptional one). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeReverseIteratorContentOf(OrvVector_OrvDateTimeReverseIterator* x);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeReverseIteratorContentOfConst(
    const OrvVector_OrvDateTimeReverseIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorConstructExceptional(
    OrvVector_OrvDateTimeReverseIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvVector_OrvDateTimeReverseIteratorIsExceptional(OrvVector_OrvDateTimeReverseIterator x);
/** One element on in reverse order, the held slot one down (Decrement: one up); null
 *  stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorIncrement(
    OrvVector_OrvDateTimeReverseIterator* x);
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorDecrement(
    OrvVector_OrvDateTimeReverseIterator* x);
/** True when x comes before y in reverse order: x holds the higher address. */
ORV_API OrvBool OrvVector_OrvDateTimeReverseIteratorLess(const OrvVector_OrvDateTimeReverseIterator* x,
                                                         const OrvVector_OrvDateTimeReverseIterator* y);
/** The element n steps on in reverse order from the designated one: held slot - n - 1
 *  (null for the exceptional iterator). */
ORV_API OrvDateTime* OrvVector_OrvDateTimeReverseIteratorAt(OrvVector_OrvDateTimeReverseIterator* x,
                                                            OrvVector_OrvDateTimeReverseIteratorDifferenceType n);
/** n steps on (back) in reverse order, the held slot n down (up); n may be negative;
 *  null stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorIncrementN(
    OrvVector_OrvDateTimeReverseIterator* x, OrvVector_OrvDateTimeReverseIteratorDifferenceType n);
ORV_API OrvVector_OrvDateTimeReverseIterator* OrvVector_OrvDateTimeReverseIteratorDecrementN(
    OrvVector_OrvDateTimeReverseIterator* x, OrvVector_OrvDateTimeReverseIteratorDifferenceType n);
/** A new iterator n steps on in reverse order (null for null); x does not move. */
ORV_API OrvVector_OrvDateTimeReverseIterator OrvVector_OrvDateTimeReverseIteratorAdd(
    OrvVector_OrvDateTimeReverseIterator* x, OrvVector_OrvDateTimeReverseIteratorDifferenceType n);
/** Steps from y to x in reverse order: y - x in elements. */
ORV_API OrvVector_OrvDateTimeReverseIteratorDifferenceType OrvVector_OrvDateTimeReverseIteratorSubtract(
    OrvVector_OrvDateTimeReverseIterator* x, OrvVector_OrvDateTimeReverseIterator* y);

/* --- OrvVector_OrvDateTimeConstReverseIterator: last to first, reading only -------------
 * It holds the slot after the element it designates and steps towards Begin. */

/** No effect. */
ORV_API void OrvVector_OrvDateTimeConstReverseIteratorDestruct(OrvVector_OrvDateTimeConstReverseIterator* x);
/** *x becomes *y. Returns x. */
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorConstructCopy(
    OrvVector_OrvDateTimeConstReverseIterator* x, const OrvVector_OrvDateTimeConstReverseIterator* y);
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorAssign(
    OrvVector_OrvDateTimeConstReverseIterator* x, const OrvVector_OrvDateTimeConstReverseIterator* y);
/** Exchanges the two positions. Always true. */
ORV_API OrvBool OrvVector_OrvDateTimeConstReverseIteratorSwap(OrvVector_OrvDateTimeConstReverseIterator* x,
                                                              OrvVector_OrvDateTimeConstReverseIterator* y);
/** True when both hold the same slot (or both are exceptional). */
ORV_API OrvBool OrvVector_OrvDateTimeConstReverseIteratorEqual(const OrvVector_OrvDateTimeConstReverseIterator* x,
                                                               const OrvVector_OrvDateTimeConstReverseIterator* y);
/** The designated element: the slot below the held one (null for the exceptional one). */
ORV_API const OrvDateTime* OrvVector_OrvDateTimeConstReverseIteratorContentOf(
    OrvVector_OrvDateTimeConstReverseIterator* x);
ORV_API const OrvDateTime* OrvVector_OrvDateTimeConstReverseIteratorContentOfConst(
    const OrvVector_OrvDateTimeConstReverseIterator* x);
/** Stores the exceptional iterator (null). Returns x. */
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorConstructExceptional(
    OrvVector_OrvDateTimeConstReverseIterator* x);
/** True for the exceptional iterator. */
ORV_API OrvBool OrvVector_OrvDateTimeConstReverseIteratorIsExceptional(OrvVector_OrvDateTimeConstReverseIterator x);
/** One element on in reverse order, the held slot one down (Decrement: one up); null
 *  stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorIncrement(
    OrvVector_OrvDateTimeConstReverseIterator* x);
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorDecrement(
    OrvVector_OrvDateTimeConstReverseIterator* x);
/** True when x comes before y in reverse order: x holds the higher address. */
ORV_API OrvBool OrvVector_OrvDateTimeConstReverseIteratorLess(const OrvVector_OrvDateTimeConstReverseIterator* x,
                                                              const OrvVector_OrvDateTimeConstReverseIterator* y);
/** The element n steps on in reverse order from the designated one: held slot - n - 1
 *  (null for the exceptional iterator). */
ORV_API const OrvDateTime* OrvVector_OrvDateTimeConstReverseIteratorAt(
    OrvVector_OrvDateTimeConstReverseIterator* x, OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n);
/** n steps on (back) in reverse order, the held slot n down (up); n may be negative;
 *  null stays null. Returns x. */
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorIncrementN(
    OrvVector_OrvDateTimeConstReverseIterator* x, OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n);
ORV_API OrvVector_OrvDateTimeConstReverseIterator* OrvVector_OrvDateTimeConstReverseIteratorDecrementN(
    OrvVector_OrvDateTimeConstReverseIterator* x, OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n);
/** A new iterator n steps on in reverse order (null for null); x does not move. */
ORV_API OrvVector_OrvDateTimeConstReverseIterator OrvVector_OrvDateTimeConstReverseIteratorAdd(
    OrvVector_OrvDateTimeConstReverseIterator* x, OrvVector_OrvDateTimeConstReverseIteratorDifferenceType n);
/** Steps from y to x in reverse order: y - x in elements. */
ORV_API OrvVector_OrvDateTimeConstReverseIteratorDifferenceType OrvVector_OrvDateTimeConstReverseIteratorSubtract(
    OrvVector_OrvDateTimeConstReverseIterator* x, OrvVector_OrvDateTimeConstReverseIterator* y);

ORV_EXTERN_C_END

#endif /* ORV_CALENDAR_ORVDATETIMEVECTOR_H */
