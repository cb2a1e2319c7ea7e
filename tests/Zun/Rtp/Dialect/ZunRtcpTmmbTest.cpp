#include "Zun/Rtp/Dialect/ZunRtcpTmmb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/Captured.h"
#include "tests/support/GuardedBlock.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Entries = std::vector<ZunRtcpTmmbEntry>;

std::string InWords(const ZunRtcpTmmbEntry& e) {
  return std::to_string(e.ssrc) + ": " + std::to_string(e.mantissa) + " * 2^" + std::to_string(e.exponent) + ", " +
         std::to_string(e.overhead);
}

// A message that was read, and the same of its entries one by one.
struct Read {
  explicit Read(const std::string& wire) : octets(wire) {
    ok = ZunRtcpTmmbRead(&message, octets.data(), octets.size(), &reason) != 0;
    EXPECT_EQ(ok, reason == ZUN_RTCP_DECODE_REASON_NONE);
    ZunRtcpTmmb other = {};
    EXPECT_EQ(ZunRtcpTmmbRead(&other, octets.data(), octets.size(), nullptr), ok);
  }
  std::vector<std::string> entries() const {
    std::vector<std::string> told;
    ZunRtcpTmmbEntry entry;
    for (ZunSizeT i = 0; ZunRtcpTmmbGetEntry(&message, i, &entry); ++i) told.push_back(InWords(entry));
    EXPECT_EQ(told.size(), message.count);
    return told;
  }

  std::string octets;
  ZunRtcpTmmb message = {};
  ZunRtcpDecodeReason reason = 77;
  bool ok;
};

// What is written at the end of a page, after which nothing may be touched.
struct Written {
  Written(ZunRtcpTmmbType type, const Entries& entries, ZunSizeT capacity) : block(capacity) {
    ok = ZunRtcpTmmbWrite(type, kSender, entries.data(), entries.size(), block.octets(), capacity, &size) != 0;
    if (ok) bytes.assign(reinterpret_cast<char*>(block.octets()), size);
  }

  GuardedBlock block;
  ZunSizeT size = 77;
  bool ok;
  std::string bytes;
};

const Entries kTwo = {{0x11121314, 7, 0x1ABCD, 0x155}, {0x21222324, 63, 0x1FFFF, 0x1FF}};
constexpr char kTwoBody[] = R"(
    01020304          | sender
    00000000          | no media source
    11121314          | SSRC
    1F 579B 55        | exponent 7, mantissa 0x1ABCD, overhead 0x155
    21222324          | SSRC
    FFFFFFFF          | all at their largest
)";

TEST(ZunRtcpTmmb, IsReadEntryByEntry) {
  for (const ZunRtcpTmmbType type : {ZUN_RTCP_TMMB_TYPE_TMMBR, ZUN_RTCP_TMMB_TYPE_TMMBN}) {
    const Read read(Subpacket(205, type, Hex(kTwoBody)));
    ASSERT_TRUE(read.ok);
    EXPECT_EQ(read.message.type, type);
    EXPECT_EQ(read.message.sender, kSender);
    EXPECT_EQ(read.entries(), (std::vector<std::string>{InWords(kTwo[0]), InWords(kTwo[1])}));
    ZunRtcpTmmbEntry untouched = {1, 2, 3, 4};
    EXPECT_FALSE(ZunRtcpTmmbGetEntry(&read.message, 2, &untouched));
    EXPECT_FALSE(ZunRtcpTmmbGetEntry(&read.message, SIZE_MAX, &untouched));
    EXPECT_EQ(InWords(untouched), "1: 3 * 2^2, 4");
  }
}

TEST(ZunRtcpTmmb, IsWrittenAtEveryCapacity) {
  for (const ZunRtcpTmmbType type : {ZUN_RTCP_TMMB_TYPE_TMMBR, ZUN_RTCP_TMMB_TYPE_TMMBN}) {
    const std::string wire = Subpacket(205, type, Hex(kTwoBody));
    for (ZunSizeT capacity = 0; capacity < wire.size() + 4; ++capacity) {
      const Written written(type, kTwo, capacity);
      EXPECT_EQ(written.ok, capacity >= wire.size());
      EXPECT_EQ(written.size, wire.size());
      if (written.ok) {
        EXPECT_EQ(ToHex(written.bytes), ToHex(wire));
      }
    }
  }
}

