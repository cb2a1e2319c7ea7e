#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTstr.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/PayloadFeedback/CodecControlWire.h"

ZUN_VECTOR_DEFINE_PLAIN(ZunRtcpPsfbTstrEntry)

namespace {

constexpr ZunUint8 kMaxIndex = 31;

struct TstrFormat {
  using Kind = ZunRtcpPsfbTstr;
  using Entry = ZunRtcpPsfbTstrEntry;
  using Entries = zun::VectorOfZunRtcpPsfbTstrEntry;
  static constexpr ZunRtcpPsfbType kFmt = ZUN_RTCPPSFB_TYPE_TSTR;

  // The index takes the low 5 bits of the last octet; the 3 above them are reserved.
  static ZunUint8 LastOctet(const Entry& entry) { return entry.index; }
  static void ReadLastOctet(ZunUint8 octet, Entry* entry) { entry->index = octet & kMaxIndex; }
  // A request names its senders in its entries; the media source has no meaning and is 0 on the wire.
  static ZunRtpSourceId SourceToWrite(const Kind&) { return 0; }
  static void CheckSourceRead(ZunRtpSourceId source) {
    if (source == 0) return;
    LOG_WARNING(ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TSTR message");
  }
};

using Wire = zun::CodecControlWire<TstrFormat>;
using OwnedFci = zun::OwnedMember<&ZunRtcpPsfbTstr::fci, Wire::Entries::ConstructCopy, Wire::Entries::Assign>;

}  // namespace

ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrEntryConstructFull(ZunRtcpPsfbTstrEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                        ZunUint8 idx, ZunAllocator*) {
  *p = {ssrc, seqno, idx};
  return p;
}

ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrEntryConstructCopy(ZunRtcpPsfbTstrEntry* p, const ZunRtcpPsfbTstrEntry* o) {
  *p = *o;
  return p;
}

ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrEntryAssign(ZunRtcpPsfbTstrEntry* p, const ZunRtcpPsfbTstrEntry* o) {
  *p = *o;
  return p;
}

void ZunRtcpPsfbTstrEntryDestruct(ZunRtcpPsfbTstrEntry*) {}

ZunBool ZunRtcpPsfbTstrEntrySetIndex(ZunRtcpPsfbTstrEntry* p, ZunUint8 idx) {
  if (idx > kMaxIndex) return 0;
  p->index = idx;
  return 1;
}

ZunRtcpPsfbTstr* ZunRtcpPsfbTstrConstructDefault(ZunRtcpPsfbTstr* p, ZunAllocator* a) {
  return Wire::ConstructDefault(p, a);
}

ZunRtcpPsfbTstr* ZunRtcpPsfbTstrConstructCopy(ZunRtcpPsfbTstr* p, const ZunRtcpPsfbTstr* o) {
  return OwnedFci::ConstructCopy(p, o);
}

ZunRtcpPsfbTstr* ZunRtcpPsfbTstrAssign(ZunRtcpPsfbTstr* p, const ZunRtcpPsfbTstr* o) { return OwnedFci::Assign(p, o); }

void ZunRtcpPsfbTstrDestruct(ZunRtcpPsfbTstr* p) { Wire::Entries::Destruct(&p->fci); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpPsfbTstr, Wire)
