#include "Zun/Rtp/Reports/ZunRtcpSdesItemPriv.h"

#include <gtest/gtest.h>

#include "Zun/Rtp/Cpp/Reports.h"
#include "tests/support/Kinds.h"

namespace {

using namespace test;

using Priv = TEST_PART(ZunRtcpSdesItemPriv);

// An item with a text of any bytes.
class Item : public zun::rtcp::Owning<ZunRtcpSdesItem> {
 public:
  explicit Item(const std::string& text, ZunAllocator* a = ZunAllocatorGetSystem()) : Owning(a) {
    const Text copied(text, a);
    EXPECT_NE(ZunRtcpSdesItemConstruct(get(), ZUN_RTCPSDESITEM_TYPE_PRIV, copied.get()), nullptr);
  }
  std::string text() const { return Str(&get()->text); }
};

void Fill(ZunRtcpSdesItemPriv* priv, const std::string& prefix, int prefix_len, const std::string& text) {
  ASSERT_TRUE(ZunRtcpSdesItemPrivSetPrefix(priv, Text(prefix)));
  ASSERT_TRUE(ZunRtcpSdesItemPrivSetPrefixLen(priv, static_cast<ZunUint8>(prefix_len)));
  ASSERT_TRUE(ZunRtcpSdesItemPrivSetText(priv, Text(text)));
}

std::string PrefixOf(const ZunRtcpSdesItemPriv* priv) { return Str(ZunRtcpSdesItemPrivGetPrefix(priv)); }
std::string TextOf(const ZunRtcpSdesItemPriv* priv) { return Str(ZunRtcpSdesItemPrivGetText(priv)); }

TEST(ZunRtcpSdesItemPriv, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  Priv priv(allocator);
  EXPECT_EQ(ZunRtcpSdesItemPrivGetPrefixLen(priv), 0);
  EXPECT_EQ(PrefixOf(priv), "");
  EXPECT_EQ(TextOf(priv), "");
  EXPECT_EQ(priv->prefix.allocator, allocator.get());
  EXPECT_EQ(priv->text.allocator, allocator.get());
}

TEST(ZunRtcpSdesItemPriv, SettersCopyAndLeaveThePrefixLengthAlone) {
  TestAllocator allocator;
  Priv priv(allocator);
  ASSERT_TRUE(ZunRtcpSdesItemPrivSetPrefixLen(priv, 200));
  EXPECT_TRUE(ZunRtcpSdesItemPrivSetPrefix(priv, Text(std::string("a\0b", 3))));
  EXPECT_EQ(PrefixOf(priv), std::string("a\0b", 3));
  EXPECT_TRUE(ZunRtcpSdesItemPrivSetPrefixCStr(priv, "prefix"));
  EXPECT_EQ(PrefixOf(priv), "prefix");
  EXPECT_TRUE(ZunRtcpSdesItemPrivSetText(priv, Text("text")));
  EXPECT_EQ(TextOf(priv), "text");
  EXPECT_TRUE(ZunRtcpSdesItemPrivSetTextCStr(priv, "more"));
  EXPECT_EQ(TextOf(priv), "more");
  EXPECT_EQ(ZunRtcpSdesItemPrivGetPrefixLen(priv), 200);
  EXPECT_EQ(priv->prefix.allocator, allocator.get());

  allocator.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpSdesItemPrivSetPrefix(priv, Text("much too long a text")));
  EXPECT_FALSE(ZunRtcpSdesItemPrivSetPrefixCStr(priv, "much too long a text"));
  EXPECT_FALSE(ZunRtcpSdesItemPrivSetText(priv, Text("much too long a text")));
  EXPECT_FALSE(ZunRtcpSdesItemPrivSetTextCStr(priv, "much too long a text"));
  EXPECT_EQ(PrefixOf(priv), "prefix");
  EXPECT_EQ(TextOf(priv), "more");
}

TEST(ZunRtcpSdesItemPriv, TakesAnItemApartAndPutsItTogetherAgain) {
  TestAllocator allocator;
  const std::string value =
      "\x03"
      "abcvalue";
  Item item(value, allocator);
  ZunRtcpSdesItemPriv priv;
  ASSERT_EQ(ZunRtcpSdesItemPrivConstructItem(&priv, item.get()), &priv);
  EXPECT_EQ(ZunRtcpSdesItemPrivGetPrefixLen(&priv), 3);
  EXPECT_EQ(Str(ZunRtcpSdesItemPrivGetPrefix(&priv)), "abc");
  EXPECT_EQ(Str(ZunRtcpSdesItemPrivGetText(&priv)), "value");
  EXPECT_EQ(priv.prefix.allocator, allocator.get());
  EXPECT_EQ(priv.text.allocator, allocator.get());

  Item target("what was there before");
  ASSERT_TRUE(ZunRtcpSdesItemSetType(target.get(), ZUN_RTCPSDESITEM_TYPE_NOTE));
  ASSERT_TRUE(ZunRtcpSdesItemPrivWriteToItem(&priv, target.get()));
  EXPECT_EQ(target.text(), value);
  EXPECT_EQ(ZunRtcpSdesItemGetType(target.get()), ZUN_RTCPSDESITEM_TYPE_NOTE) << "the caller sets the type";
  ZunRtcpSdesItemPrivDestruct(&priv);
  ZunRtcpSdesItemPrivDestruct(&priv);
}

