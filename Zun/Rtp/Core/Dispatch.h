// The one dispatch mechanism. The subpacket, each feedback envelope and the application-layer envelope use it,
// each with its own table.
#ifndef ZUN_RTP_CORE_DISPATCH_H
#define ZUN_RTP_CORE_DISPATCH_H

#include "Zun/Rtp/Core/RtcpSubpacketFunctions.h"

namespace zun {

// Level says how one level dispatches:
//   static ZunInt32 ValueOf(const ZunRtcpSubpacket* p);              the value that chooses p's row
//   static const RtcpSubpacketFunctions& RowOf(ZunInt32 value);      never fails
//   static void ConstructEmpty(ZunRtcpSubpacket* p, ZunAllocator* a);   an empty unknown of this level
template <class Level>
struct Dispatch {
  static const RtcpSubpacketFunctions& RowOfObject(const ZunRtcpSubpacket* p) {
    return Level::RowOf(Level::ValueOf(p));
  }

  // Values that one row serves are one kind: an object of it is assigned to, and read over, in place. All unknown
  // values share a row.
  static bool AreEquivalent(ZunInt32 a, ZunInt32 b) { return &Level::RowOf(a) == &Level::RowOf(b); }

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
  static bool Write(const ZunRtcpSubpacket* p, Output& out, bool pad) { return RowOfObject(p).write(p, out, pad); }
  static ZunSizeT EncodedLength(const ZunRtcpSubpacket* p, ZunSizeT begin, ZunRtcpDialect dialect) {
    return RowOfObject(p).encoded_length(p, begin, dialect);
  }
  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpSubpacket* p, ZunRtcpDialect dialect) {
    return RowOfObject(p).find_unencodable(p, dialect);
  }
  static ZunSizeT GetPacketLength(const ZunRtcpSubpacket* p) { return RowOfObject(p).get_packet_length(p); }

  // Across kinds the destination is rebuilt with its own allocator, or with the source's when it has none. When
  // that fails it becomes an empty unknown: the caller holds an object that owns nothing either way.
  static ZunRtcpSubpacket* Assign(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {
    const RtcpSubpacketFunctions& row = RowOfObject(p);
    if (&row == &RowOfObject(o)) return row.assign(p, o);
    ZunAllocator* a = row.get_allocator(p);
    if (a == nullptr) a = GetAllocator(o);
    row.destruct(p);
    if (ConstructCopyAllocator(p, o, a) != nullptr) return p;
    Level::ConstructEmpty(p, a);
    return nullptr;
  }

  // Reads a body whose header or contents chose `row` over an object. One of another kind is rebuilt with the
  // allocator that rebuild(body, allocator of the object) gives.
  template <class Rebuild>
  static bool AssignFromBody(const RtcpSubpacketFunctions& row, ZunRtcpSubpacket* p, const Body& body,
                             Rebuild rebuild) {
    // What is of the same known value as the last time, as in place nearly everything is, needs no look at the table.
    if (row.type != 0 && row.type == Level::ValueOf(p)) [[likely]]
      return row.assign_from_body(p, body);
    return AssignOfAnother(row, p, body, rebuild);
  }

 private:
  template <class Rebuild>
  [[gnu::noinline]] static bool AssignOfAnother(const RtcpSubpacketFunctions& row, ZunRtcpSubpacket* p,
                                                const Body& body, Rebuild rebuild) {
    const RtcpSubpacketFunctions& old = RowOfObject(p);
    if (&row == &old) return row.assign_from_body(p, body);
    ZunAllocator* const a = rebuild(body, old.get_allocator(p));
    old.destruct(p);
    return row.construct_from_body(p, body, a);
  }
};

}  // namespace zun

#endif
