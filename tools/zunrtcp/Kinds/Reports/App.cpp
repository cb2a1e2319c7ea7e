#include "tools/zunrtcp/Kinds/Reports/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeApp(View<App> app, Description* description) {
  description->AddSource("source", "source", app.source());
  description->AddText("name", "name", app.name());
  description->AddValue("dataLength", app.data().size());
  description->AddWords(Counted(app.data().size(), "byte") + " of data");
  description->AddBytes("data", "data", app.data());
}

void RewriteApp(Rewrite* rewrite) { rewrite->Mask(0, ~kCountMask, Rule::AppSubtype); }

}  // namespace

constinit const KindRow app_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_APP>, DescribeApp>({
    .name = "APP",
    .rewrite = RewriteApp,
});

}  // namespace zunrtcp
