#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Envelope.h"

namespace {

constexpr RtcpSubpacketFunctions unknown_afb_funcs = ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_Unknown, ZunRtcpPsfbAfbUnknown);

// Indexed by house message type - 1.
constexpr ZunInt32 norvi_afb_table_base = ZUN_RTCPPSFBAFB_TYPE_ABAFB;
constexpr RtcpSubpacketFunctions norvi_afb_table[] = {
    ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_ABAFB, ZunRtcpPsfbAfbAbafb),
    ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_ALBR, ZunRtcpPsfbAfbAlbr),
    ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_SHOW, ZunRtcpPsfbAfbShow),
    ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_SHOWACK, ZunRtcpPsfbAfbShowAck),
    ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_LIR, ZunRtcpPsfbAfbLir),
};

// Messages that others defined, above every number of a house message.
constexpr ZunInt32 foreign_afb_table_base = ZUN_RTCPPSFBAFB_TYPE_REMB;
constexpr RtcpSubpacketFunctions foreign_afb_table[] = {
    ZUN_RTCP_ROW(ZUN_RTCPPSFBAFB_TYPE_REMB, ZunRtcpPsfbAfbRemb),
};

struct AfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return ZunRtcpPsfbAfbGetType(zun::As<ZunRtcpPsfbAfb>(p)); }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 type) {
    const RtcpSubpacketFunctions& foreign =
        zun::FindRow(foreign_afb_table, foreign_afb_table_base, type, unknown_afb_funcs);
    return zun::FindRow(norvi_afb_table, norvi_afb_table_base, type, foreign);
  }
  static ZunInt32 ValueOfBody(const ZunString* b, ZunSizeT begin, ZunSizeT end, ZunUint8) {
    return zun::AfbBufferGetAfbType(b, begin, end);
  }
  static bool IsUnknown(ZunInt32 type) { return ZunRtcpPsfbAfbTypeIsUnknown(type) != 0; }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpPsfbAfbUnknownConstructDefault(zun::As<ZunRtcpPsfbAfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpPsfbAfb, AfbLevel)
