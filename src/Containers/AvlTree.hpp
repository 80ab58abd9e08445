/*
 * The AVL tree with parent links behind OrvSet_OrvDateTime: searches, rotations, the
 * rebalancing climb, deep copy and release of a subtree, and the steps of the set's
 * iterators, written once over an element-operations class. The set record's
 * operations are in AvlSet.hpp; the C entry points in src/Calendar/OrvDateTimeSet.cpp.
 *
 * The element-operations class E provides
 *     using Value = <element record>;
 *     static Value* ConstructCopy(Value* slot, const Value* src); // null: the copy failed
 *     static void Destruct(Value* slot);
 *     static bool Less(const Value* a, const Value* b);           // strict weak order
 * and may provide
 *     static bool InstantKey(const Value* v, OrvInt64* key);
 *     static constexpr std::size_t kInstantKeyOffset;  // where in Value the key is read
 * which gives an integer key for some values and false for the others: two values that
 * both have one are ordered as their keys are, without Less. A search whose key has one
 * then compares each node by its integer key, and asks Less only at nodes without one,
 * exactly where and as the search over Less alone would; the nodes visited are the same.
 * The bundle B names the public C records: B::Node, B::Set, and the result pairs
 * B::InsertResult {iterator, OrvBool}, B::Range and B::ConstRange {iterator, iterator}.
 *
 * The tree. Every node holds its value first, then left, right, parent, pPtr and
 * height. The set record embeds one node, `end`, that holds no value: its left link is
 * the root, its other links stay null, and it is the end position. Each node's pPtr
 * addresses the link that points at it (its parent's left or right, or the sentinel's
 * left for the root), so relinking never asks which side a node hangs on.
 *
 *                 end (sentinel: parent == null)
 *                 /
 *              root  parent = &end, pPtr = &end.left
 *             /    \
 *           ...    ...
 *
 * Heights: a leaf is 1, an absent subtree 0. Nodes never move and values are never
 * copied between nodes once inserted: an iterator stays valid until its own element
 * is erased.
 */
#ifndef ORV_SRC_CONTAINERS_AVLTREE_HPP
#define ORV_SRC_CONTAINERS_AVLTREE_HPP

#include "Orv/Utils/OrvAllocator.h"

#include <cstddef>
#include <cstdint>

namespace orv::containers {

template <class E, class B>
class AvlTree {
public:
    using T = typename E::Value;
    using Node = typename B::Node;
    using InsertResult = typename B::InsertResult;
    using Size = OrvSizeT;

    static constexpr Size kNodeSize = sizeof(Node);

    // Whether E gives integer keys (see above).
    static constexpr bool kKeyed = requires(const T* v, OrvInt64* k) { E::InstantKey(v, k); };

    // --- searches on a subtree (node must not be null) -----------------------------
    // N is Node or const Node. A three-way decision asks Less(key, node) first and
    // Less(node, key) second; both false means the node is the key.
    //
    // Find and Insert take kPrefetch: whether each keyed step starts fetching both
    // children (see PrefetchChildren). It pays off when the nodes are not in the
    // nearer caches; the set asks for it on every search and, on insertion and
    // erasure, once it holds more nodes than those caches do (kPrefetchFrom).

    template <class N, bool kPrefetch = true>
    static N* Find(N* node, const T* key)
    {
        if constexpr (kKeyed) {
            OrvInt64 k;
            if (E::InstantKey(key, &k)) {
                while (node != nullptr) {
                    OrvInt64 w;
                    if (E::InstantKey(&node->value, &w)) [[likely]] {
                        if (w == k) return node;
                        if constexpr (kPrefetch) PrefetchChildren(node);
                        node = k < w ? node->left : node->right;
                    } else if (!Step3(&node, key)) {
                        return node;
                    }
                }
                return nullptr;
            }
        }
        while (node != nullptr) {
            if (!Step3(&node, key)) return node;
        }
        return nullptr;
    }

    // The least node not less than key, or null. One question per node.
    template <class N>
    static N* LowerBound(N* node, const T* key)
    {
        N* candidate = nullptr;
        OrvInt64 k = 0;
        const bool keyed = kKeyed && KeyOf(key, &k);
        while (node != nullptr) {
            OrvInt64 w;
            const bool less = keyed && KeyOf(&node->value, &w) ? w < k : E::Less(&node->value, key);
            if (less) {
                node = node->right;
            } else {
                candidate = node;
                node = node->left;
            }
        }
        return candidate;
    }

    // The least node greater than key, or null.
    template <class N>
    static N* UpperBound(N* node, const T* key)
    {
        N* candidate = nullptr;
        OrvInt64 k = 0;
        const bool keyed = kKeyed && KeyOf(key, &k);
        while (node != nullptr) {
            OrvInt64 w;
            const bool greater = keyed && KeyOf(&node->value, &w) ? k < w : E::Less(key, &node->value);
            if (greater) {
                candidate = node;
                node = node->left;
            } else {
                node = node->right;
            }
        }
        return candidate;
    }

