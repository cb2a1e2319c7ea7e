#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbSli.h"

#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpPsfbSliItem)

namespace {

using Items = zun::VectorOfZunRtcpPsfbSliItem;
using OwnedItems = zun::OwnedMember<&ZunRtcpPsfbSli::items, Items::ConstructCopy, Items::Assign>;

constexpr ZunUint16 kMaxSettableMblock = 2047;
constexpr ZunUint8 kMaxPictureId = 63;

// One item is a word: first (13 bits), number (13 bits), picture ID (6 bits).
constexpr ZunSizeT kItemSize = 4;
constexpr ZunUint32 kMblockMask = 0x1FFF;
constexpr ZunUint32 kPictureIdMask = 0x3F;
constexpr int kFirstShift = 19;
constexpr int kNumberShift = 6;

ZunUint32 Encode(const ZunRtcpPsfbSliItem& item) {
  return (item.lost_mblock & kMblockMask) << kFirstShift | (item.num_lost_mblocks & kMblockMask) << kNumberShift |
         (item.picture_id & kPictureIdMask);
}

void Decode(const ZunUint8* octets, ZunRtcpPsfbSliItem* item) {
  const ZunUint32 word = ZunUint32FromOctets(octets);
  item->lost_mblock = static_cast<ZunUint16>(word >> kFirstShift);
  item->num_lost_mblocks = static_cast<ZunUint16>(word >> kNumberShift & kMblockMask);
  item->picture_id = static_cast<ZunUint8>(word & kPictureIdMask);
}

void SetHead(ZunRtcpPsfbSli* p, ZunRtpSourceId sender, ZunRtpSourceId source) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, ZUN_RTCPPSFB_TYPE_SLI, sender, source);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbSli& p) {
    return zun::kFeedbackHeaderSize + kItemSize * Items::Size(&p.items);
  }

  static bool Write(const ZunRtcpPsfbSli& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(b, length);
    if (!zun::WriteFeedbackHeader(w, pad, ZUN_RTCPPSFB_TYPE_SLI, ZUN_RTCPSUBPACKET_TYPE_PSFB, length, p.sender,
                                  p.source)) {
      return false;
    }
    for (const ZunRtcpPsfbSliItem* item = p.items.begin; item != p.items.end; ++item) {
      if (!w.U32(Encode(*item))) return false;
    }
    return true;
  }

  static bool Read(ZunRtcpPsfbSli* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadFeedbackSources(r, p) || !zun::ReadEntries<kItemSize, Items>(r, &p->items, Decode)) return false;
    SetHead(p, p->sender, p->source);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemConstructFull(ZunRtcpPsfbSliItem* p, ZunUint16 firstLostMblock,
                                                    ZunUint16 numLostMblocks, ZunUint8 pictureId, ZunAllocator*) {
  *p = {firstLostMblock, numLostMblocks, pictureId};
  return p;
}

ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemConstructCopy(ZunRtcpPsfbSliItem* p, const ZunRtcpPsfbSliItem* o) {
  *p = *o;
  return p;
}

ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemAssign(ZunRtcpPsfbSliItem* p, const ZunRtcpPsfbSliItem* o) {
  *p = *o;
  return p;
}

void ZunRtcpPsfbSliItemDestruct(ZunRtcpPsfbSliItem*) {}

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
  SetHead(p, 0, 0);
  Items::ConstructDefault(&p->items, a);
  return p;
}

ZunRtcpPsfbSli* ZunRtcpPsfbSliConstructCopy(ZunRtcpPsfbSli* p, const ZunRtcpPsfbSli* o) {
  return OwnedItems::ConstructCopy(p, o);
}

ZunRtcpPsfbSli* ZunRtcpPsfbSliAssign(ZunRtcpPsfbSli* p, const ZunRtcpPsfbSli* o) { return OwnedItems::Assign(p, o); }

void ZunRtcpPsfbSliDestruct(ZunRtcpPsfbSli* p) { Items::Destruct(&p->items); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbSli, Wire)
