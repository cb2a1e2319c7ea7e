#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfb.h"

#include "Zun/Rtp/Core/Envelope.h"

ZUN_RTCPPSFB_KINDS(ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE)
ZUN_RTCP_ROW_INTERNALS_DECLARE(ZunRtcpPsfbUnknown)

namespace {

#define ROW(value, Kind, member, Getter) \
  zun::CheckedRow<ZunRtcpPsfb, ZunRtcpPsfbUnknown, Kind>(&ZunRtcpPsfb::member, Getter, ZUN_RTCP_ROW(value, Kind)),
constexpr zun::Table<ZUN_RTCPPSFB_TYPE_PLI, ZUN_RTCPPSFB_TYPE_AFB> psfb_table = {ZUN_RTCPPSFB_KINDS(ROW)};
constexpr RtcpSubpacketFunctions unknown_psfb_funcs = ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_Unknown, ZunRtcpPsfbUnknown);

static_assert(zun::PredicateAgrees([](ZunInt32 fmt) { return psfb_table.Has(fmt); }, ZunRtcpPsfbTypeIsUnknown, -1,
                                   256));

struct PsfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return zun::As<ZunRtcpPsfb>(p)->unk.fmt; }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 fmt) { return psfb_table.Find(fmt, unknown_psfb_funcs); }
  static const RtcpSubpacketFunctions& RowOfBody(const zun::Body& body) { return RowOf(body.header.count); }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpPsfbUnknownConstructDefault(zun::As<ZunRtcpPsfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpPsfb, PsfbLevel)
