#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbNackSeqMap.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpRtpfbNackSeqMap)
