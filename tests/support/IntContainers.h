// A second instantiation of the containers, over a plain integer record, for tests:
// its element operations count live elements, can fail the n-th copy (construct or
// assign) and can log every operation, which the date-time element never does.
#ifndef ORV_TESTS_SUPPORT_INTCONTAINERS_H
#define ORV_TESTS_SUPPORT_INTCONTAINERS_H

#include "Orv/Utils/OrvSetDecl.h"
#include "Orv/Utils/OrvVectorDecl.h"

#include <cstdint>
#include <string>
#include <vector>

extern "C" {
typedef struct OrvTestInt {
    int64_t value;
} OrvTestInt;

ORV_DECLARE_VECTOR(OrvTestInt)
ORV_DECLARE_SET(OrvTestInt)
}

namespace orv::test {

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

inline OrvTestInt Int(int64_t v) { return OrvTestInt{v}; }

} // namespace orv::test

#endif
