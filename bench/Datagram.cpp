// The operations that every datagram has.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

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

void Copy(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Packet packet(CountingAllocator());
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Measure(state, [&] {
    ZunRtcpPacket copy;
    Require(ZunRtcpPacketConstructCopy(&copy, packet.get()) != nullptr, subject);
    benchmark::DoNotOptimize(copy);
    ZunRtcpPacketDestruct(&copy);
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
  const auto write = [&] {
    for (ZunSizeT next = 0; next < ZunRtcpPacketGetSubpacketCount(packet.get());) {
      Require(
          ZunRtcpPacketGetPartialNetworkPacket(packet.get(), written.get(), next, kPartialSize, nullptr, &next) != 0,
          subject);
    }
    benchmark::ClobberMemory();
  };
  write();
  Measure(state, write);
}

// The open door: the same, from octets and into octets.

bool Decode(Packet* packet, const std::string& octets, ZunRtcpDialect dialect) {
  return ZunRtcpPacketDecode(packet->get(), octets.data(), octets.size(), dialect, nullptr, nullptr) != 0;
}

// The same packets as the dialect has them. An LIR, which nobody reads as it was written, stays as it is.
std::string InDialect(ZunRtcpDialect dialect, const std::string& subject, const std::string& datagram) {
  Packet packet(CountingAllocator());
  std::string octets(2 * datagram.size(), '\0');
  ZunSizeT size = 0;
  Require(Decode(&packet, datagram, ZUN_RTCP_DIALECT_HOUSE), subject);
  Require(ZunRtcpPacketEncode(packet.get(), octets.data(), octets.size(), dialect, &size) != 0, subject);
  octets.resize(size);
  return Decode(&packet, octets, dialect) ? octets : datagram;
}

template <ZunRtcpDialect kDialect>
void DecodeInPlace(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  const std::string octets = InDialect(kDialect, subject, datagram);
  Packet packet(CountingAllocator());
  Require(Decode(&packet, octets, kDialect), subject);
  Measure(state, [&] {
    Require(Decode(&packet, octets, kDialect), subject);
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
  Require(Decode(&packet, datagram, ZUN_RTCP_DIALECT_HOUSE), subject);
  const ZunSizeT capacity = 2 * datagram.size();
  const std::unique_ptr<char[]> octets(new char[capacity]);
  ZunSizeT size = 0;
  Measure(state, [&] {
    Require(ZunRtcpPacketEncode(packet.get(), octets.get(), capacity, kDialect, &size) != 0, subject);
    benchmark::ClobberMemory();
  });
}

// The C++ face of that door.
void DecodeInCpp(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Packet packet(CountingAllocator());
  const zun::rtcp::DecodeOptions options;
  Require(packet.decode(zun::rtcp::octets_of(datagram), options).has_value(), subject);
  Measure(state, [&] {
    Require(packet.decode(zun::rtcp::octets_of(datagram), options).has_value(), subject);
    benchmark::ClobberMemory();
  });
}

void EncodeInCpp(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Packet packet(CountingAllocator());
  Require(packet.decode(zun::rtcp::octets_of(datagram)).has_value(), subject);
  std::vector<std::byte> octets(2 * datagram.size());
  Measure(state, [&] {
    Require(packet.encode(std::span(octets)).has_value(), subject);
    benchmark::ClobberMemory();
  });
}

void Memcpy(benchmark::State& state, const std::string&, const std::string& datagram) {
  const std::unique_ptr<char[]> to(new char[datagram.size()]);
  Measure(state, [&] {
    benchmark::DoNotOptimize(std::memcpy(to.get(), datagram.data(), datagram.size()));
    benchmark::ClobberMemory();
  });
}

}  // namespace

void AddDatagram(const std::string& subject, const std::string& datagram, const Goals& goals, bool partial) {
  const auto add = [&](const char* operation, auto run, bool allocates, const std::string& yardstick = "",
                       double goal = 0) {
    Add({.subject = subject,
         .operation = operation,
         .run = [=](benchmark::State& state) { run(state, subject, datagram); },
         .yardstick = yardstick,
         .goal = goal,
         .bytes = datagram.size(),
         .allocates = allocates});
  };
  add("parse fresh", ParseFresh, true);
  add("copy", Copy, true, subject + "/parse fresh", goals.copy);
  add("parse in place", ParseInPlace, false, goals.parse_yardstick, goals.parse);
  add("write", Write, false, goals.write_yardstick, goals.write);
  // The goals leave room for what one run differs from another.
  add("decode in place", DecodeInPlace<ZUN_RTCP_DIALECT_HOUSE>, false, subject + "/parse in place", 1.1);
  add("decode, registered", DecodeInPlace<ZUN_RTCP_DIALECT_REGISTERED>, false, subject + "/decode in place", 1.1);
  add("decode, arena", DecodeFromArena, false, subject + "/decode in place", 1.5);
  add("decode, C++", DecodeInCpp, false, subject + "/decode in place", 1.25);
  add("encode", Encode<ZUN_RTCP_DIALECT_HOUSE>, false, subject + "/write", 1.1);
  add("encode, registered", Encode<ZUN_RTCP_DIALECT_REGISTERED>, false, subject + "/encode", 1.1);
  add("encode, C++", EncodeInCpp, false, subject + "/encode", 1.25);
  add("length", Length, false);
  if (partial) add("partial write", PartialWrite, false);
  add("memcpy", Memcpy, false);
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
