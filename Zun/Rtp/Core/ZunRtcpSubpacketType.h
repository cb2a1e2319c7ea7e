/* The RTCP packet types that the library models (RFC 3550, section 12.1; RFC 4585, section 6.1). */
#ifndef ZUN_RTP_CORE_ZUNRTCPSUBPACKETTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPSUBPACKETTYPE_H

#include "Zun/Rtp/Core/ZunRtcpRooms.h"
#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/* In a list of kinds: "or t is the value of this row". */
#define ZUN_RTCP_OR_EQUALS_(value, Kind, member, Getter) || t == (value)

/* A packet type. Any value may be stored; one without a row below is an unknown type. */
typedef ZunInt32 ZunRtcpSubpacketType;
enum {
  ZUN_RTCPSUBPACKET_TYPE_Unknown = 0, /* of a default-constructed unknown subpacket */
  ZUN_RTCPSUBPACKET_TYPE_SR = 200,    /* sender report */
  ZUN_RTCPSUBPACKET_TYPE_RR = 201,    /* receiver report */
  ZUN_RTCPSUBPACKET_TYPE_SDES = 202,  /* source description */
  ZUN_RTCPSUBPACKET_TYPE_BYE = 203,   /* goodbye */
  ZUN_RTCPSUBPACKET_TYPE_APP = 204,   /* application-defined */
  ZUN_RTCPSUBPACKET_TYPE_RTPFB = 205, /* transport-layer feedback */
  ZUN_RTCPSUBPACKET_TYPE_PSFB = 206   /* payload-specific feedback */
};

/*
 * The types that the library models, a row each: X(value, type of the object, member of ZunRtcpSubpacket, its getter).
 * The dispatch table, the predicate below and whatever else runs over all types are made of these rows. Those of a room
 * that is left out (ZunRtcpRooms.h) have none, so they are unknown ones.
 */
#define ZUN_RTCPSUBPACKET_KINDS(X) ZUN_RTCP_REPORTS_(X) ZUN_RTCP_TRANSPORT_FEEDBACK_(X) ZUN_RTCP_PAYLOAD_FEEDBACK_(X)
#if ZUN_RTCP_HAS_REPORTS
#define ZUN_RTCP_REPORTS_(X)                                                 \
  X(ZUN_RTCPSUBPACKET_TYPE_SR, ZunRtcpSr, sr, ZunRtcpSubpacketGetSr)         \
  X(ZUN_RTCPSUBPACKET_TYPE_RR, ZunRtcpRr, rr, ZunRtcpSubpacketGetRr)         \
  X(ZUN_RTCPSUBPACKET_TYPE_SDES, ZunRtcpSdes, sdes, ZunRtcpSubpacketGetSdes) \
  X(ZUN_RTCPSUBPACKET_TYPE_BYE, ZunRtcpBye, bye, ZunRtcpSubpacketGetBye)     \
  X(ZUN_RTCPSUBPACKET_TYPE_APP, ZunRtcpApp, app, ZunRtcpSubpacketGetApp)
#else
#define ZUN_RTCP_REPORTS_(X)
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#define ZUN_RTCP_TRANSPORT_FEEDBACK_(X) X(ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZunRtcpRtpfb, rtpfb, ZunRtcpSubpacketGetRtpfb)
#else
#define ZUN_RTCP_TRANSPORT_FEEDBACK_(X)
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
#define ZUN_RTCP_PAYLOAD_FEEDBACK_(X) X(ZUN_RTCPSUBPACKET_TYPE_PSFB, ZunRtcpPsfb, psfb, ZunRtcpSubpacketGetPsfb)
#else
#define ZUN_RTCP_PAYLOAD_FEEDBACK_(X)
#endif

/* True unless `t` is the value of a row above. */
ZUN_INLINE_CONSTANT ZunBool ZunRtcpSubpacketTypeIsUnknown(ZunRtcpSubpacketType t) {
  (void)t; /* where the list is empty */
  return !(0 ZUN_RTCPSUBPACKET_KINDS(ZUN_RTCP_OR_EQUALS_));
}

ZUN_EXTERN_C_END

#endif
