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
#include "Zun/Rtp/Core/Identity.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"

namespace zun {

inline constexpr ZunSizeT kFeedbackHeaderSize = 12;
inline constexpr ZunInt32 kMaxFeedbackMessageType = 31;

template <class Reader, class Kind>
bool ReadFeedbackSources(Reader& r, Kind* p) {
  return r.template Fields<8>([p](auto& f) { return f.U32(&p->sender) && f.U32(&p->source); });
}

inline ZunUint32 FeedbackHeaderWord(bool pad, const FeedbackIdentity& identity, ZunSizeT length) {
  return SubpacketHeaderWord(pad, static_cast<ZunUint8>(identity.fmt), identity.type, length);
}

// The head of a message of `length` bytes: the common header with the FMT in its count field, and both SSRCs. The
// numbers are those of the kind, whatever the object says of itself.
template <class Writer, class Kind>
[[gnu::always_inline]] inline bool WriteFeedbackHeader(Writer& w, bool pad, const FeedbackIdentity& identity,
                                                       const Kind& p, ZunSizeT length) {
  return w.template Fields<kFeedbackHeaderSize>([word = FeedbackHeaderWord(pad, identity, length), &p](FieldWriter& f) {
    f.U32(word);
    f.U32(p.sender);
    f.U32(p.source);
  });
}

// The same of a request that names the media senders in its entries.
template <class Writer, class Kind>
[[gnu::always_inline]] inline bool WriteFeedbackHeaderWithoutSource(Writer& w, bool pad,
                                                                    const FeedbackIdentity& identity, const Kind& p,
                                                                    ZunSizeT length) {
  return w.template Fields<kFeedbackHeaderSize>([word = FeedbackHeaderWord(pad, identity, length), &p](FieldWriter& f) {
    f.U32(word);
    f.U32(p.sender);
    f.U32(0);
  });
}

}  // namespace zun

#endif
