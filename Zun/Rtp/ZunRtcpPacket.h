/*
 * The whole public interface: one RTCP compound packet, and below it every kind of subpacket. What holds for every
 * object stands in ZunConventions.h: lifecycle, allocators, what is left when something is refused.
 *
 * A packet that is parsed into again and again keeps the storage that its largest datagrams needed, a high-water mark.
 * ZunRtcpPacketReset gives back what the subpackets own, ZunRtcpPacketDestruct everything.
 *
 * What a datagram costs is bounded by its size, but not by a small factor: 36 bytes of transport-wide feedback announce
 * 65,528 packets, which take 262 kB; a datagram full of them takes 480 MB. Where strangers send, give the packet an
 * allocator that refuses what is too much for one peer: the parse is then false, and nothing is lost.
 */
#ifndef ZUN_RTP_ZUNRTCPPACKET_H
#define ZUN_RTP_ZUNRTCPPACKET_H

#include "Zun/Os/ZunLog.h"
#include "Zun/Os/ZunTime.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunBasicTypesContainer.h"
#include "Zun/Utils/ZunMiscInline.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

/* One compound packet (RFC 3550, section 6.1): its subpackets in wire order. */
typedef struct ZunRtcpPacket ZunRtcpPacket;
struct ZunRtcpPacket {
  ZunVector_ZunRtcpSubpacket subpackets; /* its allocator is the packet's; each subpacket has its own */
};

/* A packet with the subpackets of `v`, which keep their allocators. NULL, `p` owning nothing, when an allocation
 * is refused, or when `v` is empty and its allocator is not `a`. */
ZunRtcpPacket* ZunRtcpPacketConstructFromSubpackets(ZunRtcpPacket* p, const ZunVector_ZunRtcpSubpacket* v,
                                                    ZunAllocator* a);

/* A packet parsed from the bytes of one datagram, with allocator `a`. NULL, `p` owning nothing, when
 * ZunRtcpPacketParseNetworkPacket refuses them. */
ZunRtcpPacket* ZunRtcpPacketConstructFromNetworkPacket(ZunRtcpPacket* p, const ZunString* b, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). What was assigned when an allocation is refused stays assigned. */
ZunRtcpPacket* ZunRtcpPacketConstructCopy(ZunRtcpPacket* p, const ZunRtcpPacket* o);
ZunRtcpPacket* ZunRtcpPacketAssign(ZunRtcpPacket* p, const ZunRtcpPacket* o);
void ZunRtcpPacketDestruct(ZunRtcpPacket* p);

/* Replaces the subpackets by copies of those of `v`. False, `p` unchanged, when `v` is empty (see
 * ZunRtcpPacketReset); false, `p` keeping what was done, when an allocation is refused. */
ZunBool ZunRtcpPacketSetSubpackets(ZunRtcpPacket* p, const ZunVector_ZunRtcpSubpacket* v);

/* Drops the subpackets from number `count` on. A count above the present one only reserves storage, as there is
 * no default subpacket to fill with; false, `p` unchanged, when that is refused. */
ZunBool ZunRtcpPacketSetSubpacketCount(ZunRtcpPacket* p, ZunSizeT count);

/* Assigns `sp` to subpacket `n`, or appends it when `n` is the count. False, `p` unchanged, when `n` is above the
 * count; false as ZunRtcpSubpacketAssign and ZunRtcpPacketAppendSubpacket when an allocation is refused. */
ZunBool ZunRtcpPacketSetSubpacket(ZunRtcpPacket* p, ZunSizeT n, const ZunRtcpSubpacket* sp);

/* Appends a copy of `sp`, which may be one of p's own, with the allocator of `sp`. False, the subpackets as they
 * were, when an allocation is refused. */
ZunBool ZunRtcpPacketAppendSubpacket(ZunRtcpPacket* p, const ZunRtcpSubpacket* sp);

/* Appends copies of all of `spv`, which may be p's own. False, the subpackets as they were, when an allocation is
 * refused. */
ZunBool ZunRtcpPacketAppendSubpackets(ZunRtcpPacket* p, const ZunVector_ZunRtcpSubpacket* spv);

/*
 * Replaces the subpackets by those of the compound packet in `b` (RFC 3550, section 6.1), overwriting in place those of
 * a kind that is there already; parsing a datagram of the shape of the last one (the same kinds in the same order, no
 * list or text longer than before) allocates nothing. `b` must not be a part of `p`.
 *
 * A subpacket that is appended is read into a fresh object with the allocator of `p`. One that is read over another
 * keeps what its kind says it keeps: an SDES that announces no chunks leaves those that are there. And it may take
 * storage from the allocator of `b`: feedback over feedback of another format does, and the layer data of an LIR always
 * does. So the allocator of `b` must outlive `p`; the simplest is to give both the same one. It may be NULL, a view of
 * bytes that somebody else owns: the storage is then that of `p`.
 *
 * False when `b` is empty (`p` untouched), when a header is cut off, is not of version 2 or announces more bytes than
 * there are, when a kind refuses its body. Nothing is restored then: subpackets up to the one that failed are the new
 * ones, that one is as the failed read left it, those after it are the old ones. The padding bit is ignored: padding
 * stays part of its subpacket's body.
 */
ZunBool ZunRtcpPacketParseNetworkPacket(ZunRtcpPacket* p, const ZunString* b);

/* Bytes that ZunRtcpPacketGetNetworkPacket will write; 0 when `p` is empty or holds a subpacket of length 0. */
ZunSizeT ZunRtcpPacketGetNetworkPacketLength(const ZunRtcpPacket* p);

/* Makes `b` the wire form of `p`; no padding bit is ever set. False, `b` untouched, when `p` is empty. False at the
 * first subpacket that cannot be written; `b` then holds a part that must not be sent. */
ZunBool ZunRtcpPacketGetNetworkPacket(const ZunRtcpPacket* p, ZunString* b);

/*
 * Makes `b` one datagram of at most `maxSize` bytes: all of `prefixSubpackets` (may be NULL), then as many whole
 * subpackets of `p` as fit, from number `firstSubpacket` on. Stores in `*lastSubpacket` the number after that of the
 * last one written, where the next call begins. A first subpacket that does not fit is written all the same, with a
 * warning in category "rtcp", so that every call makes progress.
 *
 * False when there is no subpacket `firstSubpacket` (`b` untouched), when one has length 0 or cannot be written;
 * `b` then holds a part that must not be sent, and `*lastSubpacket` is not stored.
 */
ZunBool ZunRtcpPacketGetPartialNetworkPacket(const ZunRtcpPacket* p, ZunString* b, ZunSizeT firstSubpacket,
                                             ZunSizeT maxSize, const ZunVector_ZunRtcpSubpacket* prefixSubpackets,
                                             ZunSizeT* lastSubpacket);

ZUN_EXTERN_C_END

#include "Zun/Rtp/ZunRtcpPacketInline.h"

ZUN_VECTOR_DECLARE(ZunRtcpPacket)

#endif
