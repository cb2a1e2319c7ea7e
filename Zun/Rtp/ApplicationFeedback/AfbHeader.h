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

namespace zun {

inline constexpr ZunUint16 kNorviAfbIdentifier = 0x4E72;     // "Nr"
inline constexpr ZunUint32 kRembAfbIdentifier = 0x52454D42;  // "REMB"
inline constexpr ZunSizeT kAfbHeaderSize = kFeedbackHeaderSize + 4;

inline bool WriteNorviAfbHeader(BodyWriter& w, ZunRtcpPsfbAfbType afb_type) {
  return w.U32(ZunUint32{kNorviAfbIdentifier} << 16 | (static_cast<ZunUint32>(afb_type) & 0xFFFF));
}

// A failed read may have passed the identifier.
inline bool ReadNorviAfbHeader(BodyReader& r, ZunUint16* norvi_afb_type) {
  ZunUint16 identifier;
  return r.U16(&identifier) && r.NeedValue(identifier == kNorviAfbIdentifier) && r.U16(norvi_afb_type);
}

template <class Reader>
[[gnu::always_inline]] inline bool ReadRembAfbHeader(Reader& r) {
  ZunUint32 identifier;
  return r.U32(&identifier) && r.NeedValue(identifier == kRembAfbIdentifier);
}

// The kind of the message in a body: the number of a house message, known or not, REMB, or 0.
inline ZunRtcpPsfbAfbType AfbBufferGetAfbType(const Body& body) {
  BodyReader norvi = BodyReader(body).LookAhead();
  if (!norvi.SkipReadable(kFeedbackHeaderSize - kSubpacketHeaderSize)) return ZUN_RTCPPSFBAFB_TYPE_Unknown;
  BodyReader remb = norvi;
  ZunUint16 norvi_afb_type;
  if (ReadNorviAfbHeader(norvi, &norvi_afb_type)) return norvi_afb_type;
  return ReadRembAfbHeader(remb) ? ZUN_RTCPPSFBAFB_TYPE_REMB : ZUN_RTCPPSFBAFB_TYPE_Unknown;
}

// Everything in front of the body of a house message.
template <class Kind>
[[gnu::always_inline]] inline bool WriteNorviHead(BodyWriter& w, bool pad, const AfbIdentity& identity, const Kind& p,
                                                  ZunSizeT length) {
  return WriteFeedbackHeader(w, pad, identity, p, length) && WriteNorviAfbHeader(w, identity.afb_type);
}

// The number is not compared: it is what chose the reader.
template <class Kind>
bool ReadNorviHead(BodyReader& r, Kind* p) {
  ZunUint16 norvi_afb_type;
  return ReadFeedbackSources(r, p) && ReadNorviAfbHeader(r, &norvi_afb_type);
}

}  // namespace zun

#endif
