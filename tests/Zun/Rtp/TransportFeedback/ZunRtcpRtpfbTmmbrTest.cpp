#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Tmmbr = TEST_OBJECT(ZunRtcpRtpfbTmmbr);
using Entries = std::vector<std::pair<ZunUint32, ZunUint32>>;

const std::string kNoEntry = Hex("82CD0002 00000001 00000000");

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
  ASSERT_TRUE(tmmbr.Read(Golden("TmmbrTwoEntries")));
  ExpectHead(tmmbr, 0x01020304, 0);
  EXPECT_EQ(EntriesOf(tmmbr), (Entries{{0x05060708, 100000}, {0x090A0B0C, 0xFFFFFFFF}}));
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetPacketLength(tmmbr.sp()), 28U);
  EXPECT_EQ(tmmbr.bytes(), Golden("TmmbrTwoEntries"));
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
  EXPECT_EQ(Written(sp), Golden("TmmbrTwoEntries"));
  EXPECT_EQ(tmmbr->source, 5U);
  ZunRtcpSubpacketDestruct(&sp);
}

TEST(ZunRtcpRtpfbTmmbr, AReceivedMediaSourceIsKeptWithAWarning) {
  LogCapture log;
  Tmmbr tmmbr;
  std::string packet = Golden("TmmbrOneEntry");
  packet[11] = 5;
  EXPECT_TRUE(tmmbr.Read(packet));
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcp_, "ZunRtcpRtpfbTmmbrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TMMBR message");
  ExpectHead(tmmbr, 1, 5);
  EXPECT_EQ(EntriesOf(tmmbr), (Entries{{2, 3}}));
  EXPECT_EQ(tmmbr.bytes(), Golden("TmmbrOneEntry"));
  // The warning comes in front of a failure too.
  EXPECT_FALSE(tmmbr.Read(packet.substr(0, 16)));
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcp_, "ZunRtcpRtpfbTmmbrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TMMBR message");
}

TEST(ZunRtcpRtpfbTmmbr, WithoutEntriesItIsReadButNeverWritten) {
  LogCapture log;
  Tmmbr tmmbr;
  Append(tmmbr, 1, 2);
  ASSERT_TRUE(tmmbr.Read(kNoEntry));
  ExpectHead(tmmbr, 1, 0);
  EXPECT_EQ(EntriesOf(tmmbr), Entries());
  EXPECT_EQ(ZunRtcpRtpfbTmmbrGetPacketLength(tmmbr.sp()), 12U);
  tmmbr->source = 5;
  Text out("abc");
  EXPECT_FALSE(ZunRtcpRtpfbTmmbrWritePacket(tmmbr.sp(), out, 0));
  EXPECT_EQ(out.str(), "abc" + kNoEntry);
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTmmbr, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  const std::string whole = Golden("TmmbrTwoEntries");
  const Entries all = {{0x05060708, 100000}, {0x090A0B0C, 0xFFFFFFFF}};
  for (ZunSizeT size = 4; size <= whole.size(); ++size) {
    for (const ZunSizeT beyond : {ZunSizeT{0}, whole.size() - size, SIZE_MAX - size}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, " << beyond << " announced after them");
      Tmmbr tmmbr;
      tmmbr->sender = 10;
      tmmbr->source = 20;
      Append(tmmbr, 8, 9);
      const bool is_whole = size >= 12 && (size - 12) % 8 == 0 && beyond == 0;
      EXPECT_EQ(tmmbr.Read(whole.substr(0, size), {.beyond = beyond}), is_whole);
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
  EXPECT_FALSE(Parsed(Hex("83CD0004 00000001 00000000 00000002 00000000")).ok);
  // FMT 4 is not a modelled type.
  const Parsed unknown(Hex("84CD0004 00000001 00000000 00000002 00000000"));
  ASSERT_TRUE(unknown.ok);
  EXPECT_EQ(unknown[0].rtpfb.unk.fmt, 4);
}

TEST(ZunRtcpRtpfbTmmbr, AReadZeroesWhatTheWireDoesNotCarry) {
  Tmmbr tmmbr;
  Append(tmmbr, 8, 9);
  tmmbr->fci.begin->seqno = 77;
  ASSERT_TRUE(tmmbr.Read(Golden("TmmbrOneEntry")));
  EXPECT_EQ(tmmbr->fci.begin->seqno, 0);
}

// The media source is copied although it is never written, and a copy is a TMMBR whatever its source says.
TEST(ZunRtcpRtpfbTmmbr, ACopyTakesEveryField) {
  Tmmbr source;
  ASSERT_TRUE(source.Read(Golden("TmmbrTwoEntries")));
  source->source = 5;
  const Entries entries = EntriesOf(source);
  source->type = 0;
  source->fmt = 9;

  ZunRtcpRtpfbTmmbr copy;
  ASSERT_EQ(ZunRtcpRtpfbTmmbrConstructCopy(&copy, source), &copy);
  ExpectHead(&copy, 0x01020304, 5);
  EXPECT_EQ(EntriesOf(&copy), entries);
  ZunRtcpRtpfbTmmbrDestruct(&copy);

  Tmmbr assigned;
  ASSERT_EQ(ZunRtcpRtpfbTmmbrAssign(assigned, source), assigned.get());
  ExpectHead(assigned, 0x01020304, 5);
  EXPECT_EQ(EntriesOf(assigned), entries);

  TestAllocator other;
  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpRtpfbTmmbrConstructCopyAllocator(&sp, source.sp(), other), &sp);
  ExpectHead(&sp.rtpfb.tmmbr, 0x01020304, 5);
  EXPECT_EQ(EntriesOf(&sp.rtpfb.tmmbr), entries);
  ZunRtcpRtpfbTmmbrDestructWrap(&sp);
}

TEST(ZunRtcpRtpfbTmmbr, ARefusedAllocationLosesNothing) {
  LogCapture log;
  Tmmbr source;
  ASSERT_TRUE(source.Read(Golden("TmmbrTwoEntries")));
  const Entries all = EntriesOf(source);

  ForEveryRefusal([&](TestAllocator& refusing) {
    Tmmbr assigned(refusing);
    assigned->sender = 10;
    const bool ok = ZunRtcpRtpfbTmmbrAssign(assigned, source) != nullptr;
    ExpectHead(assigned, ok ? 0x01020304 : 10, 0);
    EXPECT_EQ(EntriesOf(assigned), ok ? all : Entries());
  });
  ForEveryRefusal([&](TestAllocator& refusing) {
    Tmmbr read(refusing);
    const bool ok = read.Read(Golden("TmmbrTwoEntries"));
    ExpectHead(read, 0x01020304, 0);
    EXPECT_EQ(EntriesOf(read), ok ? all : Entries());
  });
  log.ExpectNone();
}

}  // namespace
