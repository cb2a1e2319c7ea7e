/*
 * One entry of a generic NACK (RFC 4585, section 6.2.1): a lost packet, and which of the 16 after it are lost too.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |            packet ID          |  bitmask of following losses  |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBNACKSEQMAP_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBNACKSEQMAP_H

#include "Zun/Utils/ZunVector.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbNackSeqMap ZunRtcpRtpfbNackSeqMap;
struct ZunRtcpRtpfbNackSeqMap {
  ZunUint16 seqNumber; /* a lost RTP sequence number, the base */
  ZunUint16 map;       /* bit i, the least significant being 0, tells that seqNumber + i + 1 is lost as well */
};

/* Stores both. */
ZUN_INLINE ZunRtcpRtpfbNackSeqMap* ZunRtcpRtpfbNackSeqMapConstruct(ZunRtcpRtpfbNackSeqMap* x, ZunUint16 seqNumber,
                                                                   ZunUint16 map) {
  x->seqNumber = seqNumber;
  x->map = map;
  return x;
}
/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpRtpfbNackSeqMap* ZunRtcpRtpfbNackSeqMapConstructCopy(ZunRtcpRtpfbNackSeqMap* p, const ZunRtcpRtpfbNackSeqMap* o);
ZunRtcpRtpfbNackSeqMap* ZunRtcpRtpfbNackSeqMapAssign(ZunRtcpRtpfbNackSeqMap* p, const ZunRtcpRtpfbNackSeqMap* o);
void ZunRtcpRtpfbNackSeqMapDestruct(ZunRtcpRtpfbNackSeqMap* p);

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpRtpfbNackSeqMap)

#endif
