#include "tools/zunrtcp/Stats/StatsCollector.h"

#include <algorithm>

#include "tools/zunrtcp/Packet/Srtcp.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr double kMicroseconds = 1e6;
constexpr double kBits = 8;
constexpr double kKilo = 1000;

// The mean size of the payloads sent on a path, of one stream or of all.
double MeanSize(const std::vector<std::unique_ptr<Stream>>& streams, const Stream& of) {
  std::uint64_t packets = 0;
  std::uint64_t octets = 0;
  for (const auto& stream : streams) {
    const bool counts = of.ssrc ? stream.get() == &of : stream->sent && stream->path.from == of.path.from;
    if (!counts) continue;
    packets += stream->sender.packets;
    octets += stream->sender.octets;
  }
  return packets == 0 ? 0 : static_cast<double>(octets) / static_cast<double>(packets);
}

void EstimateRate(double mean_size, Stream* stream) {
  if (mean_size == 0) return;
  for (const Series::Point& point : (*stream)[Metric::ArrivalRate].points()) {
    (*stream)[Metric::EstimatedRate].Add(point.seconds, point.value * mean_size * kBits / kKilo);
  }
}

}  // namespace

double StatsCollector::SecondsInto(const RtcpDatagram& datagram) {
  if (datagrams_ == 0) {
    begin_seconds_ = datagram.seconds;
    begin_microseconds_ = datagram.microseconds;
  }
  const double seconds =
      static_cast<double>(datagram.seconds - begin_seconds_) +
      (static_cast<double>(datagram.microseconds) - static_cast<double>(begin_microseconds_)) / kMicroseconds;
  duration_ = std::max(duration_, seconds);
  return seconds;
}

void StatsCollector::Add(const RtcpDatagram& datagram) {
  const Moment moment{SecondsInto(datagram), {datagram.source, datagram.destination}};
  ++datagrams_;
  std::string_view payload = datagram.payload;
  SubpacketWalk walk = WalkSubpackets(payload, dialect_);
  if (!walk.fault.empty() && datagram.missing == 0) {
    if (const std::optional<Srtcp> srtcp = RecogniseSrtcp(payload)) {
      ++protected_;
      if (srtcp->is_encrypted) return;
      payload.remove_suffix(srtcp->trailer);
      walk = WalkSubpackets(payload, dialect_);
    }
  }
  if (!AddPackets(payload, walk, moment) || datagram.missing > 0) ++refused_;
}

bool StatsCollector::AddPackets(std::string_view payload, const SubpacketWalk& walk, const Moment& moment) {
  const LibraryPacket packet(payload, dialect_, Reading::Tolerant);
  bool all_read = walk.fault.empty();
  for (const SubpacketView& view : walk.subpackets) {
    if (const std::optional<ObjectView> object = packet.Find(view.index)) Add(*object, moment);
    const DecodeRefusal* refusal = packet.RefusalOf(view.index);
    if (refusal == nullptr) continue;
    if (refusal->reason == ZUN_RTCP_DECODE_REASON_NO_OBJECT) {
      ObserveLimit(view, moment, &table_);
    } else {
      all_read = false;
    }
  }
  return all_read;
}

void StatsCollector::Add(ObjectView object, const Moment& moment) {
  const auto observe = [&](auto told) { Observe(told, moment, &table_); };
  visit(object, Overloaded{[&](View<Sr> sr) { observe(sr); }, [&](View<Rr> rr) { observe(rr); },
                           [&](View<Sdes> sdes) { observe(sdes); }, [&](View<Bye> bye) { observe(bye); },
                           [&](View<Nack> nack) { observe(nack); }, [&](View<TransportCc> twcc) { observe(twcc); },
                           [&](View<Ccfb> ccfb) { observe(ccfb); }, [&](View<Pli> pli) { observe(pli); },
                           [&](View<Fir> fir) { observe(fir); }, [&](View<Remb> remb) { observe(remb); },
                           [&](View<Unknown>) { observe(XrReport(object)); }, [](const auto&) {}});
}

void StatsCollector::Finish() {
  table_.Settle();
  for (const auto& stream : streams()) {
    if (const auto rate = stream->clock.Rate()) (*stream)[Metric::Jitter].Scale(kKilo / *rate);
    EstimateRate(MeanSize(streams(), *stream), stream.get());
  }
}

}  // namespace zunrtcp
