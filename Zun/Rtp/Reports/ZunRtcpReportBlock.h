/*
 * A reception report block: what one participant received of one source (RFC 3550, section 6.4.1). Sender and
 * receiver reports carry a list of them.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |                        SSRC of source                         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 | fraction lost |       cumulative number of packets lost       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |           extended highest sequence number received           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|                      interarrival jitter                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                         last SR (LSR)                         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|                   delay since last SR (DLSR)                  |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPREPORTBLOCK_H
#define ZUN_RTP_REPORTS_ZUNRTCPREPORTBLOCK_H

#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"
#include "Zun/Utils/ZunVector.h"

ZUN_EXTERN_C_BEGIN

/* A plain value: it owns nothing. */
typedef struct ZunRtcpReportBlock ZunRtcpReportBlock;
struct ZunRtcpReportBlock {
  ZunUint32 ssrc;                 /* the source that the block reports on */
  ZunUint8 fraction_lost;         /* packets lost since the last report, in 256ths */
  ZunUint32 cum_num_packet_lost;  /* packets lost in all: 24 bits of two's complement, zeros above them */
  ZunUint32 highest_seq_num_rcvd; /* sequence number cycles in the high half, highest number in the low one */
  ZunUint32 inter_arrival_jitter; /* in units of the RTP timestamp */
  ZunUint32 last_sr;              /* middle 32 bits of the NTP timestamp of the last SR; 0 before the first */
  ZunUint32 delay_last_sr;        /* since that SR arrived, in units of 1/65536 s; 0 before the first */
};

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpReportBlock* ZunRtcpReportBlockConstructCopy(ZunRtcpReportBlock* p, const ZunRtcpReportBlock* o);
ZunRtcpReportBlock* ZunRtcpReportBlockAssign(ZunRtcpReportBlock* p, const ZunRtcpReportBlock* o);
void ZunRtcpReportBlockDestruct(ZunRtcpReportBlock* p);

/*
 * The cumulative number of packets lost, negative when duplicates outnumber losses. It saturates at the limits of its
 * 24 bits, -8388608 and 8388607.
 */
ZunBool ZunRtcpReportBlockSetPacketsLost(ZunRtcpReportBlock* p, ZunInt32 lost);

/* The cumulative number of packets lost, -8388608 to 8388607. */
ZUN_INLINE ZunInt32 ZunRtcpReportBlockGetPacketsLost(const ZunRtcpReportBlock* p) {
  return (ZunInt32)(p->cum_num_packet_lost < 0x800000U ? p->cum_num_packet_lost : p->cum_num_packet_lost | 0xFF000000U);
}

/* The other fields as they stand. */
ZUN_INLINE ZunRtpSourceId ZunRtcpReportBlockGetSource(const ZunRtcpReportBlock* p) { return p->ssrc; }
ZUN_INLINE ZunBool ZunRtcpReportBlockSetSource(ZunRtcpReportBlock* p, ZunRtpSourceId source) {
  p->ssrc = source;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpReportBlockGetLossFraction(const ZunRtcpReportBlock* p) { return p->fraction_lost; }
ZUN_INLINE ZunBool ZunRtcpReportBlockSetLossFraction(ZunRtcpReportBlock* p, ZunUint8 fraction) {
  p->fraction_lost = fraction;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpReportBlockGetExtendedSequenceNumber(const ZunRtcpReportBlock* p) {
  return p->highest_seq_num_rcvd;
}
ZUN_INLINE ZunBool ZunRtcpReportBlockSetExtendedSequenceNumber(ZunRtcpReportBlock* p, ZunUint32 number) {
  p->highest_seq_num_rcvd = number;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpReportBlockGetJitter(const ZunRtcpReportBlock* p) { return p->inter_arrival_jitter; }
ZUN_INLINE ZunBool ZunRtcpReportBlockSetJitter(ZunRtcpReportBlock* p, ZunUint32 jitter) {
  p->inter_arrival_jitter = jitter;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpReportBlockGetLastSrTime(const ZunRtcpReportBlock* p) { return p->last_sr; }
ZUN_INLINE ZunBool ZunRtcpReportBlockSetLastSrTime(ZunRtcpReportBlock* p, ZunUint32 time) {
  p->last_sr = time;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpReportBlockGetDelaySinceLastSr(const ZunRtcpReportBlock* p) { return p->delay_last_sr; }
ZUN_INLINE ZunBool ZunRtcpReportBlockSetDelaySinceLastSr(ZunRtcpReportBlock* p, ZunUint32 delay) {
  p->delay_last_sr = delay;
  return 1;
}

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpReportBlock)

ZUN_EXTERN_C_BEGIN

/* Appends the wire form of every block, 24 bytes each. False when `b` cannot grow; it keeps what was appended. */
ZunBool ZunRtcpWriteReportBlockToBuffer(const ZunVector_ZunRtcpReportBlock* rblocks, ZunString* b);

/*
 * Makes `rblocks` the `count` blocks at offset `*ppos` of `b`, all before offset `end`, and advances `*ppos` past
 * them. False when one is cut off or `rblocks` cannot grow: it then holds the blocks before that one, and `*ppos`
 * stands after the last field that was read.
 */
ZunBool ZunRtcpAssignReportBlockFromBuffer(const ZunString* b, ZunSizeT* ppos, ZunSizeT end, ZunUint8 count,
                                           ZunVector_ZunRtcpReportBlock* rblocks);

ZUN_EXTERN_C_END

#endif
