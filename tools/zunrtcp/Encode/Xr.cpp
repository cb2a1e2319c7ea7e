#include "Zun/Rtp/Cpp/Xr.h"
#include "tools/zunrtcp/Encode/Builder.h"
#include "tools/zunrtcp/Encode/Forms.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::uint64_t kMostThinning = 15;
constexpr std::uint64_t kMostHopKind = 3;

XrRange RangeOf(const JsonField& block) {
  XrRange range{};
  range.source = block["source"].As<std::uint32_t>();
  range.thinning = static_cast<std::uint8_t>(block["thinning"].Unsigned(kMostThinning));
  range.beginSeq = block["beginSequence"].As<std::uint16_t>();
  range.endSeq = block["endSequence"].As<std::uint16_t>();
  return range;
}

// Whether there is an element for each packet that the range tells of.
void CheckCount(const JsonField& list, std::size_t count, const XrRange& range) {
  const std::size_t told = packet_count(range);
  if (count != told)
    list.Refuse("has " + std::to_string(count) + " elements, but the range tells of " + std::to_string(told));
}

bool AddRle(const JsonField& block, ZunRtcpXrBlockType type, const char* key, XrBuilder* report) {
  const XrRange range = RangeOf(block);
  const std::vector<JsonField> elements = block[key].Elements();
  CheckCount(block[key], elements.size(), range);
  std::vector<ZunBool> told;
  told.reserve(elements.size());
  for (const JsonField& element : elements) told.push_back(element.Bool());
  return report->add_rle(type, range, told);
}

bool AddLossRle(const JsonField& block, XrBuilder* report) {
  return AddRle(block, ZUN_RTCPXR_TYPE_LOSS_RLE, "received", report);
}

bool AddDuplicateRle(const JsonField& block, XrBuilder* report) {
  return AddRle(block, ZUN_RTCPXR_TYPE_DUPLICATE_RLE, "once", report);
}

bool AddReceiptTimes(const JsonField& block, XrBuilder* report) {
  const XrRange range = RangeOf(block);
  std::vector<std::uint32_t> times;
  for (const JsonField& element : block["times"].Elements()) times.push_back(element.As<std::uint32_t>());
  CheckCount(block["times"], times.size(), range);
  return report->add_receipt_times(range, times);
}

bool AddRrtr(const JsonField& block, XrBuilder* report) {
  return report->add(
      XrRrtr{std::uint64_t{block["ntpSeconds"].As<std::uint32_t>()} << 32 | block["ntpFraction"].As<std::uint32_t>()});
}

bool AddDlrr(const JsonField& block, XrBuilder* report) {
  std::vector<XrDlrr> receivers;
  for (const JsonField& field : block["receivers"].Elements()) {
    receivers.push_back({field["source"].As<std::uint32_t>(), field["lastRr"].As<std::uint32_t>(),
                         field["delaySinceLastRr"].As<std::uint32_t>()});
  }
  return report->add(receivers);
}

bool AddStatistics(const JsonField& block, XrBuilder* report) {
  XrStatistics statistics{};
  statistics.range = RangeOf(block);
  statistics.hasLoss = block["hasLoss"].Bool();
  statistics.hasDuplicates = block["hasDuplicates"].Bool();
  statistics.hasJitter = block["hasJitter"].Bool();
  statistics.hopKind = static_cast<std::uint8_t>(block["hopKind"].Unsigned(kMostHopKind));
  statistics.lostPackets = block["lostPackets"].As<std::uint32_t>();
  statistics.duplicatePackets = block["duplicatePackets"].As<std::uint32_t>();
  statistics.minJitter = block["minJitter"].As<std::uint32_t>();
  statistics.maxJitter = block["maxJitter"].As<std::uint32_t>();
  statistics.meanJitter = block["meanJitter"].As<std::uint32_t>();
  statistics.jitterDeviation = block["jitterDeviation"].As<std::uint32_t>();
  statistics.minHops = block["minHops"].As<std::uint8_t>();
  statistics.maxHops = block["maxHops"].As<std::uint8_t>();
  statistics.meanHops = block["meanHops"].As<std::uint8_t>();
  statistics.hopsDeviation = block["hopsDeviation"].As<std::uint8_t>();
  return report->add(statistics);
}

