#include "tools/zunrtcp/Kinds/ApplicationFeedback/FixedSize.h"
#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeShowAck(View<ShowAck> ack, Description* description) {
  description->AddNumber("sequence", "request", ack.seqno());
  description->AddSource("showSender", "of", ack.show_sender());
}

// An SSRC, a sequence number and three reserved bytes.
void RewriteShowAck(Rewrite* rewrite) {
  rewrite->Put(kAfbBodyOffset + kSourceSize + 1, 3, 0, Rule::ReservedBits);
  RewriteFixedSize<kSourceSize + 4>(rewrite);
}

}  // namespace

constinit const KindRow show_ack_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_SHOWACK>, DescribeShowAck>({
    .name = "SHOWACK",
    .rewrite = RewriteShowAck,
});

}  // namespace zunrtcp
