#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbn.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::FeedbackIdentity kIdentity = zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_TMMBN);

constexpr ZunSizeT kTmmbnSize = 16;

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbTmmbn&) { return kTmmbnSize; }

  // The registered message of this number has another form.
  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpRtpfbTmmbn&, ZunRtcpDialect dialect) {
    return dialect == ZUN_RTCP_DIALECT_REGISTERED ? ZUN_RTCP_ENCODE_REASON_NO_FORM : ZUN_RTCP_ENCODE_REASON_NONE;
  }

  static bool Write(const ZunRtcpRtpfbTmmbn& p, zun::Output& out, bool pad) {
    zun::BodyWriter w(out, kTmmbnSize);
    return zun::WriteFeedbackHeader(w, pad, kIdentity, p, kTmmbnSize) && w.U32(p.max_bitrate);
  }

  static bool Read(ZunRtcpRtpfbTmmbn* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadFeedbackSources(r, p) || !r.U32(&p->max_bitrate) || !r.NeedEnd()) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructFull(ZunRtcpRtpfbTmmbn* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                                  ZunUint32 max_bitrate, ZunAllocator*) {
  zun::SetFeedbackHead(p, kIdentity, sender, source);
  p->max_bitrate = max_bitrate;
  return p;
}

ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructDefault(ZunRtcpRtpfbTmmbn* p, ZunAllocator* a) {
  return ZunRtcpRtpfbTmmbnConstructFull(p, 0, 0, 0, a);
}

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpRtpfbTmmbn)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbTmmbn, Wire)
