/*
 * The parts of a private extension item (RFC 3550, section 6.5.8): a view that is made of the text of an item of
 * type PRIV, changed, and written back to one.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |     PRIV=8    |     length    | prefix length | prefix ...    |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |                           text ...                            |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPSDESITEMPRIV_H
#define ZUN_RTP_REPORTS_ZUNRTCPSDESITEMPRIV_H

#include "Zun/Rtp/Reports/ZunRtcpSdesItem.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpSdesItemPriv ZunRtcpSdesItemPriv;
struct ZunRtcpSdesItemPriv {
  ZunUint8 prefix_len; /* how many bytes of `prefix` are written; the caller keeps the two in step */
  ZunString prefix;    /* names the application that gives the text its meaning */
  ZunString text;      /* the value */
};

/* Prefix length 0, both strings empty. */
ZunRtcpSdesItemPriv* ZunRtcpSdesItemPrivConstructDefault(ZunRtcpSdesItemPriv* priv, ZunAllocator* a);

/*
 * The parts of the text of `itm`, whose allocator they take; its type is not looked at. NULL, `priv` owning nothing,
 * when that text has less than 2 bytes, when its prefix length exceeds the bytes that follow it.
 */
ZunRtcpSdesItemPriv* ZunRtcpSdesItemPrivConstructItem(ZunRtcpSdesItemPriv* priv, const ZunRtcpSdesItem* itm);

/* Releases both strings and leaves `priv` without them; destructing it once more does nothing. */
void ZunRtcpSdesItemPrivDestruct(ZunRtcpSdesItemPriv* priv);

/* Copy what they are given. The prefix length stays. */
ZunBool ZunRtcpSdesItemPrivSetPrefix(ZunRtcpSdesItemPriv* priv, const ZunString* prefix);
ZunBool ZunRtcpSdesItemPrivSetPrefixCStr(ZunRtcpSdesItemPriv* priv, const char* prefix);
ZunBool ZunRtcpSdesItemPrivSetText(ZunRtcpSdesItemPriv* priv, const ZunString* text);
ZunBool ZunRtcpSdesItemPrivSetTextCStr(ZunRtcpSdesItemPriv* priv, const char* text);

/*
 * Makes the text of `itm` the prefix length, that many bytes of the prefix, and the text. The type of `itm` stays:
 * the caller sets PRIV. The size of the result is not limited to the 255 bytes that an item can carry. False, `itm`
 * unchanged, when the prefix is shorter than its length; false, with a part of the text, when an allocation is
 * refused.
 */
ZunBool ZunRtcpSdesItemPrivWriteToItem(const ZunRtcpSdesItemPriv* priv, ZunRtcpSdesItem* itm);

/* The prefix length as stored, 0..255; the setters of the prefix do not change it. */
ZUN_INLINE ZunUint8 ZunRtcpSdesItemPrivGetPrefixLen(const ZunRtcpSdesItemPriv* priv) { return priv->prefix_len; }
/* Returns true, whatever the size of the prefix. */
ZUN_INLINE ZunBool ZunRtcpSdesItemPrivSetPrefixLen(ZunRtcpSdesItemPriv* priv, ZunUint8 prefixLen) {
  priv->prefix_len = prefixLen;
  return 1;
}
/* The strings themselves. */
ZUN_INLINE const ZunString* ZunRtcpSdesItemPrivGetPrefix(const ZunRtcpSdesItemPriv* priv) { return &priv->prefix; }
ZUN_INLINE const ZunString* ZunRtcpSdesItemPrivGetText(const ZunRtcpSdesItemPriv* priv) { return &priv->text; }

ZUN_EXTERN_C_END

#endif
