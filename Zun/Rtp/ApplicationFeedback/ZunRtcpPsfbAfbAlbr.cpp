#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAlbr.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_ALBR);

constexpr ZunSizeT kSize = zun::kAfbHeaderSize + 4;

struct Wire : zun::AlwaysEncodable {
  static ZunSizeT Length(const ZunRtcpPsfbAfbAlbr&) { return kSize; }

  static bool Write(const ZunRtcpPsfbAfbAlbr& p, zun::Output& out, bool pad) {
    zun::BodyWriter w(out, kSize);
    return zun::WriteNorviHead(w, pad, kIdentity, p, kSize) && w.U32(p.available_bit_rate);
  }

  static bool Read(ZunRtcpPsfbAfbAlbr* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadNorviHead(r, p) || !r.U32(&p->available_bit_rate)) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructDefault(ZunRtcpPsfbAfbAlbr* p, ZunAllocator* a) {
  return ZunRtcpPsfbAfbAlbrConstructFull(p, 0, 0, a);
}

ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructFull(ZunRtcpPsfbAfbAlbr* p, ZunRtpSourceId sender,
                                                    ZunUint32 available_bit_rate, ZunAllocator*) {
  zun::SetFeedbackHead(p, kIdentity, sender, 0);
  p->available_bit_rate = available_bit_rate;
  return p;
}

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpPsfbAfbAlbr)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbAlbr, Wire)
