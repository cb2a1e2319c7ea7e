#include "tools/zunrtcp/Kinds/PayloadFeedback/CodecControl.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

namespace {

void DescribeFir(const ZunRtcpPsfbFir& fir, Description* description) {
  description->AddList("entries");
  for (const ZunRtcpPsfbFirEntry& entry : Elements(fir.fci)) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "to", entry.ssrc);
    described.AddNumber("sequence", "command", entry.seqno);
  }
}

void RewriteFir(Rewrite* rewrite) { RewriteCodecControlEntries(rewrite, 0); }

}  // namespace

constinit const KindRow fir_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_FIR>, DescribeFir>({
    .name = "FIR",
    .rewrite = RewriteFir,
    .why_refused = WhyRefusedWithoutEntries,
});

}  // namespace zunrtcp
