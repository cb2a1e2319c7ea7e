#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAbafb.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/CalculatedDelay.h"
#include "Zun/Rtp/Core/Row.h"

namespace {

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_ABAFB);

constexpr ZunSizeT kSize = zun::kAfbHeaderSize + ZunSizeT{7} * 4;
constexpr ZunUint32 kDefaultAverageArrivalDifference = 1000000;

// The union is cleared whole, so that all of it can be copied whichever half comes to live.
void SetFields(ZunRtcpPsfbAfbAbafb* p, ZunRtpSourceId sender, ZunUint32 timestamp, ZunUint32 data_rate,
               ZunUint32 loss_rate, ZunUint32 aba_data_rate, ZunInt32 average_delay_difference,
               ZunUint32 average_arrival_difference) {
  zun::SetFeedbackHead(p, kIdentity, sender, 0);
  p->timestamp = timestamp;
  p->u.timestamp_time = 0;
  p->data_rate = data_rate;
  p->loss_rate = loss_rate;
  p->aba_data_rate = aba_data_rate;
  p->average_delay_difference = average_delay_difference;
  p->average_arrival_difference = average_arrival_difference;
}

bool ReadSigned(zun::BodyReader& r, ZunInt32* value) {
  ZunUint32 bits;
  if (!r.U32(&bits)) return false;
  *value = static_cast<ZunInt32>(bits);
  return true;
}

struct Wire : zun::AlwaysEncodable {
  static ZunSizeT Length(const ZunRtcpPsfbAfbAbafb&) { return kSize; }

  static bool Write(const ZunRtcpPsfbAfbAbafb& p, zun::Output& out, bool pad) {
    if (p.average_arrival_difference == 0) {
      ZUN_LOG_WARNING_(ZunLogRtcpFeedback_, "ZunRtcpPsfbAfbAbafbWritePacket",
                       "Average arrival difference is 0 when encoding a PSFB AFB ABAFB packet.");
    }
    const ZunUint32 delay = zun::CurrentDelay(p);
    zun::BodyWriter w(out, kSize);
    return zun::WriteNorviHead(w, pad, kIdentity, p, kSize) && w.Fields<28>([&p, delay](zun::FieldWriter& f) {
      f.U32(p.timestamp);
      f.U32(delay);
      f.U32(p.data_rate);
      f.U32(p.loss_rate);
      f.U32(p.aba_data_rate);
      f.U32(static_cast<ZunUint32>(p.average_delay_difference));
      f.U32(p.average_arrival_difference);
    });
  }

  static bool Read(ZunRtcpPsfbAfbAbafb* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadNorviHead(r, p) || !r.U32(&p->timestamp) || !zun::ReadDelay(r, p) || !r.U32(&p->data_rate) ||
        !r.U32(&p->loss_rate) || !r.U32(&p->aba_data_rate) || !ReadSigned(r, &p->average_delay_difference) ||
        !r.U32(&p->average_arrival_difference)) {
      return false;
    }
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

// Of the union only the live half is a part of the message.
ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbAssign(ZunRtcpPsfbAfbAbafb* p, const ZunRtcpPsfbAfbAbafb* o) {
  auto live = p->u;
  if (o->calculate_delay) {
    live.timestamp_time = o->u.timestamp_time;
  } else {
    live.delay = o->u.delay;
  }
  *p = *o;
  p->u = live;
  return p;
}

ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructCopy(ZunRtcpPsfbAfbAbafb* p, const ZunRtcpPsfbAfbAbafb* o) {
  *p = *o;
  return p;
}

void ZunRtcpPsfbAfbAbafbDestruct(ZunRtcpPsfbAfbAbafb*) {}

ZunAllocator* ZunRtcpPsfbAfbAbafbGetAllocator(ZunRtcpPsfbAfbAbafb*) { return nullptr; }

ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructDefault(ZunRtcpPsfbAfbAbafb* p, ZunAllocator* a) {
  return ZunRtcpPsfbAfbAbafbConstructFull(p, 0, 0, 0, 0, 0, 0, 0, kDefaultAverageArrivalDifference, a);
}

ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructFull(ZunRtcpPsfbAfbAbafb* p, ZunRtpSourceId sender,
                                                      ZunUint32 timestamp, ZunUint32 delay, ZunUint32 data_rate,
                                                      ZunUint32 loss_rate, ZunUint32 aba_data_rate,
                                                      ZunInt32 average_delay_difference,
                                                      ZunUint32 average_arrival_difference, ZunAllocator*) {
  SetFields(p, sender, timestamp, data_rate, loss_rate, aba_data_rate, average_delay_difference,
            average_arrival_difference);
  zun::StoreDelay(p, delay);
  return p;
}

ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructWithCalculatedDelay(
    ZunRtcpPsfbAfbAbafb* p, ZunRtpSourceId sender, ZunUint32 timestamp, ZunTime timestamp_time, ZunUint32 data_rate,
    ZunUint32 loss_rate, ZunUint32 aba_data_rate, ZunInt32 average_delay_difference,
    ZunUint32 average_arrival_difference, ZunAllocator*) {
  SetFields(p, sender, timestamp, data_rate, loss_rate, aba_data_rate, average_delay_difference,
            average_arrival_difference);
  zun::StoreTimestampTime(p, timestamp_time);
  return p;
}

ZunUint32 ZunRtcpPsfbAfbAbafbGetDelay(const ZunRtcpPsfbAfbAbafb* p) { return zun::CurrentDelay(*p); }

ZunBool ZunRtcpPsfbAfbAbafbSetDelay(ZunRtcpPsfbAfbAbafb* p, ZunUint32 delay) { return zun::StoreDelay(p, delay); }

ZunBool ZunRtcpPsfbAfbAbafbSetTimestampTime(ZunRtcpPsfbAfbAbafb* p, ZunTime timestamp_time) {
  return zun::StoreTimestampTime(p, timestamp_time);
}

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbAbafb, Wire)
