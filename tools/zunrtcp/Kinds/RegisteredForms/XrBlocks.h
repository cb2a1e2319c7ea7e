// The blocks of extended reports (RFC 3611, section 4), a row for each.
#ifndef TOOLS_ZUNRTCP_KINDS_REGISTEREDFORMS_XRBLOCKS_H
#define TOOLS_ZUNRTCP_KINDS_REGISTEREDFORMS_XRBLOCKS_H

#include <cstddef>
#include <span>

#include "Zun/Rtp/Cpp/Xr.h"
#include "tools/zunrtcp/Kinds/Description.h"

namespace zunrtcp {

struct XrBlockRow {
  ZunRtcpXrBlockType type;
  const char* name;
  // Asked only about a block of this type that has the length of its type. `packets_left`: see FormBytes.
  void (*describe)(const zun::rtcp::XrBlock& block, std::size_t* packets_left, Description* description);
};

std::span<const XrBlockRow> XrBlockRows();

}  // namespace zunrtcp

#endif
