/*
 * Application-layer feedback that the library does not recognise, carried through parse and write unchanged
 * (RFC 4585, section 6.4). A house message of an unknown type keeps its "Nr" and number in the data.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|                  data, padding octets included ...            |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBUNKNOWN_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBUNKNOWN_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbUnknown ZunRtcpPsfbAfbUnknown;
struct ZunRtcpPsfbAfbUnknown {
  ZunRtcpSubpacketType type;  /* 206 */
  ZunRtcpPsfbType fmt;        /* 15 */
  ZunRtpSourceId sender;      /* SSRC of the packet sender */
  ZunRtpSourceId source;      /* SSRC of the media source */
  ZunRtcpPsfbAfbType afbType; /* 0, whatever number a house message carries */
  ZunString data;             /* every byte after the SSRCs; owns the object's allocator */
};

/* Both SSRCs 0, no data. */
ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructDefault(ZunRtcpPsfbAfbUnknown* p, ZunAllocator* a);

/*
 * All fields. The copy of the data takes the allocator of `data`; `a` is not used. NULL when the size of `data` is no
 * multiple of 4.
 */
ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructFull(ZunRtcpPsfbAfbUnknown* p, ZunRtpSourceId sender,
                                                          ZunRtpSourceId source, const ZunString* data,
                                                          ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownConstructCopy(ZunRtcpPsfbAfbUnknown* p, const ZunRtcpPsfbAfbUnknown* o);
ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbUnknownAssign(ZunRtcpPsfbAfbUnknown* p, const ZunRtcpPsfbAfbUnknown* o);
void ZunRtcpPsfbAfbUnknownDestruct(ZunRtcpPsfbAfbUnknown* p);

/* Copies `data`. False, `p` unchanged, when its size is no multiple of 4. */
ZunBool ZunRtcpPsfbAfbUnknownSetData(ZunRtcpPsfbAfbUnknown* p, const ZunString* data);

/* The row operations. Reading does not check the size of the data. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbUnknown)

/* The allocator of the data. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbAfbUnknownGetAllocator(ZunRtcpPsfbAfbUnknown* p) { return p->data.allocator; }
/* The data itself. */
ZUN_INLINE const ZunString* ZunRtcpPsfbAfbUnknownGetData(const ZunRtcpPsfbAfbUnknown* p) { return &p->data; }

ZUN_EXTERN_C_END

#endif
