/*
 * OrvSetDecl.h - declares the ordered set OrvSet_<T> of an element record T: unique
 * keys in an AVL tree whose nodes come from the caller's allocator.
 *
 * ORV_DECLARE_SET(T) declares the node and set records, the iterator and result types,
 * the node-level functions (OrvSet_<T>_Node...), the set operations and the four
 * iterator kinds; the library defines them once per element type (OrvDateTime.h
 * declares OrvSet_OrvDateTime, ordered by OrvDateTimeLess). Use it inside
 * ORV_EXTERN_C_BEGIN / ORV_EXTERN_C_END.
 *
 * The set
 *  - orders its elements with T's strict ordering; two elements are the same key when
 *    neither is less than the other;
 *  - holds copies of its elements, one per node; the value is the node's first member,
 *    so an iterator (a node pointer) is also a pointer to its element;
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
 * begin position (and a reverse one past its ends); reading through the exceptional
 * iterator; erasing the end position; ranges not reachable by forward steps.
 *
 * Iterators. A forward iterator holds the node of its element, or the sentinel for the
 * end position. A reverse iterator holds the node after the element it designates:
 * form the reverse begin by holding the set's End, and the reverse end by holding its
 * Begin. Null is the exceptional iterator of every kind.
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
#ifndef ORV_UTILS_ORVSETDECL_H
#define ORV_UTILS_ORVSETDECL_H

#include "Orv/Utils/OrvAllocator.h"
#include "Orv/Utils/SysDep/OrvBaseTypes.h"

/* clang-format off */
#define ORV_DECLARE_SET(T) \
    typedef struct OrvSet_##T##_Node OrvSet_##T##_Node; \
    /** One tree node. height is 1 for a leaf; an absent subtree counts 0. */ \
    struct OrvSet_##T##_Node { \
        T value;                    /* the element; first, so a node's address is its element's */ \
        OrvSet_##T##_Node* left;    /* subtree of lesser elements, or null */ \
        OrvSet_##T##_Node* right;   /* subtree of greater elements, or null */ \
        OrvSet_##T##_Node* parent;  /* the node above; the sentinel for the root; null in the sentinel */ \
        OrvSet_##T##_Node** pPtr;   /* the link that points at this node */ \
        OrvSizeT height;            /* height of the subtree rooted here */ \
    }; \
    /** The set. end is the sentinel: end.left is the root, its other links stay null. */ \
    typedef struct OrvSet_##T { \
        OrvSet_##T##_Node end; \
        OrvSizeT size; \
        OrvAllocator* alloc; \
    } OrvSet_##T; \
    typedef OrvSizeT OrvSet_##T##SizeType; \
    typedef OrvSet_##T##_Node* OrvSet_##T##Iterator; \
    typedef const OrvSet_##T##_Node* OrvSet_##T##ConstIterator; \
    typedef OrvSet_##T##_Node* OrvSet_##T##ReverseIterator; \
    typedef const OrvSet_##T##_Node* OrvSet_##T##ConstReverseIterator; \
    typedef struct OrvPair_OrvSet_##T##Iterator__OrvBool { \
        OrvSet_##T##Iterator first; \
        OrvBool second; \
    } OrvPair_OrvSet_##T##Iterator__OrvBool; \
    typedef struct OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator { \
        OrvSet_##T##Iterator first; \
        OrvSet_##T##Iterator second; \
    } OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator; \
    typedef struct OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator { \
        OrvSet_##T##ConstIterator first; \
        OrvSet_##T##ConstIterator second; \
    } OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator; \
    \
    /* Node level: node is the root of a subtree and must not be null. */ \
    /** The node equivalent to key, or null. */ \
    ORV_API OrvSet_##T##_Node* OrvSet_##T##_NodeFind(OrvSet_##T##_Node* node, const T* key); \
    ORV_API const OrvSet_##T##_Node* OrvSet_##T##_NodeFindConst(const OrvSet_##T##_Node* node, const T* key); \
    /** 1 when a node equivalent to key exists, else 0. */ \
    ORV_API OrvSet_##T##SizeType OrvSet_##T##_NodeCount(const OrvSet_##T##_Node* node, const T* key); \
    /** The least node not less than key, or null. */ \
    ORV_API OrvSet_##T##_Node* OrvSet_##T##_NodeLowerBound(OrvSet_##T##_Node* node, const T* key); \
    ORV_API const OrvSet_##T##_Node* OrvSet_##T##_NodeLowerBoundConst(const OrvSet_##T##_Node* node, const T* key); \
    /** The least node greater than key, or null. */ \
    ORV_API OrvSet_##T##_Node* OrvSet_##T##_NodeUpperBound(OrvSet_##T##_Node* node, const T* key); \
    ORV_API const OrvSet_##T##_Node* OrvSet_##T##_NodeUpperBoundConst(const OrvSet_##T##_Node* node, const T* key); \
    /** The node equivalent to key and its in-order successor (the sentinel after the \
     *  greatest element), or two nulls. */ \
    ORV_API OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator OrvSet_##T##_NodeEqualRange( \
        OrvSet_##T##_Node* node, const T* key); \
    ORV_API OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator OrvSet_##T##_NodeEqualRangeConst( \
        const OrvSet_##T##_Node* node, const T* key); \
    /** The leftmost (rightmost) node of the subtree. From the sentinel: the least \
     *  element, or the sentinel itself when the tree is empty. */ \
    ORV_API OrvSet_##T##_Node* OrvSet_##T##_NodeGetMinimum(OrvSet_##T##_Node* node); \
    ORV_API const OrvSet_##T##_Node* OrvSet_##T##_NodeGetMinimumConst(const OrvSet_##T##_Node* node); \
    ORV_API OrvSet_##T##_Node* OrvSet_##T##_NodeGetMaximum(OrvSet_##T##_Node* node); \
    ORV_API const OrvSet_##T##_Node* OrvSet_##T##_NodeGetMaximumConst(const OrvSet_##T##_Node* node); \
    /** Links newNode (value constructed, links null, height 1) into the subtree at \
     *  curNode and rebalances: newNode and true. A key already present: its node and \
     *  false, with newNode untouched for the caller to release. Never fails. */ \
    ORV_API OrvPair_OrvSet_##T##Iterator__OrvBool OrvSet_##T##_NodeInsert(OrvSet_##T##_Node* curNode, \
                                                                          OrvSet_##T##_Node* newNode); \
    /** The rebalancing climb from node after an insertion (removing false) or a removal \
     *  (removing true). Does nothing on the sentinel. */ \
    ORV_API void OrvSet_##T##_NodeBalance(OrvSet_##T##_Node* node, OrvBool removing); \
    /** Lifts node's right (left) child into node's place. Heights are not changed. */ \
    ORV_API void OrvSet_##T##_NodeRotateLeft(OrvSet_##T##_Node* node); \
    ORV_API void OrvSet_##T##_NodeRotateRight(OrvSet_##T##_Node* node); \
    /** A deep copy of the subtree at node with the same shape and heights, nodes from \
     *  alloc in pre-order; its root gets parent and pPtr (the caller stores it in the \
     *  link). Null on failure, with everything it took released. */ \
    ORV_API OrvSet_##T##_Node* OrvSet_##T##_NodeCopy(const OrvSet_##T##_Node* node, OrvSet_##T##_Node* parent, \
                                                     OrvSet_##T##_Node** pPtr, OrvAllocator* alloc); \
    /** Releases the subtree at node in post-order; the link to it is left alone. */ \
    ORV_API void OrvSet_##T##_NodeDelete(OrvSet_##T##_Node* node, OrvAllocator* alloc); \
    \
    /** Empty set on alloc. Never fails. Returns bt. */ \
    ORV_API OrvSet_##T* OrvSet_##T##Construct(OrvSet_##T* bt, OrvAllocator* alloc); \
    /** A copy of s with its shape, on s's allocator. Null on failure. */ \
    ORV_API OrvSet_##T* OrvSet_##T##ConstructCopy(OrvSet_##T* d, const OrvSet_##T* s); \
    /** Makes d hold copies of s's elements, on d's own allocator. Null on failure, with \
     *  d unchanged. Assigning a set to itself keeps its elements (in new nodes). */ \
    ORV_API OrvSet_##T* OrvSet_##T##Assign(OrvSet_##T* d, const OrvSet_##T* s); \
    /** Releases every element and node. */ \
    ORV_API void OrvSet_##T##Destruct(OrvSet_##T* bt); \
    /** Releases every element and node; the set stays usable and empty. */ \
    ORV_API void OrvSet_##T##Clear(OrvSet_##T* bt); \
    /** Exchanges the contents. Same allocator: the trees change hands and element \
     *  iterators follow them; never fails. Different allocators: copies, each set keeps \
     *  its allocator; false, both unchanged, when a copy fails. */ \
    ORV_API OrvBool OrvSet_##T##Swap(OrvSet_##T* a, OrvSet_##T* b); \
    /** Inserts a copy of *value: its node and true; the node of an equivalent element \
     *  already present and false; the end position and false when memory runs out. */ \
    ORV_API OrvPair_OrvSet_##T##Iterator__OrvBool OrvSet_##T##Insert(OrvSet_##T* bt, const T* value); \
    /** Erases the element at node; returns the position after it. */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##Erase(OrvSet_##T* bt, OrvSet_##T##Iterator node); \
    /** Erases [first, last); returns last. */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##EraseRange(OrvSet_##T* bt, OrvSet_##T##Iterator first, \
                                                        OrvSet_##T##Iterator last); \
    /** Erases the element equivalent to key; returns the count erased, 0 or 1. */ \
    ORV_API OrvSet_##T##SizeType OrvSet_##T##EraseKey(OrvSet_##T* bt, const T* key); \
    /** The element equivalent to key, or the end position. */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##Find(OrvSet_##T* bt, const T* key); \
    ORV_API OrvSet_##T##ConstIterator OrvSet_##T##FindConst(const OrvSet_##T* bt, const T* key); \
    /** 1 when an element equivalent to key is present, else 0. */ \
    ORV_API OrvSet_##T##SizeType OrvSet_##T##Count(const OrvSet_##T* bt, const T* key); \
    /** The first element not less than key, or the end position. */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##LowerBound(OrvSet_##T* bt, const T* key); \
    ORV_API OrvSet_##T##ConstIterator OrvSet_##T##LowerBoundConst(const OrvSet_##T* bt, const T* key); \
    /** The first element greater than key, or the end position. */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##UpperBound(OrvSet_##T* bt, const T* key); \
    ORV_API OrvSet_##T##ConstIterator OrvSet_##T##UpperBoundConst(const OrvSet_##T* bt, const T* key); \
    /** The element equivalent to key and the position after it; the end position twice \
     *  when key is absent. */ \
    ORV_API OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator OrvSet_##T##EqualRange(OrvSet_##T* bt, \
                                                                                      const T* key); \
    ORV_API OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator OrvSet_##T##EqualRangeConst( \
        const OrvSet_##T* bt, const T* key); \
    /** Number of elements. */ \
    ORV_API OrvSet_##T##SizeType OrvSet_##T##Size(const OrvSet_##T* bt); \
    /** The largest OrvSizeT, whatever the allocator. */ \
    ORV_API OrvSet_##T##SizeType OrvSet_##T##MaxSize(const OrvSet_##T* bt); \
    /** True when the set holds no element. */ \
    ORV_API OrvBool OrvSet_##T##Empty(const OrvSet_##T* bt); \
    /** The allocator the nodes come from. */ \
    ORV_API OrvAllocator* OrvSet_##T##GetAllocator(const OrvSet_##T* bt); \
    /** The least (greatest) element, or null when the set is empty. */ \
    ORV_API T* OrvSet_##T##Front(OrvSet_##T* bt); \
    ORV_API T* OrvSet_##T##Back(OrvSet_##T* bt); \
    /** The least element's position, or the end position when empty. */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##Begin(OrvSet_##T* bt); \
    ORV_API OrvSet_##T##ConstIterator OrvSet_##T##BeginConst(const OrvSet_##T* bt); \
    /** The end position: the address of the sentinel (and of the set record). */ \
    ORV_API OrvSet_##T##Iterator OrvSet_##T##End(OrvSet_##T* bt); \
    ORV_API OrvSet_##T##ConstIterator OrvSet_##T##EndConst(const OrvSet_##T* bt); \
    /** The byte size of one node, as every node allocation of the set asks for. */ \
    ORV_API OrvSizeT OrvSet_##T##GetNodeSize(const OrvSet_##T* bt); \
    \
    ORV_DECLARE_SET_FORWARD_ITERATOR_(T, Iterator, T*) \
    ORV_DECLARE_SET_FORWARD_ITERATOR_(T, ConstIterator, const T*) \
    ORV_DECLARE_SET_REVERSE_ITERATOR_(T, ReverseIterator, T*) \
    ORV_DECLARE_SET_REVERSE_ITERATOR_(T, ConstReverseIterator, const T*)

