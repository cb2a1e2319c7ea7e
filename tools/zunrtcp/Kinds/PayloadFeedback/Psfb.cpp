#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/Kinds.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

namespace {

void DescribePsfb(const ZunRtcpPsfb& psfb, Description* description) {
  description->AddSource("sender", "sender", ZunRtcpPsfbGetSender(&psfb));
  description->AddSource("source", "source", ZunRtcpPsfbGetMediaSource(&psfb));
}

constexpr const KindRow* kRows[] = {&pli_row, &sli_row, &rpsi_row, &fir_row, &tstr_row, &tsta_row, &afb_row};

}  // namespace

constinit const KindRow psfb_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_PSFB>, DescribePsfb>({
    .name = "PSFB",
});

constinit const KindTable psfb_kinds = {&psfb_level, kRows, {}};

}  // namespace zunrtcp
