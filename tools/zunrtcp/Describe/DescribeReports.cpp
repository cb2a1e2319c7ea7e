#include "tools/zunrtcp/Describe/Describe.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// Seconds from 1900, where NTP counts from, to 1970.
constexpr std::uint64_t kNtpToUnix = 2208988800;

// The NTP time as it stands, and as a date where it is one: some senders count from their own start.
std::string NtpWords(std::uint64_t ntp) {
  const std::uint64_t seconds = ntp >> 32;
  const std::uint64_t fraction = ntp & 0xffffffff;
  const std::string number =
      Printed("0x%08llx.%08llx", static_cast<unsigned long long>(seconds), static_cast<unsigned long long>(fraction));
  if (seconds < kNtpToUnix) return "NTP " + number;
  const auto microseconds = static_cast<std::uint32_t>(fraction * 1000000 >> 32);
  return "NTP " + UtcTime(static_cast<std::int64_t>(seconds - kNtpToUnix), microseconds) + " (" + number + ")";
}

void DescribeBlock(const ZunRtcpReportBlock& block, Description* description) {
  const unsigned fraction = ZunRtcpReportBlockGetLossFraction(&block);
  const int lost = ZunRtcpReportBlockGetPacketsLost(&block);
  const unsigned sequence = ZunRtcpReportBlockGetExtendedSequenceNumber(&block);
  const unsigned lastSr = ZunRtcpReportBlockGetLastSrTime(&block);
  const unsigned delay = ZunRtcpReportBlockGetDelaySinceLastSr(&block);
  description->AddSource("source", "block on", ZunRtcpReportBlockGetSource(&block));
  description->Add("fractionLost", fraction, Printed("lost %u/256 (%.1f %%)", fraction, fraction / 2.56));
  description->Add("packetsLost", lost, Printed("%d in all", lost));
  description->Add("highestSequence", sequence,
                   Printed("highest sequence %u in cycle %u", sequence & 0xffffU, sequence >> 16));
  description->AddNumber("jitter", "jitter", ZunRtcpReportBlockGetJitter(&block));
  description->AddValue("lastSr", lastSr);
  description->AddValue("delaySinceLastSr", delay);
  description->AddWords(lastSr == 0 && delay == 0 ? std::string("no SR yet")
                                                  : Printed("last SR 0x%08x, %.6f s ago", lastSr, delay / 65536.0));
}

void DescribeBlocks(const ZunVector_ZunRtcpReportBlock& blocks, const ZunString& extension, Description* description) {
  description->AddList("reportBlocks");
  for (const ZunRtcpReportBlock& block : Elements(blocks)) DescribeBlock(block, &description->AddItem("reportBlocks"));
  description->AddBytes("extension", "extension", BytesOf(extension));
}

std::string ItemName(ZunRtcpSdesItemType type) {
  switch (type) {
    case ZUN_RTCPSDESITEM_TYPE_CNAME:
      return "CNAME";
    case ZUN_RTCPSDESITEM_TYPE_NAME:
      return "NAME";
    case ZUN_RTCPSDESITEM_TYPE_EMAIL:
      return "EMAIL";
    case ZUN_RTCPSDESITEM_TYPE_PHONE:
      return "PHONE";
    case ZUN_RTCPSDESITEM_TYPE_LOC:
      return "LOC";
    case ZUN_RTCPSDESITEM_TYPE_TOOL:
      return "TOOL";
    case ZUN_RTCPSDESITEM_TYPE_NOTE:
      return "NOTE";
    case ZUN_RTCPSDESITEM_TYPE_PRIV:
      return "PRIV";
    case ZUN_RTCPSDESITEM_TYPE_H323CADDR:
      return "H323-CADDR";
    case ZUN_RTCPSDESITEM_TYPE_APSI:
      return "APSI";
    case ZUN_RTCPSDESITEM_TYPE_RGRP:
      return "RGRP";
    case ZUN_RTCPSDESITEM_TYPE_RID:
      return "RtpStreamId";
    case ZUN_RTCPSDESITEM_TYPE_RRID:
      return "RepairedRtpStreamId";
    case ZUN_RTCPSDESITEM_TYPE_CCID:
      return "CCID";
    case ZUN_RTCPSDESITEM_TYPE_MID:
      return "MID";
    default:
      return "type " + std::to_string(type);
  }
}

