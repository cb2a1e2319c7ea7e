#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbNack.h"

#include <bit>

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbNackSeqMap)
ZUN_VECTOR_USE_PLAIN(ZunUint16)

namespace {

using SeqMaps = zun::VectorOfZunRtcpRtpfbNackSeqMap;

constexpr zun::FeedbackIdentity kIdentity = zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_NACK);

constexpr ZunSizeT kSeqMapSize = 4;
constexpr ZunUint32 kMaxDistance = 16;  // from a map's base to the last number that it can hold

// From the base of `map` up to `seqNumber`. The difference is not taken modulo 65536, so for any number below the
// base it is far above kMaxDistance.
ZunUint32 Distance(const ZunRtcpRtpfbNackSeqMap& map, ZunUint16 seqNumber) {
  return static_cast<ZunUint32>(seqNumber) - map.seqNumber;
}

// The bit of the number at `distance` (1 to kMaxDistance) from the base.
ZunUint16 BitAt(ZunUint32 distance) { return static_cast<ZunUint16>(1U << (distance - 1)); }

// The first map that can hold `seqNumber`, or null.
ZunRtcpRtpfbNackSeqMap* FindSeqMap(const ZunRtcpRtpfbNack* p, ZunUint16 seqNumber) {
  for (ZunRtcpRtpfbNackSeqMap* map = p->seqMaps.begin; map != p->seqMaps.end; ++map) {
    if (Distance(*map, seqNumber) <= kMaxDistance) return map;
  }
  return nullptr;
}

// Moves the base on to the next number of the map, which must have one.
void DropBase(ZunRtcpRtpfbNackSeqMap* map) {
  const int distance = std::countr_zero(map->map) + 1;
  map->seqNumber = static_cast<ZunUint16>(map->seqNumber + distance);
  map->map = static_cast<ZunUint16>(map->map >> distance);
}

template <class Visit>
void ForEachSeqNumber(const ZunRtcpRtpfbNack* p, Visit visit) {
  for (const ZunRtcpRtpfbNackSeqMap* map = p->seqMaps.begin; map != p->seqMaps.end; ++map) {
    visit(map->seqNumber);
    for (ZunUint32 bits = map->map; bits != 0; bits &= bits - 1) {
      visit(static_cast<ZunUint16>(map->seqNumber + std::countr_zero(bits) + 1));
    }
  }
}

void EncodeSeqMap(const ZunRtcpRtpfbNackSeqMap& map, ZunUint8* octets) {
  zun::StoreBigEndian(octets, map.seqNumber);
  zun::StoreBigEndian(octets + 2, map.map);
}

void DecodeSeqMap(const ZunUint8* octets, ZunRtcpRtpfbNackSeqMap* map) {
  map->seqNumber = ZunUint16FromOctets(octets);
  map->map = ZunUint16FromOctets(octets + 2);
}

bool WriteSeqMaps(zun::BodyWriter& w, const ZunVector_ZunRtcpRtpfbNackSeqMap& maps) {
  const ZunSizeT count = SeqMaps::Size(&maps);
  if (count > 1) {
    ZUN_LOG_DEBUG_(ZunLogRtcp_, "ZunRtcpRtpfbNackWritePacket",
                   "Writing Generic NACK subpacket containing multiple sequence number/map fields.  Old versions of "
                   "the code could not produce or parse such subpackets.  Make sure receiving endpoint has support.");
  }
  return count != 0 && zun::WriteEntries<kSeqMapSize>(w, maps, EncodeSeqMap);
}

