#include "Zun/Rtp/ZunRtcpPacket.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"
#include "Zun/Rtp/SubpacketDispatch.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSubpacket)
ZUN_VECTOR_DEFINE_OWNING(ZunRtcpPacket)
namespace {

using zun::SubpacketDispatch;
using zun::SubpacketLevel;
using Subpackets = ZunVector_ZunRtcpSubpacket;
using Algorithms = zun::VectorOfZunRtcpSubpacket;

constexpr ZunUint8 kVersion = 2;

// Where one subpacket lies in its datagram, and what its header says.
struct Extent {
  zun::SubpacketHeader header;
  ZunSizeT begin;  // of the body
  ZunSizeT end;
};

bool RtcpSubpacketReadHeader(const ZunString* b, ZunSizeT position, Extent* extent) {
  zun::BodyReader r(b, position, b->size);
  const ZunUint8* const octets = r.Take(zun::kSubpacketHeaderSize);
  if (octets == nullptr || octets[0] >> 6 != kVersion) return false;
  const ZunSizeT body_size = ZunSizeT{4} * ZunUint16FromOctets(octets + 2);
  extent->header = {octets[1], static_cast<ZunUint8>(octets[0] & 0x1F)};
  extent->begin = r.Position();
  extent->end = extent->begin + body_size;
  return r.Has(body_size);
}

bool ReadOver(ZunRtcpSubpacket* p, const ZunString* b, const Extent& extent, ZunAllocator* a) {
  return SubpacketDispatch::AssignFromBuffer(extent.header.type, p, b, extent.begin, extent.end, extent.header.type,
                                             extent.header.count, a) != 0;
}

// How many whole subpackets follow at `position`, as far as their headers tell.
ZunSizeT CountSubpackets(const ZunString* b, ZunSizeT position) {
  ZunSizeT count = 0;
  for (Extent extent; position < b->size && RtcpSubpacketReadHeader(b, position, &extent); ++count) {
    position = extent.end;
  }
  return count;
}

bool ReadFresh(ZunRtcpSubpacket* p, const ZunString* b, const Extent& extent, ZunAllocator* a) {
  const bool read =
      SubpacketLevel::RowOf(extent.header.type)
          .construct_from_buffer(p, b, extent.begin, extent.end, extent.header.type, extent.header.count, a) != 0;
  if (!read) ZunRtcpSubpacketDestruct(p);
  return read;
}

// A subpacket that there is no room for is read all the same, for what is to be logged of it.
bool ReadAppended(Subpackets* subpackets, const ZunString* b, const Extent& extent) {
  if (subpackets->end == subpackets->endBuf) {
    ZunRtcpSubpacket unkept;
    if (ReadFresh(&unkept, b, extent, subpackets->allocator)) ZunRtcpSubpacketDestruct(&unkept);
    return false;
  }
  if (!ReadFresh(subpackets->end, b, extent, subpackets->allocator)) return false;
  ++subpackets->end;
  return true;
}

// Appends the subpackets from `position` on. Room is made once, for as many as the headers tell of.
bool ReadRest(Subpackets* subpackets, const ZunString* b, ZunSizeT position) {
  Algorithms::ReserveGrownOrLess(subpackets, Algorithms::Size(subpackets) + CountSubpackets(b, position));
  while (position < b->size) {
    Extent extent;
    if (!RtcpSubpacketReadHeader(b, position, &extent) || !ReadAppended(subpackets, b, extent)) return false;
    position = extent.end;
  }
  return true;
}

bool WriteRange(const ZunRtcpSubpacket* first, const ZunRtcpSubpacket* last, ZunString* b) {
  for (; first != last; ++first) {
    if (!SubpacketDispatch::WritePacket(first, b, 0)) return false;
  }
  return true;
}

void WarnOfOversize(const ZunRtcpSubpacket* sp, ZunSizeT number, ZunSizeT max_size, ZunSizeT prefix_size) {
  LOG_WARNING_FORMATTED(ZunLogRtcp_, "ZunRtcpPacketGetPartialNetworkPacket",
                        "Partial network packet must violate maxSize %lu: first subpacket %lu (type %u) is %lu bytes "
                        "(after %lu byte prefix)",
                        max_size, number, static_cast<unsigned>(ZunRtcpSubpacketGetType(sp)),
                        ZunRtcpSubpacketGetNetworkPacketLength(sp), prefix_size);
}

// Appends subpackets from `first` on while they fit, the first one whether it fits or not. Returns the number
// behind the last one written; `first` when one could not be.
ZunSizeT WriteWhatFits(const ZunRtcpPacket* p, ZunString* b, ZunSizeT first, ZunSizeT max_size) {
  const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(p);
  ZunSizeT i = first;
  for (; i < count; ++i) {
    const ZunRtcpSubpacket* const sp = ZunRtcpPacketGetSubpacket(p, i);
    const ZunSizeT length = SubpacketDispatch::GetPacketLength(sp);
    if (length == 0) return first;
    if (b->size > max_size || length > max_size - b->size) {
      if (i > first) break;
      WarnOfOversize(sp, i, max_size, b->size);
      return WriteRange(sp, sp + 1, b) ? first + 1 : first;
    }
    if (!WriteRange(sp, sp + 1, b)) return first;
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
  ZunSizeT position = 0;
  ZunRtcpSubpacket* sp = subpackets->begin;
  for (; sp != subpackets->end && position < b->size; ++sp) {
    Extent extent;
    if (!RtcpSubpacketReadHeader(b, position, &extent) || !ReadOver(sp, b, extent, subpackets->allocator)) return 0;
    position = extent.end;
  }
  if (position < b->size) return ReadRest(subpackets, b, position);
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
  return WriteRange(p->subpackets.begin, p->subpackets.end, b);
}

ZunBool ZunRtcpPacketGetPartialNetworkPacket(const ZunRtcpPacket* p, ZunString* b, ZunSizeT firstSubpacket,
                                             ZunSizeT maxSize, const ZunVector_ZunRtcpSubpacket* prefixSubpackets,
                                             ZunSizeT* lastSubpacket) {
  if (ZunRtcpPacketGetSubpacketCount(p) <= firstSubpacket) return 0;
  ZunStringClear(b);
  if (prefixSubpackets != nullptr && !WriteRange(prefixSubpackets->begin, prefixSubpackets->end, b)) return 0;
  const ZunSizeT last = WriteWhatFits(p, b, firstSubpacket, maxSize);
  if (last == firstSubpacket) return 0;
  *lastSubpacket = last;
  return 1;
}
