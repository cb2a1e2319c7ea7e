#include "Zun/Rtp/Reports/ZunRtcpSdes.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpSdes);

const std::string kOneChunk = Hex(R"(
    81 CA 0003      | one chunk, type 202, 4 words
    01020304        | source
    01 05 616C696365    | CNAME "alice"
    00              | end of list, no padding
)");
const std::string kTwoChunks = Hex(R"(
    82 CA 000A      | two chunks, type 202, 11 words
    01020304        | source
    01 04 616C6963  | CNAME "alic"
    00 00           | end of list, one byte of padding
    11121314        | source
    01 03 626F62    | CNAME "bob"
    08 09 03 6162632D2D2D2D2D     | PRIV, kept as it is
    0F 00           | MID, empty
    06 01 00        | TOOL, a zero byte
    00 00 00        | end of list, two bytes of padding
)");

const ZunRtcpSdes& In(const Slot& slot) { return slot.sp.sdes; }

// "source: type=text; ..." of every chunk.
std::string Described(const ZunRtcpSdes& sdes) {
  std::string text;
  const ZunVector_ZunRtcpSdesChunk* const chunks = ZunRtcpSdesGetChunks(&sdes);
  for (const ZunRtcpSdesChunk* chunk = chunks->begin; chunk != chunks->end; ++chunk) {
    text += std::to_string(ZunRtcpSdesChunkGetSource(chunk)) + ":";
    const ZunVector_ZunRtcpSdesItem* const items = ZunRtcpSdesChunkGetItems(chunk);
    for (const ZunRtcpSdesItem* item = items->begin; item != items->end; ++item) {
      text += " " + std::to_string(ZunRtcpSdesItemGetType(item)) + "=" + Str(&item->text) + ";";
    }
    text += "\n";
  }
  return text;
}

// The wire form of a packet of `chunks`, which are whole words.
std::string Wire(int count, const std::string& chunks) {
  const std::size_t words = chunks.size() / 4;
  return std::string{static_cast<char>(0x80 | count), '\xCA', static_cast<char>(words >> 8),
                     static_cast<char>(words & 0xFF)} +
         chunks;
}

// An SDES that is built by hand and ends itself.
class Built {
 public:
  explicit Built(ZunAllocator* a = ZunAllocatorGetSystem()) {
    EXPECT_EQ(ZunRtcpSdesConstructDefault(&sp_.sdes, a), &sp_.sdes);
  }
  ~Built() { ZunRtcpSdesDestruct(&sp_.sdes); }
  Built(const Built&) = delete;
  Built& operator=(const Built&) = delete;

  // Chunks and items take `a`.
  void AddChunk(ZunRtpSourceId source, const std::vector<std::string>& names, ZunAllocator* a) {
    ZunRtcpSdesChunk chunk;
    ZunRtcpSdesChunkConstructDefault(&chunk, a);
    EXPECT_TRUE(ZunRtcpSdesChunkSetSource(&chunk, source));
    for (const std::string& name : names) {
      const Text text(name, a);
      ZunRtcpSdesItem item;
      EXPECT_NE(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_CNAME, text.get()), nullptr);
      EXPECT_TRUE(ZunVector_ZunRtcpSdesItemPushBack(&chunk.items, &item));
      ZunRtcpSdesItemDestruct(&item);
    }
    EXPECT_TRUE(ZunVector_ZunRtcpSdesChunkPushBack(&sp_.sdes.chunks, &chunk));
    ZunRtcpSdesChunkDestruct(&chunk);
  }
  ZunRtcpSdes* get() { return &sp_.sdes; }
  std::string bytes() const { return Bytes(kRow, sp_); }
  ZunRtcpSubpacket* sp() { return &sp_; }

 private:
  ZunRtcpSubpacket sp_;
};

void ExpectSkipped(LogCapture& log, int type) {
  log.ExpectOne(ZUN_LOGLEVEL_INFO, ZunLogRtcp_, "ZunRtcpSdesItemsAssignFromBuffer",
                "Skipping unsupported RTCP SDES item of type " + std::to_string(type));
}

