#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/Zun/Rtp/TransportFeedback/TransportCcTests.h"

namespace {

using namespace test;

TEST(ZunRtcpRtpfbTransportCcWrite, WithoutPacketsItIsTwentyBytes) {
  TransportCc p;
  p->refTime = 0x1234567;
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), 20U);
  EXPECT_EQ(ToHex(p.bytes()), ToHex(Hex(R"(
    8F CD 00 04  | version 2, FMT 15, packet type 205, 5 words
    00 00 00 00  | sender
    00 00 00 00  | media source
    00 00 00 00  | base 0, no statuses
    23 45 67 00  | the low 24 bits of the reference time, feedback packet 0
  )")));
  TransportCc back;
  PushStatuses(back, "0123");
  EXPECT_TRUE(back.Read(p.bytes()));
  EXPECT_EQ(InfosOf(back), Infos());
  EXPECT_EQ(back->refTime, 0x234567);
}

TEST(ZunRtcpRtpfbTransportCcWrite, TheEndIsAlignedToTheWholeString) {
  TransportCc p;
  PushStatuses(p, "11");  // 24 bytes
  for (std::size_t in_front = 0; in_front < 9; ++in_front) {
    Text out(std::string(in_front, 'x'));
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    std::string expected = std::string(in_front, 'x') + ByTheBook(p).bytes();
    while (expected.size() % 4 != 0) expected += '\0';
    EXPECT_EQ(ToHex(out.str()), ToHex(expected));
  }
  PushStatuses(p, "1");  // 25 bytes without zeros
  for (std::size_t in_front = 0; in_front < 9; ++in_front) {
    Text out(std::string(in_front, 'x'));
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    std::string expected = std::string(in_front, 'x') + ByTheBook(p).bytes().substr(0, 25);
    while (expected.size() % 4 != 0) expected += '\0';
    EXPECT_EQ(ToHex(out.str()), ToHex(expected));
    EXPECT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), 28U);
  }
}

// Runs are looked at in strides, the last of which overlaps; deltas that are all small are written without a look.
TEST(ZunRtcpRtpfbTransportCcWrite, ARunMayEndAnywhere) {
  for (const char run : {'0', '1', '2', '3'}) {
    for (const char other : {'0', '1', '2', '3'}) {
      for (std::size_t size = 1; size <= 40; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
          std::string statuses(size, run);
          statuses[at] = other;
          TransportCc p;
          PushStatuses(p, statuses);
          ASSERT_EQ(ToHex(p.bytes()), ToHex(ByTheBook(p).bytes())) << statuses;
        }
      }
    }
  }
}

TEST(ZunRtcpRtpfbTransportCcWrite, AsManyBytesOfDeltasAsPacketsNeedNotBeOneEach) {
  for (const char* statuses : {"20", "02", "1201", "111111111111112011111111111111", "2323"}) {
    TransportCc p;
    PushStatuses(p, statuses);
    EXPECT_EQ(ToHex(p.bytes()), ToHex(ByTheBook(p).bytes())) << statuses;
  }
}

// 64 chunks are kept, so the large delta is found after all deltas seemed to be small.
TEST(ZunRtcpRtpfbTransportCcWrite, SmallDeltasInAsManyChunksAsAreKept) {
  TransportCc p;
  for (int i = 0; i < 64 * 8191; ++i) Push(p, {1, 1, 7});
  Push(p, {1, 1, 0x1234});
  std::string expected = p.bytes().substr(0, 20);
  for (int i = 0; i < 64; ++i) expected += Hex("3FFF");
  expected += Hex("4001") + std::string(64 * 8191, '\7') + Hex("1234");
  while (expected.size() % 4 != 0) expected += '\0';
  EXPECT_TRUE(p.bytes() == expected);
}

TEST(ZunRtcpRtpfbTransportCcWrite, TheStatusCountWrapsAndAllPacketsAreWritten) {
  const auto count_field = [](std::size_t packets) {
    TransportCc p;
    for (std::size_t i = 0; i < packets; ++i) Push(p, {0, 0, 0});
    const std::string bytes = p.bytes();
    EXPECT_EQ(bytes.size(), ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()));
    EXPECT_EQ(bytes.size(), (20 + (packets + 8190) / 8191 * 2 + 3) / 4 * 4);
    return ToHex(bytes.substr(14, 2));
  };
  EXPECT_EQ(count_field(65535), "FFFF");
  EXPECT_EQ(count_field(65536), "0000");
  EXPECT_EQ(count_field(65539), "0003");
}

