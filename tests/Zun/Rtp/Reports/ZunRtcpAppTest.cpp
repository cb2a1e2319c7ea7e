#include "Zun/Rtp/Reports/ZunRtcpApp.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using App = TEST_OBJECT(ZunRtcpApp);

const Row& kRow = kRowOf<ZunRtcpApp>;

const ZunRtcpApp& In(const Received& received) { return received.sp()->app; }

std::string NameOf(const ZunRtcpApp* app) { return Str(ZunRtcpAppGetName(app)); }
std::string DataOf(const ZunRtcpApp* app) { return Str(ZunRtcpAppGetData(app)); }

void Fill(ZunRtcpApp* app, const std::string& data) {
  ASSERT_TRUE(ZunRtcpAppSetSource(app, 0x01020304));
  ASSERT_TRUE(ZunRtcpAppSetName(app, Text("name")));
  ASSERT_TRUE(ZunRtcpAppSetData(app, Text(data)));
}

TEST(ZunRtcpApp, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  App app(allocator);
  EXPECT_EQ(app->type, 204);
  EXPECT_EQ(ZunRtcpAppGetSource(app), 0U);
  EXPECT_EQ(NameOf(app), "");
  EXPECT_EQ(DataOf(app), "");
  EXPECT_EQ(ZunRtcpAppGetAllocator(app), allocator.get());
  EXPECT_EQ(ZunRtcpAppGetData(app)->allocator, allocator.get());
  EXPECT_EQ(ToHex(app.bytes()), "80CC000100000000") << "without a name";
}

TEST(ZunRtcpApp, SetNameTakesFourBytesOnlyWithoutAMessage) {
  LogCapture log;
  TestAllocator allocator;
  App app(allocator);
  EXPECT_TRUE(ZunRtcpAppSetName(app, Text("name")));
  for (const char* const wrong : {"", "nam", "names"}) {
    EXPECT_FALSE(ZunRtcpAppSetName(app, Text(wrong)));
    EXPECT_EQ(NameOf(app), "name");
  }
  log.ExpectNone();
  App unnamed(allocator);
  allocator.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpAppSetName(unnamed, Text("name")));
  EXPECT_EQ(NameOf(unnamed), "");
  EXPECT_FALSE(ZunRtcpAppSetData(app, Text("data")));
  EXPECT_EQ(DataOf(app), "");
}

TEST(ZunRtcpApp, DataOfAnySizeIsFilledUpToAWord) {
  App app;
  for (std::size_t size = 0; size < 9; ++size) {
    Fill(app, std::string(size, 'd'));
    const std::size_t words = (size + 3) / 4;
    const std::string padding(words * 4 - size, '\0');
    EXPECT_EQ(ToHex(app.bytes()), ToHex(Hex("80CC00") + static_cast<char>(2 + words) + Hex("01020304 6E616D65") +
                                        std::string(size, 'd') + padding));
  }
}

TEST(ZunRtcpApp, PaddingIsReadAsData) {
  App app;
  Fill(app, "datum");
  const std::string wire = app.bytes();
  EXPECT_EQ(wire.size(), 20U);
  const Received received(kRow, wire);
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(Str(ZunRtcpAppGetData(&In(received))), std::string("datum\0\0\0", 8));
  EXPECT_EQ(ToHex(received.bytes()), ToHex(wire));
}

TEST(ZunRtcpApp, ConstructFullReturnsNullAfterSuccessToo) {
  LogCapture log;
  TestAllocator other;
  ZunRtcpApp app;
  app.type = 77;
  EXPECT_EQ(ZunRtcpAppConstructFull(&app, 0x01020304, Text("name"), Text("datum"), other), nullptr);
  log.ExpectNone();
  EXPECT_EQ(app.type, 77) << "the type is left alone";
  EXPECT_EQ(ZunRtcpAppGetSource(&app), 0x01020304U);
  EXPECT_EQ(Str(ZunRtcpAppGetName(&app)), "name");
  EXPECT_EQ(Str(ZunRtcpAppGetData(&app)), "datum");
  EXPECT_EQ(app.name.allocator, other.get());
  EXPECT_EQ(app.data.allocator, other.get());
  EXPECT_EQ(other.live_blocks(), 2U);
  ZunRtcpAppDestruct(&app);
  EXPECT_EQ(other.live_blocks(), 0U);
}

TEST(ZunRtcpApp, ConstructFullWantsANameOfFourBytes) {
  LogCapture log;
  TestAllocator allocator;
  for (const char* const wrong : {"", "nam", "names"}) {
    ZunRtcpApp app;
    EXPECT_EQ(ZunRtcpAppConstructFull(&app, 0x01020304, Text(wrong), Text("data"), allocator), nullptr);
    log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpAppConstructFull",
                  "Length of application name is not equal to 4");
    EXPECT_EQ(app.source, 0x01020304U) << "the source is stored first";
    EXPECT_EQ(allocator.live_blocks(), 0U);
    ZunRtcpAppDestruct(&app);  // harmless, as the result does not tell whether there is something to release
  }
}

TEST(ZunRtcpApp, ConstructFullWithRefusalsLosesNothing) {
  EXPECT_EQ(ForEveryRefusal([](TestAllocator& refusing) {
              ZunRtcpApp app;
              EXPECT_EQ(ZunRtcpAppConstructFull(&app, 1, Text("name"), Text("data"), refusing), nullptr);
              EXPECT_EQ(refusing.live_blocks(), refusing.refused() == 0 ? 2U : 0U);
              ZunRtcpAppDestruct(&app);
            }),
            2U);
}

