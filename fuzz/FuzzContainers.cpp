// The vector and the set under operation sequences decoded from the input, beside
// std::vector and std::set of instants, on allocators that fail at calls the input
// picks. After every step: the same elements in the same order, a refused operation
// changed nothing, and the tree's heights, balance, links and order hold. At the end
// every block and every zone reference has come back.
#include "FuzzSupport.h"

#include <set>
#include <vector>

using fuzz::Bytes;

namespace {

using Node = OrvSet_OrvDateTime_Node;
using Model = std::vector<OrvTime>;
constexpr OrvTime kHour = ORV_TIME_NANOSECONDS_PER_HOUR;

// Height of the subtree at n, checking balance, links and order on the way.
std::size_t CheckTree(const Node* n, const Node* parent, Node* const* link, std::vector<OrvTime>* keys)
{
    if (n == nullptr) return 0;
    FUZZ_CHECK(n->parent == parent && n->pPtr == link && *link == n);
    const std::size_t lh = CheckTree(n->left, n, &n->left, keys);
    FUZZ_CHECK(keys->empty() || keys->back() < n->value.wallTime);
    keys->push_back(n->value.wallTime);
    const std::size_t rh = CheckTree(n->right, n, &n->right, keys);
    FUZZ_CHECK(lh <= rh + 1 && rh <= lh + 1 && n->height == std::max(lh, rh) + 1);
    return n->height;
}

void CheckSet(OrvSet_OrvDateTime* s, const std::set<OrvTime>& model)
{
    std::vector<OrvTime> keys, walked;
    FUZZ_CHECK(s->end.right == nullptr && s->end.parent == nullptr && s->end.pPtr == nullptr);
    CheckTree(s->end.left, &s->end, &s->end.left, &keys);
    for (OrvSet_OrvDateTimeReverseIterator it = OrvSet_OrvDateTimeEnd(s); it != OrvSet_OrvDateTimeBegin(s);
         OrvSet_OrvDateTimeReverseIteratorIncrement(&it))
        walked.insert(walked.begin(), OrvSet_OrvDateTimeReverseIteratorContentOf(&it)->wallTime);
    FUZZ_CHECK(keys == Model(model.begin(), model.end()) && walked == keys && OrvSet_OrvDateTimeSize(s) == keys.size());
}

void CheckVector(const OrvVector_OrvDateTime* v, const Model& model)
{
    FUZZ_CHECK(OrvVector_OrvDateTimeSize(v) == model.size() && OrvVector_OrvDateTimeCapacity(v) >= model.size());
    for (std::size_t i = 0; i < model.size(); ++i) FUZZ_CHECK(OrvVector_OrvDateTimeAtConst(v, i)->wallTime == model[i]);
}

struct Session {
    fuzz::Allocator alloc[2];
    OrvTimezone counted;
    OrvVector_OrvDateTime v[2];
    Model mv[2];
    OrvSet_OrvDateTime s[2];
    std::set<OrvTime> ms[2];

    // A value at one of 32 hours, in one of four zones: equal instants in other zones
    // are one key of the set.
    OrvDateTime Value(Bytes& in)
    {
        const std::uint8_t b = in.U8();
        const OrvTimezone* zones[] = {nullptr, OrvFixedTimezoneGetUTC(), fuzz::Zone(5), &counted};
        OrvDateTime d;
        FUZZ_CHECK(OrvDateTimeConstruct(&d, (b % 32) * kHour, zones[b / 32 % 4]));
        return d;
    }

    void VectorStep(Bytes& in, std::uint8_t op, int i)
    {
        OrvVector_OrvDateTime* x = &v[i];
        Model& m = mv[i];
        const OrvVector_OrvDateTime old = *x;
        const std::size_t size = m.size(), at = size == 0 ? 0 : in.U8() % (size + 1), n = in.U8() % 6;
        OrvDateTime* pos = OrvVector_OrvDateTimeBegin(x) + at;
        OrvDateTime t = Value(in);
        // An element of the vector itself half of the time: it may move while it is copied.
        const OrvDateTime* src = size != 0 && (n & 1) ? OrvVector_OrvDateTimeAt(x, at % size) : &t;
        const OrvTime key = src->wallTime;
        bool ok = true;
        switch (op % 12) {
        case 0: if ((ok = OrvVector_OrvDateTimePushBack(x, src))) m.push_back(key); break;
        case 1: if (size != 0) { OrvVector_OrvDateTimePopBack(x); m.pop_back(); } break;
        case 2: if ((ok = OrvVector_OrvDateTimeInsert(x, pos, src) != nullptr)) m.insert(m.begin() + at, key); break;
        case 3: if ((ok = OrvVector_OrvDateTimeInsertN(x, pos, n, src))) m.insert(m.begin() + at, n, key); break;
        case 4: {
            const std::size_t first = size == 0 ? 0 : at % size, last = std::min(size, first + n);
            const Model part(m.begin() + first, m.begin() + last);
            const OrvDateTime* b = OrvVector_OrvDateTimeBeginConst(x);
            if ((ok = OrvVector_OrvDateTimeInsertRange(x, pos, b + first, b + last))) m.insert(m.begin() + at, part.begin(), part.end());
            break;
        }
        case 5: if (at < size) { FUZZ_CHECK(OrvVector_OrvDateTimeErase(x, pos) == pos); m.erase(m.begin() + at); } break;
        case 6: {
            const std::size_t last = std::min(size, at + n);
            FUZZ_CHECK(OrvVector_OrvDateTimeEraseRange(x, pos, OrvVector_OrvDateTimeBegin(x) + last) == pos);
            m.erase(m.begin() + at, m.begin() + last);
            break;
        }
        case 7: ok = OrvVector_OrvDateTimeReserve(x, at + n * 8); break;
        case 8: if ((ok = OrvVector_OrvDateTimeResize(x, at + n, src))) m.resize(at + n, key); break;
        case 9: OrvVector_OrvDateTimeClear(x); m.clear(); break;
        case 10:
            if (!OrvVector_OrvDateTimeAssign(x, &v[1 - i])) {
                FUZZ_CHECK(x->begin == nullptr && x->end == nullptr);
                m.clear();
            } else {
                m = mv[1 - i];
            }
            break;
        default:
            if ((ok = OrvVector_OrvDateTimeSwap(x, &v[1 - i]))) std::swap(m, mv[1 - i]);
            break;
        }
        if (!ok) FUZZ_CHECK(old.begin == x->begin && old.end == x->end && old.endBuf == x->endBuf);
        OrvDateTimeDestruct(&t);
    }

