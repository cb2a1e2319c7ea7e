// The operations that every datagram has.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "bench/Bench.h"

namespace bench {
namespace {

constexpr ZunSizeT kPartialSize = 1200;

using zun::rtcp::Packet;

// A benchmark of something that does not work would time its failure.
void Require(bool holds, const std::string& subject) {
  if (holds) return;
  (void)std::fprintf(stderr, "zunrtcp_bench: %s: the operation to be timed fails\n", subject.c_str());
  std::exit(2);
}

void ParseFresh(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Measure(state, [&] {
    ZunRtcpPacket packet;
    Require(ZunRtcpPacketConstructFromNetworkPacket(&packet, received.get(), CountingAllocator()) != nullptr, subject);
    benchmark::DoNotOptimize(packet);
    ZunRtcpPacketDestruct(&packet);
  });
}

void ParseInPlace(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Packet packet(CountingAllocator());
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Measure(state, [&] {
    Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
    benchmark::ClobberMemory();
  });
}

void Write(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Bytes written;
  Packet packet(CountingAllocator());
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Require(ZunRtcpPacketGetNetworkPacket(packet.get(), written.get()) != 0, subject);
  Measure(state, [&] {
    Require(ZunRtcpPacketGetNetworkPacket(packet.get(), written.get()) != 0, subject);
    benchmark::ClobberMemory();
  });
}

void Length(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Packet packet(CountingAllocator());
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Measure(state, [&] { benchmark::DoNotOptimize(ZunRtcpPacketGetNetworkPacketLength(packet.get())); });
}

// All of the packet, in as many datagrams as it takes.
void PartialWrite(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Bytes written;
  Packet packet(CountingAllocator());
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Measure(state, [&] {
    for (ZunSizeT next = 0; next < ZunRtcpPacketGetSubpacketCount(packet.get());) {
      Require(
          ZunRtcpPacketGetPartialNetworkPacket(packet.get(), written.get(), next, kPartialSize, nullptr, &next) != 0,
          subject);
    }
    benchmark::ClobberMemory();
  });
}

// The open door: the same, from octets and into octets.
template <ZunRtcpDialect kDialect>
void DecodeInPlace(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Packet packet(CountingAllocator());
  const auto decode = [&] {
    return ZunRtcpPacketDecode(packet.get(), datagram.data(), datagram.size(), kDialect, nullptr, nullptr) != 0;
  };
  Require(decode(), subject);
  Measure(state, [&] {
    Require(decode(), subject);
    benchmark::ClobberMemory();
  });
}

void DecodeFromArena(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  constexpr ZunSizeT kArenaSize = ZunSizeT{1} << 20;
  const std::unique_ptr<char[]> block(new char[kArenaSize]);
  ZunArena arena;
  ZunArenaConstruct(&arena, block.get(), kArenaSize, nullptr);
  Measure(state, [&] {
    ZunRtcpPacket packet;
    ZunRtcpPacketConstructDefault(&packet, ZunArenaGetAllocator(&arena));
    Require(
        ZunRtcpPacketDecode(&packet, datagram.data(), datagram.size(), ZUN_RTCP_DIALECT_HOUSE, nullptr, nullptr) != 0,
        subject);
    benchmark::DoNotOptimize(packet);
    ZunArenaReset(&arena);
  });
}

template <ZunRtcpDialect kDialect>
void Encode(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Packet packet(CountingAllocator());
  Require(ZunRtcpPacketDecode(packet.get(), datagram.data(), datagram.size(), ZUN_RTCP_DIALECT_HOUSE, nullptr,
                              nullptr) != 0,
          subject);
  const ZunSizeT capacity = 2 * datagram.size();
  const std::unique_ptr<char[]> octets(new char[capacity]);
  ZunSizeT size = 0;
  Measure(state, [&] {
    Require(ZunRtcpPacketEncode(packet.get(), octets.get(), capacity, kDialect, &size) != 0, subject);
    benchmark::ClobberMemory();
  });
}

void Memcpy(benchmark::State& state, const std::string& datagram) {
  const std::unique_ptr<char[]> to(new char[datagram.size()]);
  Measure(state, [&] {
    benchmark::DoNotOptimize(std::memcpy(to.get(), datagram.data(), datagram.size()));
    benchmark::ClobberMemory();
  });
}

}  // namespace

void AddDatagram(const std::string& subject, const std::string& datagram, const Goals& goals, bool partial) {
  const auto with = [&](void (*operation)(benchmark::State&, const std::string&, const std::string&)) {
    return [=](benchmark::State& state) { operation(state, subject, datagram); };
  };
  Add({subject, "parse fresh", with(ParseFresh), "", 0});
  Add({subject, "parse in place", with(ParseInPlace), goals.parse_yardstick, goals.parse});
  Add({subject, "write", with(Write), goals.write_yardstick, goals.write});
  // The goals leave room for what one run differs from another.
  Add({subject, "decode in place", with(DecodeInPlace<ZUN_RTCP_DIALECT_HOUSE>), subject + "/parse in place", 1.1});
  Add({subject, "decode, registered", with(DecodeInPlace<ZUN_RTCP_DIALECT_REGISTERED>), subject + "/decode in place",
       1.1});
  Add({subject, "decode, arena", with(DecodeFromArena), subject + "/decode in place", 1.5});
  Add({subject, "encode", with(Encode<ZUN_RTCP_DIALECT_HOUSE>), subject + "/write", 1.1});
  Add({subject, "encode, registered", with(Encode<ZUN_RTCP_DIALECT_REGISTERED>), subject + "/encode", 1.1});
  Add({subject, "length", with(Length), "", 0});
  if (partial) Add({subject, "partial write", with(PartialWrite), "", 0});
  Add({subject, "memcpy", [=](benchmark::State& state) { Memcpy(state, datagram); }, "", 0});
}

std::string Compound(std::initializer_list<const ZunRtcpSubpacket*> subpackets) {
  Packet packet(CountingAllocator());
  Bytes written;
  for (const ZunRtcpSubpacket* const sp : subpackets) {
    Require(ZunRtcpPacketAppendSubpacket(packet.get(), sp) != 0, "building a compound");
  }
  Require(ZunRtcpPacketGetNetworkPacket(packet.get(), written.get()) != 0, "writing a compound");
  return written.str();
}

}  // namespace bench
