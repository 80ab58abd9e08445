// The bodies of OrvStrLCpy and OrvStrToUint32, inline, so that the library's own hot
// paths (the text-form parser) get them specialised for their constant sizes and base
// without a call. OrvCLib.cpp defines the exported functions with these same bodies,
// so both behave exactly alike: as strlcpy and strtoul in the "C" locale.
#ifndef ORV_SRC_UTILS_ORVCLIBINLINE_HPP
#define ORV_SRC_UTILS_ORVCLIBINLINE_HPP

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

#include <cerrno>
#include <climits>
#include <cstring>

namespace orv::clib {

constexpr bool IsSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr int DigitValue(unsigned char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 99;
}

inline OrvSizeT StrLCpy(char* dst, const char* src, OrvSizeT size)
{
    // Short copies (the parser's fields) byte by byte, without a call to memcpy.
    OrvSizeT n = 0;
    if (size != 0) {
        for (; n + 1 < size && src[n] != '\0'; ++n) dst[n] = src[n];
        dst[n] = '\0';
        if (src[n] == '\0') return n;
    }
    return n + std::strlen(src + n);
}

inline OrvUint32 StrToUint32(const char* start, char** end, OrvInt base)
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
    if (base == 10) {
        // The common case. Nineteen decimal digits cannot overflow 64 bits, so the
        // limits are tested only from the twentieth on.
        static_assert(sizeof(unsigned long) == 8);
        constexpr unsigned long cutoff = ULONG_MAX / 10;
        constexpr unsigned long cutlim = ULONG_MAX % 10;
        unsigned v = 0;
        for (int n = 0; n < 19 && (v = static_cast<unsigned>(*p) - '0') < 10; ++n, ++p) value = value * 10 + v;
        for (; (v = static_cast<unsigned>(*p) - '0') < 10; ++p) {
            if (value > cutoff || (value == cutoff && v > cutlim)) overflow = true;
            else value = value * 10 + v;
        }
    } else {
        const auto ubase = static_cast<unsigned long>(base);
        const unsigned long cutoff = ULONG_MAX / ubase;
        const unsigned long cutlim = ULONG_MAX % ubase;
        for (int v; (v = DigitValue(*p)) < base; ++p) {
            const auto uv = static_cast<unsigned long>(v);
            if (value > cutoff || (value == cutoff && uv > cutlim)) overflow = true;
            else value = value * ubase + uv;
        }
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

} // namespace orv::clib

#endif // ORV_SRC_UTILS_ORVCLIBINLINE_HPP
