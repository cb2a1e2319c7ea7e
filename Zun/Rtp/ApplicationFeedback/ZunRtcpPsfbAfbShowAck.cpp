#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShowAck.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_SHOWACK);

constexpr ZunSizeT kZeros = 3;
constexpr ZunSizeT kSize = zun::kAfbHeaderSize + 4 + 1 + kZeros;

struct Wire : zun::AlwaysEncodable {
  static ZunSizeT Length(const ZunRtcpPsfbAfbShowAck&) { return kSize; }

  static bool Write(const ZunRtcpPsfbAfbShowAck& p, zun::Output& out, bool pad) {
    zun::BodyWriter w(out, kSize);
    return zun::WriteNorviHead(w, pad, kIdentity, p, kSize) && w.U32(p.showSender) && w.U8(p.seqno) && w.Zeros(kZeros);
  }

  static bool Read(ZunRtcpPsfbAfbShowAck* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadNorviHead(r, p) || !r.U32(&p->showSender) || !r.U8(&p->seqno)) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbShowAckConstructDefault(ZunRtcpPsfbAfbShowAck* p, ZunAllocator*) {
  return ZunRtcpPsfbAfbShowAckConstructFull(p, 0, 0, 0);
}

ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbShowAckConstructFull(ZunRtcpPsfbAfbShowAck* p, ZunRtpSourceId sender, ZunUint8 seq,
                                                          ZunRtpSourceId showSender) {
  zun::SetFeedbackHead(p, kIdentity, sender, 0);
  p->seqno = seq;
  p->showSender = showSender;
  return p;
}

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpPsfbAfbShowAck)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbShowAck, Wire)
