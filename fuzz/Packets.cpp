#include "fuzz/Packets.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace fuzz {
namespace {

struct Refusals {
  ZunSizeT count = 0;
  ZunRtcpDecodeRefusal first = {};
};

void CountRefusal(ZunVoidPtr data, const ZunRtcpDecodeRefusal* refusal) {
  auto* const refusals = static_cast<Refusals*>(data);
  if (refusals->count++ == 0) refusals->first = *refusal;
}

bool SameRefusal(const ZunRtcpDecodeRefusal& a, const ZunRtcpDecodeRefusal& b) {
  return a.reason == b.reason && a.index == b.index && a.type == b.type && a.count == b.count && a.offset == b.offset &&
         a.length == b.length && a.stoppedAt == b.stoppedAt;
}

void CheckRefusal(const ZunRtcpDecodeRefusal& refusal, ZunSizeT size) {
  Check(refusal.reason > ZUN_RTCP_DECODE_REASON_NONE && refusal.reason < ZUN_RTCP_DECODE_REASON_COUNT,
        "a refusal has a reason");
  Check(ZunRtcpDecodeReasonGetText(refusal.reason)[0] != '\0', "a reason has a text");
  Check(refusal.offset <= size && refusal.stoppedAt >= refusal.offset && refusal.stoppedAt <= size,
        "a refusal tells places of the datagram");
}

}  // namespace

bool operator==(const Decoded& a, const Decoded& b) {
  return a.ok == b.ok && a.report.read == b.report.read && a.report.refused == b.report.refused &&
         SameRefusal(a.report.first, b.report.first);
}

ZunRtcpDialect DialectOf(std::uint8_t byte) {
  return (byte & 1) != 0 ? ZUN_RTCP_DIALECT_REGISTERED : ZUN_RTCP_DIALECT_HOUSE;
}

ZunRtcpDecodeOptions OptionsOf(std::uint8_t byte) {
  ZunRtcpDecodeOptions options;
  ZunRtcpDecodeOptionsConstructDefault(&options);
  options.tolerant = (byte & 2) != 0;
  if ((byte & 4) != 0) {
    options.maxSubpackets = 1 + (byte >> 3 & 3);
    options.maxStatuses = ZunSizeT{8} << (byte >> 5);
    options.maxEntries = ZunSizeT{1} << (byte >> 5);
  }
  return options;
}

Decoded Decode(ZunRtcpPacket* p, const Octets& octets, ZunRtcpDialect dialect, ZunRtcpDecodeOptions options) {
  Refusals refusals;
  options.onRefusal = CountRefusal;
  options.userData = &refusals;
  Decoded decoded;
  decoded.ok = ZunRtcpPacketDecode(p, octets.data(), octets.size(), dialect, &options, &decoded.report) != 0;
  const ZunRtcpDecodeReport& report = decoded.report;
  Check(report.read == ZunRtcpPacketGetSubpacketCount(p), "the report counts what the packet holds");
  Check(report.refused == refusals.count, "each refusal is handed to the handler once");
  Check(SameRefusal(report.first, refusals.first), "the report keeps the first refusal");
  if (report.refused != 0) CheckRefusal(report.first, octets.size());
  if (options.tolerant) {
    Check(decoded.ok == (report.refused == 0 || report.read != 0), "tolerant decoding fails when nothing was read");
  } else {
    Check(report.refused == (decoded.ok ? 0U : 1U), "the first refusal ends decoding");
  }
  Check(report.read <= options.maxSubpackets, "no more subpackets than allowed");
  return decoded;
}

std::string Encoded(const ZunRtcpPacket* p, ZunRtcpDialect dialect) {
  ZunSizeT index = 0;
  const ZunSizeT length = ZunRtcpPacketGetEncodedLength(p, dialect);
  const ZunRtcpEncodeReason reason = ZunRtcpPacketFindUnencodable(p, dialect, &index);
  Check((reason == ZUN_RTCP_ENCODE_REASON_NONE) == (length != 0), "what can be encoded has a length");
  Check(reason >= 0 && reason < ZUN_RTCP_ENCODE_REASON_COUNT, "a reason is one of those that there are");
  Check(index <= ZunRtcpPacketGetSubpacketCount(p), "a reason is about a subpacket");
  std::vector<std::uint8_t> octets(length + 1, 0xEE);
  ZunSizeT size = 12345;
  const bool ok = ZunRtcpPacketEncode(p, octets.data(), length, dialect, &size) != 0;
  Check(ok == (length != 0), "what has a length is encoded into so much");
  Check(size == length, "the size is the length");
  Check(octets[length] == 0xEE, "octets beyond the capacity are not touched");
  if (!ok) return {};
  if (length > 0) {
    Check(!ZunRtcpPacketEncode(p, octets.data(), length - 1, dialect, &size) && size == length,
          "one octet less does not suffice, and the size needed is told");
    Check(ZunRtcpPacketEncode(p, octets.data(), length, dialect, &size) != 0, "encoding changes nothing");
  }
  return {reinterpret_cast<const char*>(octets.data()), length};
}

