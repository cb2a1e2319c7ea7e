#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbRpsi.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

using OwnedRpsi = zun::OwnedMember<&ZunRtcpPsfbRpsi::rpsi, ZunStringConstructCopy, ZunStringAssign>;

constexpr ZunUint8 kMaxPt = 127;
constexpr ZunUint8 kPtMask = 0x7F;
constexpr ZunUint8 kUnusedBitsMask = 7;
constexpr ZunSizeT kPbAndPtSize = 2;

// Zero octets that fill the last word behind PB, payload type and bit string.
ZunSizeT PaddingSize(const ZunRtcpPsfbRpsi& p) { return zun::PaddingBehind(p.rpsi.size + kPbAndPtSize); }

// The padding behind an empty bit string is not counted: a reader would take the count for unused bits.
ZunUint8 PaddingBits(const ZunRtcpPsfbRpsi& p) {
  const ZunSizeT counted = p.rpsi.size > 0 ? PaddingSize(p) : 0;
  return static_cast<ZunUint8>(8 * counted + p.unbits);
}

void SetHead(ZunRtcpPsfbRpsi* p, ZunRtpSourceId sender, ZunRtpSourceId source) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, ZUN_RTCPPSFB_TYPE_RPSI, sender, source);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbRpsi& p) {
    return zun::kFeedbackHeaderSize + kPbAndPtSize + p.rpsi.size + PaddingSize(p);
  }

  static bool Write(const ZunRtcpPsfbRpsi& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(b, length);
    return zun::WriteFeedbackHeader(w, pad, ZUN_RTCPPSFB_TYPE_RPSI, ZUN_RTCPSUBPACKET_TYPE_PSFB, length, p.sender,
                                    p.source) &&
           w.U8(PaddingBits(p)) && w.U8(p.pt & kPtMask) && w.String(p.rpsi) && w.Zeros(PaddingSize(p));
  }

  static bool Read(ZunRtcpPsfbRpsi* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadFeedbackSources(r, p)) return false;
    const ZunUint8* const octets = r.Take(kPbAndPtSize);
    if (octets == nullptr) return false;
    p->pt = octets[1] & kPtMask;
    if (!ReadBitString(p, r, octets[0])) return false;
    SetHead(p, p->sender, p->source);
    return true;
  }

 private:
  // The whole padding octets are dropped from the end; they are not looked at.
  static bool ReadBitString(ZunRtcpPsfbRpsi* p, zun::BodyReader& r, ZunUint8 padding_bits) {
    const ZunSizeT padding_size = padding_bits >> 3;
    if (padding_size > r.Remaining()) return false;
    if (padding_size == r.Remaining()) {
      p->unbits = padding_bits;
      ZunStringClear(&p->rpsi);
      return true;
    }
    p->unbits = padding_bits & kUnusedBitsMask;
    return r.String(&p->rpsi, r.Remaining() - padding_size);
  }
};

}  // namespace

ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiConstructDefault(ZunRtcpPsfbRpsi* p, ZunAllocator* a) {
  SetHead(p, 0, 0);
  p->unbits = 0;
  p->pt = 0;
  ZunStringConstructDefault(&p->rpsi, a);
  return p;
}

ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiConstructCopy(ZunRtcpPsfbRpsi* p, const ZunRtcpPsfbRpsi* o) {
  return OwnedRpsi::ConstructCopy(p, o);
}

ZunRtcpPsfbRpsi* ZunRtcpPsfbRpsiAssign(ZunRtcpPsfbRpsi* p, const ZunRtcpPsfbRpsi* o) { return OwnedRpsi::Assign(p, o); }

void ZunRtcpPsfbRpsiDestruct(ZunRtcpPsfbRpsi* p) { ZunStringDestruct(&p->rpsi); }

ZunBool ZunRtcpPsfbRpsiSetPt(ZunRtcpPsfbRpsi* p, ZunUint8 pt) {
  if (pt > kMaxPt) return 0;
  p->pt = pt;
  return 1;
}

ZunBool ZunRtcpPsfbRpsiSetRpsi(ZunRtcpPsfbRpsi* p, const ZunString* rpsi) {
  return ZunStringAssign(&p->rpsi, rpsi) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbRpsi, Wire)
