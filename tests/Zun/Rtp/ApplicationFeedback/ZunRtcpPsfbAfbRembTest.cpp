#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbRemb.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Remb = TEST_OBJECT(ZunRtcpPsfbAfbRemb);

const Row& kRow = kRowOf<ZunRtcpPsfbAfbRemb>;

constexpr ZunFloat32 kInfinity = std::numeric_limits<ZunFloat32>::infinity();
constexpr ZunFloat32 kNan = std::numeric_limits<ZunFloat32>::quiet_NaN();
const ZunFloat32 kLimit = std::bit_cast<ZunFloat32>(0x67FFFFC0U);  // (2^18 - 1) * 2^63

struct Encoded {
  ZunUint32 exponent;
  ZunUint32 mantissa;
  double value() const { return std::ldexp(mantissa, static_cast<int>(exponent)); }
};
bool operator==(Encoded a, Encoded b) { return a.exponent == b.exponent && a.mantissa == b.mantissa; }

// Halved until it has no more than 18 bits before the point, the rest cut off.
Encoded Expected(ZunFloat32 bitrate) {
  double value = bitrate;
  ZunUint32 exponent = 0;
  while (value >= 262144.0) {
    value /= 2;
    ++exponent;
  }
  return {exponent, static_cast<ZunUint32>(std::floor(value))};
}

Encoded Decoded(const std::string& wire) {
  const auto octet = [&](std::size_t n) { return ZunUint32{static_cast<unsigned char>(wire[n])}; };
  return {octet(17) / 4, octet(17) % 4 * 65536 + octet(18) * 256 + octet(19)};
}

// A view of these sources, without an allocator.
ZunVector_ZunRtpSourceId Sources(std::vector<ZunRtpSourceId>& v) {
  return {nullptr, v.data(), v.data() + v.size(), v.data() + v.size()};
}

bool Set(ZunRtcpPsfbAfbRemb* p, std::vector<ZunRtpSourceId> sources) {
  const ZunVector_ZunRtpSourceId list = Sources(sources);
  return ZunRtcpPsfbAfbRembSetFeedbackSources(p, &list) != 0;
}

bool Set(ZunRtcpPsfbAfbRemb* p, ZunFloat32 bitrate) { return ZunRtcpPsfbAfbRembSetBitrate(p, bitrate) != 0; }

ZunFloat32 ReadBack(const Remb& remb) {
  const Received received(kRow, remb.bytes());
  EXPECT_TRUE(received.ok);
  return received.sp()->psfb.afb.remb.bitrate;
}

void ExpectEncoding(Remb& remb, ZunFloat32 bitrate) {
  ASSERT_TRUE(Set(remb, bitrate)) << bitrate;
  const Encoded encoded = Decoded(remb.bytes());
  EXPECT_EQ(encoded, Expected(bitrate)) << bitrate << ": " << encoded.mantissa << " * 2^" << encoded.exponent;
  EXPECT_LE(encoded.value(), bitrate);
  EXPECT_EQ(double{ReadBack(remb)}, encoded.value());
}

TEST(ZunRtcpPsfbAfbRemb, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  Remb remb(allocator);
  EXPECT_EQ(remb->type, 206);
  EXPECT_EQ(remb->fmt, 15);
  EXPECT_EQ(remb->sender, 0U);
  EXPECT_EQ(remb->source, 0U);
  EXPECT_EQ(remb->afbType, 65537);
  EXPECT_EQ(ZunRtcpPsfbAfbRembGetBitrate(remb), 0.0F);
  EXPECT_TRUE(ZunVector_ZunRtpSourceIdEmpty(ZunRtcpPsfbAfbRembGetFeedbackSources(remb)));
  EXPECT_EQ(ZunRtcpPsfbAfbRembGetAllocator(remb), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbAfbRemb, WritesGoldenBytes) {
  TestAllocator allocator;
  std::vector<ZunRtpSourceId> ids = {0xAABBCCDD, 1};
  const ZunVector_ZunRtpSourceId list = {allocator, ids.data(), ids.data() + 2, ids.data() + 2};
  ZunRtcpPsfbAfbRemb remb;
  ASSERT_EQ(ZunRtcpPsfbAfbRembConstructFull(&remb, kSender, 1000000.7F, &list, nullptr), &remb);
  EXPECT_EQ(remb.source, 0U);
  remb.source = kSource;
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&remb))), ToHex(Golden("RembTwoSources")));
  ZunRtcpPsfbAfbRembDestruct(&remb);
}

