// The first level of dispatch.
#include "Zun/Rtp/SubpacketDispatch.h"

#include <gtest/gtest.h>

namespace {

TEST(SubpacketDispatchTest, TypesOutside200To206GoToTheUnknownRow) {
  const RtcpSubpacketFunctions& unknown = zun::SubpacketLevel::RowOf(0);
  EXPECT_EQ(unknown.type, 0);
  EXPECT_EQ(unknown.assign_from_buffer, ZunRtcpUnknownAssignFromBuffer);
  for (const ZunInt32 type : {0, 1, 192, 199, 207, 255, 256, 456, -1, -56, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(&zun::SubpacketLevel::RowOf(type), &unknown) << type;
    EXPECT_TRUE(ZunRtcpSubpacketTypeIsUnknown(type)) << type;
  }
}

TEST(SubpacketDispatchTest, TypesFrom200To206GoToTheirOwnRows) {
  const RtcpSubpacketFunctions& unknown = zun::SubpacketLevel::RowOf(0);
  for (ZunInt32 type = 200; type <= 206; ++type) {
    const RtcpSubpacketFunctions& row = zun::SubpacketLevel::RowOf(type);
    EXPECT_EQ(row.type, type);
    EXPECT_NE(&row, &unknown) << type;
    EXPECT_FALSE(ZunRtcpSubpacketTypeIsUnknown(type)) << type;
  }
}

}  // namespace
