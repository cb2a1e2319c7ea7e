// Datagrams into one packet: ([flags] [size, 2] datagram)... What is decoded in place is what is decoded fresh; a
// datagram that is decoded again takes no memory.
#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

// One that announces no chunks leaves those of an SDES that it is read over.
bool IsEmptySdes(const ZunRtcpSubpacket& sp) {
  return sp.unk.type == ZUN_RTCPSUBPACKET_TYPE_SDES && ZunVector_ZunRtcpSdesChunkEmpty(&sp.sdes.chunks);
}

void CheckInPlace(Packet& p, Allocator& allocator, const Octets& octets, std::uint8_t flags) {
  Allocator of_fresh;
  Packet fresh(of_fresh);
  const ZunRtcpDialect dialect = DialectOf(flags);
  const ZunRtcpDecodeOptions options = OptionsOf(flags);
  const Decoded expected = Decode(fresh, octets, dialect, options);
  Check(Decode(p, octets, dialect, options) == expected, "decoding in place has the result of decoding fresh");
  const std::string contents = ContentsOf(fresh);
  Check(ContentsOf(p) == contents, "decoding in place reads what decoding fresh reads");
  const std::size_t allocations = allocator.allocations();
  Check(Decode(p, octets, dialect, options) == expected && ContentsOf(p) == contents, "decoding again changes nothing");
  if (expected.report.refused == 0) {
    Check(allocator.allocations() == allocations, "a datagram of the shape of the last one allocates nothing");
  }
}

void CheckFirstDoorInPlace(Packet& p, const Octets& octets, ZunAllocator* allocator_of_string) {
  Allocator of_fresh;
  Packet fresh(of_fresh);
  ZunString view = ViewOf(octets);
  view.allocator = allocator_of_string;
  const bool expected = ZunRtcpPacketParseNetworkPacket(fresh, &view) != 0;
  Check((ZunRtcpPacketParseNetworkPacket(p, &view) != 0) == expected,
        "parsing in place has the result of parsing fresh");
  if (!expected || Holds(fresh, IsEmptySdes)) return;
  Check(ContentsOf(p) == ContentsOf(fresh), "parsing in place reads what parsing fresh reads");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Allocator of_decoded;
  Allocator of_parsed;
  Allocator of_strings;  // outlives the packet that is parsed into, which may take storage from it
  Packet decoded(of_decoded);
  Packet parsed(of_parsed);
  for (int datagrams = 0; !input.AtEnd() && datagrams < 8; ++datagrams) {
    const std::uint8_t flags = input.U8();
    const Octets octets = input.Sized();
    CheckInPlace(decoded, of_decoded, octets, flags);
    CheckFirstDoorInPlace(parsed, octets, (flags & 8) != 0 ? static_cast<ZunAllocator*>(of_strings) : nullptr);
  }
  return 0;
}
