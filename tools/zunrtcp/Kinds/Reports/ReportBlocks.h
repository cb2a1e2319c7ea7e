// What SR and RR end with: report blocks and an extension.
#ifndef TOOLS_ZUNRTCP_KINDS_REPORTS_REPORTBLOCKS_H
#define TOOLS_ZUNRTCP_KINDS_REPORTS_REPORTBLOCKS_H

#include "Zun/Rtp/Reports/ZunRtcpReportBlock.h"
#include "tools/zunrtcp/Kinds/Description.h"

namespace zunrtcp {

void DescribeReportBlocks(const ZunVector_ZunRtcpReportBlock& blocks, const ZunString& extension,
                          Description* description);

}  // namespace zunrtcp

#endif
