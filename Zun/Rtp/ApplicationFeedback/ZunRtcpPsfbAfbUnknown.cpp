#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbUnknown.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Core/UnknownFeedback.h"

namespace {

using OwnedData = zun::OwnedData<ZunRtcpPsfbAfbUnknown>;

void SetRead(ZunRtcpPsfbAfbUnknown* p, zun::SubpacketHeader) { zun::SetAfbTypes(p, ZUN_RTCPPSFBAFB_TYPE_Unknown); }

using Wire = zun::UnknownFeedbackWire<ZunRtcpPsfbAfbUnknown, ZUN_RTCPSUBPACKET_TYPE_PSFB, SetRead>;

}  // namespace

ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructDefault(ZunRtcpPsfbAfbUnknown* p, ZunAllocator* a) {
  zun::SetAfbHead(p, ZUN_RTCPPSFBAFB_TYPE_Unknown, 0, 0);
  ZunStringConstructDefault(&p->data, a);
  return p;
}

ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructFull(ZunRtcpPsfbAfbUnknown* p, ZunRtpSourceId sender,
                                                          ZunRtpSourceId source, const ZunString* data, ZunAllocator*) {
  if (data->size % 4 != 0 || ZunStringConstructCopy(&p->data, data) == nullptr) return nullptr;
  zun::SetAfbHead(p, ZUN_RTCPPSFBAFB_TYPE_Unknown, sender, source);
  return p;
}

ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructCopy(ZunRtcpPsfbAfbUnknown* p, const ZunRtcpPsfbAfbUnknown* o) {
  return OwnedData::ConstructCopy(p, o);
}

ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownAssign(ZunRtcpPsfbAfbUnknown* p, const ZunRtcpPsfbAfbUnknown* o) {
  return OwnedData::Assign(p, o);
}

void ZunRtcpPsfbAfbUnknownDestruct(ZunRtcpPsfbAfbUnknown* p) { ZunStringDestruct(&p->data); }

ZunBool ZunRtcpPsfbAfbUnknownSetData(ZunRtcpPsfbAfbUnknown* p, const ZunString* data) {
  return data->size % 4 == 0 && ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbUnknown, Wire)
