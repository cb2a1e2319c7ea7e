#include "tools/zunrtcp/Stats/StatsCollector.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr double kPercentPerFraction = 100.0 / 256;
constexpr double kBitsPerKilobit = 1000.0 / 8;

// The block's round trip, loss and jitter.
void ObserveBlock(const ReportBlock& block, std::uint32_t reporter, const Moment& moment, Stream* stream) {
  const double now = moment.seconds;
  ++stream->reporter.blocks;
  stream->reporter.lost = packets_lost(block);
  stream->reporter.highest_sequence = block.highest_seq_num_rcvd;
  (*stream)[Metric::FractionLost].Add(now, block.fraction_lost * kPercentPerFraction);
  (*stream)[Metric::Jitter].Add(now, block.inter_arrival_jitter);
  if (const auto ms = stream->sent_reports.Answer(block.last_sr, block.delay_last_sr, now)) {
    (*stream)[Metric::RoundTrip].Add(now, *ms);
  }
  if (stream->reporters.size() == Stream::kMostReporters && !stream->reporters.contains(reporter)) return;
  const auto loss = stream->reporters[reporter].Next(block.highest_seq_num_rcvd, stream->reporter.lost);
  if (loss) (*stream)[Metric::Loss].Add(now, *loss);
}

void ObserveBlocks(std::span<const ReportBlock> blocks, std::uint32_t reporter, const Moment& moment,
                   StreamTable* table) {
  Participant* participant = table->Find(reporter, moment.path);
  for (const ReportBlock& block : blocks) {
    Stream* stream = table->About(block.ssrc, moment.path);
    if (stream == nullptr) continue;
    const bool is_new = !stream->reporters.contains(reporter);
    ObserveBlock(block, reporter, moment, stream);
    if (is_new && participant != nullptr && stream->reporters.contains(reporter)) {
      participant->reports_on.push_back(stream);
    }
  }
}

void ObserveCounts(View<Sr> report, const Moment& moment, Stream* stream) {
  SenderTotals& totals = stream->sender;
  if (totals.reports > 0) {
    // The counts wrap, and begin again when the sender does.
    const std::uint32_t packets = report.sender_packet_cnt() - stream->last_packets;
    const std::uint32_t octets = report.sender_octet_cnt() - stream->last_octets;
    const double seconds = moment.seconds - stream->last_report;
    if (packets <= INT32_MAX && octets <= INT32_MAX && seconds > 0) {
      totals.packets += packets;
      totals.octets += octets;
      (*stream)[Metric::SentRate].Add(moment.seconds, octets / seconds / kBitsPerKilobit);
    }
  }
  ++totals.reports;
  stream->last_packets = report.sender_packet_cnt();
  stream->last_octets = report.sender_octet_cnt();
  stream->last_report = moment.seconds;
}

}  // namespace

void Observe(View<Sr> report, const Moment& moment, StreamTable* table) {
  if (Stream* stream = table->Sent(report.sender_source(), moment.path); stream != nullptr) {
    ObserveCounts(report, moment, stream);
    stream->clock.Add(report.ntp_timestamp(), report.rtp_timestamp());
    stream->sent_reports.Add(CompactNtp(report.ntp_timestamp()), moment.seconds);
  }
  ObserveBlocks(report.report_blocks(), report.sender_source(), moment, table);
}

void Observe(View<Rr> report, const Moment& moment, StreamTable* table) {
  ObserveBlocks(report.report_blocks(), report.sender_source(), moment, table);
}

void Observe(View<Sdes> description, const Moment& moment, StreamTable* table) {
  for (const auto chunk : description.chunks()) {
    const Participant* participant = table->Find(chunk.ssrc(), moment.path);
    if (participant == nullptr) continue;
    for (const auto item : chunk.items()) {
      if (item.type() != ZUN_RTCPSDESITEM_TYPE_CNAME) continue;
      for (Stream* stream : participant->streams) stream->cname = item.text();
    }
  }
}

// The leaving of a receiver is told with the streams that it reported on.
void Observe(View<Bye> bye, const Moment& moment, StreamTable* table) {
  for (const Ssrc ssrc : bye.sources()) {
    const Participant* participant = table->Find(ssrc, moment.path);
    if (participant == nullptr) continue;
    const auto& streams = participant->streams.empty() ? participant->reports_on : participant->streams;
    for (Stream* stream : streams) stream->AddEvent(EventKind::Bye, ssrc, moment.seconds);
  }
}

}  // namespace zunrtcp
