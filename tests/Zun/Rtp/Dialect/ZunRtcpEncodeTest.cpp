// What is written, where it fits and where not, and what is not written at all and why. The bytes of the registered
// dialect: RegisteredFormsTest; that what is written is what the writer of strings writes: ZunRtcpDecodeAgreementTest.
#include "Zun/Rtp/Dialect/ZunRtcpEncode.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "tests/support/GuardedBlock.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

// All samples that make whole words, so that they can stand one after the other.
const std::string& Compound() {
  static const std::string bytes = [] {
    std::string all;
    for (const Sample& sample : Samples()) {
      if (sample.comes_back && sample.row != &kRowOf<ZunRtcpRtpfbTmmbn>) all += sample.wire;
    }
    return all;
  }();
  return bytes;
}

ZunRtcpSubpacket& At(Decoded& p, ZunSizeT n) { return p.packet.subpackets.begin[n]; }

// Whole packets

// What is written to octets that end at a page which nobody may touch.
void ExpectEncodedAtEveryCapacity(const ZunRtcpPacket& p, ZunRtcpDialect dialect) {
  const std::string expected = Encoded(p, dialect).bytes;
  GuardedBlock block(expected.size() + 8);
  for (ZunSizeT capacity = 0; capacity <= block.size(); ++capacity) {
    ZunSizeT size = 77;
    ZunUint8* const octets = block.Last(capacity);
    ASSERT_EQ(ZunRtcpPacketEncode(&p, octets, capacity, dialect, &size) != 0, capacity >= expected.size()) << capacity;
    ASSERT_EQ(size, expected.size()) << capacity;
    if (capacity < size) continue;
    ASSERT_EQ(ToHex(std::string(reinterpret_cast<char*>(octets), size)), ToHex(expected));
  }
}

TEST(ZunRtcpEncode, KeepsToItsCapacity) {
  for (const ZunRtcpDialect dialect : kDialects) {
    for (const Sample& sample : Samples()) {
      SCOPED_TRACE(sample.name);
      const Decoded p(sample.wire, dialect, Tolerant());
      if (p.count() != 0) ExpectEncodedAtEveryCapacity(p.packet, dialect);
    }
    ExpectEncodedAtEveryCapacity(Decoded(Compound(), dialect).packet, dialect);
  }
}

TEST(ZunRtcpEncode, WritesNothingBeyondWhatItTells) {
  const Decoded p(Compound(), kHouse);
  std::string octets(Compound().size() + 64, '~');
  ZunSizeT size = 0;
  ASSERT_TRUE(ZunRtcpPacketEncode(&p.packet, octets.data(), octets.size(), kHouse, &size));
  EXPECT_EQ(octets, Compound() + std::string(64, '~'));
}

TEST(ZunRtcpEncode, TakesNullForNoOctets) {
  const Decoded p(Golden("Pli"), kHouse);
  ZunSizeT size = 0;
  EXPECT_FALSE(ZunRtcpPacketEncode(&p.packet, nullptr, 0, kHouse, &size));
  EXPECT_EQ(size, 12U);
}

TEST(ZunRtcpEncode, RefusesAnEmptyPacket) {
  for (const ZunRtcpDialect dialect : kDialects) {
    const Encoded encoded(Decoded(), dialect);
    EXPECT_FALSE(encoded.ok);
    EXPECT_EQ(encoded.reason, ZUN_RTCP_ENCODE_REASON_EMPTY);
    EXPECT_EQ(encoded.index, 0U);
  }
}

// What cannot be encoded

#define RESIZE(Element, list, n) ASSERT_TRUE(ZunVector_##Element##Resize(&(list), n, (list).begin))

void Set(ZunString* s, const std::string& bytes) { ASSERT_NE(ZunStringAssign(s, Text(bytes)), nullptr); }

ZunRtcpSdesItem& FirstItem(ZunRtcpSubpacket& sp) { return *sp.sdes.chunks.begin->items.begin; }
ZunRtcpRtpfbCcfbPacketMetric& FirstMetric(ZunRtcpSubpacket& sp) {
  return *sp.rtpfb.ccfb.streams.begin->packetMetrics.begin;
}
ZunRtcpPsfbAfbShowParameter& FirstParameter(ZunRtcpSubpacket& sp) { return *sp.psfb.afb.show.parameters.begin; }

