/*
 * Generic NACK (RFC 4585, section 6.2.1): tells a media sender which RTP packets were lost. The lost sequence
 * numbers are kept as they travel, as a list of maps of up to 17 numbers each.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|        sequence number        |              map              |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                            more maps ...                      |
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBNACK_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBNACK_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbNackSeqMap.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunBasicTypesContainer.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbNack ZunRtcpRtpfbNack;
struct ZunRtcpRtpfbNack {
  ZunRtcpSubpacketType type;                /* 205 */
  ZunRtcpRtpfbType fmt;                     /* 1 */
  ZunRtpSourceId sender;                    /* SSRC of the packet sender */
  ZunRtpSourceId source;                    /* SSRC of the media source */
  ZunVector_ZunRtcpRtpfbNackSeqMap seqMaps; /* in the order they were added or received; its allocator is p's */
};

/* Takes one sequence number of `p`; `data` is what the caller of the enumeration handed in. */
typedef void (*ZunRtcpRtpfbNackSeqNumberCallback)(const ZunRtcpRtpfbNack* p, ZunUint16 seqNumber, ZunVoidPtr data);

/* A NACK of no packets between these SSRCs. */
ZunRtcpRtpfbNack* ZunRtcpRtpfbNackConstruct(ZunRtcpRtpfbNack* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                            ZunAllocator* a);

/* The same with both SSRCs 0. */
ZunRtcpRtpfbNack* ZunRtcpRtpfbNackConstructDefault(ZunRtcpRtpfbNack* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRtpfbNack* ZunRtcpRtpfbNackConstructCopy(ZunRtcpRtpfbNack* p, const ZunRtcpRtpfbNack* o);
ZunRtcpRtpfbNack* ZunRtcpRtpfbNackAssign(ZunRtcpRtpfbNack* p, const ZunRtcpRtpfbNack* o);
void ZunRtcpRtpfbNackDestruct(ZunRtcpRtpfbNack* p);

/*
 * A map takes its base and the 16 numbers above it, without wraparound: 0 is far from a map whose base is 65535,
 * and gets a map of its own. Maps are never merged, moved or sorted. Each of these is a scan over the maps.
 */

/* Whether adding `seqNumber` would append a map, and so 4 bytes to the packet. */
ZunBool ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(const ZunRtcpRtpfbNack* p, ZunUint16 seqNumber);

/* Adds `seqNumber` to the first map that takes it, or appends one for it; one that is there already changes nothing. */
ZunBool ZunRtcpRtpfbNackAddSeqNumber(ZunRtcpRtpfbNack* p, ZunUint16 seqNumber);

/*
 * Removes `seqNumber` from every map that holds it. A map that loses its base is based on its next number; one that
 * loses its only number is erased, and the map that moves into its place is passed over: of equal maps that a peer
 * repeated, every second one stays.
 */
void ZunRtcpRtpfbNackRemoveSeqNumber(ZunRtcpRtpfbNack* p, ZunUint16 seqNumber);

/*
 * Calls `cb` for each sequence number, map by map, neither sorted nor with duplicates left out. Here a map does wrap:
 * the number after 65535 is 0. `cb` must not change `p`.
 */
void ZunRtcpRtpfbNackGenerateSeqNumbers(const ZunRtcpRtpfbNack* p, ZunRtcpRtpfbNackSeqNumberCallback cb,
                                        ZunVoidPtr data);

/* How many numbers the enumeration gives. */
ZunSizeT ZunRtcpRtpfbNackGetNumOfSeqNumbers(const ZunRtcpRtpfbNack* p);

/* Replaces the elements of `v` by the enumerated numbers. A number for which `v` cannot grow is left out silently. */
void ZunRtcpRtpfbNackGetSeqNumbers(const ZunRtcpRtpfbNack* p, ZunVector_ZunUint16* v);

/*
 * The row operations. A NACK without maps cannot be written, although its length is 12: its header and SSRCs are
 * appended before that fails. A failed write or read is logged as an error, and one of more than one map as a debug
 * message, all in category "rtcp". Reading replaces the maps; after a failure those read before it are there.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbNack)

/* The allocator of the maps. */
ZUN_INLINE ZunAllocator* ZunRtcpRtpfbNackGetAllocator(ZunRtcpRtpfbNack* p) { return p->seqMaps.allocator; }
/* Number of maps, each 4 bytes of the packet. */
ZUN_INLINE ZunSizeT ZunRtcpRtpfbNackGetNumOfSeqMaps(const ZunRtcpRtpfbNack* p) {
  return ZunVector_ZunRtcpRtpfbNackSeqMapSize(&p->seqMaps);
}
/* Removes all maps and keeps their storage. */
ZUN_INLINE void ZunRtcpRtpfbNackResetSeqMaps(ZunRtcpRtpfbNack* p) {
  ZunVector_ZunRtcpRtpfbNackSeqMapClear(&p->seqMaps);
}

ZUN_EXTERN_C_END

#endif