TEST(ZunRtcpRtpfbTransportCcWrite, AStringWithoutRoomForTheChunksIsAFailureAndForTheDeltasIsNot) {
  TransportCc p;
  ASSERT_TRUE(p.Read(Golden("TransportCcMixed")));
  const std::string whole = Golden("TransportCcMixed");
  std::set<std::size_t> sizes;
  for (std::size_t room = 0; room <= whole.size() + 1; ++room) {
    SCOPED_TRACE(room);
    TestAllocator cramped;
    cramped.RefuseAbove(room);
    // A string that holds a few bytes already ends in other places as it grows.
    for (std::size_t held = 0; held <= room && held < 48; held += 4) {
      Text out(cramped.get());
      if (held != 0 && ZunStringAppendN(out, held, 'x') == nullptr) continue;
      const bool written = ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0) != 0;
      EXPECT_EQ(ToHex(out.str()), ToHex((std::string(held, 'x') + whole).substr(0, out->size)));
      EXPECT_EQ(written, out->size >= held + kMixedDeltas);
      sizes.insert(out->size - held);
    }
  }
  EXPECT_TRUE(sizes.count(0) == 1 && sizes.count(whole.size()) == 1 && sizes.size() > 8) << sizes.size();
}

// The string grows to 16, 32 and 64 bytes once the reservation is refused; the growth to 64 is refused once.
TEST(ZunRtcpRtpfbTransportCcWrite, ADeltaThatCannotBeAppendedIsLeftOutAndTheNextOnesAreNot) {
  const auto written = [](const std::string& statuses) {
    TransportCc p;
    int n = 0;
    for (const char status : statuses) {
      ++n;
      Push(p, {1, 1, static_cast<ZunInt16>(status == '1' ? n : 0x0100 + n)});
    }
    TestAllocator refusing;
    refusing.RefuseThese({0, 3});
    Text out(refusing.get());
    EXPECT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    EXPECT_EQ(out->size % 4, 0U);
    return ToHex(out.str().substr(20));
  };
  const auto hex = [](const std::string& text) { return ToHex(Hex(text)); };
  // A small delta at byte 32.
  EXPECT_EQ(written("2222212"), hex("EAA6 0101 0102 0103 0104 0105 0107 0000"));
  // The high byte of a large delta at byte 32: its low byte is not attempted.
  EXPECT_EQ(written("2222221"), hex("EAA9 0101 0102 0103 0104 0105 07 000000"));
  // The low byte of a large delta at byte 32.
  EXPECT_EQ(written("1222221"), hex("DAA9 01 0102 0103 0104 0105 01 07 000000"));
}

// More chunks than are kept from the first pass: runs of 15 alike that change from one to the next.
TEST(ZunRtcpRtpfbTransportCcWrite, ALongMessageThatIsRefusedItsFirstBlocksWritesABeginning) {
  TransportCc p;
  for (int n = 0; n < 80 * 15; ++n) Push(p, {n / 15 % 2 != 0, n / 15 % 2 != 0, 1});
  Text whole;
  ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), whole, 0));
  ASSERT_GT(whole->size, 20U + 2 * 80);
  for (const std::set<std::size_t>& refused : {std::set<std::size_t>{0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}}) {
    TestAllocator refusing;
    refusing.RefuseThese(refused);
    Text out(refusing.get());
    EXPECT_FALSE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    EXPECT_EQ(refusing.refused(), 2U);
    EXPECT_EQ(ToHex(out.str()), ToHex(whole.str().substr(0, out->size)));
  }
  // Wherever the room ends, among the chunks that were kept and among those that are made again.
  for (ZunSizeT room = 20; room < 20 + 2 * 80; ++room) {
    TestAllocator refusing;
    Text out(std::string(room, 'x'), refusing);
    const ZunSizeT spare = out->capacity - out->size;
    out->size = spare;  // so much less room, and so much in front
    refusing.RefuseFrom(0);
    EXPECT_FALSE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    EXPECT_EQ(ToHex(out.str().substr(spare)), ToHex(whole.str().substr(0, room)));
  }
}

}  // namespace
