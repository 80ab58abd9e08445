/*
 * OrvVectorDecl.h - declares the growable array OrvVector_<T> of an element record T.
 *
 * ORV_DECLARE_VECTOR(T) declares the record, its types and every operation; the
 * library defines them once per element type (OrvDateTime.h declares
 * OrvVector_OrvDateTime). Use it inside ORV_EXTERN_C_BEGIN / ORV_EXTERN_C_END.
 *
 * The vector
 *  - holds copies of its elements in one block of Capacity slots taken from the
 *    allocator given at construction, which it does not own; every block goes back
 *    to that allocator with the byte size it was obtained with;
 *  - creates, overwrites and ends elements only with T's copy-construct, assign and
 *    destruct operations, never by copying bytes; moving to a new block copies every
 *    element there before the old ones are destructed; several elements are always
 *    destructed last first;
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
 * Failure. A null block from the allocator leaves the vector as it was and gives
 * false, null or the exceptional (null) iterator; the one exception is Assign, which
 * has already released x's elements and block and leaves x empty and without
 * storage. A constructor that returns null holds nothing: do not destruct it.
 *
 * Choices this library makes where a caller might wonder:
 *  - A value or range passed to PushBack, Resize, Insert, InsertN or InsertRange may
 *    lie inside the same vector: it is read where it is, or where it has moved to,
 *    so the result is as if it had been copied out first.
 *  - No vector holds more than MaxSize elements (the byte size of a block stays
 *    below 2^32). A request beyond it fails as an allocation failure does, without
 *    calling the allocator; growth that would pass it is capped at MaxSize.
 *  - Positions, indexes and counts are not checked otherwise: At, Front, Back and
 *    PopBack on an empty vector, Erase at End and iterators from another vector are
 *    the caller's to avoid.
 *
 * Iterators are element pointers. A reverse iterator holds the slot after the
 * element it designates: RBegin holds End, REnd holds Begin. The null pointer is the
 * exceptional iterator of every kind; Begin and End of a vector without storage are
 * null too. Reallocation, an Assign that obtains a block, a Swap between different
 * allocators and Destruct invalidate every position.
 *
 *     OrvVector_OrvDateTime v;
 *     OrvVector_OrvDateTimeConstructDefault(&v, OrvAllocatorGetDefault());
 *     if (!OrvVector_OrvDateTimePushBack(&v, &d)) { ... out of memory, v unchanged ... }
 *     for (OrvVector_OrvDateTimeIterator it = OrvVector_OrvDateTimeBegin(&v);
 *          it != OrvVector_OrvDateTimeEnd(&v); ++it) { ... }
 *     OrvVector_OrvDateTimeDestruct(&v);
 */
#ifndef ORV_UTILS_ORVVECTORDECL_H
#define ORV_UTILS_ORVVECTORDECL_H

#include "Orv/Utils/OrvAllocator.h"
#include "Orv/Utils/SysDep/OrvBaseTypes.h"

