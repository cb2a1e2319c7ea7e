#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbUnknown.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/UnknownFeedback.h"

namespace {

void MarkRead(ZunRtcpPsfbUnknown* p, zun::SubpacketHeader header) { p->fmt = header.count; }

using Wire = zun::UnknownFeedbackWire<ZunRtcpPsfbUnknown, ZUN_RTCPSUBPACKET_TYPE_PSFB, MarkRead>;

bool CheckType(ZunRtcpPsfbType feedback_type, const char* function) {
  return zun::CheckFeedbackType(feedback_type, ZunLogRtcpFeedback_, function,
                                "Unknown Payload Specific Feedback type is not in the range 0 - 31");
}

}  // namespace

ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructDefault(ZunRtcpPsfbUnknown* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, zun::IsPsfb(ZUN_RTCPPSFB_TYPE_Unknown), 0, 0);
  ZunStringConstructDefault(&p->data, a);
  return p;
}

// A known type is no matter of feedback but a mistake in the calling code: it alone goes to the general category.
ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructFull(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType feedback_type,
                                                    ZunRtpSourceId sender, ZunRtpSourceId source, const ZunString* data,
                                                    ZunAllocator* a) {
  constexpr char kFunction[] = "ZunRtcpPsfbUnknownConstructFull";
  if (!ZunRtcpPsfbTypeIsUnknown(feedback_type)) {
    ZUN_LOG_ERROR_(ZunLogRtcp_, kFunction, "Type field for unknown feedback is actually a known type");
    return nullptr;
  }
  if (!zun::CheckWholeWords(data, ZunLogRtcpFeedback_, kFunction,
                            "Length of Payload Specific Feedback data is not a multiple of 4") ||
      !CheckType(feedback_type, kFunction)) {
    return nullptr;
  }
  return zun::ConstructUnknownFeedback(p, zun::IsPsfb(feedback_type), sender, source, data, a);
}

ZUN_OWNING_DEFINE(ZunRtcpPsfbUnknown, &ZunRtcpPsfbUnknown::data)

// Unlike construction, this lets a known type pass: the raw bytes of such a message can be sent as they are.
ZunBool ZunRtcpPsfbUnknownSetFeedbackMessageType(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType feedback_type) {
  if (!CheckType(feedback_type, "ZunRtcpPsfbUnknownSetFeedbackMessageType")) return 0;
  p->fmt = feedback_type;
  return 1;
}

ZunBool ZunRtcpPsfbUnknownSetData(ZunRtcpPsfbUnknown* p, const ZunString* data) {
  return zun::CheckWholeWords(data, ZunLogRtcpFeedback_, "ZunRtcpPsfbUnknownSetData",
                              "Length of unknown Payload Specific Feedback data is not a multiple of 4") &&
         ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbUnknown, Wire)
