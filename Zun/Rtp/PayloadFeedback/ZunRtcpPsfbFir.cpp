#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbFir.h"

#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/PayloadFeedback/CodecControlWire.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpPsfbFirEntry)

namespace {

struct FirFormat {
  using Kind = ZunRtcpPsfbFir;
  using Entry = ZunRtcpPsfbFirEntry;
  using Entries = zun::VectorOfZunRtcpPsfbFirEntry;
  static constexpr ZunRtcpPsfbType kFmt = ZUN_RTCPPSFB_TYPE_FIR;

  // The last octet of an entry is reserved.
  static ZunUint8 LastOctet(const Entry&) { return 0; }
  static void ReadLastOctet(ZunUint8, Entry*) {}
  static ZunRtpSourceId SourceToWrite(const Kind& p) { return p.source; }
  static void CheckSourceRead(ZunRtpSourceId) {}
};

using Wire = zun::CodecControlWire<FirFormat>;
using OwnedFci = zun::OwnedMember<&ZunRtcpPsfbFir::fci, Wire::Entries::ConstructCopy, Wire::Entries::Assign>;

}  // namespace

ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryConstructFull(ZunRtcpPsfbFirEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                      ZunAllocator*) {
  *p = {ssrc, seqno};
  return p;
}

ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryConstructCopy(ZunRtcpPsfbFirEntry* p, const ZunRtcpPsfbFirEntry* o) {
  *p = *o;
  return p;
}

ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryAssign(ZunRtcpPsfbFirEntry* p, const ZunRtcpPsfbFirEntry* o) {
  *p = *o;
  return p;
}

void ZunRtcpPsfbFirEntryDestruct(ZunRtcpPsfbFirEntry*) {}

ZunRtcpPsfbFir* ZunRtcpPsfbFirConstructDefault(ZunRtcpPsfbFir* p, ZunAllocator* a) {
  return Wire::ConstructDefault(p, a);
}

ZunRtcpPsfbFir* ZunRtcpPsfbFirConstructCopy(ZunRtcpPsfbFir* p, const ZunRtcpPsfbFir* o) {
  return OwnedFci::ConstructCopy(p, o);
}

ZunRtcpPsfbFir* ZunRtcpPsfbFirAssign(ZunRtcpPsfbFir* p, const ZunRtcpPsfbFir* o) { return OwnedFci::Assign(p, o); }

void ZunRtcpPsfbFirDestruct(ZunRtcpPsfbFir* p) { Wire::Entries::Destruct(&p->fci); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbFir, Wire)
