#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

// On the wire: the number of sources, an exponent of 6 bits and a mantissa of 18, then the sources.
constexpr std::size_t kCountOffset = kAfbBodyOffset;
constexpr std::size_t kBitrateOffset = kAfbBodyOffset + 1;
constexpr std::size_t kBitrateSize = 3;
constexpr std::size_t kSourcesOffset = kAfbBodyOffset + 4;
constexpr unsigned kMantissaBits = 18;
constexpr std::size_t kFirstRefusedCount = 128;

void DescribeRemb(View<Remb> remb, Description* description) {
  const double bitrate = remb.bitrate();
  const auto sources = remb.sources();
  description->Add("bitrate", bitrate, Printed("%.3f kbit/s", bitrate / 1000));
  description->AddSources("sources", sources, "for " + (sources.empty() ? "no source" : SourceNames(sources)));
}

// The exponent is written as small as the mantissa allows.
void RewriteRemb(Rewrite* rewrite) {
  const std::uint64_t bits = NumberAt(rewrite->bytes, kBitrateOffset, kBitrateSize);
  std::uint64_t exponent = bits >> kMantissaBits;
  std::uint64_t mantissa = bits & ((1U << kMantissaBits) - 1);
  if (mantissa == 0) exponent = 0;
  while (exponent > 0 && mantissa < 1U << (kMantissaBits - 1)) {
    mantissa <<= 1;
    --exponent;
  }
  rewrite->Put(kBitrateOffset, kBitrateSize, exponent << kMantissaBits | mantissa, Rule::RembMantissa);
}

// Only where nothing else is wrong with it.
std::optional<Rule> WhyRefused(const SubpacketView& remb) {
  if (remb.bytes.size() < kSourcesOffset) return std::nullopt;
  const std::size_t count = U8At(remb.bytes, kCountOffset);
  const bool is_whole = remb.bytes.size() == kSourcesOffset + kSourceSize * count;
  if (is_whole && count >= kFirstRefusedCount) return Rule::RembSourceCount;
  return std::nullopt;
}

}  // namespace

constinit const KindRow remb_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_REMB>, DescribeRemb>({
    .name = "REMB",
    .rewrite = RewriteRemb,
    .why_refused = WhyRefused,
});

}  // namespace zunrtcp
