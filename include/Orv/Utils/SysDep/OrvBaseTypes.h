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

/* ORV_API marks a function or object exported from the library. The library is built
 * with hidden visibility, so only these names leave a shared build. A shared build
 * compiles the library with ORV_BUILDING_SHARED, and its users get ORV_USING_SHARED
 * from the CMake package and the pkg-config file (on Windows: export and import). */
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

/* The public enumerations have a fixed underlying type in C++ (any value of that type
 * is then a valid value of the enumeration, as it is in C, so a number passed from C
 * that names no enumerator is defined behaviour inside the library); in C they stay
 * plain enumerations, whose size ORV_ENUM_SIZE_CHECK pins to the same 4 bytes.
 *     typedef enum OrvThing ORV_ENUM_BASE(OrvUint32) { ... } OrvThing;
 *     ORV_ENUM_SIZE_CHECK(OrvThing);   (after the typedef, at file scope) */
#ifdef __cplusplus
#  define ORV_ENUM_BASE(type) : type
#  define ORV_ENUM_SIZE_CHECK(name) static_assert(sizeof(name) == 4, #name " is 4 bytes in C and C++")
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#  define ORV_ENUM_BASE(type)
#  define ORV_ENUM_SIZE_CHECK(name) _Static_assert(sizeof(name) == 4, #name " is 4 bytes in C and C++")
#else
#  define ORV_ENUM_BASE(type)
#  define ORV_ENUM_SIZE_CHECK(name) typedef char name##_is_4_bytes_[sizeof(name) == 4 ? 1 : -1]
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
