/* The names of the plain types, and what a header needs to serve C and C++ alike. */
#ifndef ZUN_UTILS_SYSDEP_ZUNBASETYPES_H
#define ZUN_UTILS_SYSDEP_ZUNBASETYPES_H

#include <stddef.h>
#include <stdint.h>

/* Public declarations stand between these two: C linkage, and visible in a shared library. */
#if defined(__GNUC__)
#define ZUN_VISIBLE_BEGIN_ _Pragma("GCC visibility push(default)")
#define ZUN_VISIBLE_END_ _Pragma("GCC visibility pop")
#else
#define ZUN_VISIBLE_BEGIN_
#define ZUN_VISIBLE_END_
#endif
#ifdef __cplusplus
#define ZUN_EXTERN_C_BEGIN ZUN_VISIBLE_BEGIN_ extern "C" {
#define ZUN_EXTERN_C_END \
  }                      \
  ZUN_VISIBLE_END_
#else
#define ZUN_EXTERN_C_BEGIN ZUN_VISIBLE_BEGIN_
#define ZUN_EXTERN_C_END ZUN_VISIBLE_END_
#endif

/*
 * An inline function of a public header. It is a symbol of the library as well: a C compiler that does
 * not inline a call refers to that symbol, and a foreign-function interface finds every name. One source
 * of the library (Zun/InlineSymbols.cpp) emits them all.
 */
#if defined(ZUN_EMIT_INLINE_SYMBOLS) && defined(__GNUC__)
#define ZUN_INLINE __attribute__((used)) inline
#else
#define ZUN_INLINE inline
#endif

/* An inline function that C++ may also call in constant expressions. */
#ifdef __cplusplus
#define ZUN_INLINE_CONSTANT constexpr ZUN_INLINE
#else
#define ZUN_INLINE_CONSTANT ZUN_INLINE
#endif

/* What a getter gives of an object that it only reads, for callers who may change the object; no compiler need warn. */
#ifdef __cplusplus
#define ZUN_MUTABLE_(Type, pointer) const_cast<Type*>(pointer)
#else
#define ZUN_MUTABLE_(Type, pointer) ((Type*)(uintptr_t)(pointer)) /* NOLINT(performance-no-int-to-ptr) */
#endif

typedef uint8_t ZunBool; /* 0 is false, anything else true; functions return 1 for true */
typedef uint8_t ZunUint8;
typedef uint16_t ZunUint16;
typedef uint32_t ZunUint32;
typedef uint64_t ZunUint64;
typedef int8_t ZunInt8;
typedef int16_t ZunInt16;
typedef int32_t ZunInt32;
typedef int64_t ZunInt64;
typedef int ZunInt;
typedef size_t ZunSizeT;        /* as wide as the platform makes it: 64 or 32 bits */
typedef ptrdiff_t ZunDistanceT; /* as wide */
typedef float ZunFloat32;
typedef void* ZunVoidPtr;

#ifdef __cplusplus
static_assert(sizeof(ZunSizeT) >= 4, "sizes are 32 bits wide, or wider");
static_assert(sizeof(ZunFloat32) == 4, "ZunFloat32 is a 32-bit IEEE float");
#else
_Static_assert(sizeof(ZunSizeT) >= 4, "sizes are 32 bits wide, or wider");
_Static_assert(sizeof(ZunFloat32) == 4, "ZunFloat32 is a 32-bit IEEE float");
#endif

#endif
