#include "tools/zunrtcp/Capture/HexText.h"

#include <charconv>

namespace zunrtcp {

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kSeparators = " \t\r:;,-\"'{}[]()";
constexpr std::size_t kFewestOffsetDigits = 4;
constexpr std::size_t kMostOffsetDigits = 8;
constexpr std::size_t kGapBeforeAscii = 3;  // between bytes there may be 2, in the middle of a line
constexpr std::size_t kGapBetweenGroups = 1;

// The bytes of an even number of digits, appended.
bool AppendBytes(std::string_view digits, std::string* bytes) {
  if (digits.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    unsigned octet = 0;
    const auto [end, error] = std::from_chars(digits.data() + i, digits.data() + i + 2, octet, 16);
    if (error != std::errc() || end != digits.data() + i + 2) return false;
    *bytes += static_cast<char>(octet);
  }
  return true;
}

// Removes and returns what of `text` consists of these characters.
std::string_view TakeAll(std::string_view characters, std::string_view* text) {
  const std::size_t size = std::min(text->find_first_not_of(characters), text->size());
  const std::string_view taken = text->substr(0, size);
  text->remove_prefix(size);
  return taken;
}

bool IsWhole(std::string_view rest) { return rest.empty() || kBlanks.find(rest.front()) != std::string_view::npos; }

bool TakePrefix(std::string_view prefix, std::string_view* text) {
  if (!text->starts_with(prefix)) return false;
  text->remove_prefix(prefix.size());
  return true;
}

// The groups of digits up to the ASCII column. Bytes one by one may have a gap in the middle of the line; after groups
// of several a gap is the end.
std::string ReadGroups(std::string_view text) {
  std::string bytes;
  std::size_t group = 0;
  for (;;) {
    const std::size_t gap = TakeAll(kBlanks, &text).size();
    if (!bytes.empty() && (gap >= kGapBeforeAscii || (group > 2 && gap > kGapBetweenGroups))) return bytes;
    const std::string_view digits = TakeAll(kHexDigits, &text);
    if (digits.empty() || !IsWhole(text) || !AppendBytes(digits, &bytes)) return bytes;
    group = digits.size();
  }
}

}  // namespace

std::optional<HexDumpLine> ReadHexDumpLine(std::string_view line) {
  TakeAll(kBlanks, &line);
  TakePrefix("0x", &line);
  const std::string_view digits = TakeAll(kHexDigits, &line);
  if (digits.size() < kFewestOffsetDigits || digits.size() > kMostOffsetDigits) return std::nullopt;
  TakePrefix(":", &line);
  if (!IsWhole(line)) return std::nullopt;
  HexDumpLine read;
  std::from_chars(digits.data(), digits.data() + digits.size(), read.offset, 16);
  read.bytes = ReadGroups(line.substr(0, line.find('|')));
  return read;
}

std::optional<std::string> ReadHexDigits(std::string_view line) {
  std::string bytes;
  for (;;) {
    TakeAll(kSeparators, &line);
    if (line.empty()) return bytes;
    const bool is_escaped = TakePrefix("0x", &line) || TakePrefix("0X", &line) || TakePrefix("\\x", &line);
    const std::string_view digits = TakeAll(kHexDigits, &line);
    if (digits.empty() || (is_escaped && digits.size() > 2 && line.starts_with('x'))) return std::nullopt;
    if (!AppendBytes(digits, &bytes)) return std::nullopt;
  }
}

}  // namespace zunrtcp
