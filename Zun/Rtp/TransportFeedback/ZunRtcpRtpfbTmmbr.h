/*
 * Temporary maximum media bit rate request, in a form of this system's own: FMT 2 and plain bit rates, where RFC 5104,
 * section 4.2.1, has FMT 3 and packed ones. The two do not understand each other.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                     0 (SSRC of media source)                  |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|                              SSRC                             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                        maximum bit rate                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|                          more entries ...                     |
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTMMBR_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTMMBR_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbrEntry.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbTmmbr ZunRtcpRtpfbTmmbr;
struct ZunRtcpRtpfbTmmbr {
  ZunRtcpSubpacketType type; /* 205 */
  ZunRtcpRtpfbType fmt;      /* 2 */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* as it was received, where peers send 0; always written as 0 */
  ZunVector_ZunRtcpRtpfbTmmbrEntry
      fci; /* the requests, in wire order, changed by its own operations; has p's allocator */
};

/* A TMMBR without entries, both SSRCs 0. */
ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrConstructDefault(ZunRtcpRtpfbTmmbr* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrConstructCopy(ZunRtcpRtpfbTmmbr* p, const ZunRtcpRtpfbTmmbr* o);
ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrAssign(ZunRtcpRtpfbTmmbr* p, const ZunRtcpRtpfbTmmbr* o);
void ZunRtcpRtpfbTmmbrDestruct(ZunRtcpRtpfbTmmbr* p);

/*
 * The row operations. A TMMBR without entries can be read but not written: its header and SSRCs are appended before
 * that fails. A media source other than 0 is kept, with a warning in category "rtcp". A failed read keeps the entries
 * in front of it; the old ones stay when the body does not even hold both SSRCs.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbTmmbr)

/* The allocator of the entries. */
ZUN_INLINE ZunAllocator* ZunRtcpRtpfbTmmbrGetAllocator(ZunRtcpRtpfbTmmbr* p) { return p->fci.allocator; }

ZUN_EXTERN_C_END

#endif
