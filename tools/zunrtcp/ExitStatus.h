// What the tool exits with.
#ifndef TOOLS_ZUNRTCP_EXITSTATUS_H
#define TOOLS_ZUNRTCP_EXITSTATUS_H

namespace zunrtcp {

enum ExitStatus : int {
  kFine = 0,
  kUnexplained = 1,  // something was refused, or written otherwise than any stated rule says
  kBadInput = 2,     // wrong arguments, or a capture that cannot be read to its end or holds no RTCP
};

}  // namespace zunrtcp

#endif