std::string Written(const ZunRtcpPacket* p) {
  Allocator allocator;
  String out(allocator);
  if (!ZunRtcpPacketGetNetworkPacket(p, out)) return {};
  return out.str();
}

bool IsLir(const ZunRtcpSubpacket& sp) {
  return sp.unk.type == ZUN_RTCPSUBPACKET_TYPE_PSFB && sp.psfb.unk.fmt == ZUN_RTCPPSFB_TYPE_AFB &&
         sp.psfb.afb.unk.afbType == ZUN_RTCPPSFBAFB_TYPE_LIR;
}

namespace {

// An LIR announces two bytes more for each entry, and an APP may have got a name past its setter.
bool LengthMayDiffer(const ZunRtcpSubpacket& sp) {
  return IsLir(sp) || (sp.unk.type == ZUN_RTCPSUBPACKET_TYPE_APP && sp.app.name.size % 4 != 0);
}

// Padding may leave data of no whole words; what stands after it and aligns its end within all that is written is then
// longer or shorter than it says. Such a packet cannot be encoded.
bool IsOfNoWholeWords(const ZunRtcpSubpacket& sp) { return ZunRtcpSubpacketGetNetworkPacketLength(&sp) % 4 != 0; }

// In the house's dialect one chunk of transport-wide feedback does not read back, and CCFB reads four times the ECN.
bool ReadsBackOtherwise(const ZunRtcpSubpacket& sp) {
  return sp.unk.type == ZUN_RTCPSUBPACKET_TYPE_RTPFB &&
         (sp.rtpfb.unk.fmt == ZUN_RTCPRTPFB_TYPE_TransportCC || sp.rtpfb.unk.fmt == ZUN_RTCPRTPFB_TYPE_CCFB);
}

// What the house reads as bytes of an unknown message is CCFB for those who speak the registered dialect.
bool IsBytesOfCcfb(const ZunRtcpSubpacket& sp) {
  constexpr ZunRtcpRtpfbType kRegisteredCcfb = 11;
  return sp.unk.type == ZUN_RTCPSUBPACKET_TYPE_RTPFB && sp.rtpfb.unk.fmt == kRegisteredCcfb;
}

void CheckCopies(const ZunRtcpPacket* p) {
  if (ZunRtcpPacketGetSubpacketCount(p) == 0) return;
  const std::string contents = ContentsOf(p);
  ZunRtcpPacket copy;
  Check(ZunRtcpPacketConstructCopy(&copy, p) != nullptr, "a packet can be copied");
  Check(ContentsOf(&copy) == contents, "a copy equals its source");
  // Over other kinds: the subpackets in reverse.
  std::reverse(copy.subpackets.begin, copy.subpackets.end);
  Check(ZunRtcpPacketAssign(&copy, p) == &copy && ContentsOf(&copy) == contents, "an assignment equals its source");
  ZunRtcpPacketDestruct(&copy);
}

void CheckEncodedForm(const ZunRtcpPacket* p, ZunRtcpDialect dialect) {
  const std::string encoded = Encoded(p, dialect);
  if (encoded.empty()) return;
  Allocator allocator;
  Packet again(allocator);
  const bool read = Decode(again, encoded, dialect).ok;
  // A written LIR is no LIR for its reader.
  if (Holds(p, IsLir) || (dialect == ZUN_RTCP_DIALECT_REGISTERED && Holds(p, IsBytesOfCcfb))) return;
  Check(read, "what is encoded can be decoded");
  Check(again.count() == ZunRtcpPacketGetSubpacketCount(p), "as many subpackets are decoded as were encoded");
  if (dialect == ZUN_RTCP_DIALECT_HOUSE && Holds(p, ReadsBackOtherwise)) return;
  Check(Encoded(again, dialect) == encoded, "what was decoded is encoded to the same octets");
}

}  // namespace

