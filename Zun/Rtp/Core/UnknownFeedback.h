// The wire form of feedback that is kept as raw FCI bytes: the unknown kind of each of the three envelopes.
#ifndef ZUN_RTP_CORE_UNKNOWNFEEDBACK_H
#define ZUN_RTP_CORE_UNKNOWNFEEDBACK_H

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Utils/ZunString.h"

namespace zun {

// Kind has the four fields of every feedback kind and the string `data`. SetRead(p, header) stores what a
// successful read tells beyond them.
template <class Kind, ZunRtcpSubpacketType kType, void (*SetRead)(Kind* p, SubpacketHeader header)>
struct UnknownFeedbackWire {
  static ZunSizeT Length(const Kind& p) { return kFeedbackHeaderSize + p.data.size; }

  static bool Write(const Kind& p, ZunString* b, bool pad) {
    const ZunSizeT length = Length(p);
    BodyWriter w(b, length);
    return WriteFeedbackHeader(w, pad, p.fmt, kType, length, p.sender, p.source) && w.String(p.data);
  }

  // The FCI is taken as it is: neither its length nor the feedback message type is checked.
  static bool Read(Kind* p, BodyReader& r, SubpacketHeader header) {
    if (!ReadFeedbackSources(r, p) || !r.Rest(&p->data)) return false;
    SetRead(p, header);
    return true;
  }
};

template <class Kind>
using OwnedData = OwnedMember<&Kind::data, ZunStringConstructCopy, ZunStringAssign>;

}  // namespace zun

#endif
