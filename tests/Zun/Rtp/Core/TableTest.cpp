// What tables check of themselves. The compiler asks it of the library's own tables (tests/compile/WrongTable.cpp);
// here it is asked of right and wrong ones while the program runs.
#include "Zun/Rtp/Core/Table.h"

#include <gtest/gtest.h>

#include "Zun/Rtp/Core/Identity.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"
#include "tests/support/Kinds.h"

namespace {

ZunBool IsUnknownButForFour(ZunInt32 value) { return value != 4; }

TEST(Tables, APredicateAgreesWithTheRowsOrDoesNot) {
  const auto has_row_for = [](ZunInt32 with_row) { return [with_row](ZunInt32 value) { return value == with_row; }; };
  EXPECT_TRUE(zun::PredicateAgrees(has_row_for(4), IsUnknownButForFour, -1, 10));
  EXPECT_FALSE(zun::PredicateAgrees(has_row_for(5), IsUnknownButForFour, -1, 10));
  EXPECT_FALSE(zun::PredicateAgrees(
      has_row_for(4), [](ZunInt32) { return ZunBool{1}; }, 4, 4))
      << "the last is asked for";
  EXPECT_TRUE(zun::PredicateAgrees(
      has_row_for(4), [](ZunInt32) { return ZunBool{1}; }, 5, 10));
}

// Kinds in which one field stands elsewhere than in the unknown kind of their level.
struct TypeMoved {
  ZunUint32 something;
  ZunRtcpSubpacketType type;
  ZunRtcpPsfbType fmt;
  ZunRtpSourceId sender;
  ZunRtpSourceId source;
  ZunRtcpPsfbAfbType afbType;
};
struct SenderMoved {
  ZunRtcpSubpacketType type;
  ZunRtcpRtpfbType fmt;
  ZunUint32 something;
  ZunRtpSourceId sender;
};
struct SourceMoved {
  ZunRtcpSubpacketType type;
  ZunRtcpRtpfbType fmt;
  ZunRtpSourceId sender;
  ZunUint32 something;
  ZunRtpSourceId source;
};
struct AfbTypeMoved {
  ZunRtcpSubpacketType type;
  ZunRtcpPsfbType fmt;
  ZunRtpSourceId sender;
  ZunRtpSourceId source;
  ZunUint32 something;
  ZunRtcpPsfbAfbType afbType;
};

template <class Kind, class Unknown>
bool HasHeadOf() {
  bool (*const volatile ask)() = zun::HasHeadOf<Kind, Unknown>;
  return ask();
}

TEST(Tables, AKindBeginsWithTheFieldsOfItsLevelOrDoesNot) {
  EXPECT_TRUE((HasHeadOf<ZunRtcpSr, ZunRtcpUnknown>()));
  EXPECT_FALSE((HasHeadOf<TypeMoved, ZunRtcpUnknown>()));
  EXPECT_TRUE((HasHeadOf<ZunRtcpRtpfbNack, ZunRtcpRtpfbUnknown>()));
  EXPECT_FALSE((HasHeadOf<SenderMoved, ZunRtcpRtpfbUnknown>()));
  EXPECT_FALSE((HasHeadOf<SourceMoved, ZunRtcpRtpfbUnknown>()));
  EXPECT_TRUE((HasHeadOf<ZunRtcpPsfbAfbLir, ZunRtcpPsfbAfbUnknown>()));
  EXPECT_FALSE((HasHeadOf<AfbTypeMoved, ZunRtcpPsfbAfbUnknown>()));
  EXPECT_FALSE((HasHeadOf<TypeMoved, ZunRtcpPsfbAfbUnknown>())) << "whatever else fits";
}

TEST(Tables, ARowThatFitsIsTakenAsItIs) {
  RtcpSubpacketFunctions row{};
  row.type = ZUN_RTCPRTPFB_TYPE_NACK;
  row.destruct = ZunRtcpRtpfbNackDestructWrap;
  const RtcpSubpacketFunctions checked = zun::CheckedRow<ZunRtcpRtpfb, ZunRtcpRtpfbUnknown, ZunRtcpRtpfbNack>(
      &ZunRtcpRtpfb::nack, ZunRtcpRtpfbGetNack, row);
  EXPECT_EQ(checked.type, ZUN_RTCPRTPFB_TYPE_NACK);
  EXPECT_EQ(checked.destruct, row.destruct);
}

TEST(Identities, MarkAnObjectWithEachValueThatItIsFoundBy) {
  ZunRtcpPsfbAfbAlbr message{};
  const zun::AfbIdentity identity = zun::IsAfb(ZUN_RTCPPSFBAFB_TYPE_ALBR);
  EXPECT_EQ(identity.Mark(&message), &message);
  EXPECT_EQ(message.type, ZUN_RTCPSUBPACKET_TYPE_PSFB);
  EXPECT_EQ(message.fmt, ZUN_RTCPPSFB_TYPE_AFB);
  EXPECT_EQ(message.afbType, ZUN_RTCPPSFBAFB_TYPE_ALBR);
  EXPECT_EQ(identity.Mark(static_cast<ZunRtcpPsfbAfbAlbr*>(nullptr)), nullptr) << "a failed copy stays one";
}

}  // namespace
