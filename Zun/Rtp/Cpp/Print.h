// Every kind in one line of words, those that the tool prints: for std::ostream, as a std::string, and for fmt where
// that is included before.
#ifndef ZUN_RTP_CPP_PRINT_H
#define ZUN_RTP_CPP_PRINT_H

#include <array>
#include <ostream>
#include <string>
#include <string_view>

#include "Zun/Rtp/Cpp/Feedback.h"
#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Cpp/Words.h"

namespace zun::rtcp {

namespace words {

// ---- reports

#if ZUN_RTCP_HAS_REPORTS

inline void Describe(const ReportBlock& block, Line* line) {
  line->NextItem();
  line->AddSource("block on", block.ssrc);
  line->Add(Printed("lost %u/256 (%.1f %%)", block.fraction_lost, block.fraction_lost / 2.56));
  line->Add(Printed("%d in all", packets_lost(block)));
  line->Add(Printed("highest sequence %u in cycle %u", block.highest_seq_num_rcvd & 0xFFFFU,
                    block.highest_seq_num_rcvd >> 16));
  line->AddNumber("jitter", block.inter_arrival_jitter);
  if (block.last_sr == 0 && block.delay_last_sr == 0) return line->Add("no SR yet");
  line->Add(Printed("last SR 0x%08x, %.6f s ago", block.last_sr, block.delay_last_sr / 65536.0));
}

template <class S>
void DescribeReport(const Report<S>& report, Line* line) {
  line->AddOctets("extension", report.profile_specific_ext());
  for (const ReportBlock& block : report.report_blocks()) Describe(block, line);
}

inline void Describe(const View<Sr>& sr, Line* line) {
  line->AddSource("sender", sr.sender_source());
  line->Add(NtpWords(sr.ntp_timestamp()));
  line->AddNumber("RTP time", sr.rtp_timestamp());
  line->Add(Counted(sr.sender_packet_cnt(), "packet"));
  line->Add(Counted(sr.sender_octet_cnt(), "octet"));
  DescribeReport(sr, line);
}

inline void Describe(const View<Rr>& rr, Line* line) {
  line->AddSource("sender", rr.sender_source());
  DescribeReport(rr, line);
}

inline std::string SdesItemName(ZunRtcpSdesItemType type) {
  constexpr std::array<const char*, ZUN_RTCPSDESITEM_TYPE_MAX> kNames{
      nullptr, "CNAME", "NAME",       "EMAIL", "PHONE", "LOC",         "TOOL",
      "NOTE",  "PRIV",  "H323-CADDR", "APSI",  "RGRP",  "RtpStreamId", "RepairedRtpStreamId",
      "CCID",  "MID"};
  if (type > 0 && type < ZUN_RTCPSDESITEM_TYPE_MAX) return kNames[static_cast<std::size_t>(type)];
  return "type " + std::to_string(type);
}

// A PRIV item in its two parts; as it stands when its prefix does not fit.
inline std::string SdesItemWords(const View<SdesItem>& item) {
  if (const auto priv = item.priv()) return "PRIV " + Quoted(priv->prefix) + " = " + Quoted(priv->value);
  return SdesItemName(item.type()) + " " + Quoted(item.text());
}

inline void Describe(const View<Sdes>& sdes, Line* line) {
  for (const auto chunk : sdes.chunks()) {
    line->NextItem();
    line->AddSource("chunk of", chunk.ssrc());
    line->Open();
    for (const auto item : chunk.items()) line->Add(SdesItemWords(item));
    line->Close();
  }
}

inline void Describe(const View<Bye>& bye, Line* line) {
  line->Add(SourceNames(bye.sources()) + " left");
  if (!bye.reason().empty()) line->AddText("reason", bye.reason());
}

inline void Describe(const View<App>& app, Line* line) {
  line->AddSource("source", app.source());
  line->AddText("name", app.name());
  line->Add(Counted(app.data().size(), "byte") + " of data");
  line->AddOctets("data", app.data());
}

#endif

// ---- what is unknown, and what all feedback shares

inline void Describe(const View<Unknown>& unknown, Line* line) { line->AddOctets("data", unknown.data()); }

template <class S>
void DescribeSources(const Feedback<S>& feedback, Line* line) {
  line->AddSource("sender", feedback.sender());
  line->AddSource("source", feedback.source());
}

// What the two ABAFBs share.
template <class Abafb>
void DescribeRates(const Abafb& abafb, Line* line) {
  DescribeSources(abafb, line);
  line->AddNumber("timestamp", abafb.timestamp());
  line->AddNumber("delay", abafb.delay(), "us");
  line->AddNumber("data rate", abafb.data_rate());
  line->AddNumber("loss rate", abafb.loss_rate());
  line->AddNumber("ABA data rate", abafb.aba_data_rate());
}

// ---- transport-layer feedback

#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK

inline void Describe(const View<Nack>& nack, Line* line) {
  DescribeSources(nack, line);
  std::string lost = "lost";
  for (const std::uint16_t seq : nack.lost()) lost.append(" ").append(std::to_string(seq));
  line->Add(lost);
}

inline void Describe(const View<Tmmbr>& tmmbr, Line* line) {
  DescribeSources(tmmbr, line);
  for (const TmmbrEntry& entry : tmmbr.fci()) {
    line->NextItem();
    line->AddSource("of", entry.ssrc);
    line->AddNumber("at most", entry.max_bitrate, "bit/s");
  }
}

inline void Describe(const View<Tmmbn>& tmmbn, Line* line) {
  DescribeSources(tmmbn, line);
  line->AddNumber("at most", tmmbn.max_bitrate(), "bit/s");
}

// In milliseconds from the reference time: "x" for one that did not arrive, "?" where nobody knows when.
inline std::string ArrivalsWords(const View<TransportCc>& feedback) {
  constexpr std::size_t kMostShown = 12;
  std::string text = "arrivals in ms:";
  std::size_t shown = 0;
  int sum = 0;
  for (const TransportCcPacketInfo& info : feedback.packet_info()) {
    if (shown++ == kMostShown) break;
    if (info.haveDelta) sum += info.delta;
    text += !info.received ? " x" : !info.haveDelta ? " ?" : Printed(" %.2f", sum * 0.25);
  }
  if (feedback.packet_info().size() > kMostShown) {
    text += " ... (" + std::to_string(feedback.packet_info().size() - kMostShown) + " more)";
  }
  return text;
}

inline void Describe(const View<TransportCc>& feedback, Line* line) {
  DescribeSources(feedback, line);
  std::size_t arrived = 0;
  for (const TransportCcPacketInfo& info : feedback.packet_info()) arrived += info.received ? 1 : 0;
  line->AddNumber("from sequence", feedback.base_seq());
  line->Add(Counted(feedback.packet_info().size(), "packet") + ", " + std::to_string(arrived) + " arrived");
  line->Add(Printed("reference time %d x 64 ms", static_cast<int>(feedback.ref_time())));
  line->AddNumber("feedback number", feedback.packet_count());
  line->Add(ArrivalsWords(feedback));
}

// What the codepoints of RFC 3168 mean, by the two bits of the wire. A metric read in the house's dialect holds four
// times these, which no codepoint but 0 is.
inline std::string EcnWords(std::span<const CcfbPacketMetric> metrics) {
  constexpr std::array<const char*, 4> kNames{"Not-ECT", "ECT(1)", "ECT(0)", "CE"};
  constexpr unsigned kFactor = 4;
  std::array<std::size_t, kNames.size()> counts{};
  for (const CcfbPacketMetric& metric : metrics) {
    const unsigned codepoint = metric.ecn < kFactor ? metric.ecn : metric.ecn / kFactor;
    if (metric.received) ++counts[codepoint % counts.size()];
  }
  std::string text = "ECN";
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] > 0) text += Printed(" %s x", kNames[i]) + std::to_string(counts[i]);
  }
  return text;
}

