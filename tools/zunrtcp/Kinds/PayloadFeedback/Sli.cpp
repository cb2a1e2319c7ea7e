#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"
#include "tools/zunrtcp/Packet/LibraryValues.h"

namespace zunrtcp {

namespace {

void DescribeSli(const ZunRtcpPsfbSli& sli, Description* description) {
  description->AddList("items");
  for (const ZunRtcpPsfbSliItem& item : Elements(sli.items)) {
    Description& described = description->AddItem("items");
    described.AddNumber("firstLost", "lost from macroblock", ZunRtcpPsfbSliItemGetFirstLostMblock(&item));
    described.AddNumber("lostCount", "as many as", ZunRtcpPsfbSliItemGetNumLostMblocks(&item));
    described.AddNumber("pictureId", "in picture", ZunRtcpPsfbSliItemGetPictureId(&item));
  }
}

}  // namespace

constinit const KindRow sli_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_SLI>, DescribeSli>({
    .name = "SLI",
});

}  // namespace zunrtcp