    void SetStep(Bytes& in, std::uint8_t op, int i)
    {
        OrvSet_OrvDateTime* x = &s[i];
        std::set<OrvTime>& m = ms[i];
        OrvDateTime key = Value(in), key2 = Value(in);
        const OrvTime k = key.wallTime, k2 = key2.wallTime;
        OrvSet_OrvDateTimeIterator end = OrvSet_OrvDateTimeEnd(x);
        const auto next = [&](OrvTime t) { const auto it = m.upper_bound(t); return it == m.end() ? INT64_MAX : *it; };
        const auto at = [&](OrvSet_OrvDateTimeIterator it) { return it == end ? INT64_MAX : it->value.wallTime; };
        switch (op % 8) {
        case 0: {
            const OrvPair_OrvSet_OrvDateTimeIterator__OrvBool r = OrvSet_OrvDateTimeInsert(x, &key);
            if (r.first == end) break; // out of memory: the set is checked as it was
            FUZZ_CHECK(r.second == m.insert(k).second && r.first->value.wallTime == k);
            break;
        }
        case 1: FUZZ_CHECK(OrvSet_OrvDateTimeEraseKey(x, &key) == m.erase(k)); break;
        case 2: {
            const OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeFind(x, &key);
            FUZZ_CHECK((it != end) == m.contains(k) && OrvSet_OrvDateTimeCount(x, &key) == m.count(k));
            if (it != end) {
                FUZZ_CHECK(at(OrvSet_OrvDateTimeErase(x, it)) == next(k));
                m.erase(k);
            }
            break;
        }
        case 3: {
            const OrvSet_OrvDateTimeIterator lo = OrvSet_OrvDateTimeLowerBound(x, &key);
            const OrvSet_OrvDateTimeIterator hi = OrvSet_OrvDateTimeUpperBound(x, &key2);
            FUZZ_CHECK(at(lo) == (m.contains(k) ? k : next(k)) && at(hi) == next(k2));
            if (k <= k2) {
                FUZZ_CHECK(OrvSet_OrvDateTimeEraseRange(x, lo, hi) == hi);
                m.erase(m.lower_bound(k), m.upper_bound(k2));
            }
            break;
        }
        case 4: OrvSet_OrvDateTimeClear(x); m.clear(); break;
        case 5: if (OrvSet_OrvDateTimeAssign(x, &s[1 - i])) m = ms[1 - i]; break;
        case 6: if (OrvSet_OrvDateTimeSwap(x, &s[1 - i])) std::swap(m, ms[1 - i]); break;
        default: {
            OrvSet_OrvDateTime copy;
            if (OrvSet_OrvDateTimeConstructCopy(&copy, x)) {
                CheckSet(&copy, m);
                OrvSet_OrvDateTimeDestruct(&copy);
            }
        }
        }
        OrvDateTimeDestruct(&key);
        OrvDateTimeDestruct(&key2);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::SilenceLog();
    Bytes in{data, size};
    Session s;
    s.alloc[0].failMask = in.Raw<std::uint64_t>();
    s.alloc[1].failMask = in.Raw<std::uint16_t>();
    fuzz::Allocator zoneAlloc;
    FUZZ_CHECK(OrvFixedTimezoneConstruct(&s.counted, 3 * kHour, &zoneAlloc.base));
    for (int i = 0; i < 2; ++i) {
        OrvVector_OrvDateTimeConstructDefault(&s.v[i], &s.alloc[i].base);
        OrvSet_OrvDateTimeConstruct(&s.s[i], &s.alloc[i].base);
    }
    for (int step = 0; step < 64 && in.More(); ++step) {
        const std::uint8_t op = in.U8();
        const int i = op >> 7;
        if (op & 0x40) s.SetStep(in, op, i);
        else s.VectorStep(in, op, i);
        for (int k = 0; k < 2; ++k) {
            CheckVector(&s.v[k], s.mv[k]);
            CheckSet(&s.s[k], s.ms[k]);
        }
    }
    for (int i = 0; i < 2; ++i) {
        OrvVector_OrvDateTimeDestruct(&s.v[i]);
        OrvSet_OrvDateTimeDestruct(&s.s[i]);
        FUZZ_CHECK(s.alloc[i].live.empty());
    }
    FUZZ_CHECK(OrvTimezoneGetUseCount(&s.counted) == 1);
    OrvTimezoneDestruct(&s.counted);
    return 0;
}
