#include "tools/zunrtcp/Stats/StatsCollector.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void ObserveReferenceTime(const XrRrtr& rrtr, Ssrc sender, const Moment& moment, StreamTable* table) {
  Participant* receiver = table->Find(sender, moment.path);
  if (receiver != nullptr) receiver->reference_times.Add(CompactNtp(rrtr.ntpTimestamp), moment.seconds);
}

// The answer comes from the sender of the stream, and names the receiver who asked.
void ObserveAnswer(const XrDlrr& answer, Ssrc sender, const Moment& moment, StreamTable* table) {
  const Participant* receiver = table->Find(answer.ssrc, moment.path);
  if (receiver == nullptr) return;
  const auto ms = receiver->reference_times.Answer(answer.lastRr, answer.delaySinceLastRr, moment.seconds);
  if (!ms) return;
  Stream* stream = table->Sent(sender, moment.path);
  if (stream != nullptr) (*stream)[Metric::RoundTripXr].Add(moment.seconds, *ms);
}

void ObserveVoip(const XrVoip& voip, const Moment& moment, StreamTable* table) {
  Stream* stream = table->About(voip.source, moment.path);
  if (stream != nullptr) (*stream)[Metric::RoundTripVoip].Add(moment.seconds, voip.roundTripDelay);
}

}  // namespace

void Observe(XrReport report, const Moment& moment, StreamTable* table) {
  const Ssrc sender = report.sender();
  for (const XrBlock& block : report) {
    if (const auto rrtr = block.rrtr()) ObserveReferenceTime(*rrtr, sender, moment, table);
    block.for_each_dlrr([&](const XrDlrr& answer) { ObserveAnswer(answer, sender, moment, table); });
    if (const auto voip = block.voip()) ObserveVoip(*voip, moment, table);
  }
}

}  // namespace zunrtcp
