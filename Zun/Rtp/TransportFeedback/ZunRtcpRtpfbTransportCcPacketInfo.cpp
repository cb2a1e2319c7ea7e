#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTransportCcPacketInfo)
ZUN_VECTOR_DEFINE(ZunRtcpRtpfbTransportCcPacketInfo)
ZUN_PLAIN_DEFINE(ZunRtcpRtpfbTransportCcPacketInfo)
