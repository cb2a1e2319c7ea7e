/*
 * Payload-specific feedback of a message type that the library does not model, carried through parse and write
 * unchanged (RFC 4585, section 6.1).
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  0 |V=2|P|   FMT   |    PT=206     |            length             |
 *    +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *  4 |                    SSRC of packet sender                      |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  8 |                    SSRC of media source                       |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |            feedback control information (FCI) ...             |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBUNKNOWN_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBUNKNOWN_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbUnknown ZunRtcpPsfbUnknown;
struct ZunRtcpPsfbUnknown {
  ZunRtcpSubpacketType type; /* 206 */
  ZunRtcpPsfbType fmt;       /* 0..31, none of the known ones; as on the wire after a parse */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* SSRC of the media source */
  ZunString data;            /* the FCI; owns the object's allocator */
};

/* Message type 0, both SSRCs 0, no data. */
ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructDefault(ZunRtcpPsfbUnknown* p, ZunAllocator* a);

/*
 * All fields; the data is copied into storage from `a`. NULL when the type is a modelled one (logged as an error in
 * category "rtcp"), the size of `data` is no multiple of 4 or the type lies outside 0 to 31 (checked in this order,
 * both logged as errors in category "rtcp-feedback").
 */
ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructFull(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType feedback_type,
                                                    ZunRtpSourceId sender, ZunRtpSourceId source, const ZunString* data,
                                                    ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownConstructCopy(ZunRtcpPsfbUnknown* p, const ZunRtcpPsfbUnknown* o);
ZunRtcpPsfbUnknown* ZunRtcpPsfbUnknownAssign(ZunRtcpPsfbUnknown* p, const ZunRtcpPsfbUnknown* o);
void ZunRtcpPsfbUnknownDestruct(ZunRtcpPsfbUnknown* p);

/*
 * False, `p` unchanged, when `feedback_type` is outside 0 to 31 (logged as an error in category "rtcp-feedback").
 * A known type is accepted; such an object may be handed only to the functions of ZunRtcpPsfbUnknown itself,
 * which write its raw bytes under that type: every other function would take it for an object of that type.
 */
ZunBool ZunRtcpPsfbUnknownSetFeedbackMessageType(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType feedback_type);

/*
 * Copies `data`. False, `p` unchanged, when its size is no multiple of 4 (logged as an error in category
 * "rtcp-feedback").
 */
ZunBool ZunRtcpPsfbUnknownSetData(ZunRtcpPsfbUnknown* p, const ZunString* data);

/* The row operations. Reading checks neither the message type nor the size of the FCI. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbUnknown)

/* The allocator of the data. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbUnknownGetAllocator(ZunRtcpPsfbUnknown* p) { return p->data.allocator; }
/* The data itself. */
ZUN_INLINE const ZunString* ZunRtcpPsfbUnknownGetData(const ZunRtcpPsfbUnknown* p) { return &p->data; }

ZUN_EXTERN_C_END

#endif