TEST(ZunRtcpPsfbAfbRemb, ReadsGoldenBytes) {
  const Parsed parsed(Golden("RembTwoSources"));
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_REMB);
  const ZunRtcpPsfbAfbRemb* const remb = ZunRtcpPsfbAfbGetRemb(afb);
  EXPECT_EQ(remb->type, 206);
  EXPECT_EQ(remb->fmt, 15);
  EXPECT_EQ(remb->sender, kSender);
  EXPECT_EQ(remb->source, kSource);
  EXPECT_EQ(ZunRtcpPsfbAfbRembGetBitrate(remb), 1000000.0F);
  const ZunVector_ZunRtpSourceId* const sources = ZunRtcpPsfbAfbRembGetFeedbackSources(remb);
  ASSERT_EQ(ZunVector_ZunRtpSourceIdSize(sources), 2U);
  EXPECT_EQ(sources->begin[0], 0xAABBCCDDU);
  EXPECT_EQ(sources->begin[1], 1U);
}

// Sender reports of Chromium, each with a SDES and a REMB and some with an extended report; bitrates as another
// dissector shows them.
TEST(ZunRtcpPsfbAfbRemb, ReadsTheMessagesOfAStranger) {
  struct Message {
    std::string datagram;
    ZunFloat32 bitrate;
    std::vector<ZunRtpSourceId> sources;
  };
  const Message messages[] = {
      {"80c8000684f26af3eeab67ff86856605fed1e294000000470000c78581ca000684f26af301106474314550614168715566716b6a2b55000"
       "0"
       "8fce000684f26af30000000052454d42020185e0bb172a42c202861980cf000584f26af305000003c202861967ff66490000048b",
       99808,
       {0xBB172A42, 0xC2028619}},
      {"80c80006c2028619eeab6809a6921ccdcf52cb080000015700035db681ca0006c2028619011076445067456a763058634b3644397546000"
       "0"
       "8fce0006c20286190000000052454d420203964e0c90b4d384f26af380cf0005c20286190500000384f26af36809769700002856",
       235086,
       {0x0C90B4D3, 0x84F26AF3}},
      {"80c80006c2028619eeab6810435dcc63cf5bdf900000022600061e0c81ca0006c2028619011076445067456a763058634b3644397546000"
       "0"
       "8fce0005c20286190000000052454d420106a2c084f26af3",
       345472,
       {0x84F26AF3}},
  };
  for (const Message& message : messages) {
    SCOPED_TRACE(message.bitrate);
    const Parsed parsed(Hex(message.datagram));
    ASSERT_TRUE(parsed.ok);
    ASSERT_GE(parsed.count(), 3U);
    const ZunRtcpPsfbAfbRemb& remb = parsed[2].psfb.afb.remb;
    ASSERT_EQ(remb.type, 206);
    ASSERT_EQ(remb.afbType, ZUN_RTCPPSFBAFB_TYPE_REMB);
    EXPECT_EQ(remb.source, 0U);
    EXPECT_EQ(remb.bitrate, message.bitrate);
    EXPECT_EQ(std::vector<ZunRtpSourceId>(remb.sources.begin, remb.sources.end), message.sources);
  }
}

