#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbLir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/FeedbackWire.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbAfbLir);

using Entry = ZunRtcpPsfbAfbLirEntry;

const std::string kNorvi = Hex("4E720005");
const std::string kReceived = Hex(R"(
    8F CE 000C      | version 2, FMT 15, type 206, 13 words
    01020304        | sender
    11121314        | media source
    4E72 0005       | "Nr", LIR
    AABBCCDD        | media source of the first entry
    2A 60 0005      | sequence number 42, payload type 96, 5 octets
    6C61796572      | "layer"
    FFFFFF          | padding, which is not looked at
    00000001        | media source of the second
    FF 7F 0004      | sequence number 255, payload type 127, 4 octets
    01020304
    00000002        | media source of the third
    00 00 0000      | sequence number 0, payload type 0, nothing
)");
const std::string kSent = Hex(R"(
    8F CE 0005      | version 2, FMT 15, type 206, 6 words, whatever follows
    01020304        | sender
    11121314        | media source
    4E72 0005       | "Nr", LIR
    AABBCCDD        | media source of the first entry
    2A 60           | sequence number 42, payload type 96
    6C61796572      | "layer"
    000000          | padding
    00000001        | media source of the second
    FF 7F           | sequence number 255, payload type 127
    01020304
    00000002        | media source of the third
    00 00           | sequence number 0, payload type 0
)");

// An entry as it arrives.
std::string Received(ZunUint8 seqno, const std::string& data) {
  std::string entry = Hex("AABBCCDD 00 60 0000");
  entry[4] = static_cast<char>(seqno);
  entry[6] = static_cast<char>(data.size() >> 8);
  entry[7] = static_cast<char>(data.size() & 0xFF);
  entry += data;
  while (entry.size() % 4 != 0) entry += '\0';
  return entry;
}

void ExpectEntry(const Entry& entry, ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 pt, const std::string& data) {
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryGetSsrc(&entry), ssrc);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryGetSequenceNumber(&entry), seqno);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryGetPayloadType(&entry), pt);
  EXPECT_EQ(ToHex(Str(ZunRtcpPsfbAfbLirEntryGetLayerData(&entry))), ToHex(data));
}

ZunSizeT CountOf(const ZunRtcpPsfbAfbLir& p) {
  return ZunVector_ZunRtcpPsfbAfbLirEntrySize(ZunRtcpPsfbAfbLirGetFci(&p));
}

void ExpectGoldenEntries(const ZunRtcpPsfbAfbLir& p) {
  ASSERT_EQ(CountOf(p), 3U);
  ExpectEntry(p.fci.begin[0], 0xAABBCCDD, 42, 96, "layer");
  ExpectEntry(p.fci.begin[1], 1, 255, 127, Hex("01020304"));
  ExpectEntry(p.fci.begin[2], 2, 0, 0, "");
}

class LirTest : public ::testing::Test {
 protected:
  LirTest() {
    ZunRtcpPsfbAfbLirConstructDefault(&lir_, allocator_);
    lir_.sender = kSender;
    lir_.source = kSource;
  }
  ~LirTest() override { ZunRtcpPsfbAfbLirDestruct(&lir_); }

  void Add(ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 pt, const std::string& data) {
    const Text layer_data(data, allocator_);
    Entry entry;
    ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, ssrc, seqno, pt, layer_data.get(), nullptr), &entry);
    ASSERT_TRUE(ZunVector_ZunRtcpPsfbAfbLirEntryPushBack(ZunRtcpPsfbAfbLirGetFci(&lir_), &entry));
    ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  }
  void AddGolden() {
    Add(0xAABBCCDD, 42, 96, "layer");
    Add(1, 255, 127, Hex("01020304"));
    Add(2, 0, 0, "");
  }
  bool Read(const std::string& wire, ZunAllocator* of_buffer) {
    const Datagram datagram(wire, of_buffer);
    return kRow.assign_from_buffer(Sub(&lir_), datagram, kBodyBegin, wire.size(), 206, 15) != 0;
  }

  TestAllocator allocator_;
  ZunRtcpPsfbAfbLir lir_;
};

TEST_F(LirTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbAfbLir p;
  ASSERT_EQ(ZunRtcpPsfbAfbLirConstructDefault(&p, allocator_), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 5);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetFci(&p), &p.fci);
  EXPECT_EQ(CountOf(p), 0U);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(&p), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
}

