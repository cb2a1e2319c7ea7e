/*
 * Goodbye, packet type 203: sources that leave, and why (RFC 3550, section 6.6).
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |           SSRC/CSRC, as many as the count says ...            |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *   |     length    |   reason, `length` bytes, and zeros up to the |
 *   |   end of a word ...  (all of it only when there is a reason)  |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPBYE_H
#define ZUN_RTP_REPORTS_ZUNRTCPBYE_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpBye ZunRtcpBye;
struct ZunRtcpBye {
  ZunRtcpSubpacketType type;        /* 203 */
  ZunVector_ZunRtpSourceId sources; /* who leaves, in wire order; 1 to 31 can be written; owns the object's allocator */
  ZunString reason;                 /* why, at most 255 bytes; empty when nothing is said */
};

/* Without sources and reason: such a BYE cannot be written. */
ZunRtcpBye* ZunRtcpByeConstructDefault(ZunRtcpBye* p, ZunAllocator* a);

/*
 * All fields; both are copied into storage from `a`. NULL when there are no sources or more than 31, or
 * when the reason is longer than 255 bytes (checked in this order, each logged as an error in category
 * "rtcp").
 */
ZunRtcpBye* ZunRtcpByeConstructFull(ZunRtcpBye* p, const ZunVector_ZunRtpSourceId* sources, const ZunString* reason,
                                    ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpBye* ZunRtcpByeConstructCopy(ZunRtcpBye* p, const ZunRtcpBye* o);
ZunRtcpBye* ZunRtcpByeAssign(ZunRtcpBye* p, const ZunRtcpBye* o);
void ZunRtcpByeDestruct(ZunRtcpBye* p);

/* Copies the sources. False, `p` unchanged, when there are none or more than 31 (logged as an error). */
ZunBool ZunRtcpByeSetSources(ZunRtcpBye* p, const ZunVector_ZunRtpSourceId* sources);

/* Copies the reason. False, `p` unchanged, when it is longer than 255 bytes (logged as an error). */
ZunBool ZunRtcpByeSetReason(ZunRtcpBye* p, const ZunString* reason);

/*
 * The row operations. Reading refuses a BYE without sources, which the RFC calls useless, and one whose reason with
 * its zeros does not end exactly where the body does; what the zeros are is not looked at. Without sources or with more
 * than 31 the length is 0 and nothing is written, each with an error in category "rtcp".
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpBye)

/* The allocator of the sources. */
ZUN_INLINE ZunAllocator* ZunRtcpByeGetAllocator(ZunRtcpBye* p) { return p->sources.allocator; }
/* The sources and the reason themselves. */
ZUN_INLINE const ZunVector_ZunRtpSourceId* ZunRtcpByeGetSources(const ZunRtcpBye* p) { return &p->sources; }
ZUN_INLINE const ZunString* ZunRtcpByeGetReason(const ZunRtcpBye* p) { return &p->reason; }

ZUN_EXTERN_C_END

#endif
