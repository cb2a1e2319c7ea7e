#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbAbafb.h"

#include "Zun/Rtp/Core/CalculatedDelay.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/PlainKind.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr ZunSizeT kAbafbSize = 32;

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbAbafb&) { return kAbafbSize; }

  static bool Write(const ZunRtcpRtpfbAbafb& p, ZunString* b, bool pad) {
    const ZunUint32 delay = zun::CurrentDelay(p);
    zun::BodyWriter w(b, kAbafbSize);
    return zun::WriteFeedbackHeader(w, pad, ZUN_RTCPRTPFB_TYPE_ABAFB, ZUN_RTCPSUBPACKET_TYPE_RTPFB, kAbafbSize,
                                    p.sender, p.source) &&
           w.U32(p.timestamp) && w.U32(delay) && w.U32(p.data_rate) && w.U32(p.loss_rate) && w.U32(p.aba_data_rate);
  }

  static bool Read(ZunRtcpRtpfbAbafb* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadFeedbackSources(r, p) || !r.U32(&p->timestamp) || !zun::ReadDelay(r, p) || !r.U32(&p->data_rate) ||
        !r.U32(&p->loss_rate) || !r.U32(&p->aba_data_rate) || !r.AtEnd()) {
      return false;
    }
    p->type = ZUN_RTCPSUBPACKET_TYPE_RTPFB;
    p->fmt = ZUN_RTCPRTPFB_TYPE_ABAFB;
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructFull(ZunRtcpRtpfbAbafb* p, ZunRtpSourceId sender, ZunUint32 timestamp,
                                                  ZunUint32 delay, ZunUint32 data_rate, ZunUint32 loss_rate,
                                                  ZunUint32 aba_data_rate, ZunAllocator* a) {
  ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(p, sender, timestamp, 0, data_rate, loss_rate, aba_data_rate, a);
  zun::StoreDelay(p, delay);
  return p;
}

// Stores the larger member of the union, so no byte of it is ever left undefined.
ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(ZunRtcpRtpfbAbafb* p, ZunRtpSourceId sender,
                                                                 ZunUint32 timestamp, ZunTime timestamp_time,
                                                                 ZunUint32 data_rate, ZunUint32 loss_rate,
                                                                 ZunUint32 aba_data_rate, ZunAllocator*) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZUN_RTCPRTPFB_TYPE_ABAFB, sender, 0);
  p->timestamp = timestamp;
  zun::StoreTimestampTime(p, timestamp_time);
  p->data_rate = data_rate;
  p->loss_rate = loss_rate;
  p->aba_data_rate = aba_data_rate;
  return p;
}

ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructDefault(ZunRtcpRtpfbAbafb* p, ZunAllocator* a) {
  return ZunRtcpRtpfbAbafbConstructFull(p, 0, 0, 0, 0, 0, 0, a);
}

ZunUint32 ZunRtcpRtpfbAbafbGetDelay(const ZunRtcpRtpfbAbafb* p) { return zun::CurrentDelay(*p); }

ZunBool ZunRtcpRtpfbAbafbSetDelay(ZunRtcpRtpfbAbafb* p, ZunUint32 delay) {
  zun::StoreDelay(p, delay);
  return 1;
}

ZunBool ZunRtcpRtpfbAbafbSetTimestampTime(ZunRtcpRtpfbAbafb* p, ZunTime timestamp_time) {
  zun::StoreTimestampTime(p, timestamp_time);
  return 1;
}

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpRtpfbAbafb)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbAbafb, Wire)
