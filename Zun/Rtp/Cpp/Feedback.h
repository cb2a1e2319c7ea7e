// What all feedback messages have (RFC 4585, section 6.1).
#ifndef ZUN_RTP_CPP_FEEDBACK_H
#define ZUN_RTP_CPP_FEEDBACK_H

#include "Zun/Rtp/Cpp/List.h"

namespace zun::rtcp {

template <class S>
class Feedback : public S {
 public:
  using S::S;
  Feedback() = default;
  Feedback(Ssrc sender, Ssrc source, ZunAllocator* a = system_allocator()) noexcept : S(a) {
    this->sender(sender);
    this->source(source);
  }

  // The SSRC of the packet sender.
  Ssrc sender() const noexcept { return this->get()->sender; }
  void sender(Ssrc sender) noexcept { this->get()->sender = sender; }
  // The SSRC of the media source.
  Ssrc source() const noexcept { return this->get()->source; }
  void source(Ssrc source) noexcept { this->get()->source = source; }
};

}  // namespace zun::rtcp

#endif
