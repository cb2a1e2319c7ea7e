#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbLir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Lir = TEST_OBJECT(ZunRtcpPsfbAfbLir);

const Row& kRow = kRowOf<ZunRtcpPsfbAfbLir>;

using Entry = ZunRtcpPsfbAfbLirEntry;

const std::string kNorvi = Hex("4E720005");
const std::string kReceived = Golden("LirThreeEntries");
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
std::string EntryWire(ZunUint8 seqno, const std::string& data) {
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

ZunSizeT EntryCount(const ZunRtcpPsfbAfbLir& p) {
  return ZunVector_ZunRtcpPsfbAfbLirEntrySize(ZunRtcpPsfbAfbLirGetFci(&p));
}

void ExpectGoldenEntries(const ZunRtcpPsfbAfbLir& p) {
  ASSERT_EQ(EntryCount(p), 3U);
  ExpectEntry(p.fci.begin[0], 0xAABBCCDD, 42, 96, "layer");
  ExpectEntry(p.fci.begin[1], 1, 255, 127, Hex("01020304"));
  ExpectEntry(p.fci.begin[2], 2, 0, 0, "");
}

// Adds an entry whose layer data takes the allocator of the list.
void Add(ZunRtcpPsfbAfbLir* p, ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 pt, const std::string& data) {
  const Text layer_data(data, p->fci.allocator);
  Entry entry;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, ssrc, seqno, pt, layer_data.get(), nullptr), &entry);
  ASSERT_TRUE(ZunVector_ZunRtcpPsfbAfbLirEntryPushBack(ZunRtcpPsfbAfbLirGetFci(p), &entry));
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
}

void AddGolden(ZunRtcpPsfbAfbLir* p) {
  Add(p, 0xAABBCCDD, 42, 96, "layer");
  Add(p, 1, 255, 127, Hex("01020304"));
  Add(p, 2, 0, 0, "");
}

TEST(ZunRtcpPsfbAfbLir, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpPsfbAfbLir p;
  ASSERT_EQ(ZunRtcpPsfbAfbLirConstructDefault(&p, allocator), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 5);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetFci(&p), &p.fci);
  EXPECT_EQ(EntryCount(p), 0U);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(&p), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbAfbLir, ReadsGoldenBytes) {
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

TEST(ZunRtcpPsfbAfbLir, WritesGoldenBytesWithoutTheLengthsThatItsReaderNeeds) {
  Lir lir;
  SetSsrcs(lir);
  AddGolden(lir);
  Text out;
  ASSERT_TRUE(kRow.write_packet(lir.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(kSent));
}

TEST(ZunRtcpPsfbAfbLir, HeaderAlwaysAnnouncesTwentyFourOctets) {
  Lir lir;
  for (const std::size_t size : std::initializer_list<std::size_t>{0, 1, 100, 1000}) {
    ZunVector_ZunRtcpPsfbAfbLirEntryClear(&lir->fci);
    Add(lir, 1, 2, 3, std::string(size, 'x'));
    Text out;
    ASSERT_TRUE(kRow.write_packet(lir.sp(), out, 0));
    EXPECT_EQ(ToHex(out.str().substr(0, 4)), "8FCE0005");
    EXPECT_EQ(out->size, 16 + 6 + (size + 3) / 4 * 4);
  }
}

TEST(ZunRtcpPsfbAfbLir, LengthCountsTheFieldThatTheWriterLeavesOut) {
  Lir lir;
  EXPECT_EQ(kRow.get_packet_length(lir.sp()), 16U);
  Add(lir, 1, 2, 3, "layer");
  EXPECT_EQ(kRow.get_packet_length(lir.sp()), 32U);
  Add(lir, 1, 2, 3, "");
  EXPECT_EQ(kRow.get_packet_length(lir.sp()), 40U);
  Add(lir, 1, 2, 3, "1234");
  EXPECT_EQ(kRow.get_packet_length(lir.sp()), 52U);
}

TEST(ZunRtcpPsfbAfbLir, WhatIsWrittenIsNotReadAsItWas) {
  Lir lir;
  AddGolden(lir);
  Text out;
  ASSERT_TRUE(kRow.write_packet(lir.sp(), out, 0));
  EXPECT_FALSE(Received(kRow, out.str()).ok);
}

TEST(ZunRtcpPsfbAfbLir, WritingNoEntriesFailsAfterTheHead) {
  Lir lir;
  SetSsrcs(lir);
  LogCapture log;
  Text out;
  EXPECT_FALSE(kRow.write_packet(lir.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(Hex("8FCE0005 01020304 11121314 4E720005")));
  log.ExpectNone();
}

TEST(ZunRtcpPsfbAfbLir, ReadingNoEntriesFailsAndKeepsTheOldOnes) {
  TestAllocator allocator;
  Lir lir(allocator);
  AddGolden(lir);
  EXPECT_FALSE(lir.Read(Afb(kNorvi), {.buffer_allocator = allocator}));
  ExpectGoldenEntries(*lir.get());
  EXPECT_FALSE(lir.Read(Afb("LNTF"), {.buffer_allocator = allocator}));
  ExpectGoldenEntries(*lir.get());
}

TEST(ZunRtcpPsfbAfbLir, PayloadTypeHasSevenBitsOnTheWire) {
  std::string wire = Afb(kNorvi + EntryWire(1, "ab") + EntryWire(2, "cd"));
  wire[16 + 12 + 5] = static_cast<char>(0x80);
  const Received received(kRow, wire);
  EXPECT_FALSE(received.ok);
  ASSERT_EQ(EntryCount(received.sp()->psfb.afb.lir), 1U) << "the entry in front is kept";
  ExpectEntry(received.sp()->psfb.afb.lir.fci.begin[0], 0xAABBCCDD, 1, 96, "ab");
}

TEST(ZunRtcpPsfbAfbLir, EntryConstructorRefusesAPayloadTypeThatTheSetterTakes) {
  TestAllocator allocator;
  const Text data("abc", allocator);
  Entry entry;
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 128, data.get(), allocator), nullptr);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 255, data.get(), allocator), nullptr);
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 127, data.get(), allocator), &entry);
  ExpectEntry(entry, 1, 2, 127, "abc");
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetPayloadType(&entry, 128));
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryGetPayloadType(&entry), 128);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
}

