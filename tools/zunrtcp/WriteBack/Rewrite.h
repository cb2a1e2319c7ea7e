// What the library is to write for bytes that it has read, worked out from the bytes by the stated rules alone.
#ifndef TOOLS_ZUNRTCP_WRITEBACK_REWRITE_H
#define TOOLS_ZUNRTCP_WRITEBACK_REWRITE_H

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "tools/zunrtcp/Packet/SubpacketWalk.h"
#include "tools/zunrtcp/WriteBack/Rule.h"

namespace zunrtcp {

// One subpacket on its way from the bytes received to those expected. The functions of a kind change `bytes`, which
// begin as received without the padding bit, and name each rule that changed something.
struct Rewrite {
  std::string bytes;
  std::set<Rule> rules;
  std::size_t base = 0;  // bytes written before this subpacket; some kinds pad the whole string

  // Sets the low `size` bytes at `offset` to `value`, by `rule` when that changes them.
  void Put(std::size_t offset, std::size_t size, std::uint64_t value, Rule rule);
  // Replaces everything from `offset` on, by `rule` when that changes it.
  void PutRest(std::size_t offset, const std::string& rest, Rule rule);
  // Makes the header's length field say `size` bytes.
  void PutLength(std::size_t size);
};

// The whole of what is expected for one subpacket appended to `*written`; OctetsEnd when a field is not there.
void RewriteSubpacket(const SubpacketView& received, std::string* written, std::set<Rule>* rules);

// By room.
void RewriteReports(const SubpacketView& received, Rewrite* rewrite);
void RewriteTransportFeedback(const SubpacketView& received, Rewrite* rewrite);
void RewriteTransportCc(Rewrite* rewrite);
void RewritePayloadFeedback(const SubpacketView& received, Rewrite* rewrite);
void RewriteApplicationFeedback(const SubpacketView& received, Rewrite* rewrite);

}  // namespace zunrtcp

#endif
