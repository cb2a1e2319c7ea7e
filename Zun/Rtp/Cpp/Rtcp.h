// The whole C++ face. In reading order:
//   Packet.h               a datagram decoded, looked through, put together, encoded
//   Subpacket.h            a subpacket of any kind: get_if, visit
//   Reports.h  TransportFeedback.h  PayloadFeedback.h  ApplicationFeedback.h    the kinds
//   Xr.h  Tmmb.h           extended reports; TMMBR and TMMBN as registered
//   List.h  Object.h       lists as ranges; what every object can do: owning, View and Ref
//   Result.h               a value or an error
//   Memory.h  Time.h  Log.h  Print.h    allocators, std::chrono, the log, words
// docs/cpp.md shows them at work.
#ifndef ZUN_RTP_CPP_RTCP_H
#define ZUN_RTP_CPP_RTCP_H

#include "Zun/Rtp/Cpp/Log.h"
#include "Zun/Rtp/Cpp/Memory.h"
#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Cpp/Print.h"
#include "Zun/Rtp/Cpp/Result.h"
#include "Zun/Rtp/Cpp/Subpacket.h"
#include "Zun/Rtp/Cpp/Time.h"
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#include "Zun/Rtp/Cpp/Tmmb.h"
#endif
#if ZUN_RTCP_HAS_EXTENDED_REPORTS
#include "Zun/Rtp/Cpp/Xr.h"
#endif

#endif
