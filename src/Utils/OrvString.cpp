// Growable string over the caller's allocator.
//
// OrvStringAssignFormatted takes a fast path for the formats the library itself uses
// (%d, %u, %s, %c and %% with the '0' and '-' flags, a width and the l/ll lengths):
// they are written in one pass over the format, with the exact output printf would
// give. Any other directive, and output longer than 256 characters, falls back to
// vsnprintf, so the behaviour is always the standard one.
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
inline const char* ParseDirective(const char* p, Directive* out)
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

constexpr char kDigitPairs[] = "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
                               "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
                               "8081828384858687888990919293949596979899";

// Writes the decimal digits of v so that they end just before end; returns their start.
inline char* WriteDigits(unsigned long long v, char* end)
{
    while (v >= 100) {
        const auto pair = static_cast<unsigned>(v % 100) * 2;
        v /= 100;
        end -= 2;
        end[0] = kDigitPairs[pair];
        end[1] = kDigitPairs[pair + 1];
    }
    if (v >= 10) {
        const auto pair = static_cast<unsigned>(v) * 2;
        end -= 2;
        end[0] = kDigitPairs[pair];
        end[1] = kDigitPairs[pair + 1];
    } else {
        *--end = static_cast<char>('0' + v);
    }
    return end;
}

// Digits of a number end this far into their buffer (more than the 20 digits of the
// largest 64-bit number), and short numbers are copied out in chunks of this size.
constexpr OrvSizeT kDigitsEnd = 24;
constexpr OrvSizeT kCopyChunk = 16;

inline void Fill(char* out, OrvSizeT* pos, char c, OrvSizeT n)
{
    for (OrvSizeT i = 0; i < n; ++i) out[*pos + i] = c;
    *pos += n;
}

// Formats into out, which has room for cap characters and kCopyChunk bytes of slack
// after them, in one pass over the format.
// Returns the length, or -1 when the fast path does not apply (a directive it does not
// handle, or output longer than cap); the caller then formats again with vsnprintf
// from its own copy of the arguments.
long FastFormat(char* out, OrvSizeT cap, const char* format, va_list args)
{
    OrvSizeT pos = 0;
    const char* p = format;
    for (;;) {
        const char* literal = p;
        while (*p != '\0' && *p != '%') ++p;
        const auto literalLen = static_cast<OrvSizeT>(p - literal);
        if (literalLen > cap - pos) return -1;
        for (OrvSizeT i = 0; i < literalLen; ++i) out[pos + i] = literal[i];
        pos += literalLen;
        if (*p == '\0') break;

        Directive d;
        p = ParseDirective(p + 1, &d);
        if (p == nullptr) return -1;
        // Numbers are written to end at digitsEnd, over a run of '0's, so that zero
        // padding is a step back; the slack after them lets a short number be copied
        // out with one fixed-size copy.
        char digits[kDigitsEnd + kCopyChunk];
        std::memset(digits, '0', kDigitsEnd);
        char* const digitsEnd = digits + kDigitsEnd;
        const char* text = digits;
        OrvSizeT len = 1;
        char sign = 0;
        bool number = false;
        switch (d.conv) {
        case '%': digits[0] = '%'; break;
        case 'c': digits[0] = static_cast<char>(va_arg(args, int)); break;
        case 's':
            text = va_arg(args, const char*);
            if (text == nullptr) text = "(null)";
            len = std::strlen(text);
            break;
        case 'u': {
            unsigned long long v;
            if (d.longs == 2) v = va_arg(args, unsigned long long);
            else if (d.longs == 1) v = va_arg(args, unsigned long);
            else v = va_arg(args, unsigned int);
            text = WriteDigits(v, digitsEnd);
            number = true;
            break;
        }
        default: {
            long long v;
            if (d.longs == 2) v = va_arg(args, long long);
            else if (d.longs == 1) v = va_arg(args, long);
            else v = va_arg(args, int);
            // Magnitude without overflow for LLONG_MIN.
            const unsigned long long mag =
                v < 0 ? 0ULL - static_cast<unsigned long long>(v) : static_cast<unsigned long long>(v);
            if (v < 0) sign = '-';
            text = WriteDigits(mag, digitsEnd);
            number = true;
            break;
        }
        }
        const OrvSizeT signLen = sign != 0 ? 1 : 0;
        const auto width = static_cast<OrvSizeT>(d.width);
        if (number) {
            len = static_cast<OrvSizeT>(digitsEnd - text);
            // Zero padding from the run of '0's in front of the digits.
            if (d.zeroPad && !d.leftAlign && width <= kDigitsEnd && width > len + signLen) {
                text -= width - len - signLen;
                len = width - signLen;
            }
        }
        const OrvSizeT total = len + signLen;
        const OrvSizeT pad = width > total ? width - total : 0;
        if (total + pad > cap - pos) return -1;
        if (!d.leftAlign && !d.zeroPad) Fill(out, &pos, ' ', pad);
        if (sign != 0) out[pos++] = sign;
        if (!d.leftAlign && d.zeroPad) Fill(out, &pos, '0', pad);
        if (number && len <= kCopyChunk) {
            std::memcpy(out + pos, text, kCopyChunk); // out keeps kCopyChunk bytes of slack
        } else {
            std::memcpy(out + pos, text, len);
        }
        pos += len;
        if (d.leftAlign) Fill(out, &pos, ' ', pad);
    }
    return static_cast<long>(pos);
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
    va_list again;
    va_copy(again, args);
    char local[256];
    const long n = FastFormat(local, sizeof local - kCopyChunk, format, args);
    OrvString* result = nullptr;
    if (n < 0) {
        result = SlowFormat(s, format, again);
    } else if (Grow(s, static_cast<OrvSizeT>(n))) {
        const auto len = static_cast<OrvSizeT>(n);
        std::memcpy(s->buf, local, len);
        s->buf[len] = '\0';
        s->size = len;
        result = s;
    }
    va_end(again);
    va_end(args);
    return result;
}

OrvString* OrvStringAppendChar(OrvString* s, char c)
{
    if (s->size + 1 < s->capacity) {
        s->buf[s->size++] = c;
        s->buf[s->size] = '\0';
        return s;
    }
    return Append(s, &c, 1);
}

OrvString* OrvStringAppendCStr(OrvString* s, const char* cstr) { return Append(s, cstr, std::strlen(cstr)); }