TEST_F(LirTest, ReadsGoldenBytes) {
  const Parsed parsed(kReceived);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_LIR);
  const ZunRtcpPsfbAfbLir& p = *ZunRtcpPsfbAfbGetLir(afb);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, kSource);
  ExpectGoldenEntries(p);
}

TEST_F(LirTest, WritesGoldenBytesWithoutTheLengthsThatItsReaderNeeds) {
  AddGolden();
  Text out;
  ASSERT_TRUE(kRow.write_packet(Sub(&lir_), out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(kSent));
}

TEST_F(LirTest, HeaderAlwaysAnnouncesTwentyFourOctets) {
  for (const std::size_t size : std::initializer_list<std::size_t>{0, 1, 100, 1000}) {
    ZunVector_ZunRtcpPsfbAfbLirEntryClear(&lir_.fci);
    Add(1, 2, 3, std::string(size, 'x'));
    Text out;
    ASSERT_TRUE(kRow.write_packet(Sub(&lir_), out, 0));
    EXPECT_EQ(ToHex(out.str().substr(0, 4)), "8FCE0005");
    EXPECT_EQ(out->size, 16 + 6 + (size + 3) / 4 * 4);
  }
}

TEST_F(LirTest, LengthCountsTheFieldThatTheWriterLeavesOut) {
  EXPECT_EQ(kRow.get_packet_length(Sub(&lir_)), 16U);
  Add(1, 2, 3, "layer");
  EXPECT_EQ(kRow.get_packet_length(Sub(&lir_)), 32U);
  Add(1, 2, 3, "");
  EXPECT_EQ(kRow.get_packet_length(Sub(&lir_)), 40U);
  Add(1, 2, 3, "1234");
  EXPECT_EQ(kRow.get_packet_length(Sub(&lir_)), 52U);
}

TEST_F(LirTest, WhatIsWrittenIsNotReadAsItWas) {
  AddGolden();
  Text out;
  ASSERT_TRUE(kRow.write_packet(Sub(&lir_), out, 0));
  EXPECT_FALSE(Slot(kRow, out.str()).ok);
}

TEST_F(LirTest, WritingNoEntriesFailsBehindTheHead) {
  LogCapture log;
  Text out;
  EXPECT_FALSE(kRow.write_packet(Sub(&lir_), out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(Hex("8FCE0005 01020304 11121314 4E720005")));
  log.ExpectNone();
}

TEST_F(LirTest, ReadingNoEntriesFailsAndKeepsTheOldOnes) {
  AddGolden();
  EXPECT_FALSE(Read(Afb(kNorvi), allocator_));
  ExpectGoldenEntries(lir_);
  EXPECT_FALSE(Read(Afb("LNTF"), allocator_));
  ExpectGoldenEntries(lir_);
}

TEST_F(LirTest, PayloadTypeHasSevenBitsOnTheWire) {
  std::string wire = Afb(kNorvi + Received(1, "ab") + Received(2, "cd"));
  wire[16 + 12 + 5] = static_cast<char>(0x80);
  const Slot slot(kRow, wire);
  EXPECT_FALSE(slot.ok);
  ASSERT_EQ(CountOf(slot.sp.psfb.afb.lir), 1U) << "the entry in front is kept";
  ExpectEntry(slot.sp.psfb.afb.lir.fci.begin[0], 0xAABBCCDD, 1, 96, "ab");
}

TEST_F(LirTest, EntryConstructorRefusesAPayloadTypeThatTheSetterTakes) {
  const Text data("abc", allocator_);
  Entry entry;
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 128, data.get(), allocator_), nullptr);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 255, data.get(), allocator_), nullptr);
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 127, data.get(), allocator_), &entry);
  ExpectEntry(entry, 1, 2, 127, "abc");
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetPayloadType(&entry, 128));
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryGetPayloadType(&entry), 128);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
}

TEST_F(LirTest, EntryConstructorTakesTheAllocatorOfTheDataAndNotItsOwn) {
  TestAllocator given;
  const Text data("abc", allocator_);
  Entry entry;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 3, data.get(), given), &entry);
  EXPECT_EQ(entry.layerData.allocator, allocator_.get());
  EXPECT_EQ(given.calls(), 0U);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  allocator_.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 3, data.get(), given), nullptr);
}

