#include "Zun/Rtp/Dialect/ZunRtcpXr.h"
#include "tools/zunrtcp/Stats/StatsCollector.h"

namespace zunrtcp {

namespace {

void ObserveReferenceTime(const ZunRtcpXrBlock& block, std::uint32_t sender, const Moment& moment, StreamTable* table) {
  ZunRtcpXrRrtr rrtr;
  if (!ZunRtcpXrBlockGetRrtr(&block, &rrtr)) return;
  Participant* receiver = table->Find(sender, moment.path);
  if (receiver != nullptr) receiver->reference_times.Add(CompactNtp(rrtr.ntpTimestamp), moment.seconds);
}

// The answer comes from the sender of the stream, and names the receiver who asked.
void ObserveAnswers(const ZunRtcpXrBlock& block, std::uint32_t sender, const Moment& moment, StreamTable* table) {
  ZunRtcpXrDlrr answer;
  for (std::size_t i = 0; ZunRtcpXrBlockGetDlrr(&block, i, &answer); ++i) {
    const Participant* receiver = table->Find(answer.ssrc, moment.path);
    if (receiver == nullptr) continue;
    const auto ms = receiver->reference_times.Answer(answer.lastRr, answer.delaySinceLastRr, moment.seconds);
    if (!ms) continue;
    Stream* stream = table->Sent(sender, moment.path);
    if (stream != nullptr) (*stream)[Metric::RoundTripXr].Add(moment.seconds, *ms);
  }
}

void ObserveVoip(const ZunRtcpXrBlock& block, const Moment& moment, StreamTable* table) {
  ZunRtcpXrVoip voip;
  if (!ZunRtcpXrBlockGetVoip(&block, &voip)) return;
  Stream* stream = table->About(voip.source, moment.path);
  if (stream != nullptr) (*stream)[Metric::RoundTripVoip].Add(moment.seconds, voip.roundTripDelay);
}

}  // namespace

void ObserveExtendedReport(const ZunRtcpSubpacket& report, const Moment& moment, StreamTable* table) {
  ZunRtcpXrReader reader;
  if (ZunRtcpXrReaderConstruct(&reader, &report) == nullptr) return;
  ZunRtcpXrBlock block;
  while (ZunRtcpXrReaderNext(&reader, &block)) {
    ObserveReferenceTime(block, reader.sender, moment, table);
    ObserveAnswers(block, reader.sender, moment, table);
    ObserveVoip(block, moment, table);
  }
}

}  // namespace zunrtcp
