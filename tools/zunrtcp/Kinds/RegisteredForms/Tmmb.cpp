#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

void DescribeEntry(const ZunRtcpTmmbEntry& entry, Description* description) {
  description->AddSource("source", "of", entry.ssrc);
  description->AddValue("exponent", entry.exponent);
  description->AddValue("mantissa", entry.mantissa);
  description->AddWords(
      Printed("at most %.0f bit/s (%u x 2^%u)", ZunRtcpTmmbEntryGetBitrate(&entry), entry.mantissa, entry.exponent));
  description->AddNumber("overhead", "overhead", entry.overhead, "octets");
}

}  // namespace

FormFault DescribeTmmb(const FormBytes& form, Description* description) {
  const std::string_view octets = form.view.bytes;
  ZunRtcpTmmb message;
  ZunRtcpDecodeReason reason = ZUN_RTCP_DECODE_REASON_NONE;
  if (!ZunRtcpTmmbRead(&message, octets.data(), octets.size(), &reason)) {
    return {ZunRtcpDecodeReasonGetText(reason), octets.size()};
  }

  description->AddSource("sender", "sender", message.sender);
  description->AddSource("source", "source", U32At(octets, kMediaSourceOffset));
  description->AddList("entries");
  ZunRtcpTmmbEntry entry;
  for (std::size_t i = 0; ZunRtcpTmmbGetEntry(&message, i, &entry); ++i) {
    DescribeEntry(entry, &description->AddItem("entries"));
  }
  return {};
}

}  // namespace zunrtcp
