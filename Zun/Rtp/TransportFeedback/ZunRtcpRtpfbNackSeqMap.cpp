#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbNackSeqMap.h"

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbNackSeqMap)
ZUN_VECTOR_DEFINE(ZunRtcpRtpfbNackSeqMap)
ZUN_PLAIN_DEFINE(ZunRtcpRtpfbNackSeqMap)
