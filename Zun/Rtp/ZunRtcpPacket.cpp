#include "Zun/Rtp/ZunRtcpPacket.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Datagram.h"
#include "Zun/Rtp/SubpacketDispatch.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSubpacket)
ZUN_VECTOR_USE_OWNING(ZunRtcpPacket)
ZUN_VECTOR_DEFINE(ZunRtcpPacket)

namespace {

using zun::Body;
using zun::Datagram;
using zun::SubpacketDispatch;
using Subpackets = ZunVector_ZunRtcpSubpacket;
using Algorithms = zun::VectorOfZunRtcpSubpacket;

bool ReadOver(ZunRtcpSubpacket* p, const Body& body) {
  return SubpacketDispatch::AssignFromBody(zun::SubpacketLevel::RowOf(body.header.type), p, body,
                                           [](const Body& of, ZunAllocator*) { return of.packet_allocator; });
}

bool ReadFresh(ZunRtcpSubpacket* p, const Body& body) {
  const bool read = zun::SubpacketLevel::RowOf(body.header.type).construct_from_body(p, body, body.packet_allocator);
  if (!read) ZunRtcpSubpacketDestruct(p);
  return read;
}

// A subpacket that there is no room for is read all the same, for what is to be logged of it.
bool ReadAppended(Subpackets* subpackets, const Body& body) {
  if (subpackets->end == subpackets->endBuf) {
    ZunRtcpSubpacket unkept;
    if (ReadFresh(&unkept, body)) ZunRtcpSubpacketDestruct(&unkept);
    return false;
  }
  if (!ReadFresh(subpackets->end, body)) return false;
  ++subpackets->end;
  return true;
}

// Appends the subpackets that are left. Room is made once, for as many as the headers tell of.
bool ReadRest(Subpackets* subpackets, Datagram& datagram) {
  Algorithms::ReserveGrownOrLess(subpackets, Algorithms::Size(subpackets) + zun::CountSubpackets(datagram));
  while (!datagram.AtEnd()) {
    if (datagram.RtcpSubpacketReadHeader() != ZUN_RTCP_DECODE_REASON_NONE || !ReadAppended(subpackets, datagram.body()))
      return false;
  }
  return true;
}

bool WriteRange(const ZunRtcpSubpacket* first, const ZunRtcpSubpacket* last, zun::Output& out) {
  for (; first != last; ++first) {
    if (!SubpacketDispatch::Write(first, out, false)) return false;
  }
  return true;
}

void WarnOfOversize(const ZunRtcpSubpacket* sp, ZunSizeT number, ZunSizeT max_size, ZunSizeT prefix_size) {
  ZUN_LOG_WARNING_FORMATTED_(ZunLogRtcp_, "ZunRtcpPacketGetPartialNetworkPacket",
                             "Partial network packet must violate maxSize %zu: first subpacket %zu (type %u) is %zu "
                             "bytes (after %zu byte prefix)",
                             max_size, number, static_cast<unsigned>(ZunRtcpSubpacketGetType(sp)),
                             ZunRtcpSubpacketGetNetworkPacketLength(sp), prefix_size);
}

// Appends subpackets from `first` on while they fit, the first one whether it fits or not. Returns the number
// after the last one written; `first` when one could not be.
ZunSizeT WriteWhatFits(const ZunRtcpPacket* p, zun::Output& out, ZunSizeT first, ZunSizeT max_size) {
  const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(p);
  ZunSizeT i = first;
  for (; i < count; ++i) {
    const ZunRtcpSubpacket* const sp = ZunRtcpPacketGetSubpacket(p, i);
    const ZunSizeT length = SubpacketDispatch::GetPacketLength(sp);
    if (length == 0) return first;
    const ZunSizeT size = out.Size();
    if (size > max_size || length > max_size - size) {
      if (i > first) break;
      WarnOfOversize(sp, i, max_size, size);
      return SubpacketDispatch::Write(sp, out, false) ? first + 1 : first;
    }
    if (!SubpacketDispatch::Write(sp, out, false)) return first;
  }
  return i;
}

}  // namespace

ZunRtcpPacket* ZunRtcpPacketConstructFromSubpackets(ZunRtcpPacket* p, const ZunVector_ZunRtcpSubpacket* v,
                                                    ZunAllocator* a) {
  if (v->allocator == a) return ZunVector_ZunRtcpSubpacketConstructCopy(&p->subpackets, v) != nullptr ? p : nullptr;
  ZunRtcpPacketConstructDefault(p, a);
  if (ZunRtcpPacketSetSubpackets(p, v)) return p;
  ZunRtcpPacketDestruct(p);
  return nullptr;
}

ZunRtcpPacket* ZunRtcpPacketConstructFromNetworkPacket(ZunRtcpPacket* p, const ZunString* b, ZunAllocator* a) {
  ZunRtcpPacketConstructDefault(p, a);
  if (ZunRtcpPacketParseNetworkPacket(p, b)) return p;
  ZunRtcpPacketDestruct(p);
  return nullptr;
}

