// Every field and builder of every kind: what is built through them are the golden octets, and what is read back from
// those is what was put in.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Cpp/Time.h"
#include "tests/support/Samples.h"

namespace {

using namespace zun::rtcp;
using namespace std::chrono_literals;
using test::Golden;
using test::Hex;
using test::TestAllocator;

// The library's, whatever it announces: through the row of the kind.
template <class Class>
std::string Written(const Class& object) {
  return test::ToHex(test::Bytes(test::kRowOf<ObjectOf<Class>>, *test::AsSubpacket(object.get())));
}
std::string GoldenHex(const std::string& name) { return test::ToHex(Golden(name)); }

// The only subpacket of a sample.
template <class Class>
class ReadFrom {
 public:
  explicit ReadFrom(const std::string& name) {
    EXPECT_TRUE(packet_.decode(octets_of(Golden(name)))) << name;
    view_ = packet_.find<Class>();
    EXPECT_TRUE(view_) << name;
  }
  const View<Class>* operator->() const { return &*view_; }
  const View<Class>& operator*() const { return *view_; }

 private:
  Packet packet_;
  std::optional<View<Class>> view_;
};

template <class List>
auto Values(const List& list) {
  return std::vector<typename List::value_type>(list.begin(), list.end());
}
std::string Text(std::span<const std::byte> octets) {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}
std::span<const std::byte> Data(std::string_view text) { return octets_of(text); }

// ---- reports

ReportBlock SomeBlock() {
  return {.ssrc = 0xA1A2A3A4,
          .fraction_lost = 0x40,
          .cum_num_packet_lost = 0xFFFFFF,
          .highest_seq_num_rcvd = 0x11234,
          .inter_arrival_jitter = 0x2A,
          .last_sr = 0x8899AABB,
          .delay_last_sr = 0x10000};
}

TEST(Fields, Sr) {
  Sr sr(0x01020304);
  sr.ntp_timestamp(0xE1E2E3E4F1F2F3F4);
  sr.rtp_timestamp(0x11121314);
  sr.sender_packet_cnt(0x21222324);
  sr.sender_octet_cnt(0x31323334);
  ASSERT_TRUE(sr.add(SomeBlock()));
  ASSERT_TRUE(sr.profile_specific_ext(Data("ext.")));
  EXPECT_FALSE(sr.profile_specific_ext(Data("ext")));
  EXPECT_EQ(Written(sr), GoldenHex("SrOneBlock"));

  const ReadFrom<Sr> read("SrOneBlock");
  EXPECT_EQ(read->sender_source(), 0x01020304U);
  EXPECT_EQ(read->ntp_timestamp(), 0xE1E2E3E4F1F2F3F4U);
  EXPECT_EQ(read->rtp_timestamp(), 0x11121314U);
  EXPECT_EQ(read->sender_packet_cnt(), 0x21222324U);
  EXPECT_EQ(read->sender_octet_cnt(), 0x31323334U);
  EXPECT_EQ(read->report_blocks().size(), 1U);
  EXPECT_EQ(Text(read->profile_specific_ext()), "ext.");
}

TEST(Fields, Rr) {
  Rr rr;
  rr.sender_source(0x01020304);
  ASSERT_TRUE(rr.report_blocks().push_back(SomeBlock()));
  ASSERT_TRUE(rr.profile_specific_ext(Data("ext.")));
  EXPECT_FALSE(rr.profile_specific_ext(Data("ext")));
  EXPECT_EQ(Written(rr), GoldenHex("RrOneBlock"));

  const ReadFrom<Rr> read("RrOneBlock");
  EXPECT_EQ(read->sender_source(), 0x01020304U);
  ASSERT_EQ(read->report_blocks().size(), 1U);
  EXPECT_EQ(packets_lost(read->report_blocks()[0]), -1);
  EXPECT_EQ(Text(read->profile_specific_ext()), "ext.");
}

TEST(Fields, PacketsLostSaturates) {
  ReportBlock block{};
  packets_lost(block, -2);
  EXPECT_EQ(block.cum_num_packet_lost, 0xFFFFFEU);
  EXPECT_EQ(packets_lost(block), -2);
  packets_lost(block, 1 << 24);
  EXPECT_EQ(packets_lost(block), 0x7FFFFF);
}

TEST(Fields, Sdes) {
  Sdes sdes;
  ASSERT_TRUE(sdes.add(0x01020304, ZUN_RTCPSDESITEM_TYPE_CNAME, "alic"));
  ASSERT_TRUE(sdes.add(0x11121314, ZUN_RTCPSDESITEM_TYPE_CNAME, "bob"));
  ASSERT_TRUE(sdes.add(0x11121314, ZUN_RTCPSDESITEM_TYPE_PRIV,
                       "\x03"
                       "abc-----"));
  ASSERT_TRUE(sdes.add(0x11121314, ZUN_RTCPSDESITEM_TYPE_MID, ""));
  ASSERT_TRUE(sdes.add(0x11121314, ZUN_RTCPSDESITEM_TYPE_TOOL, std::string_view("\0", 1)));
  EXPECT_FALSE(sdes.add(0x11121314, ZUN_RTCPSDESITEM_TYPE_NOTE, std::string(256, 'x')));
  EXPECT_FALSE(sdes.add(7, ZUN_RTCPSDESITEM_TYPE_NOTE, std::string(256, 'x')));
  EXPECT_EQ(Written(sdes), GoldenHex("SdesTwoChunks"));

  const ReadFrom<Sdes> read("SdesTwoChunks");
  ASSERT_EQ(read->chunks().size(), 2U);
  EXPECT_EQ(read->chunks()[1].ssrc(), 0x11121314U);
  EXPECT_EQ(read->chunks()[1].items().size(), 4U);
  EXPECT_EQ(read->chunks().front().items().front().type(), ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_EQ(read->text(0x11121314, ZUN_RTCPSDESITEM_TYPE_CNAME), "bob");
  EXPECT_EQ(read->text(0x11121314, ZUN_RTCPSDESITEM_TYPE_TOOL), std::string_view("\0", 1));
  EXPECT_EQ(read->text(0x11121314, ZUN_RTCPSDESITEM_TYPE_LOC), "");
  EXPECT_EQ(read->text(7, ZUN_RTCPSDESITEM_TYPE_CNAME), "");
}

TEST(Fields, SdesPrivInItsParts) {
  SdesItem item;
  item.type(ZUN_RTCPSDESITEM_TYPE_PRIV);
  const auto parts = [&](std::string_view text) {
    EXPECT_TRUE(item.text(text));
    const auto priv = item.priv();
    return priv ? std::string(priv->prefix) + "=" + std::string(priv->value) : "none";
  };
  EXPECT_EQ(parts("\003abc-----"), "abc=-----");
  EXPECT_EQ(parts("\003abc"), "abc=");
  EXPECT_EQ(parts(std::string_view("\000x", 2)), "=x");
  EXPECT_EQ(parts("\004abc"), "none");
  EXPECT_EQ(parts(std::string_view("\000", 1)), "none");
  EXPECT_EQ(parts(""), "none");
  EXPECT_EQ(parts("\003abc-----"), "abc=-----");
  item.type(ZUN_RTCPSDESITEM_TYPE_NOTE);
  EXPECT_FALSE(item.priv());
}

TEST(Fields, SdesByItsLists) {
  SdesChunk chunk(1);
  chunk.ssrc(0x01020304);
  SdesItem item;
  item.type(ZUN_RTCPSDESITEM_TYPE_CNAME);
  ASSERT_TRUE(item.text("alice"));
  EXPECT_FALSE(item.text(std::string(256, 'x')));
  EXPECT_EQ(item.text(), "alice");
  ASSERT_TRUE(chunk.items().push_back(item));
  Sdes sdes;
  ASSERT_TRUE(sdes.chunks().push_back(std::move(chunk)));
  EXPECT_EQ(Written(sdes), GoldenHex("SdesOneChunk"));
  // An element may be changed in its place.
  ASSERT_TRUE(sdes.chunks().back().items().back().text("bob"));
  EXPECT_EQ(sdes.text(0x01020304, ZUN_RTCPSDESITEM_TYPE_CNAME), "bob");
}

TEST(Fields, Bye) {
  Bye bye;
  ASSERT_TRUE(bye.add(0x01020304));
  ASSERT_TRUE(bye.sources().push_back(0x11121314));
  ASSERT_TRUE(bye.reason("camera o"));
  EXPECT_FALSE(bye.reason(std::string(256, 'x')));
  EXPECT_EQ(Written(bye), GoldenHex("ByeWithReason"));

  const ReadFrom<Bye> read("ByeWithReason");
  EXPECT_EQ(Values(read->sources()), (std::vector<Ssrc>{0x01020304, 0x11121314}));
  EXPECT_EQ(read->reason(), "camera o");
}

TEST(Fields, App) {
  App app;
  app.source(0x01020304);
  ASSERT_TRUE(app.name("name"));
  EXPECT_FALSE(app.name("names"));
  ASSERT_TRUE(app.data(Data("data 123")));
  EXPECT_EQ(Written(app), GoldenHex("AppWithData"));

  const ReadFrom<App> read("AppWithData");
  EXPECT_EQ(read->source(), 0x01020304U);
  EXPECT_EQ(read->name(), "name");
  EXPECT_EQ(Text(read->data()), "data 123");
}

TEST(Fields, Unknown) {
  const ReadFrom<Unknown> read("UnknownWithData");
  Unknown unknown;
  ASSERT_TRUE(unknown.type(0));
  ASSERT_TRUE(unknown.type(255));
  EXPECT_EQ(unknown.type(), 255);
  ASSERT_TRUE(unknown.type(read->type()));
  EXPECT_FALSE(unknown.type(ZUN_RTCPSUBPACKET_TYPE_SR));
  EXPECT_FALSE(unknown.type(256));
  EXPECT_FALSE(unknown.type(-1));
  ASSERT_TRUE(unknown.subtype(3));
  EXPECT_FALSE(unknown.subtype(32));
  ASSERT_TRUE(unknown.data(Data("\1\2\3\4\5\6\7\10")));
  EXPECT_FALSE(unknown.data(Data("\1")));
  EXPECT_EQ(Written(unknown), GoldenHex("UnknownWithData"));
  EXPECT_EQ(read->subtype(), 3);
  EXPECT_EQ(Text(read->data()), Hex("01020304 05060708"));
}

// ---- transport-layer feedback

TEST(Fields, Nack) {
  Nack nack(0x01020304, 0x05060708);
  for (const int seq : {100, 101, 116, 65535}) {
    ASSERT_TRUE(nack.add(static_cast<std::uint16_t>(seq)));
  }
  EXPECT_TRUE(nack.will_require_new_seq_map(0));
  EXPECT_FALSE(nack.will_require_new_seq_map(102));
  for (std::uint16_t seq = 0; seq < 3; ++seq) ASSERT_TRUE(nack.add(seq));
  nack.remove(1);
  EXPECT_EQ(Written(nack), GoldenHex("NackThreeMaps"));

  const ReadFrom<Nack> read("NackThreeMaps");
  EXPECT_EQ(read->sender(), 0x01020304U);
  EXPECT_EQ(read->source(), 0x05060708U);
  EXPECT_EQ(read->lost_count(), 6U);
  EXPECT_EQ(read->seq_maps()[0].map, 0x8001);
  const auto lost = read->lost();
  EXPECT_EQ(std::vector<int>(lost.begin(), lost.end()), (std::vector<int>{100, 101, 116, 65535, 0, 2}));
  EXPECT_EQ(std::ranges::count(lost, 116), 1);
  EXPECT_TRUE(Nack().lost().empty());
  EXPECT_EQ(Nack().lost().begin(), Nack().lost().end());
}

TEST(Fields, TheNumbersOfANackAreThoseOfTheEnumerationInC) {
  for (const std::uint16_t map : std::initializer_list<std::uint16_t>{0x0000, 0x0001, 0x8000, 0xFFFF, 0xA5A5}) {
    Nack nack;
    ASSERT_TRUE(nack.seq_maps().push_back({65530, map}));
    ASSERT_TRUE(nack.seq_maps().push_back({7, map}));
    std::vector<std::uint16_t> expected;
    ZunRtcpRtpfbNackGenerateSeqNumbers(
        nack.get(),
        [](const ZunRtcpRtpfbNack*, ZunUint16 seq, ZunVoidPtr all) {
          static_cast<std::vector<std::uint16_t>*>(all)->push_back(seq);
        },
        &expected);
    const auto lost = nack.lost();
    EXPECT_EQ(std::vector<std::uint16_t>(lost.begin(), lost.end()), expected);
    EXPECT_EQ(nack.lost_count(), expected.size());
  }
}

TEST(Fields, Tmmbr) {
  Tmmbr tmmbr(0x01020304, 0);
  ASSERT_TRUE(tmmbr.add(0x05060708, 100000));
  ASSERT_TRUE(tmmbr.fci().push_back({0x090A0B0C, 0, 0xFFFFFFFF}));
  EXPECT_EQ(Written(tmmbr), GoldenHex("TmmbrTwoEntries"));
  const ReadFrom<Tmmbr> read("TmmbrTwoEntries");
  EXPECT_EQ(read->fci()[0].max_bitrate, 100000U);
}

TEST(Fields, Tmmbn) {
  Tmmbn tmmbn(0x01020304, 0x05060708);
  tmmbn.max_bitrate(0xFFFFFFFE);
  EXPECT_EQ(Written(tmmbn), GoldenHex("Tmmbn"));
  EXPECT_EQ(ReadFrom<Tmmbn>("Tmmbn")->max_bitrate(), 0xFFFFFFFEU);
}

TEST(Fields, TransportCc) {
  TransportCc feedback(0x61, 0x62);
  feedback.packet_count(7);
  ASSERT_TRUE(feedback.record(1, 65ms));
  EXPECT_EQ(Written(feedback), GoldenHex("TransportCcOnePacket"));
  EXPECT_EQ(feedback.latest_time(), 65000000);
  EXPECT_EQ(feedback.estimated_packets_remaining(64),
            ZunRtcpRtpfbTransportCcGetEstimatedPacketsRemaining(feedback.get(), 64));

  const ReadFrom<TransportCc> read("TransportCcMixed");
  EXPECT_EQ(read->base_seq(), 65534);
  EXPECT_EQ(read->ref_time(), -2);
  EXPECT_EQ(read->packet_count(), 42);
  EXPECT_EQ(read->packet_info().size(), 29U);
  TransportCc other;
  other.base_seq(3);
  other.ref_time(-4);
  other.latest_time(5);
  EXPECT_EQ(other.get()->baseSeq, 3);
  EXPECT_EQ(other.get()->refTime, -4);
  EXPECT_EQ(other.get()->latestTime, 5);
}

TEST(Fields, TransportCcRecordsWhatWasLostBetween) {
  TransportCc feedback;
  ASSERT_TRUE(feedback.record(65534, 100ms));
  ASSERT_TRUE(feedback.record(1, MonotonicClock::time_point(101ms)));
  EXPECT_FALSE(feedback.record(65535, 102ms));  // before the last
  EXPECT_FALSE(feedback.record(1, 102ms));      // once more
  EXPECT_FALSE(feedback.record(9, 1h));         // no delta holds it
  ASSERT_EQ(feedback.packet_info().size(), 4U);

  TransportCc in_c;
  ASSERT_TRUE(in_c.add_packet(true, 65534, 100000000));
  ASSERT_TRUE(in_c.add_packet(false, 65535, 0));
  ASSERT_TRUE(in_c.add_packet(false, 0, 0));
  ASSERT_TRUE(in_c.add_packet(true, 1, 101000000));
  EXPECT_EQ(Written(feedback), Written(in_c));

  std::vector<Arrival> arrivals;
  feedback.for_each_arrival([&](const Arrival& arrival) { arrivals.push_back(arrival); });
  ASSERT_EQ(arrivals.size(), 4U);
  EXPECT_EQ(arrivals[0].seq, 65534);
  EXPECT_EQ(arrivals[0].time, 100ms);
  EXPECT_FALSE(arrivals[1].received);
  EXPECT_FALSE(arrivals[1].time);
  EXPECT_EQ(arrivals[3].seq, 1);
  EXPECT_TRUE(arrivals[3].received);
  EXPECT_EQ(arrivals[3].time, 101ms);
}

// Sequence numbers wrap: what is up to half of them ahead of what is next came after it, all else before it.
TEST(Fields, TransportCcRecordsHalfOfTheSequenceNumbersAsLost) {
  TransportCc feedback;
  ASSERT_TRUE(feedback.record(9, 100ms));
  EXPECT_FALSE(feedback.record(10 + 0x8000, 101ms));
  EXPECT_EQ(feedback.packet_info().size(), 1U);
  EXPECT_TRUE(feedback.record(10 + 0x7FFF, 101ms));
  EXPECT_EQ(feedback.packet_info().size(), 1U + 0x7FFF + 1U);
}

TEST(Fields, TransportCcRecordsEachOfManyThatWereLost) {
  TransportCc feedback;
  ASSERT_TRUE(feedback.record(10, 100ms));
  ASSERT_TRUE(feedback.record(15, 101ms));
  std::vector<std::uint16_t> lost;
  feedback.for_each_arrival([&](const Arrival& arrival) {
    if (!arrival.received) lost.push_back(arrival.seq);
  });
  EXPECT_EQ(lost, (std::vector<std::uint16_t>{11, 12, 13, 14}));
}

TEST(Fields, TransportCcRecordsWithoutAnAllocationWhatThereIsRoomFor) {
  TestAllocator mine;
  TransportCc feedback(mine.get());
  ASSERT_TRUE(feedback.packet_info().reserve(5));
  mine.RefuseFrom(0);
  EXPECT_TRUE(feedback.record(1, 100ms));
  EXPECT_TRUE(feedback.record(2, 101ms));
  EXPECT_TRUE(feedback.record(3, 102ms));
  EXPECT_TRUE(feedback.record(5, 103ms));
  EXPECT_EQ(mine.refused(), 0U);
  EXPECT_FALSE(feedback.record(6, 104ms));
}

TEST(Fields, TransportCcRecordsAllOrNothingWhenMemoryIsRefused) {
  test::ForEveryRefusal([](TestAllocator& refusing) {
    TransportCc feedback(refusing.get());
    const bool first = feedback.record(1, 1ms);
    const std::size_t before = feedback.packet_info().size();
    const bool second = first && feedback.record(9, 2ms);
    EXPECT_EQ(feedback.packet_info().size(), second ? 9U : before);
  });
}

TEST(Fields, Ccfb) {
  CcfbStream first(0x11121314);
  ASSERT_TRUE(first.add(65535, true, 0, 5));
  ASSERT_TRUE(first.add(0, false, 0, 0));
  EXPECT_FALSE(first.add(7, true, 0, 0));
  ASSERT_TRUE(first.packet_metrics().push_back({1, 0, 0x1FFF}));
  CcfbStream second;
  second.ssrc(0x21222324);
  second.begin_seq(10);
  ASSERT_TRUE(second.packet_metrics().push_back({1, 0, 0}));
  ASSERT_TRUE(second.packet_metrics().push_back({1, 0, 256}));
  Ccfb ccfb(0x01020304);
  ccfb.send_timestamp(0xDEADBEEF);
  ASSERT_TRUE(ccfb.add(first));
  ASSERT_TRUE(ccfb.add(std::move(second)));
  EXPECT_EQ(Written(ccfb), GoldenHex("CcfbTwoStreams"));

  const ReadFrom<Ccfb> read("CcfbTwoStreams");
  EXPECT_EQ(read->sender(), 0x01020304U);
  EXPECT_EQ(read->send_timestamp(), 0xDEADBEEF);
  ASSERT_EQ(read->streams().size(), 2U);
  EXPECT_EQ(read->streams()[0].ssrc(), 0x11121314U);
  EXPECT_EQ(read->streams()[0].begin_seq(), 65535);
  EXPECT_EQ(read->streams()[0].packet_metrics()[2].arrivalTimeOffset, 0x1FFF);
  ccfb.sender(9);
  EXPECT_EQ(ccfb.sender(), 9U);
  ccfb.send_timestamp_from_monotonic(1500ms);
  EXPECT_EQ(ccfb.send_timestamp() & 0xFFFF, 0x8000U);
}

TEST(Fields, Abafb) {
  Abafb abafb(0x01020304, 0x05060708);
  abafb.timestamp(0x11121314);
  abafb.delay(3000);
  abafb.data_rate(0x21222324);
  abafb.loss_rate(0x31323334);
  abafb.aba_data_rate(0x41424344);
  EXPECT_EQ(Written(abafb), GoldenHex("RtpfbAbafb"));
  const ReadFrom<Abafb> read("RtpfbAbafb");
  EXPECT_EQ(read->timestamp(), 0x11121314U);
  EXPECT_EQ(read->delay(), 3000U);
  EXPECT_EQ(read->data_rate(), 0x21222324U);
  EXPECT_EQ(read->loss_rate(), 0x31323334U);
  EXPECT_EQ(read->aba_data_rate(), 0x41424344U);
  EXPECT_FALSE(read->calculate_delay());
  abafb.timestamp_time(MonotonicClock::now().time_since_epoch() - 1s);
  EXPECT_TRUE(abafb.calculate_delay());
  EXPECT_GE(abafb.delay(), 1000000U);
}

TEST(Fields, UnknownRtpfb) {
  const ReadFrom<UnknownRtpfb> read("RtpfbUnknown");
  UnknownRtpfb unknown(0x01020304, 0x05060708);
  ASSERT_TRUE(unknown.fmt(read->fmt()));
  EXPECT_FALSE(unknown.fmt(ZUN_RTCPRTPFB_TYPE_NACK));
  EXPECT_FALSE(unknown.fmt(32));
  ASSERT_TRUE(unknown.data(read->data()));
  EXPECT_FALSE(unknown.data(Data("x")));
  EXPECT_EQ(Written(unknown), GoldenHex("RtpfbUnknown"));
  EXPECT_EQ(Text(read->data()), Hex("A0A1A2A3 A4A5A6A7"));
}

// ---- payload-specific feedback

TEST(Fields, Pli) {
  Pli pli(0x01020304, 0x11121314);
  EXPECT_EQ(Written(pli), GoldenHex("Pli"));
  ASSERT_TRUE(pli.profile_specific_ext(Data(Hex("A1A2A3A4 A5A6A7A8"))));
  EXPECT_FALSE(pli.profile_specific_ext(Data("x")));
  EXPECT_EQ(Written(pli), GoldenHex("PliWithExtension"));
  EXPECT_EQ(Text(ReadFrom<Pli>("PliWithExtension")->profile_specific_ext()), Hex("A1A2A3A4 A5A6A7A8"));
}

TEST(Fields, Sli) {
  Sli sli(0x01020304, 0x11121314);
  ASSERT_TRUE(sli.add(1, 2, 1));
  ASSERT_TRUE(sli.add(8191, 0, 0));
  ASSERT_TRUE(sli.items().push_back({0, 8191, 0}));
  EXPECT_FALSE(sli.add(8192, 0, 0));
  EXPECT_FALSE(sli.add(0, 8192, 0));
  EXPECT_FALSE(sli.add(0, 0, 64));
  EXPECT_EQ(Written(sli), GoldenHex("SliThreeItems"));
  EXPECT_EQ(ReadFrom<Sli>("SliOneItem")->items()[0].picture_id, 63);
}

TEST(Fields, Rpsi) {
  Rpsi rpsi;
  rpsi.sender(0x01020304);
  rpsi.source(0x11121314);
  rpsi.unbits(5);
  ASSERT_TRUE(rpsi.pt(96));
  EXPECT_FALSE(rpsi.pt(128));
  ASSERT_TRUE(rpsi.rpsi(Data("\xA1\xA2\xA3")));
  EXPECT_EQ(Written(rpsi), GoldenHex("RpsiThreeOctets"));
  const ReadFrom<Rpsi> read("RpsiThreeOctets");
  EXPECT_EQ(read->unbits(), 5);
  EXPECT_EQ(read->pt(), 96);
  EXPECT_EQ(Text(read->rpsi()), "\xA1\xA2\xA3");
}

TEST(Fields, Fir) {
  Fir fir(0x01020304, 0x11121314);
  ASSERT_TRUE(fir.add(0x21222324, 7));
  ASSERT_TRUE(fir.fci().push_back({0x31323334, 255}));
  EXPECT_EQ(Written(fir), GoldenHex("FirTwoEntries"));
  EXPECT_EQ(ReadFrom<Fir>("FirTwoEntries")->fci()[1].seqno, 255);
}

TEST(Fields, Tstr) {
  Tstr tstr(0x01020304, 0);
  ASSERT_TRUE(tstr.add(0x21222324, 7, 31));
  ASSERT_TRUE(tstr.fci().push_back({0x31323334, 255, 0}));
  EXPECT_FALSE(tstr.add(1, 1, 32));
  EXPECT_EQ(Written(tstr), GoldenHex("TstrTwoEntries"));
  EXPECT_EQ(ReadFrom<Tstr>("TstrTwoEntries")->fci()[0].index, 31);
}

TEST(Fields, Tsta) {
  Tsta tsta(0x01020304, 0x11121314);
  ASSERT_TRUE(tsta.add(0x21222324, 7, 31));
  ASSERT_TRUE(tsta.fci().push_back({0x31323334, 255, 0}));
  EXPECT_FALSE(tsta.add(1, 1, 32));
  EXPECT_EQ(Written(tsta), GoldenHex("TstaTwoEntries"));
  EXPECT_EQ(ReadFrom<Tsta>("TstaTwoEntries")->fci()[0].index, 31);
}

TEST(Fields, UnknownPsfb) {
  const ReadFrom<UnknownPsfb> read("PsfbUnknown");
  UnknownPsfb unknown(test::kSender, test::kSource);
  ASSERT_TRUE(unknown.fmt(read->fmt()));
  EXPECT_FALSE(unknown.fmt(ZUN_RTCPPSFB_TYPE_PLI));
  EXPECT_FALSE(unknown.fmt(32));
  ASSERT_TRUE(unknown.data(read->data()));
  EXPECT_FALSE(unknown.data(Data("x")));
  EXPECT_EQ(Written(unknown), GoldenHex("PsfbUnknown"));
  EXPECT_EQ(Text(read->data()), Hex("A1A2A3A4 A5A6A7A8"));
}

// ---- application-layer feedback

TEST(Fields, Remb) {
  Remb remb(0x01020304, 0x11121314);
  ASSERT_TRUE(remb.bitrate(1e6F));
  EXPECT_FALSE(remb.bitrate(-1));
  ASSERT_TRUE(remb.add(0xAABBCCDD));
  ASSERT_TRUE(remb.sources().push_back(1));
  EXPECT_EQ(Written(remb), GoldenHex("RembTwoSources"));
  const ReadFrom<Remb> read("RembTwoSources");
  EXPECT_EQ(read->bitrate(), 1e6F);
  EXPECT_EQ(Values(read->sources()), (std::vector<Ssrc>{0xAABBCCDD, 1}));
}

TEST(Fields, AfbAbafb) {
  AfbAbafb abafb(0x01020304, 0x11121314);
  abafb.timestamp(0x21222324);
  abafb.delay(1000000);
  abafb.data_rate(0x31323334);
  abafb.loss_rate(0x41424344);
  abafb.aba_data_rate(0x51525354);
  abafb.average_delay_difference(-2);
  abafb.average_arrival_difference(0x61626364);
  EXPECT_EQ(Written(abafb), GoldenHex("AfbAbafb"));
  const ReadFrom<AfbAbafb> read("AfbAbafb");
  EXPECT_EQ(read->timestamp(), 0x21222324U);
  EXPECT_EQ(read->delay(), 1000000U);
  EXPECT_EQ(read->data_rate(), 0x31323334U);
  EXPECT_EQ(read->loss_rate(), 0x41424344U);
  EXPECT_EQ(read->aba_data_rate(), 0x51525354U);
  EXPECT_EQ(read->average_delay_difference(), -2);
  EXPECT_EQ(read->average_arrival_difference(), 0x61626364U);
  EXPECT_FALSE(read->calculate_delay());
  abafb.timestamp_time(MonotonicClock::now().time_since_epoch() - 1s);
  EXPECT_TRUE(abafb.calculate_delay());
  EXPECT_GE(abafb.delay(), 1000000U);
}

TEST(Fields, Albr) {
  Albr albr(0x01020304, 0x11121314);
  albr.available_bit_rate(0x21222324);
  EXPECT_EQ(Written(albr), GoldenHex("Albr"));
  EXPECT_EQ(ReadFrom<Albr>("Albr")->available_bit_rate(), 0x21222324U);
}

TEST(Fields, Show) {
  Show show(0x01020304, 0x11121314);
  show.seqno(42);
  ASSERT_TRUE(show.add(ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable, 1));
  ASSERT_TRUE(show.parameters().push_back({ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Bandwidth, 1500000}));
  EXPECT_FALSE(show.add(ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable, 2));
  EXPECT_FALSE(show.add(14, 2));
  EXPECT_EQ(Written(show), GoldenHex("ShowTwoParameters"));
  const ReadFrom<Show> read("ShowTwoParameters");
  EXPECT_EQ(read->seqno(), 42);
  EXPECT_EQ(read->parameters()[1].value, 1500000U);
}

TEST(Fields, ShowAck) {
  ShowAck ack(0x01020304, 0);
  ack.seqno(0x9A);
  ack.show_sender(0x21222324);
  EXPECT_EQ(Written(ack), GoldenHex("ShowAck"));
  EXPECT_EQ(ReadFrom<ShowAck>("ShowAck")->seqno(), 0x9A);
  EXPECT_EQ(ReadFrom<ShowAck>("ShowAck")->show_sender(), 0x21222324U);
}

TEST(Fields, Lir) {
  Lir lir(0x01020304, 0x11121314);
  ASSERT_TRUE(lir.add(0xAABBCCDD, 42, 96, Data("layer")));
  LirEntry entry;
  entry.ssrc(1);
  entry.seqno(255);
  ASSERT_TRUE(entry.payload_type(127));
  EXPECT_FALSE(entry.payload_type(128));
  ASSERT_TRUE(entry.layer_data(Data("\1\2\3\4")));
  ASSERT_TRUE(lir.fci().push_back(std::move(entry)));
  ASSERT_TRUE(lir.fci().push_back(LirEntry()));
  lir.fci().back().ssrc(2);
  EXPECT_FALSE(lir.add(1, 1, 128, {}));
  // It is written without the lengths that its reader needs, so the golden form is compared by its fields.
  const ReadFrom<Lir> read("LirThreeEntries");
  EXPECT_EQ(test::Seen(test::kRowOf<ZunRtcpPsfbAfbLir>, *test::AsSubpacket(lir.get())),
            test::Seen(test::kRowOf<ZunRtcpPsfbAfbLir>, *test::AsSubpacket(read->get())));
  ASSERT_EQ(read->fci().size(), 3U);
  EXPECT_EQ(read->fci()[0].ssrc(), 0xAABBCCDD);
  EXPECT_EQ(read->fci()[0].seqno(), 42);
  EXPECT_EQ(read->fci()[0].payload_type(), 96);
  EXPECT_EQ(Text(read->fci()[0].layer_data()), "layer");
}

TEST(Fields, UnknownAfb) {
  UnknownAfb unknown(test::kSender, test::kSource);
  const ReadFrom<UnknownAfb> read("AfbUnknown");
  ASSERT_TRUE(unknown.data(read->data()));
  EXPECT_FALSE(unknown.data(Data("x")));
  EXPECT_EQ(Written(unknown), GoldenHex("AfbUnknown"));
}

}  // namespace
