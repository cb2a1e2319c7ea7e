/*
 * Big-endian bytes: integers of the wire taken from octets, read from a string, appended to one.
 * Positions and ends are byte offsets into the string.
 */
#ifndef ZUN_UTILS_ZUNMISCINLINE_H
#define ZUN_UTILS_ZUNMISCINLINE_H

#include <string.h>

#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

/* memset. */
ZUN_INLINE void ZunMemSet(ZunVoidPtr block, ZunInt value, ZunSizeT size) { memset(block, value, size); }
/* strlen. */
ZUN_INLINE ZunSizeT ZunStrLen(const char* text) { return strlen(text); }

/* The value of the two bytes at `octets`, most significant first. */
ZUN_INLINE ZunUint16 ZunUint16FromOctets(const void* octets) {
  const ZunUint8* o = (const ZunUint8*)octets;
  return (ZunUint16)((ZunUint16)(o[0] << 8) | o[1]);
}

/* The same two bytes as a two's-complement value. */
ZUN_INLINE ZunInt16 ZunInt16FromOctets(const void* octets) { return (ZunInt16)ZunUint16FromOctets(octets); }

/* The value of the four bytes at `octets`, most significant first. */
ZUN_INLINE ZunUint32 ZunUint32FromOctets(const void* octets) {
  const ZunUint8* o = (const ZunUint8*)octets;
  return (ZunUint32)o[0] << 24 | (ZunUint32)o[1] << 16 | (ZunUint32)o[2] << 8 | (ZunUint32)o[3];
}

/*
 * The two bytes as ZunInt16FromBuffer forms them: the high byte shifted left by 8 is ORed with the low byte taken as a
 * signed one, so a low byte of 0x80 or more sets every bit above it.
 */
ZUN_INLINE ZunInt16 ZunInt16FromSpilledOctets_(const void* octets) {
  const ZunUint16 value = ZunUint16FromOctets(octets);
  return (ZunInt16)((value & 0x80U) != 0 ? (value | 0xFF00U) : value);
}

/* Whether `width` bytes at `pos` lie before `end` and inside `b`. */
ZUN_INLINE ZunBool ZunBufferHolds_(const ZunString* b, ZunSizeT pos, ZunSizeT end, ZunSizeT width) {
  const ZunSizeT limit = end < b->size ? end : b->size;
  return pos <= limit && limit - pos >= width;
}

/*
 * Stores the value at offset `pos` of `b`. False, and nothing stored, when it does not lie before `end` and
 * inside `b`. The caller advances `pos`.
 */
ZUN_INLINE ZunBool ZunUint16FromBuffer(const ZunString* b, ZunSizeT pos, ZunSizeT end, ZunUint16* u16) {
  if (!ZunBufferHolds_(b, pos, end, 2)) return 0;
  *u16 = ZunUint16FromOctets(b->buf + pos);
  return 1;
}

/*
 * As above, but not the plain two's-complement value: the high byte shifted left by 8 is ORed with the low
 * byte taken as a signed one, so a low byte of 0x80 or more sets every bit above it (0x0180 gives -128).
 * The peers whose receive deltas it reads expect this.
 */
ZUN_INLINE ZunBool ZunInt16FromBuffer(const ZunString* b, ZunSizeT pos, ZunSizeT end, ZunInt16* i16) {
  if (!ZunBufferHolds_(b, pos, end, 2)) return 0;
  *i16 = ZunInt16FromSpilledOctets_(b->buf + pos);
  return 1;
}

/* As ZunUint16FromBuffer, for four bytes. */
ZUN_INLINE ZunBool ZunUint32FromBuffer(const ZunString* b, ZunSizeT pos, ZunSizeT end, ZunUint32* u32) {
  if (!ZunBufferHolds_(b, pos, end, 4)) return 0;
  *u32 = ZunUint32FromOctets(b->buf + pos);
  return 1;
}

/* Appends the two bytes of `u16`, the high one first. False as soon as one append fails. */
ZUN_INLINE ZunBool ZunUint16ToBuffer(ZunUint16 u16, ZunString* b) {
  return ZunStringAppendChar(b, (char)(u16 >> 8)) != NULL && ZunStringAppendChar(b, (char)(u16 & 0xFF)) != NULL;
}

/* Appends the four bytes of `u32`, the highest first. False as soon as one append fails. */
ZUN_INLINE ZunBool ZunUint32ToBuffer(ZunUint32 u32, ZunString* b) {
  return ZunUint16ToBuffer((ZunUint16)(u32 >> 16), b) && ZunUint16ToBuffer((ZunUint16)(u32 & 0xFFFF), b);
}

ZUN_EXTERN_C_END

#endif
