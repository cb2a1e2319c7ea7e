// The operations that every datagram has.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "bench/Bench.h"

namespace bench {
namespace {

constexpr ZunSizeT kPartialSize = 1200;

// A packet that ends itself.
class Packet {
 public:
  Packet() { ZunRtcpPacketConstructDefault(&packet_, CountingAllocator()); }
  ~Packet() { ZunRtcpPacketDestruct(&packet_); }
  Packet(const Packet&) = delete;
  Packet& operator=(const Packet&) = delete;
  ZunRtcpPacket* get() { return &packet_; }

 private:
  ZunRtcpPacket packet_;
};

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
  Packet packet;
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Measure(state, [&] {
    Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
    benchmark::ClobberMemory();
  });
}

void Write(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Bytes written;
  Packet packet;
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Require(ZunRtcpPacketGetNetworkPacket(packet.get(), written.get()) != 0, subject);
  Measure(state, [&] {
    Require(ZunRtcpPacketGetNetworkPacket(packet.get(), written.get()) != 0, subject);
    benchmark::ClobberMemory();
  });
}

void Length(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Packet packet;
  Require(ZunRtcpPacketParseNetworkPacket(packet.get(), received.get()) != 0, subject);
  Measure(state, [&] { benchmark::DoNotOptimize(ZunRtcpPacketGetNetworkPacketLength(packet.get())); });
}

// All of the packet, in as many datagrams as it takes.
void PartialWrite(benchmark::State& state, const std::string& subject, const std::string& datagram) {
  Bytes received(datagram);
  Bytes written;
  Packet packet;
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
  Add({subject, "length", with(Length), "", 0});
  if (partial) Add({subject, "partial write", with(PartialWrite), "", 0});
  Add({subject, "memcpy", [=](benchmark::State& state) { Memcpy(state, datagram); }, "", 0});
}

std::string Compound(std::initializer_list<const ZunRtcpSubpacket*> subpackets) {
  Packet packet;
  Bytes written;
  for (const ZunRtcpSubpacket* const sp : subpackets) {
    Require(ZunRtcpPacketAppendSubpacket(packet.get(), sp) != 0, "building a compound");
  }
  Require(ZunRtcpPacketGetNetworkPacket(packet.get(), written.get()) != 0, "writing a compound");
  return written.str();
}

}  // namespace bench