TEST(ZunRtcpPsfbAfbRemb, BitrateLimitIsExclusive) {
  LogCapture log;
  Remb remb;
  const ZunFloat32 largest = std::nextafter(kLimit, 0.0F);
  EXPECT_EQ(double{kLimit}, std::ldexp(262143.0, 63));
  EXPECT_TRUE(Set(remb, largest));
  EXPECT_TRUE(Set(remb, 0.0F));
  EXPECT_TRUE(Set(remb, 1.5F));
  for (const ZunFloat32 refused : {kLimit, std::nextafter(kLimit, kInfinity), std::numeric_limits<ZunFloat32>::max(),
                                   kInfinity, -kInfinity, kNan, -kNan, -1.0F, -1e-45F}) {
    EXPECT_FALSE(Set(remb, refused)) << refused;
    EXPECT_EQ(remb->bitrate, 1.5F);
    std::vector<ZunRtpSourceId> ids = {1};
    const ZunVector_ZunRtpSourceId list = Sources(ids);
    ZunRtcpPsfbAfbRemb made;
    EXPECT_EQ(ZunRtcpPsfbAfbRembConstructFull(&made, 1, refused, &list, nullptr), nullptr);
  }
  log.ExpectNone();
}

TEST(ZunRtcpPsfbAfbRemb, NegativeZeroIsStoredAndWrittenAsZero) {
  Remb remb;
  ASSERT_TRUE(Set(remb, -0.0F));
  EXPECT_TRUE(std::signbit(remb->bitrate));
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{0, 0}));
  EXPECT_FALSE(std::signbit(ReadBack(remb)));
}

TEST(ZunRtcpPsfbAfbRemb, TruncatesAndDoesNotRound) {
  Remb remb;
  ASSERT_TRUE(Set(remb, 262143.9F));
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{0, 262143}));
  ASSERT_TRUE(Set(remb, 262144.0F));
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{1, 131072}));
  ASSERT_TRUE(Set(remb, 524287.0F));  // 262143.5 * 2
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{1, 262143}));
  ASSERT_TRUE(Set(remb, 1000000.7F));
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{2, 250000}));
  ASSERT_TRUE(Set(remb, 0.99F));
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{0, 0}));
}

TEST(ZunRtcpPsfbAfbRemb, TheLargestBitrateHasTheLargestExponent) {
  Remb remb;
  ASSERT_TRUE(Set(remb, std::nextafter(kLimit, 0.0F)));
  EXPECT_EQ(Decoded(remb.bytes()), (Encoded{63, 262142}));
}

TEST(ZunRtcpPsfbAfbRemb, EncodesEveryPowerOfTwoAndItsNeighbours) {
  Remb remb;
  for (int exponent = -149; exponent <= 80; ++exponent) {
    const ZunFloat32 power = std::ldexp(1.0F, exponent);
    ASSERT_GT(power, 0.0F);
    ExpectEncoding(remb, std::nextafter(power, 0.0F));
    ExpectEncoding(remb, power);
    ExpectEncoding(remb, std::nextafter(power, kInfinity));
  }
}

TEST(ZunRtcpPsfbAfbRemb, EncodesEveryBitPatternAtEveryExponent) {
  Remb remb;
  std::mt19937 random(1);
  for (ZunUint32 exponent = 0; exponent <= 127 + 80; ++exponent) {
    std::vector<ZunUint32> fractions = {0, 0x7FFFFF, 0x3F, 0x40, 0x7FFF80};
    for (ZunUint32 bit = 0; bit < 23; ++bit) fractions.push_back(1U << bit);
    for (int i = 0; i < 16; ++i) fractions.push_back(random() & 0x7FFFFF);
    for (const ZunUint32 fraction : fractions) {
      const ZunFloat32 bitrate = std::bit_cast<ZunFloat32>(exponent << 23 | fraction);
      if (bitrate < kLimit) {
        ExpectEncoding(remb, bitrate);
      } else {
        EXPECT_FALSE(Set(remb, bitrate));
      }
    }
  }
}

