#include "tools/zunrtcp/Kinds/PayloadFeedback/CodecControl.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeFir(View<Fir> fir, Description* description) {
  description->AddList("entries");
  for (const FirEntry& entry : fir.fci()) {
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
