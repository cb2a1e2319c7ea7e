#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/support/Kinds.h"
#include "tests/support/LogCapture.h"

namespace {

using test::Hex;
using test::LogCapture;
using test::TestAllocator;

using Tmmbr = test::Built<ZunRtcpRtpfbTmmbr, ZunRtcpRtpfbTmmbrConstructDefault, ZunRtcpRtpfbTmmbrDestruct>;
using Entries = std::vector<std::pair<ZunUint32, ZunUint32>>;

std::string TwoEntries() {
  return Hex(R"(
    82 CD 00 06  | version 2, FMT 2, packet type 205, 7 words
    01 02 03 04  | sender
    00 00 00 00  | no media source
    05 06 07 08  | SSRC
    00 01 86 A0  | 100000 bit/s
    09 0A 0B 0C  | SSRC
    FF FF FF FF  | 2^32 - 1 bit/s
  )");
}

std::string OneEntry() { return Hex("82CD0004 00000001 00000000 00000002 00000003"); }
std::string NoEntry() { return Hex("82CD0002 00000001 00000000"); }

Entries EntriesOf(const ZunRtcpRtpfbTmmbr* p) {
  Entries entries;
  for (const ZunRtcpRtpfbTmmbrEntry* entry = p->fci.begin; entry != p->fci.end; ++entry) {
    entries.emplace_back(entry->ssrc, entry->max_bitrate);
    EXPECT_EQ(entry->seqno, 0);
  }
  return entries;
}

void Append(ZunRtcpRtpfbTmmbr* p, ZunRtpSourceId ssrc, ZunUint32 max_bitrate) {
  ZunRtcpRtpfbTmmbrEntry entry;
  ZunRtcpRtpfbTmmbrEntryConstructFull(&entry, ssrc, max_bitrate, ZunAllocatorGetSystem());
  ASSERT_TRUE(ZunVector_ZunRtcpRtpfbTmmbrEntryPushBack(&p->fci, &entry));
}

void ExpectHead(const ZunRtcpRtpfbTmmbr* p, ZunRtpSourceId sender, ZunRtpSourceId source) {
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_TMMBR);
  EXPECT_EQ(p->sender, sender);
  EXPECT_EQ(p->source, source);
}

TEST(ZunRtcpRtpfbTmmbr, IsBuiltWithoutEntries) {
  TestAllocator allocator;
  ZunRtcpRtpfbTmmbr tmmbr;
  ASSERT_EQ(ZunRtcpRtpfbTmmbrConstructDefault(&tmmbr, allocator), &tmmbr);
  ExpectHead(&tmmbr, 0, 0);
  EXPECT_EQ(EntriesOf(&tmmbr), Entries());
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetAllocator(&tmmbr), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
  Append(&tmmbr, 1, 2);
  ZunRtcpRtpfbTmmbrDestruct(&tmmbr);
  ZunRtcpRtpfbTmmbrDestruct(&tmmbr);
}

TEST(ZunRtcpRtpfbTmmbr, ReadsAndWritesItsWireForm) {
  LogCapture log;
  Tmmbr tmmbr;
  ASSERT_TRUE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, tmmbr.sp(), TwoEntries()));
  ExpectHead(tmmbr, 0x01020304, 0);
  EXPECT_EQ(EntriesOf(tmmbr), (Entries{{0x05060708, 100000}, {0x090A0B0C, 0xFFFFFFFF}}));
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetPacketLength(tmmbr.sp()), 28U);
  EXPECT_EQ(test::Append(ZunRtcpRtpfbTmmbrWritePacket, tmmbr.sp()), TwoEntries());
  test::ExpectSafeWriting(ZunRtcpRtpfbTmmbrWritePacket, tmmbr.sp(), TwoEntries());
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTmmbr, ABuiltOneWritesItsEntriesAndNeverItsMediaSource) {
  ZunRtcpSubpacket sp;
  ZunRtcpRtpfbTmmbr* const tmmbr = ZunRtcpRtpfbTmmbrConstructDefault(&sp.rtpfb.tmmbr, ZunAllocatorGetSystem());
  EXPECT_TRUE(ZunRtcpRtpfbSetSender(&sp.rtpfb, 0x01020304));
  EXPECT_TRUE(ZunRtcpRtpfbSetMediaSource(&sp.rtpfb, 5));
  Append(tmmbr, 0x05060708, 100000);
  Append(tmmbr, 0x090A0B0C, 0xFFFFFFFF);
  tmmbr->fci.begin->seqno = 77;
  EXPECT_EQ(test::Written(sp), TwoEntries());
  EXPECT_EQ(tmmbr->source, 5U);
  ZunRtcpSubpacketDestruct(&sp);
}

