// The list of samples: that none is missing, and that each is what it says.
#include "tests/support/Samples.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace test;

TEST(Samples, EveryRowHasTwo) {
  for (const Row* const row : AllRows()) EXPECT_EQ(WhatIsWrongWith(*row, Samples()), "");
}

TEST(Samples, EachIsReadByItsRowAndByNoOther) {
  for (const Sample& sample : Samples()) EXPECT_EQ(WhatIsWrongWith(sample), "");
}

TEST(Samples, NamesAreUnique) {
  std::set<std::string> names;
  for (const Sample& sample : Samples()) EXPECT_TRUE(names.insert(sample.name).second) << sample.name;
}

TEST(Samples, UnknownOnesTakeTheFirstValuesThatAreUnassigned) {
  for (const Level level : {Level::kSubpacket, Level::kRtpfb, Level::kPsfb, Level::kAfb}) {
    const ZunInt32 value = UnassignedValue(level, 1);
    EXPECT_TRUE(IsUnknown(level, value));
    for (ZunInt32 below = 1; below < value; ++below) EXPECT_FALSE(IsUnknown(level, below)) << below;
  }
}

TEST(Samples, ARowWithoutTwoIsNamed) {
  const std::vector<Sample> twice_the_same = {Samples().front(), Samples().front()};
  EXPECT_EQ(WhatIsWrongWith(kRowOf<ZunRtcpSr>, twice_the_same), "ZunRtcpSr has 1 different samples, and needs two");
  EXPECT_EQ(WhatIsWrongWith(kRowOf<ZunRtcpRtpfb>, twice_the_same),
            "ZunRtcpRtpfb has 0 different samples, and needs two");
}

TEST(Samples, AWrongOneIsNamed) {
  const auto wrong = [](const Row& row, const std::string& wire) {
    return WhatIsWrongWith(Sample{.row = &row, .name = "Wrong", .wire = wire});
  };
  const std::string nack = Golden("NackOneMap");
  EXPECT_EQ(wrong(kRowOf<ZunRtcpRtpfbNack>, nack), "");
  EXPECT_EQ(wrong(kRowOf<ZunRtcpRtpfbNack>, nack + nack),
            "ZunRtcpRtpfbNack, sample Wrong: it is not read as one packet");
  EXPECT_EQ(wrong(kRowOf<ZunRtcpRtpfbNack>, nack.substr(0, 12)),
            "ZunRtcpRtpfbNack, sample Wrong: it is not read as one packet");
  EXPECT_EQ(wrong(kRowOf<ZunRtcpSdes>, nack), "ZunRtcpSdes, sample Wrong: its row does not read it");
  EXPECT_EQ(wrong(kRowOf<ZunRtcpUnknown>, nack), "ZunRtcpUnknown, sample Wrong: ZunRtcpRtpfb reads it");
  EXPECT_EQ(wrong(kRowOf<ZunRtcpRtpfb>, nack), "ZunRtcpRtpfb, sample Wrong: ZunRtcpRtpfbNack reads it");
}

TEST(Samples, ANameThatNoneHasIsTold) { EXPECT_THROW(Golden("NoSuchSample"), std::out_of_range); }

}  // namespace
