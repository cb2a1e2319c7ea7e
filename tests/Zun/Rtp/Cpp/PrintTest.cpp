// What is printed. That the words are those of the tool is checked with the tool's tests.
#include "Zun/Rtp/Cpp/Print.h"

#include <gtest/gtest.h>

#include <map>
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

std::string SourcesUpTo(Ssrc last) {
  std::string text;
  for (Ssrc ssrc = 1; ssrc <= last; ++ssrc) text += (ssrc == 1 ? "" : " ") + words::SourceName(ssrc);
  return text;
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

// Every kind and every word, for what a peer may send: a sample that joins them gets its line here.
TEST(Print, EverySampleHasItsLine) {
  const std::map<std::string, std::string> lines = {
      {"SrWithoutBlocks",
       "SR: sender 0x01020304, NTP 2020-02-03 18:24:36.945113 (0xe1e2e3e4.f1f2f3f4), RTP time 286397204, 555885348 "
       "packets, 825373492 octets"},
      {"SrOneBlock",
       "SR: sender 0x01020304, NTP 2020-02-03 18:24:36.945113 (0xe1e2e3e4.f1f2f3f4), RTP time 286397204, 555885348 "
       "packets, 825373492 octets, extension 6578742e; block on 0xa1a2a3a4, lost 64/256 (25.0 %), -1 in all, highest "
       "sequence 4660 in cycle 1, jitter 42, last SR 0x8899aabb, 1.000000 s ago"},
      {"SrTwoBlocks",
       "SR: sender 0x01020304, NTP 2020-02-03 18:24:36.945113 (0xe1e2e3e4.f1f2f3f4), RTP time 286397204, 555885348 "
       "packets, 825373492 octets, extension 6578742e6578742e; block on 0xa1a2a3a4, lost 64/256 (25.0 %), -1 in all, "
       "highest sequence 4660 in cycle 1, jitter 42, last SR 0x8899aabb, 1.000000 s ago; block on 0xb1b2b3b4, lost "
       "0/256 (0.0 %), 7 in all, highest sequence 1 in cycle 0, jitter 2, last SR 0x00000003, 0.000061 s ago"},
      {"RrWithoutBlocks", "RR: sender 0x01020304"},
      {"RrOneBlock",
       "RR: sender 0x01020304, extension 6578742e; block on 0xa1a2a3a4, lost 64/256 (25.0 %), -1 in all, highest "
       "sequence 4660 in cycle 1, jitter 42, last SR 0x8899aabb, 1.000000 s ago"},
      {"RrTwoBlocks",
       "RR: sender 0x01020304, extension 6578742e6578742e; block on 0xa1a2a3a4, lost 64/256 (25.0 %), -1 in all, "
       "highest sequence 4660 in cycle 1, jitter 42, last SR 0x8899aabb, 1.000000 s ago; block on 0xb1b2b3b4, lost "
       "0/256 (0.0 %), 7 in all, highest sequence 1 in cycle 0, jitter 2, last SR 0x00000003, 0.000061 s ago"},
      {"SdesOneChunk", "SDES: chunk of 0x01020304: CNAME \"alice\""},
      {"SdesTwoChunks",
       "SDES: chunk of 0x01020304: CNAME \"alic\"; chunk of 0x11121314: CNAME \"bob\", PRIV \"abc\" = \"-----\", MID "
       "\"\", TOOL \"\\x00\""},
      {"ByeWithoutReason", "BYE: 0x01020304 left"},
      {"ByeWithReason", "BYE: 0x01020304 0x11121314 left, reason \"camera o\""},
      {"AppWithoutData", "APP: source 0x01020304, name \"name\", 0 bytes of data"},
      {"AppWithData", "APP: source 0x01020304, name \"name\", 8 bytes of data, data 6461746120313233"},
      {"UnknownWithData", "XR (type 207): data 0102030405060708"},
      {"UnknownWithoutData", "AVB (type 208)"},
      {"NackOneMap", "NACK: sender 0x01020304, source 0x05060708, lost 4660 4661 4676"},
      {"NackThreeMaps", "NACK: sender 0x01020304, source 0x05060708, lost 100 101 116 65535 0 2"},
      {"TmmbrOneEntry", "TMMBR: sender 0x00000001, source 0x00000000; of 0x00000002, at most 3 bit/s"},
      {"TmmbrTwoEntries",
       "TMMBR: sender 0x01020304, source 0x00000000; of 0x05060708, at most 100000 bit/s; of 0x090a0b0c, at most "
       "4294967295 bit/s"},
      {"Tmmbn", "TMMBN: sender 0x01020304, source 0x05060708, at most 4294967294 bit/s"},
      {"TmmbnSmall", "TMMBN: sender 0x00000001, source 0x00000002, at most 3 bit/s"},
      {"CcfbTwoStreams",
       "CCFB: sender 0x01020304, report time 57005.745834 s (16.16); stream 0x11121314, from sequence 65535, 3 "
       "packets, 1 lost (33.3 %), ECN Not-ECT x2; stream 0x21222324, from sequence 10, 2 packets, 0 lost (0.0 %), ECN "
       "Not-ECT x2"},
      {"CcfbOneStream",
       "CCFB: sender 0x00000001, report time 0.000061 s (16.16); stream 0x00000002, from sequence 3, 6 packets, 0 lost "
       "(0.0 %), ECN Not-ECT x6"},
      {"CcfbWithoutStreams", "CCFB: sender 0x01020304, report time 1286.027466 s (16.16)"},
      {"TransportCcMixed",
       "TWCC: sender 0x01020304, source 0x05060708, from sequence 65534, 29 packets, 18 arrived, reference time -2 x "
       "64 ms, feedback number 42, arrivals in ms: 0.25 0.75 1.50 2.50 3.75 5.25 7.00 9.00 11.25 13.75 16.50 19.50 ... "
       "(17 more)"},
      {"TransportCcOnePacket",
       "TWCC: sender 0x00000061, source 0x00000062, from sequence 1, 1 packet, 1 arrived, reference time 1 x 64 ms, "
       "feedback number 7, arrivals in ms: 1.00"},
      {"RtpfbAbafb",
       "ABAFB: sender 0x01020304, source 0x05060708, timestamp 286397204, delay 3000 us, data rate 555885348, loss "
       "rate 825373492, ABA data rate 1094861636"},
      {"RtpfbAbafbSmall",
       "ABAFB: sender 0x00000001, source 0x00000002, timestamp 3, delay 4 us, data rate 5, loss rate 6, ABA data rate "
       "7"},
      {"RtpfbUnknown", "RTPFB FMT 4: sender 0x01020304, source 0x05060708, data a0a1a2a3a4a5a6a7"},
      {"RtpfbUnknownSmall", "RTPFB FMT 5: sender 0x00000011, source 0x00000012, data b0b1b2b3"},
      {"RtpfbUnknownWithoutData", "RTPFB FMT 4: sender 0x00000011, source 0x00000012"},
      {"Pli", "PLI: sender 0x01020304, source 0x11121314"},
      {"PliWithExtension", "PLI: sender 0x01020304, source 0x11121314, extension a1a2a3a4a5a6a7a8"},
      {"PliWithOneWord", "PLI: sender 0x00000007, source 0x00000008, extension b1b2b3b4"},
      {"SliWithoutItems", "SLI: sender 0x01020304, source 0x11121314"},
      {"SliOneItem",
       "SLI: sender 0x01020304, source 0x11121314; lost from macroblock 8191, as many as 8191, in picture 63"},
      {"SliThreeItems",
       "SLI: sender 0x01020304, source 0x11121314; lost from macroblock 1, as many as 2, in picture 1; lost from "
       "macroblock 8191, as many as 0, in picture 0; lost from macroblock 0, as many as 8191, in picture 0"},
      {"RpsiThreeOctets",
       "RPSI: sender 0x01020304, source 0x11121314, payload type 96, unused bits 5, bit string a1a2a3"},
      {"RpsiAllBitsUsed",
       "RPSI: sender 0x00000007, source 0x00000008, payload type 97, unused bits 0, bit string b1b2b3"},
      {"RpsiTwoOctets", "RPSI: sender 0x00000007, source 0x00000008, payload type 97, unused bits 3, bit string b1b2"},
      {"FirTwoEntries",
       "FIR: sender 0x01020304, source 0x11121314; to 0x21222324, command 7; to 0x31323334, command 255"},
      {"FirOneEntry", "FIR: sender 0x01020304, source 0x00000000; to 0x00000001, command 9"},
      {"TstrTwoEntries",
       "TSTR: sender 0x01020304, source 0x00000000; to 0x21222324, request 7, trade-off 31; to 0x31323334, request "
       "255, trade-off 0"},
      {"TstrOneEntry", "TSTR: sender 0x01020304, source 0x00000000; to 0x00000001, request 9, trade-off 3"},
      {"TstaTwoEntries",
       "TSTA: sender 0x01020304, source 0x11121314; to 0x21222324, request 7, trade-off 31; to 0x31323334, request "
       "255, trade-off 0"},
      {"TstaOneEntry", "TSTA: sender 0x01020304, source 0x00000000; to 0x00000001, request 9, trade-off 3"},
      {"PsfbUnknown", "PSFB FMT 7: sender 0x01020304, source 0x11121314, data a1a2a3a4a5a6a7a8"},
      {"PsfbUnknownSmall", "PSFB FMT 8: sender 0x01020304, source 0x11121314, data b1b2b3b4"},
      {"PsfbUnknownWithoutData", "PSFB FMT 7: sender 0x01020304, source 0x11121314"},
      {"RembTwoSources", "REMB: sender 0x01020304, source 0x11121314, 1000.000 kbit/s, for 0xaabbccdd 0x00000001"},
      {"RembOneSource", "REMB: sender 0x01020304, source 0x11121314, 250.000 kbit/s, for 0xaabbccdd"},
      {"RembWithoutSources", "REMB: sender 0x01020304, source 0x11121314, 0.000 kbit/s, for no source"},
      {"AfbAbafb",
       "AFB ABAFB: sender 0x01020304, source 0x11121314, timestamp 555885348, delay 1000000 us, data rate 825373492, "
       "loss rate 1094861636, ABA data rate 1364349780, average delay difference -2, average arrival difference "
       "1633837924"},
      {"AfbAbafbZeros",
       "AFB ABAFB: sender 0x01020304, source 0x11121314, timestamp 0, delay 0 us, data rate 0, loss rate 0, ABA data "
       "rate 0, average delay difference 0, average arrival difference 1"},
      {"Albr", "ALBR: sender 0x01020304, source 0x11121314, available link bit rate 555885348"},
      {"AlbrZero", "ALBR: sender 0x01020304, source 0x11121314, available link bit rate 0"},
      {"ShowFourParameters",
       "SHOW: sender 0x01020304, source 0x11121314, request 42, enable 0, width 1920, height 1080, bandwidth 1500000"},
      {"ShowTwoParameters", "SHOW: sender 0x01020304, source 0x11121314, request 42, enable 1, bandwidth 1500000"},
      {"ShowWithoutParameters", "SHOW: sender 0x01020304, source 0x11121314, request 42"},
      {"ShowAck", "SHOWACK: sender 0x01020304, source 0x00000000, request 154, of 0x21222324"},
      {"ShowAckZeros", "SHOWACK: sender 0x01020304, source 0x11121314, request 0, of 0x00000000"},
      {"LirThreeEntries",
       "LIR: sender 0x01020304, source 0x11121314; source 0xaabbccdd, sequence 42, payload type 96, layer data "
       "6c61796572; source 0x00000001, sequence 255, payload type 127, layer data 01020304; source 0x00000002, "
       "sequence 0, payload type 0"},
      {"LirOneEntry",
       "LIR: sender 0x01020304, source 0x11121314; source 0xaabbccdd, sequence 1, payload type 96, layer data 61"},
      {"AfbUnknown", "AFB Nr 6: sender 0x01020304, source 0x11121314, data 4e720006deadbeef"},
      {"AfbUnknownZeros", "AFB: sender 0x01020304, source 0x11121314, data 00000000"},
      {"AfbUnknownWithoutData", "AFB: sender 0x01020304, source 0x11121314"},
  };
  for (const test::Sample& sample : test::Samples()) {
    const std::string line = LineOf(sample.wire);
    if (sample.name == "ByeAtItsLimits") {
      EXPECT_EQ(line, "BYE: " + SourcesUpTo(31) + " left, reason \"" + std::string(255, 'r') + "\"");
    } else {
      ASSERT_TRUE(lines.contains(sample.name)) << sample.name;
      EXPECT_EQ(line, lines.at(sample.name)) << sample.name;
    }
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
  ASSERT_TRUE(bye.reason("a\"b\n\xFF\\"));
  EXPECT_EQ(to_string(bye), R"(BYE: 0x00000001 left, reason "a\"b\x0a\xff\\")");
}

TEST(Print, ATimeBefore1970IsNoDate) {
  EXPECT_EQ(words::NtpWords(2208988799ULL << 32), "NTP 0x83aa7e7f.00000000");
  EXPECT_EQ(words::NtpWords(2208988800ULL << 32), "NTP 1970-01-01 00:00:00.000000 (0x83aa7e80.00000000)");
  EXPECT_EQ(words::NtpWords(0xFFFFFFFFFFFFFFFF), "NTP 2036-02-07 06:28:15.999999 (0xffffffff.ffffffff)");
}

TEST(Print, ABlockOnAPeerThatSentNoReportSaysSo) {
  Rr rr(1);
  ASSERT_TRUE(rr.report_blocks().push_back(ReportBlock{2, 0, 0, 0, 0, 0, 0}));
  ASSERT_TRUE(rr.report_blocks().push_back(ReportBlock{2, 0, 0, 0, 0, 0, 65536}));
  ASSERT_TRUE(rr.report_blocks().push_back(ReportBlock{2, 0, 0, 0, 0, 1, 0}));
  const std::string block =
      "; block on 0x00000002, lost 0/256 (0.0 %), 0 in all, highest sequence 0 in cycle 0, jitter 0, ";
  EXPECT_EQ(to_string(rr), "RR: sender 0x00000001" + block + "no SR yet" + block +
                               "last SR 0x00000000, 1.000000 s ago" + block + "last SR 0x00000001, 0.000000 s ago");
}

TEST(Print, TypesAndItemsHaveTheirNames) {
  const auto names = [](auto name, int first, int last) {
    std::string all;
    for (int i = first; i <= last; ++i) all += (all.empty() ? "" : ", ") + std::string(name(i));
    return all;
  };
  EXPECT_EQ(
      names(words::SdesItemName, 1, 15),
      "CNAME, NAME, EMAIL, PHONE, LOC, TOOL, NOTE, PRIV, H323-CADDR, APSI, RGRP, RtpStreamId, RepairedRtpStreamId, "
      "CCID, MID");
  EXPECT_EQ(
      names(words::ShowParameterName, 1, 13),
      "enable, preference, width, height, frame rate, pixel rate, bandwidth, min width, min height, min frame rate, "
      "min pixel rate, min bandwidth, packet size");
  const auto type = [](int number) { return LineOf(test::Subpacket(number, 0, "")); };
  EXPECT_EQ(names(type, 192, 195),
            "full intra request (type 192), negative acknowledgement (type 193), type 194, IJ (type 195)");
  EXPECT_EQ(names(type, 207, 214),
            "XR (type 207), AVB (type 208), RSI (type 209), TOKEN (type 210), IDMS (type 211), RGRS (type 212), "
            "SNM (type 213), type 214");
}

TEST(Print, AnApplicationsMessageIsANumberWhereItBeginsWithNr) {
  const auto name = [](const std::string& data) {
    UnknownAfb afb(1, 2);
    EXPECT_TRUE(afb.data(octets_of(data)));
    return words::NameOf(View<UnknownAfb>(afb));
  };
  EXPECT_EQ(name(test::Hex("4E72 0102")), "AFB Nr 258");
  EXPECT_EQ(name(test::Hex("4E72 FFFF 01020304")), "AFB Nr 65535");
  EXPECT_EQ(name(test::Hex("4E73 0102")), "AFB");
  EXPECT_EQ(name(test::Hex("4F72 0102")), "AFB");
}

TEST(Print, AStreamOfWhichNothingArrivedHasNoMarks) {
  Ccfb ccfb(2);
  CcfbStream empty(1);
  ASSERT_TRUE(ccfb.streams().push_back(empty));
  ASSERT_TRUE(empty.add(7, false, 0, 0));
  ASSERT_TRUE(ccfb.streams().push_back(empty));
  EXPECT_EQ(to_string(ccfb),
            "CCFB: sender 0x00000002, report time 0.000000 s (16.16); stream 0x00000001, from sequence 0, 0 packets, "
            "0 lost (0.0 %); stream 0x00000001, from sequence 7, 1 packet, 1 lost (100.0 %)");
}

TEST(Print, ArrivalsAreTimesOrMarks) {
  TransportCc feedback(1, 2);
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{1, 1, 4}));
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{0, 0, 0}));
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{1, 0, 0}));
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{1, 1, -1}));
  EXPECT_NE(to_string(feedback).find("4 packets, 3 arrived"), std::string::npos) << to_string(feedback);
  EXPECT_NE(to_string(feedback).find("arrivals in ms: 1.00 x ? 0.75"), std::string::npos) << to_string(feedback);
}