// A sample, what is changed in it so that it can just be encoded, and what so that it cannot.
using Change = std::function<void(ZunRtcpSubpacket& sp)>;
struct Unencodable {
  const char* what;
  const char* sample;
  Change allowed;
  Change refused;
  ZunRtcpEncodeReason reason;
};

void Nothing(ZunRtcpSubpacket&) {}

std::vector<Unencodable> WithoutEntries() {
  constexpr ZunRtcpEncodeReason kReason = ZUN_RTCP_ENCODE_REASON_NO_ENTRIES;
  return {
      {"NACK", "NackOneMap", Nothing, [](auto& sp) { ZunVector_ZunRtcpRtpfbNackSeqMapClear(&sp.rtpfb.nack.seqMaps); },
       kReason},
      {"house TMMBR", "TmmbrOneEntry", Nothing,
       [](auto& sp) { ZunVector_ZunRtcpRtpfbTmmbrEntryClear(&sp.rtpfb.tmmbr.fci); }, kReason},
      {"FIR", "FirOneEntry", Nothing, [](auto& sp) { ZunVector_ZunRtcpPsfbFirEntryClear(&sp.psfb.fir.fci); }, kReason},
      {"TSTR", "TstrOneEntry", Nothing, [](auto& sp) { ZunVector_ZunRtcpPsfbTstrEntryClear(&sp.psfb.tstr.fci); },
       kReason},
      {"TSTA", "TstaOneEntry", Nothing, [](auto& sp) { ZunVector_ZunRtcpPsfbTstaEntryClear(&sp.psfb.tsta.fci); },
       kReason},
      {"LIR", "LirOneEntry", Nothing, [](auto& sp) { ZunVector_ZunRtcpPsfbAfbLirEntryClear(&sp.psfb.afb.lir.fci); },
       kReason},
  };
}

std::vector<Unencodable> WithTooMany() {
  constexpr ZunRtcpEncodeReason kReason = ZUN_RTCP_ENCODE_REASON_TOO_MANY;
  return {
      {"blocks of an SR", "SrOneBlock", [](auto& sp) { RESIZE(ZunRtcpReportBlock, sp.sr.report_blocks, 31); },
       [](auto& sp) { RESIZE(ZunRtcpReportBlock, sp.sr.report_blocks, 32); }, kReason},
      {"blocks of an RR", "RrOneBlock", [](auto& sp) { RESIZE(ZunRtcpReportBlock, sp.rr.report_blocks, 31); },
       [](auto& sp) { RESIZE(ZunRtcpReportBlock, sp.rr.report_blocks, 256); }, kReason},
      {"chunks", "SdesOneChunk", [](auto& sp) { RESIZE(ZunRtcpSdesChunk, sp.sdes.chunks, 31); },
       [](auto& sp) { RESIZE(ZunRtcpSdesChunk, sp.sdes.chunks, 32); }, kReason},
      {"sources that leave", "ByeWithReason", [](auto& sp) { RESIZE(ZunRtpSourceId, sp.bye.sources, 31); },
       [](auto& sp) { RESIZE(ZunRtpSourceId, sp.bye.sources, 32); }, kReason},
      {"metrics", "CcfbOneStream",
       [](auto& sp) { RESIZE(ZunRtcpRtpfbCcfbPacketMetric, sp.rtpfb.ccfb.streams.begin->packetMetrics, 65535); },
       [](auto& sp) { RESIZE(ZunRtcpRtpfbCcfbPacketMetric, sp.rtpfb.ccfb.streams.begin->packetMetrics, 65536); },
       kReason},
      {"statuses", "TransportCcOnePacket",
       [](auto& sp) { RESIZE(ZunRtcpRtpfbTransportCcPacketInfo, sp.rtpfb.transportCc.packetInfo, 65535); },
       [](auto& sp) { RESIZE(ZunRtcpRtpfbTransportCcPacketInfo, sp.rtpfb.transportCc.packetInfo, 65536); }, kReason},
      {"REMB sources", "RembOneSource", [](auto& sp) { RESIZE(ZunRtpSourceId, sp.psfb.afb.remb.sources, 255); },
       [](auto& sp) { RESIZE(ZunRtpSourceId, sp.psfb.afb.remb.sources, 256); }, kReason},
  };
}

