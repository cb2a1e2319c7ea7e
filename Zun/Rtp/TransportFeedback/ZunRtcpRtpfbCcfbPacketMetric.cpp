#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfbPacketMetric.h"

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbCcfbPacketMetric)
ZUN_VECTOR_DEFINE(ZunRtcpRtpfbCcfbPacketMetric)
ZUN_PLAIN_DEFINE(ZunRtcpRtpfbCcfbPacketMetric)
