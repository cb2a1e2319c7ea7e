#include "tools/zunrtcp/Capture/UdpDatagram.h"

#include <gtest/gtest.h>
#include <pcap/dlt.h>

#include "tests/support/Bytes.h"

namespace zunrtcp {

namespace {

// A UDP datagram of "RTCP" from 192.0.2.1:5005 to 192.0.2.2:5007, and the same over IPv6.
constexpr const char* kIpv4 =
    "4500 0020 0000 0000 4011 0000 C0000201 C0000202"
    "138D 138F 000C 0000 52544350";
constexpr const char* kIpv6 =
    "60000000 000C 1140 20010DB8000000000000000000000001 20010DB8000000000000000000000002"
    "138D 138F 000C 0000 52544350";
constexpr const char* kAddresses = "020000000001 020000000002";

struct NamedFrame {
  const char* name;
  int link_type;
  std::string bytes;
};

std::string Bytes(const std::string& header, const char* packet) { return test::Hex(header + packet); }

const NamedFrame kIpv4Frames[] = {
    {"Ethernet", DLT_EN10MB, Bytes(std::string(kAddresses) + "0800", kIpv4)},
    {"Ethernet with bytes after the packet", DLT_EN10MB, Bytes(std::string(kAddresses) + "0800", kIpv4) + "trailer"},
    {"VLAN", DLT_EN10MB, Bytes(std::string(kAddresses) + "8100 0064 0800", kIpv4)},
    {"two VLANs", DLT_EN10MB, Bytes(std::string(kAddresses) + "88A8 0064 8100 0065 0800", kIpv4)},
    {"Linux cooked", DLT_LINUX_SLL, Bytes("0000 0304 0006 000000000000 0000 0800", kIpv4)},
    {"Linux cooked 2", DLT_LINUX_SLL2, Bytes("0800 0000 00000001 0304 00 06 0000000000000000", kIpv4)},
    {"loopback, little endian", DLT_NULL, Bytes("02000000", kIpv4)},
    {"loopback, big endian", DLT_LOOP, Bytes("00000002", kIpv4)},
    {"raw IP", DLT_RAW, Bytes("", kIpv4)},
    {"raw IPv4", DLT_IPV4, Bytes("", kIpv4)},
};

const NamedFrame kIpv6Frames[] = {
    {"Ethernet", DLT_EN10MB, Bytes(std::string(kAddresses) + "86DD", kIpv6)},
    {"VLAN", DLT_EN10MB, Bytes(std::string(kAddresses) + "8100 0064 86DD", kIpv6)},
    {"Linux cooked", DLT_LINUX_SLL, Bytes("0000 0304 0006 000000000000 0000 86DD", kIpv6)},
    {"Linux cooked 2", DLT_LINUX_SLL2, Bytes("86DD 0000 00000001 0304 00 06 0000000000000000", kIpv6)},
    {"loopback", DLT_NULL, Bytes("1E000000", kIpv6)},
    {"raw IP", DLT_RAW, Bytes("", kIpv6)},
    {"raw IPv6", DLT_IPV6, Bytes("", kIpv6)},
};

void ExpectDatagram(const NamedFrame& frame, const char* source, const char* destination) {
  SCOPED_TRACE(frame.name);
  EXPECT_TRUE(LinkTypeIsKnown(frame.link_type));
  const auto [content, datagram, fragment] = ReadFrame(frame.link_type, frame.bytes);
  ASSERT_EQ(content, FrameContent::Udp);
  EXPECT_EQ(datagram.source.Name(), source);
  EXPECT_EQ(datagram.destination.Name(), destination);
  EXPECT_EQ(datagram.payload, "RTCP");
  EXPECT_EQ(datagram.missing, 0U);
}

FrameContent ContentOf(int link_type, const std::string& bytes) { return ReadFrame(link_type, bytes).content; }

}  // namespace

TEST(UdpDatagram, IsFoundInEveryLinkLayerOverIpv4) {
  for (const NamedFrame& frame : kIpv4Frames) ExpectDatagram(frame, "192.0.2.1:5005", "192.0.2.2:5007");
}

TEST(UdpDatagram, IsFoundInEveryLinkLayerOverIpv6) {
  for (const NamedFrame& frame : kIpv6Frames) ExpectDatagram(frame, "[2001:db8::1]:5005", "[2001:db8::2]:5007");
}

TEST(UdpDatagram, TellsHowMuchOfItTheCaptureCutOff) {
  const std::string frame = test::Hex(kIpv4);
  const auto [content, datagram, fragment] = ReadFrame(DLT_RAW, frame.substr(0, frame.size() - 3));
  ASSERT_EQ(content, FrameContent::Udp);
  EXPECT_EQ(datagram.payload, "R");
  EXPECT_EQ(datagram.missing, 3U);
}

TEST(UdpDatagram, AFrameOfAnyLengthIsReadWithinItsBounds) {
  for (const NamedFrame& frame : kIpv4Frames) {
    for (std::size_t size = 0; size < frame.bytes.size(); ++size) {
      SCOPED_TRACE(frame.name + (": " + std::to_string(size)));
      const std::string flush(frame.bytes, 0, size);
      const auto [content, datagram, fragment] = ReadFrame(frame.link_type, {flush.data(), size});
      EXPECT_TRUE(content != FrameContent::Udp || datagram.payload.size() + datagram.missing == 4);
    }
  }
}

TEST(UdpDatagram, FragmentsAndOthersAreTold) {
  EXPECT_EQ(ContentOf(DLT_RAW, test::Hex("4500 0020 0000 2000 4011 0000 C0000201 C0000202 138D138F000C0000 52544350")),
            FrameContent::Fragment);
  EXPECT_EQ(ContentOf(DLT_RAW, test::Hex("4500 0018 0000 0001 4011 0000 C0000201 C0000202 52544350")),
            FrameContent::Fragment);
  EXPECT_EQ(ContentOf(DLT_RAW, test::Hex("60000000 0010 2C40 20010DB8000000000000000000000001"
                                         "20010DB8000000000000000000000002 1100000100000001 138D138F00140000")),
            FrameContent::Fragment);
  EXPECT_EQ(ContentOf(DLT_EN10MB, Bytes(std::string(kAddresses) + "0806",
                                        "0001080006040001 020000000001C0000201 000000000000C0000202")),
            FrameContent::Other);
  EXPECT_EQ(ContentOf(DLT_EN10MB, test::Hex("020000000001 020000000002 0026 424203000000")), FrameContent::Other);
  EXPECT_EQ(ContentOf(DLT_RAW, test::Hex("4500 001C 0000 0000 4001 0000 C0000201 C0000202 0800000000000000")),
            FrameContent::Other);
  EXPECT_EQ(ContentOf(DLT_RAW, ""), FrameContent::CutOff);
  EXPECT_FALSE(LinkTypeIsKnown(DLT_IEEE802_11));
}

}  // namespace zunrtcp
