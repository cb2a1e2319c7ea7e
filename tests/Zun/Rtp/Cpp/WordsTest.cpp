#include "Zun/Rtp/Cpp/Words.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using namespace zun::rtcp::words;
using zun::rtcp::octets_of;

TEST(Words, PrintedIsAsLongAsItIs) {
  EXPECT_EQ(Printed("%s", ""), "");
  for (const std::size_t size : {126U, 127U, 128U, 129U, 1000U}) {
    const std::string text(size, 'x');
    EXPECT_EQ(Printed("%s %u", text.c_str(), 7U), text + " 7");
  }
}

TEST(Words, CountsOneInTheSingular) {
  EXPECT_EQ(Counted(1, "byte"), "1 byte");
  EXPECT_EQ(Counted(0, "byte"), "0 bytes");
}

TEST(Words, QuotedEscapesWhatIsNotPrintable) {
  EXPECT_EQ(Quoted("user@host"), "\"user@host\"");
  EXPECT_EQ(Quoted(std::string("a\0\n\x7f\xc3\xa9", 6)), R"("a\x00\x0a\x7f\xc3\xa9")");
  EXPECT_EQ(Quoted("a \"b\" \\"), R"("a \"b\" \\")");
  EXPECT_EQ(Quoted("\x1b[31mred"), R"("\x1b[31mred")");
}

TEST(Words, HexDigitsAreCutWithTheNumberOfThoseLeftOut) {
  EXPECT_EQ(HexDigits(octets_of("\x01\xab")), "01ab");
  EXPECT_EQ(HexDigits(octets_of("abc"), 3), "616263");
  EXPECT_EQ(HexDigits(octets_of("abcd"), 3), "616263... (1 more byte)");
  EXPECT_EQ(HexDigits(octets_of("abcde"), 3), "616263... (2 more bytes)");
}

TEST(Words, SourcesHaveEightDigits) {
  const std::array<zun::rtcp::Ssrc, 2> sources{1, 0xABCDEF01};
  EXPECT_EQ(SourceNames(sources), "0x00000001 0xabcdef01");
}

TEST(Words, TimesAreUtc) {
  EXPECT_EQ(UtcTime(0, 0), "1970-01-01 00:00:00.000000");
  EXPECT_EQ(UtcTime(1795222299, 987564), "2026-11-21 00:51:39.987564");
}

TEST(Words, AnNtpTimeIsADateFrom1970On) {
  EXPECT_EQ(NtpWords(0x0000000180000000), "NTP 0x00000001.80000000");
  EXPECT_EQ(NtpWords(0x83AA7E7FFFFFFFFF), "NTP 0x83aa7e7f.ffffffff");
  EXPECT_EQ(NtpWords(0x83AA7E8080000000), "NTP 1970-01-01 00:00:00.500000 (0x83aa7e80.80000000)");
}

}  // namespace
