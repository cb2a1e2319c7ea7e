#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

// On the wire: the number of padding bits, the payload type in 7 bits, then the bit string with its padding.
constexpr std::size_t kPaddingBitsOffset = kFciOffset;
constexpr std::size_t kPayloadTypeOffset = kFciOffset + 1;
constexpr std::size_t kStringOffset = kFciOffset + 2;
constexpr std::size_t kMinSize = kFciOffset + 4;

void DescribeRpsi(View<Rpsi> rpsi, Description* description) {
  description->AddNumber("payloadType", "payload type", rpsi.pt());
  description->AddNumber("unusedBits", "unused bits", rpsi.unbits());
  description->AddBytes("bitString", "bit string", rpsi.rpsi());
}

// The octets that the number of padding bits covers are dropped; its rest, bits of the last octet, is kept.
void RewriteRpsi(Rewrite* rewrite) {
  const std::size_t bits = U8At(rewrite->bytes, kPaddingBitsOffset);
  rewrite->Mask(kPayloadTypeOffset, 0x7F, Rule::ReservedBits);
  const std::size_t dropped = bits / 8;
  const std::size_t held = rewrite->bytes.size() - kStringOffset;
  if (dropped > held) throw OctetsEnd();
  std::string string = rewrite->bytes.substr(kStringOffset, held - dropped);
  const std::size_t padding = PaddingAfter(kStringOffset + string.size());
  const std::size_t written_bits = string.empty() ? bits : 8 * padding + bits % 8;
  string.append(padding, '\0');
  rewrite->Put(kPaddingBitsOffset, 1, written_bits, Rule::RpsiPadding);
  rewrite->PutRest(kStringOffset, string, Rule::RpsiPadding);
  rewrite->PutLength(rewrite->bytes.size());
}

std::optional<Rule> WhyRefused(const SubpacketView& rpsi) {
  if (rpsi.bytes.size() < kMinSize) return std::nullopt;
  const std::size_t dropped = U8At(rpsi.bytes, kPaddingBitsOffset) / 8U;
  if (dropped > rpsi.bytes.size() - kStringOffset) return Rule::RpsiPaddingCount;
  return std::nullopt;
}

}  // namespace

constinit const KindRow rpsi_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_RPSI>, DescribeRpsi>({
    .name = "RPSI",
    .rewrite = RewriteRpsi,
    .why_refused = WhyRefused,
});

}  // namespace zunrtcp
