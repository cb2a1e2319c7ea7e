#include "Zun/Rtp/Reports/ZunRtcpRr.h"

#include "Zun/Rtp/Reports/Report.h"

namespace {

constexpr zun::SubpacketIdentity kIdentity = zun::IsSubpacket(ZUN_RTCPSUBPACKET_TYPE_RR);

struct Fields {
  static constexpr ZunRtcpSubpacketType kType = kIdentity.type;
  static constexpr ZunSizeT kSize = 4;

  static void Write(zun::FieldWriter& f, const ZunRtcpRr& p) { f.U32(p.sender_source); }
  template <class Reader>
  static bool Read(Reader& r, ZunRtcpRr* p) {
    return r.U32(&p->sender_source);
  }
};

using Wire = zun::Report<ZunRtcpRr, Fields>;

}  // namespace

ZUN_RTCP_REPORT_DEFINE(ZunRtcpRr, Wire)
