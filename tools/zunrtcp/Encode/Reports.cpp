#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::int64_t kMostPacketsLost = 0x7FFFFF;
constexpr std::size_t kMostPrefix = 254;
constexpr std::uint64_t kMostItemType = 15;

template <class Report>
void AddBlocks(const JsonField& packet, Report* report) {
  for (const JsonField& field : packet["reportBlocks"].Elements()) {
    ReportBlock block{};
    block.ssrc = field["source"].As<std::uint32_t>();
    block.fraction_lost = field["fractionLost"].As<std::uint8_t>();
    packets_lost(block,
                 static_cast<std::int32_t>(field["packetsLost"].Signed(-kMostPacketsLost - 1, kMostPacketsLost)));
    block.highest_seq_num_rcvd = field["highestSequence"].As<std::uint32_t>();
    block.inter_arrival_jitter = field["jitter"].As<std::uint32_t>();
    block.last_sr = field["lastSr"].As<std::uint32_t>();
    block.delay_last_sr = field["delaySinceLastSr"].As<std::uint32_t>();
    MustBeTrue(report->add(block));
  }
  const std::string extension = packet.OptionalBytes("extension");
  MustAccept(report->profile_specific_ext(octets_of(extension)), packet, ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS);
}

void FillSr(const JsonField& packet, Sr* sr) {
  sr->sender_source(packet["sender"].As<std::uint32_t>());
  sr->ntp_timestamp(std::uint64_t{packet["ntpSeconds"].As<std::uint32_t>()} << 32 |
                    packet["ntpFraction"].As<std::uint32_t>());
  sr->rtp_timestamp(packet["rtpTimestamp"].As<std::uint32_t>());
  sr->sender_packet_cnt(packet["packets"].As<std::uint32_t>());
  sr->sender_octet_cnt(packet["octets"].As<std::uint32_t>());
  AddBlocks(packet, sr);
}

void FillRr(const JsonField& packet, Rr* rr) {
  rr->sender_source(packet["sender"].As<std::uint32_t>());
  AddBlocks(packet, rr);
}

// The text of an item; that of a PRIV has its prefix in front.
std::string ItemText(const JsonField& item) {
  if (!item.Find("prefixHex") && !item.Find("prefix")) return item.PeerText("text");
  const std::string prefix = item.PeerText("prefix");
  if (prefix.size() > kMostPrefix) item.Refuse("its prefix is longer than " + std::to_string(kMostPrefix) + " bytes");
  return std::string(1, static_cast<char>(prefix.size())) + prefix + item.PeerText("text");
}

void FillSdes(const JsonField& packet, Sdes* sdes) {
  for (const JsonField& field : packet["chunks"].Elements()) {
    SdesChunk chunk(field["source"].As<std::uint32_t>());
    for (const JsonField& item : field["items"].Elements()) {
      const auto type = static_cast<ZunRtcpSdesItemType>(item["type"].Unsigned(kMostItemType));
      MustAccept(chunk.add(type, ItemText(item)), packet, ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG);
    }
    MustBeTrue(sdes->chunks().push_back(std::move(chunk)));
  }
}

void FillBye(const JsonField& packet, Bye* bye) {
  for (const JsonField& field : packet["sources"].Elements()) MustBeTrue(bye->add(field.As<std::uint32_t>()));
  if (!packet.Find("reason") && !packet.Find("reasonHex")) return;
  MustAccept(bye->reason(packet.PeerText("reason")), packet, ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG);
}

void FillApp(const JsonField& packet, App* app) {
  app->source(packet["source"].As<std::uint32_t>());
  MustAccept(app->name(packet.PeerText("name")), packet, ZUN_RTCP_ENCODE_REASON_NAME);
  const std::string data = packet.OptionalBytes("data");
  MustBeTrue(app->data(octets_of(data)));
}

constexpr Builder kBuilders[] = {
    BuilderOf<Sr, FillSr>("SR"),    BuilderOf<Rr, FillRr>("RR"),    BuilderOf<Sdes, FillSdes>("SDES"),
    BuilderOf<Bye, FillBye>("BYE"), BuilderOf<App, FillApp>("APP"),
};

}  // namespace

std::span<const Builder> ReportBuilders() { return kBuilders; }

}  // namespace zunrtcp
