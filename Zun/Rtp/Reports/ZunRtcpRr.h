/*
 * Receiver report, packet type 201: what a participant that sends nothing received of others (RFC 3550,
 * section 6.4.2). The report blocks are drawn in ZunRtcpReportBlock.h.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                     SSRC of packet sender                     |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 8 |        report blocks, 24 bytes each, as many as the count ... |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *   |                 profile-specific extension ...                |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPRR_H
#define ZUN_RTP_REPORTS_ZUNRTCPRR_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Reports/ZunRtcpReportBlock.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRr ZunRtcpRr;
struct ZunRtcpRr {
  ZunRtcpSubpacketType type;                  /* 201 */
  ZunRtpSourceId sender_source;               /* who reports */
  ZunVector_ZunRtcpReportBlock report_blocks; /* in wire order; owns the object's allocator */
  ZunString profile_specific_ext;             /* every byte after the report blocks */
};

/* Sender 0, without blocks and extension. */
ZunRtcpRr* ZunRtcpRrConstructDefault(ZunRtcpRr* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRr* ZunRtcpRrConstructCopy(ZunRtcpRr* p, const ZunRtcpRr* o);
ZunRtcpRr* ZunRtcpRrAssign(ZunRtcpRr* p, const ZunRtcpRr* o);
void ZunRtcpRrDestruct(ZunRtcpRr* p);

/*
 * Copies the blocks. There is no limit of 31: a report with more is written with a count that spills into the padding
 * and version bits of the header.
 */
ZunBool ZunRtcpRrSetReportBlocks(ZunRtcpRr* p, const ZunVector_ZunRtcpReportBlock* blocks);

/* Copies the extension. False, `p` unchanged, when its size is no multiple of 4. */
ZunBool ZunRtcpRrSetProfileSpecificExt(ZunRtcpRr* p, const ZunString* ext);

/*
 * The row operations. Whatever follows the announced blocks is read as the extension, of any length. A copy with an
 * allocator that grants the blocks but refuses the extension is made with the allocator of `o` instead.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRr)

/* The allocator of the report blocks. */
ZUN_INLINE ZunAllocator* ZunRtcpRrGetAllocator(ZunRtcpRr* p) { return p->report_blocks.allocator; }
/* The blocks and the extension themselves. */
ZUN_INLINE const ZunVector_ZunRtcpReportBlock* ZunRtcpRrGetReportBlocks(const ZunRtcpRr* p) {
  return &p->report_blocks;
}
ZUN_INLINE const ZunString* ZunRtcpRrGetProfileSpecificExt(const ZunRtcpRr* p) { return &p->profile_specific_ext; }

/* Who reports. */
ZUN_INLINE ZunRtpSourceId ZunRtcpRrGetSource(const ZunRtcpRr* p) { return p->sender_source; }
ZUN_INLINE ZunBool ZunRtcpRrSetSource(ZunRtcpRr* p, ZunRtpSourceId source) {
  p->sender_source = source;
  return 1;
}

ZUN_EXTERN_C_END

#endif