TEST(ZunRtcpPsfbAfbRemb, DecodesEveryExponentExactly) {
  std::vector<ZunUint32> mantissas = {0, 262143, 250000};
  for (ZunUint32 bit = 0; bit < 18; ++bit) mantissas.push_back(1U << bit);
  for (ZunUint32 exponent = 0; exponent < 64; ++exponent) {
    for (const ZunUint32 mantissa : mantissas) {
      std::string wire = Golden("RembWithoutSources");
      wire[17] = static_cast<char>(exponent << 2 | mantissa >> 16);
      wire[18] = static_cast<char>(mantissa >> 8 & 0xFF);
      wire[19] = static_cast<char>(mantissa & 0xFF);
      const Received received(kRow, wire);
      ASSERT_TRUE(received.ok);
      EXPECT_EQ(received.sp()->psfb.afb.remb.bitrate,
                std::ldexp(static_cast<ZunFloat32>(mantissa), static_cast<int>(exponent)));
    }
  }
}

TEST(ZunRtcpPsfbAfbRemb, ABitrateThatWasPutBeyondTheWireFailsAfterTheCount) {
  Remb remb;
  Text out;
  for (const ZunFloat32 beyond : {std::ldexp(1.0F, 81), kInfinity, kNan}) {
    remb->bitrate = beyond;  // no setter lets it in
    ZunStringClear(out);
    EXPECT_FALSE(kRow.write_packet(remb.sp(), out, 0));
    EXPECT_EQ(ToHex(out.str()), ToHex(Hex("8FCE0004 00000000 00000000 52454D42 00")));
  }
}

TEST(ZunRtcpPsfbAfbRemb, TakesOneToTwoHundredFiftyFiveSources) {
  Remb remb;
  EXPECT_TRUE(Set(remb, std::vector<ZunRtpSourceId>(255, 7)));
  EXPECT_TRUE(Set(remb, std::vector<ZunRtpSourceId>{5}));
  EXPECT_FALSE(Set(remb, std::vector<ZunRtpSourceId>{}));
  EXPECT_FALSE(Set(remb, std::vector<ZunRtpSourceId>(256, 7)));
  ASSERT_EQ(ZunVector_ZunRtpSourceIdSize(&remb->sources), 1U);
  EXPECT_EQ(remb->sources.begin[0], 5U);
  ZunRtcpPsfbAfbRemb made;
  for (const std::size_t count : std::initializer_list<std::size_t>{0, 256}) {
    std::vector<ZunRtpSourceId> ids(count, 7);
    const ZunVector_ZunRtpSourceId list = Sources(ids);
    EXPECT_EQ(ZunRtcpPsfbAfbRembConstructFull(&made, 1, 1.0F, &list, nullptr), nullptr);
  }
}

TEST(ZunRtcpPsfbAfbRemb, ConstructFullTakesTheAllocatorOfTheSourcesAndNotItsOwn) {
  TestAllocator allocator;
  Remb remb(allocator);
  TestAllocator given;
  ASSERT_TRUE(Set(remb, std::vector<ZunRtpSourceId>{1, 2}));
  ZunRtcpPsfbAfbRemb made;
  ASSERT_EQ(ZunRtcpPsfbAfbRembConstructFull(&made, 1, 2.0F, &remb->sources, given), &made);
  EXPECT_EQ(ZunRtcpPsfbAfbRembGetAllocator(&made), allocator.get());
  EXPECT_EQ(given.calls(), 0U);
  ZunRtcpPsfbAfbRembDestruct(&made);
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbRembConstructFull(&made, 1, 2.0F, &remb->sources, given), nullptr);
}

TEST(ZunRtcpPsfbAfbRemb, ReceivedMessagesMayHaveNoSources) {
  const Received received(kRow, Golden("RembWithoutSources"));
  EXPECT_TRUE(ZunVector_ZunRtpSourceIdEmpty(&received.sp()->psfb.afb.remb.sources));
}

TEST(ZunRtcpPsfbAfbRemb, SourceCountIsReadAsSigned) {
  Remb remb;
  for (const std::size_t count : std::initializer_list<std::size_t>{1, 127, 128, 200, 255}) {
    SCOPED_TRACE(count);
    ASSERT_TRUE(Set(remb, std::vector<ZunRtpSourceId>(count, 7)));
    const std::string wire = remb.bytes();
    EXPECT_EQ(static_cast<unsigned char>(wire[16]), count);
    const Received received(kRow, wire);
    EXPECT_EQ(received.ok, count <= 127);
    EXPECT_EQ(ZunVector_ZunRtpSourceIdSize(&received.sp()->psfb.afb.remb.sources), count)
        << "those that are there are kept";
  }
}

