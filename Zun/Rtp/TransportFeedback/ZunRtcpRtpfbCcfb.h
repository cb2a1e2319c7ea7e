/*
 * Congestion control feedback (RFC 8888, section 3.1; FMT 14 here): for each media stream a run of its packets, which
 * of them arrived, how they were marked, and when. It has no SSRC of a media source.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 8 |                    SSRC of media stream                       |  one block
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+  for each
 * 12|          begin_seq            |      number of metrics        |  stream
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|R|ECN| arrival time offset     |R|ECN| arrival time offset ... |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |        (the last one)         |  0, after an odd number       |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *   |                 report timestamp, 16.16 seconds               |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBCCFB_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBCCFB_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfbStream.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbCcfb ZunRtcpRtpfbCcfb;
struct ZunRtcpRtpfbCcfb {
  ZunRtcpSubpacketType type;                /* 205 */
  ZunRtcpRtpfbType fmt;                     /* 14 */
  ZunRtpSourceId sender;                    /* SSRC of the packet sender */
  ZunVector_ZunRtcpRtpfbCcfbStream streams; /* in wire order; its allocator is the object's, each stream has its own */
  ZunUint32 sendTimestamp;                  /* when the report was made, in seconds with 16 fraction bits */
};

/* No streams, sender and timestamp 0. */
ZunRtcpRtpfbCcfb* ZunRtcpRtpfbCcfbConstructDefault(ZunRtcpRtpfbCcfb* p, ZunAllocator* a);

/* The same with `sender` and a timestamp as ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic sets it. Cannot fail. */
ZunRtcpRtpfbCcfb* ZunRtcpRtpfbCcfbConstructFullWithMonotonic(ZunRtcpRtpfbCcfb* p, ZunRtpSourceId sender,
                                                             ZunTime sendTimestamp, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRtpfbCcfb* ZunRtcpRtpfbCcfbConstructCopy(ZunRtcpRtpfbCcfb* p, const ZunRtcpRtpfbCcfb* o);
ZunRtcpRtpfbCcfb* ZunRtcpRtpfbCcfbAssign(ZunRtcpRtpfbCcfb* p, const ZunRtcpRtpfbCcfb* o);
void ZunRtcpRtpfbCcfbDestruct(ZunRtcpRtpfbCcfb* p);

/*
 * Sets the timestamp to the middle 32 bits of the NTP timestamp that ZunTimeGetNtp gives for `ts`, nanoseconds of a
 * monotonic clock. It means something only as the difference of two timestamps of one clock.
 */
ZunBool ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic(ZunRtcpRtpfbCcfb* p, ZunTime ts);

/* Appends a copy of `stream`, with its allocator. */
ZunBool ZunRtcpRtpfbCcfbAddStream(ZunRtcpRtpfbCcfb* p, const ZunRtcpRtpfbCcfbStream* stream);

/*
 * The row operations.
 *
 * Writing masks neither ECN nor arrival time offset, and writes 0 for a packet that is not received. It is false, with
 * what stands in front of it appended, at a stream of more than 65535 metrics.
 *
 * Reading gives four times the ECN codepoint, as callers have come to expect; so what is read is not fit to be written.
 * The streams and their metrics take the object's allocator. False when a block does not fit, or when the timestamp
 * does not end exactly at the end; streams up to there are kept.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbCcfb)

/* The allocator of the list of streams. */
ZUN_INLINE ZunAllocator* ZunRtcpRtpfbCcfbGetAllocator(ZunRtcpRtpfbCcfb* p) { return p->streams.allocator; }
/* In seconds with 16 fraction bits. */
ZUN_INLINE ZunUint32 ZunRtcpRtpfbCcfbGetSendTimestamp(const ZunRtcpRtpfbCcfb* p) { return p->sendTimestamp; }

ZUN_EXTERN_C_END

#endif
