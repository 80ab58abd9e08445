// C-library wrappers with the C locale's behaviour, written out so that the hot paths
// (parsing and comparing short fields) pay for no locale look-up.
#include "Orv/Utils/OrvCLib.h"

#include "Utils/OrvCLibInline.hpp"

#include <cstring>

namespace {

constexpr unsigned char ToLower(unsigned char c) { return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + 32) : c; }

} // namespace

OrvSizeT OrvStrLCpy(char* dst, const char* src, OrvSizeT size) { return orv::clib::StrLCpy(dst, src, size); }

OrvSizeT OrvStrLen(const char* s) { return std::strlen(s); }

OrvUint32 OrvStrToUint32(const char* start, char** end, OrvInt base)
{
    return orv::clib::StrToUint32(start, end, base);
}

OrvInt OrvStrCaseCmp(const char* a, const char* b)
{
    const auto* pa = reinterpret_cast<const unsigned char*>(a);
    const auto* pb = reinterpret_cast<const unsigned char*>(b);
    for (;; ++pa, ++pb) {
        int d = ToLower(*pa) - ToLower(*pb);
        if (d != 0 || *pa == '\0') return d;
    }
}