TEST(Print, EveryMarkOfACcfbIsCountedByItsName) {
  CcfbStream stream(1);
  ASSERT_TRUE(stream.add(1, false, 3, 0));  // what was lost carries none
  std::uint16_t seq = 2;
  for (const std::uint8_t ecn : std::initializer_list<std::uint8_t>{0, 1, 1, 2, 2, 2, 4, 8})
    ASSERT_TRUE(stream.add(seq++, true, ecn, 0));
  EXPECT_EQ(words::EcnWords(View<CcfbStream>(stream).packet_metrics()), "ECN Not-ECT x1 ECT(1) x3 ECT(0) x4");
}

TEST(Print, WhatHasNoNameIsToldByItsNumber) {
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
  const auto words_of = [](const std::string& text) {
    SdesItem item;
    item.type(ZUN_RTCPSDESITEM_TYPE_PRIV);
    EXPECT_TRUE(item.text(text));
    return words::SdesItemWords(View<SdesItem>(item));
  };
  EXPECT_EQ(words_of(""), R"(PRIV "")");
  EXPECT_EQ(words_of(std::string("\x03") + "ab"), R"(PRIV "\x03ab")");
  EXPECT_EQ(words_of(std::string("\x01") + "a"), R"(PRIV "a" = "")");
  EXPECT_EQ(words_of(std::string("\x02") + "ab"), R"(PRIV "ab" = "")");
}

