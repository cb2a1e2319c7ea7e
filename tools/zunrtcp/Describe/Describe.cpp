#include "tools/zunrtcp/Describe/Describe.h"

namespace zunrtcp {

void DescribeSubpacket(const ZunRtcpSubpacket& subpacket, Description* description) {
  switch (ZunRtcpSubpacketGetType(&subpacket)) {
    case ZUN_RTCPSUBPACKET_TYPE_SR:
      return DescribeSr(*ZunRtcpSubpacketGetSr(&subpacket), description);
    case ZUN_RTCPSUBPACKET_TYPE_RR:
      return DescribeRr(*ZunRtcpSubpacketGetRr(&subpacket), description);
    case ZUN_RTCPSUBPACKET_TYPE_SDES:
      return DescribeSdes(*ZunRtcpSubpacketGetSdes(&subpacket), description);
    case ZUN_RTCPSUBPACKET_TYPE_BYE:
      return DescribeBye(*ZunRtcpSubpacketGetBye(&subpacket), description);
    case ZUN_RTCPSUBPACKET_TYPE_APP:
      return DescribeApp(*ZunRtcpSubpacketGetApp(&subpacket), description);
    case ZUN_RTCPSUBPACKET_TYPE_RTPFB:
      return DescribeTransportFeedback(*ZunRtcpSubpacketGetRtpfb(&subpacket), description);
    case ZUN_RTCPSUBPACKET_TYPE_PSFB:
      return DescribePayloadFeedback(*ZunRtcpSubpacketGetPsfb(&subpacket), description);
    default:
      return description->AddBytes("data", "data", BytesOf(*ZunRtcpUnknownGetData(&subpacket.unk)));
  }
}

}  // namespace zunrtcp
