#include <algorithm>

#include "Zun/Rtp/Cpp/Tmmb.h"
#include "tools/zunrtcp/Stats/StatsCollector.h"

namespace zunrtcp {

using namespace zun::rtcp;

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

std::vector<ReportedPacket> PacketsOf(View<TransportCc> feedback, UnwrappedCounter* clock) {
  std::int64_t time = clock->Next(static_cast<std::uint64_t>(feedback.ref_time()) << kReferenceShift);
  std::vector<ReportedPacket> packets;
  std::uint16_t sequence = feedback.base_seq();
  for (const TransportCcPacketInfo& info : feedback.packet_info()) {
    ReportedPacket packet{.sequence = sequence++, .received = info.received != 0, .arrival = {}};
    if (info.haveDelta) {
      time += info.delta;
      packet.arrival = static_cast<double>(time) / kDeltasPerSecond;
    }
    packets.push_back(packet);
  }
  return packets;
}

std::vector<ReportedPacket> PacketsOf(View<CcfbStream> feedback, double report_time) {
  std::vector<ReportedPacket> packets;
  std::uint16_t sequence = feedback.begin_seq();
  for (const CcfbPacketMetric& metric : feedback.packet_metrics()) {
    ReportedPacket packet{.sequence = sequence++, .received = metric.received != 0, .arrival = {}};
    if (packet.received && metric.arrivalTimeOffset < kOffsetUnknown) {
      packet.arrival = report_time - metric.arrivalTimeOffset / kOffsetsPerSecond;
    }
    packets.push_back(packet);
  }
  return packets;
}

void AddEvent(EventKind kind, Ssrc source, Ssrc sender, const Moment& moment, StreamTable* table) {
  Stream* stream = table->About(source, moment.path);
  if (stream != nullptr) stream->AddEvent(kind, sender, moment.seconds);
}

}  // namespace

void Observe(View<TransportCc> feedback, const Moment& moment, StreamTable* table) {
  Stream* stream = table->Transport(moment.path);
  if (stream == nullptr) return;
  const std::vector<ReportedPacket> packets = PacketsOf(feedback, &stream->feedback_clock);
  AddNews(stream->feedback.Add(packets), moment.seconds, stream);
}

void Observe(View<Ccfb> feedback, const Moment& moment, StreamTable* table) {
  for (const auto block : feedback.streams()) {
    Stream* stream = table->About(block.ssrc(), moment.path);
    if (stream == nullptr) continue;
    const auto time = static_cast<double>(stream->feedback_clock.Next(feedback.send_timestamp()));
    const std::vector<ReportedPacket> packets = PacketsOf(block, time / kReportTimesPerSecond);
    AddNews(stream->feedback.Add(packets), moment.seconds, stream);
  }
}

void Observe(View<Nack> nack, const Moment& moment, StreamTable* table) {
  Stream* stream = table->About(nack.source(), moment.path);
  if (stream == nullptr) return;
  if (stream->nacked == nullptr) stream->nacked = std::make_unique<SequenceStates>();
  std::size_t numbers = 0;
  std::size_t repeated = 0;
  for (const std::uint16_t sequence : nack.lost()) {
    ++numbers;
    if (stream->nacked->Get(sequence) != SequenceStates::State::Unknown) ++repeated;
    stream->nacked->Set(sequence, SequenceStates::State::Missing);
  }
  ++stream->nack.messages;
  stream->nack.numbers += numbers - repeated;
  stream->nack.repeated += repeated;
  (*stream)[Metric::Nacked].Add(moment.seconds, static_cast<double>(numbers));
  (*stream)[Metric::Repeated].Add(moment.seconds, static_cast<double>(repeated));
}

void Observe(View<Pli> pli, const Moment& moment, StreamTable* table) {
  AddEvent(EventKind::Pli, pli.source(), pli.sender(), moment, table);
}

void Observe(View<Fir> fir, const Moment& moment, StreamTable* table) {
  for (const FirEntry& entry : fir.fci()) AddEvent(EventKind::Fir, entry.ssrc, fir.sender(), moment, table);
}

void Observe(View<Remb> remb, const Moment& moment, StreamTable* table) {
  for (const Ssrc ssrc : remb.sources()) {
    Stream* stream = table->About(ssrc, moment.path);
    if (stream != nullptr) (*stream)[Metric::Remb].Add(moment.seconds, remb.bitrate() / kKilo);
  }
}

void ObserveLimit(const SubpacketView& view, const Moment& moment, StreamTable* table) {
  const TmmbMessage message(octets_of(view.bytes));
  if (message.type() != ZUN_RTCP_TMMB_TYPE_TMMBR) return;
  for (const TmmbEntry& entry : message) {
    Stream* stream = table->About(entry.ssrc, moment.path);
    if (stream != nullptr) (*stream)[Metric::Limit].Add(moment.seconds, bitrate(entry) / kKilo);
  }
}

}  // namespace zunrtcp
