// Growable string over the caller's allocator.
//
// OrvStringAssignFormatted takes a fast path for the formats the library itself uses
// (%d, %u, %s, %c and %% with the '0' and '-' flags, a width and the l/ll lengths):
// they are written directly, with the exact output printf would give. Any other
// directive falls back to vsnprintf, so the behaviour is always the standard one.
#include "Orv/Utils/OrvString.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

char gEmpty[1] = {'\0'};

// Makes room for n characters plus the terminating zero. False on allocation failure,
// with the string unchanged.
bool Grow(OrvString* s, OrvSizeT n)
{
    if (n < s->capacity) return true;
    if (n == ~OrvSizeT{0}) return false;
    OrvSizeT want = n + 1;
    OrvSizeT doubled = s->capacity * 2;
    if (doubled > want) want = doubled;
    if (want < 16) want = 16;
    auto* buf = static_cast<char*>(OrvAllocatorAllocate(s->allocator, want));
    if (buf == nullptr) return false;
    if (s->buf != nullptr) {
        std::memcpy(buf, s->buf, s->size + 1);
        OrvAllocatorDeallocate(s->allocator, s->buf, s->capacity);
    } else {
        buf[0] = '\0';
    }
    s->buf = buf;
    s->capacity = want;
    return true;
}

// One parsed directive of the fast formatter.
struct Directive {
    bool zeroPad = false;
    bool leftAlign = false;
    int width = 0;
    int longs = 0;  // 0, 1 (l) or 2 (ll)
    char conv = 0;  // d, i, u, s, c or %
};

// Parses the directive after '%'. Returns the position after it, or null when the
// fast path does not handle it.
const char* ParseDirective(const char* p, Directive* out)
{
    Directive d;
    for (;; ++p) {
        if (*p == '0') d.zeroPad = true;
        else if (*p == '-') d.leftAlign = true;
        else break;
    }
    while (*p >= '0' && *p <= '9') {
        if (d.width > 4096) return nullptr;
        d.width = d.width * 10 + (*p++ - '0');
    }
    while (*p == 'l' && d.longs < 2) {
        ++d.longs;
        ++p;
    }
    switch (*p) {
    case 'd': case 'i': case 'u': break;
    case 's': case 'c':
        // printf leaves '0' with these undefined: leave such formats to vsnprintf.
        if (d.longs != 0 || d.zeroPad) return nullptr;
        break;
    case '%':
        if (d.longs != 0 || d.zeroPad || d.leftAlign || d.width != 0) return nullptr;
        break;
    default: return nullptr;
    }
    d.conv = *p;
    *out = d;
    return p + 1;
}

bool FastPathHandles(const char* format)
{
    for (const char* p = format; *p != '\0';) {
        if (*p++ != '%') continue;
        Directive d;
        p = ParseDirective(p, &d);
        if (p == nullptr) return false;
    }
    return true;
}

// Appends text of length len padded to the directive's width.
void EmitPadded(char* out, OrvSizeT* pos, const Directive& d, const char* sign, const char* text, OrvSizeT len)
{
    OrvSizeT signLen = std::strlen(sign);
    OrvSizeT total = signLen + len;
    OrvSizeT pad = static_cast<OrvSizeT>(d.width) > total ? static_cast<OrvSizeT>(d.width) - total : 0;
    if (pad != 0 && !d.leftAlign && !d.zeroPad) {
        std::memset(out + *pos, ' ', pad);
        *pos += pad;
    }
    std::memcpy(out + *pos, sign, signLen);
    *pos += signLen;
    if (pad != 0 && !d.leftAlign && d.zeroPad) {
        std::memset(out + *pos, '0', pad);
        *pos += pad;
    }
    std::memcpy(out + *pos, text, len);
    *pos += len;
    if (pad != 0 && d.leftAlign) {
        std::memset(out + *pos, ' ', pad);
        *pos += pad;
    }
}

OrvSizeT DigitsOf(unsigned long long v, char* tmp)
{
    char rev[24];
    OrvSizeT n = 0;
    do {
        rev[n++] = static_cast<char>('0' + v % 10);
        v /= 10;
    } while (v != 0);
    for (OrvSizeT i = 0; i < n; ++i) tmp[i] = rev[n - 1 - i];
    return n;
}

// Upper bound of the output of one directive other than %s.
OrvSizeT Bound(const Directive& d) { return static_cast<OrvSizeT>(d.width) + 24; }

