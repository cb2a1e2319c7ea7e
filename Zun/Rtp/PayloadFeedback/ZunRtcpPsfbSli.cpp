#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbSli.h"

#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpPsfbSliItem)
ZUN_VECTOR_DEFINE(ZunRtcpPsfbSliItem)
ZUN_PLAIN_DEFINE(ZunRtcpPsfbSliItem)

namespace {

using Items = zun::VectorOfZunRtcpPsfbSliItem;

constexpr zun::FeedbackIdentity kIdentity = zun::IsPsfb(ZUN_RTCPPSFB_TYPE_SLI);

constexpr ZunUint16 kMaxSettableMblock = 2047;
constexpr ZunUint8 kMaxPictureId = 63;

// One item is a word: first (13 bits), number (13 bits), picture ID (6 bits).
constexpr ZunSizeT kItemSize = 4;
constexpr ZunUint32 kMblockMask = 0x1FFF;
constexpr ZunUint32 kPictureIdMask = 0x3F;
constexpr int kFirstShift = 19;
constexpr int kNumberShift = 6;

void Encode(const ZunRtcpPsfbSliItem& item, ZunUint8* octets) {
  const ZunUint32 word = (item.lost_mblock & kMblockMask) << kFirstShift |
                         (item.num_lost_mblocks & kMblockMask) << kNumberShift | (item.picture_id & kPictureIdMask);
  zun::StoreBigEndian(octets, word);
}

void Decode(const ZunUint8* octets, ZunRtcpPsfbSliItem* item) {
  const ZunUint32 word = ZunUint32FromOctets(octets);
  item->lost_mblock = static_cast<ZunUint16>(word >> kFirstShift);
  item->num_lost_mblocks = static_cast<ZunUint16>(word >> kNumberShift & kMblockMask);
  item->picture_id = static_cast<ZunUint8>(word & kPictureIdMask);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbSli& p) {
    return zun::kFeedbackHeaderSize + kItemSize * Items::Size(&p.items);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpPsfbSli& p, ZunRtcpDialect) {
    for (const ZunRtcpPsfbSliItem* x = p.items.begin; x != p.items.end; ++x) {
      if (x->lost_mblock > kMblockMask || x->num_lost_mblocks > kMblockMask || x->picture_id > kPictureIdMask) {
        return ZUN_RTCP_ENCODE_REASON_VALUE;
      }
    }
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }

  template <class Writer>
  static bool Write(const ZunRtcpPsfbSli& p, Writer& w, bool pad) {
    const ZunSizeT length = Length(p);
    return zun::WriteFeedbackHeader(w, pad, kIdentity, p, length) && zun::WriteEntries<kItemSize>(w, p.items, Encode);
  }

  template <class Reader>
  static bool Read(ZunRtcpPsfbSli* p, Reader& r, const zun::Body&) {
    if (!zun::ReadFeedbackSources(r, p) || !zun::ReadEntries<kItemSize, Items>(r, &p->items, Decode)) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemConstructFull(ZunRtcpPsfbSliItem* p, ZunUint16 firstLostMblock,
                                                    ZunUint16 numLostMblocks, ZunUint8 pictureId, ZunAllocator*) {
  *p = {firstLostMblock, numLostMblocks, pictureId};
  return p;
}

ZunBool ZunRtcpPsfbSliItemSetFirstLostMblock(ZunRtcpPsfbSliItem* p, ZunUint16 firstLostMblock) {
  if (firstLostMblock > kMaxSettableMblock) return 0;
  p->lost_mblock = firstLostMblock;
  return 1;
}

ZunBool ZunRtcpPsfbSliItemSetNumLostMblocks(ZunRtcpPsfbSliItem* p, ZunUint16 numLostMblocks) {
  if (numLostMblocks > kMaxSettableMblock) return 0;
  p->num_lost_mblocks = numLostMblocks;
  return 1;
}

ZunBool ZunRtcpPsfbSliItemSetPictureId(ZunRtcpPsfbSliItem* p, ZunUint8 pictureId) {
  if (pictureId > kMaxPictureId) return 0;
  p->picture_id = pictureId;
  return 1;
}

ZunRtcpPsfbSli* ZunRtcpPsfbSliConstructDefault(ZunRtcpPsfbSli* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  Items::ConstructDefault(&p->items, a);
  return p;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpPsfbSli, kIdentity, &ZunRtcpPsfbSli::items)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbSli, Wire)