inline void Describe(const View<CcfbStream>& stream, Line* line) {
  const auto metrics = stream.packet_metrics();
  std::size_t lost = 0;
  for (const CcfbPacketMetric& metric : metrics) lost += metric.received ? 0 : 1;
  const double percent =
      metrics.empty() ? 0.0 : 100.0 * static_cast<double>(lost) / static_cast<double>(metrics.size());
  line->NextItem();
  line->AddSource("stream", stream.ssrc());
  line->AddNumber("from sequence", stream.begin_seq());
  line->Add(Counted(metrics.size(), "packet") + ", " + std::to_string(lost) + Printed(" lost (%.1f %%)", percent));
  if (lost < metrics.size()) line->Add(EcnWords(metrics));
}

inline void Describe(const View<Ccfb>& ccfb, Line* line) {
  line->AddSource("sender", ccfb.sender());
  line->Add(Printed("report time %.6f s (16.16)", ccfb.send_timestamp() / 65536.0));
  for (const auto stream : ccfb.streams()) Describe(stream, line);
}

inline void Describe(const View<Abafb>& abafb, Line* line) { DescribeRates(abafb, line); }

inline void Describe(const View<UnknownRtpfb>& unknown, Line* line) {
  DescribeSources(unknown, line);
  line->AddOctets("data", unknown.data());
}

#endif

// ---- payload-specific feedback

#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK

inline void Describe(const View<Pli>& pli, Line* line) {
  DescribeSources(pli, line);
  line->AddOctets("extension", pli.profile_specific_ext());
}

