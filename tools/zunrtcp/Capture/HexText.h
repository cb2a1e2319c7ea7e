// Reads the lines in which people write bytes down.
#ifndef TOOLS_ZUNRTCP_CAPTURE_HEXTEXT_H
#define TOOLS_ZUNRTCP_CAPTURE_HEXTEXT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zunrtcp {

// A line of a hex dump: "0010  80 c9 00 01   ....", with or without a colon after the offset, bytes alone or in groups,
// ASCII beside them or not.
struct HexDumpLine {
  std::size_t offset = 0;
  std::string bytes;
};

// Nothing when the line does not begin with an offset.
std::optional<HexDumpLine> ReadHexDumpLine(std::string_view line);

// The bytes of a line that is nothing but hex digits: "80c90001", "80:C9:00:01", "0x80, 0xc9", "\x80\xc9". Nothing when
// there is anything else in it, or half a byte.
std::optional<std::string> ReadHexDigits(std::string_view line);

}  // namespace zunrtcp

#endif
