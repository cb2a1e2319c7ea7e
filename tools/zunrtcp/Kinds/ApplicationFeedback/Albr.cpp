#include "tools/zunrtcp/Kinds/ApplicationFeedback/FixedSize.h"
#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeAlbr(View<Albr> albr, Description* description) {
  description->AddNumber("availableBitRate", "available link bit rate", albr.available_bit_rate());
}

}  // namespace

constinit const KindRow albr_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_ALBR>, DescribeAlbr>({
    .name = "ALBR",
    .rewrite = RewriteFixedSize<4>,
});

}  // namespace zunrtcp
