#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpRtpfbTransportCcPacketInfo)
