/*
 * Extended reports (RFC 3611), packet type 207. A packet keeps them as an unknown subpacket, so they come and go
 * unchanged; here its blocks are walked and read, and new ones are built.
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  0 |V=2|P|reserved |   PT=XR=207   |             length            |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *  4 |                              SSRC                             |
 *    +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *    |      BT       | type-specific |         block length          |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *    |  type-specific block contents: as many words as the length says
 *    +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *    |  ... further blocks                                           |
 */
#ifndef ZUN_RTP_DIALECT_ZUNRTCPXR_H
#define ZUN_RTP_DIALECT_ZUNRTCPXR_H

#include "Zun/Rtp/Core/ZunRtcpReason.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

enum { ZUN_RTCPSUBPACKET_TYPE_XR = 207 };

/* A block type. Those of other documents have other numbers, and are told by their octets. */
typedef ZunInt32 ZunRtcpXrBlockType;
enum {
  ZUN_RTCPXR_TYPE_LOSS_RLE = 1,      /* which packets were received and lost (section 4.1) */
  ZUN_RTCPXR_TYPE_DUPLICATE_RLE = 2, /* which packets came more than once (section 4.2) */
  ZUN_RTCPXR_TYPE_RECEIPT_TIMES = 3, /* when packets came (section 4.3) */
  ZUN_RTCPXR_TYPE_RRTR = 4,          /* receiver reference time (section 4.4) */
  ZUN_RTCPXR_TYPE_DLRR = 5,          /* delay since the last receiver report (section 4.5) */
  ZUN_RTCPXR_TYPE_STATISTICS = 6,    /* statistics summary (section 4.6) */
  ZUN_RTCPXR_TYPE_VOIP = 7           /* VoIP metrics (section 4.7) */
};

/*
 * What the blocks about single packets begin with: packets beginSeq up to, but without, endSeq of one source. With a
 * thinning of T only those whose sequence number is a multiple of 2^T are told.
 *
 *    |      BT       | rsvd. |   T   |         block length          |
 *    |                        SSRC of source                         |
 *    |          begin_seq            |             end_seq           |
 */
typedef struct ZunRtcpXrRange ZunRtcpXrRange;
struct ZunRtcpXrRange {
  ZunRtpSourceId source;
  ZunUint8 thinning; /* 0..15 */
  ZunUint16 beginSeq;
  ZunUint16 endSeq;
};

/* Receiver reference time: when the block was sent. */
typedef struct ZunRtcpXrRrtr ZunRtcpXrRrtr;
struct ZunRtcpXrRrtr {
  ZunUint64 ntpTimestamp; /* 32.32 seconds since 1900 */
};

/* What one receiver needs to reckon its round trip. */
typedef struct ZunRtcpXrDlrr ZunRtcpXrDlrr;
struct ZunRtcpXrDlrr {
  ZunRtpSourceId ssrc;        /* of the receiver */
  ZunUint32 lastRr;           /* the middle 32 bits of its last reference time; 0 when there was none */
  ZunUint32 delaySinceLastRr; /* in 1/65536 s */
};

/*
 * Statistics summary. A field whose flag is clear means nothing.
 *
 *    |     BT=6      |L|D|J|ToH|rsvd.|       block length = 9        |
 */
typedef struct ZunRtcpXrStatistics ZunRtcpXrStatistics;
struct ZunRtcpXrStatistics {
  ZunRtcpXrRange range;  /* its thinning is 0 */
  ZunBool hasLoss;       /* L: lostPackets */
  ZunBool hasDuplicates; /* D: duplicatePackets */
  ZunBool hasJitter;     /* J: the four jitters */
  ZunUint8 hopKind;      /* ToH: 0 no hop fields, 1 IPv4 TTL, 2 IPv6 hop limit, 3 must not be used */
  ZunUint32 lostPackets;
  ZunUint32 duplicatePackets;
  ZunUint32 minJitter; /* in RTP timestamp units, as the next three */
  ZunUint32 maxJitter;
  ZunUint32 meanJitter;
  ZunUint32 jitterDeviation;
  ZunUint8 minHops;
  ZunUint8 maxHops;
  ZunUint8 meanHops;
  ZunUint8 hopsDeviation;
};

