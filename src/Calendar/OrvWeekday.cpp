// Two-letter weekday codes, as used in recurrence rules: SU MO TU WE TH FR SA.
#include "Orv/Calendar/OrvDateTime.h"
#include "Orv/Utils/OrvCLib.h"

#include <cstring>

namespace {

// Indexed by OrvWeekday, Sunday (0) to Saturday (6).
constexpr const char* kCodes[7] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

} // namespace

OrvWeekday* OrvWeekdayConstructCStr(OrvWeekday* w, const char* str)
{
    for (int i = 0; i < 7; ++i) {
        if (OrvStrCaseCmp(str, kCodes[i]) == 0) {
            *w = static_cast<OrvWeekday>(i);
            return w;
        }
    }
    *w = ORV_WEEKDAY_NoWeekday;
    return nullptr;
}

OrvBool OrvWeekdayAppendToString(const OrvWeekday* w, OrvString* str)
{
    // Read as the plain int a C caller may have stored (any value, not only the
    // enumerators); as an unsigned number every negative one is out of the table too.
    int raw = 0;
    std::memcpy(&raw, w, sizeof raw);
    const auto index = static_cast<unsigned>(raw);
    if (index >= 7) return ORV_FALSE;
    return OrvStringAppendCStr(str, kCodes[index]) != nullptr ? ORV_TRUE : ORV_FALSE;
}
