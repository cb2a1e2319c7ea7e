#include "tools/zunrtcp/Kinds/RegisteredForms/XrBlocks.h"

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr double kPerSecond = 65536;
constexpr unsigned kNotKnown = 127;

// What is told of packets one by one.
struct ToldPackets {
  std::vector<std::uint16_t> sequences;
  std::vector<std::uint32_t> values;
};

ToldPackets PacketsOf(const XrBlock& block) {
  ToldPackets told;
  block.for_each_packet([&](std::uint16_t sequence, std::uint32_t value) {
    told.sequences.push_back(sequence);
    told.values.push_back(value);
  });
  return told;
}

XrRange DescribeRange(const XrBlock& block, Description* description) {
  const XrRange range = block.range().value_or(XrRange{});
  description->AddSource("source", "of", range.source);
  description->AddValue("thinning", range.thinning);
  description->AddValue("beginSequence", range.beginSeq);
  description->AddValue("endSequence", range.endSeq);
  description->AddWords(Printed("sequence %u up to, without, %u", range.beginSeq, range.endSeq));
  if (range.thinning != 0) description->AddWords(Printed("only multiples of %u", 1U << range.thinning));
  return range;
}

// The packets of a block, unless they are more than may still be told of: then the block stays bytes.
std::optional<ToldPackets> TakePackets(const XrBlock& block, std::size_t* packets_left, Description* description) {
  const std::size_t count = packet_count(DescribeRange(block, description));
  if (count > *packets_left) {
    description->AddWords(ZunRtcpDecodeReasonGetText(ZUN_RTCP_DECODE_REASON_LIMIT));
    description->AddBytes("data", "data", block.octets());
    return std::nullopt;
  }
  *packets_left -= count;
  return PacketsOf(block);
}

// A block that tells yes or no of each packet; for people the numbers of those with "no" are listed.
void DescribeRle(const XrBlock& block, std::size_t* packets_left, const char* key, const char* no_words,
                 Description* description) {
  const std::optional<ToldPackets> told = TakePackets(block, packets_left, description);
  if (!told) return;
  Description::Value values = Description::Value::array();
  std::string numbers;
  std::size_t count = 0;
  for (std::size_t i = 0; i < told->values.size(); ++i) {
    values.push_back(told->values[i] != 0);
    if (told->values[i] != 0) continue;
    ++count;
    numbers += ' ' + std::to_string(told->sequences[i]);
  }
  description->Add(key, std::move(values),
                   Printed("%s, %zu %s", Counted(told->values.size(), "packet").c_str(), count, no_words) +
                       (count == 0 ? "" : ":" + numbers));
}

void DescribeLossRle(const XrBlock& block, std::size_t* packets_left, Description* description) {
  DescribeRle(block, packets_left, "received", "lost", description);
}

void DescribeDuplicateRle(const XrBlock& block, std::size_t* packets_left, Description* description) {
  DescribeRle(block, packets_left, "once", "came more than once", description);
}

void DescribeReceiptTimes(const XrBlock& block, std::size_t* packets_left, Description* description) {
  const std::optional<ToldPackets> told = TakePackets(block, packets_left, description);
  if (!told) return;
  std::string words = "RTP times";
  for (std::size_t i = 0; i < told->values.size(); ++i) {
    words += Printed(" %u:%u", told->sequences[i], told->values[i]);
  }
  description->Add("times", told->values, words);
}

void DescribeRrtr(const XrBlock& block, std::size_t*, Description* description) {
  const std::uint64_t ntp = block.rrtr().value_or(XrRrtr{}).ntpTimestamp;
  description->AddValue("ntpSeconds", ntp >> 32);
  description->AddValue("ntpFraction", ntp & 0xFFFFFFFF);
  description->AddWords(NtpWords(ntp));
}

void DescribeDlrr(const XrBlock& block, std::size_t*, Description* description) {
  description->AddList("receivers");
  block.for_each_dlrr([&](const XrDlrr& dlrr) {
    Description& item = description->AddItem("receivers");
    item.AddSource("source", "to", dlrr.ssrc);
    item.AddValue("lastRr", dlrr.lastRr);
    item.AddValue("delaySinceLastRr", dlrr.delaySinceLastRr);
    item.AddWords(dlrr.lastRr == 0
                      ? "no RRTR yet"
                      : Printed("last RRTR 0x%08x, %.6f s ago", dlrr.lastRr, dlrr.delaySinceLastRr / kPerSecond));
  });
}

void DescribeHops(const XrStatistics& statistics, Description* description) {
  description->AddValue("hopKind", statistics.hopKind);
  description->AddValue("minHops", statistics.minHops);
  description->AddValue("maxHops", statistics.maxHops);
  description->AddValue("meanHops", statistics.meanHops);
  description->AddValue("hopsDeviation", statistics.hopsDeviation);
  if (statistics.hopKind == 0) return;
  const char* name = statistics.hopKind == 1 ? "TTL" : statistics.hopKind == 2 ? "hop limit" : "hops of no kind";
  description->AddWords(Printed("%s %u to %u, mean %u, deviation %u", name, statistics.minHops, statistics.maxHops,
                                statistics.meanHops, statistics.hopsDeviation));
}