OrvString* FastFormat(OrvString* s, const char* format, va_list args)
{
    // First pass: the exact-enough size bound (strings measured, numbers bounded).
    OrvSizeT bound = 0;
    {
        va_list scan;
        va_copy(scan, args);
        for (const char* p = format; *p != '\0';) {
            if (*p != '%') {
                ++bound;
                ++p;
                continue;
            }
            Directive d;
            p = ParseDirective(p + 1, &d);
            switch (d.conv) {
            case 's': {
                const char* str = va_arg(scan, const char*);
                OrvSizeT len = std::strlen(str != nullptr ? str : "(null)");
                bound += len > static_cast<OrvSizeT>(d.width) ? len : static_cast<OrvSizeT>(d.width);
                break;
            }
            case 'c': (void)va_arg(scan, int); bound += Bound(d); break;
            case '%': bound += 1; break;
            default:
                if (d.longs == 2) (void)va_arg(scan, long long);
                else if (d.longs == 1) (void)va_arg(scan, long);
                else (void)va_arg(scan, int);
                bound += Bound(d);
                break;
            }
        }
        va_end(scan);
    }

    char local[256];
    char* out = local;
    OrvSizeT outCap = sizeof local;
    if (bound + 1 > outCap) {
        outCap = bound + 1;
        out = static_cast<char*>(OrvAllocatorAllocate(s->allocator, outCap));
        if (out == nullptr) return nullptr;
    }
    OrvSizeT pos = 0;
    for (const char* p = format; *p != '\0';) {
        if (*p != '%') {
            out[pos++] = *p++;
            continue;
        }
        Directive d;
        p = ParseDirective(p + 1, &d);
        char digits[24];
        switch (d.conv) {
        case '%': out[pos++] = '%'; break;
        case 'c': {
            char c = static_cast<char>(va_arg(args, int));
            EmitPadded(out, &pos, d, "", &c, 1);
            break;
        }
        case 's': {
            const char* str = va_arg(args, const char*);
            if (str == nullptr) str = "(null)";
            EmitPadded(out, &pos, d, "", str, std::strlen(str));
            break;
        }
        case 'u': {
            unsigned long long v;
            if (d.longs == 2) v = va_arg(args, unsigned long long);
            else if (d.longs == 1) v = va_arg(args, unsigned long);
            else v = va_arg(args, unsigned int);
            EmitPadded(out, &pos, d, "", digits, DigitsOf(v, digits));
            break;
        }
        default: {
            long long v;
            if (d.longs == 2) v = va_arg(args, long long);
            else if (d.longs == 1) v = va_arg(args, long);
            else v = va_arg(args, int);
            // Magnitude without overflow for LLONG_MIN.
            unsigned long long mag = v < 0 ? 0ULL - static_cast<unsigned long long>(v) : static_cast<unsigned long long>(v);
            EmitPadded(out, &pos, d, v < 0 ? "-" : "", digits, DigitsOf(mag, digits));
            break;
        }
        }
    }
    out[pos] = '\0';

    OrvString* result = s;
    if (out != local) {
        // The formatted text already sits in a block of our allocator: adopt it.
        if (s->buf != nullptr) OrvAllocatorDeallocate(s->allocator, s->buf, s->capacity);
        s->buf = out;
        s->capacity = outCap;
        s->size = pos;
    } else if (Grow(s, pos)) {
        std::memcpy(s->buf, out, pos + 1);
        s->size = pos;
    } else {
        result = nullptr;
    }
    return result;
}

OrvString* SlowFormat(OrvString* s, const char* format, va_list args)
{
    va_list measure;
    va_copy(measure, args);
    int n = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (n < 0) return nullptr;
    OrvSizeT len = static_cast<OrvSizeT>(n);
    // Format into a separate block so the old content survives a failure.
    OrvSizeT cap = len + 1 < 16 ? 16 : len + 1;
    auto* buf = static_cast<char*>(OrvAllocatorAllocate(s->allocator, cap));
    if (buf == nullptr) return nullptr;
    std::vsnprintf(buf, static_cast<std::size_t>(cap), format, args);
    if (s->buf != nullptr) OrvAllocatorDeallocate(s->allocator, s->buf, s->capacity);
    s->buf = buf;
    s->capacity = cap;
    s->size = len;
    return s;
}

OrvString* Append(OrvString* s, const char* text, OrvSizeT len)
{
    if (s->size + len < s->size || !Grow(s, s->size + len)) return nullptr;
    std::memcpy(s->buf + s->size, text, len);
    s->size += len;
    s->buf[s->size] = '\0';
    return s;
}

} // namespace

OrvString* OrvStringConstruct(OrvString* s, OrvAllocator* a)
{
    if (s == nullptr || a == nullptr) return nullptr;
    s->allocator = a;
    s->buf = nullptr;
    s->size = 0;
    s->capacity = 0;
    return s;
}

void OrvStringDestruct(OrvString* s)
{
    if (s->buf != nullptr) OrvAllocatorDeallocate(s->allocator, s->buf, s->capacity);
    s->buf = nullptr;
    s->size = 0;
    s->capacity = 0;
}

const char* OrvStringCStr(const OrvString* s) { return s->buf != nullptr ? s->buf : gEmpty; }

OrvSizeT OrvStringLength(const OrvString* s) { return s->size; }

OrvString* OrvStringReserve(OrvString* s, OrvSizeT n) { return Grow(s, n) ? s : nullptr; }

void OrvStringClear(OrvString* s)
{
    s->size = 0;
    if (s->buf != nullptr) s->buf[0] = '\0';
}

OrvString* OrvStringAssignCStr(OrvString* s, const char* cstr)
{
    OrvSizeT len = std::strlen(cstr);
    if (!Grow(s, len)) return nullptr;
    std::memmove(s->buf, cstr, len);  // cstr may point into s itself
    s->buf[len] = '\0';
    s->size = len;
    return s;
}

OrvString* OrvStringAssignFormatted(OrvString* s, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    OrvString* result = FastPathHandles(format) ? FastFormat(s, format, args) : SlowFormat(s, format, args);
    va_end(args);
    return result;
}

OrvString* OrvStringAppendChar(OrvString* s, char c) { return Append(s, &c, 1); }

OrvString* OrvStringAppendCStr(OrvString* s, const char* cstr) { return Append(s, cstr, std::strlen(cstr)); }
