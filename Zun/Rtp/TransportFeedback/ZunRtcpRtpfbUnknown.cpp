#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbUnknown.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/UnknownFeedback.h"

namespace {

void MarkRead(ZunRtcpRtpfbUnknown* p, zun::SubpacketHeader header) { p->fmt = header.count; }

using Wire = zun::UnknownFeedbackWire<ZunRtcpRtpfbUnknown, ZUN_RTCPSUBPACKET_TYPE_RTPFB, MarkRead>;

bool CheckType(ZunRtcpRtpfbType feedback_type, const char* function) {
  return zun::CheckFeedbackType(feedback_type, ZunLogRtcp_, function,
                                "Unknown Transport Layer Feedback type is not in the range 0 - 31");
}

}  // namespace

ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructDefault(ZunRtcpRtpfbUnknown* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_Unknown), 0, 0);
  ZunStringConstructDefault(&p->data, a);
  return p;
}

ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructFull(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType feedback_type,
                                                      ZunRtpSourceId sender, ZunRtpSourceId source,
                                                      const ZunString* data, ZunAllocator* a) {
  constexpr char kFunction[] = "ZunRtcpRtpfbUnknownConstructFull";
  if (!ZunRtcpRtpfbFeedbackMessageIsUnknown(feedback_type)) {
    ZUN_LOG_ERROR_(ZunLogRtcp_, kFunction, "Type field for unknown feedback is actually a known type");
    return nullptr;
  }
  if (!zun::CheckWholeWords(data, ZunLogRtcp_, kFunction, "Length of unknown subpacket data is not a multiple of 4") ||
      !CheckType(feedback_type, kFunction)) {
    return nullptr;
  }
  return zun::ConstructUnknownFeedback(p, zun::IsRtpfb(feedback_type), sender, source, data, a);
}

ZUN_OWNING_DEFINE(ZunRtcpRtpfbUnknown, &ZunRtcpRtpfbUnknown::data)

ZunBool ZunRtcpRtpfbUnknownSetFeedbackMessageType(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType feedback_type) {
  if (!CheckType(feedback_type, "ZunRtcpRtpfbUnknownSetFeedbackMessageType")) return 0;
  p->fmt = feedback_type;
  return 1;
}

ZunBool ZunRtcpRtpfbUnknownSetData(ZunRtcpRtpfbUnknown* p, const ZunString* data) {
  return zun::CheckWholeWords(data, ZunLogRtcp_, "ZunRtcpRtpfbUnknownSetData",
                              "Length of unknown Transport Layer Feedback data is not a multiple of 4") &&
         ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbUnknown, Wire)
