/*
 * OrvCLib.h - the few C-library functions the library uses, behind its own names.
 *
 * Each behaves exactly as the C function it names, in the "C" locale, whatever locale
 * the program has set.
 */
#ifndef ORV_UTILS_ORVCLIB_H
#define ORV_UTILS_ORVCLIB_H

#include "Orv/Utils/SysDep/OrvBaseTypes.h"

ORV_EXTERN_C_BEGIN

/** strlcpy: copies at most size - 1 bytes of src to dst and terminates dst when size
 *  is not 0. Returns the length of src (so a result >= size means truncation). */
ORV_API OrvSizeT OrvStrLCpy(char* dst, const char* src, OrvSizeT size);
/** strlen. */
ORV_API OrvSizeT OrvStrLen(const char* s);
/** strtoul, truncated to 32 bits: skips leading white space, takes an optional sign,
 *  converts digits in base (0 or 2 to 36) and sets *end after the last character used
 *  (to start when nothing converts). Out of range: ULONG_MAX truncated, as strtoul. */
ORV_API OrvUint32 OrvStrToUint32(const char* start, char** end, OrvInt base);
/** strcasecmp over ASCII letters: 0 when equal ignoring case, else the sign of the
 *  first difference of the lower-cased bytes. */
ORV_API OrvInt OrvStrCaseCmp(const char* a, const char* b);

ORV_EXTERN_C_END

#endif /* ORV_UTILS_ORVCLIB_H */
