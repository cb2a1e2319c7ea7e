#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/WriteBack/Rewrite.h"

namespace zunrtcp {

namespace {

// CCFB: streams of an SSRC, a first sequence number, a count and as many metrics (received, 2 bits of ECN, 13 bits of
// arrival time offset), padded to a multiple of 4; then a timestamp. A value of four times the ECN keeps only the
// lowest bit of the ECN when it is shifted to its place, in the bit of "received", which is set anyway.
void RewriteCcfb(Rewrite* rewrite) {
  for (std::size_t at = 8; at + 4 < rewrite->bytes.size();) {
    const unsigned metrics = U16At(rewrite->bytes, at + 6);
    at += 8;
    for (unsigned i = 0; i < metrics; ++i, at += 2) {
      const unsigned metric = U16At(rewrite->bytes, at);
      if ((metric & 0x8000U) == 0) {
        rewrite->Put(at, 2, 0, Rule::CcfbLostMetric);
      } else {
        rewrite->Put(at, 2, metric & 0x9fffU, Rule::CcfbEcn);
      }
    }
    if (metrics % 2 != 0) {
      rewrite->Put(at, 2, 0, Rule::CcfbPadding);
      at += 2;
    }
  }
}

}  // namespace

void RewriteTransportFeedback(const SubpacketView& received, Rewrite* rewrite) {
  if (received.type() != kRtpfb) return;
  switch (received.count()) {
    case kTmmbr:
      rewrite->Put(8, 4, 0, Rule::MediaSource);
      break;
    case kCcfb:
      RewriteCcfb(rewrite);
      break;
    case kTransportCc:
      RewriteTransportCc(rewrite);
      break;
    default:
      break;
  }
}

}  // namespace zunrtcp
