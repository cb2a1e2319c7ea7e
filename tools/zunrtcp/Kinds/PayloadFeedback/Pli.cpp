#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"
#include "tools/zunrtcp/Packet/LibraryValues.h"

namespace zunrtcp {

namespace {

void DescribePli(const ZunRtcpPsfbPli& pli, Description* description) {
  description->AddBytes("extension", "extension", BytesOf(pli.profile_specific_ext));
}

}  // namespace

constinit const KindRow pli_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_PLI>, DescribePli>({
    .name = "PLI",
});

}  // namespace zunrtcp
