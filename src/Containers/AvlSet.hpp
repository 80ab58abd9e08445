// The ordered set with unique keys behind OrvSet_OrvDateTime: the operations on the
// set record (its sentinel node, size and allocator) over the AVL tree of AvlTree.hpp.
// The C entry points that call it are in src/Calendar/OrvDateTimeSet.cpp.
#ifndef ORV_SRC_CONTAINERS_AVLSET_HPP
#define ORV_SRC_CONTAINERS_AVLSET_HPP

#include "Containers/AvlTree.hpp"

namespace orv::containers {

template <class E, class B>
class AvlSet {
public:
    using Tree = AvlTree<E, B>;
    using T = typename E::Value;
    using Node = typename B::Node;
    using Set = typename B::Set;
    using InsertResult = typename B::InsertResult;
    using Range = typename B::Range;
    using ConstRange = typename B::ConstRange;
    using Size = OrvSizeT;

    static constexpr Size kNodeSize = Tree::kNodeSize;
    static constexpr Size kMaxSize = ~Size{0};

    // From this many nodes on (about a megabyte of them) insertion and erasure fetch
    // ahead on their way down (see AvlTree); a smaller tree that is being changed is
    // usually in the nearer caches already.
    static constexpr Size kPrefetchFrom = Size{1} << 13;

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
            root = Tree::Copy(s->end.left, &d->end, &d->end.left, s->alloc);
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
            tree = Tree::Copy(s->end.left, &d->end, &d->end.left, d->alloc);
            if (tree == nullptr) return nullptr;
        }
        if (d->end.left != nullptr) Tree::Delete(d->end.left, d->alloc);
        d->end.left = tree;
        d->size = s->size;
        return d;
    }

    static void Destruct(Set* s)
    {
        if (s->end.left != nullptr) Tree::Delete(s->end.left, s->alloc);
    }

    static void Clear(Set* s)
    {
        if (s->end.left == nullptr) return;
        Tree::Delete(s->end.left, s->alloc);
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
        Node* node = Tree::AllocateNode(s->alloc);
        if (node == nullptr) return InsertResult{&s->end, ORV_FALSE};
        if (E::ConstructCopy(&node->value, value) == nullptr) {
            Tree::DeallocateNode(s->alloc, node);
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
        InsertResult result = s->size >= kPrefetchFrom ? Tree::template Insert<true>(s->end.left, node)
                                                       : Tree::template Insert<false>(s->end.left, node);
        if (result.second) {
            ++s->size;
        } else {
            Tree::Delete(node, s->alloc);
        }
        return result;
    }

    // Removes node (see Unlink). Returns node's successor.
    static Node* Erase(Set* s, Node* node)
    {
        Node* const next = Tree::Successor(node);
        Unlink(s, node);
        return next;
    }

    // Removes node by relinking: a substitute (the in-order predecessor when node has
    // a left subtree, else the successor) is unlinked from its place, the tree is
    // rebalanced from there with node still in it, and the substitute then takes
    // node's links and height. No value moves.
    static void Unlink(Set* s, Node* node)
    {
        Node* sub = nullptr;
        Node* climbFrom;
        if (node->left != nullptr || node->right != nullptr) {
            Node* lifted;
            if (node->left != nullptr) {
                sub = Tree::Maximum(node->left);
                lifted = sub->left;
            } else {
                sub = Tree::Minimum(node->right);
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
        Tree::Balance(climbFrom, true);
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
        Tree::Release(node, s->alloc);
        --s->size;
    }

    static Node* EraseRange(Set* s, Node* first, Node* last)
    {
        while (first != last) first = Erase(s, first);
        return last;
    }

    // Keys are unique: the node Find gives, if any, is the one element to erase.
    static Size EraseKey(Set* s, const T* key)
    {
        if (s->end.left == nullptr) return 0;
        Node* found = s->size >= kPrefetchFrom ? Tree::template Find<Node, true>(RootOf(s), key)
                                               : Tree::template Find<Node, false>(RootOf(s), key);
        if (found == nullptr) return 0;
        Unlink(s, found);
        return 1;
    }

    // The searches give the end position where the node functions give null, and
    // compare nothing on an empty set. S is Set or const Set.
    template <class S>
    static auto FindIn(S* s, const T* key) -> decltype(&s->end)
    {
        if (s->end.left == nullptr) return &s->end;
        auto* found = Tree::Find(RootOf(s), key);
        return found != nullptr ? found : &s->end;
    }

    template <class S>
    static auto LowerBoundIn(S* s, const T* key) -> decltype(&s->end)
    {
        if (s->end.left == nullptr) return &s->end;
        auto* found = Tree::LowerBound(RootOf(s), key);
        return found != nullptr ? found : &s->end;
    }

    template <class S>
    static auto UpperBoundIn(S* s, const T* key) -> decltype(&s->end)
    {
        if (s->end.left == nullptr) return &s->end;
        auto* found = Tree::UpperBound(RootOf(s), key);
        return found != nullptr ? found : &s->end;
    }

    // An absent key gives the end position twice.
    static Range EqualRange(Set* s, const T* key) { return EqualRangeIn<Range>(s, key); }
    static ConstRange EqualRange(const Set* s, const T* key) { return EqualRangeIn<ConstRange>(s, key); }

    static Size Count(const Set* s, const T* key)
    {
        return s->end.left != nullptr && Tree::Find(RootOf(s), key) != nullptr ? 1 : 0;
    }

    template <class S>
    static auto Begin(S* s) -> decltype(&s->end)
    {
        return s->end.left != nullptr ? Tree::Minimum(RootOf(s)) : &s->end;
    }

    static T* Front(Set* s) { return s->end.left != nullptr ? &Tree::Minimum(s->end.left)->value : nullptr; }
    static T* Back(Set* s) { return s->end.left != nullptr ? &Tree::Maximum(s->end.left)->value : nullptr; }

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
        Tree::ValidateSubtree(root, &count, &prev, &fault);
        if (fault != nullptr) return fault;
        return count == s->size ? nullptr : "size differs from the number of nodes";
    }

private:
    static Node* RootOf(Set* s) { return s->end.left; }
    static const Node* RootOf(const Set* s) { return s->end.left; }

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
        R range = Tree::template EqualRange<R>(RootOf(s), key);
        if (range.first == nullptr) return R{&s->end, &s->end};
        return range;
    }
};

} // namespace orv::containers

#endif // ORV_SRC_CONTAINERS_AVLSET_HPP
