#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribePli(View<Pli> pli, Description* description) {
  description->AddBytes("extension", "extension", pli.profile_specific_ext());
}

}  // namespace

constinit const KindRow pli_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_PLI>, DescribePli>({
    .name = "PLI",
});

}  // namespace zunrtcp
