/*
 * The open door: octets in and out, two dialects, a diagnosis, a budget. All of it stands beside the functions of
 * ZunRtcpPacket.h and changes none of them.
 */
#ifndef ZUN_RTP_DIALECT_ZUNRTCPCODEC_H
#define ZUN_RTP_DIALECT_ZUNRTCPCODEC_H

#include "Zun/Rtp/Dialect/ZunRtcpDecode.h"
#include "Zun/Rtp/Dialect/ZunRtcpEncode.h"
#include "Zun/Rtp/ZunRtcpPacket.h"
#include "Zun/Utils/ZunArena.h"
#if ZUN_RTCP_HAS_REPORTS
#include "Zun/Rtp/Dialect/ZunRtcpComposition.h"
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"
#endif
#if ZUN_RTCP_HAS_EXTENDED_REPORTS
#include "Zun/Rtp/Dialect/ZunRtcpXr.h"
#endif

#endif
