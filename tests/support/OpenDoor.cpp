#include "tests/support/OpenDoor.h"

#include <cstring>
#include <memory>

namespace test {
namespace {

void Collect(ZunVoidPtr user_data, const ZunRtcpDecodeRefusal* refusal) {
  static_cast<std::vector<ZunRtcpDecodeRefusal>*>(user_data)->push_back(*refusal);
}

// An ECN field that was read does not always show in what is written.
std::string EcnOf(const ZunRtcpSubpacket& sp) {
  if (!IsOfKind(kRowOf<ZunRtcpRtpfbCcfb>, sp)) return "";
  std::string text = ", ECN";
  const ZunVector_ZunRtcpRtpfbCcfbStream& streams = sp.rtpfb.ccfb.streams;
  for (const ZunRtcpRtpfbCcfbStream* stream = streams.begin; stream != streams.end; ++stream) {
    for (const ZunRtcpRtpfbCcfbPacketMetric* x = stream->packetMetrics.begin; x != stream->packetMetrics.end; ++x) {
      text += " " + std::to_string(x->ecn);
    }
  }
  return text;
}

const Row& RowOfType(ZunInt32 type) {
  for (const Row* const row : AllRows()) {
    if (row->level == Level::kSubpacket && row->value == type) return *row;
  }
  return kRowOf<ZunRtcpUnknown>;
}

}  // namespace

ZunRtcpDecodeOptions Defaults() {
  ZunRtcpDecodeOptions options;
  ZunRtcpDecodeOptionsConstructDefault(&options);
  return options;
}

ZunRtcpDecodeOptions Tolerant() {
  ZunRtcpDecodeOptions options = Defaults();
  options.tolerant = 1;
  return options;
}

Decoded::Decoded(ZunAllocator* a) : owned(a) {}

Decoded::Decoded(const std::string& bytes, ZunRtcpDialect dialect, const ZunRtcpDecodeOptions& options, ZunAllocator* a)
    : Decoded(a) {
  Read(bytes, dialect, options);
}

bool Decoded::Read(const std::string& bytes, ZunRtcpDialect dialect, const ZunRtcpDecodeOptions& options) {
  const std::unique_ptr<char[]> flush(new char[bytes.size()]);
  std::memcpy(flush.get(), bytes.data(), bytes.size());
  ZunRtcpDecodeOptions collecting = options;
  collecting.onRefusal = Collect;
  collecting.userData = &refusals;
  refusals.clear();
  report = {77, 77, {77, 77, 77, 77, 77, 77, 77}};  // all of it must be stored
  ok = ZunRtcpPacketDecode(&packet, flush.get(), bytes.size(), dialect, &collecting, &report) != 0;
  return ok;
}

const ZunRtcpSubpacket& Decoded::operator[](ZunSizeT n) const {
  const ZunRtcpSubpacket* const sp = ZunRtcpPacketGetSubpacket(&packet, n);
  EXPECT_NE(sp, nullptr) << "there is no subpacket " << n;
  static const ZunRtcpSubpacket nothing = {};
  return sp != nullptr ? *sp : nothing;
}

Encoded::Encoded(const ZunRtcpPacket& p, ZunRtcpDialect dialect) : index(0) {
  const ZunSizeT length = ZunRtcpPacketGetEncodedLength(&p, dialect);
  bytes.resize(length);
  ZunSizeT size = 77;
  ok = ZunRtcpPacketEncode(&p, bytes.data(), bytes.size(), dialect, &size) != 0;
  EXPECT_EQ(size, length);
  reason = ZunRtcpPacketFindUnencodable(&p, dialect, &index);
  EXPECT_EQ(ok, reason == ZUN_RTCP_ENCODE_REASON_NONE) << ZunRtcpEncodeReasonGetText(reason);
  EXPECT_EQ(ok, length != 0);
  EXPECT_EQ(ok, index == ZunRtcpPacketGetSubpacketCount(&p) && index != 0);
}

std::string Everything(const ZunRtcpPacket& p) {
  std::string text;
  for (ZunSizeT i = 0; i < ZunRtcpPacketGetSubpacketCount(&p); ++i) {
    const ZunRtcpSubpacket& sp = *ZunRtcpPacketGetSubpacket(&p, i);
    text += Seen(RowOfType(ZunRtcpSubpacketGetType(&sp)), sp) + EcnOf(sp) + "\n";
  }
  return text;
}

std::string Told(const ZunRtcpDecodeRefusal& refusal) {
  return std::to_string(refusal.index) + ": " + std::to_string(refusal.type) + "/" + std::to_string(refusal.count) +
         " at " + std::to_string(refusal.offset) + ", " + std::to_string(refusal.length) + " bytes, stopped at " +
         std::to_string(refusal.stoppedAt) + ": " + ZunRtcpDecodeReasonGetText(refusal.reason);
}

std::string Told(const ZunRtcpDecodeReport& report) {
  return std::to_string(report.read) + " read, " + std::to_string(report.refused) + " refused, " + Told(report.first);
}

}  // namespace test
