// Feedback that is kept as raw FCI bytes: the unknown kind of each of the three envelopes.
#ifndef ZUN_RTP_CORE_UNKNOWNFEEDBACK_H
#define ZUN_RTP_CORE_UNKNOWNFEEDBACK_H

#include "Zun/Os/Log.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Row.h"

namespace zun {

// Kind has the four fields of every feedback kind and the string `data`. MarkRead(p, header) says what kind a
// successful read makes of p.
template <class Kind, ZunRtcpSubpacketType kType, void (*MarkRead)(Kind* p, SubpacketHeader header)>
struct UnknownFeedbackWire {
  static ZunSizeT Length(const Kind& p) { return kFeedbackHeaderSize + p.data.size; }

  static ZunRtcpEncodeReason FindUnencodable(const Kind& p, ZunRtcpDialect) {
    if (p.fmt < 0 || p.fmt > kMaxFeedbackMessageType) return ZUN_RTCP_ENCODE_REASON_VALUE;
    return p.data.size % 4 == 0 ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS;
  }

  // Under the number that the object says.
  static bool Write(const Kind& p, Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    BodyWriter w(out, length);
    return WriteFeedbackHeader(w, pad, FeedbackIdentity{kType, p.fmt}, p, length) && w.String(p.data);
  }

  // The FCI is taken as it is: neither its length nor the feedback message type is checked.
  static bool Read(Kind* p, BodyReader& r, const Body& body) {
    if (!ReadFeedbackSources(r, p) || !r.StringToEnd(&p->data)) return false;
    MarkRead(p, body.header);
    return true;
  }
};

// Data is kept in whole words. The message is logged as an error.
inline bool CheckWholeWords(const ZunString* data, ZunLogCategory category, const char* function, const char* message) {
  if (data->size % 4 == 0) return true;
  ZUN_LOG_ERROR_(category, function, message);
  return false;
}

inline bool CheckFeedbackType(ZunInt32 fmt, ZunLogCategory category, const char* function, const char* message) {
  if (fmt >= 0 && fmt <= kMaxFeedbackMessageType) return true;
  ZUN_LOG_ERROR_(category, function, message);
  return false;
}

// Constructs an unknown message around a copy of the data. Null when it cannot be copied.
template <class Kind, class Identity>
Kind* ConstructUnknownFeedback(Kind* p, const Identity& identity, ZunRtpSourceId sender, ZunRtpSourceId source,
                               const ZunString* data, ZunAllocator* a) {
  if (ZunStringConstructSubstring(&p->data, data, 0, data->size, a) == nullptr) return nullptr;
  SetFeedbackHead(p, identity, sender, source);
  return p;
}

}  // namespace zun

#endif
