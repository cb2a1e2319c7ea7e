#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTstr.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/PayloadFeedback/CodecControl.h"

ZUN_RTCP_TRADE_OFF_ENTRY_DEFINE(ZunRtcpPsfbTstrEntry)

namespace {

struct TstrFormat {
  using Kind = ZunRtcpPsfbTstr;
  using Entries = zun::VectorOfZunRtcpPsfbTstrEntry;
  static constexpr zun::FeedbackIdentity kIdentity = zun::IsPsfb(ZUN_RTCPPSFB_TYPE_TSTR);
  // A request names its senders in its entries.
  static constexpr bool kWritesSource = false;
  static void CheckSourceRead(ZunRtpSourceId source) {
    if (source == 0) return;
    ZUN_LOG_WARNING_(ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer",
                     "Non-zero SSRC of media source in RTCP TSTR message");
  }
};

}  // namespace

ZUN_RTCP_CODEC_CONTROL_DEFINE(ZunRtcpPsfbTstr, TstrFormat)
