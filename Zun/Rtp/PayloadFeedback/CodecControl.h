// What the codec control messages FIR, TSTR and TSTA share: a feedback header and a list of entries of one shape
// (RFC 5104, sections 4.3.1 to 4.3.3).
//
//     0                   1                   2                   3
//     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
//    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//  0 |                              SSRC                             |
//    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//  4 |   seq nr.     |         reserved = 0          |0 0 0|  index  |
//    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//
// The index is reserved too in a FIR.
#ifndef ZUN_RTP_PAYLOADFEEDBACK_CODECCONTROL_H
#define ZUN_RTP_PAYLOADFEEDBACK_CODECCONTROL_H

#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace zun {

inline constexpr ZunUint8 kMaxTradeOffIndex = 31;

// Format says what differs:
//   using Kind;
//   using Entries;                                          the algorithms of the vector `Kind::fci`
//   static constexpr FeedbackIdentity kIdentity;
//   static constexpr bool kWritesSource;                    whether the media source has a meaning; else it is 0
//   static void CheckSourceRead(ZunRtpSourceId source);     may only log
template <class Format>
struct CodecControlWire {
  using Kind = typename Format::Kind;
  using Entries = typename Format::Entries;
  using Entry = typename Entries::E;

  static constexpr ZunSizeT kEntrySize = 8;
  static constexpr int kSequenceNumberShift = 24;
  static constexpr bool kHasIndex = requires(Entry entry) { entry.index; };

  static Kind* ConstructDefault(Kind* p, ZunAllocator* a) {
    SetFeedbackHead(p, Format::kIdentity, 0, 0);
    Entries::ConstructDefault(&p->fci, a);
    return p;
  }

  static ZunSizeT Length(const Kind& p) { return kFeedbackHeaderSize + kEntrySize * Entries::Size(&p.fci); }

  static ZunRtcpEncodeReason FindUnencodable(const Kind& p, ZunRtcpDialect) {
    if (p.fci.begin == p.fci.end) return ZUN_RTCP_ENCODE_REASON_NO_ENTRIES;
    if constexpr (kHasIndex) {
      for (const Entry* x = p.fci.begin; x != p.fci.end; ++x) {
        if (x->index > kMaxTradeOffIndex) return ZUN_RTCP_ENCODE_REASON_VALUE;
      }
    }
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }

  // A message without entries asks for nothing: only its header is written, and the write fails.
  template <class Writer>
  static bool Write(const Kind& p, Writer& w, bool pad) {
    const ZunSizeT length = Length(p);
    return WriteHeader(w, pad, p, length) && p.fci.begin != p.fci.end && WriteEntries<kEntrySize>(w, p.fci, Encode);
  }

  // A body without FCI is refused before the entries that `p` holds are touched.
  template <class Reader>
  static bool Read(Kind* p, Reader& r, const Body&) {
    if (!ReadFeedbackSources(r, p)) return false;
    if constexpr (Reader::kIsCareful) {
      Format::CheckSourceRead(p->source);
    } else if (!Format::kWritesSource && p->source != 0) {
      return false;  // which is logged
    }
    if (!r.NeedEntry() || !ReadEntries<kEntrySize, Entries>(r, &p->fci, Decode)) return false;
    Format::kIdentity.Mark(p);
    return true;
  }

 private:
  template <class Writer>
  static bool WriteHeader(Writer& w, bool pad, const Kind& p, ZunSizeT length) {
    return Format::kWritesSource ? WriteFeedbackHeader(w, pad, Format::kIdentity, p, length)
                                 : WriteFeedbackHeaderWithoutSource(w, pad, Format::kIdentity, p, length);
  }

  // An index is written as it is, and read without the three bits above it.
  static void Encode(const Entry& entry, ZunUint8* octets) {
    ZunUint32 word = static_cast<ZunUint32>(entry.seqno) << kSequenceNumberShift;
    if constexpr (kHasIndex) word |= entry.index;
    StoreBigEndian(octets, entry.ssrc);
    StoreBigEndian(octets + 4, word);
  }
  static void Decode(const ZunUint8* octets, Entry* entry) {
    const ZunUint32 word = ZunUint32FromOctets(octets + 4);
    entry->ssrc = ZunUint32FromOctets(octets);
    entry->seqno = static_cast<ZunUint8>(word >> kSequenceNumberShift);
    if constexpr (kHasIndex) entry->index = static_cast<ZunUint8>(word & kMaxTradeOffIndex);
  }
};

}  // namespace zun

// All functions of a codec control message that its format makes no difference to.
#define ZUN_RTCP_CODEC_CONTROL_DEFINE(Kind, Format)                \
  Kind* Kind##ConstructDefault(Kind* p, ZunAllocator* a) {         \
    return zun::CodecControlWire<Format>::ConstructDefault(p, a);  \
  }                                                                \
  ZUN_RTCP_OWNING_KIND_DEFINE(Kind, Format::kIdentity, &Kind::fci) \
  ZUN_RTCP_ROW_DEFINE(Kind, zun::CodecControlWire<Format>)

// The entries of the two trade-off messages.
#define ZUN_RTCP_TRADE_OFF_ENTRY_DEFINE(Entry)                                                              \
  ZUN_VECTOR_USE_PLAIN(Entry)                                                                               \
  ZUN_VECTOR_DEFINE(Entry)                                                                                  \
  ZUN_PLAIN_DEFINE(Entry)                                                                                   \
  Entry* Entry##ConstructFull(Entry* p, ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 idx, ZunAllocator*) { \
    *p = {ssrc, seqno, idx};                                                                                \
    return p;                                                                                               \
  }                                                                                                         \
  ZunBool Entry##SetIndex(Entry* p, ZunUint8 idx) {                                                         \
    if (idx > zun::kMaxTradeOffIndex) return 0;                                                             \
    p->index = idx;                                                                                         \
    return 1;                                                                                               \
  }

#endif
