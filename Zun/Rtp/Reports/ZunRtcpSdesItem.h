/*
 * One item of a source description: a typed text about one source (RFC 3550, section 6.5).
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |     type      |     length    |  text, `length` bytes ...     |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPSDESITEM_H
#define ZUN_RTP_REPORTS_ZUNRTCPSDESITEM_H

#include "Zun/Utils/ZunString.h"
#include "Zun/Utils/ZunVector.h"

ZUN_EXTERN_C_BEGIN

/* What an item tells. Any value may be stored; only 1 to 15 are kept when a packet is read. */
typedef ZunInt32 ZunRtcpSdesItemType;
enum {
  ZUN_RTCPSDESITEM_TYPE_EndOfList = 0, /* no item: it ends the list of a chunk */
  ZUN_RTCPSDESITEM_TYPE_CNAME = 1,     /* canonical name of the participant */
  ZUN_RTCPSDESITEM_TYPE_NAME = 2,      /* name of the user */
  ZUN_RTCPSDESITEM_TYPE_EMAIL = 3,
  ZUN_RTCPSDESITEM_TYPE_PHONE = 4,
  ZUN_RTCPSDESITEM_TYPE_LOC = 5,       /* geographic location */
  ZUN_RTCPSDESITEM_TYPE_TOOL = 6,      /* application and version */
  ZUN_RTCPSDESITEM_TYPE_NOTE = 7,      /* transient message */
  ZUN_RTCPSDESITEM_TYPE_PRIV = 8,      /* private extension; see ZunRtcpSdesItemPriv.h */
  ZUN_RTCPSDESITEM_TYPE_H323CADDR = 9, /* H.323 callable address */
  ZUN_RTCPSDESITEM_TYPE_APSI = 10,     /* application-specific identifier (RFC 6776) */
  ZUN_RTCPSDESITEM_TYPE_RGRP = 11,     /* reporting group (RFC 8861) */
  ZUN_RTCPSDESITEM_TYPE_RID = 12,      /* RTP stream (RFC 8852) */
  ZUN_RTCPSDESITEM_TYPE_RRID = 13,     /* repaired RTP stream (RFC 8852) */
  ZUN_RTCPSDESITEM_TYPE_CCID = 14,     /* CLUE capture (RFC 8849) */
  ZUN_RTCPSDESITEM_TYPE_MID = 15,      /* media description (RFC 9143) */
  ZUN_RTCPSDESITEM_TYPE_MAX = 16       /* the first value without a meaning here */
};

typedef struct ZunRtcpSdesItem ZunRtcpSdesItem;
struct ZunRtcpSdesItem {
  ZunRtcpSdesItemType type;
  ZunString text; /* the value's bytes, at most 255 on the wire; owns the object's allocator */
};

/* Type 0 without text. */
ZunRtcpSdesItem* ZunRtcpSdesItemConstructDefault(ZunRtcpSdesItem* p, ZunAllocator* a);

/*
 * An item with a copy of `s`, whose allocator it takes. The size is not checked: a text of more than 255 bytes is
 * written whole after the low 8 bits of its size.
 */
ZunRtcpSdesItem* ZunRtcpSdesItemConstruct(ZunRtcpSdesItem* p, ZunRtcpSdesItemType type, const ZunString* s);

/* Lifecycle (ZunConventions.h). */
ZunRtcpSdesItem* ZunRtcpSdesItemConstructCopy(ZunRtcpSdesItem* p, const ZunRtcpSdesItem* o);
ZunRtcpSdesItem* ZunRtcpSdesItemAssign(ZunRtcpSdesItem* p, const ZunRtcpSdesItem* o);
void ZunRtcpSdesItemDestruct(ZunRtcpSdesItem* p);

/* Copies the zero-terminated `text`. False, `p` unchanged, when it is longer than 255 bytes. */
ZunBool ZunRtcpSdesItemSetText(ZunRtcpSdesItem* p, const char* text);

/* The allocator of the text. */
ZUN_INLINE ZunAllocator* ZunRtcpSdesItemGetAllocator(ZunRtcpSdesItem* p) { return p->text.allocator; }
/* The type; any value may have been stored. */
ZUN_INLINE ZunRtcpSdesItemType ZunRtcpSdesItemGetType(const ZunRtcpSdesItem* p) { return p->type; }
/* Returns true. */
ZUN_INLINE ZunBool ZunRtcpSdesItemSetType(ZunRtcpSdesItem* p, ZunUint8 type) {
  p->type = type;
  return 1;
}
/* The bytes of the text with a zero after them; zeros among them are possible. */
ZUN_INLINE const char* ZunRtcpSdesItemGetText(const ZunRtcpSdesItem* p) { return ZunStringCStr(&p->text); }
/* The low 8 bits of the text's size in bytes. */
ZUN_INLINE ZunUint8 ZunRtcpSdesItemGetSize(const ZunRtcpSdesItem* p) { return (ZunUint8)(p->text.size & 0xFF); }

ZUN_EXTERN_C_END

/* Elements are copied with the allocators of their sources. */
ZUN_VECTOR_DECLARE(ZunRtcpSdesItem)

#endif
