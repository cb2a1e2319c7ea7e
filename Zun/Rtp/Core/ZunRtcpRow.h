/*
 * The eight operations through which every kind of subpacket is reached, its row. ZUN_RTCP_ROW_DECLARE(Kind) declares
 * them for one kind; all take the subpacket union, whose live member must be that kind. What follows holds unless the
 * kind says otherwise.
 *
 *   ZunRtcpSubpacket* KindConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a)
 *       Constructs p as a copy of o with storage from a; elements of its lists that own memory take their sources'
 *       allocators.
 *   void KindDestructWrap(ZunRtcpSubpacket* p)
 *   ZunRtcpSubpacket* KindAssignWrap(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o)
 *   ZunAllocator* KindGetAllocatorWrap(ZunRtcpSubpacket* p)
 *       KindDestruct, KindAssign and KindGetAllocator for the union.
 *   ZunBool KindWritePacket(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad)
 *       Appends the wire form of p, common header included, to b. `pad` sets the padding bit; no padding follows.
 *       False at the first failure, when b keeps what was appended.
 *   ZunSizeT KindGetPacketLength(const ZunRtcpSubpacket* p)
 *       The number of bytes of the wire form, header included.
 *   ZunBool KindConstructFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
 *                                   ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a)
 *       Constructs p with allocator a, then reads it as the next does. On failure p is constructed and holds what
 *       was read; the caller destructs it.
 *   ZunBool KindAssignFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
 *                                ZunRtcpSubpacketType pt, ZunUint8 count)
 *       Reads p from the body b[begin, end) of a subpacket whose header held packet type pt and the 5-bit count (or
 *       subtype, or feedback message type). b must not be a part of p. p keeps its allocator. Each field is stored as
 *       soon as it is read; false at the first that does not lie before `end` and inside b, or when an allocation is
 *       refused. Allocators of b: the layer data of an LIR takes that of b (that of its list, where b has none), and so
 *       does a message of another kind in an envelope, as follows.
 *
 * An envelope (ZunRtcpRtpfb, ZunRtcpPsfb, ZunRtcpPsfbAfb) hands each of them on to the kind of its message. A message
 * of another kind than the one that is read is destructed and rebuilt with the allocator of b, not with the one it had
 * (but with that one, where b has none); unknown messages are one kind. When the read fails the object is what the new
 * kind's read left, and is destructed as usual. So storage that outlives the read may belong to the allocator of b.
 */
#ifndef ZUN_RTP_CORE_ZUNRTCPROW_H
#define ZUN_RTP_CORE_ZUNRTCPROW_H

#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"
#include "Zun/Utils/ZunString.h"

/* One RTCP packet of any kind; ZunRtcpSubpacket.h defines it. */
typedef union ZunRtcpSubpacket ZunRtcpSubpacket;

#define ZUN_RTCP_ROW_DECLARE(Kind)                                                                                 \
  ZunRtcpSubpacket* Kind##ConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a); \
  void Kind##DestructWrap(ZunRtcpSubpacket* p);                                                                    \
  ZunRtcpSubpacket* Kind##AssignWrap(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o);                              \
  ZunAllocator* Kind##GetAllocatorWrap(ZunRtcpSubpacket* p);                                                       \
  ZunBool Kind##WritePacket(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad);                                 \
  ZunSizeT Kind##GetPacketLength(const ZunRtcpSubpacket* p);                                                       \
  ZunBool Kind##ConstructFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,         \
                                    ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a);                     \
  ZunBool Kind##AssignFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,            \
                                 ZunRtcpSubpacketType pt, ZunUint8 count);

#endif