TEST(ZunRtcpRtpfbTmmbr, ThePaddingBitAddsNoPadding) {
  Tmmbr tmmbr;
  Append(tmmbr, 1, 2);
  EXPECT_EQ(test::Append(ZunRtcpRtpfbTmmbrWritePacket, tmmbr.sp(), true),
            Hex("A2CD0004 00000000 00000000 00000001 00000002"));
}

TEST(ZunRtcpRtpfbTmmbr, AReceivedMediaSourceIsKeptWithAWarning) {
  LogCapture log;
  Tmmbr tmmbr;
  std::string packet = OneEntry();
  packet[11] = 5;
  EXPECT_TRUE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, tmmbr.sp(), packet));
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcp_, "ZunRtcpRtpfbTmmbrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TMMBR message");
  ExpectHead(tmmbr, 1, 5);
  EXPECT_EQ(EntriesOf(tmmbr), (Entries{{2, 3}}));
  EXPECT_EQ(test::Append(ZunRtcpRtpfbTmmbrWritePacket, tmmbr.sp()), OneEntry());
  // The warning comes in front of a failure too.
  EXPECT_FALSE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, tmmbr.sp(), packet.substr(0, 16)));
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcp_, "ZunRtcpRtpfbTmmbrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TMMBR message");
}

TEST(ZunRtcpRtpfbTmmbr, WithoutEntriesItIsReadButNeverWritten) {
  LogCapture log;
  Tmmbr tmmbr;
  Append(tmmbr, 1, 2);
  ASSERT_TRUE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, tmmbr.sp(), NoEntry()));
  ExpectHead(tmmbr, 1, 0);
  EXPECT_EQ(EntriesOf(tmmbr), Entries());
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetPacketLength(tmmbr.sp()), 12U);
  tmmbr->source = 5;
  test::Text out("abc");
  EXPECT_FALSE(ZunRtcpRtpfbTmmbrWritePacket(tmmbr.sp(), out, 0));
  EXPECT_EQ(out.str(), "abc" + NoEntry());
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTmmbr, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  const std::string whole = TwoEntries();
  const Entries all = {{0x05060708, 100000}, {0x090A0B0C, 0xFFFFFFFF}};
  for (ZunSizeT size = 4; size <= whole.size(); ++size) {
    for (const ZunSizeT beyond : {ZunSizeT{0}, whole.size() - size, SIZE_MAX - size}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, " << beyond << " announced behind them");
      Tmmbr tmmbr;
      tmmbr->sender = 10;
      tmmbr->source = 20;
      Append(tmmbr, 8, 9);
      const bool is_whole = size >= 12 && (size - 12) % 8 == 0 && beyond == 0;
      EXPECT_EQ(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, tmmbr.sp(), whole.substr(0, size), beyond), is_whole);
      ExpectHead(tmmbr, size >= 8 ? 0x01020304 : 10, size >= 12 ? 0 : 20);
      // The old entries go as soon as both SSRCs are there.
      if (size < 12) {
        EXPECT_EQ(EntriesOf(tmmbr), (Entries{{8, 9}}));
      } else {
        const auto kept = static_cast<std::ptrdiff_t>((size - 12) / 8);
        EXPECT_EQ(EntriesOf(tmmbr), Entries(all.begin(), all.begin() + kept));
      }
    }
  }
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTmmbr, TheRegisteredFormIsNotUnderstood) {
  // FMT 3 with one packed entry of 8 bytes is no notification of this system's form.
  EXPECT_FALSE(test::Parsed(Hex("83CD0004 00000001 00000000 00000002 00000000")).ok);
  // FMT 4 is not a modelled type.
  const test::Parsed unknown(Hex("84CD0004 00000001 00000000 00000002 00000000"));
  ASSERT_TRUE(unknown.ok);
  EXPECT_EQ(unknown[0].rtpfb.unk.fmt, 4);
}

TEST(ZunRtcpRtpfbTmmbr, IsReadAgainInPlace) {
  for (const std::string& first : {OneEntry(), TwoEntries()}) {
    for (const std::string& second : {OneEntry(), TwoEntries()}) test::ExpectReadAgain(first, second);
  }
}

TEST(ZunRtcpRtpfbTmmbr, AReadZeroesWhatTheWireDoesNotCarry) {
  Tmmbr tmmbr;
  Append(tmmbr, 8, 9);
  tmmbr->fci.begin->seqno = 77;
  ASSERT_TRUE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, tmmbr.sp(), OneEntry()));
  EXPECT_EQ(tmmbr->fci.begin->seqno, 0);
}

