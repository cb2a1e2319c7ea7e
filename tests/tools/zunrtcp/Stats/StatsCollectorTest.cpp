#include "tools/zunrtcp/Stats/StatsCollector.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/Bytes.h"

namespace zunrtcp {

namespace {

const Path kThere{{"192.0.2.1", 5005}, {"192.0.2.2", 5007}};
const Path kBack = kThere.Reversed();

// A call as it is told, datagram by datagram.
class Call {
 public:
  void Say(double seconds, const Path& path, const std::string& hex) {
    RtcpDatagram datagram;
    const double whole = std::floor(seconds);
    datagram.seconds = 1795222299 + static_cast<std::int64_t>(whole);
    datagram.microseconds = static_cast<std::uint32_t>(std::lround((seconds - whole) * 1e6));
    datagram.source = path.from;
    datagram.destination = path.to;
    datagram.payload = test::Hex(hex);
    stats_.Add(datagram);
  }

  const StatsCollector& Told() {
    stats_.Finish();
    return stats_;
  }
  // The stream of that name; a failure and the first one when there is none.
  const Stream& Find(const std::string& name) {
    for (const auto& stream : stats_.streams()) {
      if (stream->Name() == name) return *stream;
    }
    ADD_FAILURE() << "no stream " << name;
    return *stats_.streams().at(0);
  }