/* clang-format off */
#define ORV_DECLARE_VECTOR(T) \
    /** Growable array of T. begin, end and endBuf are null while it has no storage. */ \
    typedef struct OrvVector_##T { \
        OrvAllocator* allocator; /* supplies the block; never changes after construction */ \
        T* begin;                /* first slot */ \
        T* end;                  /* one past the last element */ \
        T* endBuf;               /* one past the last slot */ \
    } OrvVector_##T; \
    typedef OrvSizeT OrvVector_##T##SizeType; \
    typedef OrvDistanceT OrvVector_##T##DifferenceType; \
    typedef T* OrvVector_##T##Iterator; \
    typedef const T* OrvVector_##T##ConstIterator; \
    typedef T* OrvVector_##T##ReverseIterator; \
    typedef const T* OrvVector_##T##ConstReverseIterator; \
    typedef OrvDistanceT OrvVector_##T##IteratorDifferenceType; \
    typedef OrvDistanceT OrvVector_##T##ConstIteratorDifferenceType; \
    typedef OrvDistanceT OrvVector_##T##ReverseIteratorDifferenceType; \
    typedef OrvDistanceT OrvVector_##T##ConstReverseIteratorDifferenceType; \
    \
    /** Empty vector without storage on allocator a. Never fails. Returns x. */ \
    ORV_API OrvVector_##T* OrvVector_##T##ConstructDefault(OrvVector_##T* x, OrvAllocator* a); \
    /** n copies of *t in a block of exactly n slots (none when n is 0). Null on failure. */ \
    ORV_API OrvVector_##T* OrvVector_##T##ConstructN(OrvVector_##T* x, OrvVector_##T##SizeType n, const T* t, \
                                                     OrvAllocator* a); \
    /** Copies of [first, last) in a block of exactly that many slots. Null on failure. */ \
    ORV_API OrvVector_##T* OrvVector_##T##ConstructRange(OrvVector_##T* x, OrvVector_##T##ConstIterator first, \
                                                         OrvVector_##T##ConstIterator last, OrvAllocator* a); \
    /** Copies of y's elements in exactly Size(y) slots, on y's allocator. Null on failure. */ \
    ORV_API OrvVector_##T* OrvVector_##T##ConstructCopy(OrvVector_##T* x, const OrvVector_##T* y); \
    /** Destructs every element, last first, and returns the block. */ \
    ORV_API void OrvVector_##T##Destruct(OrvVector_##T* x); \
    /** Makes x hold copies of y's elements; x keeps its allocator. Null on failure, with \
     *  x left empty and without storage. Assigning x to itself changes nothing. */ \
    ORV_API OrvVector_##T* OrvVector_##T##Assign(OrvVector_##T* x, const OrvVector_##T* y); \
    /** Exchanges the contents. Same allocator: the records are exchanged, no element is \
     *  touched. Different allocators: elements are copied and each keeps its allocator; \
     *  false, both unchanged, when the new block cannot be obtained. */ \
    ORV_API OrvBool OrvVector_##T##Swap(OrvVector_##T* x, OrvVector_##T* y); \
    \
    /** Number of elements. */ \
    ORV_API OrvVector_##T##SizeType OrvVector_##T##Size(const OrvVector_##T* x); \
    /** Number of slots in the block. */ \
    ORV_API OrvVector_##T##SizeType OrvVector_##T##Capacity(const OrvVector_##T* x); \
    /** True when the vector holds no element. */ \
    ORV_API OrvBool OrvVector_##T##Empty(const OrvVector_##T* x); \
    /** The largest element count: 2^32 - 1 bytes' worth (44739242 for OrvDateTime). */ \
    ORV_API OrvVector_##T##SizeType OrvVector_##T##MaxSize(const OrvVector_##T* x); \
    /** The allocator given at construction. */ \
    ORV_API OrvAllocator* OrvVector_##T##GetAllocator(const OrvVector_##T* x); \
    /** Makes Capacity at least capacity (exactly capacity when it grows). False, \
     *  unchanged, on failure. */ \
    ORV_API OrvBool OrvVector_##T##Reserve(OrvVector_##T* x, OrvVector_##T##SizeType capacity); \
    /** Makes Size n: destructs the surplus, last first, or appends copies of *t after \
     *  Reserve(Size + n). False, unchanged, on failure. */ \
    ORV_API OrvBool OrvVector_##T##Resize(OrvVector_##T* x, OrvVector_##T##SizeType n, const T* t); \
    /** Destructs every element, last first; keeps the block. */ \
    ORV_API void OrvVector_##T##Clear(OrvVector_##T* x); \
    \
    /** The element at index n (not checked). */ \
    ORV_API T* OrvVector_##T##At(OrvVector_##T* x, OrvVector_##T##SizeType n); \
    ORV_API const T* OrvVector_##T##AtConst(const OrvVector_##T* x, OrvVector_##T##SizeType n); \
    /** The first element (the vector must not be empty). */ \
    ORV_API T* OrvVector_##T##Front(OrvVector_##T* x); \
    ORV_API const T* OrvVector_##T##FrontConst(const OrvVector_##T* x); \
    /** The last element (the vector must not be empty). */ \
    ORV_API T* OrvVector_##T##Back(OrvVector_##T* x); \
    ORV_API const T* OrvVector_##T##BackConst(const OrvVector_##T* x); \
    \
    /** Positions: Begin and End hold begin and end; RBegin holds end (designating the \
     *  last element) and REnd holds begin. All null for a vector without storage. */ \
    ORV_API OrvVector_##T##Iterator OrvVector_##T##Begin(OrvVector_##T* x); \
    ORV_API OrvVector_##T##ConstIterator OrvVector_##T##BeginConst(const OrvVector_##T* x); \
    ORV_API OrvVector_##T##Iterator OrvVector_##T##End(OrvVector_##T* x); \
    ORV_API OrvVector_##T##ConstIterator OrvVector_##T##EndConst(const OrvVector_##T* x); \
    ORV_API OrvVector_##T##ReverseIterator OrvVector_##T##RBegin(OrvVector_##T* x); \
    ORV_API OrvVector_##T##ConstReverseIterator OrvVector_##T##RBeginConst(const OrvVector_##T* x); \
    ORV_API OrvVector_##T##ReverseIterator OrvVector_##T##REnd(OrvVector_##T* x); \
    ORV_API OrvVector_##T##ConstReverseIterator OrvVector_##T##REndConst(const OrvVector_##T* x); \
    \
    /** Appends a copy of *t. False, unchanged, on failure. */ \
    ORV_API OrvBool OrvVector_##T##PushBack(OrvVector_##T* x, const T* t); \
    /** Destructs the last element (the vector must not be empty). */ \
    ORV_API void OrvVector_##T##PopBack(OrvVector_##T* x); \
    /** Inserts a copy of *t before pos (Begin..End). Returns the new element's position; \
     *  null, unchanged, on failure. */ \
    ORV_API OrvVector_##T##Iterator OrvVector_##T##Insert(OrvVector_##T* x, OrvVector_##T##Iterator pos, \
                                                          const T* t); \
    /** Inserts n copies of *t before pos. False, unchanged, on failure. */ \
    ORV_API OrvBool OrvVector_##T##InsertN(OrvVector_##T* x, OrvVector_##T##Iterator pos, \
                                           OrvVector_##T##SizeType n, const T* t); \
    /** Inserts copies of [first, last) before pos. False, unchanged, on failure. */ \
    ORV_API OrvBool OrvVector_##T##InsertRange(OrvVector_##T* x, OrvVector_##T##Iterator pos, \
                                               OrvVector_##T##ConstIterator first, OrvVector_##T##ConstIterator last); \
    /** Removes the element at pos; returns pos, now holding the next element or End. */ \
    ORV_API OrvVector_##T##Iterator OrvVector_##T##Erase(OrvVector_##T* x, OrvVector_##T##Iterator pos); \
    /** Removes [first, last); returns first. */ \
    ORV_API OrvVector_##T##Iterator OrvVector_##T##EraseRange(OrvVector_##T* x, OrvVector_##T##Iterator first, \
                                                              OrvVector_##T##Iterator last); \
    /** Diagnostics hook; has no effect. */ \
    ORV_API void OrvVector_##T##Dump(const OrvVector_##T* x, const char* name, unsigned int tabStop); \
    \
    ORV_DECLARE_VECTOR_ITERATOR_(T, Iterator, T*) \
    ORV_DECLARE_VECTOR_ITERATOR_(T, ConstIterator, const T*) \
    ORV_DECLARE_VECTOR_ITERATOR_(T, ReverseIterator, T*) \
    ORV_DECLARE_VECTOR_ITERATOR_(T, ConstReverseIterator, const T*)

