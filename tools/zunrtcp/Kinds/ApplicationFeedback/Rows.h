// The rows of application-layer feedback (RFC 4585, section 6.4), and of the format that holds it.
#ifndef TOOLS_ZUNRTCP_KINDS_APPLICATIONFEEDBACK_ROWS_H
#define TOOLS_ZUNRTCP_KINDS_APPLICATIONFEEDBACK_ROWS_H

#include "tools/zunrtcp/Kinds/RowOf.h"

namespace zunrtcp {

extern const KindRow afb_row;

extern const KindRow afb_abafb_row;
extern const KindRow albr_row;
extern const KindRow show_row;
extern const KindRow show_ack_row;
extern const KindRow lir_row;
extern const KindRow remb_row;

}  // namespace zunrtcp

#endif
