#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeSli(View<Sli> sli, Description* description) {
  description->AddList("items");
  for (const SliItem& item : sli.items()) {
    Description& described = description->AddItem("items");
    described.AddNumber("firstLost", "lost from macroblock", item.lost_mblock);
    described.AddNumber("lostCount", "as many as", item.num_lost_mblocks);
    described.AddNumber("pictureId", "in picture", item.picture_id);
  }
}

}  // namespace

constinit const KindRow sli_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_SLI>, DescribeSli>({
    .name = "SLI",
});

}  // namespace zunrtcp
