// What SR and RR end with: report blocks and an extension.
#ifndef TOOLS_ZUNRTCP_KINDS_REPORTS_REPORTBLOCKS_H
#define TOOLS_ZUNRTCP_KINDS_REPORTS_REPORTBLOCKS_H

#include <cstddef>
#include <span>

#include "Zun/Rtp/Cpp/Reports.h"
#include "tools/zunrtcp/Kinds/Description.h"

namespace zunrtcp {

void DescribeReportBlocks(std::span<const zun::rtcp::ReportBlock> blocks, std::span<const std::byte> extension,
                          Description* description);

}  // namespace zunrtcp

#endif