TEST(ZunRtcpApp, ReadsNameAndData) {
  const Parsed parsed(Golden("AppWithData"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 204);
  const ZunRtcpApp* const app = ZunRtcpSubpacketGetApp(&parsed[0]);
  EXPECT_EQ(ZunRtcpAppGetSource(app), 0x01020304U);
  EXPECT_EQ(Str(ZunRtcpAppGetName(app)), "name");
  EXPECT_EQ(Str(ZunRtcpAppGetData(app)), "data 123");
}

TEST(ZunRtcpApp, TheSubtypeIsIgnoredAndWrittenAsZero) {
  std::string wire = Golden("AppWithData");
  wire[0] = '\x9F';
  const Parsed parsed(wire);
  ASSERT_TRUE(parsed.ok);
  EXPECT_EQ(ToHex(parsed.bytes()), ToHex(Golden("AppWithData")));
}

TEST(ZunRtcpApp, AReadWithoutDataClearsTheOldData) {
  Received received(kRow, Golden("AppWithData"));
  ASSERT_TRUE(received.Read(Golden("AppWithoutData")));
  EXPECT_EQ(ToHex(received.bytes()), ToHex(Golden("AppWithoutData")));
}

TEST(ZunRtcpApp, DataMustBeWholeWords) {
  for (std::size_t size = 1; size < 8; ++size) {
    LogCapture log;
    Received received(kRow, Golden("AppWithoutData"));
    const bool read = received.Read(Hex("80CC0003 11121314 6F746872") + std::string(size, 'd'));
    EXPECT_EQ(read, size == 4);
    EXPECT_EQ(ZunRtcpAppGetSource(&In(received)), 0x11121314U);
    EXPECT_EQ(Str(ZunRtcpAppGetName(&In(received))), "othr");
    EXPECT_EQ(Str(ZunRtcpAppGetData(&In(received))), read ? "dddd" : "");
    if (read) {
      log.ExpectNone();
    } else {
      log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpAppAssignFromBuffer",
                    "Length of application data is not a multiple of 4 octets");
    }
  }
}

TEST(ZunRtcpApp, EveryCut) {
  ForEveryCut(kRow, Golden("AppWithData"), [&](const Received& received, ZunSizeT size, bool end_is_beyond) {
    EXPECT_EQ(received.ok, !end_is_beyond && (size == 8 || size == 12));
    EXPECT_EQ(ZunRtcpAppGetSource(&In(received)), size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(Str(ZunRtcpAppGetName(&In(received))), size >= 8 ? "name" : "");
    EXPECT_EQ(Str(ZunRtcpAppGetData(&In(received))), received.ok && size == 12 ? "data" : "");
  });
}

// Readers have never been told of it.
TEST(ZunRtcpApp, AReadSucceedsEvenWhereNameOrDataFindNoStorage) {
  TestAllocator refusing;
  refusing.RefuseOnce(0);
  const Received nameless(kRow, Golden("AppWithData"), refusing.get());
  EXPECT_TRUE(nameless.ok);
  EXPECT_EQ(Str(ZunRtcpAppGetName(&In(nameless))), "");
  EXPECT_EQ(Str(ZunRtcpAppGetData(&In(nameless))), "data 123");
  EXPECT_EQ(ToHex(nameless.bytes()), ToHex(Hex("80CC0003 01020304 6461746120313233")));

  refusing.RefuseOnce(1);
  const Received dataless(kRow, Golden("AppWithData"), refusing.get());
  EXPECT_TRUE(dataless.ok);
  EXPECT_EQ(ToHex(dataless.bytes()), ToHex(Golden("AppWithoutData")));

  Received used(kRow, Hex("80CC0003 11121314 6F746872 6F6C6420"), refusing.get());
  refusing.RefuseOnce(0);
  EXPECT_TRUE(used.Read(Golden("AppWithData")));
  EXPECT_EQ(Str(ZunRtcpAppGetName(&In(used))), "name");
  EXPECT_EQ(Str(ZunRtcpAppGetData(&In(used))), "old ") << "the old data stays";
}

TEST(ZunRtcpApp, ZerosThatFindNoRoomAreLeftOutUnnoticed) {
  App app;
  Fill(app, "datum");
  const std::string whole = app.bytes();
  for (ZunSizeT room = 0; room <= whole.size(); ++room) {
    SCOPED_TRACE(::testing::Message() << room << " bytes fit");
    TestAllocator refusing;
    Text out(std::string(64, 'x'), refusing.get());
    out->size = out->capacity - room;
    const std::string before = out.str();
    refusing.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpAppWritePacket(app.sp(), out, 0) != 0, room >= 17);
    // Name and data are appended whole or not at all.
    const ZunSizeT written = room < 8 ? room : room < 12 ? 8 : room < 17 ? 12 : room;
    EXPECT_EQ(ToHex(out.str()), ToHex(before + whole.substr(0, written)));
  }
}

TEST(ZunRtcpApp, ANameThatSomeonePutThereIsWrittenSafely) {
  App app;
  Fill(app, "123");
  ASSERT_NE(ZunStringAssignCStr(&app->name, "n"), nullptr);
  Text out;
  EXPECT_TRUE(ZunRtcpAppWritePacket(app.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(Hex("80CC0002 01020304 6E 313233 00")));
}

}  // namespace
