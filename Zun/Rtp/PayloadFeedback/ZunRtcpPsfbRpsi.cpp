#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbRpsi.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::FeedbackIdentity kIdentity = zun::IsPsfb(ZUN_RTCPPSFB_TYPE_RPSI);

constexpr ZunUint8 kMaxPt = 127;
constexpr ZunUint8 kPtMask = 0x7F;
constexpr ZunUint8 kUnusedBitsMask = 7;
constexpr ZunSizeT kPbAndPtSize = 2;

// Zero octets that fill the last word after PB, payload type and bit string.
ZunSizeT PaddingSize(const ZunRtcpPsfbRpsi& p) { return zun::PaddingAfter(p.rpsi.size + kPbAndPtSize); }

// The padding after an empty bit string is not counted: a reader would take the count for unused bits.
ZunUint8 PaddingBits(const ZunRtcpPsfbRpsi& p) {
  const ZunSizeT counted = p.rpsi.size > 0 ? PaddingSize(p) : 0;
  return static_cast<ZunUint8>(8 * counted + p.unbits);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbRpsi& p) {
    return zun::kFeedbackHeaderSize + kPbAndPtSize + p.rpsi.size + PaddingSize(p);
  }

  // PB must not count more octets than follow it. One that was read of padding alone has all of them in `unbits`.
  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpPsfbRpsi& p, ZunRtcpDialect) {
    const ZunSizeT most = p.rpsi.size > 0 ? kUnusedBitsMask : 8 * PaddingSize(p) + kUnusedBitsMask;
    return p.pt > kMaxPt || p.unbits > most ? ZUN_RTCP_ENCODE_REASON_VALUE : ZUN_RTCP_ENCODE_REASON_NONE;
  }

  static bool Write(const ZunRtcpPsfbRpsi& p, zun::Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(out, length);
    return zun::WriteFeedbackHeader(w, pad, kIdentity, p, length) && w.U8(PaddingBits(p)) && w.U8(p.pt & kPtMask) &&
           w.String(p.rpsi) && w.Zeros(PaddingSize(p));
  }

  static bool Read(ZunRtcpPsfbRpsi* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadFeedbackSources(r, p)) return false;
    const ZunUint8* const octets = r.Take(kPbAndPtSize);
    if (octets == nullptr) return false;
    p->pt = octets[1] & kPtMask;
    if (!ReadBitString(p, r, octets[0])) return false;
    kIdentity.Mark(p);
    return true;
  }

 private:
  // The whole padding octets are dropped from the end; they are not looked at.
  static bool ReadBitString(ZunRtcpPsfbRpsi* p, zun::BodyReader& r, ZunUint8 padding_bits) {
    const ZunSizeT padding_size = padding_bits >> 3;
    if (!r.NeedValue(padding_size <= r.BytesBeforeEnd())) return false;
    if (padding_size == r.BytesBeforeEnd()) {
      p->unbits = padding_bits;
      ZunStringClear(&p->rpsi);
      return true;
    }
    p->unbits = padding_bits & kUnusedBitsMask;
    return r.String(&p->rpsi, r.BytesBeforeEnd() - padding_size);
  }
};

}  // namespace

ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiConstructDefault(ZunRtcpPsfbRpsi* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  p->unbits = 0;
  p->pt = 0;
  ZunStringConstructDefault(&p->rpsi, a);
  return p;
}

ZunBool ZunRtcpPsfbRpsiSetPt(ZunRtcpPsfbRpsi* p, ZunUint8 pt) {
  if (pt > kMaxPt) return 0;
  p->pt = pt;
  return 1;
}

ZunBool ZunRtcpPsfbRpsiSetRpsi(ZunRtcpPsfbRpsi* p, const ZunString* rpsi) {
  return ZunStringAssign(&p->rpsi, rpsi) != nullptr;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpPsfbRpsi, kIdentity, &ZunRtcpPsfbRpsi::rpsi)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbRpsi, Wire)