TEST(Print, TextOfAnyLengthIsWhole) {
  for (const std::size_t size : {0U, 126U, 127U, 128U, 129U, 300U}) {
    const std::string text(size, 'x');
    EXPECT_EQ(words::Printed("%s", text.c_str()), text);
  }
}

TEST(Print, ATimeOfAYearWithoutFourDigitsIsNone) {
  EXPECT_EQ(words::UtcTime(INT64_MIN, 0), "(no such time)");
  EXPECT_EQ(words::UtcTime(-62167219201, 0), "(no such time)");
  EXPECT_EQ(words::UtcTime(-62167219200, 0), "0000-01-01 00:00:00.000000");
  EXPECT_EQ(words::UtcTime(-1, 5), "1969-12-31 23:59:59.000005");
  EXPECT_EQ(words::UtcTime(253402300799, 999999), "9999-12-31 23:59:59.999999");
  EXPECT_EQ(words::UtcTime(253402300800, 0), "(no such time)");
  EXPECT_EQ(words::UtcTime(INT64_MAX, 0), "(no such time)");
}

TEST(Print, OctetsAreCutAfter32) {
  const auto line = [](std::size_t size) { return LineOf(test::Subpacket(214, 0, std::string(size, '\x0A'))); };
  const auto digits = [](std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += "0a";
    return text;
  };
  EXPECT_EQ(line(32), "type 214: data " + digits(32));
  EXPECT_EQ(line(36), "type 214: data " + digits(32) + "... (4 more bytes)");
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
