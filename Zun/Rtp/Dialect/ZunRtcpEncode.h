/*
 * The open door out: a compound packet into octets of the caller's, in either dialect (docs/dialects.md). What the wire
 * cannot hold is refused, and told.
 */
#ifndef ZUN_RTP_DIALECT_ZUNRTCPENCODE_H
#define ZUN_RTP_DIALECT_ZUNRTCPENCODE_H

#include "Zun/Rtp/Core/ZunRtcpDialect.h"
#include "Zun/Rtp/Core/ZunRtcpReason.h"
#include "Zun/Rtp/ZunRtcpPacket.h"

ZUN_EXTERN_C_BEGIN

/*
 * Writes `p` to octets[0, capacity) and stores in `*size` how many octets were written; no padding bit is ever set. In
 * the house's dialect they are those that ZunRtcpPacketGetNetworkPacket writes.
 *
 * False when they do not fit, with the size that is needed; false when `p` cannot be encoded at all, with 0, and
 * ZunRtcpPacketFindUnencodable says why. The octets up to `capacity` are not specified then; those beyond are never
 * touched. `octets` may be NULL when `capacity` is 0.
 */
ZunBool ZunRtcpPacketEncode(const ZunRtcpPacket* p, void* octets, ZunSizeT capacity, ZunRtcpDialect dialect,
                            ZunSizeT* size);

/*
 * Writes one datagram of at most `capacity` octets: all of `prefix` (may be NULL), then as many whole subpackets of `p`
 * as fit, from number `first` on; it stops in front of one that cannot be encoded. Stores in `*last` the number after
 * that of the last one written, where the next call begins, and in `*size` how many octets were written.
 *
 * False when not even subpacket `first` fits, with the size that is needed for it and the prefix; false with size 0
 * when there is no subpacket `first`, or when it or one of the prefix cannot be encoded. `*last` is not stored then.
 */
ZunBool ZunRtcpPacketEncodePart(const ZunRtcpPacket* p, void* octets, ZunSizeT capacity, ZunRtcpDialect dialect,
                                ZunSizeT first, const ZunVector_ZunRtcpSubpacket* prefix, ZunSizeT* last,
                                ZunSizeT* size);

/* Exactly how many octets ZunRtcpPacketEncode writes; 0 when `p` cannot be encoded. */
ZunSizeT ZunRtcpPacketGetEncodedLength(const ZunRtcpPacket* p, ZunRtcpDialect dialect);

/*
 * The first reason why `p` cannot be encoded, ZUN_RTCP_ENCODE_REASON_NONE when it can. Stores in `*index` (may be NULL)
 * the number of that subpacket, or how many there are.
 */
ZunRtcpEncodeReason ZunRtcpPacketFindUnencodable(const ZunRtcpPacket* p, ZunRtcpDialect dialect, ZunSizeT* index);

ZUN_EXTERN_C_END

#endif
