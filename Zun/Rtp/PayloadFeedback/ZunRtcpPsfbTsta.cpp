#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTsta.h"

#include "Zun/Rtp/PayloadFeedback/CodecControl.h"

ZUN_RTCP_TRADE_OFF_ENTRY_DEFINE(ZunRtcpPsfbTstaEntry)

namespace {

struct TstaFormat {
  using Kind = ZunRtcpPsfbTsta;
  using Entries = zun::VectorOfZunRtcpPsfbTstaEntry;
  static constexpr zun::FeedbackIdentity kIdentity = zun::IsPsfb(ZUN_RTCPPSFB_TYPE_TSTA);
  static constexpr bool kWritesSource = true;
  static void CheckSourceRead(ZunRtpSourceId) {}
};

}  // namespace

ZUN_RTCP_CODEC_CONTROL_DEFINE(ZunRtcpPsfbTsta, TstaFormat)
