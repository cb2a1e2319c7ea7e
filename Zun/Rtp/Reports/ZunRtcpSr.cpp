#include "Zun/Rtp/Reports/ZunRtcpSr.h"

#include "Zun/Rtp/Reports/Report.h"

namespace {

struct Fields {
  static constexpr ZunRtcpSubpacketType kType = ZUN_RTCPSUBPACKET_TYPE_SR;
  static constexpr ZunSizeT kSize = 24;

  static bool Write(zun::BodyWriter& w, const ZunRtcpSr& p) {
    return w.U32(p.sender_source) && w.U64(p.ntp_timestamp) && w.U32(p.rtp_timestamp) && w.U32(p.sender_packet_cnt) &&
           w.U32(p.sender_octet_cnt);
  }

  static bool Read(zun::BodyReader& r, ZunRtcpSr* p) {
    return r.U32(&p->sender_source) && r.U64(&p->ntp_timestamp) && r.U32(&p->rtp_timestamp) &&
           r.U32(&p->sender_packet_cnt) && r.U32(&p->sender_octet_cnt);
  }
};

using Wire = zun::Report<ZunRtcpSr, Fields>;

}  // namespace

ZunRtcpSr* ZunRtcpSrConstructDefault(ZunRtcpSr* p, ZunAllocator* a) { return Wire::ConstructDefault(p, a); }

ZunRtcpSr* ZunRtcpSrConstructCopy(ZunRtcpSr* p, const ZunRtcpSr* o) { return Wire::Owned::ConstructCopy(p, o); }

ZunRtcpSr* ZunRtcpSrAssign(ZunRtcpSr* p, const ZunRtcpSr* o) { return Wire::Owned::Assign(p, o); }

void ZunRtcpSrDestruct(ZunRtcpSr* p) { Wire::Owned::Destruct(p); }

ZunBool ZunRtcpSrSetReportBlocks(ZunRtcpSr* p, const ZunVector_ZunRtcpReportBlock* blocks) {
  return Wire::Blocks::Assign(&p->report_blocks, blocks) != nullptr;
}

ZunBool ZunRtcpSrSetProfileSpecificExt(ZunRtcpSr* p, const ZunString* ext) {
  return Wire::SetProfileSpecificExt(p, ext);
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpSr, Wire)
