// The staircase itself: compounds of unknown subpackets, and a straight line that some kinds are held against.
#include <cstdint>
#include <cstdlib>

#include "bench/Bench.h"
#include "bench/StraightLine.h"

namespace bench {
namespace {

// Subpackets of type 207, each of `size` bytes with its header.
std::string UnknownSubpackets(std::size_t count, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t words = size / 4 - 1;
    bytes += {'\x80', '\xCF', static_cast<char>(words >> 8), static_cast<char>(words & 0xFF)};
    bytes += std::string(size - 4, static_cast<char>(i + 1));
  }
  return bytes;
}

void AddStraightLine() {
  const std::string datagram = SrSdesDatagram();
  const auto parse = [=](benchmark::State& state) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(datagram.data());
    StraightLinePacket packet;
    Measure(state, [&] {
      if (!StraightLineParse(bytes, datagram.size(), &packet)) std::abort();
      benchmark::ClobberMemory();
    });
    benchmark::DoNotOptimize(packet);
  };
  const auto write = [=](benchmark::State& state) {
    StraightLinePacket packet;
    if (!StraightLineParse(reinterpret_cast<const std::uint8_t*>(datagram.data()), datagram.size(), &packet))
      std::abort();
    std::uint8_t bytes[128];
    benchmark::DoNotOptimize(packet);
    Measure(state, [&] {
      if (StraightLineWrite(packet, bytes, sizeof(bytes)) != datagram.size()) std::abort();
      benchmark::ClobberMemory();
    });
    benchmark::DoNotOptimize(bytes);
  };
  Add({"straight line SR + SDES (Y)", "parse", parse, "", 0});
  Add({"straight line SR + SDES (Y)", "write", write, "", 0});
}

}  // namespace

void AddCoreLines() {
  AddStraightLine();
  AddDatagram("unknown 1 KiB", UnknownSubpackets(1, 1024), {"unknown 1 KiB/memcpy", 4, "unknown 1 KiB/memcpy", 4},
              true);
  for (const std::size_t count : {1U, 4U, 32U}) {
    const std::string subject = std::to_string(count) + " x unknown 64 B";
    AddDatagram(subject, UnknownSubpackets(count, 64), {subject + "/memcpy", 0, subject + "/memcpy", 0}, true);
  }
}

}  // namespace bench
