// The rows of transport-layer feedback (RFC 4585, section 6.2), and of the packet type that holds it.
#ifndef TOOLS_ZUNRTCP_KINDS_TRANSPORTFEEDBACK_ROWS_H
#define TOOLS_ZUNRTCP_KINDS_TRANSPORTFEEDBACK_ROWS_H

#include "tools/zunrtcp/Kinds/RowOf.h"

namespace zunrtcp {

extern const KindRow rtpfb_row;

extern const KindRow nack_row;
extern const KindRow tmmbr_row;
extern const KindRow tmmbn_row;
extern const KindRow ccfb_row;
extern const KindRow transport_cc_row;
extern const KindRow rtpfb_abafb_row;

}  // namespace zunrtcp

#endif
