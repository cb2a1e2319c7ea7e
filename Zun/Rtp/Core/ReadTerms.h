// The terms on which a datagram is decoded.
#ifndef ZUN_RTP_CORE_READTERMS_H
#define ZUN_RTP_CORE_READTERMS_H

#include "Zun/Rtp/Core/ZunRtcpDialect.h"
#include "Zun/Rtp/Core/ZunRtcpReason.h"

namespace zun {

struct ReadTerms {
  ZunRtcpDialect dialect;
  ZunSizeT entries_left;   // how many entries of lists the datagram may still hold
  ZunSizeT statuses_left;  // and how many statuses of transport-wide feedback
  // Why the subpacket that is read is refused, as far as it is known, and where reading stopped.
  ZunRtcpDecodeReason reason;
  ZunSizeT position;

  // Returns false, for whoever refuses to return it: a constant, so that nothing need be kept across the call.
  bool Refuse(ZunRtcpDecodeReason why, ZunSizeT where) {
    Note(why, where);
    return false;
  }

 private:
  [[gnu::cold, gnu::noinline]] void Note(ZunRtcpDecodeReason why, ZunSizeT where) {
    reason = why;
    position = where;
  }
};

}  // namespace zun

#endif
