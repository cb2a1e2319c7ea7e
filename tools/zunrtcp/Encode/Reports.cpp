#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

namespace {

constexpr std::int64_t kMostPacketsLost = 0x7FFFFF;
constexpr std::size_t kMostPrefix = 254;

void AddBlocks(const JsonField& packet, ZunVector_ZunRtcpReportBlock* blocks) {
  for (const JsonField& field : packet["reportBlocks"].Elements()) {
    ZunRtcpReportBlock block{};
    block.ssrc = field["source"].As<std::uint32_t>();
    block.fraction_lost = field["fractionLost"].As<std::uint8_t>();
    ZunRtcpReportBlockSetPacketsLost(
        &block, static_cast<ZunInt32>(field["packetsLost"].Signed(-kMostPacketsLost - 1, kMostPacketsLost)));
    block.highest_seq_num_rcvd = field["highestSequence"].As<std::uint32_t>();
    block.inter_arrival_jitter = field["jitter"].As<std::uint32_t>();
    block.last_sr = field["lastSr"].As<std::uint32_t>();
    block.delay_last_sr = field["delaySinceLastSr"].As<std::uint32_t>();
    MustBeTrue(ZunVector_ZunRtcpReportBlockPushBack(blocks, &block));
  }
}

void FillSr(const JsonField& packet, ZunRtcpSr* sr) {
  sr->sender_source = packet["sender"].As<std::uint32_t>();
  sr->ntp_timestamp =
      std::uint64_t{packet["ntpSeconds"].As<std::uint32_t>()} << 32 | packet["ntpFraction"].As<std::uint32_t>();
  sr->rtp_timestamp = packet["rtpTimestamp"].As<std::uint32_t>();
  sr->sender_packet_cnt = packet["packets"].As<std::uint32_t>();
  sr->sender_octet_cnt = packet["octets"].As<std::uint32_t>();
  AddBlocks(packet, &sr->report_blocks);
  SetBytes(&sr->profile_specific_ext, packet.OptionalBytes("extension"));
}

void FillRr(const JsonField& packet, ZunRtcpRr* rr) {
  rr->sender_source = packet["sender"].As<std::uint32_t>();
  AddBlocks(packet, &rr->report_blocks);
  SetBytes(&rr->profile_specific_ext, packet.OptionalBytes("extension"));
}

// The text of an item; that of a PRIV has its prefix in front.
std::string ItemText(const JsonField& item) {
  if (!item.Find("prefixHex") && !item.Find("prefix")) return item.PeerText("text");
  const std::string prefix = item.PeerText("prefix");
  if (prefix.size() > kMostPrefix) item.Refuse("its prefix is longer than " + std::to_string(kMostPrefix) + " bytes");
  return std::string(1, static_cast<char>(prefix.size())) + prefix + item.PeerText("text");
}

void AddItem(const JsonField& field, ZunRtcpSdesChunk* chunk) {
  ZunRtcpSdesItem item;
  ZunRtcpSdesItemConstructDefault(&item, chunk->items.allocator);
  try {
    item.type = static_cast<ZunRtcpSdesItemType>(field["type"].Unsigned(15));
    SetBytes(&item.text, ItemText(field));
    MustBeTrue(ZunVector_ZunRtcpSdesItemPushBack(&chunk->items, &item));
  } catch (...) {
    ZunRtcpSdesItemDestruct(&item);
    throw;
  }
  ZunRtcpSdesItemDestruct(&item);
}

void FillSdes(const JsonField& packet, ZunRtcpSdes* sdes) {
  for (const JsonField& field : packet["chunks"].Elements()) {
    ZunRtcpSdesChunk empty;
    ZunRtcpSdesChunkConstructDefault(&empty, sdes->chunks.allocator);
    MustBeTrue(ZunVector_ZunRtcpSdesChunkPushBack(&sdes->chunks, &empty));  // which owns nothing
    ZunRtcpSdesChunk* chunk = sdes->chunks.end - 1;
    chunk->ssrc = field["source"].As<std::uint32_t>();
    for (const JsonField& item : field["items"].Elements()) AddItem(item, chunk);
  }
}

void FillBye(const JsonField& packet, ZunRtcpBye* bye) {
  for (const JsonField& field : packet["sources"].Elements()) {
    const ZunRtpSourceId source = field.As<std::uint32_t>();
    MustBeTrue(ZunVector_ZunRtpSourceIdPushBack(&bye->sources, &source));
  }
  if (packet.Find("reason") || packet.Find("reasonHex")) SetBytes(&bye->reason, packet.PeerText("reason"));
}

void FillApp(const JsonField& packet, ZunRtcpApp* app) {
  app->source = packet["source"].As<std::uint32_t>();
  SetBytes(&app->name, packet.PeerText("name"));
  SetBytes(&app->data, packet.OptionalBytes("data"));
}

constexpr Builder kBuilders[] = {
    BuilderOf<ZunRtcpSr, ZunRtcpSrConstructDefault, FillSr>("SR"),
    BuilderOf<ZunRtcpRr, ZunRtcpRrConstructDefault, FillRr>("RR"),
    BuilderOf<ZunRtcpSdes, ZunRtcpSdesConstructDefault, FillSdes>("SDES"),
    BuilderOf<ZunRtcpBye, ZunRtcpByeConstructDefault, FillBye>("BYE"),
    BuilderOf<ZunRtcpApp, ZunRtcpAppConstructDefault, FillApp>("APP"),
};

}  // namespace

std::span<const Builder> ReportBuilders() { return kBuilders; }

}  // namespace zunrtcp
