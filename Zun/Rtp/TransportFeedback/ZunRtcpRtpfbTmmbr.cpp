#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbr.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTmmbrEntry)

namespace {

using Entries = zun::VectorOfZunRtcpRtpfbTmmbrEntry;
using OwnedFci = zun::OwnedMember<&ZunRtcpRtpfbTmmbr::fci, Entries::ConstructCopy, Entries::Assign>;

constexpr ZunSizeT kEntrySize = 8;
constexpr ZunRtpSourceId kNoMediaSource = 0;  // the entries name the media senders

// What says that an object is a TMMBR, whatever it was copied from; a failed copy stays null.
ZunRtcpRtpfbTmmbr* Mark(ZunRtcpRtpfbTmmbr* p) {
  if (p == nullptr) return nullptr;
  p->type = ZUN_RTCPSUBPACKET_TYPE_RTPFB;
  p->fmt = ZUN_RTCPRTPFB_TYPE_TMMBR;
  return p;
}

void DecodeEntry(const ZunUint8* octets, ZunRtcpRtpfbTmmbrEntry* entry) {
  entry->ssrc = ZunUint32FromOctets(octets);
  entry->seqno = 0;
  entry->max_bitrate = ZunUint32FromOctets(octets + 4);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbTmmbr& p) {
    return zun::kFeedbackHeaderSize + kEntrySize * Entries::Size(&p.fci);
  }

  static bool Write(const ZunRtcpRtpfbTmmbr& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(b, length);
    if (!zun::WriteFeedbackHeader(w, pad, ZUN_RTCPRTPFB_TYPE_TMMBR, ZUN_RTCPSUBPACKET_TYPE_RTPFB, length, p.sender,
                                  kNoMediaSource)) {
      return false;
    }
    for (const ZunRtcpRtpfbTmmbrEntry* entry = p.fci.begin; entry != p.fci.end; ++entry) {
      if (!w.U32(entry->ssrc) || !w.U32(entry->max_bitrate)) return false;
    }
    return p.fci.begin != p.fci.end;
  }

  static bool Read(ZunRtcpRtpfbTmmbr* p, zun::BodyReader& r, zun::SubpacketHeader) {
    if (!zun::ReadFeedbackSources(r, p)) return false;
    if (p->source != kNoMediaSource) {
      LOG_WARNING(ZunLogRtcp_, "ZunRtcpRtpfbTmmbrAssignFromBuffer",
                  "Non-zero SSRC of media source in RTCP TMMBR message");
    }
    if (!zun::ReadEntries<kEntrySize, Entries>(r, &p->fci, DecodeEntry)) return false;
    Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrConstructDefault(ZunRtcpRtpfbTmmbr* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZUN_RTCPRTPFB_TYPE_TMMBR, 0, 0);
  Entries::ConstructDefault(&p->fci, a);
  return p;
}

ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrConstructCopy(ZunRtcpRtpfbTmmbr* p, const ZunRtcpRtpfbTmmbr* o) {
  return Mark(OwnedFci::ConstructCopy(p, o));
}

ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrAssign(ZunRtcpRtpfbTmmbr* p, const ZunRtcpRtpfbTmmbr* o) {
  return Mark(OwnedFci::Assign(p, o));
}

void ZunRtcpRtpfbTmmbrDestruct(ZunRtcpRtpfbTmmbr* p) { Entries::Destruct(&p->fci); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbTmmbr, Wire)