TEST_F(LirTest, EntrySettersTakeAnyValue) {
  Add(1, 2, 3, "abc");
  Entry& entry = lir_.fci.begin[0];
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetSsrc(&entry, 0xFFFFFFFF));
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetSequenceNumber(&entry, 255));
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetPayloadType(&entry, 255));
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetLayerData(&entry, Text(std::string(70000, 'x')).get()));
  ExpectEntry(entry, 0xFFFFFFFF, 255, 255, std::string(70000, 'x'));
  EXPECT_EQ(entry.layerData.allocator, allocator_.get());
  allocator_.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpPsfbAfbLirEntrySetLayerData(&entry, Text(std::string(70001, 'y')).get()));
  ExpectEntry(entry, 0xFFFFFFFF, 255, 255, std::string(70000, 'x'));
}

TEST_F(LirTest, EntriesAreCopiedWithTheirAllocator) {
  Add(1, 2, 3, "abc");
  TestAllocator other;
  const Text data("a longer text", other);
  Entry entry;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 4, 5, 6, data.get(), nullptr), &entry);
  Entry copy;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructCopy(&copy, &entry), &copy);
  EXPECT_EQ(copy.layerData.allocator, other.get());
  ExpectEntry(copy, 4, 5, 6, "a longer text");
  ZunRtcpPsfbAfbLirEntryDestruct(&copy);
  Entry& mine = lir_.fci.begin[0];
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryAssign(&mine, &entry), &mine);
  EXPECT_EQ(mine.layerData.allocator, allocator_.get());
  ExpectEntry(mine, 4, 5, 6, "a longer text");
  other.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructCopy(&copy, &entry), nullptr);
  allocator_.RefuseFrom(0);
  ASSERT_TRUE(ZunRtcpPsfbAfbLirEntrySetLayerData(&mine, Text("short").get()));
  EXPECT_NE(ZunRtcpPsfbAfbLirEntryAssign(&mine, &entry), nullptr) << "there is room for it";
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
}

TEST_F(LirTest, CutAnywhereKeepsTheWholeEntries) {
  ForEveryCut(kRow, kReceived, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbAfbLir& p = slot.sp.psfb.afb.lir;
    EXPECT_EQ(slot.ok, (size == 28 || size == 40) && !end_is_beyond);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    // The padding must lie before the end, but as nobody looks at it, it need not be in the string.
    const ZunSizeT first_end = end_is_beyond ? 25 : 28;
    const ZunSizeT count = ZunSizeT{size >= first_end} + ZunSizeT{size >= 40};
    EXPECT_EQ(CountOf(p), count);
    if (count > 0) ExpectEntry(p.fci.begin[0], 0xAABBCCDD, 42, 96, "layer");
  });
}

TEST_F(LirTest, ALengthBeyondTheMessageFails) {
  for (const int length : {6, 8, 9, 255}) {
    std::string wire = Afb(kNorvi + Received(1, "layer"));
    wire[23] = static_cast<char>(length);
    EXPECT_EQ(Slot(kRow, wire).ok, length <= 8) << length;
  }
  std::string wire = Afb(kNorvi + Received(1, "layer"));
  wire[22] = static_cast<char>(0xFF);
  wire[23] = static_cast<char>(0xFF);
  EXPECT_FALSE(Slot(kRow, wire).ok) << "the padded length does not wrap";
}

TEST_F(LirTest, TheLargestLayerDataIsRead) {
  const std::string data(65532, 'z');
  const Slot slot(kRow, Afb(kNorvi + Received(7, data)));
  ASSERT_TRUE(slot.ok);
  ExpectEntry(slot.sp.psfb.afb.lir.fci.begin[0], 0xAABBCCDD, 7, 96, data);
}

TEST_F(LirTest, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kReceived;
  wire[15] = 9;
  const Slot slot(kRow, wire);
  EXPECT_TRUE(slot.ok);
  EXPECT_EQ(slot.sp.psfb.afb.lir.afbType, 5);
  wire[12] = 'n';
  EXPECT_FALSE(Slot(kRow, wire).ok);
}

