#include "Zun/Rtp/Reports/ZunRtcpApp.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpApp);

const std::string kNoData = Hex("80CC0002 01020304 6E616D65");
const std::string kWithData = Hex(R"(
    80 CC 0004      | subtype 0, type 204, 5 words
    01020304        | source
    6E616D65        | "name"
    6461746120313233    | "data 123"
)");

const ZunRtcpApp& In(const Slot& slot) { return slot.sp.app; }

class AppTest : public ::testing::Test {
 protected:
  AppTest() { EXPECT_EQ(ZunRtcpAppConstructDefault(&sp_.app, allocator_), &sp_.app); }
  ~AppTest() override { ZunRtcpAppDestruct(&sp_.app); }

  std::string bytes() const { return Bytes(kRow, sp_); }
  std::string name() const { return Str(ZunRtcpAppGetName(&sp_.app)); }
  std::string data() const { return Str(ZunRtcpAppGetData(&sp_.app)); }
  void Set(const std::string& data) {
    ASSERT_TRUE(ZunRtcpAppSetSource(&sp_.app, 0x01020304));
    ASSERT_TRUE(ZunRtcpAppSetName(&sp_.app, Text("name")));
    ASSERT_TRUE(ZunRtcpAppSetData(&sp_.app, Text(data)));
  }

  LogCapture log_;
  TestAllocator allocator_;
  ZunRtcpSubpacket sp_;
};

TEST_F(AppTest, ConstructDefaultIsEmpty) {
  EXPECT_EQ(sp_.app.type, 204);
  EXPECT_EQ(ZunRtcpAppGetSource(&sp_.app), 0U);
  EXPECT_EQ(name(), "");
  EXPECT_EQ(data(), "");
  EXPECT_EQ(ZunRtcpAppGetAllocator(&sp_.app), allocator_.get());
  EXPECT_EQ(ZunRtcpAppGetData(&sp_.app)->allocator, allocator_.get());
  EXPECT_EQ(ToHex(bytes()), "80CC000100000000") << "without a name";
}

TEST_F(AppTest, SetNameTakesFourBytesOnlyWithoutAMessage) {
  EXPECT_TRUE(ZunRtcpAppSetName(&sp_.app, Text("name")));
  for (const char* const wrong : {"", "nam", "names"}) {
    EXPECT_FALSE(ZunRtcpAppSetName(&sp_.app, Text(wrong)));
    EXPECT_EQ(name(), "name");
  }
  log_.ExpectNone();
  allocator_.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpAppSetData(&sp_.app, Text("data")));
  EXPECT_EQ(data(), "");
}

TEST_F(AppTest, DataOfAnySizeIsFilledUpToAWord) {
  for (std::size_t size = 0; size < 9; ++size) {
    Set(std::string(size, 'd'));
    const std::size_t words = (size + 3) / 4;
    const std::string padding(words * 4 - size, '\0');
    EXPECT_EQ(ToHex(bytes()), ToHex(Hex("80CC00") + static_cast<char>(2 + words) + Hex("01020304 6E616D65") +
                                    std::string(size, 'd') + padding));
  }
}

TEST_F(AppTest, PaddingIsReadAsData) {
  Set("datum");
  const std::string wire = bytes();
  EXPECT_EQ(wire.size(), 20U);
  const Slot slot(kRow, wire);
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(Str(ZunRtcpAppGetData(&In(slot))), std::string("datum\0\0\0", 8));
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(wire));
}