    // The node equivalent to key and its successor, or two nulls.
    template <class R, class N>
    static R EqualRange(N* node, const T* key)
    {
        N* found = Find(node, key);
        if (found == nullptr) return R{nullptr, nullptr};
        return R{found, Successor(found)};
    }

    template <class N>
    static N* Minimum(N* node)
    {
        while (node->left != nullptr) node = node->left;
        return node;
    }

    template <class N>
    static N* Maximum(N* node)
    {
        while (node->right != nullptr) node = node->right;
        return node;
    }

    // In-order successor. Climbing from the greatest element ends at the sentinel, whose
    // left link is the root; must not be applied to the sentinel itself.
    template <class N>
    static N* Successor(N* node)
    {
        if (node->right != nullptr) return Minimum<N>(node->right);
        for (;;) {
            N* up = node->parent;
            if (up->left == node) return up;
            node = up;
        }
    }

    // In-order predecessor. From the sentinel of a non-empty tree it gives the greatest
    // element (the sentinel's left is the root); must not be applied to the least
    // element or to the sentinel of an empty tree.
    template <class N>
    static N* Predecessor(N* node)
    {
        if (node->left != nullptr) return Maximum<N>(node->left);
        for (;;) {
            N* up = node->parent;
            if (up->right == node) return up;
            node = up;
        }
    }

    // --- changing a subtree ------------------------------------------------------

    // Links a prepared node (value constructed, no links, height 1) under the subtree
    // at cur and rebalances. An equivalent node already present is returned with false;
    // newNode is then left untouched for the caller to release.
    template <bool kPrefetch = false>
    static InsertResult Insert(Node* cur, Node* newNode)
    {
        if constexpr (kKeyed) {
            OrvInt64 k;
            if (E::InstantKey(&newNode->value, &k)) return InsertFrom<true, kPrefetch>(cur, newNode, k);
        }
        return InsertFrom<false, false>(cur, newNode, 0);
    }

    /*
     *        node                  r
     *       /    \               /   \
     *      a      r     ==>   node    c
     *            / \          /  \
     *           b   c        a    b
     * Heights are left alone: the rebalancing climb sets them.
     */
    static void RotateLeft(Node* node)
    {
        Node* r = node->right;
        *node->pPtr = r;
        r->parent = node->parent;
        r->pPtr = node->pPtr;
        node->right = r->left;
        if (node->right != nullptr) {
            node->right->parent = node;
            node->right->pPtr = &node->right;
        }
        r->left = node;
        node->parent = r;
        node->pPtr = &r->left;
    }

    /*
     *          node              l
     *         /    \           /   \
     *        l      c   ==>   a    node
     *       / \                    /  \
     *      a   b                  b    c
     */
    static void RotateRight(Node* node)
    {
        Node* l = node->left;
        *node->pPtr = l;
        l->parent = node->parent;
        l->pPtr = node->pPtr;
        node->left = l->right;
        if (node->left != nullptr) {
            node->left->parent = node;
            node->left->pPtr = &node->left;
        }
        l->right = node;
        node->parent = l;
        node->pPtr = &l->right;
    }