TEST_F(LirTest, ReadLayerDataTakesTheAllocatorOfTheBuffer) {
  TestAllocator of_buffer;
  ASSERT_TRUE(Read(kReceived, of_buffer));
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(&lir_), allocator_.get());
  for (const Entry* x = lir_.fci.begin; x != lir_.fci.end; ++x) EXPECT_EQ(x->layerData.allocator, of_buffer.get());
  EXPECT_EQ(of_buffer.live_blocks(), 2U) << "an empty text owns nothing";
  EXPECT_EQ(allocator_.live_blocks(), 1U);
  EXPECT_EQ(allocator_.calls(), 1U) << "the list is reserved once";
  ZunVector_ZunRtcpPsfbAfbLirEntryClear(&lir_.fci);
}

TEST_F(LirTest, EntriesOfAnotherAllocatorAreReplacedInPlace) {
  TestAllocator of_buffer;
  AddGolden();
  ASSERT_TRUE(Read(kReceived, of_buffer));
  ExpectGoldenEntries(lir_);
  for (const Entry* x = lir_.fci.begin; x != lir_.fci.end; ++x) EXPECT_EQ(x->layerData.allocator, of_buffer.get());
  EXPECT_EQ(allocator_.live_blocks(), 1U) << "the old texts gave their storage back";
  ASSERT_TRUE(Read(kReceived, allocator_));
  ExpectGoldenEntries(lir_);
  EXPECT_EQ(of_buffer.live_blocks(), 0U);
}

TEST_F(LirTest, ReadingTheSameShapeAgainTakesNoAllocation) {
  ASSERT_TRUE(Read(kReceived, allocator_));
  const std::size_t calls = allocator_.calls();
  std::string other = kReceived;
  other[24] = 'L';
  ASSERT_TRUE(Read(other, allocator_));
  EXPECT_EQ(allocator_.calls(), calls);
  ExpectEntry(lir_.fci.begin[0], 0xAABBCCDD, 42, 96, "Layer");
}

TEST_F(LirTest, ReadsInPlaceAsFresh) {
  const std::string wires[] = {kReceived, Afb(kNorvi + Received(1, "a")),
                               Afb(kNorvi + Received(2, "") + Received(3, "")),
                               Afb(kNorvi + Received(4, std::string(300, 'x')) + Received(5, "5") + Received(6, "6") +
                                   Received(7, "7") + Received(8, "8"))};
  for (const std::string& first : wires) {
    for (const std::string& second : wires) {
      Slot used(kRow, first);
      ASSERT_TRUE(used.Again(second));
      const Slot fresh(kRow, second);
      const ZunRtcpPsfbAfbLir& expected = fresh.sp.psfb.afb.lir;
      ASSERT_EQ(CountOf(used.sp.psfb.afb.lir), CountOf(expected));
      for (ZunSizeT n = 0; n < CountOf(expected); ++n) {
        const Entry& x = expected.fci.begin[n];
        ExpectEntry(used.sp.psfb.afb.lir.fci.begin[n], x.ssrc, x.seqno, x.payloadType, Str(&x.layerData));
      }
    }
  }
}

TEST_F(LirTest, AFailedReadInPlaceKeepsOnlyTheNewEntries) {
  AddGolden();
  EXPECT_FALSE(Read(Afb(kNorvi + Received(1, "new")) + "more", allocator_));
  ASSERT_EQ(CountOf(lir_), 1U);
  ExpectEntry(lir_.fci.begin[0], 0xAABBCCDD, 1, 96, "new");
}

TEST_F(LirTest, RefusedReadsLoseNothing) {
  for (const std::string& before : {std::string(), Afb(kNorvi + Received(1, "x")), kReceived}) {
    EXPECT_EQ(ForEveryRefusal([&](TestAllocator& refusing) {
                ZunRtcpPsfbAfbLir p;
                ZunRtcpPsfbAfbLirConstructDefault(&p, refusing);
                const auto read = [&](const std::string& wire) {
                  const Datagram datagram(wire, refusing);
                  return kRow.assign_from_buffer(Sub(&p), datagram, kBodyBegin, wire.size(), 206, 15) != 0;
                };
                if (!before.empty()) read(before);
                if (read(kReceived)) {
                  ExpectGoldenEntries(p);
                } else {
                  EXPECT_GT(refusing.refused(), 0U);
                  EXPECT_LT(CountOf(p), 3U);
                }
                refusing.RefuseNothing();
                EXPECT_TRUE(read(kReceived)) << "an object that a refusal left behind cannot be used again";
                ExpectGoldenEntries(p);
                ZunRtcpPsfbAfbLirDestruct(&p);
                ZunRtcpPsfbAfbLirDestruct(&p);
              }) > 0,
              true);
  }
}

