#include "Zun/Rtp/Reports/ZunRtcpRr.h"

#include "Zun/Rtp/Reports/Report.h"

namespace {

struct Fields {
  static constexpr ZunRtcpSubpacketType kType = ZUN_RTCPSUBPACKET_TYPE_RR;
  static constexpr ZunSizeT kSize = 4;

  static bool Write(zun::BodyWriter& w, const ZunRtcpRr& p) { return w.U32(p.sender_source); }
  static bool Read(zun::BodyReader& r, ZunRtcpRr* p) { return r.U32(&p->sender_source); }
};

using Wire = zun::Report<ZunRtcpRr, Fields>;

}  // namespace

ZunRtcpRr* ZunRtcpRrConstructDefault(ZunRtcpRr* p, ZunAllocator* a) { return Wire::ConstructDefault(p, a); }

ZunRtcpRr* ZunRtcpRrConstructCopy(ZunRtcpRr* p, const ZunRtcpRr* o) { return Wire::Owned::ConstructCopy(p, o); }

ZunRtcpRr* ZunRtcpRrAssign(ZunRtcpRr* p, const ZunRtcpRr* o) { return Wire::Owned::Assign(p, o); }

void ZunRtcpRrDestruct(ZunRtcpRr* p) { Wire::Owned::Destruct(p); }

ZunBool ZunRtcpRrSetReportBlocks(ZunRtcpRr* p, const ZunVector_ZunRtcpReportBlock* blocks) {
  return Wire::Blocks::Assign(&p->report_blocks, blocks) != nullptr;
}

ZunBool ZunRtcpRrSetProfileSpecificExt(ZunRtcpRr* p, const ZunString* ext) {
  return Wire::SetProfileSpecificExt(p, ext);
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpRr, Wire)
