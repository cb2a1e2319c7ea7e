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

// The `size` bytes at `offset`.
inline std::string_view BytesAt(std::string_view bytes, std::size_t offset, std::size_t size) {
  if (offset > bytes.size() || size > bytes.size() - offset) throw OctetsEnd();
  return bytes.substr(offset, size);
}

// The big-endian number of `size` bytes at `offset`.
inline std::uint64_t NumberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
  std::uint64_t value = 0;
  for (const char c : BytesAt(bytes, offset, size)) value = value << 8 | static_cast<unsigned char>(c);
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

// Appends the low `size` bytes of `value`, big-endian.
inline void AppendNumber(std::string* bytes, std::uint64_t value, std::size_t size) {
  for (std::size_t i = size; i-- > 0;) *bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

// How many bytes are missing after `size` to a multiple of 4.
inline std::size_t PaddingAfter(std::size_t size) { return (4 - size % 4) % 4; }

// Reads one field after the other; each moves it on, or throws OctetsEnd and leaves it where it is.
class OctetCursor {
 public:
  explicit OctetCursor(std::string_view bytes) : bytes_(bytes) {}

  std::string_view Take(std::size_t size) {
    const std::string_view taken = BytesAt(bytes_, at_, size);
    at_ += size;
    return taken;
  }
  std::uint64_t Number(std::size_t size) {
    const std::uint64_t value = NumberAt(bytes_, at_, size);
    at_ += size;
    return value;
  }
  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::string_view TakeRest() { return Take(left()); }

  // The next byte, which stays the next.
  std::uint8_t Next() const { return U8At(bytes_, at_); }

  bool AtEnd() const { return at_ == bytes_.size(); }
  std::size_t at() const { return at_; }
  std::size_t left() const { return bytes_.size() - at_; }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
};

}  // namespace zunrtcp

#endif
