#include "tools/zunrtcp/Encode/Forms.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"

namespace zunrtcp {

using zun::rtcp::TmmbEntry;

namespace {

constexpr std::uint64_t kMostExponent = 63;
constexpr std::uint64_t kMostMantissa = 0x1FFFF;
constexpr std::uint64_t kMostOverhead = 0x1FF;

TmmbEntry EntryOf(const JsonField& field) {
  TmmbEntry entry{};
  entry.ssrc = field["source"].As<std::uint32_t>();
  entry.exponent = static_cast<std::uint8_t>(field["exponent"].Unsigned(kMostExponent));
  entry.mantissa = static_cast<std::uint32_t>(field["mantissa"].Unsigned(kMostMantissa));
  entry.overhead = static_cast<std::uint16_t>(field["overhead"].Unsigned(kMostOverhead));
  return entry;
}

}  // namespace

std::string EncodeTmmb(const JsonField& packet, ZunRtcpTmmbType type) {
  std::vector<TmmbEntry> entries;
  for (const JsonField& field : packet["entries"].Elements()) entries.push_back(EntryOf(field));
  std::vector<std::byte> message;
  if (!zun::rtcp::append_tmmb(message, type, packet["sender"].As<std::uint32_t>(), entries)) {
    packet["entries"].Refuse(entries.empty() ? "a TMMBR has at least one" : "are too many");
  }
  std::string octets(reinterpret_cast<const char*>(message.data()), message.size());
  // A peer may have put something in the field that is not used.
  std::string source;
  AppendNumber(&source, packet["source"].As<std::uint32_t>(), kSourceSize);
  return octets.replace(kMediaSourceOffset, kSourceSize, source);
}

}  // namespace zunrtcp