/* A forward kind K with element pointer P: steps to the in-order successor
 * (Increment) and predecessor (Decrement). */
#define ORV_DECLARE_SET_FORWARD_ITERATOR_(T, K, P) \
    /** Stores the exceptional iterator (null). Returns obj_. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Construct(OrvSet_##T##K* obj_); \
    /** No effect. */ \
    ORV_API void OrvSet_##T##K##Destruct(OrvSet_##T##K* obj_); \
    /** *dst_ becomes *src_. Returns dst_. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##ConstructCopy(OrvSet_##T##K* dst_, const OrvSet_##T##K* src_); \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Assign(OrvSet_##T##K* dst_, const OrvSet_##T##K* src_); \
    /** Exchanges the two node pointers. Always true. */ \
    ORV_API OrvBool OrvSet_##T##K##Swap(OrvSet_##T##K* a_, OrvSet_##T##K* b_); \
    /** True when both hold the same node, or both are exceptional. */ \
    ORV_API OrvBool OrvSet_##T##K##Equal(const OrvSet_##T##K* a_, const OrvSet_##T##K* b_); \
    /** Orders iterators by node address, not by element. */ \
    ORV_API OrvBool OrvSet_##T##K##Less(const OrvSet_##T##K* a_, const OrvSet_##T##K* b_); \
    /** The designated element. */ \
    ORV_API P OrvSet_##T##K##ContentOf(OrvSet_##T##K* iter); \
    ORV_API const T* OrvSet_##T##K##ContentOfConst(const OrvSet_##T##K* iter); \
    /** Moves to the next (previous) element in order. Returns iter. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Increment(OrvSet_##T##K* iter); \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Decrement(OrvSet_##T##K* iter); \
    /** Stores the exceptional iterator (null). Returns iter. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##ConstructExceptional(OrvSet_##T##K* iter); \
    /** True for the exceptional iterator. */ \
    ORV_API OrvBool OrvSet_##T##K##IsExceptional(OrvSet_##T##K iter);

