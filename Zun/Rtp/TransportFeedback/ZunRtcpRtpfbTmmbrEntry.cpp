#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbrEntry.h"

#include "Zun/Utils/Owned.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTmmbrEntry)
ZUN_VECTOR_DEFINE(ZunRtcpRtpfbTmmbrEntry)
ZUN_PLAIN_DEFINE(ZunRtcpRtpfbTmmbrEntry)
