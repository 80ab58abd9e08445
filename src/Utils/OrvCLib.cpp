// C-library wrappers with the C locale's behaviour, written out so that the hot paths
// (parsing and comparing short fields) pay for no locale look-up.
#include "Orv/Utils/OrvCLib.h"

#include <cerrno>
#include <climits>
#include <cstring>

namespace {

constexpr bool IsSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr int DigitValue(unsigned char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 99;
}

constexpr unsigned char ToLower(unsigned char c) { return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + 32) : c; }

} // namespace

OrvSizeT OrvStrLCpy(char* dst, const char* src, OrvSizeT size)
{
    OrvSizeT len = std::strlen(src);
    if (size != 0) {
        OrvSizeT n = len < size - 1 ? len : size - 1;
        std::memcpy(dst, src, n);
        dst[n] = '\0';
    }
    return len;
}

OrvSizeT OrvStrLen(const char* s) { return std::strlen(s); }

OrvUint32 OrvStrToUint32(const char* start, char** end, OrvInt base)
{
    const auto* p = reinterpret_cast<const unsigned char*>(start);
    if (base < 0 || base == 1 || base > 36) {
        errno = EINVAL;
        if (end != nullptr) *end = const_cast<char*>(start);
        return 0;
    }
    while (IsSpace(*p)) ++p;
    bool negative = false;
    if (*p == '+' || *p == '-') negative = *p++ == '-';
    if ((base == 0 || base == 16) && p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && DigitValue(p[2]) < 16) {
        p += 2;
        base = 16;
    } else if (base == 0) {
        base = p[0] == '0' ? 8 : 10;
    }
    const unsigned char* digits = p;
    unsigned long value = 0;
    bool overflow = false;
    for (int v; (v = DigitValue(*p)) < base; ++p) {
        if (value > (ULONG_MAX - static_cast<unsigned long>(v)) / static_cast<unsigned long>(base)) overflow = true;
        else value = value * static_cast<unsigned long>(base) + static_cast<unsigned long>(v);
    }
    if (p == digits) {
        // Nothing converted: strtoul reports the start, before any blank or sign.
        if (end != nullptr) *end = const_cast<char*>(start);
        return 0;
    }
    if (end != nullptr) *end = const_cast<char*>(reinterpret_cast<const char*>(p));
    if (overflow) {
        errno = ERANGE;
        return static_cast<OrvUint32>(ULONG_MAX);
    }
    return static_cast<OrvUint32>(negative ? 0UL - value : value);
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
