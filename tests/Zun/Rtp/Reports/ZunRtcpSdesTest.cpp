#include "Zun/Rtp/Reports/ZunRtcpSdes.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

const Row& kRow = kRowOf<ZunRtcpSdes>;

const ZunRtcpSdes& In(const Received& received) { return received.sp()->sdes; }

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

std::string Wire(int count, const std::string& chunks) { return Subpacket(202, count, chunks); }

using Sdes = TEST_OBJECT(ZunRtcpSdes);

// Chunk and items take `a`.
void AddChunk(ZunRtcpSdes* sdes, ZunRtpSourceId source, const std::vector<std::string>& names,
              ZunAllocator* a = ZunAllocatorGetSystem()) {
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
  EXPECT_TRUE(ZunVector_ZunRtcpSdesChunkPushBack(&sdes->chunks, &chunk));
  ZunRtcpSdesChunkDestruct(&chunk);
}

void ExpectSkipped(LogCapture& log, int type) {
  log.ExpectOne(ZUN_LOGLEVEL_INFO, ZunLogRtcp_, "ZunRtcpSdesItemsAssignFromBuffer",
                "Skipping unsupported RTCP SDES item of type " + std::to_string(type));
}

TEST(ZunRtcpSdes, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpSdes sdes;
  ASSERT_EQ(ZunRtcpSdesConstructDefault(&sdes, allocator), &sdes);
  EXPECT_EQ(sdes.type, 202);
  EXPECT_TRUE(ZunVector_ZunRtcpSdesChunkEmpty(ZunRtcpSdesGetChunks(&sdes)));
  EXPECT_EQ(ZunRtcpSdesGetAllocator(&sdes), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpSdes, ReadsChunksAndItems) {
  LogCapture log;
  const Received received(kRow, Golden("SdesTwoChunks"));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(Described(In(received)),
            "16909060: 1=alic;\n"
            "286397204: 1=bob; 8=\x03"
            "abc-----; 15=; 6=" +
                std::string(1, '\0') + ";\n");
  log.ExpectNone();
}

TEST(ZunRtcpSdes, IsReachedThroughTheCompoundPacket) {
  const Parsed parsed(Golden("SdesOneChunk"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 202);
  EXPECT_EQ(Described(*ZunRtcpSubpacketGetSdes(&parsed[0])), "16909060: 1=alice;\n");
}

TEST(ZunRtcpSdes, EveryListEndsWithOneToFourZeros) {
  for (std::size_t size = 0; size < 12; ++size) {
    Sdes built;
    AddChunk(built, 7, {std::string(size, 'a')});
    std::string chunk = Hex("00000007 01") + static_cast<char>(size) + std::string(size, 'a') + '\0';
    while (chunk.size() % 4 != 0) chunk += '\0';
    EXPECT_EQ(ToHex(built.bytes()), ToHex(Wire(1, chunk)));
    EXPECT_EQ(ToHex(Parsed(built.bytes()).bytes()), ToHex(built.bytes()));
  }
}

TEST(ZunRtcpSdes, WithoutChunksIsOneWord) {
  const Sdes built;
  EXPECT_EQ(ToHex(built.bytes()), "80CA0000");
}

TEST(ZunRtcpSdes, AChunkWithoutItemsHasFourZeros) {
  Sdes built;
  AddChunk(built, 7, {});
  EXPECT_EQ(ToHex(built.bytes()), "81CA00020000000700000000");
}

TEST(ZunRtcpSdes, ABodyWithoutChunksLeavesTheOldOnes) {
  Received received(kRow, Golden("SdesOneChunk"));
  ASSERT_TRUE(received.ok);
  EXPECT_TRUE(received.Read(Hex("80CA0000")));
  EXPECT_EQ(Described(In(received)), "16909060: 1=alice;\n");
  EXPECT_FALSE(received.Read(Hex("80CA0001 00000000"))) << "bytes that no chunk accounts for";
  EXPECT_EQ(Described(In(received)), "16909060: 1=alice;\n");
}

TEST(ZunRtcpSdes, UnsupportedItemsAreSkippedWithAMessage) {
  for (const int type : {16, 20, 255}) {
    LogCapture log;
    const Received received(kRow,
                            Wire(1, Hex("00000007 0101 61") + static_cast<char>(type) + Hex("03 787878 0201 62 00")));
    ASSERT_TRUE(received.ok);
    EXPECT_EQ(Described(In(received)), "7: 1=a; 2=b;\n") << "the chunk keeps its other items";
    ExpectSkipped(log, type);
  }
}

TEST(ZunRtcpSdes, SupportedItemsAreKeptWithoutAMessage) {
  for (int type = 1; type <= 15; ++type) {
    LogCapture log;
    const std::string wire = Wire(1, Hex("00000007") + static_cast<char>(type) + Hex("01 61 00"));
    const Received received(kRow, wire);
    ASSERT_TRUE(received.ok);
    EXPECT_EQ(Described(In(received)), "7: " + std::to_string(type) + "=a;\n");
    EXPECT_EQ(received.bytes(), wire);
    log.ExpectNone();
  }
}

TEST(ZunRtcpSdes, TheFirstEntryOfAChunkIsAnItemEvenOfTypeZero) {
  LogCapture log;
  const Received empty(kRow, Wire(1, Hex("00000007 00000000")));
  ASSERT_TRUE(empty.ok);
  EXPECT_EQ(Described(In(empty)), "7:\n");
  ExpectSkipped(log, 0);
  // What its second byte announces is passed, and the list goes on after it.
  const Received filled(kRow, Wire(1, Hex("00000007 00 03 010161  0201 62 00 000000")));
  ASSERT_TRUE(filled.ok);
  EXPECT_EQ(Described(In(filled)), "7: 2=b;\n");
  ExpectSkipped(log, 0);
  // After the first entry it ends the list.
  const Received ended(kRow, Wire(1, Hex("00000007 0101 61 00")));
  ASSERT_TRUE(ended.ok);
  EXPECT_EQ(Described(In(ended)), "7: 1=a;\n");
  log.ExpectNone();
}

TEST(ZunRtcpSdes, AListMustEndBeforeTheBodyDoes) {
  const Received received(kRow, Wire(1, Hex("00000007 0102 6161")));
  EXPECT_FALSE(received.ok);
  EXPECT_EQ(Described(In(received)), "");
  LogCapture log;
  EXPECT_FALSE(Received(kRow, Wire(1, Hex("00000007 1402 6161"))).ok);
  log.ExpectNone();  // an item that does not fit is not even skipped
}

TEST(ZunRtcpSdes, PaddingIsPassedUnseen) {
  const Received received(kRow, Wire(1, Hex("00000007 0102 6161 00 FFFFFF")));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(Described(In(received)), "7: 1=aa;\n");
  EXPECT_EQ(ToHex(received.bytes()), ToHex(Wire(1, Hex("00000007 0102 6161 00 000000")))) << "it is written as zeros";
}

TEST(ZunRtcpSdes, ChunksMustEndWhereTheBodyDoes) {
  const Received trailing(kRow, Wire(1, Hex("00000007 0101 61 00  00000000")));
  EXPECT_FALSE(trailing.ok);
  EXPECT_EQ(Described(In(trailing)), "7: 1=a;\n") << "the chunks are kept";
  // A body of no whole words, which no header announces, ends within the padding.
  const std::string whole = Wire(1, Hex("00000007 0102 6161 00 000000"));
  const std::string wire = whole.substr(0, whole.size() - 1);
  const Received cut(kRow, wire);
  EXPECT_FALSE(cut.ok);
  EXPECT_EQ(Described(In(cut)), "7: 1=aa;\n");
  const Received missing(kRow, Wire(2, Hex("00000007 0101 61 00")));
  EXPECT_FALSE(missing.ok);
  EXPECT_EQ(Described(In(missing)), "7: 1=a;\n");
}

TEST(ZunRtcpSdes, EveryCut) {
  // Where the lists of the two chunks have ended. Padding is not read, so that of the last chunk may be missing from
  // the string as long as the body is said to go on.
  const ZunSizeT first_list_end = 11;
  const ZunSizeT second_list_end = Golden("SdesTwoChunks").size() - 4 - 2;
  ForEveryCut(kRow, Golden("SdesTwoChunks"), [&](const Received& received, ZunSizeT size, bool end_is_beyond) {
    EXPECT_EQ(received.ok, size >= second_list_end && end_is_beyond);
    const ZunSizeT chunks = size >= second_list_end ? 2 : size >= first_list_end ? 1 : 0;
    EXPECT_EQ(ZunVector_ZunRtcpSdesChunkSize(ZunRtcpSdesGetChunks(&In(received))), chunks);
    if (chunks >= 1) {
      EXPECT_EQ(Described(In(received)).substr(0, 18), "16909060: 1=alic;\n");
    }
  });
}

TEST(ZunRtcpSdes, AFailedReadLeavesOnlyTheChunksReadSoFar) {
  Received received(kRow, Golden("SdesTwoChunks"));
  EXPECT_FALSE(received.Read(Wire(2, Hex("00000007 0101 61 00  00000008 0109 62 00"))));
  EXPECT_EQ(Described(In(received)), "7: 1=a;\n");
  EXPECT_FALSE(received.Read(Wire(1, Hex("00000007"))));
  EXPECT_EQ(Described(In(received)), "");
}

TEST(ZunRtcpSdes, ThirtyTwoChunksSetThePaddingBitAndSixtyFourTheVersion) {
  const auto first_byte_of = [](ZunRtpSourceId count) {
    Sdes built;
    for (ZunRtpSourceId i = 0; i < count; ++i) AddChunk(built, i, {});
    EXPECT_EQ(built.bytes().size(), 4 + count * 8U);
    return ToHex(built.bytes().substr(0, 1));
  };
  EXPECT_EQ(first_byte_of(31), "9F");
  EXPECT_EQ(first_byte_of(32), "A0");
  EXPECT_EQ(first_byte_of(64), "C0");
  EXPECT_EQ(first_byte_of(257), "81") << "only the low 8 bits of the count are written";
}

TEST(ZunRtcpSdes, ATextThatIsTooLongIsWrittenWholeAfterTheLowBitsOfItsSize) {
  Sdes built;
  AddChunk(built, 7, {std::string(300, 'a')});
  const std::string bytes = built.bytes();  // which checks that it is as long as announced
  EXPECT_EQ(bytes.size(), 4 + 4 + 2 + 300 + 2U);
  EXPECT_EQ(ToHex(bytes.substr(8, 4)), "012C6161");
}

TEST(ZunRtcpSdes, TextsOfEveryLengthAreWrittenIntoWhatHasRoom) {
  Text out(std::string(2000, 'x'));
  for (std::size_t size = 0; size <= 300; ++size) {
    Sdes built;
    AddChunk(built, 7, {std::string(size, 'a'), "bc"});
    AddChunk(built, 8, {"d"});
    ZunStringClear(out);
    ASSERT_TRUE(kRow.write_packet(built.sp(), out, 0));
    EXPECT_EQ(ToHex(out.str()), ToHex(built.bytes())) << size;  // those are written into what must grow
  }
}

TEST(ZunRtcpSdes, TheTypeOfAnItemIsWrittenInItsLowBits) {
  Sdes built;
  AddChunk(built, 7, {"a"});
  built.get()->chunks.begin->items.begin->type = 0x12345602;
  EXPECT_EQ(ToHex(built.bytes().substr(8)), "02016100");
  Text out(std::string(100, 'x'));
  ZunStringClear(out);
  ASSERT_TRUE(kRow.write_packet(built.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str().substr(8)), "02016100");
}

TEST(ZunRtcpSdes, SetChunksTakesAnyNumber) {
  TestAllocator allocator;
  Sdes from;
  for (ZunRtpSourceId i = 0; i < 40; ++i) AddChunk(from, i, {"name"});
  Sdes to(allocator);
  EXPECT_TRUE(ZunRtcpSdesSetChunks(to.get(), ZunRtcpSdesGetChunks(from.get())));
  EXPECT_EQ(ZunRtcpSdesGetAllocator(to.get()), allocator.get());
  EXPECT_EQ(ToHex(to.bytes()), ToHex(from.bytes()));
  EXPECT_TRUE(ZunRtcpSdesSetChunks(to.get(), ZunRtcpSdesGetChunks(to.get())));
  EXPECT_EQ(ToHex(to.bytes()), ToHex(from.bytes()));
  allocator.RefuseFrom(0);
  AddChunk(from, 41, {});
  EXPECT_FALSE(ZunRtcpSdesSetChunks(to.get(), ZunRtcpSdesGetChunks(from.get())));
}

TEST(ZunRtcpSdes, WhatIsReadTakesTheAllocatorOfTheChunks) {
  TestAllocator mine;
  TestAllocator other;
  TestAllocator another;
  Sdes built(mine);
  AddChunk(built, 1, {"from another allocator", "and one more"}, other);
  AddChunk(built, 2, {"mine"}, mine);
  // A text with an allocator of its own in a list that may be used again.
  {
    const Text text("its own", another.get());
    ZunRtcpSdesItem item;
    ASSERT_NE(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_CNAME, text.get()), nullptr);
    ASSERT_TRUE(ZunVector_ZunRtcpSdesItemPushBack(&built.get()->chunks.begin[1].items, &item));
    ZunRtcpSdesItemDestruct(&item);
  }
  const Datagram datagram(Golden("SdesTwoChunks"));
  ASSERT_TRUE(ZunRtcpSdesAssignFromBuffer(built.sp(), datagram, 4, datagram->size, 202, 2));
  EXPECT_EQ(ToHex(built.bytes()), ToHex(Golden("SdesTwoChunks")));
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

TEST(ZunRtcpSdes, ACopyOfAChunkTakesItsAllocatorFromItsSource) {
  TestAllocator mine;
  TestAllocator other;
  Received source(kRow, Golden("SdesTwoChunks"), mine.get());
  ASSERT_TRUE(source.ok);
  EXPECT_EQ(source.allocator(), mine.get());
  const std::size_t blocks = mine.live_blocks();

  ZunRtcpSubpacket copy;
  ASSERT_EQ(kRow.construct_copy_allocator(&copy, source.sp(), mine), &copy);
  EXPECT_EQ(kRow.get_allocator(&copy), mine.get());
  EXPECT_EQ(Bytes(kRow, copy), Golden("SdesTwoChunks"));
  EXPECT_EQ(mine.live_blocks(), 2 * blocks);
  kRow.destruct(&copy);
  kRow.destruct(&copy);

  ASSERT_EQ(kRow.construct_copy_allocator(&copy, source.sp(), other), &copy);
  EXPECT_EQ(kRow.get_allocator(&copy), other.get());
  EXPECT_EQ(Bytes(kRow, copy), Golden("SdesTwoChunks"));
  EXPECT_EQ(other.live_blocks(), 1U) << "the list of chunks";
  EXPECT_EQ(mine.live_blocks(), 2 * blocks - 1) << "everything in it";
  kRow.destruct(&copy);

  Received target(kRow, Golden("SdesOneChunk"), other.get());
  ASSERT_EQ(kRow.assign(target.sp(), source.sp()), target.sp());
  EXPECT_EQ(target.allocator(), other.get());
  EXPECT_EQ(target.bytes(), Golden("SdesTwoChunks"));
  ASSERT_EQ(kRow.assign(target.sp(), target.sp()), target.sp());
  EXPECT_EQ(target.bytes(), Golden("SdesTwoChunks"));
}

TEST(ZunRtcpSdes, ARefusedListKeepsTheChunksThatItHasRoomFor) {
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

TEST(ZunRtcpSdes, AChunkThatFindsNoRoomStillTellsWhichItemsAreSkipped) {
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
TEST(ZunRtcpSdes, TextsAndZerosThatFindNoRoomAreLeftOutUnnoticed) {
  Sdes built;
  AddChunk(built, 0x01020304, {"a text of twenty-one.", "more"});
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

TEST(ZunRtcpSdes, InPlace) {
  const std::string other_names = Wire(2, Hex("00000007 0104 61616161 00 00  00000008 0101 62 00"));
  const std::string more_items = Wire(1, Hex("00000007 0101 61 0201 62 0301 63 0401 64 0501 65 0601 66 00 00"));
  const std::vector<std::string> wires = {Golden("SdesOneChunk"), other_names, Golden("SdesTwoChunks"), more_items};
  for (const std::string& first : wires) {
    for (const std::string& second : wires) {
      TestAllocator allocator;
      Received used(kRow, first, allocator.get());
      ASSERT_TRUE(used.ok);
      ASSERT_TRUE(used.Read(second));
      EXPECT_EQ(Described(In(used)), Described(In(Received(kRow, second))));
      EXPECT_EQ(ToHex(used.bytes()), ToHex(second));
      const std::size_t calls = allocator.calls();
      ASSERT_TRUE(used.Read(second));
      EXPECT_EQ(allocator.calls(), calls) << "the same again takes no allocator call";
    }
  }
}

TEST(ZunRtcpSdes, ReadingAgainUsesTheOldTexts) {
  TestAllocator allocator;
  Received received(kRow, Wire(1, Hex("00000007 0105 6161616161 00")), allocator.get());
  ASSERT_TRUE(received.ok);
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(received.Read(Wire(1, Hex("00000008 0205 6262626262 00"))));
  EXPECT_EQ(Described(In(received)), "8: 2=bbbbb;\n");
  ASSERT_TRUE(received.Read(Wire(1, Hex("00000009 0301 63 00"))));
  EXPECT_EQ(Described(In(received)), "9: 3=c;\n");
  EXPECT_EQ(allocator.calls(), calls);
}

// What has as many chunks and items as before is read by a pass of its own; it must be seen in nothing but the time.
TEST(ZunRtcpSdes, ReadOverOneOfTheSameShapeIsAsReadAfresh) {
  std::vector<std::string> wires = {
      Wire(1, Hex("00000001 00014100")),             // an item that is skipped, and none besides
      Wire(1, Hex("00000001 0205 6162006364 00"))};  // a text with a zero where a list would end, were it shorter
  for (const Sample& sample : SamplesOf(kRow)) wires.push_back(sample.wire);
  for (const std::string& first : wires) {
    Received kept(kRow, first);
    const auto expect_as_fresh = [&](const std::string& wire) {
      ASSERT_EQ(kept.Read(first), kept.ok);
      const Received fresh(kRow, wire);
      EXPECT_EQ(kept.Read(wire), fresh.ok) << ToHex(wire);
      EXPECT_EQ(Described(In(kept)), Described(In(fresh))) << ToHex(wire);
    };
    expect_as_fresh(first + Hex("00000000"));
    for (ZunSizeT i = kBodyBegin; i < first.size(); ++i) {
      expect_as_fresh(first.substr(0, i));
      for (const int value : {0, 1, 2, 3, 4, 8, 9, 20, 255}) {
        std::string wire = first;
        wire[i] = static_cast<char>(value);
        expect_as_fresh(wire);
      }
    }
  }
}

TEST(ZunRtcpSdes, TextsOfEveryLengthAreReadOverLongerOnes) {
  const auto wire = [](std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += static_cast<char>('a' + (i + size) % 26);
    const std::string item = Hex("01") + static_cast<char>(size) + text;
    return Wire(1, Hex("00000007") + item + std::string(4 - item.size() % 4, '\0'));
  };
  TestAllocator allocator;
  Received kept(kRow, wire(255), allocator.get());
  const std::size_t calls = allocator.calls();
  for (std::size_t size = 255; size > 0; --size) {
    ASSERT_TRUE(kept.Read(wire(size))) << size;
    EXPECT_EQ(Described(In(kept)), Described(In(Received(kRow, wire(size))))) << size;
    EXPECT_EQ(kept.bytes(), wire(size)) << size;
  }
  EXPECT_EQ(allocator.calls(), calls);
}

TEST(ZunRtcpSdes, ATextOfAnotherAllocatorIsNotReadOver) {
  TestAllocator own;
  TestAllocator other;
  Received kept(kRow, Wire(1, Hex("00000007 0105 6161616161 00")), own.get());
  ZunRtcpSdesItem* const item = kept.sp()->sdes.chunks.begin->items.begin;
  ZunRtcpSdesItemDestruct(item);
  const Text text("a name", other.get());
  ASSERT_NE(ZunRtcpSdesItemConstruct(item, ZUN_RTCPSDESITEM_TYPE_CNAME, text.get()), nullptr);
  ASSERT_EQ(item->text.allocator, other.get());
  ASSERT_TRUE(kept.Read(Wire(1, Hex("00000008 0205 6262626262 00"))));
  EXPECT_EQ(Described(In(kept)), "8: 2=bbbbb;\n");
  EXPECT_EQ(In(kept).chunks.begin->items.begin->text.allocator, own.get());
}

TEST(ZunRtcpSdes, AChunkThatIsNeitherThereNorFindsRoomIsNone) {
  TestAllocator refusing;
  refusing.RefuseFrom(0);
  const Received received(kRow, Wire(1, ""), refusing.get());
  EXPECT_FALSE(received.ok);
  EXPECT_EQ(Described(In(received)), "");
}

TEST(ZunRtcpSdes, AFreshReadAsksForTheChunksOnce) {
  std::string chunks;
  for (int i = 0; i < 10; ++i) chunks += Hex("00000007 0101 61 00");
  TestAllocator allocator;
  const Received received(kRow, Wire(10, chunks), allocator.get());
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(allocator.allocations(), 1 + 10 * 2U) << "a list of chunks; a list and a text for each";
  EXPECT_EQ(allocator.deallocations(), 0U);
}

}  // namespace
