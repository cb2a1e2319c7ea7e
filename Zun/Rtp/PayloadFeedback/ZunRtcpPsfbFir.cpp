#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbFir.h"

#include "Zun/Rtp/PayloadFeedback/CodecControl.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpPsfbFirEntry)
ZUN_VECTOR_DEFINE(ZunRtcpPsfbFirEntry)
ZUN_PLAIN_DEFINE(ZunRtcpPsfbFirEntry)

namespace {

struct FirFormat {
  using Kind = ZunRtcpPsfbFir;
  using Entries = zun::VectorOfZunRtcpPsfbFirEntry;
  static constexpr zun::FeedbackIdentity kIdentity = zun::IsPsfb(ZUN_RTCPPSFB_TYPE_FIR);
  static constexpr bool kWritesSource = true;
  static void CheckSourceRead(ZunRtpSourceId) {}
};

}  // namespace

ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryConstructFull(ZunRtcpPsfbFirEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                      ZunAllocator*) {
  *p = {ssrc, seqno};
  return p;
}

ZUN_RTCP_CODEC_CONTROL_DEFINE(ZunRtcpPsfbFir, FirFormat)
