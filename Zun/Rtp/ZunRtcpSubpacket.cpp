#include "Zun/Rtp/ZunRtcpSubpacket.h"

#include "Zun/Rtp/SubpacketDispatch.h"
#include "Zun/Utils/VectorAlgorithms.h"

const RtcpSubpacketFunctions zun::unknown_funcs = ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_Unknown, ZunRtcpUnknown);

const RtcpSubpacketFunctions zun::subpacket_table[] = {
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_SR, ZunRtcpSr),        // 200
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_RR, ZunRtcpRr),        // 201
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_SDES, ZunRtcpSdes),    // 202
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_BYE, ZunRtcpBye),      // 203
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_APP, ZunRtcpApp),      // 204
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZunRtcpRtpfb),  // 205
    ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_PSFB, ZunRtcpPsfb),    // 206
};

ZunRtcpSubpacket* ZunRtcpSubpacketConstructCopy(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {
  return zun::SubpacketDispatch::ConstructCopy(p, o);
}

ZunRtcpSubpacket* ZunRtcpSubpacketAssign(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {
  return zun::SubpacketDispatch::Assign(p, o);
}

void ZunRtcpSubpacketDestruct(ZunRtcpSubpacket* p) { zun::SubpacketDispatch::Destruct(p); }

ZunSizeT ZunRtcpSubpacketGetNetworkPacketLength(const ZunRtcpSubpacket* p) {
  return zun::SubpacketDispatch::GetPacketLength(p);
}

ZUN_VECTOR_DEFINE_OWNING(ZunRtcpSubpacket)