TEST_F(LirTest, RefusedCopiesLoseNothing) {
  const Slot source(kRow, kReceived);
  EXPECT_EQ(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSubpacket copy;
              const bool ok = kRow.construct_copy_allocator(&copy, &source.sp, refusing) != nullptr;
              EXPECT_EQ(ok, refusing.refused() == 0);
              if (!ok) return;
              ExpectGoldenEntries(copy.psfb.afb.lir);
              EXPECT_EQ(kRow.get_allocator(&copy), refusing.get());
              kRow.destruct(&copy);
            }),
            1U)
      << "the entries keep the allocators of their sources";
  AddGolden();
  ForEveryRefusal([&](TestAllocator& refusing) {
    ZunRtcpPsfbAfbLir p;
    ZunRtcpPsfbAfbLirConstructDefault(&p, refusing);
    const bool ok = Read(kReceived, refusing) && ZunRtcpPsfbAfbLirAssign(&p, &lir_) != nullptr;
    if (ok) ExpectGoldenEntries(p);
    EXPECT_TRUE(ok || refusing.refused() > 0);
    ZunRtcpPsfbAfbLir copy;
    if (ZunRtcpPsfbAfbLirConstructCopy(&copy, &p) != nullptr) ZunRtcpPsfbAfbLirDestruct(&copy);
    ZunRtcpPsfbAfbLirDestruct(&p);
    ZunVector_ZunRtcpPsfbAfbLirEntryClear(&lir_.fci);
  });
}

TEST_F(LirTest, AssignmentsTakeEveryFieldAndKeepTheAllocatorOfTheList) {
  const Slot source(kRow, kReceived);
  ZunRtcpPsfbAfbLir copy;
  ASSERT_EQ(ZunRtcpPsfbAfbLirConstructCopy(&copy, &source.sp.psfb.afb.lir), &copy);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(&copy), ZunAllocatorGetSystem());
  ExpectGoldenEntries(copy);
  lir_.sender = 0;
  ASSERT_EQ(ZunRtcpPsfbAfbLirAssign(&lir_, &copy), &lir_);
  EXPECT_EQ(lir_.sender, kSender);
  EXPECT_EQ(lir_.source, kSource);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(&lir_), allocator_.get());
  ExpectGoldenEntries(lir_);
  ZunRtcpPsfbAfbLirDestruct(&copy);
}

TEST_F(LirTest, WritesInPlaceAndAsFarAsThereIsRoom) {
  AddGolden();
  Text out(allocator_);
  ASSERT_TRUE(kRow.write_packet(Sub(&lir_), out, 0));
  const std::size_t calls = allocator_.calls();
  ZunStringClear(out);
  ASSERT_TRUE(kRow.write_packet(Sub(&lir_), out, 1));
  EXPECT_EQ(allocator_.calls(), calls);
  EXPECT_EQ(out.str()[0], static_cast<char>(0xAF)) << "the padding bit";
  for (ZunSizeT room = 0; room < kSent.size(); ++room) {
    TestAllocator refusing;
    Text small(std::string(room, 'x'), refusing);
    ZunStringClear(small);
    const ZunSizeT filled = small->capacity - room;
    ASSERT_NE(ZunStringAppendN(small, filled, 'y'), nullptr);
    refusing.RefuseFrom(0);
    EXPECT_FALSE(kRow.write_packet(Sub(&lir_), small, 0));
    const bool ends_in_data = (room > 22 && room < 27) || (room > 36 && room < 40);
    const ZunSizeT expected = ends_in_data ? (room < 27 ? 22 : 36) : room;
    EXPECT_EQ(ToHex(small.str().substr(filled)), ToHex(kSent.substr(0, expected))) << room;
  }
}

}  // namespace