inline void Describe(const View<Sli>& sli, Line* line) {
  DescribeSources(sli, line);
  for (const SliItem& item : sli.items()) {
    line->NextItem();
    line->AddNumber("lost from macroblock", item.lost_mblock);
    line->AddNumber("as many as", item.num_lost_mblocks);
    line->AddNumber("in picture", item.picture_id);
  }
}

inline void Describe(const View<Rpsi>& rpsi, Line* line) {
  DescribeSources(rpsi, line);
  line->AddNumber("payload type", rpsi.pt());
  line->AddNumber("unused bits", rpsi.unbits());
  line->AddOctets("bit string", rpsi.rpsi());
}

inline void Describe(const View<Fir>& fir, Line* line) {
  DescribeSources(fir, line);
  for (const FirEntry& entry : fir.fci()) {
    line->NextItem();
    line->AddSource("to", entry.ssrc);
    line->AddNumber("command", entry.seqno);
  }
}

// What TSTR and TSTA share.
template <class TradeOffs>
void DescribeTradeOffs(const TradeOffs& message, Line* line) {
  DescribeSources(message, line);
  for (const auto& entry : message.fci()) {
    line->NextItem();
    line->AddSource("to", entry.ssrc);
    line->AddNumber("request", entry.seqno);
    line->AddNumber("trade-off", entry.index);
  }
}
inline void Describe(const View<Tstr>& tstr, Line* line) { DescribeTradeOffs(tstr, line); }
inline void Describe(const View<Tsta>& tsta, Line* line) { DescribeTradeOffs(tsta, line); }

inline void Describe(const View<UnknownPsfb>& unknown, Line* line) {
  DescribeSources(unknown, line);
  line->AddOctets("data", unknown.data());
}

#endif

// ---- application-layer feedback

#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK

inline void Describe(const View<Remb>& remb, Line* line) {
  DescribeSources(remb, line);
  line->Add(Printed("%.3f kbit/s", static_cast<double>(remb.bitrate()) / 1000));
  line->Add("for " + (remb.sources().empty() ? "no source" : SourceNames(remb.sources())));
}

inline void Describe(const View<AfbAbafb>& abafb, Line* line) {
  DescribeRates(abafb, line);
  line->Add(Printed("average delay difference %d", static_cast<int>(abafb.average_delay_difference())));
  line->AddNumber("average arrival difference", abafb.average_arrival_difference());
}

inline void Describe(const View<Albr>& albr, Line* line) {
  DescribeSources(albr, line);
  line->AddNumber("available link bit rate", albr.available_bit_rate());
}

inline std::string ShowParameterName(ZunRtcpPsfbAfbShowParameterType type) {
  constexpr std::array<const char*, 14> kNames{
      nullptr,     "enable",    "preference", "width",          "height",         "frame rate",    "pixel rate",
      "bandwidth", "min width", "min height", "min frame rate", "min pixel rate", "min bandwidth", "packet size"};
  if (type > 0 && type < static_cast<int>(kNames.size())) return kNames[static_cast<std::size_t>(type)];
  return "parameter of type " + std::to_string(type);
}

inline void Describe(const View<Show>& show, Line* line) {
  DescribeSources(show, line);
  line->AddNumber("request", show.seqno());
  for (const ShowParameter& parameter : show.parameters()) {
    line->AddNumber(ShowParameterName(parameter.type), parameter.value);
  }
}

inline void Describe(const View<ShowAck>& ack, Line* line) {
  DescribeSources(ack, line);
  line->AddNumber("request", ack.seqno());
  line->AddSource("of", ack.show_sender());
}

inline void Describe(const View<Lir>& lir, Line* line) {
  DescribeSources(lir, line);
  for (const auto entry : lir.fci()) {
    line->NextItem();
    line->AddSource("source", entry.ssrc());
    line->AddNumber("sequence", entry.seqno());
    line->AddNumber("payload type", entry.payload_type());
    line->AddOctets("layer data", entry.layer_data());
  }
}

inline void Describe(const View<UnknownAfb>& unknown, Line* line) {
  DescribeSources(unknown, line);
  line->AddOctets("data", unknown.data());
}

#endif

// ---- names

