/*
 * Picture loss indication, FMT 1: the receiver lost an undefined amount of coded video (RFC 4585, section 6.3.1).
 * The message has no FCI of its own; what follows the common feedback header is kept as an extension.
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |            profile-specific extension, if any ...             |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBPLI_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBPLI_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbPli ZunRtcpPsfbPli;
struct ZunRtcpPsfbPli {
  ZunRtcpSubpacketType type;      /* 206 */
  ZunRtcpPsfbType fmt;            /* 1 */
  ZunRtpSourceId sender;          /* SSRC of the packet sender */
  ZunRtpSourceId source;          /* SSRC of the media source whose pictures were lost */
  ZunString profile_specific_ext; /* raw bytes after the header; owns the object's allocator */
};

/* Both SSRCs 0, no extension. */
ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructDefault(ZunRtcpPsfbPli* p, ZunAllocator* a);

/* Both SSRCs, no extension. */
ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructFull(ZunRtcpPsfbPli* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                            ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbPli* ZunRtcpPsfbPliConstructCopy(ZunRtcpPsfbPli* p, const ZunRtcpPsfbPli* o);
ZunRtcpPsfbPli* ZunRtcpPsfbPliAssign(ZunRtcpPsfbPli* p, const ZunRtcpPsfbPli* o);
void ZunRtcpPsfbPliDestruct(ZunRtcpPsfbPli* p);

/* Copies `ext`. False, `p` unchanged, when its size is no multiple of 4. */
ZunBool ZunRtcpPsfbPliSetProfileSpecificExt(ZunRtcpPsfbPli* p, const ZunString* ext);

/* The row operations. Reading does not check the size of the extension. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbPli)

/* The allocator of the extension. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbPliGetAllocator(ZunRtcpPsfbPli* p) { return p->profile_specific_ext.allocator; }
/* The extension itself. */
ZUN_INLINE const ZunString* ZunRtcpPsfbPliGetProfileSpecificExt(const ZunRtcpPsfbPli* p) {
  return &p->profile_specific_ext;
}

ZUN_EXTERN_C_END

#endif
