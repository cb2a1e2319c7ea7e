// Captures of real peers, replayed whole: each datagram decoded into the one packet that a receiver keeps.
#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Utils/ZunArena.h"
#include "bench/Bench.h"

namespace bench {
namespace {

using zun::rtcp::Packet;

using Datagrams = std::vector<std::string>;

[[noreturn]] void Fail(const std::string& path, const char* reason) {
  (void)std::fprintf(stderr, "zunrtcp_bench: %s: %s\n", path.c_str(), reason);
  std::exit(2);
}

// The samples hold UDP over IPv4 over Ethernet, and each record is one whole RTCP datagram.
constexpr std::size_t kEthernetSize = 14;
constexpr std::size_t kUdpHeaderSize = 8;

std::string PayloadOf(std::string_view frame, const std::string& path) {
  if (frame.size() <= kEthernetSize) Fail(path, "a record is too short");
  const std::size_t ip_header_size = std::size_t{4} * (static_cast<unsigned char>(frame[kEthernetSize]) & 0x0F);
  const std::size_t headers = kEthernetSize + ip_header_size + kUdpHeaderSize;
  if (frame.size() <= headers) Fail(path, "a record is too short");
  return std::string(frame.substr(headers));
}

Datagrams Read(const std::string& path) {
  char reason[PCAP_ERRBUF_SIZE] = "";
  const std::unique_ptr<pcap_t, decltype(&pcap_close)> capture(pcap_open_offline(path.c_str(), reason), pcap_close);
  if (capture == nullptr) Fail(path, reason);
  if (pcap_datalink(capture.get()) != DLT_EN10MB) Fail(path, "not of Ethernet");

  Datagrams datagrams;
  pcap_pkthdr* header = nullptr;
  const unsigned char* bytes = nullptr;
  while (pcap_next_ex(capture.get(), &header, &bytes) == 1) {
    datagrams.push_back(PayloadOf({reinterpret_cast<const char*>(bytes), header->caplen}, path));
  }
  return datagrams;
}

bool Decode(ZunRtcpPacket* packet, const std::string& datagram) {
  const bool is_read =
      ZunRtcpPacketDecode(packet, datagram.data(), datagram.size(), ZUN_RTCP_DIALECT_REGISTERED, nullptr, nullptr) != 0;
  benchmark::ClobberMemory();
  return is_read;
}

// Returns how many were read. All go over one packet, which has what the last one left.
std::size_t Replay(Packet* packet, const Datagrams& datagrams) {
  std::size_t read = 0;
  for (const std::string& datagram : datagrams) read += Decode(packet->get(), datagram) ? 1 : 0;
  return read;
}

// Each goes into a packet of its own, out of an arena that is emptied after it.
std::size_t ReplayFresh(ZunArena* arena, const Datagrams& datagrams) {
  std::size_t read = 0;
  for (const std::string& datagram : datagrams) {
    ZunRtcpPacket packet;
    ZunRtcpPacketConstructDefault(&packet, ZunArenaGetAllocator(arena));
    read += Decode(&packet, datagram) ? 1 : 0;
    ZunArenaReset(arena);
  }
  return read;
}

std::size_t BytesOf(const Datagrams& datagrams) {
  std::size_t bytes = 0;
  for (const std::string& datagram : datagrams) bytes += datagram.size();
  return bytes;
}

// What is refused takes less time than what is read: its number belongs to the line.
std::string Title(const std::string& name, const Datagrams& datagrams) {
  Packet packet(CountingAllocator());
  const std::size_t refused = datagrams.size() - Replay(&packet, datagrams);
  return name + " (" + std::to_string(datagrams.size()) +
         (refused == 0 ? ")" : ", " + std::to_string(refused) + " refused)");
}

void AddReplay(const std::string& title, const std::string& operation, const Datagrams& datagrams,
               const std::function<void(benchmark::State&)>& run) {
  Add({.subject = title,
       .operation = operation,
       .run = run,
       .bytes = BytesOf(datagrams) / datagrams.size(),
       .datagrams = static_cast<double>(datagrams.size())});
}

void AddReplayOver(const std::string& title, const Datagrams& datagrams) {
  AddReplay(title, "replayed over one packet", datagrams, [=](benchmark::State& state) {
    Packet packet(CountingAllocator());
    const std::size_t right = Replay(&packet, datagrams);
    Measure(state, [&] {
      if (Replay(&packet, datagrams) != right) std::abort();
    });
  });
}

void AddReplayOutOfArena(const std::string& title, const Datagrams& datagrams) {
  AddReplay(title, "replayed, arena", datagrams, [=](benchmark::State& state) {
    constexpr ZunSizeT kArenaSize = ZunSizeT{1} << 20;
    const std::unique_ptr<char[]> block(new char[kArenaSize]);
    ZunArena arena;
    ZunArenaConstruct(&arena, block.get(), kArenaSize, nullptr);
    const std::size_t right = ReplayFresh(&arena, datagrams);
    Measure(state, [&] {
      if (ReplayFresh(&arena, datagrams) != right) std::abort();
    });
  });
}

}  // namespace

void AddCaptureLines() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(BENCH_SAMPLES)) {
    if (entry.path().extension() == ".pcap") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  Datagrams all;
  for (const std::filesystem::path& path : paths) {
    const Datagrams datagrams = Read(path.string());
    AddReplayOver(Title(path.stem().string(), datagrams), datagrams);
    all.insert(all.end(), datagrams.begin(), datagrams.end());
  }
  if (all.empty()) Fail(BENCH_SAMPLES, "there are no captures");
  const std::string title = Title("all captures", all);
  AddReplayOver(title, all);
  AddReplayOutOfArena(title, all);
}

}  // namespace bench
