// The one dispatch mechanism. The subpacket, each feedback envelope and the application-layer envelope use it,
// each with its own table and its own idea of which values it knows.
#ifndef ZUN_RTP_CORE_DISPATCH_H
#define ZUN_RTP_CORE_DISPATCH_H

#include "Zun/Rtp/Core/RtcpSubpacketFunctions.h"

namespace zun {

// A value without a row, or with an empty one, falls to `unknown`; so a hole in a table is harmless.
template <ZunSizeT kRows>
const RtcpSubpacketFunctions& FindRow(const RtcpSubpacketFunctions (&table)[kRows], ZunInt32 base, ZunInt32 value,
                                      const RtcpSubpacketFunctions& unknown) {
  const ZunUint32 index = static_cast<ZunUint32>(value) - static_cast<ZunUint32>(base);
  return index < kRows && table[index].type != 0 ? table[index] : unknown;
}

// Level says how one level dispatches:
//   static ZunInt32 ValueOf(const ZunRtcpSubpacket* p);              the value that chooses p's row
//   static const RtcpSubpacketFunctions& RowOf(ZunInt32 value);      never fails
//   static bool IsUnknown(ZunInt32 value);
//   static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a);   an empty unknown of this level
template <class Level>
struct Dispatch {
  static const RtcpSubpacketFunctions& RowOfObject(const ZunRtcpSubpacket* p) {
    return Level::RowOf(Level::ValueOf(p));
  }

  // Two unknown values share a row, so one is assigned to the other in place.
  static bool AreEquivalent(ZunInt32 a, ZunInt32 b) { return a == b || (Level::IsUnknown(a) && Level::IsUnknown(b)); }

  // A copy takes the allocator of its source.
  static ZunRtcpSubpacket* ConstructCopy(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {
    return ConstructCopyAllocator(p, o, GetAllocator(o));
  }
  static ZunRtcpSubpacket* ConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a) {
    return RowOfObject(o).construct_copy_allocator(p, o, a);
  }
  static void Destruct(ZunRtcpSubpacket* p) { RowOfObject(p).destruct(p); }
  // The rows take a non-const object but only look at it.
  static ZunAllocator* GetAllocator(const ZunRtcpSubpacket* p) {
    return RowOfObject(p).get_allocator(const_cast<ZunRtcpSubpacket*>(p));
  }
  static ZunBool WritePacket(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad) {
    return RowOfObject(p).write_packet(p, b, pad);
  }
  static ZunSizeT GetPacketLength(const ZunRtcpSubpacket* p) { return RowOfObject(p).get_packet_length(p); }

  // Across kinds the destination is rebuilt with its own allocator, or with the source's when it has none. When
  // that fails it becomes an empty unknown: the caller holds an object that owns nothing either way.
  static ZunRtcpSubpacket* Assign(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {
    if (AreEquivalent(Level::ValueOf(p), Level::ValueOf(o))) return RowOfObject(p).assign(p, o);
    ZunAllocator* a = GetAllocator(p);
    if (a == nullptr) a = GetAllocator(o);
    Destruct(p);
    if (ConstructCopyAllocator(p, o, a) != nullptr) return p;
    Level::ConstructEmpty(p, a);
    return nullptr;
  }

  // Reads a body whose header or contents chose `value`. An object of another kind is rebuilt with `rebuild`.
  static ZunBool AssignFromBuffer(ZunInt32 value, ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                  ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* rebuild) {
    const RtcpSubpacketFunctions& row = Level::RowOf(value);
    if (AreEquivalent(Level::ValueOf(p), value)) return row.assign_from_buffer(p, b, begin, end, pt, count);
    Destruct(p);
    return row.construct_from_buffer(p, b, begin, end, pt, count, rebuild);
  }
};

}  // namespace zun

#endif