TEST(Sdes, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpSdes sdes;
  ASSERT_EQ(ZunRtcpSdesConstructDefault(&sdes, allocator), &sdes);
  EXPECT_EQ(sdes.type, 202);
  EXPECT_TRUE(ZunVector_ZunRtcpSdesChunkEmpty(ZunRtcpSdesGetChunks(&sdes)));
  EXPECT_EQ(ZunRtcpSdesGetAllocator(&sdes), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(Sdes, ReadsChunksAndItems) {
  LogCapture log;
  const Slot slot(kRow, kTwoChunks);
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(Described(In(slot)),
            "16909060: 1=alic;\n"
            "286397204: 1=bob; 8=\x03"
            "abc-----; 15=; 6=" +
                std::string(1, '\0') + ";\n");
  log.ExpectNone();
  ExpectComesBackUnchanged(kOneChunk);
  ExpectComesBackUnchanged(kTwoChunks);
}

TEST(Sdes, IsReachedThroughTheCompoundPacket) {
  const Parsed parsed(kOneChunk);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 202);
  EXPECT_EQ(Described(*ZunRtcpSubpacketGetSdes(&parsed[0])), "16909060: 1=alice;\n");
}

TEST(Sdes, EveryListEndsWithOneToFourZeros) {
  for (std::size_t size = 0; size < 12; ++size) {
    Built built;
    built.AddChunk(7, {std::string(size, 'a')}, ZunAllocatorGetSystem());
    std::string chunk = Hex("00000007 01") + static_cast<char>(size) + std::string(size, 'a') + '\0';
    while (chunk.size() % 4 != 0) chunk += '\0';
    EXPECT_EQ(ToHex(built.bytes()), ToHex(Wire(1, chunk)));
    ExpectComesBackUnchanged(built.bytes());
  }
}

TEST(Sdes, WithoutChunksIsOneWord) {
  const Built built;
  EXPECT_EQ(ToHex(built.bytes()), "80CA0000");
}

TEST(Sdes, AChunkWithoutItemsHasFourZeros) {
  Built built;
  built.AddChunk(7, {}, ZunAllocatorGetSystem());
  EXPECT_EQ(ToHex(built.bytes()), "81CA00020000000700000000");
}

TEST(Sdes, ABodyWithoutChunksLeavesTheOldOnes) {
  Slot slot(kRow, kOneChunk);
  ASSERT_TRUE(slot.ok);
  EXPECT_TRUE(slot.Again(Hex("80CA0000")));
  EXPECT_EQ(Described(In(slot)), "16909060: 1=alice;\n");
  EXPECT_FALSE(slot.Again(Hex("80CA0001 00000000"))) << "bytes that no chunk accounts for";
  EXPECT_EQ(Described(In(slot)), "16909060: 1=alice;\n");
}

TEST(Sdes, UnsupportedItemsAreSkippedWithAMessage) {
  for (const int type : {16, 20, 255}) {
    LogCapture log;
    const Slot slot(kRow, Wire(1, Hex("00000007 0101 61") + static_cast<char>(type) + Hex("03 787878 0201 62 00")));
    ASSERT_TRUE(slot.ok);
    EXPECT_EQ(Described(In(slot)), "7: 1=a; 2=b;\n") << "the chunk keeps its other items";
    ExpectSkipped(log, type);
  }
}

TEST(Sdes, SupportedItemsAreKeptWithoutAMessage) {
  for (int type = 1; type <= 15; ++type) {
    LogCapture log;
    const std::string wire = Wire(1, Hex("00000007") + static_cast<char>(type) + Hex("01 61 00"));
    const Slot slot(kRow, wire);
    ASSERT_TRUE(slot.ok);
    EXPECT_EQ(Described(In(slot)), "7: " + std::to_string(type) + "=a;\n");
    EXPECT_EQ(slot.bytes(), wire);
    log.ExpectNone();
  }
}

TEST(Sdes, TheFirstEntryOfAChunkIsAnItemEvenOfTypeZero) {
  LogCapture log;
  const Slot empty(kRow, Wire(1, Hex("00000007 00000000")));
  ASSERT_TRUE(empty.ok);
  EXPECT_EQ(Described(In(empty)), "7:\n");
  ExpectSkipped(log, 0);
  // What its second byte announces is passed, and the list goes on behind it.
  const Slot filled(kRow, Wire(1, Hex("00000007 00 03 010161  0201 62 00 000000")));
  ASSERT_TRUE(filled.ok);
  EXPECT_EQ(Described(In(filled)), "7: 2=b;\n");
  ExpectSkipped(log, 0);
  // Behind the first entry it ends the list.
  const Slot ended(kRow, Wire(1, Hex("00000007 0101 61 00")));
  ASSERT_TRUE(ended.ok);
  EXPECT_EQ(Described(In(ended)), "7: 1=a;\n");
  log.ExpectNone();
}

TEST(Sdes, AListMustEndBeforeTheBodyDoes) {
  const Slot slot(kRow, Wire(1, Hex("00000007 0102 6161")));
  EXPECT_FALSE(slot.ok);
  EXPECT_EQ(Described(In(slot)), "");
  LogCapture log;
  EXPECT_FALSE(Slot(kRow, Wire(1, Hex("00000007 1402 6161"))).ok);
  log.ExpectNone();  // an item that does not fit is not even skipped
}

TEST(Sdes, PaddingIsPassedUnseen) {
  const Slot slot(kRow, Wire(1, Hex("00000007 0102 6161 00 FFFFFF")));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(Described(In(slot)), "7: 1=aa;\n");
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(Wire(1, Hex("00000007 0102 6161 00 000000")))) << "it is written as zeros";
}

