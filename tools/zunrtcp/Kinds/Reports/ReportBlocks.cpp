#include "tools/zunrtcp/Kinds/Reports/ReportBlocks.h"

#include "tools/zunrtcp/Packet/LibraryValues.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr double kLossFractionPerPercent = 2.56;
constexpr double kDelayPerSecond = 65536;

// Nobody has sent an SR yet when both are 0.
std::string LastSrWords(unsigned last_sr, unsigned delay) {
  if (last_sr == 0 && delay == 0) return "no SR yet";
  return Printed("last SR 0x%08x, %.6f s ago", last_sr, delay / kDelayPerSecond);
}

void DescribeBlock(const ZunRtcpReportBlock& block, Description* description) {
  const unsigned fraction = ZunRtcpReportBlockGetLossFraction(&block);
  const int lost = ZunRtcpReportBlockGetPacketsLost(&block);
  const unsigned sequence = ZunRtcpReportBlockGetExtendedSequenceNumber(&block);
  const unsigned last_sr = ZunRtcpReportBlockGetLastSrTime(&block);
  const unsigned delay = ZunRtcpReportBlockGetDelaySinceLastSr(&block);
  description->AddSource("source", "block on", ZunRtcpReportBlockGetSource(&block));
  description->Add("fractionLost", fraction,
                   Printed("lost %u/256 (%.1f %%)", fraction, fraction / kLossFractionPerPercent));
  description->Add("packetsLost", lost, Printed("%d in all", lost));
  description->Add("highestSequence", sequence,
                   Printed("highest sequence %u in cycle %u", sequence & 0xFFFFU, sequence >> 16));
  description->AddNumber("jitter", "jitter", ZunRtcpReportBlockGetJitter(&block));
  description->AddValue("lastSr", last_sr);
  description->AddValue("delaySinceLastSr", delay);
  description->AddWords(LastSrWords(last_sr, delay));
}

}  // namespace

void DescribeReportBlocks(const ZunVector_ZunRtcpReportBlock& blocks, const ZunString& extension,
                          Description* description) {
  description->AddList("reportBlocks");
  for (const ZunRtcpReportBlock& block : Elements(blocks)) DescribeBlock(block, &description->AddItem("reportBlocks"));
  description->AddBytes("extension", "extension", BytesOf(extension));
}

}  // namespace zunrtcp
