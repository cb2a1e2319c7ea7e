// Packets that go through the open door: decoded from octets in a dialect with what was reported, and encoded.
#ifndef TESTS_SUPPORT_OPENDOOR_H
#define TESTS_SUPPORT_OPENDOOR_H

#include <string>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/support/Kinds.h"

namespace test {

inline constexpr ZunRtcpDialect kHouse = ZUN_RTCP_DIALECT_HOUSE;
inline constexpr ZunRtcpDialect kRegistered = ZUN_RTCP_DIALECT_REGISTERED;
inline constexpr ZunRtcpDialect kDialects[] = {kHouse, kRegistered};

// The default options, and those with one change.
ZunRtcpDecodeOptions Defaults();
ZunRtcpDecodeOptions Tolerant();

// A compound packet decoded from bytes that lie on a heap block of exactly their size. The callback of the options is
// the test's own: it collects what is refused.
class Decoded {
 public:
  explicit Decoded(ZunAllocator* a = ZunAllocatorGetSystem());
  Decoded(const std::string& bytes, ZunRtcpDialect dialect, const ZunRtcpDecodeOptions& options = Defaults(),
          ZunAllocator* a = ZunAllocatorGetSystem());
  Decoded(const Decoded&) = delete;
  Decoded& operator=(const Decoded&) = delete;

  // Over what it holds.
  bool Read(const std::string& bytes, ZunRtcpDialect dialect, const ZunRtcpDecodeOptions& options = Defaults());

  ZunSizeT count() const { return ZunRtcpPacketGetSubpacketCount(&packet); }
  const ZunRtcpSubpacket& operator[](ZunSizeT n) const;
  ZunRtcpDecodeReason reason() const { return report.first.reason; }

  zun::rtcp::Packet owned;
  ZunRtcpPacket& packet = *owned.get();
  ZunRtcpDecodeReport report = {};
  std::vector<ZunRtcpDecodeRefusal> refusals;  // as the callback was told
  bool ok = false;
};

// What a packet is encoded as. Where it is, the length that is asked for beforehand and the first reason not to encode
// it must agree.
struct Encoded {
  Encoded(const ZunRtcpPacket& p, ZunRtcpDialect dialect);
  Encoded(const Decoded& p, ZunRtcpDialect dialect) : Encoded(p.packet, dialect) {}

  bool ok;
  std::string bytes;           // empty when it cannot be encoded
  ZunRtcpEncodeReason reason;  // why not
  ZunSizeT index;              // which subpacket cannot
};

// All that can be seen of a packet, subpacket by subpacket: what each writes, and what is lost when it is written.
std::string Everything(const ZunRtcpPacket& p);

// A refusal in words, for comparisons: "2: 205/3 at 36, 20 bytes, stopped at 40: <reason>"; and a report.
std::string Told(const ZunRtcpDecodeRefusal& refusal);
std::string Told(const ZunRtcpDecodeReport& report);

}  // namespace test

#endif
