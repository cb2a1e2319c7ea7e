#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbr.h"

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTmmbrEntry)

namespace {

using Entries = zun::VectorOfZunRtcpRtpfbTmmbrEntry;

constexpr zun::FeedbackIdentity kIdentity = zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_TMMBR);

constexpr ZunSizeT kEntrySize = 8;

void EncodeEntry(const ZunRtcpRtpfbTmmbrEntry& entry, ZunUint8* octets) {
  zun::StoreBigEndian(octets, entry.ssrc);
  zun::StoreBigEndian(octets + 4, entry.max_bitrate);
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

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpRtpfbTmmbr& p, ZunRtcpDialect) {
    return Entries::Size(&p.fci) != 0 ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_NO_ENTRIES;
  }

  // The entries name the media senders, so the media source has no meaning and is 0 on the wire.
  static bool Write(const ZunRtcpRtpfbTmmbr& p, zun::Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(out, length);
    return zun::WriteFeedbackHeaderWithoutSource(w, pad, kIdentity, p, length) && p.fci.begin != p.fci.end &&
           zun::WriteEntries<kEntrySize>(w, p.fci, EncodeEntry);
  }

  static bool Read(ZunRtcpRtpfbTmmbr* p, zun::BodyReader& r, const zun::Body&) {
    if (!zun::ReadFeedbackSources(r, p)) return false;
    if (p->source != 0) {
      ZUN_LOG_WARNING_(ZunLogRtcp_, "ZunRtcpRtpfbTmmbrAssignFromBuffer",
                       "Non-zero SSRC of media source in RTCP TMMBR message");
    }
    if (!zun::ReadEntries<kEntrySize, Entries>(r, &p->fci, DecodeEntry)) return false;
    kIdentity.Mark(p);
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbTmmbrConstructDefault(ZunRtcpRtpfbTmmbr* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  Entries::ConstructDefault(&p->fci, a);
  return p;
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpRtpfbTmmbr, kIdentity, &ZunRtcpRtpfbTmmbr::fci)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbTmmbr, Wire)