    /*
     * The rebalancing climb after one node was linked in (removing false, started at
     * its parent) or taken out (removing true, started at the parent of the vacated
     * place). Each node N examined still holds its height from before the change;
     * everything below it on the path has been recomputed. A balanced node gets its
     * height recomputed and the climb goes on; it ends at a balanced node whose height
     * stays as it was (nothing above it changes then: every node above was balanced
     * before and its subtrees keep their heights), or at the root. After a rotation the
     * heights are adjusted from the stored values:
     *
     *   case (left-heavy shown;       inserting            removing
     *   right-heavy is the mirror)
     *   single, lrh <= llh:           N - 1; stop          N = lrh + 1, l = lrh + 2;
     *     right at N                                       stop if lrh == llh (the
     *                                                      subtree kept its height)
     *   double, lrh > llh:            l - 1, lr + 1,       l - 1, lr + 1, N - 2;
     *     left at l, right at N       N - 1; stop          go on
     *
     * Double rotation, left-heavy:
     *          N                N                 lr
     *         / \              / \              /    \
     *        l   d            lr  d            l      N
     *       / \      ==>     /  \      ==>    / \    / \
     *      a   lr           l    c           a   b  c   d
     *         /  \         / \
     *        b    c       a   b
     */
    static void Balance(Node* node, bool removing)
    {
        if (node->parent == nullptr) return; // the sentinel: the tree is empty above
        Node* n = node;
        for (;;) {
            const Size lh = HeightOf(n->left);
            const Size rh = HeightOf(n->right);
            Node* next;
            if (lh > rh + 1) {
                Node* l = n->left;
                const Size llh = HeightOf(l->left);
                const Size lrh = HeightOf(l->right);
                if (lrh > llh) {
                    Node* lr = l->right;
                    RotateLeft(l);
                    RotateRight(n);
                    l->height -= 1;
                    lr->height += 1;
                    n->height -= removing ? 2 : 1;
                    if (!removing) return;
                    next = lr->parent;
                } else {
                    RotateRight(n);
                    if (!removing) {
                        n->height -= 1;
                        return;
                    }
                    n->height = lrh + 1;
                    l->height = lrh + 2;
                    if (lrh >= llh) return;
                    next = l->parent;
                }
            } else if (rh > lh + 1) {
                Node* r = n->right;
                const Size rlh = HeightOf(r->left);
                const Size rrh = HeightOf(r->right);
                if (rlh > rrh) {
                    Node* rl = r->left;
                    RotateRight(r);
                    RotateLeft(n);
                    r->height -= 1;
                    rl->height += 1;
                    n->height -= removing ? 2 : 1;
                    if (!removing) return;
                    next = rl->parent;
                } else {
                    RotateLeft(n);
                    if (!removing) {
                        n->height -= 1;
                        return;
                    }
                    n->height = rlh + 1;
                    r->height = rlh + 2;
                    if (rlh >= rrh) return;
                    next = r->parent;
                }
            } else {
                const Size h = (lh > rh ? lh : rh) + 1;
                if (h == n->height) return;
                n->height = h;
                next = n->parent;
            }
            if (next == nullptr || next->parent == nullptr) return;
            n = next;
        }
    }

    // A deep copy of the subtree at node, same shape and heights, nodes allocated in
    // pre-order. The root gets parent and pPtr but is not stored through pPtr. Null,
    // with everything it allocated released, on failure.
    static Node* Copy(const Node* node, Node* parent, Node** pPtr, OrvAllocator* a)
    {
        Node* copy = AllocateNode(a);
        if (copy == nullptr) return nullptr;
        if (E::ConstructCopy(&copy->value, &node->value) == nullptr) {
            DeallocateNode(a, copy);
            return nullptr;
        }
        copy->left = nullptr;
        copy->right = nullptr;
        if (node->left != nullptr) {
            copy->left = Copy(node->left, copy, &copy->left, a);
            if (copy->left == nullptr) return Release(copy, a);
        }
        if (node->right != nullptr) {
            copy->right = Copy(node->right, copy, &copy->right, a);
            if (copy->right == nullptr) {
                if (copy->left != nullptr) Delete(copy->left, a);
                return Release(copy, a);
            }
        }
        copy->parent = parent;
        copy->pPtr = pPtr;
        copy->height = node->height;
        return copy;
    }

    // Releases the subtree at node in post-order. The link to node is left as it is.
    static void Delete(Node* node, OrvAllocator* a)
    {
        if (node->left != nullptr) Delete(node->left, a);
        if (node->right != nullptr) Delete(node->right, a);
        Release(node, a);
    }

    // --- shared with the set -------------------------------------------------------

    static Size HeightOf(const Node* n) { return n != nullptr ? n->height : 0; }

    // Node memory, through the allocator's own callbacks as OrvAllocatorAllocate and
    // OrvAllocatorDeallocate call them.
    static Node* AllocateNode(OrvAllocator* a) { return static_cast<Node*>(a->allocate(a, kNodeSize)); }
    static void DeallocateNode(OrvAllocator* a, Node* node) { a->deallocate(a, node, kNodeSize); }

    // Destructs a node's value and returns the node to the allocator. Gives null for
    // the convenience of the failure paths.
    static Node* Release(Node* node, OrvAllocator* a)
    {
        E::Destruct(&node->value);
        DeallocateNode(a, node);
        return nullptr;
    }

