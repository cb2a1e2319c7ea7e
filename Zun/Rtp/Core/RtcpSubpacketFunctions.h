// One row of a dispatch table: the eight operations of a kind (ZunRtcpRow.h says what each does).
#ifndef ZUN_RTP_CORE_RTCPSUBPACKETFUNCTIONS_H
#define ZUN_RTP_CORE_RTCPSUBPACKETFUNCTIONS_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"

struct RtcpSubpacketFunctions {
  ZunInt32 type;  // the value that this row serves; 0 marks an empty row
  ZunRtcpSubpacket* (*construct_copy_allocator)(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a);
  void (*destruct)(ZunRtcpSubpacket* p);
  ZunRtcpSubpacket* (*assign)(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o);
  ZunAllocator* (*get_allocator)(ZunRtcpSubpacket* p);
  ZunBool (*write_packet)(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad);
  ZunSizeT (*get_packet_length)(const ZunRtcpSubpacket* p);
  ZunBool (*construct_from_buffer)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                   ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a);
  ZunBool (*assign_from_buffer)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                ZunRtcpSubpacketType pt, ZunUint8 count);
};

// The row of `Kind`, serving `value`.
#define ZUN_RTCP_ROW(value, Kind)                                                                      \
  RtcpSubpacketFunctions {                                                                             \
    value, Kind##ConstructCopyAllocator, Kind##DestructWrap, Kind##AssignWrap, Kind##GetAllocatorWrap, \
        Kind##WritePacket, Kind##GetPacketLength, Kind##ConstructFromBuffer, Kind##AssignFromBuffer    \
  }

#endif
