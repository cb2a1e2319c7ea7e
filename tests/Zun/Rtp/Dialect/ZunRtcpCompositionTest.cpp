#include "Zun/Rtp/Dialect/ZunRtcpComposition.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/Captured.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

constexpr ZunRtcpComposition kEmpty = ZUN_RTCP_COMPOSITION_EMPTY;
constexpr ZunRtcpComposition kNoReport = ZUN_RTCP_COMPOSITION_NO_REPORT_FIRST;
constexpr ZunRtcpComposition kNoCname = ZUN_RTCP_COMPOSITION_NO_CNAME;
constexpr ZunRtcpComposition kByeNotLast = ZUN_RTCP_COMPOSITION_BYE_NOT_LAST;

ZunRtcpComposition CheckOf(const std::string& bytes) {
  const Decoded p(bytes, kRegistered);
  EXPECT_TRUE(p.ok || bytes.empty());
  return ZunRtcpPacketCheckComposition(&p.packet);
}

TEST(ZunRtcpComposition, TellsAllThatAStrictReceiverObjectsTo) {
  const std::string sr = Golden("SrOneBlock");
  const std::string rr = Golden("RrWithoutBlocks");
  const std::string sdes = Golden("SdesTwoChunks");
  const std::string bye = Golden("ByeWithReason");
  const std::string nack = Golden("NackOneMap");
  const std::string no_cname = Hex("81CA0002 01020304 06014100");
  const std::string empty_cname = Hex("81CA0002 01020304 01000000");
  const struct {
    std::string bytes;
    ZunRtcpComposition objections;
  } kCases[] = {
      {"", kEmpty},
      {sr + sdes, 0},
      {rr + sdes, 0},
      {rr + nack + sdes, 0},
      {rr + sdes + bye, 0},
      {rr + sdes + bye + bye, 0},
      {rr + rr + sdes + nack, 0},
      {rr + no_cname + sdes, 0},
      {sdes, kNoReport},
      {sdes + rr, kNoReport},
      {rr, kNoCname},
      {rr + bye, kNoCname},
      {rr + no_cname, kNoCname},
      {rr + empty_cname, kNoCname},
      {rr + Hex("80CA0000"), kNoCname},
      {rr + bye + sdes, kByeNotLast},
      {rr + sdes + bye + nack, kByeNotLast},
      {rr + sdes + bye + nack + bye, kByeNotLast},
      {nack, kNoReport | kNoCname},
      {bye, kNoReport | kNoCname},
      {bye + sdes, kNoReport | kByeNotLast},
      {bye + nack, kNoReport | kNoCname | kByeNotLast},
  };
  for (const auto& c : kCases) EXPECT_EQ(CheckOf(c.bytes), c.objections) << ToHex(c.bytes);
}

TEST(ZunRtcpComposition, HasNothingAgainstWhatPeersSend) {
  for (const char* const captured : {kCapturedTmmbn, kCapturedDlrr, kCapturedXr}) EXPECT_EQ(CheckOf(Hex(captured)), 0U);
  EXPECT_EQ(CheckOf(Hex(kCapturedEmptyCname)), kNoCname);
  EXPECT_EQ(CheckOf(Hex(kCapturedCcfb)), kNoReport | kNoCname);
}

TEST(ZunRtcpComposition, HasATextForEach) {
  std::set<std::string> texts;
  for (const ZunRtcpComposition one : {0U, kEmpty, kNoReport, kNoCname, kByeNotLast}) {
    texts.insert(ZunRtcpCompositionGetText(one));
  }
  EXPECT_EQ(texts.size(), 5U);
  EXPECT_EQ(texts.count("several objections"), 0U);
  EXPECT_STREQ(ZunRtcpCompositionGetText(kNoReport | kNoCname), "several objections");
}

}  // namespace