 private:
  StatsCollector stats_{Dialect::registered};
};

// SR of 0xA at NTP 100 s, RTP 8000, 50 packets, 8000 octets; at 102 s, RTP 24000, 150 packets, 24000 octets.
const std::string kFirstSr = "80C80006 0000000A 00000064 00000000 00001F40 00000032 00001F40";
const std::string kSecondSr = "80C80006 0000000A 00000066 00000000 00005DC0 00000096 00005DC0";
// RR of 0xB about 0xA: fraction 64/256, 10 lost, highest 1000, jitter 160, LSR 0x00640000, DLSR 0.5 s.
const std::string kFirstRr = "81C90007 0000000B 0000000A 4000000A 000003E8 000000A0 00640000 00008000";
// The same later: 15 lost, highest 1100, jitter 80, LSR 0x00660000, DLSR 0.25 s.
const std::string kSecondRr = "81C90007 0000000B 0000000A 0D00000F 0000044C 00000050 00660000 00004000";

double Last(const Stream& stream, Metric metric) { return stream[metric].summary().last; }

TEST(StatsCollector, ReckonsReports) {
  Call call;
  call.Say(0.00, kThere, kFirstSr);
  call.Say(0.54, kBack, kFirstRr);  // 540 ms after the SR, of which 500 at the peer: 40 ms
  call.Say(2.00, kThere, kSecondSr);
  call.Say(2.28, kBack, kSecondRr);  // 280 - 250 = 30 ms
  call.Told();
  const Stream& stream = call.Find("0x0000000a");
  EXPECT_EQ(stream.path, kThere);
  EXPECT_EQ(stream.sender.reports, 2U);
  EXPECT_EQ(stream.reporter.blocks, 2U);
  EXPECT_EQ(stream.reporter.lost, 15);
  EXPECT_EQ(stream.clock.Rate(), 8000U);  // 16000 in 2 s
  EXPECT_NEAR(stream[Metric::RoundTrip].points()[0].value, 40, 1e-3);
  EXPECT_NEAR(stream[Metric::RoundTrip].points()[1].value, 30, 1e-3);
  EXPECT_NEAR(stream[Metric::FractionLost].points()[0].value, 25, 1e-9);  // 64 of 256
  EXPECT_NEAR(Last(stream, Metric::Loss), 5, 1e-9);                       // 5 of 100
  EXPECT_NEAR(stream[Metric::Jitter].points()[0].value, 20, 1e-9);        // 160 / 8000 s
  EXPECT_EQ(stream.UnitOf(kMetrics[static_cast<std::size_t>(Metric::Jitter)]), "ms");
  EXPECT_NEAR(Last(stream, Metric::SentRate), 64, 1e-6);  // 16000 octets in 2 s
}

TEST(StatsCollector, LeavesJitterInTicksWhereNoClockRateIsKnown) {
  Call call;
  call.Say(0, kBack, kFirstRr);
  call.Told();
  const Stream& stream = call.Find("0x0000000a");
  EXPECT_EQ(Last(stream, Metric::Jitter), 160);
  EXPECT_EQ(stream.UnitOf(kMetrics[static_cast<std::size_t>(Metric::Jitter)]), "ticks");
}

// XR of the receiver with an RRTR of NTP 50.5 s; DLRR of the sender about it: LRR 0x00328000, DLRR 0.125 s.
TEST(StatsCollector, ReckonsTheRoundTripOfExtendedReports) {
  Call call;
  call.Say(1.0, kBack, "80CF0004 0000000B 04000002 00000032 80000000");
  call.Say(1.2, kThere, "80CF0005 0000000A 05000003 0000000B 00328000 00002000");
  call.Told();
  EXPECT_NEAR(Last(call.Find("0x0000000a"), Metric::RoundTripXr), 75, 1e-3);  // 200 - 125
}

// NACK about 0xA: 100 and, by the bits, 101 and 103; then 103 again and 104.
TEST(StatsCollector, TellsNumbersAskedForAgain) {
  Call call;
  call.Say(1, kBack, "81CD0003 0000000B 0000000A 00640005");
  call.Say(2, kBack, "81CD0003 0000000B 0000000A 00670001");
  call.Told();
  const NackTotals& nack = call.Find("0x0000000a").nack;
  EXPECT_EQ(nack.messages, 2U);
  EXPECT_EQ(nack.numbers, 4U);
  EXPECT_EQ(nack.repeated, 1U);
}

// An SSRC of 0 in a NACK stands for the only stream that comes from the other side, wherever its SSRC is learnt.
TEST(StatsCollector, TakesAnUnnamedSourceForTheOnlyStream) {
  Call call;
  call.Say(1, kBack, "81CD0003 0000000B 00000000 00640000");
  call.Say(2, kThere, kFirstSr);
  call.Say(3, kBack, "81CD0003 0000000B 00000000 00650000");
  EXPECT_EQ(call.Told().streams().size(), 1U);
  EXPECT_EQ(call.Find("0x0000000a").nack.messages, 2U);
}

TEST(StatsCollector, MarksEvents) {
  Call call;
  call.Say(0, kThere, kFirstSr);
  call.Say(1, kBack, "81CE0002 0000000B 0000000A");                    // PLI
  call.Say(2, kBack, "84CE0004 0000000B 00000000 0000000A 01000000");  // FIR
  call.Say(3, kThere, "81CB0001 0000000A");                            // BYE
  call.Told();
  const Stream& stream = call.Find("0x0000000a");
  ASSERT_EQ(stream.events.size(), 3U);
  EXPECT_EQ(stream.Count(EventKind::Pli), 1U);
  EXPECT_EQ(stream.Count(EventKind::Fir), 1U);
  EXPECT_EQ(stream.Count(EventKind::Bye), 1U);
  EXPECT_EQ(stream.events[1].seconds, 2);
  EXPECT_EQ(stream.events[1].sender, 0xBU);
}

TEST(StatsCollector, TellsTheLeavingOfAReceiverWithWhatItReportedOn) {
  Call call;
  call.Say(0, kBack, kFirstRr);
  call.Say(1, kBack, "81CB0001 0000000B");
  EXPECT_EQ(call.Told().streams().size(), 1U);
  EXPECT_EQ(call.Find("0x0000000a").Count(EventKind::Bye), 1U);
}

// REMB of 250000 * 2^2 bit/s about 0xA; TMMBR of 100000 * 2^1 bit/s.
TEST(StatsCollector, TellsBitRatesThatReceiversSet) {
  Call call;
  call.Say(1, kBack, "8FCE0005 0000000B 00000000 52454D42 010BD090 0000000A");
  call.Say(2, kBack, "83CD0004 0000000B 00000000 0000000A 070D4000");
  call.Told();
  EXPECT_EQ(Last(call.Find("0x0000000a"), Metric::Remb), 1000);
  EXPECT_EQ(Last(call.Find("0x0000000a"), Metric::Limit), 200);
}

// CCFB about 0xA, numbers 10 to 13: arrived 100/1024 s and 50/1024 s before the report, lost, arrived at an unknown
// time. The spread is 50/1024 s.
TEST(StatsCollector, TellsOfCongestionControlFeedback) {
  Call call;
  call.Say(1, kBack, "8BCD0006 0000000B 0000000A 000A0004 80648032 00009FFF 00010000");
  EXPECT_EQ(call.Told().refused(), 0U);
  const Stream& stream = call.Find("0x0000000a");
  EXPECT_EQ(stream.feedback.received(), 3U);
  EXPECT_EQ(stream.feedback.lost(), 1U);
  EXPECT_NEAR(Last(stream, Metric::ArrivalSpread), 50 * 1000.0 / 1024, 1e-6);
}

// Transport-wide feedback from number 1 on, two-bit statuses: small delta, lost, small delta. Deltas 4 and 40, so 10 ms
// between the arrivals.
TEST(StatsCollector, TellsOfTransportWideFeedbackByPath) {
  Call call;
  call.Say(1, kBack, "8FCD0005 0000000B 0000000A 00010003 00000100 D1000428");
  EXPECT_EQ(call.Told().refused(), 0U);
  const Stream& stream = call.Find("transport-wide");
  EXPECT_EQ(stream.path, kThere);
  EXPECT_EQ(stream.feedback.received(), 2U);
  EXPECT_EQ(stream.feedback.lost(), 1U);
  EXPECT_NEAR(Last(stream, Metric::ArrivalSpread), 10, 1e-6);
}

// The receiver sends from and to ports of its own: what it says belongs to the stream all the same.
TEST(StatsCollector, JoinsReportsThatTakeOtherPorts) {
  const Path other{{"192.0.2.2", 6001}, {"192.0.2.1", 6003}};
  Call call;
  call.Say(0, kThere, kFirstSr);
  call.Say(0.6, other, kFirstRr);
  call.Say(0.7, other, "8FCD0005 0000000B 0000000A 00010003 00000100 D1000428");
  call.Told();
  const Stream& stream = call.Find("0x0000000a");
  EXPECT_EQ(stream.path, kThere);
  EXPECT_EQ(stream.reporter.blocks, 1U);
  EXPECT_NEAR(Last(stream, Metric::RoundTrip), 100, 1e-3);
  EXPECT_EQ(call.Find("transport-wide").path, kThere);
}

TEST(StatsCollector, KeepsStreamsOfTheSameSsrcOnOtherPortsApart) {
  const Path other{{"192.0.2.1", 6005}, {"192.0.2.2", 6007}};
  Call call;
  call.Say(0, kThere, kFirstSr);
  call.Say(0, other, kFirstSr);
  call.Say(0.54, other.Reversed(), kFirstRr);
  const StatsCollector& stats = call.Told();
  ASSERT_EQ(stats.streams().size(), 2U);
  EXPECT_EQ(stats.streams()[0]->reporter.blocks, 0U);
  EXPECT_EQ(stats.streams()[1]->reporter.blocks, 1U);
}

TEST(StatsCollector, CountsWhatIsRefusedAndTellsTheRest) {
  Call call;
  call.Say(0, kThere, kFirstSr + " 81C90001 0000000B");
  EXPECT_EQ(call.Told().refused(), 1U);
  EXPECT_EQ(call.Find("0x0000000a").sender.reports, 1U);
}

TEST(StatsCollector, HoldsNoMoreStreamsThanItSays) {
  Call call;
  for (unsigned i = 0; i < StreamTable::kMostStreams + 10; ++i) {
    std::string sr = test::Hex(kFirstSr);
    std::string digits;
    AppendNumber(&digits, i + 1, 4);
    sr.replace(4, 4, digits);
    call.Say(i * 0.001, kThere, test::ToHex(sr));
  }
  EXPECT_EQ(call.Told().streams().size(), StreamTable::kMostStreams);
  EXPECT_TRUE(call.Told().incomplete());
}

}  // namespace

}  // namespace zunrtcp
