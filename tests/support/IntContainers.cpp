#include "support/IntContainers.h"

#include "Containers/AvlSet.hpp"
#include "Containers/Vector.hpp"

namespace orv::test {

IntElementState& IntState()
{
    static IntElementState state;
    return state;
}

void ResetIntState() { IntState() = IntElementState{}; }

namespace {

struct IntElement {
    using Value = OrvTestInt;

    static bool CopyFails()
    {
        IntElementState& s = IntState();
        return ++s.copies == s.failCopyAt;
    }
    static void Log(char what, int64_t v)
    {
        if (IntState().logging) IntState().log.push_back(what + std::to_string(v));
    }
    static OrvTestInt* ConstructCopy(OrvTestInt* d, const OrvTestInt* s)
    {
        if (CopyFails()) return nullptr;
        d->value = s->value;
        ++IntState().live;
        Log('C', d->value);
        return d;
    }
    static OrvTestInt* Assign(OrvTestInt* d, const OrvTestInt* s)
    {
        if (CopyFails()) return nullptr;
        d->value = s->value;
        Log('A', d->value);
        return d;
    }
    static void Destruct(OrvTestInt* d)
    {
        --IntState().live;
        Log('D', d->value);
        d->value = -999999; // a destructed slot must never be read again
    }
    static bool Less(const OrvTestInt* a, const OrvTestInt* b) { return a->value < b->value; }
};

} // namespace

} // namespace orv::test

ORV_GENERATE_VECTOR(OrvTestInt, orv::test::IntElement)
ORV_GENERATE_SET(OrvTestInt, orv::test::IntElement)
