/* The application-layer feedback messages that the library models (RFC 4585, section 6.4). */
#ifndef ZUN_RTP_CORE_ZUNRTCPPSFBAFBTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPPSFBAFBTYPE_H

#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"

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

/*
 * The messages that the library models, a row each: X(value, type of the object, member of ZunRtcpPsfbAfb, its getter).
 * House messages and those of others have a table each.
 */
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
#define ZUN_RTCPPSFBAFB_HOUSE_KINDS(X)                                                      \
  X(ZUN_RTCPPSFBAFB_TYPE_ABAFB, ZunRtcpPsfbAfbAbafb, abafb, ZunRtcpPsfbAfbGetAbafb)         \
  X(ZUN_RTCPPSFBAFB_TYPE_ALBR, ZunRtcpPsfbAfbAlbr, albr, ZunRtcpPsfbAfbGetAlbr)             \
  X(ZUN_RTCPPSFBAFB_TYPE_SHOW, ZunRtcpPsfbAfbShow, show, ZunRtcpPsfbAfbGetShow)             \
  X(ZUN_RTCPPSFBAFB_TYPE_SHOWACK, ZunRtcpPsfbAfbShowAck, showAck, ZunRtcpPsfbAfbGetShowAck) \
  X(ZUN_RTCPPSFBAFB_TYPE_LIR, ZunRtcpPsfbAfbLir, lir, ZunRtcpPsfbAfbGetLir)
#define ZUN_RTCPPSFBAFB_FOREIGN_KINDS(X) X(ZUN_RTCPPSFBAFB_TYPE_REMB, ZunRtcpPsfbAfbRemb, remb, ZunRtcpPsfbAfbGetRemb)
#else
#define ZUN_RTCPPSFBAFB_HOUSE_KINDS(X)
#define ZUN_RTCPPSFBAFB_FOREIGN_KINDS(X)
#endif
#define ZUN_RTCPPSFBAFB_KINDS(X) ZUN_RTCPPSFBAFB_HOUSE_KINDS(X) ZUN_RTCPPSFBAFB_FOREIGN_KINDS(X)

/* True unless `t` is the value of a row above. */
ZUN_INLINE_CONSTANT ZunBool ZunRtcpPsfbAfbTypeIsUnknown(ZunRtcpPsfbAfbType t) {
  (void)t; /* where the list is empty */
  return !(0 ZUN_RTCPPSFBAFB_KINDS(ZUN_RTCP_OR_EQUALS_));
}

ZUN_EXTERN_C_END

#endif
