#include "Zun/Rtp/ZunRtpHeader.h"

#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtpSourceId)