std::vector<Unencodable> WithTooMuchText() {
  constexpr ZunRtcpEncodeReason kText = ZUN_RTCP_ENCODE_REASON_TEXT_TOO_LONG;
  constexpr ZunRtcpEncodeReason kWhole = ZUN_RTCP_ENCODE_REASON_TOO_LONG;
  return {
      {"text of an item", "SdesTwoChunks", [](auto& sp) { Set(&FirstItem(sp).text, std::string(255, 't')); },
       [](auto& sp) { Set(&FirstItem(sp).text, std::string(256, 't')); }, kText},
      {"reason of a BYE", "ByeWithReason", [](auto& sp) { Set(&sp.bye.reason, std::string(255, 'r')); },
       [](auto& sp) { Set(&sp.bye.reason, std::string(256, 'r')); }, kText},
      {"data", "UnknownWithData", [](auto& sp) { Set(&sp.unk.data, std::string(262140, 'd')); },
       [](auto& sp) { Set(&sp.unk.data, std::string(262144, 'd')); }, kWhole},
      {"application data", "AppWithData", [](auto& sp) { Set(&sp.app.data, std::string(262131, 'd')); },
       [](auto& sp) { Set(&sp.app.data, std::string(262133, 'd')); }, kWhole},
      {"slices", "SliOneItem", [](auto& sp) { RESIZE(ZunRtcpPsfbSliItem, sp.psfb.sli.items, 65533); },
       [](auto& sp) { RESIZE(ZunRtcpPsfbSliItem, sp.psfb.sli.items, 65534); }, kWhole},
  };
}

std::vector<Unencodable> WithHalfWords() {
  constexpr ZunRtcpEncodeReason kReason = ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS;
  return {
      {"extension of an SR", "SrOneBlock", Nothing, [](auto& sp) { Set(&sp.sr.profile_specific_ext, "ext"); }, kReason},
      {"extension of an RR", "RrOneBlock", Nothing, [](auto& sp) { Set(&sp.rr.profile_specific_ext, "e"); }, kReason},
      {"extension of a PLI", "Pli", Nothing, [](auto& sp) { Set(&sp.psfb.pli.profile_specific_ext, "ex"); }, kReason},
      {"unknown subpacket", "UnknownWithData", Nothing, [](auto& sp) { Set(&sp.unk.data, "12345"); }, kReason},
      {"unknown transport feedback", "RtpfbUnknown", Nothing, [](auto& sp) { Set(&sp.rtpfb.unk.data, "12345"); },
       kReason},
      {"unknown payload feedback", "PsfbUnknown", Nothing, [](auto& sp) { Set(&sp.psfb.unk.data, "123"); }, kReason},
      {"unknown application feedback", "AfbUnknown", Nothing, [](auto& sp) { Set(&sp.psfb.afb.unk.data, "1"); },
       kReason},
  };
}

