#include "Zun/Rtp/ZunRtcpSubpacket.h"

#include "Zun/Rtp/SubpacketDispatch.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSubpacket)
ZUN_VECTOR_DEFINE(ZunRtcpSubpacket)

ZUN_RTCPSUBPACKET_KINDS(ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE)
ZUN_RTCP_ROW_INTERNALS_DECLARE(ZunRtcpUnknown)

#define ROW(value, Kind, member, Getter) \
  zun::CheckedRow<ZunRtcpSubpacket, ZunRtcpUnknown, Kind>(&ZunRtcpSubpacket::member, Getter, ZUN_RTCP_ROW(value, Kind)),
constexpr decltype(zun::subpacket_table) zun::subpacket_table = {ZUN_RTCPSUBPACKET_KINDS(ROW)};
constexpr RtcpSubpacketFunctions zun::unknown_funcs = ZUN_RTCP_ROW(ZUN_RTCPSUBPACKET_TYPE_Unknown, ZunRtcpUnknown);

static_assert(zun::PredicateAgrees([](ZunInt32 type) { return zun::subpacket_table.Has(type); },
                                   ZunRtcpSubpacketTypeIsUnknown, -1, 256));
// Subpackets lie in vectors: a kind that is larger than the largest makes all of them larger, so it should not be.
static_assert(sizeof(ZunRtcpSubpacket) == sizeof(ZunRtcpSubpacketStorage_));
#if ZUN_RTCP_HAS_REPORTS
static_assert(sizeof(ZunRtcpSubpacketStorage_) == sizeof(ZunRtcpSr));
#endif

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