TEST(ZunRtcpRtpfbTmmbr, AConstructedReadTakesTheAllocatorThatItIsGiven) {
  TestAllocator allocator;
  const test::Datagram datagram(TwoEntries());
  ZunRtcpSubpacket sp;
  ASSERT_TRUE(ZunRtcpRtpfbTmmbrConstructFromBuffer(&sp, datagram, 4, datagram->size, 205, 2, allocator));
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetAllocatorWrap(&sp), allocator.get());
  EXPECT_EQ(EntriesOf(&sp.rtpfb.tmmbr).size(), 2U);
  ZunRtcpRtpfbTmmbrDestructWrap(&sp);

  EXPECT_FALSE(ZunRtcpRtpfbTmmbrConstructFromBuffer(&sp, datagram, 4, datagram->size - 4, 205, 2, allocator));
  ExpectHead(&sp.rtpfb.tmmbr, 0x01020304, 0);
  EXPECT_EQ(EntriesOf(&sp.rtpfb.tmmbr).size(), 1U);
  ZunRtcpRtpfbTmmbrDestructWrap(&sp);
}

TEST(ZunRtcpRtpfbTmmbr, ACopyTakesItsSourcesAllocatorAndAnAssignmentKeepsItsOwn) {
  TestAllocator theirs;
  TestAllocator ours;
  Tmmbr source(theirs);
  ASSERT_TRUE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, source.sp(), TwoEntries()));
  source->source = 5;
  const Entries entries = EntriesOf(source);
  source->type = 0;  // a copy is a TMMBR whatever its source says
  source->fmt = 9;

  ZunRtcpRtpfbTmmbr copy;
  ASSERT_EQ(ZunRtcpRtpfbTmmbrConstructCopy(&copy, source), &copy);
  ExpectHead(&copy, 0x01020304, 5);
  EXPECT_EQ(EntriesOf(&copy), entries);
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetAllocator(&copy), theirs.get());
  ZunRtcpRtpfbTmmbrDestruct(&copy);

  Tmmbr assigned(ours);
  ASSERT_EQ(ZunRtcpRtpfbTmmbrAssignWrap(assigned.sp(), source.sp()), assigned.sp());
  ExpectHead(assigned, 0x01020304, 5);
  EXPECT_EQ(EntriesOf(assigned), entries);
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetAllocator(assigned), ours.get());
  ASSERT_EQ(ZunRtcpRtpfbTmmbrAssign(assigned, assigned), assigned.get());
  EXPECT_EQ(EntriesOf(assigned), entries);

  for (TestAllocator* const allocator : {&theirs, &ours}) {
    ZunRtcpSubpacket sp;
    ASSERT_EQ(ZunRtcpRtpfbTmmbrConstructCopyAllocator(&sp, source.sp(), *allocator), &sp);
    ExpectHead(&sp.rtpfb.tmmbr, 0x01020304, 5);
    EXPECT_EQ(EntriesOf(&sp.rtpfb.tmmbr), entries);
    EXPECT_EQ(ZunRtcpRtpfbTmmbrGetAllocatorWrap(&sp), allocator->get());
    ZunRtcpRtpfbTmmbrDestructWrap(&sp);
  }
}

TEST(ZunRtcpRtpfbTmmbr, ARefusedAllocationLosesNothing) {
  LogCapture log;
  Tmmbr source;
  ASSERT_TRUE(test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, source.sp(), TwoEntries()));
  const Entries all = EntriesOf(source);

  test::ForEveryRefusal([&](TestAllocator& refusing) {
    ZunRtcpSubpacket sp;
    if (ZunRtcpRtpfbTmmbrConstructCopyAllocator(&sp, source.sp(), refusing) == nullptr) return;
    ZunRtcpRtpfbTmmbr copy;
    if (ZunRtcpRtpfbTmmbrConstructCopy(&copy, &sp.rtpfb.tmmbr) != nullptr) {
      EXPECT_EQ(EntriesOf(&copy), all);
      ZunRtcpRtpfbTmmbrDestruct(&copy);
    }
    ZunRtcpRtpfbTmmbrDestructWrap(&sp);
  });
  test::ForEveryRefusal([&](TestAllocator& refusing) {
    Tmmbr assigned(refusing);
    assigned->sender = 10;
    const bool ok = ZunRtcpRtpfbTmmbrAssign(assigned, source) != nullptr;
    ExpectHead(assigned, ok ? 0x01020304 : 10, 0);
    EXPECT_EQ(EntriesOf(assigned), ok ? all : Entries());
  });
  test::ForEveryRefusal([&](TestAllocator& refusing) {
    Tmmbr read(refusing);
    const bool ok = test::Read(ZunRtcpRtpfbTmmbrAssignFromBuffer, read.sp(), TwoEntries());
    ExpectHead(read, 0x01020304, 0);
    EXPECT_EQ(EntriesOf(read), ok ? all : Entries());
  });
  log.ExpectNone();
}

}  // namespace
