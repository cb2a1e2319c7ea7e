// Wire bytes of the datagrams that are timed, put together field by field.
#ifndef BENCH_OCTETS_H
#define BENCH_OCTETS_H

#include <cstdint>
#include <string>

namespace bench {

class Octets {
 public:
  Octets& U8(std::uint32_t value) {
    bytes_ += static_cast<char>(value & 0xFF);
    return *this;
  }
  Octets& U16(std::uint32_t value) { return U8(value >> 8).U8(value); }
  Octets& U24(std::uint32_t value) { return U8(value >> 16).U16(value); }
  Octets& U32(std::uint32_t value) { return U16(value >> 16).U16(value); }
  Octets& Text(const std::string& text) {
    bytes_ += text;
    return *this;
  }
  Octets& PadTo4() {
    while (bytes_.size() % 4 != 0) U8(0);
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

// One RTCP packet: the common header in front of `body`, whose size must be a multiple of 4.
inline std::string RtcpPacket(std::uint32_t type, std::uint32_t count, const Octets& body) {
  return Octets()
      .U8(0x80 | count)
      .U8(type)
      .U16(static_cast<std::uint32_t>(body.bytes().size() / 4))
      .Text(body.bytes())
      .bytes();
}

// The packets that several rooms put into their compounds.
std::string Rr(std::uint32_t blocks);
std::string Sr(std::uint32_t blocks);
std::string Sdes(std::uint32_t chunks);  // one CNAME of 20 bytes each
std::string Nack(std::uint32_t entries);
std::string TransportCcRuns(std::size_t count);   // all arrive, 5 ms apart
std::string TransportCcMixed(std::size_t count);  // every fifth is lost
std::string Ccfb(std::uint32_t streams, std::uint32_t metrics);
std::string Pli();
std::string Remb();  // two SSRCs
std::string Fir(std::uint32_t entries);

}  // namespace bench

#endif
