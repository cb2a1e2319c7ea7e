#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbPli.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

using OwnedExtension = zun::OwnedMember<&ZunRtcpPsfbPli::profile_specific_ext, ZunStringConstructCopy, ZunStringAssign>;

void SetHead(ZunRtcpPsfbPli* p, ZunRtpSourceId sender, ZunRtpSourceId source) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, ZUN_RTCPPSFB_TYPE_PLI, sender, source);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbPli& p) { return zun::kFeedbackHeaderSize + p.profile_specific_ext.size; }

  static bool Write(const ZunRtcpPsfbPli& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(b, length);
    return zun::WriteFeedbackHeader(w, pad, ZUN_RTCPPSFB_TYPE_PLI, ZUN_RTCPSUBPACKET_TYPE_PSFB, length, p.sender,
                                    p.source) &&
           w.String(p.profile_specific_ext);
  }

  static bool Read(ZunRtcpPsfbPli* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadFeedbackSources(r, p) || !r.Rest(&p->profile_specific_ext)) return false;
    SetHead(p, p->sender, p->source);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructDefault(ZunRtcpPsfbPli* p, ZunAllocator* a) {
  return ZunRtcpPsfbPliConstructFull(p, 0, 0, a);
}

ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructFull(ZunRtcpPsfbPli* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                            ZunAllocator* a) {
  SetHead(p, sender, source);
  ZunStringConstructDefault(&p->profile_specific_ext, a);
  return p;
}

ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructCopy(ZunRtcpPsfbPli* p, const ZunRtcpPsfbPli* o) {
  return OwnedExtension::ConstructCopy(p, o);
}

ZunRtcpPsfbPli* ZunRtcpPsfbPliAssign(ZunRtcpPsfbPli* p, const ZunRtcpPsfbPli* o) {
  return OwnedExtension::Assign(p, o);
}

void ZunRtcpPsfbPliDestruct(ZunRtcpPsfbPli* p) { ZunStringDestruct(&p->profile_specific_ext); }

ZunBool ZunRtcpPsfbPliSetProfileSpecificExt(ZunRtcpPsfbPli* p, const ZunString* ext) {
  return ext->size % 4 == 0 && ZunStringAssign(&p->profile_specific_ext, ext) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbPli, Wire)
