#include "Zun/Rtp/Dialect/ZunRtcpXr.h"

#include <gtest/gtest.h>

#include "Zun/Rtp/Cpp/Xr.h"
#include "tests/support/Captured.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/RandomDatagrams.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

// A report that was received, and a walk over it.
class Report {
 public:
  explicit Report(const std::string& wire) : p_(wire, kRegistered, Tolerant()) {
    EXPECT_EQ(p_.count(), 1U);
    begun = ZunRtcpXrReaderConstruct(&reader, &p_[0]) == &reader;
  }

  std::vector<ZunRtcpXrBlock> Blocks() {
    std::vector<ZunRtcpXrBlock> blocks;
    ZunRtcpXrBlock block;
    while (begun && ZunRtcpXrReaderNext(&reader, &block)) blocks.push_back(block);
    return blocks;
  }

  ZunRtcpXrReader reader = {};
  bool begun;

 private:
  Decoded p_;
};

std::string Xr(const std::string& blocks) { return Subpacket(207, 0, Hex("01020304") + blocks); }

// A block that lives as long as this.
struct Block {
  explicit Block(const std::string& bytes) : report(Xr(bytes)), all(report.Blocks()) { EXPECT_EQ(all.size(), 1U); }
  operator const ZunRtcpXrBlock*() const { return &all.at(0); }
  const ZunRtcpXrBlock* operator->() const { return &all.at(0); }

  Report report;
  std::vector<ZunRtcpXrBlock> all;
};

std::string Contents(const ZunRtcpXrBlock& block) {
  return std::string(reinterpret_cast<const char*>(block.octets), block.size);
}

class Builder : public zun::rtcp::XrBuilder {
 public:
  explicit Builder(ZunRtpSourceId sender = kSender) : XrBuilder(sender) {}

  operator ZunRtcpXrBuilder*() { return get(); }
  ZunSizeT size() const { return get()->data.size; }
  // The report as it is written.
  std::string bytes() const {
    const auto sp = subpacket();
    EXPECT_TRUE(sp);
    return Written(*sp->get());
  }
};

// What a block tells of packets, as the callback is called.
using Packets = std::vector<std::pair<int, ZunUint32>>;
void Collect(ZunVoidPtr data, ZunUint16 seq, ZunUint32 value) { static_cast<Packets*>(data)->emplace_back(seq, value); }
Packets PacketsOf(const ZunRtcpXrBlock* block) {
  Packets packets;
  const ZunSizeT count = ZunRtcpXrBlockGeneratePackets(block, Collect, &packets);
  EXPECT_EQ(count, packets.size());
  return packets;
}

// One block of every type.
const std::string& AllBlocks() {
  static const std::string blocks = Hex(R"(
    01 02 0004  11121314 FFFE 0012  4002 8000 0001 0000   | loss RLE of every fourth packet: two received, a vector ...
    02 00 0003  21222324 0001 0010  FFFE 0000             | duplicate RLE: 15 in a vector
    03 00 0004  31323334 FFFF 0001  A1A2A3A4 B1B2B3B4     | receipt times of 65535 and 0
    04 00 0002  C1C2C3C4 C5C6C7C8                         | RRTR
    05 00 0006  01020304 11121314 21222324                | DLRR of two
                31323334 41424344 51525354
    06 F8 0009  11121314 0001 0002                        | statistics, with all flags and kind 3
                00000001 00000002 00000003 00000004 00000005 00000006 07 08 09 0A
    07 00 0008  11121314 01 02 03 04 0005 0006 0007 0008  | VoIP metrics
                81 7F 0B 0C 0D 0E 0F 10 11 00 0012 0013 0014
    63 55 0001  DEADBEEF                                  | another
    FF FF 0000                                            | another, empty
  )");
  return blocks;
}

// Reading