    // Checks the subtree at n, in order: every link, height and balance, and that each
    // element is greater than the one visited before (*prev). Counts the nodes into
    // *count; the first fault found goes to *fault. Returns the subtree's height (0
    // for a fault already reported).
    static Size ValidateSubtree(const Node* n, Size* count, const Node** prev, const char** fault)
    {
        Size lh = 0;
        Size rh = 0;
        if (n->left != nullptr) {
            if (n->left->parent != n || n->left->pPtr != &n->left) *fault = "left child's parent or pPtr wrong";
            lh = ValidateSubtree(n->left, count, prev, fault);
        }
        if (*fault != nullptr) return 0;
        if (*prev != nullptr && !E::Less(&(*prev)->value, &n->value)) {
            *fault = "elements not strictly ascending in order";
            return 0;
        }
        *prev = n;
        ++*count;
        if (n->right != nullptr) {
            if (n->right->parent != n || n->right->pPtr != &n->right) *fault = "right child's parent or pPtr wrong";
            rh = ValidateSubtree(n->right, count, prev, fault);
        }
        if (*fault != nullptr) return 0;
        if (*n->pPtr != n) {
            *fault = "pPtr does not address the link to the node";
            return 0;
        }
        const Size h = (lh > rh ? lh : rh) + 1;
        if (n->height != h) {
            *fault = "stored height differs from the subtree's height";
            return 0;
        }
        if (lh > rh + 1 || rh > lh + 1) {
            *fault = "subtree heights differ by more than one";
            return 0;
        }
        return h;
    }

private:
    // Insert's descent; kUseKeys: newNode's value has the integer key k.
    template <bool kUseKeys, bool kPrefetch>
    static InsertResult InsertFrom(Node* cur, Node* newNode, OrvInt64 k)
    {
        const T* key = &newNode->value;
        for (;;) {
            bool left;
            OrvInt64 w;
            if (kUseKeys && KeyOf(&cur->value, &w)) [[likely]] {
                if (w == k) return InsertResult{cur, ORV_FALSE};
                left = k < w;
            } else if (E::Less(key, &cur->value)) {
                left = true;
            } else if (E::Less(&cur->value, key)) {
                left = false;
            } else {
                return InsertResult{cur, ORV_FALSE};
            }
            Node** const link = left ? &cur->left : &cur->right;
            if (*link != nullptr) {
                cur = *link;
                if constexpr (kPrefetch) PrefetchChildren(cur);
                continue;
            }
            *link = newNode;
            newNode->pPtr = link;
            newNode->parent = cur;
            Balance(cur, false);
            return InsertResult{newNode, ORV_TRUE};
        }
    }

    // Starts fetching what the next step of a keyed search reads of either child (its
    // integer key and its links) while this step decides between them, so that the
    // step's comparison overlaps the memory latency. A null child is not fetched.
    template <class N>
    static void PrefetchChildren(N* node)
    {
        PrefetchNode(node->left);
        PrefetchNode(node->right);
    }
    template <class N>
    static void PrefetchNode(N* node)
    {
        if (node == nullptr) return;
        const auto* bytes = reinterpret_cast<const char*>(node);
        __builtin_prefetch(bytes + offsetof(Node, value) + E::kInstantKeyOffset);
        __builtin_prefetch(bytes + offsetof(Node, left));
    }

    // The integer key of v, when E gives one.
    static bool KeyOf(const T* v, OrvInt64* k)
    {
        if constexpr (kKeyed) {
            return E::InstantKey(v, k);
        } else {
            (void)v;
            (void)k;
            return false;
        }
    }

    // One three-way step of a search over Less: moves *node to the side of key, or
    // gives false when *node is the key.
    template <class N>
    static bool Step3(N** node, const T* key)
    {
        if (E::Less(key, &(*node)->value)) {
            *node = (*node)->left;
        } else if (E::Less(&(*node)->value, key)) {
            *node = (*node)->right;
        } else {
            return false;
        }
        return true;
    }
};

// Steps and element access of the set's iterators. P is the node pointer the kind
// holds (Node* or const Node*); a reverse kind holds the node after the element it
// designates, so it reads its predecessor and steps the other way. The null pointer,
// the exceptional iterator, stays null when moved or read.
template <class E, class B, class P, bool kReverse>
struct SetIterator {
    using Tree = AvlTree<E, B>;
    using T = typename E::Value;
    using ElementPtr = decltype(&P{}->value);

    static P* Store(P* it, P node)
    {
        *it = node;
        return it;
    }
    static OrvBool Swap(P* a, P* b)
    {
        P t = *a;
        *a = *b;
        *b = t;
        return ORV_TRUE;
    }
    static OrvBool Equal(const P* a, const P* b) { return *a == *b ? ORV_TRUE : ORV_FALSE; }
    static OrvBool Less(const P* a, const P* b)
    {
        return reinterpret_cast<std::uintptr_t>(*a) < reinterpret_cast<std::uintptr_t>(*b) ? ORV_TRUE : ORV_FALSE;
    }
    static ElementPtr ContentOf(P node)
    {
        if (node == nullptr) return nullptr;
        return kReverse ? &Tree::Predecessor(node)->value : &node->value;
    }
    static P* Increment(P* it) { return Store(it, Step(*it, !kReverse)); }
    static P* Decrement(P* it) { return Store(it, Step(*it, kReverse)); }

private:
    static P Step(P node, bool ascending)
    {
        if (node == nullptr) return node;
        return ascending ? Tree::Successor(node) : Tree::Predecessor(node);
    }
};

} // namespace orv::containers

#endif // ORV_SRC_CONTAINERS_AVLTREE_HPP