TEST(Sdes, ChunksMustEndWhereTheBodyDoes) {
  const Slot trailing(kRow, Wire(1, Hex("00000007 0101 61 00  00000000")));
  EXPECT_FALSE(trailing.ok);
  EXPECT_EQ(Described(In(trailing)), "7: 1=a;\n") << "the chunks are kept";
  // A body of no whole words, which no header announces, ends within the padding.
  const std::string wire = Wire(1, Hex("00000007 0102 6161 00 0000"));
  const Slot cut(kRow, wire);
  EXPECT_FALSE(cut.ok);
  EXPECT_EQ(Described(In(cut)), "7: 1=aa;\n");
  const Slot missing(kRow, Wire(2, Hex("00000007 0101 61 00")));
  EXPECT_FALSE(missing.ok);
  EXPECT_EQ(Described(In(missing)), "7: 1=a;\n");
}

TEST(Sdes, EveryCut) {
  // Where the lists of the two chunks have ended. Padding is not read, so that of the last chunk may be missing from
  // the string as long as the body is said to go on.
  const ZunSizeT first_list_end = 11;
  const ZunSizeT second_list_end = kTwoChunks.size() - 4 - 2;
  ForEveryCut(kRow, kTwoChunks, [&](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    EXPECT_EQ(slot.ok, size >= second_list_end && end_is_beyond);
    const ZunSizeT chunks = size >= second_list_end ? 2 : size >= first_list_end ? 1 : 0;
    EXPECT_EQ(ZunVector_ZunRtcpSdesChunkSize(ZunRtcpSdesGetChunks(&In(slot))), chunks);
    if (chunks >= 1) {
      EXPECT_EQ(Described(In(slot)).substr(0, 18), "16909060: 1=alic;\n");
    }
  });
}

TEST(Sdes, AFailedReadLeavesOnlyTheChunksReadSoFar) {
  Slot slot(kRow, kTwoChunks);
  EXPECT_FALSE(slot.Again(Wire(2, Hex("00000007 0101 61 00  00000008 0109 62 00"))));
  EXPECT_EQ(Described(In(slot)), "7: 1=a;\n");
  EXPECT_FALSE(slot.Again(Wire(1, Hex("00000007"))));
  EXPECT_EQ(Described(In(slot)), "");
}

