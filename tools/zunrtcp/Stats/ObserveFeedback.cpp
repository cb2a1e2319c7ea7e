#include <algorithm>

#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"
#include "tools/zunrtcp/Packet/LibraryValues.h"
#include "tools/zunrtcp/Stats/StatsCollector.h"

namespace zunrtcp {

namespace {

constexpr double kKilo = 1000;

// Transport-wide feedback: the reference time is in 256 times the unit of the deltas, which is 250 us.
constexpr unsigned kReferenceShift = 8;
constexpr double kDeltasPerSecond = 4000;

// CCFB (RFC 8888, section 3.1).
constexpr double kReportTimesPerSecond = 65536;
constexpr double kOffsetsPerSecond = 1024;
constexpr unsigned kOffsetUnknown = 0x1FFE;  // and above: too long ago, or not known

void AddNews(const ArrivalNews& news, double seconds, Stream* stream) {
  (*stream)[Metric::FeedbackReceived].Add(seconds, static_cast<double>(news.received));
  (*stream)[Metric::FeedbackLost].Add(seconds, static_cast<double>(news.lost));
  if (news.spread) (*stream)[Metric::ArrivalSpread].Add(seconds, *news.spread);
  if (news.packet_rate) (*stream)[Metric::ArrivalRate].Add(seconds, *news.packet_rate);
}

std::vector<ReportedPacket> PacketsOf(const ZunRtcpRtpfbTransportCc& feedback, UnwrappedCounter* clock) {
  std::int64_t time = clock->Next(static_cast<std::uint64_t>(feedback.refTime) << kReferenceShift);
  std::vector<ReportedPacket> packets;
  std::uint16_t sequence = feedback.baseSeq;
  for (const ZunRtcpRtpfbTransportCcPacketInfo& info : Elements(feedback.packetInfo)) {
    ReportedPacket packet{.sequence = sequence++, .received = info.received != 0, .arrival = {}};
    if (info.haveDelta) {
      time += info.delta;
      packet.arrival = static_cast<double>(time) / kDeltasPerSecond;
    }
    packets.push_back(packet);
  }
  return packets;
}

std::vector<ReportedPacket> PacketsOf(const ZunRtcpRtpfbCcfbStream& feedback, double report_time) {
  std::vector<ReportedPacket> packets;
  std::uint16_t sequence = feedback.beginSeq;
  for (const ZunRtcpRtpfbCcfbPacketMetric& metric : Elements(feedback.packetMetrics)) {
    ReportedPacket packet{.sequence = sequence++, .received = metric.received != 0, .arrival = {}};
    if (packet.received && metric.arrivalTimeOffset < kOffsetUnknown) {
      packet.arrival = report_time - metric.arrivalTimeOffset / kOffsetsPerSecond;
    }
    packets.push_back(packet);
  }
  return packets;
}

void ObserveTransportCc(const ZunRtcpRtpfbTransportCc& feedback, const Moment& moment, StreamTable* table) {
  Stream* stream = table->Transport(moment.path);
  if (stream == nullptr) return;
  const std::vector<ReportedPacket> packets = PacketsOf(feedback, &stream->feedback_clock);
  AddNews(stream->feedback.Add(packets), moment.seconds, stream);
}

void ObserveCcfb(const ZunRtcpRtpfbCcfb& feedback, const Moment& moment, StreamTable* table) {
  for (const ZunRtcpRtpfbCcfbStream& block : Elements(feedback.streams)) {
    Stream* stream = table->About(block.ssrc, moment.path);
    if (stream == nullptr) continue;
    const auto time = static_cast<double>(stream->feedback_clock.Next(feedback.sendTimestamp));
    const std::vector<ReportedPacket> packets = PacketsOf(block, time / kReportTimesPerSecond);
    AddNews(stream->feedback.Add(packets), moment.seconds, stream);
  }
}

// How often the numbers of one NACK come up.
struct Nacked {
  Stream* stream;
  std::size_t numbers = 0;
  std::size_t repeated = 0;
};

void CountNacked(std::uint16_t sequence, Nacked* nacked) {
  SequenceStates& states = *nacked->stream->nacked;
  const bool again = states.Get(sequence) != SequenceStates::State::Unknown;
  states.Set(sequence, SequenceStates::State::Missing);
  ++nacked->numbers;
  if (again) ++nacked->repeated;
}

void ObserveNack(const ZunRtcpRtpfbNack& nack, const Moment& moment, StreamTable* table) {
  Stream* stream = table->About(nack.source, moment.path);
  if (stream == nullptr) return;
  if (stream->nacked == nullptr) stream->nacked = std::make_unique<SequenceStates>();
  Nacked nacked{stream};
  ZunRtcpRtpfbNackGenerateSeqNumbers(
      &nack,
      [](const ZunRtcpRtpfbNack*, ZunUint16 sequence, ZunVoidPtr data) {
        CountNacked(sequence, static_cast<Nacked*>(data));
      },
      &nacked);
  ++stream->nack.messages;
  stream->nack.numbers += nacked.numbers - nacked.repeated;
  stream->nack.repeated += nacked.repeated;
  (*stream)[Metric::Nacked].Add(moment.seconds, static_cast<double>(nacked.numbers));
  (*stream)[Metric::Repeated].Add(moment.seconds, static_cast<double>(nacked.repeated));
}

void ObserveEvent(EventKind kind, std::uint32_t source, std::uint32_t sender, const Moment& moment,
                  StreamTable* table) {
  Stream* stream = table->About(source, moment.path);
  if (stream != nullptr) stream->AddEvent(kind, sender, moment.seconds);
}

void ObserveRemb(const ZunRtcpPsfbAfbRemb& remb, const Moment& moment, StreamTable* table) {
  for (const std::uint32_t ssrc : Elements(remb.sources)) {
    Stream* stream = table->About(ssrc, moment.path);
    if (stream != nullptr) (*stream)[Metric::Remb].Add(moment.seconds, remb.bitrate / kKilo);
  }
}

}  // namespace

void ObserveTransportFeedback(const ZunRtcpRtpfb& feedback, const Moment& moment, StreamTable* table) {
  switch (feedback.unk.fmt) {
    case ZUN_RTCPRTPFB_TYPE_NACK:
      return ObserveNack(feedback.nack, moment, table);
    case ZUN_RTCPRTPFB_TYPE_TransportCC:
      return ObserveTransportCc(feedback.transportCc, moment, table);
    case ZUN_RTCPRTPFB_TYPE_CCFB:
      return ObserveCcfb(feedback.ccfb, moment, table);
    default:
      return;
  }
}

void ObservePayloadFeedback(const ZunRtcpPsfb& feedback, const Moment& moment, StreamTable* table) {
  switch (feedback.unk.fmt) {
    case ZUN_RTCPPSFB_TYPE_PLI:
      return ObserveEvent(EventKind::Pli, feedback.pli.source, feedback.pli.sender, moment, table);
    case ZUN_RTCPPSFB_TYPE_FIR:
      for (const ZunRtcpPsfbFirEntry& entry : Elements(feedback.fir.fci)) {
        ObserveEvent(EventKind::Fir, entry.ssrc, feedback.fir.sender, moment, table);
      }
      return;
    case ZUN_RTCPPSFB_TYPE_AFB:
      if (feedback.afb.unk.afbType == ZUN_RTCPPSFBAFB_TYPE_REMB) ObserveRemb(feedback.afb.remb, moment, table);
      return;
    default:
      return;
  }
}

void ObserveLimit(const SubpacketView& view, const Moment& moment, StreamTable* table) {
  ZunRtcpTmmb message;
  if (!ZunRtcpTmmbRead(&message, view.bytes.data(), view.bytes.size(), nullptr)) return;
  if (message.type != ZUN_RTCP_TMMB_TYPE_TMMBR) return;
  ZunRtcpTmmbEntry entry;
  for (std::size_t i = 0; ZunRtcpTmmbGetEntry(&message, i, &entry); ++i) {
    Stream* stream = table->About(entry.ssrc, moment.path);
    if (stream != nullptr) (*stream)[Metric::Limit].Add(moment.seconds, ZunRtcpTmmbEntryGetBitrate(&entry) / kKilo);
  }
}

}  // namespace zunrtcp
