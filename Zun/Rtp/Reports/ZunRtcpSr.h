/*
 * Sender report, packet type 200: what a participant has sent, and what it received of others (RFC 3550,
 * section 6.4.1). The report blocks are drawn in ZunRtcpReportBlock.h.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                         SSRC of sender                        |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |              NTP timestamp, most significant word             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|             NTP timestamp, least significant word             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                         RTP timestamp                         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|                     sender's packet count                     |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 24|                      sender's octet count                     |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 28|        report blocks, 24 bytes each, as many as the count ... |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *   |                 profile-specific extension ...                |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPSR_H
#define ZUN_RTP_REPORTS_ZUNRTCPSR_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Reports/ZunRtcpReportBlock.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpSr ZunRtcpSr;
struct ZunRtcpSr {
  ZunRtcpSubpacketType type;    /* 200 */
  ZunRtpSourceId sender_source; /* who reports */
  ZunUint64 ntp_timestamp;      /* when the report was sent: seconds in the high half, fraction in the low */
  ZunUint32 rtp_timestamp;      /* the same moment in the units of the RTP timestamp */
  ZunUint32 sender_packet_cnt;  /* RTP packets sent since the start */
  ZunUint32 sender_octet_cnt;   /* payload bytes sent since the start */
  ZunVector_ZunRtcpReportBlock report_blocks; /* in wire order; owns the object's allocator */
  ZunString profile_specific_ext;             /* every byte after the report blocks */
};

/* All fields zero, without blocks and extension. */
ZunRtcpSr* ZunRtcpSrConstructDefault(ZunRtcpSr* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpSr* ZunRtcpSrConstructCopy(ZunRtcpSr* p, const ZunRtcpSr* o);
ZunRtcpSr* ZunRtcpSrAssign(ZunRtcpSr* p, const ZunRtcpSr* o);
void ZunRtcpSrDestruct(ZunRtcpSr* p);

/*
 * Copies the blocks. There is no limit of 31: a report with more is written with a count that spills into the padding
 * and version bits of the header.
 */
ZunBool ZunRtcpSrSetReportBlocks(ZunRtcpSr* p, const ZunVector_ZunRtcpReportBlock* blocks);

/* Copies the extension. False, `p` unchanged, when its size is no multiple of 4. */
ZunBool ZunRtcpSrSetProfileSpecificExt(ZunRtcpSr* p, const ZunString* ext);

/*
 * The row operations. Whatever follows the announced blocks is read as the extension, of any length. A copy with an
 * allocator that grants the blocks but refuses the extension is made with the allocator of `o` instead.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpSr)

/* The allocator of the report blocks. */
ZUN_INLINE ZunAllocator* ZunRtcpSrGetAllocator(ZunRtcpSr* p) { return p->report_blocks.allocator; }
/* The blocks and the extension themselves. */
ZUN_INLINE const ZunVector_ZunRtcpReportBlock* ZunRtcpSrGetReportBlocks(const ZunRtcpSr* p) {
  return &p->report_blocks;
}
ZUN_INLINE const ZunString* ZunRtcpSrGetProfileSpecificExt(const ZunRtcpSr* p) { return &p->profile_specific_ext; }

/* The plain fields. */
ZUN_INLINE ZunRtpSourceId ZunRtcpSrGetSource(const ZunRtcpSr* p) { return p->sender_source; }
ZUN_INLINE ZunBool ZunRtcpSrSetSource(ZunRtcpSr* p, ZunRtpSourceId source) {
  p->sender_source = source;
  return 1;
}
ZUN_INLINE ZunUint64 ZunRtcpSrGetNtpTimestamp(const ZunRtcpSr* p) { return p->ntp_timestamp; }
ZUN_INLINE ZunBool ZunRtcpSrSetNtpTimestamp(ZunRtcpSr* p, ZunUint64 timestamp) {
  p->ntp_timestamp = timestamp;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpSrGetRtpTimestamp(const ZunRtcpSr* p) { return p->rtp_timestamp; }
ZUN_INLINE ZunBool ZunRtcpSrSetRtpTimestamp(ZunRtcpSr* p, ZunUint32 timestamp) {
  p->rtp_timestamp = timestamp;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpSrGetSenderPacketCount(const ZunRtcpSr* p) { return p->sender_packet_cnt; }
ZUN_INLINE ZunBool ZunRtcpSrSetSenderPacketCount(ZunRtcpSr* p, ZunUint32 count) {
  p->sender_packet_cnt = count;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpSrGetSenderOctetCount(const ZunRtcpSr* p) { return p->sender_octet_cnt; }
ZUN_INLINE ZunBool ZunRtcpSrSetSenderOctetCount(ZunRtcpSr* p, ZunUint32 count) {
  p->sender_octet_cnt = count;
  return 1;
}

ZUN_EXTERN_C_END

#endif
