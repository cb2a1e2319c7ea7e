#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfb.h"

#include "Zun/Rtp/Core/Envelope.h"

namespace {

constexpr RtcpSubpacketFunctions unknown_psfb_funcs = ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_Unknown, ZunRtcpPsfbUnknown);

// Indexed by FMT - 1.
constexpr RtcpSubpacketFunctions psfb_table[] = {
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_PLI, ZunRtcpPsfbPli),
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_SLI, ZunRtcpPsfbSli),
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_RPSI, ZunRtcpPsfbRpsi),
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_FIR, ZunRtcpPsfbFir),
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_TSTR, ZunRtcpPsfbTstr),
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_TSTA, ZunRtcpPsfbTsta),
    // 7 to 14 are not modelled.
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    {},
    ZUN_RTCP_ROW(ZUN_RTCPPSFB_TYPE_AFB, ZunRtcpPsfbAfb),
};

struct PsfbLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) {
    return ZunRtcpPsfbGetFeedbackMessageType(zun::As<ZunRtcpPsfb>(p));
  }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 fmt) {
    return zun::FindRow(psfb_table, ZUN_RTCPPSFB_TYPE_PLI, fmt, unknown_psfb_funcs);
  }
  static ZunInt32 ValueOfBody(const ZunString*, ZunSizeT, ZunSizeT, ZunUint8 count) { return count; }
  static bool IsUnknown(ZunInt32 fmt) { return ZunRtcpPsfbTypeIsUnknown(fmt) != 0; }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) {
    ZunRtcpPsfbUnknownConstructDefault(zun::As<ZunRtcpPsfbUnknown>(p), a);
  }
};

}  // namespace

ZUN_RTCP_ENVELOPE_DEFINE(ZunRtcpPsfb, PsfbLevel)
