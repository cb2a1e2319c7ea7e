// The chunks of transport-wide feedback are laid out anew when written, so its expected bytes are worked out of the
// statuses that they stand for.
#ifndef TOOLS_ZUNRTCP_KINDS_TRANSPORTFEEDBACK_TRANSPORTCCREWRITE_H
#define TOOLS_ZUNRTCP_KINDS_TRANSPORTFEEDBACK_TRANSPORTCCREWRITE_H

#include "tools/zunrtcp/Kinds/Rewrite.h"

namespace zunrtcp {

void RewriteTransportCc(Rewrite* rewrite);

}  // namespace zunrtcp

#endif
