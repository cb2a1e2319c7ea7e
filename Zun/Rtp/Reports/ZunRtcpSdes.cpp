#include "Zun/Rtp/Reports/ZunRtcpSdes.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Utils/ListRefill.h"
#include "Zun/Utils/ShortCopy.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpSdesItem)
ZUN_VECTOR_USE_OWNING(ZunRtcpSdesChunk)

namespace {

constexpr zun::SubpacketIdentity kIdentity = zun::IsSubpacket(ZUN_RTCPSUBPACKET_TYPE_SDES);
using Items = zun::VectorOfZunRtcpSdesItem;
using Chunks = zun::VectorOfZunRtcpSdesChunk;

constexpr ZunSizeT kSourceSize = 4;
constexpr ZunSizeT kItemHeaderSize = 2;  // type and length
constexpr ZunSizeT kEndOfListSize = 1;
constexpr ZunSizeT kMinChunkSize = 8;
constexpr ZunSizeT kMaxChunks = 31;
constexpr ZunSizeT kMaxTextSize = 255;  // what the length byte can say
constexpr ZunRtcpSdesItemType kMaxItemType = 255;

ZunSizeT ItemsLength(const ZunVector_ZunRtcpSdesItem& items) {
  ZunSizeT length = 0;
  for (const ZunRtcpSdesItem* item = items.begin; item != items.end; ++item) {
    length += kItemHeaderSize + item->text.size;
  }
  return length;
}

// The end of a list of items and the zero bytes after it, up to the end of a word.
ZunSizeT ListEndLength(ZunSizeT items_length) {
  return kEndOfListSize + zun::PaddingAfter(items_length + kEndOfListSize);
}

ZunRtcpEncodeReason FindUnencodableIn(const ZunRtcpSdesItem& item) {
  if (item.type <= ZUN_RTCPSDESITEM_TYPE_EndOfList || item.type > kMaxItemType) return ZUN_RTCP_ENCODE_REASON_ITEM_TYPE;
  return item.text.size > kMaxTextSize ? ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG : ZUN_RTCP_ENCODE_REASON_NONE;
}

// A text, or a zero byte, that the string has no room for is left out unnoticed; all else is reported.
bool WriteChunk(zun::BodyWriter& w, const ZunRtcpSdesChunk& chunk, bool must_fit) {
  if (!w.U32(chunk.ssrc)) return false;
  ZunSizeT items_length = 0;
  for (const ZunRtcpSdesItem* item = chunk.items.begin; item != chunk.items.end; ++item) {
    if (must_fit && FindUnencodableIn(*item) != ZUN_RTCP_ENCODE_REASON_NONE) return false;
    const ZunUint32 header = (static_cast<ZunUint32>(item->type) & 0xFF) << 8 | (item->text.size & 0xFF);
    if (!w.U16(static_cast<ZunUint16>(header))) return false;
    (void)w.String(item->text);
    items_length += kItemHeaderSize + item->text.size;
  }
  w.OptionalZeros(ListEndLength(items_length));
  return true;
}

// The usual: all of it finds room, and no text is so long that a call copies it.
[[gnu::always_inline]] inline bool WriteItem(zun::UsualWriter& w, const ZunRtcpSdesItem& item) {
  const ZunRtcpSdesItemType type = item.type;
  const ZunSizeT size = item.text.size;
  if (size > zun::kMaxCallFreeCopy) return false;
  ZunUint8* const octets = w.Block(kItemHeaderSize + size);
  if (octets == nullptr) return false;
  octets[0] = static_cast<ZunUint8>(type & 0xFF);
  octets[1] = static_cast<ZunUint8>(size);
  zun::CopyWords(octets + kItemHeaderSize, item.text.buf, size);
  return true;
}
[[gnu::always_inline]] inline bool WriteChunk(zun::UsualWriter& w, const ZunRtcpSdesChunk& chunk, bool must_fit) {
  if (!w.U32(chunk.ssrc)) return false;
  const ZunRtcpSdesItem* const end = chunk.items.end;
  for (const ZunRtcpSdesItem* item = chunk.items.begin; item != end; ++item) {
    if (must_fit && FindUnencodableIn(*item) != ZUN_RTCP_ENCODE_REASON_NONE) return false;
    if (!WriteItem(w, *item)) return false;
  }
  return w.ZerosToWord(ListEndLength(w.Written()));  // whole words come before the items
}

// The pass over what peers send all the time: as many chunks and items as the object holds, of types that are known,
// with texts that fit where the old ones are. It stores as it goes. Whatever is unusual makes it fail, and is left to
// the careful reader, which begins again.
class UsualPass {
 public:
  UsualPass(zun::UsualReader& r, ZunAllocator* a) : r_(r), allocator_(a) {}