/* VoIP metrics. A value of 127 says "unknown" where it is named. */
typedef struct ZunRtcpXrVoip ZunRtcpXrVoip;
struct ZunRtcpXrVoip {
  ZunRtpSourceId source;
  ZunUint8 lossRate; /* in 1/256, as the next three */
  ZunUint8 discardRate;
  ZunUint8 burstDensity;
  ZunUint8 gapDensity;
  ZunUint16 burstDuration; /* in ms, as the next three */
  ZunUint16 gapDuration;
  ZunUint16 roundTripDelay;
  ZunUint16 endSystemDelay;
  ZunInt8 signalLevel;             /* in dBm; 127 unknown */
  ZunInt8 noiseLevel;              /* in dBm; 127 unknown */
  ZunUint8 residualEchoReturnLoss; /* RERL, in dB; 127 unknown */
  ZunUint8 gmin;                   /* gap threshold, in packets */
  ZunUint8 rFactor;                /* 0..100; 127 unknown, as the next */
  ZunUint8 externalRFactor;
  ZunUint8 mosListening;         /* MOS-LQ * 10, 10..50; 127 unknown */
  ZunUint8 mosConversational;    /* MOS-CQ * 10, 10..50; 127 unknown */
  ZunUint8 receiverConfig;       /* RX config: packet loss concealment, jitter buffer's mode and rate */
  ZunUint16 jitterBufferNominal; /* in ms, as the next two */
  ZunUint16 jitterBufferMaximum;
  ZunUint16 jitterBufferAbsoluteMaximum;
};

/*
 * One block. Its contents point into the octets that are walked. `isKnown` says that it is of one of the seven types
 * and has the length of its type: the functions below then read it. Any other is told by its octets alone.
 */
typedef struct ZunRtcpXrBlock ZunRtcpXrBlock;
struct ZunRtcpXrBlock {
  ZunRtcpXrBlockType type;
  ZunUint8 typeSpecific; /* the second octet */
  ZunBool isKnown;
  const ZunUint8* octets; /* of the contents */
  ZunSizeT size;          /* of the contents, a multiple of 4 */
};

/* A walk over the blocks of a report. */
typedef struct ZunRtcpXrReader ZunRtcpXrReader;
struct ZunRtcpXrReader {
  ZunRtpSourceId sender;      /* who sends the report */
  ZunRtcpDecodeReason reason; /* why the walk ended early, ZUN_RTCP_DECODE_REASON_NONE otherwise */
  const ZunUint8* octets;     /* the blocks */
  ZunSizeT size;
  ZunSizeT position; /* of the next block */
};

/*
 * Begins a walk over `sp`, an unknown subpacket of type 207, which must outlive it. NULL, with the reason stored, when
 * `sp` is something else or too short for a sender.
 */
ZunRtcpXrReader* ZunRtcpXrReaderConstruct(ZunRtcpXrReader* r, const ZunRtcpSubpacket* sp);

/* Stores the next block. False at the end, and where a block passes the end of the report: see `reason`. */
ZunBool ZunRtcpXrReaderNext(ZunRtcpXrReader* r, ZunRtcpXrBlock* block);

/* Each reads a block of its type. False, nothing stored, when the block is none or is not known. */
ZunBool ZunRtcpXrBlockGetRrtr(const ZunRtcpXrBlock* block, ZunRtcpXrRrtr* rrtr);
ZunBool ZunRtcpXrBlockGetStatistics(const ZunRtcpXrBlock* block, ZunRtcpXrStatistics* statistics);
ZunBool ZunRtcpXrBlockGetVoip(const ZunRtcpXrBlock* block, ZunRtcpXrVoip* voip);

/* The number of receivers of a DLRR; 0 for other blocks. */
ZunSizeT ZunRtcpXrBlockGetDlrrCount(const ZunRtcpXrBlock* block);
/* Receiver `n` of a DLRR. False, nothing stored, when there is none. */
ZunBool ZunRtcpXrBlockGetDlrr(const ZunRtcpXrBlock* block, ZunSizeT n, ZunRtcpXrDlrr* dlrr);