#if ZUN_RTCP_HAS_REPORTS
inline std::string NameOf(const View<Sr>&) { return "SR"; }
inline std::string NameOf(const View<Rr>&) { return "RR"; }
inline std::string NameOf(const View<Sdes>&) { return "SDES"; }
inline std::string NameOf(const View<Bye>&) { return "BYE"; }
inline std::string NameOf(const View<App>&) { return "APP"; }
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
inline std::string NameOf(const View<Nack>&) { return "NACK"; }
inline std::string NameOf(const View<Tmmbr>&) { return "TMMBR"; }
inline std::string NameOf(const View<Tmmbn>&) { return "TMMBN"; }
inline std::string NameOf(const View<TransportCc>&) { return "TWCC"; }
inline std::string NameOf(const View<Ccfb>&) { return "CCFB"; }
inline std::string NameOf(const View<Abafb>&) { return "ABAFB"; }
inline std::string NameOf(const View<UnknownRtpfb>& rtpfb) { return "RTPFB FMT " + std::to_string(rtpfb.fmt()); }
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
inline std::string NameOf(const View<Pli>&) { return "PLI"; }
inline std::string NameOf(const View<Sli>&) { return "SLI"; }
inline std::string NameOf(const View<Rpsi>&) { return "RPSI"; }
inline std::string NameOf(const View<Fir>&) { return "FIR"; }
inline std::string NameOf(const View<Tstr>&) { return "TSTR"; }
inline std::string NameOf(const View<Tsta>&) { return "TSTA"; }
inline std::string NameOf(const View<UnknownPsfb>& psfb) { return "PSFB FMT " + std::to_string(psfb.fmt()); }
#endif
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
inline std::string NameOf(const View<Remb>&) { return "REMB"; }
inline std::string NameOf(const View<AfbAbafb>&) { return "AFB ABAFB"; }
inline std::string NameOf(const View<Albr>&) { return "ALBR"; }
inline std::string NameOf(const View<Show>&) { return "SHOW"; }
inline std::string NameOf(const View<ShowAck>&) { return "SHOWACK"; }
inline std::string NameOf(const View<Lir>&) { return "LIR"; }

// A house message is told by its number.
inline std::string NameOf(const View<UnknownAfb>& afb) {
  const auto data = afb.data();
  const bool is_house_message = data.size() >= 4 && data[0] == std::byte{'N'} && data[1] == std::byte{'r'};
  if (!is_house_message) return "AFB";
  return "AFB Nr " + std::to_string(std::to_integer<unsigned>(data[2]) << 8 | std::to_integer<unsigned>(data[3]));
}
#endif

// Types that others registered have a name, and so have those of the rooms that are left out.
inline std::string NameOf(const View<Unknown>& unknown) {
  struct Registered {
    ZunRtcpSubpacketType type;
    const char* name;
  };
  constexpr std::array<Registered, 17> kRegistered{{{192, "full intra request"},
                                                    {193, "negative acknowledgement"},
                                                    {195, "IJ"},
                                                    {200, "SR"},
                                                    {201, "RR"},
                                                    {202, "SDES"},
                                                    {203, "BYE"},
                                                    {204, "APP"},
                                                    {205, "RTPFB"},
                                                    {206, "PSFB"},
                                                    {207, "XR"},
                                                    {208, "AVB"},
                                                    {209, "RSI"},
                                                    {210, "TOKEN"},
                                                    {211, "IDMS"},
                                                    {212, "RGRS"},
                                                    {213, "SNM"}}};
  std::string number = "type " + std::to_string(unknown.type());
  for (const Registered& registered : kRegistered) {
    if (registered.type == unknown.type()) return registered.name + (" (" + number + ")");
  }
  return number;
}

}  // namespace words

// ---- the lines

// "NACK: sender 0x11223344, source 0x12345678, lost 1000 1003"
template <SubpacketKind Class>
std::string to_string(const Class& object) {
  const View<Class> view(*object.get());
  words::Line line(words::NameOf(view));
  words::Describe(view, &line);
  return line.Take();
}
inline std::string to_string(Looking<const ZunRtcpSubpacket> subpacket) {
  return visit(subpacket, [](const auto& object) { return to_string(object); });
}
// A line for each subpacket.
inline std::string to_string(Looking<const ZunRtcpPacket> packet) {
  std::string text;
  for (const View<Subpacket> subpacket : View<Packet>(*packet.get())) {
    text.append(text.empty() ? "" : "\n").append(to_string(subpacket));
  }
  return text;
}
inline std::string to_string(const DecodeError& error) { return error.text(); }
inline std::string to_string(const EncodeError& error) { return error.text(); }

// What can be printed: any kind, a subpacket, a packet, an error.
template <class T>
concept Printable = SubpacketKind<T> || std::same_as<T, DecodeError> || std::same_as<T, EncodeError> ||
    std::same_as<T, Subpacket> || std::same_as<T, View<Subpacket>> || std::same_as<T, Ref<Subpacket>> ||
    std::same_as<T, Packet> || std::same_as<T, View<Packet>>;

template <Printable T>
std::ostream& operator<<(std::ostream& out, const T& printable) {
  return out << to_string(printable);
}

}  // namespace zun::rtcp

#if defined(FMT_VERSION)
template <zun::rtcp::Printable T>
struct fmt::formatter<T> : fmt::formatter<fmt::string_view> {
  template <class Context>
  auto format(const T& printable, Context& context) const {
    const std::string text = zun::rtcp::to_string(printable);
    return fmt::formatter<fmt::string_view>::format({text.data(), text.size()}, context);
  }
};
#endif

#endif
