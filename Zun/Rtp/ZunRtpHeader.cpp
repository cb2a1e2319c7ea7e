#include "Zun/Rtp/ZunRtpHeader.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_PLAIN(ZunRtpSourceId)
ZUN_VECTOR_DEFINE(ZunRtpSourceId)
