/*
 * Transport-wide congestion control feedback (draft-holmer-rmcat-transport-wide-cc-extensions-01, section 3.1): for a
 * run of transport-wide sequence numbers, which packets arrived, and when.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|      base sequence number     |      packet status count      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|             reference time (signed)           |fb packet count|
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|         packet chunk          |         packet chunk ...      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |  small delta  |         large delta           | zeros to word |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *
 * The receiver of media adds the packets one by one, asks how many more fit, and writes; the sender of media reads
 * the statuses and deltas back.
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTRANSPORTCC_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTRANSPORTCC_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* The ZunTime that says that no time is known. */
#define ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME ((ZunTime)INT64_MAX)

typedef struct ZunRtcpRtpfbTransportCc ZunRtcpRtpfbTransportCc;
struct ZunRtcpRtpfbTransportCc {
  ZunRtcpSubpacketType type; /* 205 */
  ZunRtcpRtpfbType fmt;      /* 15 */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* SSRC of the media source */
  ZunUint16 baseSeq;         /* transport-wide sequence number of the first packet info */
  ZunInt32 refTime;          /* what the first delta counts from, in 64 ms; 24 bits on the wire, signed when read */
  ZunUint8 packetCount;      /* counts the feedback messages; set by the caller */
  ZunVector_ZunRtcpRtpfbTransportCcPacketInfo packetInfo; /* number i is of baseSeq + i; owns the allocator */
  ZunTime latestTime; /* what the next delta counts from, in nanoseconds; no time before the first timed packet */
};

/* No packets, base and reference time 0, no latest time. */
ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructFull(ZunRtcpRtpfbTransportCc* p, ZunRtpSourceId sender,
                                                              ZunRtpSourceId source, ZunUint8 packetCount,
                                                              ZunAllocator* a);

/* The same with both SSRCs and the feedback packet count 0. */
ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructDefault(ZunRtcpRtpfbTransportCc* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructCopy(ZunRtcpRtpfbTransportCc* p,
                                                              const ZunRtcpRtpfbTransportCc* o);
ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcAssign(ZunRtcpRtpfbTransportCc* p, const ZunRtcpRtpfbTransportCc* o);
void ZunRtcpRtpfbTransportCcDestruct(ZunRtcpRtpfbTransportCc* p);

/*
 * Adds the next packet. Every sequence number must be added in order, the lost ones with `received` 0: `seq` becomes
 * the base of the first and is ignored for all others. `ts` is the arrival in nanoseconds of any clock, or
 * ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME; it is ignored for a lost packet, and an arrival without a time is reported with
 * a delta of 0. The first time sets the reference time, the 64 ms below it (above, when negative).
 *
 * Each delta counts from the exact time of the packet timed before, not from what the deltas so far add up to.
 *
 * False, and nothing added, when `ts` is more than 8,192,124,000 ns before or 8,191,874,000 ns after that time, which
 * is not a delta of 16 bits (a first packet's base and reference time stay); false, `p` as it was, when an allocation
 * is refused: the same packet can be tried again.
 */
ZunBool ZunRtcpRtpfbTransportCcAddPacket(ZunRtcpRtpfbTransportCc* p, ZunBool received, ZunUint16 seq, ZunTime ts);

/*
 * How many more packets fit into `mtu` bytes: 7 for every 16 bytes that are left, a chunk and 7 large deltas. An
 * estimate, as the end is rounded up to whole words. 0 when `p` is that large already.
 */
ZunSizeT ZunRtcpRtpfbTransportCcGetEstimatedPacketsRemaining(const ZunRtcpRtpfbTransportCc* p, ZunSizeT mtu);

/*
 * The number of bytes of the wire form, header included; ZunRtcpRtpfbTransportCcGetPacketLength for an object that is
 * not a member of a subpacket. It counts the chunks, so it takes a pass over all packets.
 */
ZunSizeT ZunRtcpRtpfbTransportCcGetPacketLength_(const ZunRtcpRtpfbTransportCc* p);

/*
 * The row operations.
 *
 * Writing does not limit the number of packets: beyond 65535 all are written, and their count wraps. It aligns the
 * end to 4 bytes of the whole string. Deltas and zeros that cannot be appended are left out without a false result.
 * A peer that reads every status vector as full, as this library does, misreads the packets after one chunk form: a
 * vector of one-bit statuses that ends after 7 to 13 packets because a packet of large or unknown delta follows.
 *
 * Reading keeps the statuses and reads no delta, with a true result, when the deltas announced do not fit before the
 * end. A large delta is formed as ZunInt16FromBuffer forms it. What follows the deltas is not looked at.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbTransportCc)

/* The allocator of the packet infos. */
ZUN_INLINE ZunAllocator* ZunRtcpRtpfbTransportCcGetAllocator(ZunRtcpRtpfbTransportCc* p) {
  return p->packetInfo.allocator;
}
ZUN_INLINE ZunUint16 ZunRtcpRtpfbTransportCcGetBaseSeq(const ZunRtcpRtpfbTransportCc* p) { return p->baseSeq; }
/* In units of 64 ms. */
ZUN_INLINE ZunInt32 ZunRtcpRtpfbTransportCcGetRefTime(const ZunRtcpRtpfbTransportCc* p) { return p->refTime; }

ZUN_EXTERN_C_END

#endif
