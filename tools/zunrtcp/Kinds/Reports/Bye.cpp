#include "tools/zunrtcp/Kinds/Reports/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeBye(View<Bye> bye, Description* description) {
  description->AddSources("sources", bye.sources(), SourceNames(bye.sources()) + " left");
  if (!bye.reason().empty()) description->AddText("reason", "reason", bye.reason());
}

// Sources, then, when there is more, a reason after its length and zeros to a multiple of 4.
void RewriteBye(Rewrite* rewrite) {
  const std::size_t at = kHeaderSize + kSourceSize * rewrite->count();
  if (at == rewrite->bytes.size()) return;
  const std::size_t length = U8At(rewrite->bytes, at);
  if (length == 0) {
    rewrite->PutRest(at, "", Rule::ByeEmptyReason);
    rewrite->PutLength(at);
    return;
  }
  std::string reason(BytesAt(rewrite->bytes, at, 1 + length));
  reason.append(PaddingAfter(reason.size()), '\0');
  rewrite->PutRest(at, reason, Rule::ByePadding);
}

std::optional<Rule> WhyRefused(const SubpacketView& bye) {
  if (!bye.registered() && bye.count() == 0) return Rule::ByeWithoutSources;
  return std::nullopt;
}

}  // namespace

constinit const KindRow bye_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_BYE>, DescribeBye>({
    .name = "BYE",
    .counted = "source",
    .rewrite = RewriteBye,
    .why_refused = WhyRefused,
});

}  // namespace zunrtcp
