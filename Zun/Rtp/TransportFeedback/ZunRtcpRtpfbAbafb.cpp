#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbAbafb.h"

#include "Zun/Rtp/Core/CalculatedDelay.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::FeedbackIdentity kIdentity = zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_ABAFB);

constexpr ZunSizeT kAbafbSize = 32;

struct Wire : zun::AlwaysEncodable {
  static ZunSizeT Length(const ZunRtcpRtpfbAbafb&) { return kAbafbSize; }

  static bool Write(const ZunRtcpRtpfbAbafb& p, zun::Output& out, bool pad) {
    const ZunUint32 delay = zun::CurrentDelay(p);
    zun::BodyWriter w(out, kAbafbSize);
    return zun::WriteFeedbackHeader(w, pad, kIdentity, p, kAbafbSize) && w.Fields<20>([&p, delay](zun::FieldWriter& f) {
      f.U32(p.timestamp);
      f.U32(delay);
      f.U32(p.data_rate);
      f.U32(p.loss_rate);
      f.U32(p.aba_data_rate);
    });
  }

  static bool Read(ZunRtcpRtpfbAbafb* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadFeedbackSources(r, p) || !r.U32(&p->timestamp) || !zun::ReadDelay(r, p) || !r.U32(&p->data_rate) ||
        !r.U32(&p->loss_rate) || !r.U32(&p->aba_data_rate) || !r.NeedEnd()) {
      return false;
    }
    kIdentity.Mark(p);
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
  zun::SetFeedbackHead(p, kIdentity, sender, 0);
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

ZunBool ZunRtcpRtpfbAbafbSetDelay(ZunRtcpRtpfbAbafb* p, ZunUint32 delay) { return zun::StoreDelay(p, delay); }

ZunBool ZunRtcpRtpfbAbafbSetTimestampTime(ZunRtcpRtpfbAbafb* p, ZunTime timestamp_time) {
  return zun::StoreTimestampTime(p, timestamp_time);
}

ZUN_RTCP_PLAIN_KIND_DEFINE(ZunRtcpRtpfbAbafb)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbAbafb, Wire)