  bool Read(const ZunVector_ZunRtcpSdesChunk& chunks) {
    for (ZunRtcpSdesChunk* chunk = chunks.begin; chunk != chunks.end; ++chunk) {
      if (!ReadChunk(chunk)) return false;
    }
    return r_.AtEnd();
  }
  ZunSizeT items() const { return items_; }

 private:
  bool ReadChunk(ZunRtcpSdesChunk* chunk) {
    if (chunk->items.allocator != allocator_ || !r_.U32(&chunk->ssrc)) return false;
    const ZunSizeT readable = r_.ReadableBytes();
    for (ZunRtcpSdesItem* item = chunk->items.begin; item != chunk->items.end; ++item) {
      if (!ReadItem(item)) return false;
    }
    const ZunSizeT items_length = readable - r_.ReadableBytes();
    const ZunUint8* const list_end = r_.Take(ListEndLength(items_length));
    return items_length != 0 && list_end != nullptr && *list_end == ZUN_RTCPSDESITEM_TYPE_EndOfList;
  }

  bool ReadItem(ZunRtcpSdesItem* item) {
    const ZunUint8* const header = r_.Take(kItemHeaderSize);
    if (header == nullptr) return false;
    const ZunUint8 type = header[0];
    const ZunUint8 length = header[1];
    const ZunUint8* const text = r_.Take(length);
    if (text == nullptr || type == ZUN_RTCPSDESITEM_TYPE_EndOfList || type >= ZUN_RTCPSDESITEM_TYPE_MAX ||
        !IsRoomFor(length, item->text)) {
      return false;
    }
    item->type = type;
    zun::CopyShort(item->text.buf, text, length);
    item->text.size = length;
    item->text.buf[length] = '\0';
    ++items_;
    return true;
  }

  bool IsRoomFor(ZunSizeT size, const ZunString& text) const {
    return text.allocator == allocator_ && text.buf != nullptr && size <= text.capacity;
  }

  zun::UsualReader& r_;
  ZunAllocator* allocator_;
  ZunSizeT items_ = 0;
};

// Storage that is about to be replaced is used again where it has the allocator of the list.
class ChunkReader {
 public:
  ChunkReader(zun::BodyReader& r, ZunAllocator* a) : r_(r), allocator_(a) {}

  bool Read(zun::ListRefill<Chunks>& chunks) {
    ZunRtcpSdesChunk* const chunk =
        chunks.Next([&](const ZunRtcpSdesChunk& old) { return old.items.allocator == allocator_; },
                    [&](ZunRtcpSdesChunk* raw) { ZunRtcpSdesChunkConstructDefault(raw, allocator_); });
    if (chunk == nullptr) return ReadIntoNothing();
    if (!r_.MayHoldEntries(1) || !r_.U32(&chunk->ssrc)) return false;
    const ZunSizeT list_begin = r_.Position();
    if (!ReadItems(&chunk->items)) return false;
    chunks.Keep();
    return r_.SkipBeforeEnd(zun::PaddingAfter(r_.Position() - list_begin));
  }

 private:
  // A chunk that there is no room for still tells which of its items are skipped.
  bool ReadIntoNothing() {
    ZunRtcpSdesChunk chunk;
    ZunRtcpSdesChunkConstructDefault(&chunk, allocator_);
    (void)(r_.U32(&chunk.ssrc) && ReadItems(&chunk.items));
    ZunRtcpSdesChunkDestruct(&chunk);
    return r_.RefuseAllocation();
  }

  // The first entry is an item even when its type is that of the end of the list.
  bool ReadItems(ZunVector_ZunRtcpSdesItem* list) {
    zun::ListRefill<Items> items(list);
    ZunUint8 type = 0;
    if (!r_.U8(&type)) return false;
    do {
      if (!ReadItem(type, items) || !r_.U8(&type)) return false;
    } while (type != ZUN_RTCPSDESITEM_TYPE_EndOfList);
    return true;
  }

  bool ReadItem(ZunUint8 type, zun::ListRefill<Items>& items) {
    ZunUint8 length = 0;
    if (!r_.U8(&length)) return false;
    if (r_.BytesBeforeEnd() < length + kEndOfListSize) return r_.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
    if (type == ZUN_RTCPSDESITEM_TYPE_EndOfList || type >= ZUN_RTCPSDESITEM_TYPE_MAX) {
      ZUN_LOG_INFO_FORMATTED_(ZunLogRtcp_, "ZunRtcpSdesItemsAssignFromBuffer",
                              "Skipping unsupported RTCP SDES item of type %u", static_cast<unsigned>(type));
      return r_.SkipReadable(length);
    }
    if (!r_.MayHoldEntries(1)) return false;
    ZunRtcpSdesItem* const item =
        items.Next([&](const ZunRtcpSdesItem& old) { return old.text.allocator == allocator_; },
                   [&](ZunRtcpSdesItem* raw) { ZunRtcpSdesItemConstructDefault(raw, allocator_); });
    if (item == nullptr) return r_.RefuseAllocation();
    if (!r_.String(&item->text, length)) return false;
    item->type = type;
    items.Keep();
    return true;
  }