TEST(ZunRtcpPsfbAfbLir, EntryConstructorTakesTheAllocatorOfTheDataAndNotItsOwn) {
  TestAllocator allocator;
  TestAllocator given;
  const Text data("abc", allocator);
  Entry entry;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 3, data.get(), given), &entry);
  EXPECT_EQ(entry.layerData.allocator, allocator.get());
  EXPECT_EQ(given.calls(), 0U);
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 1, 2, 3, data.get(), given), nullptr);
}

TEST(ZunRtcpPsfbAfbLir, EntrySettersTakeAnyValue) {
  TestAllocator allocator;
  Lir lir(allocator);
  Add(lir, 1, 2, 3, "abc");
  Entry& entry = lir->fci.begin[0];
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetSsrc(&entry, 0xFFFFFFFF));
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetSequenceNumber(&entry, 255));
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetPayloadType(&entry, 255));
  EXPECT_TRUE(ZunRtcpPsfbAfbLirEntrySetLayerData(&entry, Text(std::string(70000, 'x')).get()));
  ExpectEntry(entry, 0xFFFFFFFF, 255, 255, std::string(70000, 'x'));
  EXPECT_EQ(entry.layerData.allocator, allocator.get());
  allocator.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpPsfbAfbLirEntrySetLayerData(&entry, Text(std::string(70001, 'y')).get()));
  ExpectEntry(entry, 0xFFFFFFFF, 255, 255, std::string(70000, 'x'));
}

TEST(ZunRtcpPsfbAfbLir, EntriesAreCopiedWithTheirAllocator) {
  TestAllocator allocator;
  Lir lir(allocator);
  Add(lir, 1, 2, 3, "abc");
  TestAllocator other;
  const Text data("a longer text", other);
  Entry entry;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructFull(&entry, 4, 5, 6, data.get(), nullptr), &entry);
  Entry copy;
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryConstructCopy(&copy, &entry), &copy);
  EXPECT_EQ(copy.layerData.allocator, other.get());
  ExpectEntry(copy, 4, 5, 6, "a longer text");
  ZunRtcpPsfbAfbLirEntryDestruct(&copy);
  Entry& mine = lir->fci.begin[0];
  ASSERT_EQ(ZunRtcpPsfbAfbLirEntryAssign(&mine, &entry), &mine);
  EXPECT_EQ(mine.layerData.allocator, allocator.get());
  ExpectEntry(mine, 4, 5, 6, "a longer text");
  other.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbLirEntryConstructCopy(&copy, &entry), nullptr);
  allocator.RefuseFrom(0);
  ASSERT_TRUE(ZunRtcpPsfbAfbLirEntrySetLayerData(&mine, Text("short").get()));
  EXPECT_NE(ZunRtcpPsfbAfbLirEntryAssign(&mine, &entry), nullptr) << "there is room for it";
  ZunRtcpPsfbAfbLirEntryDestruct(&entry);
}