/* The packets that a loss RLE, duplicate RLE, receipt times or statistics block is about. */
ZunBool ZunRtcpXrBlockGetRange(const ZunRtcpXrBlock* block, ZunRtcpXrRange* range);

/*
 * Takes what a block tells of one packet: of a loss RLE whether it was received, of a duplicate RLE whether it came no
 * more than once, of receipt times its arrival in RTP timestamp units.
 */
typedef void (*ZunRtcpXrPacketCallback)(ZunVoidPtr data, ZunUint16 seq, ZunUint32 value);

/*
 * Calls `cb` for every packet of the range that a loss RLE, duplicate RLE or receipt times block tells of, in order;
 * 65535 is followed by 0. A block that ends early tells of fewer. Returns how many.
 */
ZunSizeT ZunRtcpXrBlockGeneratePackets(const ZunRtcpXrBlock* block, ZunRtcpXrPacketCallback cb, ZunVoidPtr data);

/* How many packets of `range` are told, with its thinning. */
ZunSizeT ZunRtcpXrRangeGetCount(const ZunRtcpXrRange* range);

/*
 * Builds a report, block by block. Everything added is there, or not at all: an addition returns false, and leaves the
 * report as it was, when an allocation or one of its arguments is refused, or when the report would pass 262,140 bytes.
 */
typedef struct ZunRtcpXrBuilder ZunRtcpXrBuilder;
struct ZunRtcpXrBuilder {
  ZunString data; /* the body so far, from the sender's SSRC on; owns the builder's allocator */
};

/* A report of `sender` without blocks. NULL, `b` owning nothing, when an allocation is refused. */
ZunRtcpXrBuilder* ZunRtcpXrBuilderConstruct(ZunRtcpXrBuilder* b, ZunRtpSourceId sender, ZunAllocator* a);
/* Lifecycle (ZunConventions.h). */
void ZunRtcpXrBuilderDestruct(ZunRtcpXrBuilder* b);

ZunBool ZunRtcpXrBuilderAddRrtr(ZunRtcpXrBuilder* b, const ZunRtcpXrRrtr* rrtr);
/* One block about `count` receivers, up to 21,844. */
ZunBool ZunRtcpXrBuilderAddDlrr(ZunRtcpXrBuilder* b, const ZunRtcpXrDlrr* dlrrs, ZunSizeT count);
/* The flags of absent fields are clear; `range.thinning` must be 0 and `hopKind` at most 3. */
ZunBool ZunRtcpXrBuilderAddStatistics(ZunRtcpXrBuilder* b, const ZunRtcpXrStatistics* statistics);
ZunBool ZunRtcpXrBuilderAddVoip(ZunRtcpXrBuilder* b, const ZunRtcpXrVoip* voip);
/*
 * A loss or duplicate RLE, as `type` says. `told` has one entry for each packet that `range` tells of, `count` of them
 * (ZunRtcpXrRangeGetCount), true as ZunRtcpXrPacketCallback tells it. Runs are used where they save room.
 */
ZunBool ZunRtcpXrBuilderAddRle(ZunRtcpXrBuilder* b, ZunRtcpXrBlockType type, const ZunRtcpXrRange* range,
                               const ZunBool* told, ZunSizeT count);
/* Receipt times: one for each packet that `range` tells of, `count` of them, in RTP timestamp units. */
ZunBool ZunRtcpXrBuilderAddReceiptTimes(ZunRtcpXrBuilder* b, const ZunRtcpXrRange* range, const ZunUint32* times,
                                        ZunSizeT count);
/* A block of any type, by its contents: `size` octets, a multiple of 4. */
ZunBool ZunRtcpXrBuilderAddBlock(ZunRtcpXrBuilder* b, ZunUint8 type, ZunUint8 typeSpecific, const void* octets,
                                 ZunSizeT size);

/* Constructs `sp` as the report, with storage from `a`. NULL, `sp` owning nothing, when an allocation is refused. */
ZunRtcpSubpacket* ZunRtcpXrBuilderMakeSubpacket(const ZunRtcpXrBuilder* b, ZunRtcpSubpacket* sp, ZunAllocator* a);

ZUN_EXTERN_C_END

#endif
