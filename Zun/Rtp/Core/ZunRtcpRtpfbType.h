/* The transport-layer feedback messages that the library models (RFC 4585, section 6.2). */
#ifndef ZUN_RTP_CORE_ZUNRTCPRTPFBTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPRTPFBTYPE_H

#include "Zun/Utils/ZunTypes.h"

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

/* True unless `t` is one of the message types above other than 0. */
ZUN_INLINE ZunBool ZunRtcpRtpfbFeedbackMessageIsUnknown(ZunRtcpRtpfbType t) {
  return t != ZUN_RTCPRTPFB_TYPE_NACK && t != ZUN_RTCPRTPFB_TYPE_TMMBR && t != ZUN_RTCPRTPFB_TYPE_TMMBN &&
         t != ZUN_RTCPRTPFB_TYPE_CCFB && t != ZUN_RTCPRTPFB_TYPE_TransportCC && t != ZUN_RTCPRTPFB_TYPE_ABAFB;
}

ZUN_EXTERN_C_END

#endif
