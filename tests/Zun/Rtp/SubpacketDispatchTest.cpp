// The first level of dispatch.
#include "Zun/Rtp/SubpacketDispatch.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(SubpacketDispatch, TypesWithoutARowGoToTheUnknownRow) {
  const RtcpSubpacketFunctions& unknown = zun::SubpacketLevel::RowOf(0);
  EXPECT_EQ(unknown.type, 0);
  EXPECT_EQ(unknown.assign_from_buffer, ZunRtcpUnknownAssignFromBuffer);
  for (const ZunInt32 type : {0, 1, 199, 255, 256, 456, -1, -56, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(&zun::SubpacketLevel::RowOf(type), &unknown) << type;
  }
}

TEST(SubpacketDispatch, EveryTypeGoesToItsOwnRow) {
  const RtcpSubpacketFunctions& unknown = zun::SubpacketLevel::RowOf(0);
  for (ZunInt32 type = -300; type <= 300; ++type) {
    const RtcpSubpacketFunctions& row = zun::SubpacketLevel::RowOf(type);
    const bool is_unknown = ZunRtcpSubpacketTypeIsUnknown(type) != 0;
    EXPECT_EQ(row.type, is_unknown ? 0 : type);
    EXPECT_EQ(&row == &unknown, is_unknown) << type;
  }
}

}  // namespace
