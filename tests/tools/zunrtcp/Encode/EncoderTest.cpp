#include "tools/zunrtcp/Encode/Encoder.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/Bytes.h"
#include "tests/support/Samples.h"
#include "tests/tools/zunrtcp/Decoded.h"
#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Output/Printer.h"

namespace zunrtcp {

namespace {

// What decode --json prints.
nlohmann::json JsonOf(const std::string& wire, Dialect dialect) {
  RtcpDatagram datagram;
  datagram.payload = wire;
  std::ostringstream out;
  JsonPrinter(&out, dialect).Print(DecodedDatagram(datagram, dialect, false));
  return nlohmann::json::parse(out.str());
}

std::string Encoded(const nlohmann::json& datagram, Dialect dialect) {
  return EncodeDatagram(JsonField(datagram, ""), dialect);
}

// The same objects on the registered wire; empty when they have no form there.
std::string RegisteredWire(const std::string& house) {
  return zunrtcp::Encoded(LibraryPacket(house).objects(), Dialect::registered).value_or("");
}

TEST(Encoder, EverySampleComesBackInTheHouseDialect) {
  std::size_t compared = 0;
  for (const test::Sample& sample : test::Samples()) {
    if (!sample.comes_back) continue;
    const nlohmann::json json = JsonOf(sample.wire, Dialect::house);
    EXPECT_EQ(Encoded(json, Dialect::house), sample.wire) << sample.name << ": " << json;
    ++compared;
  }
  EXPECT_GT(compared, 50U);
}

TEST(Encoder, EverySampleComesBackInTheRegisteredDialect) {
  std::size_t compared = 0;
  for (const test::Sample& sample : test::Samples()) {
    const std::string wire = RegisteredWire(sample.wire);
    const nlohmann::json json = JsonOf(wire, Dialect::registered);
    if (wire.empty() || json["verdict"]["outcome"] != "read") continue;
    EXPECT_EQ(Encoded(json, Dialect::registered), wire) << sample.name << ": " << json;
    ++compared;
  }
  EXPECT_GT(compared, 50U);
}

// Forms that no object holds, what no object keeps, and padding.
const char* const kRegistered[] = {
    "83CD0004 00000001 00000000 00000005 0A61601C",                    // TMMBR
    "84CD0002 00000001 00000000",                                      // TMMBN without entries
    "80CF0002 00000001 63050000",                                      // XR with a block of another type
    "80CF0005 00000001 01000003 00000002 FFFE0003 E8000000",           // loss RLE
    "80CF0005 00000001 02010003 00000002 00050009 C0000000",           // duplicate RLE, thinned
    "80CF0006 00000001 03000004 00000002 00050007 00000064 000000C8",  // receipt times
    "80CF0004 00000001 04000002 EEAB68CD 900485A0",                    // RRTR
    "80CF0008 00000001 05000006 00000009 12345678 00008000 0000000A 00000000 00000000",  // DLRR of two
    "80CF000B 00000001 06E80009 00000002 0000003A 00000001 00000002 00000003 00000004 00000005 00000006 40414203",
    "80CF000A 00000001 07000008 00000002 01020304 00050006 00070008 EEC17F10 527F2929 B0000028 00280100",
    "83CC0003 11223344 41424344 00000001",                                 // APP with a subtype
    "A0C90002 00000001 00000004",                                          // RR with padding
    "AFCD0006 00000001 00000002 0001 0001 000001 00 2001 04 00 00000004",  // TWCC with a word of padding
    "AFCD0005 00000001 00000002 0001 0001 000001 00 2001 04 01",           // TWCC padded within its last word
    "AFCD0006 00000001 00000002 0001 0001 000001 00 2001 00 00 00000002",  // the same, its delta no padding
    "A3CC0004 11223344 41424344 00000000 00000004",                        // APP that ends with zeros, padded
    "80CB0000",                                                            // BYE of nobody
};

TEST(Encoder, WhatNoObjectKeepsComesBack) {
  for (const char* hex : kRegistered) {
    const std::string wire = test::Hex(hex);
    const nlohmann::json json = JsonOf(wire, Dialect::registered);
    ASSERT_EQ(json["verdict"]["outcome"], "read") << json;
    EXPECT_EQ(test::ToHex(Encoded(json, Dialect::registered)), test::ToHex(wire)) << json;
  }
}

struct Refused {
  const char* json;
  const char* words;
};

const Refused kRefused[] = {
    {R"({})", "subpackets: is missing"},
    {R"({"subpackets": []})", "subpackets: is empty"},
    {R"({"subpackets": 3})", "subpackets: is no list"},
    {R"({"subpackets": [3]})", "subpackets[0]: is no object"},
    {R"({"subpackets": [{}]})", "subpackets[0].kind: is missing"},
    {R"({"subpackets": [{"kind": "PLI", "sender": 1}]})", "subpackets[0].source: is missing"},
    {R"({"subpackets": [{"kind": "PLI", "sender": 4294967296, "source": 1}]})",
     "subpackets[0].sender: 4294967296 is above 4294967295"},
    {R"({"subpackets": [{"kind": "PLI", "sender": -1, "source": 1}]})", "subpackets[0].sender: -1 is below 0"},
    {R"({"subpackets": [{"kind": "PLI", "sender": "1", "source": 1}]})", "subpackets[0].sender: is no whole number"},
    {R"({"subpackets": [{"kind": "PLI", "sender": 1, "source": 1, "extension": "0"}]})",
     "subpackets[0].extension: is not hex"},
    {R"({"subpackets": [{"kind": "PLI", "sender": 1, "source": 1, "extension": "00"}]})",
     "subpackets[0]: data is no multiple of 4 bytes long"},
    {R"({"subpackets": [{"kind": "SLI", "sender": 1, "source": 1,
         "items": [{"firstLost": 8192, "lostCount": 0, "pictureId": 0}]}]})",
     "subpackets[0].items[0].firstLost: 8192 is above 8191"},
    {R"({"subpackets": [{"kind": "NACK", "sender": 1, "source": 1, "lost": []}]})",
     "subpackets[0]: there is no entry where there must be one"},
    {R"({"subpackets": [{"kind": "TMMBR", "sender": 1, "source": 0, "entries": []}]})",
     "subpackets[0].entries: a TMMBR has at least one"},
    {R"({"subpackets": [{"kind": "XR", "sender": 1, "blocks": [{"type": 4, "ntpSeconds": 0}]}]})",
     "subpackets[0].blocks[0].ntpFraction: is missing"},
    {R"({"subpackets": [{"kind": "XR", "sender": 1, "blocks": [{"type": 1, "source": 1, "thinning": 0,
         "beginSequence": 0, "endSequence": 2, "received": [true]}]}]})",
     "subpackets[0].blocks[0].received: has 1 elements, but the range tells of 2"},
    {R"({"subpackets": [{"kind": "APP", "source": 1, "name": "ab"}]})", "subpackets[0]: the name has not 4 bytes"},
    {R"({"subpackets": [{"kind": "anything", "type": 206, "count": 4, "sender": 1, "source": 1, "data": ""}]})",
     "subpackets[0].count: is the FMT of another kind"},
    {R"({"subpackets": [{"kind": "RR", "refused": {}}]})",
     "subpackets[0]: was refused when it was decoded, so its fields are not known"},
    {R"({"subpackets": [{"kind": "PLI", "sender": 1, "source": 1, "paddingLength": 3}]})",
     "subpackets[0].paddingLength: the packet ends with a field, so only a multiple of 4 can follow"},
    {R"({"subpackets": [{"kind": "PLI", "sender": 1, "source": 0, "paddingLength": 3}]})",
     "subpackets[0].paddingLength: the packet ends with a field, so only a multiple of 4 can follow"},
    {R"({"subpackets": [{"kind": "APP", "source": 1, "name": "TEST", "data": "00000000", "paddingLength": 2}]})",
     "subpackets[0].paddingLength: the packet ends with a field, so only a multiple of 4 can follow"},
};