TEST(ZunRtcpXrReader, WalksOverTheBlocks) {
  Report report(Xr(AllBlocks()));
  ASSERT_TRUE(report.begun);
  EXPECT_EQ(report.reader.sender, kSender);
  const std::vector<ZunRtcpXrBlock> blocks = report.Blocks();
  ASSERT_EQ(blocks.size(), 9U);
  const int types[] = {1, 2, 3, 4, 5, 6, 7, 0x63, 0xFF};
  const int specifics[] = {2, 0, 0, 0, 0, 0xF8, 0, 0x55, 0xFF};
  const ZunSizeT sizes[] = {16, 12, 16, 8, 24, 36, 32, 4, 0};
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    EXPECT_EQ(blocks[i].type, types[i]);
    EXPECT_EQ(blocks[i].typeSpecific, specifics[i]);
    EXPECT_EQ(blocks[i].size, sizes[i]);
    EXPECT_EQ(blocks[i].isKnown != 0, types[i] <= 7);
  }
  EXPECT_EQ(Contents(blocks[7]), Hex("DEADBEEF"));
  EXPECT_EQ(report.reader.reason, ZUN_RTCP_DECODE_REASON_NONE);
  ZunRtcpXrBlock untouched = {77, 77, 77, nullptr, 77};
  EXPECT_FALSE(ZunRtcpXrReaderNext(&report.reader, &untouched));
  EXPECT_EQ(untouched.type, 77);
}

TEST(ZunRtcpXrReader, TakesAReportWithoutBlocks) {
  Report report(Hex("80CF0001 01020304"));
  ASSERT_TRUE(report.begun);
  EXPECT_EQ(report.reader.sender, kSender);
  EXPECT_TRUE(report.Blocks().empty());
  EXPECT_EQ(report.reader.reason, ZUN_RTCP_DECODE_REASON_NONE);
}

TEST(ZunRtcpXrReader, RefusesWhatIsNoReport) {
  for (const char* const name : {"SrOneBlock", "NackOneMap", "Pli", "AppWithData"}) {
    const Report report(Golden(name));
    EXPECT_FALSE(report.begun);
    EXPECT_EQ(report.reader.reason, ZUN_RTCP_DECODE_REASON_VALUE) << name;
  }
  const Report other(Hex("80D00001 01020304"));
  EXPECT_EQ(other.reader.reason, ZUN_RTCP_DECODE_REASON_VALUE);
  for (const char* const wire : {"80CF0000", "A0CF0001 01020301", "A0CF0001 01020304"}) {
    const Report cut((Hex(wire)));
    EXPECT_FALSE(cut.begun);
    EXPECT_EQ(cut.reader.reason, ZUN_RTCP_DECODE_REASON_TOO_SHORT) << wire;
  }
}

TEST(ZunRtcpXrReader, KeepsWhatCameBeforeABlockThatPassesTheEnd) {
  const std::string whole = Hex("04000002 C1C2C3C4 C5C6C7C8");
  for (const char* const cut : {"63000001", "63000002 00000000", "0400FFFF 00000000"}) {
    Report report(Xr(whole + Hex(cut)));
    EXPECT_EQ(report.Blocks().size(), 1U);
    EXPECT_EQ(report.reader.reason, ZUN_RTCP_DECODE_REASON_LENGTH);
    EXPECT_TRUE(report.Blocks().empty());
    EXPECT_EQ(report.reader.reason, ZUN_RTCP_DECODE_REASON_LENGTH);
  }
}

