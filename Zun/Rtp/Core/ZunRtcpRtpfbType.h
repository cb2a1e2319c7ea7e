/* The transport-layer feedback messages that the library models (RFC 4585, section 6.2). */
#ifndef ZUN_RTP_CORE_ZUNRTCPRTPFBTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPRTPFBTYPE_H

#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"

ZUN_EXTERN_C_BEGIN

/*
 * A feedback message type (FMT), 0 to 31 on the wire. Any value may be stored. NACK and TransportCC
 * have the numbers that others give them; TMMBR and TMMBN stand at 2 and 3 here, CCFB at 14, and ABAFB is this
 * system's own.
 */
typedef ZunInt32 ZunRtcpRtpfbType;
enum {
  ZUN_RTCPRTPFB_TYPE_Unknown = 0,      /* of a default-constructed unknown message */
  ZUN_RTCPRTPFB_TYPE_NACK = 1,         /* generic negative acknowledgement */
  ZUN_RTCPRTPFB_TYPE_TMMBR = 2,        /* temporary maximum media bit rate request */
  ZUN_RTCPRTPFB_TYPE_TMMBN = 3,        /* temporary maximum media bit rate notification */
  ZUN_RTCPRTPFB_TYPE_CCFB = 14,        /* congestion control feedback */
  ZUN_RTCPRTPFB_TYPE_TransportCC = 15, /* transport-wide congestion control feedback */
  ZUN_RTCPRTPFB_TYPE_ABAFB = 30        /* bandwidth report */
};

/* The messages that the library models, a row each: X(value, type of object, member of ZunRtcpRtpfb, getter). */
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#define ZUN_RTCPRTPFB_KINDS(X)                                                                        \
  X(ZUN_RTCPRTPFB_TYPE_NACK, ZunRtcpRtpfbNack, nack, ZunRtcpRtpfbGetNack)                             \
  X(ZUN_RTCPRTPFB_TYPE_TMMBR, ZunRtcpRtpfbTmmbr, tmmbr, ZunRtcpRtpfbGetTmmbr)                         \
  X(ZUN_RTCPRTPFB_TYPE_TMMBN, ZunRtcpRtpfbTmmbn, tmmbn, ZunRtcpRtpfbGetTmmbn)                         \
  X(ZUN_RTCPRTPFB_TYPE_CCFB, ZunRtcpRtpfbCcfb, ccfb, ZunRtcpRtpfbGetCcfb)                             \
  X(ZUN_RTCPRTPFB_TYPE_TransportCC, ZunRtcpRtpfbTransportCc, transportCc, ZunRtcpRtpfbGetTransportCc) \
  X(ZUN_RTCPRTPFB_TYPE_ABAFB, ZunRtcpRtpfbAbafb, abafb, ZunRtcpRtpfbGetAbafb)
#else
#define ZUN_RTCPRTPFB_KINDS(X)
#endif

/* True unless `t` is the value of a row above. */
ZUN_INLINE_CONSTANT ZunBool ZunRtcpRtpfbFeedbackMessageIsUnknown(ZunRtcpRtpfbType t) {
  (void)t; /* where the list is empty */
  return !(0 ZUN_RTCPRTPFB_KINDS(ZUN_RTCP_OR_EQUALS_));
}

ZUN_EXTERN_C_END

#endif