void DescribeStatistics(const XrBlock& block, std::size_t*, Description* description) {
  DescribeRange(block, description);
  const XrStatistics statistics = block.statistics().value_or(XrStatistics{});
  description->AddValue("hasLoss", statistics.hasLoss != 0);
  description->AddValue("hasDuplicates", statistics.hasDuplicates != 0);
  description->AddValue("hasJitter", statistics.hasJitter != 0);
  description->AddValue("lostPackets", statistics.lostPackets);
  description->AddValue("duplicatePackets", statistics.duplicatePackets);
  description->AddValue("minJitter", statistics.minJitter);
  description->AddValue("maxJitter", statistics.maxJitter);
  description->AddValue("meanJitter", statistics.meanJitter);
  description->AddValue("jitterDeviation", statistics.jitterDeviation);
  if (statistics.hasLoss) description->AddWords(Printed("lost %u", statistics.lostPackets));
  if (statistics.hasDuplicates) description->AddWords(Printed("duplicates %u", statistics.duplicatePackets));
  if (statistics.hasJitter) {
    description->AddWords(Printed("jitter %u to %u, mean %u, deviation %u", statistics.minJitter, statistics.maxJitter,
                                  statistics.meanJitter, statistics.jitterDeviation));
  }
  DescribeHops(statistics, description);
}

// A level or factor that may be unknown.
void AddKnown(const char* key, const char* label, int value, const char* words, Description* description) {
  description->Add(key, value, std::string(label) + " " + (value == kNotKnown ? "unknown" : words));
}

void AddRate(const char* key, const char* label, unsigned rate, Description* description) {
  description->Add(key, rate, Printed("%s %u/256", label, rate));
}

void AddMos(const char* key, const char* label, unsigned mos, Description* description) {
  AddKnown(key, label, static_cast<int>(mos), Printed("%.1f", mos / 10.0).c_str(), description);
}

void DescribeVoip(const XrBlock& block, std::size_t*, Description* description) {
  const XrVoip voip = block.voip().value_or(XrVoip{});
  description->AddSource("source", "of", voip.source);
  AddRate("lossRate", "lost", voip.lossRate, description);
  AddRate("discardRate", "discarded", voip.discardRate, description);
  AddRate("burstDensity", "in bursts", voip.burstDensity, description);
  AddRate("gapDensity", "in gaps", voip.gapDensity, description);
  description->AddNumber("burstDuration", "burst", voip.burstDuration, "ms");
  description->AddNumber("gapDuration", "gap", voip.gapDuration, "ms");
  description->AddNumber("roundTripDelay", "round trip", voip.roundTripDelay, "ms");
  description->AddNumber("endSystemDelay", "end system", voip.endSystemDelay, "ms");
  AddKnown("signalLevel", "signal", voip.signalLevel, Printed("%d dBm", voip.signalLevel).c_str(), description);
  AddKnown("noiseLevel", "noise", voip.noiseLevel, Printed("%d dBm", voip.noiseLevel).c_str(), description);
  AddKnown("residualEchoReturnLoss", "echo return loss", voip.residualEchoReturnLoss,
           Printed("%u dB", voip.residualEchoReturnLoss).c_str(), description);
  description->AddNumber("gmin", "Gmin", voip.gmin);
  AddKnown("rFactor", "R factor", voip.rFactor, std::to_string(voip.rFactor).c_str(), description);
  AddKnown("externalRFactor", "external R factor", voip.externalRFactor, std::to_string(voip.externalRFactor).c_str(),
           description);
  AddMos("mosListening", "MOS-LQ", voip.mosListening, description);
  AddMos("mosConversational", "MOS-CQ", voip.mosConversational, description);
  description->Add("receiverConfig", voip.receiverConfig, Printed("receiver config 0x%02x", voip.receiverConfig));
  description->AddNumber("jitterBufferNominal", "jitter buffer", voip.jitterBufferNominal, "ms");
  description->AddNumber("jitterBufferMaximum", "at most", voip.jitterBufferMaximum, "ms");
  description->AddNumber("jitterBufferAbsoluteMaximum", "never above", voip.jitterBufferAbsoluteMaximum, "ms");
}

constexpr XrBlockRow kRows[] = {
    {ZUN_RTCPXR_TYPE_LOSS_RLE, "loss RLE", DescribeLossRle},
    {ZUN_RTCPXR_TYPE_DUPLICATE_RLE, "duplicate RLE", DescribeDuplicateRle},
    {ZUN_RTCPXR_TYPE_RECEIPT_TIMES, "receipt times", DescribeReceiptTimes},
    {ZUN_RTCPXR_TYPE_RRTR, "RRTR", DescribeRrtr},
    {ZUN_RTCPXR_TYPE_DLRR, "DLRR", DescribeDlrr},
    {ZUN_RTCPXR_TYPE_STATISTICS, "statistics summary", DescribeStatistics},
    {ZUN_RTCPXR_TYPE_VOIP, "VoIP metrics", DescribeVoip},
};

}  // namespace

std::span<const XrBlockRow> XrBlockRows() { return kRows; }

}  // namespace zunrtcp
