// What every feedback message but CCFB begins with (RFC 4585, section 6.1).
//
//    0                   1                   2                   3
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
// 0 |V=2|P|   FMT   |       PT      |            length             |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
// 4 |                    SSRC of packet sender                      |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
// 8 |                    SSRC of media source                       |
//   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
// 12|            feedback control information (FCI) ...             |
#ifndef ZUN_RTP_CORE_FEEDBACKHEADER_H
#define ZUN_RTP_CORE_FEEDBACKHEADER_H

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"
#include "Zun/Rtp/ZunRtpHeader.h"

namespace zun {

inline constexpr ZunSizeT kFeedbackHeaderSize = 12;
inline constexpr ZunInt32 kMaxFeedbackMessageType = 31;

// Every feedback kind begins with these four fields.
template <class Kind>
void SetFeedbackHead(Kind* p, ZunRtcpSubpacketType type, ZunInt32 fmt, ZunRtpSourceId sender, ZunRtpSourceId source) {
  p->type = type;
  p->fmt = fmt;
  p->sender = sender;
  p->source = source;
}

template <class Kind>
bool ReadFeedbackSources(BodyReader& r, Kind* p) {
  return r.U32(&p->sender) && r.U32(&p->source);
}

// The common header with the FMT in its count field, and both SSRCs; `length` counts from the header on.
inline bool WriteFeedbackHeader(BodyWriter& w, bool pad, ZunInt32 fmt, ZunRtcpSubpacketType type, ZunSizeT length,
                                ZunRtpSourceId sender, ZunRtpSourceId source) {
  return WriteSubpacketHeader(w, pad, static_cast<ZunUint8>(fmt), type, length) && w.U32(sender) && w.U32(source);
}

}  // namespace zun

#endif
