#include "tools/zunrtcp/Kinds/Kinds.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

namespace {

// A CCFB has no media source of its own: each of its streams names one.
void DescribeRtpfb(const ZunRtcpRtpfb& rtpfb, Description* description) {
  description->AddSource("sender", "sender", ZunRtcpRtpfbGetSender(&rtpfb));
  if (ZunRtcpRtpfbGetFeedbackMessageType(&rtpfb) == ZUN_RTCPRTPFB_TYPE_CCFB) return;
  description->AddSource("source", "source", ZunRtcpRtpfbGetMediaSource(&rtpfb));
}

constexpr const KindRow* kRows[] = {&nack_row, &tmmbr_row, &tmmbn_row, &ccfb_row, &transport_cc_row, &rtpfb_abafb_row};

// Formats that others registered, in the registered dialect and in the house's.
constexpr UnmodelledKind kUnmodelled[] = {
    {kRegisteredForm + 3, "TMMBR", nullptr, DescribeTmmb, WriteTmmb, RewriteTmmb},
    {kRegisteredForm + 4, "TMMBN", nullptr, DescribeTmmb},
    {4, nullptr,
     "FMT 4 is unknown here and kept as bytes; it is the registered number of TMMBN (RFC 5104), which here is FMT 3 in "
     "a simplified form"},
    {11, nullptr,
     "FMT 11 is unknown here and kept as bytes; it is the registered number of CCFB (RFC 8888), which here is FMT 14"},
};

}  // namespace

constinit const KindRow rtpfb_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_RTPFB>, DescribeRtpfb>({
    .name = "RTPFB",
});

constinit const KindTable rtpfb_kinds = {&rtpfb_level, kRows, kUnmodelled};

}  // namespace zunrtcp
