// The registered TMMBR and TMMBN: [flags] message. What is read is written again to the same octets, into every
// capacity; what is built of any numbers is read as it was built, or refused.
#include <cmath>
#include <vector>

#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

constexpr std::uint32_t kMaxMantissa = 131071;

// No entry has more: 2^17 - 1 times 2^63.
constexpr double kTooMuch = 1208925819614629174706176.0;  // 2^80

std::vector<ZunRtcpTmmbEntry> EntriesOf(const ZunRtcpTmmb& tmmb) {
  std::vector<ZunRtcpTmmbEntry> entries(tmmb.count);
  for (ZunSizeT i = 0; i < tmmb.count; ++i) {
    Check(ZunRtcpTmmbGetEntry(&tmmb, i, &entries[i]) != 0, "each entry that is counted can be read");
    Check(entries[i].exponent < 64 && entries[i].mantissa <= kMaxMantissa && entries[i].overhead < 512,
          "what is read is within its ranges");
  }
  return entries;
}

bool Same(const ZunRtcpTmmbEntry& a, const ZunRtcpTmmbEntry& b) {
  return a.ssrc == b.ssrc && a.exponent == b.exponent && a.mantissa == b.mantissa && a.overhead == b.overhead;
}

// Writes into every capacity; the octets, empty when it cannot be written.
std::string Write(ZunRtcpTmmbType type, ZunRtpSourceId sender, const std::vector<ZunRtcpTmmbEntry>& entries) {
  ZunSizeT needed = 12345;
  (void)ZunRtcpTmmbWrite(type, sender, entries.data(), entries.size(), nullptr, 0, &needed);
  std::vector<std::uint8_t> octets(needed + 1);
  for (ZunSizeT capacity = 0; capacity <= needed;
       capacity += capacity < 64 ? 1 : needed - capacity + (capacity == needed)) {
    octets[capacity] = 0xEE;
    ZunSizeT size = 12345;
    const bool ok = ZunRtcpTmmbWrite(type, sender, entries.data(), entries.size(), octets.data(), capacity, &size) != 0;
    Check(ok == (needed != 0 && capacity >= needed) && size == needed, "what fits is written, and the size is told");
    Check(octets[capacity] == 0xEE, "octets beyond the capacity are not touched");
  }
  return {reinterpret_cast<const char*>(octets.data()), needed};
}

void CheckRead(const Octets& octets) {
  ZunRtcpTmmb tmmb;
  ZunRtcpDecodeReason reason = ZUN_RTCP_DECODE_REASON_COUNT;
  if (!ZunRtcpTmmbRead(&tmmb, octets.data(), octets.size(), &reason)) {
    Check(reason > ZUN_RTCP_DECODE_REASON_NONE && reason < ZUN_RTCP_DECODE_REASON_COUNT, "a refusal has a reason");
    return;
  }
  const std::vector<ZunRtcpTmmbEntry> entries = EntriesOf(tmmb);
  const std::string written = Write(tmmb.type, tmmb.sender, entries);
  Check(!written.empty(), "what is read can be written");
  // The media source is written as 0, and so is no padding; all else is as it was.
  const std::string read(reinterpret_cast<const char*>(octets.data()), octets.size());
  if (read.size() == written.size()) {
    Check(read.substr(0, 8) == written.substr(0, 8) && read.substr(12) == written.substr(12),
          "what is written is what was read");
  }
}

void CheckBuilt(Input& input) {
  const ZunRtcpTmmbType type = static_cast<ZunRtcpTmmbType>(input.Below(6));
  const ZunRtpSourceId sender = input.U32();
  std::vector<ZunRtcpTmmbEntry> entries;
  while (!input.AtEnd() && entries.size() < 40) {
    ZunRtcpTmmbEntry entry = {input.U32(), input.U8(), input.U32() & (kMaxMantissa << 1 | 1), input.U16()};
    entry.exponent = static_cast<ZunUint8>(entry.exponent & 0x7F);
    entry.overhead = static_cast<ZunUint16>(entry.overhead & 0x3FF);
    entries.push_back(entry);
  }
  const std::string written = Write(type, sender, entries);
  if (written.empty()) return;
  ZunRtcpTmmb tmmb;
  Check(ZunRtcpTmmbRead(&tmmb, written.data(), written.size(), nullptr) != 0, "what is written can be read");
  Check(tmmb.type == type && tmmb.sender == sender && tmmb.count == entries.size(), "it is read as it was built");
  const std::vector<ZunRtcpTmmbEntry> read = EntriesOf(tmmb);
  for (std::size_t i = 0; i < read.size(); ++i) Check(Same(read[i], entries[i]), "each entry is read as it was built");
}

void CheckBitrate(Input& input) {
  double bitrate = 0;
  const std::uint64_t bits = input.U64();
  static_assert(sizeof(bits) == sizeof(bitrate));
  std::memcpy(&bitrate, &bits, sizeof(bits));
  ZunRtcpTmmbEntry entry = {1, 2, 3, 4};
  const bool ok = ZunRtcpTmmbEntrySetBitrate(&entry, bitrate) != 0;
  Check(ok == (bitrate >= 0 && bitrate < kTooMuch), "exactly the bit rates that an entry can hold are taken");
  if (!ok) {
    Check(Same(entry, {1, 2, 3, 4}), "an entry stays as it was");
    return;
  }
  const double got = ZunRtcpTmmbEntryGetBitrate(&entry);
  Check(entry.exponent < 64 && entry.mantissa <= kMaxMantissa, "what is set is within its ranges");
  Check(got <= bitrate, "no more than the bit rate is set");
  const double next = std::ldexp(static_cast<double>(entry.mantissa) + 1, entry.exponent);
  Check(next > bitrate || (entry.exponent == 63 && entry.mantissa == kMaxMantissa), "it is the largest that fits");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  switch (input.Below(3)) {
    case 0:
      CheckRead(input.Rest());
      break;
    case 1:
      CheckBuilt(input);
      break;
    default:
      CheckBitrate(input);
  }
  return 0;
}
