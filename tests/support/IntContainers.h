// The container templates over a plain integer record, for tests: its element
// operations count live elements, can fail the n-th copy (construct or assign) and can
// log every operation, which the date-time element never does.
#ifndef ORV_TESTS_SUPPORT_INTCONTAINERS_H
#define ORV_TESTS_SUPPORT_INTCONTAINERS_H

#include "Containers/AvlSet.hpp"
#include "Containers/Vector.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace orv::test {

struct TestInt {
    int64_t value;
};

struct IntElementState {
    long live = 0;         // constructed and not yet destructed
    long copies = 0;       // copy-constructs and assigns attempted
    long failCopyAt = 0;   // the copy with this number fails (0: none)
    bool logging = false;
    std::vector<std::string> log; // "C<dst value>", "A<dst value>", "D<value>"
};

IntElementState& IntState();

// Resets the state (live count included) for a new test.
void ResetIntState();

struct IntElement {
    using Value = TestInt;
    static TestInt* ConstructCopy(TestInt* d, const TestInt* s);
    static TestInt* Assign(TestInt* d, const TestInt* s); // a failed one leaves *d as it was
    static void Destruct(TestInt* d);
    static bool Less(const TestInt* a, const TestInt* b) { return a->value < b->value; }
};

// The records, laid out as the public C records of the date-time containers.
struct IntVectorRecord {
    OrvAllocator* allocator;
    TestInt* begin;
    TestInt* end;
    TestInt* endBuf;
};
struct IntNode {
    TestInt value;
    IntNode* left;
    IntNode* right;
    IntNode* parent;
    IntNode** pPtr;
    OrvSizeT height;
};
struct IntSetRecord {
    IntNode end;
    OrvSizeT size;
    OrvAllocator* alloc;
};
struct IntRecords {
    using Node = IntNode;
    using Set = IntSetRecord;
    struct InsertResult {
        IntNode* first;
        OrvBool second;
    };
    struct Range {
        IntNode* first;
        IntNode* second;
    };
    struct ConstRange {
        const IntNode* first;
        const IntNode* second;
    };
};

using IntVector = orv::containers::Vector<IntElement, IntVectorRecord>;
using IntTree = orv::containers::AvlTree<IntElement, IntRecords>;
using IntSet = orv::containers::AvlSet<IntElement, IntRecords>;

inline TestInt Int(int64_t v) { return TestInt{v}; }

} // namespace orv::test

#endif