/* A reverse kind K: holds the node after its element and steps the other way. */
#define ORV_DECLARE_SET_REVERSE_ITERATOR_(T, K, P) \
    /** No effect. */ \
    ORV_API void OrvSet_##T##K##Destruct(OrvSet_##T##K* x); \
    /** *x becomes *y. Returns x. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##ConstructCopy(OrvSet_##T##K* x, const OrvSet_##T##K* y); \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Assign(OrvSet_##T##K* x, const OrvSet_##T##K* y); \
    /** Exchanges the two node pointers. Always true. */ \
    ORV_API OrvBool OrvSet_##T##K##Swap(OrvSet_##T##K* x, OrvSet_##T##K* y); \
    /** True when both hold the same node, or both are exceptional. */ \
    ORV_API OrvBool OrvSet_##T##K##Equal(const OrvSet_##T##K* x, const OrvSet_##T##K* y); \
    /** The designated element: the one before the held node. The iterator does not move. */ \
    ORV_API P OrvSet_##T##K##ContentOf(OrvSet_##T##K* x); \
    ORV_API const T* OrvSet_##T##K##ContentOfConst(const OrvSet_##T##K* x); \
    /** Moves to the previous (next) element in ascending order. Returns x. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Increment(OrvSet_##T##K* x); \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##Decrement(OrvSet_##T##K* x); \
    /** Stores the exceptional iterator (null). Returns x. */ \
    ORV_API OrvSet_##T##K* OrvSet_##T##K##ConstructExceptional(OrvSet_##T##K* x); \
    /** True for the exceptional iterator. */ \
    ORV_API OrvBool OrvSet_##T##K##IsExceptional(OrvSet_##T##K x);
/* clang-format on */

#endif /* ORV_UTILS_ORVSETDECL_H */
