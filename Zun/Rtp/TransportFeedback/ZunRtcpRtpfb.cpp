#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfb.h"

#include "Zun/Rtp/Core/Envelope.h"
#include "Zun/Rtp/Core/RegisteredNumbers.h"

ZUN_RTCPRTPFB_KINDS(ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE)
ZUN_RTCP_ROW_INTERNALS_DECLARE(ZunRtcpRtpfbUnknown)

namespace {

#define ROW(value, Kind, member, Getter) \
  zun::CheckedRow<ZunRtcpRtpfb, ZunRtcpRtpfbUnknown, Kind>(&ZunRtcpRtpfb::member, Getter, ZUN_RTCP_ROW(value, Kind)),
constexpr zun::Table<ZUN_RTCPRTPFB_TYPE_NACK, ZUN_RTCPRTPFB_TYPE_ABAFB> rtpfb_table = {ZUN_RTCPRTPFB_KINDS(ROW)};
constexpr RtcpSubpacketFunctions unknown_rtpfb_funcs = ZUN_RTCP_ROW(ZUN_RTCPRTPFB_TYPE_Unknown, ZunRtcpRtpfbUnknown);

static_assert(zun::PredicateAgrees([](ZunInt32 fmt) { return rtpfb_table.Has(fmt); },
                                   ZunRtcpRtpfbFeedbackMessageIsUnknown, -1, 256));

// A message of the registered dialect that no object holds: it is refused.
bool ConstructWithoutObject(ZunRtcpSubpacket* p, const zun::Body& body, ZunAllocator* a) {
  ZunRtcpRtpfbUnknownConstructDefault(zun::As<ZunRtcpRtpfbUnknown>(p), a);
  return zun::BodyReader(body).Refuse(ZUN_RTCP_DECODE_REASON_NO_OBJECT);
}
constexpr RtcpSubpacketFunctions without_object_funcs = [] {
  RtcpSubpacketFunctions row = unknown_rtpfb_funcs;
  row.construct_from_body = ConstructWithoutObject;
  return row;
}();

struct RtpfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return zun::As<ZunRtcpRtpfb>(p)->unk.fmt; }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 fmt) { return rtpfb_table.Find(fmt, unknown_rtpfb_funcs); }
  static const RtcpSubpacketFunctions& RowOfBody(const zun::Body& body) {
    return body.IsRegistered() ? RowOfRegistered(body.header.count) : RowOf(body.header.count);
  }
  static const RtcpSubpacketFunctions& RowOfRegistered(ZunInt32 fmt) {
    if (fmt == zun::kRegisteredTmmbr) return without_object_funcs;
    return RowOf(fmt == zun::kRegisteredCcfb ? ZUN_RTCPRTPFB_TYPE_CCFB : fmt);
  }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpRtpfbUnknownConstructDefault(zun::As<ZunRtcpRtpfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpRtpfb, RtpfbLevel)
