#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbUnknown.h"

#include "Zun/Rtp/Core/UnknownFeedback.h"

namespace {

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_Unknown);

void MarkRead(ZunRtcpPsfbAfbUnknown* p, zun::SubpacketHeader) { kIdentity.Mark(p); }

using Wire = zun::UnknownFeedbackWire<ZunRtcpPsfbAfbUnknown, ZUN_RTCPSUBPACKET_TYPE_PSFB, MarkRead>;

}  // namespace

ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructDefault(ZunRtcpPsfbAfbUnknown* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  ZunStringConstructDefault(&p->data, a);
  return p;
}

ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructFull(ZunRtcpPsfbAfbUnknown* p, ZunRtpSourceId sender,
                                                          ZunRtpSourceId source, const ZunString* data, ZunAllocator*) {
  if (data->size % 4 != 0) return nullptr;
  return zun::ConstructUnknownFeedback(p, kIdentity, sender, source, data, data->allocator);
}

ZUN_OWNING_DEFINE(ZunRtcpPsfbAfbUnknown, &ZunRtcpPsfbAfbUnknown::data)

ZunBool ZunRtcpPsfbAfbUnknownSetData(ZunRtcpPsfbAfbUnknown* p, const ZunString* data) {
  return data->size % 4 == 0 && ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbUnknown, Wire)