// A second map is worth a message as soon as it is there, whether it finds room or not.
template <class Reader>
bool ReadSeqMaps(Reader& r, ZunVector_ZunRtcpRtpfbNackSeqMap* maps) {
  const bool has_second = r.HasReadable(2 * kSeqMapSize);
  const bool read = zun::ReadEntries<kSeqMapSize, SeqMaps>(r, maps, DecodeSeqMap);
  if (!Reader::kIsCareful && !read) return false;
  if (has_second && SeqMaps::Size(maps) != 0) {
    ZUN_LOG_DEBUG_(ZunLogRtcp_, "ZunRtcpRtpfbNackAssignFromBuffer",
                   "Generic NACK subpacket contains multiple sequence number/map fields.");
  }
  return read;
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbNack& p) {
    return zun::kFeedbackHeaderSize + kSeqMapSize * SeqMaps::Size(&p.seqMaps);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpRtpfbNack& p, ZunRtcpDialect) {
    return SeqMaps::Size(&p.seqMaps) != 0 ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_NO_ENTRIES;
  }

  static bool Write(const ZunRtcpRtpfbNack& p, zun::Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(out, length);
    if (zun::WriteFeedbackHeader(w, pad, kIdentity, p, length) && WriteSeqMaps(w, p.seqMaps)) return true;
    if (!out.IsBlock()) {
      ZUN_LOG_ERROR_(ZunLogRtcp_, "ZunRtcpRtpfbNackWritePacket", "Unable to write Generic NACK subpacket");
    }
    return false;
  }

  template <class Reader>
  static bool Read(ZunRtcpRtpfbNack* p, Reader& r, const zun::Body&) {
    SeqMaps::Clear(&p->seqMaps);
    if (!zun::ReadFeedbackSources(r, p) || !r.NeedEntry() || !r.NeedReadable(kSeqMapSize) ||
        !ReadSeqMaps(r, &p->seqMaps)) {
      if constexpr (Reader::kIsCareful) {
        ZUN_LOG_ERROR_(ZunLogRtcp_, "ZunRtcpRtpfbNackAssignFromBuffer", "Unable to parse Generic NACK subpacket");
      }
      return false;
    }
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbNack* ZunRtcpRtpfbNackConstruct(ZunRtcpRtpfbNack* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                            ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, sender, source);
  SeqMaps::ConstructDefault(&p->seqMaps, a);
  return p;
}

ZunRtcpRtpfbNack* ZunRtcpRtpfbNackConstructDefault(ZunRtcpRtpfbNack* p, ZunAllocator* a) {
  return ZunRtcpRtpfbNackConstruct(p, 0, 0, a);
}

ZunBool ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(const ZunRtcpRtpfbNack* p, ZunUint16 seqNumber) {
  return FindSeqMap(p, seqNumber) == nullptr;
}

ZunBool ZunRtcpRtpfbNackAddSeqNumber(ZunRtcpRtpfbNack* p, ZunUint16 seqNumber) {
  ZunRtcpRtpfbNackSeqMap* const map = FindSeqMap(p, seqNumber);
  if (map == nullptr) {
    const ZunRtcpRtpfbNackSeqMap fresh = {seqNumber, 0};
    return SeqMaps::PushBack(&p->seqMaps, &fresh);
  }
  const ZunUint32 distance = Distance(*map, seqNumber);
  if (distance != 0) map->map |= BitAt(distance);
  return 1;
}

void ZunRtcpRtpfbNackRemoveSeqNumber(ZunRtcpRtpfbNack* p, ZunUint16 seqNumber) {
  // The count is looked at again each time, and an erasure moves the next map into the place that is done with.
  for (ZunSizeT i = 0; i < SeqMaps::Size(&p->seqMaps); ++i) {
    ZunRtcpRtpfbNackSeqMap* const map = p->seqMaps.begin + i;
    const ZunUint32 distance = Distance(*map, seqNumber);
    if (distance > kMaxDistance) continue;
    if (distance != 0) {
      map->map &= static_cast<ZunUint16>(~BitAt(distance));
    } else if (map->map != 0) {
      DropBase(map);
    } else {
      SeqMaps::Erase(&p->seqMaps, map);
    }
  }
}

void ZunRtcpRtpfbNackGenerateSeqNumbers(const ZunRtcpRtpfbNack* p, ZunRtcpRtpfbNackSeqNumberCallback cb,
                                        ZunVoidPtr data) {
  ForEachSeqNumber(p, [=](ZunUint16 seqNumber) { cb(p, seqNumber, data); });
}

ZunSizeT ZunRtcpRtpfbNackGetNumOfSeqNumbers(const ZunRtcpRtpfbNack* p) {
  ZunSizeT count = 0;
  for (const ZunRtcpRtpfbNackSeqMap* map = p->seqMaps.begin; map != p->seqMaps.end; ++map) {
    count += 1 + static_cast<ZunSizeT>(std::popcount(map->map));
  }
  return count;
}

void ZunRtcpRtpfbNackGetSeqNumbers(const ZunRtcpRtpfbNack* p, ZunVector_ZunUint16* v) {
  zun::VectorOfZunUint16::Clear(v);
  ForEachSeqNumber(p, [=](ZunUint16 seqNumber) { zun::VectorOfZunUint16::PushBack(v, &seqNumber); });
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpRtpfbNack, kIdentity, &ZunRtcpRtpfbNack::seqMaps)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbNack, Wire)
