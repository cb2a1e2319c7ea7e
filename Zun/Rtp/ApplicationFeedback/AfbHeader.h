// What opens an application-layer feedback message, and how its kind is told (RFC 4585, section 6.4).
//
//    0                   1                   2                   3
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
//   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
// 12|      'N'      |      'r'      |      house message type       |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//
//   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
// 12|      'R'      |      'E'      |      'M'      |      'B'      |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_AFBHEADER_H
#define ZUN_RTP_APPLICATIONFEEDBACK_AFBHEADER_H

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"

namespace zun {

inline constexpr ZunUint16 kNorviAfbIdentifier = 0x4E72;     // "Nr"
inline constexpr ZunUint32 kRembAfbIdentifier = 0x52454D42;  // "REMB"
inline constexpr ZunSizeT kAfbHeaderSize = kFeedbackHeaderSize + 4;

// Every application-layer feedback kind begins with these five fields.
template <class Kind>
void SetAfbHead(Kind* p, ZunRtcpPsfbAfbType afb_type, ZunRtpSourceId sender, ZunRtpSourceId source) {
  SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_PSFB, ZUN_RTCPPSFB_TYPE_AFB, sender, source);
  p->afbType = afb_type;
}

// What a successful read leaves in the fields that the bytes do not give.
template <class Kind>
void SetAfbTypes(Kind* p, ZunRtcpPsfbAfbType afb_type) {
  SetAfbHead(p, afb_type, p->sender, p->source);
}

inline bool WriteNorviAfbHeader(BodyWriter& w, ZunRtcpPsfbAfbType afb_type) {
  return w.U16(kNorviAfbIdentifier) && w.U16(static_cast<ZunUint16>(afb_type & 0xFFFF));
}

// A failed read may have passed the identifier.
inline bool ReadNorviAfbHeader(BodyReader& r, ZunUint16* norvi_afb_type) {
  ZunUint16 identifier;
  return r.U16(&identifier) && identifier == kNorviAfbIdentifier && r.U16(norvi_afb_type);
}

inline bool ReadRembAfbHeader(BodyReader& r) {
  ZunUint32 identifier;
  return r.U32(&identifier) && identifier == kRembAfbIdentifier;
}

// The kind of the message whose body is b[begin, end): the number of a house message, known or not, REMB, or 0.
inline ZunRtcpPsfbAfbType AfbBufferGetAfbType(const ZunString* b, ZunSizeT begin, ZunSizeT end) {
  BodyReader norvi(b, begin, end);
  if (!norvi.Skip(kFeedbackHeaderSize - kSubpacketHeaderSize)) return ZUN_RTCPPSFBAFB_TYPE_Unknown;
  BodyReader remb = norvi;
  ZunUint16 norvi_afb_type;
  if (ReadNorviAfbHeader(norvi, &norvi_afb_type)) return norvi_afb_type;
  return ReadRembAfbHeader(remb) ? ZUN_RTCPPSFBAFB_TYPE_REMB : ZUN_RTCPPSFBAFB_TYPE_Unknown;
}

// Everything in front of the body of a house message.
template <class Kind>
bool WriteNorviHead(BodyWriter& w, bool pad, const Kind& p, ZunRtcpPsfbAfbType afb_type, ZunSizeT length) {
  return WriteFeedbackHeader(w, pad, ZUN_RTCPPSFB_TYPE_AFB, ZUN_RTCPSUBPACKET_TYPE_PSFB, length, p.sender, p.source) &&
         WriteNorviAfbHeader(w, afb_type);
}

// The number is not compared: it is what chose the reader.
template <class Kind>
bool ReadNorviHead(BodyReader& r, Kind* p) {
  ZunUint16 norvi_afb_type;
  return ReadFeedbackSources(r, p) && ReadNorviAfbHeader(r, &norvi_afb_type);
}

}  // namespace zun

#endif
