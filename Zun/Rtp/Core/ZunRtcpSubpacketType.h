/* The RTCP packet types that the library models (RFC 3550, section 12.1; RFC 4585, section 6.1). */
#ifndef ZUN_RTP_CORE_ZUNRTCPSUBPACKETTYPE_H
#define ZUN_RTP_CORE_ZUNRTCPSUBPACKETTYPE_H

#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/* A packet type. Any value may be stored; one outside 200 to 206 is an unknown type. */
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

/* True unless 200 <= t <= 206. */
ZUN_INLINE ZunBool ZunRtcpSubpacketTypeIsUnknown(ZunRtcpSubpacketType t) {
  return t < ZUN_RTCPSUBPACKET_TYPE_SR || t > ZUN_RTCPSUBPACKET_TYPE_PSFB;
}

ZUN_EXTERN_C_END

#endif
