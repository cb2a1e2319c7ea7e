#include "tools/zunrtcp/Kinds/Reports/ReportBlocks.h"
#include "tools/zunrtcp/Kinds/Reports/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeSr(View<Sr> sr, Description* description) {
  description->AddSource("sender", "sender", sr.sender_source());
  description->AddValue("ntpSeconds", sr.ntp_timestamp() >> 32);
  description->AddValue("ntpFraction", sr.ntp_timestamp() & 0xFFFFFFFF);
  description->AddWords(NtpWords(sr.ntp_timestamp()));
  description->AddNumber("rtpTimestamp", "RTP time", sr.rtp_timestamp());
  description->Add("packets", sr.sender_packet_cnt(), Counted(sr.sender_packet_cnt(), "packet"));
  description->Add("octets", sr.sender_octet_cnt(), Counted(sr.sender_octet_cnt(), "octet"));
  DescribeReportBlocks(sr.report_blocks(), sr.profile_specific_ext(), description);
}

}  // namespace

constinit const KindRow sr_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_SR>, DescribeSr>({
    .name = "SR",
    .counted = "report block",
});

}  // namespace zunrtcp
