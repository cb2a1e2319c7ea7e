// What allocates, with one allocation refused or all from one on: [flags] [which] [size, 2] held datagram, datagram.
// Each operation succeeds or says that it failed, loses nothing, and succeeds as soon as nothing is refused.
#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

struct Refusing {
  std::size_t number;
  bool for_ever;
  void Begin(Allocator& allocator) const { allocator.Refuse(number, for_ever); }
};

void CheckDecode(const Octets& held, const Octets& octets, std::uint8_t flags, const Refusing& refusing) {
  Allocator allocator;
  Packet p(allocator);
  const ZunRtcpDialect dialect = DialectOf(flags);
  ZunRtcpDecodeOptions options = OptionsOf(flags);
  options.tolerant = 0;
  (void)Decode(p, held, dialect, options);
  Allocator undisturbed;
  Packet expected(undisturbed);
  const Decoded wanted = Decode(expected, octets, dialect, options);
  refusing.Begin(allocator);
  const Decoded decoded = Decode(p, octets, dialect, options);
  if (decoded.report.first.reason == ZUN_RTCP_DECODE_REASON_ALLOCATION) {
    Check(allocator.refused() != 0, "a decoder that says that it was refused memory was");
    Check(ContentsOf(p) == ContentsOf(expected, decoded.report.read), "what was read before is read whole");
  } else {
    Check(decoded == wanted && ContentsOf(p) == ContentsOf(expected), "a refusal that is not told changes nothing");
  }
  allocator.RefuseNothing();
  Check(Decode(p, octets, dialect, options) == wanted && ContentsOf(p) == ContentsOf(expected),
        "decoding succeeds as soon as nothing is refused");
}

void CheckParse(const Octets& held, const Octets& octets, const Refusing& refusing) {
  Allocator allocator;
  Packet p(allocator);
  ZunString view = ViewOf(held);
  view.allocator = allocator;
  (void)ZunRtcpPacketParseNetworkPacket(p, &view);
  view = ViewOf(octets);
  view.allocator = allocator;
  refusing.Begin(allocator);
  (void)ZunRtcpPacketParseNetworkPacket(p, &view);
  allocator.RefuseNothing();
  ZunRtcpPacketReset(p);
  Allocator undisturbed;
  Packet expected(undisturbed);
  const bool wanted = ZunRtcpPacketParseNetworkPacket(expected, &view) != 0;
  Check((ZunRtcpPacketParseNetworkPacket(p, &view) != 0) == wanted, "parsing succeeds as soon as nothing is refused");
  if (wanted) Check(ContentsOf(p) == ContentsOf(expected), "parsing after a refusal reads the same");
}

void CheckWrite(const ZunRtcpPacket* p, const Refusing& refusing) {
  const std::string expected = Written(p);
  if (expected.empty()) return;
  Allocator allocator;
  String out(allocator);
  refusing.Begin(allocator);
  (void)ZunRtcpPacketGetNetworkPacket(p, out);
  allocator.RefuseNothing();
  Check(ZunRtcpPacketGetNetworkPacket(p, out) && out.str() == expected,
        "writing succeeds as soon as nothing is refused");
}

// Copies, assignments and appended subpackets of a packet whose memory is all of `allocator`.
void CheckCopies(const Octets& held, const Octets& octets, std::uint8_t flags, const Refusing& refusing) {
  Allocator allocator;
  Packet source(allocator);
  Packet target(allocator);
  (void)Decode(source, octets, DialectOf(flags), OptionsOf(flags));
  (void)Decode(target, held, DialectOf(flags), OptionsOf(flags));
  if (source.count() == 0) return;
  const std::string contents = ContentsOf(source);
  std::size_t refused = allocator.refused();
  const auto was_refused = [&] { return allocator.refused() != refused; };

  refusing.Begin(allocator);
  ZunRtcpPacket copy;
  const std::size_t live = allocator.live_blocks();
  if (ZunRtcpPacketConstructCopy(&copy, source) != nullptr) {
    Check(ContentsOf(&copy) == contents, "a copy equals its source");
    ZunRtcpPacketDestruct(&copy);
  } else {
    Check(was_refused(), "a copy fails only when memory is refused");
  }
  Check(allocator.live_blocks() == live, "a copy that failed owns nothing");

  refusing.Begin(allocator);
  refused = allocator.refused();
  const std::string before = ContentsOf(target);
  if (!ZunRtcpPacketAppendSubpackets(target, &static_cast<ZunRtcpPacket*>(source)->subpackets)) {
    Check(was_refused() && ContentsOf(target) == before, "what cannot be appended leaves the subpackets as they were");
  } else {
    Check(ContentsOf(target) == before + contents, "what is appended follows what was there");
  }

  refusing.Begin(allocator);
  refused = allocator.refused();
  const bool assigned = ZunRtcpPacketAssign(target, source) != nullptr;
  Check(assigned || was_refused(), "an assignment fails only when memory is refused");
  if (assigned) Check(ContentsOf(target) == contents, "an assignment equals its source");
  allocator.RefuseNothing();
  Check(ZunRtcpPacketAssign(target, source) != nullptr && ContentsOf(target) == contents,
        "an assignment succeeds as soon as nothing is refused");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t flags = input.U8();
  const std::size_t number = input.U8();
  const Refusing refusing = {number, (flags & 0x80) != 0};
  const Octets held = input.Sized();
  const Octets octets = input.Rest();
  CheckDecode(held, octets, flags, refusing);
  CheckParse(held, octets, refusing);
  CheckCopies(held, octets, flags, refusing);
  Allocator allocator;
  Packet p(allocator);
  (void)Decode(p, octets, DialectOf(flags), OptionsOf(flags));
  CheckWrite(p, refusing);
  return 0;
}
