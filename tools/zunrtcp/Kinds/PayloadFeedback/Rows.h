// The rows of payload-specific feedback (RFC 4585, section 6.3; RFC 5104, section 4.3), and of the packet type that
// holds it.
#ifndef TOOLS_ZUNRTCP_KINDS_PAYLOADFEEDBACK_ROWS_H
#define TOOLS_ZUNRTCP_KINDS_PAYLOADFEEDBACK_ROWS_H

#include "tools/zunrtcp/Kinds/RowOf.h"

namespace zunrtcp {

extern const KindRow psfb_row;

extern const KindRow pli_row;
extern const KindRow sli_row;
extern const KindRow rpsi_row;
extern const KindRow fir_row;
extern const KindRow tstr_row;
extern const KindRow tsta_row;

}  // namespace zunrtcp

#endif
