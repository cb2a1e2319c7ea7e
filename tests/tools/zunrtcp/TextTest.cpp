#include "tools/zunrtcp/Text.h"

#include <gtest/gtest.h>

namespace zunrtcp {

TEST(Text, QuotedEscapesWhatIsNotPrintable) {
  EXPECT_EQ(Quoted("user@host"), "\"user@host\"");
  EXPECT_EQ(Quoted(std::string("a\0\n\x7f\xc3\xa9", 6)), R"("a\x00\x0a\x7f\xc3\xa9")");
  EXPECT_EQ(Quoted("a \"b\" \\"), R"("a \"b\" \\")");
  EXPECT_EQ(Quoted("\x1b[31mred"), R"("\x1b[31mred")");
}

TEST(Text, HexDigitsAreCutWithTheNumberOfThoseLeftOut) {
  EXPECT_EQ(HexDigits("\x01\xab"), "01ab");
  EXPECT_EQ(HexDigits("abc", 3), "616263");
  EXPECT_EQ(HexDigits("abcd", 3), "616263... (1 more byte)");
  EXPECT_EQ(HexDigits("abcde", 3), "616263... (2 more bytes)");
}

TEST(Text, TimesAreUtc) {
  EXPECT_EQ(UtcTime(0, 0), "1970-01-01 00:00:00.000000");
  EXPECT_EQ(UtcTime(1795222299, 987564), "2026-11-21 00:51:39.987564");
}

TEST(Text, CountsOneInTheSingular) {
  EXPECT_EQ(Counted(1, "byte"), "1 byte");
  EXPECT_EQ(Counted(0, "byte"), "0 bytes");
}

}  // namespace zunrtcp
