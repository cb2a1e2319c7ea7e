#include "Zun/Rtp/Cpp/Print.h"
#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeShow(View<Show> show, Description* description) {
  description->AddNumber("sequence", "request", show.seqno());
  Description::Value values = Description::Value::array();
  for (const ShowParameter& parameter : show.parameters()) {
    const std::string name = words::ShowParameterName(parameter.type);
    values.push_back({{"type", parameter.type}, {"name", name}, {"value", parameter.value}});
    description->AddWords(name + " " + std::to_string(parameter.value));
  }
  description->AddValue("parameters", std::move(values));
}

// The fewest bytes that hold `value`, at least one.
std::size_t WidthOf(std::uint64_t value) {
  std::size_t width = 1;
  while (width < sizeof(value) && value >> (8 * width) != 0) ++width;
  return width;
}

// A descriptor (5 bits of type, 3 bits of the value's size minus 1) and a value, which is written in as few bytes as it
// needs.
void CopyParameter(OctetCursor* in, std::string* out, std::set<Rule>* rules) {
  const unsigned descriptor = in->U8();
  const std::size_t width = (descriptor & 7U) + 1;
  const std::uint64_t value = in->Number(width);
  const std::size_t written_width = WidthOf(value);
  if (written_width != width) rules->insert(Rule::ShowWidth);
  AppendNumber(out, (descriptor & 0xF8U) | (written_width - 1), 1);
  AppendNumber(out, value, written_width);
}

// A sequence number, then parameters; a descriptor of 0 begins the padding.
void RewriteShow(Rewrite* rewrite) {
  OctetCursor in(rewrite->bytes);
  std::string out(in.Take(kAfbBodyOffset + 1));
  while (!in.AtEnd() && in.Next() != 0) CopyParameter(&in, &out, &rewrite->rules);
  if (in.left() >= 4) rewrite->rules.insert(Rule::ShowPadding);
  const std::size_t length = out.size() + PaddingAfter(out.size());
  out.append(rewrite->PaddingOfString(out.size()), '\0');
  rewrite->bytes = out;
  rewrite->PutLength(length);
}

// One of type 0 whose value takes one byte would be written as what begins the padding.
std::optional<Rule> WhyUnwritten(const SubpacketView& show) {
  OctetCursor in(show.bytes);
  in.Take(kAfbBodyOffset + 1);
  while (!in.AtEnd() && in.Next() != 0) {
    const unsigned descriptor = in.U8();
    const std::uint64_t value = in.Number((descriptor & 7U) + 1);
    if (descriptor >> 3 == 0 && WidthOf(value) == 1) return Rule::ShowParameterOfType0;
  }
  return std::nullopt;
}

}  // namespace

constinit const KindRow show_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_SHOW>, DescribeShow>({
    .name = "SHOW",
    .rewrite = RewriteShow,
    .why_unwritten = WhyUnwritten,
});

}  // namespace zunrtcp
