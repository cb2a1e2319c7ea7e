#include "Zun/Rtp/Reports/ZunRtcpSr.h"

#include "Zun/Rtp/Reports/Report.h"

namespace {

constexpr zun::SubpacketIdentity kIdentity = zun::IsSubpacket(ZUN_RTCPSUBPACKET_TYPE_SR);

struct Fields {
  static constexpr ZunRtcpSubpacketType kType = kIdentity.type;
  static constexpr ZunSizeT kSize = 24;

  static void Write(zun::FieldWriter& f, const ZunRtcpSr& p) {
    f.U32(p.sender_source);
    f.U64(p.ntp_timestamp);
    f.U32(p.rtp_timestamp);
    f.U32(p.sender_packet_cnt);
    f.U32(p.sender_octet_cnt);
  }

  template <class Reader>
  static bool Read(Reader& r, ZunRtcpSr* p) {
    return r.U32(&p->sender_source) && r.U64(&p->ntp_timestamp) && r.U32(&p->rtp_timestamp) &&
           r.U32(&p->sender_packet_cnt) && r.U32(&p->sender_octet_cnt);
  }
};

using Wire = zun::Report<ZunRtcpSr, Fields>;

}  // namespace

ZUN_RTCP_REPORT_DEFINE(ZunRtcpSr, Wire)
