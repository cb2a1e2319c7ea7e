/* Which of two languages the wire speaks. An object does not know one: numbers and forms differ on the wire only. */
#ifndef ZUN_RTP_CORE_ZUNRTCPDIALECT_H
#define ZUN_RTP_CORE_ZUNRTCPDIALECT_H

#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/* docs/dialects.md tells what differs and which to choose. Any other number is taken for the house's. */
typedef ZunInt32 ZunRtcpDialect;
enum {
  ZUN_RTCP_DIALECT_HOUSE = 0,     /* what the peers of this system speak, and every function without a dialect */
  ZUN_RTCP_DIALECT_REGISTERED = 1 /* what the RFCs and drafts describe */
};

ZUN_EXTERN_C_END

#endif
