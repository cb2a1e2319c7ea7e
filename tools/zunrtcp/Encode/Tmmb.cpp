#include "tools/zunrtcp/Encode/Forms.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"

namespace zunrtcp {

namespace {

constexpr std::uint64_t kMostExponent = 63;
constexpr std::uint64_t kMostMantissa = 0x1FFFF;
constexpr std::uint64_t kMostOverhead = 0x1FF;

ZunRtcpTmmbEntry EntryOf(const JsonField& field) {
  ZunRtcpTmmbEntry entry{};
  entry.ssrc = field["source"].As<std::uint32_t>();
  entry.exponent = static_cast<ZunUint8>(field["exponent"].Unsigned(kMostExponent));
  entry.mantissa = static_cast<ZunUint32>(field["mantissa"].Unsigned(kMostMantissa));
  entry.overhead = static_cast<ZunUint16>(field["overhead"].Unsigned(kMostOverhead));
  return entry;
}

}  // namespace

std::string EncodeTmmb(const JsonField& packet, ZunRtcpTmmbType type) {
  std::vector<ZunRtcpTmmbEntry> entries;
  for (const JsonField& field : packet["entries"].Elements()) entries.push_back(EntryOf(field));
  const ZunRtpSourceId sender = packet["sender"].As<std::uint32_t>();
  ZunSizeT size = 0;
  ZunRtcpTmmbWrite(type, sender, entries.data(), entries.size(), nullptr, 0, &size);
  std::string octets(size, '\0');
  if (size == 0 || !ZunRtcpTmmbWrite(type, sender, entries.data(), entries.size(), octets.data(), size, &size)) {
    packet["entries"].Refuse(entries.empty() ? "a TMMBR has at least one" : "are too many");
  }
  // A peer may have put something in the field that is not used.
  std::string source;
  AppendNumber(&source, packet["source"].As<std::uint32_t>(), kSourceSize);
  return octets.replace(kMediaSourceOffset, kSourceSize, source);
}

}  // namespace zunrtcp
