#include "tests/support/Kinds.h"

namespace test {
namespace {

// How a level tells its kinds apart.
struct Telling {
  ZunInt32 (*value_of)(const ZunRtcpSubpacket& sp);
  ZunBool (*is_unknown)(ZunInt32 value);
  const Row* envelope;
};

const Telling& At(Level level) {
  static const Telling levels[] = {
      {[](const ZunRtcpSubpacket& sp) { return ZunRtcpSubpacketGetType(&sp); }, ZunRtcpSubpacketTypeIsUnknown, nullptr},
      {[](const ZunRtcpSubpacket& sp) { return ZunRtcpRtpfbGetFeedbackMessageType(&sp.rtpfb); },
       ZunRtcpRtpfbFeedbackMessageIsUnknown, &kRowOf<ZunRtcpRtpfb>},
      {[](const ZunRtcpSubpacket& sp) { return ZunRtcpPsfbGetFeedbackMessageType(&sp.psfb); }, ZunRtcpPsfbTypeIsUnknown,
       &kRowOf<ZunRtcpPsfb>},
      {[](const ZunRtcpSubpacket& sp) { return ZunRtcpPsfbAfbGetType(&sp.psfb.afb); }, ZunRtcpPsfbAfbTypeIsUnknown,
       &kRowOf<ZunRtcpPsfbAfb>},
  };
  return levels[static_cast<int>(level)];
}

}  // namespace

const std::vector<const Row*>& AllRows() {
#define ROW_OF(value, Kind, member, Getter) &kRowOf<Kind>,
  static const std::vector<const Row*> rows = {
      ZUN_RTCPSUBPACKET_KINDS(ROW_OF) & kRowOf<ZunRtcpUnknown>,
      ZUN_RTCPRTPFB_KINDS(ROW_OF) & kRowOf<ZunRtcpRtpfbUnknown>,
      ZUN_RTCPPSFB_KINDS(ROW_OF) & kRowOf<ZunRtcpPsfbUnknown>,
      ZUN_RTCPPSFBAFB_KINDS(ROW_OF) & kRowOf<ZunRtcpPsfbAfbUnknown>,
  };
#undef ROW_OF
  return rows;
}

const Row* EnvelopeOf(const Row& row) { return At(row.level).envelope; }

bool IsUnknown(Level level, ZunInt32 value) { return At(level).is_unknown(value) != 0; }

ZunInt32 UnassignedValue(Level level, ZunInt32 from) {
  while (!IsUnknown(level, from)) ++from;
  return from;
}

ZunInt32 ValueAt(Level level, const ZunRtcpSubpacket& sp) { return At(level).value_of(sp); }

bool IsOfKind(const Row& row, const ZunRtcpSubpacket& sp) {
  const Row* const envelope = EnvelopeOf(row);
  if (envelope != nullptr && !IsOfKind(*envelope, sp)) return false;
  const ZunInt32 value = ValueAt(row.level, sp);
  return value == row.value || (IsUnknown(row.level, value) && IsUnknown(row.level, row.value));
}

std::string Bytes(const Row& row, const ZunRtcpSubpacket& sp, bool pad) {
  Text out;
  EXPECT_TRUE(row.write_packet(&sp, out, pad));
  EXPECT_EQ(row.get_packet_length(&sp), out->size);
  return out.str();
}

std::string Seen(const Row& row, const ZunRtcpSubpacket& sp) {
  Text out;
  const bool written = row.write_packet(&sp, out, 0) != 0;
  return ToHex(out.str()) + (written ? " written, " : " refused, ") + std::to_string(row.get_packet_length(&sp));
}

std::string SeenOf(const ZunRtcpSubpacket& sp) {
  for (const Row* const row : AllRows()) {
    if (row->level == Level::kSubpacket && IsOfKind(*row, sp)) return Seen(*row, sp);
  }
  return "of no kind";
}

bool Owned::Read(const std::string& wire, Reading how) {
  const Datagram datagram(wire, how.buffer_allocator);
  return row_.assign_from_buffer(&sp_, datagram, kBodyBegin, wire.size() + how.beyond, PacketTypeOf(wire),
                                 CountOf(wire)) != 0;
}

Received::Received(const Row& row, const std::string& wire, ZunAllocator* a, Reading how) : Owned(row) {
  const Datagram datagram(wire, how.buffer_allocator);
  ok = row.construct_from_buffer(sp(), datagram, kBodyBegin, wire.size() + how.beyond, PacketTypeOf(wire),
                                 CountOf(wire), a) != 0;
}

void ForEveryCut(const Row& row, const std::string& wire,
                 const std::function<void(const Received& p, ZunSizeT size, bool end_is_beyond)>& check) {
  for (ZunSizeT size = 0; size < wire.size() - kBodyBegin; ++size) {
    const std::string beginning = wire.substr(0, kBodyBegin + size);
    for (const ZunSizeT beyond : {ZunSizeT{0}, wire.size() - beginning.size()}) {
      SCOPED_TRACE(::testing::Message() << size << " bytes of the body, " << beyond << " said to follow");
      check(Received(row, beginning, ZunAllocatorGetSystem(), {.beyond = beyond}), size, beyond != 0);
    }
  }
}

}  // namespace test
