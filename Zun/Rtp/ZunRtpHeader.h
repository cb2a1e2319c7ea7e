/* What RTP and RTCP share. */
#ifndef ZUN_RTP_ZUNRTPHEADER_H
#define ZUN_RTP_ZUNRTPHEADER_H

#include "Zun/Utils/ZunVector.h"

/* An SSRC or CSRC identifier (RFC 3550, section 3). */
typedef ZunUint32 ZunRtpSourceId;

ZUN_VECTOR_DECLARE(ZunRtpSourceId)

#endif
