#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Envelope.h"

ZUN_RTCPPSFBAFB_KINDS(ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE)
ZUN_RTCP_ROW_INTERNALS_DECLARE(ZunRtcpPsfbAfbUnknown)

namespace {

constexpr ZunInt32 norvi_afb_table_base = ZUN_RTCPPSFBAFB_TYPE_ABAFB;
// Messages that others defined, above every number of a house message.
constexpr ZunInt32 foreign_afb_table_base = ZUN_RTCPPSFBAFB_TYPE_REMB;
static_assert(foreign_afb_table_base > 0xFFFF);

#define ROW(value, Kind, member, Getter)                                                        \
  zun::CheckedRow<ZunRtcpPsfbAfb, ZunRtcpPsfbAfbUnknown, Kind>(&ZunRtcpPsfbAfb::member, Getter, \
                                                               ZUN_RTCP_ROW(value, Kind)),
constexpr zun::Table<norvi_afb_table_base, ZUN_RTCPPSFBAFB_TYPE_LIR> norvi_afb_table = {
    ZUN_RTCPPSFBAFB_HOUSE_KINDS(ROW)};
constexpr zun::Table<foreign_afb_table_base, ZUN_RTCPPSFBAFB_TYPE_REMB> foreign_afb_table = {
    ZUN_RTCPPSFBAFB_FOREIGN_KINDS(ROW)};
constexpr RtcpSubpacketFunctions unknown_afb_funcs = ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_Unknown, ZunRtcpPsfbAfbUnknown);

constexpr auto kHasRow = [](ZunInt32 type) { return norvi_afb_table.Has(type) || foreign_afb_table.Has(type); };
static_assert(zun::PredicateAgrees(kHasRow, ZunRtcpPsfbAfbTypeIsUnknown, -1, 256));
static_assert(zun::PredicateAgrees(kHasRow, ZunRtcpPsfbAfbTypeIsUnknown, foreign_afb_table_base - 256,
                                   foreign_afb_table_base + 256));

struct AfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return zun::As<ZunRtcpPsfbAfb>(p)->unk.afbType; }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 type) {
    return norvi_afb_table.Find(type, foreign_afb_table.Find(type, unknown_afb_funcs));
  }
  static const RtcpSubpacketFunctions& RowOfBody(const zun::Body& body) {
    return RowOf(zun::AfbBufferGetAfbType(body));
  }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpPsfbAfbUnknownConstructDefault(zun::As<ZunRtcpPsfbAfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpPsfbAfb, AfbLevel)
