// The rows of the reports and their companions (RFC 3550, section 6).
#ifndef TOOLS_ZUNRTCP_KINDS_REPORTS_ROWS_H
#define TOOLS_ZUNRTCP_KINDS_REPORTS_ROWS_H

#include "tools/zunrtcp/Kinds/RowOf.h"

namespace zunrtcp {

extern const KindRow sr_row;
extern const KindRow rr_row;
extern const KindRow sdes_row;
extern const KindRow bye_row;
extern const KindRow app_row;

}  // namespace zunrtcp

#endif