TEST_F(AppTest, ConstructFullReturnsNullAfterSuccessToo) {
  TestAllocator other;
  ZunRtcpApp app;
  app.type = 77;
  EXPECT_EQ(ZunRtcpAppConstructFull(&app, 0x01020304, Text("name"), Text("datum"), other), nullptr);
  log_.ExpectNone();
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

TEST_F(AppTest, ConstructFullWantsANameOfFourBytes) {
  for (const char* const wrong : {"", "nam", "names"}) {
    ZunRtcpApp app;
    EXPECT_EQ(ZunRtcpAppConstructFull(&app, 0x01020304, Text(wrong), Text("data"), allocator_), nullptr);
    log_.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpAppConstructFull",
                   "Length of application name is not equal to 4");
    EXPECT_EQ(app.source, 0x01020304U) << "the source is stored first";
    EXPECT_EQ(allocator_.live_blocks(), 0U);
    ZunRtcpAppDestruct(&app);  // harmless, as the result does not tell whether there is something to release
  }
}

TEST_F(AppTest, ConstructFullWithRefusalsLosesNothing) {
  EXPECT_EQ(ForEveryRefusal([](TestAllocator& refusing) {
              ZunRtcpApp app;
              EXPECT_EQ(ZunRtcpAppConstructFull(&app, 1, Text("name"), Text("data"), refusing), nullptr);
              EXPECT_EQ(refusing.live_blocks(), refusing.refused() == 0 ? 2U : 0U);
              ZunRtcpAppDestruct(&app);
            }),
            2U);
}

TEST(App, ReadsNameAndData) {
  ExpectComesBackUnchanged(kNoData);
  ExpectComesBackUnchanged(kWithData);
  const Parsed parsed(kWithData);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 204);
  const ZunRtcpApp* const app = ZunRtcpSubpacketGetApp(&parsed[0]);
  EXPECT_EQ(ZunRtcpAppGetSource(app), 0x01020304U);
  EXPECT_EQ(Str(ZunRtcpAppGetName(app)), "name");
  EXPECT_EQ(Str(ZunRtcpAppGetData(app)), "data 123");
}

TEST(App, TheSubtypeIsIgnoredAndWrittenAsZero) {
  std::string wire = kWithData;
  wire[0] = '\x9F';
  const Parsed parsed(wire);
  ASSERT_TRUE(parsed.ok);
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(kWithData));
}

TEST(App, AReadWithoutDataClearsTheOldData) {
  Slot slot(kRow, kWithData);
  ASSERT_TRUE(slot.Again(kNoData));
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(kNoData));
}

TEST(App, DataMustBeWholeWords) {
  for (std::size_t size = 1; size < 8; ++size) {
    LogCapture log;
    Slot slot(kRow, kNoData);
    const bool read = slot.Again(Hex("80CC0003 11121314 6F746872") + std::string(size, 'd'));
    EXPECT_EQ(read, size == 4);
    EXPECT_EQ(ZunRtcpAppGetSource(&In(slot)), 0x11121314U);
    EXPECT_EQ(Str(ZunRtcpAppGetName(&In(slot))), "othr");
    EXPECT_EQ(Str(ZunRtcpAppGetData(&In(slot))), read ? "dddd" : "");
    if (read) {
      log.ExpectNone();
    } else {
      log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpAppAssignFromBuffer",
                    "Length of application data is not a multiple of 4 octets");
    }
  }
}