ZunRtcpPacket* ZunRtcpPacketConstructCopy(ZunRtcpPacket* p, const ZunRtcpPacket* o) {
  return ZunVector_ZunRtcpSubpacketConstructCopy(&p->subpackets, &o->subpackets) != nullptr ? p : nullptr;
}

ZunRtcpPacket* ZunRtcpPacketAssign(ZunRtcpPacket* p, const ZunRtcpPacket* o) {
  return ZunVector_ZunRtcpSubpacketAssign(&p->subpackets, &o->subpackets) != nullptr ? p : nullptr;
}

void ZunRtcpPacketDestruct(ZunRtcpPacket* p) { ZunVector_ZunRtcpSubpacketDestruct(&p->subpackets); }

ZunBool ZunRtcpPacketSetSubpackets(ZunRtcpPacket* p, const ZunVector_ZunRtcpSubpacket* v) {
  return !ZunVector_ZunRtcpSubpacketEmpty(v) && ZunVector_ZunRtcpSubpacketAssign(&p->subpackets, v) != nullptr;
}

ZunBool ZunRtcpPacketSetSubpacketCount(ZunRtcpPacket* p, ZunSizeT count) {
  if (count < ZunRtcpPacketGetSubpacketCount(p))
    return ZunVector_ZunRtcpSubpacketResize(&p->subpackets, count, nullptr);
  return ZunVector_ZunRtcpSubpacketReserve(&p->subpackets, count);
}

ZunBool ZunRtcpPacketSetSubpacket(ZunRtcpPacket* p, ZunSizeT n, const ZunRtcpSubpacket* sp) {
  const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(p);
  if (n > count) return 0;
  if (n == count) return ZunRtcpPacketAppendSubpacket(p, sp);
  return ZunRtcpSubpacketAssign(ZunVector_ZunRtcpSubpacketAt(&p->subpackets, n), sp) != nullptr;
}

ZunBool ZunRtcpPacketAppendSubpacket(ZunRtcpPacket* p, const ZunRtcpSubpacket* sp) {
  return ZunVector_ZunRtcpSubpacketPushBack(&p->subpackets, sp);
}

ZunBool ZunRtcpPacketAppendSubpackets(ZunRtcpPacket* p, const ZunVector_ZunRtcpSubpacket* spv) {
  return ZunVector_ZunRtcpSubpacketInsertRange(&p->subpackets, p->subpackets.end, spv->begin, spv->end);
}

ZunBool ZunRtcpPacketParseNetworkPacket(ZunRtcpPacket* p, const ZunString* b) {
  if (ZunStringEmpty(b)) return 0;
  Subpackets* const subpackets = &p->subpackets;
  Body whole = zun::BodyIn(b, 0, 0, {});
  whole.packet_allocator = subpackets->allocator;
  Datagram datagram(whole);
  ZunRtcpSubpacket* sp = subpackets->begin;
  for (; sp != subpackets->end && !datagram.AtEnd(); ++sp) {
    if (datagram.RtcpSubpacketReadHeader() != ZUN_RTCP_DECODE_REASON_NONE || !ReadOver(sp, datagram.body())) return 0;
  }
  if (!datagram.AtEnd()) return ReadRest(subpackets, datagram);
  Algorithms::TruncateAt(subpackets, sp);
  return 1;
}

ZunSizeT ZunRtcpPacketGetNetworkPacketLength(const ZunRtcpPacket* p) {
  ZunSizeT total = 0;
  for (const ZunRtcpSubpacket* sp = p->subpackets.begin; sp != p->subpackets.end; ++sp) {
    const ZunSizeT length = SubpacketDispatch::GetPacketLength(sp);
    if (length == 0) return 0;
    total += length;
  }
  return total;
}

ZunBool ZunRtcpPacketGetNetworkPacket(const ZunRtcpPacket* p, ZunString* b) {
  if (ZunVector_ZunRtcpSubpacketEmpty(&p->subpackets)) return 0;
  ZunStringClear(b);
  zun::Output out(b);
  return WriteRange(p->subpackets.begin, p->subpackets.end, out);
}

ZunBool ZunRtcpPacketGetPartialNetworkPacket(const ZunRtcpPacket* p, ZunString* b, ZunSizeT firstSubpacket,
                                             ZunSizeT maxSize, const ZunVector_ZunRtcpSubpacket* prefixSubpackets,
                                             ZunSizeT* lastSubpacket) {
  if (ZunRtcpPacketGetSubpacketCount(p) <= firstSubpacket) return 0;
  ZunStringClear(b);
  zun::Output out(b);
  if (prefixSubpackets != nullptr && !WriteRange(prefixSubpackets->begin, prefixSubpackets->end, out)) return 0;
  const ZunSizeT last = WriteWhatFits(p, out, firstSubpacket, maxSize);
  if (last == firstSubpacket) return 0;
  *lastSubpacket = last;
  return 1;
}