TEST(Sdes, ThirtyTwoChunksSetThePaddingBitAndSixtyFourTheVersion) {
  const auto first_byte_of = [](ZunRtpSourceId count) {
    Built built;
    for (ZunRtpSourceId i = 0; i < count; ++i) built.AddChunk(i, {}, ZunAllocatorGetSystem());
    EXPECT_EQ(built.bytes().size(), 4 + count * 8U);
    return ToHex(built.bytes().substr(0, 1));
  };
  EXPECT_EQ(first_byte_of(31), "9F");
  EXPECT_EQ(first_byte_of(32), "A0");
  EXPECT_EQ(first_byte_of(64), "C0");
  EXPECT_EQ(first_byte_of(257), "81") << "only the low 8 bits of the count are written";
}

TEST(Sdes, ATextThatIsTooLongIsWrittenWholeBehindTheLowBitsOfItsSize) {
  Built built;
  built.AddChunk(7, {std::string(300, 'a')}, ZunAllocatorGetSystem());
  const std::string bytes = built.bytes();  // which checks that it is as long as announced
  EXPECT_EQ(bytes.size(), 4 + 4 + 2 + 300 + 2U);
  EXPECT_EQ(ToHex(bytes.substr(8, 4)), "012C6161");
}

TEST(Sdes, TheTypeOfAnItemIsWrittenInItsLowBits) {
  Built built;
  built.AddChunk(7, {"a"}, ZunAllocatorGetSystem());
  built.get()->chunks.begin->items.begin->type = 0x12345602;
  EXPECT_EQ(ToHex(built.bytes().substr(8)), "02016100");
}

TEST(Sdes, SetChunksTakesAnyNumber) {
  TestAllocator allocator;
  Built from;
  for (ZunRtpSourceId i = 0; i < 40; ++i) from.AddChunk(i, {"name"}, ZunAllocatorGetSystem());
  Built to(allocator);
  EXPECT_TRUE(ZunRtcpSdesSetChunks(to.get(), ZunRtcpSdesGetChunks(from.get())));
  EXPECT_EQ(ZunRtcpSdesGetAllocator(to.get()), allocator.get());
  EXPECT_EQ(ToHex(to.bytes()), ToHex(from.bytes()));
  EXPECT_TRUE(ZunRtcpSdesSetChunks(to.get(), ZunRtcpSdesGetChunks(to.get())));
  EXPECT_EQ(ToHex(to.bytes()), ToHex(from.bytes()));
  allocator.RefuseFrom(0);
  from.AddChunk(41, {}, ZunAllocatorGetSystem());
  EXPECT_FALSE(ZunRtcpSdesSetChunks(to.get(), ZunRtcpSdesGetChunks(from.get())));
}

TEST(Sdes, WhatIsReadTakesTheAllocatorOfTheChunks) {
  TestAllocator mine;
  TestAllocator other;
  TestAllocator another;
  Built built(mine);
  built.AddChunk(1, {"from another allocator", "and one more"}, other);
  built.AddChunk(2, {"mine"}, mine);
  // A text with an allocator of its own in a list that may be used again.
  {
    const Text text("its own", another.get());
    ZunRtcpSdesItem item;
    ASSERT_NE(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_CNAME, text.get()), nullptr);
    ASSERT_TRUE(ZunVector_ZunRtcpSdesItemPushBack(&built.get()->chunks.begin[1].items, &item));
    ZunRtcpSdesItemDestruct(&item);
  }
  const Datagram datagram(kTwoChunks);
  ASSERT_TRUE(ZunRtcpSdesAssignFromBuffer(built.sp(), datagram, 4, datagram->size, 202, 2));
  EXPECT_EQ(ToHex(built.bytes()), ToHex(kTwoChunks));
  const ZunVector_ZunRtcpSdesChunk* const chunks = ZunRtcpSdesGetChunks(built.get());
  EXPECT_EQ(chunks->allocator, mine.get());
  for (const ZunRtcpSdesChunk* chunk = chunks->begin; chunk != chunks->end; ++chunk) {
    EXPECT_EQ(chunk->items.allocator, mine.get());
    for (const ZunRtcpSdesItem* item = chunk->items.begin; item != chunk->items.end; ++item) {
      EXPECT_EQ(item->text.allocator, mine.get());
    }
  }
  EXPECT_EQ(other.live_blocks(), 0U);
  EXPECT_EQ(another.live_blocks(), 0U);
}