  zun::BodyReader& r_;
  ZunAllocator* allocator_;
};

struct Wire {
  static ZunSizeT Length(const ZunRtcpSdes& p) {
    ZunSizeT length = zun::kSubpacketHeaderSize;
    for (const ZunRtcpSdesChunk* chunk = p.chunks.begin; chunk != p.chunks.end; ++chunk) {
      const ZunSizeT items_length = ItemsLength(chunk->items);
      length += kSourceSize + items_length + ListEndLength(items_length);
    }
    return length;
  }

  static constexpr bool kLooksWhileItWrites = true;
  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpSdes& p, ZunRtcpDialect) {
    if (Chunks::Size(&p.chunks) > kMaxChunks) return ZUN_RTCP_ENCODE_REASON_TOO_MANY;
    for (const ZunRtcpSdesChunk* chunk = p.chunks.begin; chunk != p.chunks.end; ++chunk) {
      for (const ZunRtcpSdesItem* item = chunk->items.begin; item != chunk->items.end; ++item) {
        const ZunRtcpEncodeReason reason = FindUnencodableIn(*item);
        if (reason != ZUN_RTCP_ENCODE_REASON_NONE) return reason;
      }
    }
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }

  // Any number of chunks is written, and its low 8 bits are the count: above 31 it spills out of the count field.
  static bool Write(const ZunRtcpSdes& p, zun::BodyWriter& w, bool pad) {
    const bool must_fit = w.out().IsBlock();
    if (must_fit && Chunks::Size(&p.chunks) > kMaxChunks) return false;
    const ZunSizeT length = Length(p);
    const ZunUint8 count = static_cast<ZunUint8>(Chunks::Size(&p.chunks) & 0xFF);
    if (!zun::WriteSubpacketHeader(w, pad, count, p.type, length)) return false;
    for (const ZunRtcpSdesChunk* chunk = p.chunks.begin; chunk != p.chunks.end; ++chunk) {
      if (!WriteChunk(w, *chunk, must_fit)) return false;
    }
    return true;
  }

  // In one pass: the header, which has the length, comes last.
  static bool Write(const ZunRtcpSdes& p, zun::UsualWriter& w, bool pad) {
    const bool must_fit = w.out().IsBlock();
    const ZunSizeT count = Chunks::Size(&p.chunks);
    if (count > kMaxChunks) return false;
    ZunUint8* const header = w.Block(zun::kSubpacketHeaderSize);
    if (header == nullptr) return false;
    for (const ZunRtcpSdesChunk* chunk = p.chunks.begin; chunk != p.chunks.end; ++chunk) {
      if (!WriteChunk(w, *chunk, must_fit)) return false;
    }
    zun::StoreBigEndian(header, zun::SubpacketHeaderWord(pad, static_cast<ZunUint8>(count), p.type, w.Written()));
    return true;
  }

  static bool Read(ZunRtcpSdes* p, zun::UsualReader& r, const zun::Body& body) {
    const ZunUint8 count = body.header.count;
    if (count == 0 || count != Chunks::Size(&p->chunks)) return false;
    UsualPass pass(r, p->chunks.allocator);
    return pass.Read(p->chunks) && r.MayHoldEntries(count + pass.items());
  }
  static bool Read(ZunRtcpSdes* p, zun::BodyReader& r, const zun::Body& body) {
    const ZunUint8 count = body.header.count;
    if (count == 0) {
      if (body.IsDecoded()) Chunks::Clear(&p->chunks);
      return r.NeedEnd();
    }
    // One request for all that the body can hold. Where it is refused, the list grows as far as it is let.
    if (count > Chunks::Capacity(&p->chunks)) {
      const ZunSizeT held = r.BytesBeforeEnd() / kMinChunkSize;
      Chunks::ReserveGrown(&p->chunks, count < held ? count : held);
    }
    zun::ListRefill<Chunks> chunks(&p->chunks);
    ChunkReader reader(r, p->chunks.allocator);
    for (ZunUint8 left = count; left > 0; --left) {
      if (!reader.Read(chunks)) return false;
    }
    return r.NeedEnd();
  }
};

}  // namespace

ZunRtcpSdes* ZunRtcpSdesConstructDefault(ZunRtcpSdes* p, ZunAllocator* a) {
  Chunks::ConstructDefault(&p->chunks, a);
  return kIdentity.Mark(p);
}

ZunBool ZunRtcpSdesSetChunks(ZunRtcpSdes* p, const ZunVector_ZunRtcpSdesChunk* chunks) {
  return Chunks::Assign(&p->chunks, chunks) != nullptr;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpSdes, kIdentity, &ZunRtcpSdes::chunks)
ZUN_RTCP_ROW_DEFINE(ZunRtcpSdes, Wire)
