#include "tools/zunrtcp/Kinds/Reports/ReportBlocks.h"

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr double kLossFractionPerPercent = 2.56;
constexpr double kDelayPerSecond = 65536;

// Nobody has sent an SR yet when both are 0.
std::string LastSrWords(unsigned last_sr, unsigned delay) {
  if (last_sr == 0 && delay == 0) return "no SR yet";
  return Printed("last SR 0x%08x, %.6f s ago", last_sr, delay / kDelayPerSecond);
}

void DescribeBlock(const ReportBlock& block, Description* description) {
  const int lost = packets_lost(block);
  const unsigned sequence = block.highest_seq_num_rcvd;
  description->AddSource("source", "block on", block.ssrc);
  description->Add(
      "fractionLost", block.fraction_lost,
      Printed("lost %u/256 (%.1f %%)", block.fraction_lost, block.fraction_lost / kLossFractionPerPercent));
  description->Add("packetsLost", lost, Printed("%d in all", lost));
  description->Add("highestSequence", sequence,
                   Printed("highest sequence %u in cycle %u", sequence & 0xFFFFU, sequence >> 16));
  description->AddNumber("jitter", "jitter", block.inter_arrival_jitter);
  description->AddValue("lastSr", block.last_sr);
  description->AddValue("delaySinceLastSr", block.delay_last_sr);
  description->AddWords(LastSrWords(block.last_sr, block.delay_last_sr));
}

}  // namespace

void DescribeReportBlocks(std::span<const ReportBlock> blocks, std::span<const std::byte> extension,
                          Description* description) {
  description->AddList("reportBlocks");
  for (const ReportBlock& block : blocks) DescribeBlock(block, &description->AddItem("reportBlocks"));
  description->AddBytes("extension", "extension", extension);
}

}  // namespace zunrtcp
