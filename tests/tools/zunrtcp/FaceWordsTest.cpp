// The C++ face prints a kind in the words of the tool.
#include <gtest/gtest.h>

#include <string>

#include "Zun/Rtp/Cpp/Print.h"
#include "tests/support/Samples.h"
#include "tests/tools/zunrtcp/Decoded.h"
#include "tools/zunrtcp/Text.h"

namespace {

// What the tool says of the only subpacket of a datagram, in the form of the face.
std::string LineOfTheTool(const test::Sample& sample) {
  const test::Decoded decoded(test::ToHex(sample.wire));
  EXPECT_EQ(decoded.subpackets.size(), 1U) << sample.name;
  const auto& subpacket = decoded.subpackets.front();
  const std::string fields = subpacket.description.Line();
  std::string line = subpacket.kind;
  if (!fields.empty()) line += ": " + fields;
  for (const std::string& item : subpacket.description.ItemLines()) {
    line += (line == subpacket.kind ? ": " : "; ") + item;
  }
  return line;
}

class FaceWords : public ::testing::TestWithParam<test::Sample> {};

TEST_P(FaceWords, AreTheToolsWords) {
  zun::rtcp::Packet packet;
  ASSERT_TRUE(packet.decode(zun::rtcp::octets_of(GetParam().wire)));
  EXPECT_EQ(zun::rtcp::to_string(packet[0]), LineOfTheTool(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, FaceWords, ::testing::ValuesIn(test::Samples()),
                         [](const auto& sample) { return sample.param.name; });

}  // namespace
