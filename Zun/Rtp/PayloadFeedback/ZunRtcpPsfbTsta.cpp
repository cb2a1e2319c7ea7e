#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTsta.h"

#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/PayloadFeedback/CodecControlWire.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpPsfbTstaEntry)

namespace {

constexpr ZunUint8 kMaxIndex = 31;

struct TstaFormat {
  using Kind = ZunRtcpPsfbTsta;
  using Entry = ZunRtcpPsfbTstaEntry;
  using Entries = zun::VectorOfZunRtcpPsfbTstaEntry;
  static constexpr ZunRtcpPsfbType kFmt = ZUN_RTCPPSFB_TYPE_TSTA;

  // The index takes the low 5 bits of the last octet; the 3 above them are reserved.
  static ZunUint8 LastOctet(const Entry& entry) { return entry.index; }
  static void ReadLastOctet(ZunUint8 octet, Entry* entry) { entry->index = octet & kMaxIndex; }
  static ZunRtpSourceId SourceToWrite(const Kind& p) { return p.source; }
  static void CheckSourceRead(ZunRtpSourceId) {}
};

using Wire = zun::CodecControlWire<TstaFormat>;
using OwnedFci = zun::OwnedMember<&ZunRtcpPsfbTsta::fci, Wire::Entries::ConstructCopy, Wire::Entries::Assign>;

}  // namespace

ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaEntryConstructFull(ZunRtcpPsfbTstaEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                        ZunUint8 idx, ZunAllocator*) {
  *p = {ssrc, seqno, idx};
  return p;
}

ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaEntryConstructCopy(ZunRtcpPsfbTstaEntry* p, const ZunRtcpPsfbTstaEntry* o) {
  *p = *o;
  return p;
}

ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaEntryAssign(ZunRtcpPsfbTstaEntry* p, const ZunRtcpPsfbTstaEntry* o) {
  *p = *o;
  return p;
}

void ZunRtcpPsfbTstaEntryDestruct(ZunRtcpPsfbTstaEntry*) {}

ZunBool ZunRtcpPsfbTstaEntrySetIndex(ZunRtcpPsfbTstaEntry* p, ZunUint8 idx) {
  if (idx > kMaxIndex) return 0;
  p->index = idx;
  return 1;
}

ZunRtcpPsfbTsta* ZunRtcpPsfbTstaConstructDefault(ZunRtcpPsfbTsta* p, ZunAllocator* a) {
  return Wire::ConstructDefault(p, a);
}

ZunRtcpPsfbTsta* ZunRtcpPsfbTstaConstructCopy(ZunRtcpPsfbTsta* p, const ZunRtcpPsfbTsta* o) {
  return OwnedFci::ConstructCopy(p, o);
}

ZunRtcpPsfbTsta* ZunRtcpPsfbTstaAssign(ZunRtcpPsfbTsta* p, const ZunRtcpPsfbTsta* o) { return OwnedFci::Assign(p, o); }

void ZunRtcpPsfbTstaDestruct(ZunRtcpPsfbTsta* p) { Wire::Entries::Destruct(&p->fci); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbTsta, Wire)