TEST(ZunRtcpPsfbAfbLir, CutAnywhereKeepsTheWholeEntries) {
  ForEveryCut(kRow, kReceived, [](const Received& received, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbAfbLir& p = received.sp()->psfb.afb.lir;
    EXPECT_EQ(received.ok, (size == 28 || size == 40) && !end_is_beyond);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    // The padding must lie before the end, but as nobody looks at it, it need not be in the string.
    const ZunSizeT first_end = end_is_beyond ? 25 : 28;
    const ZunSizeT count = ZunSizeT{size >= first_end} + ZunSizeT{size >= 40};
    EXPECT_EQ(EntryCount(p), count);
    if (count > 0) ExpectEntry(p.fci.begin[0], 0xAABBCCDD, 42, 96, "layer");
  });
}

TEST(ZunRtcpPsfbAfbLir, ALengthBeyondTheMessageFails) {
  for (const int length : {6, 8, 9, 255}) {
    std::string wire = Afb(kNorvi + EntryWire(1, "layer"));
    wire[23] = static_cast<char>(length);
    EXPECT_EQ(Received(kRow, wire).ok, length <= 8) << length;
  }
  std::string wire = Afb(kNorvi + EntryWire(1, "layer"));
  wire[22] = static_cast<char>(0xFF);
  wire[23] = static_cast<char>(0xFF);
  EXPECT_FALSE(Received(kRow, wire).ok) << "the padded length does not wrap";
}

TEST(ZunRtcpPsfbAfbLir, TheLargestLayerDataIsRead) {
  const std::string data(65532, 'z');
  const Received received(kRow, Afb(kNorvi + EntryWire(7, data)));
  ASSERT_TRUE(received.ok);
  ExpectEntry(received.sp()->psfb.afb.lir.fci.begin[0], 0xAABBCCDD, 7, 96, data);
}

TEST(ZunRtcpPsfbAfbLir, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kReceived;
  wire[15] = 9;
  const Received received(kRow, wire);
  EXPECT_TRUE(received.ok);
  EXPECT_EQ(received.sp()->psfb.afb.lir.afbType, 5);
  wire[12] = 'n';
  EXPECT_FALSE(Received(kRow, wire).ok);
}

TEST(ZunRtcpPsfbAfbLir, ReadLayerDataTakesTheAllocatorOfTheBuffer) {
  TestAllocator allocator;
  Lir lir(allocator);
  TestAllocator of_buffer;
  ASSERT_TRUE(lir.Read(kReceived, {.buffer_allocator = of_buffer}));
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(lir), allocator.get());
  for (const Entry* x = lir->fci.begin; x != lir->fci.end; ++x) EXPECT_EQ(x->layerData.allocator, of_buffer.get());
  EXPECT_EQ(of_buffer.live_blocks(), 2U) << "an empty text owns nothing";
  EXPECT_EQ(allocator.live_blocks(), 1U);
  EXPECT_EQ(allocator.calls(), 1U) << "the list is reserved once";
  ZunVector_ZunRtcpPsfbAfbLirEntryClear(&lir->fci);
}

TEST(ZunRtcpPsfbAfbLir, EntriesOfAnotherAllocatorAreReplacedInPlace) {
  TestAllocator allocator;
  Lir lir(allocator);
  TestAllocator of_buffer;
  AddGolden(lir);
  ASSERT_TRUE(lir.Read(kReceived, {.buffer_allocator = of_buffer}));
  ExpectGoldenEntries(*lir.get());
  for (const Entry* x = lir->fci.begin; x != lir->fci.end; ++x) EXPECT_EQ(x->layerData.allocator, of_buffer.get());
  EXPECT_EQ(allocator.live_blocks(), 1U) << "the old texts gave their storage back";
  ASSERT_TRUE(lir.Read(kReceived, {.buffer_allocator = allocator}));
  ExpectGoldenEntries(*lir.get());
  EXPECT_EQ(of_buffer.live_blocks(), 0U);
}

TEST(ZunRtcpPsfbAfbLir, AFullListIsReadOverWithoutAnAllocation) {
  TestAllocator allocator;
  Lir lir(allocator);
  const std::string wire = Afb(kNorvi + EntryWire(1, "a") + EntryWire(2, "b"));
  ASSERT_TRUE(lir.Read(wire, {.buffer_allocator = allocator}));
  ASSERT_EQ(ZunVector_ZunRtcpPsfbAfbLirEntryCapacity(&lir->fci), 2U) << "the list must be full";
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(lir.Read(wire, {.buffer_allocator = allocator}));
  EXPECT_EQ(allocator.calls(), calls);
}

