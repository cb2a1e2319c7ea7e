#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfb.h"

#include "Zun/Rtp/Core/Envelope.h"

ZUN_RTCPRTPFB_KINDS(ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE)
ZUN_RTCP_ROW_INTERNALS_DECLARE(ZunRtcpRtpfbUnknown)

namespace {

#define ROW(value, Kind, member, Getter) \
  zun::CheckedRow<ZunRtcpRtpfb, ZunRtcpRtpfbUnknown, Kind>(&ZunRtcpRtpfb::member, Getter, ZUN_RTCP_ROW(value, Kind)),
constexpr zun::Table<ZUN_RTCPRTPFB_TYPE_NACK, ZUN_RTCPRTPFB_TYPE_ABAFB> rtpfb_table = {ZUN_RTCPRTPFB_KINDS(ROW)};
constexpr RtcpSubpacketFunctions unknown_rtpfb_funcs = ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_Unknown, ZunRtcpRtpfbUnknown);

static_assert(zun::PredicateAgrees([](ZunInt32 fmt) { return rtpfb_table.Has(fmt); },
                                   ZunRtcpRtpfbFeedbackMessageIsUnknown, -1, 256));

struct RtpfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return zun::As<ZunRtcpRtpfb>(p)->unk.fmt; }
  static ZunInt32 ValueOfBody(const zun::Body& body) { return body.header.count; }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 fmt) { return rtpfb_table.Find(fmt, unknown_rtpfb_funcs); }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpRtpfbUnknownConstructDefault(zun::As<ZunRtcpRtpfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpRtpfb, RtpfbLevel)