TEST(ZunRtcpTmmb, ANotificationMayHaveNoEntries) {
  const std::string wire = Hex("84CD0002 01020304 00000000");
  const Written written(ZUN_RTCP_TMMB_TYPE_TMMBN, {}, 64);
  EXPECT_EQ(written.bytes, wire);
  const Read read(wire);
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(read.message.count, 0U);
  EXPECT_EQ(read.entries(), std::vector<std::string>());
}

TEST(ZunRtcpTmmb, IsNotWrittenWhereItCannotBe) {
  const auto refused = [](ZunRtcpTmmbType type, const Entries& entries) {
    const Written written(type, entries, 64);
    return !written.ok && written.size == 0;
  };
  EXPECT_TRUE(refused(ZUN_RTCP_TMMB_TYPE_TMMBR, {}));
  for (const ZunRtcpTmmbType type : {-1, 0, 1, 2, 5, 35}) EXPECT_TRUE(refused(type, kTwo)) << type;
  for (const ZunRtcpTmmbType type : {ZUN_RTCP_TMMB_TYPE_TMMBR, ZUN_RTCP_TMMB_TYPE_TMMBN}) {
    EXPECT_TRUE(refused(type, {{1, 64, 1, 1}}));
    EXPECT_TRUE(refused(type, {{1, 1, 0x20000, 1}}));
    EXPECT_TRUE(refused(type, {{1, 1, 1, 0x200}}));
    EXPECT_TRUE(refused(type, {kTwo[0], {1, 0, 0, 0xFFFF}}));
  }
}

TEST(ZunRtcpTmmb, HoldsAsManyEntriesAsItsLengthCanSay) {
  const Entries most(32766, {1, 2, 3, 4});
  const Written written(ZUN_RTCP_TMMB_TYPE_TMMBN, most, 262144);
  ASSERT_TRUE(written.ok);
  EXPECT_EQ(written.size, 12U + 8 * 32766);
  const Read read(written.bytes);
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(read.message.count, 32766U);
  const Entries more(32767, {1, 2, 3, 4});
  ZunSizeT size = 77;
  EXPECT_FALSE(ZunRtcpTmmbWrite(ZUN_RTCP_TMMB_TYPE_TMMBN, 1, more.data(), more.size(), nullptr, 0, &size));
  EXPECT_EQ(size, 0U);
}

struct Refused {
  const char* what;
  const char* wire;
  ZunRtcpDecodeReason reason;
};

