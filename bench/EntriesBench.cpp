// Lists from one entry to as many as a packet takes: what an entry costs must not depend on how many there are.
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "bench/Bench.h"
#include "bench/Octets.h"

namespace bench {
namespace {

using zun::rtcp::Dialect;
using zun::rtcp::Packet;

constexpr std::size_t kMost = 10000;

Octets Ssrcs() { return Octets().U32(0x11223344).U32(0x55667788); }

std::string Tmmbr(std::uint32_t entries) {
  Octets body = Ssrcs();
  for (std::uint32_t i = 0; i < entries; ++i) body.U32(0x55667788 + i).U32(64000 + i);
  return RtcpPacket(205, 2, body);
}

std::string Sli(std::uint32_t entries) {
  Octets body = Ssrcs();
  for (std::uint32_t i = 0; i < entries; ++i) body.U32((i & 0x1FFF) << 19 | 5U << 6 | 1);
  return RtcpPacket(206, 2, body);
}

std::string Remb(std::uint32_t sources) {
  Octets body = Ssrcs().Text("REMB").U8(sources).U24(2U << 18 | 250000);
  for (std::uint32_t i = 0; i < sources; ++i) body.U32(0x55667788 + i);
  return RtcpPacket(206, 15, body);
}

std::string CcfbMetrics(std::uint32_t metrics) { return Ccfb(1, metrics); }

// One chunk with many short notes.
std::string SdesItems(std::uint32_t items) {
  Octets body = Octets().U32(0x11223344);
  for (std::uint32_t i = 0; i < items; ++i) body.U8(7).U8(4).Text("note");
  return RtcpPacket(202, 1, body.U8(0).PadTo4());
}

std::string TransportCcRunsOf(std::uint32_t packets) { return TransportCcRuns(packets); }
std::string TransportCcMixedOf(std::uint32_t packets) { return TransportCcMixed(packets); }

struct List {
  const char* name;
  std::string (*make)(std::uint32_t entries);
  Dialect dialect;
  std::size_t most = kMost;
};
constexpr List kLists[] = {
    {"NACK maps", Nack, Dialect::house},
    {"TMMBR entries", Tmmbr, Dialect::house},
    {"transport-cc runs", TransportCcRunsOf, Dialect::house},
    {"transport-cc mixed", TransportCcMixedOf, Dialect::house},
    {"CCFB metrics", CcfbMetrics, Dialect::house},
    {"FIR entries", Fir, Dialect::house},
    {"SLI entries", Sli, Dialect::house},
    {"SDES items", SdesItems, Dialect::house},
    {"REMB sources", Remb, Dialect::house, 127},
};

[[noreturn]] void Fail(const List& list, std::size_t entries) {
  (void)std::fprintf(stderr, "zunrtcp_bench: %s, %zu of them: refused\n", list.name, entries);
  std::exit(2);
}

void AddList(const List& list, std::size_t entries) {
  const std::string datagram = list.make(static_cast<std::uint32_t>(entries));
  const zun::rtcp::DecodeOptions options{.dialect = list.dialect};
  const auto decode = [=](benchmark::State& state) {
    Packet packet(CountingAllocator());
    if (!packet.decode(zun::rtcp::octets_of(datagram), options)) Fail(list, entries);
    Measure(state, [&] {
      if (!packet.decode(zun::rtcp::octets_of(datagram), options)) Fail(list, entries);
      benchmark::ClobberMemory();
    });
  };
  const auto encode = [=](benchmark::State& state) {
    Packet packet(CountingAllocator());
    if (!packet.decode(zun::rtcp::octets_of(datagram), options)) Fail(list, entries);
    std::vector<std::byte> octets(datagram.size());
    Measure(state, [&] {
      if (!packet.encode(std::span(octets), list.dialect)) Fail(list, entries);
      benchmark::ClobberMemory();
    });
  };
  const std::string count = std::to_string(entries);
  Add({.subject = list.name, .operation = "decode " + count, .run = decode, .entries = entries});
  Add({.subject = list.name, .operation = "encode " + count, .run = encode, .entries = entries});
}

}  // namespace

void AddEntriesLines() {
  for (const List& list : kLists) {
    for (const std::size_t entries : {1U, 3U, 10U, 30U, 100U, 300U, 1000U, 3000U, 10000U}) {
      if (entries <= list.most) AddList(list, entries);
    }
  }
}

}  // namespace bench
