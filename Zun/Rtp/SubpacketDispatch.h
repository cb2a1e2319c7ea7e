// The first level of dispatch, by packet type.
#ifndef ZUN_RTP_SUBPACKETDISPATCH_H
#define ZUN_RTP_SUBPACKETDISPATCH_H

#include "Zun/Rtp/Core/Dispatch.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"

namespace zun {

inline constexpr ZunSizeT kSubpacketRows = 7;
extern const RtcpSubpacketFunctions subpacket_table[kSubpacketRows];  // indexed by type - 200
extern const RtcpSubpacketFunctions unknown_funcs;

struct SubpacketLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return ZunRtcpSubpacketGetType(p); }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 type) {
    return FindRow(subpacket_table, ZUN_RTCPSUBPACKET_TYPE_SR, type, unknown_funcs);
  }
  static bool IsUnknown(ZunInt32 type) { return ZunRtcpSubpacketTypeIsUnknown(type) != 0; }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) { ZunRtcpUnknownConstructDefault(&p->unk, a); }
};

using SubpacketDispatch = Dispatch<SubpacketLevel>;

}  // namespace zun

#endif
