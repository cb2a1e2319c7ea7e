#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbPli.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::FeedbackIdentity kIdentity = zun::IsPsfb(ZUN_RTCPPSFB_TYPE_PLI);

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbPli& p) { return zun::kFeedbackHeaderSize + p.profile_specific_ext.size; }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpPsfbPli& p, ZunRtcpDialect) {
    return p.profile_specific_ext.size % 4 == 0 ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS;
  }

  template <class Writer>
  static bool Write(const ZunRtcpPsfbPli& p, Writer& w, bool pad) {
    const ZunSizeT length = Length(p);
    return zun::WriteFeedbackHeader(w, pad, kIdentity, p, length) && w.String(p.profile_specific_ext);
  }

  template <class Reader>
  static bool Read(ZunRtcpPsfbPli* p, Reader& r, const zun::Body&) {
    if (!zun::ReadFeedbackSources(r, p) || !r.StringToEnd(&p->profile_specific_ext)) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructDefault(ZunRtcpPsfbPli* p, ZunAllocator* a) {
  return ZunRtcpPsfbPliConstructFull(p, 0, 0, a);
}

ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructFull(ZunRtcpPsfbPli* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                            ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, sender, source);
  ZunStringConstructDefault(&p->profile_specific_ext, a);
  return p;
}

ZunBool ZunRtcpPsfbPliSetProfileSpecificExt(ZunRtcpPsfbPli* p, const ZunString* ext) {
  return ext->size % 4 == 0 && ZunStringAssign(&p->profile_specific_ext, ext) != nullptr;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpPsfbPli, kIdentity, &ZunRtcpPsfbPli::profile_specific_ext)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbPli, Wire)
