/*
 * OrvBaseTypes.h - fixed-width base types and the export macro shared by every
 * OrvCalendar header.
 *
 * Every public header of the library compiles as C11 and as C++20; the types here
 * are plain typedefs over <stdint.h> so that records laid out with them are the same
 * in both languages.
 */
#ifndef ORV_UTILS_SYSDEP_ORVBASETYPES_H
#define ORV_UTILS_SYSDEP_ORVBASETYPES_H

#include <stddef.h>
#include <stdint.h>

/* ORV_API marks a function exported from the library. The library is built with
 * hidden visibility, so only these names leave a shared build. */
#if defined(_WIN32)
#  if defined(ORV_BUILDING_SHARED)
#    define ORV_API __declspec(dllexport)
#  elif defined(ORV_USING_SHARED)
#    define ORV_API __declspec(dllimport)
#  else
#    define ORV_API
#  endif
#elif defined(__GNUC__) || defined(__clang__)
#  define ORV_API __attribute__((visibility("default")))
#else
#  define ORV_API
#endif

#ifdef __cplusplus
#  define ORV_EXTERN_C_BEGIN extern "C" {
#  define ORV_EXTERN_C_END }
#else
#  define ORV_EXTERN_C_BEGIN
#  define ORV_EXTERN_C_END
#endif

/* printf-style format checking where the compiler offers it. */
#if defined(__GNUC__) || defined(__clang__)
#  define ORV_PRINTF_FORMAT(fmtIndex, firstArg) __attribute__((format(printf, fmtIndex, firstArg)))
#else
#  define ORV_PRINTF_FORMAT(fmtIndex, firstArg)
#endif

/** Boolean of one byte: ORV_FALSE (0) or ORV_TRUE (1). */
typedef uint8_t OrvBool;
#define ORV_TRUE ((OrvBool)1)
#define ORV_FALSE ((OrvBool)0)

typedef int32_t OrvInt;        /**< signed 32-bit integer */
typedef int64_t OrvInt64;      /**< signed 64-bit integer */
typedef uint32_t OrvUint32;    /**< unsigned 32-bit integer */
typedef uint64_t OrvSizeT;     /**< unsigned 64-bit size or count */
typedef int64_t OrvDistanceT;  /**< signed 64-bit difference of positions */
typedef void* OrvVoidPtr;      /**< untyped pointer */

#endif /* ORV_UTILS_SYSDEP_ORVBASETYPES_H */
