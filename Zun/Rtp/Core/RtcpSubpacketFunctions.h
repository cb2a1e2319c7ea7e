// One row of a dispatch table: the operations of a kind (ZunRtcpRow.h says what the first eight do).
#ifndef ZUN_RTP_CORE_RTCPSUBPACKETFUNCTIONS_H
#define ZUN_RTP_CORE_RTCPSUBPACKETFUNCTIONS_H

#include "Zun/Rtp/Core/Body.h"
#include "Zun/Rtp/Core/BodyWriter.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"

struct RtcpSubpacketFunctions {
  ZunInt32 type;  // the value that this row serves; 0 in an unknown row, and marks an empty one in a table
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
  // What three of these are made of: the same from octets that need not be in a string, and to any output.
  bool (*construct_from_body)(ZunRtcpSubpacket* p, const zun::Body& body, ZunAllocator* a);
  bool (*assign_from_body)(ZunRtcpSubpacket* p, const zun::Body& body);
  bool (*write)(const ZunRtcpSubpacket* p, zun::Output& out, bool pad);
  // What encoding needs besides: the exact length at byte `begin` of an output, and why the object cannot be encoded.
  ZunSizeT (*encoded_length)(const ZunRtcpSubpacket* p, ZunSizeT begin, ZunRtcpDialect dialect);
  ZunRtcpEncodeReason (*find_unencodable)(const ZunRtcpSubpacket* p, ZunRtcpDialect dialect);
};

// Declares what the row of `Kind` needs beside its public functions; Row.h or Envelope.h defines it.
#define ZUN_RTCP_ROW_INTERNALS_DECLARE(Kind)                                                       \
  namespace zun {                                                                                  \
  bool Kind##ConstructFromBody(ZunRtcpSubpacket* p, const Body& body, ZunAllocator* a);            \
  bool Kind##AssignFromBody(ZunRtcpSubpacket* p, const Body& body);                                \
  bool Kind##Write(const ZunRtcpSubpacket* p, Output& out, bool pad);                              \
  ZunSizeT Kind##EncodedLength(const ZunRtcpSubpacket* p, ZunSizeT begin, ZunRtcpDialect dialect); \
  ZunRtcpEncodeReason Kind##FindUnencodable(const ZunRtcpSubpacket* p, ZunRtcpDialect dialect);    \
  }

// The same for a row of a list of kinds.
#define ZUN_RTCP_LISTED_ROW_INTERNALS_DECLARE(value, Kind, member, Getter) ZUN_RTCP_ROW_INTERNALS_DECLARE(Kind)

// The row of `Kind`, serving `value`.
#define ZUN_RTCP_ROW(value, Kind)                                                                            \
  RtcpSubpacketFunctions {                                                                                   \
    value, Kind##ConstructCopyAllocator, Kind##DestructWrap, Kind##AssignWrap, Kind##GetAllocatorWrap,       \
        Kind##WritePacket, Kind##GetPacketLength, Kind##ConstructFromBuffer, Kind##AssignFromBuffer,         \
        zun::Kind##ConstructFromBody, zun::Kind##AssignFromBody, zun::Kind##Write, zun::Kind##EncodedLength, \
        zun::Kind##FindUnencodable                                                                           \
  }

#endif