TEST(ZunRtcpPsfbAfbLir, ReadsInPlaceAsFresh) {
  const std::string wires[] = {kReceived, Afb(kNorvi + EntryWire(1, "a")),
                               Afb(kNorvi + EntryWire(2, "") + EntryWire(3, "")),
                               Afb(kNorvi + EntryWire(4, std::string(300, 'x')) + EntryWire(5, "5") +
                                   EntryWire(6, "6") + EntryWire(7, "7") + EntryWire(8, "8"))};
  for (const std::string& first : wires) {
    for (const std::string& second : wires) {
      Received used(kRow, first);
      ASSERT_TRUE(used.Read(second));
      const Received fresh(kRow, second);
      const ZunRtcpPsfbAfbLir& expected = fresh.sp()->psfb.afb.lir;
      ASSERT_EQ(EntryCount(used.sp()->psfb.afb.lir), EntryCount(expected));
      for (ZunSizeT n = 0; n < EntryCount(expected); ++n) {
        const Entry& x = expected.fci.begin[n];
        ExpectEntry(used.sp()->psfb.afb.lir.fci.begin[n], x.ssrc, x.seqno, x.payloadType, Str(&x.layerData));
      }
    }
  }
}

TEST(ZunRtcpPsfbAfbLir, AFailedReadInPlaceKeepsOnlyTheNewEntries) {
  TestAllocator allocator;
  Lir lir(allocator);
  AddGolden(lir);
  EXPECT_FALSE(lir.Read(Afb(kNorvi + EntryWire(1, "new")) + "more", {.buffer_allocator = allocator}));
  ASSERT_EQ(EntryCount(*lir.get()), 1U);
  ExpectEntry(lir->fci.begin[0], 0xAABBCCDD, 1, 96, "new");
}

TEST(ZunRtcpPsfbAfbLir, RefusedReadsLoseNothing) {
  for (const std::string& before : {std::string(), Afb(kNorvi + EntryWire(1, "x")), kReceived}) {
    const std::size_t allocations = ForEveryRefusal([&](TestAllocator& refusing) {
      const Reading with_the_same = {.buffer_allocator = refusing};
      Lir lir(refusing);
      if (!before.empty()) lir.Read(before, with_the_same);
      if (lir.Read(kReceived, with_the_same)) {
        ExpectGoldenEntries(*lir.get());
      } else {
        EXPECT_GT(refusing.refused(), 0U);
        EXPECT_LT(EntryCount(*lir.get()), 3U);
      }
      refusing.RefuseNothing();
      EXPECT_TRUE(lir.Read(kReceived, with_the_same)) << "an object that a refusal left cannot be used again";
      ExpectGoldenEntries(*lir.get());
    });
    EXPECT_GT(allocations, 0U);
  }
}

TEST(ZunRtcpPsfbAfbLir, EntriesOfACopyKeepTheAllocatorsOfTheirSources) {
  TestAllocator mine;
  TestAllocator other;
  const Received source(kRow, kReceived, mine, {.buffer_allocator = mine});
  ZunRtcpSubpacket copy;
  ASSERT_EQ(kRow.construct_copy_allocator(&copy, source.sp(), other), &copy);
  const ZunRtcpPsfbAfbLir& lir = copy.psfb.afb.lir;
  ExpectGoldenEntries(lir);
  for (const Entry* x = lir.fci.begin; x != lir.fci.end; ++x) EXPECT_EQ(x->layerData.allocator, mine.get());
  EXPECT_EQ(other.calls(), 1U) << "the list";
  kRow.destruct(&copy);
}

TEST(ZunRtcpPsfbAfbLir, AssignmentsTakeEveryFieldAndKeepTheAllocatorOfTheList) {
  TestAllocator allocator;
  Lir lir(allocator);
  SetSsrcs(lir);
  const Received source(kRow, kReceived);
  ZunRtcpPsfbAfbLir copy;
  ASSERT_EQ(ZunRtcpPsfbAfbLirConstructCopy(&copy, &source.sp()->psfb.afb.lir), &copy);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(&copy), ZunAllocatorGetSystem());
  ExpectGoldenEntries(copy);
  lir->sender = 0;
  ASSERT_EQ(ZunRtcpPsfbAfbLirAssign(lir, &copy), lir);
  EXPECT_EQ(lir->sender, kSender);
  EXPECT_EQ(lir->source, kSource);
  EXPECT_EQ(ZunRtcpPsfbAfbLirGetAllocator(lir), allocator.get());
  ExpectGoldenEntries(*lir.get());
  ZunRtcpPsfbAfbLirDestruct(&copy);
}

}  // namespace