TEST(ZunRtcpPsfbAfbRemb, AFewerOrMoreSourcesThanAnnouncedFail) {
  for (const int announced : {0, 1, 3, 128, 255}) {
    std::string wire = Golden("RembTwoSources");
    wire[16] = static_cast<char>(announced);
    const Received received(kRow, wire);
    EXPECT_FALSE(received.ok) << announced;
    EXPECT_EQ(received.sp()->psfb.afb.remb.bitrate, 1000000.0F);
    EXPECT_EQ(ZunVector_ZunRtpSourceIdSize(&received.sp()->psfb.afb.remb.sources),
              announced > 2 ? 2U : ZunSizeT(announced));
  }
}

TEST(ZunRtcpPsfbAfbRemb, AnotherIdentifierFails) {
  std::string wire = Golden("RembTwoSources");
  wire[15] = 'b';
  Received received(kRow, Golden("RembOneSource"));
  EXPECT_FALSE(received.Read(wire));
  EXPECT_EQ(ZunVector_ZunRtpSourceIdSize(&received.sp()->psfb.afb.remb.sources), 1U) << "the sources were not reached";
}

TEST(ZunRtcpPsfbAfbRemb, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, Golden("RembTwoSources"), [](const Received& received, ZunSizeT size, bool) {
    const ZunRtcpPsfbAfbRemb& p = received.sp()->psfb.afb.remb;
    EXPECT_FALSE(received.ok);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.bitrate, size >= 16 ? 1000000.0F : 0.0F);
    EXPECT_EQ(ZunVector_ZunRtpSourceIdSize(&p.sources), size >= 16 ? (size - 16) / 4 : 0U);
  });
}

TEST(ZunRtcpPsfbAfbRemb, AnEndBeyondTheStringFailsWithAllItsSources) {
  const Received received(kRow, Golden("RembTwoSources"), ZunAllocatorGetSystem(), {.beyond = 4});
  EXPECT_FALSE(received.ok);
  EXPECT_EQ(ZunVector_ZunRtpSourceIdSize(&received.sp()->psfb.afb.remb.sources), 2U);
}

TEST(ZunRtcpPsfbAfbRemb, SourcesThatFitAreReadBeforeARefusal) {
  Remb remb;
  ASSERT_TRUE(Set(remb, std::vector<ZunRtpSourceId>(10, 7)));
  TestAllocator four;
  four.RefuseAbove(4 * sizeof(ZunRtpSourceId));
  const Received received(kRow, remb.bytes(), four.get());
  EXPECT_FALSE(received.ok);
  EXPECT_EQ(ZunVector_ZunRtpSourceIdSize(&received.sp()->psfb.afb.remb.sources), 4U);
}

TEST(ZunRtcpPsfbAfbRemb, RefusedAssignmentsLeaveNoSourcesAndTheBitrateThatWas) {
  TestAllocator allocator;
  Remb remb(allocator);
  ASSERT_TRUE(Set(remb, std::vector<ZunRtpSourceId>{1}));
  ASSERT_TRUE(Set(remb, 5.0F));
  const Received source(kRow, Golden("RembTwoSources"));
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbRembAssign(remb, &source.sp()->psfb.afb.remb), nullptr);
  EXPECT_EQ(remb->bitrate, 5.0F);
  EXPECT_EQ(remb->sender, 0U);
  EXPECT_EQ(remb->sources.begin, nullptr);
  EXPECT_FALSE(Set(remb, std::vector<ZunRtpSourceId>{1, 2, 3}));
}

TEST(ZunRtcpPsfbAfbRemb, AFreshReadAllocatesOnce) {
  TestAllocator allocator;
  const Received received(kRow, Golden("RembTwoSources"), allocator.get());
  EXPECT_EQ(allocator.calls(), 1U);
}

}  // namespace
