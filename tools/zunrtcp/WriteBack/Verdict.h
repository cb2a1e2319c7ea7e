// What became of a datagram: whether the library read it and wrote it back, and by which rules it did otherwise.
#ifndef TOOLS_ZUNRTCP_WRITEBACK_VERDICT_H
#define TOOLS_ZUNRTCP_WRITEBACK_VERDICT_H

#include <string>
#include <string_view>
#include <vector>

#include "tools/zunrtcp/Kinds/Kinds.h"
#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

enum class Outcome {
  Identical,           // written back byte for byte
  Explained,           // written back otherwise, and the stated rules give exactly the bytes written
  Unexplained,         // written back otherwise, nobody knows why
  RefusedByRule,       // not read, as a stated rule says
  RefusedUnexplained,  // not read: malformed, or nobody knows why
  CutOff,              // not looked at, as the capture does not hold all of it
  Read,                // read, and not written back
  Protected,           // SRTCP
};

struct Verdict {
  Outcome outcome = Outcome::Identical;
  std::vector<Rule> rules;           // that explain it
  std::vector<std::string> remarks;  // where and what, in words
};

// "identical", "explained" and so on, for totals and programs.
const char* OutcomeName(Outcome outcome);

// "subpacket 1 (RR, 1 report block) at byte 8: ", which a remark begins with.
std::string PlaceWords(const SubpacketView& subpacket, const Kinds& kinds);

// Compares what the library writes with what it read.
Verdict JudgeWriteBack(std::string_view datagram, const SubpacketWalk& walk, const LibraryPacket& packet,
                       const Kinds& kinds = AllKinds());

// Tells why the library refuses what it does of a datagram, which `packet` has read tolerantly.
Verdict JudgeRefusal(const SubpacketWalk& walk, const LibraryPacket& packet, const Kinds& kinds = AllKinds());

// Why the library refuses a subpacket.
Verdict JudgeRefused(const SubpacketView& subpacket, const zun::rtcp::DecodeRefusal& refusal,
                     const Kinds& kinds = AllKinds());

// What becomes of one subpacket of the datagram that `packet` has read tolerantly: refused, or written back by itself,
// in the dialect in which it was read.
Verdict JudgeSubpacket(const SubpacketView& subpacket, const LibraryPacket& packet, const Kinds& kinds = AllKinds());

}  // namespace zunrtcp

#endif