std::vector<Unencodable> WithWrongNamesAndTypes() {
  constexpr ZunRtcpEncodeReason kName = ZUN_RTCP_ENCODE_REASON_NAME;
  constexpr ZunRtcpEncodeReason kType = ZUN_RTCP_ENCODE_REASON_ITEM_TYPE;
  constexpr ZunRtcpEncodeReason kValue = ZUN_RTCP_ENCODE_REASON_VALUE;
  return {
      {"no name", "AppWithData", Nothing, [](auto& sp) { Set(&sp.app.name, ""); }, kName},
      {"name of three", "AppWithData", Nothing, [](auto& sp) { Set(&sp.app.name, "abc"); }, kName},
      {"name of five", "AppWithData", Nothing, [](auto& sp) { Set(&sp.app.name, "abcde"); }, kName},
      {"item of type 0", "SdesTwoChunks", [](auto& sp) { FirstItem(sp).type = 1; },
       [](auto& sp) { FirstItem(sp).type = 0; }, kType},
      {"item of type 256", "SdesTwoChunks", [](auto& sp) { FirstItem(sp).type = 255; },
       [](auto& sp) { FirstItem(sp).type = 256; }, kType},
      {"item of type -1", "SdesTwoChunks", Nothing, [](auto& sp) { FirstItem(sp).type = -1; }, kType},
      {"type 256", "UnknownWithData", [](auto& sp) { sp.unk.type = 255; }, [](auto& sp) { sp.unk.type = 256; }, kValue},
      {"type -1", "UnknownWithData", [](auto& sp) { sp.unk.type = 0; }, [](auto& sp) { sp.unk.type = -1; }, kValue},
      {"subtype 32", "UnknownWithData", [](auto& sp) { sp.unk.subtype = 31; }, [](auto& sp) { sp.unk.subtype = 32; },
       kValue},
      {"FMT 32 of RTPFB", "RtpfbUnknown", [](auto& sp) { sp.rtpfb.unk.fmt = 31; },
       [](auto& sp) { sp.rtpfb.unk.fmt = 32; }, kValue},
      {"FMT -1 of PSFB", "PsfbUnknown", [](auto& sp) { sp.psfb.unk.fmt = 0; }, [](auto& sp) { sp.psfb.unk.fmt = -1; },
       kValue},
  };
}

std::vector<Unencodable> WithTooLargeNumbers() {
  constexpr ZunRtcpEncodeReason kReason = ZUN_RTCP_ENCODE_REASON_VALUE;
  const float most_bitrate = std::ldexp(262143.0F, 63);
  return {
      {"packets lost", "RrTwoBlocks", [](auto& sp) { sp.rr.report_blocks.begin[1].cum_num_packet_lost = 0xFFFFFF; },
       [](auto& sp) { sp.rr.report_blocks.begin[1].cum_num_packet_lost = 0x1000000; }, kReason},
      {"ECN", "CcfbOneStream", [](auto& sp) { FirstMetric(sp).ecn = 3; }, [](auto& sp) { FirstMetric(sp).ecn = 4; },
       kReason},
      {"arrival time", "CcfbOneStream", [](auto& sp) { FirstMetric(sp).arrivalTimeOffset = 0x1FFF; },
       [](auto& sp) { FirstMetric(sp).arrivalTimeOffset = 0x2000; }, kReason},
      {"reference time", "TransportCcOnePacket", [](auto& sp) { sp.rtpfb.transportCc.refTime = 0xFFFFFF; },
       [](auto& sp) { sp.rtpfb.transportCc.refTime = 0x1000000; }, kReason},
      {"negative reference time", "TransportCcMixed", [](auto& sp) { sp.rtpfb.transportCc.refTime = -0xFFFFFF; },
       [](auto& sp) { sp.rtpfb.transportCc.refTime = -0x1000000; }, kReason},
      {"first macroblock", "SliOneItem", Nothing, [](auto& sp) { sp.psfb.sli.items.begin->lost_mblock = 8192; },
       kReason},
      {"number of macroblocks", "SliOneItem", Nothing,
       [](auto& sp) { sp.psfb.sli.items.begin->num_lost_mblocks = 8192; }, kReason},
      {"picture", "SliOneItem", Nothing, [](auto& sp) { sp.psfb.sli.items.begin->picture_id = 64; }, kReason},
      {"RPSI payload type", "RpsiTwoOctets", [](auto& sp) { sp.psfb.rpsi.pt = 127; },
       [](auto& sp) { sp.psfb.rpsi.pt = 128; }, kReason},
      {"unused bits", "RpsiTwoOctets", [](auto& sp) { sp.psfb.rpsi.unbits = 7; },
       [](auto& sp) { sp.psfb.rpsi.unbits = 8; }, kReason},
      {"unused bits of padding", "RpsiTwoOctets",
       [](auto& sp) {
         Set(&sp.psfb.rpsi.rpsi, "");
         sp.psfb.rpsi.unbits = 23;
       },
       [](auto& sp) { sp.psfb.rpsi.unbits = 24; }, kReason},
      {"index", "TstrTwoEntries", [](auto& sp) { sp.psfb.tstr.fci.begin[1].index = 31; },
       [](auto& sp) { sp.psfb.tstr.fci.begin[1].index = 32; }, kReason},
      {"index of the answer", "TstaTwoEntries", Nothing, [](auto& sp) { sp.psfb.tsta.fci.begin[1].index = 255; },
       kReason},
      {"bit rate", "RembOneSource", [=](auto& sp) { sp.psfb.afb.remb.bitrate = most_bitrate; },
       [=](auto& sp) { sp.psfb.afb.remb.bitrate = std::nextafter(most_bitrate, HUGE_VALF); }, kReason},
      {"negative bit rate", "RembOneSource", [](auto& sp) { sp.psfb.afb.remb.bitrate = -0.0F; },
       [](auto& sp) { sp.psfb.afb.remb.bitrate = -1; }, kReason},
      {"no number", "RembOneSource", Nothing, [](auto& sp) { sp.psfb.afb.remb.bitrate = NAN; }, kReason},
      {"parameter type", "ShowTwoParameters", [](auto& sp) { FirstParameter(sp).type = 31; },
       [](auto& sp) { FirstParameter(sp).type = 32; }, kReason},
      {"negative parameter type", "ShowTwoParameters", Nothing, [](auto& sp) { FirstParameter(sp).type = -1; },
       kReason},
      {"parameter that is padding", "ShowTwoParameters",
       [](auto& sp) {
         FirstParameter(sp) = {0, 256};
       },
       [](auto& sp) { FirstParameter(sp).value = 255; }, kReason},
      {"LIR payload type", "LirThreeEntries", [](auto& sp) { sp.psfb.afb.lir.fci.begin[2].payloadType = 127; },
       [](auto& sp) { sp.psfb.afb.lir.fci.begin[2].payloadType = 128; }, kReason},
  };
}

