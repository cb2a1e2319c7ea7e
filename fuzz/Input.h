// The bytes that the fuzzer gives, taken one after the other as what a target needs; past the end all are 0.
#ifndef FUZZ_INPUT_H
#define FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

namespace fuzz {

// A copy on a heap block of exactly its size, so that AddressSanitizer sees a read of one byte too many.
class Octets {
 public:
  Octets(const std::uint8_t* octets, std::size_t size) : octets_(new std::uint8_t[size]), size_(size) {
    if (size != 0) std::memcpy(octets_.get(), octets, size);
  }

  const std::uint8_t* data() const { return octets_.get(); }
  std::size_t size() const { return size_; }

 private:
  std::unique_ptr<std::uint8_t[]> octets_;
  std::size_t size_;
};

class Input {
 public:
  Input(const std::uint8_t* octets, std::size_t size) : next_(octets), left_(size) {}

  bool AtEnd() const { return left_ == 0; }
  std::size_t left() const { return left_; }
  std::uint8_t U8() {
    if (left_ == 0) return 0;
    --left_;
    return *next_++;
  }
  bool Bool() { return (U8() & 1) != 0; }
  std::uint16_t U16() {
    const unsigned high = U8();
    return static_cast<std::uint16_t>(high << 8 | U8());
  }
  std::uint32_t U32() {
    const std::uint32_t high = U16();
    return high << 16 | U16();
  }
  std::uint64_t U64() {
    const std::uint64_t high = U32();
    return high << 32 | U32();
  }
  // A number below `bound`, which is at most 65536.
  std::size_t Below(std::size_t bound) { return (bound <= 256 ? U8() : U16()) % bound; }

  Octets Take(std::size_t size) {
    if (size > left_) size = left_;
    Octets taken(next_, size);
    next_ += size;
    left_ -= size;
    return taken;
  }
  Octets Rest() { return Take(left_); }
  // One whose size in two bytes stands in front of it.
  Octets Sized() { return Take(U16()); }

 private:
  const std::uint8_t* next_;
  std::size_t left_;
};

}  // namespace fuzz

#endif
