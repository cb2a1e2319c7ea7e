// The registered feedback message types that mean something else in the house's dialect (docs/dialects.md).
#ifndef ZUN_RTP_CORE_REGISTEREDNUMBERS_H
#define ZUN_RTP_CORE_REGISTEREDNUMBERS_H

#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"

namespace zun {

inline constexpr ZunRtcpRtpfbType kRegisteredTmmbr = 3;  // RFC 5104
inline constexpr ZunRtcpRtpfbType kRegisteredTmmbn = 4;  // RFC 5104
inline constexpr ZunRtcpRtpfbType kRegisteredCcfb = 11;  // RFC 8888

}  // namespace zun

#endif
