#include "Zun/Rtp/Cpp/Tmmb.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeEntry(const TmmbEntry& entry, Description* description) {
  description->AddSource("source", "of", entry.ssrc);
  description->AddValue("exponent", entry.exponent);
  description->AddValue("mantissa", entry.mantissa);
  description->AddWords(Printed("at most %.0f bit/s (%u x 2^%u)", bitrate(entry), entry.mantissa, entry.exponent));
  description->AddNumber("overhead", "overhead", entry.overhead, "octets");
}

}  // namespace

FormFault DescribeTmmb(const FormBytes& form, Description* description) {
  const std::string_view octets = form.view.bytes;
  const TmmbMessage message(octets_of(octets));
  if (!message) return {ZunRtcpDecodeReasonGetText(message.reason()), octets.size()};

  description->AddSource("sender", "sender", message.sender());
  description->AddSource("source", "source", U32At(octets, kMediaSourceOffset));
  description->AddList("entries");
  for (const TmmbEntry& entry : message) DescribeEntry(entry, &description->AddItem("entries"));
  return {};
}

std::optional<std::string> WriteTmmb(const SubpacketView& view) {
  const TmmbMessage message(octets_of(view.bytes));
  const std::vector<TmmbEntry> entries(message.begin(), message.end());
  std::vector<std::byte> written;
  if (!message || !append_tmmb(written, message.type(), message.sender(), entries)) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(written.data()), written.size());
}

void RewriteTmmb(Rewrite* rewrite) { rewrite->Put(kMediaSourceOffset, kSourceSize, 0, Rule::MediaSource); }

}  // namespace zunrtcp