// A packet with a subpacket in the middle that cannot be encoded.
void ExpectUnencodableMiddle(const Decoded& p, ZunRtcpDialect dialect, ZunRtcpEncodeReason reason) {
  const Encoded refused(p, dialect);
  EXPECT_FALSE(refused.ok);
  EXPECT_EQ(refused.reason, reason) << ZunRtcpEncodeReasonGetText(refused.reason);
  EXPECT_EQ(refused.index, 1U);
  EXPECT_EQ(ZunRtcpPacketFindUnencodable(&p.packet, dialect, nullptr), reason);
  // A large block does not help.
  static std::string octets(600000, ' ');
  ZunSizeT size = 77;
  EXPECT_FALSE(ZunRtcpPacketEncode(&p.packet, octets.data(), octets.size(), dialect, &size));
  EXPECT_EQ(size, 0U);
  ZunSizeT last = 77;
  EXPECT_FALSE(ZunRtcpPacketEncodePart(&p.packet, octets.data(), octets.size(), dialect, 1, nullptr, &last, &size));
  EXPECT_EQ(size, 0U);
  EXPECT_EQ(last, 77U);
  // It stops in front of it.
  EXPECT_TRUE(ZunRtcpPacketEncodePart(&p.packet, octets.data(), octets.size(), dialect, 0, nullptr, &last, &size));
  EXPECT_EQ(last, 1U);
  EXPECT_EQ(octets.substr(0, size), Golden("RrWithoutBlocks"));
}

void ExpectUnencodable(const std::vector<Unencodable>& list) {
  for (const Unencodable& one : list) {
    for (const ZunRtcpDialect dialect : kDialects) {
      SCOPED_TRACE(::testing::Message() << one.what << ", dialect " << dialect);
      Decoded p(Golden("RrWithoutBlocks") + Golden(one.sample) + Golden("Pli"), kHouse);
      ASSERT_TRUE(p.ok);
      one.allowed(At(p, 1));
      EXPECT_TRUE(Encoded(p, dialect).ok);
      one.refused(At(p, 1));
      ExpectUnencodableMiddle(p, dialect, one.reason);
    }
  }
}

