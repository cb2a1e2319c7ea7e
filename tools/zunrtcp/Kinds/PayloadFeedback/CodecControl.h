// What FIR, TSTR and TSTA share (RFC 5104, sections 4.3.1 to 4.3.3).
#ifndef TOOLS_ZUNRTCP_KINDS_PAYLOADFEEDBACK_CODECCONTROL_H
#define TOOLS_ZUNRTCP_KINDS_PAYLOADFEEDBACK_CODECCONTROL_H

#include "tools/zunrtcp/Kinds/Description.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/Rewrite.h"

namespace zunrtcp {

inline constexpr unsigned kTradeOffIndexMask = 0x1F;

// The entries of a TSTR or TSTA, which have an index.
template <class Message>
void DescribeTradeOffs(Message message, Description* description) {
  description->AddList("entries");
  for (const auto& entry : message.fci()) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "to", entry.ssrc);
    described.AddNumber("sequence", "request", entry.seqno);
    described.AddNumber("index", "trade-off", entry.index);
  }
}

// Entries of an SSRC, a sequence number, two reserved octets and one of which these bits have a meaning.
inline void RewriteCodecControlEntries(Rewrite* rewrite, unsigned last_octet_mask) {
  constexpr std::size_t kEntrySize = 8;
  for (std::size_t at = kFciOffset; at < rewrite->bytes.size(); at += kEntrySize) {
    rewrite->Put(at + 5, 2, 0, Rule::ReservedBits);
    rewrite->Mask(at + 7, last_octet_mask, Rule::ReservedBits);
  }
}

}  // namespace zunrtcp

#endif
