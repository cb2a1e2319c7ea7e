/*
 * Application-defined packet, type 204: whatever an application named by four characters likes to say (RFC 3550,
 * section 6.7).
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                           SSRC/CSRC                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                          name (ASCII)                         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|        data, and zeros up to the end of a word ...            |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPAPP_H
#define ZUN_RTP_REPORTS_ZUNRTCPAPP_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* The header's subtype is not kept: it is ignored when read and written as 0. */
typedef struct ZunRtcpApp ZunRtcpApp;
struct ZunRtcpApp {
  ZunRtcpSubpacketType type; /* 204 */
  ZunRtpSourceId source;     /* who sends it */
  ZunString name;            /* 4 bytes; empty after default construction; owns the object's allocator */
  ZunString data;            /* of any length; zeros make it whole words on the wire */
};

/* Source 0, name and data empty. */
ZunRtcpApp* ZunRtcpAppConstructDefault(ZunRtcpApp* p, ZunAllocator* a);

/*
 * Always returns NULL and leaves the type alone: construct an APP with ZunRtcpAppConstructDefault and the setters.
 * `source` is stored; when the name has 4 bytes (anything else is logged as an error in category "rtcp") and no
 * allocation is refused, name and data hold copies in storage from `a`, otherwise they are empty. Either way
 * ZunRtcpAppDestruct releases what `p` holds.
 */
ZunRtcpApp* ZunRtcpAppConstructFull(ZunRtcpApp* p, ZunRtpSourceId source, const ZunString* name, const ZunString* data,
                                    ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpApp* ZunRtcpAppConstructCopy(ZunRtcpApp* p, const ZunRtcpApp* o);
ZunRtcpApp* ZunRtcpAppAssign(ZunRtcpApp* p, const ZunRtcpApp* o);
void ZunRtcpAppDestruct(ZunRtcpApp* p);

/* Copies the name. False, `p` unchanged, when its size is not 4 (not logged). */
ZunBool ZunRtcpAppSetName(ZunRtcpApp* p, const ZunString* name);

/* Copies the data, of any length. */
ZunBool ZunRtcpAppSetData(ZunRtcpApp* p, const ZunString* data);

/*
 * The row operations. Reading takes the zeros after the data as data; a body that is no multiple of 4 is refused with
 * an error in category "rtcp". A name or data that no storage is granted for stays as it was, and reading succeeds all
 * the same; likewise zeros that the output has no room for are left out.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpApp)

/* The allocator of the name. */
ZUN_INLINE ZunAllocator* ZunRtcpAppGetAllocator(ZunRtcpApp* p) { return p->name.allocator; }
/* Name and data themselves. */
ZUN_INLINE const ZunString* ZunRtcpAppGetName(const ZunRtcpApp* p) { return &p->name; }
ZUN_INLINE const ZunString* ZunRtcpAppGetData(const ZunRtcpApp* p) { return &p->data; }
/* Who sends it. */
ZUN_INLINE ZunRtpSourceId ZunRtcpAppGetSource(const ZunRtcpApp* p) { return p->source; }
ZUN_INLINE ZunBool ZunRtcpAppSetSource(ZunRtcpApp* p, ZunRtpSourceId source) {
  p->source = source;
  return 1;
}

ZUN_EXTERN_C_END

#endif