// Padding may leave no whole words.
TEST(ZunRtcpXrReader, EndsAtABlockWhoseHeadIsCutOff) {
  for (int octets = 1; octets <= 3; ++octets) {
    std::string wire = Xr(Hex("04000002 C1C2C3C4 C5C6C7C8 63000000"));
    wire[0] = static_cast<char>(0xA0);
    wire.back() = static_cast<char>(4 - octets);
    Report report(wire);
    EXPECT_EQ(report.Blocks().size(), 1U);
    EXPECT_EQ(report.reader.reason, ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  }
}

// Every type, with contents of so many words: what has not the length of its type is not known, and is told by octets.
TEST(ZunRtcpXrBlock, IsKnownWhereItsLengthIsThatOfItsType) {
  for (int type = 0; type <= 9; ++type) {
    for (int words = 0; words <= 12; ++words) {
      const bool known[] = {false,          words >= 2, words >= 2, words >= 2, words == 2,
                            words % 3 == 0, words == 9, words == 8, false,      false};
      const std::string head = {static_cast<char>(type), 0, 0, static_cast<char>(words)};
      const std::string contents(static_cast<std::size_t>(4 * words), 'c');
      const Block block(head + contents);
      EXPECT_EQ(block->isKnown != 0, known[type]) << type << ", " << words << " words";
      EXPECT_EQ(Contents(*block), contents);
    }
  }
}

// No getter reads another type, or one that is not known.
TEST(ZunRtcpXrBlock, IsReadAsItsOwnTypeAlone) {
  Report report(Xr(AllBlocks()));
  for (ZunRtcpXrBlock block : report.Blocks()) {
    for (const bool known : {true, false}) {
      block.isKnown = block.isKnown && known;
      ZunRtcpXrRrtr rrtr;
      ZunRtcpXrStatistics statistics;
      ZunRtcpXrVoip voip;
      ZunRtcpXrDlrr dlrr;
      ZunRtcpXrRange range;
      EXPECT_EQ(ZunRtcpXrBlockGetRrtr(&block, &rrtr), block.isKnown && block.type == ZUN_RTCPXR_TYPE_RRTR);
      EXPECT_EQ(ZunRtcpXrBlockGetDlrr(&block, 0, &dlrr), block.isKnown && block.type == ZUN_RTCPXR_TYPE_DLRR);
      EXPECT_EQ(ZunRtcpXrBlockGetStatistics(&block, &statistics),
                block.isKnown && block.type == ZUN_RTCPXR_TYPE_STATISTICS);
      EXPECT_EQ(ZunRtcpXrBlockGetVoip(&block, &voip), block.isKnown && block.type == ZUN_RTCPXR_TYPE_VOIP);
      EXPECT_EQ(ZunRtcpXrBlockGetRange(&block, &range),
                block.isKnown && (block.type <= 3 || block.type == ZUN_RTCPXR_TYPE_STATISTICS));
      EXPECT_EQ(PacketsOf(&block).empty(), !block.isKnown || block.type > 3);
    }
  }
}

TEST(ZunRtcpXrBlock, FieldsAreWhatTheyAreOnTheWire) {
  Report report(Xr(AllBlocks()));
  const std::vector<ZunRtcpXrBlock> blocks = report.Blocks();
  ZunRtcpXrRrtr rrtr;
  ASSERT_TRUE(ZunRtcpXrBlockGetRrtr(&blocks[3], &rrtr));
  EXPECT_EQ(rrtr.ntpTimestamp, 0xC1C2C3C4C5C6C7C8U);
  ASSERT_EQ(ZunRtcpXrBlockGetDlrrCount(&blocks[4]), 2U);
  ZunRtcpXrDlrr dlrr;
  ASSERT_TRUE(ZunRtcpXrBlockGetDlrr(&blocks[4], 1, &dlrr));
  EXPECT_EQ(dlrr.ssrc, 0x31323334U);
  EXPECT_EQ(dlrr.lastRr, 0x41424344U);
  EXPECT_EQ(dlrr.delaySinceLastRr, 0x51525354U);
  EXPECT_FALSE(ZunRtcpXrBlockGetDlrr(&blocks[4], 2, &dlrr));
  EXPECT_EQ(dlrr.ssrc, 0x31323334U);
  EXPECT_EQ(ZunRtcpXrBlockGetDlrrCount(&blocks[3]), 0U);
  ZunRtcpXrStatistics s;
  ASSERT_TRUE(ZunRtcpXrBlockGetStatistics(&blocks[5], &s));
  EXPECT_TRUE(s.hasLoss && s.hasDuplicates && s.hasJitter);
  EXPECT_EQ(s.hopKind, 3);
  EXPECT_EQ(s.range.thinning, 0);
  EXPECT_EQ((std::vector<ZunUint32>{s.range.source, s.range.beginSeq, s.range.endSeq, s.lostPackets, s.duplicatePackets,
                                    s.minJitter, s.maxJitter, s.meanJitter, s.jitterDeviation, s.minHops, s.maxHops,
                                    s.meanHops, s.hopsDeviation}),
            (std::vector<ZunUint32>{0x11121314, 1, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  ZunRtcpXrVoip v;
  ASSERT_TRUE(ZunRtcpXrBlockGetVoip(&blocks[6], &v));
  EXPECT_EQ((std::vector<ZunUint32>{v.source, v.lossRate, v.discardRate, v.burstDensity, v.gapDensity, v.burstDuration,
                                    v.gapDuration, v.roundTripDelay, v.endSystemDelay}),
            (std::vector<ZunUint32>{0x11121314, 1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(v.signalLevel, -127);
  EXPECT_EQ(v.noiseLevel, 127);
  EXPECT_EQ((std::vector<int>{v.residualEchoReturnLoss, v.gmin, v.rFactor, v.externalRFactor, v.mosListening,
                              v.mosConversational, v.receiverConfig, v.jitterBufferNominal, v.jitterBufferMaximum,
                              v.jitterBufferAbsoluteMaximum}),
            (std::vector<int>{11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));
}

TEST(ZunRtcpXrBlock, EachFlagOfStatisticsStandsForItself) {
  for (const int flags : {0x80, 0x40, 0x20, 0x08, 0x10, 0x07, 0x00}) {
    const std::string head = {6, static_cast<char>(flags), 0, 9};
    const Block block(head + std::string(36, '\0'));
    ZunRtcpXrStatistics s;
    ASSERT_TRUE(ZunRtcpXrBlockGetStatistics(block, &s));
    EXPECT_EQ(s.hasLoss != 0, flags == 0x80);
    EXPECT_EQ(s.hasDuplicates != 0, flags == 0x40);
    EXPECT_EQ(s.hasJitter != 0, flags == 0x20);
    EXPECT_EQ(s.hopKind, flags >> 3 & 3);
    EXPECT_EQ(s.range.thinning, 0);
    Builder builder;
    ASSERT_TRUE(ZunRtcpXrBuilderAddStatistics(builder, &s));
    EXPECT_EQ(builder.bytes().substr(8, 2), (std::string{6, static_cast<char>(flags & 0xF8)}));
  }
}

// Packets

TEST(ZunRtcpXrBlock, TellsOfPacketsOneByOne) {
  Report report(Xr(AllBlocks()));
  const std::vector<ZunRtcpXrBlock> blocks = report.Blocks();
  // Every fourth from 65534 up to 17: 0, 4, 8, 12 and 16.
  EXPECT_EQ(PacketsOf(&blocks[0]), (Packets{{0, 1}, {4, 1}, {8, 0}, {12, 0}, {16, 0}}));
  Packets duplicates;
  for (int seq = 1; seq <= 15; ++seq) duplicates.emplace_back(seq, seq <= 14);
  EXPECT_EQ(PacketsOf(&blocks[1]), duplicates);
  EXPECT_EQ(PacketsOf(&blocks[2]), (Packets{{65535, 0xA1A2A3A4}, {0, 0xB1B2B3B4}}));
}

// A trace about packets 10 up to, but without, `end`.
std::string Trace(int end, const std::string& chunks) {
  const std::string contents =
      Hex("00000001 000A") + static_cast<char>(end >> 8) + static_cast<char>(end & 0xFF) + chunks;
  const std::string head = {1, 0, 0, static_cast<char>(contents.size() / 4)};
  return head + contents;
}

TEST(ZunRtcpXrBlock, TraceEndsWhereItsChunksOrItsPacketsDo) {
  EXPECT_EQ(PacketsOf(Block(Trace(13, Hex("4002 0000")))), (Packets{{10, 1}, {11, 1}}));            // too few
  EXPECT_EQ(PacketsOf(Block(Trace(13, Hex("4002 0000 4001 4001")))), (Packets{{10, 1}, {11, 1}}));  // ended
  EXPECT_EQ(PacketsOf(Block(Trace(13, Hex("4002 4000 0001 0000")))), (Packets{{10, 1}, {11, 1}, {12, 0}}));
  EXPECT_EQ(PacketsOf(Block(Trace(13, Hex("7FFF 4001")))), (Packets{{10, 1}, {11, 1}, {12, 1}}));
  EXPECT_EQ(PacketsOf(Block(Trace(12, Hex("BFFF 4001")))), (Packets{{10, 0}, {11, 1}}));
  EXPECT_EQ(PacketsOf(Block(Trace(10, Hex("7FFF 7FFF")))), Packets());
  EXPECT_EQ(PacketsOf(Block(Trace(13, ""))), Packets());
  EXPECT_EQ(PacketsOf(Block(Trace(9, Hex("7FFF 7FFF 7FFF 7FFF 7FFF 0000")))).size(), 65535U);
}

TEST(ZunRtcpXrBlock, ReceiptTimesEndWhereTheirOctetsOrTheirPacketsDo) {
  EXPECT_EQ(PacketsOf(Block(Hex("03000003 00000001 00010003 00000007"))), (Packets{{1, 7}}));
  EXPECT_EQ(PacketsOf(Block(Hex("03000004 00000001 00010002 00000007 00000008"))), (Packets{{1, 7}}));
  EXPECT_EQ(PacketsOf(Block(Hex("03030004 00000001 00010011 00000007 00000008"))), (Packets{{8, 7}, {16, 8}}));
}

TEST(ZunRtcpXrRange, CountsThePacketsThatItsThinningLeaves) {
  struct Case {
    ZunUint8 thinning;
    ZunUint16 begin;
    ZunUint16 end;
    ZunSizeT count;
  };
  for (const Case& c :
       {Case{0, 5, 5, 0}, Case{0, 5, 6, 1}, Case{0, 6, 5, 65535}, Case{0, 65535, 1, 2}, Case{1, 5, 6, 0},
        Case{1, 6, 7, 1}, Case{1, 5, 9, 2}, Case{3, 65535, 9, 2}, Case{3, 0, 8, 1}, Case{3, 0, 9, 2}, Case{15, 1, 0, 1},
        Case{15, 0, 32768, 1}, Case{15, 0, 32769, 2}, Case{15, 1, 32768, 0}, Case{15, 40000, 1, 1}}) {
    const ZunRtcpXrRange range = {1, c.thinning, c.begin, c.end};
    EXPECT_EQ(ZunRtcpXrRangeGetCount(&range), c.count) << int{c.thinning} << " " << c.begin << " " << c.end;
  }
}

// Building

// Adds a block that was read, through the function of its type.
bool Add(ZunRtcpXrBuilder* b, const ZunRtcpXrBlock& block) {
  ZunRtcpXrRange range;
  const bool has_range = ZunRtcpXrBlockGetRange(&block, &range) != 0;
  const Packets packets = PacketsOf(&block);
  std::vector<ZunUint32> values;
  std::vector<ZunBool> told;
  for (const auto& [seq, value] : packets) {
    values.push_back(value);
    told.push_back(value != 0);
  }
  ZunRtcpXrRrtr rrtr;
  ZunRtcpXrStatistics statistics;
  ZunRtcpXrVoip voip;
  if (ZunRtcpXrBlockGetRrtr(&block, &rrtr)) return ZunRtcpXrBuilderAddRrtr(b, &rrtr);
  if (ZunRtcpXrBlockGetStatistics(&block, &statistics)) return ZunRtcpXrBuilderAddStatistics(b, &statistics);
  if (ZunRtcpXrBlockGetVoip(&block, &voip)) return ZunRtcpXrBuilderAddVoip(b, &voip);
  if (block.type == ZUN_RTCPXR_TYPE_RECEIPT_TIMES && has_range) {
    return ZunRtcpXrBuilderAddReceiptTimes(b, &range, values.data(), values.size());
  }
  if (has_range) return ZunRtcpXrBuilderAddRle(b, block.type, &range, told.data(), told.size());
  if (block.isKnown) {
    std::vector<ZunRtcpXrDlrr> dlrrs(ZunRtcpXrBlockGetDlrrCount(&block));
    for (ZunSizeT i = 0; i < dlrrs.size(); ++i) EXPECT_TRUE(ZunRtcpXrBlockGetDlrr(&block, i, &dlrrs[i]));
    return ZunRtcpXrBuilderAddDlrr(b, dlrrs.data(), dlrrs.size());
  }
  return ZunRtcpXrBuilderAddBlock(b, static_cast<ZunUint8>(block.type), block.typeSpecific, block.octets, block.size);
}

TEST(ZunRtcpXrBuilder, RebuildsEveryBlock) {
  Report report(Xr(AllBlocks()));
  for (const ZunRtcpXrBlock& block : report.Blocks()) {
    Builder builder;
    EXPECT_TRUE(Add(builder, block));
    const std::string head = {static_cast<char>(block.type), static_cast<char>(block.typeSpecific), 0,
                              static_cast<char>(block.size / 4)};
    // The loss RLE is not as short as it can be.
    const std::string contents = block.type == 1 ? Hex("11121314 FFFE0012 E000 0000") : Contents(block);
    const std::string built = head.substr(0, 3) + static_cast<char>(contents.size() / 4) + contents;
    EXPECT_EQ(ToHex(builder.bytes()), ToHex(Xr(built)));
  }
}

TEST(ZunRtcpXrBuilder, RebuildsWhatPeersSend) {
  for (const char* const captured : {kCapturedXr, kCapturedDlrr}) {
    const Decoded p(Hex(captured), kRegistered);
    for (ZunSizeT i = 0; i < p.count(); ++i) {
      if (ZunRtcpSubpacketGetType(&p[i]) != ZUN_RTCPSUBPACKET_TYPE_XR) continue;
      Report report(Written(p[i]));
      Builder builder(report.reader.sender);
      for (const ZunRtcpXrBlock& block : report.Blocks()) EXPECT_TRUE(Add(builder, block));
      EXPECT_EQ(ToHex(Str(&builder.get()->data)), ToHex(Written(p[i]).substr(4)));
    }
  }
}

// The bits of a trace: runs where they save room, vectors of 15 otherwise, and a last run or vector for the rest.
TEST(ZunRtcpXrBuilder, LaysOutTraces) {
  struct Case {
    std::string told;
    const char* chunks;
  };
  for (const Case& c :
       {Case{"", ""}, Case{"1", "40010000"}, Case{"00", "00020000"}, Case{std::string(14, '1'), "400E0000"},
        Case{std::string(15, '1'), "400F0000"}, Case{std::string(16383, '0'), "3FFF0000"},
        Case{std::string(16384, '0'), "3FFF0001"}, Case{"10", "C0000000"}, Case{std::string(14, '1') + "0", "FFFE0000"},
        Case{std::string(14, '1') + "00", "FFFE0001"}, Case{std::string(15, '1') + "01", "400FA000"},
        Case{"101010101010101"
             "0111111111111111",
             "D555BFFF40010000"}}) {
    const ZunRtcpXrRange range = {1, 0, 10, static_cast<ZunUint16>(10 + c.told.size())};
    std::vector<ZunBool> told;
    for (const char bit : c.told) told.push_back(bit == '1');
    Builder builder;
    ASSERT_TRUE(ZunRtcpXrBuilderAddRle(builder, ZUN_RTCPXR_TYPE_LOSS_RLE, &range, told.data(), told.size()));
    EXPECT_EQ(ToHex(builder.bytes().substr(20)), c.chunks) << c.told.substr(0, 40);
  }
}

TEST(ZunRtcpXrBuilder, TracesComeBack) {
  RandomDatagrams random(5);
  for (int i = 0; i < 1000; ++i) {
    const ZunRtcpXrRange range = {7, static_cast<ZunUint8>(random.Below(random.Below(2) == 0 ? 4 : 16)),
                                  static_cast<ZunUint16>(random.Below(65536)),
                                  static_cast<ZunUint16>(random.Below(500))};
    ZunRtcpXrRange shorter = range;
    shorter.endSeq = static_cast<ZunUint16>(range.beginSeq + range.endSeq);
    std::vector<ZunBool> told(ZunRtcpXrRangeGetCount(&shorter));
    const unsigned run = 1 + random.Below(40);
    for (std::size_t at = 0; at < told.size(); ++at) {
      told[at] = at == 0 || random.Below(run) == 0 ? random.Below(2) != 0 : told[at - 1];
    }
    Builder builder;
    ASSERT_TRUE(ZunRtcpXrBuilderAddRle(builder, ZUN_RTCPXR_TYPE_DUPLICATE_RLE, &shorter, told.data(), told.size()));
    const Block block(builder.bytes().substr(8));
    EXPECT_EQ(block->typeSpecific, range.thinning);
    ZunRtcpXrRange read;
    ASSERT_TRUE(ZunRtcpXrBlockGetRange(block, &read));
    EXPECT_EQ(read.beginSeq, shorter.beginSeq);
    EXPECT_EQ(read.endSeq, shorter.endSeq);
    const Packets packets = PacketsOf(block);
    ASSERT_EQ(packets.size(), told.size());
    for (std::size_t at = 0; at < told.size(); ++at) {
      EXPECT_EQ(packets[at].second, told[at]);
      EXPECT_EQ(packets[at].first % (1 << range.thinning), 0);
    }
  }
}

TEST(ZunRtcpXrBuilder, RefusesArgumentsThatNoBlockHas) {
  Builder builder;
  const ZunBool told[] = {1, 0, 1};
  const ZunUint32 times[] = {1, 2, 3};
  const ZunRtcpXrRange three = {1, 0, 10, 13};
  const ZunRtcpXrRange too_thin = {1, 16, 10, 13};
  EXPECT_FALSE(ZunRtcpXrBuilderAddRle(builder, ZUN_RTCPXR_TYPE_RECEIPT_TIMES, &three, told, 3));
  EXPECT_FALSE(ZunRtcpXrBuilderAddRle(builder, ZUN_RTCPXR_TYPE_LOSS_RLE, &three, told, 2));
  EXPECT_FALSE(ZunRtcpXrBuilderAddRle(builder, ZUN_RTCPXR_TYPE_LOSS_RLE, &too_thin, told, 3));
  EXPECT_FALSE(ZunRtcpXrBuilderAddReceiptTimes(builder, &three, times, 4));
  EXPECT_FALSE(ZunRtcpXrBuilderAddReceiptTimes(builder, &too_thin, times, 3));
  EXPECT_FALSE(ZunRtcpXrBuilderAddBlock(builder, 99, 0, "abc", 3));
  ZunRtcpXrStatistics s = {};
  s.hopKind = 4;
  EXPECT_FALSE(ZunRtcpXrBuilderAddStatistics(builder, &s));
  s.hopKind = 3;
  s.range.thinning = 1;
  EXPECT_FALSE(ZunRtcpXrBuilderAddStatistics(builder, &s));
  EXPECT_EQ(builder.bytes(), Hex("80CF0001 01020304"));
}

TEST(ZunRtcpXrBuilder, HoldsAsMuchAsALengthCanSay) {
  const std::string octets(262144, 'o');
  const std::vector<ZunRtcpXrDlrr> dlrrs(21846, {1, 2, 3});
  for (const ZunSizeT size : std::initializer_list<ZunSizeT>{262136, 262140, 262144}) {
    Builder builder;
    EXPECT_FALSE(ZunRtcpXrBuilderAddBlock(builder, 99, 0, octets.data(), size));
  }
  EXPECT_FALSE(ZunRtcpXrBuilderAddBlock(Builder(), 99, 0, octets.data(), SIZE_MAX - 3));
  Builder full;
  EXPECT_TRUE(ZunRtcpXrBuilderAddBlock(full, 99, 0, octets.data(), 262132));
  EXPECT_EQ(full.size(), 262140U);
  EXPECT_EQ(full.bytes().size(), 262144U);
  EXPECT_FALSE(ZunRtcpXrBuilderAddBlock(full, 99, 0, nullptr, 0));
  Report report(Xr(AllBlocks()));
  for (const ZunRtcpXrBlock& block : report.Blocks()) EXPECT_FALSE(Add(full, block));
  EXPECT_EQ(full.size(), 262140U);
  Builder many;
  for (const ZunSizeT count : {ZunSizeT{21845}, ZunSizeT{21846}, SIZE_MAX}) {
    EXPECT_FALSE(ZunRtcpXrBuilderAddDlrr(many, dlrrs.data(), count));
  }
  EXPECT_TRUE(ZunRtcpXrBuilderAddDlrr(many, dlrrs.data(), 21844));
}

TEST(ZunRtcpXrBuilder, LeavesTheReportAsItWasWhereMemoryIsRefused) {
  Report report(Xr(AllBlocks()));
  const std::vector<ZunRtcpXrBlock> blocks = report.Blocks();
  const std::size_t allocations = ForEveryRefusal([&](TestAllocator& refusing) {
    ZunRtcpXrBuilder b;
    if (ZunRtcpXrBuilderConstruct(&b, kSender, refusing) == nullptr) return;
    for (const ZunRtcpXrBlock& block : blocks) {
      const std::string before = Str(&b.data);
      if (!Add(&b, block)) {
        EXPECT_EQ(Str(&b.data), before);
      }
    }
    ZunRtcpSubpacket sp;
    if (ZunRtcpXrBuilderMakeSubpacket(&b, &sp, refusing) != nullptr) {
      EXPECT_EQ(Str(&sp.unk.data), Str(&b.data));
      ZunRtcpSubpacketDestruct(&sp);
    }
    ZunRtcpXrBuilderDestruct(&b);
  });
  EXPECT_GT(allocations, 3U);
}

}  // namespace
