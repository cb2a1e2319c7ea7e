// The first level of dispatch, by packet type.
#ifndef ZUN_RTP_SUBPACKETDISPATCH_H
#define ZUN_RTP_SUBPACKETDISPATCH_H

#include "Zun/Rtp/Core/Dispatch.h"
#include "Zun/Rtp/Core/Table.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"

namespace zun {

extern const Table<ZUN_RTCPSUBPACKET_TYPE_SR, ZUN_RTCPSUBPACKET_TYPE_PSFB> subpacket_table;
extern const RtcpSubpacketFunctions unknown_funcs;

struct SubpacketLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return ZunRtcpSubpacketGetType(p); }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 type) { return subpacket_table.Find(type, unknown_funcs); }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) { ZunRtcpUnknownConstructDefault(&p->unk, a); }
};

using SubpacketDispatch = Dispatch<SubpacketLevel>;

}  // namespace zun

#endif