/* The operations of one iterator kind K whose element pointer is P. Steps count
 * elements; a reverse kind runs every operation the other way (Increment moves its
 * held slot down, Less and Subtract swap their operands, ContentOf and At look one
 * slot lower). Nothing is checked: moving or reading outside the vector, or through
 * the exceptional iterator, is the caller's error. */
#define ORV_DECLARE_VECTOR_ITERATOR_(T, K, P) \
    /** No effect. */ \
    ORV_API void OrvVector_##T##K##Destruct(OrvVector_##T##K* x); \
    /** *x becomes *y. Returns x. */ \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##ConstructCopy(OrvVector_##T##K* x, const OrvVector_##T##K* y); \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##Assign(OrvVector_##T##K* x, const OrvVector_##T##K* y); \
    /** Exchanges the two positions. Always true. */ \
    ORV_API OrvBool OrvVector_##T##K##Swap(OrvVector_##T##K* x, OrvVector_##T##K* y); \
    /** True when both hold the same slot (or both are exceptional). */ \
    ORV_API OrvBool OrvVector_##T##K##Equal(const OrvVector_##T##K* x, const OrvVector_##T##K* y); \
    /** The designated element. */ \
    ORV_API P OrvVector_##T##K##ContentOf(OrvVector_##T##K* x); \
    ORV_API const T* OrvVector_##T##K##ContentOfConst(const OrvVector_##T##K* x); \
    /** Stores the exceptional iterator (null). Returns x. */ \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##ConstructExceptional(OrvVector_##T##K* x); \
    /** True for the exceptional iterator. */ \
    ORV_API OrvBool OrvVector_##T##K##IsExceptional(OrvVector_##T##K x); \
    /** One step forwards (backwards). Returns x. */ \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##Increment(OrvVector_##T##K* x); \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##Decrement(OrvVector_##T##K* x); \
    /** True when x comes before y in the iteration order (by address, not by value). */ \
    ORV_API OrvBool OrvVector_##T##K##Less(const OrvVector_##T##K* x, const OrvVector_##T##K* y); \
    /** The element n steps on from the designated one. */ \
    ORV_API P OrvVector_##T##K##At(OrvVector_##T##K* x, OrvVector_##T##K##DifferenceType n); \
    /** n steps forwards (backwards); n may be negative. Returns x. */ \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##IncrementN(OrvVector_##T##K* x, OrvVector_##T##K##DifferenceType n); \
    ORV_API OrvVector_##T##K* OrvVector_##T##K##DecrementN(OrvVector_##T##K* x, OrvVector_##T##K##DifferenceType n); \
    /** A new iterator n steps on from x; x does not move. */ \
    ORV_API OrvVector_##T##K OrvVector_##T##K##Add(OrvVector_##T##K* x, OrvVector_##T##K##DifferenceType n); \
    /** Steps from y to x. */ \
    ORV_API OrvVector_##T##K##DifferenceType OrvVector_##T##K##Subtract(OrvVector_##T##K* x, OrvVector_##T##K* y);
/* clang-format on */

#endif /* ORV_UTILS_ORVVECTORDECL_H */
