/*
 * The open door in: a compound packet from octets wherever they lie, in either dialect (docs/dialects.md), with a
 * diagnosis of what is refused and a limit on what a datagram may cost.
 */
#ifndef ZUN_RTP_DIALECT_ZUNRTCPDECODE_H
#define ZUN_RTP_DIALECT_ZUNRTCPDECODE_H

#include "Zun/Rtp/Core/ZunRtcpDialect.h"
#include "Zun/Rtp/Core/ZunRtcpReason.h"
#include "Zun/Rtp/ZunRtcpPacket.h"

ZUN_EXTERN_C_BEGIN

/* A subpacket that was refused. Offsets are in bytes from the beginning of the datagram. */
typedef struct ZunRtcpDecodeRefusal ZunRtcpDecodeRefusal;
struct ZunRtcpDecodeRefusal {
  ZunRtcpDecodeReason reason;
  ZunSizeT index;            /* its number in the datagram, from 0; those that were refused count */
  ZunRtcpSubpacketType type; /* its packet type; 0 where the header is cut off, as is `count` */
  ZunUint8 count;            /* its count, subtype or feedback message type */
  ZunSizeT offset;           /* where its header begins */
  ZunSizeT length;           /* in bytes, as its header says; what is left, where the header is cut off */
  ZunSizeT stoppedAt;        /* where reading stopped */
};

/* What became of a datagram. */
typedef struct ZunRtcpDecodeReport ZunRtcpDecodeReport;
struct ZunRtcpDecodeReport {
  ZunSizeT read;              /* how many subpackets were read */
  ZunSizeT refused;           /* how many were refused; at most 1 unless the options are tolerant */
  ZunRtcpDecodeRefusal first; /* the first that was refused; all 0 when none was */
};

/* Takes one refusal, while the datagram is decoded. It must not change the packet. */
typedef void (*ZunRtcpDecodeRefusalHandler)(ZunVoidPtr userData, const ZunRtcpDecodeRefusal* refusal);

/*
 * How to decode. The limits hold for a whole datagram; a subpacket that would pass one is refused.
 *
 * With the limits that ZunRtcpDecodeOptionsConstructDefault sets, no datagram of up to 65,535 bytes takes more than
 * ZUN_RTCP_DECODE_MAX_COST times 65,535 bytes of memory, and the time it takes is that of reading so much.
 */
typedef struct ZunRtcpDecodeOptions ZunRtcpDecodeOptions;
struct ZunRtcpDecodeOptions {
  ZunBool tolerant;       /* skip what is refused, and read the rest; by default the first refusal ends it */
  ZunSizeT maxSubpackets; /* default 1,024 */
  ZunSizeT maxStatuses;   /* of transport-wide feedback; default 65,535, as many as one message may hold */
  ZunSizeT maxEntries;    /* of all lists: blocks, chunks, items, sources, metrics ...; default 32,768 */
  ZunRtcpDecodeRefusalHandler onRefusal; /* called for every refusal; may be NULL, the default */
  ZunVoidPtr userData;                   /* handed to it */
};

enum { ZUN_RTCP_DECODE_MAX_COST = 64 };

/* The defaults, which NULL stands for as well. */
void ZunRtcpDecodeOptionsConstructDefault(ZunRtcpDecodeOptions* o);

/*
 * Replaces the subpackets of `p` by those of the datagram octets[0, size). `options` and `report` may be NULL. The
 * octets are not kept and must not be a part of `p`.
 *
 * What is read is told by the octets alone, whatever `p` held, and all of it belongs to the allocator of `p`. Storage
 * is used again: a datagram of the shape of the last one (the same kinds in the same order, no list or text longer than
 * before, nothing refused) allocates nothing. So a packet that many datagrams are decoded into may come to hold more
 * than one of them takes: the most that any of them needed at each place. Destructing it, or decoding into a fresh one
 * out of an arena, is the end of that.
 *
 * In the house's dialect what is read is what ZunRtcpPacketParseNetworkPacket reads into a fresh packet.
 *
 * Without `tolerant`, the first subpacket that is refused ends the decoding with false, and `p` holds those before it.
 * With it, that subpacket is skipped; only where the next header cannot be found (it is cut off, not of version 2 or
 * announces more bytes than there are) does decoding end early. The result is then false only when nothing was read.
 */
ZunBool ZunRtcpPacketDecode(ZunRtcpPacket* p, const void* octets, ZunSizeT size, ZunRtcpDialect dialect,
                            const ZunRtcpDecodeOptions* options, ZunRtcpDecodeReport* report);

ZUN_EXTERN_C_END

#endif
