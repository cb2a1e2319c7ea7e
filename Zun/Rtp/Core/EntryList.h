// Reading and writing the lists of fixed-size entries that many subpackets hold.
#ifndef ZUN_RTP_CORE_ENTRYLIST_H
#define ZUN_RTP_CORE_ENTRYLIST_H

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/BodyWriter.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/VectorAlgorithms.h"

namespace zun {

// Makes room in an empty list and returns for how many of `count` entries there is some.
template <class Algorithms>
ZunSizeT ReserveEntries(typename Algorithms::Vector* list, ZunSizeT count) {
  if (Algorithms::ReserveGrownOrLess(list, count)) return count;
  const ZunSizeT room = Algorithms::Capacity(list);
  return room < count ? room : count;
}

// Makes `list`, which has room, the entries of `count` runs of octets.
template <ZunSizeT kEntrySize, class Vector, class Decode>
[[gnu::always_inline]] inline void DecodeEntries(const ZunUint8* octets, ZunSizeT count, Vector* list, Decode decode) {
  auto* entry = list->begin;
  for (ZunSizeT i = 0; i < count; ++i, octets += kEntrySize) decode(octets, entry++);
  list->end = entry;
}

// Replaces the plain elements of `list` by what decode(octets, &entry) makes of each of the next `count` runs of
// kEntrySize octets. It stores the fields of an entry one by one: an entry made elsewhere and copied would stall the
// loop. When the body or the storage does not reach, what does is kept and the read fails; an entry that there was no
// room for has been read.
template <ZunSizeT kEntrySize, class Algorithms, class Decode>
bool ReadCountedEntries(BodyReader& r, typename Algorithms::Vector* list, ZunSizeT count, Decode decode) {
  Algorithms::Clear(list);  // so that growth copies nothing
  const ZunSizeT whole = r.ReadableBytes() / kEntrySize;
  const ZunSizeT held = whole < count ? whole : count;
  if (!r.MayHoldEntries(held)) return false;
  const ZunSizeT room = ReserveEntries<Algorithms>(list, held);
  const ZunUint8* const octets = room == 0 ? nullptr : r.Take(room * kEntrySize);
  DecodeEntries<kEntrySize>(octets, room, list, decode);
  if (room < held) {
    r.SkipReadable(kEntrySize);
    return r.RefuseAllocation();
  }
  return held == count || r.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
}

// The usual: all entries are there, and there is room for them.
template <ZunSizeT kEntrySize, class Algorithms, class Decode>
bool ReadCountedEntries(UsualReader& r, typename Algorithms::Vector* list, ZunSizeT count, Decode decode) {
  if (count > r.ReadableBytes() / kEntrySize || !Algorithms::HasStorage(list, count * sizeof(typename Algorithms::E)) ||
      !r.MayHoldEntries(count)) {
    return false;
  }
  DecodeEntries<kEntrySize>(r.Take(count * kEntrySize), count, list, decode);
  return true;
}

// The same with all entries up to the end. A remainder makes the read fail; the whole entries in front of it are kept.
template <ZunSizeT kEntrySize, class Algorithms, class Reader, class Decode>
bool ReadEntries(Reader& r, typename Algorithms::Vector* list, Decode decode) {
  return ReadCountedEntries<kEntrySize, Algorithms>(r, list, r.ReadableBytes() / kEntrySize, decode) &&
         (r.AtEnd() || r.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT));  // an entry is cut off
}

// Writes every element of `list` as the kEntrySize octets that encode(entry, octets) stores.
template <ZunSizeT kEntrySize, class Writer, class Vector, class Encode>
[[gnu::always_inline]] inline bool WriteEntries(Writer& w, const Vector& list, Encode encode) {
  const auto* entry = list.begin;
  const auto* const last = list.end;
  const ZunSizeT count = static_cast<ZunSizeT>(last - entry);
  if (ZunUint8* octets = w.Block(count * kEntrySize)) {
    for (; entry != last; ++entry, octets += kEntrySize) encode(*entry, octets);
    return true;
  }
  if constexpr (Writer::kIsCareful) {
    for (; entry != last; ++entry) {
      ZunUint8 one[kEntrySize];
      encode(*entry, one);
      if (!w.Octets(one, kEntrySize)) return false;
    }
    return true;
  } else {
    return false;
  }
}

// A list of SSRCs.
inline constexpr ZunSizeT kSourceIdSize = 4;
inline void DecodeSourceId(const ZunUint8* octets, ZunRtpSourceId* source) { *source = ZunUint32FromOctets(octets); }
inline void EncodeSourceId(ZunRtpSourceId source, ZunUint8* octets) { StoreBigEndian(octets, source); }

}  // namespace zun

#endif
