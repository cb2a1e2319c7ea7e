/*
 * Reference picture selection indication, FMT 3: the picture that the sender should refer to from now on
 * (RFC 4585, section 6.3.3).
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |      PB       |0| Payload Type|    native RPSI bit string     |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *    |   defined per codec          ...                | padding (0) |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *
 * PB is the number of padding bits: 8 for each zero octet that fills the last word, and the unused bits at the end
 * of the bit string's last octet.
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBRPSI_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBRPSI_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbRpsi ZunRtcpPsfbRpsi;
struct ZunRtcpPsfbRpsi {
  ZunRtcpSubpacketType type; /* 206 */
  ZunRtcpPsfbType fmt;       /* 3 */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* SSRC of the media source */
  ZunUint8 unbits;           /* unused bits at the end of the last octet, 0..7; any value is stored */
  ZunUint8 pt;               /* payload type that tells the codec, 0..127 */
  ZunString rpsi;            /* the native bit string, whole octets; owns the object's allocator */
};

/* All numbers 0, an empty bit string. */
ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiConstructDefault(ZunRtcpPsfbRpsi* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiConstructCopy(ZunRtcpPsfbRpsi* p, const ZunRtcpPsfbRpsi* o);
ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiAssign(ZunRtcpPsfbRpsi* p, const ZunRtcpPsfbRpsi* o);
void ZunRtcpPsfbRpsiDestruct(ZunRtcpPsfbRpsi* p);

/* False, `p` unchanged, when `pt` exceeds 127. */
ZunBool ZunRtcpPsfbRpsiSetPt(ZunRtcpPsfbRpsi* p, ZunUint8 pt);

/* Copies `rpsi`, of any size. */
ZunBool ZunRtcpPsfbRpsiSetRpsi(ZunRtcpPsfbRpsi* p, const ZunString* rpsi);

/*
 * The row operations. The octets that fill the word after an empty bit string are written but not counted in PB,
 * so they are read back as a bit string of two zero octets. Where the padding octets leave no bit string, reading
 * stores the whole of PB as the unused bits.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbRpsi)

/* The allocator of the bit string. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbRpsiGetAllocator(ZunRtcpPsfbRpsi* p) { return p->rpsi.allocator; }
ZUN_INLINE ZunUint8 ZunRtcpPsfbRpsiGetPt(const ZunRtcpPsfbRpsi* p) { return p->pt; }
/* The bit string itself, for reading, and, where `p` may be changed, for changing it. */
ZUN_INLINE ZunString* ZunRtcpPsfbRpsiGetRpsi(const ZunRtcpPsfbRpsi* p) { return ZUN_MUTABLE_(ZunString, &p->rpsi); }
ZUN_INLINE ZunUint8 ZunRtcpPsfbRpsiGetUnusedBits(const ZunRtcpPsfbRpsi* p) { return p->unbits; }
/* Any value is stored; one above 7 adds to the padding octets that PB tells of. */
ZUN_INLINE ZunBool ZunRtcpPsfbRpsiSetUnusedBits(ZunRtcpPsfbRpsi* p, ZunUint8 n) {
  p->unbits = n;
  return 1;
}

ZUN_EXTERN_C_END

#endif
