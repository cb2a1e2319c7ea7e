#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbn.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/PlainKind.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr ZunSizeT kTmmbnSize = 16;

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbTmmbn&) { return kTmmbnSize; }

  static bool Write(const ZunRtcpRtpfbTmmbn& p, ZunString* b, bool pad) {
    zun::BodyWriter w(b, kTmmbnSize);
    return zun::WriteFeedbackHeader(w, pad, ZUN_RTCPRTPFB_TYPE_TMMBN, ZUN_RTCPSUBPACKET_TYPE_RTPFB, kTmmbnSize,
                                    p.sender, p.source) &&
           w.U32(p.max_bitrate);
  }

  static bool Read(ZunRtcpRtpfbTmmbn* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadFeedbackSources(r, p) || !r.U32(&p->max_bitrate) || !r.AtEnd()) return false;
    p->type = ZUN_RTCPSUBPACKET_TYPE_RTPFB;
    p->fmt = ZUN_RTCPRTPFB_TYPE_TMMBN;
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructFull(ZunRtcpRtpfbTmmbn* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                                  ZunUint32 max_bitrate, ZunAllocator*) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZUN_RTCPRTPFB_TYPE_TMMBN, sender, source);
  p->max_bitrate = max_bitrate;
  return p;
}

ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructDefault(ZunRtcpRtpfbTmmbn* p, ZunAllocator* a) {
  return ZunRtcpRtpfbTmmbnConstructFull(p, 0, 0, 0, a);
}

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpRtpfbTmmbn)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbTmmbn, Wire)
