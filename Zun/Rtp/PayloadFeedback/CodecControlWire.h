// What the codec control messages FIR, TSTR and TSTA share: a feedback header and a list of entries of one shape
// (RFC 5104, sections 4.3.1 to 4.3.3).
//
//     0                   1                   2                   3
//     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
//    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//  0 |                              SSRC                             |
//    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//  4 |   seq nr.     |         reserved = 0          |  last octet   |
//    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
#ifndef ZUN_RTP_PAYLOADFEEDBACK_CODECCONTROLWIRE_H
#define ZUN_RTP_PAYLOADFEEDBACK_CODECCONTROLWIRE_H

#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"

namespace zun {

// Format gives what differs:
//   using Kind, Entry;
//   using Entries;                                                  the algorithms of the vector `Kind::fci`
//   static constexpr ZunRtcpPsfbType kFmt;
//   static ZunUint8 LastOctet(const Entry& entry);                  as it is written
//   static void ReadLastOctet(ZunUint8 octet, Entry* entry);
//   static ZunRtpSourceId SourceToWrite(const Kind& p);
//   static void CheckSourceRead(ZunRtpSourceId source);             may only log
template <class Format>
struct CodecControlWire {
  using Kind = typename Format::Kind;
  using Entry = typename Format::Entry;
  using Entries = typename Format::Entries;

  static constexpr ZunSizeT kEntrySize = 8;
  static constexpr ZunSizeT kSequenceNumberOffset = 4;
  static constexpr ZunSizeT kLastOctetOffset = 7;

  static Kind* ConstructDefault(Kind* p, ZunAllocator* a) {
    SetHead(p, 0, 0);
    Entries::ConstructDefault(&p->fci, a);
    return p;
  }

  static ZunSizeT Length(const Kind& p) { return kFeedbackHeaderSize + kEntrySize * Entries::Size(&p.fci); }

  // A message without entries asks for nothing: only its header is written, and the write fails.
  static bool Write(const Kind& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    BodyWriter w(b, length);
    if (!WriteFeedbackHeader(w, pad, Format::kFmt, ZUN_RTCPSUBPACKET_TYPE_PSFB, length, p.sender,
                             Format::SourceToWrite(p)) ||
        p.fci.begin == p.fci.end) {
      return false;
    }
    for (const Entry* entry = p.fci.begin; entry != p.fci.end; ++entry) {
      const ZunUint32 second_word = static_cast<ZunUint32>(entry->seqno) << 24 | Format::LastOctet(*entry);
      if (!w.U32(entry->ssrc) || !w.U32(second_word)) return false;
    }
    return true;
  }

  // A body without FCI is refused before the entries that `p` holds are touched.
  static bool Read(Kind* p, BodyReader& r, SubpacketHeader) {
    if (!ReadFeedbackSources(r, p)) return false;
    Format::CheckSourceRead(p->source);
    if (r.AtEnd() || !ReadEntries<kEntrySize, Entries>(r, &p->fci, Decode)) return false;
    SetHead(p, p->sender, p->source);
    return true;
  }

 private:
  static void SetHead(Kind* p, ZunRtpSourceId sender, ZunRtpSourceId source) {
    SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, Format::kFmt, sender, source);
  }

  static void Decode(const ZunUint8* octets, Entry* entry) {
    entry->ssrc = ZunUint32FromOctets(octets);
    entry->seqno = octets[kSequenceNumberOffset];
    Format::ReadLastOctet(octets[kLastOctetOffset], entry);
  }
};

}  // namespace zun

#endif