TEST(App, EveryCut) {
  ForEveryCut(kRow, kWithData, [&](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    EXPECT_EQ(slot.ok, !end_is_beyond && (size == 8 || size == 12));
    EXPECT_EQ(ZunRtcpAppGetSource(&In(slot)), size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(Str(ZunRtcpAppGetName(&In(slot))), size >= 8 ? "name" : "");
    EXPECT_EQ(Str(ZunRtcpAppGetData(&In(slot))), slot.ok && size == 12 ? "data" : "");
  });
}

// Readers have never been told of it.
TEST(App, AReadSucceedsEvenWhereNameOrDataFindNoStorage) {
  TestAllocator refusing;
  refusing.RefuseOnce(0);
  const Slot nameless(kRow, kWithData, refusing.get());
  EXPECT_TRUE(nameless.ok);
  EXPECT_EQ(Str(ZunRtcpAppGetName(&In(nameless))), "");
  EXPECT_EQ(Str(ZunRtcpAppGetData(&In(nameless))), "data 123");
  EXPECT_EQ(ToHex(nameless.bytes()), ToHex(Hex("80CC0003 01020304 6461746120313233")));

  refusing.RefuseOnce(1);
  const Slot dataless(kRow, kWithData, refusing.get());
  EXPECT_TRUE(dataless.ok);
  EXPECT_EQ(ToHex(dataless.bytes()), ToHex(kNoData));

  Slot used(kRow, Hex("80CC0003 11121314 6F746872 6F6C6420"), refusing.get());
  refusing.RefuseOnce(0);
  EXPECT_TRUE(used.Again(kWithData));
  EXPECT_EQ(Str(ZunRtcpAppGetName(&In(used))), "name");
  EXPECT_EQ(Str(ZunRtcpAppGetData(&In(used))), "old ") << "the old data stays";
}

TEST_F(AppTest, ZerosThatFindNoRoomAreLeftOutUnnoticed) {
  Set("datum");
  const std::string whole = bytes();
  for (ZunSizeT room = 0; room <= whole.size(); ++room) {
    SCOPED_TRACE(::testing::Message() << room << " bytes fit");
    TestAllocator refusing;
    Text out(std::string(64, 'x'), refusing.get());
    out->size = out->capacity - room;
    const std::string before = out.str();
    refusing.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpAppWritePacket(&sp_, out, 0) != 0, room >= 17);
    // Name and data are appended whole or not at all.
    const ZunSizeT written = room < 8 ? room : room < 12 ? 8 : room < 17 ? 12 : room;
    EXPECT_EQ(ToHex(out.str()), ToHex(before + whole.substr(0, written)));
  }
}

TEST_F(AppTest, ANameThatSomeonePutThereIsWrittenSafely) {
  Set("123");
  ASSERT_NE(ZunStringAssignCStr(&sp_.app.name, "n"), nullptr);
  Text out;
  EXPECT_TRUE(ZunRtcpAppWritePacket(&sp_, out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(Hex("80CC0002 01020304 6E 313233 00")));
}

TEST(App, AllocatorRules) { ExpectAllocatorRules(kRow, kWithData, kNoData); }

TEST(App, CopiesWithRefusalsLoseNothing) {
  const Slot source(kRow, kWithData);
  EXPECT_EQ(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSubpacket copy;
              const bool copied = kRow.construct_copy_allocator(&copy, &source.sp, refusing) != nullptr;
              EXPECT_EQ(copied, refusing.refused() == 0);
              if (!copied) return;
              EXPECT_EQ(ToHex(Bytes(kRow, copy)), ToHex(kWithData));
              kRow.destruct(&copy);
            }),
            2U);
  ForEveryRefusal([&](TestAllocator& refusing) {
    Slot twin(kRow, kWithData, refusing.get());
    const std::size_t blocks = refusing.live_blocks();
    ZunRtcpSubpacket copy;
    if (kRow.construct_copy_allocator(&copy, &twin.sp, refusing) != nullptr) kRow.destruct(&copy);
    EXPECT_EQ(refusing.live_blocks(), blocks);
  });
  ForEveryRefusal([&](TestAllocator& refusing) {
    Slot target(kRow, kNoData, refusing.get());
    target.sp.app.source = 7;
    const bool assigned = kRow.assign(&target.sp, &source.sp) != nullptr;
    EXPECT_EQ(ZunRtcpAppGetSource(&In(target)), assigned ? 0x01020304U : 7U);
    if (assigned) {
      EXPECT_EQ(ToHex(target.bytes()), ToHex(kWithData));
    } else {
      EXPECT_GT(refusing.refused(), 0U);
      EXPECT_EQ(Str(ZunRtcpAppGetData(&In(target))), "");
    }
  });
}

TEST(App, InPlace) {
  ExpectReadsInPlaceAsFresh(kRow, {kNoData, kWithData, Hex("80CC0003 01020304 6F746872 00000000")});
  ExpectWritesInPlace(kRow, kWithData);
}

}  // namespace
