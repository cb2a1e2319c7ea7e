#include "Zun/Rtp/ApplicationFeedback/AfbHeader.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

const std::string kSsrcs = Hex("01020304 11121314");

ZunRtcpPsfbAfbType TypeIn(const Datagram& b, ZunSizeT begin, ZunSizeT end) {
  return zun::AfbBufferGetAfbType(zun::BodyIn(b, begin, end, {206, 15}));
}

ZunRtcpPsfbAfbType Classified(const std::string& fci) {
  const Datagram body(kSsrcs + fci);
  return TypeIn(body, 0, body->size);
}

TEST(AfbHeader, HouseMessagesAreToldByTheirNumberKnownOrNot) {
  EXPECT_EQ(Classified(Hex("4E72 0001")), ZUN_RTCPPSFBAFB_TYPE_ABAFB);
  EXPECT_EQ(Classified(Hex("4E72 0002")), ZUN_RTCPPSFBAFB_TYPE_ALBR);
  EXPECT_EQ(Classified(Hex("4E72 0003")), ZUN_RTCPPSFBAFB_TYPE_SHOW);
  EXPECT_EQ(Classified(Hex("4E72 0004")), ZUN_RTCPPSFBAFB_TYPE_SHOWACK);
  EXPECT_EQ(Classified(Hex("4E72 0005 DEADBEEF")), ZUN_RTCPPSFBAFB_TYPE_LIR);
  EXPECT_EQ(Classified(Hex("4E72 0000")), 0);
  EXPECT_EQ(Classified(Hex("4E72 0006")), 6);
  EXPECT_EQ(Classified(Hex("4E72 0100")), 256) << "the number is big-endian";
  EXPECT_EQ(Classified(Hex("4E72 FFFF")), 65535);
}

TEST(AfbHeader, RembIsToldByItsFourLetters) {
  EXPECT_EQ(Classified("REMB"), ZUN_RTCPPSFBAFB_TYPE_REMB);
  EXPECT_EQ(Classified("REMB and more"), ZUN_RTCPPSFBAFB_TYPE_REMB);
}

TEST(AfbHeader, NearMissesAreUnknown) {
  for (const std::string fci : {"NR\0\1", "nr\0\1", "nR\0\1", "rN\0\1", "Ns\0\1", "Mr\0\1"}) {
    EXPECT_EQ(Classified(fci + std::string("\0\1", 2)), 0) << fci;
  }
  for (const std::string fci : {"remb", "Remb", "REMb", "REMA", "RENB", "RFMB", "SEMB", "BMER", "LNTF"}) {
    EXPECT_EQ(Classified(fci), 0) << fci;
  }
  EXPECT_EQ(Classified(std::string("\0Nr\1", 4)), 0);
  EXPECT_EQ(Classified(" REMB"), 0);
}

TEST(AfbHeader, ShortIdentifiersAreUnknown) {
  const std::string house = Hex("4E72 0001");
  const std::string remb = "REMB";
  for (std::size_t size = 0; size < 4; ++size) {
    EXPECT_EQ(Classified(house.substr(0, size)), 0) << size;
    EXPECT_EQ(Classified(remb.substr(0, size)), 0) << size;
  }
}

TEST(AfbHeader, BodiesWithoutBothSsrcsAreUnknown) {
  const std::string all = kSsrcs + "REMB";
  for (std::size_t size = 0; size < 8; ++size) {
    const Datagram body(all.substr(0, size));
    EXPECT_EQ(TypeIn(body, 0, body->size), 0) << size;
  }
}

TEST(AfbHeader, TheEndOfTheBodyBoundsTheIdentifier) {
  const Datagram body(kSsrcs + "REMB" + Hex("4E720001"));
  for (ZunSizeT end = 0; end < 12; ++end) EXPECT_EQ(TypeIn(body, 0, end), 0) << end;
  EXPECT_EQ(TypeIn(body, 0, 12), ZUN_RTCPPSFBAFB_TYPE_REMB);
  EXPECT_EQ(TypeIn(body, 4, 15), 0);
  EXPECT_EQ(TypeIn(body, 4, 16), ZUN_RTCPPSFBAFB_TYPE_ABAFB) << "the body need not begin at 0";
}

TEST(AfbHeader, AnEndBeyondTheStringReadsNothingAfterIt) {
  const std::string all = kSsrcs + "REMB";
  for (std::size_t size = 0; size < all.size(); ++size) {
    const Datagram body(all.substr(0, size));
    EXPECT_EQ(TypeIn(body, 0, 1000), 0) << size;
  }
  const Datagram body(all);
  EXPECT_EQ(TypeIn(body, 0, 1000), ZUN_RTCPPSFBAFB_TYPE_REMB);
  EXPECT_EQ(TypeIn(body, 1000, 2000), 0);
}

TEST(AfbHeader, ReadsTheHouseHeader) {
  const Datagram bytes(Hex("4E72 BEEF"));
  zun::BodyReader r(zun::BodyIn(bytes, 0, 4, {0, 0}));
  ZunUint16 type = 0;
  EXPECT_TRUE(zun::ReadNorviAfbHeader(r, &type));
  EXPECT_EQ(type, 0xBEEF);
  EXPECT_EQ(r.Position(), 4U);
}

TEST(AfbHeader, AFailedReadOfTheHouseHeaderStoresNoType) {
  for (const std::string hex : {"", "4E", "4E72", "4E72BE", "4E73BEEF", "4F72BEEF"}) {
    const Datagram bytes(Hex(hex));
    zun::BodyReader r(zun::BodyIn(bytes, 0, bytes->size, {0, 0}));
    ZunUint16 type = 77;
    EXPECT_FALSE(zun::ReadNorviAfbHeader(r, &type)) << hex;
    EXPECT_EQ(type, 77) << hex;
  }
}

TEST(AfbHeader, WritesTheLowSixteenBitsOfTheType) {
  Text out;
  {
    zun::Output output(out);
    zun::BodyWriter w(output, 8);
    EXPECT_TRUE(zun::WriteNorviAfbHeader(w, 5));
    EXPECT_TRUE(zun::WriteNorviAfbHeader(w, 0x1BEEF));
  }
  EXPECT_EQ(ToHex(out.str()), "4E7200054E72BEEF");
}

TEST(AfbHeader, ARefusedHouseHeaderKeepsWhatWasAppended) {
  TestAllocator allocator;
  Text out("xyz", allocator);
  const ZunSizeT filled = out->capacity - 3;
  ZunStringClear(out);
  ASSERT_NE(ZunStringAppendN(out, filled, '-'), nullptr);
  allocator.RefuseFrom(0);
  {
    zun::Output output(out);
    zun::BodyWriter w(output, 4);
    EXPECT_FALSE(zun::WriteNorviAfbHeader(w, 5));
  }
  EXPECT_EQ(ToHex(out.str().substr(filled)), "4E7200");
}

}  // namespace
