#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbLir.h"

#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Utils/ListRefill.h"

ZUN_VECTOR_DEFINE_OWNING(ZunRtcpPsfbAfbLirEntry)

namespace {

using Entry = ZunRtcpPsfbAfbLirEntry;
using Entries = zun::VectorOfZunRtcpPsfbAfbLirEntry;
using OwnedLayerData = zun::OwnedMember<&Entry::layerData, ZunStringConstructCopy, ZunStringAssign>;
using OwnedFci = zun::OwnedMember<&ZunRtcpPsfbAfbLir::fci, ZunVector_ZunRtcpPsfbAfbLirEntryConstructCopy,
                                  ZunVector_ZunRtcpPsfbAfbLirEntryAssign>;

constexpr ZunUint8 kMaxPayloadType = 127;
constexpr ZunSizeT kWrittenEntryHeadSize = 6;
constexpr ZunSizeT kReadEntryHeadSize = 8;
constexpr ZunSizeT kLengthOffset = 6;      // in the head that is read
constexpr ZunSizeT kAnnouncedLength = 24;  // whatever the entries

ZunSizeT PaddedSize(ZunSizeT size) { return size + zun::PaddingBehind(size); }

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
  return w.U32(entry.ssrc) && w.U8(entry.seqno) && w.U8(entry.payloadType) && w.String(entry.layerData) &&
         w.Zeros(zun::PaddingBehind(size));
}

// Zero to three octets that nobody looks at.
bool PassPadding(zun::BodyReader& r, ZunUint16 size) { return r.Pass(zun::PaddingBehind(size)); }

// Entries of which every octet is there, up to the first that is cut off.
ZunSizeT CountWholeEntries(zun::BodyReader r) {
  ZunSizeT count = 0;
  while (const ZunUint8* const head = r.Take(kReadEntryHeadSize)) {
    const ZunUint16 size = ZunUint16FromOctets(head + kLengthOffset);
    if (!r.Skip(size) || !PassPadding(r, size)) break;
    ++count;
  }
  return count;
}

bool ReadEntry(zun::BodyReader& r, Entry* entry) {
  ZunUint16 size;
  return r.U32(&entry->ssrc) && r.U8(&entry->seqno) && r.U8(&entry->payloadType) &&
         entry->payloadType <= kMaxPayloadType && r.U16(&size) && r.String(&entry->layerData, size) &&
         PassPadding(r, size);
}

// The layer data lives with the buffer's allocator, not with that of the list. Only entries that already do are read
// over.
bool ReadEntries(zun::BodyReader& r, ZunVector_ZunRtcpPsfbAfbLirEntry* fci) {
  ZunAllocator* const a = r.Buffer()->allocator;
  const ZunSizeT count = CountWholeEntries(r);
  if (count > Entries::Capacity(fci)) Entries::Clear(fci);  // rather than copy them to the new storage
  // When the whole list is refused, the entries that fit into smaller blocks are still read before it fails.
  Entries::ReserveGrown(fci, count);
  zun::ListRefill<Entries> refill(fci);
  for (ZunSizeT i = 0; i < count; ++i) {
    Entry* const entry = refill.Next([a](const Entry& old) { return old.layerData.allocator == a; },
                                     [a](Entry* fresh) { ConstructEmpty(fresh, a); });
    if (entry == nullptr || !ReadEntry(r, entry)) return false;
    refill.Keep();
  }
  return r.AtEnd();
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpPsfbAfbLir& p) { return LengthWithHeads(p, kReadEntryHeadSize); }

  static bool Write(const ZunRtcpPsfbAfbLir& p, ZunString* b, bool pad) {
    zun::BodyWriter w(b, LengthWithHeads(p, kWrittenEntryHeadSize));
    if (!zun::WriteNorviHead(w, pad, p, ZUN_RTCPPSFBAFB_TYPE_LIR, kAnnouncedLength)) return false;
    if (ZunVector_ZunRtcpPsfbAfbLirEntryEmpty(&p.fci)) return false;
    for (const Entry* x = p.fci.begin; x != p.fci.end; ++x) {
      if (!WriteEntry(w, *x)) return false;
    }
    return true;
  }

  static bool Read(ZunRtcpPsfbAfbLir* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadNorviHead(r, p) || r.AtEnd() || !ReadEntries(r, &p->fci)) return false;
    zun::SetAfbTypes(p, ZUN_RTCPPSFBAFB_TYPE_LIR);
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

ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirEntryConstructCopy(ZunRtcpPsfbAfbLirEntry* p,
                                                            const ZunRtcpPsfbAfbLirEntry* o) {
  return OwnedLayerData::ConstructCopy(p, o);
}

ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirEntryAssign(ZunRtcpPsfbAfbLirEntry* p, const ZunRtcpPsfbAfbLirEntry* o) {
  return OwnedLayerData::Assign(p, o);
}

void ZunRtcpPsfbAfbLirEntryDestruct(ZunRtcpPsfbAfbLirEntry* p) { ZunStringDestruct(&p->layerData); }

ZunBool ZunRtcpPsfbAfbLirEntrySetLayerData(ZunRtcpPsfbAfbLirEntry* p, const ZunString* layerData) {
  return ZunStringAssign(&p->layerData, layerData) != nullptr;
}

ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirConstructDefault(ZunRtcpPsfbAfbLir* p, ZunAllocator* a) {
  zun::SetAfbHead(p, ZUN_RTCPPSFBAFB_TYPE_LIR, 0, 0);
  ZunVector_ZunRtcpPsfbAfbLirEntryConstructDefault(&p->fci, a);
  return p;
}

ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirConstructCopy(ZunRtcpPsfbAfbLir* p, const ZunRtcpPsfbAfbLir* o) {
  return OwnedFci::ConstructCopy(p, o);
}

ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirAssign(ZunRtcpPsfbAfbLir* p, const ZunRtcpPsfbAfbLir* o) {
  return OwnedFci::Assign(p, o);
}

void ZunRtcpPsfbAfbLirDestruct(ZunRtcpPsfbAfbLir* p) { ZunVector_ZunRtcpPsfbAfbLirEntryDestruct(&p->fci); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbAfbLir, Wire)