const Refused kRefused[] = {
    {"nothing", "", ZUN_RTCP_DECODE_REASON_HEADER_CUT_OFF},
    {"three octets", "83CD00", ZUN_RTCP_DECODE_REASON_HEADER_CUT_OFF},
    {"version 1", "43CD0004 00000001 00000000 00000002 00000003", ZUN_RTCP_DECODE_REASON_VERSION},
    {"fewer octets than its length", "83CD0005 00000001 00000000 00000002 00000003", ZUN_RTCP_DECODE_REASON_LENGTH},
    {"more octets than its length", "83CD0004 00000001 00000000 00000002 00000003 00000004",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER},
    {"another type", "83CE0004 00000001 00000000 00000002 00000003", ZUN_RTCP_DECODE_REASON_VALUE},
    {"another FMT", "82CD0004 00000001 00000000 00000002 00000003", ZUN_RTCP_DECODE_REASON_VALUE},
    {"padding of 0", "A3CD0004 00000001 00000000 00000002 00000000", ZUN_RTCP_DECODE_REASON_PADDING},
    {"more padding than body", "A4CD0002 00000001 00000009", ZUN_RTCP_DECODE_REASON_PADDING},
    {"no sender", "83CD0000", ZUN_RTCP_DECODE_REASON_TOO_SHORT},
    {"no media source", "84CD0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT},
    {"half an entry", "84CD0003 00000001 00000000 00000002", ZUN_RTCP_DECODE_REASON_TOO_SHORT},
    {"one entry and a half", "83CD0005 00000001 00000000 00000002 00000003 00000004", ZUN_RTCP_DECODE_REASON_TOO_SHORT},
    {"an entry that is cut by padding", "A3CD0004 00000001 00000000 00000002 00000001",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT},
    {"a request of nothing", "83CD0002 00000001 00000000", ZUN_RTCP_DECODE_REASON_NO_ENTRIES},
};

TEST(ZunRtcpTmmb, TellsWhyItIsRefused) {
  for (const Refused& refused : kRefused) {
    const Read read(Hex(refused.wire));
    EXPECT_FALSE(read.ok) << refused.what;
    EXPECT_EQ(read.reason, refused.reason) << refused.what << ": " << ZunRtcpDecodeReasonGetText(read.reason);
  }
}

TEST(ZunRtcpTmmb, IsReadWithoutItsPadding) {
  const Read read(Hex("A4CD0005 00000001 00000000 00000002 00000003 00000004"));
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(read.entries(), (std::vector<std::string>{"2: 0 * 2^0, 3"}));
}

// A request is found by its refusal; a notification stays in the packet.
TEST(ZunRtcpTmmb, IsReadWhereADatagramHoldsIt) {
  const std::string request = Subpacket(205, 3, Hex(kTwoBody));
  const std::string bytes = Golden("RrWithoutBlocks") + request + Subpacket(205, 4, Hex(kTwoBody));
  const Decoded p(bytes, kRegistered, Tolerant());
  ASSERT_EQ(p.refusals.size(), 1U);
  EXPECT_EQ(p.reason(), ZUN_RTCP_DECODE_REASON_NO_OBJECT);
  const Read refused(bytes.substr(p.refusals[0].offset, p.refusals[0].length));
  EXPECT_TRUE(refused.ok);
  EXPECT_EQ(refused.entries().size(), 2U);
  ASSERT_EQ(p.count(), 2U);
  ZunRtcpTmmb notification = {};
  ZunRtcpDecodeReason reason = 77;
  ASSERT_TRUE(ZunRtcpTmmbReadSubpacket(&notification, &p[1], &reason));
  EXPECT_EQ(reason, ZUN_RTCP_DECODE_REASON_NONE);
  EXPECT_EQ(notification.type, ZUN_RTCP_TMMB_TYPE_TMMBN);
  EXPECT_EQ(notification.sender, kSender);
  ZunRtcpTmmbEntry entry;
  ASSERT_TRUE(ZunRtcpTmmbGetEntry(&notification, 1, &entry));
  EXPECT_EQ(InWords(entry), InWords(kTwo[1]));
  EXPECT_EQ(Encoded(p, kRegistered).bytes, Golden("RrWithoutBlocks") + Subpacket(205, 4, Hex(kTwoBody)));
}

TEST(ZunRtcpTmmb, IsWhatPeersMean) {
  const std::string bytes = Hex(kCapturedTmmbr);
  const Decoded p(bytes, kRegistered, Tolerant());
  EXPECT_EQ(Told(p.report),
            "3 read, 1 refused, 3: 205/3 at 96, 20 bytes, stopped at 100: there is no object for this "
            "form in this dialect");
  const Read request(bytes.substr(96, 20));
  EXPECT_EQ(request.message.sender, 0x02730C14U);
  EXPECT_EQ(request.entries(), (std::vector<std::string>{"411584730: 78000 * 2^2, 28"}));
  const Decoded notified(Hex(kCapturedTmmbn), kRegistered);
  ASSERT_TRUE(notified.ok);
  ZunRtcpTmmb notification;
  ASSERT_TRUE(ZunRtcpTmmbReadSubpacket(&notification, &notified[2], nullptr));
  EXPECT_EQ(notification.sender, 0x188848DAU);
  ZunRtcpTmmbEntry entry;
  ASSERT_TRUE(ZunRtcpTmmbGetEntry(&notification, 0, &entry));
  EXPECT_EQ(InWords(entry), "41094164: 78000 * 2^2, 28");
  EXPECT_EQ(ZunRtcpTmmbEntryGetBitrate(&entry), 312000);
}

TEST(ZunRtcpTmmb, IsRefusedAsAnotherSubpacket) {
  const auto reason_of = [](const std::string& wire) {
    const Decoded p(wire, kHouse);
    ZunRtcpTmmb message = {};
    ZunRtcpDecodeReason reason = 77;
    const bool read = ZunRtcpTmmbReadSubpacket(&message, &p[0], &reason) != 0;
    EXPECT_EQ(read, reason == ZUN_RTCP_DECODE_REASON_NONE);
    EXPECT_EQ(ZunRtcpTmmbReadSubpacket(&message, &p[0], nullptr), read);
    return reason;
  };
  for (const char* const name : {"RrWithoutBlocks", "Tmmbn", "TmmbrOneEntry", "NackOneMap", "Pli", "FirOneEntry"}) {
    EXPECT_EQ(reason_of(Golden(name)), ZUN_RTCP_DECODE_REASON_VALUE) << name;
  }
  EXPECT_EQ(reason_of(Hex("85CD0004 00000001 00000000 00000002 00000003")), ZUN_RTCP_DECODE_REASON_VALUE);
  EXPECT_EQ(reason_of(Hex("84CD0003 00000001 00000000 00000002")), ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  EXPECT_EQ(reason_of(Hex("84CD0002 00000001 00000000")), ZUN_RTCP_DECODE_REASON_NONE);
}

// Bit rates

TEST(ZunRtcpTmmbEntry, BitRateIsMantissaTimesAPowerOfTwo) {
  const auto bitrate = [](ZunUint32 mantissa, ZunUint8 exponent) {
    const ZunRtcpTmmbEntry entry = {1, exponent, mantissa, 0};
    return ZunRtcpTmmbEntryGetBitrate(&entry);
  };
  EXPECT_EQ(bitrate(0, 0), 0);
  EXPECT_EQ(bitrate(0, 63), 0);
  EXPECT_EQ(bitrate(125000, 3), 1e6);
  EXPECT_EQ(bitrate(1, 63), 9223372036854775808.0);
  EXPECT_EQ(bitrate(131071, 63), std::ldexp(131071, 63));
}

TEST(ZunRtcpTmmbEntry, TakesTheLargestBitRateThatIsNotAbove) {
  struct Case {
    double bitrate;
    ZunUint32 mantissa;
    ZunUint8 exponent;
  };
  const double least = std::numeric_limits<double>::denorm_min();
  for (const Case& c :
       {Case{0, 0, 0}, Case{-0.0, 0, 0}, Case{least, 0, 0}, Case{0.9, 0, 0}, Case{1.5, 1, 0}, Case{131071, 131071, 0},
        Case{131071.99, 131071, 0}, Case{131072, 65536, 1}, Case{131073, 65536, 1}, Case{1e6, 125000, 3},
        Case{std::ldexp(1, 79), 65536, 63}, Case{std::ldexp(131071, 63), 131071, 63},
        Case{std::nextafter(std::ldexp(1, 80), 0), 131071, 63}}) {
    ZunRtcpTmmbEntry entry = {1, 63, 7, 9};
    EXPECT_TRUE(ZunRtcpTmmbEntrySetBitrate(&entry, c.bitrate)) << c.bitrate;
    EXPECT_EQ(InWords(entry), InWords(ZunRtcpTmmbEntry{1, c.exponent, c.mantissa, 9})) << c.bitrate;
  }
}

TEST(ZunRtcpTmmbEntry, KeepsItsBitRateWhereTheNewOneHasNone) {
  for (const double bitrate : {-1.0, -std::numeric_limits<double>::denorm_min(), std::ldexp(1, 80), 1e300,
                               std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
    ZunRtcpTmmbEntry entry = {1, 2, 3, 4};
    EXPECT_FALSE(ZunRtcpTmmbEntrySetBitrate(&entry, bitrate)) << bitrate;
    EXPECT_EQ(InWords(entry), "1: 3 * 2^2, 4");
  }
}

TEST(ZunRtcpTmmbEntry, EveryExponentComesBack) {
  for (int exponent = 0; exponent <= 63; ++exponent) {
    for (const ZunUint32 mantissa : {65536U, 98765U, 131071U}) {
      ZunRtcpTmmbEntry entry = {1, 0, 0, 0};
      const ZunRtcpTmmbEntry wanted = {1, static_cast<ZunUint8>(exponent), mantissa, 0};
      ASSERT_TRUE(ZunRtcpTmmbEntrySetBitrate(&entry, ZunRtcpTmmbEntryGetBitrate(&wanted)));
      EXPECT_EQ(InWords(entry), InWords(wanted));
    }
  }
}

}  // namespace
