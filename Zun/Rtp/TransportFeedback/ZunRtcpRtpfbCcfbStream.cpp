#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfbStream.h"

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbCcfbPacketMetric)
ZUN_VECTOR_USE_OWNING(ZunRtcpRtpfbCcfbStream)
ZUN_VECTOR_DEFINE(ZunRtcpRtpfbCcfbStream)
ZUN_OWNING_DEFINE(ZunRtcpRtpfbCcfbStream, &ZunRtcpRtpfbCcfbStream::packetMetrics)

namespace {

using Metrics = zun::VectorOfZunRtcpRtpfbCcfbPacketMetric;

}  // namespace

ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamConstructDefault(ZunRtcpRtpfbCcfbStream* p, ZunRtpSourceId ssrc,
                                                               ZunAllocator* a) {
  p->ssrc = ssrc;
  p->beginSeq = 0;
  Metrics::ConstructDefault(&p->packetMetrics, a);
  return p;
}

ZunBool ZunRtcpRtpfbCcfbStreamAddPacket(ZunRtcpRtpfbCcfbStream* p, ZunUint16 seq, ZunBool received, ZunUint8 ecn,
                                        ZunUint16 arrivalTimeOffset) {
  const ZunSizeT count = Metrics::Size(&p->packetMetrics);
  if (count == 0) p->beginSeq = seq;
  if (seq != static_cast<ZunUint16>(p->beginSeq + count)) return 0;
  if (!Metrics::GrowIfFull(&p->packetMetrics)) return 0;
  *p->packetMetrics.end++ = {received, ecn, arrivalTimeOffset};
  return 1;
}