TEST(ZunRtcpSdesItemPriv, ConstructItemAtItsLimits) {
  struct {
    std::string value;
    bool ok;
    int prefix_len;
    std::string prefix;
    std::string text;
  } const cases[] = {
      {"", false, 0, "", ""},
      {std::string(1, '\0'), false, 0, "", ""},  // less than two bytes
      {"\x01", false, 0, "", ""},
      {std::string("\0t", 2), true, 0, "", "t"},  // no prefix: the text begins after the length
      {std::string("\0text", 5), true, 0, "", "text"},
      {"\x01p", true, 1, "p", ""},
      {"\x04pref", true, 4, "pref", ""},  // no text
      {"\x05pref", false, 0, "", ""},     // a prefix that is cut off
      {"\xFF" + std::string(254, 'p'), false, 0, "", ""},
      {"\xFE" + std::string(254, 'p'), true, 254, std::string(254, 'p'), ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToHex(c.value));
    Item item(c.value);
    ZunRtcpSdesItemPriv priv;
    const ZunRtcpSdesItemPriv* const made = ZunRtcpSdesItemPrivConstructItem(&priv, item.get());
    ASSERT_EQ(made, c.ok ? &priv : nullptr);
    if (!c.ok) continue;
    EXPECT_EQ(ZunRtcpSdesItemPrivGetPrefixLen(&priv), c.prefix_len);
    EXPECT_EQ(Str(ZunRtcpSdesItemPrivGetPrefix(&priv)), c.prefix);
    EXPECT_EQ(Str(ZunRtcpSdesItemPrivGetText(&priv)), c.text);
    Item target("");
    EXPECT_TRUE(ZunRtcpSdesItemPrivWriteToItem(&priv, target.get()));
    EXPECT_EQ(target.text(), c.value);
    ZunRtcpSdesItemPrivDestruct(&priv);
  }
}

TEST(ZunRtcpSdesItemPriv, ThePrefixLengthSaysHowMuchOfThePrefixIsWritten) {
  Priv priv;
  Item item("old");
  Fill(priv, "prefix", 3, "text");
  EXPECT_TRUE(ZunRtcpSdesItemPrivWriteToItem(priv, item.get()));
  EXPECT_EQ(item.text(), "\x03pretext");
  Fill(priv, "prefix", 0, "text");
  EXPECT_TRUE(ZunRtcpSdesItemPrivWriteToItem(priv, item.get()));
  EXPECT_EQ(item.text(), std::string("\0text", 5));
  Fill(priv, "", 0, "");
  EXPECT_TRUE(ZunRtcpSdesItemPrivWriteToItem(priv, item.get()));
  EXPECT_EQ(item.text(), std::string(1, '\0'));
}

TEST(ZunRtcpSdesItemPriv, APrefixShorterThanItsLengthIsNotWritten) {
  Priv priv;
  Item item("old");
  Fill(priv, "prefix", 7, "text");
  EXPECT_FALSE(ZunRtcpSdesItemPrivWriteToItem(priv, item.get()));
  EXPECT_EQ(item.text(), "old");
  Fill(priv, "prefix", 6, "text");
  EXPECT_TRUE(ZunRtcpSdesItemPrivWriteToItem(priv, item.get()));
  EXPECT_EQ(item.text(), "\x06prefixtext");
}

TEST(ZunRtcpSdesItemPriv, TheResultIsNotLimitedToTheSizeOfAnItem) {
  Priv priv;
  Item item("");
  Fill(priv, std::string(200, 'p'), 200, std::string(200, 't'));
  EXPECT_TRUE(ZunRtcpSdesItemPrivWriteToItem(priv, item.get()));
  EXPECT_EQ(item.text(), "\xC8" + std::string(200, 'p') + std::string(200, 't'));
}

TEST(ZunRtcpSdesItemPriv, RefusalsLoseNothing) {
  const std::string value = "\x20" + std::string(32, 'p') + std::string(32, 't');
  EXPECT_EQ(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSdesItem item;
              ZunRtcpSdesItemConstructDefault(&item, refusing);
              Text text(value);
              if (ZunStringAssign(&item.text, text) != nullptr) {
                ZunRtcpSdesItemPriv priv;
                const bool made = ZunRtcpSdesItemPrivConstructItem(&priv, &item) != nullptr;
                EXPECT_EQ(made, refusing.refused() == 0);
                if (made) ZunRtcpSdesItemPrivDestruct(&priv);
                EXPECT_EQ(refusing.live_blocks(), 1U);
              }
              ZunRtcpSdesItemDestruct(&item);
            }),
            3U);
  ZunRtcpSdesItemPriv priv;
  Item source(value);
  ASSERT_NE(ZunRtcpSdesItemPrivConstructItem(&priv, source.get()), nullptr);
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSdesItem item;
              ZunRtcpSdesItemConstructDefault(&item, refusing);
              const bool written = ZunRtcpSdesItemPrivWriteToItem(&priv, &item) != 0;
              EXPECT_EQ(written, refusing.refused() == 0);
              EXPECT_EQ(Str(&item.text), value.substr(0, item.text.size));
              EXPECT_EQ(written, item.text.size == value.size());
              ZunRtcpSdesItemDestruct(&item);
            }),
            0U);
  ZunRtcpSdesItemPrivDestruct(&priv);
}

}  // namespace
