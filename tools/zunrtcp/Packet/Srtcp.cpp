#include "tools/zunrtcp/Packet/Srtcp.h"

#include "tools/zunrtcp/Packet/SubpacketWalk.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kClearSize = kHeaderSize + kSourceSize;  // is never encrypted
constexpr std::uint32_t kEncryptedBit = 0x80000000;
constexpr std::uint32_t kLargestIndex = 0xFFFF;  // an index grows by one with each datagram, a few in a second

// Where the index stands, counted from the end: before a tag of 10, 4 or 16 bytes (RFC 3711, sections 4.2 and 5), or
// last, after the tag of 16 bytes that ends the ciphertext (RFC 7714, section 9.2).
struct Trailer {
  std::size_t index_from_end;
  std::size_t size;
};
constexpr Trailer kTrailers[] = {{14, 14}, {4, 20}, {8, 8}, {20, 20}};

std::optional<Srtcp> ReadTrailer(std::string_view datagram, const Trailer& trailer) {
  if (datagram.size() < kClearSize + trailer.size) return std::nullopt;
  const std::uint32_t word = U32At(datagram, datagram.size() - trailer.index_from_end);
  const std::uint32_t index = word & ~kEncryptedBit;
  const bool is_encrypted = (word & kEncryptedBit) != 0;
  if (index > kLargestIndex) return std::nullopt;
  // Where the packets can be read they end at the trailer.
  const std::string_view packets = datagram.substr(0, datagram.size() - trailer.size);
  if (!is_encrypted && !WalkSubpackets(packets).fault.empty()) return std::nullopt;
  return Srtcp{U32At(datagram, kHeaderSize), is_encrypted, index, trailer.size};
}

}  // namespace

std::optional<Srtcp> RecogniseSrtcp(std::string_view datagram) {
  for (const Trailer& trailer : kTrailers) {
    if (const std::optional<Srtcp> found = ReadTrailer(datagram, trailer)) return found;
  }
  return std::nullopt;
}

std::string Srtcp::Words() const {
  return Printed("SRTCP of %s, packet %u", SourceName(sender).c_str(), index) +
         (is_encrypted ? ", encrypted: nothing more can be told without the key" : ", not encrypted");
}

}  // namespace zunrtcp
