// OrvSet_OrvDateTime: the library's AVL set instantiated for date-time values, ordered
// by OrvDateTimeLess.
#include "Containers/AvlSet.hpp"
#include "Calendar/OrvDateTimeElement.hpp"

#include <cstddef>

// The records are public layout: pin them.
static_assert(sizeof(OrvSet_OrvDateTime_Node) == 136);
static_assert(offsetof(OrvSet_OrvDateTime_Node, value) == 0);
static_assert(offsetof(OrvSet_OrvDateTime_Node, left) == 96);
static_assert(offsetof(OrvSet_OrvDateTime_Node, right) == 104);
static_assert(offsetof(OrvSet_OrvDateTime_Node, parent) == 112);
static_assert(offsetof(OrvSet_OrvDateTime_Node, pPtr) == 120);
static_assert(offsetof(OrvSet_OrvDateTime_Node, height) == 128);
static_assert(sizeof(OrvSet_OrvDateTime) == 152);
static_assert(offsetof(OrvSet_OrvDateTime, end) == 0);
static_assert(offsetof(OrvSet_OrvDateTime, size) == 136);
static_assert(offsetof(OrvSet_OrvDateTime, alloc) == 144);
static_assert(sizeof(OrvPair_OrvSet_OrvDateTimeIterator__OrvBool) == 16);
static_assert(offsetof(OrvPair_OrvSet_OrvDateTimeIterator__OrvBool, second) == 8);
static_assert(sizeof(OrvPair_OrvSet_OrvDateTimeIterator__OrvSet_OrvDateTimeIterator) == 16);
static_assert(sizeof(OrvPair_OrvSet_OrvDateTimeConstIterator__OrvSet_OrvDateTimeConstIterator) == 16);

ORV_GENERATE_SET(OrvDateTime, orv::detail::DateTimeElement)
