// Words: printf into strings, bytes and times as readable text.
#ifndef TOOLS_ZUNRTCP_TEXT_H
#define TOOLS_ZUNRTCP_TEXT_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zunrtcp {

// printf into a string.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
Printed(const char* format, ...);

// The words with `separator` between them.
std::string Joined(const std::vector<std::string>& words, std::string_view separator);

// "1 datagram", "2 datagrams".
std::string Counted(std::size_t n, std::string_view noun);

// Text of a peer's in double quotes: a byte that is not printable ASCII appears as \xNN, a quote or backslash after a
// backslash.
std::string Quoted(std::string_view bytes);

// The bytes as hex digits; beyond `most` bytes cut, with the number of those left out.
std::string HexDigits(std::string_view bytes);
std::string HexDigits(std::string_view bytes, std::size_t most);

// An SSRC as 0x and eight digits, and several with spaces between them.
std::string SourceName(std::uint32_t ssrc);
std::string SourceNames(std::span<const std::uint32_t> sources);

// "2026-11-21 11:02:33.123456" in UTC.
std::string UtcTime(std::int64_t seconds_since_1970, std::uint32_t microseconds);

// An NTP time as it stands, and as a date where it is one: some senders count from their own start.
std::string NtpWords(std::uint64_t seconds, std::uint64_t fraction);

}  // namespace zunrtcp

#endif
