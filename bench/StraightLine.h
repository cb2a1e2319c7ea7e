// The yardstick Y: what a programmer would write by hand for one fixed datagram, an SR with one report block and
// an SDES with one CNAME. Bounds are checked once for each packet, every field is stored into a plain struct,
// nothing is on the heap.
#ifndef BENCH_STRAIGHTLINE_H
#define BENCH_STRAIGHTLINE_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace bench {

struct StraightLinePacket {
  std::uint32_t sender;
  std::uint64_t ntp_timestamp;
  std::uint32_t rtp_timestamp;
  std::uint32_t packet_count;
  std::uint32_t octet_count;
  struct {
    std::uint32_t ssrc;
    std::uint8_t fraction_lost;
    std::uint32_t packets_lost;
    std::uint32_t highest_sequence;
    std::uint32_t jitter;
    std::uint32_t last_sr;
    std::uint32_t delay_since_last_sr;
  } block;
  std::uint32_t chunk_ssrc;
  std::uint8_t cname_size;
  char cname[255];
};

// False when the bytes are not that datagram. Not inlined: a call is a part of what it stands for.
bool StraightLineParse(const std::uint8_t* bytes, std::size_t size, StraightLinePacket* packet);

// The number of bytes written; 0 when they do not fit into `capacity`.
std::size_t StraightLineWrite(const StraightLinePacket& packet, std::uint8_t* bytes, std::size_t capacity);

// The datagram: SR with one report block, SDES with a CNAME of 20 bytes.
std::string SrSdesDatagram();

inline const char* const kStraightLineParse = "straight line SR + SDES (Y)/parse";
inline const char* const kStraightLineWrite = "straight line SR + SDES (Y)/write";

}  // namespace bench

#endif
