#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbrEntry.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpRtpfbTmmbrEntry)
