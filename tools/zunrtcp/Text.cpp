#include "tools/zunrtcp/Text.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>

namespace zunrtcp {

namespace {

constexpr std::uint64_t kNtpToUnix = 2208988800;  // seconds from 1900, where NTP counts from, to 1970

}  // namespace

std::string Printed(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int size = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
  (void)std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

std::string Joined(const std::vector<std::string>& words, std::string_view separator) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

std::string Counted(std::size_t n, std::string_view noun) {
  std::string text = std::to_string(n) + ' ';
  text += noun;
  if (n != 1) text += 's';
  return text;
}

std::string Quoted(std::string_view bytes) {
  std::string text = "\"";
  for (const char c : bytes) {
    const auto octet = static_cast<unsigned char>(c);
    if (octet < 0x20 || octet > 0x7E) {
      text += Printed("\\x%02x", octet);
    } else {
      if (c == '"' || c == '\\') text += '\\';
      text += c;
    }
  }
  return text + '"';
}

std::string HexDigits(std::string_view bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const char c : bytes) text += Printed("%02x", static_cast<unsigned char>(c));
  return text;
}

std::string HexDigits(std::string_view bytes, std::size_t most) {
  if (bytes.size() <= most) return HexDigits(bytes);
  return HexDigits(bytes.substr(0, most)) + "... (" + Counted(bytes.size() - most, "more byte") + ")";
}

std::string SourceName(std::uint32_t ssrc) { return Printed("0x%08x", ssrc); }

std::string SourceNames(std::span<const std::uint32_t> sources) {
  std::vector<std::string> names;
  for (const std::uint32_t source : sources) names.push_back(SourceName(source));
  return Joined(names, " ");
}

std::string UtcTime(std::int64_t seconds_since_1970, std::uint32_t microseconds) {
  const auto seconds = static_cast<std::time_t>(seconds_since_1970);
  std::tm parts{};
  if (gmtime_r(&seconds, &parts) == nullptr) return "(no such time)";
  return Printed("%04d-%02d-%02d %02d:%02d:%02d.%06u", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                 parts.tm_hour, parts.tm_min, parts.tm_sec, microseconds);
}

std::string NtpWords(std::uint64_t seconds, std::uint64_t fraction) {
  const std::string number =
      Printed("0x%08llx.%08llx", static_cast<unsigned long long>(seconds), static_cast<unsigned long long>(fraction));
  if (seconds < kNtpToUnix) return "NTP " + number;
  const auto microseconds = static_cast<std::uint32_t>(fraction * 1000000 >> 32);
  return "NTP " + UtcTime(static_cast<std::int64_t>(seconds - kNtpToUnix), microseconds) + " (" + number + ")";
}

}  // namespace zunrtcp