bool AddVoip(const JsonField& block, XrBuilder* report) {
  XrVoip voip{};
  voip.source = block["source"].As<std::uint32_t>();
  voip.lossRate = block["lossRate"].As<std::uint8_t>();
  voip.discardRate = block["discardRate"].As<std::uint8_t>();
  voip.burstDensity = block["burstDensity"].As<std::uint8_t>();
  voip.gapDensity = block["gapDensity"].As<std::uint8_t>();
  voip.burstDuration = block["burstDuration"].As<std::uint16_t>();
  voip.gapDuration = block["gapDuration"].As<std::uint16_t>();
  voip.roundTripDelay = block["roundTripDelay"].As<std::uint16_t>();
  voip.endSystemDelay = block["endSystemDelay"].As<std::uint16_t>();
  voip.signalLevel = static_cast<std::int8_t>(block["signalLevel"].Signed(INT8_MIN, INT8_MAX));
  voip.noiseLevel = static_cast<std::int8_t>(block["noiseLevel"].Signed(INT8_MIN, INT8_MAX));
  voip.residualEchoReturnLoss = block["residualEchoReturnLoss"].As<std::uint8_t>();
  voip.gmin = block["gmin"].As<std::uint8_t>();
  voip.rFactor = block["rFactor"].As<std::uint8_t>();
  voip.externalRFactor = block["externalRFactor"].As<std::uint8_t>();
  voip.mosListening = block["mosListening"].As<std::uint8_t>();
  voip.mosConversational = block["mosConversational"].As<std::uint8_t>();
  voip.receiverConfig = block["receiverConfig"].As<std::uint8_t>();
  voip.jitterBufferNominal = block["jitterBufferNominal"].As<std::uint16_t>();
  voip.jitterBufferMaximum = block["jitterBufferMaximum"].As<std::uint16_t>();
  voip.jitterBufferAbsoluteMaximum = block["jitterBufferAbsoluteMaximum"].As<std::uint16_t>();
  return report->add(voip);
}

bool AddBytes(const JsonField& block, XrBuilder* report) {
  const std::string bytes = block["data"].Bytes();
  if (bytes.size() % 4 != 0) block["data"].Refuse("is no multiple of 4 bytes");
  return report->add_block(block["type"].As<std::uint8_t>(), block["typeSpecific"].As<std::uint8_t>(),
                           octets_of(bytes));
}

struct Row {
  ZunRtcpXrBlockType type;
  bool (*add)(const JsonField& block, XrBuilder* report);
};

constexpr Row kRows[] = {
    {ZUN_RTCPXR_TYPE_LOSS_RLE, AddLossRle},
    {ZUN_RTCPXR_TYPE_DUPLICATE_RLE, AddDuplicateRle},
    {ZUN_RTCPXR_TYPE_RECEIPT_TIMES, AddReceiptTimes},
    {ZUN_RTCPXR_TYPE_RRTR, AddRrtr},
    {ZUN_RTCPXR_TYPE_DLRR, AddDlrr},
    {ZUN_RTCPXR_TYPE_STATISTICS, AddStatistics},
    {ZUN_RTCPXR_TYPE_VOIP, AddVoip},
};

// A block of bytes has data, whatever its type.
bool AddBlock(const JsonField& block, XrBuilder* report) {
  if (block.Find("data")) return AddBytes(block, report);
  const auto type = block["type"].As<std::uint8_t>();
  for (const Row& row : kRows) {
    if (row.type == type) return row.add(block, report);
  }
  block["data"].Refuse("");  // which is missing
}

}  // namespace

void AppendXr(const JsonField& field, Packet* packet) {
  XrBuilder report(field["sender"].As<std::uint32_t>());
  for (const JsonField& block : field["blocks"].Elements()) {
    if (!AddBlock(block, &report)) block.Refuse("no such block can be written, or the report is too long");
  }
  auto subpacket = report.subpacket();
  MustBeTrue(subpacket && packet->append(std::move(*subpacket)));
}

}  // namespace zunrtcp
