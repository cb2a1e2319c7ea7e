// What the library is to write for bytes that it has read, worked out from the bytes by the stated rules alone.
#ifndef TOOLS_ZUNRTCP_KINDS_REWRITE_H
#define TOOLS_ZUNRTCP_KINDS_REWRITE_H

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "tools/zunrtcp/Kinds/Rule.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

// One subpacket on its way from the bytes received to those expected. A kind changes `bytes` and names each rule that
// changed something.
struct Rewrite {
  std::string bytes;  // as received at first, without the padding bit, and without what the dialect calls padding
  std::set<Rule> rules;
  std::size_t base;  // bytes written before this subpacket; some kinds pad the whole string
  bool is_registered;

  Rewrite(const SubpacketView& received, std::size_t bytes_before);

  // The 5-bit field of the header.
  unsigned count() const { return U8At(bytes, 0) & kCountMask; }

  // Sets the low `size` bytes at `offset` to `value`, by `rule` when that changes them.
  void Put(std::size_t offset, std::size_t size, std::uint64_t value, Rule rule);
  // Keeps only these bits of the byte at `offset`, by `rule` when there are others.
  void Mask(std::size_t offset, unsigned mask, Rule rule);
  // Replaces everything from `offset` on, by `rule` when that changes it.
  void PutRest(std::size_t offset, const std::string& rest, Rule rule);
  // What padding octets left of the last word is filled with zeros.
  void FillLastWord();
  // Makes the header's length field say `size` bytes.
  void PutLength(std::size_t size);
  // How many zeros are missing to a multiple of 4 when `size` bytes are written after `base`.
  std::size_t PaddingOfString(std::size_t size) const { return PaddingAfter(base + size); }
};

}  // namespace zunrtcp

#endif
