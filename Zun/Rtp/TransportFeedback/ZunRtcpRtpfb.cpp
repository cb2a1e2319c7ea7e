#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfb.h"

#include <iterator>

#include "Zun/Rtp/Core/Envelope.h"

namespace {

constexpr RtcpSubpacketFunctions unknown_rtpfb_funcs = ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_Unknown, ZunRtcpRtpfbUnknown);

// Indexed by message type - 1.
// clang-format off
constexpr RtcpSubpacketFunctions rtpfb_table[] = {
    ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_NACK, ZunRtcpRtpfbNack),
    ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_TMMBR, ZunRtcpRtpfbTmmbr),
    ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_TMMBN, ZunRtcpRtpfbTmmbn),
    {}, {}, {}, {}, {}, {}, {}, {}, {}, {},  // 4 to 13
    ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_CCFB, ZunRtcpRtpfbCcfb),
    ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_TransportCC, ZunRtcpRtpfbTransportCc),
    {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {},  // 16 to 29
    ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_ABAFB, ZunRtcpRtpfbAbafb),
};
// clang-format on
static_assert(std::size(rtpfb_table) == ZUN_RTCPRTPFB_TYPE_ABAFB);

struct RtpfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return zun::As<ZunRtcpRtpfb>(p)->unk.fmt; }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 fmt) {
    return zun::FindRow(rtpfb_table, ZUN_RTCPRTPFB_TYPE_NACK, fmt, unknown_rtpfb_funcs);
  }
  static ZunInt32 ValueOfBody(const ZunString*, ZunSizeT, ZunSizeT, ZunUint8 count) { return count; }
  static bool IsUnknown(ZunInt32 fmt) { return ZunRtcpRtpfbFeedbackMessageIsUnknown(fmt) != 0; }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpRtpfbUnknownConstructDefault(zun::As<ZunRtcpRtpfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpRtpfb, RtpfbLevel)
