#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbLir.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Utils/ListRefill.h"

ZUN_VECTOR_USE_OWNING(ZunRtcpPsfbAfbLirEntry)
ZUN_VECTOR_DEFINE(ZunRtcpPsfbAfbLirEntry)
ZUN_OWNING_DEFINE(ZunRtcpPsfbAfbLirEntry, &ZunRtcpPsfbAfbLirEntry::layerData)

namespace {

using Entry = ZunRtcpPsfbAfbLirEntry;
using Entries = zun::VectorOfZunRtcpPsfbAfbLirEntry;

constexpr zun::AfbIdentity kIdentity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_LIR);

constexpr ZunUint8 kMaxPayloadType = 127;
constexpr ZunSizeT kWrittenEntryHeadSize = 6;
constexpr ZunSizeT kReadEntryHeadSize = 8;
constexpr ZunSizeT kLengthOffset = 6;      // in the head that is read
constexpr ZunSizeT kAnnouncedLength = 24;  // whatever the entries

ZunSizeT PaddedSize(ZunSizeT size) { return size + zun::PaddingAfter(size); }

// The whole message with heads of `head_size` in front of the layer data.
ZunSizeT LengthWithHeads(const ZunRtcpPsfbAfbLir& p, ZunSizeT head_size) {
  ZunSizeT length = zun::kAfbHeaderSize;
  for (const Entry* x = p.fci.begin; x != p.fci.end; ++x) length += head_size + PaddedSize(x->layerData.size);
  return length;
}

void ConstructEmpty(Entry* p, ZunAllocator* a) {
  *p = {};
  ZunStringConstructDefault(&p->layerData, a);
}

bool WriteEntry(zun::BodyWriter& w, const Entry& entry) {
  const ZunSizeT size = entry.layerData.size;
  return w.Fields<kWrittenEntryHeadSize>([&entry](zun::FieldWriter& f) {
    f.U32(entry.ssrc);
    f.U8(entry.seqno);
    f.U8(entry.payloadType);
  }) && w.String(entry.layerData) &&
         w.Zeros(zun::PaddingAfter(size));
}

// Zero to three octets that nobody looks at.
bool SkipPadding(zun::BodyReader& r, ZunUint16 size) { return r.SkipBeforeEnd(zun::PaddingAfter(size)); }

// Entries of which every octet is there, up to the first that is cut off.
ZunSizeT CountWholeEntries(zun::BodyReader r) {
  ZunSizeT count = 0;
  while (const ZunUint8* const head = r.Take(kReadEntryHeadSize)) {
    const ZunUint16 size = ZunUint16FromOctets(head + kLengthOffset);
    if (!r.SkipReadable(size) || !SkipPadding(r, size)) break;
    ++count;
  }
  return count;
}

bool ReadEntry(zun::BodyReader& r, Entry* entry) {
  ZunUint16 size;
  return r.U32(&entry->ssrc) && r.U8(&entry->seqno) && r.U8(&entry->payloadType) &&
         r.NeedValue(entry->payloadType <= kMaxPayloadType) && r.U16(&size) && r.String(&entry->layerData, size) &&
         SkipPadding(r, size);
}

// The layer data lives with the buffer's allocator, not with that of the list. Only entries that already do are read
// over.
bool ReadEntries(zun::BodyReader& r, ZunVector_ZunRtcpPsfbAfbLirEntry* fci, ZunAllocator* a) {
  const ZunSizeT count = CountWholeEntries(r.LookAhead());
  if (!r.MayHoldEntries(count)) return false;
  if (count > Entries::Capacity(fci)) Entries::Clear(fci);  // rather than copy them to the new storage
  // When the whole list is refused, the entries that fit into smaller blocks are still read before it fails.
  Entries::ReserveGrown(fci, count);
  zun::ListRefill<Entries> refill(fci);
  for (ZunSizeT i = 0; i < count; ++i) {
    Entry* const entry = refill.Next([a](const Entry& old) { return old.layerData.allocator == a; },
                                     [a](Entry* fresh) { ConstructEmpty(fresh, a); });
    if (entry == nullptr) return r.RefuseAllocation();
    if (!ReadEntry(r, entry)) return false;
    refill.Keep();
  }
  return r.AtEnd() || r.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);  // the next entry is cut off
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbAfbLir& p) { return LengthWithHeads(p, kReadEntryHeadSize); }

  // The writer leaves out the two bytes of each entry's length.
  static ZunSizeT EncodedLength(const ZunRtcpPsfbAfbLir& p, ZunSizeT, ZunRtcpDialect) {
    return LengthWithHeads(p, kWrittenEntryHeadSize);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpPsfbAfbLir& p, ZunRtcpDialect) {
    if (ZunVector_ZunRtcpPsfbAfbLirEntryEmpty(&p.fci)) return ZUN_RTCP_ENCODE_REASON_NO_ENTRIES;
    for (const Entry* x = p.fci.begin; x != p.fci.end; ++x) {
      if (x->payloadType > kMaxPayloadType) return ZUN_RTCP_ENCODE_REASON_VALUE;
    }
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }

  static bool Write(const ZunRtcpPsfbAfbLir& p, zun::Output& out, bool pad) {
    zun::BodyWriter w(out, LengthWithHeads(p, kWrittenEntryHeadSize));
    if (!zun::WriteNorviHead(w, pad, kIdentity, p, kAnnouncedLength)) return false;
    if (ZunVector_ZunRtcpPsfbAfbLirEntryEmpty(&p.fci)) return false;
    for (const Entry* x = p.fci.begin; x != p.fci.end; ++x) {
      if (!WriteEntry(w, *x)) return false;
    }
    return true;
  }

  static bool Read(ZunRtcpPsfbAfbLir* p, zun::BodyReader& r, const zun::Body& body) {
    if (!zun::ReadNorviHead(r, p) || !r.NeedEntry()) return false;
    if (!ReadEntries(r, &p->fci, body.BufferAllocatorOr(p->fci.allocator))) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirEntryConstructFull(ZunRtcpPsfbAfbLirEntry* p, ZunRtpSourceId ssrc,
                                                            ZunUint8 seqno, ZunUint8 pt, const ZunString* layerData,
                                                            ZunAllocator*) {
  if (pt > kMaxPayloadType || ZunStringConstructCopy(&p->layerData, layerData) == nullptr) return nullptr;
  p->ssrc = ssrc;
  p->seqno = seqno;
  p->payloadType = pt;
  return p;
}

ZunBool ZunRtcpPsfbAfbLirEntrySetLayerData(ZunRtcpPsfbAfbLirEntry* p, const ZunString* layerData) {
  return ZunStringAssign(&p->layerData, layerData) != nullptr;
}

ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirConstructDefault(ZunRtcpPsfbAfbLir* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  ZunVector_ZunRtcpPsfbAfbLirEntryConstructDefault(&p->fci, a);
  return p;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpPsfbAfbLir, kIdentity, &ZunRtcpPsfbAfbLir::fci)
ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbLir, Wire)
