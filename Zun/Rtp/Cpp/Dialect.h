// Which of the two wire forms is spoken.
#ifndef ZUN_RTP_CPP_DIALECT_H
#define ZUN_RTP_CPP_DIALECT_H

#include "Zun/Rtp/Core/ZunRtcpDialect.h"

namespace zun::rtcp {

enum class Dialect : ZunRtcpDialect {
  house = ZUN_RTCP_DIALECT_HOUSE,           // what the peers of this system speak
  registered = ZUN_RTCP_DIALECT_REGISTERED  // what the RFCs and drafts describe
};

}  // namespace zun::rtcp

#endif