void CheckPacket(const ZunRtcpPacket* p) {
  for (ZunSizeT i = 0; i < ZunRtcpPacketGetSubpacketCount(p); ++i) LookAt(*ZunRtcpPacketGetSubpacket(p, i));
  (void)ZunRtcpPacketCheckComposition(p);
  CheckCopies(p);
  const std::string written = Written(p);
  if (!written.empty() && !Holds(p, LengthMayDiffer) && !Holds(p, IsOfNoWholeWords)) {
    Check(ZunRtcpPacketGetNetworkPacketLength(p) == written.size(), "the length is that of what is written");
  }
  const std::string encoded = Encoded(p, ZUN_RTCP_DIALECT_HOUSE);
  if (!encoded.empty()) Check(encoded == written, "both doors write the same octets");
  CheckEncodedForm(p, ZUN_RTCP_DIALECT_HOUSE);
  CheckEncodedForm(p, ZUN_RTCP_DIALECT_REGISTERED);
}

namespace {

void LookAtReport(const ZunRtcpSubpacket& sp) {
  ZunRtcpXrReader reader;
  if (ZunRtcpXrReaderConstruct(&reader, &sp) == nullptr) return;
  ZunRtcpXrBlock block;
  while (ZunRtcpXrReaderNext(&reader, &block)) {
    ZunSizeT calls = 0;
    const auto count = [](ZunVoidPtr data, ZunUint16, ZunUint32) { ++*static_cast<ZunSizeT*>(data); };
    const ZunSizeT told = ZunRtcpXrBlockGeneratePackets(&block, count, &calls);
    Check(told == calls, "as many packets are told as were handed out");
    ZunRtcpXrRange range;
    if (ZunRtcpXrBlockGetRange(&block, &range)) {
      Check(told <= ZunRtcpXrRangeGetCount(&range), "no more packets are told than the range has");
    }
    ZunRtcpXrDlrr dlrr;
    const ZunSizeT receivers = ZunRtcpXrBlockGetDlrrCount(&block);
    for (ZunSizeT i = 0; i < receivers; ++i) {
      Check(ZunRtcpXrBlockGetDlrr(&block, i, &dlrr) != 0, "each receiver that is counted can be read");
    }
    Check(!ZunRtcpXrBlockGetDlrr(&block, receivers, &dlrr), "there is no further receiver");
    ZunRtcpXrRrtr rrtr;
    ZunRtcpXrStatistics statistics;
    ZunRtcpXrVoip voip;
    const int read = ZunRtcpXrBlockGetRrtr(&block, &rrtr) + ZunRtcpXrBlockGetStatistics(&block, &statistics) +
                     ZunRtcpXrBlockGetVoip(&block, &voip);
    Check(read <= 1, "a block is of one type");
  }
}

void LookAtTmmb(const ZunRtcpSubpacket& sp) {
  ZunRtcpTmmb tmmb;
  ZunRtcpDecodeReason reason = ZUN_RTCP_DECODE_REASON_NONE;
  if (!ZunRtcpTmmbReadSubpacket(&tmmb, &sp, &reason)) return;
  ZunRtcpTmmbEntry entry;
  for (ZunSizeT i = 0; i < tmmb.count; ++i) {
    Check(ZunRtcpTmmbGetEntry(&tmmb, i, &entry) != 0, "each entry that is counted can be read");
  }
  Check(!ZunRtcpTmmbGetEntry(&tmmb, tmmb.count, &entry), "there is no further entry");
}

}  // namespace

void LookAt(const ZunRtcpSubpacket& sp) {
  LookAtReport(sp);
  LookAtTmmb(sp);
  if (sp.unk.type == ZUN_RTCPSUBPACKET_TYPE_RTPFB && sp.rtpfb.unk.fmt == ZUN_RTCPRTPFB_TYPE_NACK) {
    ZunSizeT calls = 0;
    ZunRtcpRtpfbNackGenerateSeqNumbers(
        &sp.rtpfb.nack, [](const ZunRtcpRtpfbNack*, ZunUint16, ZunVoidPtr data) { ++*static_cast<ZunSizeT*>(data); },
        &calls);
    Check(calls == ZunRtcpRtpfbNackGetNumOfSeqNumbers(&sp.rtpfb.nack), "a NACK hands out as many numbers as it counts");
  }
}

}  // namespace fuzz