TEST(ZunRtcpEncode, RefusesListsThatMustNotBeEmpty) { ExpectUnencodable(WithoutEntries()); }
TEST(ZunRtcpEncode, RefusesMoreThanACountCanSay) { ExpectUnencodable(WithTooMany()); }
TEST(ZunRtcpEncode, RefusesWhatIsLongerThanALengthCanSay) { ExpectUnencodable(WithTooMuchText()); }
TEST(ZunRtcpEncode, RefusesHalfWords) { ExpectUnencodable(WithHalfWords()); }
TEST(ZunRtcpEncode, RefusesWrongNamesAndTypes) { ExpectUnencodable(WithWrongNamesAndTypes()); }
TEST(ZunRtcpEncode, RefusesNumbersThatTheirFieldsCannotHold) { ExpectUnencodable(WithTooLargeNumbers()); }

TEST(ZunRtcpEncode, RefusesNothingOfPacketsThatWereNotReceived) {
  Decoded p(Golden("CcfbOneStream"), kHouse);
  FirstMetric(At(p, 0)) = {0, 255, 0xFFFF};
  for (const ZunRtcpDialect dialect : kDialects) EXPECT_TRUE(Encoded(p, dialect).ok);
}

TEST(ZunRtcpEncode, RefusesAByeOfNobodyInTheHousesDialectAlone) {
  const Decoded p(Golden("RrWithoutBlocks") + Hex("80CB0000") + Golden("Pli"), kRegistered);
  ExpectUnencodableMiddle(p, kHouse, ZUN_RTCP_ENCODE_REASON_NO_ENTRIES);
  EXPECT_TRUE(Encoded(p, kRegistered).ok);
}

TEST(ZunRtcpEncode, RefusesAHouseTmmbnInTheRegisteredDialectAlone) {
  const Decoded p(Golden("RrWithoutBlocks") + Golden("Tmmbn") + Golden("Pli"), kHouse);
  ExpectUnencodableMiddle(p, kRegistered, ZUN_RTCP_ENCODE_REASON_NO_FORM);
  EXPECT_TRUE(Encoded(p, kHouse).ok);
}

// A SHOW ends at a word of the whole output, so how long it is depends on where it begins. What is not too long at the
// beginning of a word is encoded after half a word as well.
TEST(ZunRtcpEncode, TakesForTooLongWhatIsTooLongAnywhere) {
  Decoded p(Golden("LirOneEntry") + Golden("ShowTwoParameters"), kHouse);
  Set(&At(p, 0).psfb.afb.lir.fci.begin->layerData, "");  // 22 octets
  RESIZE(ZunRtcpPsfbAfbShowParameter, At(p, 1).psfb.afb.show.parameters, 87375);
  for (int i = 0; i < 87375; ++i) At(p, 1).psfb.afb.show.parameters.begin[i] = {1, 0xFFFFU};
  for (const ZunUint64 value : {0xFFFFU, 0xFFFFFFU}) {  // 262,142 and 262,143 octets without the zeros
    FirstParameter(At(p, 1)).value = value;
    EXPECT_TRUE(Encoded(p, kHouse).ok);
  }
  FirstParameter(At(p, 1)).value = 0xFFFFFFFFFFU;  // 262,145
  EXPECT_EQ(Encoded(p, kHouse).reason, ZUN_RTCP_ENCODE_REASON_TOO_LONG);
}

// Parts

struct Part {
  Part(const ZunRtcpPacket& p, ZunRtcpDialect dialect, ZunSizeT first, ZunSizeT capacity,
       const ZunRtcpPacket* prefix = nullptr)
      : block(capacity) {
    ok = ZunRtcpPacketEncodePart(&p, block.octets(), capacity, dialect, first,
                                 prefix != nullptr ? ZunRtcpPacketGetSubpackets(prefix) : nullptr, &last, &size) != 0;
    if (ok) bytes.assign(reinterpret_cast<char*>(block.octets()), size);
  }

  GuardedBlock block;
  ZunSizeT last = 77;
  ZunSizeT size = 77;
  bool ok;
  std::string bytes;
};

