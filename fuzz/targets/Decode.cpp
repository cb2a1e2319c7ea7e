// One datagram into a fresh packet: [flags] datagram. Both doors read the same, and what was read keeps every promise.
#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

// The first door knows no limits, and its dialect is the house's.
void CheckFirstDoor(const Octets& octets, const Decoded& decoded, const ZunRtcpPacket* p) {
  if (decoded.report.first.reason == ZUN_RTCP_DECODE_REASON_LIMIT) return;
  Allocator allocator;
  const ZunString view = ViewOf(octets);
  Packet parsed(allocator);
  const bool ok = ZunRtcpPacketParseNetworkPacket(parsed, &view) != 0;
  Check(ok == (decoded.report.refused == 0), "both doors agree whether a datagram is well-formed");
  if (!ok) return;
  Check(ContentsOf(parsed) == ContentsOf(p), "both doors read the same");
  ZunRtcpPacket built;
  Check(ZunRtcpPacketConstructFromNetworkPacket(&built, &view, allocator) != nullptr &&
            ContentsOf(&built) == ContentsOf(p),
        "a packet is constructed from what is parsed");
  ZunRtcpPacketDestruct(&built);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t flags = input.U8();
  const ZunRtcpDialect dialect = DialectOf(flags);
  const Octets octets = input.Rest();
  if (octets.size() > 65535) return 0;
  Allocator allocator;
  Packet p(allocator);
  const Decoded decoded = Decode(p, octets, dialect, OptionsOf(flags));
  Check(allocator.peak_bytes() <= std::size_t{ZUN_RTCP_DECODE_MAX_COST} * 65535,
        "a datagram costs no more than stated");
  if (dialect == ZUN_RTCP_DIALECT_HOUSE) CheckFirstDoor(octets, decoded, p);
  CheckPacket(p);
  return 0;
}