TEST(Encoder, WhatCannotBeWrittenIsRefusedWithItsPathAndLimit) {
  for (const Refused& refused : kRefused) {
    try {
      Encoded(nlohmann::json::parse(refused.json), Dialect::registered);
      ADD_FAILURE() << "is not refused: " << refused.json;
    } catch (const InputError& error) {
      EXPECT_STREQ(error.what(), refused.words) << refused.json;
    }
  }
}

TEST(Encoder, PaddingBeyondTheLongestPacketIsRefused) {
  const std::string data(2 * (4 * 0xFFFF - 12), '0');  // a word less than there may be
  nlohmann::json app = {{"kind", "APP"}, {"source", 1}, {"name", "TEST"}, {"data", data}, {"paddingLength", 4}};
  nlohmann::json datagram = {{"subpackets", {app}}};
  EXPECT_EQ(Encoded(datagram, Dialect::registered).size(), 4U * 0x10000);
  datagram["subpackets"][0]["paddingLength"] = 8;
  try {
    Encoded(datagram, Dialect::registered);
    ADD_FAILURE() << "is not refused";
  } catch (const InputError& error) {
    EXPECT_STREQ(error.what(), "subpackets[0].paddingLength: makes the packet longer than its header can say");
  }
}

TEST(Encoder, MoreThanACountCanSayIsRefused) {
  nlohmann::json bye = {{"kind", "BYE"}, {"sources", std::vector<int>(31, 1)}};
  nlohmann::json datagram = {{"subpackets", {bye}}};
  EXPECT_EQ(Encoded(datagram, Dialect::registered).size(), 4 + 31 * 4U);
  datagram["subpackets"][0]["sources"].push_back(1);
  EXPECT_THROW(Encoded(datagram, Dialect::registered), InputError);
}

}  // namespace

}  // namespace zunrtcp