TEST(Sdes, ACopyOfAChunkTakesItsAllocatorFromItsSource) {
  TestAllocator mine;
  TestAllocator other;
  Slot source(kRow, kTwoChunks, mine.get());
  ASSERT_TRUE(source.ok);
  EXPECT_EQ(source.allocator(), mine.get());
  const std::size_t blocks = mine.live_blocks();

  ZunRtcpSubpacket copy;
  ASSERT_EQ(kRow.construct_copy_allocator(&copy, &source.sp, mine), &copy);
  EXPECT_EQ(kRow.get_allocator(&copy), mine.get());
  EXPECT_EQ(Bytes(kRow, copy), kTwoChunks);
  EXPECT_EQ(mine.live_blocks(), 2 * blocks);
  kRow.destruct(&copy);
  kRow.destruct(&copy);

  ASSERT_EQ(kRow.construct_copy_allocator(&copy, &source.sp, other), &copy);
  EXPECT_EQ(kRow.get_allocator(&copy), other.get());
  EXPECT_EQ(Bytes(kRow, copy), kTwoChunks);
  EXPECT_EQ(other.live_blocks(), 1U) << "the list of chunks";
  EXPECT_EQ(mine.live_blocks(), 2 * blocks - 1) << "everything in it";
  kRow.destruct(&copy);

  Slot target(kRow, kOneChunk, other.get());
  ASSERT_EQ(kRow.assign(&target.sp, &source.sp), &target.sp);
  EXPECT_EQ(target.allocator(), other.get());
  EXPECT_EQ(target.bytes(), kTwoChunks);
  ASSERT_EQ(kRow.assign(&target.sp, &target.sp), &target.sp);
  EXPECT_EQ(target.bytes(), kTwoChunks);
}

TEST(Sdes, RefusalsLoseNothing) {
  ExpectRefusalsLoseNothing(kRow, kTwoChunks, kOneChunk);
  ExpectRefusalsLoseNothing(kRow, kOneChunk, kTwoChunks);
}

TEST(Sdes, ARefusedListKeepsTheChunksThatItHasRoomFor) {
  std::string chunks;
  for (int i = 0; i < 5; ++i) chunks += Hex("00000007 0100 0000");
  const Datagram datagram(Wire(5, chunks));
  for (const ZunSizeT room : {ZunSizeT{0}, ZunSizeT{2}, ZunSizeT{4}}) {
    TestAllocator cramped;
    // A list of two items is as large as one of two chunks.
    static_assert(sizeof(ZunRtcpSdesItem) == sizeof(ZunRtcpSdesChunk));
    cramped.RefuseAbove(room * sizeof(ZunRtcpSdesChunk));
    ZunRtcpSubpacket sp;
    EXPECT_FALSE(ZunRtcpSdesConstructFromBuffer(&sp, datagram, 4, datagram->size, 202, 5, cramped));
    EXPECT_EQ(ZunVector_ZunRtcpSdesChunkSize(ZunRtcpSdesGetChunks(&sp.sdes)), room);
    ZunRtcpSdesDestruct(&sp.sdes);
  }
}

TEST(Sdes, AChunkThatFindsNoRoomStillTellsWhichItemsAreSkipped) {
  const Datagram datagram(Wire(1, Hex("00000007 1401FF 00")));
  TestAllocator refusing;
  refusing.RefuseFrom(0);
  LogCapture log;
  ZunRtcpSubpacket sp;
  EXPECT_FALSE(ZunRtcpSdesConstructFromBuffer(&sp, datagram, 4, datagram->size, 202, 1, refusing));
  log.ExpectOne(ZUN_LOGLEVEL_INFO, ZunLogRtcp_, "ZunRtcpSdesItemsAssignFromBuffer",
                "Skipping unsupported RTCP SDES item of type 20");
  ZunRtcpSdesDestruct(&sp.sdes);
}

