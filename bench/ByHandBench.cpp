// Six datagrams, each held against code that was written by hand for it: parsed with every field read, in place and
// fresh, and written.
#include <cstdlib>

#include "Zun/Rtp/Cpp/Packet.h"
#include "bench/Bench.h"
#include "bench/ByHand.h"
#include "bench/Octets.h"
#include "bench/OtherCodecs/OtherCodec.h"

namespace bench {
namespace {

using by_hand::Sum;

// ---- every field of what was parsed, summed up as the code by hand does

Sum Total(const ZunVector_ZunRtcpReportBlock& blocks) {
  Sum sum = 0;
  for (const ZunRtcpReportBlock* x = blocks.begin; x != blocks.end; ++x) {
    sum += Sum{x->ssrc} + x->fraction_lost + x->cum_num_packet_lost + x->highest_seq_num_rcvd +
           x->inter_arrival_jitter + x->last_sr + x->delay_last_sr;
  }
  return sum;
}
Sum Total(const ZunRtcpSr& p) {
  return Sum{p.sender_source} + p.ntp_timestamp + p.rtp_timestamp + p.sender_packet_cnt + p.sender_octet_cnt +
         Total(p.report_blocks);
}
Sum Total(const ZunRtcpRr& p) { return Sum{p.sender_source} + Total(p.report_blocks); }
Sum Total(const ZunRtcpSdes& p) {
  Sum sum = 0;
  for (const ZunRtcpSdesChunk* chunk = p.chunks.begin; chunk != p.chunks.end; ++chunk) {
    sum += chunk->ssrc;
    for (const ZunRtcpSdesItem* item = chunk->items.begin; item != chunk->items.end; ++item) {
      sum += static_cast<Sum>(item->type) +
             by_hand::Load<std::uint64_t>(reinterpret_cast<const std::uint8_t*>(item->text.buf)) + item->text.size;
    }
  }
  return sum;
}
Sum Total(const ZunRtcpRtpfbNack& p) {
  Sum sum = Sum{p.sender} + p.source;
  for (const ZunRtcpRtpfbNackSeqMap* x = p.seqMaps.begin; x != p.seqMaps.end; ++x) sum += Sum{x->seqNumber} + x->map;
  return sum;
}
Sum Total(const ZunRtcpRtpfbTransportCc& p) {
  Sum sum = Sum{p.sender} + p.source + p.baseSeq + static_cast<Sum>(p.refTime) + p.packetCount;
  for (const ZunRtcpRtpfbTransportCcPacketInfo* x = p.packetInfo.begin; x != p.packetInfo.end; ++x)
    sum += static_cast<Sum>(x->received) + static_cast<Sum>(x->haveDelta) + static_cast<Sum>(x->delta);
  return sum;
}
Sum Total(const ZunRtcpRtpfbCcfb& p) {
  Sum sum = Sum{p.sender} + p.sendTimestamp;
  for (const ZunRtcpRtpfbCcfbStream* stream = p.streams.begin; stream != p.streams.end; ++stream) {
    sum += Sum{stream->ssrc} + stream->beginSeq;
    const ZunVector_ZunRtcpRtpfbCcfbPacketMetric& metrics = stream->packetMetrics;
    for (const ZunRtcpRtpfbCcfbPacketMetric* x = metrics.begin; x != metrics.end; ++x)
      sum += Sum{x->received} + x->ecn + x->arrivalTimeOffset;
  }
  return sum;
}
Sum Total(const ZunRtcpPsfbAfbRemb& p) {
  Sum sum = Sum{p.sender} + p.source + static_cast<Sum>(p.bitrate);
  for (const ZunRtpSourceId* x = p.sources.begin; x != p.sources.end; ++x) sum += *x;
  return sum;
}

Sum Total(const ZunRtcpSubpacket& sp) {
  switch (ZunRtcpSubpacketGetType(&sp)) {
    case ZUN_RTCPSUBPACKET_TYPE_SR:
      return Total(sp.sr);
    case ZUN_RTCPSUBPACKET_TYPE_RR:
      return Total(sp.rr);
    case ZUN_RTCPSUBPACKET_TYPE_SDES:
      return Total(sp.sdes);
    case ZUN_RTCPSUBPACKET_TYPE_RTPFB:
      switch (sp.rtpfb.unk.fmt) {
        case ZUN_RTCPRTPFB_TYPE_NACK:
          return Total(sp.rtpfb.nack);
        case ZUN_RTCPRTPFB_TYPE_TransportCC:
          return Total(sp.rtpfb.transportCc);
        default:
          return Total(sp.rtpfb.ccfb);
      }
    default:
      if (sp.psfb.unk.fmt == ZUN_RTCPPSFB_TYPE_AFB) return Total(sp.psfb.afb.remb);
      return Sum{sp.psfb.pli.sender} + sp.psfb.pli.source;
  }
}
Sum Total(const ZunRtcpPacket& p) {
  Sum sum = 0;
  for (const ZunRtcpSubpacket* sp = p.subpackets.begin; sp != p.subpackets.end; ++sp) sum += Total(*sp);
  return sum;
}

// ---- the lines

void Require(bool holds) {
  if (!holds) std::abort();
}

const std::uint8_t* OctetsOf(const std::string& datagram) {
  return reinterpret_cast<const std::uint8_t*>(datagram.data());
}

template <class Hand>
Hand ParsedByHand(const std::string& datagram) {
  Hand hand;
  Require(hand.Parse(OctetsOf(datagram), datagram.size()));
  return hand;
}

// That both sides read the same is a part of the measurement: they agree on the sum of all fields.

template <class Hand>
void ParseByHand(benchmark::State& state, const std::string& datagram) {
  Hand hand;
  const Sum right = ParsedByHand<Hand>(datagram).Total();
  Measure(state, [&] {
    const std::uint8_t* bytes = OctetsOf(datagram);
    benchmark::DoNotOptimize(bytes);
    Require(hand.Parse(bytes, datagram.size()));
    benchmark::ClobberMemory();
    Require(hand.Total() == right);
  });
  benchmark::DoNotOptimize(hand);
}

template <class Hand>
void WriteByHand(benchmark::State& state, const std::string& datagram) {
  Hand hand = ParsedByHand<Hand>(datagram);
  std::uint8_t written[Hand::kSize];
  Measure(state, [&] {
    benchmark::DoNotOptimize(hand);
    std::uint8_t* bytes = written;
    benchmark::DoNotOptimize(bytes);
    hand.Write(bytes);
    benchmark::ClobberMemory();
  });
  Require(std::memcmp(written, datagram.data(), Hand::kSize) == 0);
}

template <class Hand>
void ParseAndRead(benchmark::State& state, const std::string& datagram) {
  const Sum right = ParsedByHand<Hand>(datagram).Total();
  const Bytes received(datagram);
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, CountingAllocator());
  const auto parse = [&] { Require(ZunRtcpPacketParseNetworkPacket(&packet, received.get()) != 0); };
  parse();
  Measure(state, [&] {
    parse();
    Require(Total(packet) == right);
  });
  ZunRtcpPacketDestruct(&packet);
}

template <class Hand>
void FreshAndRead(benchmark::State& state, const std::string& datagram) {
  const Sum right = ParsedByHand<Hand>(datagram).Total();
  const Bytes received(datagram);
  Measure(state, [&] {
    ZunRtcpPacket packet;
    Require(ZunRtcpPacketConstructFromNetworkPacket(&packet, received.get(), CountingAllocator()) != nullptr);
    Require(Total(packet) == right);
    ZunRtcpPacketDestruct(&packet);
  });
}

void Written(benchmark::State& state, const std::string& datagram) {
  const Bytes received(datagram);
  Bytes out;
  ZunRtcpPacket packet;
  Require(ZunRtcpPacketConstructFromNetworkPacket(&packet, received.get(), CountingAllocator()) != nullptr);
  const auto write = [&] {
    Require(ZunRtcpPacketGetNetworkPacket(&packet, out.get()) != 0);
    benchmark::ClobberMemory();
  };
  write();
  Measure(state, write);
  Require(out.str() == datagram);
  ZunRtcpPacketDestruct(&packet);
}

// At most how many times as long as the code by hand.
struct ByHandGoals {
  double in_place;
  double fresh;
  double written;
};

template <class Hand>
void AddAgainst(const std::string& subject, const std::string& datagram, const ByHandGoals& goals) {
  const auto add = [&](const char* operation, auto run, bool allocates, const std::string& yardstick, double goal) {
    Add({.subject = subject,
         .operation = operation,
         .run = [=](benchmark::State& state) { run(state, datagram); },
         .yardstick = yardstick,
         .goal = goal,
         .bytes = datagram.size(),
         .allocates = allocates});
  };
  const std::string parsed_by_hand = subject + "/by hand, parse";
  add("by hand, parse", ParseByHand<Hand>, false, "", 0);
  add("by hand, write", WriteByHand<Hand>, false, "", 0);
  add("parse and read", ParseAndRead<Hand>, false, parsed_by_hand, goals.in_place);
  add("fresh and read", FreshAndRead<Hand>, true, parsed_by_hand, goals.fresh);
  add("written", Written, false, subject + "/by hand, write", goals.written);
  AddDatagram(subject, datagram, {.copy = 0.5});
}

// What the fields sum up to as the library reads them is what the others must come to.
void AddOtherCodecsAgainst(const char* subject, const std::string& datagram) {
  zun::rtcp::Packet packet;
  Require(packet.decode(zun::rtcp::octets_of(datagram)).has_value());
  AddOtherCodecs({subject, datagram, Total(*packet.get())});
}

}  // namespace

