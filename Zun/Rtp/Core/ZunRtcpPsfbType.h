/* The payload-specific feedback messages that the library models (RFC 4585, section 6.3; RFC 5104, section 4.3). */
#ifndef ZUN_RTP_CORE_ZUNRTCPPSFBTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPPSFBTYPE_H

#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"

ZUN_EXTERN_C_BEGIN

/* A feedback message type (FMT) of packet type 206. The wire carries 0 to 31; those not listed are unknown. */
typedef ZunInt32 ZunRtcpPsfbType;
enum {
  ZUN_RTCPPSFB_TYPE_Unknown = 0, /* of a default-constructed unknown message */
  ZUN_RTCPPSFB_TYPE_PLI = 1,     /* picture loss indication */
  ZUN_RTCPPSFB_TYPE_SLI = 2,     /* slice loss indication */
  ZUN_RTCPPSFB_TYPE_RPSI = 3,    /* reference picture selection indication */
  ZUN_RTCPPSFB_TYPE_FIR = 4,     /* full intra request */
  ZUN_RTCPPSFB_TYPE_TSTR = 5,    /* temporal-spatial trade-off request */
  ZUN_RTCPPSFB_TYPE_TSTA = 6,    /* temporal-spatial trade-off notification */
  ZUN_RTCPPSFB_TYPE_AFB = 15     /* application-layer feedback */
};

/* The messages that the library models, a row each: X(value, type of the object, member of ZunRtcpPsfb, its getter). */
#define ZUN_RTCPPSFB_KINDS(X) ZUN_RTCPPSFB_PLAIN_KINDS_(X) ZUN_RTCPPSFB_ENVELOPES_(X)
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
#define ZUN_RTCPPSFB_PLAIN_KINDS_(X)                                   \
  X(ZUN_RTCPPSFB_TYPE_PLI, ZunRtcpPsfbPli, pli, ZunRtcpPsfbGetPli)     \
  X(ZUN_RTCPPSFB_TYPE_SLI, ZunRtcpPsfbSli, sli, ZunRtcpPsfbGetSli)     \
  X(ZUN_RTCPPSFB_TYPE_RPSI, ZunRtcpPsfbRpsi, rpsi, ZunRtcpPsfbGetRpsi) \
  X(ZUN_RTCPPSFB_TYPE_FIR, ZunRtcpPsfbFir, fir, ZunRtcpPsfbGetFir)     \
  X(ZUN_RTCPPSFB_TYPE_TSTR, ZunRtcpPsfbTstr, tstr, ZunRtcpPsfbGetTstr) \
  X(ZUN_RTCPPSFB_TYPE_TSTA, ZunRtcpPsfbTsta, tsta, ZunRtcpPsfbGetTsta)
#else
#define ZUN_RTCPPSFB_PLAIN_KINDS_(X)
#endif
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
#define ZUN_RTCPPSFB_ENVELOPES_(X) X(ZUN_RTCPPSFB_TYPE_AFB, ZunRtcpPsfbAfb, afb, ZunRtcpPsfbGetAfb)
#else
#define ZUN_RTCPPSFB_ENVELOPES_(X)
#endif

/* True unless `t` is the value of a row above. */
ZUN_INLINE_CONSTANT ZunBool ZunRtcpPsfbTypeIsUnknown(ZunRtcpPsfbType t) {
  (void)t; /* where the list is empty */
  return !(0 ZUN_RTCPPSFB_KINDS(ZUN_RTCP_OR_EQUALS_));
}

ZUN_EXTERN_C_END

#endif
