#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfbPacketMetric.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpRtpfbCcfbPacketMetric)
