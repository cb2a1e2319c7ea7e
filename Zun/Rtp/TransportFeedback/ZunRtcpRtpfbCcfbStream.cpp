#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfbStream.h"

#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbCcfbPacketMetric)

namespace {

using Metrics = zun::VectorOfZunRtcpRtpfbCcfbPacketMetric;
using OwnedMetrics =
    zun::OwnedMember<&ZunRtcpRtpfbCcfbStream::packetMetrics, ZunVector_ZunRtcpRtpfbCcfbPacketMetricConstructCopy,
                     ZunVector_ZunRtcpRtpfbCcfbPacketMetricAssign>;

}  // namespace

ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamConstructDefault(ZunRtcpRtpfbCcfbStream* p, ZunRtpSourceId ssrc,
                                                               ZunAllocator* a) {
  p->ssrc = ssrc;
  p->beginSeq = 0;
  Metrics::ConstructDefault(&p->packetMetrics, a);
  return p;
}

ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamConstructCopy(ZunRtcpRtpfbCcfbStream* p,
                                                            const ZunRtcpRtpfbCcfbStream* o) {
  return OwnedMetrics::ConstructCopy(p, o);
}

ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamAssign(ZunRtcpRtpfbCcfbStream* p, const ZunRtcpRtpfbCcfbStream* o) {
  return OwnedMetrics::Assign(p, o);
}

void ZunRtcpRtpfbCcfbStreamDestruct(ZunRtcpRtpfbCcfbStream* p) { Metrics::Destruct(&p->packetMetrics); }

ZunBool ZunRtcpRtpfbCcfbStreamAddPacket(ZunRtcpRtpfbCcfbStream* p, ZunUint16 seq, ZunBool received, ZunUint8 ecn,
                                        ZunUint16 arrivalTimeOffset) {
  const ZunSizeT count = Metrics::Size(&p->packetMetrics);
  if (count == 0) p->beginSeq = seq;
  if (seq != static_cast<ZunUint16>(p->beginSeq + count)) return 0;
  if (!Metrics::GrowIfFull(&p->packetMetrics)) return 0;
  *p->packetMetrics.end++ = {received, ecn, arrivalTimeOffset};
  return 1;
}

ZUN_VECTOR_DEFINE_OWNING(ZunRtcpRtpfbCcfbStream)
