// The words that lines are made of: numbers, texts, octets, sources and times, as they are printed.
#ifndef ZUN_RTP_CPP_WORDS_H
#define ZUN_RTP_CPP_WORDS_H

#include <array>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>

#include "Zun/Rtp/Cpp/List.h"

namespace zun::rtcp::words {

// printf into a string.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
inline std::string
Printed(const char* format, ...) {
  std::array<char, 128> most;
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int printed = std::vsnprintf(most.data(), most.size(), format, arguments);
  va_end(arguments);
  const std::size_t size = printed < 0 ? 0 : static_cast<std::size_t>(printed);
  std::string text(most.data(), size < most.size() ? size : 0);
  if (text.size() < size) {
    text.resize(size);
    (void)std::vsnprintf(text.data(), size + 1, format, again);
  }
  va_end(again);
  return text;
}

// "1 datagram", "2 datagrams".
inline std::string Counted(std::size_t n, std::string_view noun) {
  return std::to_string(n).append(" ").append(noun).append(n == 1 ? "" : "s");
}

// Text of a peer's in double quotes: a byte that is not printable ASCII appears as \xNN, a quote or backslash after a
// backslash.
inline std::string Quoted(std::string_view bytes) {
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

// The octets as hex digits: all of them, or beyond `most` cut, with the number of those left out.
inline std::string HexDigits(std::span<const std::byte> octets) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  text.reserve(2 * octets.size());
  for (const std::byte octet : octets) {
    text += kDigits[std::to_integer<std::size_t>(octet >> 4)];
    text += kDigits[std::to_integer<std::size_t>(octet & std::byte{15})];
  }
  return text;
}
inline std::string HexDigits(std::span<const std::byte> octets, std::size_t most) {
  if (octets.size() <= most) return HexDigits(octets);
  return HexDigits(octets.first(most)) + "... (" + Counted(octets.size() - most, "more byte") + ")";
}

// An SSRC as 0x and eight digits, and several with spaces between them.
inline std::string SourceName(Ssrc ssrc) { return Printed("0x%08x", ssrc); }
inline std::string SourceNames(std::span<const Ssrc> sources) {
  std::string text;
  for (const Ssrc source : sources) text.append(text.empty() ? "" : " ").append(SourceName(source));
  return text;
}

// "2026-11-21 11:02:33.123456" in UTC, of the years that four digits can say.
inline std::string UtcTime(std::int64_t seconds_since_1970, std::uint32_t microseconds) {
  using namespace std::chrono;
  constexpr sys_seconds kFirst = sys_days(year(0) / January / 1);
  constexpr sys_seconds kEnd = sys_days(year(10000) / January / 1);
  const sys_seconds time{seconds(seconds_since_1970)};
  if (time < kFirst || time >= kEnd) return "(no such time)";
  const sys_days day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  return Printed("%04d-%02u-%02u %02d:%02d:%02d.%06u", static_cast<int>(date.year()),
                 static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                 static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                 static_cast<int>(clock.seconds().count()), microseconds);
}

// An NTP time as it stands, and as a date where it is one: some senders count from their own start.
inline std::string NtpWords(std::uint64_t ntp) {
  constexpr std::int64_t kNtpToUnix = 2208988800;  // seconds from 1900, where NTP counts from, to 1970
  const auto seconds = static_cast<std::int64_t>(ntp >> 32);
  const std::uint64_t fraction = ntp & 0xFFFFFFFF;
  const std::string number =
      Printed("0x%08llx.%08llx", static_cast<unsigned long long>(seconds), static_cast<unsigned long long>(fraction));
  if (seconds < kNtpToUnix) return "NTP " + number;
  const auto microseconds = static_cast<std::uint32_t>(fraction * 1000000 >> 32);
  return "NTP " + UtcTime(seconds - kNtpToUnix, microseconds) + " (" + number + ")";
}

// A line in the making: "NAME: field, field; item, item".
class Line {
 public:
  explicit Line(std::string name) : text_(std::move(name)) {}

  void Add(std::string_view words) {
    text_.append(is_first_ ? ": " : is_item_ ? "; " : ", ").append(words);
    is_first_ = is_item_ = false;
  }
  // The next words begin an item of a list.
  void NextItem() { is_item_ = true; }
  // The next words follow a colon.
  void Open() { is_first_ = true; }
  void Close() { is_first_ = false; }
  void AddSource(std::string_view label, Ssrc ssrc) { Add(std::string(label).append(" ").append(SourceName(ssrc))); }
  void AddNumber(std::string_view label, std::uint64_t number, std::string_view unit = {}) {
    Add(std::string(label).append(" ").append(std::to_string(number)).append(unit.empty() ? "" : " ").append(unit));
  }
  // No more than the first 32; nothing when there are none.
  void AddOctets(std::string_view label, std::span<const std::byte> octets) {
    if (!octets.empty()) Add(std::string(label).append(" ").append(HexDigits(octets, kMostOctets)));
  }
  void AddText(std::string_view label, std::string_view text) {
    Add(std::string(label).append(" ").append(Quoted(text)));
  }

  std::string Take() { return std::move(text_); }

 private:
  static constexpr std::size_t kMostOctets = 32;

  std::string text_;
  bool is_first_ = true;
  bool is_item_ = false;
};

}  // namespace zun::rtcp::words

#endif
