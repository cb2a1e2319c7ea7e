// A program of a user's, compiled with each compiler, each standard, and with and without exceptions and RTTI. It uses
// every header of the face, and what of it depends on these.
#if defined(WITH_FMT)
#define FMT_HEADER_ONLY
#include <fmt/format.h>
#endif

#include <array>
#include <cstdio>
#include <memory_resource>
#include <sstream>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;

static bool ReadsWhatItWrote(ZunAllocator* a) {
  Packet packet(a);
  auto nack = packet.emplace<Nack>(0x11223344U, 0x12345678U);
  if (!nack || !nack->add(1000) || !packet.append(Pli(1, 2))) return false;
  const auto octets = packet.encode(Dialect::registered);
  Packet read(a);
  if (!octets || !read.decode(*octets, {.dialect = Dialect::registered}) || read.size() != 2) return false;
  int seen = 0;
  for (const View<Subpacket> subpacket : read) {
    seen += visit(subpacket, Overloaded{[](View<Nack> n) { return n.lost_count() == 1 ? 1 : 0; },
                                        [](View<Pli>) { return 2; }, [](const auto&) { return 100; }});
  }
  return seen == 3;
}

int main() {
  std::array<std::byte, 4096> block;
  Arena arena(block);
  std::pmr::monotonic_buffer_resource buffer;
  ResourceAllocator resource(&buffer);
  if (!ReadsWhatItWrote(system_allocator()) || !ReadsWhatItWrote(arena) || !ReadsWhatItWrote(resource)) return 1;

  int messages = 0;
  const LogHandler log([&](const LogMessage&) { ++messages; });
  Unknown unknown;
  if (unknown.subtype(32) || messages != 1) return 2;
  if (from_16_16(to_16_16(std::chrono::seconds(3))) != std::chrono::seconds(3)) return 3;

  Nack nack(0x11223344, 0x12345678);
  if (!nack.add(7)) return 4;
  std::ostringstream out;
  out << nack;
  if (out.str() != "NACK: sender 0x11223344, source 0x12345678, lost 7") return 5;
#if defined(WITH_FMT)
  if (fmt::format("{} {:>3}", nack, 1) != out.str() + "   1") return 6;
#endif
#if defined(__cpp_exceptions)
  try {
    (void)Packet().encode().value_or_throw();
    return 7;
  } catch (const std::runtime_error&) {
    std::puts("thrown where it was asked for");
  }
#endif
  return 0;
}
