// Describes subpackets of every kind, one file for each room of the library.
#ifndef TOOLS_ZUNRTCP_DESCRIBE_DESCRIBE_H
#define TOOLS_ZUNRTCP_DESCRIBE_DESCRIBE_H

#include <span>
#include <string_view>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tools/zunrtcp/Describe/Description.h"

namespace zunrtcp {

// Describes a subpacket that the library has parsed.
void DescribeSubpacket(const ZunRtcpSubpacket& subpacket, Description* description);

// Reports: SR, RR, SDES, BYE, APP.
void DescribeSr(const ZunRtcpSr& sr, Description* description);
void DescribeRr(const ZunRtcpRr& rr, Description* description);
void DescribeSdes(const ZunRtcpSdes& sdes, Description* description);
void DescribeBye(const ZunRtcpBye& bye, Description* description);
void DescribeApp(const ZunRtcpApp& app, Description* description);

// The feedback rooms, by format.
void DescribeTransportFeedback(const ZunRtcpRtpfb& rtpfb, Description* description);
void DescribePayloadFeedback(const ZunRtcpPsfb& psfb, Description* description);
void DescribeApplicationFeedback(const ZunRtcpPsfbAfb& afb, Description* description);

// The elements of one of the library's vectors.
template <typename Vector>
auto Elements(const Vector& vector) {
  return std::span(vector.begin, vector.end);
}

// The bytes of one of its strings.
inline std::string_view BytesOf(const ZunString& string) { return {ZunStringCStr(&string), string.size}; }

}  // namespace zunrtcp

#endif
