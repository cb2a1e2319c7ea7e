#include "bench/StraightLine.h"

#include <cstring>

namespace bench {
namespace {

constexpr std::size_t kSrSize = 52;        // header, sender info, one block
constexpr std::size_t kSdesHeadSize = 10;  // header, SSRC, item type and length

std::uint16_t Load16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] << 8 | p[1]); }
std::uint32_t Load32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
         static_cast<std::uint32_t>(p[2]) << 8 | p[3];
}
void Store16(std::uint8_t* p, std::uint32_t value) {
  p[0] = static_cast<std::uint8_t>(value >> 8);
  p[1] = static_cast<std::uint8_t>(value);
}
void Store32(std::uint8_t* p, std::uint32_t value) {
  Store16(p, value >> 16);
  Store16(p + 2, value & 0xFFFF);
}

std::size_t SdesSize(std::size_t cname_size) { return (kSdesHeadSize + cname_size + 1 + 3) & ~std::size_t{3}; }

}  // namespace

[[gnu::noinline]] bool StraightLineParse(const std::uint8_t* bytes, std::size_t size, StraightLinePacket* packet) {
  if (size < kSrSize || bytes[0] != 0x81 || bytes[1] != 200 || Load16(bytes + 2) != kSrSize / 4 - 1) return false;
  packet->sender = Load32(bytes + 4);
  packet->ntp_timestamp = static_cast<std::uint64_t>(Load32(bytes + 8)) << 32 | Load32(bytes + 12);
  packet->rtp_timestamp = Load32(bytes + 16);
  packet->packet_count = Load32(bytes + 20);
  packet->octet_count = Load32(bytes + 24);
  packet->block.ssrc = Load32(bytes + 28);
  packet->block.fraction_lost = bytes[32];
  packet->block.packets_lost = Load32(bytes + 32) & 0xFFFFFF;
  packet->block.highest_sequence = Load32(bytes + 36);
  packet->block.jitter = Load32(bytes + 40);
  packet->block.last_sr = Load32(bytes + 44);
  packet->block.delay_since_last_sr = Load32(bytes + 48);

  const std::uint8_t* const sdes = bytes + kSrSize;
  const std::size_t left = size - kSrSize;
  if (left < kSdesHeadSize || sdes[0] != 0x81 || sdes[1] != 202 || sdes[8] != 1) return false;
  const std::size_t cname_size = sdes[9];
  if (left != SdesSize(cname_size) || Load16(sdes + 2) != left / 4 - 1) return false;
  packet->chunk_ssrc = Load32(sdes + 4);
  packet->cname_size = sdes[9];
  std::memcpy(packet->cname, sdes + kSdesHeadSize, cname_size);
  return sdes[kSdesHeadSize + cname_size] == 0;
}

[[gnu::noinline]] std::size_t StraightLineWrite(const StraightLinePacket& packet, std::uint8_t* bytes,
                                                std::size_t capacity) {
  const std::size_t sdes_size = SdesSize(packet.cname_size);
  if (capacity < kSrSize + sdes_size) return 0;
  Store32(bytes, 0x81C80000U | (kSrSize / 4 - 1));
  Store32(bytes + 4, packet.sender);
  Store32(bytes + 8, static_cast<std::uint32_t>(packet.ntp_timestamp >> 32));
  Store32(bytes + 12, static_cast<std::uint32_t>(packet.ntp_timestamp));
  Store32(bytes + 16, packet.rtp_timestamp);
  Store32(bytes + 20, packet.packet_count);
  Store32(bytes + 24, packet.octet_count);
  Store32(bytes + 28, packet.block.ssrc);
  Store32(bytes + 32, static_cast<std::uint32_t>(packet.block.fraction_lost) << 24 | packet.block.packets_lost);
  Store32(bytes + 36, packet.block.highest_sequence);
  Store32(bytes + 40, packet.block.jitter);
  Store32(bytes + 44, packet.block.last_sr);
  Store32(bytes + 48, packet.block.delay_since_last_sr);

  std::uint8_t* const sdes = bytes + kSrSize;
  Store32(sdes, 0x81CA0000U | static_cast<std::uint32_t>(sdes_size / 4 - 1));
  Store32(sdes + 4, packet.chunk_ssrc);
  sdes[8] = 1;
  sdes[9] = packet.cname_size;
  std::memcpy(sdes + kSdesHeadSize, packet.cname, packet.cname_size);
  std::memset(sdes + kSdesHeadSize + packet.cname_size, 0, sdes_size - kSdesHeadSize - packet.cname_size);
  return kSrSize + sdes_size;
}

std::string SrSdesDatagram() {
  const StraightLinePacket packet = {0x11223344,
                                     0xEE0123456789ABCD,
                                     0x00112233,
                                     1000,
                                     1200000,
                                     {0x55667788, 12, 345, 0x00012345, 67, 0x89ABCDEF, 65536},
                                     0x11223344,
                                     20,
                                     "alice@host.example.c"};
  std::uint8_t bytes[128];
  const std::size_t size = StraightLineWrite(packet, bytes, sizeof(bytes));
  return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace bench