// Subpackets [first, last) of a packet, after all of a prefix.
std::string Slice(const ZunRtcpPacket& p, ZunSizeT first, ZunSizeT last, const ZunRtcpPacket& prefix,
                  ZunRtcpDialect dialect) {
  Decoded slice;
  EXPECT_TRUE(ZunRtcpPacketAppendSubpackets(&slice.packet, ZunRtcpPacketGetSubpackets(&prefix)));
  for (ZunSizeT i = first; i < last; ++i) {
    EXPECT_TRUE(ZunRtcpPacketAppendSubpacket(&slice.packet, ZunRtcpPacketGetSubpacket(&p, i)));
  }
  return Encoded(slice, dialect).bytes;
}

TEST(ZunRtcpEncodePart, HoldsWhatFitsAtEveryCapacity) {
  const std::string bytes = Golden("SdesTwoChunks") + Golden("TransportCcMixed") + Golden("Albr") + Golden("ShowAck");
  for (const ZunRtcpDialect dialect : kDialects) {
    const Decoded p(bytes, dialect);
    const Decoded prefix(Golden("RrOneBlock"), dialect);
    for (ZunSizeT first = 0; first < p.count(); ++first) {
      const ZunSizeT needed = Slice(p.packet, first, first + 1, prefix.packet, dialect).size();
      const ZunSizeT all = Slice(p.packet, first, p.count(), prefix.packet, dialect).size();
      for (ZunSizeT capacity = 0; capacity <= all + 4; ++capacity) {
        const Part part(p.packet, dialect, first, capacity, &prefix.packet);
        ASSERT_EQ(part.ok, capacity >= needed);
        if (!part.ok) {
          EXPECT_EQ(part.size, needed);
          EXPECT_EQ(part.last, 77U);
          continue;
        }
        EXPECT_EQ(ToHex(part.bytes), ToHex(Slice(p.packet, first, part.last, prefix.packet, dialect)));
        EXPECT_TRUE(part.last == p.count() ||
                    Slice(p.packet, first, part.last + 1, prefix.packet, dialect).size() > capacity);
      }
    }
  }
}

TEST(ZunRtcpEncodePart, PartAfterPartIsTheWhole) {
  for (const ZunRtcpDialect dialect : kDialects) {
    const Decoded p(Compound(), dialect);
    const std::string whole = Encoded(p, dialect).bytes;
    for (const ZunSizeT capacity : std::initializer_list<ZunSizeT>{400, 401, 500, 1000, 3000}) {
      std::string parts;
      for (ZunSizeT next = 0; next < p.count();) {
        const Part part(p.packet, dialect, next, capacity);
        ASSERT_TRUE(part.ok);
        ASSERT_GT(part.last, next);
        parts += part.bytes;
        next = part.last;
      }
      EXPECT_EQ(ToHex(parts), ToHex(whole)) << capacity;
    }
  }
}

TEST(ZunRtcpEncodePart, HasNothingToWriteAfterTheLast) {
  const Decoded p(Golden("Pli") + Golden("Albr"), kHouse);
  for (const ZunSizeT first : {ZunSizeT{2}, ZunSizeT{3}, SIZE_MAX}) {
    const Part part(p.packet, kHouse, first, 100);
    EXPECT_FALSE(part.ok);
    EXPECT_EQ(part.size, 0U);
    EXPECT_EQ(part.last, 77U);
  }
  EXPECT_EQ(Part(Decoded().packet, kHouse, 0, 100).size, 0U);
}

TEST(ZunRtcpEncodePart, RefusesAPrefixThatCannotBeEncoded) {
  const Decoded p(Golden("Pli"), kHouse);
  Decoded prefix(Golden("NackOneMap"), kHouse);
  ZunVector_ZunRtcpRtpfbNackSeqMapClear(&At(prefix, 0).rtpfb.nack.seqMaps);
  for (const ZunSizeT capacity : std::initializer_list<ZunSizeT>{0, 8, 1000}) {
    const Part part(p.packet, kHouse, 0, capacity, &prefix.packet);
    EXPECT_FALSE(part.ok);
    EXPECT_EQ(part.size, 0U);
  }
}

TEST(ZunRtcpEncodePart, TakesAnEmptyPrefix) {
  const Decoded p(Golden("Pli"), kHouse);
  const Decoded empty;
  EXPECT_EQ(Part(p.packet, kHouse, 0, 12, &empty.packet).bytes, Golden("Pli"));
}

}  // namespace