// Peers have always been sent what was left; only a failure in front of a text is reported.
TEST(Sdes, TextsAndZerosThatFindNoRoomAreLeftOutUnnoticed) {
  Built built;
  built.AddChunk(0x01020304, {"a text of twenty-one.", "more"}, ZunAllocatorGetSystem());
  const std::string whole = built.bytes();
  const auto expect = [&](ZunSizeT room, bool ok, const std::string& written) {
    SCOPED_TRACE(::testing::Message() << room << " bytes fit");
    TestAllocator refusing;
    Text out(std::string(64, 'x'), refusing.get());
    out->size = out->capacity - room;
    const std::string before = out.str();
    refusing.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpSdesWritePacket(built.sp(), out, 0) != 0, ok);
    EXPECT_EQ(ToHex(out.str()), ToHex(before + written));
  };
  for (ZunSizeT room = 0; room < 10; ++room) expect(room, false, whole.substr(0, room));
  // The first text has no room, so what follows moves up: type and length of the second, its text, the end.
  expect(10, false, whole.substr(0, 10));
  expect(11, false, whole.substr(0, 10) + Hex("01"));
  for (ZunSizeT room = 12; room < 16; ++room) {
    expect(room, true, whole.substr(0, 10) + Hex("0104") + std::string(room - 12, '\0'));
  }
  expect(16, true, whole.substr(0, 10) + Hex("0104") + "more");
  expect(18, true, whole.substr(0, 10) + Hex("0104") + "more" + std::string(2, '\0'));
  expect(whole.size() - 1, true, whole.substr(0, whole.size() - 1));
  expect(whole.size(), true, whole);
}

TEST(Sdes, InPlace) {
  const std::string other_names = Wire(2, Hex("00000007 0104 61616161 00 00  00000008 0101 62 00"));
  const std::string more_items = Wire(1, Hex("00000007 0101 61 0201 62 0301 63 0401 64 0501 65 0601 66 00 00"));
  const std::vector<std::string> wires = {kOneChunk, other_names, kTwoChunks, more_items};
  for (const std::string& first : wires) {
    for (const std::string& second : wires) {
      TestAllocator allocator;
      Slot used(kRow, first, allocator.get());
      ASSERT_TRUE(used.ok);
      ASSERT_TRUE(used.Again(second));
      EXPECT_EQ(Described(In(used)), Described(In(Slot(kRow, second))));
      EXPECT_EQ(ToHex(used.bytes()), ToHex(second));
      const std::size_t calls = allocator.calls();
      ASSERT_TRUE(used.Again(second));
      EXPECT_EQ(allocator.calls(), calls) << "the same again takes no allocator call";
    }
  }
  ExpectWritesInPlace(kRow, kTwoChunks);
}

TEST(Sdes, ReadingAgainUsesTheOldTexts) {
  TestAllocator allocator;
  Slot slot(kRow, Wire(1, Hex("00000007 0105 6161616161 00")), allocator.get());
  ASSERT_TRUE(slot.ok);
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(slot.Again(Wire(1, Hex("00000008 0205 6262626262 00"))));
  EXPECT_EQ(Described(In(slot)), "8: 2=bbbbb;\n");
  ASSERT_TRUE(slot.Again(Wire(1, Hex("00000009 0301 63 00"))));
  EXPECT_EQ(Described(In(slot)), "9: 3=c;\n");
  EXPECT_EQ(allocator.calls(), calls);
}

TEST(Sdes, AFreshReadAsksForTheChunksOnce) {
  std::string chunks;
  for (int i = 0; i < 10; ++i) chunks += Hex("00000007 0101 61 00");
  TestAllocator allocator;
  const Slot slot(kRow, Wire(10, chunks), allocator.get());
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(allocator.allocations(), 1 + 10 * 2U) << "a list of chunks; a list and a text for each";
  EXPECT_EQ(allocator.deallocations(), 0U);
}

}  // namespace
