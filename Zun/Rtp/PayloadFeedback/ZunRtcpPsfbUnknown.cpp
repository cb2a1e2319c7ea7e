#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbUnknown.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Core/UnknownFeedback.h"

namespace {

using OwnedData = zun::OwnedData<ZunRtcpPsfbUnknown>;

bool CheckRange(ZunRtcpPsfbType feedback_type, const char* function) {
  if (feedback_type >= 0 && feedback_type <= zun::kMaxFeedbackMessageType) return true;
  LOG_ERROR(ZunLogRtcpFeedback_, function, "Unknown Payload Specific Feedback type is not in the range 0 - 31");
  return false;
}

void SetRead(ZunRtcpPsfbUnknown* p, zun::SubpacketHeader header) { p->fmt = header.count; }

using Wire = zun::UnknownFeedbackWire<ZunRtcpPsfbUnknown, ZUN_RTCPSUBPACKET_TYPE_PSFB, SetRead>;

}  // namespace

ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructDefault(ZunRtcpPsfbUnknown* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, ZUN_RTCPPSFB_TYPE_Unknown, 0, 0);
  ZunStringConstructDefault(&p->data, a);
  return p;
}

// A known type is no matter of feedback but a mistake in the calling code: it alone goes to the general category.
ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructFull(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType feedback_type,
                                                    ZunRtpSourceId sender, ZunRtpSourceId source, const ZunString* data,
                                                    ZunAllocator* a) {
  if (!ZunRtcpPsfbTypeIsUnknown(feedback_type)) {
    LOG_ERROR(ZunLogRtcp_, "ZunRtcpPsfbUnknownConstructFull",
              "Type field for unknown feedback is actually a known type");
    return nullptr;
  }
  if (data->size % 4 != 0) {
    LOG_ERROR(ZunLogRtcpFeedback_, "ZunRtcpPsfbUnknownConstructFull",
              "Length of Payload Specific Feedback data is not a multiple of 4");
    return nullptr;
  }
  if (!CheckRange(feedback_type, "ZunRtcpPsfbUnknownConstructFull")) return nullptr;
  if (ZunStringConstructSubstring(&p->data, data, 0, data->size, a) == nullptr) return nullptr;
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, feedback_type, sender, source);
  return p;
}

ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructCopy(ZunRtcpPsfbUnknown* p, const ZunRtcpPsfbUnknown* o) {
  return OwnedData::ConstructCopy(p, o);
}

ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownAssign(ZunRtcpPsfbUnknown* p, const ZunRtcpPsfbUnknown* o) {
  return OwnedData::Assign(p, o);
}

void ZunRtcpPsfbUnknownDestruct(ZunRtcpPsfbUnknown* p) { ZunStringDestruct(&p->data); }

// Unlike construction, this lets a known type pass: the raw bytes of such a message can be sent as they are.
ZunBool ZunRtcpPsfbUnknownSetFeedbackMessageType(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType feedback_type) {
  if (!CheckRange(feedback_type, "ZunRtcpPsfbUnknownSetFeedbackMessageType")) return 0;
  p->fmt = feedback_type;
  return 1;
}

ZunBool ZunRtcpPsfbUnknownSetData(ZunRtcpPsfbUnknown* p, const ZunString* data) {
  if (data->size % 4 != 0) {
    LOG_ERROR(ZunLogRtcpFeedback_, "ZunRtcpPsfbUnknownSetData",
              "Length of unknown Payload Specific Feedback data is not a multiple of 4");
    return 0;
  }
  return ZunStringAssign(&p->data, data) != nullptr;
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbUnknown, Wire)
