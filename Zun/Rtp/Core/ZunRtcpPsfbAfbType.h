/* The application-layer feedback messages that the library models (RFC 4585, section 6.4). */
#ifndef ZUN_RTP_CORE_ZUNRTCPPSFBAFBTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPPSFBAFBTYPE_H

#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/*
 * The kind of an application-layer feedback message. A house message opens with "Nr" and a 16-bit number, which
 * is its value here; 0 is none. Messages that others defined are told by a signature of their own and numbered from
 * 65537 on, above every house number.
 */
typedef ZunInt32 ZunRtcpPsfbAfbType;
enum {
  ZUN_RTCPPSFBAFB_TYPE_Unknown = 0, /* anything else, kept as raw bytes */
  ZUN_RTCPPSFBAFB_TYPE_ABAFB = 1,   /* rate and delay report */
  ZUN_RTCPPSFBAFB_TYPE_ALBR = 2,    /* available link bit rate */
  ZUN_RTCPPSFBAFB_TYPE_SHOW = 3,    /* request to show a stream */
  ZUN_RTCPPSFBAFB_TYPE_SHOWACK = 4, /* its acknowledgement */
  ZUN_RTCPPSFBAFB_TYPE_LIR = 5,     /* layer information */
  ZUN_RTCPPSFBAFB_TYPE_REMB = 65537 /* receiver estimated maximum bitrate */
};

/* True unless `t` is 1 to 5 or 65537. */
ZUN_INLINE ZunBool ZunRtcpPsfbAfbTypeIsUnknown(ZunRtcpPsfbAfbType t) {
  return (t < ZUN_RTCPPSFBAFB_TYPE_ABAFB || t > ZUN_RTCPPSFBAFB_TYPE_LIR) && t != ZUN_RTCPPSFBAFB_TYPE_REMB;
}

ZUN_EXTERN_C_END

#endif
