// What is printed. That the words are those of the tool is checked with the tool's tests.
#include "Zun/Rtp/Cpp/Print.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/Samples.h"

namespace {

using namespace zun::rtcp;
using test::Golden;

std::string LineOf(const std::string& wire) {
  Packet packet;
  EXPECT_TRUE(packet.decode(octets_of(wire)));
  return to_string(packet[0]);
}

template <class T>
std::string Streamed(const T& printable) {
  std::ostringstream out;
  out << printable;
  return out.str();
}

TEST(Print, AnObjectIsALine) {
  Nack nack(0x11223344, 0x12345678);
  ASSERT_TRUE(nack.add(1000));
  ASSERT_TRUE(nack.add(1003));
  const std::string line = "NACK: sender 0x11223344, source 0x12345678, lost 1000 1003";
  EXPECT_EQ(to_string(nack), line);
  EXPECT_EQ(Streamed(nack), line);
  EXPECT_EQ(Streamed(View<Nack>(nack)), line);
  EXPECT_EQ(Streamed(Ref<Nack>(nack)), line);
  Packet packet;
  ASSERT_TRUE(packet.append(nack));
  ASSERT_TRUE(packet.append(nack));
  EXPECT_EQ(Streamed(packet[0]), line);
  EXPECT_EQ(Streamed(packet.edit()[0]), line);
  EXPECT_EQ(Streamed(Subpacket(packet[0])), line);
  EXPECT_EQ(Streamed(packet), line + "\n" + line);
  EXPECT_EQ(Streamed(View<Packet>(packet)), line + "\n" + line);
}

TEST(Print, ListsFollowTheFields) {
  EXPECT_EQ(LineOf(Golden("SdesTwoChunks")),
            "SDES: chunk of 0x01020304: CNAME \"alic\"; chunk of 0x11121314: CNAME \"bob\", PRIV \"abc\" = \"-----\", "
            "MID \"\", TOOL \"\\x00\"");
  EXPECT_EQ(LineOf(Golden("FirTwoEntries")),
            "FIR: sender 0x01020304, source 0x11121314; to 0x21222324, command 7; to 0x31323334, command 255");
}

TEST(Print, EverySampleIsOneLineThatBeginsWithItsName) {
  for (const test::Sample& sample : test::Samples()) {
    const std::string line = LineOf(sample.wire);
    EXPECT_EQ(line.find('\n'), std::string::npos) << line;
    EXPECT_GT(line.find(':'), 1U) << line;
  }
}

TEST(Print, ErrorsAreLines) {
  Packet packet;
  const auto decoded = packet.decode(octets_of(Golden("Pli").substr(0, 8)));
  EXPECT_EQ(Streamed(decoded.error()), decoded.error().text());
  EXPECT_EQ(Streamed(Packet().encode().error()), "subpacket 0: the packet is empty");
}

TEST(Print, WordsThatPeersSendAreEscaped) {
  Bye bye;
  ASSERT_TRUE(bye.add(1));
  ASSERT_TRUE(bye.reason("a\"b\n\xFF"));
  EXPECT_EQ(to_string(bye), R"(BYE: 0x00000001 left, reason "a\"b\x0a\xff")");
}

TEST(Print, WhatHasNoNameIsToldByItsNumber) {
  EXPECT_EQ(LineOf(test::Subpacket(214, 0, "")), "type 214");
  EXPECT_EQ(LineOf(test::Subpacket(207, 0, "")), "XR (type 207)");
  Sdes sdes;
  ASSERT_TRUE(sdes.add(1, ZUN_RTCPSDESITEM_TYPE_MAX, "a"));
  ASSERT_TRUE(sdes.add(1, ZUN_RTCPSDESITEM_TYPE_EndOfList, "b"));
  const std::string last = std::to_string(ZUN_RTCPSDESITEM_TYPE_MAX);
  EXPECT_EQ(to_string(sdes), "SDES: chunk of 0x00000001: type " + last + " \"a\", type 0 \"b\"");
  EXPECT_EQ(words::ShowParameterName(0), "parameter of type 0");
  EXPECT_EQ(words::ShowParameterName(13), "packet size");
  EXPECT_EQ(words::ShowParameterName(14), "parameter of type 14");
}

TEST(Print, APrivItemWhosePrefixDoesNotFitStandsAsItIs) {
  EXPECT_EQ(words::SdesItemWords(ZUN_RTCPSDESITEM_TYPE_PRIV, ""), "PRIV \"\"");
  EXPECT_EQ(words::SdesItemWords(ZUN_RTCPSDESITEM_TYPE_PRIV,
                                 "\x03"
                                 "ab"),
            "PRIV \"\\x03ab\"");
  EXPECT_EQ(words::SdesItemWords(ZUN_RTCPSDESITEM_TYPE_PRIV,
                                 "\x02"
                                 "ab"),
            "PRIV \"ab\" = \"\"");
}

TEST(Print, LongTextIsCutAndNotOverrun) {
  EXPECT_EQ(words::Printed("%s", std::string(300, 'x').c_str()), std::string(255, 'x'));
  EXPECT_EQ(words::HexDigits(octets_of(std::string(32, '\x01'))).size(), 64U);
  EXPECT_EQ(words::HexDigits(octets_of(std::string(33, '\x01'))).substr(64), "... (1 more byte)");
}

TEST(Print, TheMarksOfACcfbAreTheSameInBothDialects) {
  CcfbStream stream(1);
  ASSERT_TRUE(stream.add(1, true, 3, 0));
  ASSERT_TRUE(stream.add(2, true, 12, 0));
  Ccfb ccfb(2);
  ASSERT_TRUE(ccfb.add(stream));
  EXPECT_NE(to_string(ccfb).find("ECN CE x2"), std::string::npos) << to_string(ccfb);
}

}  // namespace
