// The first level of dispatch, by packet type.
#ifndef ZUN_RTP_CORE_SUBPACKETDISPATCH_H
#define ZUN_RTP_CORE_SUBPACKETDISPATCH_H

#include "Zun/Rtp/Core/Dispatch.h"
#include "Zun/Rtp/Core/ZunRtcpSubpacket.h"

namespace zun {

struct SubpacketLevel {
  static ZunInt32 ValueOf(const ZunRtcpSubpacket* p) { return ZunRtcpSubpacketGetType(p); }
  static const RtcpSubpacketFunctions& RowOf(ZunInt32 type);
  static bool IsUnknown(ZunInt32 type) { return ZunRtcpSubpacketTypeIsUnknown(type) != 0; }
  static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a) { ZunRtcpUnknownConstructDefault(&p->unk, a); }
};

using SubpacketDispatch = Dispatch<SubpacketLevel>;

}  // namespace zun

#endif
