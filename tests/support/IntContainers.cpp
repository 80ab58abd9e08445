#include "support/IntContainers.h"

namespace orv::test {

IntElementState& IntState()
{
    static IntElementState state;
    return state;
}

void ResetIntState() { IntState() = IntElementState{}; }

namespace {

bool CopyFails()
{
    IntElementState& s = IntState();
    return ++s.copies == s.failCopyAt;
}

void Log(char what, int64_t v)
{
    if (IntState().logging) IntState().log.push_back(what + std::to_string(v));
}

} // namespace

TestInt* IntElement::ConstructCopy(TestInt* d, const TestInt* s)
{
    if (CopyFails()) return nullptr;
    d->value = s->value;
    ++IntState().live;
    Log('C', d->value);
    return d;
}

TestInt* IntElement::Assign(TestInt* d, const TestInt* s)
{
    if (CopyFails()) return nullptr;
    d->value = s->value;
    Log('A', d->value);
    return d;
}

void IntElement::Destruct(TestInt* d)
{
    --IntState().live;
    Log('D', d->value);
    d->value = -999999; // a destructed slot must never be read again
}

} // namespace orv::test
