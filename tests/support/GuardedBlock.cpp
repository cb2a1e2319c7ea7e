#include "tests/support/GuardedBlock.h"

#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

namespace test {

GuardedBlock::GuardedBlock(ZunSizeT size) : pages_(nullptr), mapped_(0), end_(nullptr), size_(size) {
  const auto page = static_cast<ZunSizeT>(sysconf(_SC_PAGESIZE));
  const ZunSizeT usable = (size + page - 1) / page * page;
  mapped_ = usable + page;
  void* const mapped = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::runtime_error("mmap failed");
  pages_ = static_cast<ZunUint8*>(mapped);
  end_ = pages_ + usable;
  if (mprotect(end_, page, PROT_NONE) != 0) throw std::runtime_error("mprotect failed");
}

GuardedBlock::~GuardedBlock() { munmap(pages_, mapped_); }

}  // namespace test