void AddByHandLines() {
  using namespace by_hand;
  const std::string a = bench::Sr(1) + bench::Sdes(1);
  const std::string b = bench::Rr(1) + bench::Sdes(1) + bench::Nack(3) + bench::Pli();
  const std::string d = bench::Rr(1) + bench::Sdes(1) + bench::Remb();
  const std::string e = bench::Sr(31) + bench::Sdes(10);
  AddAgainst<Datagram<by_hand::Sr<1>, by_hand::Sdes<1>>>("A SR + SDES", a, {2.5, 10, 2.5});
  AddOtherCodecsAgainst("A SR + SDES", a);
  AddAgainst<Datagram<by_hand::Rr<1>, by_hand::Sdes<1>, by_hand::Nack<3>, by_hand::Pli>>("B RR + SDES + NACK + PLI", b,
                                                                                         {3, 18, 3});
  AddOtherCodecsAgainst("B RR + SDES + NACK + PLI", b);
  AddAgainst<Datagram<by_hand::TransportCc<60>>>("C transport-cc 60", TransportCcRuns(60), {1.1, 1.2, 1.3});
  AddAgainst<Datagram<by_hand::Rr<1>, by_hand::Sdes<1>, by_hand::Remb>>("D RR + SDES + REMB", d, {3, 14, 3});
  AddAgainst<Datagram<by_hand::Sr<31>, by_hand::Sdes<10>>>("E SR 31 + SDES 10", e, {1.5, 4, 1.3});
  AddOtherCodecsAgainst("E SR 31 + SDES 10", e);
  AddAgainst<Datagram<by_hand::Ccfb<2, 30>>>("F CCFB 2 x 30", bench::Ccfb(2, 30), {1, 1.3, 1});
  AddNote("C, D and F are beside no other codec: none of them takes the body of such feedback apart.");
  NoteOtherCodecs();
}

}  // namespace bench
