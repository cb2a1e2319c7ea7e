// That decoding agrees with itself and with the functions without a dialect: in the house's dialect with the parser and
// the writer of strings; over a packet that holds something with a fresh one; and with what it encodes.
#include <gtest/gtest.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/RandomDatagrams.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

void ExpectAgreementWithTheParser(const std::string& bytes) {
  const Parsed parsed(bytes);
  const Decoded decoded(bytes, kHouse);
  EXPECT_EQ(decoded.ok, parsed.ok) << ToHex(bytes) << "\n" << Told(decoded.report);
  EXPECT_EQ(Everything(decoded.packet), Everything(parsed.packet)) << ToHex(bytes);
  EXPECT_EQ(decoded.report.read, parsed.count());
  EXPECT_EQ(decoded.report.refused, parsed.ok ? 0U : 1U);
}

// Where the packet can be encoded it is what the writer makes of it.
void ExpectAgreementWithTheWriter(const ZunRtcpPacket& p) {
  const Encoded encoded(p, kHouse);
  if (!encoded.ok) return;
  Text written;
  EXPECT_TRUE(ZunRtcpPacketGetNetworkPacket(&p, written));
  EXPECT_EQ(ToHex(encoded.bytes), ToHex(written.str()));
}

TEST(ZunRtcpDecode, ReadsEverySampleAsTheParserDoes) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    ExpectAgreementWithTheParser(sample.wire);
    const Decoded p(sample.wire, kHouse);
    ExpectAgreementWithTheWriter(p.packet);
    EXPECT_TRUE(Encoded(p, kHouse).ok);
    if (sample.comes_back) {
      EXPECT_EQ(ToHex(Encoded(p, kHouse).bytes), ToHex(sample.wire));
    }
  }
}

// Each beginning, with the length that its header says and with that of its words.
TEST(ZunRtcpDecode, ReadsEveryCutSampleAsTheParserDoes) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    for (ZunSizeT size = 0; size < sample.wire.size(); ++size) {
      ExpectAgreementWithTheParser(sample.wire.substr(0, size));
      if (size < kBodyBegin || size % 4 != 0) continue;
      const std::string body = sample.wire.substr(kBodyBegin, size - kBodyBegin);
      ExpectAgreementWithTheParser(Subpacket(PacketTypeOf(sample.wire), CountOf(sample.wire), body));
    }
  }
}

TEST(ZunRtcpDecode, ReadsDamagedDatagramsAsTheParserDoes) {
  RandomDatagrams datagrams(1);
  int whole = 0;
  for (int i = 0; i < 6000; ++i) {
    const std::string bytes = datagrams.Next();
    ExpectAgreementWithTheParser(bytes);
    const Decoded p(bytes, kHouse, Tolerant());
    ExpectAgreementWithTheWriter(p.packet);
    if (p.report.refused == 0) ++whole;
    if (HasFailure()) return;
  }
  EXPECT_GT(whole, 1000);
  EXPECT_LT(whole, 5000);
}

// The packet keeps what it held: what is read must not show it, and must not own anything that a fresh one does not.
void ExpectSameAsFresh(const Decoded& p, const std::string& bytes, ZunRtcpDialect dialect,
                       const ZunRtcpDecodeOptions& options) {
  const Decoded fresh(bytes, dialect, options);
  EXPECT_EQ(p.ok, fresh.ok) << ToHex(bytes);
  EXPECT_EQ(Told(p.report), Told(fresh.report)) << ToHex(bytes);
  EXPECT_EQ(p.refusals.size(), fresh.refusals.size());
  EXPECT_EQ(Everything(p.packet), Everything(fresh.packet)) << ToHex(bytes);
}

TEST(ZunRtcpDecode, ReadsOverAnyPacketWhatItReadsIntoAFreshOne) {
  TestAllocator a;
  {
    RandomDatagrams datagrams(2);
    Decoded p(a);
    for (int i = 0; i < 8000 && !HasFailure(); ++i) {
      const std::string bytes = datagrams.Next();
      const ZunRtcpDialect dialect = kDialects[datagrams.Below(2)];
      ZunRtcpDecodeOptions options = datagrams.Below(2) == 0 ? Defaults() : Tolerant();
      if (datagrams.Below(4) == 0) options.maxEntries = datagrams.Below(12);
      p.Read(bytes, dialect, options);
      ExpectSameAsFresh(p, bytes, dialect, options);
    }
  }
  EXPECT_EQ(a.live_blocks(), 0U);
}

// What is usual is read over what is alike in ways of its own; so damage it in every way.
TEST(ZunRtcpDecode, ReadsDamagedSamplesOverWholeOnesAsIntoAFreshPacket) {
  RandomDatagrams datagrams(6);
  TestAllocator a;
  for (const Sample& sample : Samples()) {
    Decoded p(a);
    for (int i = 0; i < 100 && !HasFailure(); ++i) {
      const std::string bytes = datagrams.Damaged(sample.wire);
      const ZunRtcpDialect dialect = kDialects[i % 2];
      ZunRtcpDecodeOptions options = Defaults();
      if (i % 5 == 0) options.maxEntries = datagrams.Below(8);
      p.Read(sample.wire, dialect);
      p.Read(bytes, dialect, options);
      ExpectSameAsFresh(p, bytes, dialect, options);
    }
  }
}

// Without what was read of the ECN of packets that were not received, which is written as 0.
std::string EverythingButEcn(const ZunRtcpPacket& p) {
  std::string text = Everything(p);
  for (std::size_t at = text.find(", ECN"); at != std::string::npos; at = text.find(", ECN", at)) {
    text.erase(at, text.find('\n', at) - at);
  }
  return text;
}

// What is encoded in the registered dialect reads back: encoding it again gives the same, and so does its reading. LIR
// has no form that its reader takes, and ends the words of the datagram.
TEST(ZunRtcpEncode, WritesInTheRegisteredDialectWhatReadsBack) {
  RandomDatagrams datagrams(3);
  int encoded = 0;
  for (int i = 0; i < 6000 && !HasFailure(); ++i) {
    const std::string bytes = datagrams.Next();
    const Decoded p(bytes, kRegistered, Tolerant());
    const Encoded once(p, kRegistered);
    if (!once.ok || bytes.find(Hex("4E720005")) != std::string::npos) continue;
    ++encoded;
    const Decoded back(once.bytes, kRegistered);
    EXPECT_TRUE(back.ok) << ToHex(bytes) << "\n" << ToHex(once.bytes) << "\n" << Told(back.report);
    EXPECT_EQ(EverythingButEcn(back.packet), EverythingButEcn(p.packet)) << ToHex(bytes);
    EXPECT_EQ(ToHex(Encoded(back, kRegistered).bytes), ToHex(once.bytes));
  }
  EXPECT_GT(encoded, 2000);
}

}  // namespace
