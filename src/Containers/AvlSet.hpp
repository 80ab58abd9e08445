/*
 * The ordered set with unique keys behind every OrvSet_<T> of the library: an AVL tree
 * with parent links, written once over an element-operations class and instantiated
 * per element type by ORV_GENERATE_SET.
 *
 * The element-operations class E provides
 *     using Value = <element record>;
 *     static Value* ConstructCopy(Value* slot, const Value* src); // null: the copy failed
 *     static void Destruct(Value* slot);
 *     static bool Less(const Value* a, const Value* b);           // strict weak order
 * and the bundle B names the public C records: B::Node, B::Set, and the result pairs
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
#ifndef ORV_SRC_CONTAINERS_AVLSET_HPP
#define ORV_SRC_CONTAINERS_AVLSET_HPP

#include "Orv/Utils/OrvAllocator.h"

#include <cstddef>
#include <cstdint>

namespace orv::containers {

template <class E, class B>
class AvlSet {
public:
    using T = typename E::Value;
    using Node = typename B::Node;
    using Set = typename B::Set;
    using InsertResult = typename B::InsertResult;
    using Range = typename B::Range;
    using ConstRange = typename B::ConstRange;
    using Size = OrvSizeT;

    static constexpr Size kNodeSize = sizeof(Node);
    static constexpr Size kMaxSize = ~Size{0};

    // --- searches on a subtree (node must not be null) -----------------------------
    // N is Node or const Node. A three-way decision asks Less(key, node) first and
    // Less(node, key) second; both false means the node is the key.

    template <class N>
    static N* Find(N* node, const T* key)
    {
        while (node != nullptr) {
            if (E::Less(key, &node->value)) {
                node = node->left;
            } else if (E::Less(&node->value, key)) {
                node = node->right;
            } else {
                return node;
            }
        }
        return nullptr;
    }

    // The least node not less than key, or null. One question per node.
    template <class N>
    static N* LowerBound(N* node, const T* key)
    {
        N* candidate = nullptr;
        while (node != nullptr) {
            if (E::Less(&node->value, key)) {
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
        while (node != nullptr) {
            if (E::Less(key, &node->value)) {
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

    // In-order successor. Stops at the sentinel, the only node without a parent; must
    // not be applied to the sentinel itself.
    template <class N>
    static N* Successor(N* node)
    {
        if (node->right != nullptr) return Minimum<N>(node->right);
        for (;;) {
            N* up = node->parent;
            if (up->parent == nullptr || up->left == node) return up;
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
    static InsertResult Insert(Node* cur, Node* newNode)
    {
        const T* key = &newNode->value;
        for (;;) {
            Node** link;
            if (E::Less(key, &cur->value)) {
                link = &cur->left;
            } else if (E::Less(&cur->value, key)) {
                link = &cur->right;
            } else {
                return InsertResult{cur, ORV_FALSE};
            }
            if (*link != nullptr) {
                cur = *link;
                continue;
            }
            *link = newNode;
            newNode->pPtr = link;
            newNode->parent = cur;
            Balance(cur, false);
            return InsertResult{newNode, ORV_TRUE};
        }
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
     * height recomputed and the climb goes on, up to the root. After a rotation the
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
                n->height = (lh > rh ? lh : rh) + 1;
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
        Node* copy = static_cast<Node*>(OrvAllocatorAllocate(a, kNodeSize));
        if (copy == nullptr) return nullptr;
        if (E::ConstructCopy(&copy->value, &node->value) == nullptr) {
            OrvAllocatorDeallocate(a, copy, kNodeSize);
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

    // --- the set -------------------------------------------------------------------

    static Set* Construct(Set* s, OrvAllocator* a)
    {
        s->end.left = s->end.right = s->end.parent = nullptr;
        s->end.pPtr = nullptr;
        s->size = 0;
        s->alloc = a;
        return s;
    }

    static Set* ConstructCopy(Set* d, const Set* s)
    {
        Node* root = nullptr;
        if (s->end.left != nullptr) {
            root = Copy(s->end.left, &d->end, &d->end.left, s->alloc);
            if (root == nullptr) return nullptr;
        }
        Construct(d, s->alloc);
        d->end.left = root;
        d->size = s->size;
        return d;
    }

    // The copy is made before the old tree goes, so a failed copy leaves d as it was
    // and assigning a set to itself keeps its elements (in new nodes).
    static Set* Assign(Set* d, const Set* s)
    {
        Node* tree = nullptr;
        if (s->end.left != nullptr) {
            tree = Copy(s->end.left, &d->end, &d->end.left, d->alloc);
            if (tree == nullptr) return nullptr;
        }
        if (d->end.left != nullptr) Delete(d->end.left, d->alloc);
        d->end.left = tree;
        d->size = s->size;
        return d;
    }

    static void Destruct(Set* s)
    {
        if (s->end.left != nullptr) Delete(s->end.left, s->alloc);
    }

    static void Clear(Set* s)
    {
        if (s->end.left == nullptr) return;
        Delete(s->end.left, s->alloc);
        s->end.left = nullptr;
        s->size = 0;
    }

    // Same allocator: the trees change hands and element iterators follow them.
    // Different allocators: each set keeps its allocator and receives copies of the
    // other's elements; when a copy fails both sets are left as they were.
    static OrvBool Swap(Set* a, Set* b)
    {
        if (a->alloc == b->alloc) {
            ExchangeTrees(a, b);
            return ORV_TRUE;
        }
        Set former;
        Construct(&former, a->alloc);
        ExchangeTrees(a, &former);
        bool ok = Assign(a, b) != nullptr && Assign(b, &former) != nullptr;
        if (!ok) {
            Clear(a); // holds nothing, or copies of b's elements
            ExchangeTrees(a, &former);
        }
        Destruct(&former);
        return ok ? ORV_TRUE : ORV_FALSE;
    }

    // The node is made before the search, so a key already present costs one
    // allocation, one copy and one release. Failure gives the end position and false.
    static InsertResult Insert(Set* s, const T* value)
    {
        Node* node = static_cast<Node*>(OrvAllocatorAllocate(s->alloc, kNodeSize));
        if (node == nullptr) return InsertResult{&s->end, ORV_FALSE};
        if (E::ConstructCopy(&node->value, value) == nullptr) {
            OrvAllocatorDeallocate(s->alloc, node, kNodeSize);
            return InsertResult{&s->end, ORV_FALSE};
        }
        node->left = node->right = node->parent = nullptr;
        node->pPtr = nullptr;
        node->height = 1;
        if (s->end.left == nullptr) {
            s->end.left = node;
            node->parent = &s->end;
            node->pPtr = &s->end.left;
            ++s->size;
            return InsertResult{node, ORV_TRUE};
        }
        InsertResult result = Insert(s->end.left, node);
        if (result.second) {
            ++s->size;
        } else {
            Delete(node, s->alloc);
        }
        return result;
    }

    // Removes node by relinking: a substitute (the in-order predecessor when node has
    // a left subtree, else the successor) is unlinked from its place, the tree is
    // rebalanced from there with node still in it, and the substitute then takes
    // node's links and height. No value moves. Returns node's successor.
    static Node* Erase(Set* s, Node* node)
    {
        Node* const next = Successor(node);
        Node* sub = nullptr;
        Node* climbFrom;
        if (node->left != nullptr || node->right != nullptr) {
            Node* lifted;
            if (node->left != nullptr) {
                sub = Maximum(node->left);
                lifted = sub->left;
            } else {
                sub = Minimum(node->right);
                lifted = sub->right;
            }
            *sub->pPtr = lifted;
            if (lifted != nullptr) {
                lifted->parent = sub->parent;
                lifted->pPtr = sub->pPtr;
            }
            climbFrom = sub->parent;
        } else {
            *node->pPtr = nullptr;
            climbFrom = node->parent;
        }
        Balance(climbFrom, true);
        if (sub != nullptr) {
            sub->left = node->left;
            sub->right = node->right;
            sub->parent = node->parent;
            sub->pPtr = node->pPtr;
            sub->height = node->height;
            *sub->pPtr = sub;
            if (sub->left != nullptr) {
                sub->left->parent = sub;
                sub->left->pPtr = &sub->left;
            }
            if (sub->right != nullptr) {
                sub->right->parent = sub;
                sub->right->pPtr = &sub->right;
            }
        }
        Release(node, s->alloc);
        --s->size;
        return next;
    }

    static Node* EraseRange(Set* s, Node* first, Node* last)
    {
        while (first != last) first = Erase(s, first);
        return last;
    }

    static Size EraseKey(Set* s, const T* key)
    {
        if (s->end.left == nullptr) return 0;
        Range range = EqualRange(s, key);
        Size erased = 0;
        for (Node* p = range.first; p != range.second; ++erased) p = Erase(s, p);
        return erased;
    }

    // The searches give the end position where the node functions give null, and
    // compare nothing on an empty set. S is Set or const Set.
    template <class S>
    static auto FindIn(S* s, const T* key) -> decltype(&s->end)
    {
        if (s->end.left == nullptr) return &s->end;
        auto* found = Find(RootOf(s), key);
        return found != nullptr ? found : &s->end;
    }

    template <class S>
    static auto LowerBoundIn(S* s, const T* key) -> decltype(&s->end)
    {
        if (s->end.left == nullptr) return &s->end;
        auto* found = LowerBound(RootOf(s), key);
        return found != nullptr ? found : &s->end;
    }

    template <class S>
    static auto UpperBoundIn(S* s, const T* key) -> decltype(&s->end)
    {
        if (s->end.left == nullptr) return &s->end;
        auto* found = UpperBound(RootOf(s), key);
        return found != nullptr ? found : &s->end;
    }

    // An absent key gives the end position twice.
    static Range EqualRange(Set* s, const T* key) { return EqualRangeIn<Range>(s, key); }
    static ConstRange EqualRange(const Set* s, const T* key) { return EqualRangeIn<ConstRange>(s, key); }

    static Size Count(const Set* s, const T* key)
    {
        return s->end.left != nullptr && Find(RootOf(s), key) != nullptr ? 1 : 0;
    }

    template <class S>
    static auto Begin(S* s) -> decltype(&s->end)
    {
        return s->end.left != nullptr ? Minimum(RootOf(s)) : &s->end;
    }

    static T* Front(Set* s) { return s->end.left != nullptr ? &Minimum(s->end.left)->value : nullptr; }
    static T* Back(Set* s) { return s->end.left != nullptr ? &Maximum(s->end.left)->value : nullptr; }

    // --- invariants ---------------------------------------------------------------

    // Checks the whole tree: order (strictly ascending in order), balance, every
    // height, every parent and pPtr link, the sentinel's links and the size. Returns
    // a description of the first fault found, or null. For tests and debugging; it
    // compares every neighbouring pair, so it costs O(n) comparisons.
    static const char* Validate(const Set* s)
    {
        if (s->end.right != nullptr || s->end.parent != nullptr || s->end.pPtr != nullptr) {
            return "sentinel has a link other than its left";
        }
        const Node* root = s->end.left;
        if (root == nullptr) return s->size == 0 ? nullptr : "empty tree with a non-zero size";
        if (root->parent != &s->end || root->pPtr != &s->end.left) return "root not hung on the sentinel";
        Size count = 0;
        const Node* prev = nullptr;
        const char* fault = nullptr;
        ValidateSubtree(root, &count, &prev, &fault);
        if (fault != nullptr) return fault;
        return count == s->size ? nullptr : "size differs from the number of nodes";
    }

private:
    static Size HeightOf(const Node* n) { return n != nullptr ? n->height : 0; }

    static Node* RootOf(Set* s) { return s->end.left; }
    static const Node* RootOf(const Set* s) { return s->end.left; }

    // Destructs a node's value and returns the node to the allocator. Gives null for
    // the convenience of the failure paths.
    static Node* Release(Node* node, OrvAllocator* a)
    {
        E::Destruct(&node->value);
        OrvAllocatorDeallocate(a, node, kNodeSize);
        return nullptr;
    }

    static void Rehang(Set* s)
    {
        if (s->end.left != nullptr) {
            s->end.left->parent = &s->end;
            s->end.left->pPtr = &s->end.left;
        }
    }

    static void ExchangeTrees(Set* a, Set* b)
    {
        Node* root = a->end.left;
        a->end.left = b->end.left;
        b->end.left = root;
        const Size size = a->size;
        a->size = b->size;
        b->size = size;
        Rehang(a);
        Rehang(b);
    }

    template <class R, class S>
    static R EqualRangeIn(S* s, const T* key)
    {
        if (s->end.left == nullptr) return R{&s->end, &s->end};
        R range = EqualRange<R>(RootOf(s), key);
        if (range.first == nullptr) return R{&s->end, &s->end};
        return range;
    }

    // Returns the subtree's height (0 for a fault already reported).
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
};

// Steps and element access of the set's iterators. P is the node pointer the kind
// holds (Node* or const Node*); a reverse kind holds the node after the element it
// designates, so it reads its predecessor and steps the other way.
template <class E, class B, class P, bool kReverse>
struct SetIterator {
    using Tree = AvlSet<E, B>;
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
    static ElementPtr ContentOf(P* it) { return kReverse ? &Tree::Predecessor(*it)->value : &(*it)->value; }
    static const T* ContentOfConst(const P* it)
    {
        P node = *it;
        return kReverse ? &Tree::Predecessor(node)->value : &node->value;
    }
    static P* Increment(P* it) { return Store(it, kReverse ? Tree::Predecessor(*it) : Tree::Successor(*it)); }
    static P* Decrement(P* it) { return Store(it, kReverse ? Tree::Successor(*it) : Tree::Predecessor(*it)); }
};

} // namespace orv::containers

// Defines the exported C functions of OrvSet_<T> (declared by ORV_DECLARE_SET) over
// AvlSet<E, ...>. Use at namespace scope in exactly one source file.
#define ORV_GENERATE_SET(T, E)                                                                                   \
    struct OrvSetRecords_##T {                                                                                    \
        using Node = OrvSet_##T##_Node;                                                                           \
        using Set = OrvSet_##T;                                                                                   \
        using InsertResult = OrvPair_OrvSet_##T##Iterator__OrvBool;                                               \
        using Range = OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator;                                         \
        using ConstRange = OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator;                          \
    };                                                                                                            \
    using OrvSetImpl_##T = ::orv::containers::AvlSet<E, OrvSetRecords_##T>;                                       \
    template <class P, bool reverse>                                                                              \
    using OrvSetIteratorImpl_##T = ::orv::containers::SetIterator<E, OrvSetRecords_##T, P, reverse>;              \
    static_assert(offsetof(OrvSet_##T##_Node, value) == 0);                                                       \
    static_assert(offsetof(OrvSet_##T, end) == 0);                                                                \
    extern "C" {                                                                                                  \
    OrvSet_##T##_Node* OrvSet_##T##_NodeFind(OrvSet_##T##_Node* node, const T* key)                               \
    {                                                                                                             \
        return OrvSetImpl_##T::Find(node, key);                                                                   \
    }                                                                                                             \
    const OrvSet_##T##_Node* OrvSet_##T##_NodeFindConst(const OrvSet_##T##_Node* node, const T* key)              \
    {                                                                                                             \
        return OrvSetImpl_##T::Find(node, key);                                                                   \
    }                                                                                                             \
    OrvSet_##T##SizeType OrvSet_##T##_NodeCount(const OrvSet_##T##_Node* node, const T* key)                      \
    {                                                                                                             \
        return OrvSetImpl_##T::Find(node, key) != nullptr ? 1 : 0;                                                \
    }                                                                                                             \
    OrvSet_##T##_Node* OrvSet_##T##_NodeLowerBound(OrvSet_##T##_Node* node, const T* key)                         \
    {                                                                                                             \
        return OrvSetImpl_##T::LowerBound(node, key);                                                             \
    }                                                                                                             \
    const OrvSet_##T##_Node* OrvSet_##T##_NodeLowerBoundConst(const OrvSet_##T##_Node* node, const T* key)        \
    {                                                                                                             \
        return OrvSetImpl_##T::LowerBound(node, key);                                                             \
    }                                                                                                             \
    OrvSet_##T##_Node* OrvSet_##T##_NodeUpperBound(OrvSet_##T##_Node* node, const T* key)                         \
    {                                                                                                             \
        return OrvSetImpl_##T::UpperBound(node, key);                                                             \
    }                                                                                                             \
    const OrvSet_##T##_Node* OrvSet_##T##_NodeUpperBoundConst(const OrvSet_##T##_Node* node, const T* key)        \
    {                                                                                                             \
        return OrvSetImpl_##T::UpperBound(node, key);                                                             \
    }                                                                                                             \
    OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator OrvSet_##T##_NodeEqualRange(OrvSet_##T##_Node* node,       \
                                                                                   const T* key)                  \
    {                                                                                                             \
        return OrvSetImpl_##T::EqualRange<OrvSetRecords_##T::Range>(node, key);                                   \
    }                                                                                                             \
    OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator OrvSet_##T##_NodeEqualRangeConst(                \
        const OrvSet_##T##_Node* node, const T* key)                                                              \
    {                                                                                                             \
        return OrvSetImpl_##T::EqualRange<OrvSetRecords_##T::ConstRange>(node, key);                              \
    }                                                                                                             \
    OrvSet_##T##_Node* OrvSet_##T##_NodeGetMinimum(OrvSet_##T##_Node* node)                                       \
    {                                                                                                             \
        return OrvSetImpl_##T::Minimum(node);                                                                     \
    }                                                                                                             \
    const OrvSet_##T##_Node* OrvSet_##T##_NodeGetMinimumConst(const OrvSet_##T##_Node* node)                      \
    {                                                                                                             \
        return OrvSetImpl_##T::Minimum(node);                                                                     \
    }                                                                                                             \
    OrvSet_##T##_Node* OrvSet_##T##_NodeGetMaximum(OrvSet_##T##_Node* node)                                       \
    {                                                                                                             \
        return OrvSetImpl_##T::Maximum(node);                                                                     \
    }                                                                                                             \
    const OrvSet_##T##_Node* OrvSet_##T##_NodeGetMaximumConst(const OrvSet_##T##_Node* node)                      \
    {                                                                                                             \
        return OrvSetImpl_##T::Maximum(node);                                                                     \
    }                                                                                                             \
    OrvPair_OrvSet_##T##Iterator__OrvBool OrvSet_##T##_NodeInsert(OrvSet_##T##_Node* curNode,                     \
                                                                  OrvSet_##T##_Node* newNode)                     \
    {                                                                                                             \
        return OrvSetImpl_##T::Insert(curNode, newNode);                                                          \
    }                                                                                                             \
    void OrvSet_##T##_NodeBalance(OrvSet_##T##_Node* node, OrvBool removing)                                      \
    {                                                                                                             \
        OrvSetImpl_##T::Balance(node, removing != ORV_FALSE);                                                     \
    }                                                                                                             \
    void OrvSet_##T##_NodeRotateLeft(OrvSet_##T##_Node* node) { OrvSetImpl_##T::RotateLeft(node); }              \
    void OrvSet_##T##_NodeRotateRight(OrvSet_##T##_Node* node) { OrvSetImpl_##T::RotateRight(node); }            \
    OrvSet_##T##_Node* OrvSet_##T##_NodeCopy(const OrvSet_##T##_Node* node, OrvSet_##T##_Node* parent,            \
                                             OrvSet_##T##_Node** pPtr, OrvAllocator* alloc)                       \
    {                                                                                                             \
        return OrvSetImpl_##T::Copy(node, parent, pPtr, alloc);                                                   \
    }                                                                                                             \
    void OrvSet_##T##_NodeDelete(OrvSet_##T##_Node* node, OrvAllocator* alloc)                                    \
    {                                                                                                             \
        OrvSetImpl_##T::Delete(node, alloc);                                                                      \
    }                                                                                                             \
                                                                                                                  \
    OrvSet_##T* OrvSet_##T##Construct(OrvSet_##T* bt, OrvAllocator* alloc)                                       \
    {                                                                                                             \
        return OrvSetImpl_##T::Construct(bt, alloc);                                                              \
    }                                                                                                             \
    OrvSet_##T* OrvSet_##T##ConstructCopy(OrvSet_##T* d, const OrvSet_##T* s)                                    \
    {                                                                                                             \
        return OrvSetImpl_##T::ConstructCopy(d, s);                                                               \
    }                                                                                                             \
    OrvSet_##T* OrvSet_##T##Assign(OrvSet_##T* d, const OrvSet_##T* s) { return OrvSetImpl_##T::Assign(d, s); }  \
    void OrvSet_##T##Destruct(OrvSet_##T* bt) { OrvSetImpl_##T::Destruct(bt); }                                  \
    void OrvSet_##T##Clear(OrvSet_##T* bt) { OrvSetImpl_##T::Clear(bt); }                                        \
    OrvBool OrvSet_##T##Swap(OrvSet_##T* a, OrvSet_##T* b) { return OrvSetImpl_##T::Swap(a, b); }               \
    OrvPair_OrvSet_##T##Iterator__OrvBool OrvSet_##T##Insert(OrvSet_##T* bt, const T* value)                      \
    {                                                                                                             \
        return OrvSetImpl_##T::Insert(bt, value);                                                                 \
    }                                                                                                             \
    OrvSet_##T##Iterator OrvSet_##T##Erase(OrvSet_##T* bt, OrvSet_##T##Iterator node)                             \
    {                                                                                                             \
        return OrvSetImpl_##T::Erase(bt, node);                                                                   \
    }                                                                                                             \
    OrvSet_##T##Iterator OrvSet_##T##EraseRange(OrvSet_##T* bt, OrvSet_##T##Iterator first,                       \
                                                OrvSet_##T##Iterator last)                                        \
    {                                                                                                             \
        return OrvSetImpl_##T::EraseRange(bt, first, last);                                                       \
    }                                                                                                             \
    OrvSet_##T##SizeType OrvSet_##T##EraseKey(OrvSet_##T* bt, const T* key)                                       \
    {                                                                                                             \
        return OrvSetImpl_##T::EraseKey(bt, key);                                                                 \
    }                                                                                                             \
    OrvSet_##T##Iterator OrvSet_##T##Find(OrvSet_##T* bt, const T* key) { return OrvSetImpl_##T::FindIn(bt, key); } \
    OrvSet_##T##ConstIterator OrvSet_##T##FindConst(const OrvSet_##T* bt, const T* key)                           \
    {                                                                                                             \
        return OrvSetImpl_##T::FindIn(bt, key);                                                                   \
    }                                                                                                             \
    OrvSet_##T##SizeType OrvSet_##T##Count(const OrvSet_##T* bt, const T* key)                                    \
    {                                                                                                             \
        return OrvSetImpl_##T::Count(bt, key);                                                                    \
    }                                                                                                             \
    OrvSet_##T##Iterator OrvSet_##T##LowerBound(OrvSet_##T* bt, const T* key)                                     \
    {                                                                                                             \
        return OrvSetImpl_##T::LowerBoundIn(bt, key);                                                             \
    }                                                                                                             \
    OrvSet_##T##ConstIterator OrvSet_##T##LowerBoundConst(const OrvSet_##T* bt, const T* key)                     \
    {                                                                                                             \
        return OrvSetImpl_##T::LowerBoundIn(bt, key);                                                             \
    }                                                                                                             \
    OrvSet_##T##Iterator OrvSet_##T##UpperBound(OrvSet_##T* bt, const T* key)                                     \
    {                                                                                                             \
        return OrvSetImpl_##T::UpperBoundIn(bt, key);                                                             \
    }                                                                                                             \
    OrvSet_##T##ConstIterator OrvSet_##T##UpperBoundConst(const OrvSet_##T* bt, const T* key)                     \
    {                                                                                                             \
        return OrvSetImpl_##T::UpperBoundIn(bt, key);                                                             \
    }                                                                                                             \
    OrvPair_OrvSet_##T##Iterator__OrvSet_##T##Iterator OrvSet_##T##EqualRange(OrvSet_##T* bt, const T* key)       \
    {                                                                                                             \
        return OrvSetImpl_##T::EqualRange(bt, key);                                                               \
    }                                                                                                             \
    OrvPair_OrvSet_##T##ConstIterator__OrvSet_##T##ConstIterator OrvSet_##T##EqualRangeConst(const OrvSet_##T* bt, \
                                                                                             const T* key)        \
    {                                                                                                             \
        return OrvSetImpl_##T::EqualRange(bt, key);                                                               \
    }                                                                                                             \
    OrvSet_##T##SizeType OrvSet_##T##Size(const OrvSet_##T* bt) { return bt->size; }                              \
    OrvSet_##T##SizeType OrvSet_##T##MaxSize(const OrvSet_##T*) { return OrvSetImpl_##T::kMaxSize; }             \
    OrvBool OrvSet_##T##Empty(const OrvSet_##T* bt) { return bt->size == 0 ? ORV_TRUE : ORV_FALSE; }             \
    OrvAllocator* OrvSet_##T##GetAllocator(const OrvSet_##T* bt) { return bt->alloc; }                           \
    T* OrvSet_##T##Front(OrvSet_##T* bt) { return OrvSetImpl_##T::Front(bt); }                                   \
    T* OrvSet_##T##Back(OrvSet_##T* bt) { return OrvSetImpl_##T::Back(bt); }                                     \
    OrvSet_##T##Iterator OrvSet_##T##Begin(OrvSet_##T* bt) { return OrvSetImpl_##T::Begin(bt); }                 \
    OrvSet_##T##ConstIterator OrvSet_##T##BeginConst(const OrvSet_##T* bt) { return OrvSetImpl_##T::Begin(bt); } \
    OrvSet_##T##Iterator OrvSet_##T##End(OrvSet_##T* bt) { return &bt->end; }                                    \
    OrvSet_##T##ConstIterator OrvSet_##T##EndConst(const OrvSet_##T* bt) { return &bt->end; }                    \
    OrvSizeT OrvSet_##T##GetNodeSize(const OrvSet_##T*) { return OrvSetImpl_##T::kNodeSize; }                    \
    }                                                                                                             \
    ORV_GENERATE_SET_FORWARD_ITERATOR_(T, Iterator, OrvSet_##T##_Node*, T*)                                       \
    ORV_GENERATE_SET_FORWARD_ITERATOR_(T, ConstIterator, const OrvSet_##T##_Node*, const T*)                      \
    ORV_GENERATE_SET_REVERSE_ITERATOR_(T, ReverseIterator, OrvSet_##T##_Node*, T*)                                \
    ORV_GENERATE_SET_REVERSE_ITERATOR_(T, ConstReverseIterator, const OrvSet_##T##_Node*, const T*)

#define ORV_SET_ITERATOR_IMPL_(T, P, reverse) OrvSetIteratorImpl_##T<P, reverse>

// Operations shared by the forward and the reverse kinds.
#define ORV_GENERATE_SET_ITERATOR_COMMON_(T, K, P, EP, reverse)                                                 \
    void OrvSet_##T##K##Destruct(OrvSet_##T##K*) {}                                                               \
    OrvSet_##T##K* OrvSet_##T##K##ConstructCopy(OrvSet_##T##K* x, const OrvSet_##T##K* y)                         \
    {                                                                                                             \
        *x = *y;                                                                                                  \
        return x;                                                                                                 \
    }                                                                                                             \
    OrvSet_##T##K* OrvSet_##T##K##Assign(OrvSet_##T##K* x, const OrvSet_##T##K* y)                                \
    {                                                                                                             \
        *x = *y;                                                                                                  \
        return x;                                                                                                 \
    }                                                                                                             \
    OrvBool OrvSet_##T##K##Swap(OrvSet_##T##K* x, OrvSet_##T##K* y)                                               \
    {                                                                                                             \
        return ORV_SET_ITERATOR_IMPL_(T, P, reverse)::Swap(x, y);                                                 \
    }                                                                                                             \
    OrvBool OrvSet_##T##K##Equal(const OrvSet_##T##K* x, const OrvSet_##T##K* y)                                  \
    {                                                                                                             \
        return ORV_SET_ITERATOR_IMPL_(T, P, reverse)::Equal(x, y);                                                \
    }                                                                                                             \
    EP OrvSet_##T##K##ContentOf(OrvSet_##T##K* x) { return ORV_SET_ITERATOR_IMPL_(T, P, reverse)::ContentOf(x); } \
    const T* OrvSet_##T##K##ContentOfConst(const OrvSet_##T##K* x)                                                \
    {                                                                                                             \
        return ORV_SET_ITERATOR_IMPL_(T, P, reverse)::ContentOfConst(x);                                          \
    }                                                                                                             \
    OrvSet_##T##K* OrvSet_##T##K##Increment(OrvSet_##T##K* x)                                                     \
    {                                                                                                             \
        return ORV_SET_ITERATOR_IMPL_(T, P, reverse)::Increment(x);                                               \
    }                                                                                                             \
    OrvSet_##T##K* OrvSet_##T##K##Decrement(OrvSet_##T##K* x)                                                     \
    {                                                                                                             \
        return ORV_SET_ITERATOR_IMPL_(T, P, reverse)::Decrement(x);                                               \
    }                                                                                                             \
    OrvSet_##T##K* OrvSet_##T##K##ConstructExceptional(OrvSet_##T##K* x)                                          \
    {                                                                                                             \
        *x = nullptr;                                                                                             \
        return x;                                                                                                 \
    }                                                                                                             \
    OrvBool OrvSet_##T##K##IsExceptional(OrvSet_##T##K x) { return x == nullptr ? ORV_TRUE : ORV_FALSE; }

#define ORV_GENERATE_SET_FORWARD_ITERATOR_(T, K, P, EP)                                                          \
    extern "C" {                                                                                                  \
    OrvSet_##T##K* OrvSet_##T##K##Construct(OrvSet_##T##K* obj_)                                                  \
    {                                                                                                             \
        *obj_ = nullptr;                                                                                          \
        return obj_;                                                                                              \
    }                                                                                                             \
    OrvBool OrvSet_##T##K##Less(const OrvSet_##T##K* a_, const OrvSet_##T##K* b_)                                 \
    {                                                                                                             \
        return ORV_SET_ITERATOR_IMPL_(T, P, false)::Less(a_, b_);                                                 \
    }                                                                                                             \
    ORV_GENERATE_SET_ITERATOR_COMMON_(T, K, P, EP, false)                                                         \
    }

#define ORV_GENERATE_SET_REVERSE_ITERATOR_(T, K, P, EP)                                                          \
    extern "C" {                                                                                                  \
    ORV_GENERATE_SET_ITERATOR_COMMON_(T, K, P, EP, true)                                                          \
    }

#endif // ORV_SRC_CONTAINERS_AVLSET_HPP
