// zunrtcp live: decodes RTCP while it happens.
#ifndef TOOLS_ZUNRTCP_LIVECOMMAND_H
#define TOOLS_ZUNRTCP_LIVECOMMAND_H

#include <ostream>
#include <string>

#include "tools/zunrtcp/DecodeCommand.h"
#include "tools/zunrtcp/ExitStatus.h"

namespace zunrtcp {

struct LiveOptions {
  std::string interface;  // to watch; empty: listen instead
  std::string listen;     // the address and port to receive on
  DecodeOptions decode;   // its input tells only the ports
};

// Prints to `out` until SIGINT or SIGTERM, then the totals. InputError when there is nothing to watch or listen on.
ExitStatus RunLive(const LiveOptions& options, std::ostream* out);

}  // namespace zunrtcp

#endif
