#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbUnknown.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Core/UnknownFeedback.h"

namespace {

using OwnedData = zun::OwnedData<ZunRtcpRtpfbUnknown>;

void SetRead(ZunRtcpRtpfbUnknown* p, zun::SubpacketHeader header) { p->fmt = header.count; }

using Wire = zun::UnknownFeedbackWire<ZunRtcpRtpfbUnknown, ZUN_RTCPSUBPACKET_TYPE_RTPFB, SetRead>;

bool CheckData(const ZunString* data, const char* function, const char* message) {
  if (data->size % 4 == 0) return true;
  LOG_ERROR(ZunLogRtcp_, function, message);
  return false;
}

bool CheckFeedbackType(ZunRtcpRtpfbType feedback_type, const char* function) {
  if (feedback_type >= 0 && feedback_type <= zun::kMaxFeedbackMessageType) return true;
  LOG_ERROR(ZunLogRtcp_, function, "Unknown Transport Layer Feedback type is not in the range 0 - 31");
  return false;
}

}  // namespace

ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructDefault(ZunRtcpRtpfbUnknown* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZUN_RTCPRTPFB_TYPE_Unknown, 0, 0);
  ZunStringConstructDefault(&p->data, a);
  return p;
}

ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructFull(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType feedback_type,
                                                      ZunRtpSourceId sender, ZunRtpSourceId source,
                                                      const ZunString* data, ZunAllocator* a) {
  constexpr char kFunction[] = "ZunRtcpRtpfbUnknownConstructFull";
  if (!ZunRtcpRtpfbFeedbackMessageIsUnknown(feedback_type)) {
    LOG_ERROR(ZunLogRtcp_, kFunction, "Type field for unknown feedback is actually a known type");
    return nullptr;
  }
  if (!CheckData(data, kFunction, "Length of unknown subpacket data is not a multiple of 4")) return nullptr;
  if (!CheckFeedbackType(feedback_type, kFunction)) return nullptr;
  if (ZunStringConstructSubstring(&p->data, data, 0, data->size, a) == nullptr) return nullptr;
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_RTPFB, feedback_type, sender, source);
  return p;
}

ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructCopy(ZunRtcpRtpfbUnknown* p, const ZunRtcpRtpfbUnknown* o) {
  return OwnedData::ConstructCopy(p, o);
}

ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownAssign(ZunRtcpRtpfbUnknown* p, const ZunRtcpRtpfbUnknown* o) {
  return OwnedData::Assign(p, o);
}

void ZunRtcpRtpfbUnknownDestruct(ZunRtcpRtpfbUnknown* p) { ZunStringDestruct(&p->data); }

ZunBool ZunRtcpRtpfbUnknownSetFeedbackMessageType(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType feedback_type) {
  if (!CheckFeedbackType(feedback_type, "ZunRtcpRtpfbUnknownSetFeedbackMessageType")) return 0;
  p->fmt = feedback_type;
  return 1;
}

ZunBool ZunRtcpRtpfbUnknownSetData(ZunRtcpRtpfbUnknown* p, const ZunString* data) {
  return CheckData(data, "ZunRtcpRtpfbUnknownSetData",
                   "Length of unknown Transport Layer Feedback data is not a multiple of 4") &&
         ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbUnknown, Wire)
