// What tells the kind of an object: the value that its row is found by at each level of dispatch.
#ifndef ZUN_RTP_CORE_IDENTITY_H
#define ZUN_RTP_CORE_IDENTITY_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"
#include "Zun/Rtp/ZunRtpHeader.h"

namespace zun {

// Mark says that `p` is of the kind; a null object, which a failed copy gives, stays null.

struct SubpacketIdentity {
  ZunRtcpSubpacketType type;

  template <class Kind>
  constexpr Kind* Mark(Kind* p) const {
    if (p != nullptr) p->type = type;
    return p;
  }
};

struct FeedbackIdentity {
  ZunRtcpSubpacketType type;
  ZunInt32 fmt;  // the feedback message type

  template <class Kind>
  constexpr Kind* Mark(Kind* p) const {
    if (p == nullptr) return nullptr;
    p->type = type;
    p->fmt = fmt;
    return p;
  }
};

struct AfbIdentity : FeedbackIdentity {
  ZunRtcpPsfbAfbType afb_type;

  template <class Kind>
  constexpr Kind* Mark(Kind* p) const {
    if (FeedbackIdentity::Mark(p) != nullptr) p->afbType = afb_type;
    return p;
  }
};

constexpr SubpacketIdentity IsSubpacket(ZunRtcpSubpacketType type) { return {type}; }
constexpr FeedbackIdentity IsRtpfb(ZunRtcpRtpfbType fmt) { return {ZUN_RTCPSUBPACKET_TYPE_RTPFB, fmt}; }
constexpr FeedbackIdentity IsPsfb(ZunRtcpPsfbType fmt) { return {ZUN_RTCPSUBPACKET_TYPE_PSFB, fmt}; }
constexpr AfbIdentity IsAfb(ZunRtcpPsfbAfbType afb_type) { return {IsPsfb(ZUN_RTCPPSFB_TYPE_AFB), afb_type}; }

// All that feedback kinds begin with; the media source, where there is one.
template <class Identity, class Kind>
void SetFeedbackHead(Kind* p, const Identity& identity, ZunRtpSourceId sender, ZunRtpSourceId source) {
  identity.Mark(p);
  p->sender = sender;
  if constexpr (requires { p->source; }) p->source = source;
}

}  // namespace zun

#endif
