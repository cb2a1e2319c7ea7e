/*
 * Transport-layer feedback of a message type that the library does not model (RFC 4585, section 6.1), carried
 * through parse and write unchanged.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|                  data, padding octets included ...            |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBUNKNOWN_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBUNKNOWN_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbUnknown ZunRtcpRtpfbUnknown;
struct ZunRtcpRtpfbUnknown {
  ZunRtcpSubpacketType type; /* 205 */
  ZunRtcpRtpfbType fmt;      /* as on the wire, none of the modelled types; 0 after default construction */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* SSRC of the media source */
  ZunString data;            /* every byte after the SSRCs; a multiple of 4; owns the object's allocator */
};

/* Message type 0, both SSRCs 0, no data. */
ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructDefault(ZunRtcpRtpfbUnknown* p, ZunAllocator* a);

/*
 * All fields; the data is copied into storage from `a`. NULL when the type is a modelled one, the size of
 * `data` is no multiple of 4 or the type lies outside 0 to 31 (checked in this order, each logged as
 * an error in category "rtcp").
 */
ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructFull(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType feedback_type,
                                                      ZunRtpSourceId sender, ZunRtpSourceId source,
                                                      const ZunString* data, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownConstructCopy(ZunRtcpRtpfbUnknown* p, const ZunRtcpRtpfbUnknown* o);
ZunRtcpRtpfbUnknown* ZunRtcpRtpfbUnknownAssign(ZunRtcpRtpfbUnknown* p, const ZunRtcpRtpfbUnknown* o);
void ZunRtcpRtpfbUnknownDestruct(ZunRtcpRtpfbUnknown* p);

/*
 * Stores the message type. False, `p` unchanged, when it lies outside 0 to 31 (logged as an error). A modelled type
 * is stored too: such an object writes its raw bytes under that type, and may be handed only to the functions of
 * this header, as those of ZunRtcpRtpfb and ZunRtcpSubpacket would take it for an object of the modelled kind.
 */
ZunBool ZunRtcpRtpfbUnknownSetFeedbackMessageType(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType feedback_type);

/* Copies `data`. False, `p` unchanged, when its size is no multiple of 4 (logged as an error). */
ZunBool ZunRtcpRtpfbUnknownSetData(ZunRtcpRtpfbUnknown* p, const ZunString* data);

/* The row operations. Reading checks neither the message type nor the length of the data; writing adds no padding. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbUnknown)

/* The allocator of the data. */
ZUN_INLINE ZunAllocator* ZunRtcpRtpfbUnknownGetAllocator(ZunRtcpRtpfbUnknown* p) { return p->data.allocator; }
/* The data itself. */
ZUN_INLINE const ZunString* ZunRtcpRtpfbUnknownGetData(const ZunRtcpRtpfbUnknown* p) { return &p->data; }

ZUN_EXTERN_C_END

#endif
