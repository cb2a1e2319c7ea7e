// Memory that ends where a page begins that nobody may touch: an access beyond the end stops the program.
#ifndef TESTS_SUPPORT_GUARDEDBLOCK_H
#define TESTS_SUPPORT_GUARDEDBLOCK_H

#include "Zun/Utils/ZunTypes.h"

namespace test {

class GuardedBlock {
 public:
  explicit GuardedBlock(ZunSizeT size);
  ~GuardedBlock();
  GuardedBlock(const GuardedBlock&) = delete;
  GuardedBlock& operator=(const GuardedBlock&) = delete;

  ZunUint8* octets() { return end_ - size_; }
  ZunSizeT size() const { return size_; }
  // The last `size` octets of it, which end at the guard as well.
  ZunUint8* Last(ZunSizeT size) { return end_ - size; }

 private:
  ZunUint8* pages_;
  ZunSizeT mapped_;
  ZunUint8* end_;
  ZunSizeT size_;
};

}  // namespace test

#endif
