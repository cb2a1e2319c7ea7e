#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::size_t kEntryHeadSize = kSourceSize + 2;  // with a sequence number and a payload type
constexpr std::size_t kLengthInHeader = kAfbBodyOffset + 8;

void DescribeLir(View<Lir> lir, Description* description) {
  description->AddList("entries");
  for (const auto entry : lir.fci()) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "source", entry.ssrc());
    described.AddNumber("sequence", "sequence", entry.seqno());
    described.AddNumber("payloadType", "payload type", entry.payload_type());
    described.AddBytes("layerData", "layer data", entry.layer_data());
  }
}

// Entries are read with 2 bytes of length before the padded layer data, and written without them.
void RewriteLir(Rewrite* rewrite) {
  OctetCursor in(rewrite->bytes);
  std::string out(in.Take(kAfbBodyOffset));
  while (!in.AtEnd()) {
    out += in.Take(kEntryHeadSize);
    const std::size_t length = in.U16();
    const std::size_t padding = PaddingAfter(length);
    out += in.Take(length);
    out.append(padding, '\0');
    in.Take(padding);
  }
  rewrite->bytes = out;
  rewrite->PutLength(kLengthInHeader);
  rewrite->rules.insert(Rule::LirLayout);
}

}  // namespace

constinit const KindRow lir_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_LIR>, DescribeLir>({
    .name = "LIR",
    .rewrite = RewriteLir,
    .why_refused = WhyRefusedWithoutEntries<kAfbBodyOffset>,
});

}  // namespace zunrtcp
