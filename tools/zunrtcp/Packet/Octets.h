// Reads big-endian fields of bytes, independently of the library, so that what the library did can be checked.
#ifndef TOOLS_ZUNRTCP_PACKET_OCTETS_H
#define TOOLS_ZUNRTCP_PACKET_OCTETS_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zunrtcp {

// Thrown when a field lies beyond the end.
class OctetsEnd : public std::out_of_range {
 public:
  OctetsEnd() : std::out_of_range("field beyond the end") {}
};

// The big-endian number of `size` bytes at `offset`.
inline std::uint64_t NumberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
  if (offset > bytes.size() || size > bytes.size() - offset) throw OctetsEnd();
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
  return value;
}

inline std::uint8_t U8At(std::string_view bytes, std::size_t offset) {
  return static_cast<std::uint8_t>(NumberAt(bytes, offset, 1));
}
inline std::uint16_t U16At(std::string_view bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(NumberAt(bytes, offset, 2));
}
inline std::uint32_t U32At(std::string_view bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(NumberAt(bytes, offset, 4));
}

// The `size` bytes at `offset`.
inline std::string_view BytesAt(std::string_view bytes, std::size_t offset, std::size_t size) {
  if (offset > bytes.size() || size > bytes.size() - offset) throw OctetsEnd();
  return bytes.substr(offset, size);
}

// Appends the low `size` bytes of `value`, big-endian.
inline void AppendNumber(std::string* bytes, std::uint64_t value, std::size_t size) {
  for (std::size_t i = size; i-- > 0;) *bytes += static_cast<char>(value >> (8 * i) & 0xff);
}

}  // namespace zunrtcp

#endif
