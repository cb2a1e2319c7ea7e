#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAlbr.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/PlainKind.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr ZunSizeT kSize = zun::kAfbHeaderSize + 4;

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbAfbAlbr&) { return kSize; }

  static bool Write(const ZunRtcpPsfbAfbAlbr& p, ZunString* b, bool pad) {
    zun::BodyWriter w(b, kSize);
    return zun::WriteNorviHead(w, pad, p, ZUN_RTCPPSFBAFB_TYPE_ALBR, kSize) && w.U32(p.available_bit_rate);
  }

  static bool Read(ZunRtcpPsfbAfbAlbr* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadNorviHead(r, p) || !r.U32(&p->available_bit_rate)) return false;
    zun::SetAfbTypes(p, ZUN_RTCPPSFBAFB_TYPE_ALBR);
    return true;
  }
};

}  // namespace

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpPsfbAfbAlbr)

ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructDefault(ZunRtcpPsfbAfbAlbr* p, ZunAllocator* a) {
  return ZunRtcpPsfbAfbAlbrConstructFull(p, 0, 0, a);
}

ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructFull(ZunRtcpPsfbAfbAlbr* p, ZunRtpSourceId sender,
                                                    ZunUint32 available_bit_rate, ZunAllocator*) {
  zun::SetAfbHead(p, ZUN_RTCPPSFBAFB_TYPE_ALBR, sender, 0);
  p->available_bit_rate = available_bit_rate;
  return p;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbAlbr, Wire)
