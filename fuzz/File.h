// Bytes as a file that exists in memory alone, for what reads files by their paths.
#ifndef FUZZ_FILE_H
#define FUZZ_FILE_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Check.h"

namespace fuzz {

class File {
 public:
  File(const std::uint8_t* octets, std::size_t size) : descriptor_(memfd_create("fuzz", 0)) {
    Check(descriptor_ >= 0, "there is memory for a file");
    Check(write(descriptor_, octets, size) == static_cast<ssize_t>(size), "the file is written");
    Check(lseek(descriptor_, 0, SEEK_SET) == 0, "it is read from its beginning");
  }
  ~File() { close(descriptor_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace fuzz

#endif