// A PRIV item in its two parts; as it stands when its prefix does not fit.
void DescribePriv(const ZunRtcpSdesItem& item, Description* description) {
  ZunRtcpSdesItemPriv priv;
  if (ZunRtcpSdesItemPrivConstructItem(&priv, &item) == nullptr) {
    return description->AddText("text", "PRIV", BytesOf(item.text));
  }
  description->AddTextValue("prefix", BytesOf(priv.prefix));
  description->AddTextValue("text", BytesOf(priv.text));
  description->AddWords("PRIV " + Quoted(BytesOf(priv.prefix)) + " = " + Quoted(BytesOf(priv.text)));
  ZunRtcpSdesItemPrivDestruct(&priv);
}

void DescribeChunk(const ZunRtcpSdesChunk& chunk, Description* description) {
  description->AddSource("source", "chunk of", chunk.ssrc);
  description->AddList("items");
  for (const ZunRtcpSdesItem& item : Elements(chunk.items)) {
    Description& described = description->AddItem("items");
    described.AddValue("type", item.type);
    described.AddValue("name", ItemName(item.type));
    if (item.type == ZUN_RTCPSDESITEM_TYPE_PRIV) {
      DescribePriv(item, &described);
    } else {
      described.AddText("text", ItemName(item.type), BytesOf(item.text));
    }
  }
}

}  // namespace

void DescribeSr(const ZunRtcpSr& sr, Description* description) {
  description->AddSource("sender", "sender", sr.sender_source);
  description->AddValue("ntpSeconds", sr.ntp_timestamp >> 32);
  description->AddValue("ntpFraction", sr.ntp_timestamp & 0xffffffff);
  description->AddWords(NtpWords(sr.ntp_timestamp));
  description->AddNumber("rtpTimestamp", "RTP time", sr.rtp_timestamp);
  description->Add("packets", sr.sender_packet_cnt, Counted(sr.sender_packet_cnt, "packet"));
  description->Add("octets", sr.sender_octet_cnt, Counted(sr.sender_octet_cnt, "octet"));
  DescribeBlocks(sr.report_blocks, sr.profile_specific_ext, description);
}

void DescribeRr(const ZunRtcpRr& rr, Description* description) {
  description->AddSource("sender", "sender", rr.sender_source);
  DescribeBlocks(rr.report_blocks, rr.profile_specific_ext, description);
}

void DescribeSdes(const ZunRtcpSdes& sdes, Description* description) {
  description->AddList("chunks");
  for (const ZunRtcpSdesChunk& chunk : Elements(sdes.chunks)) DescribeChunk(chunk, &description->AddItem("chunks"));
}

void DescribeBye(const ZunRtcpBye& bye, Description* description) {
  description->AddList("sources");
  std::vector<std::string> names;
  Description::Value sources = Description::Value::array();
  for (const ZunRtpSourceId source : Elements(bye.sources)) {
    sources.push_back(source);
    names.push_back(SourceName(source));
  }
  description->Add("sources", std::move(sources), Joined(names, " ") + " left");
  if (bye.reason.size > 0) description->AddText("reason", "reason", BytesOf(bye.reason));
}

void DescribeApp(const ZunRtcpApp& app, Description* description) {
  description->AddSource("source", "source", app.source);
  description->AddText("name", "name", BytesOf(app.name));
  description->AddValue("dataLength", app.data.size);
  description->AddWords(Counted(app.data.size, "byte") + " of data");
  description->AddBytes("data", "data", BytesOf(app.data));
}

}  // namespace zunrtcp
