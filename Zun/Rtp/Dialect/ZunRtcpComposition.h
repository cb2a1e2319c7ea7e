/* What a strict receiver would object to in a compound packet (RFC 3550, section 6.1). */
#ifndef ZUN_RTP_DIALECT_ZUNRTCPCOMPOSITION_H
#define ZUN_RTP_DIALECT_ZUNRTCPCOMPOSITION_H

#include "Zun/Rtp/ZunRtcpPacket.h"

ZUN_EXTERN_C_BEGIN

/* Any of these, added up; 0 when there is nothing to object to. */
typedef ZunUint32 ZunRtcpComposition;
enum {
  ZUN_RTCP_COMPOSITION_EMPTY = 1,           /* it has no subpackets */
  ZUN_RTCP_COMPOSITION_NO_REPORT_FIRST = 2, /* it does not begin with an SR or an RR */
  ZUN_RTCP_COMPOSITION_NO_CNAME = 4,        /* no SDES of it has a CNAME that is not empty */
  ZUN_RTCP_COMPOSITION_BYE_NOT_LAST = 8     /* something other than a BYE follows a BYE */
};

/*
 * All that there is to object to: advice to a sender, and no reason to refuse anything. Reduced-size packets, where
 * they were negotiated (RFC 5506), need neither report nor CNAME.
 */
ZunRtcpComposition ZunRtcpPacketCheckComposition(const ZunRtcpPacket* p);

/* What one of them means, as a short English text without a full stop. */
const char* ZunRtcpCompositionGetText(ZunRtcpComposition objection);

ZUN_EXTERN_C_END

#endif
