/* The compound packet's construction and accessors. Included by ZunRtcpPacket.h. */
#ifndef ZUN_RTP_ZUNRTCPPACKETINLINE_H
#define ZUN_RTP_ZUNRTCPPACKETINLINE_H

ZUN_EXTERN_C_BEGIN

/* An empty packet with allocator `a`, without storage. */
ZUN_INLINE ZunRtcpPacket* ZunRtcpPacketConstructDefault(ZunRtcpPacket* p, ZunAllocator* a) {
  ZunVector_ZunRtcpSubpacketConstructDefault(&p->subpackets, a);
  return p;
}

/* Destructs every subpacket, which gives back what they own, and keeps the storage of the list. */
ZUN_INLINE void ZunRtcpPacketReset(ZunRtcpPacket* p) { ZunVector_ZunRtcpSubpacketClear(&p->subpackets); }

/* The packet's allocator. */
ZUN_INLINE ZunAllocator* ZunRtcpPacketGetAllocator(ZunRtcpPacket* p) { return p->subpackets.allocator; }

/* The subpackets themselves. */
ZUN_INLINE const ZunVector_ZunRtcpSubpacket* ZunRtcpPacketGetSubpackets(const ZunRtcpPacket* p) {
  return &p->subpackets;
}

/* Number of subpackets. */
ZUN_INLINE ZunSizeT ZunRtcpPacketGetSubpacketCount(const ZunRtcpPacket* p) {
  return ZunVector_ZunRtcpSubpacketSize(&p->subpackets);
}

/* Subpacket `n`, or NULL when `n` is not below the count. */
ZUN_INLINE const ZunRtcpSubpacket* ZunRtcpPacketGetSubpacket(const ZunRtcpPacket* p, ZunSizeT n) {
  if (n >= ZunRtcpPacketGetSubpacketCount(p)) return NULL;
  return ZunVector_ZunRtcpSubpacketAtConst(&p->subpackets, n);
}

ZUN_EXTERN_C_END

#endif
