/*
 * OrvString.h - the library's growable, zero-terminated byte string.
 *
 * The caller owns the record; its buffer comes from the allocator given at
 * construction and goes back to it with the size it was obtained with. An empty
 * string may have no buffer (buf null, capacity 0); OrvStringCStr still gives "".
 * Every operation that can fail (allocation) returns null and leaves the string as
 * it was.
 *
 *     OrvString s;
 *     OrvStringConstruct(&s, OrvAllocatorGetDefault());
 *     OrvStringAssignCStr(&s, "20240501");
 *     OrvStringAppendChar(&s, 'T');
 *     puts(OrvStringCStr(&s));
 *     OrvStringDestruct(&s);
 */
#ifndef ORV_UTILS_ORVSTRING_H
#define ORV_UTILS_ORVSTRING_H

#include "Orv/Utils/OrvAllocator.h"

ORV_EXTERN_C_BEGIN

typedef struct OrvString {
    OrvAllocator* allocator;
    char* buf;          /* size characters and a terminating zero; null when capacity is 0 */
    OrvSizeT size;      /* characters, without the terminating zero */
    OrvSizeT capacity;  /* bytes in buf, terminating zero included; 0 without a buffer */
} OrvString;

/** An empty string without a buffer. Returns s; null when s or a is null. */
ORV_API OrvString* OrvStringConstruct(OrvString* s, OrvAllocator* a);
/** Returns the buffer, if any, to the allocator. */
ORV_API void OrvStringDestruct(OrvString* s);
/** The characters, zero-terminated; never null. */
ORV_API const char* OrvStringCStr(const OrvString* s);
/** The number of characters. */
ORV_API OrvSizeT OrvStringLength(const OrvString* s);
/** Makes room for at least n characters. Returns s, or null on allocation failure. */
ORV_API OrvString* OrvStringReserve(OrvString* s, OrvSizeT n);
/** Empties the string, keeping its buffer. */
ORV_API void OrvStringClear(OrvString* s);
/** Replaces the content with the zero-terminated cstr. Returns s, or null. */
ORV_API OrvString* OrvStringAssignCStr(OrvString* s, const char* cstr);
/** Replaces the content with the printf-style formatting of format and its
 *  arguments (standard C semantics). Returns s, or null on failure (allocation or
 *  an encoding error), leaving the old content. */
ORV_API OrvString* OrvStringAssignFormatted(OrvString* s, const char* format, ...) ORV_PRINTF_FORMAT(2, 3);
/** Appends one character. Returns s, or null. */
ORV_API OrvString* OrvStringAppendChar(OrvString* s, char c);
/** Appends the zero-terminated cstr. Returns s, or null. */
ORV_API OrvString* OrvStringAppendCStr(OrvString* s, const char* cstr);

ORV_EXTERN_C_END

#endif /* ORV_UTILS_ORVSTRING_H */
