// The C++ face and the C calls that it stands for, side by side.
#include <array>
#include <cstdlib>

#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "bench/Bench.h"
#include "bench/Octets.h"

namespace bench {
namespace {

using zun::rtcp::octets_of;
using zun::rtcp::Packet;
using zun::rtcp::TransportCc;
using zun::rtcp::View;

// More than this is no noise.
constexpr double kGoal = 1.25;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string Compound() { return Rr(1) + Sdes(1) + Nack(4); }

// ---- a datagram in, and out

void DecodeInC(benchmark::State& state) {
  const std::string wire = Compound();
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, CountingAllocator());
  Measure(state, [&] {
    ZunRtcpDecodeReport report;
    Require(ZunRtcpPacketDecode(&packet, wire.data(), wire.size(), ZUN_RTCP_DIALECT_HOUSE, nullptr, &report) != 0);
    benchmark::ClobberMemory();
  });
  ZunRtcpPacketDestruct(&packet);
}

void DecodeInCpp(benchmark::State& state) {
  const std::string wire = Compound();
  Packet packet(CountingAllocator());
  const zun::rtcp::DecodeOptions options;
  Measure(state, [&] {
    Require(packet.decode(octets_of(wire), options).has_value());
    benchmark::ClobberMemory();
  });
}

void EncodeInC(benchmark::State& state) {
  Packet packet;
  Require(packet.decode(octets_of(Compound())).has_value());
  std::array<std::byte, 1500> octets;
  Measure(state, [&] {
    std::size_t size = 0;
    Require(ZunRtcpPacketEncode(packet.get(), octets.data(), octets.size(), ZUN_RTCP_DIALECT_HOUSE, &size) != 0);
    benchmark::ClobberMemory();
  });
}

void EncodeInCpp(benchmark::State& state) {
  Packet packet;
  Require(packet.decode(octets_of(Compound())).has_value());
  std::array<std::byte, 1500> octets;
  Measure(state, [&] {
    Require(packet.encode(std::span(octets)).has_value());
    benchmark::ClobberMemory();
  });
}

// ---- a packet looked through for the numbers that a NACK asks for

void AddUp(const ZunRtcpRtpfbNack*, ZunUint16 seq, ZunVoidPtr sum) { *static_cast<std::uint32_t*>(sum) += seq; }

void WalkInC(benchmark::State& state) {
  Packet packet;
  Require(packet.decode(octets_of(Compound())).has_value());
  Measure(state, [&] {
    std::uint32_t sum = 0;
    const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(packet.get());
    for (ZunSizeT i = 0; i < count; ++i) {
      const ZunRtcpSubpacket* const sp = ZunRtcpPacketGetSubpacket(packet.get(), i);
      if (ZunRtcpSubpacketGetType(sp) != ZUN_RTCPSUBPACKET_TYPE_RTPFB) continue;
      const ZunRtcpRtpfb* const rtpfb = ZunRtcpSubpacketGetRtpfb(sp);
      if (ZunRtcpRtpfbGetFeedbackMessageType(rtpfb) != ZUN_RTCPRTPFB_TYPE_NACK) continue;
      ZunRtcpRtpfbNackGenerateSeqNumbers(ZunRtcpRtpfbGetNack(rtpfb), AddUp, &sum);
    }
    benchmark::DoNotOptimize(sum);
  });
}

void WalkInCpp(benchmark::State& state) {
  Packet packet;
  Require(packet.decode(octets_of(Compound())).has_value());
  Measure(state, [&] {
    std::uint32_t sum = 0;
    for (const View<zun::rtcp::Subpacket> subpacket : packet) {
      if (const auto nack = get_if<zun::rtcp::Nack>(subpacket)) {
        for (const std::uint16_t seq : nack->lost()) sum += seq;
      }
    }
    benchmark::DoNotOptimize(sum);
  });
}

// ---- a packet put together: a receiver report and a NACK

void BuildInC(benchmark::State& state) {
  Measure(state, [] {
    ZunRtcpPacket packet;
    ZunRtcpPacketConstructDefault(&packet, CountingAllocator());
    ZunRtcpSubpacket sp;
    ZunRtcpRrConstructDefault(&sp.rr, CountingAllocator());
    ZunRtcpRrSetSource(&sp.rr, 1);
    Require(ZunRtcpPacketAppendSubpacket(&packet, &sp) != 0);
    ZunRtcpSubpacketDestruct(&sp);
    ZunRtcpRtpfbNackConstruct(&sp.rtpfb.nack, 1, 2, CountingAllocator());
    for (ZunUint16 seq = 0; seq < 10; ++seq) Require(ZunRtcpRtpfbNackAddSeqNumber(&sp.rtpfb.nack, seq) != 0);
    Require(ZunRtcpPacketAppendSubpacket(&packet, &sp) != 0);
    ZunRtcpSubpacketDestruct(&sp);
    benchmark::DoNotOptimize(packet);
    ZunRtcpPacketDestruct(&packet);
  });
}

void BuildInCpp(benchmark::State& state) {
  Measure(state, [] {
    Packet packet(CountingAllocator());
    Require(packet.emplace<zun::rtcp::Rr>(1U).has_value());
    zun::rtcp::Nack nack(1, 2, CountingAllocator());
    for (std::uint16_t seq = 0; seq < 10; ++seq) Require(nack.add(seq));
    Require(packet.append(std::move(nack)));
    benchmark::DoNotOptimize(packet);
  });
}

// ---- transport-wide feedback recorded, one in five packets lost

void RecordInC(benchmark::State& state) {
  Measure(state, [] {
    ZunRtcpRtpfbTransportCc feedback;
    ZunRtcpRtpfbTransportCcConstructFull(&feedback, 1, 2, 3, CountingAllocator());
    for (ZunUint16 seq = 0; seq < 100; ++seq) {
      Require(ZunRtcpRtpfbTransportCcAddPacket(&feedback, seq % 5 != 4, seq, ZunTime{seq} * 1000000) != 0);
    }
    benchmark::DoNotOptimize(feedback);
    ZunRtcpRtpfbTransportCcDestruct(&feedback);
  });
}

void RecordInCpp(benchmark::State& state) {
  Measure(state, [] {
    TransportCc feedback(1, 2, CountingAllocator());
    for (std::uint16_t seq = 0; seq < 100; ++seq) {
      Require(feedback.add_packet(seq % 5 != 4, seq, ZunTime{seq} * 1000000));
    }
    benchmark::DoNotOptimize(feedback);
  });
}

}  // namespace

void AddFaceLines() {
  const std::string subject = "RR + SDES + NACK";
  const auto add = [](const std::string& of, const std::string& operation, auto in_c, auto in_cpp) {
    Add({of, operation + ", C", in_c, "", 0});
    Add({of, operation + ", C++", in_cpp, of + "/" + operation + ", C", kGoal});
  };
  add(subject, "decode", DecodeInC, DecodeInCpp);
  add(subject, "encode", EncodeInC, EncodeInCpp);
  add(subject, "walk", WalkInC, WalkInCpp);
  add("RR + NACK", "build", BuildInC, BuildInCpp);
  add("TWCC 100 packets", "record", RecordInC, RecordInCpp);
}

}  // namespace bench
